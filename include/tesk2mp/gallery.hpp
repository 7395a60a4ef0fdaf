// Test matrices and random vectors in the C++ interface. Part of tesk2mp.hpp; gallery.h documents them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/kernels.hpp"
#include "tesk2mp/util.hpp"

namespace tesk2mp::gallery {

/// A row of the table: what matrix() takes, and what it makes.
struct Entry {
  std::string name;
  std::string parameters;  // optional ones in brackets
  std::string purpose;
};
/// All of them, by name.
[[nodiscard]] inline std::vector<Entry> entries() {
  std::vector<Entry> table;
  for (Integer row = 1; QuarnMPX_gallery_text_(row, 1) != nullptr; ++row) {
    table.push_back({QuarnMPX_gallery_text_(row, 1), QuarnMPX_gallery_text_(row, 2), QuarnMPX_gallery_text_(row, 3)});
  }
  return table;
}

/// The matrix of that name and order. Random ones go on with the stream of generator 0 that is given, and start at its
/// default seed without one. Throws InvalidArgument for what the table does not have.
///
/// @code
/// const auto a = tesk2mp::gallery::matrix("kahan", 20, {1});
/// @endcode
template <Scalar T = Real>
[[nodiscard]] Matrix<T> matrix(const std::string& name, std::size_t order, const std::vector<T>& parameters,
                               Random& random) {
  const char* routine = detail::name<T>("DGALLERY", "ZGALLERY");
  detail::require(random.generator() == 0, routine, 5, "test matrices are drawn from generator 0, not ",
                  random.generator());
  Matrix<T> a(order, order);
  const detail::RawMatrix<T> raw{a.view()};
  Random::State state = random.state();
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dgallery_, QuarnMPX_zgallery_)(name.c_str(), raw.rows, parameters.data(),
                                                          Integer(parameters.size()), state.data(), raw.data,
                                                          raw.leading, &info, int(name.size()));
  detail::require(info != -1, routine, 1, "there is no matrix '", name, "' in the gallery");
  detail::require(info != -2, routine, 2, "'", name, "' does not have the order ", order);
  detail::require(info != -3, routine, 3, "'", name, "' cannot be built from these parameters");
  detail::require(info != -4, routine, 4, "'", name, "' does not take ", parameters.size(), " parameters");
  random = Random(0, state);
  return a;
}
template <Scalar T = Real>
[[nodiscard]] Matrix<T> matrix(const std::string& name, std::size_t order, const std::vector<T>& parameters = {}) {
  Random random;
  return matrix<T>(name, order, parameters, random);
}

/// The matrix that a vector or two stand for: toeplitz and hankel of their first column and row (last row), companion
/// of coefficients, vandermonde, circulant, fiedler, cauchy of their numbers.
template <Scalar T>
[[nodiscard]] Matrix<T> from_vectors(const std::string& name, std::vector<T> first, const std::vector<T>& second = {}) {
  std::size_t order = first.size();
  if (name == "companion") {
    order -= order > 0 ? 1 : 0;
  }
  const bool shared = name == "toeplitz" || name == "hankel";
  if (!second.empty()) {
    detail::require(second.size() == order, detail::name<T>("DGALLERY", "ZGALLERY"), 3, "vectors of ", order, " and ",
                    second.size(), " numbers do not make a square matrix");
    first.insert(first.end(), second.begin() + (shared ? 1 : 0), second.end());
  } else if (name == "hankel" && order > 0) {
    first.resize(2 * order - 1);
  } else if (name == "cauchy") {
    first.insert(first.end(), first.begin(), first.begin() + std::ptrdiff_t(order));
  }
  return matrix<T>(name, order, first);
}

[[nodiscard]] inline Matrix<Real> hilbert(std::size_t order) { return matrix("hilbert", order); }
[[nodiscard]] inline Matrix<Real> inverse_hilbert(std::size_t order) { return matrix("inverse_hilbert", order); }
[[nodiscard]] inline Matrix<Real> frank(std::size_t order) { return matrix("frank", order); }
[[nodiscard]] inline Matrix<Real> grcar(std::size_t order) { return matrix("grcar", order); }
[[nodiscard]] inline Matrix<Real> kahan(std::size_t order) { return matrix("kahan", order); }
[[nodiscard]] inline Matrix<Real> kahan(std::size_t order, const Real& angle) {
  return matrix("kahan", order, {angle});
}
[[nodiscard]] inline Matrix<Real> wilkinson(std::size_t order) { return matrix("wilkinson", order); }
[[nodiscard]] inline Matrix<Real> clement(std::size_t order) { return matrix("clement", order); }
[[nodiscard]] inline Matrix<Real> godunov() { return matrix("godunov", 7); }
[[nodiscard]] inline Matrix<Real> rosser() { return matrix("rosser", 8); }
[[nodiscard]] inline Matrix<Real> chebyshev(std::size_t order) { return matrix("chebyshev", order); }
[[nodiscard]] inline Matrix<Real> lehmer(std::size_t order) { return matrix("lehmer", order); }
[[nodiscard]] inline Matrix<Real> pascal(std::size_t order) { return matrix("pascal", order); }
[[nodiscard]] inline Matrix<Real> moler(std::size_t order) { return matrix("moler", order); }
[[nodiscard]] inline Matrix<Real> fiedler(std::size_t order) { return matrix("fiedler", order); }
template <Scalar T>
[[nodiscard]] Matrix<T> jordan(std::size_t order, const T& value) {
  return matrix<T>("jordan", order, {value});
}
template <Scalar T>
[[nodiscard]] Matrix<T> toeplitz(const std::vector<T>& column, const std::vector<T>& row = {}) {
  return from_vectors("toeplitz", column, row);
}
template <Scalar T>
[[nodiscard]] Matrix<T> vandermonde(const std::vector<T>& nodes) {
  return from_vectors("vandermonde", nodes);
}
template <Scalar T>
[[nodiscard]] Matrix<T> companion(const std::vector<T>& coefficients) {
  return from_vectors("companion", coefficients);
}
/// Of these singular values; an orthogonal or unitary matrix.
template <Scalar T = Real>
[[nodiscard]] Matrix<T> random_values(const std::vector<Real>& values, Random& random) {
  return matrix<T>("random_values", values.size(), std::vector<T>(values.begin(), values.end()), random);
}
template <Scalar T = Real>
[[nodiscard]] Matrix<T> random_orthogonal(std::size_t order, Random& random) {
  return matrix<T>("random_orthogonal", order, {}, random);
}

/// Distributions of random_vector(): on (0, 1), on (-1, 1), normal; of Complex numbers of both parts, and on the unit
/// disc and circle.
enum class Distribution : Integer { unit = 1, symmetric = 2, normal = 3, disc = 4, circle = 5 };

/// Random numbers, from generator 0. Throws InvalidArgument for a distribution that real numbers do not have.
template <Scalar T = Real>
[[nodiscard]] std::vector<T> random_vector(Distribution distribution, std::size_t count, Random& random) {
  const char* routine = detail::name<T>("DLARNV", "ZLARNV");
  detail::require(random.generator() == 0, routine, 2, "random vectors are drawn from generator 0, not ",
                  random.generator());
  detail::require(detail::kIsComplex<T> || distribution <= Distribution::normal, routine, 1,
                  "real numbers do not have this distribution");
  std::vector<T> x(count);
  Random::State state = random.state();
  detail::pick<T>(QuarnMPX_dlarnv_, QuarnMPX_zlarnv_)(Integer(distribution), state.data(), Integer(count), x.data());
  random = Random(0, state);
  return x;
}

}  // namespace tesk2mp::gallery

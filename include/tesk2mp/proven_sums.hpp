// Sums, products of matrices, norms and Fourier transforms with proven error bounds in the C++ interface. Part of
// tesk2mp.hpp. Each sum is rounded once; bounds of the data are carried along.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "quarn/exact.h"
#include "quarn/realtransform.h"
#include "tesk2mp/options.hpp"
#include "tesk2mp/proven_complex.hpp"

namespace tesk2mp::proven {
namespace detail {

template <class T>
QuarnMatrix<const T> operand(const MatrixView<const T>& a) {
  const tesk2mp::detail::RawMatrix<T> raw{a};
  return {raw.data, 1, raw.leading};
}

template <class T>
BoundedMatrix<T> bounded(const BoundedMatrix<T>& a) {
  return a;
}
template <MatrixSource A>
BoundedMatrix<Element<A>> bounded(const A& a) {
  Matrix<Element<A>> values{MatrixView<const Element<A>>(a)};
  Matrix<Real> errors(values.rows(), values.columns());
  return {std::move(values), std::move(errors)};
}

/// Bounds of sizes and errors of a matrix, row by row or column by column.
template <class T>
struct Sizes {
  explicit Sizes(const BoundedMatrix<T>& a) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < a.rows(); ++i) {
        values.emplace_back(a.values()(i, j));
        errors.emplace_back(a.errors()(i, j));
        are_exact = are_exact && errors.back().is_zero();
        largest = std::max(largest, values.back());
      }
    }
  }
  std::vector<QuarnBound> values;
  std::vector<QuarnBound> errors;
  QuarnBound largest;
  bool are_exact = true;
};

inline bool is_whole(const Complex& z) { return is_whole(z.re) && is_whole(z.im); }
template <class T>
bool are_whole(const Matrix<T>& a) {
  return std::all_of(a.data(), a.data() + a.rows() * a.columns(), [](const T& x) { return is_whole(x); });
}

/// The rounding of a sum.
inline QuarnBound rounding_of(const Real& x) { return once_rounded(x, QuarnBound()).error; }
inline QuarnBound rounding_of(const Complex& z) { return hypotenuse(rounding_of(z.re), rounding_of(z.im)); }

}  // namespace detail

/// A B, of matrices that are exact or have bounds, each element rounded once. Products of matrices of whole numbers
/// that fit the working digits are exact.
///
/// @code
/// const auto c = tesk2mp::proven::multiply(a, b);
/// @endcode
template <DataSource A, DataSource B>
requires std::same_as<detail::ElementOfData<A>, detail::ElementOfData<B>> BoundedMatrix<detail::ElementOfData<A>>
multiply(const A& a, const B& b) {
  using T = detail::ElementOfData<A>;
  const BoundedMatrix<T> left = detail::bounded(a);
  const BoundedMatrix<T> right = detail::bounded(b);
  const std::size_t m = left.rows();
  const std::size_t n = right.columns();
  const std::size_t inner = left.columns();
  tesk2mp::detail::require(inner == right.rows(), "PROVEN::MULTIPLY", 2, "a matrix of ", right.rows(), " rows for ",
                           inner, " columns");
  Matrix<T> product(m, n);
  Matrix<Real> errors(m, n);
  if (m == 0 || n == 0) {
    return {std::move(product), std::move(errors)};
  }
  const tesk2mp::detail::RawMatrix<T> raw{product.view()};
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    QuarnMatrixProduct(m, n, inner, T(1), detail::operand(left.values().view()), detail::operand(right.values().view()),
                       T(0), {raw.data, 1, raw.leading}, 0);
  } else {
    QuarnMatrixProduct(m, n, inner, T(1), detail::operand(left.values().view()), detail::operand(right.values().view()),
                       T(0), {raw.data, 1, raw.leading});
  }
  const detail::Sizes<T> of_left(left);
  const detail::Sizes<T> of_right(right);
  const bool fits = QuarnBound::count(std::uint32_t(inner)) * of_left.largest * of_right.largest <
                        QuarnBound::power_of_ten(QuarnDigits()) &&
                    detail::are_whole(left.values()) && detail::are_whole(right.values());
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < m; ++i) {
      QuarnBound error = fits ? QuarnBound() : detail::rounding_of(product(i, j));
      for (std::size_t k = 0; k < inner && !(of_left.are_exact && of_right.are_exact); ++k) {
        const std::size_t l = i + k * m;
        const std::size_t r = k + j * inner;
        error += of_left.values[l] * of_right.errors[r] + of_left.errors[l] * (of_right.values[r] + of_right.errors[r]);
      }
      errors(i, j) = error.value();
    }
  }
  return {std::move(product), std::move(errors)};
}

/// The numbers as a matrix of one row or one column.
template <class T>
BoundedMatrix<T> as_matrix(const std::vector<Bounded<T>>& x, bool as_row = false) {
  Matrix<T> values(as_row ? 1 : x.size(), as_row ? x.size() : 1);
  Matrix<Real> errors(values.rows(), values.columns());
  for (std::size_t k = 0; k < x.size(); ++k) {
    values.data()[k] = x[k].value;
    errors.data()[k] = x[k].error.value();
  }
  return {std::move(values), std::move(errors)};
}
template <VectorSource X>
std::vector<Bounded<Element<X>>> exact(const X& x) {
  std::vector<Bounded<Element<X>>> result;
  for (const Element<X>& each : VectorView<const Element<X>>(x).to_vector()) {
    result.push_back(proven::exact(each));
  }
  return result;
}

/// The sum of x(i) y(i), rounded once.
template <class T>
Bounded<T> dot(const std::vector<Bounded<T>>& x, const std::vector<Bounded<T>>& y) {
  tesk2mp::detail::require(x.size() == y.size(), "PROVEN::DOT", 2, y.size(), " elements beside ", x.size());
  return proven::multiply(as_matrix(x, true), as_matrix(y))(0, 0);
}
template <VectorSource X, VectorSource Y>
requires std::same_as<Element<X>, Element<Y>> Bounded<Element<X>> dot(const X& x, const Y& y) {
  return proven::dot(proven::exact(x), proven::exact(y));
}
template <class T>
Bounded<T> sum(const std::vector<Bounded<T>>& x) {
  return proven::dot(x, std::vector<Bounded<T>>(x.size(), proven::exact(T(1))));
}
template <VectorSource X>
Bounded<Element<X>> sum(const X& x) {
  return proven::sum(proven::exact(x));
}

namespace detail {

inline std::vector<Bounded<Real>> parts_of(const std::vector<Bounded<Real>>& x) { return x; }
inline std::vector<Bounded<Real>> parts_of(const std::vector<Bounded<Complex>>& x) {
  std::vector<Bounded<Real>> parts;
  for (const Bounded<Complex>& z : x) {
    // Beside each other, the errors of both are at most that of the number.
    parts.push_back({z.value.re, z.error});
    parts.push_back({z.value.im, QuarnBound()});
  }
  return parts;
}

/// Multiplies by 10^-power, exactly; numbers that are too small for that become 0, and the result is a bound of their
/// norm before.
inline QuarnBound scale_down(std::vector<Bounded<Real>>& values, int power) {
  constexpr int kMostDigits = 1'000'000;
  const Digits scope(kMostDigits);
  QuarnBound left;
  for (Bounded<Real>& each : values) {
    const QuarnBound size(each.value);
    if (size.is_zero() || size.exponent() >= power - kFarthestSquared) {
      each.value = scalbn(each.value, -power);
    } else {
      left = hypotenuse(left, size);
      each.value = Real();
    }
  }
  return left;
}

}  // namespace detail

/// The Euclidean norm, of numbers of any exponents.
template <class T>
Bounded<Real> norm(const std::vector<Bounded<T>>& x) {
  std::vector<Bounded<Real>> values;
  QuarnBound error;
  QuarnBound largest;
  for (const Bounded<T>& each : x) {
    // | ||x'|| - ||x|| | <= ||x' - x||
    error = hypotenuse(error, each.error);
    for (const Bounded<Real>& part : detail::parts_of(std::vector<Bounded<T>>{each})) {
      largest = std::max(largest, QuarnBound(part.value));
      values.push_back(proven::exact(part.value));
    }
  }
  const int power = detail::far_exponent(largest);
  if (power != 0) {
    error = hypotenuse(error, detail::scale_down(values, power));
  }
  Bounded<Real> square;
  {
    const Digits scope(QuarnDigits() + 3);
    square = proven::dot(values, values);
  }
  // A root has half the relative error of the square.
  Bounded<Real> root = proven::sqrt(proven::exact(square.value));
  root.error += square.value == 0        ? sqrt(square.error)
                : square.error.is_zero() ? QuarnBound()
                                         : QuarnBound(root.value).half_unit(QuarnDigits() + 2);
  if (power != 0) {
    root.value = scalbn(root.value, power);
    root.error = isfinite(root.value) ? root.error * QuarnBound::power_of_ten(power) : QuarnBound::infinity();
  }
  root.error += error;
  return root;
}
template <VectorSource X>
Bounded<Real> norm(const X& x) {
  return proven::norm(proven::exact(x));
}

namespace detail {

template <class T>
std::vector<Bounded<T>> row_or_column(const BoundedMatrix<T>& a, bool rows, std::size_t place) {
  std::vector<Bounded<T>> line;
  for (std::size_t k = 0; k < (rows ? a.columns() : a.rows()); ++k) {
    line.push_back(rows ? a(place, k) : a(k, place));
  }
  return line;
}

}  // namespace detail

/// A norm of a matrix that is exact or has bounds.
template <DataSource A>
Bounded<Real> norm(Norm kind, const A& a) {
  using T = detail::ElementOfData<A>;
  const BoundedMatrix<T> given = detail::bounded(a);
  if (kind == Norm::frobenius) {
    std::vector<Bounded<T>> all;
    for (std::size_t j = 0; j < given.columns(); ++j) {
      const auto column = detail::row_or_column(given, false, j);
      all.insert(all.end(), column.begin(), column.end());
    }
    return proven::norm(all);
  }
  const bool by_rows = kind == Norm::infinity;
  Bounded<Real> largest = proven::exact(Real());
  for (std::size_t k = 0; k < (by_rows ? given.rows() : given.columns()); ++k) {
    std::vector<Bounded<Real>> sizes;
    for (const Bounded<T>& each : detail::row_or_column(given, by_rows, k)) {
      sizes.push_back(proven::abs(each));
      if (kind == Norm::largest) {
        largest = proven::fmax(largest, sizes.back());
      }
    }
    if (kind != Norm::largest) {
      largest = proven::fmax(largest, proven::sum(sizes));
    }
  }
  return largest;
}

// Transforms -------------------------------------------------------------------------------------------------------

namespace detail {

/// 10^-D M sqrt(N) / (4 divisor), the error of each part of a result before its own rounding.
inline QuarnBound transform_error(const QuarnBound& largest_part, QuarnDivisor divisor, std::size_t period) {
  const QuarnBound n = QuarnBound::count(std::uint32_t(period));
  const QuarnBound scale = divisor == QuarnDivisor::one    ? sqrt(n)
                           : divisor == QuarnDivisor::root ? one()
                                                           : sqrt(one() / n);
  return decimal(25, 2) * QuarnBound::power_of_ten(-QuarnDigits()) * largest_part * scale;
}
/// What errors of the data make at most: their sum, over the divisor, which is a lower bound here.
template <class T>
QuarnBound carried_error(const std::vector<Bounded<T>>& x, QuarnDivisor divisor, std::size_t period) {
  QuarnBound sum;
  for (const Bounded<T>& each : x) {
    sum += each.error;
  }
  const Digits scope(kBoundDigits);
  const Real n{double(period)};
  return divisor == QuarnDivisor::one ? sum : sum / below(divisor == QuarnDivisor::root ? ::sqrt(n) : n);
}

/// Results with what the transform, their own roundings and the errors of the data make.
template <class T>
std::vector<Bounded<T>> bounded_transform(std::vector<T> results, const QuarnBound& largest_part, QuarnDivisor divisor,
                                          std::size_t period, const QuarnBound& carried) {
  const QuarnBound of_part = transform_error(largest_part, divisor, period);
  const bool are_zeros = largest_part.is_zero() && carried.is_zero();
  std::vector<Bounded<T>> bounded;
  bounded.reserve(results.size());
  for (T& z : results) {
    QuarnBound error;
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      error = hypotenuse(of_part + rounding_of(z.re), of_part + rounding_of(z.im));
    } else {
      error = of_part + rounding_of(z);
    }
    bounded.push_back({std::move(z), are_zeros ? QuarnBound() : error + carried});
  }
  return bounded;
}

}  // namespace detail

/// z_k = sum over j of x_j exp(-2 pi i j k / n), or exp(+2 pi i j k / n) backward, divided by sqrt(n) or another
/// divisor. Up to 2^24 numbers and some 1100 digits; others throw InvalidArgument.
inline std::vector<Bounded<Complex>> transform(const std::vector<Bounded<Complex>>& x,
                                               Direction direction = Direction::forward,
                                               QuarnDivisor divisor = QuarnDivisor::root) {
  const std::size_t n = x.size();
  if (n == 0) {
    return {};
  }
  std::vector<Complex> values;
  QuarnBound largest;
  for (const Bounded<Complex>& each : x) {
    values.push_back(each.value);
    largest = std::max({largest, QuarnBound(each.value.re), QuarnBound(each.value.im)});
  }
  tesk2mp::detail::require(
      QuarnTransformRows(direction == Direction::backward, values.data(), Integer(n), 1, 1, Integer(n), divisor),
      "PROVEN::TRANSFORM", 1, "a sequence of ", n, " numbers at ", QuarnDigits(), " digits");
  return detail::bounded_transform(std::move(values), largest, divisor, n, detail::carried_error(x, divisor, n));
}
template <VectorSource X>
requires std::same_as<Element<X>, Complex> std::vector<Bounded<Complex>> transform(
    const X& x, Direction direction = Direction::forward, QuarnDivisor divisor = QuarnDivisor::root) {
  return proven::transform(proven::exact(x), direction, divisor);
}

/// z_0 ... z_(n/2) of n real numbers, without the conjugates that follow. Throws as transform() does.
inline std::vector<Bounded<Complex>> spectrum(const std::vector<Bounded<Real>>& x,
                                              QuarnDivisor divisor = QuarnDivisor::root) {
  using Kind = QuarnRealTransform::Kind;
  const std::size_t n = x.size();
  if (n == 0) {
    return {};
  }
  tesk2mp::detail::require(QuarnRealTransform::is_supported(Kind::to_spectrum, Integer(n), QuarnDigits()),
                           "PROVEN::SPECTRUM", 1, "a sequence of ", n, " numbers at ", QuarnDigits(), " digits");
  std::vector<Real> values;
  QuarnBound largest;
  for (const Bounded<Real>& each : x) {
    values.push_back(each.value);
    largest = std::max(largest, QuarnBound(each.value));
  }
  std::vector<Complex> z(n / 2 + 1);
  QuarnRealTransform::kept(Kind::to_spectrum, Integer(n))->run(values.data(), 1, z.data(), 1, divisor);
  return detail::bounded_transform(std::move(z), largest, divisor, n, detail::carried_error(x, divisor, n));
}

/// The n real numbers of which z_0 ... z_(n/2) are the spectrum. Throws as transform() does.
inline std::vector<Bounded<Real>> from_spectrum(const std::vector<Bounded<Complex>>& z, std::size_t n,
                                                QuarnDivisor divisor = QuarnDivisor::root) {
  using Kind = QuarnRealTransform::Kind;
  if (n == 0) {
    return {};
  }
  tesk2mp::detail::require(z.size() == n / 2 + 1, "PROVEN::FROM_SPECTRUM", 2, n, " numbers of a spectrum of ",
                           z.size());
  tesk2mp::detail::require(QuarnRealTransform::is_supported(Kind::from_spectrum, Integer(n), QuarnDigits()),
                           "PROVEN::FROM_SPECTRUM", 1, "a sequence of ", n, " numbers at ", QuarnDigits(), " digits");
  std::vector<Complex> values;
  QuarnBound largest;
  for (const Bounded<Complex>& each : z) {
    values.push_back(each.value);
    largest = std::max({largest, QuarnBound(each.value.re), QuarnBound(each.value.im)});
  }
  std::vector<Real> x(n);
  QuarnRealTransform::kept(Kind::from_spectrum, Integer(n))->run(values.data(), 1, x.data(), 1, divisor);
  // Each counts with its conjugate.
  return detail::bounded_transform(std::move(x), largest, divisor, n,
                                   QuarnBound::count(2) * detail::carried_error(z, divisor, n));
}

/// A cosine or sine transform of quarn/realtransform.h. Throws InvalidArgument for what that does not support.
inline std::vector<Bounded<Real>> transform(QuarnRealTransform::Kind kind, const std::vector<Bounded<Real>>& x,
                                            QuarnDivisor divisor = QuarnDivisor::one) {
  using Kind = QuarnRealTransform::Kind;
  const std::size_t n = x.size();
  tesk2mp::detail::require(kind != Kind::to_spectrum && kind != Kind::from_spectrum &&
                               QuarnRealTransform::is_supported(kind, Integer(n), QuarnDigits()),
                           "PROVEN::TRANSFORM", 1, "a sequence of ", n, " numbers at ", QuarnDigits(), " digits");
  const std::size_t period = 2 * (kind == Kind::dct1 ? n - 1 : kind == Kind::dst1 ? n + 1 : n);
  std::vector<Real> values;
  QuarnBound largest;
  for (const Bounded<Real>& each : x) {
    values.push_back(each.value);
    largest = std::max(largest, QuarnBound(each.value));
  }
  QuarnRealTransform::kept(kind, Integer(n))->run(values.data(), 1, values.data(), 1, divisor);
  // No element counts more than twice.
  return detail::bounded_transform(std::move(values), largest, divisor, period,
                                   QuarnBound::count(2) * detail::carried_error(x, divisor, period));
}

}  // namespace tesk2mp::proven

// Eigenvalues, singular values, zeros of polynomials and least squares with proven error bounds in the C++ interface.
// Part of tesk2mp.hpp; proven_spectra.h describes methods and costs.
#pragma once

#include <algorithm>
#include <concepts>
#include <utility>
#include <vector>

#include "quarn/rounding.h"
#include "tesk2mp/eigenproblems.hpp"
#include "tesk2mp/generalised.hpp"
#include "tesk2mp/polynomials.hpp"
#include "tesk2mp/proven.hpp"
#include "tesk2mp/proven_arithmetic.hpp"
#include "tesk2mp/proven_spectra.h"
#include "tesk2mp/singular_values.hpp"

namespace tesk2mp::proven {
namespace detail {

/// Approximations have so many digits more than results.
inline constexpr int kSpareDigits = 6;

/// The value rounded to the working digits.
inline Bounded<Real> delivered(const Real& value, const QuarnBound& error) {
  Bounded<Real> result{value * Real(1), error};
  result.error += QuarnBound(result.value).half_unit(QuarnDigits());
  return result;
}
inline Bounded<Complex> delivered(const Complex& value, const QuarnBound& error) {
  const Bounded<Real> re = delivered(value.re, QuarnBound());
  const Bounded<Real> im = delivered(value.im, QuarnBound());
  return {{re.value, im.value}, error + hypotenuse(re.error, im.error)};
}
inline std::vector<Bounded<Real>> delivered(const std::vector<Real>& values, const std::vector<Real>& errors) {
  std::vector<Bounded<Real>> result;
  for (std::size_t i = 0; i < values.size(); ++i) {
    result.push_back(delivered(values[i], QuarnBound(errors[i])));
  }
  return result;
}

/// |x - y|, rounded up.
inline QuarnBound distance(const Real& x, const Real& y) {
  return std::max(QuarnBound(quarn::subtract(x, y, quarn::Rounding::up)),
                  QuarnBound(quarn::subtract(x, y, quarn::Rounding::down)));
}

/// What the exports of roots write.
struct Roots {
  std::vector<Complex> values;
  std::vector<Real> errors;
  std::vector<Integer> counts;
  std::vector<Integer> distinct;  // of those that are counted, at most

  explicit Roots(std::vector<Complex> approximations)
      : values(std::move(approximations)), errors(values.size()), counts(values.size()), distinct(values.size()) {}

  std::vector<BoundedRoot> delivered(bool pairs) const {
    std::vector<BoundedRoot> result;
    for (std::size_t i = 0; i < values.size(); ++i) {
      Bounded<Complex> rounded = detail::delivered(values[i], QuarnBound(errors[i]));
      if (counts[i] > 1) {
        // The mean may be known to many more digits, and be a number of few.
        rounded.error = QuarnBound(errors[i]) +
                        hypotenuse(distance(values[i].re, rounded.value.re), distance(values[i].im, rounded.value.im));
      }
      const bool is_real = pairs && (counts[i] == 1 || distinct[i] == 1) && values[i].im == 0;
      result.push_back({rounded.value, rounded.error, std::size_t(counts[i]), is_real});
    }
    return result;
  }
};

/// The values of data.
template <MatrixSource A>
Matrix<Element<A>> values_of(const A& a) {
  return Matrix<Element<A>>{MatrixView<const Element<A>>(a)};
}
template <class T>
const Matrix<T>& values_of(const BoundedMatrix<T>& a) {
  return a.values();
}

}  // namespace detail

/// Eigenvalues of a symmetric or Hermitian matrix, ascending, and eigenvectors of norm 1.
template <Scalar T>
struct SymmetricEigenBounds {
  std::vector<Bounded<Real>> values;
  BoundedMatrix<T> vectors;
};

/// The eigenvalues and eigenvectors of the symmetric or Hermitian matrix of which one triangle is read. Eigenvectors
/// whose eigenvalues are not apart at the working digits have infinite bounds.
template <DataSource A>
SymmetricEigenBounds<detail::ElementOfData<A>> symmetric_eigen(const A& a, Triangle stored = Triangle::lower) {
  using T = detail::ElementOfData<A>;
  const detail::Data<T> matrix(a);
  const auto n = std::size_t(matrix.values.rows);
  if (matrix.values.rows == matrix.values.columns && detail::has_unknown_element(a, stored)) {
    return {std::vector<Bounded<Real>>(n), detail::unknown_matrix<T>(n, n)};
  }
  std::vector<Real> errors(n);
  std::vector<Real> of_vectors(n);
  SymmetricEigenSystem<T> system;
  {
    const Digits scope(QuarnDigits() + detail::kSpareDigits);
    system = tesk2mp::symmetric_eigen(detail::values_of(a), stored);
    const tesk2mp::detail::RawMatrix<T> vectors{system.vectors.view()};
    Integer info = 0;
    tesk2mp::detail::pick<T>(QuarnMPX_dproven_symmetric_, QuarnMPX_zproven_symmetric_)(
        tesk2mp::detail::Option(stored), matrix.values.rows, matrix.values.data, matrix.values.leading,
        matrix.errors.data, matrix.errors.leading, system.values.data(), vectors.data, vectors.leading, errors.data(),
        of_vectors.data(), &info, 1);
  }
  Matrix<Real> vector_errors(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      Bounded<T> element = detail::delivered(system.vectors(i, j), QuarnBound(of_vectors[j]));
      system.vectors(i, j) = std::move(element.value);
      vector_errors(i, j) = element.error.value();
    }
  }
  return {detail::delivered(system.values, errors), {std::move(system.vectors), std::move(vector_errors)}};
}
/// The eigenvalues alone.
template <DataSource A>
std::vector<Bounded<Real>> symmetric_eigenvalues(const A& a, Triangle stored = Triangle::lower) {
  return proven::symmetric_eigen(a, stored).values;
}

/// The singular values, descending.
template <DataSource A>
std::vector<Bounded<Real>> singular_values(const A& a) {
  using T = detail::ElementOfData<A>;
  const detail::Data<T> matrix(a);
  if (detail::has_unknown_element(a)) {
    return std::vector<Bounded<Real>>(std::size_t(std::min(matrix.values.rows, matrix.values.columns)));
  }
  SingularSystem<T> system;
  std::vector<Real> errors;
  {
    const Digits scope(QuarnDigits() + detail::kSpareDigits);
    system = tesk2mp::svd(detail::values_of(a));
    errors.resize(system.values.size());
    const tesk2mp::detail::RawMatrix<T> u{system.u.view()};
    const tesk2mp::detail::RawMatrix<T> v{system.v.view()};
    Integer info = 0;
    tesk2mp::detail::pick<T>(QuarnMPX_dproven_singular_, QuarnMPX_zproven_singular_)(
        matrix.values.rows, matrix.values.columns, matrix.values.data, matrix.values.leading, matrix.errors.data,
        matrix.errors.leading, system.values.data(), u.data, u.leading, v.data, v.leading, errors.data(), &info);
  }
  return detail::delivered(system.values, errors);
}

/// Eigenvalues, and eigenvectors of norm 1, a column each.
struct EigenBounds {
  std::vector<BoundedRoot> values;
  BoundedMatrix<Complex> vectors;
};

namespace detail {

/// Without a second matrix: of A x = lambda x.
template <class T>
Data<T> no_data() {
  Data<T> data(Matrix<T>(0, 0));
  data.values.leading = 0;
  return data;
}

/// Enclosures of what near() returns, approximations with spare digits.
template <class T, class Near>
EigenBounds eigen_bounds(bool with_vectors, const Data<T>& a, const Data<T>& b, const Near& near) {
  const auto n = std::size_t(a.values.rows);
  std::vector<Real> of_vectors(with_vectors ? n : 0);
  Matrix<Complex> x;
  Roots roots({});
  {
    const Digits scope(QuarnDigits() + kSpareDigits);
    auto [values, vectors] = near();
    roots = Roots(std::move(values));
    x = std::move(vectors);
    const tesk2mp::detail::RawMatrix<Complex> raw{x.view()};
    Integer info = 0;
    tesk2mp::detail::pick<T>(QuarnMPX_dproven_eigen_, QuarnMPX_zproven_eigen_)(
        a.values.rows, a.values.data, a.values.leading, a.errors.data, a.errors.leading, b.values.data,
        b.values.leading, b.errors.data, b.errors.leading, roots.values.data(), raw.data, raw.leading,
        roots.errors.data(), with_vectors ? of_vectors.data() : nullptr, roots.counts.data(), roots.distinct.data(),
        &info);
  }
  EigenBounds result{roots.delivered(!tesk2mp::detail::kIsComplex<T>), {}};
  if (with_vectors) {
    Matrix<Real> errors(n, n);
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i < n; ++i) {
        Bounded<Complex> element = delivered(x(i, j), QuarnBound(of_vectors[j]));
        x(i, j) = std::move(element.value);
        errors(i, j) = element.error.value();
      }
    }
    result.vectors = {std::move(x), std::move(errors)};
  }
  return result;
}

inline EigenBounds unknown_eigen(bool with_vectors, std::size_t n) {
  return {std::vector<BoundedRoot>(n, {{}, QuarnBound::infinity(), n, false}),
          with_vectors ? unknown_matrix<Complex>(n, n) : BoundedMatrix<Complex>()};
}

/// Left eigenvectors take no part in proofs.
template <Scalar T>
EigenSystem right_eigensystem(Matrix<T> a) {
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    return tesk2mp::detail::complex_eigen('R', std::move(a));
  } else {
    return tesk2mp::detail::real_eigen(a, 'R');
  }
}

template <class A>
EigenBounds general_eigen(bool with_vectors, const A& a) {
  using T = ElementOfData<A>;
  const Data<T> matrix(a);
  if (matrix.values.rows == matrix.values.columns && has_unknown_element(a)) {
    return unknown_eigen(with_vectors, std::size_t(matrix.values.rows));
  }
  return eigen_bounds<T>(with_vectors, matrix, no_data<T>(), [&] {
    auto system = right_eigensystem(values_of(a));
    return std::pair(std::move(system.values), std::move(system.right));
  });
}

template <class A, class B>
EigenBounds general_eigen(bool with_vectors, const A& a, const B& b) {
  using T = ElementOfData<A>;
  const Data<T> first(a);
  const Data<T> second(b);
  const Integer n = first.values.rows;
  const bool fit = first.values.columns == n && second.values.rows == n && second.values.columns == n;
  if (fit && (has_unknown_element(a) || has_unknown_element(b))) {
    return unknown_eigen(with_vectors, std::size_t(n));
  }
  return eigen_bounds<T>(with_vectors, first, second, [&] {
    auto system = tesk2mp::detail::pencil_eigen('R', Matrix<T>{values_of(a)}, Matrix<T>{values_of(b)});
    std::vector<Complex> values;
    for (std::size_t j = 0; j < system.beta.size(); ++j) {
      const bool finite = system.beta[j] != 0;
      const Real& beta = system.beta[j];
      values.push_back(finite ? Complex(system.alpha[j].re / beta, system.alpha[j].im / beta) : Complex());
    }
    return std::pair(std::move(values), std::move(system.right));
  });
}

}  // namespace detail

/// The eigenvalues of a square matrix. Multiple ones, and those too close for the working digits, share a disc.
///
/// @code
/// const auto values = tesk2mp::proven::eigenvalues(tesk2mp::Matrix<tesk2mp::Real>{{0, 1}, {1, 1}});
/// const bool proven = values[0].error.is_finite() && values[0].is_real;
/// @endcode
template <DataSource A>
std::vector<BoundedRoot> eigenvalues(const A& a) {
  return detail::general_eigen(false, a).values;
}
/// Eigenvalues and eigenvectors of norm 1, each up to a factor of modulus 1. Vectors of eigenvalues that share a disc
/// have infinite bounds.
template <DataSource A>
EigenBounds eigen(const A& a) {
  return detail::general_eigen(true, a);
}

namespace detail {

template <class T>
T conjugate_of(const T& x) {
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    return quarn::conj(x);
  } else {
    return x;
  }
}
template <MatrixSource A>
Matrix<Element<A>> adjoint(const A& a) {
  const MatrixView<const Element<A>> view(a);
  Matrix<Element<A>> result(view.columns(), view.rows());
  for (std::size_t j = 0; j < view.columns(); ++j) {
    for (std::size_t i = 0; i < view.rows(); ++i) {
      result(j, i) = conjugate_of(view(i, j));
    }
  }
  return result;
}
template <class T>
BoundedMatrix<T> adjoint(const BoundedMatrix<T>& a) {
  return {adjoint(a.values()), adjoint(a.errors())};
}

/// May discs have a common point, the second one mirrored in the real axis?
inline bool may_meet(const BoundedRoot& root, const BoundedRoot& mirrored) {
  const QuarnBound reach = root.error + mirrored.error;
  const auto may_be_near = [&reach](const Real& x, const Real& y) {
    const Real distance = quarn::subtract(x, y, quarn::Rounding::down);
    return !reach.is_finite() || !(distance > reach.value() || -distance > reach.value());
  };
  return may_be_near(root.value.re, mirrored.value.re) && may_be_near(root.value.im, -mirrored.value.im);
}

}  // namespace detail

/// Left eigenvectors y of norm 1, y^H A = lambda y^H, of the eigenvalues that eigen(a) has found, a column each, up to
/// a factor of modulus 1: eigenvectors of A^H, each beside the one disc that meets the mirrored one of its own. Where
/// several do, or roots share a disc, the bounds are infinite.
template <DataSource A>
BoundedMatrix<Complex> left_eigenvectors(const A& a, const std::vector<BoundedRoot>& values) {
  const EigenBounds found = proven::eigen(detail::adjoint(a));
  const std::size_t n = found.values.size();
  tesk2mp::detail::require(values.size() == n, "PROVEN::LEFT_EIGENVECTORS", 2, values.size(), " eigenvalues of ", n);
  Matrix<Complex> vectors(n, n);
  Matrix<Real> errors(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    std::size_t partner = 0;
    std::size_t partners = 0;
    for (std::size_t k = 0; k < n; ++k) {
      if (detail::may_meet(values[j], found.values[k])) {
        partner = k;
        ++partners;
      }
    }
    for (std::size_t i = 0; i < n; ++i) {
      const Bounded<Complex> element = found.vectors(i, partner);
      vectors(i, j) = element.value;
      errors(i, j) = partners == 1 && values[j].count == 1 ? element.error.value() : QuarnBound::infinity().value();
    }
  }
  return {std::move(vectors), std::move(errors)};
}

/// The same of A x = lambda B x. Where the working digits do not prove that B is regular the bounds are infinite.
template <DataSource A, DataSource B>
requires std::same_as<detail::ElementOfData<A>, detail::ElementOfData<B>> std::vector<BoundedRoot> eigenvalues(
    const A& a, const B& b) {
  return detail::general_eigen(false, a, b).values;
}
template <DataSource A, DataSource B>
requires std::same_as<detail::ElementOfData<A>, detail::ElementOfData<B>> EigenBounds eigen(const A& a, const B& b) {
  return detail::general_eigen(true, a, b);
}

namespace detail {

/// A - shift B, with the bounds of its rounding.
template <class T>
BoundedMatrix<T> shifted(const Matrix<T>& a, const Matrix<T>& b, int shift) {
  Matrix<T> values(a.rows(), a.columns());
  Matrix<Real> errors(a.rows(), a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      Bounded<T> element = proven::exact(a(i, j)) - proven::exact(T(shift)) * proven::exact(b(i, j));
      values(i, j) = std::move(element.value);
      errors(i, j) = element.error.value();
    }
  }
  return {std::move(values), std::move(errors)};
}

/// shift + 1 / mu of those mu that are proven not to be 0.
inline std::vector<BoundedRoot> finite_roots(const std::vector<BoundedRoot>& inverses, int shift) {
  std::vector<BoundedRoot> roots;
  for (const BoundedRoot& mu : inverses) {
    const Bounded<Complex> inverse{mu.value, mu.error};
    if (least_size(inverse).is_zero()) {
      continue;
    }
    const Bounded<Complex> value = proven::exact(Complex(shift)) + proven::exact(Complex(1)) / inverse;
    roots.push_back({mu.is_real ? Complex(value.value.re) : value.value, value.error, mu.count, mu.is_real});
  }
  return roots;
}

}  // namespace detail

/// The finite eigenvalues of A x = lambda B x, exact matrices, B singular or not: as many as infinite_eigenvalues()
/// leaves. With mu = 1 / (lambda - s), B x = mu (A - s B) x; as many discs of mu as there are infinite eigenvalues
/// hold 0, and these are the infinite ones. Where the working digits do not suffice the bounds are infinite. Throws
/// NumericalFailure where the pencil is singular.
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> std::vector<BoundedRoot> finite_eigenvalues(const A& a, const B& b) {
  using T = Element<A>;
  constexpr int kShifts[] = {0, 1, -1, 3};
  const std::size_t infinite = proven::infinite_eigenvalues(a, b).value_or(0);
  if (infinite == 0) {
    return proven::eigenvalues(a, b);
  }
  const Matrix<T> first{MatrixView<const T>(a)};
  const Matrix<T> second{MatrixView<const T>(b)};
  for (const int shift : kShifts) {
    std::vector<BoundedRoot> roots =
        detail::finite_roots(proven::eigenvalues(second, detail::shifted(first, second, shift)), shift);
    if (roots.size() == first.rows() - infinite) {
      return roots;
    }
  }
  return std::vector<BoundedRoot>(first.rows() - infinite);
}

/// The eigenvalues of A x = lambda B x, ascending, A symmetric or Hermitian and B positive definite, of which one
/// triangle is read. That B is definite is part of the proof: the bounds are infinite where the digits do not decide
/// that, and NumericalFailure is thrown where it is not.
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> std::vector<Bounded<Real>> symmetric_eigenvalues(
    const A& a, const B& b, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  const auto whole = [&](const auto& given) {
    Matrix<T> both{MatrixView<const T>(given)};
    for (std::size_t j = 0; j < both.columns(); ++j) {
      for (std::size_t i = 0; i <= j && j < both.rows(); ++i) {
        T& lower = both(j, i);
        T& upper = both(i, j);
        if constexpr (tesk2mp::detail::kIsComplex<T>) {
          (stored == Triangle::lower ? upper : lower) = conj(stored == Triangle::lower ? lower : upper);
          if (i == j) {
            lower = Complex(lower.re);
          }
        } else {
          (stored == Triangle::lower ? upper : lower) = stored == Triangle::lower ? lower : upper;
        }
      }
    }
    return both;
  };
  const Matrix<T> left = whole(a);
  const Matrix<T> right = whole(b);
  const bool definite = proven::is_positive_definite(right).value_or(false);
  const auto found = detail::eigen_bounds<T>(false, detail::Data<T>(left), detail::Data<T>(right), [&] {
    const auto system = tesk2mp::symmetric_eigen(left, right);
    Matrix<Complex> vectors(left.rows(), left.rows());
    for (std::size_t j = 0; j < left.rows(); ++j) {
      for (std::size_t i = 0; i < left.rows(); ++i) {
        vectors(i, j) = Complex(system.vectors(i, j));
      }
    }
    return std::pair(std::vector<Complex>(system.values.begin(), system.values.end()), std::move(vectors));
  });
  std::vector<Bounded<Real>> values;
  for (const BoundedRoot& root : found.values) {
    values.push_back({root.value.re, definite ? root.error + QuarnBound(root.value.im) : QuarnBound::infinity()});
  }
  std::sort(values.begin(), values.end(), [](const auto& x, const auto& y) { return x.value < y.value; });
  return values;
}

/// The zeros of a polynomial with exact coefficients, from the highest power down; k equal or very close ones share a
/// disc of count k. Throws InvalidArgument when the first coefficient is 0 or one is not finite.
template <VectorSource A>
std::vector<BoundedRoot> zeros(const A& coefficients) {
  using T = Element<A>;
  const std::vector<T> a = VectorView<const T>(coefficients).to_vector();
  detail::Roots roots({});
  {
    const Digits scope(QuarnDigits() + detail::kSpareDigits);
    std::vector<Complex> approximations;
    for (Zero& zero : tesk2mp::polynomial_zeros(a)) {
      approximations.push_back(std::move(zero.value));
    }
    roots = detail::Roots(std::move(approximations));
    Integer info = 0;
    tesk2mp::detail::pick<T>(QuarnMPX_dproven_zeros_, QuarnMPX_zproven_zeros_)(
        tesk2mp::detail::count_of(a.size() - 1), a.data(), roots.values.data(), roots.errors.data(),
        roots.counts.data(), &info);
  }
  return roots.delivered(!tesk2mp::detail::kIsComplex<T>);
}

/// The x that minimises the Euclidean norm of A x - b for each column of b; that A has full column rank is part of the
/// proof, and NumericalFailure is thrown where it is proven to have none. It is the solution of [I A; A^H 0] [r; x] =
/// [b; 0]: S. M. Rump, Verified bounds for least squares problems and underdetermined linear systems, SIAM J. Matrix
/// Anal. Appl. 33 (2012).
template <MatrixSource A, MatrixSource B>
BoundedMatrix<Element<A>> least_squares(const A& a, const B& b) {
  using T = Element<A>;
  const MatrixView<const T> matrix(a);
  const MatrixView<const T> right(b);
  const std::size_t m = matrix.rows();
  const std::size_t n = matrix.columns();
  const char* routine = tesk2mp::detail::name<T>("DPROVEN_SOLVE", "ZPROVEN_SOLVE");
  tesk2mp::detail::require(m >= n, routine, 1, "a matrix of ", m, " by ", n, " has more columns than rows");
  tesk2mp::detail::require(right.rows() == m, routine, 2, "a right-hand side of ", right.rows(), " rows for ", m,
                           " equations");
  Matrix<T> augmented(m + n, m + n);
  Matrix<T> extended(m + n, right.columns());
  for (std::size_t i = 0; i < m; ++i) {
    augmented(i, i) = T(1);
    for (std::size_t j = 0; j < n; ++j) {
      augmented(i, m + j) = matrix(i, j);
      if constexpr (tesk2mp::detail::kIsComplex<T>) {
        augmented(m + j, i) = conj(matrix(i, j));
      } else {
        augmented(m + j, i) = matrix(i, j);
      }
    }
    for (std::size_t j = 0; j < right.columns(); ++j) {
      extended(i, j) = right(i, j);
    }
  }
  BoundedMatrix<T> both;
  try {
    both = proven::solve(augmented, extended);
  } catch (const NumericalFailure&) {
    throw NumericalFailure(routine, 1, 0, "the matrix does not have full column rank", {});
  }
  Matrix<T> x(n, right.columns());
  Matrix<Real> errors(n, right.columns());
  for (std::size_t j = 0; j < right.columns(); ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      x(i, j) = both.values()(m + i, j);
      errors(i, j) = both.errors()(m + i, j);
    }
  }
  return {std::move(x), std::move(errors)};
}

}  // namespace tesk2mp::proven

// Determinants, condition numbers and scales of the C++ interface. Part of tesk2mp.hpp; linear.h describes methods and
// costs.
#pragma once

#include "tesk2mp/dense.hpp"

namespace tesk2mp {

/// A determinant, mantissa 10^exponent with a mantissa from 1 to 10 (of a complex one the larger part) or zero.
template <Scalar T>
struct ScaledDeterminant {
  T mantissa{};
  Integer exponent = 0;
  Real reciprocal_condition;     // of the matrix, in the 1-norm, estimated
  bool nearly_singular = false;  // that is below 10^-D at D digits
};

namespace detail {

template <class T>
ScaledDeterminant<T> scaled_determinant(Matrix<T> factors, bool with_condition) {
  const RawMatrix<T> raw{factors.view()};
  const Integer n = order_of(name<T>("F03AFF", "ZDETERMINANT"), 1, raw);
  std::vector<Integer> rows(std::max<std::size_t>(1, factors.rows()));
  ScaledDeterminant<T> result;
  const Listener listener;
  Integer ifail = 1;
  pick<T>(QuarnMPX_f03aff_, QuarnMPX_zdeterminant_)(n, raw.data, raw.leading, rows.data(), &result.mantissa,
                                                    &result.exponent,
                                                    with_condition ? &result.reciprocal_condition : nullptr, &ifail);
  constexpr Integer kNearlySingular = 2;
  result.nearly_singular = ifail == kNearlySingular;
  if (ifail != 0 && !result.nearly_singular) {
    listener.raise({3, 4});
  }
  return result;
}

}  // namespace detail

/// The determinant of a matrix of any size of numbers. Throws NumericalFailure when its exponent has no room in an
/// Integer.
template <MatrixSource A>
ScaledDeterminant<Element<A>> scaled_determinant(const A& a) {
  return detail::scaled_determinant(Matrix<Element<A>>{MatrixView<const Element<A>>(a)}, true);
}

/// The determinant, 0 when A is singular. Throws NumericalFailure when no number holds it; scaled_determinant() has it
/// then.
template <MatrixSource A>
Element<A> determinant(const A& a) {
  using T = Element<A>;
  constexpr Integer kFarthest = 999999999;  // the largest exponent of a number
  const ScaledDeterminant<T> scaled = detail::scaled_determinant(Matrix<T>{MatrixView<const T>(a)}, false);
  const char* routine = detail::name<T>("F03AFF", "ZDETERMINANT");
  if (scaled.exponent < -kFarthest) {
    throw NumericalFailure(routine, 3, 99996, " ** The value of the determinant is too small to be stored.", {});
  }
  if (scaled.exponent > kFarthest) {
    throw NumericalFailure(routine, 4, 99995, " ** The value of the determinant is too large to be stored.", {});
  }
  return scaled.mantissa * T(Real(1, int(scaled.exponent)));
}

/// 1 / (norm(A) norm(A^-1)) in the 1-norm or the infinity-norm, estimated: the norm of the inverse from below, hardly
/// ever by less than a third of it. 0 when A is singular.
template <MatrixSource A>
Real reciprocal_condition(const A& a, Norm norm = Norm::one) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DGECON", "ZGECON");
  detail::require(norm == Norm::one || norm == Norm::infinity, routine, 1,
                  "the condition number is that of the 1-norm or of the infinity-norm");
  const Matrix<T> given{MatrixView<const T>(a)};
  const Real size = tesk2mp::norm(norm, given);
  const LU<T> lu(given);
  const detail::RawMatrix<T> raw{lu.factors().view()};
  const Integer n = detail::order_of(routine, 2, raw);
  Real result;
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dgecon_, QuarnMPX_zgecon_)(detail::Option(norm), n, raw.data, raw.leading, size, &result,
                                                      nullptr, nullptr, &info, 1);
  detail::require(info == 0 || isnan(size), routine, 5, "the norm of the matrix is no number");
  return result;
}

/// What equilibrate() finds.
struct Equilibration {
  std::vector<Real> rows;
  std::vector<Real> columns;
  Real row_ratio;     // smallest over largest of the rows' largest elements
  Real column_ratio;  // the same of columns, after rows are scaled
  Real largest;       // element of A, |re| + |im| of a complex one
};

/// Factors r and c such that the largest element of each row and column of r(i) A(i, j) c(j) is 1; with powers_of_ten,
/// which round nothing, it is from 0.1 to 1. Throws NumericalFailure when a row or a column is zero.
template <MatrixSource A>
Equilibration equilibrate(const A& a, bool powers_of_ten = false) {
  using T = Element<A>;
  const detail::RawMatrix<T> raw{MatrixView<const T>(a)};
  Equilibration found{
      std::vector<Real>(std::size_t(raw.rows)), std::vector<Real>(std::size_t(raw.columns)), {}, {}, {}};
  Integer info = 0;
  const auto routine = powers_of_ten ? detail::pick<T>(QuarnMPX_dgeequb_, QuarnMPX_zgeequb_)
                                     : detail::pick<T>(QuarnMPX_dgeequ_, QuarnMPX_zgeequ_);
  routine(raw.rows, raw.columns, raw.data, raw.leading, found.rows.data(), found.columns.data(), &found.row_ratio,
          &found.column_ratio, &found.largest, &info);
  if (info > 0) {
    const bool row = info <= raw.rows;
    const Integer place = row ? info : info - raw.rows;
    throw NumericalFailure(detail::name<T>("DGEEQU", "ZGEEQU"), info, 0,
                           (row ? "row " : "column ") + std::to_string(place) + " is zero", {std::int64_t(place)});
  }
  return found;
}

/// What solve_scaled() finds: op(A) x = scale b.
template <Scalar T>
struct ScaledSolution {
  std::vector<T> x;
  Real scale;
};

/// The x and the scale, at most 1, with op(A) x = scale b, A triangular, such that nothing overflows: a power of ten, 1
/// unless it has to be less; 0 when A is singular, and x then not zero with op(A) x = 0.
template <MatrixSource A, VectorSource B>
ScaledSolution<Element<A>> solve_scaled(Triangle triangle, Op op, Diagonal diagonal, const A& a, const B& b) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DLATRS", "ZLATRS");
  const detail::RawMatrix<T> raw{MatrixView<const T>(a)};
  const Integer n = detail::order_of(routine, 5, raw);
  ScaledSolution<T> result{VectorView<const T>(b).to_vector(), {}};
  detail::require_length(routine, 8, detail::count_of(result.x.size()), n);
  std::vector<Real> sums(std::max<std::size_t>(1, result.x.size()));
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dlatrs_, QuarnMPX_zlatrs_)(
      detail::Option(triangle), detail::Option(op), detail::Option(diagonal), detail::Option('N'), n, raw.data,
      raw.leading, result.x.data(), &result.scale, sums.data(), &info, 1, 1, 1, 1);
  detail::require(info >= 0, routine, -info, "an option has no such value");
  return result;
}

}  // namespace tesk2mp

// E. Anderson et al., LAPACK Users' Guide: xGECON, xPOCON.
#include "src/dense/condition.h"

#include "src/dense/norm_estimate.h"
#include "src/dense/scaled_solve.h"
#include "tesk2mp/linear.h"

namespace tesk {
namespace {

/// One triangular factor of A, and its sizes.
template <class T>
struct Factor {
  Triangle triangle;
  Diagonal diagonal;
  Integer n;
  OneBasedMatrix<T> a;
  TriangleSizes sizes;

  Factor(Triangle stored, Diagonal kind, Integer order, OneBasedMatrix<T> matrix)
      : triangle(stored), diagonal(kind), n(order), a(matrix), sizes(sizes_of_triangle(stored, kind, order, matrix)) {}

  /// x := op(A)^-1 x; false when that overflows.
  bool solve(Op op, OneBasedVector<T> x) const {
    const QuarnFloat factor = solve_scaled(sizes, triangle, op, diagonal, n, a, x);
    if (is_zero(factor)) {
      return false;
    }
    if (!is_one(factor)) {
      const QuarnFloat back = 1 / factor;
      scale(n, back, x);
      for (Integer i = 1; i <= n; ++i) {
        if (isinf(magnitude(x(i)))) {
          return false;
        }
      }
    }
    return true;
  }
};

QuarnFloat reciprocal(const QuarnFloat& norm_of_inverse, const QuarnFloat& anorm) {
  return isinf(norm_of_inverse) ? QuarnFloat() : (1 / norm_of_inverse) / anorm;
}

}  // namespace

template <class T>
QuarnFloat reciprocal_condition(bool one_norm, Integer n, OneBasedMatrix<T> factors, const QuarnFloat& anorm) {
  if (n == 0) {
    return QuarnFloat(1);
  }
  if (is_zero(anorm)) {
    return {};
  }
  const Factor<T> lower(Triangle::lower, Diagonal::unit, n, factors);
  const Factor<T> upper(Triangle::upper, Diagonal::general, n, factors);
  // Interchanges of rows change the order of the columns of the inverse alone, which no norm sees.
  return reciprocal(estimated_one_norm<T>(n,
                                          [&](Op op, OneBasedVector<T> x) {
                                            return (op == Op::none) == one_norm
                                                       ? lower.solve(Op::none, x) && upper.solve(Op::none, x)
                                                       : upper.solve(Op::conjugate_transpose, x) &&
                                                             lower.solve(Op::conjugate_transpose, x);
                                          }),
                    anorm);
}

template QuarnFloat reciprocal_condition(bool, Integer, OneBasedMatrix<QuarnFloat>, const QuarnFloat&);
template QuarnFloat reciprocal_condition(bool, Integer, OneBasedMatrix<Complex>, const QuarnFloat&);

namespace {

/// A norm that is negative or infinite is refused, and a NaN, which is the result then.
bool is_no_norm(const QuarnFloat& anorm) { return !(anorm >= 0) || isinf(anorm); }

template <class T>
Integer checked_general(const char* norm, Integer n, T* a, Integer lda, const QuarnFloat& anorm, QuarnFloat* rcond) {
  const char which = letter(norm);
  const bool one_norm = which == '1' || which == 'O';
  const Integer wrong = first_wrong(
      {{!one_norm && which != 'I', 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}, {is_no_norm(anorm), 5}});
  if (wrong == 5 && isnan(anorm)) {
    *rcond = anorm;
  }
  if (wrong == 0) {
    *rcond = reciprocal_condition<T>(one_norm, n, {a, lda}, anorm);
  }
  return -wrong;
}

template <class T>
Integer checked_definite(const char* uplo, Integer n, T* a, Integer lda, const QuarnFloat& anorm, QuarnFloat* rcond) {
  const Integer wrong =
      first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}, {is_no_norm(anorm), 5}});
  if (wrong == 5 && isnan(anorm)) {
    *rcond = anorm;
  }
  if (wrong != 0) {
    return -wrong;
  }
  *rcond = QuarnFloat(n == 0 ? 1 : 0);
  if (n == 0 || is_zero(anorm)) {
    return 0;
  }
  const Triangle stored = triangle_of(uplo);
  const Factor<T> factor(stored, Diagonal::general, n, {a, lda});
  const Op first = stored == Triangle::lower ? Op::none : Op::conjugate_transpose;
  const Op second = stored == Triangle::lower ? Op::conjugate_transpose : Op::none;
  *rcond = reciprocal(
      estimated_one_norm<T>(
          n, [&](Op /*op*/, OneBasedVector<T> x) { return factor.solve(first, x) && factor.solve(second, x); }),
      anorm);
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgecon_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat anorm, QuarnFloat* rcond,
                      QuarnFloat* /*work*/, Integer* /*iwork*/, Integer* info, int /*norm_length*/) {
  *info = tesk::checked_general(norm, n, a, lda, anorm, rcond);
}

void QuarnMPX_zgecon_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat anorm, QuarnFloat* rcond,
                      Complex* /*work*/, QuarnFloat* /*rwork*/, Integer* info, int /*norm_length*/) {
  *info = tesk::checked_general(norm, n, a, lda, anorm, rcond);
}

void QuarnMPX_dpocon_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat anorm, QuarnFloat* rcond,
                      QuarnFloat* /*work*/, Integer* /*iwork*/, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_definite(uplo, n, a, lda, anorm, rcond);
}

void QuarnMPX_zpocon_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat anorm, QuarnFloat* rcond,
                      Complex* /*work*/, QuarnFloat* /*rwork*/, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_definite(uplo, n, a, lda, anorm, rcond);
}
}

// E. Anderson et al., LAPACK Users' Guide: xGELSY, xGGLSE, xGGGLM. Constraints are satisfied in the coordinates of an
// orthogonal factor, what is left is a problem without any: C. L. Lawson, R. J. Hanson, Solving Least Squares Problems,
// Prentice-Hall 1974, chapter 20.
#include "tesk2mp/least_squares.h"

#include "src/dense/complete_orthogonal.h"

namespace tesk {
namespace {

/// The x of least norm among those with the least norm(b - A x), A of any rank, for each column of B; returns INFO.
template <class T>
Integer least_squares_of_any_rank(Integer m, Integer n, Integer nrhs, T* a, Integer lda, T* b, Integer ldb,
                                  Integer* jpvt, const QuarnFloat& rcond, Integer* rank, T* work, Integer lwork) {
  const Integer steps = std::min(m, n);
  const Integer least = std::max<Integer>(1, steps + std::max({2 * steps, n + 1, steps + nrhs}));
  const Integer wrong = first_wrong({{m < 0, 1},
                                     {n < 0, 2},
                                     {nrhs < 0, 3},
                                     {lda < std::max<Integer>(1, m), 5},
                                     {ldb < std::max<Integer>({1, m, n}), 7},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  if (lwork == -1) {
    work[0] = T(double(least));
    return 0;
  }
  const OneBasedMatrix<T> factors(a, lda);
  const OneBasedMatrix<T> x(b, ldb);
  T* const tau = work;
  factorise_pivoted(m, n, factors, jpvt, tau);
  const Integer r = estimated_rank(steps, factors, rcond);
  *rank = r;
  T* const tau_z = work + steps;
  factorise_trapezoid(r, n, factors, tau_z);
  if (nrhs == 0) {
    return 0;
  }
  if (steps > 0) {
    apply_reflectors(Side::left, Op::conjugate_transpose, m, nrhs, steps, factors, tau, x);
  }
  solve_upper(Op::none, r, nrhs, factors, x);
  for (Integer j = 1; j <= nrhs; ++j) {
    fill(n - r, T(), x.column(j).from(r + 1));
  }
  apply_z(Side::left, Op::conjugate_transpose, n, nrhs, r, n - r, factors.from(1, r + 1), tau_z, x);
  std::vector<T> ordered(static_cast<std::size_t>(n));
  for (Integer j = 1; j <= nrhs; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      ordered[std::size_t(jpvt[i - 1] - 1)] = std::move(x(i, j));
    }
    for (Integer i = 1; i <= n; ++i) {
      x(i, j) = std::move(ordered[std::size_t(i - 1)]);
    }
  }
  return 0;
}

template <class T>
OneBasedMatrix<T> as_column(T* x) {
  return {x, 1, 0};
}

/// Minimises norm(c - A x) subject to B x = d, A m by n, B p by n; returns INFO.
template <class T>
Integer constrained_least_squares(Integer m, Integer n, Integer p, T* a, Integer lda, T* b, Integer ldb, T* c,
                                  const T* d, T* x, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, m + n + p);
  const Integer wrong = first_wrong({{m < 0, 1},
                                     {n < 0, 2},
                                     {p < 0 || p > n || p < n - m, 3},
                                     {lda < std::max<Integer>(1, m), 5},
                                     {ldb < std::max<Integer>(1, p), 7},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  // With B^H = Q (R; 0) and x = Q (y1; y2): R^H y1 = d, and y2 makes norm(c - A Q (y1; y2)) least.
  OwnQR<T> constraints(Op::conjugate_transpose, p, n, {b, ldb});
  if (first_zero_on_diagonal(p, constraints.r()) != 0) {
    return 1;
  }
  OwnMatrix<T> y(n, 1);
  for (Integer i = 1; i <= p; ++i) {
    y.view()(i, 1) = d[i - 1];
  }
  solve_upper(Op::conjugate_transpose, p, 1, constraints.r(), y.view());
  OwnMatrix<T> turned(m, n);
  copy_matrix<T>(m, n, {a, lda}, turned.view());
  constraints.apply(Side::right, Op::none, m, turned.view());
  OwnQR<T> free(Op::none, m, n - p, turned.view().from(1, p + 1));
  if (first_zero_on_diagonal(n - p, free.r()) != 0) {
    return 2;
  }
  const OneBasedMatrix<T> right = as_column(c);
  if (m > 0 && p > 0) {
    exact::multiply_matrices(Op::none, Op::none, m, 1, p, T(-1.0), turned.view(), y.view(), T(1.0), right);
  }
  free.apply(Side::left, Op::conjugate_transpose, m > 0 ? 1 : 0, right);
  for (Integer i = 1; i <= n - p; ++i) {
    y.view()(p + i, 1) = right(i, 1);
  }
  solve_upper(Op::none, n - p, 1, free.r(), y.view().from(p + 1, 1));
  constraints.apply(Side::left, Op::none, 1, y.view());
  copy(n, y.view().column(1), OneBasedVector<T>(x, 1));
  return 0;
}

/// Minimises norm(y) subject to d = A x + B y, A n by m, B n by p; returns INFO.
template <class T>
Integer gauss_markov(Integer n, Integer m, Integer p, T* a, Integer lda, T* b, Integer ldb, const T* d, T* x, T* y,
                     T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, n + m + p);
  const Integer wrong = first_wrong({{n < 0, 1},
                                     {m < 0 || m > n, 2},
                                     {p < 0 || p < n - m, 3},
                                     {lda < std::max<Integer>(1, n), 5},
                                     {ldb < std::max<Integer>(1, n), 7},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1) {
    return 0;
  }
  fill(m, T(), OneBasedVector<T>(x, 1));
  fill(p, T(), OneBasedVector<T>(y, 1));
  if (n == 0) {
    return 0;
  }
  // With A = Q (R; 0), Q^H d = (d1; d2), Q^H B = (B1; B2): y is the shortest solution of B2 y = d2, and
  // R x = d1 - B1 y.
  OwnQR<T> model(Op::none, n, m, {a, lda});
  if (first_zero_on_diagonal(m, model.r()) != 0) {
    return 1;
  }
  OwnMatrix<T> right(n, 1);
  for (Integer i = 1; i <= n; ++i) {
    right.view()(i, 1) = d[i - 1];
  }
  model.apply(Side::left, Op::conjugate_transpose, 1, right.view());
  OwnMatrix<T> turned(n, p);
  copy_matrix<T>(n, p, {b, ldb}, turned.view());
  model.apply(Side::left, Op::conjugate_transpose, p, turned.view());
  const Integer rest = n - m;
  OwnQR<T> errors(Op::conjugate_transpose, rest, p, turned.view().from(m + 1, 1));
  if (first_zero_on_diagonal(rest, errors.r()) != 0) {
    return 2;
  }
  const OneBasedMatrix<T> shortest = as_column(y);
  for (Integer i = 1; i <= rest; ++i) {
    shortest(i, 1) = right.view()(m + i, 1);
  }
  solve_upper(Op::conjugate_transpose, rest, 1, errors.r(), shortest);
  if (p > 0) {
    errors.apply(Side::left, Op::none, 1, shortest);
  }
  if (m > 0 && p > 0) {
    exact::multiply_matrices(Op::none, Op::none, m, 1, p, T(-1.0), turned.view(), shortest, T(1.0), right.view());
  }
  solve_upper(Op::none, m, 1, model.r(), right.view());
  copy(m, right.view().column(1), OneBasedVector<T>(x, 1));
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgelsy_(Integer m, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                      Integer* jpvt, QuarnFloat rcond, Integer* rank, QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::least_squares_of_any_rank(m, n, nrhs, a, lda, b, ldb, jpvt, rcond, rank, work, lwork);
}

void QuarnMPX_zgelsy_(Integer m, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* b, Integer ldb,
                      Integer* jpvt, QuarnFloat rcond, Integer* rank, Complex* work, Integer lwork,
                      QuarnFloat* /*rwork*/, Integer* info) {
  *info = tesk::least_squares_of_any_rank(m, n, nrhs, a, lda, b, ldb, jpvt, rcond, rank, work, lwork);
}

void QuarnMPX_dgglse_(Integer m, Integer n, Integer p, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                      QuarnFloat* c, QuarnFloat* d, QuarnFloat* x, QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::constrained_least_squares(m, n, p, a, lda, b, ldb, c, d, x, work, lwork);
}

void QuarnMPX_zgglse_(Integer m, Integer n, Integer p, Complex* a, Integer lda, Complex* b, Integer ldb, Complex* c,
                      Complex* d, Complex* x, Complex* work, Integer lwork, Integer* info) {
  *info = tesk::constrained_least_squares(m, n, p, a, lda, b, ldb, c, d, x, work, lwork);
}

void QuarnMPX_dggglm_(Integer n, Integer m, Integer p, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                      QuarnFloat* d, QuarnFloat* x, QuarnFloat* y, QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::gauss_markov(n, m, p, a, lda, b, ldb, d, x, y, work, lwork);
}

void QuarnMPX_zggglm_(Integer n, Integer m, Integer p, Complex* a, Integer lda, Complex* b, Integer ldb, Complex* d,
                      Complex* x, Complex* y, Complex* work, Integer lwork, Integer* info) {
  *info = tesk::gauss_markov(n, m, p, a, lda, b, ldb, d, x, y, work, lwork);
}
}

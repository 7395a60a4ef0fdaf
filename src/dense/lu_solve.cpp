// E. Anderson et al., LAPACK Users' Guide: xGETRS, xGETRI.
#include "src/dense/lu_solve.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tesk2mp/dense.h"

namespace tesk {
namespace {

template <class T>
void interchange(Integer columns, OneBasedMatrix<T> b, Integer k, Integer row) {
  if (row != k) {
    swap_vectors(columns, b.row(k), b.row(row));
  }
}

}  // namespace

template <class T>
void solve_factored(Op op, Integer n, Integer columns, OneBasedMatrix<T> factors, const Integer* ipiv,
                    OneBasedMatrix<T> x) {
  const auto solve = [&](Triangle triangle, Diagonal diagonal) {
    exact::solve_triangular_matrix(Side::left, triangle, op, diagonal, n, columns, T(1.0), factors, x);
  };
  if (op == Op::none) {
    for (Integer k = 1; k <= n; ++k) {
      interchange(columns, x, k, ipiv[k - 1]);
    }
    solve(Triangle::lower, Diagonal::unit);
    solve(Triangle::upper, Diagonal::general);
  } else {
    solve(Triangle::upper, Diagonal::general);
    solve(Triangle::lower, Diagonal::unit);
    for (Integer k = n; k >= 1; --k) {
      interchange(columns, x, k, ipiv[k - 1]);
    }
  }
}

template void solve_factored(Op, Integer, Integer, OneBasedMatrix<QuarnFloat>, const Integer*,
                             OneBasedMatrix<QuarnFloat>);
template void solve_factored(Op, Integer, Integer, OneBasedMatrix<Complex>, const Integer*, OneBasedMatrix<Complex>);

namespace {

/// Checks, then the solution of op(A) X = B from the factors; returns INFO.
template <class T>
Integer solve_with_factors(const char* trans, Integer n, Integer nrhs, T* a, Integer lda, const Integer* ipiv, T* b,
                           Integer ldb) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{!is_op(trans), 1}, {n < 0, 2}, {nrhs < 0, 3}, {lda < least, 5}, {ldb < least, 8}});
  if (wrong == 0 && n > 0 && nrhs > 0) {
    solve_factored<T>(op_of(trans), n, nrhs, {a, lda}, ipiv, {b, ldb});
  }
  return -wrong;
}

/// Checks, then the inverse of A in the place of its factors: the solution of A X = I, made beside them. Returns INFO.
template <class T>
Integer invert(Integer n, T* a, Integer lda, const Integer* ipiv, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1}, {lda < least, 3}, {lwork < least && lwork != -1, 6}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1) {
    return 0;
  }
  const OneBasedMatrix<T> factors(a, lda);
  for (Integer j = 1; j <= n; ++j) {
    if (is_zero(factors(j, j))) {
      return j;
    }
  }
  std::vector<T> inverse(std::size_t(n) * std::size_t(n));
  const OneBasedMatrix<T> x(inverse.data(), n);
  for (Integer j = 1; j <= n; ++j) {
    x(j, j) = T(1.0);
  }
  if (n > 0) {
    solve_factored(Op::none, n, n, factors, ipiv, x);
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      factors(i, j) = std::move(x(i, j));
    }
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgetrs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, Integer* ipiv,
                      QuarnFloat* b, Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve_with_factors(trans, n, nrhs, a, lda, ipiv, b, ldb);
}

void QuarnMPX_zgetrs_(const char* trans, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv, Complex* b,
                      Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve_with_factors(trans, n, nrhs, a, lda, ipiv, b, ldb);
}

void QuarnMPX_dgetri_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* work, Integer lwork,
                      Integer* info) {
  *info = tesk::invert(n, a, lda, ipiv, work, lwork);
}

void QuarnMPX_zgetri_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work, Integer lwork, Integer* info) {
  *info = tesk::invert(n, a, lda, ipiv, work, lwork);
}
}

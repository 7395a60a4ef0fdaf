// E. Anderson et al., LAPACK Users' Guide: xGETRS.
#include <algorithm>

#include "src/kernels/level3.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

template <class T>
void interchange(Integer columns, OneBasedMatrix<T> b, Integer k, Integer row) {
  if (row != k) {
    swap_vectors(columns, b.row(k), b.row(row));
  }
}

/// Checks, then the solution of op(A) X = B from the factors; returns INFO.
template <class T>
Integer solve_with_factors(const char* trans, Integer n, Integer nrhs, T* a, Integer lda, const Integer* ipiv, T* b,
                           Integer ldb) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{!is_op(trans), 1}, {n < 0, 2}, {nrhs < 0, 3}, {lda < least, 5}, {ldb < least, 8}});
  if (wrong != 0 || n == 0 || nrhs == 0) {
    return -wrong;
  }
  const Op op = op_of(trans);
  const OneBasedMatrix<T> factors(a, lda);
  const OneBasedMatrix<T> x(b, ldb);
  const auto solve = [&](Triangle triangle, Diagonal diagonal) {
    solve_triangular_matrix(Side::left, triangle, op, diagonal, n, nrhs, T(1.0), factors, x);
  };
  if (op == Op::none) {
    for (Integer k = 1; k <= n; ++k) {
      interchange(nrhs, x, k, ipiv[k - 1]);
    }
    solve(Triangle::lower, Diagonal::unit);
    solve(Triangle::upper, Diagonal::general);
  } else {
    solve(Triangle::upper, Diagonal::general);
    solve(Triangle::lower, Diagonal::unit);
    for (Integer k = n; k >= 1; --k) {
      interchange(nrhs, x, k, ipiv[k - 1]);
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
}

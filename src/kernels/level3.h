// Level-3 kernels: J. J. Dongarra, J. Du Croz, I. Duff, S. Hammarling, A set of level 3 basic linear algebra
// subprograms, ACM Trans. Math. Softw. 16 (1990). Real and complex are one template; the order of operations is that
// of the published algorithms.
#pragma once

#include "src/kernels/level2.h"

namespace tesk {

/// C := alpha op(A) op(B) + beta C, C m by n, op(A) m by k.
template <class T>
void multiply_matrices(Op op_a, Op op_b, Integer m, Integer n, Integer k, const T& alpha, OneBasedMatrix<T> a,
                       OneBasedMatrix<T> b, const T& beta, OneBasedMatrix<T> c) {
  if (m == 0 || n == 0 || ((is_zero(alpha) || k == 0) && is_one(beta))) {
    return;
  }
  // Row j of bt is column j of op(B), up to conjugation.
  const OneBasedMatrix<T> bt = op_b == Op::none ? b.transposed() : b;
  CheckPoints check_points;
  for (Integer j = 1; j <= n; ++j) {
    const OneBasedVector<T> cj = c.column(j);
    scale_or_clear(m, beta, cj);
    if (is_zero(alpha)) {
      continue;
    }
    if (op_a == Op::none) {
      for (Integer l = 1; l <= k; ++l) {
        check_points.pass(m);
        T temp = apply(op_b, bt(j, l));
        multiply_by(temp, alpha);
        add_multiple(m, temp, a.column(l), cj);
      }
      continue;
    }
    for (Integer i = 1; i <= m; ++i) {
      check_points.pass(k);
      T temp{};
      for (Integer l = 1; l <= k; ++l) {
        add_product(temp, op_a, a(l, i), op_b, bt(j, l));
      }
      add_product(cj(i), alpha, temp);
    }
  }
}

/// B := alpha op(A)^-1 B, A m by m, or B := alpha B op(A)^-1, A n by n; B is m by n.
template <class T>
void solve_triangular_matrix(Side side, Triangle triangle, Op op, Diagonal diagonal, Integer m, Integer n,
                             const T& alpha, OneBasedMatrix<T> matrix, OneBasedMatrix<T> right) {
  if (m == 0 || n == 0) {
    return;
  }
  if (is_zero(alpha)) {
    for (Integer j = 1; j <= n; ++j) {
      fill(m, T(), right.column(j));
    }
    return;
  }
  CheckPoints check_points;
  if (side == Side::left) {
    for (Integer j = 1; j <= n; ++j) {
      check_points.pass(std::ptrdiff_t(m) * m);
      scale_or_clear(m, alpha, right.column(j));
      solve_triangular<T, SumOrder::ascending>(triangle, op, diagonal, m, matrix, right.column(j));
    }
    return;
  }
  const bool upper = triangle == Triangle::upper;
  const OneBasedMatrix<T> a = upper ? matrix : matrix.reversed(n, n);
  const OneBasedMatrix<T> b = upper ? right : right.columns_reversed(n);
  const auto divide_column = [&](Integer j) {
    if (diagonal == Diagonal::general) {
      scale(m, quotient(T(1.0), apply(op, a(j, j))), b.column(j));
    }
  };
  if (op == Op::none) {
    for (Integer j = 1; j <= n; ++j) {
      scale_or_clear(m, alpha, b.column(j));
      for (Integer l = 1; l < j; ++l) {
        const Integer k = upper ? l : j - l;  // ascending in the caller's own indices
        if (!is_zero(a(k, j))) {
          check_points.pass(m);
          add_multiple(m, -a(k, j), b.column(k), b.column(j));
        }
      }
      divide_column(j);
    }
  } else {
    for (Integer k = n; k >= 1; --k) {
      divide_column(k);
      for (Integer j = 1; j < k; ++j) {
        if (!is_zero(a(j, k))) {
          check_points.pass(m);
          add_multiple(m, -apply(op, a(j, k)), b.column(k), b.column(j));
        }
      }
      scale_or_clear(m, alpha, b.column(k));
    }
  }
}

/// C := alpha A A^H + beta C (Op::none, A n by k) or alpha A^H A + beta C (A k by n) on one triangle of the Hermitian
/// matrix C, whose diagonal comes out real.
void update_hermitian(Triangle triangle, Op op, Integer n, Integer k, const QuarnFloat& alpha,
                      OneBasedMatrix<Complex> matrix, const QuarnFloat& beta, OneBasedMatrix<Complex> result);

}  // namespace tesk

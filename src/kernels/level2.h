// Level-2 kernels: J. J. Dongarra, J. Du Croz, S. Hammarling, R. J. Hanson, An extended set of Fortran basic linear
// algebra subprograms, ACM Trans. Math. Softw. 14 (1988). Real and complex are one template; the order of operations
// is that of the published algorithms.
#pragma once

#include "src/frame/check_points.h"
#include "src/kernels/level1.h"

namespace tesk {

/// op(a)
inline const QuarnFloat& apply(Op /*op*/, const QuarnFloat& a) { return a; }
inline Complex apply(Op op, const Complex& a) { return op == Op::conjugate_transpose ? conj(a) : a; }

/// y := alpha op(A) x + beta y, A m by n. A zero alpha reads neither A nor x, a zero beta does not read y.
template <class T>
void multiply_matrix_vector(Op op, Integer m, Integer n, const T& alpha, OneBasedMatrix<T> a, OneBasedVector<T> x,
                            const T& beta, OneBasedVector<T> y) {
  if (m == 0 || n == 0 || (is_zero(alpha) && is_one(beta))) {
    return;
  }
  scale_or_clear(op == Op::none ? m : n, beta, y);
  if (is_zero(alpha)) {
    return;
  }
  CheckPoints check_points;
  for (Integer j = 1; j <= n; ++j) {
    check_points.pass(m);
    if (op == Op::none) {
      T temp = x(j);
      multiply_by(temp, alpha);
      add_multiple(m, temp, a.column(j), y);
    } else {
      add_product(y(j), alpha, dot(m, a.column(j), x, op));
    }
  }
}

/// A triangle and its vector with the indices reversed if need be, so that the triangle is an upper one.
template <class T>
struct UpperTriangle {
  OneBasedMatrix<T> a;
  OneBasedVector<T> x;

  UpperTriangle(Triangle triangle, Integer n, OneBasedMatrix<T> matrix, OneBasedVector<T> vector)
      : a(triangle == Triangle::upper ? matrix : matrix.reversed(n, n)),
        x(triangle == Triangle::upper ? vector : vector.reversed(n)) {}
};

/// x := op(A) x, A triangular.
template <class T>
void multiply_triangular(Triangle triangle, Op op, Diagonal diagonal, Integer n, OneBasedMatrix<T> matrix,
                         OneBasedVector<T> vector) {
  const auto [a, x] = UpperTriangle<T>(triangle, n, matrix, vector);
  CheckPoints check_points;
  if (op == Op::none) {
    for (Integer j = 1; j <= n; ++j) {
      if (is_zero(x(j))) {
        continue;
      }
      check_points.pass(j);
      add_multiple(j - 1, T(x(j)), a.column(j), x);
      if (diagonal == Diagonal::general) {
        multiply_by(x(j), a(j, j));
      }
    }
  } else {
    for (Integer j = n; j >= 1; --j) {
      check_points.pass(j);
      T temp = x(j);
      if (diagonal == Diagonal::general) {
        multiply_by(temp, apply(op, a(j, j)));
      }
      for (Integer i = j - 1; i >= 1; --i) {
        add_product(temp, op, a(i, j), Op::none, x(i));
      }
      x(j) = std::move(temp);
    }
  }
}

/// How a transposed solution takes its sums: towards the diagonal as the level-2 algorithm does, or by ascending index
/// as the level-3 one does. For a lower triangle these are opposite orders, which round differently.
enum class SumOrder { towards_diagonal, ascending };

/// x := op(A)^-1 x, A triangular; no test for a zero on the diagonal is made.
template <class T, SumOrder order = SumOrder::towards_diagonal>
void solve_triangular(Triangle triangle, Op op, Diagonal diagonal, Integer n, OneBasedMatrix<T> matrix,
                      OneBasedVector<T> vector) {
  const bool downwards = triangle == Triangle::lower && order == SumOrder::ascending;
  const auto [a, x] = UpperTriangle<T>(triangle, n, matrix, vector);
  CheckPoints check_points;
  if (op == Op::none) {
    for (Integer j = n; j >= 1; --j) {
      if (is_zero(x(j))) {
        continue;
      }
      check_points.pass(j);
      if (diagonal == Diagonal::general) {
        x(j) = quotient(x(j), a(j, j));
      }
      for (Integer i = j - 1; i >= 1; --i) {
        subtract_product(x(i), x(j), a(i, j));
      }
    }
  } else {
    for (Integer j = 1; j <= n; ++j) {
      check_points.pass(j);
      for (Integer k = 1; k < j; ++k) {
        const Integer i = downwards ? j - k : k;
        subtract_product(x(j), op, a(i, j), x(i));
      }
      if (diagonal == Diagonal::general) {
        x(j) = quotient(x(j), apply(op, a(j, j)));
      }
    }
  }
}

/// A := alpha x y^T + A, or with y conjugated.
template <class T>
void update_rank_one(Op op, Integer m, Integer n, const T& alpha, OneBasedVector<T> x, OneBasedVector<T> y,
                     OneBasedMatrix<T> a) {
  if (m == 0 || n == 0 || is_zero(alpha)) {
    return;
  }
  CheckPoints check_points;
  for (Integer j = 1; j <= n; ++j) {
    if (!is_zero(y(j))) {
      check_points.pass(m);
      T temp = apply(op, y(j));
      multiply_by(temp, alpha);
      add_multiple(m, temp, x, a.column(j));
    }
  }
}

}  // namespace tesk

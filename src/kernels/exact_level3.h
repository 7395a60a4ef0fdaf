// Triangular solutions and Hermitian updates out of products that round each entry once: by halves, with the small
// blocks that remain from sums that round each entry once too. An entry is rounded some log2(n) times where the
// published orders of operations round it n times.
#pragma once

#include <vector>

#include "quarn/rows.h"
#include "src/kernels/exact.h"
#include "src/kernels/level3.h"

namespace tesk::exact {

/// Blocks that are not halved. What is done with them depends on the digits alone, so that results do.
struct Leaf {
  /// Of numbers that QuarnRows prepares.
  static constexpr int kMostDigits = 125;
  bool in_sums;  // with one rounding each; otherwise in the published order of operations, which is faster there
  Integer order;

  Leaf() : in_sums(QuarnDigits() <= kMostDigits), order(in_sums ? 64 : QuarnDigits() <= 400 ? 16 : 32) {}
};

template <class T>
QuarnMatrix<const T> entries_of(const OneBasedMatrix<T>& a) noexcept {
  return {a.first(), a.row_stride(), a.column_stride()};
}
inline QuarnRows rows_of(Integer m, Integer n, const OneBasedMatrix<QuarnFloat>& a, bool /*conjugate*/ = false) {
  return {std::size_t(m), std::size_t(n), entries_of(a)};
}
inline QuarnRows rows_of(Integer m, Integer n, const OneBasedMatrix<Complex>& a, bool conjugate = false) {
  return {std::size_t(m), std::size_t(n), entries_of(a), conjugate};
}

/// C := alpha A op(B) + beta C with op(B) conjugate, or with A conjugate; nothing is transposed.
template <class T>
void multiply_plain(bool conjugate_a, bool conjugate_b, Integer m, Integer n, Integer k, const T& alpha,
                    OneBasedMatrix<T> a, OneBasedMatrix<T> b, const T& beta, OneBasedMatrix<T> c) {
  const auto with = [](bool conjugate, const OneBasedMatrix<T>& x) { return conjugate ? x.transposed() : x; };
  const auto op = [](bool conjugate) { return conjugate ? Op::conjugate_transpose : Op::none; };
  multiply_matrices(op(conjugate_a), op(conjugate_b), m, n, k, alpha, with(conjugate_a, a), with(conjugate_b, b), beta,
                    c);
}

/// B := L^-1 B or conj(L)^-1 B, L lower triangular of order m.
template <class T>
void solve_lower(Diagonal diagonal, bool conjugate, Integer m, Integer n, OneBasedMatrix<T> l, OneBasedMatrix<T> b) {
  const Leaf leaf;
  if (m <= leaf.order && !leaf.in_sums) {
    const Op op = conjugate ? Op::conjugate_transpose : Op::none;
    return tesk::solve_triangular_matrix(Side::left, conjugate ? Triangle::upper : Triangle::lower, op, diagonal, m, n,
                                         T(1.0), conjugate ? l.transposed() : l, b);
  }
  if (m <= leaf.order) {
    QuarnRows rows = rows_of(m, m, l, conjugate);
    for (Integer j = 1; j < m; ++j) {
      rows.prepare(std::size_t(j - 1), std::size_t(j), std::size_t(m));
    }
    for (Integer j = 1; j <= n; ++j) {
      rows.substitute(std::size_t(m), b.column(j).first(), b.row_stride(), diagonal == Diagonal::general);
    }
    return;
  }
  const Integer half = m / 2;
  const OneBasedMatrix<T> below = b.from(half + 1, 1);
  solve_lower(diagonal, conjugate, half, n, l, b);
  multiply_plain(conjugate, false, m - half, n, half, T(-1.0), l.from(half + 1, 1), b, T(1.0), below);
  solve_lower(diagonal, conjugate, m - half, n, l.from(half + 1, half + 1), below);
}

/// B := alpha op(A)^-1 B, A m by m, or B := alpha B op(A)^-1, A n by n; B is m by n. alpha B is rounded first.
template <class T>
void solve_triangular_matrix(Side side, Triangle triangle, Op op, Diagonal diagonal, Integer m, Integer n,
                             const T& alpha, OneBasedMatrix<T> matrix, OneBasedMatrix<T> right) {
  if (m == 0 || n == 0) {
    return;
  }
  for (Integer j = 1; j <= n; ++j) {
    scale_or_clear(m, alpha, right.column(j));
  }
  if (is_zero(alpha)) {
    return;
  }
  // From the right the transposed equation is solved; an upper triangle becomes a lower one with its indices reversed.
  const bool left = side == Side::left;
  const Integer order = left ? m : n;
  const Integer others = left ? n : m;
  const bool transposed = (op != Op::none) == left;
  const bool lower = (triangle == Triangle::lower) != transposed;
  const OneBasedMatrix<T> a = transposed ? matrix.transposed() : matrix;
  const OneBasedMatrix<T> b = left ? right : right.transposed();
  solve_lower(diagonal, op == Op::conjugate_transpose, order, others, lower ? a : a.reversed(order, order),
              lower ? b : b.rows_reversed(order));
}

/// x := op(A)^-1 x, A triangular.
template <class T>
void solve_triangular(Triangle triangle, Op op, Diagonal diagonal, Integer n, OneBasedMatrix<T> a,
                      OneBasedVector<T> x) {
  solve_triangular_matrix(Side::left, triangle, op, diagonal, n, 1, T(1.0), a, {x.first(), x.stride(), 0});
}

inline void clear_imaginary(QuarnFloat& /*x*/) {}
inline void clear_imaginary(Complex& x) { x.im = QuarnFloat(); }

/// The lower triangle of C := alpha A A^H + beta C, or with A conjugate; A n by k. The diagonal comes out real.
template <class T>
void update_lower(bool conjugate, Integer n, Integer k, const T& alpha, OneBasedMatrix<T> a, const T& beta,
                  OneBasedMatrix<T> c) {
  constexpr Integer kWhole = 24;
  if (n <= kWhole) {
    // Both triangles at once, beside C.
    std::vector<T> square(std::size_t(n) * std::size_t(n));
    const OneBasedMatrix<T> both(square.data(), n);
    if (!is_zero(beta)) {
      for (Integer j = 1; j <= n; ++j) {
        copy(n - j + 1, c.column(j).from(j), both.column(j).from(j));
        clear_imaginary(both(j, j));
      }
    }
    multiply_plain(conjugate, !conjugate, n, n, k, alpha, a, a.transposed(), beta, both);
    for (Integer j = 1; j <= n; ++j) {
      clear_imaginary(both(j, j));
      copy(n - j + 1, both.column(j).from(j), c.column(j).from(j));
    }
    return;
  }
  const Integer half = n / 2;
  const OneBasedMatrix<T> below = a.from(half + 1, 1);
  update_lower(conjugate, half, k, alpha, a, beta, c);
  multiply_plain(conjugate, !conjugate, n - half, half, k, alpha, below, a.transposed(), beta, c.from(half + 1, 1));
  update_lower(conjugate, n - half, k, alpha, below, beta, c.from(half + 1, half + 1));
}

/// C := alpha A A^H + beta C (Op::none, A n by k) or alpha A^H A + beta C (A k by n) on one triangle of the Hermitian
/// matrix C; of real matrices the transpose stands for the adjoint.
template <class T>
void update_hermitian(Triangle triangle, Op op, Integer n, Integer k, const QuarnFloat& alpha, OneBasedMatrix<T> matrix,
                      const QuarnFloat& beta, OneBasedMatrix<T> result) {
  if (n == 0 || ((is_zero(alpha) || k == 0) && is_one(beta))) {
    return;
  }
  // An upper triangle is the lower one of the transposed, which is the conjugate, equation.
  const bool upper = triangle == Triangle::upper;
  const bool adjoint = op != Op::none;
  update_lower(upper != adjoint, n, k, T(alpha), adjoint ? matrix.transposed() : matrix, T(beta),
               upper ? result.transposed() : result);
}

}  // namespace tesk::exact

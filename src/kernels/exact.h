// Companions of the kernels: the same formulas, but every result is the exact value rounded once, so that the order of
// operations means nothing. The arithmetic is that of quarn/exact.h.
#pragma once

#include "quarn/exact.h"
#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk::exact {

/// op(A) as the number library takes it; conjugation is said apart.
template <class T>
QuarnMatrix<const T> operand(Op op, const OneBasedMatrix<T>& a) noexcept {
  const OneBasedMatrix<T> view = op == Op::none ? a : a.transposed();
  return {view.first(), view.row_stride(), view.column_stride()};
}

inline void multiply(std::size_t m, std::size_t n, std::size_t k, const QuarnFloat& alpha,
                     QuarnMatrix<const QuarnFloat> a, QuarnMatrix<const QuarnFloat> b, const QuarnFloat& beta,
                     QuarnMatrix<QuarnFloat> c, unsigned /*how*/) {
  QuarnMatrixProduct(m, n, k, alpha, a, b, beta, c);
}
inline void multiply(std::size_t m, std::size_t n, std::size_t k, const Complex& alpha, QuarnMatrix<const Complex> a,
                     QuarnMatrix<const Complex> b, const Complex& beta, QuarnMatrix<Complex> c, unsigned how) {
  QuarnMatrixProduct(m, n, k, alpha, a, b, beta, c, how);
}

/// C := alpha op(A) op(B) + beta C, C m by n, op(A) m by k.
template <class T>
void multiply_matrices(Op op_a, Op op_b, Integer m, Integer n, Integer k, const T& alpha, OneBasedMatrix<T> a,
                       OneBasedMatrix<T> b, const T& beta, OneBasedMatrix<T> c) {
  if (m == 0 || n == 0 || ((is_zero(alpha) || k == 0) && is_one(beta))) {
    return;
  }
  const unsigned how = (op_a == Op::conjugate_transpose ? QuarnConjugateA : 0U) |
                       (op_b == Op::conjugate_transpose ? QuarnConjugateB : 0U);
  multiply(std::size_t(m), std::size_t(n), std::size_t(k), alpha, operand(op_a, a), operand(op_b, b), beta,
           {c.first(), c.row_stride(), c.column_stride()}, how);
}

/// y := alpha op(A) x + beta y, A m by n.
template <class T>
void multiply_matrix_vector(Op op, Integer m, Integer n, const T& alpha, OneBasedMatrix<T> a, OneBasedVector<T> x,
                            const T& beta, OneBasedVector<T> y) {
  if (m == 0 || n == 0) {
    return;
  }
  const Integer rows = op == Op::none ? m : n;
  const OneBasedMatrix<T> column(x.first(), x.stride(), 0);
  const OneBasedMatrix<T> result(y.first(), y.stride(), 0);
  multiply_matrices<T>(op, Op::none, rows, 1, m + n - rows, alpha, a, column, beta, result);
}

}  // namespace tesk::exact

// What a kernel does with its scalars, for QuarnFloat and Complex alike.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/kernels/a02.h"
#include "src/kernels/options.h"

namespace tesk {

inline QuarnFloat conjugate(const QuarnFloat& x) { return x; }
inline Complex conjugate(const Complex& x) { return conj(x); }

inline bool is_zero(const QuarnFloat& x) { return x == 0; }
inline bool is_zero(const Complex& x) { return x.re == 0 && x.im == 0; }
inline bool is_one(const QuarnFloat& x) { return x == 1; }
inline bool is_one(const Complex& x) { return x.re == 1 && x.im == 0; }

/// The magnitude that pivots are chosen by: |x|, or |re| + |im|.
inline QuarnFloat magnitude(const QuarnFloat& x) { return fabs(x); }
inline QuarnFloat magnitude(const Complex& x) { return fabs(x.re) + fabs(x.im); }

/// The modulus, without scaling.
inline QuarnFloat modulus(const QuarnFloat& x) { return fabs(x); }
inline QuarnFloat modulus(const Complex& x) { return sqrt(x.re * x.re + x.im * x.im); }

inline QuarnFloat quotient(const QuarnFloat& a, const QuarnFloat& b) { return a / b; }
inline Complex quotient(const Complex& a, const Complex& b) {
  Complex z;
  divide(a.re, a.im, b.re, b.im, &z.re, &z.im);
  return z;
}

/// x := a x
inline void multiply_by(QuarnFloat& x, const QuarnFloat& a) { x *= a; }
inline void multiply_by(Complex& x, const Complex& a) { x = a * x; }
inline void multiply_by(Complex& x, const QuarnFloat& a) {
  x.re *= a;
  x.im *= a;
}

/// sum := sum + op_a(a) op_b(b), where an operation conjugates or does not.
template <class T>
void add_product(T& sum, Op op_a, const T& a, Op op_b, const T& b) {
  QuarnAddProduct(sum, a, b,
                  (op_a == Op::conjugate_transpose ? QuarnConjugateA : 0U) |
                      (op_b == Op::conjugate_transpose ? QuarnConjugateB : 0U));
}
/// sum := sum + a b
template <class T>
void add_product(T& sum, const T& a, const T& b) {
  QuarnAddProduct(sum, a, b);
}
/// sum := sum - op(a) b
template <class T>
void subtract_product(T& sum, Op op, const T& a, const T& b) {
  QuarnAddProduct(sum, a, b, QuarnSubtract | (op == Op::conjugate_transpose ? QuarnConjugateA : 0U));
}
/// sum := sum - a b
template <class T>
void subtract_product(T& sum, const T& a, const T& b) {
  QuarnAddProduct(sum, a, b, QuarnSubtract);
}

}  // namespace tesk

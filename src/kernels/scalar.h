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

/// sum := sum + a b
inline void add_product(QuarnFloat& sum, const QuarnFloat& a, const QuarnFloat& b) { sum += a * b; }
inline void add_product(Complex& sum, const Complex& a, const Complex& b) {
  sum.re += a.re * b.re - a.im * b.im;
  sum.im += a.re * b.im + a.im * b.re;
}
/// sum := sum - a b
inline void subtract_product(QuarnFloat& sum, const QuarnFloat& a, const QuarnFloat& b) { sum -= a * b; }
inline void subtract_product(Complex& sum, const Complex& a, const Complex& b) {
  sum.re -= a.re * b.re - a.im * b.im;
  sum.im -= a.re * b.im + a.im * b.re;
}

/// sum := sum + op_a(a) op_b(b), as conjugates; nothing is copied for it.
inline void add_product(QuarnFloat& sum, Op /*op_a*/, const QuarnFloat& a, Op /*op_b*/, const QuarnFloat& b) {
  add_product(sum, a, b);
}
inline void add_product(Complex& sum, Op op_a, const Complex& a, Op op_b, const Complex& b) {
  if ((op_a == Op::conjugate) == (op_b == Op::conjugate)) {
    sum.re += a.re * b.re - a.im * b.im;
    const QuarnFloat im = a.re * b.im + a.im * b.re;
    if (op_a == Op::conjugate) {
      sum.im -= im;
    } else {
      sum.im += im;
    }
    return;
  }
  sum.re += a.re * b.re + a.im * b.im;
  if (op_a == Op::conjugate) {
    sum.im += a.re * b.im - a.im * b.re;
  } else {
    sum.im += a.im * b.re - a.re * b.im;
  }
}
/// sum := sum - op(a) b
inline void subtract_product(QuarnFloat& sum, Op /*op*/, const QuarnFloat& a, const QuarnFloat& b) {
  subtract_product(sum, a, b);
}
inline void subtract_product(Complex& sum, Op op, const Complex& a, const Complex& b) {
  if (op != Op::conjugate) {
    return subtract_product(sum, a, b);
  }
  sum.re -= a.re * b.re + a.im * b.im;
  sum.im -= a.re * b.im - a.im * b.re;
}

}  // namespace tesk

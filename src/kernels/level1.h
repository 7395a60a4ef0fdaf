// Level-1 kernels over OneBasedVector: C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra
// subprograms for Fortran usage, ACM Trans. Math. Softw. 5 (1979). n < 1 does nothing.
#pragma once

#include <utility>

#include "src/kernels/options.h"
#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk {

/// The index of the first element of largest magnitude, 0 when there is none.
template <class T>
Integer index_of_largest(Integer n, OneBasedVector<T> x) {
  if (n < 1) {
    return 0;
  }
  Integer index = 1;
  QuarnFloat largest = magnitude(x(1));
  for (Integer i = 2; i <= n; ++i) {
    QuarnFloat candidate = magnitude(x(i));
    if (candidate > largest) {
      largest = std::move(candidate);
      index = i;
    }
  }
  return index;
}

template <class T>
void swap_vectors(Integer n, OneBasedVector<T> x, OneBasedVector<T> y) {
  for (Integer i = 1; i <= n; ++i) {
    std::swap(x(i), y(i));
  }
}

/// x := alpha x, with a real or complex factor.
template <class T, class Factor>
void scale(Integer n, const Factor& alpha, OneBasedVector<T> x) {
  for (Integer i = 1; i <= n; ++i) {
    multiply_by(x(i), alpha);
  }
}

template <class T>
void copy(Integer n, OneBasedVector<T> x, OneBasedVector<T> y) {
  for (Integer i = 1; i <= n; ++i) {
    y(i) = x(i);
  }
}

template <class T>
void fill(Integer n, const T& value, OneBasedVector<T> x) {
  for (Integer i = 1; i <= n; ++i) {
    x(i) = value;
  }
}

/// x := beta x as the matrix kernels understand it: a zero factor sets zeros and does not read x, a one does nothing.
template <class T, class Factor>
void scale_or_clear(Integer n, const Factor& beta, OneBasedVector<T> x) {
  if (is_zero(beta)) {
    fill(n, T(), x);
  } else if (!is_one(beta)) {
    scale(n, beta, x);
  }
}

template <class T>
void conjugate_vector(Integer n, OneBasedVector<T> x) {
  for (Integer i = 1; i <= n; ++i) {
    x(i) = conjugate(x(i));
  }
}

/// y := y + alpha x
template <class T>
void add_multiple(Integer n, const T& alpha, OneBasedVector<T> x, OneBasedVector<T> y) {
  for (Integer i = 1; i <= n; ++i) {
    add_product(y(i), alpha, x(i));
  }
}

/// The sum of op(x_i) y_i in the order of i; Op::conjugate_transpose conjugates x.
template <class T>
T dot(Integer n, OneBasedVector<T> x, OneBasedVector<T> y, Op op = Op::none) {
  T sum{};
  for (Integer i = 1; i <= n; ++i) {
    add_product(sum, op, x(i), Op::none, y(i));
  }
  return sum;
}

/// scale^2 sumsq := scale^2 sumsq + sum of x_i^2 without overflow; a complex element counts as its two parts.
void add_squares(Integer n, OneBasedVector<QuarnFloat> x, QuarnFloat& scale, QuarnFloat& sumsq);
void add_squares(Integer n, OneBasedVector<Complex> x, QuarnFloat& scale, QuarnFloat& sumsq);

/// The quotient, kept inside the range of the hardware double, and whether it had to be.
struct SafeQuotient {
  QuarnFloat value;
  bool failed;
};

/// a / b guarded against overflow and underflow on the range of the hardware double, whatever the working precision:
/// - a = 0: 0, which fails only when b = 0 as well;
/// - b = 0, or |a / b| above 4.49423283715578e+307: that bound with the sign of the quotient (b = 0 counts as
///   positive), failed;
/// - |a / b| below 2.22507385850722e-308: 0, not failed;
/// - otherwise the quotient.
SafeQuotient safe_divide(const QuarnFloat& a, const QuarnFloat& b);

}  // namespace tesk

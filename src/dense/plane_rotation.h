// Plane rotations of rows and columns, real and complex.
#pragma once

#include <utility>

#include "quarn/complex.h"
#include "src/dense/rotation.h"

namespace tesk {

/// The rotation (c, s; -conj(s), c), c real, that takes (f, g) to (r, 0).
struct ComplexRotation {
  QuarnFloat c;
  Complex s;
  Complex r;

  ComplexRotation(const Complex& f, const Complex& g) : c(1), r(f) {
    if (is_zero(g)) {
      return;
    }
    const QuarnFloat g_size = length_of(g.re, g.im);
    if (is_zero(f)) {
      c = 0;
      s = conj(g);
      multiply_by(s, 1 / g_size);
      r = Complex(g_size);
      return;
    }
    const QuarnFloat f_size = length_of(f.re, f.im);
    const QuarnFloat size = length_of(f_size, g_size);
    c = f_size / size;
    Complex direction = f;
    multiply_by(direction, 1 / f_size);
    s = conj(g) * direction;
    multiply_by(s, 1 / size);
    r = direction;
    multiply_by(r, size);
  }

  /// x := c x + s y, y := c y - conj(s) x
  void apply(Integer n, OneBasedVector<Complex> x, OneBasedVector<Complex> y) const {
    for (Integer i = 1; i <= n; ++i) {
      Complex turned = x(i);
      multiply_by(turned, c);
      add_product(turned, s, y(i));
      multiply_by(y(i), c);
      subtract_product(y(i), Op::conjugate_transpose, s, x(i));
      x(i) = std::move(turned);
    }
  }
  /// The adjoint from the right: x := c x + conj(s) y, y := c y - s x
  void apply_adjoint(Integer n, OneBasedVector<Complex> x, OneBasedVector<Complex> y) const {
    for (Integer i = 1; i <= n; ++i) {
      Complex turned = x(i);
      multiply_by(turned, c);
      add_product(turned, Op::conjugate_transpose, s, Op::none, y(i));
      multiply_by(y(i), c);
      subtract_product(y(i), s, x(i));
      x(i) = std::move(turned);
    }
  }
};

/// The same of real numbers.
struct RealRotation : Rotation {
  using Rotation::Rotation;

  void apply(Integer n, OneBasedVector<QuarnFloat> x, OneBasedVector<QuarnFloat> y) const { rotate(n, x, y, c, s); }
  void apply_adjoint(Integer n, OneBasedVector<QuarnFloat> x, OneBasedVector<QuarnFloat> y) const {
    rotate(n, x, y, c, s);
  }
};

template <class T>
struct PlaneRotationOf {
  using Type = RealRotation;
};
template <>
struct PlaneRotationOf<Complex> {
  using Type = ComplexRotation;
};
template <class T>
using PlaneRotation = typename PlaneRotationOf<T>::Type;

}  // namespace tesk

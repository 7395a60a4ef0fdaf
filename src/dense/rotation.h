// Plane rotations of real and complex vectors by real angles.
#pragma once

#include "quarn/functions.h"
#include "src/dense/reflector.h"
#include "src/kernels/safe_range.h"

namespace tesk {

/// sqrt(f^2 + g^2), where the squares leave the range too.
inline QuarnFloat length_of(const QuarnFloat& f, const QuarnFloat& g) {
  QuarnFloat length = sqrt(f * f + g * g);
  return is_within(length, kFarthestSquared) ? length : hypot(f, g);
}

/// The rotation that takes (f, g) to (r, 0), r with the sign of f.
struct Rotation {
  QuarnFloat c;
  QuarnFloat s;
  QuarnFloat r;

  Rotation(const QuarnFloat& f, const QuarnFloat& g) : c(1), r(f) {
    if (g == 0) {
      return;
    }
    if (f == 0) {
      c = 0;
      s = 1;
      r = g;
      return;
    }
    r = with_sign(length_of(f, g), f);
    const QuarnFloat inverse = 1 / r;
    c = f * inverse;
    s = g * inverse;
  }
};

/// The plane rotation of two vectors: x := c x + s y, y := c y - s x.
inline void rotate(Integer n, OneBasedVector<Complex> x, OneBasedVector<Complex> y, const QuarnFloat& c,
                   const QuarnFloat& s) {
  if (n > 0) {
    const std::ptrdiff_t dx = 2 * x.stride();
    const std::ptrdiff_t dy = 2 * y.stride();
    rotate(n, OneBasedVector<QuarnFloat>(&x.first()->re, dx), OneBasedVector<QuarnFloat>(&y.first()->re, dy), c, s);
    rotate(n, OneBasedVector<QuarnFloat>(&x.first()->im, dx), OneBasedVector<QuarnFloat>(&y.first()->im, dy), c, s);
  }
}

}  // namespace tesk

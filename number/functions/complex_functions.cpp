// Modulus squared, projection and polar form of complex numbers.
#include "number/functions/support.h"
#include "quarn/complex.h"
#include "quarn/exact.h"

namespace quarn {

QuarnFloat norm(const Complex& z) {
  if (isinf(z.re) || isinf(z.im)) {
    return special(Kind::infinite);
  }
  const QuarnFloat parts[] = {z.re, z.im};
  return QuarnDot(2, parts, 1, parts, 1);
}

Complex proj(const Complex& z) {
  if (isinf(z.re) || isinf(z.im)) {
    return {special(Kind::infinite), special(Kind::zero, signbit(z.im))};
  }
  return z;
}

Complex polar(const QuarnFloat& rho, const QuarnFloat& theta) {
  if (kind_of(theta) == Kind::zero) {
    return {rho, kind_of(rho) == Kind::zero ? QuarnFloat() : theta};
  }
  const int digits = QuarnDigits();
  const Complex point = [&] {
    const WorkingDigits scope(digits + 8);
    return Complex(rho * ::cos(theta), rho * ::sin(theta));
  }();
  return {rounded(point.re, digits), rounded(point.im, digits)};
}

}  // namespace quarn

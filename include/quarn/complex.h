// Elementary functions of complex numbers, under the names of <complex>, and special functions.
//
// Each part of a result is within one unit in its last place, near zeros, poles and branch points too; of pow that
// holds for the modulus: a part may be off by a unit of the last place of the larger one. Branch cuts are those of C:
// along a cut the sign of a zero part says from which side; functions without cuts give zero parts any sign. Real
// arguments (imaginary part zero) with real results give them as the functions of QuarnFloat do. Parts that are
// infinite or NaN give results with such parts.
//
// W. Kahan, Branch cuts for complex elementary functions, in: The State of the Art in Numerical Analysis (1987).
#pragma once

#include "quarn/quarnfloat.h"

namespace quarn {

/// |z|, without overflow unless it overflows itself.
QRNFLOAT_API QuarnFloat abs(const Complex& z);
/// -pi ... pi
QRNFLOAT_API QuarnFloat arg(const Complex& z);

QRNFLOAT_API Complex sqrt(const Complex& z);
QRNFLOAT_API Complex exp(const Complex& z);
/// The principal logarithms.
QRNFLOAT_API Complex log(const Complex& z);
QRNFLOAT_API Complex log10(const Complex& z);
/// The principal power. Whole w up to a million by repeated products: Gaussian integers that fit are exact. Anything to
/// the power 0 is 1.
QRNFLOAT_API Complex pow(const Complex& z, const Complex& w);

QRNFLOAT_API Complex sin(const Complex& z);
QRNFLOAT_API Complex cos(const Complex& z);
QRNFLOAT_API Complex tan(const Complex& z);
QRNFLOAT_API Complex sinh(const Complex& z);
QRNFLOAT_API Complex cosh(const Complex& z);
QRNFLOAT_API Complex tanh(const Complex& z);

QRNFLOAT_API Complex asin(const Complex& z);
QRNFLOAT_API Complex acos(const Complex& z);
QRNFLOAT_API Complex atan(const Complex& z);
QRNFLOAT_API Complex asinh(const Complex& z);
QRNFLOAT_API Complex acosh(const Complex& z);
QRNFLOAT_API Complex atanh(const Complex& z);

// Special functions ------------------------------------------------------------------------------------------------
//
// Where the exponent of a result is beyond the range and its angle is not known, the parts are infinity and NaN. A part
// that is zero to some eight times as many digits as it was asked for beside the other one is as good as that.

/// The gamma function; NaN at its poles.
[[nodiscard]] QRNFLOAT_API Complex tgamma(const Complex& z);
/// log Gamma(z), continuous but for the cut along the negative real axis: the imaginary part is not reduced to -pi ...
/// pi.
[[nodiscard]] QRNFLOAT_API Complex lgamma(const Complex& z);
/// The logarithmic derivative of the gamma function; NaN at its poles.
[[nodiscard]] QRNFLOAT_API Complex digamma(const Complex& z);
/// 2 / sqrt(pi) times the integral of exp(-t^2) from 0 to z.
[[nodiscard]] QRNFLOAT_API Complex erf(const Complex& z);
/// 1 - erf(z), with all its digits in the right half plane.
[[nodiscard]] QRNFLOAT_API Complex erfc(const Complex& z);

// The rest of <complex> --------------------------------------------------------------------------------------------

inline Complex& operator+=(Complex& a, const Complex& b) { return a = a + b; }
inline Complex& operator-=(Complex& a, const Complex& b) { return a = a - b; }
inline Complex& operator*=(Complex& a, const Complex& b) { return a = a * b; }
inline Complex& operator/=(Complex& a, const Complex& b) { return a = a / b; }

[[nodiscard]] inline QuarnFloat real(const Complex& z) { return z.re; }
[[nodiscard]] inline QuarnFloat imag(const Complex& z) { return z.im; }
/// re^2 + im^2 with one rounding.
[[nodiscard]] QRNFLOAT_API QuarnFloat norm(const Complex& z);
/// The projection onto the Riemann sphere: one infinity for all.
[[nodiscard]] QRNFLOAT_API Complex proj(const Complex& z);
/// rho e^(i theta)
[[nodiscard]] QRNFLOAT_API Complex polar(const QuarnFloat& rho, const QuarnFloat& theta = QuarnFloat());

}  // namespace quarn

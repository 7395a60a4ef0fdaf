// Functions of QuarnFloat beyond those of quarnfloat.h, under the names of <cmath>, and special functions.
//
// Every result is the exact one rounded half to even to QuarnDigits() digits, unless a line says otherwise; the bounds
// behind that are in docs/accuracy.md. Arguments may have more digits than that. NaN gives NaN; arguments outside of
// the domain do too. Results beyond the range of exponents become infinity or zero.
#pragma once

#include "quarn/quarnfloat.h"

// Exponentials and logarithms ------------------------------------------------------------------------------------

/// e^x - 1, with all its digits near zero.
[[nodiscard]] QRNFLOAT_API QuarnFloat expm1(const QuarnFloat& x);
/// 2^x; whole powers that fit are exact.
[[nodiscard]] QRNFLOAT_API QuarnFloat exp2(const QuarnFloat& x);
/// 10^x; whole powers are exact.
[[nodiscard]] QRNFLOAT_API QuarnFloat exp10(const QuarnFloat& x);
/// log(1 + x), with all its digits near zero; -1 gives -infinity.
[[nodiscard]] QRNFLOAT_API QuarnFloat log1p(const QuarnFloat& x);
/// The logarithm to base 2, exact for powers of two.
[[nodiscard]] QRNFLOAT_API QuarnFloat log2(const QuarnFloat& x);

// Roots ----------------------------------------------------------------------------------------------------------

/// The cube root, of negative numbers too.
[[nodiscard]] QRNFLOAT_API QuarnFloat cbrt(const QuarnFloat& x);
/// sqrt(x^2 + y^2), which overflows only when the result does; infinity if either is infinite, the other NaN or not.
[[nodiscard]] QRNFLOAT_API QuarnFloat hypot(const QuarnFloat& x, const QuarnFloat& y);

// Inverse hyperbolic functions -----------------------------------------------------------------------------------

[[nodiscard]] QRNFLOAT_API QuarnFloat asinh(const QuarnFloat& x);
/// x >= 1
[[nodiscard]] QRNFLOAT_API QuarnFloat acosh(const QuarnFloat& x);
/// |x| <= 1; the ends give infinities.
[[nodiscard]] QRNFLOAT_API QuarnFloat atanh(const QuarnFloat& x);

// Angles in units of pi ------------------------------------------------------------------------------------------

/// sin(pi x) for x of any size; whole numbers give zero with the sign of x.
[[nodiscard]] QRNFLOAT_API QuarnFloat sinpi(const QuarnFloat& x);
/// cos(pi x) for x of any size; halves give +0.
[[nodiscard]] QRNFLOAT_API QuarnFloat cospi(const QuarnFloat& x);
/// tan(pi x) for x of any size; n + 1/2 gives +infinity for even n, -infinity for odd n.
[[nodiscard]] QRNFLOAT_API QuarnFloat tanpi(const QuarnFloat& x);
/// asin(x) / pi, |x| <= 1
[[nodiscard]] QRNFLOAT_API QuarnFloat asinpi(const QuarnFloat& x);
/// acos(x) / pi, |x| <= 1
[[nodiscard]] QRNFLOAT_API QuarnFloat acospi(const QuarnFloat& x);
/// atan(x) / pi
[[nodiscard]] QRNFLOAT_API QuarnFloat atanpi(const QuarnFloat& x);

// Parts and neighbours -------------------------------------------------------------------------------------------

/// The nearest whole number, halves away from zero.
[[nodiscard]] QRNFLOAT_API QuarnFloat round(const QuarnFloat& x);
/// The nearest whole number, halves to the even one.
[[nodiscard]] QRNFLOAT_API QuarnFloat rint(const QuarnFloat& x);
[[nodiscard]] inline QuarnFloat nearbyint(const QuarnFloat& x) { return rint(x); }
/// Stores trunc(x) into *whole and returns the rest, which has the sign of x.
QRNFLOAT_API QuarnFloat modf(const QuarnFloat& x, QuarnFloat* whole);
/// a - n b for the whole n next to a / b, the even one of two: exact before the one rounding at the end, however large
/// n is. A result of zero has the sign of a.
[[nodiscard]] QRNFLOAT_API QuarnFloat remainder(const QuarnFloat& a, const QuarnFloat& b);
/// a b + c with one rounding.
[[nodiscard]] QRNFLOAT_API QuarnFloat fma(const QuarnFloat& a, const QuarnFloat& b, const QuarnFloat& c);
/// The smaller one, rounded; of a number and NaN the number; of zeros the negative one.
[[nodiscard]] QRNFLOAT_API QuarnFloat fmin(const QuarnFloat& x, const QuarnFloat& y);
/// The larger one, rounded; of a number and NaN the number; of zeros the positive one.
[[nodiscard]] QRNFLOAT_API QuarnFloat fmax(const QuarnFloat& x, const QuarnFloat& y);
/// x - y where that is positive, otherwise 0.
[[nodiscard]] QRNFLOAT_API QuarnFloat fdim(const QuarnFloat& x, const QuarnFloat& y);
/// |x| with the sign of y, not rounded.
[[nodiscard]] inline QuarnFloat copysign(const QuarnFloat& x, const QuarnFloat& y) noexcept(noexcept(-x)) {
  return signbit(x) == signbit(y) ? x : -x;
}
/// x 2^power.
[[nodiscard]] QRNFLOAT_API QuarnFloat ldexp(const QuarnFloat& x, int power);
/// m and *power with x = m 2^power, 1/2 <= |m| < 1 before m is rounded. Zero, infinity and NaN give themselves and 0;
/// beyond 2^+-2147483647 the power is that and m what is left.
QRNFLOAT_API QuarnFloat frexp(const QuarnFloat& x, int* power);
/// x 10^power: the base of these numbers is ten.
[[nodiscard]] QRNFLOAT_API QuarnFloat scalbn(const QuarnFloat& x, int power);
/// e where |x| = d.ddd 10^e; -infinity for zero, infinity for infinity.
[[nodiscard]] QRNFLOAT_API QuarnFloat logb(const QuarnFloat& x);
/// The same as an integer: INT32_MIN for zero, INT32_MAX for infinity and NaN.
[[nodiscard]] QRNFLOAT_API int ilogb(const QuarnFloat& x) noexcept;
/// The number of QuarnDigits() digits next to x in the direction of y; y, rounded, when they are equal. There are no
/// subnormal numbers: next to zero is 10^-999999999.
[[nodiscard]] QRNFLOAT_API QuarnFloat nextafter(const QuarnFloat& x, const QuarnFloat& y);

// Special functions ----------------------------------------------------------------------------------------------

/// The gamma function. +-0 gives +-infinity, a negative whole number NaN. The first call at so many digits computes the
/// coefficients of its series, in time that grows with the third power of the digits: some 0.05 s at 1000.
[[nodiscard]] QRNFLOAT_API QuarnFloat tgamma(const QuarnFloat& x);
/// log |Gamma(x)|; infinity at zero and the negative whole numbers.
[[nodiscard]] QRNFLOAT_API QuarnFloat lgamma(const QuarnFloat& x);
/// The logarithmic derivative of the gamma function; NaN at zero and the negative whole numbers.
[[nodiscard]] QRNFLOAT_API QuarnFloat digamma(const QuarnFloat& x);
/// Gamma(x) Gamma(y) / Gamma(x + y), by its limit where that is finite.
[[nodiscard]] QRNFLOAT_API QuarnFloat beta(const QuarnFloat& x, const QuarnFloat& y);
/// n! for a whole n >= 0, otherwise NaN.
[[nodiscard]] QRNFLOAT_API QuarnFloat factorial(const QuarnFloat& n);
/// x (x - 1) ... (x - k + 1) / k! for a whole k, 0 if k < 0; otherwise NaN.
[[nodiscard]] QRNFLOAT_API QuarnFloat binomial(const QuarnFloat& x, const QuarnFloat& k);
/// 2 / sqrt(pi) times the integral of exp(-t^2) from 0 to x.
[[nodiscard]] QRNFLOAT_API QuarnFloat erf(const QuarnFloat& x);
/// 1 - erf(x), with all its digits for large x.
[[nodiscard]] QRNFLOAT_API QuarnFloat erfc(const QuarnFloat& x);

// Approximations to any number of digits, from which the public functions round.
//
// Every function takes w and delivers a value whose relative error is below 10^-w (its own digits may be more). The
// arguments are finite and not zero, of any length and size, unless a line says otherwise. None of them looks at the
// working digits of the caller or changes them.
#pragma once

#include "number/scalar/access.h"

namespace quarn {

QuarnFloat approximate_pi(int w);
QuarnFloat approximate_ln10(int w);
QuarnFloat approximate_ln2(int w);

/// x is at most 10^10 in magnitude; overflow gives infinity, underflow zero.
QuarnFloat approximate_exp(const QuarnFloat& x, int w);

/// x is positive and not 1.
QuarnFloat approximate_log(const QuarnFloat& x, int w);

struct SinCos {
  QuarnFloat sin;
  QuarnFloat cos;
};

/// x is below 10^kMaxAngleExponent in magnitude.
SinCos approximate_sin_cos(const QuarnFloat& x, int w);

QuarnFloat approximate_atan(const QuarnFloat& x, int w);

/// The largest decimal exponent of an angle that sin, cos and tan reduce: beyond, they would need pi to more digits
/// than can sensibly be had, and give NaN.
inline constexpr std::int64_t kMaxAngleExponent = 1'000'000;

/// floor(log10 |x|) of a finite number that is not zero.
inline std::int64_t scientific_exponent(const QuarnFloat& x) noexcept { return view_of(x).exponent - 1; }

/// The nearest double of 0.L0L1... (the number without its power of ten), to some 15 digits.
double leading_fraction(const QuarnFloat& x) noexcept;

}  // namespace quarn

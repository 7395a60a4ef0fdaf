// From an approximation to the correctly rounded result.
#pragma once

#include <optional>

#include "number/elementary/approximate.h"

namespace quarn {

/// Whether every number within 10^-w (relative) of the approximation rounds alike to `digits` digits, digits < w.
bool rounds_safely(const QuarnFloat& approximation, int digits, int w) noexcept;

/// The same for 0.L0 L1 ..., L0 not zero, any number of digits.
bool rounds_safely(const Limb* limbs, std::size_t length, int digits, int w) noexcept;

/// Ziv's strategy (1991, "Fast evaluation of elementary mathematical functions with correctly rounded last bit"):
/// approximate(w) delivers the result to a relative error of 10^-w; it is asked for more digits until the rounding is
/// decided. The exact result must not be a number of up to digits + 1 digits, or this would not end.
template <class Approximate>
QuarnFloat correctly_rounded(const Approximate& approximate) {
  const int digits = QuarnDigits();
  // Five digits more are undecided in one call of 25 000.
  for (int extra = 6;; extra *= 3) {
    const QuarnFloat y = approximate(digits + extra);
    if (kind_of(y) != Kind::finite || rounds_safely(y, digits, digits + extra)) {
      return rounded(y, digits);
    }
  }
}

/// x (1 + d) correctly rounded, for an unknown d, 0 < |d| < 10^exponent, d < 0 where `towards_zero` says so; nothing
/// when d is not small enough to be settled this way. x is finite and not zero.
std::optional<QuarnFloat> perturbed(const QuarnFloat& x, std::int64_t exponent, bool towards_zero);

}  // namespace quarn

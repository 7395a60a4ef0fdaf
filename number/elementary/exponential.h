// What exponentials to all bases share.
#pragma once

#include <optional>

#include "number/elementary/approximate.h"

namespace quarn {

/// Every exponential of a larger argument is outside the range of exponents, to the bases e and 2; to base 10 from one
/// place less on.
inline constexpr int kExpOverflowExponent = 10;

/// NaN, infinity and zero for a function that has exp's limits and the value 1 at zero, and arguments with so many
/// places before the point that the result overflows.
inline std::optional<QuarnFloat> exponential_of_special(const QuarnFloat& x, int overflow_exponent) {
  switch (kind_of(x)) {
    case Kind::nan:
      return x;
    case Kind::infinite:
      return signbit(x) ? special(Kind::zero) : x;
    case Kind::zero:
      return QuarnFloat(1);
    default:
      break;
  }
  if (scientific_exponent(x) >= overflow_exponent) {
    return special(signbit(x) ? Kind::zero : Kind::infinite);
  }
  return std::nullopt;
}

}  // namespace quarn

// Division of a limb by a power of ten without a division instruction.
#pragma once

#include <array>
#include <bit>
#include <limits>

#include "number/limbs/radix.h"

namespace quarn {

/// The product's upper half.
template <class R>
[[gnu::always_inline]] inline typename R::Limb multiply_high(typename R::Limb a, typename R::Limb b) {
  return typename R::Limb((typename R::Wide(a) * b) >> std::numeric_limits<typename R::Limb>::digits);
}

/// 10^k, 0 <= k <= R::digits, with its reciprocal.
///
/// With 2^s <= 10^k < 2^(s+1) and W bits in a limb, the reciprocal is 2^(W-1+s) / 10^k rounded up, below 10^k / 10^k
/// too large after multiplying back; since that excess times x stays below 2^(W-1+s) for every x < 2^(W-2), the
/// quotient's whole part is exact for such x (Granlund and Montgomery, Division by invariant integers, 1994).
template <class R>
struct PowerOfTen {
  using Limb = typename R::Limb;
  Limb value;
  Limb reciprocal;
  int shift;

  [[gnu::always_inline]] Limb quotient(Limb x) const { return multiply_high<R>(x << 1, reciprocal) >> shift; }
};

template <class R>
inline constexpr std::array<PowerOfTen<R>, R::digits + 1> kPowersOfTen = [] {
  using LimbType = typename R::Limb;
  using Wide = typename R::Wide;
  constexpr int kBits = std::numeric_limits<LimbType>::digits;
  static_assert(R::base <= LimbType(1) << (kBits - 2));
  std::array<PowerOfTen<R>, R::digits + 1> table{};
  for (int k = 0; k <= R::digits; ++k) {
    const LimbType power = R::powers[std::size_t(k)];
    const int shift = std::bit_width(power) - 1;
    table[std::size_t(k)] = {power, LimbType(((Wide(1) << (kBits - 1 + shift)) + power - 1) / power), shift};
  }
  return table;
}();

/// The number of decimal digits of x < base, 0 for 0.
template <class R>
[[gnu::always_inline]] inline int count_digits(typename R::Limb x) {
  // 1233 / 4096 is close enough to log10(2) from above; the table settles the rest.
  const int guess = (std::bit_width(x) * 1233) >> 12;
  return guess + int(x >= R::powers[std::size_t(guess)]);
}

}  // namespace quarn

// Division of double-width values by one limb, and by the radix, through reciprocals.
#pragma once

#include <type_traits>

#include "number/limbs/powers.h"

namespace quarn {

/// x = quotient * base + remainder.
template <class R>
struct Parted {
  typename R::Wide quotient;
  typename R::Limb remainder;
};

#if QUARN_LIMB_BITS == 64

/// floor(x / base) or one less, for x < 2^123: x / 2^59 loses 0.58, the reciprocal 0.23.
[[gnu::always_inline]] inline Radix64::Limb reduce(Radix64::Wide x) {
  constexpr auto kReciprocal = Radix64::Limb((Radix64::Wide(1) << 123) / Radix64::base);
  return multiply_high<Radix64>(Radix64::Limb(x >> 59), kReciprocal);
}

#endif

template <class R>
[[gnu::always_inline]] inline Parted<R> part(typename R::Wide x) {
#if QUARN_LIMB_BITS == 64
  if constexpr (std::is_same_v<R, Radix64>) {
    typename R::Wide whole = 0;
    if (x >> 123 != 0) [[unlikely]] {
      // The upper word alone gives the quotient but for some 30 units.
      whole = ((x >> 64) * Radix64::Limb((Radix64::Wide(1) << 123) / Radix64::base)) >> 59;
      x -= whole * R::base;
    }
    const auto quotient = reduce(x);
    const auto remainder = typename R::Limb(x) - quotient * R::base;
    const typename R::Limb more = remainder >= R::base;
    return {whole + quotient + more, remainder - (R::base & -more)};
  }
#endif
  return {x / R::base, typename R::Limb(x % R::base)};
}

/// Divides by a limb that is not zero, for quotients below 8 bases.
template <class R>
class LimbDivider {
 public:
  using Limb = typename R::Limb;
  using Wide = typename R::Wide;

  explicit LimbDivider(Limb divisor) : divisor_(divisor) {}
  /// floor(x / divisor).
  Wide quotient(Wide x) const { return x / divisor_; }

 private:
  Limb divisor_;
};

#if QUARN_LIMB_BITS == 64

/// floor((2^128 - 1) / d) - 2^64 for d >= 2^63.
inline Radix64::Limb reciprocal_word(Radix64::Limb d) {
#if defined(__x86_64__)
  Radix64::Limb quotient = 0;
  Radix64::Limb remainder = ~d;
  __asm__("divq %2" : "=a"(quotient), "+d"(remainder) : "rm"(d), "0"(~Radix64::Limb(0)) : "cc");
  return quotient;
#else
  return Radix64::Limb(((Radix64::Wide(~d) << 64) | ~Radix64::Limb(0)) / d);
#endif
}

/// Moeller and Granlund, Improved division by invariant integers (2011).
template <>
class LimbDivider<Radix64> {
 public:
  using Limb = Radix64::Limb;
  using Wide = Radix64::Wide;

  explicit LimbDivider(Limb divisor)
      : divisor_(divisor), shift_(std::countl_zero(divisor)), reciprocal_(reciprocal_word(divisor << shift_)) {}
  /// For `below` alone: the divisor is word / 2^shift, word >= 2^63.
  LimbDivider(Limb word, int shift) : divisor_(0), shift_(shift), reciprocal_(reciprocal_word(word)) {}
  /// floor(x / divisor) or at most 3 less, for a quotient below 2^63.
  [[gnu::always_inline]] Limb below(Wide x) const {
    const Wide scaled = x << shift_;
    const Limb front = Limb(scaled >> 64);
    return front + Limb((Wide(front) * reciprocal_ + Limb(scaled)) >> 64);
  }
  Limb quotient(Wide x) const {
    Limb estimate = below(x);
    for (Wide rest = x - Wide(estimate) * divisor_; rest >= divisor_; rest -= divisor_) {
      ++estimate;
    }
    return estimate;
  }

 private:
  Limb divisor_;
  int shift_;
  Limb reciprocal_;
};

#endif

}  // namespace quarn

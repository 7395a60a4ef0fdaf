// A coefficient that is known in full, rounded into a number that stands already.
#pragma once

#include <algorithm>
#include <cstdint>

#include "number/limbs/divider.h"
#include "number/limbs/fixed.h"
#include "number/limbs/linear.h"
#include "number/scalar/access.h"
#include "number/scalar/precision.h"

namespace quarn::exact {

/// result := (-1)^negative * 0.limbs * 10^exponent, rounded. Limbs in front may be zero, all of them too (+0 then).
inline void store_slowly(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs,
                         std::size_t length, int digits) {
  result =
      all_zero<Radix>(limbs, length) ? special(Kind::zero) : rounded(negative, exponent, limbs, length, false, digits);
}

#if QUARN_LIMB_BITS == 64

/// The same where N limbs hold the digits and decide; false, and nothing done, where they do not. limbs[0] is not zero;
/// the last of `known` limbs may be off by less than `doubt` units.
template <int N>
[[gnu::always_inline]] inline bool store_known(QuarnFloat& result, bool negative, std::int64_t exponent,
                                               const Limb* limbs, std::size_t known, const fixed::Cut& cut,
                                               Limb doubt) {
  const bool more = known > N;
  Limb s[N + 1];
  if (known >= N) [[likely]] {
#pragma GCC unroll 9
    for (int i = 0; i < N; ++i) {
      s[i] = limbs[i];
    }
    s[N] = more ? limbs[N] : 0;
  } else {
    if (doubt != 0) {
      return false;
    }
    for (std::size_t i = 0; i <= N; ++i) {
      s[i] = i < known ? limbs[i] : 0;
    }
  }
  const int zeros = Radix::digits - count_digits<Radix>(s[0]);
  fixed::move_left<N + 1>(s, zeros);
  exponent -= zeros;
  const Limb rest = s[N - 1] - cut.unit.quotient(s[N - 1]) * cut.unit.value;
  if (rest == cut.half) [[unlikely]] {
    return false;
  }
  if (doubt != 0) {
    // At most a twentieth of a unit, so that it does not matter whether the exact total is just below a power of ten.
    const auto moved = fixed::Wide(known > N + 1 ? 1 : doubt) * Radix::powers[std::size_t(zeros)];
    const Limb off = !more ? Limb(moved) : moved < fixed::kBase ? 0 : reduce(moved) + 1;
    if (20 * moved >= fixed::Wide(cut.unit.value) * (more ? fixed::kBase : 1) ||
        (rest + off + 1 >= cut.half && rest <= cut.half + off)) [[unlikely]] {
      return false;
    }
  }
  int carry = 0;
  if (!fixed::finish<N>(s, rest, rest > cut.half, cut, carry)) [[unlikely]] {
    return false;
  }
  exponent += carry;
  if (exponent - 1 > kMaxScientificExponent || exponent - 1 < -kMaxScientificExponent) [[unlikely]] {
    return false;
  }
  std::uint32_t kept = N;
  while (s[kept - 1] == 0) {
    --kept;
  }
  if (QuarnAccess::length(result) > std::uint32_t(QuarnFloat::kInlineLimbs)) [[unlikely]] {
    result = QuarnFloat();
  }
  QuarnAccess::set(result, (negative ? QuarnAccess::kSign : 0) | kept, std::int32_t(exponent));
  Limb* const inside = QuarnAccess::inside(result);
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    inside[i] = s[i];
  }
  return true;
}

/// The same of limbs that may be zero in front.
template <int N>
bool store_quickly(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length,
                   const fixed::Cut& cut, Limb doubt = 0) {
  std::size_t skip = 0;
  while (skip < length && limbs[skip] == 0) {
    ++skip;
  }
  return skip < length && store_known<N>(result, negative, exponent - Radix::digits * std::int64_t(skip), limbs + skip,
                                         length - skip, cut, doubt);
}

#endif

/// Rounds and stores at the digits that were in force when it was made.
class Rounder {
 public:
  Rounder() : digits_(QuarnDigits()) {
#if QUARN_LIMB_BITS == 64
    cut_ = precision_for(digits_).cut;
    constexpr Quick kBy[] = {quick<1>, quick<2>, quick<3>, quick<4>, quick<5>, quick<6>, quick<7>};
    const int length = digits_ / Radix::digits + 1;
    quick_ = length <= 7 ? kBy[length - 1] : nullptr;
    constexpr Doubtful kDoubtfulBy[] = {store_quickly<1>, store_quickly<2>, store_quickly<3>, store_quickly<4>,
                                        store_quickly<5>, store_quickly<6>, store_quickly<7>};
    doubtful_ = length <= 7 ? kDoubtfulBy[length - 1] : nullptr;
#endif
  }

  int digits() const noexcept { return digits_; }

  /// Allocates only where results of so many digits may need it.
  void store(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length) const {
#if QUARN_LIMB_BITS == 64
    if (quick_ != nullptr && quick_(result, negative, exponent, limbs, length, cut_)) [[likely]] {
      return;
    }
#endif
    store_slowly(result, negative, exponent, limbs, length, digits_);
  }

#if QUARN_LIMB_BITS == 64
  /// The same where the last limb is off by less than `doubt` units; false, and nothing done, unless that is certain to
  /// be the same result. Up to 125 digits.
  bool store_if_decided(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length,
                        Limb doubt) const {
    return doubtful_(result, negative, exponent, limbs, length, cut_, doubt);
  }

  /// The same of `kKnown` limbs of which the first is not zero, where N limbs hold results.
  template <int N, int kKnown>
  [[gnu::always_inline]] bool store_known(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs,
                                          Limb doubt) const {
    return exact::store_known<N>(result, negative, exponent, limbs, kKnown, cut_, doubt);
  }
#endif

 private:
  int digits_;
#if QUARN_LIMB_BITS == 64
  using Quick = bool (*)(QuarnFloat&, bool, std::int64_t, const Limb*, std::size_t, const fixed::Cut&);
  template <int N>
  static bool quick(QuarnFloat& result, bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length,
                    const fixed::Cut& cut) {
    return store_quickly<N>(result, negative, exponent, limbs, length, cut);
  }
  using Doubtful = bool (*)(QuarnFloat&, bool, std::int64_t, const Limb*, std::size_t, const fixed::Cut&, Limb);
  fixed::Cut cut_;
  Quick quick_;
  Doubtful doubtful_;
#endif
};

}  // namespace quarn::exact

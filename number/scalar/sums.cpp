// Sums. The slow path forms what reaches the rounding and rounds it in the result's storage. Numbers that have all
// limbs of the working precision and exponents that differ by less than a limb has digits, as most long ones do, leave
// few choices, and those are made without branches where nobody can predict them.
#include <algorithm>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "number/limbs/linear.h"
#include "number/scalar/access.h"
#include "number/scalar/general.h"
#include "number/scalar/storage.h"
#include "number/scalar/thread_state.h"

namespace quarn {
namespace {

constexpr std::size_t kDigitsOfLimb = Radix::digits;
constexpr Limb kTenthOfBase = Radix::base / 10;
using SignedLimb = std::make_signed_t<Limb>;

/// out[0 .. n) = a + b / base^skipped / 10^places, or the difference when `subtracting`, in one pass; returns the
/// carry, which a difference that is not negative has too. n holds all limbs of both; kAligned: places is zero.
template <bool kAligned>
Limb add_shifted(Limb* out, std::size_t n, const View& a, const View& b, std::size_t skipped, int places,
                 bool subtracting) {
  using Index = std::ptrdiff_t;
  const PowerOfTen<Radix> low = kPowersOfTen<Radix>[std::size_t(places)];
  const Limb high = Radix::powers[std::size_t(Radix::digits - places)];
  // Sums less the base, or differences: negative where nothing is carried, or something borrowed, and then a base too
  // small. The next limb waits for that sign alone.
  const Limb mask = Limb(0) - Limb(subtracting);
  const Limb constant = subtracting ? 1 : 1 - Radix::base;
  Limb below = ~mask;
  Limb quotient = 0;  // of the limb of b that the next limb of the sum takes
  const auto put = [&](Index i, Limb from_a, Limb from_b) {
    const Limb alone = (from_b ^ mask) + constant + from_a;
    const Limb sum = alone + below;
    below = Limb(SignedLimb(sum) >> (8 * sizeof(Limb) - 1));
    out[i] = sum + (Radix::base & below);
  };
  // The digits of b in limb i of the sum: its own, or the lower ones of the limb before and the upper ones of its own.
  const auto moved = [&](Index j) {
    if constexpr (kAligned) {
      return b.limbs[j];
    }
    const Limb upper = quotient;
    const Limb limb = b.limbs[j - 1];
    quotient = low.quotient(limb);
    return upper + (limb - quotient * low.value) * high;
  };
  const auto moved_or_first = [&](Index j) { return kAligned || j > 0 ? moved(j) : std::exchange(quotient, 0); };
  const Index first = Index(skipped);
  const Index length_a = Index(a.length);
  const Index last_b = first + Index(b.length) - Index(kAligned);  // a limb more belongs to b moved within limbs
  Index i = Index(n) - 1;
  for (; i > last_b; --i) {
    put(i, i < length_a ? a.limbs[i] : 0, 0);
  }
  for (; i >= std::max(first, length_a); --i) {
    put(i, 0, moved_or_first(i - first));
  }
  for (; i > first; --i) {
    put(i, a.limbs[i], moved(i - first));
  }
  for (; i >= 0; --i) {
    put(i, i < length_a ? a.limbs[i] : 0, i == first ? moved_or_first(0) : 0);
  }
  return below + 1;
}

/// x[0 .. n) with a 1 before it, moved right by a digit; returns the limb that falls off the end.
Limb move_behind_one(Limb* x, std::size_t n) {
  constexpr PowerOfTen<Radix> kTen = kPowersOfTen<Radix>[1];
  Limb below = kTenthOfBase;
  for (std::size_t i = 0; i < n; ++i) {
    const Limb quotient = kTen.quotient(x[i]);
    const Limb digit = x[i] - quotient * 10;
    x[i] = below + quotient;
    below = digit * kTenthOfBase;
  }
  return below;
}

/// The sum that stands in the n limbs of `result`, after prepare(), and `carry` before them, rounded in place; there is
/// room for a limb more.
QuarnFloat rounded_sum(QuarnFloat&& result, std::int64_t exponent, Limb* sum, std::size_t n, bool carry, bool sticky,
                       int digits) {
  if (carry) {
    const Limb last = move_behind_one(sum, n);
    sum[n++] = last;
    ++exponent;
  } else {
    std::size_t zeros = 0;
    while (sum[zeros] == 0) {
      ++zeros;
    }
    const int leading = Radix::digits - count_digits<Radix>(sum[zeros]);
    if (zeros != 0) {
      std::copy(sum + zeros, sum + n, sum);
      n -= zeros;
    }
    if (leading != 0) {
      shift_left<Radix>(sum, sum, n, leading);
    }
    exponent -= std::int64_t(zeros) * Radix::digits + leading;
  }
  const std::size_t needed = std::size_t(digits) / kDigitsOfLimb + 2;
  if (n > needed) {
    sticky = sticky || !all_zero<Radix>(sum + needed, n - needed);
    n = needed;
  }
  Rounded end = round_half_even<Radix>(sum, n, std::size_t(digits), sticky);
  if (end.carry) {
    sum[0] = kTenthOfBase;
    end.length = 1;
    ++exponent;
  }
  if (std::abs(exponent - 1) > kMaxScientificExponent) [[unlikely]] {
    return special(exponent > 0 ? Kind::infinite : Kind::zero, signbit(result));
  }
  QuarnAccess::shorten(result, std::int32_t(exponent), end.length);
  return std::move(result);
}

/// a + b for magnitudes when `subtracting` is false, else a - b; a's exponent is not below b's.
QuarnFloat combine(const View& a, const View& b, bool subtracting) {
  const std::int64_t distance = a.exponent - b.exponent;
  const std::size_t skipped = std::size_t(distance / Radix::digits);
  const int places = int(distance % Radix::digits);
  const int digits = QuarnDigits();
  // From here on b cannot reach the rounding: whatever it is, it lies below a unit of a limb that a does not use.
  const std::size_t reach = std::max(a.length, std::size_t(digits) / kDigitsOfLimb + 2);
  const bool far = skipped > reach;
  const std::size_t n = far ? reach + 1 : std::max(a.length, skipped + b.length + (places != 0));
  int order = 1;
  if (subtracting && distance == 0) {
    order = compare_fractions<Radix>(a.limbs, a.length, b.limbs, b.length);
    if (order == 0) {
      return special(Kind::zero);
    }
  }
  const bool negative = a.negative != (order < 0);
  // Writes the n limbs; whether there is one more, a 1, before them.
  const auto form = [&](Limb* sum) {
    if (far) {
      std::copy_n(a.limbs, a.length, sum);
      std::fill_n(sum + a.length, n - a.length, Limb(0));
      if (subtracting) {
        subtract_limb<Radix>(sum, n, 1);
      }
      return false;
    }
    const Limb carry = places != 0
                           ? add_shifted<false>(sum, n, a, b, skipped, places, subtracting)
                           : add_shifted<true>(sum, n, order < 0 ? b : a, order < 0 ? a : b, skipped, 0, subtracting);
    return carry != 0 && !subtracting;
  };
  // Results that need no storage of their own get none for a sum that is longer.
  if (n + 1 > std::size_t(QuarnFloat::kInlineLimbs) && digits <= QuarnFloat::kInlineLimbs * int(kDigitsOfLimb)) {
    LimbBuffer<> work(n + 1);
    work[0] = form(work + 1) ? 1 : 0;
    return rounded(negative, a.exponent + Radix::digits, work, n + 1, far, digits);
  }
  QuarnFloat result;
  Limb* const sum = QuarnAccess::prepare(result, negative, 0, n + 1);
  const bool carry = form(sum);
  return rounded_sum(std::move(result), a.exponent, sum, n, carry, far, digits);
}

/// The sum that stands in the limbs of x, after prepare(), and has its leading digit in the first of them, rounded in
/// place. The rounding cuts the last limb or the one before.
void round_prepared(QuarnFloat& x, Limb* limbs, std::size_t n, std::int64_t exponent, std::size_t digits) {
  const std::size_t last = digits / kDigitsOfLimb;
  const PowerOfTen<Radix>& unit = kPowersOfTen<Radix>[kDigitsOfLimb - digits % kDigitsOfLimb];
  const Limb kept = unit.quotient(limbs[last]);
  const Limb rest = limbs[last] - kept * unit.value;
  bool up = rest > unit.value / 2;
  if (rest == unit.value / 2) [[unlikely]] {
    const Limb parity = unit.value != Radix::base ? kept : limbs[last - 1];
    up = (last + 1 < n && limbs[n - 1] != 0) || (parity & 1) != 0;
  }
  limbs[last] += (unit.value & (Limb(0) - Limb(up))) - rest;
  std::size_t length = last + 1;
  if (limbs[last] >= Radix::base) {
    limbs[last] = 0;
    if (add_limb<Radix>(limbs, last, 1) != 0) {
      limbs[0] = kTenthOfBase;
      length = 1;
      ++exponent;
    }
  }
  while (limbs[length - 1] == 0) {
    --length;
  }
  if (std::abs(exponent - 1) > kMaxScientificExponent) [[unlikely]] {
    x = special(exponent > 0 ? Kind::infinite : Kind::zero, signbit(x));
  } else {
    QuarnAccess::shorten(x, std::int32_t(exponent), length);
  }
}

}  // namespace

QuarnFloat general_sum(const QuarnFloat& a, const QuarnFloat& b, bool flip) {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  const bool negative_b = signbit(b) != flip;
  if (kind_a == Kind::finite && kind_b == Kind::finite) {
    const View x = view_of(a);
    View y = view_of(b);
    y.negative = negative_b;
    const bool subtracting = x.negative != y.negative;
    return x.exponent >= y.exponent ? combine(x, y, subtracting) : combine(y, x, subtracting);
  }
  if (kind_a == Kind::nan || kind_b == Kind::nan) {
    return special(Kind::nan);
  }
  if (kind_a == Kind::infinite) {
    const bool opposite = kind_b == Kind::infinite && signbit(a) != negative_b;
    return opposite ? special(Kind::nan) : a;
  }
  if (kind_b == Kind::infinite) {
    return special(Kind::infinite, negative_b);
  }
  if (kind_a == Kind::finite) {
    return rounded(a, QuarnDigits());
  }
  if (kind_b == Kind::finite) {
    return rounded(flip ? -b : b, QuarnDigits());
  }
  return special(Kind::zero, signbit(a) && negative_b);
}

[[gnu::flatten]] bool sum_of_full(QuarnFloat& result, const QuarnFloat& a, const QuarnFloat& b, bool flip) {
  const auto digits = std::size_t(thread_state().precision.digits);
  const std::size_t length = (digits + kDigitsOfLimb - 1) / kDigitsOfLimb;
  if (length <= std::size_t(QuarnFloat::kInlineLimbs) || QuarnAccess::length(a) != length ||
      QuarnAccess::length(b) != length) {
    return false;
  }
  const bool negative[2] = {QuarnAccess::negative(a), QuarnAccess::negative(b) != flip};
  const Limb* const limbs_of[2] = {QuarnAccess::limbs(a), QuarnAccess::limbs(b)};
  const std::int64_t exponents[2] = {QuarnAccess::exponent(a), QuarnAccess::exponent(b)};
  const bool subtracting = negative[0] != negative[1];
  const std::int64_t distance = exponents[0] - exponents[1];
  const std::int64_t order = SignedLimb(limbs_of[0][0] - limbs_of[1][0]);
  // The larger one first, without a branch, since nobody can predict it.
  const std::size_t larger = std::size_t((distance | (order & ((distance - 1) & ~distance))) < 0);
  const std::int64_t places = distance < 0 ? -distance : distance;
  if (places >= Radix::digits || (distance == 0 && subtracting && order == 0)) [[unlikely]] {
    return false;
  }
  // The result may be an operand, whose limbs are read before they are overwritten.
  const std::size_t n = length + 1;
  Limb* const limbs = QuarnAccess::prepare_again(result, negative[larger], n);
  if (limbs == nullptr) [[unlikely]] {
    return false;
  }
  std::int64_t exponent = exponents[larger];
  const View first{false, 0, limbs_of[larger], length};
  const View second{false, 0, limbs_of[1 - larger], length};
  const Limb carry = add_shifted<false>(limbs, n, first, second, 0, int(places), subtracting);
  if (carry != 0 && !subtracting) {
    move_behind_one(limbs, n);  // moved by all digits of a limb at most, so that nothing falls off
    ++exponent;
  } else if (limbs[0] < kTenthOfBase) {
    if (limbs[0] == 0) [[unlikely]] {
      result = rounded(negative[larger], exponent, limbs, n, false, int(digits));
      return true;
    }
    const int leading = Radix::digits - count_digits<Radix>(limbs[0]);
    shift_left<Radix>(limbs, limbs, n, leading);
    exponent -= leading;
  }
  round_prepared(result, limbs, n, exponent, digits);
  return true;
}

}  // namespace quarn

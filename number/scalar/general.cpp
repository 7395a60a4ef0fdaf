// + - * / and sqrt for operands of any length and kind: each forms its result exactly, or to enough digits and a sticky
// flag, and leaves the rounding to `rounded`.
#include "number/scalar/general.h"

#include <cstdlib>
#include <type_traits>
#include <utility>

#include "number/limbs/multiply.h"
#include "number/limbs/newton_divide.h"
#include "number/limbs/newton_sqrt.h"
#include "number/scalar/access.h"
#include "number/scalar/storage.h"
#include "quarn/quarnthread.h"

namespace quarn {
namespace {

constexpr std::size_t kLimbDigits = Radix::digits;
// What fixed-length code leaves undecided, mostly exact results, is this short, and is settled on the stack.
constexpr std::size_t kShort = Radix::digits == 18 ? 16 : 48;

/// The check point of operations on long numbers.
void check_interrupt(std::size_t limbs) {
  constexpr std::size_t kLong = 4'000 / kLimbDigits;
  if (limbs > kLong) {
    QuarnCheckInterrupt();
  }
}

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
  using Signed = std::make_signed_t<Limb>;
  const Limb mask = Limb(0) - Limb(subtracting);
  const Limb constant = subtracting ? 1 : 1 - Radix::base;
  Limb below = ~mask;
  Limb quotient = 0;  // of the limb of b that the next limb of the sum takes
  const auto put = [&](Index i, Limb from_a, Limb from_b) {
    const Limb alone = (from_b ^ mask) + constant + from_a;
    const Limb sum = alone + below;
    below = Limb(Signed(sum) >> (8 * sizeof(Limb) - 1));
    out[i] = sum + (Radix::base & below);
  };
  // The digits of b in limb i of the sum: its own, or the lower ones of the limb before and the upper ones of its own.
  const auto shifted = [&](Index j) {
    if constexpr (kAligned) {
      return b.limbs[j];
    }
    const Limb upper = quotient;
    Limb rest = 0;
    quotient = 0;
    if (j > 0) {
      const Limb limb = b.limbs[j - 1];
      quotient = low.quotient(limb);
      rest = (limb - quotient * low.value) * high;
    }
    return rest + upper;
  };
  const Index first = Index(skipped);
  const Index length_a = Index(a.length);
  const Index last_b = first + Index(b.length) - Index(kAligned);  // a limb more belongs to b moved within limbs
  Index i = Index(n) - 1;
  for (; i > last_b; --i) {
    put(i, i < length_a ? a.limbs[i] : 0, 0);
  }
  for (; i >= std::max(first, length_a); --i) {
    put(i, 0, shifted(i - first));
  }
  for (; i > first; --i) {
    put(i, a.limbs[i], shifted(i - first));
  }
  for (; i >= 0; --i) {
    put(i, i < length_a ? a.limbs[i] : 0, i == first ? shifted(0) : 0);
  }
  return below + 1;
}

/// The sum that stands in the n limbs of `result`, after prepare(), and `carry` before them, rounded in place; there is
/// room for a limb more.
QuarnFloat rounded_sum(QuarnFloat&& result, std::int64_t exponent, Limb* sum, std::size_t n, bool carry, bool sticky,
                       int digits) {
  if (carry) {
    constexpr PowerOfTen<Radix> kTen = kPowersOfTen<Radix>[1];
    Limb below = Radix::base / 10;
    for (std::size_t i = 0; i < n; ++i) {
      const Limb quotient = kTen.quotient(sum[i]);
      const Limb digit = sum[i] - quotient * 10;
      sum[i] = below + quotient;
      below = digit * (Radix::base / 10);
    }
    sum[n++] = below;
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
  const std::size_t needed = std::size_t(digits) / kLimbDigits + 2;
  if (n > needed) {
    sticky = sticky || !all_zero<Radix>(sum + needed, n - needed);
    n = needed;
  }
  Rounded end = round_half_even<Radix>(sum, n, std::size_t(digits), sticky);
  if (end.carry) {
    sum[0] = Radix::base / 10;
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
  const std::size_t reach = std::max(a.length, std::size_t(digits) / kLimbDigits + 2);
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
  if (n + 1 > std::size_t(QuarnFloat::kInlineLimbs) && digits <= QuarnFloat::kInlineLimbs * int(kLimbDigits)) {
    LimbBuffer<> work(n + 1);
    work[0] = form(work + 1) ? 1 : 0;
    return rounded(negative, a.exponent + Radix::digits, work, n + 1, far, digits);
  }
  QuarnFloat result;
  Limb* const sum = QuarnAccess::prepare(result, negative, 0, n + 1);
  const bool carry = form(sum);
  return rounded_sum(std::move(result), a.exponent, sum, n, carry, far, digits);
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

namespace {

QuarnFloat multiply_special(const QuarnFloat& a, const QuarnFloat& b) {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  const bool negative = signbit(a) != signbit(b);
  if (kind_a == Kind::nan || kind_b == Kind::nan) {
    return special(Kind::nan);
  }
  if (kind_a == Kind::infinite || kind_b == Kind::infinite) {
    const bool undefined = kind_a == Kind::zero || kind_b == Kind::zero;
    return special(undefined ? Kind::nan : Kind::infinite, negative && !undefined);
  }
  return special(Kind::zero, negative);
}

QuarnFloat divide_special(const QuarnFloat& a, const QuarnFloat& b) {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  const bool negative = signbit(a) != signbit(b);
  if (kind_a == Kind::nan || kind_b == Kind::nan || (kind_a == kind_b && kind_a != Kind::finite)) {
    return special(Kind::nan);
  }
  const bool infinite = kind_a == Kind::infinite || kind_b == Kind::zero;
  return special(infinite ? Kind::infinite : Kind::zero, negative);
}

}  // namespace

QuarnFloat general_product(const QuarnFloat& a, const QuarnFloat& b) {
  if (kind_of(a) != Kind::finite || kind_of(b) != Kind::finite) {
    return multiply_special(a, b);
  }
  const View x = view_of(a);
  const View y = view_of(b);
  check_interrupt(x.length + y.length);
  LimbBuffer<> product(x.length + y.length);
  const std::size_t terms = std::min(x.length, y.length);
  // The rounding unit, and half of it, end before the last limb kept, whose digits decide only when they are all zeros
  // or, but for what is missing, all nines.
  const std::size_t keep = (std::size_t(QuarnDigits()) + 2 + kLimbDigits - 1) / kLimbDigits + 1;
  if (terms < limits<Limb>().short_product && keep + 2 < x.length + y.length) {
    multiply_columns<Radix>(product, x.limbs, x.length, y.limbs, y.length, keep);
    const Limb last = product[keep - 1];
    if (last != 0 && last + terms < Radix::base) {
      return rounded(x.negative != y.negative, x.exponent + y.exponent, product, keep, true);
    }
  }
  multiply<Radix>(product, x.limbs, x.length, y.limbs, y.length);
  return rounded(x.negative != y.negative, x.exponent + y.exponent, product, x.length + y.length, false);
}

QuarnFloat general_quotient(const QuarnFloat& a, const QuarnFloat& b) {
  if (kind_of(a) != Kind::finite || kind_of(b) != Kind::finite) {
    return divide_special(a, b);
  }
  const View x = view_of(a);
  const View y = view_of(b);
  // The quotient's first limb is a digit, or zero and then the second one starts with a digit.
  const std::size_t wanted = std::size_t(QuarnDigits()) / kLimbDigits + 2;
  const std::size_t size = std::max(x.length, wanted + y.length - 1);
  check_interrupt(size);
  LimbBuffer<> dividend(size);
  std::copy_n(x.limbs, x.length, static_cast<Limb*>(dividend));
  std::fill_n(dividend + x.length, size - x.length, Limb(0));
  const std::size_t length = size - y.length + 1;
  LimbBuffer<> quotient(length);
  bool sticky = false;
  if (size < kShort) {
    LimbBuffer<kShort> work(y.length);
    divide_schoolbook<Radix>(quotient, dividend, size, y.limbs, y.length, work);
    sticky = !all_zero<Radix>(dividend + (size - y.length), y.length);
  } else {
    sticky = divide<Radix>(quotient, dividend, size, y.limbs, y.length);
  }
  // quotient * base^(1 - length) = 0.x / 0.y
  return rounded(x.negative != y.negative, x.exponent - y.exponent + Radix::digits, quotient, length, sticky);
}

QuarnFloat general_square_root(const QuarnFloat& a) {
  if (kind_of(a) != Kind::finite) {
    return kind_of(a) == Kind::infinite && signbit(a) ? special(Kind::nan) : a;
  }
  const View x = view_of(a);
  if (x.negative) {
    return special(Kind::nan);
  }
  // 0.x * 10^e = radicand * base^(-2n) * 10^(2f): an integer radicand of 2n limbs with an even exponent.
  const std::size_t n = std::max(std::size_t(QuarnDigits()) / kLimbDigits + 2, (x.length + 2) / 2);
  const int places = int(x.exponent & 1);
  check_interrupt(n);
  LimbBuffer<> radicand(2 * n);
  std::fill_n(static_cast<Limb*>(radicand), 2 * n, Limb(0));
  if (places == 0) {
    std::copy_n(x.limbs, x.length, static_cast<Limb*>(radicand));
  } else {
    shift_right<Radix>(radicand, x.limbs, x.length, places);
  }
  LimbBuffer<> root(n);
  const bool sticky =
      2 * n <= kShort ? sqrt_schoolbook<Radix>(root, radicand, n) : square_root<Radix>(root, radicand, n);
  return rounded(false, (x.exponent + places) / 2, root, n, sticky);
}

}  // namespace quarn

// + - * / and sqrt for operands of any length and kind: each forms its result exactly, or to enough digits and a sticky
// flag, and leaves the rounding to `rounded`.
#include "host/number/general.h"

#include "host/limbs/multiply.h"
#include "host/limbs/newton_divide.h"
#include "host/limbs/newton_sqrt.h"
#include "host/number/access.h"
#include "host/number/storage.h"

namespace quarn {
namespace {

constexpr std::int64_t kDigits = Radix::digits;
constexpr std::size_t kLimbDigits = Radix::digits;
// Up to so many limbs working storage is on the stack, and schoolbook methods are the fastest.
constexpr std::size_t kShort = 48;

/// a + b for magnitudes when `subtracting` is false, else a - b; a's exponent is not below b's.
QuarnFloat combine(const View& a, const View& b, bool subtracting) {
  const std::int64_t distance = a.exponent - b.exponent;
  const std::size_t skipped = std::size_t(distance / kDigits);
  const int places = int(distance % kDigits);
  const int digits = QuarnDigits();
  // From here on b cannot reach the rounding: whatever it is, it lies below a unit of a limb that a does not use.
  const std::size_t reach = std::max(a.length, std::size_t(digits) / kLimbDigits + 2);
  const bool far = skipped > reach;
  const std::size_t shifted = b.length + (places != 0);
  const std::size_t size = (far ? reach + 1 : std::max(a.length, skipped + shifted)) + 1;
  LimbBuffer<> work(size);
  Limb* const sum = work + 1;
  const std::size_t n = size - 1;
  work[0] = 0;
  bool negative = a.negative;
  if (far) {
    std::copy_n(a.limbs, a.length, sum);
    std::fill_n(sum + a.length, n - a.length, Limb(0));
    if (subtracting) {
      subtract_limb<Radix>(sum, n, 1);
    }
  } else {
    std::fill_n(sum, n, Limb(0));
    if (places == 0) {
      std::copy_n(b.limbs, b.length, sum + skipped);
    } else {
      shift_right<Radix>(sum + skipped, b.limbs, b.length, places);
    }
    if (!subtracting) {
      work[0] = add<Radix>(sum, a.limbs, sum, a.length, 0);
    } else {
      // sum = a - sum, or its negative
      const int order = compare_fractions<Radix>(a.limbs, a.length, sum, n);
      if (order == 0) {
        return special(Kind::zero);
      }
      if (order > 0) {
        Limb borrow = 0;
        for (std::size_t i = n; i-- > 0;) {
          const Limb minuend = i < a.length ? a.limbs[i] : 0;
          borrow = subtract<Radix>(sum + i, &minuend, sum + i, 1, borrow);
        }
      } else {
        subtract<Radix>(sum, sum, a.limbs, a.length);
        negative = !negative;
      }
    }
  }
  return rounded(negative, a.exponent + kDigits, work, size, far, digits);
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
  LimbBuffer<> product(x.length + y.length);
  const std::size_t terms = std::min(x.length, y.length);
  // The rounding unit, and half of it, end before the last limb kept, whose digits decide only when they are all zeros
  // or, but for what is missing, all nines.
  const std::size_t keep = (std::size_t(QuarnDigits()) + 2 + kLimbDigits - 1) / kLimbDigits + 1;
  if (terms < thresholds<Limb>.short_product && keep + 2 < x.length + y.length) {
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
  // The quotient's first limb may be zero and its second may start with zeros.
  const std::size_t wanted = std::size_t(QuarnDigits()) / kLimbDigits + 3;
  const std::size_t size = std::max(x.length, wanted + y.length - 1);
  LimbBuffer<> dividend(size);
  std::copy_n(x.limbs, x.length, static_cast<Limb*>(dividend));
  std::fill_n(dividend + x.length, size - x.length, Limb(0));
  const std::size_t length = size - y.length + 1;
  LimbBuffer<> quotient(length);
  bool sticky = false;
  if (size <= kShort) {
    LimbBuffer<kShort> work(y.length);
    divide_schoolbook<Radix>(quotient, dividend, size, y.limbs, y.length, work);
    sticky = !all_zero<Radix>(dividend + (size - y.length), y.length);
  } else {
    sticky = divide<Radix>(quotient, dividend, size, y.limbs, y.length);
  }
  // quotient * base^(1 - length) = 0.x / 0.y
  return rounded(x.negative != y.negative, x.exponent - y.exponent + kDigits, quotient, length, sticky);
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

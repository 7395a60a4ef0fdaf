// * / and sqrt for operands of any length and kind: each forms its result exactly, or to enough digits and a sticky
// flag, and leaves the rounding to `rounded`.
#include "number/scalar/general.h"

#include <cstdlib>
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

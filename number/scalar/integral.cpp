// Whole parts, remainders, and conversion to hardware numbers.
#include <cmath>

#include "number/limbs/multiply.h"
#include "number/limbs/schoolbook.h"
#include "number/scalar/access.h"
#include "number/scalar/nearest.h"
#include "number/scalar/storage.h"

using namespace quarn;

namespace {

enum class Direction { down, up, towards_zero };

QuarnFloat whole_part(const QuarnFloat& x, Direction direction) {
  if (kind_of(x) != Kind::finite) {
    return x;
  }
  const View v = view_of(x);
  if (v.exponent >= std::int64_t(v.length) * Radix::digits) {
    return rounded(x, QuarnDigits());
  }
  // The limbs that hold the whole digits, with one more in front for a carry.
  const std::int64_t whole_digits = std::max<std::int64_t>(v.exponent, 0);
  const std::size_t n = std::size_t((whole_digits + Radix::digits - 1) / Radix::digits);
  LimbBuffer<> work(n + 1);
  work[0] = 0;
  std::copy_n(v.limbs, n, work + 1);
  const Limb unit = n == 0 ? 1 : Radix::powers[std::int64_t(n) * Radix::digits - whole_digits];
  const Limb fraction = n == 0 ? 0 : work[n] % unit;
  work[n] -= fraction;
  const bool exact = n > 0 && fraction == 0 && all_zero<Radix>(v.limbs + n, v.length - n);
  const bool away = direction == Direction::up ? !v.negative : direction == Direction::down && v.negative;
  std::int64_t exponent = std::int64_t(n + 1) * Radix::digits;
  if (n > 0) {
    // Aligned to the decimal point of the limbs as they stand.
    exponent = v.exponent + Radix::digits;
  }
  if (away && !exact) {
    add_limb<Radix>(work, n + 1, unit);
  }
  return rounded(v.negative, exponent, work, n + 1, false);
}

/// The least significant digit's power of ten.
std::int64_t lowest_exponent(const View& v) { return v.exponent - std::int64_t(v.length) * Radix::digits; }

/// a = a * b mod m for integers below m of n limbs each; work holds 4n limbs.
void multiply_modulo(Limb* a, const Limb* b, const Limb* m, std::size_t n, Limb* work) {
  Limb* const product = work;
  Limb* const quotient = work + 2 * n;
  multiply<Radix>(product, a, n, b, n);
  divide_schoolbook<Radix>(quotient, product, 2 * n, m, n, work + 3 * n + 1);
  std::copy_n(product + n, n, a);
}

/// out = 10^power mod m, m of n limbs with a leading limb that is not zero.
void power_of_ten_modulo(Limb* out, std::int64_t power, const Limb* m, std::size_t n) {
  LimbBuffer<> work(4 * n + 1);
  LimbBuffer<> square(n);
  const auto reduce_small = [&](Limb* target, Limb value) {
    std::fill_n(target, n, Limb(0));
    target[n - 1] = n == 1 ? value % m[0] : value;
  };
  reduce_small(out, 1);
  reduce_small(square, 10);
  for (; power > 0; power /= 2) {
    if (power % 2 != 0) {
      multiply_modulo(out, square, m, n, work);
    }
    if (power > 1) {
      multiply_modulo(square, square, m, n, work);
    }
  }
}

/// Finite a and b with |a| >= |b|: both are integers times a power of ten.
QuarnFloat finite_remainder(const View& a, const View& b) {
  const std::int64_t gap = lowest_exponent(a) - lowest_exponent(b);
  // What is divided: a followed by zeros, or a by b followed by zeros.
  const std::size_t zeros_b = gap < 0 ? std::size_t((-gap + Radix::digits - 1) / Radix::digits) : 0;
  const std::size_t n = b.length + zeros_b;
  LimbBuffer<> divisor(n);
  std::fill_n(static_cast<Limb*>(divisor), n, Limb(0));
  int places = 0;
  if (gap < 0) {
    // b * 10^-gap: in limbs, with its lowest digits in the last one.
    const int rest = int(-gap % Radix::digits);
    places = rest == 0 ? 0 : Radix::digits - rest;
    if (places == 0) {
      std::copy_n(b.limbs, b.length, static_cast<Limb*>(divisor));
    } else {
      shift_right<Radix>(divisor, b.limbs, b.length, places);
    }
  } else {
    std::copy_n(b.limbs, b.length, static_cast<Limb*>(divisor));
  }
  const Limb* m = divisor;
  std::size_t nm = n;
  while (m[0] == 0) {
    ++m;
    --nm;
  }
  const std::int64_t lowest = std::min(lowest_exponent(a), lowest_exponent(b));
  // Few zeros are appended; for many, 10^zeros mod b is found by repeated squaring.
  const std::size_t extension = gap > 0 ? std::size_t(gap / Radix::digits) : 0;
  const bool by_power = extension > 8 * nm + 64;
  const std::size_t na = a.length + (gap > 0 && !by_power ? extension + 1 : 0);
  const std::size_t size = std::max(na, nm) + 1;
  LimbBuffer<> dividend(size);
  std::fill_n(static_cast<Limb*>(dividend), size, Limb(0));
  if (gap > 0 && !by_power) {
    Limb* const target = dividend + (size - na);
    std::copy_n(a.limbs, a.length, target + 1);
    target[0] = shift_left<Radix>(target + 1, target + 1, a.length, int(gap % Radix::digits));
  } else {
    std::copy_n(a.limbs, a.length, dividend + (size - a.length));
  }
  LimbBuffer<> quotient(size - nm + 1);
  LimbBuffer<> work(4 * nm + 1);
  divide_schoolbook<Radix>(quotient, dividend, size, m, nm, work);
  Limb* const remainder = dividend + (size - nm);
  if (by_power) {
    LimbBuffer<> power(nm);
    power_of_ten_modulo(power, gap, m, nm);
    multiply_modulo(remainder, power, m, nm, work);
  }
  return rounded(a.negative, lowest + std::int64_t(nm) * Radix::digits, remainder, nm, false);
}

}  // namespace

QuarnFloat floor(const QuarnFloat& x) { return whole_part(x, Direction::down); }
QuarnFloat ceil(const QuarnFloat& x) { return whole_part(x, Direction::up); }
QuarnFloat trunc(const QuarnFloat& x) { return whole_part(x, Direction::towards_zero); }

QuarnFloat fmod(const QuarnFloat& a, const QuarnFloat& b) {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  if (kind_a == Kind::nan || kind_a == Kind::infinite || kind_b == Kind::nan || kind_b == Kind::zero) {
    return special(Kind::nan);
  }
  if (kind_a == Kind::zero || kind_b == Kind::infinite) {
    return rounded(a, QuarnDigits());
  }
  if (QuarnCompare(fabs(a), fabs(b)) < 0) {
    return rounded(a, QuarnDigits());
  }
  return finite_remainder(view_of(a), view_of(b));
}

Integer FloatToInt(const QuarnFloat& x) noexcept {
  constexpr std::int64_t kMost = INT32_MAX;
  constexpr std::int64_t kLeast = INT32_MIN;
  const bool negative = signbit(x);
  const Kind kind = kind_of(x);
  if (kind == Kind::zero || kind == Kind::nan) {
    return 0;
  }
  const Integer limit = Integer(negative ? kLeast : kMost);
  if (kind == Kind::infinite) {
    return limit;
  }
  const View v = view_of(x);
  if (v.exponent <= 0) {
    return 0;
  }
  if (v.exponent > 10) {
    return limit;
  }
  // At most ten digits: within one limb of 18, or two of 9.
  std::int64_t whole = 0;
  if (v.exponent <= Radix::digits) {
    whole = std::int64_t(v.limbs[0] / Radix::powers[Radix::digits - v.exponent]);
  } else {
    const Limb next = v.length > 1 ? v.limbs[1] : 0;
    whole = std::int64_t(v.limbs[0]) * 10 + std::int64_t(next / Radix::powers[Radix::digits - 1]);
  }
  whole = negative ? -whole : whole;
  return Integer(std::clamp(whole, kLeast, kMost));
}

double FloatToDouble(const QuarnFloat& x) noexcept { return nearest<double>(x, -340, 320); }

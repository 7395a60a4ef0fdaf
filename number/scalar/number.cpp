// QuarnFloat's life: construction, copies, classification, comparison.
#include <bit>
#include <cmath>
#include <cstring>

#include "number/limbs/linear.h"
#include "number/scalar/access.h"
#include "number/scalar/storage.h"

namespace {

using quarn::Kind;
using quarn::Limb;
using quarn::Radix;

}  // namespace

namespace quarn {

QuarnFloat special(Kind kind, bool negative) noexcept {
  QuarnFloat result;
  QuarnAccess::set_special(result, kind, negative);
  return result;
}

QuarnFloat rounded(bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length, bool sticky,
                   int digits) {
  while (length > 0 && limbs[0] == 0) {
    ++limbs;
    --length;
    exponent -= Radix::digits;
  }
  QuarnFloat result;
  if (length == 0) {
    QuarnAccess::set_special(result, Kind::zero, negative);
    return result;
  }
  // One digit more than the result decides; a second limb allows for the alignment.
  const std::size_t needed = std::size_t(digits) / Radix::digits + 2;
  if (length > needed) {
    sticky = sticky || !all_zero<Radix>(limbs + needed, length - needed);
    length = needed;
  }
  const std::size_t size = sticky ? needed : length;
  const int leading_zeros = Radix::digits - count_digits<Radix>(limbs[0]);
  Limb* const out = QuarnAccess::prepare(result, negative, 0, size);
  if (leading_zeros == 0) {
    std::copy_n(limbs, length, out);
  } else {
    shift_left<Radix>(out, limbs, length, leading_zeros);
    exponent -= leading_zeros;
  }
  std::fill_n(out + length, size - length, Limb(0));
  Rounded end = round_half_even<Radix>(out, size, std::size_t(digits), sticky);
  if (end.carry) {
    out[0] = Radix::base / 10;
    end.length = 1;
    ++exponent;
  }
  if (exponent - 1 > kMaxScientificExponent) {
    result = special(Kind::infinite, negative);
  } else if (exponent - 1 < -kMaxScientificExponent) {
    result = special(Kind::zero, negative);
  } else {
    QuarnAccess::shorten(result, std::int32_t(exponent), end.length);
  }
  return result;
}

QuarnFloat rounded(const QuarnFloat& x, int digits) {
  if (kind_of(x) != Kind::finite || QuarnAccess::length(x) * std::size_t(Radix::digits) <= std::size_t(digits)) {
    return x;
  }
  const View v = view_of(x);
  return rounded(v.negative, v.exponent, v.limbs, v.length, false, digits);
}

}  // namespace quarn

Limb* QuarnAccess::prepare(QuarnFloat& x, bool negative, std::int32_t exponent, std::size_t length) {
  Limb* limbs = x.inside_;
  if (length > std::size_t(QuarnFloat::kInlineLimbs)) {
    std::uint32_t capacity = 0;
    limbs = quarn::acquire_limbs(length, capacity);
    set_block(x, limbs, capacity);
  }
  set(x, std::uint32_t(length) | (negative ? kSign : 0), exponent);
  return limbs;
}

Limb* QuarnAccess::prepare_again(QuarnFloat& x, bool negative, std::size_t length) {
  if (!x.on_heap()) {
    return prepare(x, negative, 0, length);
  }
  if (x.heap_.capacity < length) {
    return nullptr;
  }
  set(x, std::uint32_t(length) | (negative ? kSign : 0), 0);
  return x.heap_.limbs;
}

void QuarnAccess::shorten(QuarnFloat& x, std::int32_t exponent, std::size_t length) noexcept {
  if (x.on_heap() && length <= std::size_t(QuarnFloat::kInlineLimbs)) {
    const QuarnFloat::Heap former = x.heap_;
    std::copy_n(former.limbs, length, x.inside_);
    quarn::recycle_limbs(former.limbs, former.capacity);
  }
  x.exponent_ = exponent;
  x.tag_ = std::uint32_t(length) | (x.tag_ & QuarnFloat::kSign);
}

// Copies of long coefficients ---------------------------------------------------------------------------------

void QuarnFloat::clone(const QuarnFloat& other) {
  const std::size_t length = other.tag_ & kLength;
  std::uint32_t capacity = 0;
  Limb* limbs = quarn::acquire_limbs(length, capacity);
  std::memcpy(limbs, other.heap_.limbs, length * sizeof(Limb));
  heap_ = {limbs, capacity};
}

void QuarnFloat::assign_slowly(const QuarnFloat& other) {
  if (this == &other) {
    return;
  }
  const std::size_t length = other.tag_ & kLength;
  if (on_heap() && other.on_heap() && heap_.capacity >= length) {
    std::memcpy(heap_.limbs, other.heap_.limbs, length * sizeof(Limb));
  } else {
    QuarnFloat copy(other);
    if (on_heap()) {
      release();
    }
    tag_ = copy.tag_;
    take(copy);
  }
  exponent_ = other.exponent_;
  tag_ = other.tag_;
}

void QuarnFloat::release() noexcept { quarn::recycle_limbs(heap_.limbs, heap_.capacity); }

// Construction from hardware numbers --------------------------------------------------------------------------

namespace {

/// An exact integer from hardware numbers, growing at its leading end.
class SmallInteger {
 public:
  explicit SmallInteger(std::uint64_t value) {
    for (; value != 0; value /= Radix::base) {
      *--first_ = Limb(value % Radix::base);
    }
  }
  void multiply(Limb factor) {
    const Limb carry = quarn::multiply_limb<Radix>(first_, first_, length(), factor);
    if (carry != 0) {
      *--first_ = carry;
    }
  }
  void multiply_power(Limb factor, int times) {
    // The largest power of the factor that is a limb.
    Limb power = factor;
    int count = 1;
    while (power <= (Radix::base - 1) / factor) {
      power *= factor;
      ++count;
    }
    for (; times >= count; times -= count) {
      multiply(power);
    }
    for (; times > 0; --times) {
      multiply(factor);
    }
  }
  const Limb* limbs() const { return first_; }
  std::size_t length() const { return std::size_t(limbs_ + kCapacity - first_); }

 private:
  // 2^53 * 5^1074 has 767 digits.
  static constexpr std::size_t kCapacity = 770 / Radix::digits + 2;
  Limb limbs_[kCapacity];
  Limb* first_ = limbs_ + kCapacity;
};

QuarnFloat from_integer(bool negative, const SmallInteger& integer, std::int64_t exponent) {
  const std::int64_t places = std::int64_t(integer.length()) * Radix::digits;
  return quarn::rounded(negative, places + exponent, integer.limbs(), integer.length(), false, QuarnDigits());
}

}  // namespace

QuarnFloat::QuarnFloat(Magnitude magnitude)
    : QuarnFloat(from_integer(magnitude.negative, SmallInteger(magnitude.value), 0)) {}

QuarnFloat::QuarnFloat(int mantissa, int exponent)
    : QuarnFloat(
          from_integer(mantissa < 0, SmallInteger(mantissa < 0 ? 0 - std::uint64_t(mantissa) : mantissa), exponent)) {}

QuarnFloat::QuarnFloat(double value) : QuarnFloat() {
  const bool negative = std::signbit(value);
  if (!std::isfinite(value)) {
    QuarnAccess::set_special(*this, std::isnan(value) ? Kind::nan : Kind::infinite, negative);
    return;
  }
  int exponent = 0;
  std::uint64_t mantissa = std::uint64_t(std::ldexp(std::frexp(std::fabs(value), &exponent), 53));
  if (mantissa == 0) {
    QuarnAccess::set_special(*this, Kind::zero, negative);
    return;
  }
  exponent -= 53;
  const int trailing = std::countr_zero(mantissa);
  mantissa >>= trailing;
  exponent += trailing;
  SmallInteger integer(mantissa);
  if (exponent >= 0) {
    integer.multiply_power(2, exponent);
    *this = from_integer(negative, integer, 0);
  } else {
    // m / 2^k = m * 5^k / 10^k
    integer.multiply_power(5, -exponent);
    *this = from_integer(negative, integer, exponent);
  }
}

// Comparison --------------------------------------------------------------------------------------------------

int QuarnCompare(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  if (isnan(a) || isnan(b)) {
    return 2;
  }
  const auto sign = [](const QuarnFloat& x) {
    return QuarnAccess::kind(x) == Kind::zero ? 0 : QuarnAccess::negative(x) ? -1 : 1;
  };
  const int sign_a = sign(a);
  const int sign_b = sign(b);
  if (sign_a != sign_b || sign_a == 0) {
    return sign_a < sign_b ? -1 : int(sign_a > sign_b);
  }
  // Infinity has no limbs and an exponent above that of every finite number.
  const std::int32_t exponent_a = QuarnAccess::exponent(a);
  const std::int32_t exponent_b = QuarnAccess::exponent(b);
  if (exponent_a != exponent_b) {
    return exponent_a < exponent_b ? -sign_a : sign_a;
  }
  return sign_a * quarn::compare_fractions<Radix>(QuarnAccess::limbs(a), QuarnAccess::length(a), QuarnAccess::limbs(b),
                                                  QuarnAccess::length(b));
}

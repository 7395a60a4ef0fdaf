// Between decimal numbers and block fixed point.
#pragma once

#include <array>
#include <cstdlib>
#include <vector>

#include "number/elementary/words.h"
#include "number/fixed/words.h"
#include "number/scalar/access.h"

namespace quarn::block {

/// Limbs of a full decimal limb of 18 digits.
inline constexpr int kLimbsPerUnit = 18 / Radix::digits;

/// The whole units of 10^18 that L places hold.
constexpr int units_for(int places) { return int(64.0 * places * 0.30102999566 / 18); }

/// From decimal numbers to binary fractions of L places: of the digits after 10^exponent the first 18 units_for(L) are
/// taken.
class DecimalReader {
 public:
  explicit DecimalReader(int places);

  /// |x| 10^-exponent * 2^(64 L - 1), |x| < 10^exponent: at most L + 1 units and 10^(-18 units_for(L)) * 2^(64 L - 1)
  /// below the exact value, never above. x is finite and not zero.
  template <class Length>
  void read(Limb* out, const QuarnFloat& x, std::int64_t exponent, Length places) const {
    const View v = view_of(x);
    const int n = places * kPerPlace<Limb>;
    std::fill_n(out, n, Limb(0));
    const std::int64_t gap = exponent - v.exponent;
    if (gap >= 18 * std::int64_t(units_)) {
      return;
    }
    // The integer of the first limbs, Horner's rule. Limbs are taken as if there were more zeros behind.
    const int limbs = (units_ - int(gap / 18)) * kLimbsPerUnit;
    Limb integer[room<Limb, Length>()];
    int used = 0;
    for (int i = 0; i < limbs; ++i) {
      Limb carry = i < int(v.length) ? v.limbs[i] : 0;
      for (int j = 0; j < used; ++j) {
        const Wide t = Wide(integer[j]) * Radix::base + carry;
        integer[j] = Limb(t);
        carry = Limb(t >> kBits<Limb>);
      }
      if (used < n) {
        integer[used++] = carry;
      }
    }
    std::fill(integer + used, integer + n, Limb(0));
    fixed::shift_up(integer, integer, n, shift_);
    multiply_high(out, integer, scale_[std::size_t(gap % 18)].data(), places);
  }

 private:
  using Wide = Radix::Wide;

  int units_;
  int shift_;  // left-aligns 10^(18 units)
  std::array<std::vector<Limb>, 18> scale_;
};

/// From a signed number to a decimal one, times a constant, rounded to the working digits.
class DecimalWriter {
 public:
  /// Of a number of L places, seen as a fraction below 1, the multiple `factor` > 0.
  DecimalWriter(const QuarnFloat& factor, int places, const DecimalReader& constants);

  /// x * factor * 10^exponent: at most 10 (L + 4) units of x times the factor from the exact value before it is rounded
  /// to `digits` digits. Zero has no sign.
  template <class Length>
  QuarnFloat write(const Limb* x, std::int64_t exponent, bool negated, int digits, Length places) const {
    const int n = places * kPerPlace<Limb>;
    const Limb mask = sign_mask(x, places);
    Limb magnitude[room<Limb, Length>()];
    negate_if(magnitude, x, mask, places);
    Limb rest[room<Limb, Length>()];
    multiply_high(rest, magnitude, factor_.data(), places);
    if (is_short(rest[n - 1], kPerPlace<Limb> == 2 ? rest[n - 2] : 0, exponent, digits)) {
      return short_number(rest, n, exponent + exponent_, (mask != 0) != negated, digits);
    }
    // Each unit of 10^18 takes 59 bits and more, so that as many may be forgotten at the lower end.
    constexpr int kRoom = (64 * kMaxPlaces / 59 + 2) * kLimbsPerUnit;
    Limb limbs[kRoom];
    const int units = 64 * int(places) / 59 + 1;
    for (int i = 0; i < units; ++i) {
      const int forgotten = i * 59 / 64 * kPerPlace<Limb>;
      for (int half = 0; half < kLimbsPerUnit; ++half) {
        limbs[i * kLimbsPerUnit + half] = take(rest + forgotten, n - forgotten, Radix::base);
      }
    }
    QuarnFloat result =
        rounded((mask != 0) != negated, exponent + exponent_, limbs, std::size_t(units * kLimbsPerUnit), true, digits);
    return kind_of(result) == Kind::zero ? QuarnFloat() : result;
  }

 private:
  using Wide = Radix::Wide;

  /// x := the fraction of x times factor; returns the integer before it.
  [[gnu::always_inline]] static Limb take(Limb* x, int n, Limb factor) {
    Limb carry = 0;
    for (int j = 0; j < n; ++j) {
      const Wide t = Wide(x[j]) * factor + carry;
      x[j] = Limb(t);
      carry = Limb(t >> kBits<Limb>);
    }
    return carry;
  }

  /// Is the number kept inside its object, far from the ends of the exponents, and from 10^-18 on as a fraction with
  /// these upper bits?
  bool is_short(Limb top, Limb next, std::int64_t exponent, int digits) const {
    const std::uint64_t bits = kPerPlace<Limb> == 1 ? top : std::uint64_t(top) << 32 | next;
    constexpr std::uint64_t kLeast = (~std::uint64_t(0)) / 1'000'000'000'000'000'000 + 1;
    constexpr std::int64_t kFar = kMaxScientificExponent - 100;
    return bits >= kLeast && digits <= QuarnFloat::kInlineLimbs * Radix::digits &&
           std::abs(exponent + exponent_) <= kFar;
  }

  /// x * 10^exponent as write() gives it: aligned before its limbs are taken, so that nothing has to be moved.
  static QuarnFloat short_number(Limb* x, int n, std::int64_t exponent, bool negative, int digits) {
    Limb leading = take(x, n, Radix::base);
    if (kLimbsPerUnit == 2 && leading == 0) {
      leading = take(x, n, Radix::base);
      exponent -= Radix::digits;
    }
    const int zeros = Radix::digits - count_digits<Radix>(leading);
    QuarnFloat result;
    Limb* const limbs = QuarnAccess::inside(result);
    const Limb power = Radix::powers[std::size_t(zeros)];
    limbs[0] = leading * power + take(x, n, power);
    std::uint32_t length = std::uint32_t((digits - 1) / Radix::digits + 1);
    for (std::uint32_t i = 1; i < length; ++i) {
      limbs[i] = take(x, n, Radix::base);
    }
    // Something always follows: half a unit and more is rounded up.
    const Limb unit = Radix::powers[std::size_t(int(length) * Radix::digits - digits)];
    Limb& last = limbs[length - 1];
    const Limb dropped = last % unit;
    const bool up = unit == 1 ? x[n - 1] >> (kBits<Limb> - 1) != 0 : dropped >= unit / 2;
    last += (up ? unit : 0) - dropped;
    for (std::uint32_t i = length; i-- > 0 && limbs[i] == Radix::base;) {
      if (i == 0) {
        limbs[0] = Radix::base / 10;
        ++exponent;
      } else {
        limbs[i] = 0;
        ++limbs[i - 1];
      }
    }
    while (limbs[length - 1] == 0) {
      --length;
    }
    QuarnAccess::set(result, length | (negative ? QuarnAccess::kSign : 0), std::int32_t(exponent - zeros));
    return result;
  }

  std::vector<Limb> factor_;
  std::int64_t exponent_ = 0;  // factor = factor_ / 2^(64 L) * 10^exponent_
};

}  // namespace quarn::block

// Between decimal numbers and block fixed point.
#pragma once

#include <array>
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
    // Each unit of 10^18 takes 59 bits and more, so that as many may be forgotten at the lower end.
    constexpr int kRoom = (64 * kMaxPlaces / 59 + 2) * kLimbsPerUnit;
    Limb limbs[kRoom];
    const int units = 64 * int(places) / 59 + 1;
    for (int i = 0; i < units; ++i) {
      const int forgotten = i * 59 / 64 * kPerPlace<Limb>;
      for (int half = 0; half < kLimbsPerUnit; ++half) {
        Limb carry = 0;
        for (int j = forgotten; j < n; ++j) {
          const Wide t = Wide(rest[j]) * Radix::base + carry;
          rest[j] = Limb(t);
          carry = Limb(t >> kBits<Limb>);
        }
        limbs[i * kLimbsPerUnit + half] = carry;
      }
    }
    QuarnFloat result =
        rounded((mask != 0) != negated, exponent + exponent_, limbs, std::size_t(units * kLimbsPerUnit), true, digits);
    return kind_of(result) == Kind::zero ? QuarnFloat() : result;
  }

 private:
  using Wide = Radix::Wide;

  std::vector<Limb> factor_;
  std::int64_t exponent_ = 0;  // factor = factor_ / 2^(64 L) * 10^exponent_
};

}  // namespace quarn::block

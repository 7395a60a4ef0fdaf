// Upper bounds of magnitudes: nine significant decimal digits and an exponent without practical limit.
//
// Every operation returns a number that is not below the exact result, so that a formula of sums, products, quotients
// and roots is a bound of what it would be without rounding. One operation overestimates by less than 2e-8 of its
// result. Results are the same on every platform, and depend on no digits and no rounding mode.
#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>

#include "quarn/quarnfloat.h"

/// A bound: zero, a positive number, or infinity, which says that nothing is known.
class QuarnBound {
 public:
  /// 0
  constexpr QuarnBound() noexcept = default;
  /// Not below |x|; infinity for infinities and NaN.
  QRNFLOAT_API explicit QuarnBound(const QuarnFloat& x) noexcept;
  /// Not below |z|.
  explicit QuarnBound(const quarn::Complex& z) noexcept : QuarnBound(hypotenuse(QuarnBound(z.re), QuarnBound(z.im))) {}

  [[nodiscard]] static constexpr QuarnBound infinity() noexcept { return {1, kInfinite}; }
  [[nodiscard]] static constexpr QuarnBound count(std::uint32_t n) noexcept { return {n, 0}; }
  /// 10^exponent
  [[nodiscard]] static constexpr QuarnBound power_of_ten(std::int64_t exponent) noexcept { return {1, exponent}; }
  /// How far a number of this size that was rounded to nearest at `digits` digits is from what was rounded: half a unit
  /// of the last place, 0 for 0.
  [[nodiscard]] constexpr QuarnBound half_unit(int digits) const noexcept {
    return is_zero() || !is_finite() ? *this : QuarnBound(5, exponent() - digits);
  }

  [[nodiscard]] constexpr bool is_zero() const noexcept { return mantissa_ == 0; }
  [[nodiscard]] constexpr bool is_finite() const noexcept { return exponent_ != kInfinite; }
  /// The exponent e of d.ddd * 10^e; of a positive finite bound.
  [[nodiscard]] constexpr std::int64_t exponent() const noexcept { return exponent_ + 8; }

  /// A number of nine digits that is not below the bound: its value, unless that is beyond the range of numbers.
  [[nodiscard]] QRNFLOAT_API QuarnFloat value() const;

  friend constexpr QuarnBound operator+(const QuarnBound& a, const QuarnBound& b) noexcept {
    if (a < b) {
      return b + a;
    }
    if (b.is_zero() || !a.is_finite()) {
      return a;
    }
    const std::int64_t places = a.exponent_ - b.exponent_;
    const std::uint64_t added = places > 9 ? 1 : over(b.mantissa_, power(int(places)));
    return {a.mantissa_ + added, a.exponent_};
  }
  friend constexpr QuarnBound operator*(const QuarnBound& a, const QuarnBound& b) noexcept {
    if (!a.is_finite() || !b.is_finite()) {
      return infinity();
    }
    return {std::uint64_t(a.mantissa_) * b.mantissa_, a.exponent_ + b.exponent_};
  }
  /// Infinity for a divisor 0. The divisor has to be a lower bound where a / b is to be an upper one.
  friend constexpr QuarnBound operator/(const QuarnBound& a, const QuarnBound& b) noexcept {
    if (!a.is_finite() || b.is_zero()) {
      return infinity();
    }
    if (a.is_zero() || !b.is_finite()) {
      return {};
    }
    return {over(std::uint64_t(a.mantissa_) * kUnit, b.mantissa_), a.exponent_ - b.exponent_ - 9};
  }
  constexpr QuarnBound& operator+=(const QuarnBound& b) noexcept { return *this = *this + b; }
  constexpr QuarnBound& operator*=(const QuarnBound& b) noexcept { return *this = *this * b; }

  friend constexpr QuarnBound sqrt(const QuarnBound& a) noexcept {
    if (a.is_zero() || !a.is_finite()) {
      return a;
    }
    const int places = a.exponent_ % 2 == 0 ? 8 : 9;
    return {root(a.mantissa_ * power(places)), (a.exponent_ - places) / 2};
  }
  friend constexpr QuarnBound hypotenuse(const QuarnBound& a, const QuarnBound& b) noexcept {
    return b.is_zero() ? a : a.is_zero() ? b : sqrt(a * a + b * b);
  }
  /// An upper bound of 1 / (1 - a): infinity from a = 1 on.
  [[nodiscard]] friend constexpr QuarnBound over_one_minus(const QuarnBound& a) noexcept {
    if (!a.is_finite() || (!a.is_zero() && a.exponent() >= 0)) {
      return infinity();
    }
    // 1 - a in units of 10^-9, rounded down
    const std::uint64_t part = a.is_zero()          ? 0
                               : a.exponent_ <= -18 ? 1
                                                    : over(a.mantissa_, power(int(-9 - a.exponent_)));
    return part >= kUnit ? infinity() : QuarnBound(over(kUnit * kUnit, kUnit - part), -9);
  }

  friend constexpr std::strong_ordering operator<=>(const QuarnBound& a, const QuarnBound& b) noexcept {
    if (a.is_zero() || b.is_zero()) {
      return a.mantissa_ <=> b.mantissa_;
    }
    return a.exponent_ != b.exponent_ ? a.exponent_ <=> b.exponent_ : a.mantissa_ <=> b.mantissa_;
  }
  friend constexpr bool operator==(const QuarnBound& a, const QuarnBound& b) noexcept = default;

 private:
  static constexpr std::uint64_t kUnit = 1'000'000'000;
  static constexpr std::int64_t kInfinite = INT64_MAX;

  /// m * 10^e with any m, rounded up to nine digits.
  constexpr QuarnBound(std::uint64_t m, std::int64_t e) noexcept {
    if (m == 0) {
      return;
    }
    if (e == kInfinite) {
      mantissa_ = std::uint32_t(kUnit / 10);
      exponent_ = e;
      return;
    }
    while (m >= kUnit) {
      const bool far = m >= kUnit * 1000;
      m = over(m, far ? 1000 : 10);
      e += far ? 3 : 1;
    }
    while (m < kUnit / 10) {
      m *= 10;
      --e;
    }
    mantissa_ = std::uint32_t(m);
    exponent_ = e;
  }

  static constexpr std::uint64_t over(std::uint64_t a, std::uint64_t b) noexcept {
    return a / b + (a % b != 0 ? 1 : 0);
  }
  static constexpr std::uint64_t power(int exponent) noexcept {
    std::uint64_t result = 1;
    for (; exponent > 0; --exponent) {
      result *= 10;
    }
    return result;
  }
  /// The least number whose square is not below a.
  static constexpr std::uint64_t root(std::uint64_t a) noexcept {
    std::uint64_t low = 0;
    std::uint64_t high = 2 * kUnit;
    while (low < high) {
      const std::uint64_t middle = (low + high) / 2;
      if (middle * middle < a) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  std::uint32_t mantissa_ = 0;
  std::int64_t exponent_ = 0;
};

// The decimal digits of a number, rounded for display without copying the coefficient, and their two layouts.
#pragma once

#include <cstdint>

#include "number/scalar/access.h"
#include "number/text/bounded_text.h"

namespace quarn {

/// 0.d0 d1 d2 ... * 10^exponent: a number rounded half to even after the first `keep` of its digits.
///
/// Rounding up turns a run of nines into zeros and adds one to the digit before it, so the rounded digits are always
/// digits of the coefficient, one last digit, then zeros: nothing has to be stored. What rounds to zero has no digits.
class RoundedDigits {
 public:
  /// Zero, with the exponent of 0.0e0 in scientific form.
  RoundedDigits() noexcept = default;
  /// `keep` may be zero or negative: the rounding position then lies before the first digit. The limbs stay owned by
  /// the number and must outlive the digits.
  RoundedDigits(const View& number, std::int64_t keep) noexcept;

  /// Digits up to the last one that is not zero.
  std::int64_t count() const noexcept { return count_; }
  std::int64_t exponent() const noexcept { return exponent_; }

  /// Appends the digits from <= i < to; those past count() are zeros.
  void write(BoundedText& out, std::int64_t from, std::int64_t to) const noexcept;

 private:
  int digit(std::int64_t i) const noexcept;
  void write_coefficient(BoundedText& out, std::int64_t from, std::int64_t to) const noexcept;

  const Limb* limbs_ = nullptr;
  std::int64_t count_ = 0;
  std::int64_t exponent_ = 1;
  int last_ = 0;  // digit count_ - 1, which may be one above that of the coefficient
};

/// A keep that rounds nothing away.
inline constexpr std::int64_t kAllDigits = INT64_MAX;

/// d.ddde+-x with `decimals` digits after the point.
struct ScientificLayout {
  std::int64_t decimals;
  bool always_point;
  char letter;
  int exponent_digits;  // at least so many

  void write(BoundedText& out, const RoundedDigits& digits) const noexcept;
};

/// ddd.ddd with `decimals` digits after the point.
struct FixedLayout {
  std::int64_t decimals;
  bool always_point;

  void write(BoundedText& out, const RoundedDigits& digits) const noexcept;
};

}  // namespace quarn

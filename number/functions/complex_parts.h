// Special functions of complex numbers: both parts good to a unit, from values that are good to an absolute error.
#pragma once

#include <algorithm>
#include <limits>

#include "number/functions/support.h"
#include "quarn/complex.h"

namespace quarn {

/// The exponent e of d.ddd * 10^e of the number, of the larger part; smallest_exponent for zero.
inline constexpr std::int64_t kNoExponent = -4 * kMaxScientificExponent;
inline std::int64_t largest_exponent(const QuarnFloat& x) noexcept {
  return kind_of(x) == Kind::finite ? scientific_exponent(x) : kNoExponent;
}
inline std::int64_t largest_exponent(const Complex& z) noexcept {
  return std::max(largest_exponent(z.re), largest_exponent(z.im));
}

inline Complex rounded(const Complex& z, int digits) { return {rounded(z.re, digits), rounded(z.im, digits)}; }

inline bool has_nan(const Complex& z) noexcept { return isnan(z.re) || isnan(z.im); }
inline bool has_infinity(const Complex& z) noexcept { return isinf(z.re) || isinf(z.im); }

/// The digits of the longest part, the working ones at least: the scale of what can be close to a zero or a pole.
inline int longest(const Complex& z) { return std::max({QuarnDigits(), stored_digits(z.re), stored_digits(z.im)}); }

/// Parts that are off by less than 10^error.
struct NearValue {
  Complex value;
  std::int64_t error;
};

/// A value with an error of 10^-w, relative to its larger part.
inline NearValue near_value(Complex value, int w) {
  const std::int64_t error = largest_exponent(value) - w;
  return {std::move(value), error};
}

/// Digits that are missing for a part that is good to a hundredth of its last unit.
inline std::int64_t missing_digits(const QuarnFloat& part, std::int64_t error, int digits) {
  switch (kind_of(part)) {
    case Kind::finite:
      return error + digits + 2 - scientific_exponent(part);
    case Kind::zero:
      return error < -kMaxScientificExponent - 1 ? 0 : std::numeric_limits<std::int64_t>::max();
    default:
      return 0;
  }
}

/// near(w) delivers the value with an error of about 10^-w of it. It is asked for more digits until both parts are good
/// to a hundredth of their last unit, or have been asked for with `most` digits more: a part that is still unknown then
/// is smaller than 10^-most times the other one.
template <class Near>
Complex parts_from(const Near& near, int most) {
  const int digits = QuarnDigits();
  for (std::int64_t extra = 6;;) {
    const NearValue found = near(digits + int(extra));
    const std::int64_t missing = std::max(missing_digits(found.value.re, found.error, digits),
                                          missing_digits(found.value.im, found.error, digits));
    if (missing <= 0 || extra >= most) {
      return rounded(found.value, digits);
    }
    extra = missing > most ? std::min<std::int64_t>(4 * extra + digits, most)
                           : std::min<std::int64_t>(extra + missing + 2, most);
  }
}

}  // namespace quarn

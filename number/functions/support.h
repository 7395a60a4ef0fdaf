// What the further functions share: exact results beside Ziv's strategy, absolute errors turned into relative ones, and
// numbers moved by powers of ten.
#pragma once

#include <algorithm>
#include <optional>

#include "number/elementary/rounding.h"

namespace quarn {

/// Digits of the coefficient as it is stored: an upper bound that costs nothing.
inline int stored_digits(const QuarnFloat& x) noexcept { return int(QuarnAccess::length(x)) * int(Radix::digits); }

/// x is finite, and no digit follows its decimal point.
bool is_whole(const QuarnFloat& x) noexcept;

/// x is whole and odd.
bool is_odd_whole(const QuarnFloat& x) noexcept;

/// x is a pole of the gamma function.
inline bool is_pole(const QuarnFloat& x) { return kind_of(x) == Kind::zero || (view_of(x).negative && is_whole(x)); }

/// Zeros between the decimal point and the first digit.
inline int places_below_one(const QuarnFloat& x) { return int(std::max<std::int64_t>(-scientific_exponent(x), 0)); }

/// x times 10^power, with all digits of x. x is finite and not zero.
inline QuarnFloat shifted(const QuarnFloat& x, std::int64_t power) {
  const View v = view_of(x);
  return rounded(v.negative, v.exponent + power, v.limbs, v.length, false, stored_digits(x));
}

/// The part of a number next to the integer it is closest to: x = whole + rest, |rest| <= 1/2, without rounding.
struct NearestWhole {
  QuarnFloat whole;
  QuarnFloat rest;
};

/// x is finite, |x| < 10^18.
NearestWhole nearest_whole(const QuarnFloat& x);

/// correctly_rounded for functions with exact results: exact(y) is asked once, when y, which is good to more digits
/// than the working ones, does not decide the rounding, and delivers the result if it is a decimal number.
template <class Approximate, class Exact>
QuarnFloat correctly_rounded(const Approximate& approximate, const Exact& exact) {
  const int digits = QuarnDigits();
  for (int extra = 6;; extra *= 3) {
    const QuarnFloat y = approximate(digits + extra);
    if (kind_of(y) != Kind::finite || rounds_safely(y, digits, digits + extra)) {
      return rounded(y, digits);
    }
    if (extra == 6) {
      if (const std::optional<QuarnFloat> result = exact(y)) {
        return rounded(*result, digits);
      }
    }
  }
}

/// A value to a relative error of 10^-w from absolute(a), which delivers it to an absolute error of 10^-a. The value is
/// not zero. first is where to begin: w less the power of ten that the value is thought to have.
template <class Absolute>
QuarnFloat relative_from_absolute(const Absolute& absolute, int w, int first) {
  for (int a = first;;) {
    const QuarnFloat y = absolute(a);
    if (kind_of(y) == Kind::finite) {
      const std::int64_t needed = w - scientific_exponent(y);
      if (needed <= a) {
        return y;
      }
      a = int(std::min<std::int64_t>(needed + 1, 2 * std::int64_t(a) + w + 20));
    } else if (kind_of(y) == Kind::zero) {
      a = 2 * std::max(a, 0) + w + 20;
    } else {
      return y;
    }
  }
}

}  // namespace quarn

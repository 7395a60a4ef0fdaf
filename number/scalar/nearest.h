// The nearest number of the hardware.
#pragma once

#include <charconv>
#include <cmath>

#include "number/scalar/access.h"

namespace quarn {

/// The nearest T: from the text of all digits, which the standard library rounds once.
template <class T>
T nearest(const QuarnFloat& x, int lowest_exponent, int highest_exponent) noexcept {
  const T sign = signbit(x) ? T(-1) : T(1);
  switch (kind_of(x)) {
    case Kind::zero:
      return sign * T(0);
    case Kind::infinite:
      return sign * T(HUGE_VAL);
    case Kind::nan:
      return T(NAN);
    case Kind::finite:
      break;
  }
  const View v = view_of(x);
  if (v.exponent > highest_exponent) {
    return sign * T(HUGE_VAL);
  }
  if (v.exponent < lowest_exponent) {
    return sign * T(0);
  }
  // No midpoint of two floats, doubles, or numbers of 113 bits and 15 bits of exponent has more digits; a final 1
  // stands for all that follow.
  constexpr std::size_t kMostDigits = sizeof(T) == sizeof(float) ? 150 : sizeof(T) == sizeof(double) ? 768 : 11'600;
  constexpr auto kDigits = std::int64_t(Radix::digits);
  constexpr std::size_t kLimbs = kMostDigits / std::size_t(kDigits) + 1;
  const std::size_t used = std::min(v.length, kLimbs);
  char text[kLimbs * std::size_t(kDigits) + 32];
  char* end = text;
  for (std::size_t i = 0; i < used; ++i) {
    Limb rest = v.limbs[i];
    for (int place = int(kDigits); place-- > 0; rest /= 10) {
      end[place] = char('0' + rest % 10);
    }
    end += kDigits;
  }
  if (used < v.length) {
    *end++ = '1';
  }
  const std::int64_t places = end - text;
  *end++ = 'e';
  end = std::to_chars(end, text + sizeof text, v.exponent - places).ptr;
  T value = 0;
  if (std::from_chars(text, end, value).ec == std::errc::result_out_of_range) {
    value = v.exponent > 0 ? T(HUGE_VAL) : T(0);
  }
  return sign * value;
}

}  // namespace quarn

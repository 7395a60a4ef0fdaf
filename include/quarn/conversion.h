// QuarnFloat as a number of the hardware, for explicit conversions. Included by quarnfloat.h.
#pragma once

#include "quarn/quarnfloat.h"

namespace quarn {

/// The nearest float and long double, ties to even; beyond the range infinity or zero. On Windows the nearest double
/// stands for the long double.
[[nodiscard]] QRNFLOAT_API float to_float(const QuarnFloat& x) noexcept;
[[nodiscard]] QRNFLOAT_API long double to_long_double(const QuarnFloat& x) noexcept;

/// The whole part of |x| in two words of 64 bits, the lower one first, and whether x is negative; false where it does
/// not fit them, and for NaN.
[[nodiscard]] QRNFLOAT_API bool whole_part_words(const QuarnFloat& x, std::uint64_t (&words)[2],
                                                 bool& negative) noexcept;

/// The whole part of x as an integer of any type; beyond its range the nearest of its values, for NaN 0.
template <class T>
[[nodiscard]] T to_integer(const QuarnFloat& x) noexcept {
  constexpr bool kSigned = T(-1) < T(0);
  constexpr int kBits = int(sizeof(T)) * 8;
  // 2^(bits - 1) - 1 without overflow on the way
  constexpr T kHalf = T(T(1) << (kBits - 2));
  constexpr T kMost = kSigned ? T(kHalf - 1 + kHalf) : T(T(kHalf - 1 + kHalf) * T(2) + T(1));
  constexpr T kLeast = kSigned ? T(-kMost - 1) : T(0);
  std::uint64_t words[2];
  bool negative = false;
  if (isnan(x)) {
    return T(0);
  }
  if (!whole_part_words(x, words, negative)) {
    return negative ? kLeast : kMost;
  }
  if constexpr (sizeof(T) <= 8) {
    if (words[1] != 0 || words[0] > std::uint64_t(kMost)) {
      return negative ? kLeast : kMost;
    }
    return negative ? (kSigned ? T(-T(words[0])) : T(0)) : T(words[0]);
  } else {
    if (kSigned && words[1] >> 63 != 0) {
      return negative ? kLeast : kMost;
    }
    const T size = T(T(words[1]) << 64) + T(words[0]);
    return negative ? (kSigned ? T(-size) : T(0)) : size;
  }
}

}  // namespace quarn

template <class T>
requires(quarn::is_hardware_number<T>) QuarnFloat::operator T() const noexcept {
  if constexpr (std::same_as<T, bool>) {
    return exponent_ != kZero;
  } else if constexpr (std::same_as<T, float>) {
    return quarn::to_float(*this);
  } else if constexpr (std::same_as<T, double>) {
    return FloatToDouble(*this);
  } else if constexpr (std::same_as<T, long double>) {
    return quarn::to_long_double(*this);
  } else {
    return quarn::to_integer<T>(*this);
  }
}

// Which numbers may be squared, or multiplied with each other, without leaving the range of exponents, some 10^9 on
// either side. Beyond these ends algorithms work with multiples by powers of ten, which are exact.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

/// Decades on either side of 1 from which squares, and sums of squares, are well within the range.
inline constexpr int kFarthestSquared = 400'000'000;
/// Decades from which products of four numbers, and sums of them, are.
inline constexpr int kFarthestMultiplied = 200'000'000;

/// Whether 10^-decades < size < 10^decades.
inline bool is_within(const QuarnFloat& size, int decades) {
  return size > QuarnFloat(1, -decades) && size < QuarnFloat(1, decades);
}

}  // namespace tesk

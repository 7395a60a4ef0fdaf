// The factors of a complex transform's length, one a pass.
#pragma once

#include <array>

#include "quarn/quarnfloat.h"

namespace tesk {

/// A length with as many factors is refused. No 32-bit length has more than 19: the search itself cannot tell.
inline constexpr Integer kTooManyFactors = 31;

struct ComplexFactors {
  Integer count = 0;
  std::array<Integer, kTooManyFactors> factor{};
  bool too_many = false;
};

/// The factors of n >= 1 in the order of the passes: all 5, all 4, at most one 2, all 3, then primes from 7 ascending.
/// 1 has the one factor 1. The search stops as soon as it has found `limit` factors, of which there are then too many.
ComplexFactors factorize_complex(Integer n, Integer limit = kTooManyFactors);

}  // namespace tesk

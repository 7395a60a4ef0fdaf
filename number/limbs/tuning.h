// Where one algorithm takes over from another, in limbs. Measured by tune_limbs (bench/tune.cpp), which prints these
// tables.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/convolution/tables.h"

namespace quarn {

struct Thresholds {
  std::size_t karatsuba;         // products from here on are split in halves
  std::size_t karatsuba_square;  // the same for squares
  std::size_t transform;         // from here on number-theoretic transforms
  std::size_t transform_square;
  std::size_t newton_divide;  // quotients and divisors from here on go by Newton's iteration
  std::size_t newton_sqrt;    // the same for roots
  std::size_t short_product;  // up to here only the leading limbs of a product to be rounded are formed, by columns
};

/// Variables, so that the tuning program can try others and the tests can take recursions to small sizes. The second
/// table is for processors on which transforms work on doubles.
template <class Limb>
inline constinit Thresholds thresholds[2]{};
template <>
inline constinit Thresholds thresholds<std::uint64_t>[2] = {{80, 76, 403, 303, 1069, 1563, 627},
                                                            {80, 76, 76, 70, 414, 414, 190}};
template <>
inline constinit Thresholds thresholds<std::uint32_t>[2] = {{56, 53, 479, 303, 24, 24, 559},
                                                            {56, 53, 40, 36, 24, 26, 99}};

/// The table for this processor.
template <class Limb>
const Thresholds& limits() noexcept {
  return thresholds<Limb>[convolution::kernel_in_use() != nullptr];
}

}  // namespace quarn

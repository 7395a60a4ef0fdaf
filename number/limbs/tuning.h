// Where one algorithm takes over from another, in limbs. Measured by tune_limbs (bench/tune.cpp), which prints these
// tables.
#pragma once

#include <cstddef>
#include <cstdint>

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

/// Variables, so that the tuning program can try others and the tests can take recursions to small sizes.
template <class Limb>
inline constinit Thresholds thresholds{};
template <>
inline constinit Thresholds thresholds<std::uint64_t>{80, 76, 403, 303, 1069, 1563, 627};
template <>
inline constinit Thresholds thresholds<std::uint32_t>{56, 53, 479, 303, 24, 24, 559};

}  // namespace quarn

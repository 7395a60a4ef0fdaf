// Where one algorithm takes over from another, in limbs. Measured by bench/tune, which prints this table.
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
};

/// Variables, so that the tuning program can try others and the tests can take recursions to small sizes.
template <class Limb>
inline constinit Thresholds thresholds{};
template <>
inline constinit Thresholds thresholds<std::uint64_t>{40, 60, 300, 300, 200, 200};
template <>
inline constinit Thresholds thresholds<std::uint32_t>{40, 60, 500, 500, 300, 300};

}  // namespace quarn

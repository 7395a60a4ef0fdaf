// The two primes, their roots of unity, and the kernels in use.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/convolution/kernel.h"

namespace quarn::convolution {

inline constexpr std::uint64_t kPrimes[2] = {844'421'356'584'961, 844'416'826'736'641};
/// For digits of base 10^12.
extern const Recombination kDecimal;
/// The longest transform has 2^kTwos vectors, or three or five times as many.
inline constexpr int kTwos = 20;
/// Lengths in coefficients are multiples of this.
inline constexpr std::size_t kGrain = 16;

/// The kernels for the instruction set that exact products use, null when it has no fused multiply-add.
const Kernel* kernel_in_use() noexcept;

/// The primes with twiddles for transforms of so many vectors. Throws std::bad_alloc.
const Field* fields_for(const Kernel& kernel, std::size_t vectors);

}  // namespace quarn::convolution

// The transform of real numbers and its inverse.
#pragma once

#include "src/fft/factorize.h"
#include "src/fft/twiddles.h"

namespace tesk {

/// x[0 .. n), n > 1: real numbers to the Hermitian sequence of their transform in half-complex storage; backward the
/// opposite. Both are scaled by 1/sqrt(n). work: n numbers of scratch. A length that is refused leaves x as it is.
Factorization::Status real_transform(Direction direction, QuarnFloat* x, Integer n, const Constants& constants,
                                     QuarnFloat* work);

}  // namespace tesk

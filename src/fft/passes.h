// The passes of the real transform: one for each entry of a pass list.
#pragma once

#include "src/fft/twiddles.h"
#include "tesk2mp/fft.h"

namespace tesk {

/// x[0 .. n): real numbers in digit-reversed order to a Hermitian sequence in half-complex storage, unscaled.
/// radices: the pass list, ended by a 0; 1 is skipped. The walk ends early at a radix that is negative, above 2^30, or
/// does not divide what is left of n.
void forward_passes(QuarnFloat* x, Integer n, const Integer* radices, const Constants& constants);

/// The opposite: half-complex storage to real numbers in digit-reversed order, by the list in reverse order.
void backward_passes(QuarnFloat* x, Integer n, const Integer* radices, const Constants& constants);

}  // namespace tesk

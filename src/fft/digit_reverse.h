// The permutation between natural order and the order of the passes.
#pragma once

#include "src/fft/factorize.h"

namespace tesk {

/// Moves x[0 .. n) into mixed-radix digit-reversed order: with the factors f1, f2, ... the element that comes to
/// position d1 + f1*d2 + f1*f2*d3 + ... is the one from d1*n/f1 + d2*n/(f1*f2) + ... An empty list leaves x alone.
/// work: n elements of scratch.
void c06DigitReverse(QuarnFloat* x, Integer n, const FactorList& factors, QuarnFloat* work);

}  // namespace tesk

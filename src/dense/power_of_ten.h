// Matrices far from 1: products of their elements would leave the range of numbers, and thresholds of the machine
// constants would pass for large. A power of ten brings them near 1 without a rounding.
#pragma once

#include "src/kernels/views.h"

namespace tesk {

/// The exponent e of the largest element when the matrix is to be multiplied by 10^-e first, otherwise 0: for a matrix
/// of common size, of zeros, or with an element that is not finite.
Integer far_exponent(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a);

/// A := 10^exponent A
void multiply_by_power(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a, Integer exponent);

}  // namespace tesk

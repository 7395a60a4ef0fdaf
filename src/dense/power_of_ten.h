// Matrices far from 1: products of their elements would leave the range of numbers, and thresholds of the machine
// constants would pass for large. A power of ten brings them near 1 without a rounding.
#pragma once

#include "src/kernels/views.h"

namespace tesk {

/// The real numbers of a matrix whose columns have stride 1: of complex elements the two parts one below the other.
inline OneBasedMatrix<QuarnFloat> parts(OneBasedMatrix<QuarnFloat> a) { return a; }
inline OneBasedMatrix<QuarnFloat> parts(OneBasedMatrix<Complex> a) {
  return {a.first() == nullptr ? nullptr : &a.first()->re, 1, 2 * a.column_stride()};
}
template <class T>
inline constexpr Integer kParts = Integer(sizeof(T) / sizeof(QuarnFloat));

/// The largest magnitude of an element; 0 if one is not finite.
QuarnFloat largest_magnitude(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a);

/// The exponent e of a largest element, the even one next to it towards 0, when the numbers beside it are to be
/// multiplied by 10^-e first, otherwise 0: of common size, or zero.
Integer far_exponent(const QuarnFloat& largest);

/// The exponent e of the largest element when the matrix is to be multiplied by 10^-e first, otherwise 0: for a matrix
/// of common size, of zeros, or with an element that is not finite.
Integer far_exponent(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a);

/// A := 10^exponent A
void multiply_by_power(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a, Integer exponent);

}  // namespace tesk

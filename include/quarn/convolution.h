// Convolutions with one rounding of each result.
//
//   linear    z_k = sum over i of a_i b_(k-i), k = 0 .. na + nb - 2
//   circular  z_k = sum over i of a_i b_((k-i) mod n), k = 0 .. n - 1, na = nb = n
//
// Every result is the exact sum, rounded once, half to even, to QuarnDigits() digits: of integers it is exact when it
// has no more digits than that. Infinities and NaN count as in quarn/exact.h; an exact zero is +0.
//
// Method. Long sequences are scaled to integers and go by transforms of real numbers (quarn/realtransform.h), at so
// many digits that what comes back is less than 1/4 from the integer, where an estimate says that it costs less than na
// nb products: N log N for sequences whose numbers span up to some 540 digits each, from the first digit of the largest
// one to the last digit of all. Numbers of 50 digits go that way from some 110 on when they span 50 digits, from some
// 3000 on when they span 500.
//
// Wider spans take the products. They could be split into parts by exponents, with a transform for each pair of parts:
// at 1250 digits that is as fast as the products for 16000 numbers, and slower for fewer.
#pragma once

#include "quarn/quarnfloat.h"

enum class QuarnConvolution { linear, circular };

/// The lengths are at least 1, and equal for a circular one. z must not overlap a or b.
QRNFLOAT_API void QuarnConvolve(QuarnConvolution kind, const QuarnFloat* a, quarn::Integer na, const QuarnFloat* b,
                                quarn::Integer nb, QuarnFloat* z);

/// A length from n on that is cheap to transform: the smallest 2^a 3^b 5^c; 0 when that has more than 31 bits, 1 for
/// n < 1.
QRNFLOAT_API quarn::Integer QuarnFastLength(quarn::Integer n) noexcept;

// Condition numbers from factors.
#pragma once

#include "src/kernels/views.h"

namespace tesk {

/// 1 / (anorm norm(A^-1)), estimated, from A = P L U: in the 1-norm, or in the infinity-norm. 0 for a singular A, or
/// one so close to it that its inverse overflows; NaN with a NaN among the factors.
template <class T>
QuarnFloat reciprocal_condition(bool one_norm, Integer n, OneBasedMatrix<T> factors, const QuarnFloat& anorm);

}  // namespace tesk

// Products of a matrix in coordinate storage and a vector, real and complex. The entries may stand in any order.
#pragma once

#include "src/sparse/coordinate.h"

namespace tesk {

/// y := A x; of a lower triangle also what its entries stand for in the upper one. n < 1 does nothing.
template <class Value>
void spmv(Sums sums, Storage storage, const CoordinateMatrix<Value>& a, const Value* x, Value* y);

/// y := A^H x of a matrix stored whole, A^T x of a real one.
template <class Value>
void spmv_adjoint(Sums sums, const CoordinateMatrix<Value>& a, const Value* x, Value* y);

}  // namespace tesk

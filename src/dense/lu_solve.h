// Solutions from an LU factorisation, for what builds on them.
#pragma once

#include "src/kernels/exact_level3.h"

namespace tesk {

/// X := op(A)^-1 X from the factors of A, of order n >= 1, with the row numbers of its interchanges. Instantiated for
/// both kinds of numbers in lu_solve.cpp.
template <class T>
void solve_factored(Op op, Integer n, Integer columns, OneBasedMatrix<T> factors, const Integer* ipiv,
                    OneBasedMatrix<T> x);

}  // namespace tesk

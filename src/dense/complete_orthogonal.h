// The complete orthogonal factorisation A P = Q (T 0; 0 0) Z, in its three steps: QR with column pivoting, the rank
// that its R shows, and (R11 R12) = (T 0) Z. Instantiated for both kinds of numbers in complete_orthogonal.cpp.
#pragma once

#include "src/dense/qr.h"

namespace tesk {

/// A P = Q R with |r(j, j)| not growing by more than roundings. Columns with jpvt(j) != 0 on entry come first and stay
/// in their order; on return column j of A P is column jpvt(j) of A.
template <class T>
void factorise_pivoted(Integer m, Integer n, OneBasedMatrix<T> a, Integer* jpvt, T* tau);

/// The order of the largest leading block of R whose estimated condition number stays within 1 / rcond.
template <class T>
Integer estimated_rank(Integer n, OneBasedMatrix<T> r, const QuarnFloat& rcond);

/// (R1 R2), m by n, R1 upper triangular := (T 0) Z: T in the place of R1, in that of R2 the ends of the m vectors of
/// Z = Z(1) ... Z(m), Z(i) = I - tau u u^H.
template <class T>
void factorise_trapezoid(Integer m, Integer n, OneBasedMatrix<T> a, T* tau);

/// C := op(Z) C or C op(Z), C m by n; Z of k reflectors whose vectors end in l elements, columns 1, ..., l of `ends`.
template <class T>
void apply_z(Side side, Op op, Integer m, Integer n, Integer k, Integer l, OneBasedMatrix<T> ends, const T* tau,
             OneBasedMatrix<T> c);

}  // namespace tesk

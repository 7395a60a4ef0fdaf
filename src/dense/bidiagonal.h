// Singular values by way of a real upper bidiagonal matrix, without checks.
#pragma once

#include "src/dense/qr.h"

namespace tesk {

/// A = Q B P^H of an m by n matrix with m >= n: B real, d on its diagonal and e above it. The vectors of Q's n
/// reflectors stand below the diagonal of A, those of P's n - 1 ones below the subdiagonal of `right`, of order n.
template <class T>
void bidiagonalise(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> right, OneBasedVector<QuarnFloat> d,
                   OneBasedVector<QuarnFloat> e, T* tauq, T* taup);

/// The n singular values of B into d, descending, and U := U X, V := V Y with B = X diag(d) Y^T, for a U of u_rows and
/// a V of v_rows rows; e is destroyed. Returns how many elements of e did not become negligible.
template <class T>
Integer bidiagonal_qr(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer u_rows,
                      OneBasedMatrix<T> u, Integer v_rows, OneBasedMatrix<T> v);

/// The singular value decomposition A = U diag(s) V^H of an m by n matrix with m >= n, by one-sided rotations.
/// u: m by n, v: n by n, written when asked for. A is destroyed. Returns 1 when the sweeps did not converge.
template <class T>
Integer jacobi_svd(Integer m, Integer n, OneBasedMatrix<T> a, QuarnFloat* s, bool wants_u, OneBasedMatrix<T> u,
                   bool wants_v, OneBasedMatrix<T> v);

}  // namespace tesk

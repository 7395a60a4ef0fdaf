// The Schur form of a complex matrix and its eigenvectors, without checks.
#pragma once

#include "src/kernels/level1.h"

namespace tesk {

/// Eigenvalues w and, if wanted, the Schur form of rows and columns ilo ... ihi of the upper Hessenberg matrix H; those
/// beside them are read from the diagonal. Z, of `rows` rows, becomes Z times the Schur vectors. Returns INFO: 0, or
/// the index of the eigenvalue that was being sought when the iterations ran out, or the last row with an element that
/// is not finite.
Integer complex_hessenberg_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<Complex> h,
                              OneBasedVector<Complex> w, Integer rows, OneBasedMatrix<Complex> z);

/// The right eigenvector of the upper triangular matrix T for t(k, k): T x = t(k, k) x, x zero below row k.
void triangular_eigenvector(Integer n, OneBasedMatrix<Complex> t, Integer k, OneBasedVector<Complex> x);

/// The left one: y^H T = t(k, k) y^H, y zero above row k.
void left_triangular_eigenvector(Integer n, OneBasedMatrix<Complex> t, Integer k, OneBasedVector<Complex> y);

}  // namespace tesk

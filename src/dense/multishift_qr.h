// The QR algorithm on a large upper Hessenberg matrix, real or complex, without checks.
#pragma once

#include "src/kernels/views.h"

namespace tesk {

/// Blocks of fewer rows are left to the single sweeps of small_qr.
constexpr Integer fewest_for_multishift(bool wants_schur_form) { return wants_schur_form ? 60 : 90; }

/// Eigenvalues and, if wanted, the Schur form of rows and columns ilo ... ihi of H, which is zero below its first
/// subdiagonal. Without the Schur form the eigenvalues stand on the diagonal in blocks of one or two rows, with what is
/// beside them unspecified. Z, of `rows` rows, becomes Z times the Schur vectors. Returns INFO: 0, or the index of the
/// eigenvalue that was being sought when the iterations ran out.
template <class T>
Integer multishift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<T> h, Integer rows,
                      OneBasedMatrix<T> z);

/// The same by single sweeps, for a block of n rows that is worked on as a whole; z has n rows and is changed only when
/// the Schur form is wanted.
Integer small_qr(bool wants_schur_form, Integer n, OneBasedMatrix<QuarnFloat> h, OneBasedMatrix<QuarnFloat> z);
Integer small_qr(bool wants_schur_form, Integer n, OneBasedMatrix<Complex> h, OneBasedMatrix<Complex> z);

}  // namespace tesk

// Dense factorisations. They report through INFO and print nothing: 0 is success, -k says that argument k is illegal
// (checked in argument order), and a positive value is a numerical failure at that step.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

extern "C" {

/// Reads (rwflag 0) or writes (any other rwflag) one cell of the process-wide tuning table. ispec: 1 block size, 2
/// least block size, 3 crossover, 4 number of shifts and 8 largest small block of the QR algorithm, 5 to 7 free. name:
/// a routine of chapters F07 and F08, six capital characters ("F07ADF", or letters first, "ADFF07"). *ival becomes -1
/// when ispec is not in 1 ... 8, otherwise -2 when the name has no row. Shipped: block size 1 (unblocked) for the
/// factorisations; block size 0, one shift, small blocks of 1 for the QR algorithm. Routines that only apply what
/// another one made (F08AG after F08AE, ...) have their own row in the A family and share one elsewhere.
TESK2MP_API void QuarnMP_f07zaz_(Integer ispec, const char* name, Integer* ival, Integer rwflag, int name_length);

/// DGETRF: A = P L U with partial pivoting, A m by n, L with unit diagonal. ipiv: min(m, n) row numbers, 1-based: row i
/// was interchanged with row ipiv(i). Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4). *info = j: U(j, j) is
/// exactly zero; the factorisation is complete. m = 0 or n = 0 touches nothing. Cost: about n^3/3 multiply-adds for
/// m = n.
TESK2MP_API void QuarnMP_f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_dgetrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_f07adf_ENTRY(int selector, Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv,
                                      Integer* info);
/// ZGETRF: the same over Complex; pivots are chosen by |re| + |im|.
TESK2MP_API void QuarnMP_f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_zgetrf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_f07arf_ENTRY(int selector, Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv,
                                      Integer* info);

/// A = P L U with row-weighted pivoting: the pivot is the largest |a(i, j)| w(i), where w(i) is 1 / (2-norm of row i of
/// the given matrix), 0 for a row of zeros, so that the scaling of rows does not matter. ipiv: m elements, which hold
/// the weights on the way; on return the first min(m, n) are row numbers. *info = j: the largest product of step j is
/// below 8 times the machine precision; the factorisation stops there.
TESK2MP_API void QuarnMP_f07adg_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* ipiv, Integer* info);

/// ZPOTRF: A = U^H U (uplo U) or A = L L^H (uplo L), A Hermitian positive definite of order n, given and overwritten on
/// that triangle; the other one is not touched, nor are imaginary parts of the diagonal read. Illegal: uplo (-1), n < 0
/// (-2), lda < max(1, n) (-4). *info = j: the j-th diagonal element came out not positive and is stored; the leading
/// j - 1 columns (U) or rows (L) hold the partial factor.
TESK2MP_API void QuarnMP_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_f07frf_ENTRY(int selector, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                                      int uplo_length);
/// ZPOTF2: the same, one column after the other whatever the block size.
TESK2MP_API void QuarnMP_f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotf2_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
}

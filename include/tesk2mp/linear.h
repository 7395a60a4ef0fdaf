// What belongs to linear systems beside their factorisations: determinants, condition numbers, scaling, inverses.
//
// Those with an INFO print nothing: 0 is success, -k says that argument k is illegal (checked in argument order), and a
// positive value is a numerical failure at that step. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup f03aff determinant of a real matrix
///
/// The determinant of A, of order n, as D 10^ID with 1 <= |D| < 10, from the LU factorisation that takes the place of
/// A, and an estimate of its reciprocal condition number in the 1-norm. The determinant of a singular matrix is 0 with
/// ID 0.
///
/// @param[in] n order of A, >= 0; the determinant of order 0 is 1
/// @param[in,out] a A, n columns of n elements, lda apart; out its factors, as DGETRF leaves them
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] ipiv n row numbers, 1-based: row i was interchanged with row ipiv(i)
/// @param[out] d D; NaN for a matrix with NaN
/// @param[out] id ID
/// @param[out] rcond 1 / (norm(A) norm(A^-1)), estimated; may be null, and is not formed then
///
/// @par Failures
/// IFAIL 1, label 99999: N < 0; label 99998: LDA < max(1, N).
/// IFAIL 2, label 99997: rcond is below 10^-D at D working digits: roundings alone may have made the matrix singular or
/// regular. Without rcond: D is zero. All results are there.
/// IFAIL 3, label 99996, and IFAIL 4, label 99995: the determinant is too small, or too large, for an ID of 32 bits,
/// which is at its limit. All other results are there.
///
/// @par Source
/// J. J. Dongarra, J. R. Bunch, C. B. Moler, G. W. Stewart, LINPACK Users' Guide, SIAM 1979: DGEDI.
///
/// @par Cost
/// About n^3/3 multiply-adds, and some 10 n^2 for rcond.
/// @{
TESK2MP_API void QuarnMPX_f03affn_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* d, Integer* id,
                                   QuarnFloat* rcond, char* message_buffer, Integer* ifail, int buffer_length);
TESK2MP_API void QuarnMPX_f03aff_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* d, Integer* id,
                                  QuarnFloat* rcond, Integer* ifail);
/// @}

/// @defgroup dgedi determinant and inverse from an LU factorisation
///
/// DGEDI: the determinant as det(1) 10^det(2), 1 <= |det(1)| < 10 or zero, and the inverse in the place of the factors
/// that DGETRF left; ZGEDI over Complex, where the larger part of det(1) is in that range.
///
/// @param[in,out] a the factors, n columns of n elements, lda apart; out the inverse if it is wanted and there is one
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] n order, >= 0
/// @param[in] ipvt n rows interchanged, from 1
/// @param[out] det 2 elements; the second one has as many digits as its value needs
/// @param[out] work n elements, used for the inverse alone
/// @param[in] job 10: determinant; 1: inverse; 11: both
///
/// @par Failures
/// None: arguments are not checked. The inverse of a singular matrix is not formed.
///
/// @par Accuracy
/// n roundings of the determinant of the factors.
///
/// @par Source
/// J. J. Dongarra, J. R. Bunch, C. B. Moler, G. W. Stewart, LINPACK Users' Guide, SIAM 1979: DGEDI and ZGEDI.
///
/// @par Cost
/// n multiplications for the determinant, about 2/3 n^3 multiply-adds for the inverse.
/// @{
TESK2MP_API void QuarnMPX_dgedi_(QuarnFloat* a, Integer lda, Integer n, Integer* ipvt, QuarnFloat* det,
                                 QuarnFloat* work, Integer job);
TESK2MP_API void QuarnMPX_zgedi_(Complex* a, Integer lda, Integer n, Integer* ipvt, Complex* det, Complex* work,
                                 Integer job);
/// @}

/// @defgroup zdeterminant determinant of a complex matrix
///
/// The same over Complex; of the parts of D the larger one is from 1 to 10.
///
/// @like f03aff
/// @{
TESK2MP_API void QuarnMPX_zdeterminantn_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* d, Integer* id,
                                         QuarnFloat* rcond, char* message_buffer, Integer* ifail, int buffer_length);
TESK2MP_API void QuarnMPX_zdeterminant_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* d, Integer* id,
                                        QuarnFloat* rcond, Integer* ifail);
/// @}

/// @defgroup dgecon condition number from an LU factorisation
///
/// DGECON: an estimate of 1 / (norm(A) norm(A^-1)) from the factors of A that DGETRF made; ZGECON the same over
/// Complex. The norm of the inverse is estimated from below, hardly ever by less than a third of it.
///
/// @param[in] norm 1 or O: the 1-norm; I: the infinity-norm
/// @param[in] n order of A, >= 0
/// @param[in] a the factors, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] anorm the norm of A before it was factorised
/// @param[out] rcond the estimate; 0 when A is singular or its inverse would overflow, 1 for n = 0
/// @param[out] work not used, may be null
/// @param[out] iwork not used, may be null
/// @param[out] rwork of ZGECON: not used, may be null
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: norm (-1), n < 0 (-2), lda < max(1, n) (-4), anorm negative, infinite or NaN (-5; rcond is NaN for NaN).
/// Storage is taken for the time of the call.
///
/// @par Source
/// N. J. Higham, FORTRAN codes for estimating the one-norm of a real or complex matrix, with applications to condition
/// estimation, ACM Trans. Math. Softw. 14 (1988); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGECON and
/// ZGECON.
///
/// @par Cost
/// Solutions with some 5 right-hand sides, n^2 multiply-adds each.
/// @{
TESK2MP_API void QuarnMPX_dgecon_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat anorm,
                                  QuarnFloat* rcond, QuarnFloat* work, Integer* iwork, Integer* info, int norm_length);
TESK2MP_API void QuarnMPX_zgecon_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat anorm,
                                  QuarnFloat* rcond, Complex* work, QuarnFloat* rwork, Integer* info, int norm_length);
/// @}

/// @defgroup dpocon condition number from a Cholesky factorisation
///
/// DPOCON: an estimate of 1 / (norm(A) norm(A^-1)) in the 1-norm from the factor of A that DPOTRF made; ZPOCON the same
/// over Complex.
///
/// @param[in] uplo U: the factor is U with A = U^H U; L: it is L with A = L L^H
/// @param[in] n order of A, >= 0
/// @param[in] a the factor, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] anorm the 1-norm of A before it was factorised
/// @param[out] rcond the estimate; 0 when the inverse of A would overflow, 1 for n = 0
/// @param[out] work not used, may be null
/// @param[out] iwork not used, may be null
/// @param[out] rwork of ZPOCON: not used, may be null
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda < max(1, n) (-4), anorm negative, infinite or NaN (-5; rcond is NaN for NaN).
/// Storage is taken for the time of the call.
///
/// @par Source
/// As DGECON; E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DPOCON and ZPOCON.
///
/// @par Cost
/// Solutions with some 5 right-hand sides, n^2 multiply-adds each.
/// @{
TESK2MP_API void QuarnMPX_dpocon_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat anorm,
                                  QuarnFloat* rcond, QuarnFloat* work, Integer* iwork, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zpocon_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat anorm,
                                  QuarnFloat* rcond, Complex* work, QuarnFloat* rwork, Integer* info, int uplo_length);
/// @}

/// @defgroup dpotri inverse from a Cholesky factorisation
///
/// DPOTRI: the triangle of the inverse of A in the place of the factor that DPOTRF made; ZPOTRI the same over Complex.
///
/// @param[in] uplo U: the upper triangle; L: the lower
/// @param[in] n order of A, >= 0
/// @param[in,out] a the factor, n columns of n elements, lda apart; out that triangle of the inverse; the other
/// triangle
///     is not touched
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] info 0, -k when argument k is illegal, or j when element (j, j) of the factor is exactly zero; A is then
/// as
///     it was
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda < max(1, n) (-4). Storage for n^2 elements is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DPOTRI and ZPOTRI.
///
/// @par Cost
/// About n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpotri_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info,
                                  int uplo_length);
TESK2MP_API void QuarnMPX_zpotri_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
/// @}

/// @defgroup dgeequ scales of rows and columns
///
/// DGEEQU: r and c such that the largest element of each row and of each column of r(i) A(i, j) c(j) is 1; ZGEEQU over
/// Complex, whose elements have the size |re| + |im|. DGEEQUB and ZGEEQUB give powers of ten instead, with which
/// nothing is rounded and these elements are from 0.1 to 1.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] a A, n columns of m elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] r m elements
/// @param[out] c n elements, not set when a row is zero
/// @param[out] rowcnd the largest element of the row with the smallest one, over that of the row with the largest: at
/// 0.1
///     or more scaling of rows is not worth while
/// @param[out] colcnd the same of columns, after rows are scaled
/// @param[out] amax the size of the largest element of A
/// @param[out] info 0, -k when argument k is illegal, i when row i is zero, m + j when column j is
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4).
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGEEQU, ZGEEQU, DGEEQUB and ZGEEQUB.
///
/// @par Cost
/// Two passes over the matrix.
/// @{
TESK2MP_API void QuarnMPX_dgeequ_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                                  QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info);
TESK2MP_API void QuarnMPX_zgeequ_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                                  QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info);
TESK2MP_API void QuarnMPX_dgeequb_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                                   QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info);
TESK2MP_API void QuarnMPX_zgeequb_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                                   QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info);
/// @}

/// @defgroup dlatrs triangular solution without overflow
///
/// DLATRS: x and s, 0 <= s <= 1, with op(A) x = s b, A triangular, such that nothing overflows; ZLATRS over Complex. s
/// is 1 unless it has to be less, and a power of ten, so that scaling rounds nothing; 0 when it is below all numbers.
/// With a zero on the diagonal of A, s is 0 and x not zero: op(A) x = 0. What is not finite is not scaled.
///
/// @param[in] uplo U: A is upper triangular; L: lower
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] diag U: ones on the diagonal, which are not read; N: any diagonal
/// @param[in] normin Y: cnorm is given; N: it is to be formed
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] x b; out x
/// @param[out] scale s
/// @param[in,out] cnorm n sums of sizes (of a Complex |re| + |im|) of the elements of each column beside the diagonal:
/// out
///     with normin N; with Y they are not looked at
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), trans (-2), diag (-3), normin (-4), n < 0 (-5), lda < max(1, n) (-7).
///
/// @par Source
/// E. Anderson, Robust triangular solves for use in condition estimation, LAPACK Working Note 36, 1991; E. Anderson et
/// al., LAPACK Users' Guide, SIAM 1999: DLATRS and ZLATRS.
///
/// @par Cost
/// n^2/2 multiply-adds, and a pass over A for the sizes of its elements.
/// @{
TESK2MP_API void QuarnMPX_dlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin, Integer n,
                                  QuarnFloat* a, Integer lda, QuarnFloat* x, QuarnFloat* scale, QuarnFloat* cnorm,
                                  Integer* info, int uplo_length, int trans_length, int diag_length, int normin_length);
TESK2MP_API void QuarnMPX_zlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin, Integer n,
                                  Complex* a, Integer lda, Complex* x, QuarnFloat* scale, QuarnFloat* cnorm,
                                  Integer* info, int uplo_length, int trans_length, int diag_length, int normin_length);
/// @}
}
TESK2MP_NAMES_END

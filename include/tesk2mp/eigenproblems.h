// Eigenproblems of symmetric and Hermitian matrices.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dsyev eigenvalues and eigenvectors of a symmetric or Hermitian matrix
///
/// DSYEV: A = Z diag(w) Z^T of a symmetric matrix, Z orthogonal; ZHEEV: A = Z diag(w) Z^H of a Hermitian one, Z
/// unitary. Numbers of any size are good.
///
/// @param[in] jobz N: eigenvalues alone; V: eigenvectors as well
/// @param[in] uplo U: the upper triangle of A is read; L: the lower one
/// @param[in] n order, >= 0
/// @param[in,out] a A, n columns of n elements, lda apart; out with jobz V the eigenvectors, a column each, otherwise
/// as
///     it was
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] w n eigenvalues, ascending
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, 3 n - 1), for ZHEEV >= max(1, 2 n - 1); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, otherwise how many elements beside the diagonal did not become
///     negligible, and n when an element of A is not finite
///
/// @par Failures
/// Illegal: jobz (-1), uplo (-2), n < 0 (-3), lda (-5), lwork (-8). Storage for 2 n^2 elements is taken for the time of
/// the call.
///
/// @par Method
/// Tridiagonal form by reflectors in panels, whose products round each entry once; then the implicit QL algorithm.
///
/// @par Accuracy
/// The work is done with a few digits more, so that the errors of eigenvalues are some units of the last place of the
/// largest one, rarely more than one. Eigenvectors are orthogonal to the last digit, those of close eigenvalues as
/// well.
///
/// @par Source
/// A. Dubrulle, R. S. Martin, J. H. Wilkinson, The implicit QL algorithm, Numer. Math. 12 (1968); E. Anderson et al.,
/// LAPACK Users' Guide, SIAM 1999: DSYEV and ZHEEV.
///
/// @par Cost
/// About 4/3 n^3 multiply-adds without eigenvectors, and 6 n^3 more with them.
/// @{
TESK2MP_API void QuarnMPX_dsyev_(const char* jobz, const char* uplo, Integer n, QuarnFloat* a, Integer lda,
                                 QuarnFloat* w, QuarnFloat* work, Integer lwork, Integer* info, int jobz_length,
                                 int uplo_length);
TESK2MP_API void QuarnMPX_zheev_(const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* w,
                                 Complex* work, Integer lwork, QuarnFloat* rwork, Integer* info, int jobz_length,
                                 int uplo_length);
/// @}

/// @defgroup dsytrd tridiagonal form of a symmetric or Hermitian matrix
///
/// DSYTRD: A = Q T Q^T, T symmetric tridiagonal, Q the product of n - 1 reflectors I - tau v v^T; ZHETRD: A = Q T Q^H
/// of a Hermitian matrix, T real.
///
/// @param[in] uplo U: the upper triangle of A is read and written; L: the lower one
/// @param[in] n order, >= 0
/// @param[in,out] a A, n columns of n elements, lda apart; out T, and beyond its second diagonal the vectors v without
///     their ones: with L the elements i + 2, ..., n of v(i) in column i, with U the elements 1, ..., i - 1 in column
///     i + 1
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] d n elements, the diagonal of T
/// @param[out] e n - 1 elements, those beside it
/// @param[out] tau n - 1 factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= 1; -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda (-4), lwork (-9). Storage for n^2 elements is taken for the time of the call.
///
/// @par Source
/// J. J. Dongarra, S. J. Hammarling, D. C. Sorensen, Block reduction of matrices to condensed forms for eigenvalue
/// computations, J. Comput. Appl. Math. 27 (1989); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYTRD, ZHETRD.
///
/// @par Cost
/// About 4/3 n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dsytrd_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* d, QuarnFloat* e,
                                  QuarnFloat* tau, QuarnFloat* work, Integer lwork, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zhetrd_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* d, QuarnFloat* e,
                                  Complex* tau, Complex* work, Integer lwork, Integer* info, int uplo_length);
/// @}

/// @defgroup dorgtr the orthogonal factor of the tridiagonal form
///
/// DORGTR: the Q of which DSYTRD has left the reflectors, in their place; ZUNGTR the one of ZHETRD.
///
/// @param[in] uplo as DSYTRD had it
/// @param[in] n order, >= 0
/// @param[in,out] a the reflectors; out Q, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] tau n - 1 factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, n - 1); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda (-4), lwork (-7). Storage for 2 n^2 elements is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORGTR and ZUNGTR.
///
/// @par Cost
/// About 4/3 n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dorgtr_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, const QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zungtr_(const char* uplo, Integer n, Complex* a, Integer lda, const Complex* tau,
                                  Complex* work, Integer lwork, Integer* info, int uplo_length);
/// @}

/// @defgroup dsteqr eigenvalues and eigenvectors of a symmetric tridiagonal matrix
///
/// DSTEQR: the eigenvalues of the real symmetric matrix with d on its diagonal and e beside it, and its eigenvectors or
/// their product with a given matrix; ZSTEQR with a complex Z, as the tridiagonal form of a Hermitian matrix needs.
///
/// @param[in] compz N: eigenvalues alone; I: Z becomes the eigenvectors; V: Z becomes Z times the eigenvectors
/// @param[in] n order, >= 0
/// @param[in,out] d n elements of the diagonal; out the eigenvalues, ascending
/// @param[in,out] e n - 1 elements beside it; destroyed
/// @param[in,out] z n columns of n elements, ldz apart; not used with N
/// @param[in] ldz step from column to column of Z, >= 1, and >= n when it is used
/// @param[out] work not used
/// @param[out] info 0, -k when argument k is illegal, otherwise how many elements of e did not become negligible, and n
///     when an element is not finite
///
/// @par Failures
/// Illegal: compz (-1), n < 0 (-2), ldz (-6).
///
/// @par Method
/// Implicit QL from the end with the smaller numbers, an element of e negligible beside the geometric mean of its two
/// neighbours in d.
///
/// @par Source
/// A. Dubrulle, R. S. Martin, J. H. Wilkinson, The implicit QL algorithm, Numer. Math. 12 (1968); E. Anderson et al.,
/// LAPACK Users' Guide, SIAM 1999: DSTEQR and ZSTEQR.
///
/// @par Cost
/// About 20 n^2 multiply-adds, and 6 n^3 more with eigenvectors.
/// @{
TESK2MP_API void QuarnMPX_dsteqr_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, QuarnFloat* z,
                                  Integer ldz, QuarnFloat* work, Integer* info, int compz_length);
TESK2MP_API void QuarnMPX_zsteqr_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, Complex* z, Integer ldz,
                                  QuarnFloat* work, Integer* info, int compz_length);
/// @}
}
TESK2MP_NAMES_END

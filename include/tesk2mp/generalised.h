// Generalised eigenproblems A x = lambda B x.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dsygv generalised eigenvalues and eigenvectors of a symmetric or Hermitian matrix and a definite one
///
/// DSYGV: A x = lambda B x (itype 1), A B x = lambda x (2) or B A x = lambda x (3) with A symmetric and B symmetric
/// positive definite; ZHEGV with Hermitian matrices. Eigenvectors X satisfy X^H B X = I, with itype 3 X^H B^-1 X = I.
/// Numbers of any size are good.
///
/// @param[in] itype 1, 2 or 3
/// @param[in] jobz N: eigenvalues alone; V: eigenvectors as well
/// @param[in] uplo U: the upper triangles of A and B are read; L: the lower ones
/// @param[in] n order, >= 0
/// @param[in,out] a A, n columns of n elements, lda apart; out with jobz V the eigenvectors, a column each, otherwise
///     as it was
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] b B, in the same way; out, when info is 0, U of B = U^H U or L of B = L L^H in its triangle
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] w n eigenvalues, ascending
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, 3 n - 1), for ZHEGV >= max(1, 2 n - 1); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, i <= n as of DSYEV (n when an element of A is not finite), n + i
///     when the leading minor of order i of B is not positive or row i of B has an element that is not finite
///
/// @par Failures
/// Illegal: itype (-1), jobz (-2), uplo (-3), n < 0 (-4), lda (-6), ldb (-8), lwork (-11). Storage for 5 n^2 elements
/// is taken for the time of the call.
///
/// @par Method
/// The Cholesky factor of B takes the problem to a standard one, which is solved as by DSYEV, and its eigenvectors
/// back; a few digits more than the working ones, and as many more, up to twice the working ones, as the diagonal of
/// the factor says that B takes away.
///
/// @par Accuracy
/// The errors of eigenvalues are some units of the last place of the largest one, also of an ill-conditioned B as
/// long as the diagonal of its factor shows that.
///
/// @par Source
/// R. S. Martin, J. H. Wilkinson, Reduction of the symmetric eigenproblem Ax = lambda Bx and related problems to
/// standard form, Numer. Math. 11 (1968); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYGV and ZHEGV.
///
/// @par Cost
/// That of DSYEV and about 2 n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dsygv_(Integer itype, const char* jobz, const char* uplo, Integer n, QuarnFloat* a,
                                 Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat* w, QuarnFloat* work,
                                 Integer lwork, Integer* info, int jobz_length, int uplo_length);
TESK2MP_API void QuarnMPX_zhegv_(Integer itype, const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda,
                                 Complex* b, Integer ldb, QuarnFloat* w, Complex* work, Integer lwork,
                                 QuarnFloat* rwork, Integer* info, int jobz_length, int uplo_length);
/// @}

/// @defgroup dggev generalised eigenvalues and eigenvectors of general matrices
///
/// DGGEV: A x = lambda B x and y^H A = lambda y^H B of real matrices, lambda = alpha / beta; ZGGEV of complex ones. An
/// infinite eigenvalue, which a singular B has, is one with beta = 0. Where alpha and beta are both 0, or vanish beside
/// the roundings of A and B, both are 0: the pencil is singular to the working digits, every number is an eigenvalue of
/// it, and the others say nothing. Numbers of any size are good.
///
/// @param[in] jobvl N: no left eigenvectors; V: they are wanted
/// @param[in] jobvr N: no right eigenvectors; V: they are wanted
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] b B, in the same way; not changed
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] alphar n real parts of alpha; a pair is in consecutive places, the one above the real axis first
/// @param[out] alphai n imaginary parts
/// @param[out] alpha n elements, of ZGGEV
/// @param[out] beta n elements, real and >= 0
/// @param[out] vl left eigenvectors y, n columns of n elements, ldvl apart; of a pair of DGGEV the real part and the
///     imaginary part of the first one; |re| + |im| of the largest element is 1; not used with jobvl N
/// @param[in] ldvl step from column to column, >= 1, and >= n when it is used
/// @param[out] vr right eigenvectors x, in the same way
/// @param[in] ldvr step from column to column, >= 1, and >= n when it is used
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, 8 n), for ZGGEV >= max(1, 2 n); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, i <= n when the QZ algorithm did not find eigenvalue i (those
///     behind it are right, no eigenvectors are made), and n + 1 when an element of A or B is not finite
///
/// @par Failures
/// Illegal: jobvl (-1), jobvr (-2), n < 0 (-3), lda (-5), ldb (-7), ldvl (-12, ZGGEV -11), ldvr (-14, -13), lwork (-16,
/// -15). Storage for 5 n^2 elements is taken for the time of the call.
///
/// @par Method
/// B to triangular and A to Hessenberg form, the implicit QZ algorithm with two shifts, of complex matrices with one,
/// substitution; a few digits more than the working ones.
///
/// @par Accuracy
/// Those of matrices that differ from A and B in units of the last place of their norms.
///
/// @par Source
/// C. B. Moler, G. W. Stewart, An algorithm for generalized matrix eigenvalue problems, SIAM J. Numer. Anal. 10 (1973);
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGGEV and ZGGEV.
///
/// @par Cost
/// About 30 n^3 multiply-adds without eigenvectors, 70 n^3 with those of both sides.
/// @{
TESK2MP_API void QuarnMPX_dggev_(const char* jobvl, const char* jobvr, Integer n, QuarnFloat* a, Integer lda,
                                 QuarnFloat* b, Integer ldb, QuarnFloat* alphar, QuarnFloat* alphai, QuarnFloat* beta,
                                 QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* work,
                                 Integer lwork, Integer* info, int jobvl_length, int jobvr_length);
TESK2MP_API void QuarnMPX_zggev_(const char* jobvl, const char* jobvr, Integer n, Complex* a, Integer lda, Complex* b,
                                 Integer ldb, Complex* alpha, Complex* beta, Complex* vl, Integer ldvl, Complex* vr,
                                 Integer ldvr, Complex* work, Integer lwork, QuarnFloat* rwork, Integer* info,
                                 int jobvl_length, int jobvr_length);
/// @}

/// @defgroup dsygst reduction of a generalised symmetric problem to a standard one
///
/// DSYGST: A := L^-1 A L^-T (itype 1) or L^T A L (2 and 3) with B = L L^T; ZHEGST of Hermitian matrices. With uplo U
/// B = U^H U, and L is U^H.
///
/// @param[in] itype 1, 2 or 3
/// @param[in] uplo U: the upper triangles of A and B are read, and that of A is written; L: the lower ones
/// @param[in] n order, >= 0
/// @param[in,out] a A, n columns of n elements, lda apart; out the matrix of the standard problem
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] b the factor of B as DPOTRF's companion leaves it; not changed
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: itype (-1), uplo (-2), n < 0 (-3), lda (-5), ldb (-7). Storage for 3 n^2 elements is taken for the time of
/// the call.
///
/// @par Source
/// R. S. Martin, J. H. Wilkinson, Reduction of the symmetric eigenproblem Ax = lambda Bx and related problems to
/// standard form, Numer. Math. 11 (1968); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYGST and ZHEGST.
///
/// @par Cost
/// About n^3 multiply-adds, in products and sums that round each entry once.
/// @{
TESK2MP_API void QuarnMPX_dsygst_(Integer itype, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                  Integer ldb, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zhegst_(Integer itype, const char* uplo, Integer n, Complex* a, Integer lda, Complex* b,
                                  Integer ldb, Integer* info, int uplo_length);
/// @}

/// @defgroup dgghrd Hessenberg-triangular form of a pencil
///
/// DGGHRD: A = Q H Z^T and B = Q T Z^T with H upper Hessenberg, for a B that is upper triangular; ZGGHRD of complex
/// matrices, with Z^H.
///
/// @param[in] compq N: Q is not wanted; I: Q becomes the factor; V: Q becomes Q times the factor
/// @param[in] compz N, I or V, in the same way for Z
/// @param[in] n order, >= 0
/// @param[in] ilo columns before ilo of A are upper triangular, 1 otherwise
/// @param[in] ihi rows behind ihi of A are upper triangular, n otherwise
/// @param[in,out] a A, n columns of n elements, lda apart; out H
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] b B, in the same way; what is below its diagonal is not read; out T
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[in,out] q n columns of n elements, ldq apart; not used with compq N
/// @param[in] ldq step from column to column, >= 1, and >= n when it is used
/// @param[in,out] z n columns of n elements, ldz apart; not used with compz N
/// @param[in] ldz step from column to column, >= 1, and >= n when it is used
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: compq (-1), compz (-2), n < 0 (-3), ilo (-4), ihi (-5), lda (-7), ldb (-9), ldq (-11), ldz (-13).
///
/// @par Accuracy
/// Those of a pencil that differs from the given one in units of the last place: some digits more than the working ones
/// are used.
///
/// @par Source
/// C. B. Moler, G. W. Stewart, An algorithm for generalized matrix eigenvalue problems, SIAM J. Numer. Anal. 10 (1973);
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGGHRD and ZGGHRD.
///
/// @par Cost
/// About 8 n^3 multiply-adds, 3 n^3 more for each of Q and Z.
/// @{
TESK2MP_API void QuarnMPX_dgghrd_(const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi,
                                  QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat* q, Integer ldq,
                                  QuarnFloat* z, Integer ldz, Integer* info, int compq_length, int compz_length);
TESK2MP_API void QuarnMPX_zgghrd_(const char* compq, const char* compz, Integer n, Integer ilo, Integer ihi, Complex* a,
                                  Integer lda, Complex* b, Integer ldb, Complex* q, Integer ldq, Complex* z,
                                  Integer ldz, Integer* info, int compq_length, int compz_length);
/// @}

/// @defgroup dhgeqz generalised Schur form of a Hessenberg-triangular pencil
///
/// DHGEQZ: H = Q S Z^T and T = Q P Z^T with P upper triangular and S upper triangular but for 2 by 2 blocks on its
/// diagonal, a pair of eigenvalues each, over which P is diagonal; ZHGEQZ of complex matrices, with S upper triangular.
/// The eigenvalues are alpha / beta, infinite with beta = 0.
///
/// @param[in] job E: eigenvalues alone; S: the generalised Schur form too
/// @param[in] compq N: Q is not wanted; I: Q becomes the factor; V: Q becomes Q times the factor
/// @param[in] compz N, I or V, in the same way for Z
/// @param[in] n order, >= 0
/// @param[in] ilo columns before ilo of H are upper triangular, 1 otherwise
/// @param[in] ihi rows behind ihi of H are upper triangular, n otherwise
/// @param[in,out] h H, n columns of n elements, ldh apart; what is below its first subdiagonal is not read; out S, or
///     unspecified
/// @param[in] ldh step from column to column of H, >= max(1, n)
/// @param[in,out] t T, in the same way; what is below its diagonal is not read; out P, its diagonal >= 0, or
/// unspecified
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[out] alphar n real parts of alpha; a pair is in consecutive places, the one above the real axis first
/// @param[out] alphai n imaginary parts
/// @param[out] alpha n elements, of ZHGEQZ
/// @param[out] beta n elements, real and >= 0
/// @param[in,out] q n columns of n elements, ldq apart; not used with compq N
/// @param[in] ldq step from column to column, >= 1, and >= n when it is used
/// @param[in,out] z n columns of n elements, ldz apart; not used with compz N
/// @param[in] ldz step from column to column, >= 1, and >= n when it is used
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, i <= n when eigenvalue i was not found (those behind it are
///     right), and n + 1 when an element is not finite
///
/// @par Failures
/// Illegal: job (-1), compq (-2), compz (-3), n < 0 (-4), ilo (-5), ihi (-6), ldh (-8), ldt (-10), ldq (-15, ZHGEQZ
/// -14), ldz (-17, -16), lwork (-19, -18).
///
/// @par Method
/// The implicit QZ algorithm with two shifts, of complex matrices with one; a few digits more than the working ones.
///
/// @par Accuracy
/// Those of a pencil that differs from the given one in units of the last place.
///
/// @par Source
/// C. B. Moler, G. W. Stewart, An algorithm for generalized matrix eigenvalue problems, SIAM J. Numer. Anal. 10 (1973);
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DHGEQZ and ZHGEQZ.
///
/// @par Cost
/// About 15 n^3 multiply-adds for eigenvalues alone, 50 n^3 with Schur form and factors.
/// @{
TESK2MP_API void QuarnMPX_dhgeqz_(const char* job, const char* compq, const char* compz, Integer n, Integer ilo,
                                  Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* t, Integer ldt,
                                  QuarnFloat* alphar, QuarnFloat* alphai, QuarnFloat* beta, QuarnFloat* q, Integer ldq,
                                  QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info,
                                  int job_length, int compq_length, int compz_length);
TESK2MP_API void QuarnMPX_zhgeqz_(const char* job, const char* compq, const char* compz, Integer n, Integer ilo,
                                  Integer ihi, Complex* h, Integer ldh, Complex* t, Integer ldt, Complex* alpha,
                                  Complex* beta, Complex* q, Integer ldq, Complex* z, Integer ldz, Complex* work,
                                  Integer lwork, QuarnFloat* rwork, Integer* info, int job_length, int compq_length,
                                  int compz_length);
/// @}
}
TESK2MP_NAMES_END

// Eigenproblems of symmetric, Hermitian and general complex matrices.
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

/// @defgroup dsyevx chosen eigenvalues and eigenvectors of a symmetric or Hermitian matrix
///
/// DSYEVX: those of a symmetric matrix in an interval, or by their numbers in ascending order; ZHEEVX of a Hermitian
/// one. Numbers of any size are good.
///
/// @param[in] jobz N: eigenvalues alone; V: eigenvectors as well
/// @param[in] range A: all; V: those with vl < w <= vu; I: numbers il ... iu
/// @param[in] uplo U: the upper triangle of A is read; L: the lower one
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] vl lower end of the interval, read with V
/// @param[in] vu upper end of the interval, > vl
/// @param[in] il first number, from 1, read with I
/// @param[in] iu last number, il <= iu <= n
/// @param[in] abstol how far eigenvalues may be wrong; not positive for the last place of the largest one
/// @param[out] m how many were found
/// @param[out] w n elements: the m eigenvalues, ascending
/// @param[out] z m columns of n elements, ldz apart: the eigenvectors; not used with jobz N
/// @param[in] ldz step from column to column of Z, >= 1, and >= n when it is used
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, 8 n), for ZHEEVX >= max(1, 2 n); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] iwork not used
/// @param[out] ifail m elements, with jobz V: the numbers of the eigenvectors that did not converge, then zeros
/// @param[out] info 0, -k when argument k is illegal, i when i eigenvectors did not converge, n when an element of A is
///     not finite
///
/// @par Failures
/// Illegal: jobz (-1), range (-2), uplo (-3), n < 0 (-4), lda (-6), vu (-8), il (-9), iu (-10), ldz (-15), lwork (-17).
/// Storage for 2 n^2 elements is taken for the time of the call. A large abstol may leave eigenvalues too coarse for
/// their eigenvectors.
///
/// @par Method
/// Tridiagonal form, bisection, inverse iteration; with range A and no tolerance the QL algorithm of DSYEV. A few
/// digits more than the working ones.
///
/// @par Accuracy
/// The errors of eigenvalues are some units of the last place of the largest one; eigenvectors are orthogonal to the
/// last digits, those of close eigenvalues as well.
///
/// @par Source
/// W. Barth, R. S. Martin, J. H. Wilkinson, Calculation of the eigenvalues of a symmetric tridiagonal matrix by the
/// method of bisection, Numer. Math. 9 (1967); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYEVX and ZHEEVX.
///
/// @par Cost
/// About 4/3 n^3 multiply-adds for the tridiagonal form, 20 to 30 passes of 4 n operations for each eigenvalue, 2 n^2
/// multiply-adds for each eigenvector.
/// @{
TESK2MP_API void QuarnMPX_dsyevx_(const char* jobz, const char* range, const char* uplo, Integer n, QuarnFloat* a,
                                  Integer lda, QuarnFloat vl, QuarnFloat vu, Integer il, Integer iu, QuarnFloat abstol,
                                  Integer* m, QuarnFloat* w, QuarnFloat* z, Integer ldz, QuarnFloat* work,
                                  Integer lwork, Integer* iwork, Integer* ifail, Integer* info, int jobz_length,
                                  int range_length, int uplo_length);
TESK2MP_API void QuarnMPX_zheevx_(const char* jobz, const char* range, const char* uplo, Integer n, Complex* a,
                                  Integer lda, QuarnFloat vl, QuarnFloat vu, Integer il, Integer iu, QuarnFloat abstol,
                                  Integer* m, QuarnFloat* w, Complex* z, Integer ldz, Complex* work, Integer lwork,
                                  QuarnFloat* rwork, Integer* iwork, Integer* ifail, Integer* info, int jobz_length,
                                  int range_length, int uplo_length);
/// @}

/// @defgroup dstebz chosen eigenvalues of a symmetric tridiagonal matrix
///
/// DSTEBZ: those of the real symmetric matrix with d on its diagonal and e beside it that are in an interval, or have
/// these numbers in ascending order.
///
/// @param[in] range A: all; V: those with vl < w <= vu; I: numbers il ... iu
/// @param[in] order E: ascending; B: block by block, ascending in each, as DSTEIN takes them
/// @param[in] n order, >= 0
/// @param[in] vl lower end of the interval, read with V
/// @param[in] vu upper end of the interval, > vl
/// @param[in] il first number, from 1, read with I
/// @param[in] iu last number, il <= iu <= n
/// @param[in] abstol how far eigenvalues may be wrong; not positive for the last place of the largest element
/// @param[in] d n elements of the diagonal
/// @param[in] e n - 1 elements beside it
/// @param[out] m how many were found
/// @param[out] nsplit how many blocks negligible elements of e divide the matrix into
/// @param[out] w n elements: the m eigenvalues
/// @param[out] iblock n elements: the block of each eigenvalue, from 1
/// @param[out] isplit n elements: the last rows of the blocks
/// @param[out] work not used
/// @param[out] iwork not used
/// @param[out] info 0, -k when argument k is illegal, 1 when an element is not finite: m is 0 then
///
/// @par Failures
/// Illegal: range (-1), order (-2), n < 0 (-3), vu (-5), il (-6), iu (-7).
///
/// @par Method
/// Counts of sign changes isolate each eigenvalue; Newton's iteration on the determinant, with counts at either side,
/// doubles its digits from there.
///
/// @par Source
/// W. Barth, R. S. Martin, J. H. Wilkinson, Calculation of the eigenvalues of a symmetric tridiagonal matrix by the
/// method of bisection, Numer. Math. 9 (1967); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSTEBZ.
///
/// @par Cost
/// 20 to 30 passes of 4 n operations for each eigenvalue; in a cluster as many more as it takes to tell them apart.
/// @{
TESK2MP_API void QuarnMPX_dstebz_(const char* range, const char* order, Integer n, QuarnFloat vl, QuarnFloat vu,
                                  Integer il, Integer iu, QuarnFloat abstol, QuarnFloat* d, QuarnFloat* e, Integer* m,
                                  Integer* nsplit, QuarnFloat* w, Integer* iblock, Integer* isplit, QuarnFloat* work,
                                  Integer* iwork, Integer* info, int range_length, int order_length);
/// @}

/// @defgroup dstein eigenvectors of a symmetric tridiagonal matrix for given eigenvalues
///
/// DSTEIN: eigenvectors of norm 1 for the eigenvalues that DSTEBZ has found, by inverse iteration; ZSTEIN into a
/// complex Z, as the tridiagonal form of a Hermitian matrix needs.
///
/// @param[in] n order, >= 0
/// @param[in] d n elements of the diagonal
/// @param[in] e n - 1 elements beside it
/// @param[in] m how many eigenvalues there are, <= n
/// @param[in] w m eigenvalues by blocks, ascending in each: DSTEBZ with order B
/// @param[in] iblock m elements: the block of each eigenvalue
/// @param[in] isplit the last rows of the blocks
/// @param[out] z m columns of n elements, ldz apart
/// @param[in] ldz step from column to column of Z, >= max(1, n)
/// @param[out] work not used
/// @param[out] iwork not used
/// @param[out] ifail m elements: the numbers of those that did not converge, then zeros
/// @param[out] info 0, -k when argument k is illegal, i when i eigenvectors did not converge, m when an element is not
///     finite
///
/// @par Failures
/// Illegal: n < 0 (-1), m (-4), w (-5), iblock (-6), isplit (-7), ldz (-9).
///
/// @par Source
/// G. Peters, J. H. Wilkinson, The calculation of specified eigenvectors by inverse iteration, in J. H. Wilkinson, C.
/// Reinsch, Handbook for Automatic Computation 2, Springer 1971; E. Anderson et al., LAPACK Users' Guide, SIAM 1999:
/// DSTEIN and ZSTEIN.
///
/// @par Cost
/// Some 40 n multiply-adds for each vector, and 6 n k more where it is the k-th of eigenvalues within a thousandth of
/// the norm.
/// @{
TESK2MP_API void QuarnMPX_dstein_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer m, QuarnFloat* w, Integer* iblock,
                                  Integer* isplit, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer* iwork,
                                  Integer* ifail, Integer* info);
TESK2MP_API void QuarnMPX_zstein_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer m, QuarnFloat* w, Integer* iblock,
                                  Integer* isplit, Complex* z, Integer ldz, QuarnFloat* work, Integer* iwork,
                                  Integer* ifail, Integer* info);
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

/// @defgroup dstedc eigenvalues and eigenvectors of a symmetric tridiagonal matrix by divide and conquer
///
/// DSTEDC: what DSTEQR finds, with eigenvectors faster; ZSTEDC with a complex Z.
///
/// @param[in] compz N: eigenvalues alone; I: Z becomes the eigenvectors; V: Z becomes Z times the eigenvectors
/// @param[in] n order, >= 0
/// @param[in,out] d n elements of the diagonal; out the eigenvalues, ascending
/// @param[in,out] e n - 1 elements beside it; destroyed
/// @param[in,out] z n columns of n elements, ldz apart; not used with N
/// @param[in] ldz step from column to column of Z, >= 1, and >= n when it is used
/// @param[out] work not used
/// @param[in] lwork not used
/// @param[out] rwork not used
/// @param[in] lrwork not used
/// @param[out] iwork not used
/// @param[in] liwork not used
/// @param[out] info 0, -k when argument k is illegal, otherwise how many elements of e did not become negligible, and n
///     when an element is not finite
///
/// @par Failures
/// Illegal: compz (-1), n < 0 (-2), ldz (-6). Storage for 5 n^2 elements is taken for the time of the call.
///
/// @par Method
/// Halves down to 24 rows, which DSTEQR's algorithm solves, and rank-one changes that join them: zeros of a secular
/// equation, eigenvectors of the matrix that has these zeros exactly, products that round each element once. What a
/// change leaves as it is, and equal eigenvalues, are left out.
///
/// @par Source
/// J. J. M. Cuppen, A divide and conquer method for the symmetric tridiagonal eigenproblem, Numer. Math. 36 (1981); M.
/// Gu, S. C. Eisenstat, A divide-and-conquer algorithm for the symmetric tridiagonal eigenproblem, SIAM J. Matrix Anal.
/// Appl. 16 (1995); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSTEDC and ZSTEDC.
///
/// @par Cost
/// About 20 n^2 divisions for each halving and 4/3 n^3 multiply-adds at most.
/// @{
TESK2MP_API void QuarnMPX_dstedc_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, QuarnFloat* z,
                                  Integer ldz, QuarnFloat* work, Integer lwork, Integer* iwork, Integer liwork,
                                  Integer* info, int compz_length);
TESK2MP_API void QuarnMPX_zstedc_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, Complex* z, Integer ldz,
                                  Complex* work, Integer lwork, QuarnFloat* rwork, Integer lrwork, Integer* iwork,
                                  Integer liwork, Integer* info, int compz_length);
/// @}

/// @defgroup zgeev eigenvalues and eigenvectors of a general complex matrix
///
/// ZGEEV: A x = w x and y^H A = w y^H for each eigenvalue w of A. Numbers of any size are good. Eigenvectors have
/// Euclidean norm 1 and a real element of largest modulus.
///
/// @param[in] jobvl N: no left eigenvectors; V: they are wanted
/// @param[in] jobvr N: no right eigenvectors; V: they are wanted
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] w n eigenvalues
/// @param[out] vl left eigenvectors y, n columns of n elements, ldvl apart; not used with jobvl N
/// @param[in] ldvl step from column to column, >= 1, and >= n when it is used
/// @param[out] vr right eigenvectors x, in the same way
/// @param[in] ldvr step from column to column, >= 1, and >= n when it is used
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(2, 2 n); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, i when the QR algorithm did not find eigenvalue i (those behind
/// it
///     are right, no eigenvectors are made), and n when an element of A is not finite
///
/// @par Failures
/// Illegal: jobvl (-1), jobvr (-2), n < 0 (-3), lda (-5), ldvl (-8), ldvr (-10), lwork (-12). Storage for 4 n^2
/// elements is taken for the time of the call.
///
/// @par Method
/// Balancing, Hessenberg form by reflectors in panels, the implicit QR algorithm with one shift, substitution; a few
/// digits more than the working ones.
///
/// @par Accuracy
/// Those of a matrix that differs from A in units of the last place of norm(A): an eigenvalue in a chain of k is good
/// to a k-th of the digits, and its eigenvectors come out parallel.
///
/// @par Source
/// J. G. F. Francis, The QR transformation, Comput. J. 4 (1961, 1962); E. Anderson et al., LAPACK Users' Guide, SIAM
/// 1999: ZGEEV.
///
/// @par Cost
/// About 10 n^3 complex multiply-adds without eigenvectors, 25 n^3 with them.
/// @{
TESK2MP_API void QuarnMPX_zgeev_(const char* jobvl, const char* jobvr, Integer n, Complex* a, Integer lda, Complex* w,
                                 Complex* vl, Integer ldvl, Complex* vr, Integer ldvr, Complex* work, Integer lwork,
                                 QuarnFloat* rwork, Integer* info, int jobvl_length, int jobvr_length);
/// @}

/// @defgroup zgebal balancing of a general complex matrix
///
/// ZGEBAL: as DGEBAL's companion does it, with |re| + |im| for the sizes of elements; scaling by powers of 10 rounds
/// nothing.
///
/// @like f08nhf
/// @{
TESK2MP_API void QuarnMPX_zgebal_(const char* job, Integer n, Complex* a, Integer lda, Integer* ilo, Integer* ihi,
                                  QuarnFloat* scale, Integer* info, int job_length);
/// @}

/// @defgroup zhseqr eigenvalues and Schur form of a complex Hessenberg matrix
///
/// ZHSEQR: H = Z T Z^H with T upper triangular, the eigenvalues on its diagonal, and Z unitary.
///
/// @param[in] job E: eigenvalues alone; S: the Schur form too
/// @param[in] compz N: no Schur vectors; I: those of H; V: those of the matrix that Z has reduced
/// @param[in] n order of H, >= 0
/// @param[in] ilo from balancing, otherwise 1
/// @param[in] ihi from balancing, otherwise n
/// @param[in,out] h H, n columns of n elements, ldh apart; what lies below the first subdiagonal is not read; out T or
///     unspecified
/// @param[in] ldh step from column to column of H, >= max(1, n)
/// @param[out] w n eigenvalues
/// @param[in,out] z n columns of n elements, ldz apart; not used with compz N
/// @param[in] ldz step from column to column of Z, >= 1, and >= n with vectors
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, i when eigenvalue i was not found (those behind it are right),
/// and
///     the last row that holds one when an element is not finite
///
/// @par Failures
/// Illegal: job (-1), compz (-2), n (-3), ilo (-4), ihi (-5), ldh (-7), ldz (-10), lwork (-12).
///
/// @par Method
/// Sweeps with one shift; from 60 rows on with the Schur form, 90 without it, with chains of bulges and early deflation
/// as of DHSEQR.
///
/// @par Source
/// J. G. F. Francis, The QR transformation, Comput. J. 4 (1961, 1962); K. Braman, R. Byers, R. Mathias, The multishift
/// QR algorithm, SIAM J. Matrix Anal. Appl. 23 (2002); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: ZHSEQR and
/// ZLAHQR.
///
/// @par Cost
/// About 7 n^3 complex multiply-adds for eigenvalues alone, 20 n^3 with Schur form and vectors.
/// @{
TESK2MP_API void QuarnMPX_zhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, Complex* h,
                                  Integer ldh, Complex* w, Complex* z, Integer ldz, Complex* work, Integer lwork,
                                  Integer* info, int job_length, int compz_length);
/// @}

/// @defgroup ztrevc eigenvectors of a complex triangular matrix
///
/// ZTREVC: T x = t(k, k) x and y^H T = t(k, k) y^H, or the products with given Schur vectors; each with |re| + |im| = 1
/// of its largest element.
///
/// @param[in] side R: right eigenvectors x; L: left ones y; B: both
/// @param[in] howmny A: all; B: all, multiplied by the Schur vectors in VL and VR; S: those that select names
/// @param[in] select n flags, read with howmny S
/// @param[in] n order, >= 0
/// @param[in] t T, n columns of n elements, ldt apart; not changed
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[in,out] vl mm columns of n elements, ldvl apart; not used with side R
/// @param[in] ldvl step from column to column, >= 1, and >= n when it is used
/// @param[in,out] vr the same for right eigenvectors
/// @param[in] ldvr step from column to column, >= 1, and >= n when it is used
/// @param[in] mm columns that there are, >= m
/// @param[out] m columns that were wanted
/// @param[out] work not used
/// @param[out] rwork not used
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: side (-1), howmny (-2), n (-4), ldt (-6), ldvl (-8), ldvr (-10), mm (-11). Storage for 2 n^2 elements is
/// taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: ZTREVC.
///
/// @par Cost
/// n^3/6 complex multiply-adds a side, and n^3 more for products.
/// @{
TESK2MP_API void QuarnMPX_ztrevc_(const char* side, const char* howmny, const Integer* select, Integer n, Complex* t,
                                  Integer ldt, Complex* vl, Integer ldvl, Complex* vr, Integer ldvr, Integer mm,
                                  Integer* m, Complex* work, QuarnFloat* rwork, Integer* info, int side_length,
                                  int howmny_length);
/// @}
}
TESK2MP_NAMES_END

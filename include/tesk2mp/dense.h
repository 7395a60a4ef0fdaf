// Dense factorisations, eigenvalues and quartic zeros.
//
// All but the last report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in
// argument order), and a positive value is a numerical failure at that step. Of an option text the first character
// alone is read; its length argument is not used.
//
// Companions (QuarnMPX_) take matrices of any size of numbers, 10^-999999999 to 10^999999999, where thresholds of the
// classic entries take elements below the safe range for zero; they converge on multiple eigenvalues, and refuse what
// is not finite at once.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup f07zaz a cell of the tuning table
///
/// One cell of the process-wide tuning table: reads it (rwflag 0) or writes it (any other rwflag). *ival becomes -1
/// when ispec is not in 1 ... 8, otherwise -2 when the name has no row. Shipped: block size 1 (unblocked) for the
/// factorisations; block size 0, one shift, small blocks of 1 for the QR algorithm. Routines that only apply what
/// another one made (F08AG after F08AE, ...) have their own row in the A family and share one elsewhere.
///
/// @param[in] ispec 1 block size, 2 least block size, 3 crossover, 4 number of shifts and 8 largest small block of the
///     QR algorithm, 5 to 7 free; the routines read 1, 4 and 8
/// @param[in] name a routine of chapters F07 and F08, six capital characters ("F07ADF", or letters first, "ADFF07")
/// @param[in,out] ival the value of the cell: out when it is read, in when it is written
/// @param[in] rwflag 0 reads, any other value writes
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: the table answers what ILAENV does.
///
/// @par Cost
/// A look into a short table.
/// @{
TESK2MP_API void QuarnMP_f07zaz_(Integer ispec, const char* name, Integer* ival, Integer rwflag, int name_length);
/// @}

/// @defgroup f07adf LU factorisation with partial pivoting
///
/// DGETRF: A = P L U with partial pivoting, A m by n, L with unit diagonal. The companion works by halves, whatever the
/// tuning table says, and its products round each entry once.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out U on and above the diagonal, L below it
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] ipiv min(m, n) row numbers, 1-based: row i was interchanged with row ipiv(i)
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4). *info = j: U(j, j) is exactly zero; the factorisation is
/// complete. m = 0 or n = 0 touches nothing.
///
/// @par Source
/// J. H. Wilkinson, The Algebraic Eigenvalue Problem, Oxford 1965, chapter 4; E. Anderson et al., LAPACK Users' Guide,
/// SIAM 1999: DGETRF. The companion: S. Toledo, Locality of reference in LU decomposition with partial pivoting, SIAM
/// J. Matrix Anal. Appl. 18 (1997).
///
/// @par Cost
/// About n^3/3 multiply-adds for m = n.
/// @{
TESK2MP_API void QuarnMP_f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_dgetrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_f07adf_ENTRY(int selector, Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv,
                                      Integer* info);
TESK2MP_API void QuarnMPX_f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMPX_dgetrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
/// @}

/// @defgroup f07arf complex LU factorisation with partial pivoting
///
/// ZGETRF: the same over Complex; pivots are chosen by |re| + |im|.
///
/// @like f07adf
/// @{
TESK2MP_API void QuarnMP_f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_zgetrf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMP_f07arf_ENTRY(int selector, Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv,
                                      Integer* info);
TESK2MP_API void QuarnMPX_f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMPX_zgetrf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
/// @}

/// @defgroup f07adg LU factorisation with row-weighted pivoting
///
/// A = P L U with row-weighted pivoting: the pivot is the largest |a(i, j)| w(i), where w(i) is 1 / (2-norm of row i of
/// the given matrix), 0 for a row of zeros, so that the scaling of rows does not matter.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out the factors
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] ipiv m elements, which hold the weights on the way; on return the first min(m, n) are row numbers
///
/// @par Failures
/// *info = j: the largest product of step j is below 8 times the machine precision, or NaN; the factorisation stops
/// there, and row numbers are the first j - 1. At D digits a row number holds up to 10^D: the matrix has at most so
/// many rows.
///
/// @par Source
/// H. J. Bowdler, R. S. Martin, G. Peters, J. H. Wilkinson, Solution of real and complex systems of linear equations,
/// Numer. Math. 8 (1966).
///
/// @par Cost
/// About n^3/3 multiply-adds for m = n.
/// @{
TESK2MP_API void QuarnMP_f07adg_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* ipiv, Integer* info);
/// @}

/// @defgroup dgetrs linear systems from an LU factorisation
///
/// DGETRS: the solution X of op(A) X = B from the factors of A that DGETRF made; ZGETRS the same over Complex.
///
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] a the factors, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] ipiv the n row numbers of the factorisation
/// @param[in,out] b B, nrhs columns of n elements, ldb apart; out X
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: trans (-1), n < 0 (-2), nrhs < 0 (-3), lda < max(1, n) (-5), ldb < max(1, n) (-8). A zero on the diagonal
/// of U is not tested for: the factorisation has reported it.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGETRS and ZGETRS.
///
/// @par Cost
/// n^2 multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dgetrs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, Integer* ipiv,
                                  QuarnFloat* b, Integer ldb, Integer* info, int trans_length);
TESK2MP_API void QuarnMPX_zgetrs_(const char* trans, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv,
                                  Complex* b, Integer ldb, Integer* info, int trans_length);
/// @}

/// @defgroup dgetri inverse from an LU factorisation
///
/// DGETRI: the inverse of A in the place of the factors that DGETRF made; ZGETRI the same over Complex.
///
/// @param[in] n order of A, >= 0
/// @param[in,out] a the factors, n columns of n elements, lda apart; out the inverse
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] ipiv the n row numbers of the factorisation
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, n), the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, or j when U(j, j) is exactly zero; A is then as it was
///
/// @par Failures
/// Illegal: n < 0 (-1), lda < max(1, n) (-3), lwork (-6). Storage for n^2 elements is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGETRI and ZGETRI.
///
/// @par Cost
/// About n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dgetri_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* work, Integer lwork,
                                  Integer* info);
TESK2MP_API void QuarnMPX_zgetri_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work, Integer lwork,
                                  Integer* info);
/// @}

/// @defgroup f07frf Cholesky factorisation of a Hermitian matrix
///
/// ZPOTRF: the Cholesky factorisation A = U^H U (uplo U) or A = L L^H (uplo L), A Hermitian positive definite of order
/// n, given and overwritten on that triangle; the other one is not touched, nor are imaginary parts of the diagonal
/// read. The companion works by halves, whatever the tuning table says, and its products round each entry once.
///
/// @param[in] uplo U: the upper triangle of A is given; L: the lower
/// @param[in] n order of A, >= 0
/// @param[in,out] a in the triangle of A, out that of its factor: n columns, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda < max(1, n) (-4). *info = j: the j-th diagonal element came out not positive and
/// is stored; the leading j - 1 columns (U) or rows (L) hold the partial factor.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: ZPOTRF.
///
/// @par Cost
/// About n^3/6 complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_f07frf_ENTRY(int selector, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                                      int uplo_length);
TESK2MP_API void QuarnMPX_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
/// @}

/// @defgroup dpotrf Cholesky factorisation of a symmetric matrix
///
/// DPOTRF: the same of a real symmetric positive definite matrix, A = U^T U or A = L L^T, as the companion does it.
///
/// @like f07frf
///
/// @param[out] info 0, -k when argument k is illegal, or j when the matrix is not positive definite
///
/// @par Cost
/// About n^3/6 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpotrf_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info,
                                  int uplo_length);
/// @}

/// @defgroup dpotrs linear systems from a Cholesky factorisation
///
/// DPOTRS: the solution X of A X = B from the factor of A that DPOTRF made; ZPOTRS the same over Complex, from ZPOTRF.
///
/// @param[in] uplo U: the factor is U with A = U^H U; L: it is L with A = L L^H
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] a the factor, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] b B, nrhs columns of n elements, ldb apart; out X
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), nrhs < 0 (-3), lda < max(1, n) (-5), ldb < max(1, n) (-7).
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DPOTRS and ZPOTRS.
///
/// @par Cost
/// n^2 multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dpotrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                  Integer ldb, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zpotrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* b,
                                  Integer ldb, Integer* info, int uplo_length);
/// @}

/// @defgroup f07frz Cholesky factorisation by columns
///
/// ZPOTF2: the same by columns, whatever the block size.
///
/// @like f07frf
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: ZPOTF2.
/// @{
TESK2MP_API void QuarnMP_f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotf2_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
/// @}

// Eigenvalues of real matrices --------------------------------------------------------------------------------------

/// @defgroup f08nhf balancing of a general matrix
///
/// DGEBAL: balances a general matrix A of order n in place. job N does nothing. P permutes so that isolated eigenvalues
/// stand in rows 1 ... ilo - 1 and ihi + 1 ... n. S scales rows and columns ilo ... ihi by powers of 8 towards equal
/// norms. B does both. The companion scales by powers of 10, which rounds nothing.
///
/// @param[in] job N, P, S or B
/// @param[in] n order of A, >= 0
/// @param[in,out] a A, n columns of n elements, lda apart; out the balanced matrix
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] ilo the rows between which the matrix is left to work on, 1-based
/// @param[out] ihi the rows between which the matrix is left to work on, 1-based
/// @param[out] scale n elements: the row and column interchanged with j outside ilo ... ihi, the scale factor inside
///
/// @par Failures
/// Illegal: job (-1), n < 0 (-2), lda < max(1, n) (-4).
///
/// @par Source
/// E. E. Osborne, On pre-conditioning of matrices, J. ACM 7 (1960); B. N. Parlett, C. Reinsch, Balancing a matrix for
/// calculation of eigenvalues and eigenvectors, Numer. Math. 13 (1969); E. Anderson et al., LAPACK Users' Guide, SIAM
/// 1999: DGEBAL.
///
/// @par Cost
/// A few passes over the matrix.
/// @{
TESK2MP_API void QuarnMP_f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                                 QuarnFloat* scale, Integer* info, int job_length);
TESK2MP_API void QuarnMPX_f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                                  QuarnFloat* scale, Integer* info, int job_length);
TESK2MP_API void QuarnMPX_dgebal_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                                  QuarnFloat* scale, Integer* info, int job_length);
/// @}

/// @defgroup dgebak eigenvectors of a matrix that was balanced
///
/// DGEBAK: makes eigenvectors of the original matrix out of those of the balanced one, m of them, in place. ZGEBAK over
/// Complex.
///
/// @param[in] job what balancing did: N, P, S or B
/// @param[in] side R: right eigenvectors; L: left ones
/// @param[in] n order of the matrix and rows of V, >= 0
/// @param[in] ilo as balancing returned it
/// @param[in] ihi as balancing returned it
/// @param[in] scale n elements, as balancing returned them
/// @param[in] m columns of V, >= 0
/// @param[in,out] v V, m columns of n elements, ldv apart
/// @param[in] ldv step from column to column of V, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: job (-1), side (-2), n < 0 (-3), ilo (-4), ihi (-5), m < 0 (-7), ldv < max(1, n) (-9).
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGEBAK.
///
/// @par Cost
/// A multiplication for each element.
/// @{
TESK2MP_API void QuarnMPX_dgebak_(const char* job, const char* side, Integer n, Integer ilo, Integer ihi,
                                  QuarnFloat* scale, Integer m, QuarnFloat* v, Integer ldv, Integer* info,
                                  int job_length, int side_length);
TESK2MP_API void QuarnMPX_zgebak_(const char* job, const char* side, Integer n, Integer ilo, Integer ihi,
                                  QuarnFloat* scale, Integer m, Complex* v, Integer ldv, Integer* info, int job_length,
                                  int side_length);
/// @}

/// @defgroup dgehrd reduction to Hessenberg form
///
/// DGEHRD: H = Q^T A Q with H upper Hessenberg and Q the product of Householder reflectors I - tau v v^T, whose vectors
/// are left below the first subdiagonal. DORGHR: Q in the place of what DGEHRD has left. ZGEHRD and ZUNGHR over
/// Complex, with Q^H and v^H, and a real subdiagonal of H.
///
/// @param[in] n order of A, >= 0
/// @param[in] ilo from balancing, otherwise 1
/// @param[in] ihi from balancing, otherwise n
/// @param[in,out] a A, n columns of n elements, lda apart; out H and below it the vectors, or Q
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] tau n - 1 factors, 0 outside ilo ... ihi - 1; out from DGEHRD, in for DORGHR
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, n), the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), ilo (-2), ihi (-3), lda < max(1, n) (-5), lwork (-8). Storage is taken for the time of the
/// call.
///
/// @par Method
/// Panels of 32 columns, whose reflectors reach the rest of the matrix in products that round each entry once.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGEHRD and ZGEHRD.
///
/// @par Cost
/// About 10 n^3/3 multiply-adds, a sixth of them in products with one vector; Q takes 4 n^3/3.
/// @{
TESK2MP_API void QuarnMPX_dgehrd_(Integer n, Integer ilo, Integer ihi, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_dorghr_(Integer n, Integer ilo, Integer ihi, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgehrd_(Integer n, Integer ilo, Integer ihi, Complex* a, Integer lda, Complex* tau,
                                  Complex* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zunghr_(Integer n, Integer ilo, Integer ihi, Complex* a, Integer lda, const Complex* tau,
                                  Complex* work, Integer lwork, Integer* info);
/// @}

/// @defgroup f08pef eigenvalues and Schur form of a Hessenberg matrix
///
/// DHSEQR: the eigenvalues wr + i wi of the upper Hessenberg matrix H of order n, a pair in consecutive places with the
/// positive imaginary part first.
///
/// @param[in] job E: eigenvalues alone; S: the Schur form too
/// @param[in] compz N: no Schur vectors; I: those of H; V: those of the matrix that Z has reduced
/// @param[in] n order of H, >= 0
/// @param[in] ilo from balancing, otherwise 1
/// @param[in] ihi from balancing, otherwise n
/// @param[in,out] h H, n columns of n elements, ldh apart; out T or unspecified
/// @param[in] ldh step from column to column of H, >= max(1, n)
/// @param[out] wr n elements each, real and imaginary parts of the eigenvalues
/// @param[out] wi n elements each, real and imaginary parts of the eigenvalues
/// @param[in,out] z n columns of n elements, ldz apart; not referenced for compz N
/// @param[in] ldz step from column to column of Z, >= 1, and >= n with vectors
/// @param[out] work lwork >= max(1, n) elements; work(1) returns that least length, lwork = -1 only asks for it
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the least
///
/// @par Failures
/// Illegal: job (-1), compz (-2), n (-3), ilo (-4), ihi (-5), ldh (-7), ldz (-11), lwork (-13). *info = i > 0: the i-th
/// eigenvalue was not found in 30 iterations for each row; eigenvalues i + 1 ... ihi are right. An element that is not
/// finite ends the companion at once, with the last row of one in *info.
///
/// @par Method
/// Tuning values 4 (shifts, at most 15) and 8 (largest block for two shifts) of the row F08PEF choose between the
/// double-shift algorithm, the shipped choice, and multishift sweeps. A defective eigenvalue of multiplicity k is good
/// to D/k digits and is approached linearly, so that beyond some 100 digits the iterations run out on it. The companion
/// extrapolates its shifts there and allows 30 (1 + D/8) iterations for each row. From 60 rows on with the Schur form,
/// 90 without it, the companion sweeps with chains of bulges, splits off eigenvalues of the last rows early, and does
/// most of the work in products that round each element once; storage for some 5 n times 60 elements is taken then for
/// the time of the call.
///
/// @par Source
/// J. G. F. Francis, The QR transformation, Comput. J. 4 (1961 and 1962); K. Braman, R. Byers, R. Mathias, The
/// multishift QR algorithm, SIAM J. Matrix Anal. Appl. 23 (2002); Z. Bai, J. Demmel, On a block implementation of
/// Hessenberg multishift QR iteration, Int. J. High Speed Comput. 1 (1989); E. Anderson et al., LAPACK Users' Guide,
/// SIAM 1999: DHSEQR.
///
/// @par Cost
/// About 10 n^3 multiply-adds for eigenvalues, 25 n^3 with Schur form and vectors.
/// @{
TESK2MP_API void QuarnMP_f08pef_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz,
                                 QuarnFloat* work, Integer lwork, Integer* info, int job_length, int compz_length);
TESK2MP_API void QuarnMP_dhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz,
                                 QuarnFloat* work, Integer lwork, Integer* info, int job_length, int compz_length);
TESK2MP_API void QuarnMP_f08pef_ENTRY(int selector, const char* job, const char* compz, Integer n, Integer ilo,
                                      Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi,
                                      QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info,
                                      int job_length, int compz_length);
TESK2MP_API void QuarnMPX_f08pef_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi,
                                  QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z,
                                  Integer ldz, QuarnFloat* work, Integer lwork, Integer* info, int job_length,
                                  int compz_length);
TESK2MP_API void QuarnMPX_dhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi,
                                  QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z,
                                  Integer ldz, QuarnFloat* work, Integer lwork, Integer* info, int job_length,
                                  int compz_length);
/// @}

/// @defgroup f08pez the double-shift QR algorithm alone
///
/// DLAHQR: the double-shift algorithm alone, without checks.
///
/// @like f08pef
///
/// @param[in] wantt whether the Schur form is wanted
/// @param[in] wantz whether its accumulation into rows iloz ... ihiz of Z is wanted
/// @param[in] iloz the rows of Z that are worked on, 1 ... n
/// @param[in] ihiz the rows of Z that are worked on, 1 ... n
///
/// @par Failures
/// *info = i > 0 as for DHSEQR.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DLAHQR.
/// @{
TESK2MP_API void QuarnMP_f08pez_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z,
                                 Integer ldz, Integer* info);
TESK2MP_API void QuarnMP_dlahqr_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z,
                                 Integer ldz, Integer* info);
/// @}

/// @defgroup f08qkf eigenvectors of a Schur form
///
/// DTREVC: eigenvectors of the Schur form T of order n. A real eigenvector takes one column, a pair two (real and
/// imaginary part, of the eigenvalue above the real axis). Each is scaled to largest |re| + |im| of 1. Chains of nine
/// and more equal eigenvalues grow beyond the range of exponents and give NaN; the companion rescales on the way. work
/// is not used.
///
/// @param[in] side R: right ones (T x = lambda x) into vr; L: left ones (y^H T = lambda y^H) into vl; B: both
/// @param[in] howmny A: all; B: all, multiplied by the matrix that vr or vl holds (the Schur vectors, to give those of
///     the original matrix); S: those with select(j) not 0, either row of a pair.
/// @param[in,out] select n elements, for howmny S; 0 leaves an eigenvalue out, but a pair is chosen by either of its
///     places
/// @param[in] n order of T, >= 0
/// @param[in] t T, n columns of n elements, ldt apart; not changed
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[in,out] vl mm columns of n elements, ldvl and ldvr apart: left and right eigenvectors
/// @param[in] ldvl step from column to column of vl, >= 1, and >= n where vl is used
/// @param[in,out] vr mm columns of n elements, ldvl and ldvr apart: left and right eigenvectors
/// @param[in] ldvr the same of vr
/// @param[in] mm columns of vl and vr, at least *m
/// @param[out] m columns used
/// @param[out] work not used
///
/// @par Failures
/// Illegal: side (-1), howmny (-2), n (-4), ldt (-6), ldvl (-8), ldvr (-10), mm < *m (-11).
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DTREVC.
///
/// @par Cost
/// About n^3/6 multiply-adds a side for all eigenvectors, n^3/2 more for howmny B.
/// @{
TESK2MP_API void QuarnMP_f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                 Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);
TESK2MP_API void QuarnMP_dtrevc_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                 Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);
TESK2MP_API void QuarnMPX_f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                  Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                  Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);
TESK2MP_API void QuarnMPX_dtrevc_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                  Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                  Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);
/// @}

/// @defgroup f08qlf condition numbers of eigenvalues and eigenvectors
///
/// DTRSNA: reciprocal condition numbers of eigenvalues (job E: s, |y^H x| / (|x| |y|) from the eigenvectors in vl and
/// vr) and of eigenvectors (V: sep, 1 / (1-norm of (T22 - lambda I)^-1), T22 the rest of T beside the eigenvalue;
/// within a factor n of the smallest singular value), or both (B), for all (howmny A) or selected (S) eigenvalues. Both
/// places of a pair get the same value. work and iwork are not used.
///
/// @like f08qkf
///
/// @param[in] job E: s; V: sep; B: both
/// @param[in] howmny A: all eigenvalues; S: those selected
/// @param[in] select n elements, for howmny S; 0 leaves an eigenvalue out
/// @param[in] n order of T, >= 0
/// @param[in] t T, n columns of n elements, ldt apart; not changed
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[in] vl for s: the left and right eigenvectors of the same eigenvalues, as DTREVC gives them
/// @param[in] ldvl step from column to column of vl, >= 1, and >= n for s
/// @param[in] vr for s: the left and right eigenvectors of the same eigenvalues, as DTREVC gives them
/// @param[in] ldvr the same of vr
/// @param[out] s *m reciprocal condition numbers of eigenvalues, 0 ... 1
/// @param[out] sep *m reciprocal condition numbers of eigenvectors
/// @param[in] mm elements of s and sep, at least *m
/// @param[out] m elements used
/// @param[out] work not used
/// @param[in] ldwork a leading dimension, checked alone: >= 1, and >= n for sep
/// @param[out] iwork not used
///
/// @par Failures
/// Illegal: job (-1), howmny (-2), n (-4), ldt (-6), ldvl (-8), ldvr (-10), mm < *m (-13), ldwork < 1, or < n for V and
/// B (-16).
///
/// @par Source
/// Z. Bai, J. Demmel, A. McKenney, On computing condition numbers for the nonsymmetric eigenvalue problem, ACM Trans.
/// Math. Softw. 19 (1993); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DTRSNA.
///
/// @par Cost
/// Some n multiply-adds an eigenvalue for s; about 3 n^3/2 complex ones an eigenvalue for sep.
/// @{
TESK2MP_API void QuarnMP_f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s,
                                 QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork,
                                 Integer* iwork, Integer* info, int job_length, int howmny_length);
TESK2MP_API void QuarnMP_dtrsna_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s,
                                 QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork,
                                 Integer* iwork, Integer* info, int job_length, int howmny_length);
TESK2MP_API void QuarnMPX_f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                  Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr,
                                  QuarnFloat* s, QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work,
                                  Integer ldwork, Integer* iwork, Integer* info, int job_length, int howmny_length);
TESK2MP_API void QuarnMPX_dtrsna_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                  Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr,
                                  QuarnFloat* s, QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work,
                                  Integer ldwork, Integer* iwork, Integer* info, int job_length, int howmny_length);
/// @}

/// @defgroup c02alf zeros of a quartic
///
/// The zeros of a quartic: zeror + i zeroi (4 each) of e z^4 + a z^3 + b z^2 + c z + d with an error estimate each, as
/// the eigenvalues of the balanced companion matrix, in the order in which its Schur form has them. errest is machine
/// precision times norm over condition number: the effect of one rounding of the matrix.
///
/// Quotients work on the range of the hardware double: a coefficient over e below 2.2e-308 counts as 0, and so does an
/// estimate; an estimate beyond 4.49e+307 is that number. The companion divides over the whole range and converges on
/// multiple zeros; its estimate is huge or infinite where the condition number vanishes (four zeros at 0).
///
/// @param[in] e coefficient of z^4, not 0
/// @param[in] a coefficient of z^3
/// @param[in] b coefficient of z^2
/// @param[in] c coefficient of z
/// @param[in] d the constant term
/// @param[out] zeror 4 elements each, real and imaginary parts of the zeros
/// @param[out] zeroi 4 elements each, real and imaginary parts of the zeros
/// @param[out] errest 4 elements, absolute error estimates
///
/// @par Failures
/// IFAIL as described in tesk2mp.h: 1: e = 0; 2: a quotient by e passes 4.49e+307; 3: the QR algorithm did not
/// converge, which happens with multiple zeros from some 60 digits on and with NaN. Failure 2 of the companion is an
/// infinite or NaN quotient, or an infinite e. What the arrays hold after a failure is not defined.
///
/// @par Source
/// A. Edelman, H. Murakami, Polynomial roots from companion matrix eigenvalues, Math. Comp. 64 (1995).
///
/// @par Cost
/// That of the eigenvalues of a matrix of order 4.
/// @{
TESK2MP_API void QuarnMP_c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d,
                                 QuarnFloat* zeror, QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail);
TESK2MP_API void QuarnMPX_c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d,
                                  QuarnFloat* zeror, QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail);
/// @}
}
TESK2MP_NAMES_END

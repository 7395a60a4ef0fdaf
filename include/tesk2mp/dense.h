// Dense factorisations, eigenvalues and quartic zeros. All but the last report through INFO and print nothing: 0 is
// success, -k says that argument k is illegal (checked in argument order), and a positive value is a numerical failure
// at that step.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

extern "C" {

/// One cell of the process-wide tuning table: reads it (rwflag 0) or writes it (any other rwflag). ispec: 1 block
/// size, 2 least block size, 3 crossover, 4 number of shifts and 8 largest small block of the QR algorithm, 5 to 7
/// free. name: a routine of chapters F07 and F08, six capital characters ("F07ADF", or letters first, "ADFF07"). *ival
/// becomes -1 when ispec is not in 1 ... 8, otherwise -2 when the name has no row. Shipped: block size 1 (unblocked)
/// for the factorisations; block size 0, one shift, small blocks of 1 for the QR algorithm. Routines that only apply
/// what another one made (F08AG after F08AE, ...) have their own row in the A family and share one elsewhere.
///
/// Cost: a look into a short table.
///
///   ival     the value of the cell: out when it is read, in when it is written
///   rwflag   0 reads, any other value writes
TESK2MP_API void QuarnMP_f07zaz_(Integer ispec, const char* name, Integer* ival, Integer rwflag, int name_length);

/// DGETRF: A = P L U with partial pivoting, A m by n, L with unit diagonal. ipiv: min(m, n) row numbers, 1-based: row i
/// was interchanged with row ipiv(i). Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4). *info = j: U(j, j) is
/// exactly zero; the factorisation is complete. m = 0 or n = 0 touches nothing. Cost: about n^3/3 multiply-adds for
/// m = n.
///
///   m     rows of A, >= 0
///   n     columns of A, >= 0
///   a     A, n columns of m elements, lda apart; out U on and above the diagonal, L below it
///   lda   step from column to column of A, >= max(1, m)
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
/// below 8 times the machine precision, or NaN; the factorisation stops there, and row numbers are the first j - 1.
/// Cost: about n^3/3 multiply-adds for m = n.
///
///   m     rows of A, >= 0
///   n     columns of A, >= 0
///   a     A, n columns of m elements, lda apart; out the factors
///   lda   step from column to column of A, >= max(1, m)
TESK2MP_API void QuarnMP_f07adg_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* ipiv, Integer* info);

/// ZPOTRF: the Cholesky factorisation A = U^H U (uplo U) or A = L L^H (uplo L), A Hermitian positive definite of order
/// n, given and overwritten on that triangle; the other one is not touched, nor are imaginary parts of the diagonal
/// read. Illegal: uplo (-1), n < 0 (-2), lda < max(1, n) (-4). *info = j: the j-th diagonal element came out not
/// positive and is stored; the leading j - 1 columns (U) or rows (L) hold the partial factor.
///
/// Cost: about n^3/6 complex multiply-adds.
///
///   uplo   U: the upper triangle of A is given; L: the lower
///   n      order of A, >= 0
///   a      in the triangle of A, out that of its factor: n columns, lda apart
///   lda    step from column to column of A, >= max(1, n)
TESK2MP_API void QuarnMP_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_f07frf_ENTRY(int selector, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                                      int uplo_length);
/// ZPOTF2: the same by columns, whatever the block size.
TESK2MP_API void QuarnMP_f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
TESK2MP_API void QuarnMP_zpotf2_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);

// Eigenvalues of real matrices --------------------------------------------------------------------------------------

/// DGEBAL: balances a general matrix A of order n in place. job N: nothing; P: permutes so that isolated eigenvalues
/// stand in rows 1 ... ilo - 1 and ihi + 1 ... n; S: scales rows and columns ilo ... ihi by powers of 8 towards equal
/// norms; B: both. scale(j): the row and column interchanged with j outside ilo ... ihi, the scale factor inside.
/// Illegal: job (-1), n < 0 (-2), lda < max(1, n) (-4).
/// Cost: a few passes over the matrix.
///
///   job        N, P, S or B
///   n          order of A, >= 0
///   a          A, n columns of n elements, lda apart; out the balanced matrix
///   lda        step from column to column of A, >= max(1, n)
///   ilo, ihi   out: the rows between which the matrix is left to work on, 1-based
///   scale      out: n elements; permutations and factors
TESK2MP_API void QuarnMP_f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi,
                                 QuarnFloat* scale, Integer* info, int job_length);

/// DHSEQR: the eigenvalues wr + i wi of the upper Hessenberg matrix H of order n, a pair in consecutive places with the
/// positive imaginary part first. job E: eigenvalues alone (H is left unspecified); S: H becomes the Schur form T.
/// compz N: no Schur vectors; I: Z becomes the orthogonal matrix of H = Z T Z^T; V: Z becomes Z times that matrix.
/// ilo, ihi: from balancing, otherwise 1 and n. work: lwork >= max(1, n) elements; work(1) tells that least length,
/// lwork = -1 only asks for it. Illegal: job (-1), compz (-2), n (-3), ilo (-4), ihi (-5), ldh (-7), ldz (-11),
/// lwork (-13). *info = i > 0: the i-th eigenvalue was not found in 30 iterations for each row; eigenvalues i + 1 ...
/// ihi are right. (A defective eigenvalue of multiplicity k is approached linearly and is good to D/k digits: beyond
/// some 100 digits the iterations may run out on it.) Tuning values 4 (shifts, at most 15) and 8 (largest block for two
/// shifts) of the row F08PEF choose between the double-shift algorithm, the shipped choice, and multishift sweeps.
/// Cost: about 10 n^3 multiply-adds for eigenvalues, 25 n^3 with Schur form and vectors.
///
///   job      E: eigenvalues alone; S: the Schur form too
///   compz    N: no Schur vectors; I: those of H; V: those of the matrix that Z has reduced
///   n        order of H, >= 0
///   h        H, n columns of n elements, ldh apart; out T or unspecified
///   ldh      step from column to column of H, >= max(1, n)
///   wr, wi   out: n elements each, real and imaginary parts of the eigenvalues
///   z        n columns of n elements, ldz apart; not referenced for compz N
///   ldz      step from column to column of Z, >= 1, and >= n with vectors
///   lwork    elements of work, >= max(1, n); -1 asks for the least
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
/// DLAHQR: the double-shift algorithm alone, without checks. wantt, wantz: whether the Schur form, and its
/// accumulation into rows iloz ... ihiz of Z, are wanted. *info = i > 0 as for DHSEQR.
///
///   iloz, ihiz   the rows of Z that are worked on, 1 ... n
TESK2MP_API void QuarnMP_f08pez_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z,
                                 Integer ldz, Integer* info);
TESK2MP_API void QuarnMP_dlahqr_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                                 Integer ldh, QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z,
                                 Integer ldz, Integer* info);

/// DTREVC: eigenvectors of the Schur form T of order n. side R: right ones (T x = lambda x) into vr; L: left ones
/// (y^H T = lambda y^H) into vl; B: both. howmny A: all; B: all, multiplied by the matrix that vr or vl holds (the
/// Schur vectors, to give those of the original matrix); S: those with select(j) not 0, either row of a pair. A real
/// eigenvector takes one column, a pair two (real and imaginary part, of the eigenvalue above the real axis). Each is
/// scaled to largest |re| + |im| of 1. mm: columns there are; *m: columns used. work is not used. Illegal: side (-1),
/// howmny (-2), n (-4), ldt (-6), ldvl (-8), ldvr (-10), mm < *m (-11).
/// Cost: about n^3/6 multiply-adds a side for all eigenvectors, n^3/2 more for howmny B.
///
///   select   n elements, for howmny S; 0 leaves an eigenvalue out, but a pair is chosen by either of its places
///   n        order of T, >= 0
///   t        T, n columns of n elements, ldt apart; not changed
///   ldt      step from column to column of T, >= max(1, n)
///   vl, vr   mm columns of n elements, ldvl and ldvr apart: left and right eigenvectors
///   ldvl     step from column to column of vl, >= 1, and >= n where vl is used
///   ldvr     the same of vr
///   mm       columns of vl and vr, at least *m
///   m        out: columns used
///   work     not used
TESK2MP_API void QuarnMP_f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                 Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);
TESK2MP_API void QuarnMP_dtrevc_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm,
                                 Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length);

/// DTRSNA: reciprocal condition numbers of eigenvalues (job E: s, |y^H x| / (|x| |y|) from the eigenvectors in vl and
/// vr) and of eigenvectors (V: sep, 1 / (1-norm of (T22 - lambda I)^-1), T22 the rest of T beside the eigenvalue;
/// within a factor n of the smallest singular value), or both (B), for all (howmny A) or selected (S) eigenvalues. Both
/// places of a pair get the same value. work and iwork are not used. Illegal: job (-1), howmny (-2), n (-4), ldt (-6),
/// ldvl (-8), ldvr (-10), mm < *m (-13), ldwork < 1, or < n for V and B (-16).
/// Cost: some n multiply-adds an eigenvalue for s; about 3 n^3/2 complex ones an eigenvalue for sep.
///
///   job      E: s; V: sep; B: both
///   howmny   A: all eigenvalues; S: those selected
///   select   n elements, for howmny S; 0 leaves an eigenvalue out
///   n        order of T, >= 0
///   t        T, n columns of n elements, ldt apart; not changed
///   ldt      step from column to column of T, >= max(1, n)
///   vl, vr   for s: the left and right eigenvectors of the same eigenvalues, as DTREVC gives them
///   ldvl     step from column to column of vl, >= 1, and >= n for s
///   ldvr     the same of vr
///   s        out: *m reciprocal condition numbers of eigenvalues, 0 ... 1
///   sep      out: *m reciprocal condition numbers of eigenvectors
///   mm       elements of s and sep, at least *m
///   m        out: elements used
///   work     not used
///   ldwork   a leading dimension, checked alone: >= 1, and >= n for sep
///   iwork    not used
TESK2MP_API void QuarnMP_f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s,
                                 QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork,
                                 Integer* iwork, Integer* info, int job_length, int howmny_length);
TESK2MP_API void QuarnMP_dtrsna_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t,
                                 Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s,
                                 QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork,
                                 Integer* iwork, Integer* info, int job_length, int howmny_length);

/// The zeros of a quartic: zeror + i zeroi (4 each) of e z^4 + a z^3 + b z^2 + c z + d with an error estimate each, as
/// the eigenvalues of the balanced companion matrix, in the order in which its Schur form has them. errest is machine
/// precision times norm over condition number: the effect of one rounding of the matrix. IFAIL as described in
/// tesk2mp.h: 1: e = 0; 2: a quotient by e passes the range of the hardware double (4.49e+307), the guard that the
/// routine has always had; 3: the QR algorithm did not converge (a coefficient is not finite).
/// Cost: that of the eigenvalues of a matrix of order 4.
///
///   e, a, b, c, d   the coefficients of z^4, z^3, z^2, z and 1; e is not 0
///   zeror, zeroi    out: 4 elements each, real and imaginary parts of the zeros
///   errest          out: 4 elements, absolute error estimates
TESK2MP_API void QuarnMP_c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d,
                                 QuarnFloat* zeror, QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail);
}

// Linear systems with symmetric indefinite, band and tridiagonal matrices.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure at that step. Of an option text the first character alone is
// read; its length argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dsytrf factorisation of a symmetric indefinite matrix
///
/// DSYTRF: A = U D U^T (uplo U) or A = L D L^T (uplo L), A symmetric of order n, given and overwritten on that
/// triangle, U and L products of permutations and triangles with ones on the diagonal, D of blocks of order 1 and 2.
/// ZSYTRF the same of a complex symmetric matrix, ZHETRF of a Hermitian one, with adjoints for transposes and a D that
/// is Hermitian.
///
/// @param[in] uplo U: the upper triangle of A is given; L: the lower
/// @param[in] n order of A, >= 0
/// @param[in,out] a in the triangle of A, out that of its factors: n columns, lda apart; the other triangle is not
///     touched
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] ipiv n row numbers, 1-based. ipiv(k) > 0: D(k, k) is a block of its own, rows and columns k and ipiv(k)
///     were interchanged. ipiv(k) = ipiv(k + 1) < 0 (L), or ipiv(k - 1) = ipiv(k) < 0 (U): the two are a block, and
///     rows and columns k + 1 (U: k - 1) and -ipiv(k) were interchanged
/// @param[out] work lwork elements; work(1) is the length that is asked for, 1, the others are not touched
/// @param[in] lwork elements of work, >= 1; -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, or j when D(j, j) is exactly zero; the factorisation is complete
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda < max(1, n) (-4), lwork (-7). Storage for 33 n elements is taken for the time of
/// the call.
///
/// @par Method
/// Diagonal pivoting with partial search, sizes of complex numbers being moduli. What is behind a panel of columns is
/// brought up to date by one product that rounds each entry once.
///
/// @par Source
/// J. R. Bunch, L. Kaufman, Some stable methods for calculating inertia and solving symmetric linear systems, Math.
/// Comp. 31 (1977); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYTRF, ZSYTRF and ZHETRF.
///
/// @par Cost
/// About n^3/6 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dsytrf_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv,
                                  QuarnFloat* work, Integer lwork, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zsytrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work,
                                  Integer lwork, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zhetrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work,
                                  Integer lwork, Integer* info, int uplo_length);
/// @}

/// @defgroup dsytrs linear systems from a symmetric indefinite factorisation
///
/// DSYTRS: the solution X of A X = B from the factors of A that DSYTRF made; ZSYTRS from those of ZSYTRF, ZHETRS from
/// those of ZHETRF.
///
/// @param[in] uplo as it was for the factorisation
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
/// Illegal: uplo (-1), n < 0 (-2), nrhs < 0 (-3), lda < max(1, n) (-5), ldb < max(1, n) (-8). A zero block of D is not
/// tested for. Storage for n^2 elements is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DSYTRS, ZSYTRS and ZHETRS.
///
/// @par Cost
/// n^2 multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dsytrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, Integer* ipiv,
                                  QuarnFloat* b, Integer ldb, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zsytrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv,
                                  Complex* b, Integer ldb, Integer* info, int uplo_length);
TESK2MP_API void QuarnMPX_zhetrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv,
                                  Complex* b, Integer ldb, Integer* info, int uplo_length);
/// @}

/// @defgroup dgbtrf LU factorisation of a band matrix
///
/// DGBTRF: A = L U with partial pivoting, A m by n with kl diagonals below the main one and ku above it; ZGBTRF over
/// Complex.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] kl diagonals below the main one, >= 0
/// @param[in] ku diagonals above it, >= 0
/// @param[in,out] ab element (i, j) of A, max(1, j - ku) <= i <= min(m, j + kl), in row kl + ku + 1 + i - j of column
///     j, n columns, ldab apart; the first kl rows are space for what interchanges fill. Out U, with kl + ku diagonals
///     above the main one, and below it the multipliers
/// @param[in] ldab step from column to column of AB, >= 2 kl + ku + 1
/// @param[out] ipiv min(m, n) row numbers, 1-based: row i was interchanged with row ipiv(i)
/// @param[out] info 0, -k when argument k is illegal, or j when U(j, j) is exactly zero; the factorisation is complete
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), kl < 0 (-3), ku < 0 (-4), ldab (-6).
///
/// @par Source
/// R. S. Martin, J. H. Wilkinson, Solution of symmetric and unsymmetric band equations and the calculations of
/// eigenvectors of band matrices, Numer. Math. 9 (1967); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGBTRF and
/// ZGBTRF.
///
/// @par Cost
/// At most n kl (kl + ku) multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dgbtrf_(Integer m, Integer n, Integer kl, Integer ku, QuarnFloat* ab, Integer ldab,
                                  Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMPX_zgbtrf_(Integer m, Integer n, Integer kl, Integer ku, Complex* ab, Integer ldab,
                                  Integer* ipiv, Integer* info);
/// @}

/// @defgroup dgbtrs linear systems from the LU factorisation of a band matrix
///
/// DGBTRS: the solution X of op(A) X = B from the factors of A that DGBTRF made; ZGBTRS over Complex.
///
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] n order of A, >= 0
/// @param[in] kl diagonals below the main one, >= 0
/// @param[in] ku diagonals above it, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] ab the factors; not changed
/// @param[in] ldab step from column to column of AB, >= 2 kl + ku + 1
/// @param[in] ipiv the n row numbers of the factorisation
/// @param[in,out] b B, nrhs columns of n elements, ldb apart; out X
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: trans (-1), n < 0 (-2), kl < 0 (-3), ku < 0 (-4), nrhs < 0 (-5), ldab (-7), ldb (-10). A zero on the
/// diagonal of U is not tested for.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGBTRS and ZGBTRS.
///
/// @par Cost
/// n (2 kl + ku) multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dgbtrs_(const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, QuarnFloat* ab,
                                  Integer ldab, Integer* ipiv, QuarnFloat* b, Integer ldb, Integer* info,
                                  int trans_length);
TESK2MP_API void QuarnMPX_zgbtrs_(const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, Complex* ab,
                                  Integer ldab, Integer* ipiv, Complex* b, Integer ldb, Integer* info,
                                  int trans_length);
/// @}

/// @defgroup dgttrf LU factorisation of a tridiagonal matrix
///
/// DGTTRF: A = L U by elimination with interchanges of neighbouring rows, A tridiagonal of order n; ZGTTRF over
/// Complex.
///
/// @param[in] n order of A, >= 0
/// @param[in,out] dl n - 1 elements below the diagonal; out the multipliers
/// @param[in,out] d the n elements of the diagonal; out that of U
/// @param[in,out] du n - 1 elements above the diagonal; out those of U
/// @param[out] du2 n - 2 elements of the second diagonal above that of U
/// @param[out] ipiv n row numbers, 1-based: row i was interchanged with row ipiv(i), which is i or i + 1
/// @param[out] info 0, -1 for n < 0, or j when U(j, j) is exactly zero; the factorisation is complete
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGTTRF and ZGTTRF.
///
/// @par Cost
/// n divisions and 2 n multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dgttrf_(Integer n, QuarnFloat* dl, QuarnFloat* d, QuarnFloat* du, QuarnFloat* du2,
                                  Integer* ipiv, Integer* info);
TESK2MP_API void QuarnMPX_zgttrf_(Integer n, Complex* dl, Complex* d, Complex* du, Complex* du2, Integer* ipiv,
                                  Integer* info);
/// @}

/// @defgroup dgttrs linear systems from the LU factorisation of a tridiagonal matrix
///
/// DGTTRS: the solution X of op(A) X = B from the factors of A that DGTTRF made; ZGTTRS over Complex.
///
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] dl n - 1 multipliers; not changed
/// @param[in] d n elements; not changed
/// @param[in] du n - 1 elements; not changed
/// @param[in] du2 n - 2 elements; not changed
/// @param[in] ipiv the n row numbers of the factorisation
/// @param[in,out] b B, nrhs columns of n elements, ldb apart; out X
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: trans (-1), n < 0 (-2), nrhs < 0 (-3), ldb (-10). A zero on the diagonal of U is not tested for.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGTTRS and ZGTTRS.
///
/// @par Cost
/// n divisions and 3 n multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dgttrs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* dl, QuarnFloat* d,
                                  QuarnFloat* du, QuarnFloat* du2, Integer* ipiv, QuarnFloat* b, Integer ldb,
                                  Integer* info, int trans_length);
TESK2MP_API void QuarnMPX_zgttrs_(const char* trans, Integer n, Integer nrhs, Complex* dl, Complex* d, Complex* du,
                                  Complex* du2, Integer* ipiv, Complex* b, Integer ldb, Integer* info,
                                  int trans_length);
/// @}

/// @defgroup dpttrf factorisation of a positive definite tridiagonal matrix
///
/// DPTTRF: A = L D L^T, A symmetric positive definite and tridiagonal of order n; ZPTTRF the same of a Hermitian one,
/// A = L D L^H = U^H D U.
///
/// @param[in] n order of A, >= 0
/// @param[in,out] d the n elements of the diagonal, real; out D
/// @param[in,out] e n - 1 elements below the diagonal, or above it; out those of L, or of U
/// @param[out] info 0, -1 for n < 0, or j when D(j, j) is not positive; the first j - 1 elements are done
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DPTTRF and ZPTTRF.
///
/// @par Cost
/// n divisions and n multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpttrf_(Integer n, QuarnFloat* d, QuarnFloat* e, Integer* info);
TESK2MP_API void QuarnMPX_zpttrf_(Integer n, QuarnFloat* d, Complex* e, Integer* info);
/// @}

/// @defgroup dpttrs linear systems from the factors of a definite tridiagonal matrix
///
/// DPTTRS: the solution X of A X = B from the factors of A that DPTTRF made; ZPTTRS over Complex.
///
/// @param[in] uplo of ZPTTRS: U: e is above the diagonal; L: below it
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] d n elements; not changed
/// @param[in] e n - 1 elements; not changed
/// @param[in,out] b B, nrhs columns of n elements, ldb apart; out X
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), nrhs < 0 (-2), ldb (-6); of ZPTTRS uplo (-1), n < 0 (-2), nrhs < 0 (-3), ldb (-7).
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DPTTRS and ZPTTRS.
///
/// @par Cost
/// n divisions and 2 n multiply-adds for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dpttrs_(Integer n, Integer nrhs, QuarnFloat* d, QuarnFloat* e, QuarnFloat* b, Integer ldb,
                                  Integer* info);
TESK2MP_API void QuarnMPX_zpttrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* d, Complex* e, Complex* b,
                                  Integer ldb, Integer* info, int uplo_length);
/// @}
}
TESK2MP_NAMES_END

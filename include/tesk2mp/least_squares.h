// Least squares of any rank and with constraints, and the factorisations that show the rank.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dgelsy least squares of any rank
///
/// DGELSY: for each column b of B the x of least norm(b - A x), and of several such x the one of least norm(x); A is m
/// by n, of the rank that its pivoted QR factorisation shows. ZGELSY over Complex. With nrhs = 0 it finds the rank.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out its complete orthogonal factorisation A P = Q (T 0; 0 0)
/// Z:
///     T in the leading triangle of order rank, the reflectors of Q below the diagonal, as DGEQP3 leaves them, and
///     those of Z to the right of T, as DTZRZF leaves them
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in,out] b B, nrhs columns of max(m, n) elements, ldb apart; out the solutions, n elements each
/// @param[in] ldb step from column to column of B, >= max(1, m, n)
/// @param[in,out] jpvt n elements: columns with an element other than 0 come first; out column j of A P is column
/// jpvt(j)
///     of A
/// @param[in] rcond the rank is the largest order of a leading triangle of R whose condition number is estimated at no
///     more than 1 / rcond; a useful value is max(m, n) 10^(1 - D)
/// @param[out] rank the rank
/// @param[out] work lwork elements; out min(m, n) factors of the reflectors of Q, then rank factors of those of Z;
///     work(1) is the length that is asked for when lwork is -1
/// @param[in] lwork elements of work, >= max(1, k + max(2 k, n + 1, k + nrhs)) with k = min(m, n); -1 asks for the
/// length
///     alone
/// @param[out] rwork of ZGELSY: not used, may be null
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), nrhs < 0 (-3), lda (-5), ldb (-7), lwork (-12). A matrix with NaN is taken for one
/// of full rank, so that the solution shows it. Storage is taken for the time of the call.
///
/// @par Method
/// QR factorisation with column pivoting; the rank by incremental condition estimation; the rest of R is transformed
/// away from the right.
///
/// @par Source
/// G. Quintana-Orti, E. S. Quintana-Orti, A. Petitet, Efficient solution of the rank-deficient linear least squares
/// problem, SIAM J. Sci. Comput. 20 (1998); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGELSY and ZGELSY.
///
/// @par Cost
/// About m n^2 - n^3/3 multiply-adds for m >= n, and as much again when the rank is n/2.
/// @{
TESK2MP_API void QuarnMPX_dgelsy_(Integer m, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                  Integer ldb, Integer* jpvt, QuarnFloat rcond, Integer* rank, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgelsy_(Integer m, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* b, Integer ldb,
                                  Integer* jpvt, QuarnFloat rcond, Integer* rank, Complex* work, Integer lwork,
                                  QuarnFloat* rwork, Integer* info);
/// @}

/// @defgroup dgeqp3 QR factorisation with column pivoting
///
/// DGEQP3: A P = Q R, where each step brings forward the column with the largest remainder, so that the diagonal of R
/// decreases and shows the rank; ZGEQP3 over Complex.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out R, and below the diagonal the reflectors of Q as DGEQRF
///     leaves them
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in,out] jpvt n elements: columns with an element other than 0 come first, without pivoting; out column j of A
/// P
///     is column jpvt(j) of A
/// @param[out] tau min(m, n) factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= 3 n + 1, for ZGEQP3 n + 1; -1 asks for the length alone
/// @param[out] rwork of ZGEQP3: not used, may be null
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4), lwork (-8). Storage is taken for the time of the call.
///
/// @par Source
/// P. Businger, G. H. Golub, Linear least squares solutions by Householder transformations, Numer. Math. 7 (1965); E.
/// Anderson et al., LAPACK Users' Guide, SIAM 1999: DGEQP3 and ZGEQP3.
///
/// @par Cost
/// About m n^2 - n^3/3 multiply-adds for m >= n.
/// @{
TESK2MP_API void QuarnMPX_dgeqp3_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* jpvt, QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgeqp3_(Integer m, Integer n, Complex* a, Integer lda, Integer* jpvt, Complex* tau,
                                  Complex* work, Integer lwork, QuarnFloat* rwork, Integer* info);
/// @}

/// @defgroup dtzrzf upper trapezoidal to upper triangular form
///
/// DTZRZF: (R1 R2) = (T 0) Z, R1 and T upper triangular of order m, Z the product of m reflectors I - tau u u^T with
/// u = (e(i), z(i)); ZTZRZF over Complex, with u^H and a real diagonal of T.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= m
/// @param[in,out] a (R1 R2), n columns of m elements, lda apart, of which the triangle is read; out T, and in row i of
///     columns m + 1 ... n the vector z(i)
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] tau m factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, m), the others are not touched
/// @param[in] lwork elements of work, >= max(1, m); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < m (-2), lda < max(1, m) (-4), lwork (-7). Storage is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DTZRZF and ZTZRZF.
///
/// @par Cost
/// About m^2 (n - m) multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dtzrzf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_ztzrzf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work,
                                  Integer lwork, Integer* info);
/// @}

/// @defgroup dormrz Z times a matrix
///
/// DORMRZ: C := op(Z) C (side L) or C := C op(Z) (side R) with the Z = Z(1) ... Z(k) of which DTZRZF has left k
/// reflectors; ZUNMRZ over Complex.
///
/// @param[in] side L: Z stands on the left, of order m; R: on the right, of order n
/// @param[in] trans N: Z; T, for ZUNMRZ C: its adjoint
/// @param[in] m rows of C, >= 0
/// @param[in] n columns of C, >= 0
/// @param[in] k reflectors, 0 ... order of Z
/// @param[in] l elements of the vectors z, 0 ... order of Z - k
/// @param[in] a the vectors z in k rows of the last l of as many columns as the order of Z, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, k)
/// @param[in] tau k factors
/// @param[in,out] c C, n columns of m elements, ldc apart
/// @param[in] ldc step from column to column of C, >= max(1, m)
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, at least 1 and n (side L) or m (side R); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: side (-1), trans (-2), m < 0 (-3), n < 0 (-4), k (-5), l (-6), lda (-8), ldc (-11), lwork (-13). Storage is
/// taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORMRZ and ZUNMRZ.
///
/// @par Cost
/// About 2 k l multiply-adds for each column (side L) or row of C.
/// @{
TESK2MP_API void QuarnMPX_dormrz_(const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l,
                                  QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* c, Integer ldc,
                                  QuarnFloat* work, Integer lwork, Integer* info, int side_length, int trans_length);
TESK2MP_API void QuarnMPX_zunmrz_(const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l,
                                  Complex* a, Integer lda, Complex* tau, Complex* c, Integer ldc, Complex* work,
                                  Integer lwork, Integer* info, int side_length, int trans_length);
/// @}

/// @defgroup dgglse least squares with equality constraints
///
/// DGGLSE: the x of least norm(c - A x) among those with B x = d, A m by n, B p by n, p <= n <= m + p; ZGGLSE over
/// Complex. It is unique when B has p independent rows and (A; B) n independent columns.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A and B, >= 0
/// @param[in] p rows of B, n - m ... n
/// @param[in] a A, n columns of m elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] b B, n columns of p elements, ldb apart; not changed
/// @param[in] ldb step from column to column of B, >= max(1, p)
/// @param[in,out] c m elements; out what it becomes by an orthogonal transformation: the norm of the residual is that
/// of
///     elements n - p + 1 ... m
/// @param[in] d p elements; not changed
/// @param[out] x n elements
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, m + n + p); -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, 1 when the rows of B are dependent, 2 when the columns of (A; B)
///     are; x and c are then as they were
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), p (-3), lda (-5), ldb (-7), lwork (-12). Dependence means a diagonal element of a
/// triangular factor that is exactly zero. Storage is taken for the time of the call.
///
/// @par Method
/// B^H = Q (R; 0); the constraints fix the first p coordinates of Q^H x, least squares the others.
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, Solving Least Squares Problems, Prentice-Hall 1974, chapter 20; E. Anderson et al.,
/// LAPACK Users' Guide, SIAM 1999: DGGLSE and ZGGLSE.
///
/// @par Cost
/// About p n^2 + 2 m n p + m (n - p)^2 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dgglse_(Integer m, Integer n, Integer p, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                  Integer ldb, QuarnFloat* c, QuarnFloat* d, QuarnFloat* x, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgglse_(Integer m, Integer n, Integer p, Complex* a, Integer lda, Complex* b, Integer ldb,
                                  Complex* c, Complex* d, Complex* x, Complex* work, Integer lwork, Integer* info);
/// @}

/// @defgroup dggglm general Gauss-Markov linear model
///
/// DGGGLM: the x and y of least norm(y) with d = A x + B y, A n by m, B n by p, m <= n <= m + p: least squares in the
/// norm of B^-1 when B is square. ZGGGLM over Complex. It is unique when A has m independent columns and (A B) n
/// independent rows.
///
/// @param[in] n rows of A and B, >= 0
/// @param[in] m columns of A, 0 ... n
/// @param[in] p columns of B, >= n - m
/// @param[in] a A, m columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] b B, p columns of n elements, ldb apart; not changed
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[in] d n elements; not changed
/// @param[out] x m elements
/// @param[out] y p elements
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, n + m + p); -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, 1 when the columns of A are dependent, 2 when the rows of (A B)
///     are; x and y are then zeros
///
/// @par Failures
/// Illegal: n < 0 (-1), m (-2), p (-3), lda (-5), ldb (-7), lwork (-12). Dependence means a diagonal element of a
/// triangular factor that is exactly zero. Storage is taken for the time of the call.
///
/// @par Method
/// A = Q (R; 0); the last n - m rows of Q^H B determine y, the first m then x.
///
/// @par Source
/// C. C. Paige, Computer solution and perturbation analysis of generalized linear least squares problems, Math. Comp.
/// 33 (1979); E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGGGLM and ZGGGLM.
///
/// @par Cost
/// About n m^2 + 2 n m p + p (n - m)^2 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dggglm_(Integer n, Integer m, Integer p, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                  Integer ldb, QuarnFloat* d, QuarnFloat* x, QuarnFloat* y, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zggglm_(Integer n, Integer m, Integer p, Complex* a, Integer lda, Complex* b, Integer ldb,
                                  Complex* d, Complex* x, Complex* y, Complex* work, Integer lwork, Integer* info);
/// @}
}
TESK2MP_NAMES_END

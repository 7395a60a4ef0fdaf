// Orthogonal factorisations and least squares.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure at that step. Of an option text the first character alone is
// read; its length argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dgeqrf QR factorisation
///
/// DGEQRF: A = Q R, A m by n, R upper triangular, Q the product of min(m, n) Householder reflectors I - tau v v^T;
/// ZGEQRF the same over Complex with v^H and a real diagonal of R.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out R, and below the diagonal the vectors v without their
///     leading ones
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] tau min(m, n) factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, n), the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4), lwork (-7). Storage is taken for the time of the call.
///
/// @par Method
/// By halves of panels; the reflectors of a panel reach the other columns in products that round each entry once.
///
/// @par Source
/// G. H. Golub, Numerical methods for solving linear least squares problems, Numer. Math. 7 (1965); E. Anderson et
/// al., LAPACK Users' Guide, SIAM 1999: DGEQRF and ZGEQRF.
///
/// @par Cost
/// About m n^2 - n^3/3 multiply-adds for m >= n.
/// @{
TESK2MP_API void QuarnMPX_dgeqrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgeqrf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work,
                                  Integer lwork, Integer* info);
/// @}

/// @defgroup dorgqr columns of Q
///
/// DORGQR: the first n columns of the Q of which DGEQRF has left k reflectors, in their place; ZUNGQR over Complex.
///
/// @param[in] m rows of Q, >= 0
/// @param[in] n columns of Q, 0 ... m
/// @param[in] k reflectors, 0 ... n
/// @param[in,out] a the reflectors, below the diagonals of k columns; out Q, n columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] tau k factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, n), the others are not touched
/// @param[in] lwork elements of work, >= max(1, n); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n (-2), k (-3), lda < max(1, m) (-5), lwork (-8). Storage is taken for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORGQR and ZUNGQR.
///
/// @par Cost
/// About 2 m n k multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dorgqr_(Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zungqr_(Integer m, Integer n, Integer k, Complex* a, Integer lda, Complex* tau, Complex* work,
                                  Integer lwork, Integer* info);
/// @}

/// @defgroup dormqr Q times a matrix
///
/// DORMQR: C := op(Q) C (side L) or C := C op(Q) (side R) with the Q of which DGEQRF has left k reflectors; ZUNMQR over
/// Complex.
///
/// @param[in] side L: Q stands on the left, of order m; R: on the right, of order n
/// @param[in] trans N: Q; T, for ZUNMQR C: its adjoint
/// @param[in] m rows of C, >= 0
/// @param[in] n columns of C, >= 0
/// @param[in] k reflectors, 0 ... order of Q
/// @param[in] a the reflectors, below the diagonals of k columns, lda apart; not changed
/// @param[in] lda step from column to column of A, at least the order of Q and 1
/// @param[in] tau k factors
/// @param[in,out] c C, n columns of m elements, ldc apart
/// @param[in] ldc step from column to column of C, >= max(1, m)
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, at least 1 and n (side L) or m (side R); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: side (-1), trans (-2), m < 0 (-3), n < 0 (-4), k (-5), lda (-7), ldc (-10), lwork (-12). Storage is taken
/// for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORMQR and ZUNMQR.
///
/// @par Cost
/// About 2 m n k multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dormqr_(const char* side, const char* trans, Integer m, Integer n, Integer k, QuarnFloat* a,
                                  Integer lda, QuarnFloat* tau, QuarnFloat* c, Integer ldc, QuarnFloat* work,
                                  Integer lwork, Integer* info, int side_length, int trans_length);
TESK2MP_API void QuarnMPX_zunmqr_(const char* side, const char* trans, Integer m, Integer n, Integer k, Complex* a,
                                  Integer lda, Complex* tau, Complex* c, Integer ldc, Complex* work, Integer lwork,
                                  Integer* info, int side_length, int trans_length);
/// @}

/// @defgroup dgelqf LQ factorisation
///
/// DGELQF: A = L Q, A m by n, L lower triangular, Q the product of min(m, n) Householder reflectors I - tau v v^T;
/// ZGELQF the same over Complex with v^H, Q = H(k)^H ... H(1)^H and a real diagonal of L.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out L, and to the right of the diagonal the conjugates of
/// the
///     vectors v without their leading ones
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] tau min(m, n) factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, m), the others are not touched
/// @param[in] lwork elements of work, >= max(1, m); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda < max(1, m) (-4), lwork (-7). Storage for m n elements is taken for the time of
/// the call.
///
/// @par Method
/// QR factorisation of the adjoint.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGELQF and ZGELQF.
///
/// @par Cost
/// About m^2 n - m^3/3 multiply-adds for m <= n.
/// @{
TESK2MP_API void QuarnMPX_dgelqf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                                  Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zgelqf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work,
                                  Integer lwork, Integer* info);
/// @}

/// @defgroup dorglq rows of Q
///
/// DORGLQ: the first m rows of the Q of which DGELQF has left k reflectors, in their place; ZUNGLQ over Complex.
///
/// @param[in] m rows of Q, 0 ... n
/// @param[in] n columns of Q, >= 0
/// @param[in] k reflectors, 0 ... m
/// @param[in,out] a the reflectors, to the right of the diagonals of k rows; out Q, n columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] tau k factors
/// @param[out] work lwork elements; work(1) is the length that is asked for, max(1, m), the others are not touched
/// @param[in] lwork elements of work, >= max(1, m); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < m (-2), k (-3), lda < max(1, m) (-5), lwork (-8). Storage is taken for the time of the
/// call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORGLQ and ZUNGLQ.
///
/// @par Cost
/// About 2 m n k multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dorglq_(Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                                  QuarnFloat* work, Integer lwork, Integer* info);
TESK2MP_API void QuarnMPX_zunglq_(Integer m, Integer n, Integer k, Complex* a, Integer lda, Complex* tau, Complex* work,
                                  Integer lwork, Integer* info);
/// @}

/// @defgroup dormlq Q of an LQ factorisation times a matrix
///
/// DORMLQ: C := op(Q) C (side L) or C := C op(Q) (side R) with the Q of which DGELQF has left k reflectors; ZUNMLQ over
/// Complex.
///
/// @param[in] side L: Q stands on the left, of order m; R: on the right, of order n
/// @param[in] trans N: Q; T, for ZUNMLQ C: its adjoint
/// @param[in] m rows of C, >= 0
/// @param[in] n columns of C, >= 0
/// @param[in] k reflectors, 0 ... order of Q
/// @param[in] a the reflectors, to the right of the diagonals of k rows; not changed
/// @param[in] lda step from column to column of A, >= max(1, k)
/// @param[in] tau k factors
/// @param[in,out] c C, n columns of m elements, ldc apart
/// @param[in] ldc step from column to column of C, >= max(1, m)
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, at least 1 and n (side L) or m (side R); -1 asks for the length alone
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: side (-1), trans (-2), m < 0 (-3), n < 0 (-4), k (-5), lda (-7), ldc (-10), lwork (-12). Storage is taken
/// for the time of the call.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DORMLQ and ZUNMLQ.
///
/// @par Cost
/// About 2 m n k multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dormlq_(const char* side, const char* trans, Integer m, Integer n, Integer k, QuarnFloat* a,
                                  Integer lda, QuarnFloat* tau, QuarnFloat* c, Integer ldc, QuarnFloat* work,
                                  Integer lwork, Integer* info, int side_length, int trans_length);
TESK2MP_API void QuarnMPX_zunmlq_(const char* side, const char* trans, Integer m, Integer n, Integer k, Complex* a,
                                  Integer lda, Complex* tau, Complex* c, Integer ldc, Complex* work, Integer lwork,
                                  Integer* info, int side_length, int trans_length);
/// @}

/// @defgroup dgels least squares and minimum-norm solutions
///
/// DGELS: for each column b of B the x of least norm(b - op(A) x), and if there are several the one of least norm(x); A
/// is m by n of full rank. ZGELS over Complex. Rows of B behind the solution's hold what the residual becomes by an
/// orthogonal transformation: its norm is that of these elements.
///
/// @param[in] trans N: op(A) = A; T, for ZGELS C: its adjoint
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] a A, n columns of m elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in,out] b B, nrhs columns of max(m, n) elements, ldb apart: as many right-hand sides as op(A) has rows; out
///     solutions of as many elements as it has columns
/// @param[in] ldb step from column to column of B, >= max(1, m, n)
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, k + max(k, nrhs)) with k = min(m, n); -1 asks for the length alone
/// @param[out] info 0, -k when argument k is illegal, or j when R(j, j) is exactly zero; B is then as it was
///
/// @par Failures
/// Illegal: trans (-1), m < 0 (-2), n < 0 (-3), nrhs < 0 (-4), lda (-6), ldb (-8), lwork (-10). Storage for m n
/// elements is taken for the time of the call.
///
/// @par Method
/// QR factorisation of A or its adjoint, whichever is tall.
///
/// @par Source
/// G. H. Golub, Numerical methods for solving linear least squares problems, Numer. Math. 7 (1965); E. Anderson et
/// al., LAPACK Users' Guide, SIAM 1999: DGELS and ZGELS.
///
/// @par Cost
/// About m n^2 - n^3/3 multiply-adds for m >= n, and 2 m n for each column of B.
/// @{
TESK2MP_API void QuarnMPX_dgels_(const char* trans, Integer m, Integer n, Integer nrhs, QuarnFloat* a, Integer lda,
                                 QuarnFloat* b, Integer ldb, QuarnFloat* work, Integer lwork, Integer* info,
                                 int trans_length);
TESK2MP_API void QuarnMPX_zgels_(const char* trans, Integer m, Integer n, Integer nrhs, Complex* a, Integer lda,
                                 Complex* b, Integer ldb, Complex* work, Integer lwork, Integer* info,
                                 int trans_length);
/// @}
}
TESK2MP_NAMES_END

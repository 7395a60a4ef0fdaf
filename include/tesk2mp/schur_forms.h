// Schur forms: the order of their eigenvalues, invariant subspaces, Sylvester equations.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used. A real Schur form is in standard form, as DHSEQR leaves it: blocks of two rows have equal
// diagonal elements and others of opposite signs.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dtrsyl Sylvester equations of Schur forms
///
/// DTRSYL: op(A) X + isgn X op(B) = C with A and B real in Schur form; ZTRSYL with upper triangular complex ones, where
/// op is the adjoint with C.
///
/// @param[in] trana N: op(A) = A; T or C (ZTRSYL: C): its transpose or adjoint
/// @param[in] tranb the same of B
/// @param[in] isgn 1 or -1
/// @param[in] m order of A, >= 0
/// @param[in] n order of B, >= 0
/// @param[in] a A, m columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] b B, n columns of n elements, ldb apart
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[in,out] c C, n columns of m elements, ldc apart; out X
/// @param[in] ldc step from column to column of C, >= max(1, m)
/// @param[out] scale 1: solutions of any size are numbers
/// @param[out] info 0, -k when argument k is illegal, 1 when A and -isgn B have a common eigenvalue, or nearly:
/// divisors
///     as small as roundings of A and B have been replaced
///
/// @par Failures
/// Illegal: trana (-1), tranb (-2), isgn (-3), m < 0 (-4), n < 0 (-5), lda (-7), ldb (-9), ldc (-11). Storage for m^2 +
/// n^2 elements is taken for the time of the call by transposes.
///
/// @par Method
/// By halves, with products that round each entry once; blocks of one or two rows by elimination.
///
/// @par Accuracy
/// The residual is some units of the last place of (norm(A) + norm(B)) norm(X).
///
/// @par Source
/// R. H. Bartels, G. W. Stewart, Solution of the matrix equation AX + XB = C, Comm. ACM 15 (1972); I. Jonsson, B.
/// Kagstrom, Recursive blocked algorithms for solving triangular systems, part I, ACM Trans. Math. Softw. 28 (2002).
///
/// @par Cost
/// m n (m + n) / 2 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dtrsyl_(const char* trana, const char* tranb, Integer isgn, Integer m, Integer n,
                                  const QuarnFloat* a, Integer lda, const QuarnFloat* b, Integer ldb, QuarnFloat* c,
                                  Integer ldc, QuarnFloat* scale, Integer* info, int trana_length, int tranb_length);
TESK2MP_API void QuarnMPX_ztrsyl_(const char* trana, const char* tranb, Integer isgn, Integer m, Integer n,
                                  const Complex* a, Integer lda, const Complex* b, Integer ldb, Complex* c, Integer ldc,
                                  QuarnFloat* scale, Integer* info, int trana_length, int tranb_length);
/// @}

/// @defgroup dtrexc the place of an eigenvalue in a real Schur form
///
/// DTREXC: moves the block of T that has row ifst to the place of the one that has row ilst, by orthogonal
/// transformations Z^T T Z.
///
/// @param[in] compq V: Q becomes Q Z; N: there is no Q
/// @param[in] n order of T, >= 0
/// @param[in,out] t T in Schur form, n columns of n elements, ldt apart
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[in,out] q n columns of n elements, ldq apart; not used with N
/// @param[in] ldq step from column to column of Q, >= 1, and >= n when it is used
/// @param[in,out] ifst a row of the block; out its first one
/// @param[in,out] ilst where to; out the row in which the block begins
/// @param[out] work not used
/// @param[out] info 0, -k when argument k is illegal, 1 when two blocks were too close for an exchange: T is a Schur
///     form of the same matrix, and the block has come as far as ilst says
///
/// @par Failures
/// Illegal: compq (-1), n < 0 (-2), ldt (-4), ldq (-6), ifst (-7), ilst (-8).
///
/// @par Method
/// Blocks are exchanged by the reflectors of a basis that a small Sylvester equation gives; an exchange after which the
/// elements below the diagonal are larger than roundings is not done. A few digits more than the working ones.
///
/// @par Accuracy
/// T and Q are those of a matrix that differs by some units of the last place of norm(T).
///
/// @par Source
/// Z. Bai, J. W. Demmel, On swapping diagonal blocks in real Schur form, Linear Algebra Appl. 186 (1993).
///
/// @par Cost
/// Some 12 n multiply-adds for each row that is passed, 20 n with Q.
/// @{
TESK2MP_API void QuarnMPX_dtrexc_(const char* compq, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* q, Integer ldq,
                                  Integer* ifst, Integer* ilst, QuarnFloat* work, Integer* info, int compq_length);
/// @}

/// @defgroup ztrexc the place of an eigenvalue in a complex Schur form
///
/// ZTREXC: the same of an upper triangular complex matrix, where ifst and ilst are not changed.
///
/// @like dtrexc
/// @{
TESK2MP_API void QuarnMPX_ztrexc_(const char* compq, Integer n, Complex* t, Integer ldt, Complex* q, Integer ldq,
                                  Integer ifst, Integer ilst, Integer* info, int compq_length);
/// @}

/// @defgroup dtrsen an invariant subspace of a real Schur form
///
/// DTRSEN: brings the selected eigenvalues of T to its top, so that the first m columns of Q span their invariant
/// subspace, with condition numbers of their mean and of the subspace.
///
/// @param[in] job N: no condition numbers; E: s; V: sep; B: both
/// @param[in] compq V: Q is updated; N: there is no Q
/// @param[in] select n flags; one of the two is enough for a pair
/// @param[in] n order of T, >= 0
/// @param[in,out] t T in Schur form, n columns of n elements, ldt apart
/// @param[in] ldt step from column to column of T, >= max(1, n)
/// @param[in,out] q n columns of n elements, ldq apart; not used with N
/// @param[in] ldq step from column to column of Q, >= 1, and >= n when it is used
/// @param[out] wr n real parts of the eigenvalues in their new order
/// @param[out] wi n imaginary parts
/// @param[out] m how many were selected
/// @param[out] s a lower bound of the reciprocal condition number of their mean; 1 when none or all are selected
/// @param[out] sep an estimate of the reciprocal condition number of the subspace; the 1-norm of T when none or all are
///     selected
/// @param[out] work not used
/// @param[in] lwork not used
/// @param[out] iwork not used
/// @param[in] liwork not used
/// @param[out] info 0, -k when argument k is illegal, 1 when eigenvalues were too close for an exchange: T is a Schur
///     form of the same matrix, and s and sep are 0
///
/// @par Failures
/// Illegal: job (-1), compq (-2), n < 0 (-4), ldt (-6), ldq (-8). Storage for n^2 elements is taken for the time of the
/// call by condition numbers.
///
/// @par Accuracy
/// As of DTREXC; sep is hardly ever more than three times too large.
///
/// @par Source
/// Z. Bai, J. W. Demmel, A. McKenney, On computing condition numbers for the nonsymmetric eigenproblem, ACM Trans.
/// Math. Softw. 19 (1993).
///
/// @par Cost
/// Up to some 5 n^3 multiply-adds; condition numbers some n^3 more.
/// @{
TESK2MP_API void QuarnMPX_dtrsen_(const char* job, const char* compq, const Integer* select, Integer n, QuarnFloat* t,
                                  Integer ldt, QuarnFloat* q, Integer ldq, QuarnFloat* wr, QuarnFloat* wi, Integer* m,
                                  QuarnFloat* s, QuarnFloat* sep, QuarnFloat* work, Integer lwork, Integer* iwork,
                                  Integer liwork, Integer* info, int job_length, int compq_length);
/// @}

/// @defgroup ztrsen an invariant subspace of a complex Schur form
///
/// ZTRSEN: the same of an upper triangular complex matrix, with its eigenvalues in one array.
///
/// @like dtrsen
///
/// @param[out] w n eigenvalues in their new order
/// @{
TESK2MP_API void QuarnMPX_ztrsen_(const char* job, const char* compq, const Integer* select, Integer n, Complex* t,
                                  Integer ldt, Complex* q, Integer ldq, Complex* w, Integer* m, QuarnFloat* s,
                                  QuarnFloat* sep, Complex* work, Integer lwork, Integer* info, int job_length,
                                  int compq_length);
/// @}
}
TESK2MP_NAMES_END

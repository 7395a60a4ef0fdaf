// Refinement of solutions.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dgerfs refinement of solutions by LU factorisation
///
/// DGERFS: improves solutions X of op(A) X = B until their error is about a unit in the last place of the largest
/// element of each column, and bounds what is left; ZGERFS over Complex.
///
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B and X, >= 0
/// @param[in] a A itself, n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] af the factors of A that DGETRF made, ldaf apart; not changed
/// @param[in] ldaf step from column to column of AF, >= max(1, n)
/// @param[in] ipiv the n row numbers of the factorisation
/// @param[in] b B, nrhs columns of n elements, ldb apart; not changed
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[in,out] x solutions as DGETRS makes them, nrhs columns of n elements, ldx apart; out the refined ones
/// @param[in] ldx step from column to column of X, >= max(1, n)
/// @param[out] ferr nrhs estimates of the forward errors: of the largest error of an element beside the largest
/// element;
///     1 where the corrections have not become small. Of a complex number re + i im the magnitude is |re| + |im|.
/// @param[out] berr nrhs backward errors: the largest |b - op(A) x| / (|op(A)| |x| + |b|) of all elements
/// @param[out] work 1 element at least: the most corrections of a column before the last, small one
/// @param[out] iwork not used
/// @param[out] rwork not used
/// @param[out] info 0; -k when argument k is illegal; j when the corrections of column j, and perhaps of later ones, do
///     not halve each time: A is singular to the working precision
///
/// @par Failures
/// Illegal: trans (-1), n < 0 (-2), nrhs < 0 (-3), lda (-5), ldaf (-7), ldb (-10), ldx (-12) < max(1, n). Storage for n
/// elements is taken for the time of the call; when it runs out each column of X is as it was after its last
/// correction.
///
/// @par Method
/// Residuals are exact values rounded once, so that a system whose condition number is below some 10^(D-1) at D digits
/// is solved to the last digit. The corrections end with one that is not larger than a unit in the last place of the
/// largest element, at the latest after 20; the estimate adds the geometric series of those that would follow.
///
/// @par Source
/// C. B. Moler, Iterative refinement in floating point, J. ACM 14 (1967); J. Demmel and others, Error bounds from
/// extra-precise iterative refinement, ACM Trans. Math. Softw. 32 (2006); E. Anderson et al., LAPACK Users' Guide,
/// SIAM 1999: the arguments of DGERFS and ZGERFS.
///
/// @par Cost
/// 2 n^2 multiply-adds for each correction, and as many for the two errors of each column.
/// @{
TESK2MP_API void QuarnMPX_dgerfs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* a, Integer lda,
                                  QuarnFloat* af, Integer ldaf, Integer* ipiv, QuarnFloat* b, Integer ldb,
                                  QuarnFloat* x, Integer ldx, QuarnFloat* ferr, QuarnFloat* berr, QuarnFloat* work,
                                  Integer* iwork, Integer* info, int trans_length);
TESK2MP_API void QuarnMPX_zgerfs_(const char* trans, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* af,
                                  Integer ldaf, Integer* ipiv, Complex* b, Integer ldb, Complex* x, Integer ldx,
                                  QuarnFloat* ferr, QuarnFloat* berr, Complex* work, QuarnFloat* rwork, Integer* info,
                                  int trans_length);
/// @}
}
TESK2MP_NAMES_END

// Functions of square matrices: exponential, square root, logarithm, real powers.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order); 1 that there is no such matrix, or none of numbers; 2 that iterations or digits did not suffice. F is as it
// was when INFO is not 0, and may be A.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dexpm the exponential of a matrix
///
/// DEXPM: F = exp(A), the sum of A^k / k!; ZEXPM of a complex matrix.
///
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] f F, n columns of n elements, ldf apart
/// @param[in] ldf step from column to column of F, >= max(1, n)
/// @param[out] info 0, -k when argument k is illegal, 1 when an element of A or F is not finite, 2 when norm(A)
///     is beyond 10^300, or 100000 digits would be lost on the way
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldf (-5). Storage for some 2 sqrt(D) n^2 elements is taken for the time of the call.
///
/// @par Method
/// Scaling and squaring; Taylor's polynomial by few products, its degree and the number of squarings chosen for the
/// digits. What the squarings may have lost, measured in norms, is added to the digits.
///
/// @par Accuracy
/// Some units of the last place of norm(F) for the matrix as it is, as far as the norms of the squares show errors; an
/// element much smaller than norm(F) has as many digits less.
///
/// @par Source
/// N. J. Higham, Functions of Matrices, SIAM 2008, chapter 10; M. S. Paterson, L. J. Stockmeyer, SIAM J. Comput. 2
/// (1973).
///
/// @par Cost
/// Some 2 sqrt(D) products of matrices and one more each time that norm(A) doubles.
/// @{
TESK2MP_API void QuarnMPX_dexpm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf,
                                 Integer* info);
TESK2MP_API void QuarnMPX_zexpm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info);
/// @}

/// @defgroup dsqrtm the square root of a matrix
///
/// DSQRTM: the principal root F, F F = A, whose eigenvalues have positive real parts; real for a real matrix. ZSQRTM of
/// a complex matrix, where negative eigenvalues have roots on the imaginary axis.
///
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] f F, n columns of n elements, ldf apart
/// @param[in] ldf step from column to column of F, >= max(1, n)
/// @param[out] info 0, -k when argument k is illegal, 1 when a real matrix has a negative eigenvalue, zero is an
///     eigenvalue of a chain, or an element is not finite; 2 when eigenvalues were not found
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldf (-5). Storage for some 6 n^2 elements is taken for the time of the call.
///
/// @par Method
/// Schur form, and the root of that by halves.
///
/// @par Accuracy
/// F F differs from A by some units of the last place of norm(F)^2.
///
/// @par Source
/// N. J. Higham, Computing real square roots of a real matrix, Linear Algebra Appl. 88/89 (1987); E. Deadman, N. J.
/// Higham, R. Ralha, Blocked Schur algorithms for computing the matrix square root, PARA 2012.
///
/// @par Cost
/// That of the Schur form with vectors, and some 3 n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dsqrtm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf,
                                  Integer* info);
TESK2MP_API void QuarnMPX_zsqrtm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info);
/// @}

/// @defgroup dlogm the logarithm of a matrix
///
/// DLOGM: the principal logarithm F, exp(F) = A, whose eigenvalues have imaginary parts of at most pi; real for a real
/// matrix. ZLOGM of a complex one.
///
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] f F, n columns of n elements, ldf apart
/// @param[in] ldf step from column to column of F, >= max(1, n)
/// @param[out] info 0, -k when argument k is illegal, 1 when A is singular, a real matrix has a negative eigenvalue, or
///     an element is not finite; 2 when eigenvalues were not found
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldf (-5). Storage for some 2 sqrt(D) n^2 elements is taken for the time of the call.
///
/// @par Method
/// Schur form; square roots of it until it is near the unit matrix; the series of the inverse hyperbolic tangent of (T
/// + I)^-1 (T - I). A third of a digit more is carried for each root.
///
/// @par Accuracy
/// Some units of the last place of norm(F) for a matrix that differs from A by some of norm(A).
///
/// @par Source
/// N. J. Higham, Functions of Matrices, SIAM 2008, chapter 11.
///
/// @par Cost
/// That of the Schur form with vectors, n^3/3 multiply-adds for a root, and some sqrt(D) products.
/// @{
TESK2MP_API void QuarnMPX_dlogm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf,
                                 Integer* info);
TESK2MP_API void QuarnMPX_zlogm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info);
/// @}

/// @defgroup dpowm a real power of a matrix
///
/// DPOWM: F = A^p, for a whole p by products, otherwise exp(p log(A)) with the principal logarithm; ZPOWM of a complex
/// matrix.
///
/// @param[in] n order, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] p the exponent
/// @param[out] f F, n columns of n elements, ldf apart
/// @param[in] ldf step from column to column of F, >= max(1, n)
/// @param[out] info 0, -k when argument k is illegal, 1 when there is no such power (of a singular matrix a negative or
///     broken one, of a real one with negative eigenvalues a broken one), p is beyond 10^18 or an element is not
///     finite; 2 as of DEXPM and DLOGM
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldf (-6). Storage as of DEXPM.
///
/// @par Method
/// The whole number next to p by repeated squaring, of the inverse if it is negative; the rest, at most 1/2, by
/// logarithm and exponential.
///
/// @par Accuracy
/// As of DLOGM; with a whole p some p units of the last place of norm(A)^p, whose digits are carried beyond the working
/// ones.
///
/// @par Source
/// N. J. Higham, Functions of Matrices, SIAM 2008, chapters 4 and 7.
///
/// @par Cost
/// Some 2 log2(p) products, and a logarithm and an exponential for a broken p.
/// @{
TESK2MP_API void QuarnMPX_dpowm_(Integer n, const QuarnFloat* a, Integer lda, const QuarnFloat* p, QuarnFloat* f,
                                 Integer ldf, Integer* info);
TESK2MP_API void QuarnMPX_zpowm_(Integer n, const Complex* a, Integer lda, const QuarnFloat* p, Complex* f, Integer ldf,
                                 Integer* info);
/// @}
}
TESK2MP_NAMES_END

// Zeros, values and division of polynomials, real and complex.
//
// Coefficients run from the highest power down: a(1) z^n + a(2) z^(n-1) + ... + a(n + 1).
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dpzeros zeros of a polynomial
///
/// DPZEROS: the n zeros of a real polynomial, each with a bound of its error; ZPZEROS those of a complex one. The
/// coefficients are taken as exact. Largest moduli come first; of a real polynomial real zeros are exactly real, and
/// the others stand in pairs of exact conjugates, positive imaginary part first.
///
/// @param[in] n degree, >= 0
/// @param[in] a n + 1 coefficients, a(1) that of z^n; not 0 and finite
/// @param[out] zeros n zeros
/// @param[out] errors n bounds: so far away is the exact zero at most
/// @param[out] info 0, -k when argument k is illegal, or 1 when numbers leave the range of exponents
///
/// @par Failures
/// Illegal: n < 0 (-1), a(1) = 0 or a coefficient that is not finite (-2).
///
/// @par Method
/// Aberth's simultaneous iteration from starts on the circles that Newton's polygon gives; discs around the results
/// that hold the zeros, by Gerschgorin's theorem, with all roundings. As long as a disc is larger than a unit in the
/// last place of its zero the work is done again with more digits, up to (n + 2) (D + 15) + 60 for D working ones,
/// which is enough for n-fold zeros; multiple and close zeros go on from the zero of a derivative in their midst.
///
/// @par Accuracy
/// Zeros are rounded to the working digits when they are known to them: errors are then below a unit in the last place
/// of the larger part. A part that is smaller than the bound is 0.
///
/// @par Source
/// O. Aberth, Iteration methods for finding all zeros of a polynomial simultaneously, Math. Comp. 27 (1973); B. T.
/// Smith, Error bounds for zeros of a polynomial based upon Gerschgorin's theorem, J. ACM 17 (1970); D. A. Bini,
/// Numerical computation of polynomial zeros by means of Aberth's method, Numer. Algorithms 13 (1996).
///
/// @par Cost
/// Some 10 to 20 sweeps of n^2 complex quotients and 2 n^2 complex multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpzeros_(Integer n, const QuarnFloat* a, Complex* zeros, QuarnFloat* errors, Integer* info);
TESK2MP_API void QuarnMPX_zpzeros_(Integer n, const Complex* a, Complex* zeros, QuarnFloat* errors, Integer* info);
/// @}

/// @defgroup dpeval value of a polynomial
///
/// DPEVAL: the value of a real polynomial at a real point, ZPEVAL that of a complex one at a complex point, good to the
/// last digit of its larger part whatever cancels.
///
/// @param[in] n degree, >= 0
/// @param[in] a n + 1 coefficients, a(1) that of z^n
/// @param[in] z the point
/// @param[out] value the value there
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1).
///
/// @par Method
/// Horner's scheme with a running bound of its roundings, at more digits until the bound is small enough.
///
/// @par Source
/// J. H. Wilkinson, Rounding Errors in Algebraic Processes, HMSO 1963.
///
/// @par Cost
/// n multiply-adds, more often where much cancels.
/// @{
TESK2MP_API void QuarnMPX_dpeval_(Integer n, const QuarnFloat* a, const QuarnFloat* z, QuarnFloat* value,
                                  Integer* info);
TESK2MP_API void QuarnMPX_zpeval_(Integer n, const Complex* a, const Complex* z, Complex* value, Integer* info);
/// @}

/// @defgroup dpdiv division of polynomials
///
/// DPDIV: quotient and remainder of real polynomials, a = q b + r with the degree of r below that of b; ZPDIV of
/// complex ones.
///
/// @param[in] m degree of a, >= 0
/// @param[in] a m + 1 coefficients
/// @param[in] n degree of b, >= 0
/// @param[in] b n + 1 coefficients, b(1) not 0
/// @param[out] q m - n + 1 coefficients, none for m < n
/// @param[out] r n coefficients, the first ones 0 where the remainder is of lower degree
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-3), b(1) = 0 (-4).
///
/// @par Accuracy
/// The work is done with twice the digits and 20 more.
///
/// @par Source
/// D. E. Knuth, The Art of Computer Programming, vol. 2, 4.6.1, Algorithm D.
///
/// @par Cost
/// n (m - n + 1) multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpdiv_(Integer m, const QuarnFloat* a, Integer n, const QuarnFloat* b, QuarnFloat* q,
                                 QuarnFloat* r, Integer* info);
TESK2MP_API void QuarnMPX_zpdiv_(Integer m, const Complex* a, Integer n, const Complex* b, Complex* q, Complex* r,
                                 Integer* info);
/// @}

/// @defgroup dpfrom polynomial of given zeros
///
/// DPFROM: the coefficients of (z - x(1)) ... (z - x(n)) for real x; ZPFROM for complex ones.
///
/// @param[in] n degree, >= 0
/// @param[in] x n zeros
/// @param[out] a n + 1 coefficients, a(1) = 1
/// @param[out] info 0, or -1 when n < 0
///
/// @par Failures
/// Illegal: n < 0 (-1).
///
/// @par Accuracy
/// The work is done with twice the digits and 20 more.
///
/// @par Source
/// N. J. Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., SIAM 2002, chapter 5.
///
/// @par Cost
/// n^2/2 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dpfrom_(Integer n, const QuarnFloat* x, QuarnFloat* a, Integer* info);
TESK2MP_API void QuarnMPX_zpfrom_(Integer n, const Complex* x, Complex* a, Integer* info);
/// @}
}
TESK2MP_NAMES_END

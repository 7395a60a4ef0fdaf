// Gamma and error functions with the failure protocol.
//
// The functions of quarn/functions.h report what has no value by NaN, infinity and zero; these report it by IFAIL as
// well, and return the same. Failures, the same numbers in all of them:
//
//   1   the argument is a pole of the function
//   2   the result overflows; it is infinity with its sign
//   3   the result underflows; it is a zero with its sign
//
// Arguments that are NaN give NaN, infinite ones the limit where there is one, and IFAIL is 0. Results are rounded
// once, half to even, to the working digits. The core forms have the message buffer.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

// Numbers are returned by value: both sides are C++, which C linkage alone does not tell clang.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup gamma the gamma function
///
/// Gamma(x), the integral of t^(x-1) e^(-t) over t > 0 for x > 0; elsewhere by Gamma(x) = Gamma(x+1) / x.
///
/// @param[in] x the argument, of any number of digits
///
/// @par Failures
/// 1, label 99999: X is zero, a negative whole number or -infinity; the result is +-infinity for +-0 and NaN otherwise.
/// 2, label 99998, for X above some 1.44e8, or within 10^-999999999 of zero. 3, label 99997, for large negative X.
///
/// @par Method
/// Stirling's series after steps to the right, reflection for X < 0; products for whole X.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 5.5, 5.11.
///
/// @par Cost
/// Some 0.5 D products of D digits. The first call at so many digits computes coefficients in time that grows with
/// D^3.
///
/// @par Accuracy
/// Correctly rounded.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_gamma_(const QuarnFloat* x, Integer* ifail);
TESK2MP_API QuarnFloat QuarnMPX_gamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup lgamma the logarithm of the gamma function
///
/// log |Gamma(x)|.
///
/// @param[in] x the argument, of any number of digits
///
/// @par Failures
/// 1, label 99999: X is zero or a negative whole number; the result is infinity. 2, label 99998, for X above some
/// 4.8e999999990.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 5.5, 5.11.
///
/// @par Cost
/// As the gamma function; some more digits near the zeros of the result.
///
/// @par Accuracy
/// Correctly rounded, next to its zeros too.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_lgamma_(const QuarnFloat* x, Integer* ifail);
TESK2MP_API QuarnFloat QuarnMPX_lgamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup digamma the logarithmic derivative of the gamma function
///
/// psi(x) = Gamma'(x) / Gamma(x).
///
/// @param[in] x the argument, of any number of digits
///
/// @par Failures
/// 1, label 99999: X is zero, a negative whole number or -infinity; the result is NaN.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 5.5, 5.11.
///
/// @par Cost
/// As the gamma function, with quotients where that has products.
///
/// @par Accuracy
/// Correctly rounded, next to its zeros too.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_digamma_(const QuarnFloat* x, Integer* ifail);
TESK2MP_API QuarnFloat QuarnMPX_digamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup beta the beta function
///
/// B(x, y) = Gamma(x) Gamma(y) / Gamma(x + y), by its limit where that is finite.
///
/// @param[in] x the first argument, of any number of digits
/// @param[in] y the second one
///
/// @par Failures
/// 1, label 99999: X or Y is a pole, without a finite limit; the result is NaN or infinite. 2, label 99998. 3, label
/// 99997; where X + Y is a pole of the gamma function and X and Y are not, the result is an exact zero without failure.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 5.12.
///
/// @par Cost
/// Three logarithms of the gamma function; less for small whole arguments.
///
/// @par Accuracy
/// Correctly rounded.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_beta_(const QuarnFloat* x, const QuarnFloat* y, Integer* ifail);
TESK2MP_API QuarnFloat QuarnMPX_betan_(QuarnFloat x, QuarnFloat y, char* message_buffer, Integer* ifail,
                                       int buffer_length);
/// @}

/// @defgroup erfc the complement of the error function
///
/// 1 - erf(x) = 2 / sqrt(pi) times the integral of exp(-t^2) from x to infinity, with all digits for large x.
///
/// @param[in] x the argument, of any number of digits
///
/// @par Failures
/// 3, label 99999, for X above some 47985.2.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 7.6, 7.12.
///
/// @par Cost
/// Some D terms of a series, fewer for X^2 above 2.3 D.
///
/// @par Accuracy
/// Correctly rounded.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_erfc_(const QuarnFloat* x, Integer* ifail);
TESK2MP_API QuarnFloat QuarnMPX_erfcn_(QuarnFloat x, char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup erf the error function
///
/// 2 / sqrt(pi) times the integral of exp(-t^2) from 0 to x.
///
/// @param[in] x the argument, of any number of digits
///
/// @par Failures
/// None.
///
/// @par Source
/// NIST Digital Library of Mathematical Functions, 7.6, 7.12.
///
/// @par Cost
/// Some D terms of a series, fewer for X^2 above 2.3 D.
///
/// @par Accuracy
/// Correctly rounded.
/// @{
TESK2MP_API QuarnFloat QuarnMPX_erf_(const QuarnFloat* x);
/// @}
}
TESK2MP_NAMES_END

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

// Zeros of a function of one variable by reverse communication.
//
// The routines say at which x the value is needed, and are called again with it: they do not see the function.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dbrack an interval in which a function changes its sign
///
/// Looks for an interval around X at whose ends F has different signs. Call it first with IREVCM 0; as long as it
/// returns IREVCM 1, set FX to F(X) and call it again, other arguments unchanged. IREVCM 2 is the end: X and Y are the
/// ends, FX and FY the values there; X = Y where F is zero.
///
/// @param[in,out] irevcm 0 to begin, 1 when FX holds F(X); out 1: F(X) is wanted; 2: the end
/// @param[in,out] x in: where to begin; then as above
/// @param[in,out] fx F(X)
/// @param[out] y the other end of the interval
/// @param[out] fy F(Y)
/// @param[in] h the first step, not zero; a negative one tries smaller numbers first
/// @param[in] boundl no x below this one is asked for; may be -infinity
/// @param[in] boundu and none above this one
/// @param[in,out] work 16 elements, the state
///
/// @par Failures
/// On every failure IREVCM is 2.
///
///   IFAIL 1   99999 a wrong argument, by its number: IREVCM 1, X 2 (not finite, or out of bounds), H 6, BOUNDL 7 (not
///             below BOUNDU), WORK 9 (no search has begun in it)
///   IFAIL 2   99998 F(X) is not a number
///   IFAIL 3   99997 no change of sign between the bounds, or after 200 doublings of the step
///
/// @par Method
/// Steps to both sides in turn, each twice as long as the one before.
///
/// @par Accuracy
/// The interval is right wherever the signs of the values are.
///
/// @par Source
/// No published one: steps that double find a zero at distance d after some log2(d/H) of them on each side.
///
/// @par Cost
/// A few comparisons a call.
/// @{
TESK2MP_API void QuarnMPX_dbrack_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                                  const QuarnFloat* h, const QuarnFloat* boundl, const QuarnFloat* boundu,
                                  QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_dbrackn_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                                   QuarnFloat h, QuarnFloat boundl, QuarnFloat boundu, QuarnFloat* work,
                                   char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup dzeroin a zero of a function in an interval
///
/// Finds a zero of F between X and Y, where F has different signs. Call it first with IREVCM 0, or with -1 when FX and
/// FY hold the values; as long as it returns IREVCM 1, set FX to F(X) and call it again, other arguments unchanged.
/// IREVCM 2 is the end: F changes its sign between X and Y, |F(X)| <= |F(Y)|, and both are within TOL of each other or
/// neighbours at the working precision; X = Y where F is zero.
///
/// @param[in,out] irevcm 0 or -1 to begin, 1 when FX holds F(X); out 1: F(X) is wanted; 2: the end
/// @param[in,out] x in: one end of the interval; then as above; at the end the zero
/// @param[in,out] fx F(X)
/// @param[in,out] y in: the other end
/// @param[in,out] fy F(Y)
/// @param[in] tol the largest length of the last interval, >= 0; 0: as short as the working precision lets it be
/// @param[in,out] work 16 elements, the state
///
/// @par Failures
/// On every failure IREVCM is 2; with 4 the interval is there as without a failure.
///
///   IFAIL 1   99999 a wrong argument, by its number: IREVCM 1, X 2, Y 4 (not finite, or equal), TOL 6, WORK 7 (nothing
///             has begun in it)
///   IFAIL 2   99998 F has the same sign at both ends
///   IFAIL 3   99997 F(X) is not a number
///   IFAIL 4   99996 F changes its sign at a pole rather than at a zero: its values have grown
///
/// @par Method
/// Inverse cubic interpolation with quadratic steps where it fails, a secant step of double length, and bisection when
/// all of them have not halved the interval; after eight of these by exponents, so that zeros of any size are found.
///
/// @par Accuracy
/// The interval is right wherever the signs of the values are.
///
/// @par Source
/// G. E. Alefeld, F. A. Potra, Y. Shi, Algorithm 748: Enclosing zeros of continuous functions, ACM Trans. Math. Softw.
/// 21 (1995).
///
/// @par Cost
/// Asymptotically a value multiplies the number of good digits by 1.66; never more than some four times as many values
/// as bisection takes. Some 60 multiplications a step.
/// @{
TESK2MP_API void QuarnMPX_dzeroin_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                                   const QuarnFloat* tol, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_dzeroinn_(Integer* irevcm, QuarnFloat* x, QuarnFloat* fx, QuarnFloat* y, QuarnFloat* fy,
                                    QuarnFloat tol, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                    int buffer_length);
/// @}
}
TESK2MP_NAMES_END

// Uniform random numbers on (0, 1).
//
// IGEN says which generator:
//
//   0         the basic generator: X := 13^13 X mod 2^60, u = X / 2^60. ISEED holds the 15-bit digits of X, the least
//             significant first. Period 2^58 for odd X. The low-order bits of X have short periods (bit k, from 0, has
//             2^(k-1)), and tests of birthday spacings at a resolution of 2^-30 reject it.
//   1 - 273   the multiple-set generators: s_i := a_i s_i mod m_i, u = s_1/m_1 + s_2/m_2 + s_3/m_3 + s_4/m_4 mod 1,
//             with the multipliers and prime moduli of one row of a table (B. A. Wichmann and I. D. Hill, Applied
//             Statistics 31, 1982, with four terms). Period above 2^92. ISEED holds the s_i: each 1 ... m_i - 1, and
//             m_i > 16760000.
//
// The whole state is the caller's ISEED: save and restore it to go on with a stream; use another ISEED for another
// stream. Neither argument is checked. A zero state stays zero. For an IGEN outside 0 ... 273 the result is NaN and
// ISEED stays as it is; any ISEED is taken without harm, but only those above give random numbers.
//
// `QuarnMP_` variates are the classic ones. With IGEN 0 they carry 53 bits, some 16 digits, at any working precision,
// and are the exact value of these bits, up to 60 digits even where fewer are worked with: the sequence is the same at
// every precision D, but for what exceeds 1 - 10^-D and becomes that number. With IGEN >= 1 u is a fraction with a
// denominator of 96 bits, divided to the working precision: some 28 digits are random, the rest follows from them.
//
// `QuarnMPX_` variates are random to their last digit: ceil(D / 9) + 1 draws of the same stream give nine decimal
// digits each, rounded once to the D working digits. How many draws that takes depends on D alone. They are slower in
// proportion.
//
// No variate is ever 1. Classic variates of IGEN 0 are 0 only from a zero state.
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

/// @defgroup g05kaf the next random number
///
/// The next variate of generator *igen; iseed[0 ... 3] moves on.
///
/// @param[in] igen the generator, 0 ... 273
/// @param[in,out] iseed 4 integers, the state: IGEN 0 each 0 ... 32767, the first odd; IGEN >= 1 each 1 ... m_i - 1
///
/// @par Failures
/// Neither argument is checked. A zero state stays zero. For an IGEN outside 0 ... 273 the result is NaN and ISEED
/// stays as it is; any ISEED is taken without harm, but only those above give random numbers.
///
/// @par Source
/// The basic generator: D. H. Lehmer's congruences, as in D. E. Knuth, The Art of Computer Programming 2, section
/// 3.2.1. The multiple-set generators: B. A. Wichmann, I. D. Hill, Algorithm AS 183, Applied Statistics 31 (1982),
/// with four terms.
///
/// @par Cost
/// One draw and one rounding; the companion ceil(D / 9) + 1 draws.
/// @{
TESK2MP_API QuarnFloat QuarnMP_g05kaf_(const Integer* igen, Integer* iseed);
TESK2MP_API QuarnFloat QuarnMPX_g05kaf_(const Integer* igen, Integer* iseed);
TESK2MP_API QuarnFloat QuarnMP_g05kafn_(Integer igen, Integer* iseed);
TESK2MP_API QuarnFloat QuarnMPX_g05kafn_(Integer igen, Integer* iseed);
/// @}

/// @defgroup g05kazn the next random number of a multiple-set generator
///
/// The same for the multiple-set generators alone: igen is 1 ... 273, any other gives NaN.
///
/// @like g05kaf
/// @{
TESK2MP_API QuarnFloat QuarnMP_g05kazn_(Integer igen, Integer* iseed);
TESK2MP_API QuarnFloat QuarnMPX_g05kazn_(Integer igen, Integer* iseed);
/// @}

/// @defgroup g05kbx the default stream of random numbers
///
/// The default stream: *igen := 0, iseed := 6698, 7535, 26792, 30140.
///
/// @param[out] igen 0
/// @param[out] iseed 4 integers
///
/// @par Source
/// No published one: the state that this library starts with.
///
/// @par Cost
/// Five integers are stored.
/// @{
TESK2MP_API void QuarnMP_g05kbx_(Integer* igen, Integer* iseed);
/// @}
}
TESK2MP_NAMES_END

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

// Fourier transforms.
//
// Half-complex storage. A Hermitian sequence z_0 ... z_(N-1), z_(N-k) = conj(z_k), takes N reals:
//
//   x[k] = Re z_k for 0 <= k <= N/2,    x[N-k] = Im z_k for 0 < k < N/2
//
// Accuracy. The classic entries take pi and the constants sqrt(1/2), sqrt(3)/2 and sqrt(5)/4 of the radices 4, 8, 3 and
// 5 as doubles: however many digits you work with, their relative error stays between 1e-17 and 3e-16 (lengths 2 and 4
// alone need none of these constants). The companions are good to a few units of 10^-QuarnDigits() times
// sqrt(log N), 7 units for N up to 1000. Beyond 16 digits, use the companions. docs/accuracy.md has the figures.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

extern "C" {

/// The discrete Fourier transform of a real sequence:
///
///   z_k = 1/sqrt(N) * sum over j = 0 .. N-1 of x_j exp(-2 pi i j k/N)
///
/// x: N reals, replaced by z in half-complex storage. n: N, at least 2, with at most 20 prime factors, none above 19.
/// work: N reals of scratch; contents mean nothing, before and after.
///
/// Failures; x is then left as it was:
///   3  " ** On entry, N .le. 1: N =%16ld."
///   1  " ** At least one prime factor of N is greater than 19.\n    N =%16ld."
///   2  " ** N has more than 20 prime factors.\n    N =%16ld."  (2^20 is accepted, 2^21 and 2^19 * 3^2 are not)
///   4  " ** Unexpected failure in an internal call."
///
/// Method: mixed radices in place (C. Temperton, J. Comput. Phys. 52, 1983) on half-complex data: digit reversal, then
/// one pass a radix, 2, 3, 4, 5 and 8 by short sequences of operations, 7 to 19 by sums over pairs of residues.
/// Cost for N = 1024: 5 multiplications and 12 additions an element, N divisions, and N/2 evaluations of a pair of
/// cosine and sine. The companion evaluates some sqrt(N/2) pairs a pass and multiplies them instead.
TESK2MP_API void QuarnMP_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMP_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                   int buffer_length);

/// The inverse of c06faf, from a Hermitian sequence in half-complex storage to a real one:
///
///   x_j = 1/sqrt(N) * sum over k = 0 .. N-1 of z_k exp(+2 pi i j k/N)
///
/// Arguments, lengths, accuracy, failures and cost as for c06faf, with the routine's own name in the messages.
TESK2MP_API void QuarnMP_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMP_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                   int buffer_length);

/// The passes of c06faf (c06eawn) and c06fbf (c06ebwn) alone: no check, no permutation, no scaling. radices: the
/// radices of the passes in order, ended by a 0: 2, 3, 4, 5, 8 or odd from 7 to 19; a 1 is skipped. Forward, x holds
/// the real sequence in the digit-reversed order of the prime factors (each 4 and 8 counting as factors 2) and is
/// replaced by its Hermitian sequence; backward the opposite, by the same list. Passes stop at a radix that is none
/// of these or does not divide what is left of N.
TESK2MP_API void QuarnMP_c06eawn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMPX_c06eawn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMP_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMPX_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices);
}

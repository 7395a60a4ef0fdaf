// Fourier transforms.
//
// Half-complex storage. A Hermitian sequence z_0 ... z_(N-1), z_(N-k) = conj(z_k), takes N reals:
//
//   x[k] = Re z_k for 0 <= k <= N/2,    x[N-k] = Im z_k for 0 < k < N/2
//
// Accuracy. The classic entries take pi and the constants sqrt(1/2), sqrt(3)/2 and sqrt(5)/4 of the radices 4, 8, 3 and
// 5 as doubles: however many digits you work with, their relative error stays between 1e-17 and 3e-16 (lengths 2 and 4
// alone need none of these constants). The companions are good to a few units of 10^-QuarnDigits() times
// sqrt(log N): 7 units for N up to 1000, 12 for large primes. Beyond 16 digits, use the companions. docs/accuracy.md
// has the figures.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup c06faf Fourier transform of a real sequence
///
/// The discrete Fourier transform of a real sequence:
///
///   z_k = 1/sqrt(N) * sum over j = 0 .. N-1 of x_j exp(-2 pi i j k/N)
///
/// @preset{work,n}
///
/// @param[in,out] x N reals, replaced by z in half-complex storage
/// @param[in] n N, at least 2, with at most 20 prime factors, none above 19
/// @param[out] work N reals of scratch; contents mean nothing, before and after
///
/// @par Failures
/// x is then left as it was:
///
///   3  " ** On entry, N .le. 1: N =%16ld."
///   1  " ** At least one prime factor of N is greater than 19.\n    N =%16ld."
///   2  " ** N has more than 20 prime factors.\n    N =%16ld."  (2^20 is accepted, 2^21 and 2^19 * 3^2 are not)
///   4  " ** Unexpected failure in an internal call."
///
/// @par Method
/// Mixed radices in place (C. Temperton, J. Comput. Phys. 52, 1983) on half-complex data: digit reversal, then
/// one pass a radix, 2, 3, 4, 5 and 8 by short sequences of operations, 7 to 19 by sums over pairs of residues.
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983).
///
/// @par Cost
/// For N = 1024: 5 multiplications and 12 additions an element, N divisions, and N/2 evaluations of a pair of
/// cosine and sine. The companion evaluates some sqrt(N/2) pairs a pass and multiplies them instead.
/// @{
TESK2MP_API void QuarnMP_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMP_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                   int buffer_length);
/// @}

/// @defgroup c06fbf inverse Fourier transform to a real sequence
///
/// The inverse of c06faf, from a Hermitian sequence in half-complex storage to a real one:
///
///   x_j = 1/sqrt(N) * sum over k = 0 .. N-1 of z_k exp(+2 pi i j k/N)
///
/// Arguments, lengths, accuracy, failures and cost as for c06faf, with the routine's own name in the messages.
///
/// @like c06faf
/// @{
TESK2MP_API void QuarnMP_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMPX_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
TESK2MP_API void QuarnMP_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                                   int buffer_length);
/// @}

/// @defgroup c06eawn the passes of the real transforms
///
/// The passes of c06faf (c06eawn) and c06fbf (c06ebwn) alone: no check, no permutation, no scaling. Forward, x holds
/// the real sequence in the digit-reversed order of the radices (each 4 and 8 counting as factors 2) and is replaced by
/// its Hermitian sequence; backward, with the list in reverse order, the opposite. Radices but 2, 3, 4, 5, 8 and odd
/// ones from 7 to 19, prime or not, take their passes by definition, r^2 multiplications a butterfly. Passes stop at a
/// radix that is negative, above 2^30, or does not divide what is left of N.
///
/// @like c06faf
///
/// @param[in] radices the radices of the passes in order, ended by a 0; a 1 is skipped
/// @{
TESK2MP_API void QuarnMP_c06eawn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMPX_c06eawn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMP_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices);
TESK2MP_API void QuarnMPX_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices);
/// @}

// Complex transforms. DIRECT is F or f for
//
//   z_k = 1/sqrt(N) * sum over j = 0 .. N-1 of x_j exp(-2 pi i j k/N)
//
// and B or b for the same with exp(+2 pi i j k/N), so that each undoes the other. Any length will do, primes too. The
// failure for 31 and more factors (of 5, 4, 2, 3 and primes from 7) cannot happen with 32-bit lengths, nor can the
// unexpected one. After a failure x is as it was. direct_length: the characters of DIRECT, of which the first counts.
//
// Method: self-sorting passes of radix 5, 4, 2 and 3, and one of sums over pairs of residues for any other prime (C.
// Temperton, J. Comput. Phys. 52, 1983), by one table of the rotations that they need.
//
// The companions use quarn/transform.h up to 1100 digits and lengths up to 2^24: data in block fixed point, each result
// rounded once and off by at most a quarter of 10^-D of the largest part of the data besides. Their plans are kept for
// later calls; they leave no table in work and take none from it. One NaN or infinity in the data of a sequence makes
// every result of it NaN. At more digits they make the passes above, most primes from 61 on as convolutions (C. M.
// Rader, Proc. IEEE 56, 1968), for which they take memory of their own, with a table as the classic entries have it.

/// @defgroup c06pcf Fourier transform of a complex sequence
///
/// The transform of one complex sequence.
///
/// Length 1 leaves x as it is and stores 1 as its table.
///
/// @param[in] direct the direction: F or f forward, B or b backward
/// @param[in,out] x N complex numbers, replaced by z
/// @param[in] n N >= 1
/// @param[out] work 2 N complex numbers; N of table, and N of scratch
///
/// @par Failures
///
///   1  " ** On entry, N .lt. 1: N = %16ld."
///   2  " ** %1s is an invalid value of DIRECT."
///   3  " ** N must have less than 31 prime factors: N = %16ld."
///   4  " ** Unexpected failure in an internal call."
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983); for long prime factors
/// C. M. Rader, Discrete Fourier transforms when the number of data samples is prime, Proc. IEEE 56 (1968).
///
/// @par Cost
/// The sums cost (r-1)^2 real multiplications for a prime r. For N = 1024 apart from the table: 15 multiplications and
/// 27 additions of reals an element; the table costs one pair of cosine and sine for each rotation, N/2 of them. The
/// companions take an eighth to a half of the time for N = 1024 at 20 to 500 digits, and a few times that for a prime:
/// docs/performance.md.
/// @{
TESK2MP_API void QuarnMP_c06pcf_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail,
                                 int direct_length);
TESK2MP_API void QuarnMPX_c06pcf_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMP_c06pcfn_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer,
                                  Integer* ifail, int direct_length, int buffer_length);
TESK2MP_API void QuarnMPX_c06pcfn_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer,
                                   Integer* ifail, int direct_length, int buffer_length);
/// @}

/// @defgroup c06pcqn the complex transform without checks
///
/// The same without checks and messages.
///
/// @like c06pcf
///
/// @par Failures
/// ifail: 0; 1 for too many factors; 2, and nothing done, for N < 1. Any DIRECT but B and b is forward.
/// @{
TESK2MP_API void QuarnMP_c06pcqn_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06pcqn_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06pczn_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06pczn_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
/// @}

/// @defgroup c06ncwn passes and scaling of the complex transform
///
/// The passes and the scaling by 1/sqrt(N) alone, forward.
///
/// @param[in] n N >= 1
/// @param[in,out] x N complex numbers, overwritten
/// @param[out] scratch N numbers
/// @param[in] table N numbers, exp(-2 pi i k/N) in place k, as far as the passes look at them: the classic
///     c06pcf and the others leave it so in work.
/// @param[in] count numbers in factors
/// @param[in] factors the radices in order: 2, 3, 4, 5, others odd, a 1 is skipped; a list whose product is not N, or
///     with another number in it, does nothing.
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983).
///
/// @par Cost
/// That of c06pcf without the table.
/// @{
TESK2MP_API void QuarnMP_c06ncwn_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                                  const Integer* factors);
TESK2MP_API void QuarnMPX_c06ncwn_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                                   const Integer* factors);
/// @}

/// @defgroup c06ncvn one pass of the complex transform
///
/// One pass each, of radix r = 2 (c06ncvn), 3 (c06ncun), 4 (c06nctn) and 5 (c06ncsn). Numbers below 1 do nothing.
///
/// @like c06ncwn
///
/// @param[in] length elements that stay together, >= 1
/// @param[in] blocks groups of r such pieces, >= 1
/// @param[in] source r blocks length numbers; not changed
/// @param[out] target as many numbers, overwritten; does not overlap source
/// @param[in] table as above, with N = r blocks length
///
/// @par Cost
/// r - 1 complex multiplications by the table and some 10 real additions per element.
/// @{
TESK2MP_API void QuarnMP_c06ncvn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                  const Complex* table);
TESK2MP_API void QuarnMPX_c06ncvn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                   const Complex* table);
TESK2MP_API void QuarnMP_c06ncun_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                  const Complex* table);
TESK2MP_API void QuarnMPX_c06ncun_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                   const Complex* table);
TESK2MP_API void QuarnMP_c06nctn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                  const Complex* table);
TESK2MP_API void QuarnMPX_c06nctn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                   const Complex* table);
TESK2MP_API void QuarnMP_c06ncsn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                  const Complex* table);
TESK2MP_API void QuarnMPX_c06ncsn_(Integer length, Integer blocks, const Complex* source, Complex* target,
                                   const Complex* table);
/// @}

/// @defgroup c06prf transforms of interleaved complex sequences
///
/// M sequences of length N that lie interleaved: element i of sequence j in x[i M + j], so that they are the columns of
/// an array [N][M].
///
/// @param[in] direct the direction: F or f forward, B or b backward
/// @param[in] m sequences, M >= 1
/// @param[in] n length of each, N >= 1
/// @param[in,out] x M N complex numbers, overwritten by the transforms
/// @param[in,out] work N + M N complex numbers, the table first
///
/// @par Failures
///
///   1  " ** M .lt. 1: M = %16ld."
///   2  " ** N .lt. 1: N = %16ld."
///   3  " ** %1s is an invalid value of DIRECT."
///   4  " ** N must have less than 31 prime factors: N = %16ld."
///   5  " ** Unexpected failure in an internal call."
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983).
///
/// @par Cost
/// M times that of c06pcf, and one table.
/// @{
TESK2MP_API void QuarnMP_c06prf_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work,
                                 Integer* ifail, int direct_length);
TESK2MP_API void QuarnMPX_c06prf_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work,
                                  Integer* ifail, int direct_length);
TESK2MP_API void QuarnMP_c06prfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work,
                                  char* message_buffer, Integer* ifail, int direct_length, int buffer_length);
TESK2MP_API void QuarnMPX_c06prfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work,
                                   char* message_buffer, Integer* ifail, int direct_length, int buffer_length);
/// @}

/// @defgroup c06prqn interleaved sequences without checks
///
/// M interleaved sequences without checks and messages, as c06pcqn. c06prxn takes the table that an earlier call with
/// the same N has left in work; so does c06prwn, which makes the passes and the scaling alone, always forward.
///
/// @like c06pcqn
///
/// @param[in] m sequences, M >= 1
/// @param[in] n length of each, N >= 1
/// @param[in,out] x M N complex numbers, overwritten
/// @param[in,out] work N + M N complex numbers, the table first
///
/// @par Cost
/// That of c06prf; c06prxn and c06prwn without the table.
/// @{
TESK2MP_API void QuarnMP_c06prqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06prqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06przn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06przn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06prxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06prxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06prwn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06prwn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
/// @}

/// @defgroup c06psf transforms of complex sequences one after another
///
/// M sequences of length N that lie one after another: element i of sequence j in x[i + j N], so that they are the rows
/// of an array [M][N].
///
/// @param[in] direct the direction: F or f forward, B or b backward
/// @param[in] m sequences, M >= 1
/// @param[in] n length of each, N >= 1
/// @param[in,out] x M N complex numbers, overwritten by the transforms
/// @param[in,out] work 2 N complex numbers, the table first
///
/// @par Failures
/// Failures as for c06prf.
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983).
///
/// @par Cost
/// M times that of c06pcf, and one table.
/// @{
TESK2MP_API void QuarnMP_c06psfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work,
                                  char* message_buffer, Integer* ifail, int direct_length, int buffer_length);
TESK2MP_API void QuarnMPX_c06psfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work,
                                   char* message_buffer, Integer* ifail, int direct_length, int buffer_length);
/// @}

/// @defgroup c06psqn sequences one after another without checks
///
/// The same without checks and messages; c06psxn takes the table from an earlier call with the same N.
///
/// @like c06psf
///
/// @par Cost
/// That of c06psf; c06psxn without the table.
/// @{
TESK2MP_API void QuarnMP_c06psqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06psqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06pszn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06pszn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
TESK2MP_API void QuarnMP_c06psxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMPX_c06psxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                                   int direct_length);
/// @}

/// @defgroup c06pff transform along one dimension of an array
///
/// One dimension of an array, the first index varying fastest.
///
/// @param[in] direct the direction: F or f forward, B or b backward
/// @param[in] ndim the number of dimensions
/// @param[in] l the one to be transformed, from 1
/// @param[in] nd the extents
/// @param[in] n N, their product
/// @param[in,out] x N complex numbers
/// @param[out] work lwork complex numbers, at least N + nd[l-1] + 15
/// @param[in] lwork complex numbers in work
/// @param[in] query 1 asks for the length of work alone: NDIM, L, DIRECT and the extents are checked, and the length is
///     stored in work[0], for N as it is given; any other value transforms
///
/// @par Failures
///
///   1  " ** On entry, NDIM .lt. 1: NDIM = %16ld."
///   2  " ** On entry, L .lt. 1 or L .gt. NDIM: L = %16ld."
///   3  " ** %1s is an invalid value of DIRECT."
///   4  " ** ND(I) .lt. 1: ND(I) = %12ld I = %12ld."
///   5  " ** N must = product of the ND(I): N = %12ld ND(I) = %12ld."  (the second value is the product)
///   6  " ** LWORK, = %16ld,  must be at least:%16ld."
///   7  " ** ND(L) must have < 31 prime factors: ND(L) = %16ld."
///   8  " ** Unexpected failure in an internal call."
///
/// @par Source
/// C. Temperton, Self-sorting mixed-radix fast Fourier transforms, J. Comput. Phys. 52 (1983).
///
/// @par Cost
/// That of c06pcf with N = nd[l-1], N / nd[l-1] times, and one table.
/// @{
TESK2MP_API void QuarnMP_c06pff_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd,
                                 const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail,
                                 int direct_length);
TESK2MP_API void QuarnMPX_c06pff_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd,
                                  const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail,
                                  int direct_length);
TESK2MP_API void QuarnMP_c06pffn_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd,
                                  Integer n, Complex* x, Complex* work, Integer lwork, char* message_buffer,
                                  Integer* ifail, int direct_length, int buffer_length);
TESK2MP_API void QuarnMPX_c06pffn_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd,
                                   Integer n, Complex* x, Complex* work, Integer lwork, char* message_buffer,
                                   Integer* ifail, int direct_length, int buffer_length);
/// @}

/// @defgroup c06pfzn transform along the middle index of an array
///
/// The same for the middle index of an array x[after][n][before], without checks; an extent n = 1 touches nothing.
///
/// @like c06pcqn
///
/// @param[in,out] x before n after complex numbers, overwritten
/// @param[in] before extent of the index that varies fastest, >= 1
/// @param[in] n extent of the index that is transformed, >= 1
/// @param[in] after extent of the index that varies slowest, >= 1
/// @param[out] work n + before n complex numbers
///
/// @par Failures
/// ifail: see c06pcqn; 2 when an extent is below 1.
///
/// @par Cost
/// That of c06pff.
/// @{
TESK2MP_API void QuarnMP_c06pfzn_(const char* direct, Complex* x, Integer before, Integer n, Integer after,
                                  Complex* work, Integer* ifail, int direct_length);
TESK2MP_API void QuarnMPX_c06pfzn_(const char* direct, Complex* x, Integer before, Integer n, Integer after,
                                   Complex* work, Integer* ifail, int direct_length);
/// @}

/// @defgroup c06pjf transform along all dimensions of an array
///
/// All dimensions of an array, one after another; the extents' factors are looked at before the first. Arguments as for
/// c06pff, but work has at least N + 3 (m + 5) complex numbers, m being the largest extent.
///
/// @like c06pff
///
/// @param[out] work lwork complex numbers, at least N + 3 (m + 5)
/// @param[in] lwork complex numbers in work
/// @param[in] query 1 checks all but LWORK and stores the length in work[0]
///
/// @par Failures
///
///   1  " ** NDIM .lt. 1: NDIM = %16ld."
///   2  " ** %1s is an invalid value of DIRECT."
///   3  " ** ND(I) .lt. 1: ND(I) = %16ld I = %16ld."
///   4  " ** N = the product of the ND(I): N = %12ld ND(I) =%12ld."  (the second value is the product)
///   5  " ** LWORK, = %16ld,  must be at least:%16ld."
///   6  " ** ND(I) must have < 31 prime factors: for I = %12ld"
///   7  " ** Unexpected failure in an internal call."
///
/// @par Cost
/// That of c06pff for each dimension.
/// @{
TESK2MP_API void QuarnMP_c06pjf_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n,
                                 Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length);
TESK2MP_API void QuarnMPX_c06pjf_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n,
                                  Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length);
TESK2MP_API void QuarnMP_c06pjfn_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n,
                                  Complex* x, Complex* work, Integer lwork, char* message_buffer, Integer* ifail,
                                  int direct_length, int buffer_length);
TESK2MP_API void QuarnMPX_c06pjfn_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n,
                                   Complex* x, Complex* work, Integer lwork, char* message_buffer, Integer* ifail,
                                   int direct_length, int buffer_length);
/// @}
}
TESK2MP_NAMES_END

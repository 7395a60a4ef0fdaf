// Transforms of many sequences, convolutions, windows.
//
// Sequences. m sequences of n elements lie in one array: element i of sequence j in place i * inc + j * dist, both from
// 0, so that inc = 1, dist = n puts one after the other and inc = m, dist = 1 interleaves them. Results may take the
// place of the data where both have the same places, and must not overlap them otherwise. Each sequence is transformed
// as if it were alone.
//
// Scaling. NORM is B (backward), O (orthonormal) or F (forward), in either case: with N as the page says, B divides
// inverse transforms by N and forward ones by 1, F the other way round, O both by sqrt(N). Each pair is inverse.
//
// Digits. Up to 1100 digits and N = 2^24 every part of a result is rounded once (quarn/transform.h,
// quarn/realtransform.h). Before that it is off by a quarter of 10^-D M sqrt(N) / divisor at most, M the largest |part|
// of the data; beyond by as many units of 10^-D as the complex companions. A NaN or an infinity in a sequence makes all
// of its results NaN. There is no limit on prime factors of the length.
//
// Failures, the same numbers in all of these routines; results are then left as they were:
//
//   1   " ** %1s is an invalid value of DIRECT."
//   2   " ** %1s is an invalid value of NORM."
//   3   " ** On entry, N .lt. %ld or .gt. 67108864: N = %16ld."
//   4   " ** On entry, M .lt. 1: M = %16ld."
//   5   " ** On entry, an increment is 0: INCX = %12ld INCY = %12ld"
//   6   " ** On entry, ITYPE is not 1 to 4: ITYPE = %16ld."
//   7   " ** On entry, NDIM .lt. 1: NDIM = %16ld."
//   8   " ** ND(I) .lt. 1: ND(I) = %16ld I = %16ld."
//   9   " ** AXES(I) is not a dimension, or comes twice: AXES(I) = %12ld I = %12ld."
//   10  " ** The product of the ND(I) is above 67108864."
//   11  " ** %1s is an invalid value of KIND."
//   12  " ** Circular, but the lengths differ: NA = %16ld NB = %16ld."
//   13  " ** On entry, BETA is not from -1000000 to 1000000: BETA = %12.4e."
//
// QuarnInterrupted (quarn/quarnthread.h) may be thrown between sequences.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup fft_sequences Fourier transforms of complex sequences
///
/// z_k = sum over j of x_j exp(-2 pi i j k / n), backward exp(+2 pi i j k / n), N = n.
///
/// @param[in] direct F or f: forward, B or b: backward
/// @param[in] norm B, O or F
/// @param[in] n elements of a sequence
/// @param[in] m sequences
/// @param[in] x the data
/// @param[in] incx step from element to element of x, not 0
/// @param[in] distx step from sequence to sequence of x
/// @param[out] y the results
/// @param[in] incy step from element to element of y, not 0
/// @param[in] disty step from sequence to sequence of y
///
/// @par Failures
/// 1, 2, 3 with %ld = 1, 4, 5.
///
/// @par Method
/// quarn/transform.h.
///
/// @par Source
/// J. W. Cooley, J. W. Tukey, An algorithm for the machine calculation of complex Fourier series, Math. Comp. 19
/// (1965); for large prime factors L. I. Bluestein, IEEE Trans. Audio Electroacoust. 18 (1970).
///
/// @par Cost
/// Some (2/3) n log2 n complex products of D digits for each sequence where n = 2^a 3^b 5^c 7^d, 4 to 6 times that for
/// a large prime; tables are kept for later calls.
///
/// @par Accuracy
/// Each part of a result is rounded once, after an error of 10^-D M sqrt(N) / (4 divisor) at most: docs/accuracy.md.
/// @{
TESK2MP_API void QuarnMPX_fft_(const char* direct, const char* norm, Integer n, Integer m, const Complex* x,
                               Integer incx, Integer distx, Complex* y, Integer incy, Integer disty, Integer* ifail,
                               int direct_length, int norm_length);
/// @}

/// @defgroup rfft spectra of real sequences
///
/// z_k = sum over j of x_j exp(-2 pi i j k / n), k = 0 .. n/2, N = n; the others are z_(n-k) = conj(z_k). The imaginary
/// parts of z_0, and of z_(n/2) for an even n, are 0.
///
/// @like fft_sequences
///
/// @param[in] x m sequences of n reals
/// @param[out] y m sequences of n/2 + 1 complex numbers
///
/// @par Failures
/// 2, 3 with %ld = 1, 4, 5.
///
/// @par Cost
/// For an even n some 0.55 of the complex transform, else as much.
/// @{
TESK2MP_API void QuarnMPX_rfft_(const char* norm, Integer n, Integer m, const QuarnFloat* x, Integer incx,
                                Integer distx, Complex* y, Integer incy, Integer disty, Integer* ifail,
                                int norm_length);
/// @}

/// @defgroup irfft real sequences from their spectra
///
/// The inverse of rfft: x_j = sum over k of z_k exp(+2 pi i j k / n), z_0 .. z_(n/2) given, the others z_(n-k) =
/// conj(z_k), N = n. The imaginary parts of z_0, and of z_(n/2) for an even n, are taken as 0.
///
/// @like rfft
///
/// @param[in] x m sequences of n/2 + 1 complex numbers
/// @param[out] y m sequences of n reals
/// @{
TESK2MP_API void QuarnMPX_irfft_(const char* norm, Integer n, Integer m, const Complex* x, Integer incx, Integer distx,
                                 QuarnFloat* y, Integer incy, Integer disty, Integer* ifail, int norm_length);
/// @}

/// @defgroup dct cosine transforms
///
/// y_k = sum over j of x_j times
///
///   type 1   2 cos(pi k j / (n-1)), 1 for j = 0, (-1)^k for j = n-1    N = 2 (n-1), n >= 2
///   type 2   2 cos(pi k (2j+1) / (2n))                                 N = 2 n
///   type 3   2 cos(pi (2k+1) j / (2n)), 1 for j = 0                    N = 2 n
///   type 4   2 cos(pi (2k+1) (2j+1) / (4n))                            N = 2 n
///
/// Backward, the inverse: the same sums for types 1 and 4, type 3 for type 2 and type 2 for type 3. With NORM O all are
/// orthogonal: x_0 of types 1 and 3 and x_(n-1) of type 1 count sqrt(2) times, results 0 of types 1 and 2 and n-1 of
/// type 1 1/sqrt(2) times.
///
/// The quarter-wave cosine transform is type 3, with type 2 as its inverse.
///
/// @like fft_sequences
///
/// @param[in] itype the type, 1 to 4
///
/// @par Failures
/// 1, 2, 6, 3 with %ld = 2 for type 1 and 1 otherwise, 4, 5.
///
/// @par Method
/// quarn/realtransform.h.
///
/// @par Cost
/// For an even n some 0.6 of the complex transform, type 1 one of n-1 elements, an odd n one of n.
/// @{
TESK2MP_API void QuarnMPX_dct_(const char* direct, const char* norm, Integer itype, Integer n, Integer m,
                               const QuarnFloat* x, Integer incx, Integer distx, QuarnFloat* y, Integer incy,
                               Integer disty, Integer* ifail, int direct_length, int norm_length);
/// @}

/// @defgroup dst sine transforms
///
/// y_k = sum over j of x_j times
///
///   type 1   2 sin(pi (k+1) (j+1) / (n+1))                                N = 2 (n+1)
///   type 2   2 sin(pi (k+1) (2j+1) / (2n))                                N = 2 n
///   type 3   2 sin(pi (2k+1) (j+1) / (2n)), (-1)^k for j = n-1            N = 2 n
///   type 4   2 sin(pi (2k+1) (2j+1) / (4n))                               N = 2 n
///
/// Backward, the inverse: the same sums for types 1 and 4, type 3 for type 2 and type 2 for type 3. With NORM O all are
/// orthogonal: x_(n-1) of type 3 counts sqrt(2) times, result n-1 of type 2 1/sqrt(2) times.
///
/// The quarter-wave sine transform is type 3, with type 2 as its inverse.
///
/// @like dct
///
/// @par Failures
/// 1, 2, 6, 3 with %ld = 1, 4, 5.
/// @{
TESK2MP_API void QuarnMPX_dst_(const char* direct, const char* norm, Integer itype, Integer n, Integer m,
                               const QuarnFloat* x, Integer incx, Integer distx, QuarnFloat* y, Integer incy,
                               Integer disty, Integer* ifail, int direct_length, int norm_length);
/// @}

/// @defgroup fftn Fourier transforms of complex arrays
///
/// The transform along some dimensions of an array whose first index varies fastest. Each dimension divides by its own
/// N. They are taken one after another with five more digits and rounded once at the end.
///
/// @like fft_sequences
///
/// @param[in] ndim dimensions
/// @param[in] nd their extents
/// @param[in] naxes how many of them are transformed, from 0
/// @param[in] axes their numbers from 1, none twice
/// @param[in] x the array
/// @param[out] y the result; may be x
///
/// @par Failures
/// 1, 2, 7, 8, 10, 9.
/// @{
TESK2MP_API void QuarnMPX_fftn_(const char* direct, const char* norm, Integer ndim, const Integer* nd, Integer naxes,
                                const Integer* axes, const Complex* x, Complex* y, Integer* ifail, int direct_length,
                                int norm_length);
/// @}

/// @defgroup rfftn spectra of real arrays
///
/// As fftn, of a real array: along the last one of the dimensions that are listed only the first half of the spectrum,
/// n/2 + 1 numbers, is stored.
///
/// @like fftn
///
/// @param[in] naxes how many of them are transformed, from 1
///
/// @par Failures
/// 2, 7, 8, 10, 9.
/// @{
TESK2MP_API void QuarnMPX_rfftn_(const char* norm, Integer ndim, const Integer* nd, Integer naxes, const Integer* axes,
                                 const QuarnFloat* x, Complex* y, Integer* ifail, int norm_length);
/// @}

/// @defgroup irfftn real arrays from their spectra
///
/// The inverse of rfftn.
///
/// @like rfftn
///
/// @param[in] nd the extents of the real array
/// @{
TESK2MP_API void QuarnMPX_irfftn_(const char* norm, Integer ndim, const Integer* nd, Integer naxes, const Integer* axes,
                                  const Complex* x, QuarnFloat* y, Integer* ifail, int norm_length);
/// @}

/// @defgroup convolve convolutions
///
/// z_k = sum over i of a_i b_(k-i), k = 0 .. na + nb - 2, or circular, z_k = sum over i of a_i b_((k-i) mod na), k = 0
/// .. na - 1, na = nb: of m pairs, one after the other. Each result is the exact sum rounded once; of integers it is
/// exact where the digits suffice. z overlaps neither a nor b.
///
/// @param[in] kind L or l: linear, C or c: circular
/// @param[in] m pairs of sequences, >= 1
/// @param[in] na elements of each first sequence
/// @param[in] a the first sequences, na apart
/// @param[in] nb elements of each second sequence
/// @param[in] b the second sequences, nb apart
/// @param[out] z the results, one sequence after the other
///
/// @par Failures
/// 11, 3 with %ld = 1 for na or nb, 4, 12.
///
/// @par Method
/// quarn/convolution.h.
///
/// @par Source
/// H. J. Nussbaumer, Fast Fourier Transform and Convolution Algorithms, Springer 1982: convolutions by transforms.
///
/// @par Cost
/// Three real transforms of some na + nb elements at as many digits as the exact sums have, where their numbers span at
/// most some 540 digits each, or na nb products where that is less.
///
/// @par Accuracy
/// The exact sums, rounded once.
/// @{
TESK2MP_API void QuarnMPX_convolve_(const char* kind, Integer m, Integer na, const QuarnFloat* a, Integer nb,
                                    const QuarnFloat* b, QuarnFloat* z, Integer* ifail, int kind_length);
/// @}

/// @defgroup zconvolve convolutions of complex sequences
///
/// @like convolve
/// @{
TESK2MP_API void QuarnMPX_zconvolve_(const char* kind, Integer m, Integer na, const Complex* a, Integer nb,
                                     const Complex* b, Complex* z, Integer* ifail, int kind_length);
/// @}

/// @defgroup window window functions
///
/// w_k, k = 0 .. n-1, with t = 2 pi k / p, each rounded once; p is n - 1, or n for a periodic window, and w_0 = 1 for
/// n = 1:
///
///   H   Hann       (1 - cos t) / 2
///   M   Hamming    0.54 - 0.46 cos t
///   B   Blackman   0.42 - 0.5 cos t + 0.08 cos 2 t
///   K   Kaiser     I0(beta sqrt(1 - (2 k / p - 1)^2)) / I0(beta)
///   R   ones
///
/// @param[in] kind the letter
/// @param[in] n elements
/// @param[in] periodic 0: symmetric; else periodic
/// @param[in] beta of the Kaiser window; 0 for the others
/// @param[out] w n reals
///
/// @par Failures
/// 11, 3 with %ld = 1, 13.
///
/// @par Method
/// I0 by its power series, whose terms are all positive.
///
/// @par Accuracy
/// Rounded once, from ten more digits.
///
/// @par Source
/// F. J. Harris, On the use of windows for harmonic analysis with the discrete Fourier transform, Proc. IEEE 66
/// (1978).
///
/// @par Cost
/// One sine for each pair of elements; of the Kaiser window some beta + 2 D terms of the series.
/// @{
TESK2MP_API void QuarnMPX_window_(const char* kind, Integer n, Integer periodic, QuarnFloat beta, QuarnFloat* w,
                                  Integer* ifail, int kind_length);
/// @}

/// @defgroup power_spectrum power spectra of real sequences
///
/// p_k = c |z_k|^2 / n^2, z_k of rfft with NORM B, c = 2 where another z stands for -k, else 1: their sum is the mean
/// of the x_j^2.
///
/// @like rfft
///
/// @param[out] y m sequences of n/2 + 1 reals
///
/// @par Failures
/// 3 with %ld = 1, 4, 5.
///
/// @par Accuracy
/// Rounded once, from a spectrum of five more digits.
/// @{
TESK2MP_API void QuarnMPX_power_spectrum_(Integer n, Integer m, const QuarnFloat* x, Integer incx, Integer distx,
                                          QuarnFloat* y, Integer incy, Integer disty, Integer* ifail);
/// @}

/// @defgroup next_fast_len lengths that are cheap to transform
///
/// The smallest 2^a 3^b 5^c that is n or more; 0 when it has more than 31 bits, 1 for n < 1.
///
/// @param[in] n the least length
///
/// @par Failures
/// None.
///
/// @par Accuracy
/// Exact.
///
/// @par Source
/// No published one: all lengths of this form are compared.
///
/// @par Cost
/// Some 300 comparisons.
/// @{
TESK2MP_API Integer QuarnMPX_next_fast_len_(Integer n);
/// @}
}
TESK2MP_NAMES_END

// Transforms of real sequences in block fixed point: one rounding per result.
//
// Of n real numbers x the spectrum z_k = sum over j of x_j exp(-2 pi i j k / n), k = 0 .. n/2, and back from it; and
// the cosine and sine transforms, sums over m of x_m times
//
//   dct1  2 cos(pi k m / (n-1)), 1 for m = 0, (-1)^k for m = n-1     dst1  2 sin(pi (k+1) (m+1) / (n+1))
//   dct2  2 cos(pi k (2m+1) / (2n))                                  dst2  2 sin(pi (k+1) (2m+1) / (2n))
//   dct3  2 cos(pi (2k+1) m / (2n)), 1 for m = 0                     dst3  2 sin(pi (2k+1) (m+1) / (2n)),
//                                                                          (-1)^k for m = n-1
//   dct4  2 cos(pi (2k+1) (2m+1) / (4n))                             dst4  2 sin(pi (2k+1) (2m+1) / (4n))
//
// The sums are divided by 1, by sqrt(N) or by N. N is n for the spectrum, 2 (n-1) for dct1, 2 (n+1) for dst1, else 2 n.
// Divided by sqrt(N), cosine and sine transforms are made orthogonal: the element of the first three types that has no
// partner (x_0 and x_(n-1) of dct1, x_0 of dct3, x_(n-1) of dst3) counts sqrt(2) times, and such results of dct1, dct2
// (result 0) and dst2 (result n-1) 1/sqrt(2) times.
//
// Types 1 and 4 are their own inverses, 2 and 3 are each other's, once with divisor 1 and once with N, or twice with
// sqrt(N).
//
// Accuracy, zeros, special values and support are those of quarn/transform.h: before it is rounded once to the working
// digits D a result is off by a quarter of 10^-D M sqrt(N) / divisor at most, M the largest |part| of the data. Spectra
// of even and odd sequences, x_(n-j) = +-x_j, are real and imaginary; dct and dst of types 1 and 2 of sequences that
// are the same in reverse, up to the sign, have zeros in every second place. The other way round, sequences from real
// and imaginary spectra, and dct and dst of types 1 and 3 of data with zeros in every second place, are even or odd.
#pragma once

#include <cstddef>
#include <memory>

#include "quarn/transform.h"

/// The tables for one transform, length and number of digits. It never changes, and may be used again and again.
///
/// Even lengths take a complex transform of half the length (J. Makhoul, IEEE Trans. ASSP 28, 1980, for types 2 and 3),
/// dct1 and dst1 one of n-1 and n+1 elements, odd lengths one of n.
class QRNFLOAT_API QuarnRealTransform {
 public:
  enum class Kind { to_spectrum, from_spectrum, dct1, dct2, dct3, dct4, dst1, dst2, dst3, dst4 };

  /// 1 <= n, 2 <= n for dct1, and what QuarnTransform::is_supported() says of a complex transform of N elements.
  static bool is_supported(Kind kind, quarn::Integer n, int digits) noexcept;

  /// For n real numbers at the working digits. Throws std::invalid_argument when that is not supported.
  QuarnRealTransform(Kind kind, quarn::Integer n);
  ~QuarnRealTransform();
  QuarnRealTransform(QuarnRealTransform&& other) noexcept;
  QuarnRealTransform& operator=(QuarnRealTransform&& other) noexcept;

  Kind kind() const noexcept;
  quarn::Integer length() const noexcept;
  int digits() const noexcept;

  /// y[0], y[stride_y], ... := the transform of x[0], x[stride_x], ..., rounded to digits(); y may be x. Of spectra,
  /// n / 2 + 1 elements are read or written; the imaginary part of z_0, and of z_(n/2) for an even n, is taken as 0.
  ///
  /// The kind is that of the plan: to_spectrum, from_spectrum, any other one.
  void run(const QuarnFloat* x, std::ptrdiff_t stride_x, quarn::Complex* y, std::ptrdiff_t stride_y,
           QuarnDivisor divisor = QuarnDivisor::root) const;
  void run(const quarn::Complex* x, std::ptrdiff_t stride_x, QuarnFloat* y, std::ptrdiff_t stride_y,
           QuarnDivisor divisor = QuarnDivisor::root) const;
  void run(const QuarnFloat* x, std::ptrdiff_t stride_x, QuarnFloat* y, std::ptrdiff_t stride_y,
           QuarnDivisor divisor = QuarnDivisor::root) const;

  /// The plan that is kept for later calls at the working digits, made if there is none.
  static std::shared_ptr<const QuarnRealTransform> kept(Kind kind, quarn::Integer n);

 private:
  struct Plan;

  std::unique_ptr<Plan> plan_;
};

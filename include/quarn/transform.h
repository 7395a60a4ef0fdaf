// Discrete Fourier transforms of complex sequences in block fixed point: one rounding per result.
//
// z_k = 1/sqrt(n) * sum over j of x_j exp(-2 pi i j k / n), or exp(+2 pi i j k / n) backward. The data are put on one
// binary scale, transformed in integers, and each part of a result is rounded once to the working digits D: it is off
// by at most a quarter of 10^-D times the largest |part| of the data, and half a unit of its own last place. Parts of
// the data that are smaller than that do not count. Results are the same on every platform. With another divisor than
// sqrt(n), the first bound changes in proportion.
//
// Zeros give zeros, a number in place 0 gives n equal results, and of real data (all imaginary parts zero) result n - k
// is exactly the conjugate of result k, so that results 0 and n / 2 are real. A zero has no sign. When a part of the
// data is NaN or infinite, every part of every result is NaN. Results beyond the largest number are infinite.
#pragma once

#include <cstddef>
#include <memory>

#include "quarn/quarnfloat.h"

/// What sums over n numbers are divided by: 1, sqrt(n) or n.
enum class QuarnDivisor { one, root, length };

/// The tables for one length at one number of digits. It never changes, and may be used again and again.
///
/// n = 2^a r1 r2 ... with odd primes up to 31 costs some (2/3) n log2 n complex products of D digits and some (r-1)^2 /
/// r real ones for each factor r and number; other lengths are convolutions (L. Bluestein, IEEE Trans. Audio
/// Electroacoust. 18, 1970) of a length from 2 n.
class QRNFLOAT_API QuarnTransform {
 public:
  /// Are there transforms of length n at so many digits: 1 <= n <= 2^24, up to some 1100 digits?
  static bool is_supported(quarn::Integer n, int digits) noexcept;

  /// For the working digits. Throws std::invalid_argument when that is not supported.
  explicit QuarnTransform(quarn::Integer n);
  ~QuarnTransform();
  QuarnTransform(QuarnTransform&& other) noexcept;
  QuarnTransform& operator=(QuarnTransform&& other) noexcept;

  quarn::Integer length() const noexcept;
  int digits() const noexcept;

  /// Replaces x[0], x[stride], ... by its transform, rounded to digits().
  void forward(quarn::Complex* x, std::ptrdiff_t stride = 1, QuarnDivisor divisor = QuarnDivisor::root) const;
  void backward(quarn::Complex* x, std::ptrdiff_t stride = 1, QuarnDivisor divisor = QuarnDivisor::root) const;

 private:
  struct Plan;
  friend QRNFLOAT_API bool QuarnTransformRows(bool, quarn::Integer, quarn::Integer, const quarn::Complex*,
                                              std::ptrdiff_t, std::ptrdiff_t, quarn::Complex*, std::ptrdiff_t,
                                              std::ptrdiff_t, QuarnDivisor);

  std::unique_ptr<Plan> plan_;
};

/// Transforms `count` sequences of length n, sequence i from x[i * distance], by a plan that is kept for later calls at
/// the working digits. Returns false, and nothing is done, when that is not supported. Sequences are shared among the
/// threads that quarn/parallel.h allows; when storage runs out each sequence is transformed or as it was.
QRNFLOAT_API bool QuarnTransformRows(bool backward, quarn::Complex* x, quarn::Integer n, std::ptrdiff_t stride,
                                     quarn::Integer count, std::ptrdiff_t distance,
                                     QuarnDivisor divisor = QuarnDivisor::root);

/// The same from x to y, where element k of sequence i has the place k * stride + i * distance; y may be x where both
/// have the same places, and does not overlap it otherwise. A sequence whose transform is not finished is as it was in
/// y.
QRNFLOAT_API bool QuarnTransformRows(bool backward, quarn::Integer n, quarn::Integer count, const quarn::Complex* x,
                                     std::ptrdiff_t stride_x, std::ptrdiff_t distance_x, quarn::Complex* y,
                                     std::ptrdiff_t stride_y, std::ptrdiff_t distance_y,
                                     QuarnDivisor divisor = QuarnDivisor::root);

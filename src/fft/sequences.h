// Real and complex transforms of many sequences, of any length at any number of digits.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "quarn/realtransform.h"

namespace tesk {

using RealKind = QuarnRealTransform::Kind;

/// Element i of sequence j in place i * step + j * distance.
template <class T>
struct Sequence {
  T* first;
  std::ptrdiff_t step;
  std::ptrdiff_t distance;

  T& at(std::ptrdiff_t i, std::ptrdiff_t j) const { return first[i * step + j * distance]; }
};

/// The elements of a spectrum.
inline std::size_t half_of(Integer n) { return std::size_t(n / 2) + 1; }

/// Each sequence as if it were alone. y may be x.
void transform_sequences(bool backward, Integer n, Integer m, const Sequence<const Complex>& x,
                         const Sequence<Complex>& y, QuarnDivisor divisor);

/// The kinds that T and U name: to_spectrum, from_spectrum, any other one.
template <class T, class U>
void transform_sequences(RealKind kind, Integer n, Integer m, const Sequence<const T>& x, const Sequence<U>& y,
                         QuarnDivisor divisor);

/// What the number library has no plan for, by the complex companions with more digits: the transform of x[0], x[step],
/// ... to y[0], y[1], ...
void transform_long(bool backward, Integer n, const Complex* x, std::ptrdiff_t step, Complex* y, QuarnDivisor divisor);
template <class T, class U>
void transform_long(RealKind kind, Integer n, const T* x, std::ptrdiff_t step, U* y, QuarnDivisor divisor);

/// An array whose first index varies fastest, and the dimensions, from 0, that are transformed, the last one first.
/// Real arrays have a spectrum of half_of() numbers along that one.
struct ArrayShape {
  std::vector<Integer> extents;
  std::vector<std::size_t> axes;
};
void transform_array(bool backward, const ArrayShape& shape, const Complex* x, Complex* y, QuarnDivisor divisor);
void transform_array(const ArrayShape& shape, const QuarnFloat* x, Complex* y, QuarnDivisor divisor);
void transform_array(const ArrayShape& shape, const Complex* x, QuarnFloat* y, QuarnDivisor divisor);

enum class Window : char { hann = 'H', hamming = 'M', blackman = 'B', kaiser = 'K', ones = 'R' };

/// Element k of n, with `period` n - 1 or n; to the working digits.
std::vector<QuarnFloat> window(Window kind, Integer n, bool periodic, const QuarnFloat& beta);

}  // namespace tesk

// Arrays of several dimensions: one dimension after another with more digits, and one rounding at the end.
#include <algorithm>

#include "src/fft/sequences.h"
#include "src/frame/working_digits.h"

namespace tesk {
namespace {

/// A pass is off by a few units of 10^-D of the largest number, which the next one makes no more than that of its own.
constexpr int kGuardDigits = 5;

int digits_for(const ArrayShape& shape) { return QuarnDigits() + (shape.axes.size() > 1 ? kGuardDigits : 0); }

std::size_t count_of(const std::vector<Integer>& extents) {
  std::size_t count = 1;
  for (const Integer extent : extents) {
    count *= std::size_t(extent);
  }
  return count;
}

/// The extents of the spectrum of a real array.
std::vector<Integer> halved(const ArrayShape& shape) {
  std::vector<Integer> extents = shape.extents;
  Integer& last = extents[shape.axes.back()];
  last = Integer(half_of(last));
  return extents;
}

/// Along one dimension, of n real or complex numbers, which have `given` elements before and `made` afterwards.
template <class T, class U, class Transform>
void along(const std::vector<Integer>& extents, std::size_t axis, Integer given, Integer made, const T* x, U* y,
           const Transform& transform) {
  std::ptrdiff_t before = 1;
  for (std::size_t l = 0; l < axis; ++l) {
    before *= extents[l];
  }
  std::ptrdiff_t after = 1;
  for (std::size_t l = axis + 1; l < extents.size(); ++l) {
    after *= extents[l];
  }
  for (std::ptrdiff_t i = 0; i < after; ++i) {
    transform(Integer(before), Sequence<const T>{x + i * before * given, before, 1},
              Sequence<U>{y + i * before * made, before, 1});
  }
}

/// All listed dimensions but the last `skipped` ones, the last first.
void complex_passes(bool backward, const std::vector<Integer>& extents, const std::vector<std::size_t>& axes,
                    std::size_t skipped, Complex* z, QuarnDivisor divisor) {
  for (std::size_t i = axes.size() - skipped; i-- > 0;) {
    const Integer n = extents[axes[i]];
    along(extents, axes[i], n, n, static_cast<const Complex*>(z), z,
          [&](Integer m, const Sequence<const Complex>& from, const Sequence<Complex>& to) {
            transform_sequences(backward, n, m, from, to, divisor);
          });
  }
}

QuarnFloat rounded(const QuarnFloat& x) { return x + QuarnFloat(); }
Complex rounded(const Complex& x) { return {rounded(x.re), rounded(x.im)}; }

/// Rounds to the working digits; only then is y written.
template <class T>
void store(std::vector<T>& z, T* y) {
  for (T& value : z) {
    value = rounded(value);
  }
  std::swap_ranges(z.begin(), z.end(), y);
}

}  // namespace

void transform_array(bool backward, const ArrayShape& shape, const Complex* x, Complex* y, QuarnDivisor divisor) {
  std::vector<Complex> z(x, x + count_of(shape.extents));
  {
    const WorkingDigits more(digits_for(shape));
    complex_passes(backward, shape.extents, shape.axes, 0, z.data(), divisor);
  }
  store(z, y);
}

void transform_array(const ArrayShape& shape, const QuarnFloat* x, Complex* y, QuarnDivisor divisor) {
  const std::vector<Integer> extents = halved(shape);
  std::vector<Complex> z(count_of(extents));
  {
    const WorkingDigits more(digits_for(shape));
    const Integer n = shape.extents[shape.axes.back()];
    along(shape.extents, shape.axes.back(), n, Integer(half_of(n)), x, z.data(),
          [&](Integer m, const Sequence<const QuarnFloat>& from, const Sequence<Complex>& to) {
            transform_sequences(RealKind::to_spectrum, n, m, from, to, divisor);
          });
    complex_passes(false, extents, shape.axes, 1, z.data(), divisor);
  }
  store(z, y);
}

void transform_array(const ArrayShape& shape, const Complex* x, QuarnFloat* y, QuarnDivisor divisor) {
  const std::vector<Integer> extents = halved(shape);
  std::vector<Complex> z(x, x + count_of(extents));
  std::vector<QuarnFloat> results(count_of(shape.extents));
  {
    const WorkingDigits more(digits_for(shape));
    complex_passes(true, extents, shape.axes, 1, z.data(), divisor);
    const Integer n = shape.extents[shape.axes.back()];
    along(shape.extents, shape.axes.back(), Integer(half_of(n)), n, static_cast<const Complex*>(z.data()),
          results.data(), [&](Integer m, const Sequence<const Complex>& from, const Sequence<QuarnFloat>& to) {
            transform_sequences(RealKind::from_spectrum, n, m, from, to, divisor);
          });
  }
  store(results, y);
}

}  // namespace tesk

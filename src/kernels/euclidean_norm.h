// Euclidean norms of numbers whose squares may leave the range.
#pragma once

#include <algorithm>

#include "quarn/complex.h"
#include "quarn/functions.h"
#include "src/kernels/safe_range.h"
#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk {

/// The modulus, which does not overflow.
inline QuarnFloat size_of(const QuarnFloat& x) { return fabs(x); }
inline QuarnFloat size_of(const Complex& x) { return quarn::abs(x); }

inline void add_square(QuarnFloat& sum, const QuarnFloat& x) { add_product(sum, x, x); }
inline void add_square(QuarnFloat& sum, const Complex& x) {
  add_product(sum, x.re, x.re);
  add_product(sum, x.im, x.im);
}

/// A norm whose squares are in the range, with room for sums and products.
inline bool is_safe_norm(const QuarnFloat& norm) { return is_within(norm, kFarthestMultiplied); }

/// The Euclidean norm of element(1) ... element(n).
template <class Element>
QuarnFloat euclidean_norm(Integer n, const Element& element) {
  const auto root_of_squares = [&](const auto& scaled) {
    QuarnFloat sum;
    for (Integer i = 1; i <= n; ++i) {
      add_square(sum, scaled(i));
    }
    return sqrt(sum);
  };
  QuarnFloat norm = root_of_squares(element);
  if (isnan(norm) || is_safe_norm(norm)) {
    return norm;
  }
  QuarnFloat largest;
  for (Integer i = 1; i <= n; ++i) {
    largest = std::max(largest, size_of(element(i)));
  }
  if (largest == 0 || isinf(largest)) {
    return largest;
  }
  const int decade = ilogb(largest);
  const QuarnFloat unit(1, -decade);
  return root_of_squares([&](Integer i) {
           auto scaled = element(i);
           multiply_by(scaled, unit);
           return scaled;
         }) *
         QuarnFloat(1, decade);
}
template <class T>
QuarnFloat euclidean_norm(Integer n, OneBasedVector<T> x) {
  return euclidean_norm(n, [&](Integer i) -> const T& { return x(i); });
}

}  // namespace tesk

// Decimal rounding of vectors and matrices, and rounded parts that add up. Part of tesk2mp.hpp; quarn/rounding.h has
// the modes, and documents what they do.
#pragma once

#include <span>
#include <vector>

#include "quarn/rounding.h"
#include "tesk2mp/views.hpp"

namespace tesk2mp {

using quarn::Reconciliation;
using quarn::Rounding;

/// A number with `places` digits after the point. `inexact` is increased by one when that changes it; a complex number
/// counts once.
inline Real quantize(const Real& x, int places, Rounding mode = Rounding::half_even, std::size_t* inexact = nullptr) {
  bool changed = false;
  Real rounded = quarn::quantize(x, places, mode, &changed);
  if (inexact != nullptr && changed) {
    ++*inexact;
  }
  return rounded;
}
inline Complex quantize(const Complex& z, int places, Rounding mode = Rounding::half_even,
                        std::size_t* inexact = nullptr) {
  bool re = false;
  bool im = false;
  Complex rounded(quarn::quantize(z.re, places, mode, &re), quarn::quantize(z.im, places, mode, &im));
  if (inexact != nullptr && (re || im)) {
    ++*inexact;
  }
  return rounded;
}

/// Each element of a vector.
template <Scalar T>
std::vector<T> quantize(const std::vector<T>& x, int places, Rounding mode = Rounding::half_even,
                        std::size_t* inexact = nullptr) {
  std::vector<T> rounded;
  rounded.reserve(x.size());
  for (const T& element : x) {
    rounded.push_back(quantize(element, places, mode, inexact));
  }
  return rounded;
}

/// Each element of a matrix.
///
/// @code
/// tesk2mp::quantize(prices, 2, tesk2mp::Rounding::half_up);
/// @endcode
template <MatrixSource A>
Matrix<Element<A>> quantize(const A& a, int places, Rounding mode = Rounding::half_even,
                            std::size_t* inexact = nullptr) {
  Matrix<Element<A>> rounded(a);
  Element<A>* const elements = rounded.data();
  for (std::size_t k = 0; k < rounded.rows() * rounded.columns(); ++k) {
    elements[k] = quantize(elements[k], places, mode, inexact);
  }
  return rounded;
}

/// Parts with `places` digits after the point whose sum is exactly that of the given ones, rounded so. Throws
/// InvalidArgument unless all are finite and their digits lie within a million places.
///
/// @code
/// // 33.33, 33.33, 33.34: together 100.00
/// tesk2mp::round_parts(thirds, 2, tesk2mp::Rounding::half_up, tesk2mp::Reconciliation::cumulative);
/// @endcode
inline std::vector<Real> round_parts(std::span<const Real> parts, int places, Rounding mode = Rounding::half_even,
                                     Reconciliation rule = Reconciliation::largest_remainder) {
  std::vector<Real> rounded(parts.size());
  detail::require(quarn::round_parts(parts.size(), parts.data(), places, mode, rule, rounded.data()), "round_parts", 1,
                  "the parts are not all finite, or their digits do not lie within a million places");
  return rounded;
}

}  // namespace tesk2mp

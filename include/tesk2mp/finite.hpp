// The check of matrices for elements that are not finite, in the C++ interface. Part of tesk2mp.hpp.
#pragma once

#include <algorithm>

#include "tesk2mp/options.hpp"
#include "tesk2mp/views.hpp"

namespace tesk2mp {
namespace detail {

/// The part of a matrix that is read: all of it, a triangle with the diagonal, or what stands on and above the first
/// subdiagonal.
enum class Part { whole, lower, upper, hessenberg };

inline Part part_of(Triangle stored) { return stored == Triangle::lower ? Part::lower : Part::upper; }

/// Throws InvalidArgument of this routine and argument for the first element of the part, column by column, that is not
/// finite.
template <MatrixSource A>
void require_finite(const char* routine, Integer position, const A& a, Part part = Part::whole) {
  const MatrixView<const Element<A>> view(a);
  for (std::size_t j = 0; j < view.columns(); ++j) {
    const std::size_t first = part == Part::lower ? j : 0;
    const std::size_t end = part == Part::upper        ? j + 1
                            : part == Part::hessenberg ? std::min(view.rows(), j + 2)
                                                       : view.rows();
    for (std::size_t i = first; i < end; ++i) {
      const Complex& element = view(i, j);  // a real one made complex, or itself
      require(isfinite(element.re) && isfinite(element.im), routine, position, "element (", i, ", ", j,
              ") is not finite");
    }
  }
}

}  // namespace detail
}  // namespace tesk2mp

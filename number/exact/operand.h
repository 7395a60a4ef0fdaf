// The operands of an exact product as matrices of real numbers.
//
// A complex product is a real one of twice the inner dimension and twice the columns: with A = X + iY and B = U + iV
//
//   [X Y] [ U V]  =  [XU - YV   XV + YU]
//         [-V U]
//
// where the parts of an entry stay neighbours.
#pragma once

#include <cstddef>

#include "number/limbs/multiply.h"
#include "quarn/quarnfloat.h"

namespace quarn::exact {

/// An entry and whether it counts with the opposite sign.
struct Entry {
  const QuarnFloat* number;
  bool flip;
};

/// The matrix at `first`, steps counted in numbers. `parts` is 1 for complex entries, else 0.
struct Grid {
  const QuarnFloat* first;
  std::ptrdiff_t row;
  std::ptrdiff_t column;
  unsigned parts;
  bool conjugate;

  Entry left(std::size_t i, std::size_t l) const noexcept {
    const std::size_t part = l & parts;
    return {first + std::ptrdiff_t(i) * row + std::ptrdiff_t(l >> parts) * column + part, part != 0 && conjugate};
  }
  Entry right(std::size_t l, std::size_t j) const noexcept {
    const std::size_t part = (l ^ j) & parts;
    return {first + std::ptrdiff_t(l >> parts) * row + std::ptrdiff_t(j >> parts) * column + part,
            part != 0 && ((l & 1) != 0) != conjugate};
  }
};

/// A product of two numbers that is added to a sum.
struct Term {
  const QuarnFloat* a;
  const QuarnFloat* b;
  bool flip;
};

}  // namespace quarn::exact

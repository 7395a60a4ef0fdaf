// Matrices that own their elements, for what is built aside.
#pragma once

#include <algorithm>
#include <vector>

#include "src/kernels/views.h"

namespace tesk {

/// A matrix of its own, of zeros at first. There is an element to point at even where there are no rows or columns.
template <class T>
class OwnMatrix {
 public:
  OwnMatrix(Integer rows, Integer columns)
      : elements_(std::max<std::size_t>(1, std::size_t(rows) * std::size_t(columns))),
        leading_(std::max<Integer>(1, rows)) {}
  OneBasedMatrix<T> view() { return {elements_.data(), leading_}; }

 private:
  std::vector<T> elements_;
  Integer leading_;
};

template <class T>
void set_identity(Integer n, OneBasedMatrix<T> a) {
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      a(i, j) = T(i == j ? 1.0 : 0.0);
    }
  }
}

}  // namespace tesk

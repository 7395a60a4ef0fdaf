// 1-based views of vectors and matrices, so that code reads like the published algorithm that it follows. Part of
// tesk2mp.hpp, where one_based() makes them from the other views. Nothing is checked.
#pragma once

#include <cstddef>

#include "quarn/quarnfloat.h"

namespace tesk2mp {

using quarn::Integer;

/// Element i, 1-based, of a vector with any stride.
template <class T>
class OneBasedVector {
 public:
  OneBasedVector(T* first, std::ptrdiff_t stride) noexcept : first_(first), stride_(stride) {}
  /// The vector of a kernel's arguments: a negative increment starts at the far end. Null stays null: a call that has
  /// nothing to do may pass it.
  static OneBasedVector of(T* x, Integer n, Integer inc) noexcept {
    const std::ptrdiff_t stride = inc;
    return {stride < 0 && n > 1 && x != nullptr ? x - (std::ptrdiff_t(n) - 1) * stride : x, stride};
  }

  T& operator()(Integer i) const noexcept { return first_[(std::ptrdiff_t(i) - 1) * stride_]; }
  T* first() const noexcept { return first_; }
  std::ptrdiff_t stride() const noexcept { return stride_; }
  /// Elements i, i + 1, ...
  OneBasedVector from(Integer i) const noexcept { return {first_ + (std::ptrdiff_t(i) - 1) * stride_, stride_}; }
  /// The n elements in the opposite order.
  OneBasedVector reversed(Integer n) const noexcept { return {first_ + (std::ptrdiff_t(n) - 1) * stride_, -stride_}; }

 private:
  T* first_;
  std::ptrdiff_t stride_;
};

/// Element (i, j), 1-based, of a matrix with any strides. Reversing both indices turns a lower triangle into an upper
/// one, so that each triangular algorithm is written for the upper triangle alone.
template <class T>
class OneBasedMatrix {
 public:
  OneBasedMatrix(T* a, Integer lda) noexcept : OneBasedMatrix(a, 1, lda) {}
  OneBasedMatrix(T* first, std::ptrdiff_t row_stride, std::ptrdiff_t column_stride) noexcept
      : first_(first), row_stride_(row_stride), column_stride_(column_stride) {}

  T& operator()(Integer i, Integer j) const noexcept { return *at(i, j); }
  OneBasedVector<T> column(Integer j) const noexcept { return {at(1, j), row_stride_}; }
  OneBasedVector<T> row(Integer i) const noexcept { return {at(i, 1), column_stride_}; }
  T* first() const noexcept { return first_; }
  std::ptrdiff_t row_stride() const noexcept { return row_stride_; }
  /// Elements from one column to the next: the leading dimension of a plain matrix.
  std::ptrdiff_t column_stride() const noexcept { return column_stride_; }
  /// The submatrix whose first element is (i, j).
  OneBasedMatrix from(Integer i, Integer j) const noexcept { return {at(i, j), row_stride_, column_stride_}; }
  OneBasedMatrix transposed() const noexcept { return {first_, column_stride_, row_stride_}; }
  OneBasedMatrix reversed(Integer rows, Integer columns) const noexcept {
    return {at(rows, columns), -row_stride_, -column_stride_};
  }
  /// Mirrored in the other diagonal: what was upper triangular stays so.
  OneBasedMatrix antitransposed(Integer order) const noexcept { return reversed(order, order).transposed(); }
  OneBasedMatrix rows_reversed(Integer rows) const noexcept { return {at(rows, 1), -row_stride_, column_stride_}; }
  OneBasedMatrix columns_reversed(Integer columns) const noexcept {
    return {at(1, columns), row_stride_, -column_stride_};
  }

 private:
  T* at(Integer i, Integer j) const noexcept {
    return first_ + (std::ptrdiff_t(i) - 1) * row_stride_ + (std::ptrdiff_t(j) - 1) * column_stride_;
  }

  T* first_;
  std::ptrdiff_t row_stride_;
  std::ptrdiff_t column_stride_;
};

}  // namespace tesk2mp

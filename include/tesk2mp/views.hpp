// Vectors and matrices of the front door: views of the caller's storage, and a matrix that owns its own. Part of
// tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cassert>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <ranges>
#include <span>
#include <type_traits>
#include <vector>

#include "tesk2mp/error.hpp"

namespace tesk2mp {
namespace detail {

/// A container of elements one after the other, which is no span.
template <class Range, class T>
concept Elements = std::ranges::contiguous_range<Range> && std::constructible_from<std::span<T>, Range&> &&
                   !std::same_as<std::remove_cv_t<Range>, std::span<T>>;

}  // namespace detail

/// Elements that lie a fixed, positive or negative, number of places apart: a vector, a row of a matrix. Made from
/// std::vector, std::span, std::array and the like without a word; VectorView<const T> only reads.
template <class T>
class VectorView {
 public:
  using value_type = std::remove_cv_t<T>;

  VectorView(T* first, std::size_t size, std::ptrdiff_t stride = 1) : first_(first), size_(size), stride_(stride) {
    detail::require(stride != 0, "VectorView", 3, "the elements of a vector cannot lie 0 places apart");
  }
  VectorView(std::span<T> elements) : VectorView(elements.data(), elements.size()) {}
  template <detail::Elements<T> Range>
  VectorView(Range& range) : VectorView(std::span<T>(range)) {}
  /// A passing one is good for reading.
  template <detail::Elements<T> Range>
  requires std::is_const_v<T> VectorView(const Range& range) : VectorView(std::span<T>(range)) {}
  template <class U>
  requires(std::same_as<const U, T>) VectorView(const VectorView<U>& other)
      : VectorView(other.data(), other.size(), other.stride()) {}

  T* data() const { return first_; }
  std::size_t size() const { return size_; }
  std::ptrdiff_t stride() const { return stride_; }
  /// Element i, from 0.
  T& operator[](std::size_t i) const {
    assert(i < size_);
    return first_[std::ptrdiff_t(i) * stride_];
  }
  std::vector<value_type> to_vector() const {
    std::vector<value_type> copy;
    copy.reserve(size_);
    for (std::size_t i = 0; i < size_; ++i) {
      copy.push_back((*this)[i]);
    }
    return copy;
  }

 private:
  T* first_;
  std::size_t size_;
  std::ptrdiff_t stride_;
};

/// A matrix by columns in the caller's storage; element (i, j), both from 0, is data()[i + j * leading()].
/// MatrixView<const T> only reads.
template <class T>
class MatrixView {
 public:
  using value_type = std::remove_cv_t<T>;

  /// leading: elements from one column to the next.
  MatrixView(T* data, std::size_t rows, std::size_t columns, std::size_t leading)
      : data_(data), rows_(rows), columns_(columns), leading_(leading) {
    detail::require(leading >= std::max<std::size_t>(1, rows), "MatrixView", 4, "columns that start ", leading,
                    " elements apart cannot have ", rows, " rows");
  }
  /// The elements of `data`, column after column.
  MatrixView(std::span<T> data, std::size_t rows, std::size_t columns)
      : MatrixView(data.data(), rows, columns, std::max<std::size_t>(1, rows)) {
    detail::require(columns == 0 ? data.empty() : data.size() % columns == 0 && data.size() / columns == rows,
                    "MatrixView", 1, data.size(), " elements are no matrix of ", rows, " by ", columns);
  }
  template <class U>
  requires(std::same_as<const U, T>) MatrixView(const MatrixView<U>& other)
      : MatrixView(other.data(), other.rows(), other.columns(), other.leading()) {}

  T* data() const { return data_; }
  std::size_t rows() const { return rows_; }
  std::size_t columns() const { return columns_; }
  std::size_t leading() const { return leading_; }
  T& operator()(std::size_t i, std::size_t j) const {
    assert(i < rows_ && j < columns_);
    return data_[i + j * leading_];
  }
  VectorView<T> row(std::size_t i) const {
    detail::require(i < rows_, "MatrixView::row", 1, "row ", i, " of ", rows_);
    return {data_ + i, columns_, std::ptrdiff_t(leading_)};
  }
  VectorView<T> column(std::size_t j) const {
    detail::require(j < columns_, "MatrixView::column", 1, "column ", j, " of ", columns_);
    return {data_ + j * leading_, rows_};
  }
  /// The block of rows i ... i + rows - 1 and columns j ... j + columns - 1.
  MatrixView block(std::size_t i, std::size_t j, std::size_t rows, std::size_t columns) const {
    detail::require(i <= rows_ && rows <= rows_ - i, "MatrixView::block", 1, "rows ", i, " and ", rows, " more, of ",
                    rows_);
    detail::require(j <= columns_ && columns <= columns_ - j, "MatrixView::block", 2, "columns ", j, " and ", columns,
                    " more, of ", columns_);
    return {data_ + i + j * leading_, rows, columns, leading_};
  }

 private:
  T* data_;
  std::size_t rows_;
  std::size_t columns_;
  std::size_t leading_;
};

/// A matrix that owns its elements, by columns, without gaps.
///
/// @code
/// tesk2mp::Matrix<tesk2mp::Real> a = {{1, 2}, {3, 4}};  // row after row
/// a(0, 1) = 5;                                          // row 0, column 1
/// @endcode
template <class T>
class Matrix {
 public:
  using value_type = T;

  Matrix() = default;
  /// Zeros.
  Matrix(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), elements_(rows * columns) {}
  Matrix(std::initializer_list<std::initializer_list<T>> rows)
      : Matrix(rows.size(), rows.size() == 0 ? 0 : rows.begin()->size()) {
    std::size_t i = 0;
    for (const std::initializer_list<T>& row : rows) {
      detail::require(row.size() == columns_, "Matrix", 1, "row ", i, " has ", row.size(), " elements, row 0 has ",
                      columns_);
      std::size_t j = 0;
      for (const T& element : row) {
        (*this)(i, j++) = element;
      }
      ++i;
    }
  }
  explicit Matrix(const MatrixView<const T>& view) : Matrix(view.rows(), view.columns()) {
    for (std::size_t j = 0; j < columns_; ++j) {
      std::copy_n(view.data() + j * view.leading(), rows_, elements_.begin() + std::ptrdiff_t(j * rows_));
    }
  }
  static Matrix identity(std::size_t order) {
    Matrix unit(order, order);
    for (std::size_t i = 0; i < order; ++i) {
      unit(i, i) = T(1);
    }
    return unit;
  }

  std::size_t rows() const { return rows_; }
  std::size_t columns() const { return columns_; }
  std::size_t leading() const { return std::max<std::size_t>(1, rows_); }
  T* data() { return elements_.data(); }
  const T* data() const { return elements_.data(); }
  T& operator()(std::size_t i, std::size_t j) {
    assert(i < rows_ && j < columns_);
    return elements_[i + j * rows_];
  }
  const T& operator()(std::size_t i, std::size_t j) const {
    assert(i < rows_ && j < columns_);
    return elements_[i + j * rows_];
  }
  MatrixView<T> view() { return {data(), rows_, columns_, leading()}; }
  MatrixView<const T> view() const { return {data(), rows_, columns_, leading()}; }
  operator MatrixView<T>() { return view(); }
  operator MatrixView<const T>() const { return view(); }

  friend bool operator==(const Matrix& a, const Matrix& b) {
    return a.rows_ == b.rows_ && a.columns_ == b.columns_ && a.elements_ == b.elements_;
  }

 private:
  std::size_t rows_ = 0;
  std::size_t columns_ = 0;
  std::vector<T> elements_;
};

namespace detail {

template <class Container>
struct ElementOf {
  using Type = std::remove_cv_t<typename Container::value_type>;
};

}  // namespace detail

/// The numbers that a vector or a matrix is made of: Real or Complex.
template <class Container>
using Element = typename detail::ElementOf<std::remove_cvref_t<Container>>::Type;

template <class T>
concept Scalar = std::same_as<T, Real> || std::same_as<T, Complex>;
/// What can be read as a vector, or written to as one.
template <class V>
concept VectorSource = Scalar<Element<V>> && std::convertible_to<V, VectorView<const Element<V>>>;
template <class V>
concept VectorTarget = Scalar<Element<V>> && std::convertible_to<V, VectorView<Element<V>>>;
/// What can be read as a matrix, or written to as one.
template <class M>
concept MatrixSource = Scalar<Element<M>> && std::convertible_to<M, MatrixView<const Element<M>>>;
template <class M>
concept MatrixTarget = Scalar<Element<M>> && std::convertible_to<M, MatrixView<Element<M>>>;

namespace detail {

/// A vector as the exports take it: a walk with a negative increment starts at the far end.
template <class T>
struct RawVector {
  RawVector(const VectorView<const T>& view)
      : size(count_of(view.size())),
        increment(Integer(view.stride())),
        data(unconst(view.data()) + (view.stride() < 0 && size > 0 ? std::ptrdiff_t(size - 1) * view.stride() : 0)) {}
  Integer size;
  Integer increment;
  T* data;
};

/// A matrix as the exports take it.
template <class T>
struct RawMatrix {
  RawMatrix(const MatrixView<const T>& view)
      : rows(count_of(view.rows())),
        columns(count_of(view.columns())),
        leading(count_of(view.leading())),
        data(unconst(view.data())) {}
  Integer rows;
  Integer columns;
  Integer leading;
  T* data;
};

template <class T>
Integer order_of(const char* routine, Integer position, const RawMatrix<T>& a) {
  require(a.rows == a.columns, routine, position, "a matrix of ", a.rows, " by ", a.columns, " is not square");
  return a.rows;
}

}  // namespace detail
}  // namespace tesk2mp

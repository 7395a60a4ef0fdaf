// Vectors and matrices of the C++ interface: views of the caller's storage, and a matrix that owns its own. Part of
// tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cassert>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <limits>
#include <ranges>
#include <span>
#include <type_traits>
#include <vector>

#include "tesk2mp/error.hpp"
#include "tesk2mp/one_based.hpp"

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

/// The same elements counted from 1.
template <class T>
OneBasedVector<T> one_based(const VectorView<T>& x) {
  return {x.data(), x.stride()};
}
template <class T>
OneBasedMatrix<T> one_based(const MatrixView<T>& a) {
  return {a.data(), 1, std::ptrdiff_t(a.leading())};
}

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
  Matrix(std::size_t rows, std::size_t columns)
      : rows_(rows), columns_(columns), elements_(count_elements(rows, columns)) {}
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
    for (std::size_t j = 0; rows_ > 0 && j < columns_; ++j) {
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
  static std::size_t count_elements(std::size_t rows, std::size_t columns) {
    detail::require(columns == 0 || rows <= std::numeric_limits<std::size_t>::max() / columns, "Matrix", 1, rows,
                    " rows of ", columns, " elements are too many");
    return rows * columns;
  }

  std::size_t rows_ = 0;
  std::size_t columns_ = 0;
  std::vector<T> elements_;
};

namespace detail {

template <class Container>
struct ElementOf {};
template <class Container>
requires requires { typename Container::value_type; }
struct ElementOf<Container> {
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
        reach(size == 0 ? 0 : std::size_t(size - 1) * magnitude(view.stride()) + 1),
        data(unconst(view.data()) + (view.stride() < 0 && size > 0 ? std::ptrdiff_t(size - 1) * view.stride() : 0)) {}
  Integer size;
  Integer increment;
  std::size_t reach;  // from the lowest element to behind the highest one
  T* data;            // the lowest element

 private:
  static std::size_t magnitude(std::ptrdiff_t stride) {
    return std::size_t(count_of(stride < 0 ? std::size_t(0) - std::size_t(stride) : std::size_t(stride)));
  }
};

/// A matrix as the exports take it.
template <class T>
struct RawMatrix {
  RawMatrix(const MatrixView<const T>& view)
      : rows(count_of(view.rows())),
        columns(count_of(view.columns())),
        leading(count_of(view.leading())),
        reach(rows == 0 || columns == 0 ? 0 : (view.columns() - 1) * view.leading() + view.rows()),
        data(unconst(view.data())) {}
  Integer rows;
  Integer columns;
  Integer leading;
  std::size_t reach;
  T* data;
};

/// Whether two vectors or matrices may share elements.
template <class A, class B>
bool overlap(const A& a, const B& b) {
  const std::less<> before;
  return a.reach > 0 && b.reach > 0 && before(a.data, b.data + b.reach) && before(b.data, a.data + a.reach);
}

/// A vector that a kernel reads while it writes to `target`: a copy of it when the two may share elements.
template <class T>
class SourceVector : public RawVector<T> {
 public:
  template <class Target>
  SourceVector(const VectorView<const T>& view, const Target& target) : RawVector<T>(view) {
    if (overlap(*this, target)) {
      copy_ = view.to_vector();
      this->increment = 1;
      this->data = copy_.data();
    }
  }
  /// For a kernel that goes from element to element, which may work in place.
  static SourceVector elementwise(const VectorView<const T>& view, const RawVector<T>& target) {
    const RawVector<T> x(view);
    const bool in_place = x.data == target.data && x.increment == target.increment;
    return SourceVector(view, in_place ? RawVector<T>(VectorView<const T>(nullptr, 0)) : target);
  }
  SourceVector(const SourceVector&) = delete;
  SourceVector& operator=(const SourceVector&) = delete;

 private:
  std::vector<T> copy_;
};

/// The same of a matrix.
template <class T>
class SourceMatrix : public RawMatrix<T> {
 public:
  template <class Target>
  SourceMatrix(const MatrixView<const T>& view, const Target& target) : RawMatrix<T>(view) {
    if (overlap(*this, target)) {
      copy_ = Matrix<T>(view);
      this->leading = count_of(copy_.leading());
      this->data = copy_.data();
    }
  }
  SourceMatrix(const SourceMatrix&) = delete;
  SourceMatrix& operator=(const SourceMatrix&) = delete;

 private:
  Matrix<T> copy_;
};

template <class T>
Integer order_of(const char* routine, Integer position, const RawMatrix<T>& a) {
  require(a.rows == a.columns, routine, position, "a matrix of ", a.rows, " by ", a.columns, " is not square");
  return a.rows;
}

}  // namespace detail
}  // namespace tesk2mp

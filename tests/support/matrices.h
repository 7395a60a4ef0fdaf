// Random vectors and matrices inside guarded storage, and slow mimics to compare with.
#pragma once

#include <doctest/doctest.h>

#include <vector>

#include "quarn/quarnfloat.h"
#include "src/kernels/options.h"
#include "src/kernels/scalar.h"
#include "support/random.h"

namespace support {

/// Random numbers in (-1, 1) with all working digits.
class RandomNumbers : public Random {
 public:
  using Random::Random;

  void make(QuarnFloat& x) {
    x = 0;
    for (int digits = 0; digits < QuarnDigits(); digits += 9) {
      x = (x + QuarnFloat(std::uint32_t(below(1000000000)))) / 1000000000;
    }
    if (below(2) == 0) {
      x = -x;
    }
  }
  void make(Complex& z) {
    make(z.re);
    make(z.im);
  }
  template <class T>
  T next() {
    T x;
    make(x);
    return x;
  }
};

inline bool is_nan(const QuarnFloat& x) { return isnan(x); }
inline bool is_nan(const Complex& x) { return isnan(x.re) && isnan(x.im); }
inline QuarnFloat nan_value(const QuarnFloat*) { return QuarnFloat("nan"); }
inline Complex nan_value(const Complex*) { return {QuarnFloat("nan"), QuarnFloat("nan")}; }

/// A column-major matrix with a leading dimension beyond its rows; what lies between is NaN, so that a read shows in
/// the result and a write in intact().
template <class T>
class Matrix {
 public:
  Matrix(Integer rows, Integer columns, Integer spare = 2)
      : rows_(rows),
        columns_(columns),
        lda_(rows + spare > 0 ? rows + spare : 1),
        store_(std::size_t(lda_) * std::size_t(columns) + 1, nan_value(static_cast<T*>(nullptr))) {}

  T& operator()(Integer i, Integer j) { return store_[std::size_t(i - 1) + std::size_t(j - 1) * std::size_t(lda_)]; }
  const T& operator()(Integer i, Integer j) const { return const_cast<Matrix&>(*this)(i, j); }
  T* data() { return store_.data(); }
  Integer lda() const { return lda_; }
  Integer rows() const { return rows_; }
  Integer columns() const { return columns_; }

  Matrix& randomise(RandomNumbers& random) {
    for (Integer j = 1; j <= columns_; ++j) {
      for (Integer i = 1; i <= rows_; ++i) {
        random.make((*this)(i, j));
      }
    }
    return *this;
  }
  /// No element outside the matrix was written.
  bool intact() const {
    for (std::size_t at = 0; at < store_.size(); ++at) {
      const bool inside = std::ptrdiff_t(at) / lda_ < columns_ && std::ptrdiff_t(at) % lda_ < rows_;
      if (!inside && !is_nan(store_[at])) {
        return false;
      }
    }
    return true;
  }

 private:
  Integer rows_;
  Integer columns_;
  Integer lda_;
  std::vector<T> store_;
};

/// A vector with any increment but zero, NaN between its elements.
template <class T>
class Vector {
 public:
  Vector(Integer n, Integer inc)
      : n_(n),
        inc_(inc),
        store_(std::size_t(n > 0 ? n - 1 : 0) * std::size_t(inc < 0 ? -inc : inc) + 1,
               nan_value(static_cast<T*>(nullptr))) {}

  T& operator()(Integer i) {
    const Integer step = inc_ < 0 ? (n_ - i) * -inc_ : (i - 1) * inc_;
    return store_[std::size_t(step)];
  }
  const T& operator()(Integer i) const { return const_cast<Vector&>(*this)(i); }
  T* data() { return store_.data(); }
  Integer size() const { return n_; }
  Integer inc() const { return inc_; }

  Vector& randomise(RandomNumbers& random) {
    for (Integer i = 1; i <= n_; ++i) {
      random.make((*this)(i));
    }
    return *this;
  }

 private:
  Integer n_;
  Integer inc_;
  std::vector<T> store_;
};

/// op(A) as a matrix of its own.
template <class T>
Matrix<T> op_of_matrix(tesk::Op op, const Matrix<T>& a) {
  const bool flip = op != tesk::Op::none;
  Matrix<T> result(flip ? a.columns() : a.rows(), flip ? a.rows() : a.columns());
  for (Integer j = 1; j <= result.columns(); ++j) {
    for (Integer i = 1; i <= result.rows(); ++i) {
      const T& element = flip ? a(j, i) : a(i, j);
      result(i, j) = op == tesk::Op::conjugate_transpose ? tesk::conjugate(element) : element;
    }
  }
  return result;
}

/// The triangle of A that the options name, zeros elsewhere, ones on a unit diagonal.
template <class T>
Matrix<T> triangle_of_matrix(tesk::Triangle triangle, tesk::Diagonal diagonal, const Matrix<T>& a) {
  Matrix<T> result(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      const bool kept = triangle == tesk::Triangle::upper ? i < j : i > j;
      if (i == j) {
        result(i, j) = diagonal == tesk::Diagonal::unit ? T(1.0) : a(i, j);
      } else {
        result(i, j) = kept ? a(i, j) : T(0.0);
      }
    }
  }
  return result;
}

/// A B by the definition.
template <class T>
Matrix<T> product(const Matrix<T>& a, const Matrix<T>& b) {
  Matrix<T> c(a.rows(), b.columns());
  for (Integer j = 1; j <= c.columns(); ++j) {
    for (Integer i = 1; i <= c.rows(); ++i) {
      T sum(0.0);
      for (Integer l = 1; l <= a.columns(); ++l) {
        sum = sum + a(i, l) * b(l, j);
      }
      c(i, j) = sum;
    }
  }
  return c;
}

/// The largest |a - b| of two matrices of one shape, in units of 10^-digits; infinity when an element is NaN.
template <class T>
double largest_difference(const Matrix<T>& a, const Matrix<T>& b) {
  QuarnFloat largest = 0;
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      const QuarnFloat difference = tesk::modulus(a(i, j) - b(i, j));
      if (isnan(difference)) {
        return HUGE_VAL;
      }
      if (difference > largest) {
        largest = difference;
      }
    }
  }
  return FloatToDouble(largest * QuarnFloat(1, QuarnDigits()));
}

}  // namespace support

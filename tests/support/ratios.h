// The ratios that tests of LAPACK judge results by: a residual over size, norm and unit roundoff.
#pragma once

#include <algorithm>
#include <vector>

#include "support/digits.h"
#include "support/matrices.h"

namespace support {

/// Digits beyond the working ones in which residuals are formed.
inline constexpr int kSpareDigits = 20;

template <class T>
Matrix<T> adjoint(const Matrix<T>& a) {
  return op_of_matrix(tesk::Op::conjugate_transpose, a);
}

/// The largest sum of a column; NaN when an element is.
template <class T>
QuarnFloat norm_of(const Matrix<T>& a) {
  QuarnFloat largest = 0;
  for (Integer j = 1; j <= a.columns(); ++j) {
    QuarnFloat sum = 0;
    for (Integer i = 1; i <= a.rows(); ++i) {
      sum += tesk::modulus(a(i, j));
    }
    largest = largest >= sum ? largest : sum;
  }
  return largest;
}

template <class T>
Matrix<T> difference(const Matrix<T>& a, const Matrix<T>& b) {
  Matrix<T> result(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      result(i, j) = a(i, j) - b(i, j);
    }
  }
  return result;
}

/// The block of so many rows and columns whose first element is (i, j).
template <class T>
Matrix<T> part(const Matrix<T>& a, Integer rows, Integer columns, Integer first_row = 1, Integer first_column = 1) {
  Matrix<T> result(rows, columns);
  for (Integer j = 1; j <= columns; ++j) {
    for (Integer i = 1; i <= rows; ++i) {
      result(i, j) = a(first_row + i - 1, first_column + j - 1);
    }
  }
  return result;
}

template <class T>
Matrix<T> zeros(Integer m, Integer n) {
  Matrix<T> result(m, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= m; ++i) {
      result(i, j) = T(0.0);
    }
  }
  return result;
}

template <class T>
Matrix<T> unit(Integer n) {
  Matrix<T> result = zeros<T>(n, n);
  for (Integer j = 1; j <= n; ++j) {
    result(j, j) = T(1.0);
  }
  return result;
}

/// norm / (size scale u), u the unit roundoff of that many digits; 0 where the norm is. The roundings of a few elements
/// do not average out: small sizes count as 4, with two digits as 8, with one as 32.
inline double ratio(const QuarnFloat& norm, const QuarnFloat& scale, Integer size, int digits) {
  const Integer least = digits == 1 ? 32 : digits == 2 ? 8 : 4;
  return norm == 0 ? 0 : FloatToDouble(norm / (scale * QuarnFloat(5, -digits) * std::max(least, size)));
}
/// Of a - b.
template <class T>
double ratio(const Matrix<T>& a, const Matrix<T>& b, const QuarnFloat& scale, Integer size, int digits) {
  return ratio(norm_of(difference(a, b)), scale, size, digits);
}

/// Each element rounded to the working digits.
template <class T>
Matrix<T> rounded(Matrix<T> a) {
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      a(i, j) = a(i, j) * T(1.0);
    }
  }
  return a;
}

}  // namespace support

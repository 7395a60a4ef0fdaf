// The test ratios of the published tests: norms of residuals in units of n norm(A) u, u the unit roundoff. A ratio
// above 30 counts as wrong there, and here.
#pragma once

#include <algorithm>

#include "support/digits.h"
#include "support/matrices.h"

namespace ratios {

using support::Matrix;

constexpr double kLargestRatio = 30;
constexpr int kSpare = 20;  // digits beyond the working ones in which residuals are formed

template <class T>
Matrix<T> adjoint(const Matrix<T>& a) {
  return op_of_matrix(tesk::Op::conjugate_transpose, a);
}

template <class T>
Matrix<T> unit(Integer rows, Integer columns) {
  Matrix<T> result(rows, columns);
  for (Integer j = 1; j <= columns; ++j) {
    for (Integer i = 1; i <= rows; ++i) {
      result(i, j) = T(double(i == j));
    }
  }
  return result;
}
template <class T>
Matrix<T> unit(Integer n) {
  return unit<T>(n, n);
}

/// Norm of the largest column of a - b, at the precision of the moment.
template <class T>
QuarnFloat distance(const Matrix<T>& a, const Matrix<T>& b) {
  QuarnFloat largest = 0;
  for (Integer j = 1; j <= a.columns(); ++j) {
    QuarnFloat sum = 0;
    for (Integer i = 1; i <= a.rows(); ++i) {
      sum += tesk::modulus(a(i, j) - b(i, j));
    }
    largest = isnan(sum) || sum > largest ? sum : largest;
  }
  return largest;
}

template <class T>
QuarnFloat one_norm(const Matrix<T>& a) {
  Matrix<T> zero = a;
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      zero(i, j) = T(0.0);
    }
  }
  return distance(a, zero);
}

/// residual / (n norm u); 0 where the residual is.
inline double ratio(const QuarnFloat& residual, const QuarnFloat& norm, Integer n, int digits) {
  return residual == 0 ? 0 : FloatToDouble(residual / (norm * QuarnFloat(5, -digits) * std::max<Integer>(1, n)));
}

}  // namespace ratios

// True residuals and dense forms of sparse matrices.
#pragma once

#include <span>
#include <vector>

#include "src/kernels/scalar.h"
#include "support/digits.h"
#include "tesk2mp/tesk2mp.hpp"

namespace krylov {

using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;

inline double ratio(const Real& a, const Real& b) { return FloatToDouble(a / b); }

template <class T>
Matrix<T> dense(const SparseMatrix<T>& a) {
  Matrix<T> full(a.order(), a.order());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    full(a.row(k), a.column(k)) = full(a.row(k), a.column(k)) + a.value(k);
    if (a.storage() == tesk2mp::Storage::lower_triangle && a.row(k) != a.column(k)) {
      full(a.column(k), a.row(k)) = tesk::conjugate(a.value(k));
    }
  }
  return full;
}

/// The elements of column j.
template <class T>
std::vector<T> column(const Matrix<T>& a, std::size_t j) {
  std::vector<T> x;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    x.push_back(a(i, j));
  }
  return x;
}

template <class T>
Real length(const std::vector<T>& x) {
  Real sum;
  for (const T& each : x) {
    sum += tesk::modulus(each) * tesk::modulus(each);
  }
  return sqrt(sum);
}

/// The largest element of V^H V - I.
template <class T>
Real lost_orthogonality(const Matrix<T>& v, int digits) {
  const support::Digits more(2 * digits + 30);
  Real worst;
  for (std::size_t j = 0; j < v.columns(); ++j) {
    for (std::size_t k = 0; k <= j; ++k) {
      T sum = T(j == k ? -1.0 : 0.0);
      for (std::size_t i = 0; i < v.rows(); ++i) {
        sum = sum + tesk::conjugate(v(i, k)) * v(i, j);
      }
      worst = std::max(worst, tesk::modulus(sum));
    }
  }
  return worst;
}

/// ||A x - value x||, of many more digits.
template <class T, class V>
Real residual(const SparseMatrix<T>& a, const std::vector<T>& x, const V& value, int digits) {
  const support::Digits more(2 * digits + 30);
  std::vector<T> y = a.multiply(x);
  for (std::size_t i = 0; i < y.size(); ++i) {
    y[i] = y[i] - x[i] * T(value);
  }
  return length(y);
}

}  // namespace krylov

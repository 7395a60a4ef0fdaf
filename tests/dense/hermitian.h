// Hermitian matrices to test with, and their triangles.
#pragma once

#include "dense/ratios.h"

namespace ratios {

/// Hermitian, of the triangle of a random matrix.
template <class T>
Matrix<T> hermitian(Matrix<T> a) {
  for (Integer j = 1; j <= a.columns(); ++j) {
    a(j, j) = a(j, j) + tesk::conjugate(a(j, j));
    for (Integer i = j + 1; i <= a.rows(); ++i) {
      a(j, i) = tesk::conjugate(a(i, j));
    }
  }
  return a;
}

/// The triangle that is read, NaN in the other.
template <class T>
Matrix<T> only(const char* uplo, Matrix<T> a) {
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      if (*uplo == 'L' ? i < j : i > j) {
        a(i, j) = support::nan_value(static_cast<T*>(nullptr));
      }
    }
  }
  return a;
}

}  // namespace ratios

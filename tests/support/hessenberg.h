// Reduction of a general matrix to upper Hessenberg form, by elimination with row interchanges: exact whenever the
// multipliers are, which keeps integer examples integer.
#pragma once

#include "support/matrices.h"

namespace support {

inline Matrix<QuarnFloat> hessenberg_form(Matrix<QuarnFloat> a) {
  const Integer n = a.rows();
  for (Integer k = 1; k <= n - 2; ++k) {
    Integer pivot = k + 1;
    for (Integer i = k + 2; i <= n; ++i) {
      if (fabs(a(i, k)) > fabs(a(pivot, k))) {
        pivot = i;
      }
    }
    if (a(pivot, k) == 0) {
      continue;
    }
    for (Integer j = 1; j <= n && pivot != k + 1; ++j) {
      std::swap(a(pivot, j), a(k + 1, j));
    }
    for (Integer i = 1; i <= n && pivot != k + 1; ++i) {
      std::swap(a(i, pivot), a(i, k + 1));
    }
    for (Integer i = k + 2; i <= n; ++i) {
      const QuarnFloat factor = a(i, k) / a(k + 1, k);
      for (Integer j = 1; j <= n; ++j) {
        a(i, j) -= factor * a(k + 1, j);
      }
      for (Integer j = 1; j <= n; ++j) {
        a(j, k + 1) += factor * a(j, i);
      }
      a(i, k) = 0;
    }
  }
  return a;
}

}  // namespace support

// Matrices in coordinate storage.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

inline QuarnFloat& real_part(QuarnFloat& x) noexcept { return x; }
inline const QuarnFloat& real_part(const QuarnFloat& x) noexcept { return x; }
inline QuarnFloat& real_part(Complex& x) noexcept { return x.re; }
inline const QuarnFloat& real_part(const Complex& x) noexcept { return x.re; }

inline void divide_by(QuarnFloat& x, const QuarnFloat& a) { x /= a; }
inline void divide_by(Complex& x, const QuarnFloat& a) {
  x.re /= a;
  x.im /= a;
}

/// How a result is formed; both ways define it to the last digit.
enum class Sums {
  in_order,  // each contribution is rounded and added, in storage order
  exact      // the exact sum, rounded once
};

/// What of a matrix is stored: every entry, or the lower triangle of a symmetric or Hermitian one.
enum class Storage { general, lower_triangle };

/// A square matrix of order n that the caller owns: entry k, from 0, has the value a[k] in row irow[k] and column
/// icol[k], from 1.
template <class Value>
struct CoordinateMatrix {
  Integer n;
  Integer nnz;
  const Value* a;
  const Integer* irow;
  const Integer* icol;
};

}  // namespace tesk

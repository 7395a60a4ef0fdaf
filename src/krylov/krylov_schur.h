// Some eigenvalues of a large matrix that is known by its products alone.
#pragma once

#include <functional>

#include "src/kernels/own_matrix.h"
#include "src/krylov/thick_restart.h"

namespace tesk {

/// Which eigenvalues are wanted.
enum class Wanted {
  largest_size,
  smallest_size,
  largest_real,
  smallest_real,
  largest_imaginary,
  smallest_imaginary,
  both_ends
};

template <class T>
struct KrylovProblem {
  bool hermitian;
  Integer n;
  std::function<void(const T* x, T* y)> multiply;  // y := A x
  Wanted wanted;
  Integer count;     // of eigenvalues
  Integer basis;     // most vectors at a time: n, or more than count + 1
  bool each;         // residuals are held against the eigenvalue, not the norm of A
  QuarnFloat tol;    // of residuals
  Integer most;      // products
  QuarnFloat limit;  // ends when the norm of A is larger than that; 0: never
  const T* start;    // n elements; null: random ones
};

/// A V = V S but for residuals below the tolerance: S of order `size` in Schur form, or diagonal of a Hermitian matrix,
/// the wanted eigenvalues first; the columns of V are orthonormal.
template <class T>
struct KrylovSpace {
  OwnMatrix<T> v;
  OwnMatrix<T> s;
  Integer size;  // the count, and one more where a real Schur form would be cut in a block
  QuarnFloat norm;
  Integer products;
  KrylovEnd end;
  QuarnFloat norm_of_a{};  // about; the other norm is that of the inverse where there is a shift
};

template <class T>
KrylovSpace<T> krylov_schur(const KrylovProblem<T>& problem);

/// The eigenvalue of the diagonal block of S that begins in row i.
inline Complex block_value(OneBasedMatrix<Complex> s, Integer i, Integer /*size*/) { return s(i, i); }
inline Complex block_value(OneBasedMatrix<QuarnFloat> s, Integer i, Integer size) {
  if (size == 1) {
    return Complex(s(i, i));
  }
  // Standard form: equal diagonal elements, the others of opposite signs.
  return {s(i, i), sqrt(fabs(s(i + 1, i))) * sqrt(fabs(s(i, i + 1)))};
}

}  // namespace tesk

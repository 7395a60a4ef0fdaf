// Some singular values of a large matrix that is known by its products and those of its adjoint.
#pragma once

#include <functional>

#include "src/kernels/own_matrix.h"
#include "src/krylov/thick_restart.h"

namespace tesk {

/// Of an m by n matrix with m >= n.
template <class T>
struct SingularProblem {
  Integer m;
  Integer n;
  std::function<void(const T* x, T* y)> multiply;  // y := A x
  std::function<void(const T* x, T* y)> multiply_adjoint;
  bool smallest;
  Integer count;
  Integer basis;   // most vectors of each kind at a time: n, or more than count + 1
  QuarnFloat tol;  // of residuals beside the norm of A
  Integer most;    // products
  const T* start;  // n elements; null: random ones
};

/// The columns of U and V, orthonormal, belong to the wanted singular values.
template <class T>
struct SingularSpace {
  OwnMatrix<T> u;
  OwnMatrix<T> v;
  QuarnFloat norm;
  Integer products;
  KrylovEnd end;
};

template <class T>
SingularSpace<T> lanczos_bidiagonal(const SingularProblem<T>& problem);

}  // namespace tesk

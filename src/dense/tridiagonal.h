// The symmetric and Hermitian eigenproblem, without checks: the reduction to a real symmetric tridiagonal matrix, and
// what brings that to diagonal form.
#pragma once

#include "src/dense/householder.h"
#include "src/dense/power_of_ten.h"

namespace tesk {

/// The elements of one triangle with their mirror images, n by n; imaginary parts of the diagonal count as 0. The other
/// triangle is not read.
template <class T>
OwnMatrix<T> hermitian_copy(Triangle triangle, Integer n, OneBasedMatrix<T> a) {
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> full = own.view();
  const OneBasedMatrix<T> lower = triangle == Triangle::lower ? a : a.transposed();
  const bool upper = triangle == Triangle::upper;
  for (Integer j = 1; j <= n; ++j) {
    full(j, j) = lower(j, j);
    exact::clear_imaginary(full(j, j));
    for (Integer i = j + 1; i <= n; ++i) {
      full(i, j) = upper ? conjugate(lower(i, j)) : lower(i, j);
      full(j, i) = conjugate(full(i, j));
    }
  }
  return own;
}

/// A = Q T Q^H of a Hermitian matrix that is given in full: d the diagonal of T, e what stands beside it (n - 1), and
/// below the subdiagonal of A the vectors of Q with their n - 1 factors.
template <class T>
void tridiagonalise(Integer n, OneBasedMatrix<T> a, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e,
                    OneBasedVector<T> tau);

/// That Q, of order n.
template <class T>
void form_q(Integer n, OneBasedMatrix<T> reflectors, const T* tau, OneBasedMatrix<T> q);

/// The power of ten that the largest number of d and e is far from 1 by; 0: none.
inline Integer common_exponent(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e) {
  return far_exponent(std::max(largest_magnitude(n, 1, {d.first(), d.stride(), 0}),
                               largest_magnitude(n - 1, 1, {e.first(), e.stride(), 0})));
}

/// Does the work on the tridiagonal matrix brought near 1 by a power of ten, and takes it back; n when an element is
/// not finite, otherwise what `solve` returns.
template <class Solve>
Integer near_one(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, const Solve& solve) {
  for (Integer i = 1; i <= n; ++i) {
    if (!isfinite(d(i)) || (i < n && !isfinite(e(i)))) {
      return n;
    }
  }
  const OneBasedMatrix<QuarnFloat> diagonal(d.first(), d.stride(), 0);
  const OneBasedMatrix<QuarnFloat> beside(e.first(), e.stride(), 0);
  const Integer exponent = common_exponent(n, d, e);
  multiply_by_power(n, 1, diagonal, -exponent);
  multiply_by_power(n - 1, 1, beside, -exponent);
  const Integer info = solve();
  multiply_by_power(n, 1, diagonal, exponent);
  multiply_by_power(n - 1, 1, beside, exponent);
  return info;
}

/// Eigenvalues of the tridiagonal matrix into d, ascending, and Z := Z times its eigenvectors for a Z of `rows` rows;
/// e is destroyed. Returns how many elements of e did not become negligible, n when an element is not finite.
template <class T>
Integer tridiagonal_qr(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer rows,
                       OneBasedMatrix<T> z);

/// The same by divide and conquer.
template <class T>
Integer divide_and_conquer(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer rows,
                           OneBasedMatrix<T> z);

/// Eigenvalues w, ascending, of the Hermitian matrix of which that triangle is read, and if wanted its eigenvectors
/// into A, at the digits of the moment. Returns INFO as xSYEV does.
template <class T>
Integer hermitian_eigen(bool wants_vectors, Triangle triangle, Integer n, OneBasedMatrix<T> a, QuarnFloat* w);

}  // namespace tesk

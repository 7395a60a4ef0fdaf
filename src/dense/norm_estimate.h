// The 1-norm of a matrix that is known by its products alone: N. J. Higham, FORTRAN codes for estimating the one-norm
// of a real or complex matrix, with applications to condition estimation, ACM Trans. Math. Softw. 14 (1988).
#pragma once

#include <vector>

#include "quarn/functions.h"
#include "src/kernels/level1.h"

namespace tesk {

/// The modulus of a number of any size.
inline QuarnFloat far_modulus(const QuarnFloat& x) { return fabs(x); }
inline QuarnFloat far_modulus(const Complex& x) { return hypot(x.re, x.im); }

inline QuarnFloat unit_of(const QuarnFloat& x) { return QuarnFloat(signbit(x) ? -1 : 1); }
inline Complex unit_of(const Complex& x) {
  const QuarnFloat size = far_modulus(x);
  return size > 0 ? Complex(x.re / size, x.im / size) : Complex(1.0);
}

/// An estimate of the 1-norm of B, of order n >= 1: a lower bound, and hardly ever less than a third of it. product(op,
/// x) does x := op(B) x; when it returns false the estimate ends with infinity.
template <class T, class Product>
QuarnFloat estimated_one_norm(Integer n, const Product& product) {
  constexpr int kMostRounds = 5;
  QuarnFloat infinity("inf");
  std::vector<T> store(std::size_t(n), T(1 / QuarnFloat(n)));
  const OneBasedVector<T> x(store.data(), 1);
  const auto norm = [&] {
    QuarnFloat sum;
    for (const T& each : store) {
      sum += far_modulus(each);
    }
    return sum;
  };
  const auto replace_by_units = [&] {
    bool changed = false;
    for (T& each : store) {
      T unit = unit_of(each);
      changed = changed || unit != each;
      each = std::move(unit);
    }
    return changed;
  };
  if (!product(Op::none, x)) {
    return infinity;
  }
  QuarnFloat estimate = norm();
  if (n == 1) {
    return estimate;
  }
  replace_by_units();
  std::vector<T> units = store;
  if (!product(Op::conjugate_transpose, x)) {
    return infinity;
  }
  Integer largest = index_of_largest(n, x);
  for (int round = 2; round <= kMostRounds; ++round) {
    fill(n, T(), x);
    x(largest) = T(1.0);
    if (!product(Op::none, x)) {
      return infinity;
    }
    const QuarnFloat next = norm();
    const bool grows = next > estimate;
    estimate = next >= estimate || isnan(next) ? next : estimate;
    replace_by_units();
    if (!grows || units == store) {
      break;
    }
    units = store;
    if (!product(Op::conjugate_transpose, x)) {
      return infinity;
    }
    const Integer former = largest;
    largest = index_of_largest(n, x);
    if (magnitude(x(former)) == magnitude(x(largest))) {
      break;
    }
  }
  // A vector that the rounds do not find.
  for (Integer i = 1; i <= n; ++i) {
    const QuarnFloat size = 1 + QuarnFloat(i - 1) / (n - 1);
    x(i) = T(i % 2 == 1 ? size : -size);
  }
  if (!product(Op::none, x)) {
    return infinity;
  }
  const QuarnFloat alternating = 2 * norm() / (3 * QuarnFloat(n));
  return alternating > estimate ? alternating : estimate;
}

}  // namespace tesk

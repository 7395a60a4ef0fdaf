// What is done with Schur forms: Sylvester equations and the order of eigenvalues, real and complex, without checks.
#pragma once

#include <algorithm>

#include "src/dense/householder.h"

namespace tesk {

/// The largest element on and above the diagonal, and beside it.
template <class T>
QuarnFloat largest_element(Integer n, OneBasedMatrix<T> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= std::min(n, j + 1); ++i) {
      largest = std::max(largest, magnitude(a(i, j)));
    }
  }
  return largest;
}

/// Where to divide a Schur form of order n between two blocks; 0 for a single block.
template <class T>
Integer half_of_form(Integer n, OneBasedMatrix<T> a) {
  const Integer half = n / 2;
  if (half == 0 || is_zero(a(half + 1, half))) {
    return half;
  }
  return half + 1 < n ? half + 1 : half - 1;
}

/// Solves A X + sign X B = C for X in the place of C, A (m by m) and B (n by n) in Schur form. Returns whether a
/// divisor was as small as roundings of A and B and has been replaced: the two have a common eigenvalue, or nearly.
template <class T>
bool solve_triangular_sylvester(int sign, Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b,
                                OneBasedMatrix<T> c);

/// Exchanges two neighbouring parts of a Schur form.
template <class T>
class SchurOrder {
 public:
  /// T of order n; the Schur vectors Q, of `rows` rows, are updated.
  SchurOrder(Integer n, OneBasedMatrix<T> t, Integer rows, OneBasedMatrix<T> q) : n_(n), rows_(rows), t_(t), q_(q) {}

  /// Rows of the diagonal block that begins in row i.
  Integer size_at(Integer i) const { return i < n_ && !is_zero(t_(i + 1, i)) ? 2 : 1; }
  /// The first row of the block that has row i.
  Integer start_of(Integer i) const { return i > 1 && !is_zero(t_(i, i - 1)) ? i - 1 : i; }
  /// Moves the block that begins in row `from` to begin in row *to, or as near as it came when false is returned: two
  /// eigenvalues were too close for an exchange.
  bool move(Integer from, Integer* to);

 private:
  bool exchange(Integer i, Integer first, Integer second);
  bool swap_blocks(Integer i, Integer p, Integer q);
  void standardise(Integer i);

  Integer n_;
  Integer rows_;
  OneBasedMatrix<T> t_;
  OneBasedMatrix<T> q_;
};

}  // namespace tesk

// Matrices for spectra, and what is compared with references.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/random_number.h"
#include "tesk2mp/tesk2mp.hpp"

namespace spectra {

namespace proven = tesk2mp::proven;
using proven::Bounded;
using proven::BoundedRoot;
using support::random_number;
using tesk2mp::Matrix;
using tesk2mp::Real;

/// Random elements of spread columns; now and then a column twice, or small integers, which have multiple eigenvalues.
template <class T>
Matrix<T> random_matrix(support::Random& random, std::size_t m, std::size_t n) {
  Matrix<T> a(m, n);
  const bool integers = random.once_in(4);
  const bool twice = random.once_in(4);
  for (std::size_t j = 0; j < n; ++j) {
    const T scale(Real(1, random.once_in(3) ? int(random.between(-8, 8)) : 0));
    for (std::size_t i = 0; i < m; ++i) {
      a(i, j) = integers ? T(double(random.between(-1, 1))) : random_number<T>(random) * scale;
      if (twice && j > 0) {
        a(i, j) = a(i, 0);
      }
    }
  }
  return a;
}

inline Real size(const Complex& z) { return sqrt(z.re * z.re + z.im * z.im); }

/// As many references in each disc as it counts.
inline void check_roots(const std::vector<BoundedRoot>& roots, const std::vector<Complex>& references,
                        const Real& slack) {
  REQUIRE(roots.size() == references.size());
  for (const BoundedRoot& root : roots) {
    if (!root.error.is_finite()) {
      continue;
    }
    std::size_t inside = 0;
    bool real = true;
    for (const Complex& reference : references) {
      if (size(reference - root.value) <= root.error.value() + slack) {
        ++inside;
        real = real && fabs(reference.im) <= slack;
      }
    }
    CHECK(inside >= root.count);
    if (root.is_real) {
      CHECK(root.value.im == 0);
      CHECK((inside > root.count || real));
    }
  }
}

/// Is a column of X within its bounds of the reference of norm 1, up to a factor of modulus 1: that of the inner
/// product brings the two nearest to each other?
template <class T>
bool is_near_vector(const proven::BoundedMatrix<T>& x, std::size_t j, const std::vector<Complex>& reference) {
  Complex inner;
  for (std::size_t i = 0; i < reference.size(); ++i) {
    inner = inner + conj(reference[i]) * Complex(x.values()(i, j));
  }
  const Complex turn = inner / Complex(size(inner));
  Real distance;
  Real bound;
  for (std::size_t i = 0; i < reference.size(); ++i) {
    const Complex difference = Complex(x.values()(i, j)) - turn * reference[i];
    distance += difference.re * difference.re + difference.im * difference.im;
    bound += x.errors()(i, j) * x.errors()(i, j);
  }
  return distance <= bound;
}

}  // namespace spectra

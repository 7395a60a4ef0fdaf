// Random sparse matrices that have factors.
#pragma once

#include <vector>

#include "sparse/entries.h"
#include "src/kernels/scalar.h"
#include "tesk2mp/tesk2mp.hpp"

namespace samples {

using tesk2mp::Real;

/// About three entries a row beside a diagonal that may be missing; sizes 10 to the power +-`spread`.
template <class T>
tesk2mp::SparseMatrix<T> general_sample(support::Random& random, std::size_t n, int spread) {
  tesk2mp::SparseMatrix<T> a(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto value = [&] {
      return entries::random_value<T>(random) * T(tesk2mp::Real(1, Integer(random.between(-spread, spread))));
    };
    a.add(i, (i + 1) % n, value());
    if (!random.once_in(3)) {
      a.add(i, i, value());
    }
    for (int k = 0; k < 2; ++k) {
      a.add(i, std::size_t(random.below(n)), value());
    }
  }
  a.canonicalise(tesk2mp::Duplicates::sum, tesk2mp::Zeros::keep);
  return a;
}

template <class T>
tesk2mp::SparseMatrix<T> definite_sample(support::Random& random, std::size_t n) {
  tesk2mp::SparseMatrix<T> a(n, tesk2mp::Storage::lower_triangle);
  for (std::size_t i = 0; i < n; ++i) {
    for (int k = 0; k < 2 && i > 0; ++k) {
      a.add(i, std::size_t(random.below(i)), entries::random_value<T>(random));
    }
  }
  a.canonicalise();
  std::vector<tesk2mp::Real> sums(n, tesk2mp::Real(1));
  for (std::size_t k = 0; k < a.entries(); ++k) {
    sums[a.row(k)] += tesk::magnitude(a.value(k));
    sums[a.column(k)] += tesk::magnitude(a.value(k));
  }
  for (std::size_t i = 0; i < n; ++i) {
    a.add(i, i, T(2 * sums[i]));
  }
  a.canonicalise();
  return a;
}

/// The five-point Laplacian of a square, or with its left neighbours counting for more.
inline tesk2mp::SparseMatrix<Real> grid(std::size_t side, tesk2mp::Storage storage, const Real& wind = 0) {
  tesk2mp::SparseMatrix<Real> a(side * side, storage);
  const bool whole = storage == tesk2mp::Storage::general;
  for (std::size_t i = 0; i < side * side; ++i) {
    a.add(i, i, 4);
    if (i >= side) {
      a.add(i, i - side, -1 - wind);
    }
    if (i % side != 0) {
      a.add(i, i - 1, -1 - wind);
    }
    if (whole && i % side != side - 1) {
      a.add(i, i + 1, -1 + wind);
    }
    if (whole && i + side < side * side) {
      a.add(i, i + side, -1 + wind);
    }
  }
  a.canonicalise();
  return a;
}

}  // namespace samples

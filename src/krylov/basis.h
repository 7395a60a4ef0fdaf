// The orthonormal vectors of a Krylov space.
#pragma once

#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/householder.h"
#include "src/frame/constants.h"
#include "src/kernels/euclidean_norm.h"
#include "src/util/random.h"

namespace tesk {

/// The Euclidean norm, of exact squares where these are in the range.
template <class T>
QuarnFloat length_of(Integer n, OneBasedVector<T> x) {
  QuarnFloat length = sqrt(sum_of_squares(n, x));
  return is_safe_norm(length) ? length : euclidean_norm(n, x);
}

template <class T>
class Basis {
 public:
  /// Room for `most` vectors of n elements.
  Basis(Integer n, Integer most) : n_(n), v_(n, most) {}

  OneBasedVector<T> vector(Integer j) { return v_.view().column(j); }
  OneBasedMatrix<T> view() { return v_.view(); }
  /// The largest vector that orthogonalise() has had: the norm of the operator, nearly.
  const QuarnFloat& norm() const { return norm_; }

  QuarnFloat norm_of(Integer j) { return length_of(n_, vector(j)); }

  /// The first vector becomes x of length 1; false when it has no length.
  bool take(const T* x) {
    copy(n_, OneBasedVector<T>(const_cast<T*>(x), 1), vector(1));
    return normalise(1, norm_of(1));
  }

  /// Vector j becomes a random one, orthogonal to those before it and of length 1.
  void take_random(Integer j) {
    const auto number = [this] { return QuarnFloat(int(next_nine_digits(0, seed_) - 500'000'000), -9); };
    do {
      for (Integer i = 1; i <= n_; ++i) {
        vector(j)(i) = T(number());
        if constexpr (std::is_same_v<T, Complex>) {
          vector(j)(i).im = number();
        }
      }
    } while (!normalise(j, make_orthogonal(j, nullptr, norm_of(j))));
  }

  /// Takes from vector j, the image of one before it, its parts along those before it, which are added to `parts`.
  /// Returns the norm of what is left, 0 when that is rounding; unless it is, vector j gets length 1.
  QuarnFloat orthogonalise(Integer j, T* parts) {
    const QuarnFloat size = norm_of(j);
    norm_ = size > norm_ ? size : norm_;
    QuarnFloat left = make_orthogonal(j, parts, norm_);
    normalise(j, left);
    return left;
  }

  /// The first `kept` vectors become combinations of the first `size` ones by the columns of Q.
  void rotate(Integer size, Integer kept, OneBasedMatrix<T> q) {
    constexpr Integer kRows = 256;
    OwnMatrix<T> turned(kRows, kept);
    for (Integer row = 1; row <= n_; row += kRows) {
      QuarnCheckInterrupt();
      const Integer rows = std::min(kRows, n_ - row + 1);
      const OneBasedMatrix<T> part = v_.view().from(row, 1);
      exact::multiply_matrices(Op::none, Op::none, rows, kept, size, T(1.0), part, q, T(), turned.view());
      for (Integer j = 1; j <= kept; ++j) {
        copy(rows, turned.view().column(j), part.column(j));
      }
    }
  }

 private:
  // Two are enough unless the vector is nearly a combination of the others.
  static constexpr int kMostPasses = 5;

  bool normalise(Integer j, const QuarnFloat& size) {
    if (!(size > 0) || !isfinite(size)) {
      return false;
    }
    scale(n_, 1 / size, vector(j));
    return true;
  }

  /// Gram-Schmidt, repeated until nothing more is lost.
  QuarnFloat make_orthogonal(Integer j, T* parts, const QuarnFloat& reference) {
    QuarnFloat size = norm_of(j);
    const QuarnFloat rounding = 10 * epsilon() * reference;
    std::vector<T> along(static_cast<std::size_t>(j));
    const OneBasedVector<T> view(along.data(), 1);
    for (int pass = 0; pass < kMostPasses && isfinite(size) && size > rounding; ++pass) {
      exact::multiply_matrix_vector(Op::conjugate_transpose, n_, j - 1, T(1.0), v_.view(), vector(j), T(), view);
      exact::multiply_matrix_vector(Op::none, n_, j - 1, T(-1.0), v_.view(), view, T(1.0), vector(j));
      for (Integer i = 0; parts != nullptr && i < j - 1; ++i) {
        parts[i] = parts[i] + along[std::size_t(i)];
      }
      const QuarnFloat before = std::exchange(size, norm_of(j));
      if (10 * size >= 7 * before && size > rounding) {
        return size;
      }
    }
    return isfinite(size) && size <= rounding ? QuarnFloat() : size;
  }

  Integer n_;
  OwnMatrix<T> v_;
  QuarnFloat norm_;
  Integer seed_[4] = {kDefaultSeed[0], kDefaultSeed[1], kDefaultSeed[2], kDefaultSeed[3]};
};

}  // namespace tesk

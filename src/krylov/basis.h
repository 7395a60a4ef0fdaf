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

/// x := x / size; false, and x as it was, where the size is 0 or not finite.
template <class T>
bool normalise(Integer n, const QuarnFloat& size, OneBasedVector<T> x) {
  if (!(size > 0) || !isfinite(size)) {
    return false;
  }
  scale(n, 1 / size, x);
  return true;
}

template <class T>
class Basis {
 public:
  /// Storage for `most` vectors of n elements.
  Basis(Integer n, Integer most) : n_(n), v_(n, most) {}

  OneBasedVector<T> vector(Integer j) { return v_.view().column(j); }
  OneBasedMatrix<T> view() { return v_.view(); }
  /// The largest norm of a vector given to orthogonalise(): an estimate, from below, of the norm of the operator.
  const QuarnFloat& norm() const { return norm_; }

  QuarnFloat norm_of(Integer j) { return length_of(n_, vector(j)); }

  /// The first vector becomes `start` of length 1, or a random one where that is null or its length is 0.
  void begin(const T* start) {
    if (start != nullptr) {
      copy(n_, OneBasedVector<T>(const_cast<T*>(start), 1), vector(1));
    }
    if (start == nullptr || !normalise(n_, norm_of(1), vector(1))) {
      take_random(1);
    }
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
    } while (!normalise(n_, make_orthogonal(j, nullptr, norm_of(j)), vector(j)));
  }

  /// Takes from vector j, the image of one before it, its parts along those before it, which are added to `parts`.
  /// Returns the norm of what is left, 0 when that is rounding; unless it is, vector j gets length 1.
  QuarnFloat orthogonalise(Integer j, T* parts) {
    const QuarnFloat size = norm_of(j);
    norm_ = size > norm_ ? size : norm_;
    QuarnFloat left = make_orthogonal(j, parts, norm_);
    normalise(n_, left, vector(j));
    return left;
  }

  /// orthogonalise() of the vector after the first j. Where that leaves nothing, the space is invariant: the next one
  /// is random then, unless there are n vectors already.
  QuarnFloat couple(Integer j, T* parts) {
    QuarnFloat coupling = orthogonalise(j + 1, parts);
    if (j == n_ && isfinite(coupling)) {
      return {};
    }
    if (coupling == 0) {
      take_random(j + 1);
    }
    return coupling;
  }

  /// After a restart that keeps `kept` of `size` vectors the next one is the one after them, or a random one.
  void resume(Integer size, Integer kept, bool fresh) {
    if (fresh) {
      take_random(kept + 1);
    } else {
      copy(n_, vector(size + 1), vector(kept + 1));
    }
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

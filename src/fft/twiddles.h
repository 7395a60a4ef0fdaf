// Points on the unit circle at the working precision.
#pragma once

#include <cstdint>
#include <vector>

#include "src/frame/constants.h"
#include "tesk2mp/options.hpp"

namespace tesk {

using tesk2mp::Direction;

/// Evaluates rotations one by one.
class Circle {
 public:
  explicit Circle(const Constants& constants);

  Accuracy accuracy() const { return accuracy_; }

  /// cos(2 pi k/n) + i sin(2 pi k/n), 0 <= k <= n. Classic: the host's functions of the angle as it stands, with the
  /// classic pi in it. Full: the angle is folded into the first octant in whole numbers, so that each part is good to
  /// a unit or two of 10^-QuarnDigits(), at worst 4.
  Complex rotation(Integer k, Integer n) const;

  /// The same for an angle of `parts` of n parts of a quarter turn, as it stands.
  Complex within_quarter(std::int64_t parts, std::int64_t n) const;

 private:
  Accuracy accuracy_;
  QuarnFloat pi_;
  QuarnFloat two_pi_;
};

/// An angle of k/n turns, 0 <= k <= n, as the mirror image of one of the first octant.
class Folding {
 public:
  Folding(Integer k, Integer n);

  /// The angle in the first octant: so many of n parts of a quarter turn, at most n/2.
  std::int64_t parts() const { return parts_; }
  /// From the cosine and sine of that angle to those of the whole one.
  Complex unfolded(Complex w) const;

 private:
  std::int64_t parts_;
  bool lower_half_;
  bool left_half_;
  bool steep_;
};

/// The rotations of one pass, multiples of one n-th of a turn. Classic: each is evaluated when it is asked for. Full:
/// each is the product of two out of some sqrt(n/2) evaluated ones, a coarse and a fine angle of the first octant. The
/// fine ones are kept as distances from 1, cos - 1 and sin, which are small: so a product is about as good as an
/// evaluation.
class Twiddles {
 public:
  /// uses: how many rotations will be asked for. Few are evaluated one by one.
  Twiddles(const Circle& circle, Integer n, std::int64_t uses);

  Complex rotation(Integer k) const;

 private:
  const Circle& circle_;
  Integer n_;
  std::int64_t unit_ = 1;  // what all folded angles are multiples of, in parts of the quarter turn
  std::int64_t block_ = 0;
  std::vector<Complex> coarse_;
  std::vector<Complex> fine_;
};

/// re + i im turned by the angle of w: by its opposite forward.
template <Direction direction>
Complex rotated(const QuarnFloat& re, const QuarnFloat& im, const Complex& w) {
  if constexpr (direction == Direction::forward) {
    return {re * w.re + im * w.im, im * w.re - re * w.im};
  } else {
    return {re * w.re - im * w.im, im * w.re + re * w.im};
  }
}

inline QuarnFloat twice(const QuarnFloat& x) { return x + x; }

}  // namespace tesk

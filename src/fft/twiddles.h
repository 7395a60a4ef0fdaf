// Points on the unit circle, one by one, at the working precision.
#pragma once

#include "src/frame/constants.h"

namespace tesk {

enum class Direction { forward, backward };

/// Evaluates the rotations that the passes multiply by. Nothing is tabulated.
class TwiddleSource {
 public:
  explicit TwiddleSource(const Constants& constants);

  /// cos(2 pi k/n) + i sin(2 pi k/n), 0 <= k <= n. Classic: the host's functions of the angle as it stands, with the
  /// classic pi in it. Full: the angle is folded into the first octant in whole numbers, so that each part is good to
  /// about one unit in the last place.
  Complex rotation(Integer k, Integer n) const;

 private:
  Complex folded_rotation(Integer k, Integer n) const;

  Accuracy accuracy_;
  QuarnFloat pi_;
  QuarnFloat two_pi_;
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

// Points of the unit circle as fixed-point fractions.
#pragma once

#include <vector>

#include "number/fixed/words.h"

namespace quarn::block {

/// exp(-2 pi i k / n) = c - i s as magnitudes of L places and the signs of c and s: fractions rounded down, off by less
/// than 1.01 units; 1 is one unit less.
struct Rotation {
  std::vector<Limb> cosine;
  std::vector<Limb> sine;
  bool cosine_negative = false;
  bool sine_negative = false;
};

/// Folds angles to an octant and multiplies entries of two tables of some sqrt(n / 8) points each.
class UnitCircle {
 public:
  UnitCircle(std::int64_t n, int places);
  Rotation rotation(std::int64_t k) const;

 private:
  struct Point {
    std::vector<Limb> cosine;
    std::vector<Limb> sine;
  };

  Point within_octant(std::int64_t index) const;

  std::int64_t n_;
  int places_;
  std::int64_t unit_;   // eighths of the n-th part of the circle that all angles are multiples of
  std::int64_t block_;  // fine points
  std::vector<Point> coarse_;
  std::vector<Point> fine_;
};

}  // namespace quarn::block

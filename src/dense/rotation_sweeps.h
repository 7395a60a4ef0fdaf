// Sweeps of plane rotations on the columns of a matrix, many at a time: rotations of neighbouring planes of several
// sweeps make a small orthogonal matrix, and a product with it, which rounds each entry once, does their work. B. Lang,
// Using level 3 BLAS in rotation-based algorithms, SIAM J. Sci. Comput. 19 (1998).
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "src/dense/householder.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/rotation.h"

namespace tesk {

template <class T>
class RotationSweeps {
 public:
  /// Of a matrix of `rows` rows, none for no work at all.
  RotationSweeps(Integer rows, OneBasedMatrix<T> z) : rows_(rows), z_(z) {}

  /// A sweep that starts with columns plane and plane + 1 and goes down.
  void begin(Integer plane) {
    if (rows_ > 0) {
      if (sweeps_.size() == kSweeps) {
        apply();
      }
      sweeps_.push_back({plane, {}});
    }
  }
  /// The next rotation of the sweep: columns (i + 1, i) := (c x + s y, c y - s x).
  void add(const QuarnFloat& c, const QuarnFloat& s) {
    if (rows_ > 0) {
      sweeps_.back().turns.push_back({c, s});
    }
  }
  /// Does what has been put off.
  void apply() {
    // Rotation i of sweep k follows those of i - 1, i and i + 1 of sweep k - 1: bands of constant i - k, the upper ones
    // first, respect that.
    Integer top = 0;
    Integer bottom = 0;
    for (std::size_t k = 0; k < sweeps_.size(); ++k) {
      const Integer upper = sweeps_[k].high - Integer(k);
      const Integer lower = upper - Integer(sweeps_[k].turns.size()) + 1;
      top = k == 0 ? upper : std::max(top, upper);
      bottom = k == 0 ? lower : std::min(bottom, lower);
    }
    if (!sweeps_.empty()) {
      for (; top >= bottom; top -= kPlanes) {
        apply_band(top - kPlanes + 1, top);
      }
    }
    sweeps_.clear();
  }

 private:
  static constexpr std::size_t kSweeps = 16;
  static constexpr Integer kPlanes = 16;
  static constexpr Integer kFewRows = 16;

  struct Sweep {
    Integer high;
    std::vector<std::pair<QuarnFloat, QuarnFloat>> turns;
  };
  /// The planes of sweep k with lower <= i - k <= upper.
  struct Range {
    Integer first;
    Integer last;
  };
  Range range(std::size_t k, Integer lower, Integer upper) const {
    const Sweep& sweep = sweeps_[k];
    return {std::max(sweep.high - Integer(sweep.turns.size()) + 1, lower + Integer(k)),
            std::min(sweep.high, upper + Integer(k))};
  }
  template <class Turn>
  void for_each(Integer lower, Integer upper, Turn turn) const {
    for (std::size_t k = 0; k < sweeps_.size(); ++k) {
      const Range planes = range(k, lower, upper);
      for (Integer i = planes.last; i >= planes.first; --i) {
        const auto& [c, s] = sweeps_[k].turns[std::size_t(sweeps_[k].high - i)];
        turn(i, c, s);
      }
    }
  }

  void apply_band(Integer lower, Integer upper) {
    Integer first = 0;
    Integer last = 0;
    Integer count = 0;
    for (std::size_t k = 0; k < sweeps_.size(); ++k) {
      const Range planes = range(k, lower, upper);
      if (planes.first <= planes.last) {
        first = count == 0 ? planes.first : std::min(first, planes.first);
        last = count == 0 ? planes.last + 1 : std::max(last, planes.last + 1);
        count += planes.last - planes.first + 1;
      }
    }
    const Integer size = last - first + 1;
    if (rows_ < kFewRows || count < size * size / 8) {
      for_each(lower, upper, [&](Integer i, const QuarnFloat& c, const QuarnFloat& s) {
        rotate(rows_, z_.column(i + 1), z_.column(i), c, s);
      });
      return;
    }
    OwnMatrix<QuarnFloat> own(size, size);
    const OneBasedMatrix<QuarnFloat> turned = own.view();
    std::vector<Range> filled;  // the rows of each column that are not zero
    for (Integer j = 1; j <= size; ++j) {
      turned(j, j) = 1;
      filled.push_back({j, j});
    }
    for_each(lower, upper, [&](Integer i, const QuarnFloat& c, const QuarnFloat& s) {
      const Integer j = i - first + 1;
      Range& x = filled[std::size_t(j)];
      Range& y = filled[std::size_t(j - 1)];
      x = {std::min(x.first, y.first), std::max(x.last, y.last)};
      y = x;
      rotate(x.last - x.first + 1, turned.column(j + 1).from(x.first), turned.column(j).from(x.first), c, s);
    });
    const Integer rows = kParts<T> * rows_;
    const OneBasedMatrix<QuarnFloat> z = parts(z_.from(1, first));
    OwnMatrix<QuarnFloat> product(rows, size);
    exact::multiply_matrices(Op::none, Op::none, rows, size, size, QuarnFloat(1), z, turned, QuarnFloat(),
                             product.view());
    for (Integer j = 1; j <= size; ++j) {
      swap_vectors(rows, product.view().column(j), z.column(j));
    }
  }

  Integer rows_;
  OneBasedMatrix<T> z_;
  std::vector<Sweep> sweeps_;
};

}  // namespace tesk

// Where a butterfly finds its numbers.
//
// A block of r*m numbers holds r sub-blocks of m numbers, each a Hermitian sequence in half-complex storage: real
// parts ascending from the start, imaginary parts descending from the end. A pass turns the sub-blocks into one
// half-complex sequence of length r*m, or back. The butterfly for the index j inside a sub-block, 0 <= j <= m/2,
// has the same numbers on either side, so that it works in place:
//
//   element j of sub-block q:    low(q) + i high(q)
//   element j + s*m of block:    low(s) + i high(r-1-s) for 2s < r, otherwise high(r-1-s) - i low(s)
//
// For j = 0 and for j = m/2 there is one number a sub-block, low(q). Element s*m of the block is then low(s) +
// i low(r-s) for 2s < r, and element m/2 + s*m is low(s) + i low(r-1-s) for 2s < r-1; low(0) in the first case and
// the number in the middle in both have no partner and are real.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

class Slots {
 public:
  /// block: its first number, m: the length of a sub-block, j: the index inside it.
  Slots(QuarnFloat* block, Integer m, Integer j) : low_(block + j), high_(block + (m - j)), m_(m) {}

  QuarnFloat& low(Integer q) const { return low_[q * m_]; }
  QuarnFloat& high(Integer q) const { return high_[q * m_]; }

 private:
  QuarnFloat* low_;
  QuarnFloat* high_;
  Integer m_;
};

}  // namespace tesk

// Totals of many entries at once: each number is aligned to its line's largest exponent once for all entries that it
// takes part in, so that a term is a product of columns alone.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/exact/dot.h"
#include "number/exact/pack.h"

namespace quarn::exact {

/// Rows by columns of a tile.
inline constexpr std::size_t kTileEdge = 16;

/// Limbs in front of the largest possible term of a total.
inline constexpr std::size_t kTotalHead = 2;

/// Limbs that hold every number of a line, or 0: more than a tile takes, or infinities and NaN among them.
int aligned_limbs(const Line& line) noexcept;

/// Nanoseconds of a term, and of aligning a number.
double cost_of_aligned_term(int limbs) noexcept;
inline constexpr double kCostOfAligning = 9;

/// The totals of a tile of up to kTileEdge rows and columns whose lines have up to `limbs` limbs.
class AlignedTile {
 public:
  AlignedTile(int limbs, std::size_t rows, std::size_t columns);

  /// Adds the terms of the inner index to entries of which a line is marked `exactly`; lines that aligned_limbs()
  /// refuses are left out.
  void add(const Grid& a, const Grid& b, std::size_t first_row, std::size_t first_column, std::size_t inner,
           const Line* rows, const Line* columns);

  /// The total of an entry; total.limbs has room for length() limbs. Returns whether it is zero.
  bool total(std::size_t row, std::size_t column, std::int64_t top, Total& total) noexcept;
  std::size_t length() const noexcept { return length_; }

 private:
  int limbs_;
  std::size_t rows_;
  std::size_t columns_;
  std::size_t length_;
#if QUARN_LIMB_BITS == 64
  std::size_t step_;  // of the inner index
  Scratch<__int128> sums_;
  Scratch<std::int64_t> left_;
  Scratch<std::int64_t> right_;
#endif
};

}  // namespace quarn::exact

// Constants, coefficients and reduction tables of the fixed-point functions. Each thread keeps its own, to more words
// than it ever asked for, and uses their leading words.
#pragma once

#include <memory>
#include <vector>

#include "number/elementary/words.h"

namespace quarn::fixed {

/// Each look-up settles eight more bits of the argument.
inline constexpr int kStageBits = 8;

/// Rows of fractions of equally many words, filled when they are first looked at.
class LazyTable {
 public:
  LazyTable(int rows, int columns, int words);
  int words() const { return words_; }
  bool filled(int row) const { return filled_[std::size_t(row)]; }
  /// All columns of the row are in place.
  void mark_filled(int row) { filled_[std::size_t(row)] = true; }
  /// The row's fraction in the column, all its words, to be filled.
  Word* fraction(int row, int column = 0) { return &storage_[start(row, column)]; }
  /// The leading n words of it.
  const Word* leading(int row, int column, int n) const { return &storage_[start(row, column)] + (words_ - n); }

 private:
  std::size_t start(int row, int column) const {
    return (std::size_t(row) * std::size_t(columns_) + std::size_t(column)) * std::size_t(words_);
  }

  int columns_;
  int words_;
  std::unique_ptr<Word[]> storage_;
  std::vector<bool> filled_;
};

/// Makes everything below good for n words.
void prepare_tables(int n);

/// Leading words of 1/k, k >= 2. The error is below one unit.
const Word* inverse_integer(int k, int n);

/// ln 10, ln 2 and pi/2 with n fraction words below one integer word, less than one unit short.
const Word* ln10(int n);
const Word* ln2(int n);
const Word* half_pi(int n);

/// exp(j / 2^(8 stage + 8)) - 1, which is below 1: j < 178 at stage 0, j < 256 later. Two units short at most.
const Word* exp_entry(int stage, int j, int n);
/// sin and 1 - cos of j / 2^(8 stage + 8): j < 202 at stage 0, j < 256 later. Two units short at most.
const Word* sin_entry(int stage, int j, int n);
const Word* versine_entry(int stage, int j, int n);
/// -log(f) for the factors f that log multiplies with: f = factor / 512, 256 <= factor <= 512, j = factor - 256 at
/// stage 0, and f = 1 - factor / 2^(8 stage + 30) with a factor that j < kLogRows determines later. Two units short at
/// most.
inline constexpr int kLogRows = 530;
const Word* log_entry(int stage, int j, Word factor, int n);

inline constexpr int kMaxStages = 8;

}  // namespace quarn::fixed

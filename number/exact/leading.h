// Sums of products from their leading limbs alone.
#pragma once

#include "number/exact/dot.h"
#include "quarn/exact.h"

namespace quarn::exact {

/// A row of a sparse matrix whose entries are neighbours, and a vector.
struct SparseRow {
  const QuarnFloat* values;
  const Integer* columns;  // from 1
  const QuarnFloat* vector;
  std::size_t count;

  std::size_t size() const noexcept { return count; }
  Term operator[](std::size_t l) const noexcept { return {values + l, vector + (columns[l] - 1), false}; }
};

/// Whether rounded_leading_total does anything at so many digits.
inline bool leading_totals(const Rounder& rounder) noexcept { return Radix::digits == 18 && rounder.digits() < 126; }

/// Rounds the total of terms if limbs that are as long as the result, or by one longer, decide how; false, with nothing
/// done, where they do not, where operands are longer than results or not finite, and for zero totals. result may be
/// one of the operands. Takes a Row, a TermList or a SparseRow.
template <class Terms>
bool rounded_leading_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder) noexcept;

/// The same of `count` rows of as many terms each, up to kSeveral of them: step by step together, so that columns of a
/// matrix are read as they are stored. done[t] says which are rounded.
inline constexpr std::size_t kSeveral = 16;
void rounded_leading_totals(std::size_t count, QuarnFloat* const* results, const Row* rows, bool* done,
                            const Rounder& rounder) noexcept;

/// Tries leading limbs, but not for a while after sums that they did not decide, as in a residual.
class Prospects {
 public:
  template <class Terms>
  bool decides(QuarnFloat& result, const Terms& terms, const Rounder& rounder) noexcept {
    if (!good()) {
      return false;
    }
    const bool decided = rounded_leading_total(result, terms, rounder);
    take(decided);
    return decided;
  }

  bool good() noexcept { return pause_ == 0 || --pause_ == 0; }
  void take(bool decided) noexcept {
    missed_ = decided ? 0 : missed_ + 1;
    pause_ = missed_ < kEnough ? 0 : kPause;
  }

 private:
  static constexpr unsigned kEnough = 3;  // sums in a row
  static constexpr unsigned kPause = 16;
  unsigned missed_ = 0;
  unsigned pause_ = 0;
};

}  // namespace quarn::exact

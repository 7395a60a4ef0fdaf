// Sums of products from their leading limbs alone.
#pragma once

#include "number/exact/dot.h"
#include "quarn/exact.h"

namespace quarn::exact {

/// A row of a sparse matrix, of a real or a complex one, times a vector: the terms of one part of the result.
///
/// Values are neighbours, or names say which they are: twice the place, and one more for the conjugate in the mirrored
/// place. A number may be added to the products, which count with the opposite sign then.
struct SparseRow {
  const QuarnFloat* values;
  const Integer* columns;  // from 1, neighbours always
  const QuarnFloat* vector;
  std::size_t count;
  unsigned parts = 0;  // 1 for complex entries
  unsigned part = 0;   // of the result
  bool conjugate = false;
  const std::uint32_t* names = nullptr;
  const QuarnFloat* addend = nullptr;
  const QuarnFloat* one = nullptr;

  std::size_t products() const noexcept { return count << parts; }
  std::size_t size() const noexcept { return products() + (addend != nullptr ? 1 : 0); }
  Term operator[](std::size_t l) const noexcept {
    if (l >= products()) [[unlikely]] {
      return {addend, one, false};
    }
    const std::size_t entry = l >> parts;
    const std::size_t place = names != nullptr ? names[entry] / 2 : entry;
    const bool mirrored = names != nullptr && names[entry] % 2 != 0;
    const unsigned from = unsigned(l) & parts;
    const bool opposite = from != 0 && (conjugate != mirrored) == (part != 0);
    return {values + (place << parts) + from, vector + (std::size_t(columns[entry] - 1) << parts) + (from ^ part),
            opposite != (addend != nullptr)};
  }
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

// Exact sums of products of one entry, straight from the numbers in memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "number/exact/operand.h"
#include "number/exact/store.h"
#include "number/limbs/scratch.h"

namespace quarn::exact {

/// Entry (i, j) of a product: the terms of its inner index, and a few that are added to them.
struct Row {
  Grid a;
  Grid b;
  std::size_t i;
  std::size_t j;
  std::size_t inner;
  bool negate = false;  // the terms of the inner index, not the others
  int more = 0;
  Term others[2] = {};

  std::size_t size() const noexcept { return inner + std::size_t(more); }
  Term operator[](std::size_t l) const noexcept {
    if (l >= inner) [[unlikely]] {
      return others[l - inner];
    }
    const Entry x = a.left(i, l);
    const Entry y = b.right(l, j);
    return {x.number, y.number, (x.flip != y.flip) != negate};
  }
};

/// Terms that stand in an array.
struct TermList {
  const Term* terms;
  std::size_t count;

  std::size_t size() const noexcept { return count; }
  const Term& operator[](std::size_t l) const noexcept { return terms[l]; }
};

/// (-1)^negative * 0.limbs * 10^exponent, limbs in front may be zero.
struct Total {
  bool negative = false;
  std::int64_t exponent = 0;
  Limb* limbs = nullptr;
  std::size_t length = 0;
};

/// What terms span.
struct Span {
  std::int64_t top = INT64_MIN;  // every term is below 10^top
  std::int64_t low = INT64_MAX;  // and a multiple of 10^low
  std::int64_t bottom = 0;       // 10^bottom is above the smallest term
  std::uint32_t longest = 0;     // limbs of an operand
  bool finite = true;            // all operands
};

// What follows takes terms as a Row, a TermList or a SparseRow (leading.h).

template <class Terms>
Span span_of(const Terms& terms) noexcept;

/// Working storage for total_of: limbs of the total, or 0 where the terms are too far apart or not finite.
std::size_t total_size(const Span& span) noexcept;

/// The exact total of the terms; total.limbs has room for total_size limbs.
template <class Terms>
void total_of(const Terms& terms, const Span& span, Total& total);

/// The same rounded, whatever the operands: specials and far exponents by sorting. Zero totals are +0, or -0 where
/// `signed_zero` says so and all terms are -0. result may be one of the operands.
template <class Terms>
void rounded_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder, bool signed_zero);

/// The same without trying leading limbs first.
template <class Terms>
void rounded_whole_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder, bool signed_zero);

}  // namespace quarn::exact

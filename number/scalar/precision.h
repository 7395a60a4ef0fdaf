// The working precision and what follows from it, worked out once when it is set.
#pragma once

#include "number/limbs/fixed.h"
#include "quarn/quarnfloat.h"

namespace quarn {

struct Precision {
  int digits;
#if QUARN_LIMB_BITS == 64
  // The length N of fixed-length code, 0 when results are too long for it; with kMore added where so few digits follow
  // the cut in its limb that products need a limb more to be decided.
  static constexpr int kMore = 8;
  int fixed_length;
  fixed::Cut cut;
#endif
};

/// For any digit count; internal precisions may pass the public limit by the guard digits.
constexpr Precision precision_for(int digits) {
  Precision made{};
  made.digits = digits;
#if QUARN_LIMB_BITS == 64
  const int last = digits % Radix::digits;
  const int length = digits / Radix::digits + 1;
  // With 10^3 or less left below the cut, one product in some hundred would be undecided.
  const bool more = Radix::digits - last <= 3;
  made.fixed_length = length > QuarnFloat::kInlineLimbs ? 0 : length + (more ? Precision::kMore : 0);
  made.cut.unit = kPowersOfTen<Radix>[std::size_t(Radix::digits - last)];
  made.cut.half = made.cut.unit.value / 2;
#endif
  return made;
}

}  // namespace quarn

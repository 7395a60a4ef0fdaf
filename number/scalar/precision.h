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
  int road;
  fixed::Cut cut;
#endif
};

extern Precision precision;

/// Any digit count; internal precisions may pass the public limit by the guard digits.
void set_precision(int digits) noexcept;

}  // namespace quarn

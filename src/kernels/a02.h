// Scalar complex arithmetic on separate parts, arranged so that no intermediate overflows.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/frame.h"

namespace tesk {

/// QuarnMP_a02acfn_ without copies of its arguments, which z must not overlap.
void divide(const QuarnFloat& xr, const QuarnFloat& xi, const QuarnFloat& yr, const QuarnFloat& yi, QuarnFloat* zr,
            QuarnFloat* zi);

}  // namespace tesk

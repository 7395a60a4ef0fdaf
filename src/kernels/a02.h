// Scalar complex arithmetic on separate parts, arranged so that no intermediate overflows.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);
void a02aaf_full_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);
void a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
void a02aafn_full_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
QuarnFloat a02abfn_(QuarnFloat xr, QuarnFloat xi);
void a02acfn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat yr, QuarnFloat yi, QuarnFloat* zr, QuarnFloat* zi);
}

namespace tesk {

/// a02acfn_ without copies of its arguments, which z must not overlap.
void divide(const QuarnFloat& xr, const QuarnFloat& xi, const QuarnFloat& yr, const QuarnFloat& yi, QuarnFloat* zr,
            QuarnFloat* zi);

}  // namespace tesk

// The parts of a number, for QuarnFloat and Complex alike.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

inline const QuarnFloat& real_part(const QuarnFloat& x) { return x; }
inline const QuarnFloat& real_part(const Complex& x) { return x.re; }

inline bool is_finite(const QuarnFloat& x) { return isfinite(x); }
inline bool is_finite(const Complex& x) { return isfinite(x.re) && isfinite(x.im); }

}  // namespace tesk

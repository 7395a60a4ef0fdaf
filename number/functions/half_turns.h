// Angles in units of pi: reduced without rounding.
#pragma once

#include "number/functions/support.h"

namespace quarn {

/// |x| = quadrant / 2 + rest modulo 2, |rest| <= 1/4, exactly; x is finite and not zero.
struct HalfTurns {
  int quadrant;
  QuarnFloat rest;
};
HalfTurns half_turns(const QuarnFloat& x);

/// sin(pi r) and cos(pi r) for 0 < |r| <= 1/4, each to a relative error of 10^-w.
SinCos approximate_sin_cos_pi(const QuarnFloat& rest, int w);

}  // namespace quarn

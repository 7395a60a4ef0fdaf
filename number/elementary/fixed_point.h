// Elementary functions in binary fixed point: the fast path up to some 3000 digits.
//
// Arguments are reduced by table look-ups of eight bits each, the rest goes into a Taylor sum, of which each part is
// computed only as far as it counts. The tables fill as they are used.
#pragma once

#include <optional>

#include "number/elementary/approximate.h"

namespace quarn::fixed {

/// The relative error is below 10^-digits.
struct Approximation {
  QuarnFloat value;
  int digits = 0;
};

struct SinCosApproximation {
  Approximation sin;
  Approximation cos;
};

// The results are meant to have w digits; cancellation may leave them fewer, which is then said. Nothing is returned
// for arguments or precisions out of its range: |x| < 2 * 10^9 for exp, < 10^9 for sin and cos.
std::optional<Approximation> exp(const QuarnFloat& x, int w);
std::optional<Approximation> log(const QuarnFloat& x, int w);
std::optional<SinCosApproximation> sin_cos(const QuarnFloat& x, int w);

// The same rounded to the working digits, where a few digits more decide that.
std::optional<QuarnFloat> rounded_exp(const QuarnFloat& x);
std::optional<QuarnFloat> rounded_log(const QuarnFloat& x);

struct RoundedSinCos {
  std::optional<QuarnFloat> sin;
  std::optional<QuarnFloat> cos;
};
RoundedSinCos rounded_sin_cos(const QuarnFloat& x);

}  // namespace quarn::fixed

// The transform of four numbers: exact sums.
#include <utility>

#include "number/exact/dot.h"
#include "number/fixed/plan.h"

namespace {

/// 1, 1/2 or 1/4, which has two digits.
QuarnFloat factor_of(QuarnDivisor divisor) {
  const quarn::WorkingDigits two(2);
  const int denominator = divisor == QuarnDivisor::one ? 1 : divisor == QuarnDivisor::root ? 2 : 4;
  return QuarnFloat(1) / denominator;
}

}  // namespace

/// Results are sums of parts times a short number: nothing has to be converted, which is most of the work for so few
/// numbers.
void QuarnTransform::Plan::run_four(bool backward, const Places& at, QuarnDivisor divisor) const {
  const quarn::WorkingDigits working(digits);
  const quarn::exact::Rounder rounder;
  const QuarnFloat factor = factor_of(divisor);
  Complex made[4];
  for (unsigned k = 0; k < 4; ++k) {
    quarn::exact::Term re[4];
    quarn::exact::Term im[4];
    for (unsigned j = 0; j < 4; ++j) {
      // x_j times i^turns.
      const unsigned turns = (backward ? j * k : 3 * j * k) % 4;
      const Complex& in = at.x[std::ptrdiff_t(j) * at.stride_x];
      const bool crossed = turns % 2 != 0;
      re[j] = {crossed ? &in.im : &in.re, &factor, turns == 1 || turns == 2};
      im[j] = {crossed ? &in.re : &in.im, &factor, turns >= 2};
    }
    rounded_total(made[k].re, quarn::exact::TermList{re, 4}, rounder, false);
    rounded_total(made[k].im, quarn::exact::TermList{im, 4}, rounder, false);
  }
  for (std::ptrdiff_t k = 0; k < 4; ++k) {
    at.y[k * at.stride_y] = std::move(made[k]);
  }
}

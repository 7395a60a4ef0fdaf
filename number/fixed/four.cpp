// The transform of four numbers: exact sums.
#include <algorithm>
#include <cstdlib>
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

/// The digits that hold every sum of two parts, halved or quartered, or 0 where they are too many for that, or sums
/// might leave the range of exponents.
int digits_of_sums(const Complex* const (&x)[4], int digits) {
  constexpr std::int64_t kFar = 900'000'000;
  std::int64_t top = INT64_MIN;
  std::int64_t low = INT64_MAX;
  for (const Complex* const value : x) {
    for (const QuarnFloat* const part : {&value->re, &value->im}) {
      if (quarn::kind_of(*part) != quarn::Kind::zero) {
        const std::int64_t exponent = QuarnAccess::exponent(*part);
        if (std::abs(exponent) > kFar) {
          return 0;
        }
        top = std::max(top, exponent);
        low = std::min(low, exponent - quarn::Radix::digits * std::int64_t(QuarnAccess::length(*part)));
      }
    }
  }
  const std::int64_t held = top == INT64_MIN ? 0 : top - low + 3;
  return held > 3 * std::int64_t(digits) ? 0 : int(std::max<std::int64_t>(held, digits));
}

Complex times_i(const Complex& z) { return {-z.im, z.re}; }

/// A sum that is zero is +0.
QuarnFloat plain(QuarnFloat x) { return x == 0 ? QuarnFloat() : x; }
Complex plain(Complex z) { return {plain(std::move(z.re)), plain(std::move(z.im))}; }

/// By halves, whose results are not rounded.
void by_halves(Complex (&made)[4], const Complex* const (&x)[4], bool backward, const QuarnFloat& factor, int held,
               int digits) {
  Complex halves[4];  // of the numbers 0 and 2, and of 1 and 3
  {
    const quarn::WorkingDigits enough(held);
    for (unsigned j = 0; j < 2; ++j) {
      halves[j] = *x[j] + *x[j + 2];
      halves[j + 2] = *x[j] - *x[j + 2];
    }
    if (factor != 1) {
      for (Complex& z : halves) {
        z = {z.re * factor, z.im * factor};
      }
    }
  }
  const quarn::WorkingDigits working(digits);
  const Complex turned = times_i(halves[3]);
  made[0] = plain(halves[0] + halves[1]);
  made[1] = plain(backward ? halves[2] + turned : halves[2] - turned);
  made[2] = plain(halves[0] - halves[1]);
  made[3] = plain(backward ? halves[2] - turned : halves[2] + turned);
}

/// By sums of four terms each.
void by_terms(Complex (&made)[4], const Complex* const (&x)[4], bool backward, const QuarnFloat& factor, int digits) {
  const quarn::WorkingDigits working(digits);
  const quarn::exact::Rounder rounder;
  for (unsigned k = 0; k < 4; ++k) {
    quarn::exact::Term re[4];
    quarn::exact::Term im[4];
    for (unsigned j = 0; j < 4; ++j) {
      // x_j times i^turns.
      const unsigned turns = (backward ? j * k : 3 * j * k) % 4;
      const bool crossed = turns % 2 != 0;
      re[j] = {crossed ? &x[j]->im : &x[j]->re, &factor, turns == 1 || turns == 2};
      im[j] = {crossed ? &x[j]->re : &x[j]->im, &factor, turns >= 2};
    }
    rounded_total(made[k].re, quarn::exact::TermList{re, 4}, rounder, false);
    rounded_total(made[k].im, quarn::exact::TermList{im, 4}, rounder, false);
  }
}

}  // namespace

/// Nothing has to be converted, which is most of the work for so few numbers.
void QuarnTransform::Plan::run_four(bool backward, const Places& at, QuarnDivisor divisor) const {
  const QuarnFloat factor = factor_of(divisor);
  const Complex* const x[4] = {at.x, at.x + at.stride_x, at.x + 2 * at.stride_x, at.x + 3 * at.stride_x};
  Complex made[4];
  if (const int held = digits_of_sums(x, digits); held != 0) {
    by_halves(made, x, backward, factor, held, digits);
  } else {
    by_terms(made, x, backward, factor, digits);
  }
  for (std::ptrdiff_t k = 0; k < 4; ++k) {
    at.y[k * at.stride_y] = std::move(made[k]);
  }
}

#include "src/kernels/level1.h"

namespace tesk {
namespace {

// The scaled sum of squares of the published norms: scale is the largest element so far.
void add_square(const QuarnFloat& x, QuarnFloat& scale, QuarnFloat& sumsq) {
  if (x == 0) {
    return;
  }
  const QuarnFloat absxi = fabs(x);
  if (scale < absxi) {
    const QuarnFloat ratio = scale / absxi;
    sumsq = 1 + sumsq * (ratio * ratio);
    scale = absxi;
  } else {
    const QuarnFloat ratio = absxi / scale;
    sumsq += ratio * ratio;
  }
}

}  // namespace

void add_squares(Integer n, OneBasedVector<QuarnFloat> x, QuarnFloat& scale, QuarnFloat& sumsq) {
  for (Integer i = 1; i <= n; ++i) {
    add_square(x(i), scale, sumsq);
  }
}

void add_squares(Integer n, OneBasedVector<Complex> x, QuarnFloat& scale, QuarnFloat& sumsq) {
  for (Integer i = 1; i <= n; ++i) {
    add_square(x(i).re, scale, sumsq);
    add_square(x(i).im, scale, sumsq);
  }
}

namespace {

SafeQuotient divide_near_bounds(const QuarnFloat& a, const QuarnFloat& b) {
  // Doubles on purpose: the guard works on the range of the hardware.
  const QuarnFloat large(0x1.fffffffffffecp+1021);
  const QuarnFloat small(0x1.0000000000026p-1022);
  const bool negative = signbit(a) != (b != 0 && signbit(b));
  if (b == 0) {
    return {negative ? -large : large, true};
  }
  QuarnFloat quotient = a / b;
  const QuarnFloat size = fabs(quotient);
  if (size > large) {
    return {negative ? -large : large, true};
  }
  if (size < small) {
    return {QuarnFloat(0), false};
  }
  return {std::move(quotient), false};
}

}  // namespace

SafeQuotient safe_divide(const QuarnFloat& a, const QuarnFloat& b) {
  if (a == 0) {
    return {QuarnFloat(0), b == 0};
  }
  if (b != 0) {
    QuarnFloat quotient = a / b;
    const QuarnFloat size = fabs(quotient);
    // Well inside both bounds, which are costly to make: a double of that size has hundreds of digits.
    if (size < QuarnFloat(1, 307) && size > QuarnFloat(1, -307)) {
      return {std::move(quotient), false};
    }
  }
  return divide_near_bounds(a, b);
}

}  // namespace tesk

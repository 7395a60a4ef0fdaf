#include "src/kernels/a02.h"

#include <utility>

#include "src/frame/constants.h"
#include "tesk2mp/frame.h"

namespace {

using tesk::Accuracy;
using tesk::Constants;

/// Principal square root. The entries differ in the constant `sqrt_half`, and in a NaN part, which the comparisons of
/// the published algorithm take for a negative one.
void square_root(const QuarnFloat& xr, const QuarnFloat& xi, QuarnFloat* yr, QuarnFloat* yi, Accuracy accuracy) {
  if (accuracy == Accuracy::full && (isnan(xr) || isnan(xi))) {
    *yr = QuarnFloat("nan");
    *yi = *yr;
    return;
  }
  const QuarnFloat a = fabs(xr);
  QuarnFloat s;
  if (a > 1) {
    // Halved operands keep the modulus from overflowing.
    const QuarnFloat half(0.5);
    s = sqrt(half * a + QuarnMP_a02abfn_(half * xr, half * xi));
  } else {
    s = Constants(accuracy).sqrt_half() * sqrt(a + QuarnMP_a02abfn_(xr, xi));
  }
  QuarnFloat t = xi;
  if (xi != 0) {
    t = xi / (s + s);
  }
  if (xr >= 0) {
    *yr = std::move(s);
    *yi = std::move(t);
  } else if (t >= 0) {
    *yr = std::move(t);
    *yi = std::move(s);
  } else {
    *yr = -t;
    *yi = -s;
  }
}

}  // namespace

// Smith's method as Complex has it, but by the reciprocal of the denominator, which the interface fixes.
void tesk::divide(const QuarnFloat& xr, const QuarnFloat& xi, const QuarnFloat& yr, const QuarnFloat& yi,
                  QuarnFloat* zr, QuarnFloat* zi) {
  if (fabs(yr) > fabs(yi)) {
    const QuarnFloat r = yi / yr;
    const QuarnFloat d = 1 / (r * yi + yr);
    *zr = (xr + r * xi) * d;
    *zi = (xi - r * xr) * d;
  } else {
    const QuarnFloat r = yr / yi;
    const QuarnFloat d = 1 / (r * yr + yi);
    *zr = (r * xr + xi) * d;
    *zi = (r * xi - xr) * d;
  }
}

extern "C" {

void QuarnMP_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi) {
  square_root(xr, xi, yr, yi, Accuracy::classic);
}

void QuarnMPX_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi) {
  square_root(xr, xi, yr, yi, Accuracy::full);
}

QuarnFloat QuarnMP_a02abfn_(QuarnFloat xr, QuarnFloat xi) {
  QuarnFloat a = fabs(std::move(xr));
  QuarnFloat b = fabs(std::move(xi));
  if (b > a) {
    std::swap(a, b);
  }
  if (b == 0) {
    return a;
  }
  const QuarnFloat t = b / a;
  return a * sqrt(1 + t * t);
}

void QuarnMP_a02acfn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat yr, QuarnFloat yi, QuarnFloat* zr, QuarnFloat* zi) {
  tesk::divide(xr, xi, yr, yi, zr, zi);
}
}

#include "src/dense/reflector.h"

#include <algorithm>

#include "src/frame/constants.h"
#include "tesk2mp/frame.h"

tesk::StandardForm::StandardForm(QuarnFloat& a, QuarnFloat& b, QuarnFloat& c, QuarnFloat& d) : cs(1), sn(0) {
  const QuarnFloat half(0.5);
  if (c == 0) {
    return;
  }
  if (b == 0) {
    cs = 0;
    sn = 1;
    std::swap(a, d);
    b = -c;
    c = 0;
    return;
  }
  const QuarnFloat difference = a - d;
  if (difference == 0 && signbit(b) != signbit(c)) {
    return;
  }
  const QuarnFloat p = half * difference;
  const QuarnFloat larger = std::max(fabs(b), fabs(c));
  QuarnFloat smaller = std::min(fabs(b), fabs(c));
  if (signbit(b) != signbit(c)) {
    smaller = -smaller;
  }
  const QuarnFloat scale = std::max(fabs(p), larger);
  QuarnFloat z = (p / scale) * p + (larger / scale) * smaller;
  if (z >= 4 * epsilon()) {
    // Real eigenvalues.
    z = p + with_sign(sqrt(scale) * sqrt(z), p);
    a = d + z;
    d -= (larger / z) * smaller;
    const QuarnFloat tau = QuarnMP_a02abfn_(c, z);
    cs = z / tau;
    sn = c / tau;
    b -= c;
    c = 0;
    return;
  }
  // Complex, or real and almost equal: make the diagonal equal.
  const QuarnFloat sigma = b + c;
  const QuarnFloat tau = QuarnMP_a02abfn_(sigma, difference);
  cs = sqrt(half * (1 + fabs(sigma) / tau));
  sn = -(p / (tau * cs));
  if (signbit(sigma)) {
    sn = -sn;
  }
  const QuarnFloat aa = a * cs + b * sn;
  const QuarnFloat bb = b * cs - a * sn;
  const QuarnFloat cc = c * cs + d * sn;
  const QuarnFloat dd = d * cs - c * sn;
  a = aa * cs + cc * sn;
  b = bb * cs + dd * sn;
  c = cc * cs - aa * sn;
  d = dd * cs - bb * sn;
  const QuarnFloat middle = half * (a + d);
  a = middle;
  d = middle;
  if (c == 0) {
    return;
  }
  if (b == 0) {
    b = -c;
    c = 0;
    const QuarnFloat former = cs;
    cs = -sn;
    sn = former;
  } else if (signbit(b) == signbit(c)) {
    // Real after all: to triangular form.
    const QuarnFloat sab = sqrt(fabs(b));
    const QuarnFloat sac = sqrt(fabs(c));
    const QuarnFloat shift = with_sign(sab * sac, c);
    const QuarnFloat norm = 1 / sqrt(fabs(b + c));
    a = middle + shift;
    d = middle - shift;
    b -= c;
    c = 0;
    const QuarnFloat cs1 = sab * norm;
    const QuarnFloat sn1 = sac * norm;
    const QuarnFloat former = cs;
    cs = cs * cs1 - sn * sn1;
    sn = former * sn1 + sn * cs1;
  }
}

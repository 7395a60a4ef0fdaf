// A linear system of order 400, solved to 45 digits by reverse communication: the solver says what it needs, the
// program does it. The matrix is convection and diffusion on a square of 20 x 20 points.
#include <cstdio>
#include <vector>

#include "tesk2mp/tesk2mp.h"

constexpr Integer kSide = 20;
constexpr Integer kOrder = kSide * kSide;
using Vector = std::vector<QuarnFloat>;

// y := A x, or A^T x: five points, where the wind makes one neighbour count for more than the opposite one.
void multiply(const Vector& x, Vector& y, bool transposed) {
  const QuarnFloat wind = (transposed ? -1 : 1) * QuarnFloat(2) / 5;
  for (Integer i = 0; i < kOrder; ++i) {
    y[i] = 4 * x[i];
    if (i % kSide > 0) {
      y[i] -= (1 + wind) * x[i - 1];
    }
    if (i % kSide < kSide - 1) {
      y[i] -= (1 - wind) * x[i + 1];
    }
    if (i >= kSide) {
      y[i] -= (1 + wind) * x[i - kSide];
    }
    if (i < kOrder - kSide) {
      y[i] -= (1 - wind) * x[i + kSide];
    }
  }
}

int main() {
  QuarnSetDigits(50);
  const Integer iterm = 1, m = 2, maxitn = 200, monit = 10;
  const QuarnFloat tol("1e-45"), estimate_it = 0;
  Integer lwork = 100 + kOrder * (4 + 2 * m + 2);  // LWREQ of BICGSTAB
  Integer lwreq = 0, irevcm = 0, ifail = -1;       // -1: on failure say why and come back
  Vector x(kOrder), v(kOrder, 1), work(lwork);     // from x = 0 to A x = (1, ..., 1)
  QuarnMP_f11bdf_("BICGSTAB", "N", "2", "N", &iterm, &kOrder, &m, &tol, &maxitn, &estimate_it, &estimate_it, &monit,
                  &lwreq, work.data(), &lwork, &ifail, 8, 1, 1, 1);
  while (ifail == 0 && irevcm != 4) {
    ifail = -1;
    QuarnMP_f11bef_(&irevcm, x.data(), v.data(), nullptr, work.data(), &lwork, &ifail);
    if (irevcm == 1 || irevcm == -1) {
      multiply(x, v, irevcm == -1);
    } else if (irevcm == 3 || irevcm == 4) {  // to look at, or the end: x is the iterate, v its residual
      Integer itn = 0, outcome = -1;
      QuarnFloat left, right, norm, sigma;
      QuarnMP_f11bff_(&itn, &left, &right, &norm, &sigma, work.data(), &lwork, &outcome);
      std::printf("iteration %3d: residual %.1e, to be at most %.1e\n", int(itn), FloatToDouble(left),
                  FloatToDouble(right));
    }
  }
  if (ifail != 0) {
    return 1;
  }
  std::printf("in the middle: %s\n", x[kOrder / 2 + kSide / 2].to_string().c_str());
}

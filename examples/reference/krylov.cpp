// Examples of the routine reference: large matrices that are functions.
#include <vector>

#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

//! [operator]
// Second differences on N points; its inverse is not known here.
constexpr Integer N = 30;

void differences(void*, Integer, const QuarnFloat* x, QuarnFloat* y) {
  for (Integer i = 0; i < N; ++i) {
    y[i] = 2 * x[i] - (i > 0 ? x[i - 1] : 0) - (i + 1 < N ? x[i + 1] : 0);
  }
}
//! [operator]

void deigsh() {
  //! [deigsh]
  QuarnFloat w[2], resid[2];  // 2 - 2 cos(30 pi / 31) is the largest eigenvalue
  Integer nprod, info;
  QuarnMPX_deigsh_("LA", N, 2, nullptr, differences, nullptr, 0, 0, 1000, nullptr, w, nullptr, N, resid, &nprod, &info,
                   2);
  std::cout << w[0] << " " << w[1] << "\n";
  //! [deigsh]
}

//! [turn]
// To the next of N points on a circle.
void turn(void*, Integer, const QuarnFloat* x, QuarnFloat* y) {
  for (Integer i = 0; i < N; ++i) {
    y[i] = x[(i + 1) % N];
  }
}
//! [turn]

void deigs() {
  //! [deigs]
  Complex w[3];  // roots of unity; sin(14 pi / 30) is the largest imaginary part
  QuarnFloat resid[3];
  Integer m, nprod, info;
  QuarnMPX_deigs_("LI", N, 2, nullptr, turn, nullptr, 0, 0, 1000, nullptr, w, nullptr, N, resid, &m, &nprod, &info, 2);
  std::cout << m << ": +-" << w[0].im << "\n";
  //! [deigs]
}

//! [slopes]
// The N slopes beside N + 1 numbers, and the adjoint of that.
void slopes(void*, Integer what, const QuarnFloat* x, QuarnFloat* y) {
  if (what == 0) {
    for (Integer i = 0; i < N; ++i) {
      y[i] = x[i + 1] - x[i];
    }
  } else {
    for (Integer i = 0; i <= N; ++i) {
      y[i] = (i > 0 ? x[i - 1] : 0) - (i < N ? x[i] : 0);
    }
  }
}
//! [slopes]

void dsvds() {
  //! [dsvds]
  QuarnFloat s[2], resid[2];  // 2 cos(pi / 62) is the largest
  Integer nprod, info;
  QuarnMPX_dsvds_("LM", N, N + 1, 2, slopes, nullptr, 0, 0, 1000, nullptr, s, nullptr, N, nullptr, N + 1, resid, &nprod,
                  &info, 2);
  std::cout << s[0] << " " << s[1] << "\n";
  //! [dsvds]
}

void dlsmr() {
  //! [dlsmr]
  const std::vector<QuarnFloat> b(N, QuarnFloat(1));  // slopes 1: the shortest x is -15, -14, ..., 15
  QuarnFloat x[N + 1], rnorm, arnorm, anorm, acond;
  Integer itn, istop, info;
  QuarnMPX_dlsmr_(N, N + 1, slopes, nullptr, b.data(), 0, 0, 0, 0, 1000, x, &rnorm, &arnorm, &anorm, &acond, &itn,
                  &istop, &info);
  std::cout << istop << ": " << x[0] << " " << x[1] << " ... " << x[N] << "\n";
  //! [dlsmr]
}

}  // namespace

int main() { return run_examples({{"deigsh", deigsh}, {"deigs", deigs}, {"dsvds", dsvds}, {"dlsmr", dlsmr}}); }

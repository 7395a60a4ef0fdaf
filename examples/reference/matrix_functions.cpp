// Examples of the routine reference: functions of matrices.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void print(const QuarnFloat (&f)[4], Integer info) {
  std::cout << info << ": " << f[0] << " " << f[2] << "; " << f[1] << " " << f[3] << "\n";
}

void dexpm() {
  //! [dexpm]
  const QuarnFloat a[] = {0, 0, 1, 0};
  QuarnFloat f[4];
  Integer info;
  QuarnMPX_dexpm_(2, a, 2, f, 2, &info);
  print(f, info);
  //! [dexpm]
}

void dsqrtm() {
  //! [dsqrtm]
  const QuarnFloat a[] = {4, 0, 1, 4};
  QuarnFloat f[4];
  Integer info;
  QuarnMPX_dsqrtm_(2, a, 2, f, 2, &info);
  print(f, info);
  //! [dsqrtm]
}

void dlogm() {
  //! [dlogm]
  const QuarnFloat a[] = {1, 0, 3, 1};
  QuarnFloat f[4];
  Integer info;
  QuarnMPX_dlogm_(2, a, 2, f, 2, &info);
  print(f, info);
  //! [dlogm]
}

void dpowm() {
  //! [dpowm]
  const QuarnFloat a[] = {1, 1, 1, 0}, p = 30;
  QuarnFloat f[4];
  Integer info;
  QuarnMPX_dpowm_(2, a, 2, &p, f, 2, &info);
  print(f, info);
  //! [dpowm]
}

}  // namespace

int main() { return run_examples({{"dexpm", dexpm}, {"dsqrtm", dsqrtm}, {"dlogm", dlogm}, {"dpowm", dpowm}}); }

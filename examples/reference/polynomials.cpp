// Examples of the routine reference: polynomials.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dpzeros() {
  //! [dpzeros]
  const QuarnFloat a[] = {1, -3, 3, -1};  // (z - 1)^3
  QuarnFloat errors[3];
  Complex zeros[3];
  Integer info;
  QuarnMPX_dpzeros_(3, a, zeros, errors, &info);
  std::cout << zeros[0] << " " << zeros[1] << " " << zeros[2] << "\n";
  //! [dpzeros]
}

void dpeval() {
  //! [dpeval]
  const QuarnFloat a[] = {1, -3, 3, -1}, z("1.0000001");
  QuarnFloat value;
  Integer info;
  QuarnMPX_dpeval_(3, a, &z, &value, &info);
  std::cout << value << "\n";
  //! [dpeval]
}

void dpdiv() {
  //! [dpdiv]
  const QuarnFloat a[] = {1, 0, 0, 5}, b[] = {1, 1};
  QuarnFloat q[3], r[1];
  Integer info;
  QuarnMPX_dpdiv_(3, a, 1, b, q, r, &info);
  std::cout << q[0] << " " << q[1] << " " << q[2] << ", " << r[0] << "\n";
  //! [dpdiv]
}

void dpfrom() {
  //! [dpfrom]
  const QuarnFloat x[] = {1, 2, 3};
  QuarnFloat a[4];
  Integer info;
  QuarnMPX_dpfrom_(3, x, a, &info);
  std::cout << a[0] << " " << a[1] << " " << a[2] << " " << a[3] << "\n";
  //! [dpfrom]
}

}  // namespace

int main() { return run_examples({{"dpzeros", dpzeros}, {"dpeval", dpeval}, {"dpdiv", dpdiv}, {"dpfrom", dpfrom}}); }

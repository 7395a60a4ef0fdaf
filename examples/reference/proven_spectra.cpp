// Examples of the routine reference: proven bounds of eigenvalues, singular values and zeros.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dproven_symmetric() {
  //! [dproven_symmetric]
  QuarnFloat a[] = {2, 0, 0, 3}, w[] = {2, 3}, x[] = {1, 0, 0, 1}, error[2], xerror[2];
  Integer info;
  QuarnMPX_dproven_symmetric_("L", 2, a, 2, nullptr, 0, w, x, 2, error, xerror, &info, 1);
  std::cout << w[0] << " " << error[0] << "\n";
  //! [dproven_symmetric]
}

void dproven_singular() {
  //! [dproven_singular]
  QuarnFloat a[] = {3, 0, 0, 2}, s[] = {3, 2}, u[] = {1, 0, 0, 1}, v[] = {1, 0, 0, 1}, error[2];
  Integer info;
  QuarnMPX_dproven_singular_(2, 2, a, 2, nullptr, 0, s, u, 2, v, 2, error, &info);
  std::cout << s[0] << " " << error[0] << "\n";
  //! [dproven_singular]
}

void dproven_eigenvalues() {
  //! [dproven_eigenvalues]
  QuarnFloat a[] = {2, 0, 1, 3}, error[2];
  Complex w[] = {2, 3}, x[] = {1, 0, 1, 1};
  Integer count[2], info;
  QuarnMPX_dproven_eigenvalues_(2, a, 2, nullptr, 0, w, x, 2, error, count, &info);
  std::cout << w[0].re << " " << error[0] << " " << count[0] << "\n";
  //! [dproven_eigenvalues]
}

void dproven_eigen() {
  //! [dproven_eigen]
  QuarnFloat a[] = {2, 0, 1, 2}, error[2], xerror[2];
  Complex w[] = {2, 2}, x[] = {1, 0, 1, 0};
  Integer count[2], info;
  QuarnMPX_dproven_eigen_(2, a, 2, nullptr, 0, nullptr, 0, nullptr, 0, w, x, 2, error, xerror, count, nullptr, &info);
  std::cout << w[0].re << " " << (error[0] < QuarnFloat("1e-18")) << " " << count[0] << " " << xerror[0] << "\n";
  //! [dproven_eigen]
}

void dproven_zeros() {
  //! [dproven_zeros]
  QuarnFloat a[] = {1, 0, -2}, error[2];
  Complex zeros[] = {QuarnFloat("1.41"), QuarnFloat("-1.41")};
  Integer count[2], info;
  QuarnMPX_dproven_zeros_(2, a, zeros, error, count, &info);
  std::cout << zeros[0].re << " " << (error[0] < QuarnFloat("0.005")) << " " << count[0] << "\n";
  //! [dproven_zeros]
}

}  // namespace

int main() {
  return run_examples({{"dproven_symmetric", dproven_symmetric},
                       {"dproven_singular", dproven_singular},
                       {"dproven_eigenvalues", dproven_eigenvalues},
                       {"dproven_eigen", dproven_eigen},
                       {"dproven_zeros", dproven_zeros}});
}

// Examples of the routine reference: factorisations, eigenvalues, quartics.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void f07zaz() {
  //! [f07zaz]
  Integer block_size;
  QuarnMP_f07zaz_(1, "F07ADF", &block_size, 0, 6);
  std::cout << block_size << "\n";
  //! [f07zaz]
}

void f07adf() {
  //! [f07adf]
  QuarnFloat a[] = {1, 4, 2, 4};  // rows (1, 2) and (4, 4): L = (1, 0), (0.25, 1), U = (4, 4), (0, 1)
  Integer ipiv[2], info;
  QuarnMP_f07adf_(2, 2, a, 2, ipiv, &info);
  std::cout << a[0] << " " << a[2] << "\n" << a[1] << " " << a[3] << "\nrow " << ipiv[0] << "\n";
  //! [f07adf]
}

void f07adg() {
  //! [f07adg]
  QuarnFloat a[] = {1, 4, 2, 4}, ipiv[2];
  Integer info;
  QuarnMP_f07adg_(2, 2, a, 2, ipiv, &info);
  std::cout << a[0] << " " << a[2] << "\n" << a[1] << " " << a[3] << "\nrow " << ipiv[0] << "\n";
  //! [f07adg]
}

void dgetrs() {
  //! [dgetrs]
  QuarnFloat a[] = {1, 4, 2, 4}, b[] = {5, 12};  // x + 2 y = 5, 4 x + 4 y = 12
  Integer ipiv[2], info;
  QuarnMP_f07adf_(2, 2, a, 2, ipiv, &info);
  QuarnMPX_dgetrs_("N", 2, 1, a, 2, ipiv, b, 2, &info, 1);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dgetrs]
}

void dgetri() {
  //! [dgetri]
  QuarnFloat a[] = {2, 0, 1, 4}, work[2];  // rows (2, 1) and (0, 4)
  Integer ipiv[2], info;
  QuarnMPX_dgetrf_(2, 2, a, 2, ipiv, &info);
  QuarnMPX_dgetri_(2, a, 2, ipiv, work, 2, &info);
  std::cout << a[0] << " " << a[2] << "\n" << a[1] << " " << a[3] << "\n";
  //! [dgetri]
}

void f07frf() {
  //! [f07frf]
  Complex a[] = {4, 0, Complex(0, 2), 2};  // rows (4, 2 i) and (-2 i, 2)
  Integer info;
  QuarnMP_f07frf_("U", 2, a, 2, &info, 1);
  std::cout << a[0].re << ", " << a[2].re << " + i " << a[2].im << ", " << a[3].re << "\n";
  //! [f07frf]
}

void dpotrf() {
  //! [dpotrf]
  QuarnFloat a[] = {4, 2, 0, 5};  // the lower triangle
  Integer info;
  QuarnMPX_dpotrf_("L", 2, a, 2, &info, 1);
  std::cout << a[0] << "\n" << a[1] << " " << a[3] << "\n";
  //! [dpotrf]
}

void dpotrs() {
  //! [dpotrs]
  QuarnFloat a[] = {4, 2, 0, 5}, b[] = {10, 13};
  Integer info;
  QuarnMPX_dpotrf_("L", 2, a, 2, &info, 1);
  QuarnMPX_dpotrs_("L", 2, 1, a, 2, b, 2, &info, 1);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dpotrs]
}

void f08nhf() {
  //! [f08nhf]
  QuarnFloat a[] = {1, 0, 2, 3}, scale[2];  // triangular: nothing is left to balance
  Integer ilo, ihi, info;
  QuarnMP_f08nhf_("B", 2, a, 2, &ilo, &ihi, scale, &info, 1);
  std::cout << ilo << " " << ihi << "\n";
  //! [f08nhf]
}

void dgehrd() {
  //! [dgehrd]
  QuarnFloat a[] = {1, 3, 4, 2, 1, 0, 2, 0, 1}, tau[2], work[3];  // the first column is (1, 3, 4)
  Integer info;
  QuarnMPX_dgehrd_(3, 1, 3, a, 3, tau, work, 3, &info);
  std::cout << a[0] << " " << a[1] << "\n";
  //! [dgehrd]
}

void dgebak() {
  //! [dgebak]
  QuarnFloat a[] = {1, 0.0001, 10000, 1}, scale[2];  // balanced: (1, 1; 1, 1) with the eigenvector (1, 1)
  QuarnFloat v[] = {1, 1};
  Integer ilo, ihi, info;
  QuarnMPX_f08nhf_("B", 2, a, 2, &ilo, &ihi, scale, &info, 1);
  QuarnMPX_dgebak_("B", "R", 2, ilo, ihi, scale, 1, v, 2, &info, 1, 1);
  std::cout << v[0] / v[1] << "\n";
  //! [dgebak]
}

void f08pef() {
  //! [f08pef]
  QuarnFloat h[] = {0, 1, -1, 0}, wr[2], wi[2], z[1], work[2];  // a rotation
  Integer info;
  QuarnMP_f08pef_("E", "N", 2, 1, 2, h, 2, wr, wi, z, 1, work, 2, &info, 1, 1);
  std::cout << wr[0] << " " << wi[0] << "\n" << wr[1] << " " << wi[1] << "\n";
  //! [f08pef]
}

void f08qkf() {
  //! [f08qkf]
  QuarnFloat t[] = {1, 0, 1, 2}, vl[1], vr[4], work[6];  // rows (1, 1) and (0, 2)
  Integer select[2], m, info;
  QuarnMP_f08qkf_("R", "A", select, 2, t, 2, vl, 1, vr, 2, 2, &m, work, &info, 1, 1);
  std::cout << vr[0] << " " << vr[1] << "\n" << vr[2] << " " << vr[3] << "\n";
  //! [f08qkf]
}

void f08qlf() {
  //! [f08qlf]
  QuarnFloat t[] = {1, 0, 0, 3}, v[] = {1, 0, 0, 1}, s[2], sep[2], work[16];  // diagonal
  Integer select[2], iwork[4], m, info;
  QuarnMP_f08qlf_("B", "A", select, 2, t, 2, v, 2, v, 2, s, sep, 2, &m, work, 2, iwork, &info, 1, 1);
  std::cout << s[0] << " " << s[1] << "\n" << sep[0] << " " << sep[1] << "\n";
  //! [f08qlf]
}

void c02alf() {
  //! [c02alf]
  QuarnFloat e = 1, a = 0, b = -5, c = 0, d = 4;  // (z^2 - 1)(z^2 - 4)
  QuarnFloat real[4], imaginary[4], estimate[4];
  Integer ifail = -1;
  QuarnMP_c02alf_(&e, &a, &b, &c, &d, real, imaginary, estimate, &ifail);
  QuarnSetDigits(12);
  std::cout << real[0] * real[0] + real[1] * real[1] + real[2] * real[2] + real[3] * real[3] << "\n";
  //! [c02alf]
}

}  // namespace

int main() {
  return run_examples({{"f07zaz", f07zaz},
                       {"f07adf", f07adf},
                       {"f07adg", f07adg},
                       {"dgetrs", dgetrs},
                       {"dgetri", dgetri},
                       {"f07frf", f07frf},
                       {"dpotrf", dpotrf},
                       {"dpotrs", dpotrs},
                       {"f08nhf", f08nhf},
                       {"dgehrd", dgehrd},
                       {"dgebak", dgebak},
                       {"f08pef", f08pef},
                       {"f08qkf", f08qkf},
                       {"f08qlf", f08qlf},
                       {"c02alf", c02alf}});
}

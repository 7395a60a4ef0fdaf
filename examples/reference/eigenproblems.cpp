// Examples of the routine reference: symmetric and Hermitian eigenproblems.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dsyev() {
  //! [dsyev]
  QuarnFloat a[] = {0, 3, 3, 8}, w[2], work[5];  // eigenvalues -1 and 9
  Integer info;
  QuarnMPX_dsyev_("N", "L", 2, a, 2, w, work, 5, &info, 1, 1);
  std::cout << w[0] << " " << w[1] << "\n";
  //! [dsyev]
}

void dsyevx() {
  //! [dsyevx]
  QuarnFloat a[] = {0, 3, 3, 8}, w[2], work[16];  // the second of the eigenvalues -1 and 9
  Integer m, info;
  QuarnMPX_dsyevx_("N", "I", "L", 2, a, 2, 0, 0, 2, 2, 0, &m, w, nullptr, 1, work, 16, nullptr, nullptr, &info, 1, 1,
                   1);
  std::cout << m << ": " << w[0] << "\n";
  //! [dsyevx]
}

void dstebz() {
  //! [dstebz]
  QuarnFloat d[] = {0, 8}, e[] = {3}, w[2];
  Integer m, nsplit, iblock[2], isplit[2], info;
  QuarnMPX_dstebz_("V", "B", 2, -2, 0, 0, 0, 0, d, e, &m, &nsplit, w, iblock, isplit, nullptr, nullptr, &info, 1, 1);
  std::cout << m << ": " << w[0] << "\n";
  //! [dstebz]
}

void dstein() {
  //! [dstein]
  QuarnFloat d[] = {2, 2}, e[] = {1}, w[] = {3}, z[2];
  Integer iblock[] = {1}, isplit[] = {2}, ifail[1], info;
  QuarnMPX_dstein_(2, d, e, 1, w, iblock, isplit, z, 2, nullptr, nullptr, ifail, &info);
  std::cout << z[0] << " " << z[1] << "\n";
  //! [dstein]
}

void zgeev() {
  //! [zgeev]
  Complex a[] = {0, Complex(0, 1), Complex(0, 1), 0}, w[2], work[4];  // eigenvalues i and -i
  Integer info;
  QuarnMPX_zgeev_("N", "N", 2, a, 2, w, nullptr, 1, nullptr, 1, work, 4, nullptr, &info, 1, 1);
  std::cout << w[0] + w[1] << " " << w[0] * w[1] << "\n";
  //! [zgeev]
}

void zgebal() {
  //! [zgebal]
  Complex a[] = {1, 0, Complex(0, 1000), 2};  // triangular: nothing is left to work on
  QuarnFloat scale[2];
  Integer ilo, ihi, info;
  QuarnMPX_zgebal_("B", 2, a, 2, &ilo, &ihi, scale, &info, 1);
  std::cout << ilo << " " << ihi << "\n";
  //! [zgebal]
}

void zhseqr() {
  //! [zhseqr]
  Complex h[] = {Complex(0, 3), 0, 1, 2}, w[2], work[2];
  Integer info;
  QuarnMPX_zhseqr_("E", "N", 2, 1, 2, h, 2, w, nullptr, 1, work, 2, &info, 1, 1);
  std::cout << w[0] << " " << w[1] << "\n";
  //! [zhseqr]
}

void ztrevc() {
  //! [ztrevc]
  Complex t[] = {1, 0, 2, 2}, x[4];
  Integer m, info;
  QuarnMPX_ztrevc_("R", "A", nullptr, 2, t, 2, nullptr, 1, x, 2, 2, &m, nullptr, nullptr, &info, 1, 1);
  std::cout << x[2].re << " " << x[3].re << "\n";
  //! [ztrevc]
}

void dsytrd() {
  //! [dsytrd]
  QuarnFloat a[] = {1, 3, 4, 3, 2, 0, 4, 0, 2}, d[3], e[2], tau[2], work[1];
  Integer info;
  QuarnMPX_dsytrd_("L", 3, a, 3, d, e, tau, work, 1, &info, 1);
  std::cout << d[0] << " " << e[0] << "\n";
  //! [dsytrd]
}

void dorgtr() {
  //! [dorgtr]
  QuarnFloat a[] = {1, 3, 4, 3, 2, 0, 4, 0, 2}, d[3], e[2], tau[2], work[2];
  Integer info;
  QuarnMPX_dsytrd_("L", 3, a, 3, d, e, tau, work, 1, &info, 1);
  QuarnMPX_dorgtr_("L", 3, a, 3, tau, work, 2, &info, 1);
  std::cout << a[3] << " " << a[4] << " " << a[5] << "\n";  // the second column of Q
  //! [dorgtr]
}

void dsteqr() {
  //! [dsteqr]
  QuarnFloat d[] = {0, 8}, e[] = {3};
  Integer info;
  QuarnMPX_dsteqr_("N", 2, d, e, nullptr, 1, nullptr, &info, 1);
  std::cout << d[0] << " " << d[1] << "\n";
  //! [dsteqr]
}

void dstedc() {
  //! [dstedc]
  QuarnFloat d[] = {0, 8}, e[] = {3}, z[4];
  Integer info;
  QuarnMPX_dstedc_("I", 2, d, e, z, 2, nullptr, 1, nullptr, 1, &info, 1);
  std::cout << d[0] << " " << d[1] << "\n";
  //! [dstedc]
}

}  // namespace

int main() {
  return run_examples({{"dsyev", dsyev},
                       {"dsyevx", dsyevx},
                       {"dstebz", dstebz},
                       {"dstein", dstein},
                       {"zgeev", zgeev},
                       {"zgebal", zgebal},
                       {"zhseqr", zhseqr},
                       {"ztrevc", ztrevc},
                       {"dsytrd", dsytrd},
                       {"dorgtr", dorgtr},
                       {"dsteqr", dsteqr},
                       {"dstedc", dstedc}});
}

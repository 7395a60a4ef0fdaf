// Examples of the routine reference: determinants, condition numbers, scales.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void f03aff() {
  //! [f03aff]
  QuarnFloat a[] = {QuarnFloat(1, 800000000), 0, 0, QuarnFloat(-25, 800000000)};
  Integer ipiv[2], id, ifail = 1;
  QuarnFloat d, rcond;
  QuarnMPX_f03aff_(2, a, 2, ipiv, &d, &id, &rcond, &ifail);
  std::cout << ifail << ": " << d << " and " << id << ", " << rcond << "\n";
  //! [f03aff]
}

void zdeterminant() {
  //! [zdeterminant]
  Complex a[] = {Complex(1, 1), Complex(0, 0), Complex(0, 0), Complex(1, -1)}, d;
  Integer ipiv[2], id, ifail = 1;
  QuarnFloat rcond;
  QuarnMPX_zdeterminant_(2, a, 2, ipiv, &d, &id, &rcond, &ifail);
  std::cout << d.re << " " << d.im << " and " << id << "\n";
  //! [zdeterminant]
}

void dgecon() {
  //! [dgecon]
  QuarnFloat a[] = {4, 0, 0, 1}, rcond;
  Integer ipiv[2], info;
  QuarnMPX_dgetrf_(2, 2, a, 2, ipiv, &info);
  QuarnMPX_dgecon_("1", 2, a, 2, 4, &rcond, nullptr, nullptr, &info, 1);
  std::cout << rcond << "\n";
  //! [dgecon]
}

void dpocon() {
  //! [dpocon]
  QuarnFloat a[] = {4, 0, 0, 1}, rcond;
  Integer info;
  QuarnMPX_dpotrf_("U", 2, a, 2, &info, 1);
  QuarnMPX_dpocon_("U", 2, a, 2, 4, &rcond, nullptr, nullptr, &info, 1);
  std::cout << rcond << "\n";
  //! [dpocon]
}

void dpotri() {
  //! [dpotri]
  QuarnFloat a[] = {4, 2, 0, 5};  // the lower triangle of (4 2; 2 5)
  Integer info;
  QuarnMPX_dpotrf_("L", 2, a, 2, &info, 1);
  QuarnMPX_dpotri_("L", 2, a, 2, &info, 1);
  std::cout << a[0] << " " << a[1] << " " << a[3] << "\n";
  //! [dpotri]
}

void dgeequ() {
  //! [dgeequ]
  QuarnFloat a[] = {4, 0, 0, 50}, r[2], c[2], rowcnd, colcnd, amax;
  Integer info;
  QuarnMPX_dgeequ_(2, 2, a, 2, r, c, &rowcnd, &colcnd, &amax, &info);
  std::cout << r[0] << " " << r[1] << ", " << c[0] << " " << c[1] << ", " << rowcnd << "\n";
  QuarnMPX_dgeequb_(2, 2, a, 2, r, c, &rowcnd, &colcnd, &amax, &info);
  std::cout << r[0] << " " << r[1] << ", " << c[0] << " " << c[1] << "\n";
  //! [dgeequ]
}

void dlatrs() {
  //! [dlatrs]
  QuarnFloat a[] = {QuarnFloat(1, -800000000)}, x[] = {QuarnFloat(1, 800000000)}, scale, cnorm[1];
  Integer info;
  QuarnMPX_dlatrs_("U", "N", "N", "N", 1, a, 1, x, &scale, cnorm, &info, 1, 1, 1, 1);
  std::cout << x[0] << " " << scale << "\n";
  //! [dlatrs]
}

void dgedi() {
  //! [dgedi]
  QuarnFloat a[] = {QuarnFloat("1e600000000"), 0, 0, QuarnFloat("2e600000000")}, det[2];
  Integer ipvt[2], info;
  QuarnMPX_dgetrf_(2, 2, a, 2, ipvt, &info);
  QuarnMPX_dgedi_(a, 2, 2, ipvt, det, nullptr, 10);
  std::cout << det[0] << " 10^" << det[1] << "\n";
  //! [dgedi]
}

}  // namespace

int main() {
  return run_examples({{"f03aff", f03aff},
                       {"zdeterminant", zdeterminant},
                       {"dgecon", dgecon},
                       {"dpocon", dpocon},
                       {"dpotri", dpotri},
                       {"dgeequ", dgeequ},
                       {"dlatrs", dlatrs},
                       {"dgedi", dgedi}});
}

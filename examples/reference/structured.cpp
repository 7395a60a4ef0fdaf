// Examples of the routine reference: symmetric indefinite, band and tridiagonal systems.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dsytrf() {
  //! [dsytrf]
  QuarnFloat a[] = {0, 2, 0, 0}, work[1];  // the lower triangle of (0 2; 2 0)
  Integer ipiv[2], info;
  QuarnMPX_dsytrf_("L", 2, a, 2, ipiv, work, 1, &info, 1);
  std::cout << info << ", " << ipiv[0] << " " << ipiv[1] << "\n";  // one block of order 2
  //! [dsytrf]
}

void dsytrs() {
  //! [dsytrs]
  QuarnFloat a[] = {0, 2, 0, 0}, b[] = {6, 8}, work[1];
  Integer ipiv[2], info;
  QuarnMPX_dsytrf_("L", 2, a, 2, ipiv, work, 1, &info, 1);
  QuarnMPX_dsytrs_("L", 2, 1, a, 2, ipiv, b, 2, &info, 1);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dsytrs]
}

void dgbtrf() {
  //! [dgbtrf]
  // (2 1; 4 3) with one diagonal on each side: a row for what interchanges fill, and the three diagonals.
  QuarnFloat ab[] = {0, 0, 2, 4, 0, 1, 3, 0};
  Integer ipiv[2], info;
  QuarnMPX_dgbtrf_(2, 2, 1, 1, ab, 4, ipiv, &info);
  std::cout << ipiv[0] << ": " << ab[2] << " " << ab[5] << " " << ab[6] << "\n";
  //! [dgbtrf]
}

void dgbtrs() {
  //! [dgbtrs]
  QuarnFloat ab[] = {0, 0, 2, 4, 0, 1, 3, 0}, b[] = {4, 10};
  Integer ipiv[2], info;
  QuarnMPX_dgbtrf_(2, 2, 1, 1, ab, 4, ipiv, &info);
  QuarnMPX_dgbtrs_("N", 2, 1, 1, 1, ab, 4, ipiv, b, 2, &info, 1);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dgbtrs]
}

void dgttrf() {
  //! [dgttrf]
  QuarnFloat dl[] = {4}, d[] = {2, 3}, du[] = {1}, du2[1];
  Integer ipiv[2], info;
  QuarnMPX_dgttrf_(2, dl, d, du, du2, ipiv, &info);
  std::cout << ipiv[0] << ": " << d[0] << " " << du[0] << " " << d[1] << "\n";
  //! [dgttrf]
}

void dgttrs() {
  //! [dgttrs]
  QuarnFloat dl[] = {4}, d[] = {2, 3}, du[] = {1}, du2[1], b[] = {4, 10};
  Integer ipiv[2], info;
  QuarnMPX_dgttrf_(2, dl, d, du, du2, ipiv, &info);
  QuarnMPX_dgttrs_("N", 2, 1, dl, d, du, du2, ipiv, b, 2, &info, 1);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dgttrs]
}

void dpttrf() {
  //! [dpttrf]
  QuarnFloat d[] = {4, 5}, e[] = {2};
  Integer info;
  QuarnMPX_dpttrf_(2, d, e, &info);
  std::cout << d[0] << " " << d[1] << ", " << e[0] << "\n";
  //! [dpttrf]
}

void dpttrs() {
  //! [dpttrs]
  QuarnFloat d[] = {4, 5}, e[] = {2}, b[] = {8, 12};
  Integer info;
  QuarnMPX_dpttrf_(2, d, e, &info);
  QuarnMPX_dpttrs_(2, 1, d, e, b, 2, &info);
  std::cout << b[0] << " " << b[1] << "\n";
  //! [dpttrs]
}

}  // namespace

int main() {
  return run_examples({{"dsytrf", dsytrf},
                       {"dsytrs", dsytrs},
                       {"dgbtrf", dgbtrf},
                       {"dgbtrs", dgbtrs},
                       {"dgttrf", dgttrf},
                       {"dgttrs", dgttrs},
                       {"dpttrf", dpttrf},
                       {"dpttrs", dpttrs}});
}

// Examples of the routine reference: generalised eigenproblems.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dsygv() {
  //! [dsygv]
  QuarnFloat a[] = {2, -1, -1, 2}, b[] = {4, 0, 0, 4}, w[2], work[5];  // eigenvalues 1/4 and 3/4
  Integer info;
  QuarnMPX_dsygv_(1, "N", "L", 2, a, 2, b, 2, w, work, 5, &info, 1, 1);
  std::cout << w[0] << " " << w[1] << "\n";
  //! [dsygv]
}

void dggev() {
  //! [dggev]
  QuarnFloat a[] = {2, 0, 0, 3}, b[] = {4, 0, 0, 0}, alphar[2], alphai[2], beta[2], work[16];  // 1/2 and infinity
  Integer info;
  QuarnMPX_dggev_("N", "N", 2, a, 2, b, 2, alphar, alphai, beta, nullptr, 1, nullptr, 1, work, 16, &info, 1, 1);
  std::cout << alphar[0] / beta[0] << " " << beta[1] << "\n";
  //! [dggev]
}

void dsygst() {
  //! [dsygst]
  QuarnFloat a[] = {2, -1, -1, 2}, b[] = {4, 0, 0, 4};
  Integer info;
  QuarnMPX_dpotrf_("L", 2, b, 2, &info, 1);
  QuarnMPX_dsygst_(1, "L", 2, a, 2, b, 2, &info, 1);
  std::cout << a[0] << " " << a[1] << "\n";
  //! [dsygst]
}

void dgghrd() {
  //! [dgghrd]
  QuarnFloat a[] = {1, 0, 4, 0, 1, 0, 0, 0, 1}, b[] = {1, 0, 0, 0, 1, 0, 0, 0, 1};  // a(3, 1) goes into the second row
  Integer info;
  QuarnMPX_dgghrd_("N", "N", 3, 1, 3, a, 3, b, 3, nullptr, 1, nullptr, 1, &info, 1, 1);
  std::cout << a[1] << " " << a[2] << "\n";
  //! [dgghrd]
}

void dhgeqz() {
  //! [dhgeqz]
  QuarnFloat h[] = {2, 0, 5, 3}, t[] = {4, 0, 1, 0}, alphar[2], alphai[2], beta[2], work[2];  // 1/2 and infinity
  Integer info;
  QuarnMPX_dhgeqz_("E", "N", "N", 2, 1, 2, h, 2, t, 2, alphar, alphai, beta, nullptr, 1, nullptr, 1, work, 2, &info, 1,
                   1, 1);
  std::cout << alphar[0] / beta[0] << " " << beta[1] << "\n";
  //! [dhgeqz]
}

}  // namespace

int main() {
  return run_examples({{"dsygv", dsygv}, {"dggev", dggev}, {"dsygst", dsygst}, {"dgghrd", dgghrd}, {"dhgeqz", dhgeqz}});
}

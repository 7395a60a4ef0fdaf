// Examples of the routine reference: singular values.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dgesvd() {
  //! [dgesvd]
  QuarnFloat a[] = {3, 4, 0, 0}, s[2], work[10];  // one column that is not zero
  Integer info;
  QuarnMPX_dgesvd_("N", "N", 2, 2, a, 2, s, nullptr, 1, nullptr, 1, work, 10, &info, 1, 1);
  std::cout << s[0] << " " << s[1] << "\n";
  //! [dgesvd]
}

void dgejsv() {
  //! [dgejsv]
  QuarnFloat a[] = {3, 0, 0, QuarnFloat("4e-300")}, s[2], work[7];
  Integer iwork[3], info;
  QuarnMPX_dgejsv_("F", "N", "N", "R", "N", "N", 2, 2, a, 2, s, nullptr, 1, nullptr, 1, work, 7, iwork, &info, 1, 1, 1,
                   1, 1, 1);
  std::cout << s[0] << " " << s[1] << "\n";
  //! [dgejsv]
}

}  // namespace

int main() { return run_examples({{"dgesvd", dgesvd}, {"dgejsv", dgejsv}}); }

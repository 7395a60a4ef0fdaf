// Examples of the routine reference: refinement of solutions.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dgerfs() {
  //! [dgerfs]
  QuarnFloat a[] = {1, 1, 3, -1}, af[] = {1, 1, 3, -4};  // rows (1, 3) and (1, -1), and their factors
  QuarnFloat b[] = {7, -1}, x[] = {QuarnFloat("1.01"), 2}, ferr[1], berr[1], work[6];
  Integer ipiv[] = {1, 2}, iwork[2], info;
  QuarnMPX_dgerfs_("N", 2, 1, a, 2, af, 2, ipiv, b, 2, x, 2, ferr, berr, work, iwork, &info, 1);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [dgerfs]
}

}  // namespace

int main() { return run_examples({{"dgerfs", dgerfs}}); }

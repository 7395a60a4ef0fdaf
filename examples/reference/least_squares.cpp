// Examples of the routine reference: rank, least squares of any rank and with constraints.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dgelsy() {
  //! [dgelsy]
  QuarnFloat a[] = {3, 0, 4, 0}, b[] = {25, 7}, work[8];  // rows (3, 4) and (0, 0)
  Integer jpvt[2] = {}, rank, info;
  QuarnMPX_dgelsy_(2, 2, 1, a, 2, b, 2, jpvt, QuarnFloat(1, -15), &rank, work, 8, &info);
  std::cout << rank << ": " << b[0] << " " << b[1] << "\n";
  //! [dgelsy]
}

void dgeqp3() {
  //! [dgeqp3]
  QuarnFloat a[] = {1, 0, 3, 4}, tau[2], work[7];  // columns (1, 0) and (3, 4)
  Integer jpvt[2] = {}, info;
  QuarnMPX_dgeqp3_(2, 2, a, 2, jpvt, tau, work, 7, &info);
  std::cout << jpvt[0] << " " << jpvt[1] << ": " << a[0] << "\n";
  //! [dgeqp3]
}

void dtzrzf() {
  //! [dtzrzf]
  QuarnFloat a[] = {3, 4}, tau[1], work[1];  // one row
  Integer info;
  QuarnMPX_dtzrzf_(1, 2, a, 1, tau, work, 1, &info);
  std::cout << a[0] << "\n";
  //! [dtzrzf]
}

void dormrz() {
  //! [dormrz]
  QuarnFloat a[] = {3, 4}, c[] = {3, 4}, tau[1], work[2];
  Integer info;
  QuarnMPX_dtzrzf_(1, 2, a, 1, tau, work, 1, &info);
  QuarnMPX_dormrz_("R", "T", 1, 2, 1, 1, a, 1, tau, c, 1, work, 2, &info, 1, 1);
  std::cout << c[0] << " " << c[1] << "\n";
  //! [dormrz]
}

void dgglse() {
  //! [dgglse]
  // The point nearest to (10, 5) with 3 x + 4 y = 25.
  QuarnFloat a[] = {1, 0, 0, 1}, b[] = {3, 4}, c[] = {10, 5}, d[] = {25}, x[2], work[5];
  Integer info;
  QuarnMPX_dgglse_(2, 2, 1, a, 2, b, 1, c, d, x, work, 5, &info);
  std::cout << x[0] << " " << x[1] << "\n";
  //! [dgglse]
}

void dggglm() {
  //! [dggglm]
  // Two measurements of one number, 0 and 5, the second one with errors twice as large.
  QuarnFloat a[] = {1, 1}, b[] = {1, 0, 0, 2}, d[] = {0, 5}, x[1], y[2], work[5];
  Integer info;
  QuarnMPX_dggglm_(2, 1, 2, a, 2, b, 2, d, x, y, work, 5, &info);
  std::cout << x[0] << "\n";
  //! [dggglm]
}

}  // namespace

int main() {
  return run_examples({{"dgelsy", dgelsy},
                       {"dgeqp3", dgeqp3},
                       {"dtzrzf", dtzrzf},
                       {"dormrz", dormrz},
                       {"dgglse", dgglse},
                       {"dggglm", dggglm}});
}

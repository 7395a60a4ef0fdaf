// Examples of the routine reference: results with proven bounds.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dproven_solve() {
  //! [dproven_solve]
  QuarnFloat a[] = {2, 1, 1, 3}, b[] = {3, 5}, x[2], error[2];
  Integer info;
  QuarnMPX_dproven_solve_(2, 1, a, 2, nullptr, 0, b, 2, nullptr, 0, x, 2, error, 2, &info);
  std::cout << x[0] << " " << error[0] << "\n";
  //! [dproven_solve]
}

void dproven_determinant() {
  //! [dproven_determinant]
  QuarnFloat a[] = {2, 1, 1, 3}, det, error;
  Integer info;
  QuarnMPX_dproven_determinant_(2, a, 2, nullptr, 0, &det, &error, &info);
  std::cout << det << " " << (error < 1) << "\n";
  //! [dproven_determinant]
}

void dproven_definite() {
  //! [dproven_definite]
  QuarnFloat a[] = {2, 1, 1, 3};
  Integer info;
  QuarnMPX_dproven_definite_("L", 2, a, 2, &info, 1);
  std::cout << (info == 0 ? "positive definite" : "not") << "\n";
  //! [dproven_definite]
}

void dproven_rank() {
  //! [dproven_rank]
  QuarnFloat a[] = {1, 2, 2, 4};
  Integer rank, info;
  QuarnMPX_dproven_rank_(2, 2, a, 2, &rank, &info);
  std::cout << "rank " << rank << "\n";
  //! [dproven_rank]
}

void dproven_infinite() {
  //! [dproven_infinite]
  QuarnFloat a[] = {1, 3, 2, 4};
  QuarnFloat b[] = {1, 2, 2, 4};
  Integer infinite, info;
  QuarnMPX_dproven_infinite_(2, a, 2, b, 2, &infinite, &info);
  std::cout << infinite << " of 2 eigenvalues is infinite\n";
  //! [dproven_infinite]
}

}  // namespace

int main() {
  return run_examples({{"dproven_solve", dproven_solve},
                       {"dproven_determinant", dproven_determinant},
                       {"dproven_definite", dproven_definite},
                       {"dproven_rank", dproven_rank},
                       {"dproven_infinite", dproven_infinite}});
}

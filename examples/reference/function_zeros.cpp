// Examples of the routine reference: zeros of functions.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dbrack() {
  //! [dbrack]
  QuarnFloat x = 1, fx, y, fy, work[16];
  const QuarnFloat h = 1, boundl = 0, boundu = 100;
  Integer irevcm = 0, ifail = 1;
  do {
    QuarnMPX_dbrack_(&irevcm, &x, &fx, &y, &fy, &h, &boundl, &boundu, work, &ifail);
    fx = x * x - 40;
  } while (irevcm == 1);
  std::cout << y << " " << x << "\n";
  //! [dbrack]
}

void dzeroin() {
  //! [dzeroin]
  QuarnFloat x = 5, fx, y = 9, fy, work[16];
  const QuarnFloat tol = 0;
  Integer irevcm = 0, ifail = 1;
  do {
    QuarnMPX_dzeroin_(&irevcm, &x, &fx, &y, &fy, &tol, work, &ifail);
    fx = x * x - 40;
  } while (irevcm == 1);
  std::cout << x << "\n";
  //! [dzeroin]
}

}  // namespace

int main() { return run_examples({{"dbrack", dbrack}, {"dzeroin", dzeroin}}); }

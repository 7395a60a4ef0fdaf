// Examples of the routine reference: ranking and rearranging.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void m01daf() {
  //! [m01daf]
  QuarnFloat rv[] = {30, 10, 20};
  Integer first = 1, last = 3, irank[3], ifail = -1;
  QuarnMP_m01daf_(rv, &first, &last, "A", irank, &ifail, 1);
  std::cout << irank[0] << " " << irank[1] << " " << irank[2] << "\n";
  //! [m01daf]
}

void m01eaf() {
  //! [m01eaf]
  QuarnFloat rv[] = {30, 10, 20};
  Integer first = 1, last = 3, irank[] = {3, 1, 2}, ifail = -1;
  QuarnMP_m01eaf_(rv, &first, &last, irank, &ifail);
  std::cout << rv[0] << " " << rv[1] << " " << rv[2] << "\n";
  //! [m01eaf]
}

void m01zaf() {
  //! [m01zaf]
  Integer first = 1, last = 3, iperm[] = {3, 1, 2}, ifail = -1;
  QuarnMP_m01zaf_(iperm, &first, &last, &ifail);
  std::cout << iperm[0] << " " << iperm[1] << " " << iperm[2] << "\n";
  //! [m01zaf]
}

}  // namespace

int main() { return run_examples({{"m01daf", m01daf}, {"m01eaf", m01eaf}, {"m01zaf", m01zaf}}); }

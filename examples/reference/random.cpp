// Examples of the routine reference: random numbers.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void g05kaf() {
  //! [g05kaf]
  QuarnSetDigits(30);
  Integer igen, iseed[4];
  QuarnMP_g05kbx_(&igen, iseed);
  std::cout << QuarnMP_g05kaf_(&igen, iseed) << "\n";   // 53 random bits, rounded to 30 digits
  std::cout << QuarnMPX_g05kaf_(&igen, iseed) << "\n";  // 30 random digits
  //! [g05kaf]
}

void g05kazn() {
  //! [g05kazn]
  Integer iseed[] = {1, 2, 3, 4};
  std::cout << QuarnMP_g05kazn_(1, iseed) << "\n" << QuarnMP_g05kazn_(0, iseed) << "\n";
  //! [g05kazn]
}

void g05kbx() {
  //! [g05kbx]
  Integer igen, iseed[4];
  QuarnMP_g05kbx_(&igen, iseed);
  std::cout << igen << ": " << iseed[0] << " " << iseed[1] << " " << iseed[2] << " " << iseed[3] << "\n";
  //! [g05kbx]
}

}  // namespace

int main() { return run_examples({{"g05kaf", g05kaf}, {"g05kazn", g05kazn}, {"g05kbx", g05kbx}}); }

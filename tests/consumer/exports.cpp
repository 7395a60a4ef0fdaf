// One export, as a host calls it.
#include <iostream>

#include "tesk2mp/tesk2mp.h"

int main() {
  QuarnSetDigits(30);
  QuarnFloat x[] = {1, 2, 4, 8};
  QuarnFloat work[4];
  Integer n = 4;
  Integer ifail = 0;
  QuarnMPX_c06faf_(x, &n, work, &ifail);
  std::cout << x[0] << " " << x[1] << " " << x[2] << " " << x[3] << "\n";
}

// The Fourier transform of six numbers, to 40 digits.
#include <iostream>
#include <vector>

#include "tesk2mp/tesk2mp.h"

int main() {
  QuarnSetDigits(40);
  std::vector<QuarnFloat> x = {1, 2, 3, 5, 8, 13};
  std::vector<QuarnFloat> work(x.size());
  Integer n = Integer(x.size());
  Integer ifail = -1;  // on failure say why and come back
  QuarnMPX_c06faf_(x.data(), &n, work.data(), &ifail);
  if (ifail != 0) {
    return 1;
  }
  // Now x holds the real parts of z_0 ... z_3, then the imaginary parts of z_2 and z_1.
  for (Integer k = 0; k <= n / 2; ++k) {
    std::cout << "z_" << k << " = " << x[k];
    if (k > 0 && 2 * k < n) {
      std::cout << " + i " << x[n - k];
    }
    std::cout << "\n";
  }
}

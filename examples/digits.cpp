// What the working precision does, and what it leaves alone.
#include <iostream>

#include "tesk2mp/tesk2mp.h"

int main() {
  const QuarnFloat early = QuarnFloat(1) / 3;
  const int former = QuarnSetDigits(50);
  const QuarnFloat late = QuarnFloat(1) / 3;
  std::cout << "at " << former << " digits  " << early << "\n";
  std::cout << "at 50 digits  " << late << "\n";
  std::cout << "their gap     " << late - early << "\n\n";

  std::cout << "from text     " << QuarnFloat("0.1") << "\n";
  std::cout << "from a double " << QuarnFloat(0.1) << "\n\n";

  std::cout << "classic pi    " << QuarnMP_x01aaf_() << "\n";
  std::cout << "companion pi  " << QuarnMPX_x01aaf_() << "\n";
}

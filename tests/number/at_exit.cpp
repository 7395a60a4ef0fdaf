// Numbers that are computed while the process ends: after main, by the destructor of a global object that is older than
// anything the number library keeps.
#include <cstdio>

#include "quarn/quarnfloat.h"

namespace {

/// sqrt(2) is right, at many digits and few.
bool computes() {
  bool right = true;
  for (const int digits : {60'000, 200, 20}) {
    QuarnSetDigits(digits);
    const QuarnFloat root = sqrt(QuarnFloat(2));
    right = right && fabs(root * root - 2) < QuarnFloat(1, 2 - digits);
    if (digits <= 200) {
      const QuarnFloat one = sin(root) * sin(root) + cos(root) * cos(root);
      right = right && fabs(one - 1) < QuarnFloat(1, 2 - digits);
    }
  }
  return right;
}

struct Late {
  ~Late() { std::puts(computes() ? "right at exit" : "wrong at exit"); }
  QuarnFloat kept;
};

Late late;

}  // namespace

int main() {
  std::puts(computes() ? "right in main" : "wrong in main");
  late.kept = sqrt(QuarnFloat(3));
}

// Made by tools/contract.py from include/tesk2mp/random.h; do not edit.
// clang-format off
#include "tesk2mp/random.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

QuarnFloat QuarnMP_g05kaf_(const Integer* igen, Integer* iseed) {
  return QuarnMP_g05kafn_(*igen, iseed);
}

QuarnFloat QuarnMPX_g05kaf_(const Integer* igen, Integer* iseed) {
  return QuarnMPX_g05kafn_(*igen, iseed);
}
}

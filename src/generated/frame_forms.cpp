// Made by tools/contract.py from include/tesk2mp/frame.h; do not edit.
// clang-format off
#include "tesk2mp/frame.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi) {
  QuarnMP_a02aafn_(*xr, *xi, yr, yi);
}

void QuarnMPX_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi) {
  QuarnMPX_a02aafn_(*xr, *xi, yr, yi);
}
}

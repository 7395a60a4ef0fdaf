#include "src/dense/power_of_ten.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "src/kernels/level1.h"

namespace tesk {
namespace {

constexpr int kCommon = 1000000;

/// e of x = d.ddd 10^e
Integer decimal_exponent(const QuarnFloat& x) {
  char text[32];
  QFsnprintf(text, sizeof text, "%.0e", x);
  return Integer(std::atol(std::strchr(text, 'e') + 1));
}

}  // namespace

Integer far_exponent(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= columns; ++j) {
    for (Integer i = 1; i <= rows; ++i) {
      if (!isfinite(a(i, j))) {
        return 0;
      }
      largest = std::max(largest, fabs(a(i, j)));
    }
  }
  if (largest == 0 || (largest < QuarnFloat(1, kCommon) && largest > QuarnFloat(1, -kCommon))) {
    return 0;
  }
  return decimal_exponent(largest);
}

void multiply_by_power(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a, Integer exponent) {
  if (exponent == 0) {
    return;
  }
  const QuarnFloat factor(1, int(exponent));
  for (Integer j = 1; j <= columns; ++j) {
    scale(rows, factor, a.column(j));
  }
}

}  // namespace tesk

#include "src/dense/power_of_ten.h"

#include <algorithm>

#include "quarn/functions.h"
#include "src/kernels/level1.h"

namespace tesk {
namespace {

constexpr int kCommon = 1000000;

}  // namespace

QuarnFloat largest_magnitude(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= columns; ++j) {
    for (Integer i = 1; i <= rows; ++i) {
      if (!isfinite(a(i, j))) {
        return {};
      }
      largest = std::max(largest, fabs(a(i, j)));
    }
  }
  return largest;
}

Integer far_exponent(const QuarnFloat& largest) {
  if (largest == 0 || (largest < QuarnFloat(1, kCommon) && largest > QuarnFloat(1, -kCommon))) {
    return 0;
  }
  const Integer exponent = ilogb(largest);
  return exponent - exponent % 2;  // square roots are rounded as those of other scales
}

Integer far_exponent(Integer rows, Integer columns, OneBasedMatrix<QuarnFloat> a) {
  return far_exponent(largest_magnitude(rows, columns, a));
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

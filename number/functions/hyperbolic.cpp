// Inverse hyperbolic functions, from logarithms.
#include "number/functions/support.h"
#include "quarn/functions.h"

using namespace quarn;

namespace {

/// Where x + sqrt(x^2 + 1) and x + sqrt(x^2 - 1) are 2 x to w digits.
bool is_large(const QuarnFloat& x, int w) { return scientific_exponent(x) > w; }

/// log(2 x) to a relative error of 10^-w, 2 x out of range of exponents or not.
QuarnFloat log_of_twice(const QuarnFloat& x, int w) {
  const WorkingDigits scope(w + 5);
  return approximate_log(x, w + 3) + approximate_ln2(w + 3);
}

}  // namespace

QuarnFloat asinh(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return x;
  }
  // x (1 - x^2/6 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, true)) {
    return *result;
  }
  const QuarnFloat size = fabs(x);
  const QuarnFloat result = correctly_rounded([&size](int w) {
    if (is_large(size, w)) {
      return log_of_twice(size, w);
    }
    const WorkingDigits scope(w + 8 + places_below_one(size));
    return approximate_log(size + sqrt(size * size + QuarnFloat(1)), w + 2);
  });
  return signbit(x) ? -result : result;
}

QuarnFloat acosh(const QuarnFloat& x) {
  if (kind_of(x) == Kind::nan) {
    return x;
  }
  const int order = QuarnCompare(x, 1);
  if (order <= 0) {
    return order == 0 ? special(Kind::zero) : special(Kind::nan);
  }
  if (kind_of(x) == Kind::infinite) {
    return x;
  }
  return correctly_rounded([&x](int w) {
    if (is_large(x, w)) {
      return log_of_twice(x, w);
    }
    // The logarithm of 1 + sqrt(2 (x - 1)) + ...
    const WorkingDigits scope(w + 8);
    const QuarnFloat above = x - QuarnFloat(1);
    const WorkingDigits longer(w + 8 + places_below_one(above) / 2 + 1);
    return approximate_log(x + sqrt(above * (x + QuarnFloat(1))), w + 2);
  });
}

QuarnFloat atanh(const QuarnFloat& x) {
  if (kind_of(x) == Kind::nan || kind_of(x) == Kind::zero) {
    return x;
  }
  const int order = QuarnCompare(fabs(x), 1);
  if (order >= 0) {
    return order == 0 ? special(Kind::infinite, signbit(x)) : special(Kind::nan);
  }
  // x (1 + x^2/3 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, false)) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 8 + places_below_one(x));
    const QuarnFloat one = 1;
    return approximate_log((one + x) / (one - x), w + 2) / QuarnFloat(2);
  });
}

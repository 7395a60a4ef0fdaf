// exp, log, log10 and the hyperbolic functions.
#include "number/elementary/exponential.h"

#include <algorithm>

#include "number/elementary/fixed_point.h"
#include "number/elementary/rounding.h"

using quarn::approximate_exp;
using quarn::approximate_ln10;
using quarn::approximate_log;
using quarn::correctly_rounded;
using quarn::kExpOverflowExponent;
using quarn::Kind;
using quarn::kind_of;
using quarn::perturbed;
using quarn::Radix;
using quarn::scientific_exponent;
using quarn::special;
using quarn::view_of;
using quarn::WorkingDigits;

namespace {

/// Digits that the difference of two numbers near 1 loses for an argument of this size.
int digits_lost(const QuarnFloat& x) { return int(std::max<std::int64_t>(-scientific_exponent(x), 0)) + 2; }

/// (e^x + sign e^-x) / 2 for x > 0 to a relative error of 10^-w.
QuarnFloat half_sum(const QuarnFloat& x, int sign, int w) {
  const int digits = w + (sign < 0 ? digits_lost(x) : 2);
  const WorkingDigits scope(digits + 5);
  if (scientific_exponent(x) >= 8) {
    // e^-x does not count, and e^x may overflow where half of it does not.
    const QuarnFloat root = approximate_exp(x / QuarnFloat(2), digits);
    return root * (root / QuarnFloat(2));
  }
  const QuarnFloat e = approximate_exp(x, digits);
  const QuarnFloat inverse = QuarnFloat(1) / e;
  return (sign < 0 ? e - inverse : e + inverse) / QuarnFloat(2);
}

/// tanh x for x > 0 to a relative error of 10^-w.
QuarnFloat approximate_tanh(const QuarnFloat& x, int w) {
  const int digits = w + digits_lost(x);
  const WorkingDigits scope(digits + 5);
  const QuarnFloat e = approximate_exp(x + x, digits);
  return (e - QuarnFloat(1)) / (e + QuarnFloat(1));
}

}  // namespace

QuarnFloat exp(const QuarnFloat& x) {
  if (const auto result = quarn::exponential_of_special(x, kExpOverflowExponent)) {
    return *result;
  }
  const std::int64_t exponent = scientific_exponent(x);
  // e^x = 1 + d with |d| < 2 |x|.
  if (const auto result = perturbed(1, exponent + 2, signbit(x))) {
    return *result;
  }
  if (const auto result = quarn::fixed::rounded_exp(x)) {
    return *result;
  }
  return correctly_rounded([&x](int w) { return approximate_exp(x, w); });
}

QuarnFloat log(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::nan:
      return x;
    case Kind::zero:
      return special(Kind::infinite, true);
    case Kind::infinite:
      return signbit(x) ? special(Kind::nan) : x;
    default:
      break;
  }
  if (signbit(x)) {
    return special(Kind::nan);
  }
  if (x == QuarnFloat(1)) {
    return 0;
  }
  if (const auto result = quarn::fixed::rounded_log(x)) {
    return *result;
  }
  return correctly_rounded([&x](int w) { return approximate_log(x, w); });
}

QuarnFloat log10(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite || signbit(x)) {
    return log(x);
  }
  const quarn::View v = view_of(x);
  if (v.length == 1 && v.limbs[0] == Radix::base / 10) {
    return v.exponent - 1;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    return approximate_log(x, w + 2) / approximate_ln10(w + 2);
  });
}

QuarnFloat sinh(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return x;
  }
  const std::int64_t exponent = scientific_exponent(x);
  if (exponent >= kExpOverflowExponent) {
    return special(Kind::infinite, signbit(x));
  }
  // sinh x = x (1 + x^2/6 + ...)
  if (const auto result = perturbed(x, 2 * exponent + 2, false)) {
    return *result;
  }
  const QuarnFloat size = fabs(x);
  const QuarnFloat result = correctly_rounded([&size](int w) { return half_sum(size, -1, w); });
  return signbit(x) ? -result : result;
}

QuarnFloat cosh(const QuarnFloat& x) {
  if (kind_of(x) == Kind::zero) {
    return 1;
  }
  if (kind_of(x) != Kind::finite) {
    return fabs(x);
  }
  const std::int64_t exponent = scientific_exponent(x);
  if (exponent >= kExpOverflowExponent) {
    return special(Kind::infinite);
  }
  // cosh x = 1 + x^2/2 + ...
  if (const auto result = perturbed(1, 2 * exponent + 2, false)) {
    return *result;
  }
  const QuarnFloat size = fabs(x);
  return correctly_rounded([&size](int w) { return half_sum(size, 1, w); });
}

QuarnFloat tanh(const QuarnFloat& x) {
  QuarnFloat one = signbit(x) ? -1 : 1;
  switch (kind_of(x)) {
    case Kind::infinite:
      return one;
    case Kind::finite:
      break;
    default:
      return x;
  }
  const std::int64_t exponent = scientific_exponent(x);
  // tanh x = x (1 - x^2/3 + ...), and 1 - 2 / (e^2x + 1) with e^-2x < 10^-0.86x.
  if (const auto result = perturbed(x, 2 * exponent + 2, true)) {
    return *result;
  }
  if (exponent >= 0) {
    const std::int64_t size = exponent >= 9 ? 1'000'000'000 : std::abs(FloatToInt(x));
    if (const auto result = perturbed(one, 1 - size * 86 / 100, true)) {
      return *result;
    }
  }
  const QuarnFloat size = fabs(x);
  const QuarnFloat result = correctly_rounded([&size](int w) { return approximate_tanh(size, w); });
  return signbit(x) ? -result : result;
}

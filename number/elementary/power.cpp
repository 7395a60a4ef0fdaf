// pow, exact wherever the result is a decimal number that fits.
#include <algorithm>
#include <cmath>

#include "number/elementary/rounding.h"

namespace quarn {
namespace {

/// The digits of a coefficient without the zeros at its end.
std::int64_t significant_digits(const QuarnFloat& x) {
  const View v = view_of(x);
  std::int64_t digits = std::int64_t(v.length) * Radix::digits;
  for (Limb last = v.limbs[v.length - 1]; last % 10 == 0; last /= 10) {
    --digits;
  }
  return digits;
}

/// Digits after the decimal point; below zero, the number of zeros that end the integer.
std::int64_t places(const QuarnFloat& x) { return significant_digits(x) - view_of(x).exponent; }

bool is_integer(const QuarnFloat& x) { return kind_of(x) == Kind::finite && places(x) <= 0; }

bool is_odd(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite || places(x) != 0) {
    return false;
  }
  const View v = view_of(x);
  Limb last = v.limbs[v.length - 1];
  while (last % 10 == 0) {
    last /= 10;
  }
  return last % 2 == 1;
}

/// x^n by repeated squaring at the working digits; n >= 1.
QuarnFloat repeated_product(const QuarnFloat& x, std::int64_t n) {
  QuarnFloat result = x;
  std::int64_t bit = 1;
  while (bit <= n / 2) {
    bit *= 2;
  }
  while (bit > 1) {
    bit /= 2;
    result *= result;
    if ((n & bit) != 0) {
      result *= x;
    }
  }
  return result;
}

/// The number 10^exponent.
QuarnFloat power_of_ten(std::int64_t exponent) {
  const Limb one = Radix::base / 10;
  return rounded(false, exponent + 1, &one, 1, false);
}

bool is_power_of_ten(const QuarnFloat& x) {
  const View v = view_of(x);
  return v.length == 1 && v.limbs[0] == Radix::base / 10;
}

/// The square root (n = 2) or fifth root (n = 5) of x > 0, if that is a decimal number.
std::optional<QuarnFloat> exact_root(const QuarnFloat& x, int n) {
  const int digits = int(significant_digits(x));
  const WorkingDigits scope(digits + 10);
  QuarnFloat root;
  if (n == 2) {
    root = rounded(sqrt(x), digits / 2 + 2);
  } else if (x == QuarnFloat(1)) {
    root = 1;
  } else {
    const int w = digits / 5 + 6;
    // The logarithm is below 3 * 10^9.
    root = rounded(approximate_exp(approximate_log(x, w + 12) / QuarnFloat(5), w), digits / 5 + 2);
  }
  if (repeated_product(root, n) != x) {
    return std::nullopt;
  }
  return root;
}

/// x^y, x > 0 and neither 0 nor 1, if it is a number of at most QuarnDigits() + 1 digits.
///
/// y = n / (2^a 5^b): the power is rational only if x is the a-th repeated square and the b-th repeated fifth power of
/// a decimal number r; each root leaves half or a fifth of the digits, so that the search is short. The coefficient
/// of r has no zeros at its end and so has none of its powers, which gives the length of r^n before it is computed.
std::optional<QuarnFloat> exact_power(QuarnFloat x, QuarnFloat y) {
  const int digits = QuarnDigits();
  const WorkingDigits scope(
      int(std::max(significant_digits(x) * 3, significant_digits(y) + 12) + digits + 2 * Radix::digits));
  while (!is_integer(y)) {
    if (is_power_of_ten(x)) {
      const QuarnFloat exponent = QuarnFloat(scientific_exponent(x)) * y;
      if (!is_integer(exponent) || scientific_exponent(exponent) > 9) {
        return std::nullopt;
      }
      return power_of_ten(FloatToInt(exponent));
    }
    // Doubling shortens the fraction where 2 divides the denominator more often than 5 does.
    const QuarnFloat twice = y + y;
    const QuarnFloat five_times = QuarnFloat(5) * y;
    const bool five = places(five_times) < places(y) && places(twice) >= places(y);
    const auto root = exact_root(x, five ? 5 : 2);
    if (!root) {
      return std::nullopt;
    }
    x = *root;
    y = five ? five_times : twice;
  }
  if (scientific_exponent(y) > 9) {
    return std::nullopt;
  }
  if (signbit(y)) {
    // 1 / r ends only for powers of 2 or 5.
    const QuarnFloat inverse = QuarnFloat(1) / x;
    if (inverse * x != QuarnFloat(1)) {
      return std::nullopt;
    }
    x = inverse;
  }
  const std::int64_t n = std::abs(std::int64_t(FloatToInt(y)));
  const double length = double(significant_digits(x)) - 1.0 + std::log10(10.0 * leading_fraction(x));
  if (length * double(n) > double(digits) + 2.0) {
    return std::nullopt;
  }
  return repeated_product(x, n);
}

/// x^y for x > 0 to a relative error of 10^-w.
QuarnFloat approximate_power(const QuarnFloat& x, const QuarnFloat& y, int w) {
  if (is_integer(y) && scientific_exponent(y) <= 1) {
    // At most 12 products; their errors add up to less than 100 units.
    const WorkingDigits scope(w + 4);
    const std::int64_t n = FloatToInt(y);
    const QuarnFloat power = repeated_product(x, std::abs(n));
    if (kind_of(power) == Kind::finite) {
      return n < 0 ? QuarnFloat(1) / power : power;
    }
  }
  const WorkingDigits scope(w + 15);
  return approximate_exp(y * approximate_log(x, w + 13), w + 1);
}

/// x^y for finite x > 0 that is not 1 and finite y that is not 0.
QuarnFloat power_of_positive(const QuarnFloat& x, const QuarnFloat& y) {
  if (is_power_of_ten(x) && is_integer(y)) {
    if (scientific_exponent(y) > 9) {
      return special((scientific_exponent(x) < 0) == signbit(y) ? Kind::infinite : Kind::zero);
    }
    return power_of_ten(scientific_exponent(x) * std::int64_t(FloatToInt(y)));
  }
  // The size of y log x decides first: overflow, or a result next to 1.
  QuarnFloat estimate;
  {
    const WorkingDigits scope(Radix::digits);
    estimate = y * approximate_log(x, Radix::digits);
  }
  if (kind_of(estimate) != Kind::finite || scientific_exponent(estimate) >= 10) {
    const bool tiny = kind_of(estimate) == Kind::zero;
    return tiny ? QuarnFloat(1) : special(signbit(estimate) ? Kind::zero : Kind::infinite);
  }
  if (const auto result = perturbed(1, scientific_exponent(estimate) + 2, signbit(estimate))) {
    return *result;
  }
  bool tried_exact = false;
  std::optional<QuarnFloat> exact;
  const QuarnFloat result = correctly_rounded([&](int w) {
    const int digits = QuarnDigits();
    const QuarnFloat approximation = approximate_power(x, y, w);
    if (kind_of(approximation) == Kind::finite && !tried_exact && !rounds_safely(approximation, digits, w)) {
      tried_exact = true;
      exact = exact_power(x, y);
    }
    return exact ? special(Kind::nan) : approximation;
  });
  return exact ? rounded(*exact, QuarnDigits()) : result;
}

}  // namespace
}  // namespace quarn

QuarnFloat pow(const QuarnFloat& x, const QuarnFloat& y) {
  using quarn::Kind;
  using quarn::kind_of;
  using quarn::special;
  const Kind kx = kind_of(x);
  const Kind ky = kind_of(y);
  if (kx == Kind::nan || ky == Kind::nan) {
    return special(Kind::nan);
  }
  if (ky == Kind::zero) {
    // As the General Decimal Arithmetic has it, 0^0 is an invalid operation.
    return kx == Kind::zero ? special(Kind::nan) : QuarnFloat(1);
  }
  if (kx != Kind::zero && signbit(x) && !quarn::is_integer(y)) {
    return special(Kind::nan);
  }
  const bool negative = signbit(x) && quarn::is_odd(y);
  const QuarnFloat size = fabs(x);
  if (ky == Kind::infinite) {
    const int order = QuarnCompare(size, 1);
    if (order == 0) {
      return 1;
    }
    return special((order > 0) == signbit(y) ? Kind::zero : Kind::infinite);
  }
  if (kx != Kind::finite) {
    return special((kx == Kind::zero) == signbit(y) ? Kind::infinite : Kind::zero, negative);
  }
  if (size == QuarnFloat(1)) {
    return negative ? -1 : 1;
  }
  const QuarnFloat result = quarn::power_of_positive(size, y);
  return negative ? -result : result;
}

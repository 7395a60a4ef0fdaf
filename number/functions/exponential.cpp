// expm1, exp2, exp10, log1p and log2.
#include "number/elementary/exponential.h"

#include "number/functions/support.h"
#include "quarn/functions.h"

using namespace quarn;

namespace {

/// 2^n = x, if x > 0 is such a power and n is `exponent`.
bool is_power_of_two(const QuarnFloat& x, std::int64_t exponent) {
  // 2^n has 0.30 n digits, 2^-n has 0.70 n.
  if (std::abs(exponent) > 4 * std::int64_t(stored_digits(x)) + 8) {
    return false;
  }
  const WorkingDigits scope(stored_digits(x) + 40);
  return pow(QuarnFloat(2), QuarnFloat(exponent)) == x;
}

}  // namespace

QuarnFloat expm1(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::infinite && signbit(x) ? QuarnFloat(-1) : x;
  }
  const std::int64_t exponent = scientific_exponent(x);
  if (exponent >= kExpOverflowExponent && !signbit(x)) {
    return x * special(Kind::infinite);
  }
  // x (1 + x/2 + ...)
  if (const auto result = perturbed(x, exponent + 1, signbit(x))) {
    return *result;
  }
  if (signbit(x) && exponent >= 0) {
    // -1 (1 - e^x), e^x < 10^(0.43 x)
    const std::int64_t size = exponent >= 9 ? 1'000'000'000 : std::abs(std::int64_t(FloatToInt(x)));
    if (const auto result = perturbed(-1, 1 - size * 43 / 100, true)) {
      return *result;
    }
  }
  return correctly_rounded([&x](int w) {
    const int digits = w + places_below_one(x) + 2;
    const WorkingDigits scope(digits + 5);
    return approximate_exp(x, digits) - QuarnFloat(1);
  });
}

QuarnFloat exp2(const QuarnFloat& x) {
  if (const auto result = exponential_of_special(x, kExpOverflowExponent)) {
    return *result;
  }
  if (is_whole(x)) {
    return pow(QuarnFloat(2), x);
  }
  // 1 + x log 2 + ...
  if (const auto result = perturbed(1, scientific_exponent(x) + 1, signbit(x))) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    // The product's absolute error is the result's relative one.
    const WorkingDigits scope(w + 5 + int(std::max<std::int64_t>(scientific_exponent(x), 0)));
    return approximate_exp(x * approximate_ln2(QuarnDigits()), w + 2);
  });
}

QuarnFloat exp10(const QuarnFloat& x) {
  if (const auto result = exponential_of_special(x, kExpOverflowExponent)) {
    return *result;
  }
  const NearestWhole parts = nearest_whole(x);
  const std::int64_t power = std::int64_t(FloatToInt(parts.whole));
  QuarnFloat mantissa = 1;
  if (kind_of(parts.rest) != Kind::zero) {
    const QuarnFloat& rest = parts.rest;
    // 1 + rest log 10 + ...
    if (const auto result = perturbed(1, scientific_exponent(rest) + 2, signbit(rest))) {
      mantissa = *result;
    } else {
      mantissa = correctly_rounded([&rest](int w) {
        const WorkingDigits scope(w + 5);
        return approximate_exp(rest * approximate_ln10(w + 5), w + 2);
      });
    }
  }
  return shifted(mantissa, power);
}

QuarnFloat log1p(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::infinite && signbit(x) ? special(Kind::nan) : x;
  }
  if (signbit(x)) {
    const int order = QuarnCompare(x, -1);
    if (order <= 0) {
      return order == 0 ? special(Kind::infinite, true) : special(Kind::nan);
    }
  }
  // x (1 - x/2 + ...)
  if (const auto result = perturbed(x, scientific_exponent(x) + 1, !signbit(x))) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    // The error of 1 + x counts 10^(places below one) times in the result.
    const WorkingDigits scope(w + 5 + places_below_one(x));
    return approximate_log(QuarnFloat(1) + x, w + 2);
  });
}

QuarnFloat log2(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite || signbit(x) || x == QuarnFloat(1)) {
    return log(x);
  }
  return correctly_rounded(
      [&x](int w) {
        const WorkingDigits scope(w + 5);
        return approximate_log(x, w + 2) / approximate_ln2(w + 2);
      },
      [&x](const QuarnFloat& y) -> std::optional<QuarnFloat> {
        if (scientific_exponent(y) > 10) {
          return std::nullopt;
        }
        const QuarnFloat whole = nearest_whole(y).whole;
        // Results of more than 9 digits come from arguments whose exponents have as many.
        if (scientific_exponent(whole) >= 9 || !is_power_of_two(x, FloatToInt(whole))) {
          return std::nullopt;
        }
        return whole;
      });
}

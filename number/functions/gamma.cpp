// The gamma function, its logarithm and the logarithm's derivative.
#include "number/functions/gamma.h"

#include <cmath>

#include "number/functions/gamma_series.h"
#include "number/functions/half_turns.h"
#include "quarn/functions.h"

namespace quarn {
namespace {

constexpr double kGammaOverflows = 2e8;

QuarnFloat product_of(long first, long last) {
  if (last - first < 4) {
    QuarnFloat product = first;
    for (long k = first + 1; k <= last; ++k) {
      product *= QuarnFloat(k);
    }
    return product;
  }
  const long middle = first + (last - first) / 2;
  return product_of(first, middle) * product_of(middle + 1, last);
}

/// sin(pi x), to a relative error of 10^-w; x is not whole.
QuarnFloat sine_of_half_turns(const QuarnFloat& x, int w) {
  const HalfTurns turns = half_turns(x);
  QuarnFloat value = 1;
  if (kind_of(turns.rest) != Kind::zero) {
    const SinCos f = approximate_sin_cos_pi(turns.rest, w);
    value = turns.quadrant % 2 == 1 ? f.cos : f.sin;
  }
  return (turns.quadrant >= 2) != signbit(x) ? -value : value;
}

QuarnFloat log_or_zero(const QuarnFloat& x, int w) { return x == QuarnFloat(1) ? QuarnFloat() : approximate_log(x, w); }

/// 1 - x for x < 0, good to the digits that count for functions of an argument of this size.
QuarnFloat reflected(const QuarnFloat& x, int digits) {
  const WorkingDigits scope(digits);
  return QuarnFloat(1) - x;
}

int digits_before_point(const QuarnFloat& x) { return int(std::max<std::int64_t>(scientific_exponent(x) + 1, 0)); }

/// Gamma(x), x < 0 and not whole, to a relative error of 10^-w.
QuarnFloat approximate_gamma_by_reflection(const QuarnFloat& x, int w) {
  const WorkingDigits scope(w + 5);
  const QuarnFloat sine = sine_of_half_turns(x, w + 3);
  const QuarnFloat other = reflected(x, w + 15 + digits_before_point(x));
  if (magnitude(x) < kGammaOverflows / 4) {
    return approximate_pi(w + 5) / (sine * approximate_gamma(other, w + 3));
  }
  // Gamma(1 - x) may overflow where the quotient does not.
  const WorkingDigits more(w + 20 + digits_before_point(x));
  const int a = w + 3;
  const QuarnFloat logarithm = approximate_log(approximate_pi(w + 20), w + 20) - log_or_zero(fabs(sine), w + 20) -
                               approximate_log_gamma(other, a + 1);
  if (scientific_exponent(logarithm) >= 10) {
    return special(Kind::zero, signbit(sine));
  }
  const QuarnFloat size = approximate_exp(logarithm, w + 3);
  return signbit(sine) ? -size : size;
}

}  // namespace

QuarnFloat product_of_range(long first, long last) {
  if (last < first) {
    return 1;
  }
  const WorkingDigits scope(int(double(last - first + 1) * std::log10(double(last) + 1)) + 20);
  return product_of(first, last);
}

std::optional<QuarnFloat> short_quotient(const QuarnFloat& y, const QuarnFloat& x) {
  const int digits = QuarnDigits() + 3;
  const QuarnFloat q = [&] {
    const WorkingDigits scope(digits);
    return y / x;
  }();
  const WorkingDigits scope(digits + stored_digits(x) + stored_digits(y) + 10);
  if (kind_of(q) != Kind::finite || q * x != y) {
    return std::nullopt;
  }
  return q;
}

bool gamma_is_negative(const QuarnFloat& x) {
  if (!signbit(x)) {
    return false;
  }
  const WorkingDigits scope(stored_digits(x) + Radix::digits);
  return is_odd_whole(floor(x));
}

QuarnFloat approximate_gamma(const QuarnFloat& x, int w) {
  if (magnitude(x) >= 3 * kGammaOverflows / 2) {
    return special(Kind::infinite);
  }
  if (scientific_exponent(x) < -w - 3) {
    // 1 / x - 0.577...
    const WorkingDigits scope(w + 5);
    return QuarnFloat(1) / x;
  }
  const long steps = steps_to_stirling(x, w + 3);
  // An error of x counts x log x times: 10 digits at most.
  const WorkingDigits scope(w + 8 + digits_before_point(x) + 3 * int(steps > 100) + 2);
  const QuarnFloat start = rounded(x, QuarnDigits());
  const QuarnFloat z = start + QuarnFloat(steps);
  const QuarnFloat value = approximate_exp(log_gamma_by_stirling(z, w + 3), w + 3);
  return steps == 0 ? value : value / rising_product(start, steps);
}

QuarnFloat approximate_log_gamma(const QuarnFloat& x, int a) {
  if (signbit(x)) {
    const int w = std::max(a + 15 + digits_before_point(x), 5);
    const WorkingDigits scope(w + 10);
    const QuarnFloat sine = fabs(sine_of_half_turns(x, std::max(a + 3, 5)));
    return approximate_log(approximate_pi(w), w) - log_or_zero(sine, w) - approximate_log_gamma(reflected(x, w), a + 1);
  }
  const long steps = steps_to_stirling(x, a + 2);
  // The logarithm of a product below 10^-10^9 has ten digits.
  const WorkingDigits scope(std::max(a + 20 + digits_before_point(x), 10));
  const QuarnFloat start = rounded(x, QuarnDigits());
  QuarnFloat value = log_gamma_by_stirling(start + QuarnFloat(steps), a + 2);
  if (steps > 0) {
    value -= log_or_zero(rising_product(start, steps), QuarnDigits());
  }
  return value;
}

}  // namespace quarn

using namespace quarn;

QuarnFloat tgamma(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::zero:
      return special(Kind::infinite, signbit(x));
    case Kind::infinite:
      return signbit(x) ? special(Kind::nan) : x;
    case Kind::nan:
      return x;
    case Kind::finite:
      break;
  }
  if (is_pole(x)) {
    return special(Kind::nan);
  }
  const int digits = QuarnDigits();
  if (!signbit(x) && is_whole(x) && magnitude(x) <= digits + 30) {
    return rounded(product_of_range(2, FloatToInt(x) - 1), digits);
  }
  const std::int64_t exponent = scientific_exponent(x);
  if (exponent < -digits) {
    // 1/x (1 - 0.577 x + ...)
    if (const auto inverse = short_quotient(QuarnFloat(1), x)) {
      if (const auto result = perturbed(*inverse, exponent + 1, !signbit(x))) {
        return *result;
      }
    }
  }
  if (signbit(x)) {
    if (exponent >= 18) {
      return special(Kind::zero, gamma_is_negative(x));
    }
    return correctly_rounded([&x](int w) {
      if (scientific_exponent(x) < -w - 3) {
        const WorkingDigits scope(w + 5);
        return QuarnFloat(1) / x;
      }
      return approximate_gamma_by_reflection(x, w);
    });
  }
  return correctly_rounded([&x](int w) { return approximate_gamma(x, w); });
}

QuarnFloat lgamma(const QuarnFloat& x) {
  if (kind_of(x) == Kind::nan) {
    return x;
  }
  if (kind_of(x) == Kind::infinite || is_pole(x)) {
    return special(Kind::infinite);
  }
  if (x == QuarnFloat(1) || x == QuarnFloat(2)) {
    return QuarnFloat();
  }
  const std::int64_t exponent = scientific_exponent(x);
  return correctly_rounded([&](int w) {
    const int first = w - int(std::max<std::int64_t>(exponent, 0));
    return relative_from_absolute([&x](int a) { return approximate_log_gamma(x, a); }, w, first);
  });
}

namespace {

/// The digamma function for x > 0 to an absolute error of 10^-a.
QuarnFloat digamma_of_positive(const QuarnFloat& x, int a) {
  const long steps = steps_to_stirling(x, a + 2);
  const int places = int(std::max<std::int64_t>(-scientific_exponent(x), 0));
  // An error of x counts its size times 1 / x^2 at small x.
  const WorkingDigits scope(std::max(a + places + 15 + int(std::log10(double(steps) + 1)), 10));
  const int w = QuarnDigits();
  const QuarnFloat start = rounded(x, w);
  return digamma_by_stirling(start, steps, a + 2);
}

QuarnFloat approximate_digamma(const QuarnFloat& x, int a) {
  if (!signbit(x)) {
    return digamma_of_positive(x, a);
  }
  // psi(1 - x) - pi cot(pi x)
  const HalfTurns turns = half_turns(x);
  QuarnFloat main = digamma_of_positive(reflected(x, std::max(a, 0) + 20 + digits_before_point(x)), a + 1);
  if (kind_of(turns.rest) == Kind::zero) {
    return main;
  }
  const int lost = int(std::max<std::int64_t>(-scientific_exponent(turns.rest), 0)) + 5;
  const int w = std::max(a, 0) + 2 * lost;
  const WorkingDigits scope(w + 10);
  const SinCos f = approximate_sin_cos_pi(turns.rest, w + 5);
  const bool inverted = turns.quadrant % 2 == 1;
  QuarnFloat cotangent = inverted ? -(f.sin / f.cos) : f.cos / f.sin;
  if (signbit(x)) {
    cotangent = -cotangent;
  }
  return main - approximate_pi(w + 5) * cotangent;
}

}  // namespace

QuarnFloat digamma(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::nan:
      return x;
    case Kind::infinite:
      return signbit(x) ? special(Kind::nan) : x;
    case Kind::zero:
      return special(Kind::nan);
    case Kind::finite:
      break;
  }
  if (is_pole(x)) {
    return special(Kind::nan);
  }
  const int digits = QuarnDigits();
  const std::int64_t exponent = scientific_exponent(x);
  if (exponent < -digits) {
    // -1/x (1 + 0.577 x + ...)
    if (const auto inverse = short_quotient(QuarnFloat(-1), x)) {
      if (const auto result = perturbed(*inverse, exponent + 1, signbit(x))) {
        return *result;
      }
    }
  }
  return correctly_rounded([&](int w) {
    if (exponent < -w - 3) {
      const WorkingDigits scope(w + 5);
      return QuarnFloat(-1) / x;
    }
    if (!signbit(x) && exponent > w + 5) {
      // log x - 1 / (2 x) - ...
      return approximate_log(x, w);
    }
    return relative_from_absolute([&x](int a) { return approximate_digamma(x, a); }, w,
                                  w + int(std::min<std::int64_t>(exponent, 0)));
  });
}

// Factorials, binomial coefficients and the beta function.
#include <cmath>

#include "number/functions/gamma.h"
#include "number/functions/gamma_series.h"
#include "quarn/functions.h"

using namespace quarn;

namespace {

QuarnFloat sum_exactly(const QuarnFloat& x, const QuarnFloat& y) {
  const std::int64_t gap = kind_of(x) == Kind::finite && kind_of(y) == Kind::finite
                               ? std::abs(view_of(x).exponent - view_of(y).exponent)
                               : 0;
  const WorkingDigits scope(stored_digits(x) + stored_digits(y) + int(std::min<std::int64_t>(gap, 5'000'000)) + 2);
  return x + y;
}

/// Up to here products of so many factors are faster than logarithms of gamma functions, and exact results occur.
long most_factors() { return 4 * (long(QuarnDigits()) + 30); }

/// exp of a sum of logarithms; absolute(a) delivers it to an absolute error of 10^-a.
template <class Absolute>
QuarnFloat exponential_of(const Absolute& absolute, int w) {
  const QuarnFloat logarithm = absolute(w + 3);
  if (kind_of(logarithm) == Kind::zero) {
    return 1;
  }
  if (kind_of(logarithm) != Kind::finite || scientific_exponent(logarithm) >= 10) {
    return special(signbit(logarithm) ? Kind::zero : Kind::infinite);
  }
  return approximate_exp(logarithm, w + 3);
}

/// x (x - 1) ... (x - k + 1) at the working digits; the errors of k factors add up.
QuarnFloat falling_product(const QuarnFloat& x, long k) {
  QuarnFloat product = 1;
  QuarnFloat factor = x;
  for (long i = 0; i < k; ++i) {
    product *= factor;
    factor = sum_exactly(factor, -1);
  }
  return product;
}

/// The coefficient for 0 <= k <= most_factors().
QuarnFloat binomial_by_product(const QuarnFloat& x, long k) {
  const QuarnFloat divisor = product_of_range(2, k);
  QuarnFloat result = correctly_rounded(
      [&](int w) {
        const WorkingDigits scope(w + 10);
        return falling_product(x, k) / divisor;
      },
      [&](const QuarnFloat&) {
        const QuarnFloat product = [&] {
          const std::int64_t places = std::max<std::int64_t>(std::abs(view_of(x).exponent), 10);
          const WorkingDigits scope(int(k * (stored_digits(x) + std::min<std::int64_t>(places, 1000) + 2)) + 10);
          return falling_product(x, k);
        }();
        return kind_of(product) == Kind::zero ? std::optional<QuarnFloat>(product) : short_quotient(product, divisor);
      });
  return result;
}

/// Gamma(x) Gamma(k) / Gamma(x + k) = (k - 1)! / (x (x + 1) ... (x + k - 1)), 1 <= k <= most_factors(), no factor zero.
QuarnFloat beta_with_whole(const QuarnFloat& x, long k) {
  const QuarnFloat numerator = product_of_range(2, k - 1);
  const QuarnFloat others = [k] {
    const WorkingDigits scope(Radix::digits);
    return QuarnFloat(k - 1);
  }();
  const QuarnFloat top = sum_exactly(x, others);
  return correctly_rounded(
      [&](int w) {
        const WorkingDigits scope(w + 10);
        return numerator / falling_product(top, k);
      },
      [&](const QuarnFloat&) {
        const QuarnFloat product = [&] {
          const WorkingDigits scope(int(k) * (stored_digits(top) + 2) + 10);
          return falling_product(top, k);
        }();
        return short_quotient(numerator, product);
      });
}

}  // namespace

QuarnFloat factorial(const QuarnFloat& n) {
  if (kind_of(n) == Kind::infinite && !signbit(n)) {
    return n;
  }
  if (!is_whole(n) || (signbit(n) && kind_of(n) != Kind::zero)) {
    return special(Kind::nan);
  }
  if (magnitude(n) > 1e9) {
    return special(Kind::infinite);
  }
  return tgamma(sum_exactly(n, 1));
}

QuarnFloat binomial(const QuarnFloat& x, const QuarnFloat& k) {
  if (kind_of(x) == Kind::nan || kind_of(x) == Kind::infinite || !is_whole(k)) {
    return special(Kind::nan);
  }
  if (kind_of(k) == Kind::zero || signbit(k)) {
    return kind_of(k) == Kind::zero ? 1 : 0;
  }
  QuarnFloat count = k;
  if (is_whole(x)) {
    if (signbit(x) && kind_of(x) != Kind::zero) {
      // (-1)^k times the coefficient of k - x - 1 over k
      const QuarnFloat result = binomial(sum_exactly(sum_exactly(k, -x), -1), k);
      return is_odd_whole(k) ? -result : result;
    }
    const QuarnFloat other = sum_exactly(x, -k);
    if (signbit(other) && kind_of(other) != Kind::zero) {
      return 0;
    }
    if (kind_of(other) == Kind::zero) {
      return 1;
    }
    count = other < k ? other : k;
  }
  const double factors = magnitude(count);
  const std::int64_t exponent = std::abs(scientific_exponent(x));
  if (factors <= double(most_factors()) || (exponent > 2000 && factors <= 1e6)) {
    return binomial_by_product(x, std::lround(factors));
  }
  if (exponent > 2000) {
    return special(Kind::infinite);
  }
  // Gamma(x + 1) / (Gamma(k + 1) Gamma(x - k + 1))
  const QuarnFloat top = sum_exactly(x, 1);
  const QuarnFloat lower = sum_exactly(count, 1);
  const QuarnFloat upper = sum_exactly(top, -count);
  const QuarnFloat size = correctly_rounded([&](int w) {
    return exponential_of(
        [&](int a) {
          const WorkingDigits scope(a + 30 + int(std::max<std::int64_t>(scientific_exponent(top), 0)));
          return approximate_log_gamma(top, a + 1) - approximate_log_gamma(lower, a + 1) -
                 approximate_log_gamma(upper, a + 1);
        },
        w);
  });
  return gamma_is_negative(top) != gamma_is_negative(upper) ? -size : size;
}

QuarnFloat beta(const QuarnFloat& x, const QuarnFloat& y) {
  if (kind_of(x) == Kind::nan || kind_of(y) == Kind::nan) {
    return special(Kind::nan);
  }
  if (kind_of(x) == Kind::infinite || kind_of(y) == Kind::infinite) {
    const bool both_positive = !signbit(x) && !signbit(y) && kind_of(x) != Kind::zero && kind_of(y) != Kind::zero;
    return both_positive ? QuarnFloat() : special(Kind::nan);
  }
  if (is_pole(x) || is_pole(y)) {
    const QuarnFloat& pole = is_pole(x) ? x : y;
    const QuarnFloat& other = is_pole(x) ? y : x;
    // At x = -m and a whole y from 1 to m the poles of Gamma(x) and Gamma(x + y) cancel: (-1)^y B(y, m + 1 - y).
    if (is_pole(other) || !is_whole(other) || sum_exactly(pole, other) > QuarnFloat()) {
      return special(Kind::nan);
    }
    const QuarnFloat result = beta(other, sum_exactly(QuarnFloat(1), -sum_exactly(pole, other)));
    return is_odd_whole(other) ? -result : result;
  }
  const std::int64_t ex = scientific_exponent(x);
  const std::int64_t ey = scientific_exponent(y);
  const auto few = [](const QuarnFloat& v) { return is_whole(v) && magnitude(v) <= double(most_factors()); };
  if (few(x) || few(y)) {
    const bool by_x = few(x) && (!few(y) || x < y);
    return beta_with_whole(by_x ? y : x, std::lround(magnitude(by_x ? x : y)));
  }
  if (ex > 10 && ey > 10 && !signbit(x) && !signbit(y)) {
    return QuarnFloat();
  }
  if (std::abs(ex - ey) <= 5'000'000) {
    const QuarnFloat sum = sum_exactly(x, y);
    if (is_pole(sum)) {
      return QuarnFloat();
    }
    if (ex < -1 && ey < -1) {
      // (1/x + 1/y)(1 - 1.64 x y + ...)
      const QuarnFloat product = [&] {
        const WorkingDigits scope(stored_digits(x) + stored_digits(y));
        return x * y;
      }();
      if (const auto quotient = short_quotient(sum, product)) {
        if (const auto result = perturbed(*quotient, ex + ey + 3, !signbit(product))) {
          return *result;
        }
      }
    }
  }
  const bool by_x = ex < ey;
  const QuarnFloat& small = by_x ? x : y;
  const QuarnFloat& large = by_x ? y : x;
  const std::int64_t e_small = std::min(ex, ey);
  const std::int64_t e_large = std::max(ex, ey);
  if (!signbit(large) && e_large >= -3 && e_large <= 3) {
    // 1/x - psi(y) - 0.577 + ...
    if (const auto inverse = short_quotient(QuarnFloat(1), small)) {
      if (const auto result = perturbed(*inverse, e_small + 6, (large > QuarnFloat(1)) != signbit(small))) {
        return *result;
      }
    }
  }
  const bool far = std::abs(ex - ey) > 5'000'000;
  const QuarnFloat sum = far ? large : sum_exactly(x, y);
  const bool negative =
      (gamma_is_negative(x) != gamma_is_negative(y)) != (kind_of(sum) == Kind::finite && gamma_is_negative(sum));
  const QuarnFloat size = correctly_rounded([&](int w) {
    return exponential_of(
        [&](int a) {
          const WorkingDigits scope(a + 30 + int(std::max<std::int64_t>(std::min(e_large, 3 * std::int64_t(a)), 0)));
          if (!signbit(large) && (far || e_large > 2 * (w + std::max<std::int64_t>(e_small, 0)) + 10)) {
            // Gamma(y) / x^y up to a factor 1 + y^2 / x
            return approximate_log_gamma(small, a + 1) - small * approximate_log(large, QuarnDigits());
          }
          return approximate_log_gamma(small, a + 1) + approximate_log_gamma(large, a + 1) -
                 approximate_log_gamma(sum, a + 1);
        },
        w);
  });
  return negative ? -size : size;
}

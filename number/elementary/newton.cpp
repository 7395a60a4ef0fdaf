// Logarithm of long decimal numbers by the arithmetic-geometric mean, arc tangent as the inverse of sin and cos by an
// iteration of third order, and short power series close to zero.
#include <algorithm>
#include <cmath>
#include <vector>

#include "number/elementary/approximate.h"
#include "number/elementary/fixed_point.h"

namespace quarn {
namespace {

constexpr int kGuardDigits = 15;

/// Digits reached after each iteration that multiplies them by three, from at most 15 to at least w.
std::vector<int> iteration_digits(int w) {
  std::vector<int> steps;
  for (int digits = w; digits > 14; digits = digits / 3 + 2) {
    steps.push_back(digits);
  }
  std::reverse(steps.begin(), steps.end());
  return steps;
}

/// x + sum of (-1)^k sign^k x^(2k+1) / (2k+1), that is atanh x for sign -1 and atan x for sign 1, |x| <= 10^-2,
/// to the working digits.
QuarnFloat odd_series(const QuarnFloat& x, int sign, int w) {
  const QuarnFloat square = sign > 0 ? -(x * x) : x * x;
  QuarnFloat sum = x;
  QuarnFloat power = x;
  for (long k = 1; kind_of(power) == Kind::finite; ++k) {
    power *= square;
    const QuarnFloat term = power / QuarnFloat(2 * k + 1);
    if (kind_of(term) != Kind::finite || scientific_exponent(term) < scientific_exponent(x) - w) {
      break;
    }
    sum += term;
  }
  return sum;
}

/// Whether a series in x^2 has so few terms that nothing else is worth while.
bool is_tiny(const QuarnFloat& x, int w) { return -scientific_exponent(x) > std::max(2, w / 12); }

/// The logarithm of m, 0.3 < m < 3.2, to an absolute error of 10^-w: for 0 < q < 1 and M the arithmetic-geometric mean,
/// -log q = (pi / 4) / M(theta_2(q^4)^2, theta_3(q^4)^2) (T. Sasaki, Y. Kanada, Practically fast multiple-precision
/// evaluation of log(x), J. Inf. Process. 5, 1982), here with q = m / 10^n. docs/accuracy.md adds up the roundings.
QuarnFloat log_by_mean(const QuarnFloat& m, int w) {
  const int places = w / 48 + 2;
  const int digits = w + kGuardDigits;
  const WorkingDigits scope(digits);
  const QuarnFloat half(5, -1);
  const QuarnFloat q = m * QuarnFloat(1, -places);
  // q^k, which is added to 1: its leading zeros are known.
  const auto power = [&](int k, const QuarnFloat& x, const QuarnFloat& y) {
    const WorkingDigits fewer(digits - k * places);
    return x * y;
  };
  const QuarnFloat q2 = power(4, q, q);
  const QuarnFloat q4 = power(4, q2, q2);
  const QuarnFloat q8 = power(8, q4, q4);
  const QuarnFloat q16 = power(16, q8, q8);
  const QuarnFloat q24 = power(24, q8, q16);
  const QuarnFloat q36 = power(36, q24, power(36, q8, q4));
  const QuarnFloat theta_2 = 2 * (q * (1 + q8 + q24));
  const QuarnFloat theta_3 = 1 + 2 * (q4 + q16 + q36);
  // The first step has its root: sqrt(theta_2^2 theta_3^2).
  QuarnFloat b = theta_2 * theta_3;
  const QuarnFloat sum = theta_2 + theta_3;
  QuarnFloat a = sum * sum * half - b;
  QuarnFloat difference = (a - b) * half;
  const auto zeros = [&] { return scientific_exponent(a) - scientific_exponent(difference); };
  while (kind_of(difference) == Kind::finite && zeros() < w / 8 + 3) {
    const QuarnFloat mean = (a + b) * half;
    b = sqrt(a * b);
    a = mean;
    difference = (a - b) * half;
  }
  // a / M(a (1 + x), a (1 - x)) = 1 + x^2 / 4 + 9 x^4 / 64 + 25 x^6 / 256 + ..., a the mean of the last two
  a -= difference;
  QuarnFloat series = 0;
  if (kind_of(difference) == Kind::finite) {
    const WorkingDigits fewer(digits - 2 * int(zeros()) + 2);
    const QuarnFloat x = difference / a;
    const QuarnFloat square = x * x * half * half;
    series = square + square * square * (QuarnFloat(225, -2) + square * QuarnFloat(625, -2));
  }
  const QuarnFloat minus_log_q = approximate_pi(digits) * half * half * (1 + series) / a;
  return QuarnFloat(places) * approximate_ln10(digits) - minus_log_q;
}

/// atan x for |x| <= 1 to an absolute error of 10^-w.
QuarnFloat atan_by_sin_cos(const QuarnFloat& x, int w) {
  const View v = view_of(x);
  QuarnFloat y = std::atan(leading_fraction(x) * std::pow(10.0, double(v.exponent)));
  for (const int digits : iteration_digits(w)) {
    // atan x = y + atan t; t - t^3/3 leaves t^5/5 of it, so that three times the digits are certain.
    const WorkingDigits scope(digits + kGuardDigits);
    const SinCos f = approximate_sin_cos(y, digits + kGuardDigits);
    const QuarnFloat t = (x * f.cos - f.sin) / (f.cos + x * f.sin);
    y += t - t * t * t / QuarnFloat(3);
  }
  return y;
}

}  // namespace

double leading_fraction(const QuarnFloat& x) noexcept {
  const View v = view_of(x);
  double fraction = 0.0;
  for (std::size_t i = std::min<std::size_t>(v.length, 3); i-- > 0;) {
    fraction = (fraction + double(v.limbs[i])) / double(Radix::base);
  }
  return v.negative ? -fraction : fraction;
}

QuarnFloat approximate_log(const QuarnFloat& x, int w) {
  if (const auto result = fixed::log(x, w)) {
    return result->value;
  }
  const View v = view_of(x);
  // x = m * 10^e with m from about 10^-1/2 to 10^1/2, so that log m and e ln 10 never cancel.
  const bool low = leading_fraction(x) < 0.316;
  const std::int64_t e = v.exponent - (low ? 1 : 0);
  const QuarnFloat m = rounded(false, low ? 1 : 0, v.limbs, v.length, false, int(v.length) * Radix::digits);
  if (e != 0) {
    const WorkingDigits scope(w + kGuardDigits);
    QuarnFloat sum = QuarnFloat(e) * approximate_ln10(w + kGuardDigits);
    if (m != QuarnFloat(1)) {
      sum += log_by_mean(m, w + 5);
    }
    return sum;
  }
  const WorkingDigits scope(w + kGuardDigits);
  const QuarnFloat t = m - QuarnFloat(1);
  if (is_tiny(t, w)) {
    return QuarnFloat(2) * odd_series(t / (QuarnFloat(2) + t), -1, w + 5);
  }
  const int lost = int(-scientific_exponent(t));
  return log_by_mean(m, w + std::max(lost, 0) + 5);
}

QuarnFloat approximate_atan(const QuarnFloat& x, int w) {
  const WorkingDigits scope(w + kGuardDigits);
  const QuarnFloat size = fabs(x);
  QuarnFloat y;
  if (size > QuarnFloat(1)) {
    const QuarnFloat half_pi = approximate_pi(w + kGuardDigits) / QuarnFloat(2);
    y = half_pi - approximate_atan(QuarnFloat(1) / size, w + 5);
  } else if (is_tiny(size, w)) {
    y = odd_series(size, 1, w + 5);
  } else {
    y = atan_by_sin_cos(size, w + int(-scientific_exponent(size)) + 5);
  }
  return signbit(x) ? -y : y;
}

}  // namespace quarn

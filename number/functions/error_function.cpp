// The error function and its complement.
#include "number/functions/error_function.h"

#include "quarn/functions.h"

namespace quarn {
namespace {

/// The last k of 1 + t/3 + t^2/(3 5) + ... + t^k/(3 5 ... (2k + 1)), t = 2 x^2, that counts beside 10^-w of the sum:
/// from there on terms halve.
int last_term(const QuarnFloat& x, int w) {
  const double t = 2 * magnitude(x) * magnitude(x);
  if (t < 1e-3) {
    // Terms fall faster than t^k, whose logarithm a double holds.
    const double log_t = 2 * (std::log10(leading_fraction(x)) + double(view_of(x).exponent)) + 0.302;
    return int((w + 4) / -log_t) + 1;
  }
  constexpr int kScale = 250;
  double term = 1;
  double sum = 1;
  int k = 0;
  int lowered = 0;  // the term has been multiplied by 10^(250 lowered) to stay in range
  double limit = std::pow(10.0, -w - 3);
  while (2 * k + 3 <= 2 * t || term > sum * limit) {
    ++k;
    term *= t / (2 * k + 1);
    if (lowered == 0) {
      sum += term;
    }
    if (sum > 1e250) {
      sum *= 1e-250;
      term *= 1e-250;
    }
    if (term < sum * 1e-250) {
      term *= 1e250;
      ++lowered;
      limit = std::pow(10.0, kScale * lowered - w - 3);
    }
  }
  return k;
}

QuarnFloat exponential(const QuarnFloat& x, int w) { return approximate_exp(x, w); }
Complex exponential(const Complex& z, int w) {
  const WorkingDigits scope(w + 1);
  return exp(z);
}

QuarnFloat modulus(const QuarnFloat& x) { return x; }
QuarnFloat modulus(const Complex& z) { return abs(z); }

/// Digits for what the error may be larger than the first term left out.
int slack(const QuarnFloat& /*real*/) { return 0; }
int slack(const Complex& /*complex*/) { return 6; }

}  // namespace

QuarnFloat two_over_root_pi() { return QuarnFloat(2) / ::sqrt(approximate_pi(QuarnDigits())); }

template <class T>
T erf_by_series(const T& z, int w, int more) {
  const double size = magnitude(modulus(z));
  const WorkingDigits scope(w + more + 8 + int(std::log10(size * size + w + more + 1)));
  const T start = rounded(z, QuarnDigits());
  const T square = start * start;
  const T twice_square = square + square;
  QuarnFloat divisors = 1;
  T sum = 1;
  for (int k = last_term(modulus(start), w + more); k > 0; --k) {
    divisors *= QuarnFloat(2 * k + 1);
    sum = sum * twice_square + divisors;
  }
  return two_over_root_pi() * (start * sum / divisors) * exponential(-square, w + 4);
}

template <class T>
T erfc_by_asymptotic_series(const T& z, int w) {
  const double size = magnitude(modulus(z));
  const WorkingDigits scope(w + 8 + slack(z) + int(2 * std::log10(size) + 2));
  // An error of z counts 2 z^2 times.
  const T start = rounded(z, QuarnDigits());
  const T square = start * start;
  const T inverse = T(1) / (square + square);
  T term = 1;
  T sum = 1;
  for (int k = 1;; ++k) {
    term = -(term * inverse * QuarnFloat(2 * k - 1));
    if (largest_exponent(term) < -w - 3 - slack(z)) {
      break;
    }
    sum += term;
  }
  return two_over_root_pi() * exponential(-square, w + 4) * sum / (start + start);
}

template QuarnFloat erf_by_series(const QuarnFloat&, int, int);
template Complex erf_by_series(const Complex&, int, int);
template QuarnFloat erfc_by_asymptotic_series(const QuarnFloat&, int);
template Complex erfc_by_asymptotic_series(const Complex&, int);

}  // namespace quarn

using namespace quarn;

namespace {

/// erfc(x), x > 0, to a relative error of 10^-w.
QuarnFloat approximate_erfc(const QuarnFloat& x, int w) {
  const double places = magnitude(x) * magnitude(x) * kLog10E;
  if (places > w + 8) {
    return erfc_by_asymptotic_series(x, w);
  }
  const int digits = w + int(places) + 4 + int(std::log10(magnitude(x) + 1));
  const WorkingDigits scope(digits + 5);
  return QuarnFloat(1) - erf_by_series(x, digits);
}

/// A lower bound of the decimal places that 1 - erf|x| has before its first digit, less one.
std::int64_t places_of_complement(const QuarnFloat& x) {
  const double size = std::min(magnitude(x), 1e7);
  return std::int64_t(size * size * kLog10E * 0.999);
}

/// Every complement of a larger argument underflows.
constexpr double kComplementUnderflows = 1e5;

}  // namespace

QuarnFloat erf(const QuarnFloat& x) {
  const QuarnFloat one = signbit(x) ? -1 : 1;
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::infinite ? one : x;
  }
  if (magnitude(x) > 1) {
    // 1 - erfc(x) with erfc(x) < e^(-x^2)
    if (const auto result = perturbed(one, 1 - places_of_complement(x), true)) {
      return *result;
    }
  }
  const QuarnFloat size = fabs(x);
  const QuarnFloat result = correctly_rounded([&size](int w) {
    if (magnitude(size) * magnitude(size) * kLog10E > 2 * (w + 8)) {
      const WorkingDigits scope(w + 5);
      return QuarnFloat(1) - erfc_by_asymptotic_series(size, w);
    }
    return erf_by_series(size, w);
  });
  return signbit(x) ? -result : result;
}

QuarnFloat erfc(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::zero:
      return 1;
    case Kind::infinite:
      return signbit(x) ? 2 : 0;
    case Kind::nan:
      return x;
    case Kind::finite:
      break;
  }
  // 1 - 1.128 x + ...
  if (const auto result = perturbed(1, scientific_exponent(x) + 2, !signbit(x))) {
    return *result;
  }
  if (signbit(x)) {
    if (magnitude(x) > 1) {
      if (const auto result = perturbed(2, 1 - places_of_complement(x), true)) {
        return *result;
      }
    }
    const QuarnFloat size = fabs(x);
    return correctly_rounded([&size](int w) {
      const WorkingDigits scope(w + 5);
      return QuarnFloat(1) + erf_by_series(size, w + 2);
    });
  }
  if (magnitude(x) > kComplementUnderflows) {
    return special(Kind::zero);
  }
  return correctly_rounded([&x](int w) { return approximate_erfc(x, w); });
}

// Exponential, sine and cosine of long decimal numbers: the argument's digits in bursts of doubling length, each burst
// a binary splitting (Brent 1976, "The complexity of multiple-precision arithmetic"; Haible and Papanikolaou 1998).
#include <algorithm>
#include <cmath>
#include <numbers>

#include "number/elementary/approximate.h"
#include "number/elementary/fixed_point.h"
#include "number/elementary/series.h"

namespace quarn {
namespace {

constexpr int kBurstGuardDigits = 20;

/// Below log10(n!), n > 0, by less than 1 / (27 n): Stirling's formula. std::lgamma writes a variable of the process.
double log10_factorial(double n) {
  return n * (std::log10(n) - std::numbers::log10e) + std::log10(2 * std::numbers::pi * n) / 2;
}

/// The number of terms after which a series of terms below 10^(-k * places) / (step k)! is below 10^-w.
long terms_needed(int w, double places, int step) {
  long low = 1;
  long high = w + 40;
  while (low < high) {
    const long middle = low + (high - low) / 2;
    if (places * double(middle) + log10_factorial(double(step * middle)) > w) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low + 1;
}

/// Calls visit(burst, places) for parts of x that add up to x but for less than 10^-w, |burst| <= 10^-places.
/// 0 < |x| < 10.
template <class Visit>
void for_each_burst(const QuarnFloat& x, int w, const Visit& visit) {
  QuarnFloat rest = x;
  while (kind_of(rest) == Kind::finite && scientific_exponent(rest) >= -w) {
    const std::int64_t places = -scientific_exponent(rest) - 1;
    // Twice as many places as there are zeros; the rounding leaves at most half a unit of the last place.
    const QuarnFloat burst = rounded(rest, int(std::max<std::int64_t>(places, 1)));
    visit(burst, int(places));
    rest -= burst;
  }
}

/// Arguments are halved so often before they are cut into bursts: the first series have the most terms.
constexpr int kHalvings = 30;

QuarnFloat halved(const QuarnFloat& x) { return x / QuarnFloat(1 << kHalvings); }

/// Digits of a whole number up to n.
int length_of(long n) { return int(std::log10(double(n))) + 1; }

/// exp(x) for |x| < 10 to a relative error of 10^-w.
QuarnFloat exp_by_bursts(const QuarnFloat& x, int w) {
  // Squares double relative errors; the bursts, no more than 60, leave 10^-v each.
  const int v = w + kHalvings / 3 + 4;
  const WorkingDigits scope(v + kBurstGuardDigits);
  // One division in the end.
  QuarnFloat numerator = 1;
  QuarnFloat denominator = 1;
  for_each_burst(halved(x), v, [&](const QuarnFloat& burst, int places) {
    const auto term = [&burst](long k) -> Splitting { return {burst, k, burst}; };
    const long terms = terms_needed(v, places, 1);
    const Splitting sum = split(1, 1 + terms, term, 2 * places + 1 + length_of(terms));
    numerator *= sum.q + sum.t;
    denominator *= sum.q;
  });
  QuarnFloat result = numerator / denominator;
  for (int i = 0; i < kHalvings; ++i) {
    result *= result;
  }
  return result;
}

/// 1 - cos y from s = sin y, |s| <= 10^-places, to an absolute error of 10^-digits, the working digits.
QuarnFloat one_less_cosine(const QuarnFloat& s, int places, int digits) {
  if (10 * places < digits) {
    return QuarnFloat(1) - sqrt((QuarnFloat(1) - s) * (QuarnFloat(1) + s));
  }
  // 1 - sqrt(1 - y) = y / 2 + y^2 / 8 + y^3 / 16 + 5 y^4 / 128 + ...
  const WorkingDigits fewer(std::max(digits - 2 * places, kBurstGuardDigits));
  const QuarnFloat y = s * s;
  return y * (QuarnFloat(5, -1) + y * (QuarnFloat(125, -3) + y * (QuarnFloat(625, -4) + y * QuarnFloat(390625, -7))));
}

/// sin x and cos x for |x| < 1 to an absolute error of 10^-w.
SinCos sin_cos_by_bursts(const QuarnFloat& x, int w) {
  // The smallest sine has as many digits less as it has zeros in front: those of x are counted in w.
  const int v = w + kHalvings / 3 + 5;
  const int digits = v + kBurstGuardDigits;
  const WorkingDigits scope(digits);
  SinCos result{0, 1};
  for_each_burst(halved(x), v, [&](const QuarnFloat& burst, int places) {
    const QuarnFloat p = -burst * burst;
    const auto term = [&p](long k) -> Splitting { return {p, QuarnFloat(2 * k) * QuarnFloat(2 * k + 1), p}; };
    const long terms = terms_needed(v, 2 * places, 2);
    const Splitting sum = split(1, 1 + terms, term, 4 * places + 2 + 2 * length_of(2 * terms + 1));
    QuarnFloat s;
    {
      const WorkingDigits fewer(std::max(digits - 2 * places, kBurstGuardDigits));  // small beside the burst
      s = burst * sum.t / sum.q;
    }
    s += burst;
    const QuarnFloat z = one_less_cosine(s, places, digits);
    // sin' - sin = cos s - sin z and cos - cos' = cos z + sin s by three products, small beside sin and cos.
    SinCos change;
    {
      const WorkingDigits fewer(std::max(digits - places, kBurstGuardDigits));
      const QuarnFloat both = s * (result.sin + result.cos);
      change = {both - result.sin * (z + s), both + result.cos * (z - s)};
    }
    result = {result.sin + change.sin, result.cos - change.cos};
  });
  // Angles are doubled by a square each: 1 - cos 2y = 2 sin(y)^2 = 4 z - 2 z^2 with z = 1 - cos y.
  QuarnFloat z = 2 * (result.sin * result.sin);
  for (int i = 1; i < kHalvings; ++i) {
    z = 4 * z - 2 * (z * z);
  }
  const QuarnFloat sine = sqrt(z * (2 - z));
  return {signbit(x) ? -sine : sine, 1 - z};
}

}  // namespace

QuarnFloat approximate_exp(const QuarnFloat& x, int w) {
  if (const auto result = fixed::exp(x, w); result && result->digits >= w) {
    return result->value;
  }
  // Ten digits for the multiple of ln 10 that is taken away.
  const WorkingDigits digits(w + kBurstGuardDigits + 10);
  const QuarnFloat ln10 = approximate_ln10(w + kBurstGuardDigits + 10);
  const QuarnFloat power = floor(x / ln10);
  if (power > kMaxScientificExponent) {
    return special(Kind::infinite);
  }
  if (power < -kMaxScientificExponent - 1) {
    return special(Kind::zero);
  }
  const QuarnFloat rest = x - power * ln10;
  const QuarnFloat mantissa = kind_of(rest) == Kind::zero ? QuarnFloat(1) : exp_by_bursts(rest, w + 10);
  const View v = view_of(mantissa);
  return rounded(false, v.exponent + FloatToInt(power), v.limbs, v.length, false, w + kBurstGuardDigits);
}

SinCos approximate_sin_cos(const QuarnFloat& x, int w) {
  // Near a multiple of pi/2 one of the two has fewer digits at first.
  for (int asked = w, tries = 0; tries < 2; ++tries) {
    const auto result = fixed::sin_cos(x, asked);
    if (!result) {
      break;
    }
    const int worst = std::min(result->sin.digits, result->cos.digits);
    if (worst >= w) {
      return {result->sin.value, result->cos.value};
    }
    asked += w - worst + 1;
  }
  const int integer_digits = int(std::max<std::int64_t>(scientific_exponent(x) + 1, 0));
  int lost = 0;
  for (;;) {
    const int reduction = w + integer_digits + lost + kBurstGuardDigits;
    QuarnFloat rest = x;
    int quadrant = 0;
    if (scientific_exponent(x) >= -1) {
      const WorkingDigits digits(reduction);
      const QuarnFloat half_pi = approximate_pi(reduction) / QuarnFloat(2);
      const QuarnFloat multiple = floor(x / half_pi + QuarnFloat(5, -1));
      quadrant = FloatToInt(fmod(multiple, QuarnFloat(4)));
      rest = x - multiple * half_pi;
      // Near a multiple of pi/2 the leading digits cancel; no decimal number but zero is one.
      const std::int64_t cancelled = kind_of(rest) == Kind::zero ? reduction : -scientific_exponent(rest);
      if (cancelled > lost + 5) {
        lost = int(cancelled);
        continue;
      }
    }
    const int absolute = w + int(std::max<std::int64_t>(-scientific_exponent(rest), 0));
    const WorkingDigits digits(absolute + kBurstGuardDigits);
    SinCos result = sin_cos_by_bursts(rest, absolute + 5);
    switch (quadrant & 3) {
      case 1:
        return {result.cos, -result.sin};
      case 2:
        return {-result.sin, -result.cos};
      case 3:
        return {-result.cos, result.sin};
      default:
        return result;
    }
  }
}

}  // namespace quarn

// Polynomials in powers of z - c, with bounds of what rounding has changed.
#pragma once

#include <algorithm>
#include <vector>

#include "src/proven/norms.h"

namespace tesk::proven {

/// The coefficients t(j) of powers of z - c, and bounds of their errors.
struct Taylor {
  std::vector<Complex> values;
  std::vector<QuarnBound> errors;
};

template <class T>
Taylor taylor(const std::vector<T>& a, const Complex& c) {
  const std::size_t n = a.size() - 1;
  Taylor result;
  std::vector<QuarnBound> majorants;
  const QuarnBound size(c);
  Range range;
  range.take(c);
  for (const T& coefficient : a) {
    range.take(coefficient);
    result.values.emplace_back(coefficient);
    majorants.emplace_back(coefficient);
  }
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t j = 1; j + k <= n; ++j) {
      result.values[j] = result.values[j] + result.values[j - 1] * c;
      majorants[j] += majorants[j - 1] * size;
    }
    QuarnCheckInterrupt();
  }
  std::reverse(result.values.begin(), result.values.end());
  std::reverse(majorants.begin(), majorants.end());
  // What enters passes at most 2 n products and sums, of which none costs more than eight half units.
  const QuarnBound units = QuarnBound::count(8 * std::uint32_t(n) + 16) * QuarnBound::power_of_ten(1 - QuarnDigits());
  const QuarnBound relative = range.is_moderate() ? units * over_one_minus(units) : QuarnBound::infinity();
  for (const QuarnBound& majorant : majorants) {
    result.errors.push_back(majorant * relative);
  }
  return result;
}

/// Is |t(k)| r^k above the sum of all other |t(j)| r^j on a circle of radius r?
inline bool dominates(const Taylor& t, std::size_t k, const QuarnBound& r) {
  const QuarnBound one = QuarnBound::count(1);
  const QuarnBound inverse = one / r;
  QuarnBound sum;
  QuarnBound power = one;
  for (std::size_t j = k; j-- > 0;) {
    power *= inverse;
    sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;
  }
  power = one;
  for (std::size_t j = k + 1; j < t.values.size(); ++j) {
    power *= r;
    sum += (QuarnBound(t.values[j]) + t.errors[j]) * power;
  }
  sum += t.errors[k];
  return sum.is_finite() && sum.value() < least_size(t.values[k]);
}

}  // namespace tesk::proven

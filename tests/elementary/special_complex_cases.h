// Random arguments for the special functions of complex.h, and Arb's values.
#pragma once

#include <algorithm>

#include "elementary/arb_oracle.h"
#include "elementary/function_cases.h"
#include "quarn/complex.h"

namespace cases {

struct SpecialComplexCase {
  const char* name;
  quarn::Complex (*ours)(const quarn::Complex&);
  oracle::ArbFunction reference;
  int largest;  // the exponent of the largest arguments
};

inline const std::vector<SpecialComplexCase>& special_complex_functions() {
  static const std::vector<SpecialComplexCase> all = {{"gamma", quarn::tgamma, acb_gamma, 3},
                                                      {"lgamma", quarn::lgamma, acb_lgamma, 3},
                                                      {"digamma", quarn::digamma, acb_digamma, 3},
                                                      {"erf", quarn::erf, acb_hypgeom_erf, 1},
                                                      {"erfc", quarn::erfc, acb_hypgeom_erfc, 1}};
  return all;
}

/// In all quadrants: parts of all sizes, next to either axis, to zero, to poles, and on the vertical lines through
/// them.
inline std::pair<std::string, std::string> random_special_complex(std::mt19937_64& random, const SpecialComplexCase& f,
                                                                  int digits) {
  const Range unit{0, 0, true};
  const Range tiny{-60, -5, true};
  const Range modest{-6, f.largest - 1, true};
  const Range large{f.largest - 1, f.largest, true};
  const Range at_pole{-30, -1, true, "-3"};
  const auto draw = [&](const Range& range) { return random_argument(random, range, digits); };
  switch (random() % 10) {
    case 0:
      return {draw(unit), draw(tiny)};
    case 1:
      return {draw(tiny), draw(unit)};
    case 2:
      return {draw(tiny), draw(tiny)};
    case 3:
      return {draw(at_pole), draw(tiny)};
    case 4:
      return {draw(large), draw(large)};
    case 5:
      return {"-" + std::to_string(random() % 5), draw(random() % 2 == 0 ? tiny : unit)};
    case 6:
      return {draw(unit), draw(unit)};
    default:
      return {draw(modest), draw(modest)};
  }
}

/// The larger error of the two parts, each in units of its last place.
inline double error_of(const SpecialComplexCase& f, const std::string& re, const std::string& im, int digits) {
  QuarnSetDigits(digits);
  const quarn::Complex z{QuarnFloat(re), QuarnFloat(im)};
  const quarn::Complex ours = f.ours(z);
  const auto exact = oracle::apply(f.reference, z.re.to_string(), z.im.to_string(), digits + 25);
  return std::max(error_in_units(ours.re, exact.first, digits), error_in_units(ours.im, exact.second, digits));
}

}  // namespace cases

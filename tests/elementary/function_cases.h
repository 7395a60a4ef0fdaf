// Random arguments for the functions of functions.h, and MPFR's values.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "elementary/mpfr_oracle.h"
#include "quarn/function_table.h"

namespace cases {

/// Arguments are drawn as offset + (+-) 0.ddd * 10^exponent.
struct Range {
  int lowest_exponent;
  int highest_exponent;
  bool negative;
  const char* offset = "0";
};

struct Case {
  const char* name;
  oracle::MpfrFunction1 reference;
  std::vector<Range> ranges;
};

struct Case2 {
  const char* name;
  oracle::MpfrFunction2 reference;
  Range first;
  Range second;
};

inline int lgamma_of(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  int sign = 0;
  return mpfr_lgamma(y, &sign, x, mode);
}

inline const std::vector<Case>& functions_of_one() {
  static const Range unit{0, 0, true};
  static const Range modest{-6, 2, true};
  static const Range tiny{-60, -5, true};
  static const Range large{3, 40, true};
  static const Range positive{-3, 3, false};
  static const Range wide{-9000, 9000, false};
  static const Range circle{-120, -3, true, "3.14159265358979323846264338327950288419716939937510582097494459"};
  static const std::vector<Case> all = {
      {"exp", mpfr_exp, {unit, modest, tiny, {3, 8, true}}},
      {"log", mpfr_log, {positive, wide, {-30, -1, true, "1"}}},
      {"log10", mpfr_log10, {positive, wide, {-30, -1, true, "1"}}},
      {"sqrt", mpfr_sqrt, {positive, wide}},
      {"sin", mpfr_sin, {unit, modest, tiny, {3, 30, true}, circle}},
      {"cos", mpfr_cos, {unit, modest, tiny, {3, 30, true}, circle}},
      {"tan", mpfr_tan, {unit, modest, tiny, {3, 30, true}, circle}},
      {"asin", mpfr_asin, {unit, tiny, {-30, -1, false, "-1"}}},
      {"acos", mpfr_acos, {unit, tiny, {-30, -1, false, "-1"}}},
      {"atan", mpfr_atan, {unit, modest, tiny, large}},
      {"sinh", mpfr_sinh, {unit, modest, tiny, {3, 6, true}}},
      {"cosh", mpfr_cosh, {unit, modest, tiny, {3, 6, true}}},
      {"tanh", mpfr_tanh, {unit, modest, tiny}},
      {"expm1", mpfr_expm1, {unit, modest, tiny, {3, 8, true}}},
      {"exp2", mpfr_exp2, {unit, modest, tiny, {3, 8, true}}},
      {"exp10", mpfr_exp10, {unit, modest, tiny, {3, 8, true}}},
      {"log1p", mpfr_log1p, {unit, positive, tiny, {-30, -1, false, "-1"}, wide}},
      {"log2", mpfr_log2, {positive, wide, {-30, -1, true, "1"}}},
      {"cbrt", mpfr_cbrt, {unit, modest, tiny, large, {-9000, 9000, true}, {-30, -4, false, "0.001"}}},
      {"asinh", mpfr_asinh, {unit, modest, tiny, large}},
      {"acosh", mpfr_acosh, {{1, 3, false, "1"}, {-40, 0, false, "1"}, {3, 9000, false}}},
      {"atanh", mpfr_atanh, {unit, tiny, {-30, -1, false, "-1"}}},
      {"sinpi", mpfr_sinpi, {unit, modest, tiny, {3, 12, true}, {-20, -2, true, "7"}}},
      {"cospi", mpfr_cospi, {unit, modest, tiny, {3, 12, true}, {-20, -2, true, "7.5"}}},
      {"tanpi", mpfr_tanpi, {unit, modest, tiny, {3, 12, true}, {-20, -2, true, "-3.5"}}},
      {"asinpi", mpfr_asinpi, {unit, tiny, {-20, -2, false, "-1"}}},
      {"acospi", mpfr_acospi, {unit, tiny, {-20, -2, false, "-1"}}},
      {"atanpi", mpfr_atanpi, {unit, modest, tiny, large}},
      {"gamma", mpfr_gamma, {unit, {-3, 2, true}, tiny, {1, 3, false}, {-15, -1, true, "-3"}}},
      {"lgamma",
       lgamma_of,
       {unit,
        {-3, 2, false},
        {0, 1, true},
        tiny,
        {-20, -1, true, "1"},
        {-20, -1, true, "2"},
        {-15, -1, true, "-3"},
        {-60, -2, true, "-2.45702473822080067217499302138147769"}}},
      {"digamma", mpfr_digamma, {unit, {-3, 2, false}, {0, 1, true}, {-3, -1, true, "1.4616"}, {-15, -1, true, "-3"}}},
      {"erf", mpfr_erf, {unit, {-6, 1, true}, tiny}},
      {"erfc", mpfr_erfc, {unit, {-6, 1, true}, {2, 2, false}, tiny}},
  };
  return all;
}

inline const std::vector<Case2>& functions_of_two() {
  static const std::vector<Case2> all = {
      {"pow", mpfr_pow, {-3, 3, false}, {-3, 3, true}},        {"pow", mpfr_pow, {-9000, 9000, false}, {-5, 1, true}},
      {"atan2", mpfr_atan2, {-20, 20, true}, {-20, 20, true}}, {"hypot", mpfr_hypot, {-3, 3, true}, {-3, 3, true}},
      {"hypot", mpfr_hypot, {-20, 20, true}, {-20, 20, true}}, {"beta", mpfr_beta, {-2, 2, false}, {-2, 2, false}},
  };
  return all;
}

/// 0.ddd * 10^exponent with at most `digits` digits, added to the offset.
inline std::string random_argument(std::mt19937_64& random, const Range& range, int digits) {
  std::uniform_int_distribution<int> exponent(range.lowest_exponent, range.highest_exponent);
  std::string text = range.negative && random() % 2 == 0 ? "-0." : "0.";
  text += char('1' + random() % 9);
  for (int i = random() % 4 == 0 ? 1 + int(random() % std::uint64_t(digits)) : digits; i > 1; --i) {
    text += char('0' + random() % 10);
  }
  text += "e" + std::to_string(exponent(random));
  if (range.offset[0] == '0') {
    return text;
  }
  const int former = QuarnSetDigits(digits);
  const std::string sum = (QuarnFloat(range.offset) + QuarnFloat(text)).to_string();
  QuarnSetDigits(former);
  return sum;
}

/// Bits in which an argument of so many digits is close enough for the value's digits.
inline long bits_for(const QuarnFloat& x, int digits) {
  const QuarnFloat e = logb(x);
  const double exponent = isfinite(e) ? std::fabs(FloatToDouble(e)) : 0;
  return long(3.33 * (2.0 * digits + 2.0 * std::min(exponent, 400.0) + 60.0)) + 64;
}

/// The error in units of the last of `digits` digits; the reference has 25 digits more.
inline double error_in_units(const QuarnFloat& ours, const std::string& reference, int digits) {
  const int former = QuarnSetDigits(digits + 30);
  const QuarnFloat exact(reference);
  double error = 0;
  if ((isnan(ours) && isnan(exact)) || ours == exact) {
    error = 0;
  } else if (!isfinite(ours) || !isfinite(exact)) {
    error = HUGE_VAL;
  } else {
    const QuarnFloat unit(1, ilogb(exact) + 1 - digits);
    error = FloatToDouble(fabs(ours - exact) / unit);
  }
  QuarnSetDigits(former);
  return error;
}

/// The error of our value of a function for an argument.
inline double error_of(const Case& f, const std::string& argument, int digits) {
  QuarnSetDigits(digits);
  const QuarnFloat x(argument);
  const QuarnFloat ours = quarn::find_function1(f.name)(x);
  return error_in_units(ours, oracle::apply(f.reference, argument, bits_for(x, digits), digits + 25), digits);
}

inline double error_of(const Case2& f, const std::string& a, const std::string& b, int digits) {
  QuarnSetDigits(digits);
  const QuarnFloat x(a);
  const QuarnFloat y(b);
  const QuarnFloat ours = quarn::find_function2(f.name)(x, y);
  const long bits = std::max(bits_for(x, digits), bits_for(y, digits));
  return error_in_units(ours, oracle::apply(f.reference, a, b, bits, digits + 25), digits);
}

}  // namespace cases

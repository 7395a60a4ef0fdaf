// Every elementary function against MPFR: the result must be the correctly rounded one.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "elementary/mpfr_oracle.h"

namespace {

constexpr unsigned kSeed = 20261121;

/// Arguments are drawn as (+-) digits * 10^exponent.
struct Range {
  int lowest_exponent;
  int highest_exponent;
  bool negative;
};

struct Case1 {
  const char* name;
  oracle::MpfrFunction1 reference;
  std::vector<Range> ranges;
};

const Range kUnit{0, 0, true};
const Range kModest{-6, 3, true};
const Range kTiny{-60, -5, true};
const Range kLarge{3, 60, true};
const Range kPositive{-3, 3, false};

const Case1 kCases1[] = {
    {"exp", mpfr_exp, {kUnit, kModest, kTiny, {3, 8, true}}},
    {"log", mpfr_log, {kPositive, {-9000, 9000, false}}},
    {"log10", mpfr_log10, {kPositive, {-9000, 9000, false}}},
    {"sin", mpfr_sin, {kUnit, kModest, kTiny, kLarge}},
    {"cos", mpfr_cos, {kUnit, kModest, kTiny, kLarge}},
    {"tan", mpfr_tan, {kUnit, kModest, kTiny, kLarge}},
    {"asin", mpfr_asin, {kUnit, kTiny}},
    {"acos", mpfr_acos, {kUnit, kTiny}},
    {"atan", mpfr_atan, {kUnit, kModest, kTiny, kLarge}},
    {"sinh", mpfr_sinh, {kUnit, kModest, kTiny}},
    {"cosh", mpfr_cosh, {kUnit, kModest, kTiny}},
    {"tanh", mpfr_tanh, {kUnit, {-6, 2, true}, kTiny}},
};

/// 0.ddd * 10^exponent with at most `digits` digits.
std::string random_argument(std::mt19937& random, const Range& range, int digits) {
  std::uniform_int_distribution<int> exponent(range.lowest_exponent, range.highest_exponent);
  std::uniform_int_distribution<int> digit(0, 9);
  std::uniform_int_distribution<int> length(1, digits);
  std::string text = range.negative && random() % 2 == 0 ? "-0." : "0.";
  text += char('1' + random() % 9);
  for (int i = random() % 4 == 0 ? length(random) : digits; i > 1; --i) {
    text += char('0' + digit(random));
  }
  return text + "e" + std::to_string(exponent(random));
}

long bits_for(const std::string& argument, int digits) {
  const int exponent = std::abs(std::stoi(argument.substr(argument.find('e') + 1)));
  return long(3.33 * (2.0 * digits + 2.0 * std::min(exponent, 400) + 60.0)) + 64;
}

/// The error in units of the last of `digits` digits.
double error_in_ulp(const QuarnFloat& ours, const std::string& reference, int digits) {
  QuarnSetDigits(digits + 30);
  const QuarnFloat exact(reference);
  if (ours == exact) {
    return 0.0;
  }
  const auto e = reference.find('e');
  const QuarnFloat ulp(1, std::stoi(reference.substr(e + 1)) + 1 - digits);
  const double error = FloatToDouble(fabs(ours - exact) / ulp);
  QuarnSetDigits(digits);
  return error;
}

void check_one(const Case1& f, const std::string& argument, int digits, double& worst) {
  QuarnSetDigits(digits);
  const QuarnFloat x(argument);
  const QuarnFloat ours = QuarnEvalf1(f.name, x);
  const std::string reference = oracle::apply(f.reference, argument, bits_for(argument, digits), digits + 25);
  const double error = error_in_ulp(ours, reference, digits);
  worst = std::max(worst, error);
  INFO(f.name << "(" << argument << ") at " << digits << " digits gives " << ours << ", not " << reference);
  CHECK(error <= 0.5000001);
}

int cases_at(int digits) { return digits <= 120 ? 12 : digits <= 300 ? 4 : 2; }

}  // namespace

TEST_CASE("functions of one argument are correctly rounded at 1 to 1000 digits") {
  std::mt19937 random(kSeed);
  INFO("seed " << kSeed);
  double worst = 0.0;
  for (const Case1& f : kCases1) {
    for (const int digits : {1, 2, 3, 5, 9, 10, 15, 18, 19, 20, 34, 36, 37, 50, 75, 100, 120, 150, 300, 1000}) {
      for (const Range& range : f.ranges) {
        for (int i = 0; i < cases_at(digits); ++i) {
          check_one(f, random_argument(random, range, digits), digits, worst);
        }
      }
    }
  }
  MESSAGE("largest error in units of the last place: " << worst);
}

TEST_CASE("bursts of digits and the arithmetic-geometric mean are correctly rounded") {
  std::mt19937 random(kSeed + 1);
  INFO("seed " << kSeed + 1);
  double worst = 0.0;
  for (const Case1& f : kCases1) {
    const std::string name = f.name;
    if (name != "exp" && name != "log" && name != "sin" && name != "cos") {
      continue;
    }
    for (const int digits : {2900, 3700, 10011}) {
      for (const Range& range : f.ranges) {
        check_one(f, random_argument(random, range, digits), digits, worst);
      }
    }
    // One, a multiple of pi / 2 to 50 digits, and their neighbours.
    for (const char* const x :
         {"1.5707963267948966192313216916397514420985846996876", "1.00000000000000000000000000001", "3"}) {
      check_one(f, x, 3100, worst);
    }
  }
}

TEST_CASE("exp, log, sin and cos are correctly rounded at every length of their fixed-point numbers") {
  std::mt19937 random(kSeed + 1);
  double worst = 0.0;
  std::vector<int> lengths;
  for (int digits = 14; digits < 420; digits += 18) {
    lengths.push_back(digits);
  }
  lengths.insert(lengths.end(), {700, 1300, 2000, 2800});
  for (const Case1& f : kCases1) {
    const std::string name = f.name;
    if (name == "exp" || name == "log" || name == "sin" || name == "cos") {
      for (const int digits : lengths) {
        check_one(f, random_argument(random, f.ranges[0], digits), digits, worst);
      }
    }
  }
}

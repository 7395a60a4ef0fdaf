// The functions of functions.h: correctly rounded against MPFR, special values, exact results.
#include <doctest/doctest.h>

#include "elementary/function_cases.h"

namespace {

constexpr unsigned kSeed = 20261122;

}  // namespace

TEST_CASE("functions of functions.h are correctly rounded at 1 to 1000 digits") {
  std::mt19937_64 random(kSeed);
  INFO("seed " << kSeed);
  for (const int digits : {1, 2, 3, 9, 17, 18, 20, 36, 50, 110, 126, 333, 1000}) {
    const int count = digits <= 126 ? 6 : 1;
    for (const cases::Case& f : cases::functions_of_one()) {
      for (const cases::Range& range : f.ranges) {
        for (int i = 0; i < count; ++i) {
          const std::string x = cases::random_argument(random, range, digits);
          INFO(std::string(f.name) << "(" << x << ") at " << digits << " digits");
          CHECK(cases::error_of(f, x, digits) <= 0.5000001);
        }
      }
    }
    for (const cases::Case2& f : cases::functions_of_two()) {
      for (int i = 0; i < 2 * count; ++i) {
        const std::string x = cases::random_argument(random, f.first, digits);
        const std::string y = cases::random_argument(random, f.second, digits);
        INFO(std::string(f.name) << "(" << x << ", " << y << ") at " << digits << " digits");
        CHECK(cases::error_of(f, x, y, digits) <= 0.5000001);
      }
    }
  }
}

TEST_CASE("exact results, poles and ends of domains") {
  const struct {
    const char* function;
    int digits;
    const char* x;
    const char* value;
  } rows[] = {{"exp2", 20, "10", "1024"},
              {"exp2", 4, "-3", "0.125"},
              {"exp10", 3, "-999999999", "1e-999999999"},
              {"exp10", 3, "1e9", "inf"},
              {"log2", 5, "1024", "10"},
              {"log2", 5, "0.125", "-3"},
              {"log2", 5, "0", "-inf"},
              {"cbrt", 5, "-27", "-3"},
              {"cbrt", 2, "1e-999999999", "1e-333333333"},
              {"cbrt", 5, "0.125", "0.5"},
              {"expm1", 5, "-inf", "-1"},
              {"expm1", 5, "1e10", "inf"},
              {"expm1", 5, "1e-500", "1e-500"},
              {"log1p", 5, "-1", "-inf"},
              {"log1p", 5, "-1.5", "nan"},
              {"acosh", 5, "1", "0"},
              {"acosh", 5, "0.9", "nan"},
              {"atanh", 5, "-1", "-inf"},
              {"sinpi", 5, "1e1000000", "0"},
              {"sinpi", 5, "-2.5", "-1"},
              {"cospi", 5, "1e50", "1"},
              {"cospi", 5, "0.5", "0"},
              {"tanpi", 1, "0.25", "1"},
              {"tanpi", 5, "1.5", "-inf"},
              {"asinpi", 5, "-1", "-0.5"},
              {"acospi", 5, "-1", "1"},
              {"atanpi", 5, "inf", "0.5"},
              {"round", 5, "-2.5", "-3"},
              {"round", 5, "0.49999999", "0"},
              {"rint", 5, "2.5", "2"},
              {"rint", 5, "-3.5", "-4"},
              {"logb", 5, "0.02", "-2"},
              {"gamma", 20, "5", "24"},
              {"gamma", 20, "-2", "nan"},
              {"gamma", 20, "-0", "-inf"},
              {"gamma", 20, "1e-1000000", "1e1000000"},
              {"gamma", 20, "2e8", "inf"},
              {"gamma", 20, "-200000000.5", "-0"},
              {"gamma", 20, "-inf", "nan"},
              {"lgamma", 20, "2", "0"},
              {"lgamma", 20, "-3", "inf"},
              {"digamma", 20, "0", "nan"},
              {"digamma", 5, "1e-1000", "-1e1000"},
              {"factorial", 30, "25", "15511210043330985984000000"},
              {"factorial", 5, "2.5", "nan"},
              {"factorial", 5, "-1", "nan"},
              {"erf", 5, "inf", "1"},
              {"erfc", 5, "-inf", "2"},
              {"erfc", 5, "1e6", "0"},
              {"erf", 5, "-1000", "-1"}};
  for (const auto& row : rows) {
    QuarnSetDigits(100);
    const QuarnFloat x(row.x);
    QuarnSetDigits(row.digits);
    const QuarnFloat ours = quarn::find_function1(row.function)(x);
    const QuarnFloat value(row.value);
    INFO(std::string(row.function) << "(" << x << ") is " << ours);
    CHECK(((isnan(ours) && isnan(value)) || (ours == value && signbit(ours) == signbit(value))));
  }
  for (const auto& f : quarn::functions_of_one()) {
    INFO(std::string(f.name));
    CHECK(isnan(f.apply(QuarnFloat("nan"))));
  }
}

TEST_CASE("functions of two arguments") {
  QuarnSetDigits(30);
  CHECK(hypot(QuarnFloat("3e999999998"), QuarnFloat("4e999999998")) == QuarnFloat("5e999999998"));
  CHECK(hypot(QuarnFloat("nan"), QuarnFloat("-inf")) == QuarnFloat("inf"));
  CHECK(binomial(50, 25) == QuarnFloat("126410606437752"));
  CHECK(binomial(QuarnFloat("0.5"), 3) == QuarnFloat("0.0625"));
  CHECK(binomial(-3, 4) == 15);
  CHECK(binomial(5, 7) == 0);
  CHECK(binomial(5, -1) == 0);
  CHECK(beta(2, 2) * 6 == 1);
  CHECK(beta(1, 4) == QuarnFloat("0.25"));
  CHECK(beta(-5, 2) == QuarnFloat("0.05"));
  CHECK(isnan(beta(0, 1)));
  CHECK(beta(QuarnFloat("-0.5"), QuarnFloat("-0.5")) == 0);
  CHECK(remainder(5, 2) == 1);
  CHECK(remainder(7, 2) == -1);
  CHECK(remainder(QuarnFloat("1e1000"), 7) ==
        fmod(QuarnFloat("1e1000"), 7) - (fmod(QuarnFloat("1e1000"), 7) > 3 ? 7 : 0));
  CHECK(fma(QuarnFloat("1e20") + 1, QuarnFloat("1e20") - 1, QuarnFloat("-1e40")) == -1);
  CHECK(fmin(QuarnFloat("nan"), 3) == 3);
  CHECK(signbit(fmin(QuarnFloat(0), QuarnFloat("-0"))));
  CHECK(fdim(2, 5) == 0);
  CHECK(nextafter(QuarnFloat(1), 0) == QuarnFloat("0." + std::string(30, '9')));
  CHECK(nextafter(QuarnFloat("1e-999999999"), 1) == QuarnFloat("1." + std::string(28, '0') + "1e-999999999"));
  CHECK(nextafter(QuarnFloat("-1e-999999999"), 1) == 0);
  int power = 0;
  CHECK(frexp(QuarnFloat(-12), &power) == QuarnFloat("-0.75"));
  CHECK(power == 4);
  CHECK(ldexp(QuarnFloat("0.75"), 4) == 12);
  CHECK(ldexp(QuarnFloat(1), -2147483647 - 1) > 0);
  CHECK(scalbn(QuarnFloat(12), -3) == QuarnFloat("0.012"));
  QuarnFloat whole;
  CHECK(modf(QuarnFloat("-2.75"), &whole) == QuarnFloat("-0.75"));
  CHECK(whole == -2);
  CHECK(signbit(copysign(QuarnFloat(2), QuarnFloat("-0"))));
}

// Gamma and error functions of complex numbers against Arb; far, special and symmetric arguments.
#include <doctest/doctest.h>

#include "elementary/special_complex_cases.h"
#include "quarn/function_table.h"
#include "support/digits.h"
#include "support/random.h"

using quarn::Complex;

TEST_CASE("each part of a special function of complex numbers is good to 0.51 units") {
  support::Random seeded;
  std::mt19937_64 random(std::uint64_t(seeded.between(0, 1'000'000'000)));
  const support::Digits scope(20);
  for (const int digits : {1, 2, 3, 17, 20, 50, 126, 333, 1000}) {
    for (const cases::SpecialComplexCase& f : cases::special_complex_functions()) {
      for (int i = digits <= 126 ? 40 : digits <= 333 ? 8 : 1; i > 0; --i) {
        const auto z = cases::random_special_complex(random, f, digits);
        const double error = cases::error_of(f, z.first, z.second, digits);
        CHECK_MESSAGE(error <= 0.51, std::string(f.name), "(", z.first, ", ", z.second, ") at ", digits,
                      " digits: ", error);
      }
    }
  }
}

TEST_CASE("special functions of complex numbers far out and next to poles, zeros and axes") {
  const struct {
    const char* function;
    const char* z[2];
    const char* value[2];
  } rows[] = {
      // Gamma(-m + i y) = (-1)^m / m! (psi(m + 1) - i / y)
      {"gamma", {"-2", "1e-500000"}, {"0.4613921675492335697", "-5e499999"}},
      {"gamma", {"1e-300", "1e-100"}, {"-0.57721566490153286061", "-1e100"}},
      {"gamma", {"1e-999999998", "1e-999999998"}, {"5e999999997", "-5e999999997"}},
      {"gamma", {"2", "1e-700"}, {"1", "4.2278433509846713939e-701"}},
      {"gamma", {"1", "-1e20"}, {"0", "0"}},
      {"gamma", {"-1e1500", "3"}, {"0", "0"}},
      {"gamma", {"1e1500", "3"}, {"inf", "nan"}},
      {"gamma", {"inf", "1"}, {"nan", "nan"}},
      {"gamma", {"2", "nan"}, {"nan", "nan"}},
      {"lgamma", {"2", "1e-5000"}, {"-3.2246703342411321824e-10001", "4.2278433509846713939e-5001"}},
      {"lgamma", {"1e20", "1e-5000"}, {"4.505170185988091368e21", "4.605170185988091368e-4999"}},
      {"lgamma", {"-2.5", "0"}, {"-0.056243716497674050673", "-9.4247779607693797154"}},
      {"lgamma", {"-2.5", "-0"}, {"-0.056243716497674050673", "9.4247779607693797154"}},
      {"lgamma", {"-3", "0"}, {"inf", "0"}},
      {"digamma", {"-3", "1e-5000"}, {"1.2561176684318004727", "1e5000"}},
      {"digamma", {"1e1500", "2"}, {"3453.877639491068526", "2e-1500"}},
      {"digamma", {"-1e20", "1e9"}, {"46.05170185988091368", "3.1415926535797932385"}},
      {"erf", {"1e-999999999", "1"}, {"3.0672525855274844503e-999999999", "1.650425758797542876"}},
      {"erf", {"3", "1e-5000"}, {"0.99997790950300141456", "1.3925305194674785389e-5004"}},
      {"erf", {"1e6", "-1"}, {"1", "0"}},
      {"erf", {"1", "1e1500"}, {"inf", "nan"}},
      {"erf", {"-inf", "7"}, {"-1", "0"}},
      {"erfc", {"0", "2"}, {"1", "-18.564802414575552599"}},
      {"erfc", {"-1e6", "1"}, {"2", "0"}},
      {"erfc", {"1e-60", "-1e-60"}, {"1", "1.1283791670955125739e-60"}},
  };
  const support::Digits scope(20);
  for (const auto& row : rows) {
    const std::string name = row.function;
    for (const quarn::NamedFunction1& f : quarn::functions_of_one()) {
      if (name == f.name) {
        const Complex w = f.complex({QuarnFloat(row.z[0]), QuarnFloat(row.z[1])});
        INFO(name << "(" << std::string(row.z[0]) << ", " << std::string(row.z[1]) << ") = " << w.re << ", " << w.im);
        const auto same = [](const QuarnFloat& a, const char* text) {
          const QuarnFloat b(text);
          return (isnan(a) && isnan(b)) || a == b;
        };
        CHECK(same(w.re, row.value[0]));
        CHECK(same(w.im, row.value[1]));
      }
    }
  }
}

TEST_CASE("special functions of complex numbers obey their equations at both signs of every part") {
  support::Random random;
  const support::Digits scope(40);
  const auto near = [](const Complex& a, const Complex& b) {
    return quarn::abs(a - b) <= QuarnFloat("1e-36") * (quarn::abs(a) + quarn::abs(b));
  };
  for (int i = 0; i < 30; ++i) {
    const Complex z(QuarnFloat(random.between(-9999, 9999)) / QuarnFloat(997),
                    QuarnFloat(random.between(1, 9999)) / QuarnFloat(991));
    CAPTURE(z.re);
    CAPTURE(z.im);
    CHECK(near(tgamma(z + Complex(1)), z * tgamma(z)));
    CHECK(near(exp(lgamma(z)), tgamma(z)));
    CHECK(near(digamma(z + Complex(1)), digamma(z) + Complex(1) / z));
    CHECK(lgamma(conj(z)) == conj(lgamma(z)));
    CHECK(erf(-z) == -erf(z));
    CHECK(quarn::abs(erf(z) + erfc(z) - Complex(1)) <= QuarnFloat("1e-38") * (quarn::abs(erf(z)) + 1));
  }
}

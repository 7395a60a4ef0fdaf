#include <doctest/doctest.h>

#include <random>

#include "src/kernels/a02.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

using Sqrt = void (*)(QuarnFloat, QuarnFloat, QuarnFloat*, QuarnFloat*);

struct Pair {
  QuarnFloat re;
  QuarnFloat im;
};

Pair root(Sqrt entry, const QuarnFloat& re, const QuarnFloat& im) {
  Pair y;
  entry(re, im, &y.re, &y.im);
  return y;
}

QuarnFloat random_part(std::mt19937_64& random) {
  QuarnFloat value = 0;
  for (int i = 0; i < 8; ++i) {
    value = value / 1000000000 + QuarnFloat(std::uint32_t(random() % 1000000000));
  }
  const QuarnFloat scaled = value * QuarnFloat(1, int(random() % 41) - 29);
  return random() % 2 == 0 ? scaled : -scaled;
}

}  // namespace

TEST_CASE("square roots with exact parts") {
  support::Digits scope(50);
  struct Row {
    const char *xr, *xi, *yr, *yi;
  };
  const Row rows[] = {
      {"4", "0", "2", "0"},   {"-4", "0", "0", "2"}, {"-4", "-0", "-0", "2"}, {"3", "4", "2", "1"},
      {"3", "-4", "2", "-1"}, {"-3", "4", "1", "2"}, {"-3", "-4", "1", "-2"}, {"1e134217726", "0", "1e+67108863", "0"},
      {"0", "0", "0", "0"},
  };
  for (const Sqrt entry : {&QuarnMP_a02aafn_, &QuarnMPX_a02aafn_}) {
    for (const Row& row : rows) {
      CAPTURE(row.xr);
      CAPTURE(row.xi);
      const Pair y = root(entry, QuarnFloat(row.xr), QuarnFloat(row.xi));
      CHECK(y.re.to_string() == row.yr);
      CHECK(y.im.to_string() == row.yi);
    }
  }
}

TEST_CASE("the classic root is capped for small arguments, the companion never") {
  support::Digits scope(50);
  const Pair classic = root(QuarnMP_a02aafn_, QuarnFloat("0.25"), 0);
  const Pair full = root(QuarnMPX_a02aafn_, QuarnFloat("0.25"), 0);
  CHECK(fabs(full.re - QuarnFloat("0.5")) <= QuarnFloat(1, -50));
  CHECK(fabs(classic.re - full.re) < QuarnFloat(1, -15));
  CHECK(fabs(classic.re - full.re) > QuarnFloat(1, -19));

  std::mt19937_64 random(support::run_seed());
  for (int i = 0; i < 200; ++i) {
    const QuarnFloat xr = random_part(random);
    const QuarnFloat xi = random_part(random);
    CAPTURE(xr);
    CAPTURE(xi);
    const Pair y = root(QuarnMPX_a02aafn_, xr, xi);
    // |y^2 - x| <= c ulp |x| with c = 20 for about eight roundings on the way and three in the check.
    const QuarnFloat error = QuarnMP_a02abfn_(y.re * y.re - y.im * y.im - xr, 2 * y.re * y.im - xi);
    CHECK(error <= 20 * QuarnFloat(1, -49) * QuarnMP_a02abfn_(xr, xi));
    CHECK(y.re >= 0);

    QuarnFloat ar = xr;
    QuarnFloat ai = xi;
    QuarnMPX_a02aaf_(&ar, &ai, &ar, &ai);  // by address, over its own operand
    CHECK(ar == y.re);
    CHECK(ai == y.im);
    const Pair capped = root(QuarnMP_a02aafn_, xr, xi);
    ar = xr;
    ai = xi;
    QuarnMP_a02aaf_(&ar, &ai, &ar, &ai);
    CHECK(ar == capped.re);
    CHECK(ai == capped.im);
    // Above 1 the two entries are the same computation.
    CHECK((fabs(xr) <= 1 || (capped.re == y.re && capped.im == y.im)));
  }
}

TEST_CASE("modulus") {
  support::Digits scope(40);
  struct Row {
    const char *xr, *xi, *modulus;
  };
  const Row rows[] = {
      {"3", "4", "5"},
      {"-4", "3", "5"},
      {"0", "-7", "7"},
      {"0", "0", "0"},
      {"-0", "-0", "0"},
      {"3e999999998", "4e999999998", "5e+999999998"},
      {"1e-999999999", "0", "1e-999999999"},
      {"inf", "2", "inf"},
      {"nan", "2", "nan"},
  };
  for (const Row& row : rows) {
    CHECK(QuarnMP_a02abfn_(QuarnFloat(row.xr), QuarnFloat(row.xi)).to_string() == row.modulus);
  }
}

TEST_CASE("division") {
  support::Digits scope(40);
  struct Row {
    const char *xr, *xi, *yr, *yi, *zr, *zi;
  };
  const Row rows[] = {
      {"1", "0", "1", "1", "0.5", "-0.5"},
      {"5", "5", "1", "2", "3", "-1"},
      {"5", "5", "2", "1", "3", "1"},
      {"4", "8", "0", "4", "2", "-1"},
      {"2e999999990", "0", "4e999999990", "0", "0.5", "0"},
      {"1", "1", "0", "0", "nan", "nan"},
  };
  for (const Row& row : rows) {
    QuarnFloat zr;
    QuarnFloat zi;
    QuarnMP_a02acfn_(QuarnFloat(row.xr), QuarnFloat(row.xi), QuarnFloat(row.yr), QuarnFloat(row.yi), &zr, &zi);
    CHECK(zr.to_string() == row.zr);
    CHECK(zi.to_string() == row.zi);
  }
}

TEST_CASE("a NaN part makes both parts of the companion's root NaN") {
  const QuarnFloat nan("nan");
  for (const auto& [re, im] : {std::pair(nan, QuarnFloat(0)), {QuarnFloat(-4), nan}, {nan, nan}}) {
    QuarnFloat yr;
    QuarnFloat yi;
    QuarnMPX_a02aafn_(re, im, &yr, &yi);
    CHECK((isnan(yr) && isnan(yi)));
  }
}

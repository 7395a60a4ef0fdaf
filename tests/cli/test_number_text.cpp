// Numbers as text: what counts as one, and complex numbers both ways.
#include <doctest/doctest.h>

#include <string>

#include "cli/io/number_text.h"
#include "support/digits.h"
#include "support/random.h"

TEST_CASE("complex numbers are read with either part missing") {
  const struct {
    const char* text;
    double re;
    double im;
  } cases[] = {
      {"2", 2, 0},      {"-.5", -0.5, 0},       {"i", 0, 1},
      {"-i", 0, -1},    {"+j", 0, 1},           {"2.5i", 0, 2.5},
      {"1+i", 1, 1},    {"1-2i", 1, -2},        {"-1e-2+3e+1i", -0.01, 30},
      {"1e5i", 0, 1e5}, {"1.e1-.5j", 10, -0.5},
  };
  const support::Digits digits(20);
  for (const auto& each : cases) {
    CAPTURE(each.text);
    REQUIRE(cli::is_complex_number(each.text));
    const Complex value = cli::to_complex_number(each.text);
    CHECK(FloatToDouble(value.re) == each.re);
    CHECK(FloatToDouble(value.im) == each.im);
  }
  for (const char* text : {"", "+", "ii", "i2", "1+", "1++i", "1 + i", "1+2", "e5i", "1e+i", "1i+2", "nan", "1-e2i"}) {
    CAPTURE(text);
    CHECK_FALSE(cli::is_complex_number(text));
  }
}

TEST_CASE("complex numbers come back from their text") {
  support::Random random;
  const support::Digits digits(50);
  const auto number = [&] {
    return random.once_in(5) ? QuarnFloat()
                             : QuarnFloat((random.once_in(2) ? "-" : "") + random.digits(50) + "e" +
                                          std::to_string(random.between(-99, 99)));
  };
  for (int round = 0; round < 500; ++round) {
    const Complex value(number(), number());
    const std::string text = cli::complex_text(value);
    CAPTURE(text);
    REQUIRE(cli::is_complex_number(text));
    CHECK(cli::to_complex_number(text) == value);
  }
}

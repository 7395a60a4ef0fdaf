// Upper bounds: each operation beside the exact result, which 60 digits hold or tell apart from the bound.
#include <doctest/doctest.h>

#include "quarn/bound.h"
#include "quarn/functions.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

/// Nine digits, nines and zeros among them, and an exponent; now and then 0.
QuarnFloat some_number(support::Random& random, int reach) {
  if (random.once_in(12)) {
    return 0;
  }
  const std::string text = "1" + random.digits(8) + "e" + std::to_string(random.between(-reach, reach));
  const QuarnFloat x(text.c_str());
  return random.once_in(3) ? x - QuarnFloat(("1e" + std::to_string(ilogb(x))).c_str()) : x;
}

/// Not below the exact result, and little above it.
void check_bound(const QuarnBound& bound, const QuarnFloat& exact) {
  const QuarnFloat value = bound.value();
  CHECK(value >= exact);
  CHECK(value <= exact * QuarnFloat("1.00000002"));
}

}  // namespace

TEST_CASE("operations on bounds are never below the exact result, and little above") {
  const support::Digits scope(60);
  support::Random random;
  for (int round = 0; round < 4000; ++round) {
    const int reach = round % 3 == 0 ? 0 : round % 3 == 1 ? 12 : 200'000'000;
    const QuarnFloat a = some_number(random, reach);
    const QuarnFloat b = some_number(random, reach);
    const QuarnBound bound_a(a);
    const QuarnBound bound_b(b);
    CAPTURE(a.to_string());
    CAPTURE(b.to_string());
    CHECK(bound_a.value() == fabs(a));  // nine digits are held
    CHECK(QuarnBound(-a) == bound_a);
    check_bound(bound_a + bound_b, fabs(a) + fabs(b));
    check_bound(bound_a * bound_b, fabs(a * b));
    check_bound(sqrt(bound_a), sqrt(fabs(a)));
    check_bound(hypotenuse(bound_a, bound_b), sqrt(a * a + b * b));
    if (b != 0) {
      check_bound(bound_a / bound_b, fabs(a / b));
    }
    CHECK((bound_a < bound_b) == (fabs(a) < fabs(b)));
    if (fabs(a) < 1) {
      const QuarnFloat exact = 1 / (1 - fabs(a));
      CHECK(over_one_minus(bound_a).value() >= exact);
      CHECK(over_one_minus(bound_a).value() <= exact * (1 + 2 * exact / 100000000));
    } else {
      CHECK(!over_one_minus(bound_a).is_finite());
    }
  }
}

TEST_CASE("numbers of any length are rounded up") {
  support::Random random;
  for (const int digits : {1, 9, 10, 18, 19, 40, 333}) {
    const support::Digits scope(digits);
    for (int round = 0; round < 50; ++round) {
      const QuarnFloat x(("0." + random.digits(std::size_t(digits)) + "e-7").c_str());
      const QuarnFloat bound = QuarnBound(x).value();
      CHECK(bound >= x);
      const support::Digits wide(400);
      CHECK(bound <= x * QuarnFloat("1.00000001"));
      // Half a unit of the last place is what rounding loses at most, and a tie loses just that.
      const QuarnFloat tie = x == 0 ? x : QuarnFloat(("5e" + std::to_string(ilogb(x) - digits)).c_str());
      CHECK(QuarnBound(x).half_unit(digits).value() >= tie);
    }
  }
}

TEST_CASE("what is not a number, not finite or out of range") {
  CHECK(QuarnBound().is_zero());
  CHECK(QuarnBound(QuarnFloat()).value() == 0);
  for (const char* text : {"inf", "-inf", "nan"}) {
    CHECK(!QuarnBound(QuarnFloat(text)).is_finite());
  }
  const QuarnBound infinite = QuarnBound::infinity();
  CHECK(isinf(infinite.value()));
  CHECK(!(infinite + QuarnBound()).is_finite());
  CHECK(!(infinite * QuarnBound()).is_finite());
  CHECK(!(QuarnBound() / QuarnBound()).is_finite());
  CHECK(!sqrt(infinite).is_finite());
  CHECK(!over_one_minus(infinite).is_finite());
  CHECK((QuarnBound::count(7) / infinite).is_zero());
  CHECK(QuarnBound::count(7) < infinite);
  const QuarnBound vast = QuarnBound::power_of_ten(999'999'999) * QuarnBound::count(10);
  CHECK(vast.is_finite());
  CHECK(isinf(vast.value()));
  const QuarnBound tiny = QuarnBound::power_of_ten(-2'000'000'000);
  CHECK(tiny.value() > 0);
  CHECK(tiny.value() == QuarnFloat("1e-999999999"));
  CHECK(!QuarnBound(Complex(QuarnFloat("nan"), 1)).is_finite());
  CHECK(QuarnBound(Complex(3, -4)).value() == 5);
}

// Gamma and error functions with the failure protocol: exact bytes of messages and buffers, and what is thrown.
#include <doctest/doctest.h>

#include <string>

#include "quarn/functions.h"
#include "support/outcome.h"
#include "tesk2mp/special.hpp"

using support::Outcome;

namespace {

using Core = QuarnFloat (*)(QuarnFloat, char*, Integer*, int);

Outcome outcome_at(Core core, const char* x, QuarnFloat* value = nullptr) {
  return support::outcome_of([&](char* buffer, Integer* ifail, int length) {
    const QuarnFloat result = core(QuarnFloat(x), buffer, ifail, length);
    if (value != nullptr) {
      *value = result;
    }
  });
}

struct Failing {
  Core core;
  const char* x;
  Integer ifail;
  const char* buffer;
  const char* record;
};

}  // namespace

TEST_CASE("messages and message buffers of special functions") {
  QuarnSetDigits(20);
  const Failing cases[] = {{QuarnMPX_gamman_, "-3", 1, "GAMMA     1 99999     1  -3.0000e+00",
                            " ** On entry, X is a pole of the gamma function: X =  -3.0000e+00."},
                           {QuarnMPX_gamman_, "0", 1, "GAMMA     1 99999     1   0.0000e+00",
                            " ** On entry, X is a pole of the gamma function: X =   0.0000e+00."},
                           {QuarnMPX_gamman_, "2e8", 2, "GAMMA     2 99998     1   2.0000e+08",
                            " ** The gamma function of X overflows: X =   2.0000e+08."},
                           {QuarnMPX_gamman_, "-200000000.5", 3, "GAMMA     3 99997     1  -2.0000e+08",
                            " ** The gamma function of X underflows: X =  -2.0000e+08."},
                           {QuarnMPX_lgamman_, "-1", 1, "LGAMMA     1 99999     1  -1.0000e+00",
                            " ** On entry, X is a pole of the gamma function: X =  -1.0000e+00."},
                           {QuarnMPX_lgamman_, "5e999999990", 2, "LGAMMA     2 99998     1 5.0000e+999999990",
                            " ** The logarithm of the gamma function of X overflows: X = 5.0000e+999999990."},
                           {QuarnMPX_digamman_, "-2", 1, "DIGAMMA     1 99999     1  -2.0000e+00",
                            " ** On entry, X is a pole of the digamma function: X =  -2.0000e+00."},
                           {QuarnMPX_erfcn_, "5e4", 3, "ERFC     3 99999     1   5.0000e+04",
                            " ** The complement of the error function of X underflows: X =   5.0000e+04."}};
  for (const Failing& each : cases) {
    const Outcome outcome = outcome_at(each.core, each.x);
    CAPTURE(each.buffer);
    CHECK(outcome.ifail == each.ifail);
    CHECK(outcome.buffer == each.buffer);
    CHECK(outcome.console == each.record);
  }
  const Outcome beta = support::outcome_of(
      [](char* buffer, Integer* ifail, int length) { CHECK(isnan(QuarnMPX_betan_(0, 2, buffer, ifail, length))); });
  CHECK(beta.ifail == 1);
  CHECK(beta.buffer == "BETA     1 99999     2   0.0000e+00   2.0000e+00");
  CHECK(beta.console == " ** On entry, X or Y is a pole of the beta function: X =   0.0000e+00 Y =   2.0000e+00.");
}

TEST_CASE("special functions report nothing where there is a value") {
  for (const int digits : {1, 20, 333}) {
    QuarnSetDigits(digits);
    for (const char* x : {"0.5", "-0.5", "7", "1e-40", "inf", "nan"}) {
      QuarnFloat value;
      Outcome outcome = outcome_at(QuarnMPX_gamman_, x, &value);
      CHECK(outcome.ifail == 0);
      CHECK(outcome.buffer == "NONE");
      CHECK(outcome.console.empty());
      CHECK(((isnan(value) && isnan(QuarnFloat(x))) || value == tgamma(QuarnFloat(x))));
      CHECK(outcome_at(QuarnMPX_lgamman_, x, &value).ifail == 0);
      CHECK(outcome_at(QuarnMPX_digamman_, x, &value).ifail == 0);
      CHECK(outcome_at(QuarnMPX_erfcn_, x, &value).ifail == 0);
    }
  }
  QuarnSetDigits(20);
  // X + Y is a pole: an exact zero
  const QuarnFloat x(5, -1);
  const QuarnFloat y(-15, -1);
  Integer ifail = 1;
  CHECK(QuarnMPX_beta_(&x, &y, &ifail) == 0);
  CHECK(ifail == 0);
}

TEST_CASE("the checked functions throw") {
  QuarnSetDigits(30);
  using namespace tesk2mp;
  CHECK(checked::gamma(Real(5)) == 24);
  CHECK(checked::beta(Real(2), Real(3)) == Real(1) / 12);
  CHECK(checked::erf(Real(1)) + checked::erfc(Real(1)) == 1);
  CHECK_THROWS_AS(checked::gamma(Real(-1)), InvalidArgument);
  CHECK_THROWS_AS(checked::lgamma(Real(0)), InvalidArgument);
  CHECK_THROWS_AS(checked::gamma(Real(3e8)), NumericalFailure);
  try {
    static_cast<void>(checked::digamma(Real(-7)));
    FAIL("no exception");
  } catch (const InvalidArgument& refusal) {
    CHECK(refusal.routine() == "DIGAMMA");
    CHECK(refusal.code() == 1);
  }
}

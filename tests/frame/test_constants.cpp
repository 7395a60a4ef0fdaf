#include <doctest/doctest.h>

#include "src/frame/constants.h"
#include "support/digits.h"
#include "tesk2mp/tesk2mp.h"

using tesk::Accuracy;
using tesk::Constants;

TEST_CASE("machine constants follow the working digits") {
  for (const int digits : {1, 20, 30, 100, 1000}) {
    support::Digits scope(digits);
    CHECK(QuarnMP_x02ajf_() == pow(QuarnFloat(10), QuarnFloat(-digits)));
    CHECK(x02befn_(QuarnFloat(7)) == digits);
    CHECK(QuarnMP_x02akf_().to_string() == "1e-134217726");
    CHECK(QuarnMP_x02alf_().to_string() == "1e+134217726");
    CHECK(QuarnMP_x02amf_() == QuarnMP_x02akf_());
    CHECK(1 / QuarnMP_x02amf_() == QuarnMP_x02alf_());
    CHECK(QuarnMP_x02bhf_() == 10);
    CHECK(x02bbfn_(QuarnFloat(7)) == 2147483647);
  }
}

TEST_CASE("pi: the double and the whole") {
  support::Digits scope(60);
  CHECK(QuarnMP_x01aaf_().to_string() == "3.141592653589793115997963468544185161590576171875");
  CHECK(QuarnMPX_x01aaf_().to_string() == "3.14159265358979323846264338327950288419716939937510582097494");
}

TEST_CASE("each constant is what its name says: to 16 digits, or to all of them") {
  support::Digits scope(80);
  const QuarnFloat ulp(1, -79);
  const QuarnFloat capped(2, -16);
  struct Row {
    QuarnFloat (Constants::*constant)() const;
    QuarnFloat square;
  };
  const Row rows[] = {{&Constants::sqrt_half, QuarnFloat(0.5)},
                      {&Constants::half_sqrt3, QuarnFloat(0.75)},
                      {&Constants::quarter_sqrt5, QuarnFloat(0.3125)}};
  for (const Row& row : rows) {
    const QuarnFloat classic = (Constants(Accuracy::classic).*row.constant)();
    const QuarnFloat full = (Constants(Accuracy::full).*row.constant)();
    CHECK(fabs(full * full - row.square) <= 2 * ulp);
    CHECK(fabs(classic - full) < capped);
    CHECK(fabs(classic - full) > QuarnFloat(1, -19));
  }
}

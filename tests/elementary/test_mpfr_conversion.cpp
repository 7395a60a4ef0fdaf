// Conversions to and from MPFR's numbers.
#include <doctest/doctest.h>

#include <random>
#include <string>

#include "elementary/mpfr_oracle.h"
#include "quarn/mpfr_conversion.h"
#include "support/digits.h"

TEST_CASE("MPFR's numbers are rounded once, half to even") {
  std::mt19937_64 random(20261122);
  for (const int digits : {1, 2, 3, 17, 50, 333}) {
    for (int i = 0; i < 200; ++i) {
      // Few bits, so that ties are common: m 2^-k has its last digits ...5.
      oracle::Real x(i % 2 == 0 ? 12 : 700);
      mpfr_set_si_2exp(x, long(random() % 4096) - 2048, -long(random() % 12), MPFR_RNDN);
      if (i % 2 != 0) {
        mpfr_mul_ui(x, x, random() % 1000003, MPFR_RNDN);
        mpfr_div_ui(x, x, 1 + random() % 7, MPFR_RNDN);
      }
      // 2^-k m has at most 720 digits.
      const support::Digits many(800);
      const QuarnFloat exact(x.text(790));
      const support::Digits working(digits);
      const QuarnFloat ours = quarn::from_mpfr(x);
      CAPTURE(exact.to_string());
      CHECK(ours == exact * 1);
      CHECK(signbit(ours) == signbit(exact));
    }
  }
}

TEST_CASE("numbers go to MPFR in every direction, and come back") {
  std::mt19937_64 random(4);
  mpfr_set_emax(mpfr_get_emax_max());
  mpfr_set_emin(mpfr_get_emin_min());
  for (const int digits : {1, 20, 100}) {
    const support::Digits working(digits);
    for (int i = 0; i < 100; ++i) {
      const QuarnFloat x = QuarnFloat(std::to_string(std::int64_t(random()))) / QuarnFloat(1 + int(random() % 1000)) *
                           QuarnFloat(1, int(random() % 600) - 300);
      oracle::Real y(long(3.33 * digits) + 20);
      static_cast<void>(quarn::to_mpfr(y, x));
      CHECK(quarn::from_mpfr(y) == x);
      oracle::Real below(24);
      oracle::Real above(24);
      const int down = quarn::to_mpfr(below, x, MPFR_RNDD);
      const int up = quarn::to_mpfr(above, x, MPFR_RNDU);
      CHECK((mpfr_equal_p(below, above) ? down == 0 && up == 0 : down < 0 && up > 0));
    }
    for (const char* text : {"0", "-0", "inf", "-inf", "1e999999999", "-1e-999999999"}) {
      oracle::Real y(4000);
      static_cast<void>(quarn::to_mpfr(y, QuarnFloat(text)));
      const QuarnFloat again = quarn::from_mpfr(y);
      CHECK(again == QuarnFloat(text));
      CHECK(signbit(again) == signbit(QuarnFloat(text)));
    }
    oracle::Real y(50);
    static_cast<void>(quarn::to_mpfr(y, QuarnFloat("nan")));
    CHECK(isnan(quarn::from_mpfr(y)));
    mpfr_set_ui_2exp(y, 1, mpfr_exp_t(4000000000), MPFR_RNDN);
    CHECK(isinf(quarn::from_mpfr(y)));
  }
}

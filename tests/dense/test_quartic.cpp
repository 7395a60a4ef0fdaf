#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "src/dense/quartic.h"
#include "support/console.h"
#include "support/digits.h"
#include "support/matrices.h"

namespace {

struct Quartic {
  QuarnFloat zeror[4];
  QuarnFloat zeroi[4];
  QuarnFloat errest[4];
  Integer ifail;

  Quartic(QuarnFloat e, QuarnFloat a, QuarnFloat b, QuarnFloat c, QuarnFloat d, Integer on_entry = 1)
      : ifail(on_entry) {
    c02alf_(&e, &a, &b, &c, &d, zeror, zeroi, errest, &ifail);
  }
};

}  // namespace

TEST_CASE("zeros of random quartics made from two quadratics lie within their error estimates") {
  support::Digits digits(40);
  support::RandomNumbers random;
  for (int round = 0; round < 100; ++round) {
    const QuarnFloat lead = random.next<QuarnFloat>();
    const QuarnFloat p = 3 * random.next<QuarnFloat>();
    const QuarnFloat q = 3 * random.next<QuarnFloat>();
    const QuarnFloat r = 3 * random.next<QuarnFloat>();
    const QuarnFloat s = 3 * random.next<QuarnFloat>();
    const Quartic zeros(lead, lead * (p + r), lead * (q + s + p * r), lead * (p * s + q * r), lead * (q * s));
    REQUIRE(zeros.ifail == 0);
    // The zeros of x^2 + p x + q and x^2 + r x + s.
    std::vector<Complex> expected;
    for (const auto& quadratic : {std::pair(p, q), std::pair(r, s)}) {
      const QuarnFloat half = -quadratic.first / 2;
      const QuarnFloat discriminant = half * half - quadratic.second;
      const QuarnFloat root = sqrt(fabs(discriminant));
      for (const int sign : {1, -1}) {
        expected.push_back(discriminant < 0 ? Complex(half, sign * root) : Complex(half + sign * root));
      }
    }
    for (int j = 0; j < 4; ++j) {
      QuarnFloat nearest = 1000;
      for (const Complex& zero : expected) {
        nearest = std::min(nearest, tesk::modulus(zero - Complex(zeros.zeror[j], zeros.zeroi[j])));
      }
      CHECK(zeros.errest[j] >= 0);
      // The estimate speaks of the last operation; some tens of it cover the whole computation.
      CHECK(nearest <= 100 * zeros.errest[j]);
    }
  }
}

TEST_CASE("zeros that are known") {
  support::Digits digits(50);
  const Quartic unity(1, 0, 0, 0, -1);
  REQUIRE(unity.ifail == 0);
  QuarnFloat sum = 0;
  for (int j = 0; j < 4; ++j) {
    CHECK(fabs(unity.zeror[j] * unity.zeror[j] + unity.zeroi[j] * unity.zeroi[j] - 1) <= QuarnFloat(1, -47));
    CHECK(unity.errest[j] < QuarnFloat(1, -48));
    sum += unity.zeror[j];
  }
  CHECK(fabs(sum) <= QuarnFloat(1, -47));
  const Quartic at_zero(2, 0, 0, 0, 0);
  REQUIRE(at_zero.ifail == 0);
  for (int j = 0; j < 4; ++j) {
    CHECK((at_zero.zeror[j] == 0 && at_zero.zeroi[j] == 0));
  }
  // (x - 1)^4: a fourfold zero is found to a quarter of the digits, and the estimates say so.
  const Quartic fourfold(1, -4, 6, -4, 1);
  REQUIRE(fourfold.ifail == 0);
  for (int j = 0; j < 4; ++j) {
    const QuarnFloat error = tesk::modulus(Complex(fourfold.zeror[j] - 1, fourfold.zeroi[j]));
    CHECK(error <= QuarnFloat(1, -11));
    CHECK(100 * fourfold.errest[j] >= error);
  }
}

TEST_CASE("failures and their messages") {
  struct Row {
    const char *e, *a;
    Integer ifail;
    const char* message;
  };
  const Row rows[] = {{"0", "1", 1, " ** On entry, E .eq. 0.0."},
                      {"-0", "1", 1, " ** On entry, E .eq. 0.0."},
                      {"1e-300", "1e300", 2, " ** The companion matrix H cannot be formed without overflow."},
                      {"nan", "1", 3, " ** Failure to converge in F08PEF (SHSEQR/DHSEQR)."}};
  for (const Row& row : rows) {
    support::ConsoleCapture console;
    const Quartic quartic(QuarnFloat(row.e), QuarnFloat(row.a), 1, 1, 1, -13);
    CHECK(quartic.ifail == row.ifail);
    CHECK(console.text() == row.message);
    CHECK(quartic.zeror[0] == 0);
  }
}

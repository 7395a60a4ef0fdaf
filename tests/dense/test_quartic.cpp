#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/console.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "tesk2mp/dense.h"

namespace {

using Entry = decltype(QuarnMP_c02alf_);

struct Quartic {
  QuarnFloat zeror[4];
  QuarnFloat zeroi[4];
  QuarnFloat errest[4];
  Integer ifail;

  Quartic(QuarnFloat e, QuarnFloat a, QuarnFloat b, QuarnFloat c, QuarnFloat d, Integer on_entry = 1,
          Entry* entry = QuarnMP_c02alf_)
      : ifail(on_entry) {
    entry(&e, &a, &b, &c, &d, zeror, zeroi, errest, &ifail);
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

namespace {

/// The coefficients of lead (x - z1) (x - z2) (x - z3) (x - z4), exact at ten times the digits and then rounded.
Quartic quartic_of(const QuarnFloat& lead, const std::vector<Complex>& zeros, Entry* entry) {
  std::vector<Complex> k{Complex(lead)};
  {
    const support::Digits exact(10 * QuarnDigits());
    for (const Complex& zero : zeros) {
      k.emplace_back(0);
      for (std::size_t i = k.size() - 1; i > 0; --i) {
        k[i] = k[i] - zero * k[i - 1];
      }
    }
  }
  for (Complex& each : k) {
    each.re = each.re + 0;  // rounds
  }
  return {k[0].re, k[1].re, k[2].re, k[3].re, k[4].re, 1, entry};
}

/// The zero as a text of its two parts.
Complex number(const char* re, const char* im = "0") { return {QuarnFloat(re), QuarnFloat(im)}; }

}  // namespace

TEST_CASE("zeros of every kind lie within their estimates, and multiple ones have larger estimates") {
  struct Row {
    const char* what;
    QuarnFloat lead;
    std::vector<Complex> zeros;
    int multiplicity;
    bool exhausting = false;
  };
  const std::pair<int, Entry*> runs[] = {{16, QuarnMP_c02alf_},  {50, QuarnMP_c02alf_},  {200, QuarnMP_c02alf_},
                                         {16, QuarnMPX_c02alf_}, {50, QuarnMPX_c02alf_}, {200, QuarnMPX_c02alf_},
                                         {600, QuarnMPX_c02alf_}};
  for (const std::pair<int, Entry*>& run : runs) {
    const int digits = run.first;
    Entry* const entry = run.second;
    const bool full = entry == QuarnMPX_c02alf_;
    const support::Digits scope(digits);
    const Row rows[] = {
        {"Wilkinson", 1, {number("1"), number("2"), number("3"), number("4")}, 1},
        {"near", 3, {number("1"), number("1.001"), number("-1"), number("-1.001")}, 1},
        {"double", 1, {number("2"), number("2"), number("-1"), number("5")}, 2},
        {"two double", 2, {number("3"), number("3"), number("-7"), number("-7")}, 2},
        {"double pair", 1, {number("1", "2"), number("1", "-2"), number("1", "2"), number("1", "-2")}, 2, true},
        {"triple", 1, {number("1"), number("1"), number("1"), number("-4")}, 3, true},
        {"two pairs", -7, {number("1", "1"), number("1", "-1"), number("-2", "3"), number("-2", "-3")}, 1},
        {"pair and zeros on the line", 1, {number("0", "4"), number("0", "-4"), number("0.5"), number("-9")}, 1},
        {"zero at the origin", 5, {number("0"), number("1"), number("2"), number("-3")}, 1},
        {"two at the origin", 5, {number("0"), number("0"), number("2"), number("-3")}, 2},
        {"huge coefficients", QuarnFloat("1e300"), {number("1"), number("2"), number("3"), number("4")}, 1},
        {"tiny coefficients", QuarnFloat("1e-300"), {number("1"), number("2"), number("3"), number("4")}, 1},
        {"beyond doubles", QuarnFloat("1e5000"), {number("1"), number("2"), number("3"), number("4")}, 1},
        {"large zeros", 1, {number("1e60"), number("2e60"), number("-1e60"), number("3e60")}, 1},
        {"small zeros", 1, {number("1e-60"), number("2e-60"), number("-1e-60"), number("3e-60")}, 1},
    };
    for (const Row& row : rows) {
      const std::string what = row.what;
      CAPTURE(what);
      CAPTURE(digits);
      const Quartic found = quartic_of(row.lead, row.zeros, entry);
      // A defective eigenvalue is approached linearly: at many digits the iterations may run out, and IFAIL says so.
      REQUIRE(found.ifail == (row.exhausting && !full && digits == 200 ? 3 : 0));
      if (found.ifail != 0) {
        continue;
      }
      QuarnFloat size;
      for (const Complex& zero : row.zeros) {
        size = std::max(size, tesk::modulus(zero));
      }
      // Each zero is the nearest to one of those found, as often as it is multiple.
      std::vector<Complex> open = row.zeros;
      for (std::size_t j = 0; j < 4; ++j) {
        const Complex zero(found.zeror[j], found.zeroi[j]);
        const auto nearest = std::min_element(open.begin(), open.end(), [&](const Complex& a, const Complex& b) {
          return tesk::modulus(a - zero) < tesk::modulus(b - zero);
        });
        const QuarnFloat error = tesk::modulus(*nearest - zero);
        const auto count = std::count(row.zeros.begin(), row.zeros.end(), *nearest);
        open.erase(nearest);
        CHECK(error <= 100 * found.errest[j]);
        // An estimate is no excuse: a zero of multiplicity k is good to a k-th of the digits.
        CHECK(found.errest[j] <= size * QuarnFloat(1, 9 - digits / row.multiplicity));
        if (count > 1 && tesk::modulus(row.zeros[0]) > 0) {
          CHECK(found.errest[j] >= size * QuarnFloat(1, -2 - 2 * digits / 3));
        }
        if (found.zeroi[j] > 0) {
          REQUIRE(j < 3);
          CHECK(found.zeror[j + 1] == found.zeror[j]);
          CHECK(found.zeroi[j + 1] == -found.zeroi[j]);
        }
      }
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

TEST_CASE("the companion divides over the whole range") {
  const support::Digits digits(40);
  const auto full = [](const char* e, const char* d) {
    return Quartic(QuarnFloat(e), 0, 0, 0, QuarnFloat(d), 1, QuarnMPX_c02alf_);
  };
  for (const int exponent : {-700000000, -320, 320, 700000000}) {
    CAPTURE(exponent);
    const Quartic found = full("1", ("-1e" + std::to_string(exponent)).c_str());
    REQUIRE(found.ifail == 0);
    const QuarnFloat unit(1, exponent / 4);
    for (int j = 0; j < 4; ++j) {
      CHECK(fabs(fabs(found.zeror[j] / unit) + fabs(found.zeroi[j] / unit) - 1) <= QuarnFloat(1, -37));
      CHECK((found.errest[j] > 0 && found.errest[j] < unit * QuarnFloat(1, -37)));
    }
  }
  CHECK(full("1e-600000000", "1e600000000").ifail == 2);
  CHECK(full("inf", "1").ifail == 2);
  CHECK(full("0", "nan").ifail == 1);
  const support::Digits more(400);
  const Quartic found(1, -10, 35, -50, 24, 1, QuarnMPX_c02alf_);
  for (const QuarnFloat& error : found.errest) {
    CHECK((error > 0 && error < QuarnFloat(1, -395)));
  }
}

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "measure.h"
#include "src/fft/factorize.h"
#include "src/fft/twiddles.h"
#include "support/digits.h"

using oracle::Constants;

namespace {

/// All allowed lengths up to 60, and one of each kind beyond.
std::vector<Integer> lengths() {
  std::vector<Integer> list;
  for (Integer n = 2; n <= 60; ++n) {
    if (tesk::c06FactorN(n).status == tesk::Factorization::Status::ok) {
      list.push_back(n);
    }
  }
  for (const Integer n : {64, 72, 96, 121, 125, 128, 169, 180, 210, 240, 247, 256, 289, 343, 360, 361}) {
    list.push_back(n);
  }
  return list;
}

/// A few units; the length of the longest butterfly enters through the plain sums of the odd radices.
double bound(Integer n) { return 12 * std::sqrt(std::log2(double(n))); }

}  // namespace

TEST_CASE("the passes with true constants are the transform by its definition") {
  const oracle::Precision precision(60);
  for (const Integer n : lengths()) {
    support::Digits scope(20);
    CAPTURE(n);
    const oracle::Sequence x = oracle::from_real(sample::random_sequence(n, 1));
    const oracle::Sequence z = oracle::by_definition(x, -1);
    CHECK(oracle::error_in_units(oracle::by_passes_forward(x, oracle::radices_of(n), Constants::full()), z, 58) < 1);
    CHECK(oracle::error_in_units(oracle::by_passes_backward(z, oracle::radices_of(n), Constants::full()), x, 58) < 1);
  }
}

TEST_CASE("the classic entries are the passes with the double constants, to the last digits") {
  for (const int digits : {8, 16, 50}) {
    const oracle::Precision precision(digits + 20);
    support::Digits scope(digits);
    for (const Integer n : lengths()) {
      CAPTURE(digits);
      CAPTURE(n);
      // The angle itself, up to pi, is rounded here.
      CHECK(sample::error_against_passes(QuarnMP_c06faf_, true, Constants::classic(), n, digits) < 2 * bound(n));
      CHECK(sample::error_against_passes(QuarnMP_c06fbf_, false, Constants::classic(), n, digits) < 2 * bound(n));
    }
  }
}

TEST_CASE("the companions are the transform by its definition, to the last digits") {
  for (const int digits : {20, 100}) {
    const oracle::Precision precision(digits + 20);
    support::Digits scope(digits);
    for (const Integer n : lengths()) {
      if (n <= 128) {
        CAPTURE(digits);
        CAPTURE(n);
        CHECK(sample::error_against_definition(QuarnMPX_c06faf_, true, n, digits) < bound(n));
        CHECK(sample::error_against_definition(QuarnMPX_c06fbf_, false, n, digits) < bound(n));
      }
    }
  }
}

TEST_CASE("every rotation of the companions is good to the last digit, tabulated or not") {
  for (const int digits : {8, 20, 50}) {
    const oracle::Precision precision(digits + 20);
    support::Digits scope(digits);
    const tesk::Circle circle{tesk::Constants(tesk::Accuracy::full)};
    for (const Integer n : {7, 30, 64, 361, 1000, 1001, 1022, 1024}) {
      for (const std::int64_t uses : {n, 1}) {
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(uses);
        const tesk::Twiddles twiddles(circle, n, uses);
        double largest = 0;
        double squares = 0;
        for (Integer k = 0; k <= n; ++k) {
          const oracle::mpreal angle = 2 * mpfr::const_pi() * k / n;
          const Complex w = twiddles.rotation(k);
          const double re = oracle::in_units(oracle::exact(w.re) - cos(angle), digits);
          const double im = oracle::in_units(oracle::exact(w.im) - sin(angle), digits);
          largest = std::max({largest, re, im});
          squares += re * re + im * im;
        }
        // Two roundings of an angle up to pi/4, one of the result.
        CHECK(largest < 4.5);
        CHECK(std::sqrt(squares / n) < 2.5);
      }
    }
  }
}

TEST_CASE("long lengths and many digits") {
  struct Row {
    Integer n;
    int digits;
  };
  for (const Row& row : {Row{361, 8}, Row{512, 50}, Row{1001, 20}, Row{2048, 20}, Row{60, 1000}, Row{64, 1000}}) {
    const oracle::Precision precision(row.digits + 20);
    support::Digits scope(row.digits);
    CAPTURE(row.n);
    CAPTURE(row.digits);
    CHECK(sample::error_against_passes(QuarnMPX_c06faf_, true, Constants::full(), row.n, row.digits) < bound(row.n));
    CHECK(sample::error_against_passes(QuarnMPX_c06fbf_, false, Constants::full(), row.n, row.digits) < bound(row.n));
    CHECK(sample::error_against_passes(QuarnMP_c06faf_, true, Constants::classic(), row.n, row.digits) <
          2 * bound(row.n));
  }
}

TEST_CASE("the classic entries stay near 3e-16 at any precision") {
  for (const int digits : {20, 100}) {
    const oracle::Precision precision(digits + 20);
    support::Digits scope(digits);
    for (const Integer n : {2, 4, 3, 5, 7, 8, 14, 19, 48, 60, 128, 210}) {
      CAPTURE(digits);
      CAPTURE(n);
      const double error = sample::error_against_definition(QuarnMP_c06faf_, true, n, 16);
      CHECK(error < 6);
      CHECK((n == 2 || n == 4 || error > 0.01));
    }
  }
}

// Decimal rounding beyond the vectors of the General Decimal Arithmetic: long numbers, ends of the range, parts that
// add up.
#include <doctest/doctest.h>

#include <random>
#include <string>
#include <vector>

#include "quarn/functions.h"
#include "quarn/rounding.h"
#include "support/digits.h"

using namespace quarn;

namespace {

constexpr Rounding kModes[] = {Rounding::half_even, Rounding::half_up, Rounding::half_down, Rounding::up,
                               Rounding::down,      Rounding::ceiling, Rounding::floor,     Rounding::up_05};

std::string random_text(std::mt19937_64& random, int digits, int spread) {
  std::string text = random() % 2 == 0 ? "-0." : "0.";
  // Runs of nines and zeros, and fives: carries and halves.
  const std::string alphabet = random() % 2 == 0 ? "0123456789" : "0599";
  for (int i = 0; i < digits; ++i) {
    text += alphabet[std::size_t(random() % alphabet.size())];
  }
  return text + "e" + std::to_string(int(random() % std::uint64_t(2 * spread + 1)) - spread);
}

/// The rule of each mode, from the two neighbours of a number.
QuarnFloat by_neighbours(const QuarnFloat& x, int places, Rounding mode) {
  const QuarnFloat unit(1, -places);
  const QuarnFloat scaled = x / unit;
  const QuarnFloat low = floor(scaled);
  if (low == scaled) {
    return x;
  }
  const QuarnFloat high = low + 1;
  const QuarnFloat twice = 2 * scaled - low - high;  // the sign says which one is nearer
  const bool negative = signbit(x);
  const QuarnFloat& inner = negative ? high : low;
  const QuarnFloat& outer = negative ? low : high;
  const QuarnFloat& nearer = twice > 0 ? high : low;
  switch (mode) {
    case Rounding::half_even:
      return (twice != 0 ? nearer : fmod(low, 2) == 0 ? low : high) * unit;
    case Rounding::half_up:
      return (twice != 0 ? nearer : outer) * unit;
    case Rounding::half_down:
      return (twice != 0 ? nearer : inner) * unit;
    case Rounding::up:
      return outer * unit;
    case Rounding::down:
      return inner * unit;
    case Rounding::ceiling:
      return high * unit;
    case Rounding::floor:
      return low * unit;
    case Rounding::up_05:
      return (fmod(inner, 5) == 0 ? outer : inner) * unit;
  }
  return x;
}

}  // namespace

TEST_CASE("quantize is the neighbour that the mode says, whatever the working digits") {
  std::mt19937_64 random(20261122);
  for (const int digits : {1, 2, 17, 18, 19, 40, 333}) {
    for (int i = 0; i < 60; ++i) {
      const support::Digits many(1500);
      const QuarnFloat x(random_text(random, digits, 20));
      const int places = int(random() % std::uint64_t(digits + 40)) - 20;
      for (const Rounding mode : kModes) {
        bool inexact = false;
        const QuarnFloat expected = by_neighbours(x, places, mode);
        const support::Digits few(i % 3 == 0 ? 1 : 50);
        const QuarnFloat rounded = quantize(x, places, mode, &inexact);
        CAPTURE(x.to_string());
        CAPTURE(places);
        CAPTURE(int(mode));
        CHECK(rounded == expected);
        CHECK(signbit(rounded) == signbit(x));
        CHECK(inexact == (rounded != x));
      }
    }
  }
}

TEST_CASE("operations in a mode lie on the right side of those with more digits") {
  std::mt19937_64 random(7);
  for (const int digits : {1, 2, 20, 333, 1000}) {
    for (int i = 0; i < 30; ++i) {
      const support::Digits working(digits);
      const QuarnFloat x(random_text(random, digits, 3));
      const QuarnFloat y(random_text(random, digits, 3));
      const auto check = [&](const auto& operation, const QuarnFloat& more) {
        const QuarnFloat low = operation(Rounding::floor);
        const QuarnFloat high = operation(Rounding::ceiling);
        CHECK(low <= more);
        CHECK(high >= more);
        CHECK((low == high || nextafter(low, high) == high));
        const QuarnFloat nearest = operation(Rounding::half_even);
        CHECK((nearest == low || nearest == high));
        CHECK(fabs(operation(Rounding::down)) <= fabs(operation(Rounding::up)));
      };
      const auto exactly = [&](const auto& operation) {
        const support::Digits scope(3 * digits + 60);
        return operation();
      };
      check([&](Rounding mode) { return add(x, y, mode); }, exactly([&] { return x + y; }));
      check([&](Rounding mode) { return subtract(x, y, mode); }, exactly([&] { return x - y; }));
      check([&](Rounding mode) { return multiply(x, y, mode); }, exactly([&] { return x * y; }));
      if (y != 0 && fmod(x, y) != 0) {
        check([&](Rounding mode) { return divide(x, y, mode); }, exactly([&] { return x / y; }));
        check([&](Rounding mode) { return quarn::sqrt(fabs(x), mode); }, exactly([&] { return sqrt(fabs(x)); }));
      }
      CHECK(add(x, y, Rounding::half_even) == x + y);
    }
  }
}

TEST_CASE("rounding at the ends of the range, of zeros, infinity and NaN") {
  const support::Digits working(5);
  const QuarnFloat huge("9.9999e999999999");
  CHECK(isinf(add(huge, huge, Rounding::half_even)));
  CHECK(add(huge, huge, Rounding::down) == huge);
  CHECK(multiply(huge, -huge, Rounding::ceiling) == -huge);
  CHECK(isinf(multiply(huge, -huge, Rounding::floor)));
  const QuarnFloat tiny("1e-999999999");
  CHECK(divide(tiny, 3, Rounding::down) == 0);
  CHECK(divide(tiny, 3, Rounding::up) == tiny);
  bool inexact = false;
  CHECK(divide(huge, tiny, Rounding::floor, &inexact) == huge);
  CHECK(inexact);
  CHECK(add(huge, tiny, Rounding::floor) == huge);
  CHECK(subtract(1, tiny, Rounding::down) == QuarnFloat("0.99999"));
  CHECK(add(1, tiny, Rounding::up) == QuarnFloat("1.0001"));
  CHECK(signbit(subtract(2, 2, Rounding::floor)));
  CHECK(!signbit(subtract(2, 2, Rounding::half_up)));
  CHECK(signbit(quantize(QuarnFloat("-0.2"), 0)));
  CHECK(isinf(quantize(QuarnFloat("inf"), 3)));
  CHECK(isnan(quantize(QuarnFloat("nan"), 3)));
  CHECK(quantize(huge, 2147483647) == huge);
  CHECK(quantize(7, -2147483647, Rounding::down) == 0);
  CHECK(isinf(quantize(7, -2147483647, Rounding::up)));
  CHECK(rounding_named("half-up") == Rounding::half_up);
  CHECK(!rounding_named("sideways").has_value());
}

TEST_CASE("rounded parts add up to the rounded total") {
  std::mt19937_64 random(99);
  for (int i = 0; i < 200; ++i) {
    const support::Digits many(400);
    std::vector<QuarnFloat> parts;
    QuarnFloat total;
    for (std::size_t n = random() % 9; n > 0; --n) {
      parts.emplace_back(random_text(random, 1 + int(random() % 30), 6));
      total += parts.back();
    }
    const int places = int(random() % 8) - 2;
    const QuarnFloat unit(1, -places);
    for (const Rounding mode : kModes) {
      for (const Reconciliation rule : {Reconciliation::largest_remainder, Reconciliation::cumulative}) {
        std::vector<QuarnFloat> rounded(parts.size());
        {
          const support::Digits few(3);
          REQUIRE(round_parts(parts.size(), parts.data(), places, mode, rule, rounded.data()));
        }
        QuarnFloat sum;
        for (std::size_t k = 0; k < parts.size(); ++k) {
          sum += rounded[k];
          CHECK(quantize(rounded[k], places) == rounded[k]);
          CHECK(fabs(rounded[k] - parts[k]) < (rule == Reconciliation::cumulative ? 2 : 1) * unit);
        }
        CHECK(sum == quantize(total, places, mode));
      }
    }
  }
  // The first of equal remainders, in place; and what cannot be added exactly.
  std::vector<QuarnFloat> thirds(3, QuarnFloat(1) / 3);
  CHECK(round_parts(3, thirds.data(), 2, Rounding::half_up, Reconciliation::largest_remainder, thirds.data()));
  CHECK(thirds[0] == QuarnFloat("0.34"));
  CHECK(thirds[2] == QuarnFloat("0.33"));
  thirds[1] = QuarnFloat("1e2000000");
  CHECK(!round_parts(3, thirds.data(), 2, Rounding::half_up, Reconciliation::cumulative, thirds.data()));
  CHECK(isnan(thirds[0]));
}

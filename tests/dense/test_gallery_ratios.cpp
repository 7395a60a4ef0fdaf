// The published test ratios of every driver over the gallery, real and complex, as `quarn selftest` reports them.
#include <doctest/doctest.h>

#include <vector>

#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/selftest.hpp"

namespace selftest = tesk2mp::selftest;

namespace {

/// The generator of test matrices, with the seed of this run.
tesk2mp::Random seeded() {
  support::Random random;
  const auto word = [&] { return Integer(random.between(1, 32767)); };
  return tesk2mp::Random(0, {word(), word(), word(), word()});
}

}  // namespace

TEST_CASE("test ratios of every driver over the gallery" * doctest::test_suite("long")) {
  struct Sweep {
    int digits;
    std::vector<std::size_t> orders;
  };
  const Sweep sweeps[] = {{16, {0, 1, 2, 5, 17}}, {50, {8}}, {100, {5}}, {333, {3}}, {1000, {2}}};
  tesk2mp::Random random = seeded();
  for (const Sweep& sweep : sweeps) {
    const support::Digits scope(sweep.digits);
    for (const std::size_t order : sweep.orders) {
      std::size_t below_one = 0;
      const std::vector<selftest::Outcome> outcomes = selftest::run({}, order, random);
      CHECK(outcomes.size() == 52);
      for (const selftest::Outcome& outcome : outcomes) {
        CAPTURE(sweep.digits);
        CAPTURE(order);
        CAPTURE(outcome.routine);
        CAPTURE(outcome.matrix);
        CHECK(FloatToDouble(outcome.ratio) <= selftest::kLargestRatio);
        CHECK(outcome.passed);
        below_one += outcome.ratio < 1 ? 1 : 0;
      }
      CHECK(2 * below_one > outcomes.size());
    }
  }
}

TEST_CASE("test ratios of drivers at orders that go in panels, halves and chains" * doctest::test_suite("long")) {
  const support::Digits scope(16);
  tesk2mp::Random random = seeded();
  for (const std::size_t order : {33, 60}) {
    for (const selftest::Outcome& outcome : selftest::run(
             {"dgetrf", "dgetri", "zpotrf", "dsytrs", "dgeqrf", "dgeqp3", "dgesvd", "dsyev", "dstedc", "dhseqr"}, order,
             random)) {
      CAPTURE(order);
      CAPTURE(outcome.routine);
      CAPTURE(outcome.matrix);
      CHECK(FloatToDouble(outcome.ratio) <= selftest::kLargestRatio);
      CHECK(outcome.passed);
    }
  }
}

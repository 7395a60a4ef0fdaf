// Zeros of functions: the last digit, hard functions of the literature, failures, interrupted and nested calls.
#include <doctest/doctest.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include "quarn/functions.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

using namespace tesk2mp;

namespace {

struct Problem {
  const char* name;
  std::function<Real(const Real&)> f;
  const char* a;
  const char* b;
};

const std::vector<Problem>& problems() {
  static const std::vector<Problem> kProblems = {
      {"root", [](const Real& x) { return x * x - 2; }, "0", "2"},
      {"cosine", [](const Real& x) { return cos(x) - x; }, "-3", "4"},
      {"exponential", [](const Real& x) { return x * exp(-x) - Real("0.1"); }, "0", "1"},
      {"flat", [](const Real& x) { return (x - 1) * (x - 1) * (x - 1); }, "-7", "2"},
      {"ninth", [](const Real& x) { return x * x * x * x * x * x * x * x * x - Real("1e-50"); }, "0", "10"},
      {"steep", [](const Real& x) { return exp(50 * x) - 7; }, "-10", "11"},
      {"step", [](const Real& x) { return x < Real("0.3") ? Real(-1) : Real(1); }, "0", "1"},
      {"tiny", [](const Real& x) { return x - Real("1e-1000"); }, "0", "1"},
      {"far apart", [](const Real& x) { return log(x) + 1000000; }, "1e-900000000", "1e900000000"},
      {"falling", [](const Real& x) { return 3 - x; }, "-1e100", "1e100"},
      {"infinite value", [](const Real& x) { return x == 0 ? Real("-inf") : log(x); }, "0", "3"}};
  return kProblems;
}

int sign(const Real& x) { return x == 0 ? 0 : x < 0 ? -1 : 1; }

}  // namespace

TEST_CASE("zeros are found between neighbouring numbers") {
  for (const int digits : {1, 2, 16, 50, 333}) {
    const support::Digits scope(digits);
    for (const Problem& problem : problems()) {
      CAPTURE(problem.name);
      CAPTURE(digits);
      const Real a(problem.a);
      const Real b(problem.b);
      const FunctionZero zero = find_zero(problem.f, a, b);
      CHECK(zero.x >= a);
      CHECK(zero.x <= b);
      CHECK(zero.value == problem.f(zero.x));
      CHECK(sign(problem.f(zero.x)) * sign(problem.f(zero.other)) <= 0);
      if (zero.value != 0) {
        // Nothing lies between them but their middle, rounded to one of them.
        const Real middle = zero.x + (zero.other - zero.x) / 2;
        CHECK((middle == zero.x || middle == zero.other || zero.other == nextafter(zero.x, zero.other)));
      } else {
        CHECK(zero.other == zero.x);
      }
      CHECK(zero.evaluations <= 200 + 14 * digits);
      const FunctionZero swapped = find_zero(problem.f, b, a);
      CHECK(swapped.x == zero.x);
    }
  }
}

TEST_CASE("few values of smooth functions are needed, and a tolerance ends earlier") {
  const support::Digits scope(1000);
  const auto f = [](const Real& x) { return x * x - 2; };
  const FunctionZero zero = find_zero(f, 1, 2);
  CHECK(fabs(zero.x - sqrt(Real(2))) <= Real(1, -999));
  CHECK(zero.evaluations <= 24);
  const FunctionZero coarse = find_zero(f, 1, 2, Real("1e-10"));
  CHECK(fabs(coarse.x - coarse.other) <= Real("1e-10"));
  CHECK(coarse.evaluations < zero.evaluations);
}

TEST_CASE("random polynomials have their zeros found from far away") {
  support::Random random;
  const support::Digits scope(30);
  for (int i = 0; i < 40; ++i) {
    const Real c = Real(int(random.below(2000000)) - 1000000) / 1000;
    const int power = 1 + 2 * int(random.below(3));
    const auto f = [&](const Real& x) {
      Real product = x - c;
      for (int k = 1; k < power; ++k) {
        product *= x - c;
      }
      return product;
    };
    CAPTURE(c);
    CHECK(find_zero_near(f, Real(int(random.below(100)))).x == c);
    const Bracket ends = bracket_zero(f, 0, Real("1e-5"));
    CHECK(sign(ends.fa) * sign(ends.fb) <= 0);
    CHECK(ends.fa == f(ends.a));
    CHECK(ends.fb == f(ends.b));
  }
}

TEST_CASE("searches keep to their bounds and begin on the side of the step") {
  std::vector<Real> asked;
  const auto f = [&](const Real& x) {
    asked.push_back(x);
    return x - 7;
  };
  const Bracket ends = bracket_zero(f, 1, 1, 0, 8);
  CHECK(asked == std::vector<Real>{1, 2, 0, 3, 5, 8});
  CHECK(ends.a == 8);
  CHECK(ends.b == 5);
  asked.clear();
  CHECK_THROWS_AS((void)bracket_zero(f, 1, -1, 0, 2), NumericalFailure);
  CHECK(asked == std::vector<Real>{1, 0, 2});
  const Bracket met = bracket_zero(f, 7, 1);
  CHECK(met.a == met.b);
}

TEST_CASE("failures of zeros") {
  const auto one = [](const Real&) { return Real(1); };
  const auto line = [](const Real& x) { return x - 1; };
  CHECK_THROWS_AS((void)find_zero(one, 0, 1), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero(line, 0, 0), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero(line, 0, Real("nan")), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero(line, Real("-inf"), 3), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero(line, 0, 3, -1), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero(line, 0, 3, Real("nan")), InvalidArgument);
  CHECK_THROWS_AS((void)find_zero([](const Real& x) { return x > 1 ? Real("nan") : x - 1; }, 0, 3), NumericalFailure);
  CHECK_THROWS_AS((void)find_zero([](const Real& x) { return 1 / (x - Real("0.3")); }, 0, 1), NumericalFailure);
  CHECK_THROWS_AS((void)bracket_zero(one, 0), NumericalFailure);
  CHECK_THROWS_AS((void)bracket_zero([](const Real&) { return Real("nan"); }, 0), NumericalFailure);
  CHECK_THROWS_AS((void)bracket_zero(line, 0, 0), InvalidArgument);
  CHECK_THROWS_AS((void)bracket_zero(line, 5, 1, 0, 4), InvalidArgument);
  CHECK_THROWS_AS((void)bracket_zero(line, 5, 1, 5, 5), InvalidArgument);
  // What the function throws passes through, and calls may be nested.
  const auto angry = [](const Real& x) { return x > 0 ? throw std::runtime_error("no") : Real(-1); };
  CHECK_THROWS_AS((void)find_zero(angry, -1, 1), std::runtime_error);
  const auto nested = [&](const Real& x) { return find_zero([&](const Real& y) { return y - x; }, -9, 9).x - 2; };
  CHECK(find_zero(nested, 0, 5).x == 2);
}

TEST_CASE("reverse communication refuses what has not begun") {
  Real work[16];
  Real x = 1;
  Real fx = 0;
  Real y = 2;
  Real fy = 0;
  const Real zero = 0;
  const Real one = 1;
  const auto outcome = [&](Integer begin) {
    const QuarnFailureHandler quiet{[](const QuarnFailure*, void*) noexcept {}, nullptr};
    const QuarnFailureHandler* former = QuarnMPX_failure_handler(&quiet);
    Integer ifail = 1;
    Integer irevcm = begin;
    QuarnMPX_dzeroin_(&irevcm, &x, &fx, &y, &fy, &zero, work, &ifail);
    CHECK((ifail == 0 || irevcm == 2));
    Integer other = 1;
    irevcm = begin == -1 ? 3 : begin;
    QuarnMPX_dbrack_(&irevcm, &x, &fx, &y, &fy, &one, &zero, &y, work, &other);
    CHECK((other == 0 || irevcm == 2));
    QuarnMPX_failure_handler(former);
    return std::pair(ifail, other);
  };
  work[0] = Real("nan");
  CHECK(outcome(1) == std::pair<Integer, Integer>(1, 1));
  CHECK(outcome(2) == std::pair<Integer, Integer>(1, 1));
  CHECK(outcome(-1) == std::pair<Integer, Integer>(0, 1));  // F(1) = 0
  CHECK(y == 1);
  y = 2;
  CHECK(outcome(0) == std::pair<Integer, Integer>(0, 0));
}

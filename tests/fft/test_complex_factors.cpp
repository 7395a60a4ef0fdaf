#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include "src/fft/complex_factors.h"

using tesk::ComplexFactors;
using tesk::factorize_complex;

namespace {

std::vector<Integer> list(const ComplexFactors& factors) {
  return {factors.factor.begin(), factors.factor.begin() + factors.count};
}

}  // namespace

TEST_CASE("factors in the order of the passes") {
  struct Row {
    Integer n;
    std::vector<Integer> factors;
  };
  const Row rows[] = {
      {1, {1}},
      {2, {2}},
      {8, {4, 2}},
      {360, {5, 4, 2, 3, 3}},
      {1000, {5, 5, 5, 4, 2}},
      {49, {7, 7}},
      {2 * 1009, {2, 1009}},
      {31 * 37, {31, 37}},
      {25 * 7 * 49, {5, 5, 7, 7, 7}},
      {1 << 30, std::vector<Integer>(15, 4)},
      {46337 * 46337, {46337, 46337}},
      {2147483647, {2147483647}},
      {2147483646, {2, 3, 3, 7, 11, 31, 151, 331}},
  };
  for (const Row& row : rows) {
    CAPTURE(row.n);
    const ComplexFactors factors = factorize_complex(row.n);
    CHECK(!factors.too_many);
    CHECK(list(factors) == row.factors);
  }
}

TEST_CASE("factors multiply to their number, and all but 4 are prime") {
  for (Integer n = 2; n <= 3000; ++n) {
    const std::vector<Integer> factors = list(factorize_complex(n));
    REQUIRE(std::accumulate(factors.begin(), factors.end(), Integer(1), std::multiplies<>()) == n);
    for (const Integer factor : factors) {
      for (Integer d = 2; d * d <= factor; ++d) {
        REQUIRE((factor == 4 || factor % d != 0));
      }
    }
  }
}

TEST_CASE("the search stops at the limit, whichever step finds that factor") {
  for (const Integer n : {1, 2, 360, 1 << 30, 7 * 7 * 7, 2 * 1009, 2147483646, 2147483647}) {
    const ComplexFactors all = factorize_complex(n);
    for (Integer limit = 1; limit <= all.count + 2; ++limit) {
      CAPTURE(n);
      CAPTURE(limit);
      const ComplexFactors some = factorize_complex(n, limit);
      CHECK(some.too_many == (all.count >= limit));
      CHECK(some.count == std::min(all.count, limit));
    }
  }
}

#include <doctest/doctest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "src/fft/factorize.h"

using tesk::c06FactorN;
using tesk::Factorization;
using Status = tesk::Factorization::Status;
using List = std::vector<Integer>;

namespace {

List listed(const tesk::FactorList& factors) {
  List list;
  for (std::size_t i = 0; factors.at(i) != 0; ++i) {
    list.push_back(factors[i]);
  }
  return list;
}

const List kPrimes = {2, 3, 5, 7, 11, 13, 17, 19};

/// Exponents of the allowed primes in n, and what is left of n.
std::pair<std::vector<int>, Integer> exponents(Integer n) {
  std::vector<int> e;
  for (const Integer p : kPrimes) {
    e.push_back(0);
    for (; n % p == 0; n /= p) {
      ++e.back();
    }
  }
  return {e, n};
}

/// Calls visit(n, number of prime factors) for every n below 2^31 without a prime above 19, n = 1 included.
template <class Visit>
void for_each_smooth(const Visit& visit, std::int64_t n = 1, std::size_t prime = 0, int count = 0) {
  visit(Integer(n), count);
  for (std::size_t i = prime; i < kPrimes.size() && n * kPrimes[i] <= 2147483647; ++i) {
    for_each_smooth(visit, n * kPrimes[i], i, count + 1);
  }
}

}  // namespace

TEST_CASE("pass list and permutation list") {
  struct Row {
    Integer n;
    List passes;
    List permutation;
  };
  const Row rows[] = {
      {2, {2}, {}},
      {3, {3}, {}},
      {17, {17}, {}},
      {4, {1, 4}, {2, 2}},
      {6, {2, 3}, {2, 3}},
      {8, {1, 1, 8}, {2, 2, 2}},
      {9, {3, 3}, {3, 3}},
      {12, {2, 3, 2}, {2, 3, 2}},
      {16, {1, 1, 8, 2}, {2, 2, 2, 2}},
      {24, {1, 4, 3, 2}, {2, 2, 3, 2}},
      {32, {1, 1, 8, 1, 4}, {2, 2, 2, 2, 2}},
      {180, {3, 2, 5, 2, 3}, {3, 2, 5, 2, 3}},
      {210, {2, 3, 5, 7}, {2, 3, 5, 7}},
      {289, {17, 17}, {17, 17}},
      {360, {3, 1, 4, 5, 2, 3}, {3, 2, 2, 5, 2, 3}},
      {1 << 20, {1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 1, 8, 1, 4}, List(20, 2)},
  };
  for (const Row& row : rows) {
    CAPTURE(row.n);
    const Factorization f = c06FactorN(row.n);
    CHECK(f.status == Status::ok);
    CHECK(listed(f.passes) == row.passes);
    CHECK(listed(f.permutation) == row.permutation);
  }
}

TEST_CASE("refused lengths") {
  struct Row {
    Integer n;
    Status status;
  };
  const Row rows[] = {
      {23, Status::large_prime},
      {46, Status::large_prime},
      {23 << 20, Status::large_prime},
      {2147483647, Status::large_prime},
      {2147483646, Status::large_prime},
      {46337 * 46337, Status::large_prime},
      {1 << 21, Status::too_many_factors},
      {1 << 30, Status::too_many_factors},
      {23 << 21, Status::too_many_factors},
      {(1 << 19) * 9, Status::too_many_factors},  // 19 factors, then a pair: the smallest such length
      {(1 << 19) * 9 * 23, Status::large_prime},  // the same, with more to come
      {(1 << 17) * 81, Status::too_many_factors},
      {(1 << 16) * 27 * 25, Status::too_many_factors},
  };
  for (const Row& row : rows) {
    CAPTURE(row.n);
    CHECK(c06FactorN(row.n).status == row.status);
  }
}

TEST_CASE("the lists of every length up to 100000") {
  for (Integer n = 2; n <= 100000; ++n) {
    const auto [e, rest] = exponents(n);
    const Factorization f = c06FactorN(n);
    if (rest > 1) {
      REQUIRE(f.status == Status::large_prime);
      continue;
    }
    REQUIRE(f.status == Status::ok);
    List expected;
    for (std::size_t i = kPrimes.size(); i-- > 0;) {
      expected.insert(expected.end(), std::size_t(e[i] / 2), kPrimes[i]);
    }
    for (std::size_t i = 0; i < kPrimes.size(); ++i) {
      expected.insert(expected.end(), std::size_t(e[i] % 2), kPrimes[i]);
    }
    for (std::size_t i = 0; i < kPrimes.size(); ++i) {
      expected.insert(expected.end(), std::size_t(e[i] / 2), kPrimes[i]);
    }
    REQUIRE(listed(f.permutation) == (expected.size() == 1 ? List() : expected));

    // Merging keeps the places: each run of 2 becomes eights, then at most one 4 or 2.
    const List passes = listed(f.passes);
    REQUIRE(passes.size() == expected.size());
    Integer product = 1;
    int twos = 0;
    for (std::size_t i = 0; i < passes.size(); ++i) {
      product *= passes[i];
      twos = expected[i] == 2 ? twos + 1 : 0;
      const bool run_ends = i + 1 == expected.size() || expected[i + 1] != 2;
      const Integer merged = twos % 3 == 0 ? 8 : run_ends ? 1 << twos % 3 : 1;
      REQUIRE(passes[i] == (expected[i] == 2 ? merged : expected[i]));
    }
    REQUIRE(product == n);
  }
}

TEST_CASE("every length of 32 bits without a large prime: 20 factors are accepted, 21 refused") {
  int accepted = 0;
  int refused = 0;
  for_each_smooth([&](Integer n, int count) {
    const Factorization f = c06FactorN(n);
    const bool ok = f.status == Status::ok;
    if (ok != (count <= 20) || (!ok && f.status != Status::too_many_factors)) {
      FAIL_CHECK("wrong status for " << n << ", which has " << count << " factors");
    }
    if (ok && count > 1) {
      REQUIRE(listed(f.permutation).size() == std::size_t(count));
    }
    accepted += count == 20;
    refused += count == 21;
  });
  MESSAGE(accepted << " lengths have 20 factors, " << refused << " have 21");
  CHECK(accepted > 0);
  CHECK(refused > 0);
}

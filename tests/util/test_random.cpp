#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "src/util/random.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/random.h"

namespace {

using Seed = std::array<Integer, 4>;

const std::vector<int> kGivenRows = {1, 2, 3, 4, 5, 273};

Seed default_seed() {
  Integer igen = 9;
  Seed seed{};
  QuarnMP_g05kbx_(&igen, seed.data());
  CHECK(igen == 0);
  return seed;
}

Seed words_of(std::uint64_t state) {
  Seed seed{};
  for (int i = 0; i < 4; ++i) {
    seed[std::size_t(i)] = Integer((state >> (15 * i)) & 32767);
  }
  return seed;
}

QuarnFloat power_of_two(int exponent) {
  QuarnFloat result = 1;
  for (int i = 0; i < exponent; ++i) {
    result += result;
  }
  return result;
}

/// A state in exact decimal arithmetic, for which the caller has set digits enough.
QuarnFloat value_of(const Seed& seed) {
  QuarnFloat value;
  for (int i = 3; i >= 0; --i) {
    value = value * 32768 + QuarnFloat(seed[std::size_t(i)]);
  }
  return value;
}

/// X / 2^60 with X rounded half to even to 53 binary digits, exactly.
QuarnFloat as_double_would(const QuarnFloat& state) {
  int excess = 0;
  while (state >= power_of_two(53 + excess)) {
    ++excess;
  }
  const QuarnFloat unit = power_of_two(excess);
  QuarnFloat whole = floor(state / unit);
  const QuarnFloat rest = 2 * (state - whole * unit);
  if (rest > unit || (rest == unit && fmod(whole, 2) == 1)) {
    whole += 1;
  }
  return whole * unit / power_of_two(60);
}

std::vector<std::int64_t> prime_factors(std::int64_t n) {
  std::vector<std::int64_t> factors;
  for (std::int64_t d = 2; d * d <= n; ++d) {
    if (n % d == 0) {
      factors.push_back(d);
      while (n % d == 0) {
        n /= d;
      }
    }
  }
  if (n > 1) {
    factors.push_back(n);
  }
  return factors;
}

std::int64_t power(std::int64_t base, std::int64_t exponent, std::int64_t modulus) {
  std::int64_t result = 1;
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 == 1) {
      result = result * base % modulus;
    }
    base = base * base % modulus;
  }
  return result;
}

QuarnFloat fraction(const QuarnFloat& x) { return x - floor(x); }

}  // namespace

TEST_CASE("the basic generator: a thousand values by exact integers, the same at 17, 20, 60 and 1000 digits") {
  std::vector<QuarnFloat> expected;
  std::vector<Seed> states;
  {
    support::Digits scope(200);
    QuarnFloat state = value_of(default_seed());
    CHECK(state == QuarnFloat("1060485742695258666"));
    for (int i = 0; i < 1000; ++i) {
      state = fmod(state * QuarnFloat("302875106592253"), power_of_two(60));
      expected.push_back(as_double_would(state));
      Seed words{};
      QuarnFloat rest = state;
      for (Integer& word : words) {
        const QuarnFloat higher = floor(rest / 32768);
        word = FloatToInt(rest - 32768 * higher);
        rest = higher;
      }
      states.push_back(words);
    }
  }
  for (const int digits : {17, 20, 60, 1000}) {
    support::Digits scope(digits);
    Seed seed = default_seed();
    const Integer igen = 0;
    for (std::size_t i = 0; i < 1000; ++i) {
      REQUIRE(QuarnMP_g05kaf_(&igen, seed.data()) == expected[i]);
      REQUIRE(QuarnDigits() == digits);
      REQUIRE(seed == states[i]);
    }
  }
}

TEST_CASE("the basic generator stays below 1 at any precision, and is 0 from the zero state alone") {
  std::uint64_t inverse = 1;
  for (int i = 0; i < 6; ++i) {
    inverse *= 2 - inverse * 302875106592253U;  // Newton, modulo 2^64
  }
  const std::uint64_t mask = (std::uint64_t(1) << 60) - 1;
  struct Row {
    std::uint64_t next;
    int digits;
    std::string u;
  };
  const Row rows[] = {
      {mask, 5, "0.99999"},
      {mask, 20, "0.99999999999999999999"},
      {mask - 63, 40, "0." + std::string(40, '9')},
      {mask - 64, 1, "0.9"},
      {mask - 127, 17, "0.99999999999999988897769753748434595763683319091796875"},  // 1 - 2^-53
      {mask - 127, 15, "0.999999999999999"},
      {mask / 2 + 1, 30, "0.5"},
      {1, 3, "8.67361737988403547205962240695953369140625e-19"},
      {0, 20, "0"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.u);
    support::Digits scope(row.digits);
    Seed seed = words_of(row.next * inverse & mask);
    CHECK(QuarnMP_g05kafn_(0, seed.data()).to_string() == row.u);
    CHECK(seed == words_of(row.next));
  }
}

TEST_CASE("multiple-set generators against exact rational arithmetic") {
  support::Random random;
  for (const int igen : kGivenRows) {
    CAPTURE(igen);
    const tesk::MultipleSetRow& row = *tesk::multiple_set_row(igen);
    Seed seed{};
    for (std::size_t i = 0; i < 4; ++i) {
      seed[i] = Integer(random.between(1, row.moduli[i] - 1));
    }
    for (int draw = 0; draw < 100; ++draw) {
      const Seed before = seed;
      const int digits = draw % 3 == 0 ? 10 : draw % 3 == 1 ? 20 : 50;
      QuarnFloat u;
      {
        support::Digits scope(digits);
        const Integer address = igen;
        u = QuarnMP_g05kaf_(&address, seed.data());
      }
      support::Digits exact(150);
      QuarnFloat numerator;
      QuarnFloat denominator = 1;
      for (std::size_t i = 0; i < 4; ++i) {
        const std::int64_t next = std::int64_t(row.multipliers[i]) * before[i] % row.moduli[i];
        REQUIRE(seed[i] == next);
        numerator = numerator * row.moduli[i] + denominator * next;
        denominator *= row.moduli[i];
      }
      // Four quotients below 1 and three sums below 4, each rounded: 4 * 0.5 + 3 * 5 units of the last place below 1,
      // around the circle.
      const QuarnFloat difference = fraction(u - fmod(numerator, denominator) / denominator + QuarnFloat(17, -digits));
      CHECK(difference <= QuarnFloat(34, -digits));
      CHECK(u >= 0);
      CHECK(u < 1);
    }
  }
}

TEST_CASE("every row of the table: primes in range, primitive roots, coprime halves, no pair twice") {
  std::set<std::pair<Integer, Integer>> pairs;
  for (Integer igen = 1; igen <= 273; ++igen) {
    CAPTURE(igen);
    const tesk::MultipleSetRow& row = *tesk::multiple_set_row(igen);
    for (int i = 0; i < 4; ++i) {
      const std::int64_t a = row.multipliers[i];
      const std::int64_t m = row.moduli[i];
      CHECK(pairs.emplace(row.multipliers[i], row.moduli[i]).second);
      CHECK((100 <= a && a <= 200));
      CHECK((16760000 <= m && m <= 16770647));
      CHECK((m - 1) * a < std::int64_t(1) << 31);
      CHECK(prime_factors(m).front() == m);
      for (const std::int64_t p : prime_factors(m - 1)) {
        CHECK(power(a, (m - 1) / p, m) != 1);
      }
      for (int j = 0; j < i; ++j) {
        CHECK(std::gcd((m - 1) / 2, (std::int64_t(row.moduli[j]) - 1) / 2) == 1);
      }
    }
  }
  const tesk::MultipleSetRow& last = *tesk::multiple_set_row(273);
  CHECK(last.multipliers[3] == 124);
  CHECK(last.moduli[0] == 16766363);
  CHECK(tesk::multiple_set_row(1)->moduli[0] == 16770647);
}

TEST_CASE("a generator that does not exist gives NaN and leaves the seed alone") {
  for (const Integer igen : {-1, 274, INT32_MIN, INT32_MAX}) {
    Seed seed = {1, 2, 3, 4};
    CHECK(isnan(QuarnMP_g05kaf_(&igen, seed.data())));
    CHECK(isnan(QuarnMP_g05kafn_(igen, seed.data())));
    CHECK(isnan(QuarnMP_g05kazn_(igen, seed.data())));
    CHECK(isnan(QuarnMPX_g05kaf_(&igen, seed.data())));
    CHECK(isnan(QuarnMPX_g05kazn_(igen, seed.data())));
    CHECK(seed == Seed{1, 2, 3, 4});
  }
  Seed seed = {1, 2, 3, 4};
  CHECK(isnan(QuarnMP_g05kazn_(0, seed.data())));
  CHECK(isnan(QuarnMPX_g05kazn_(0, seed.data())));
  CHECK(seed == Seed{1, 2, 3, 4});
}

TEST_CASE("any seed words are taken without harm") {
  for (const Integer igen : {0, 1, 137, 273}) {
    for (const Seed& start : {Seed{INT32_MIN, INT32_MAX, -1, 0}, Seed{INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
                              Seed{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN}, Seed{0, 0, 0, 0}}) {
      Seed seed = start;
      CHECK(isfinite(QuarnMP_g05kafn_(igen, seed.data())));
      const QuarnFloat full = QuarnMPX_g05kafn_(igen, seed.data());
      CHECK(full >= 0);
      CHECK(full < 1);
    }
  }
}

TEST_CASE("a stream goes on from a saved seed, and streams do not disturb each other") {
  Seed seed = default_seed();
  Seed other = {11, 12, 13, 14};
  const Integer igen = 0;
  const Integer other_igen = 7;
  QuarnMP_g05kaf_(&igen, seed.data());
  const Seed saved = seed;
  std::vector<QuarnFloat> first;
  for (int i = 0; i < 20; ++i) {
    first.push_back(QuarnMP_g05kaf_(&igen, seed.data()));
    QuarnMP_g05kaf_(&other_igen, other.data());
  }
  seed = saved;
  for (const QuarnFloat& u : first) {
    CHECK(QuarnMP_g05kaf_(&igen, seed.data()) == u);
  }
}

TEST_CASE("full variates: nine digits a draw, rounded once to the working digits") {
  support::Random random;
  for (const Integer igen : {0, 1, 5, 100, 273}) {
    for (const int digits : {1, 5, 9, 10, 18, 50, 137, 1000}) {
      CAPTURE(igen);
      CAPTURE(digits);
      Seed seed{};
      for (Integer& word : seed) {
        word = Integer(random.between(1, 32767));
      }
      Seed oracle_seed = seed;
      QuarnFloat u;
      {
        support::Digits scope(digits);
        u = QuarnMPX_g05kaf_(&igen, seed.data());
      }
      // The oracle: each draw exactly, from the classic steps.
      support::Digits exact(digits + 400);
      const QuarnFloat block(1, 9);
      QuarnFloat sum;
      for (int i = 0; i < (digits + 8) / 9 + 1; ++i) {
        QuarnMP_g05kafn_(igen, oracle_seed.data());
        QuarnFloat nine;
        if (igen == 0) {
          nine = floor(value_of(oracle_seed) * block / power_of_two(60));
        } else {
          for (std::size_t j = 0; j < 4; ++j) {
            nine += floor(QuarnFloat(oracle_seed[j]) * block / tesk::multiple_set_row(igen)->moduli[j]);
          }
          nine = fmod(nine, block);
        }
        sum = sum * block + nine;
      }
      CHECK(oracle_seed == seed);
      QuarnFloat expected = sum * QuarnFloat(1, -9 * ((digits + 8) / 9 + 1));
      QuarnSetDigits(digits);
      expected += 0;
      if (expected == 1) {
        expected = 1 - QuarnFloat(1, -digits);
      }
      CHECK(u == expected);
    }
  }
}

TEST_CASE("full variates are uniform to the last digit") {
  // Chi-square of the last of 30 digits over 10 classes: 9 degrees of freedom, 50 is passed once in 10^7 runs.
  support::Digits scope(30);
  support::Random random;
  for (const Integer igen : {0, 1, 200}) {
    Seed seed{};
    for (Integer& word : seed) {
      word = Integer(random.between(1, 32767));
    }
    std::array<int, 10> counts{};
    const int draws = 5000;
    for (int i = 0; i < draws; ++i) {
      const QuarnFloat u = QuarnMPX_g05kafn_(igen, seed.data());
      // The digit in place 25, which is exact for every u >= 10^-5.
      const QuarnFloat scaled = u * QuarnFloat(1, 25);
      ++counts[std::size_t(FloatToInt(fmod(floor(scaled), 10)))];
    }
    double chi = 0;
    for (const int count : counts) {
      chi += (count - draws / 10.0) * (count - draws / 10.0) / (draws / 10.0);
    }
    CAPTURE(igen);
    CHECK(chi < 50);
  }
}

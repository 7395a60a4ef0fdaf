#include <doctest/doctest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "src/util/entries.h"
#include "support/outcome.h"
#include "support/random.h"

namespace {

/// m1 ... m1 + n - 1, shuffled.
std::vector<Integer> shuffled(support::Random& random, Integer m1, Integer n) {
  std::vector<Integer> entries{};
  for (Integer i = 0; i < n; ++i) {
    entries.push_back(m1 + i);
  }
  for (std::size_t i = entries.size(); i > 1; --i) {
    std::swap(entries[i - 1], entries[random.below(i)]);
  }
  return entries;
}

/// The section in the middle of an array whose other positions must not change.
struct Padded {
  std::vector<Integer> array;
  Integer m1, m2;

  Padded(const std::vector<Integer>& section, Integer first)
      : array(std::size_t(first - 1), -5), m1(first), m2(first + Integer(section.size()) - 1) {
    array.insert(array.end(), section.begin(), section.end());
    array.insert(array.end(), 3, -5);
  }
  std::vector<Integer> section() const { return {array.begin() + (m1 - 1), array.begin() + m2}; }
  bool padding_is_intact() const {
    return std::all_of(array.begin(), array.begin() + (m1 - 1), [](Integer v) { return v == -5; }) &&
           std::all_of(array.begin() + m2, array.end(), [](Integer v) { return v == -5; });
  }
};

Integer run(void (*core)(Integer*, Integer, Integer, char*, Integer*, int), Padded& entries) {
  return support::outcome_of([&](char* buffer, Integer* ifail, int length) {
           core(entries.array.data(), entries.m1, entries.m2, buffer, ifail, length);
         })
      .ifail;
}

}  // namespace

TEST_CASE("rearranging by ranks sorts, for real and complex values") {
  support::Random random;
  for (int round = 0; round < 60; ++round) {
    const auto n = Integer(random.between(1, 80));
    const auto m1 = Integer(random.between(1, 5));
    const Integer m2 = m1 + n - 1;
    std::vector<QuarnFloat> reals(std::size_t(m2 + 2), QuarnFloat(-1));
    std::vector<Complex> complexes(reals.size());
    for (std::size_t i = 0; i < reals.size(); ++i) {
      reals[i] = QuarnFloat(Integer(random.below(std::uint64_t(n))));
      complexes[i] = Complex(reals[i], QuarnFloat(Integer(i)));
    }
    std::vector<Integer> irank(reals.size(), -3);
    for (const char* order : {"A", "D"}) {
      Integer ifail = -1;
      QuarnMP_m01daf_(reals.data(), &m1, &m2, order, irank.data(), &ifail, 1);
      const std::vector<Integer> ranks = irank;
      std::vector<QuarnFloat> sorted = reals;
      const auto section = sorted.begin() + (m1 - 1);
      std::sort(section, section + n);
      if (*order == 'D') {
        std::reverse(section, section + n);
      }
      std::vector<QuarnFloat> rv = reals;
      std::vector<Complex> cv = complexes;
      QuarnMP_m01eaf_(rv.data(), &m1, &m2, irank.data(), &ifail);
      CHECK(ifail == 0);
      QuarnMP_m01edf_(cv.data(), &m1, &m2, irank.data(), &ifail);
      CHECK(ifail == 0);
      CHECK(irank == ranks);
      CHECK(rv == sorted);
      for (std::size_t i = 0; i < rv.size(); ++i) {
        CHECK(cv[i].re == rv[i]);
      }
    }
  }
}

TEST_CASE("an inverse is an inverse, and inverting twice is nothing") {
  support::Random random;
  for (int round = 0; round < 200; ++round) {
    const auto n = Integer(random.between(1, 50));
    const auto m1 = Integer(random.between(1, 4));
    const std::vector<Integer> original = shuffled(random, m1, n);
    Padded entries(original, m1);
    CHECK(run(tesk::m01za, entries) == 0);
    const std::vector<Integer> inverse = entries.section();
    for (Integer i = 0; i < n; ++i) {
      CHECK(inverse[std::size_t(original[std::size_t(i)] - m1)] == m1 + i);
    }
    CHECK(run(tesk::m01za, entries) == 0);
    CHECK(entries.section() == original);
    CHECK(entries.padding_is_intact());
  }
}

TEST_CASE("failure 3 exactly when a value repeats; no value is lost and no sign stays behind") {
  support::Random random;
  for (int round = 0; round < 500; ++round) {
    const auto n = Integer(random.between(1, 12));
    const auto m1 = Integer(random.between(1, 4));
    std::vector<Integer> section = shuffled(random, m1, n);
    for (std::uint64_t changes = random.below(3); changes > 0; --changes) {
      section[random.below(section.size())] = m1 + Integer(random.below(std::uint64_t(n)));
    }
    std::vector<Integer> sorted = section;
    std::sort(sorted.begin(), sorted.end());
    const bool repeats = std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
    CAPTURE(round);

    Padded entries(section, m1);
    CHECK(run(tesk::m01za, entries) == (repeats ? 3 : 0));
    CHECK(entries.padding_is_intact());
    if (repeats) {
      CHECK(entries.section() == section);
    }
    Padded ranks(section, m1);
    std::vector<QuarnFloat> rv;
    for (std::size_t i = 0; i < ranks.array.size(); ++i) {
      rv.emplace_back(Integer(i));
    }
    const support::Outcome outcome = support::outcome_of([&](char* buffer, Integer* ifail, int length) {
      tesk::m01ea(rv.data(), ranks.m1, ranks.m2, ranks.array.data(), buffer, ifail, length);
    });
    CHECK(outcome.ifail == (repeats ? 3 : 0));
    CHECK(ranks.section() == section);
    CHECK(ranks.padding_is_intact());
    std::sort(rv.begin(), rv.end());
    for (std::size_t i = 0; i < rv.size(); ++i) {
      CHECK(rv[i] == QuarnFloat(Integer(i)));
    }
  }
}

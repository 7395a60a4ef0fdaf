#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "src/util/entries.h"
#include "src/util/list_sort.h"
#include "support/outcome.h"
#include "support/random.h"

namespace {

/// An input shape: value i of n.
struct Shape {
  std::string name;
  long (*value)(long i, long n, support::Random& random);
};

const Shape kShapes[] = {
    {"sorted", [](long i, long, support::Random&) { return i; }},
    {"reversed", [](long i, long n, support::Random&) { return n - i; }},
    {"reversed in pairs", [](long i, long n, support::Random&) { return (n - i) / 2; }},
    {"organ pipe", [](long i, long n, support::Random&) { return std::min(i, n - i); }},
    {"sawtooth 7", [](long i, long, support::Random&) { return i % 7; }},
    {"sawtooth 100", [](long i, long, support::Random&) { return i % 100; }},
    {"falling sawtooth 100", [](long i, long, support::Random&) { return -(i % 100); }},
    {"all equal", [](long, long, support::Random&) { return 5L; }},
    {"two values", [](long, long, support::Random& random) { return long(random.below(2)); }},
    {"few distinct", [](long, long, support::Random& random) { return long(random.below(10)); }},
    {"sorted, ten out of place",
     [](long i, long n, support::Random& random) { return random.once_in(std::uint64_t(n / 10 + 1)) ? n - i : i; }},
    {"runs that shrink", [](long i, long n, support::Random&) { return i - long(std::sqrt(double(i))) * n / 8; }},
    {"random", [](long, long, support::Random& random) { return long(random.below(1000000007)); }},
};

/// A value that counts how it is compared and cannot be copied.
struct Counted {
  long value = 0;
  static inline long comparisons = 0;

  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  friend bool operator<(const Counted& a, const Counted& b) { return ++comparisons, a.value < b.value; }
  friend bool operator==(const Counted& a, const Counted& b) { return ++comparisons, a.value == b.value; }
};

std::vector<long> values_of(const Shape& shape, long n) {
  support::Random random;
  std::vector<long> values;
  for (long i = 0; i < n; ++i) {
    values.push_back(shape.value(i, n, random));
  }
  return values;
}

/// Ranks from std::stable_sort, as ListSort gives them; positions from 0, ranks from `first`.
std::vector<Integer> oracle(const std::vector<long>& values, Integer first, bool descending) {
  std::vector<Integer> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](Integer a, Integer b) {
    return descending ? values[std::size_t(a)] > values[std::size_t(b)]
                      : values[std::size_t(a)] < values[std::size_t(b)];
  });
  std::vector<Integer> ranks(values.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    ranks[std::size_t(order[i])] = first + Integer(i);
  }
  return ranks;
}

std::vector<Integer> rank(const std::vector<QuarnFloat>& rv, Integer m1, Integer m2, const char* order,
                          decltype(QuarnMP_m01daf_)* entry = QuarnMP_m01daf_) {
  std::vector<Integer> irank(rv.size(), -99);
  Integer ifail = -1;
  entry(rv.data(), &m1, &m2, order, irank.data(), &ifail, 1);
  CHECK(ifail == 0);
  return irank;
}

}  // namespace

TEST_CASE("every shape and size: the ranks of std::stable_sort, in n log2 n comparisons") {
  for (const Shape& shape : kShapes) {
    for (const long n : {1, 2, 3, 10, 11, 12, 100, 1000, 20000}) {
      CAPTURE(shape.name);
      CAPTURE(n);
      const std::vector<long> values = values_of(shape, n);
      std::vector<Counted> counted{std::size_t(n)};
      for (long i = 0; i < n; ++i) {
        counted[std::size_t(i)].value = values[std::size_t(i)];
      }
      std::vector<Integer> ranks(std::size_t(n), -1);
      tesk::ListSort<Counted> list(counted.data(), Integer(n), ranks.data());

      Counted::comparisons = 0;
      Integer head = list.ascending();
      const double for_order = double(Counted::comparisons);
      // Building runs costs at most 2 + 8 comparisons a value, merging them log2(n / 10) + 2.
      CHECK(for_order <= double(n) * (12 + std::max(0.0, std::log2(double(n) / 10))));
      list.number(head, 1);
      CHECK(ranks == oracle(values, 1, false));

      head = list.ascending();
      Counted::comparisons = 0;
      head = list.descending(head);
      CHECK(Counted::comparisons <= n - 1);
      list.number(head, 7);
      CHECK(ranks == oracle(values, 7, true));
    }
  }
}

TEST_CASE("input that is in order already, or a few runs, costs a linear number of comparisons") {
  struct Row {
    std::size_t shape;
    double each;
  };
  const long n = 20000;
  for (const Row& row : {Row{0, 1}, Row{1, 2}, Row{3, 4}, Row{7, 1}}) {
    const Shape& shape = kShapes[row.shape];
    CAPTURE(shape.name);
    const std::vector<long> values = values_of(shape, n);
    std::vector<Counted> counted{std::size_t(n)};
    for (long i = 0; i < n; ++i) {
      counted[std::size_t(i)].value = values[std::size_t(i)];
    }
    std::vector<Integer> links(std::size_t(n), 0);
    Counted::comparisons = 0;
    tesk::ListSort<Counted>(counted.data(), Integer(n), links.data()).ascending();
    CHECK(double(Counted::comparisons) <= row.each * double(n));
  }
}

TEST_CASE("comparisons beside those of std::stable_sort") {
  const long n = 20000;
  for (const Shape& shape : kShapes) {
    CAPTURE(shape.name);
    const std::vector<long> values = values_of(shape, n);
    std::vector<Counted> counted{std::size_t(n)};
    std::vector<Integer> order{};
    for (long i = 0; i < n; ++i) {
      counted[std::size_t(i)].value = values[std::size_t(i)];
      order.push_back(Integer(i));
    }
    std::vector<Integer> links(std::size_t(n), 0);
    Counted::comparisons = 0;
    tesk::ListSort<Counted>(counted.data(), Integer(n), links.data()).ascending();
    const double ours = double(Counted::comparisons);
    Counted::comparisons = 0;
    std::stable_sort(order.begin(), order.end(),
                     [&](Integer a, Integer b) { return counted[std::size_t(a)] < counted[std::size_t(b)]; });
    const double theirs = double(Counted::comparisons);
    CHECK(ours <= 1.1 * theirs);
  }
}

TEST_CASE("sections, both orders and ties of QuarnFloat") {
  const std::vector<QuarnFloat> rv = {QuarnFloat("nan"),  3, QuarnFloat("-0"), 0,
                                      QuarnFloat("-inf"), 3, QuarnFloat("nan")};
  CHECK(rank(rv, 2, 6, "A") == std::vector<Integer>{-99, 5, 3, 4, 2, 6, -99});
  CHECK(rank(rv, 2, 6, "d") == std::vector<Integer>{-99, 2, 4, 5, 6, 3, -99});
  CHECK(rank(rv, 3, 3, "D") == std::vector<Integer>{-99, -99, 3, -99, -99, -99, -99});

  // Numbers that differ far behind the point, at working digits that could not tell them apart.
  std::vector<QuarnFloat> close;
  const int former = QuarnSetDigits(300);
  for (const int tail : {5, 3, 4, 3, 1}) {
    close.push_back(QuarnFloat(1) + QuarnFloat(tail, -290));
  }
  QuarnSetDigits(5);
  CHECK(rank(close, 1, 5, "a") == std::vector<Integer>{5, 2, 4, 3, 1});
  QuarnSetDigits(former);
}

TEST_CASE("NaN: classic ranks are a permutation still, those of the companion have it last in both orders") {
  support::Random random;
  for (int round = 0; round < 200; ++round) {
    const auto n = Integer(random.between(1, 60));
    std::vector<QuarnFloat> rv;
    std::vector<long> ascending;  // NaN as the largest of all, as the smallest in the other order
    std::vector<long> descending;
    for (Integer i = 0; i < n; ++i) {
      const bool nan = random.once_in(3);
      const auto value = long(random.below(8));
      rv.push_back(nan ? QuarnFloat("nan") : QuarnFloat(value));
      ascending.push_back(nan ? 9 : value);
      descending.push_back(nan ? -1 : value);
    }
    for (const char* order : {"A", "D"}) {
      std::vector<Integer> irank = rank(rv, 1, n, order);
      std::sort(irank.begin(), irank.end());
      for (Integer i = 0; i < n; ++i) {
        REQUIRE(irank[std::size_t(i)] == i + 1);
      }
    }
    REQUIRE(rank(rv, 1, n, "A", QuarnMPX_m01daf_) == oracle(ascending, 1, false));
    REQUIRE(rank(rv, 1, n, "D", QuarnMPX_m01daf_) == oracle(descending, 1, true));
  }
}

TEST_CASE("the last section that an Integer can tell") {
  // Only the section is touched, so the arrays may stand for much larger ones.
  const std::ptrdiff_t before = std::ptrdiff_t(INT32_MAX) - 3;
  if constexpr (sizeof(void*) > 4) {
    const std::vector<QuarnFloat> rv = {7, 5, 6};
    std::vector<Integer> irank(3);
    Integer m1 = INT32_MAX - 2;
    Integer m2 = INT32_MAX;
    Integer ifail = -1;
    QuarnMP_m01daf_(rv.data() - before, &m1, &m2, "A", irank.data() - before, &ifail, 1);
    CHECK(ifail == 0);
    CHECK(irank == std::vector<Integer>{INT32_MAX, INT32_MAX - 2, INT32_MAX - 1});
    QuarnMP_m01zaf_(irank.data() - before, &m1, &m2, &ifail);
    CHECK(ifail == 0);
    CHECK(irank == std::vector<Integer>{INT32_MAX - 1, INT32_MAX, INT32_MAX - 2});
  }
}

// One call by several threads: the same digits for every number of them, failures and interrupts in the calling thread.
#include <doctest/doctest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "exact/samples.h"
#include "quarn/exact.h"
#include "quarn/parallel.h"
#include "quarn/quarnthread.h"
#include "quarn/transform.h"
#include "support/digits.h"

namespace {

struct OneThreadAfterwards {
  ~OneThreadAfterwards() { QuarnSetThreads(1); }
};

constexpr int kThreads[] = {1, 2, 3, 7};

/// What `work` makes, by so many threads.
template <class Work>
auto by(int threads, const Work& work) {
  QuarnSetThreads(threads);
  return work();
}

std::vector<QuarnFloat> numbers(support::Random& random, std::size_t count, int digits, int spread) {
  std::vector<QuarnFloat> made;
  for (std::size_t i = 0; i < count; ++i) {
    made.push_back(exact_test::number(random, digits, spread));
  }
  return made;
}

}  // namespace

TEST_CASE("the number of threads is set for the process") {
  const OneThreadAfterwards afterwards;
  CHECK(QuarnThreads() == 1);
  CHECK(QuarnSetThreads(3) == 1);
  CHECK(QuarnSetThreads(-1) == 3);
  CHECK(QuarnSetThreads(0) == 3);
  CHECK(QuarnThreads() >= 1);
}

TEST_CASE("tasks: each once, at the caller's digits, without threads of their own") {
  const OneThreadAfterwards afterwards;
  const support::Digits scope(77);
  for (const int threads : kThreads) {
    QuarnSetThreads(threads);
    std::vector<int> calls(1000);
    std::atomic<int> wrong = 0;
    QuarnParallelFor(calls.size(), [&](std::size_t i) {
      ++calls[i];
      wrong += int(QuarnDigits() != 77 || (threads > 1 && QuarnThreads() != 1));
      std::size_t inner = 0;
      QuarnParallelFor(3, [&](std::size_t) { ++inner; });
      wrong += int(inner != 3);
    });
    CHECK(calls == std::vector<int>(1000, 1));
    CHECK(wrong == 0);
    CHECK(QuarnThreads() == threads);
  }
}

TEST_CASE("a failure or an interrupt of a task is the caller's") {
  const OneThreadAfterwards afterwards;
  for (const int threads : kThreads) {
    QuarnSetThreads(threads);
    const auto fail = [](std::size_t i) {
      if (i == 5) {
        throw std::runtime_error("five");
      }
    };
    CHECK_THROWS_WITH_AS(QuarnParallelFor(1000, fail), "five", std::runtime_error);
    QuarnInterrupt interrupt;
    QuarnWatchInterrupt(&interrupt);
    // No task beyond the tenth ends before the request.
    const auto stop = [&](std::size_t i) {
      if (i == 10) {
        interrupt.request();
      }
      while (i > 10 && !interrupt.requested()) {
        std::this_thread::yield();
      }
    };
    CHECK_THROWS_AS(QuarnParallelFor(1000, stop), QuarnInterrupted);
    const QuarnFloat one(1);
    std::vector<QuarnFloat> a(64 * 64, one);
    std::vector<QuarnFloat> c(64 * 64);
    CHECK_THROWS_AS(
        QuarnMatrixProduct(64, 64, 64, one, {a.data(), 1, 64}, {a.data(), 1, 64}, QuarnFloat(), {c.data(), 1, 64}),
        QuarnInterrupted);
    QuarnWatchInterrupt(nullptr);
  }
}

TEST_CASE("products have the same digits for every number of threads") {
  const OneThreadAfterwards afterwards;
  const exact_test::Restore restore;
  support::Random random;
  for (const char* const kernel : {"best", "sse2", "none"}) {
    QuarnExactKernel(kernel);
    for (const int digits : {20, 50, 200}) {
      const support::Digits scope(digits);
      const std::size_t m = 70;
      const std::size_t n = 66;
      const std::size_t k = 61;
      auto a = numbers(random, 2 * m * k, digits, 5);
      const auto b = numbers(random, 2 * k * n, digits, 5);
      const auto c = numbers(random, 2 * m * n, digits, 5);
      a[7] = QuarnFloat("1e4000");  // a row that is summed entry by entry
      const QuarnFloat alpha = digits == 50 ? QuarnFloat(-1) : c[0];
      const auto real = [&] {
        auto out = c;
        QuarnMatrixProduct(m, n, k, alpha, {a.data(), 1, std::ptrdiff_t(m)}, {b.data(), std::ptrdiff_t(n), 1},
                           QuarnFloat(1), {out.data(), 1, std::ptrdiff_t(m)});
        return out;
      };
      std::vector<Complex> za(m * k);
      std::vector<Complex> zb(k * n);
      for (std::size_t i = 0; i < m * k; ++i) {
        za[i] = {a[2 * i], a[2 * i + 1]};
      }
      for (std::size_t i = 0; i < k * n; ++i) {
        zb[i] = {b[2 * i], b[2 * i + 1]};
      }
      const auto complex = [&] {
        std::vector<Complex> out(m * n);
        QuarnMatrixProduct(m, n, k, Complex(1, 0), {za.data(), 1, std::ptrdiff_t(m)}, {zb.data(), 1, std::ptrdiff_t(k)},
                           Complex(), {out.data(), 1, std::ptrdiff_t(m)});
        return out;
      };
      const auto expected = by(1, real);
      const auto expected_complex = by(1, complex);
      for (const int threads : kThreads) {
        CHECK(by(threads, real) == expected);
        CHECK(by(threads, complex) == expected_complex);
      }
    }
  }
}

TEST_CASE("sparse products and transforms of rows have the same digits for every number of threads") {
  const OneThreadAfterwards afterwards;
  support::Random random;
  const support::Digits scope(30);
  const std::size_t n = 1500;
  const std::size_t entries = 12'000;
  const auto values = numbers(random, entries, 30, 4);
  const auto x = numbers(random, n, 30, 4);
  std::vector<Integer> rows;
  std::vector<Integer> columns;
  for (std::size_t k = 0; k < entries; ++k) {
    rows.push_back(Integer(1 + random.below(n)));
    columns.push_back(Integer(1 + random.below(std::uint64_t(rows.back()))));
  }
  const auto sparse = [&] {
    std::vector<QuarnFloat> y(n);
    QuarnSparseProduct(n, {entries, values.data(), rows.data(), columns.data()}, x.data(), y.data(), QuarnMirrored);
    return y;
  };
  const auto transforms = [&] {
    std::vector<Complex> z(entries);
    for (std::size_t i = 0; i < entries; ++i) {
      z[i] = {values[i], values[(7 * i) % entries]};
    }
    CHECK(QuarnTransformRows(true, z.data(), 100, 1, Integer(entries / 100), 100));
    return z;
  };
  const auto expected = by(1, sparse);
  const auto expected_transforms = by(1, transforms);
  for (const int threads : kThreads) {
    CHECK(by(threads, sparse) == expected);
    CHECK(by(threads, transforms) == expected_transforms);
  }
}

// Storage runs out at the first, second, ... allocation of each transform and plan: every sequence is as it was or
// finished, and the next call gives the right results.
#include <doctest/doctest.h>

#include <functional>
#include <string>

#include "support/digits.h"
#include "support/failing_new.h"
#include "tesk2mp/transforms.hpp"

namespace {

using Reals = std::vector<QuarnFloat>;
using Numbers = std::vector<Complex>;

QuarnFloat element(std::size_t i) { return QuarnFloat(std::int64_t(i * i % 23) - 9) / 7; }

Reals reals(std::size_t count) {
  Reals x;
  for (std::size_t i = 0; i < count; ++i) {
    x.push_back(element(i));
  }
  return x;
}

Numbers numbers(std::size_t count) {
  Numbers z;
  for (std::size_t i = 0; i < count; ++i) {
    z.emplace_back(element(i), element(3 * i + 1));
  }
  return z;
}

/// Calls work(y) with failing allocations until none fails. y holds sequences of `length` elements, of which each is
/// one of two things after a failure.
template <class T, class Work>
long sweep(std::size_t count, std::size_t length, const Work& work) {
  const std::vector<T> before(count, T(7));
  std::vector<T> expected = before;
  work(expected);
  long failures = 0;
  for (long k = 1;; ++k) {
    std::vector<T> y = before;
    bool failed = false;
    // Nothing that was made before is at hand.
    const int digits = QuarnDigits();
    QuarnSetDigits(digits + 1 + int(k % 2));
    QuarnSetDigits(digits);
    support::allocations.fail(k, k % 2 == 0);
    try {
      work(y);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    support::allocations.stop_failing();
    for (std::size_t first = 0; first < count; first += length) {
      const auto same = [&](const std::vector<T>& other) {
        return std::equal(y.begin() + std::ptrdiff_t(first), y.begin() + std::ptrdiff_t(first + length),
                          other.begin() + std::ptrdiff_t(first));
      };
      REQUIRE((same(expected) || (failed && same(before))));
    }
    if (!failed) {
      return failures;
    }
    ++failures;
    y = before;
    work(y);
    REQUIRE(y == expected);
  }
}

/// An export with its checks: it does not fail.
template <class Export, class... Values>
void run(Export routine, Values... values) {
  Integer ifail = 0;
  if constexpr (std::is_invocable_v<Export, Values..., Integer*, int, int>) {
    routine(values..., &ifail, 1, 1);
  } else if constexpr (std::is_invocable_v<Export, Values..., Integer*, int>) {
    routine(values..., &ifail, 1);
  } else {
    routine(values..., &ifail);
  }
  REQUIRE(ifail == 0);
}

}  // namespace

TEST_CASE("transforms whose storage runs out") {
  long failures = 0;
  // Results inside their objects and outside of them, block fixed point and beyond.
  for (const int digits : {30, 200, 1200}) {
    CAPTURE(digits);
    const support::Digits scope(digits);
    const bool blocks = digits < 1100;
    // 37 goes by convolution.
    for (const Integer n : blocks ? std::vector<Integer>{4, 12, 37} : std::vector<Integer>{6}) {
      CAPTURE(n);
      const auto size = std::size_t(n);
      const Reals x = reals(3 * size);
      const Numbers z = numbers(3 * size);
      const std::size_t half = size / 2 + 1;
      failures += sweep<Complex>(3 * size, size, [&](Numbers& y) {
        run(QuarnMPX_fft_, "F", "O", n, Integer(3), z.data(), Integer(1), n, y.data(), Integer(1), n);
      });
      failures += sweep<Complex>(3 * half, half, [&](Numbers& y) {
        run(QuarnMPX_rfft_, "B", n, Integer(3), x.data(), Integer(1), n, y.data(), Integer(1), Integer(half));
      });
      failures += sweep<QuarnFloat>(3 * size, size, [&](Reals& y) {
        run(QuarnMPX_irfft_, "B", n, Integer(3), z.data(), Integer(1), n, y.data(), Integer(1), n);
      });
      if (n != 4) {
        for (Integer type = 1; type <= 4; ++type) {
          failures += sweep<QuarnFloat>(2 * size, size, [&](Reals& y) {
            run(QuarnMPX_dct_, "F", "O", type, n, Integer(2), x.data(), Integer(1), n, y.data(), Integer(1), n);
          });
          failures += sweep<QuarnFloat>(2 * size, size, [&](Reals& y) {
            run(QuarnMPX_dst_, "B", "F", type, n, Integer(2), x.data(), Integer(1), n, y.data(), Integer(1), n);
          });
        }
      }
      failures += sweep<QuarnFloat>(2 * half, half, [&](Reals& y) {
        run(QuarnMPX_power_spectrum_, n, Integer(2), x.data(), Integer(1), n, y.data(), Integer(1), Integer(half));
      });
      failures += sweep<QuarnFloat>(
          size, size, [&](Reals& y) { run(QuarnMPX_window_, "K", n, Integer(0), QuarnFloat(3), y.data()); });
    }
  }
  CHECK(failures > 300);
}

TEST_CASE("arrays and convolutions whose storage runs out") {
  long failures = 0;
  for (const int digits : {30, 200}) {
    CAPTURE(digits);
    const support::Digits scope(digits);
    const Integer extents[] = {3, 4};
    const Integer axes[] = {1, 2};
    const Reals x = reals(12);
    const Numbers z = numbers(12);
    const Integer two = 2;
    failures += sweep<Complex>(
        12, 12, [&](Numbers& y) { run(QuarnMPX_fftn_, "F", "B", two, extents, two, axes, z.data(), y.data()); });
    failures += sweep<Complex>(
        9, 9, [&](Numbers& y) { run(QuarnMPX_rfftn_, "B", two, extents, two, axes, x.data(), y.data()); });
    failures += sweep<QuarnFloat>(
        12, 12, [&](Reals& y) { run(QuarnMPX_irfftn_, "B", two, extents, two, axes, z.data(), y.data()); });
    // Directly and, of short numbers, by spectra; two pairs.
    for (const Integer n : {4, 60}) {
      const auto size = std::size_t(n);
      Reals a = reals(2 * size);
      Numbers b = numbers(2 * size);
      for (std::size_t i = 0; i < 2 * size; ++i) {
        a[i] = trunc(a[i]);
        b[i] = Complex(trunc(b[i].re), trunc(b[i].im));
      }
      for (const char* const kind : {"L", "C"}) {
        const std::size_t results = kind[0] == 'L' ? 2 * size - 1 : size;
        failures += sweep<QuarnFloat>(2 * results, results, [&](Reals& y) {
          run(QuarnMPX_convolve_, kind, two, n, a.data(), n, a.data(), y.data());
        });
        if (n == 4 || kind[0] == 'L') {
          failures += sweep<Complex>(2 * results, results, [&](Numbers& y) {
            run(QuarnMPX_zconvolve_, kind, two, n, b.data(), n, b.data(), y.data());
          });
        }
      }
    }
  }
  CHECK(failures > 100);
}

TEST_CASE("plans whose storage runs out") {
  const support::Digits scope(150);
  const Reals x = reals(12);
  long failures = 0;
  failures += sweep<Complex>(7, 7, [&](Numbers& y) { y = tesk2mp::SpectrumPlan(12).rfft(x); });
  failures += sweep<QuarnFloat>(12, 12, [&](Reals& y) { y = tesk2mp::CosinePlan(12, 3).idct(x); });
  failures += sweep<QuarnFloat>(12, 12, [&](Reals& y) { y = tesk2mp::SinePlan(12).dst(x); });
  failures += sweep<Complex>(12, 12, [&](Numbers& y) {
    Numbers z = numbers(12);
    const tesk2mp::TransformPlan plan(12);
    plan.transform(z);
    y = std::move(z);
  });
  CHECK(failures > 20);
}

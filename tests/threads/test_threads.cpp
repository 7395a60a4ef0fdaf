// Several threads compute at once, each with digits, caches and failures of its own.
#include <doctest/doctest.h>

#include <atomic>
#include <fstream>
#include <map>
#include <thread>
#include <tuple>

#include "quarn/quarnthread.h"
#include "threads/workload.h"

namespace {

#if defined(__has_feature)
#define HAS_FEATURE(name) __has_feature(name)
#else
#define HAS_FEATURE(name) 0
#endif
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__) || HAS_FEATURE(thread_sanitizer) || \
    HAS_FEATURE(address_sanitizer)
constexpr bool kWatched = true;
#else
constexpr bool kWatched = false;
#endif

/// f(i) in each of so many threads at once.
template <class F>
void in_threads(std::size_t count, const F& f) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < count; ++i) {
    threads.emplace_back([&f, i] { f(i); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

template <class F>
void in_thread(const F& f) {
  std::thread(f).join();
}

QuarnFloat product_of_long_numbers() {
  const support::Digits scope(40'000);
  const QuarnFloat root = sqrt(QuarnFloat(3));
  return root * root / root;
}

/// Pages of memory that the process uses.
long resident_pages() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident;
}

}  // namespace

TEST_CASE("threads at equal and different digits give what one thread gives") {
  const std::vector<int> digits = {20, 50, 333, 20, 100, 1000, 50, 2};
  // Threads come first, so that they also make what the process has once.
  std::vector<std::string> found(digits.size());
  std::vector<QuarnFloat> products(digits.size());
  in_threads(digits.size(), [&](std::size_t i) {
    products[i] = product_of_long_numbers();
    found[i] = threads::numbers(digits[i]) + threads::routines(digits[i]);
  });
  std::map<int, std::string> expected;
  for (const int d : digits) {
    expected[d] = threads::numbers(d) + threads::routines(d);
  }
  const QuarnFloat expected_product = product_of_long_numbers();
  for (std::size_t i = 0; i < digits.size(); ++i) {
    CAPTURE(digits[i]);
    CHECK(found[i] == expected[digits[i]]);
    CHECK(products[i] == expected_product);
  }
  CHECK(expected[50].find("C06FAF") != std::string::npos);
}

TEST_CASE("a new thread starts with the defaults, and leaves other threads theirs") {
  const support::Digits scope(77);
  const QuarnInterrupt interrupt;
  QuarnFailureHandler handler{};
  QuarnWatchInterrupt(&interrupt);
  QuarnMPX_failure_handler(&handler);
  int value = 0;
  CHECK(QuarnSetThreadValue(QuarnFirstFreeSlot, &value) == nullptr);
  CHECK(QuarnSetDefaultDigits(0) == 20);
  for (const int digits : {20, 50}) {
    QuarnSetDefaultDigits(digits);
    int at_first = 0;
    bool nothing_set = false;
    in_thread([&] {
      at_first = QuarnDigits();
      nothing_set = QuarnWatchInterrupt(nullptr) == nullptr && QuarnMPX_failure_handler(nullptr) == nullptr &&
                    QuarnThreadValue(QuarnFirstFreeSlot) == nullptr;
      QuarnSetDigits(5);
    });
    CHECK(at_first == digits);
    CHECK(nothing_set);
    // The first operation of a thread is rounded like the others.
    QuarnFloat third;
    in_thread([&] { third = QuarnFloat(1) / QuarnFloat(3); });
    CHECK(third.to_string() == "0." + std::string(std::size_t(digits), '3'));
  }
  CHECK(QuarnSetDefaultDigits(20) == 50);
  CHECK(QuarnDigits() == 77);
  CHECK(QuarnSetThreadValue(QuarnFirstFreeSlot, nullptr) == &value);
  CHECK(QuarnMPX_failure_handler(nullptr) == &handler);
  CHECK(QuarnWatchInterrupt(nullptr) == &interrupt);
}

TEST_CASE("numbers outlive the thread that made them, and may end in another") {
  std::vector<QuarnFloat> numbers(100);
  in_thread([&] {
    QuarnSetDigits(500);
    for (QuarnFloat& number : numbers) {
      number = sqrt(QuarnFloat(7));
    }
  });
  const support::Digits scope(500);
  const QuarnFloat root = sqrt(QuarnFloat(7));
  CHECK(std::all_of(numbers.begin(), numbers.end(), [&](const QuarnFloat& number) { return number == root; }));
  in_thread([&] { numbers.clear(); });
}

namespace {

/// Computes while its thread ends.
struct Last {
  ~Last() {
    const support::Digits scope(300);
    *result = (sin(kept) + threads::routines(30).size()).to_string();
  }
  QuarnFloat kept;
  std::string* result = nullptr;
};

}  // namespace

TEST_CASE("the destructor of a thread's own object may compute") {
  std::string results[2];
  for (std::string& result : results) {
    in_thread([&] {
      thread_local Last last;
      last.result = &result;
      const support::Digits scope(300);
      last.kept = sqrt(QuarnFloat(2));
    });
  }
  CHECK(results[0].size() > 290);
  CHECK(results[0] == results[1]);
}

TEST_CASE("threads that end leave nothing") {
  const int rounds = kWatched ? 2'000 : 100'000;
  const auto run = [](int count) {
    for (int i = 0; i < count; ++i) {
      in_thread([i] {
        QuarnSetDigits(i % 500 == 0 ? 3000 : 200);
        const QuarnFloat root = sqrt(QuarnFloat(2));
        if (i % 500 == 0) {
          std::ignore = exp(root * root);
          std::ignore = sin(root);
        }
      });
    }
  };
  run(rounds / 10);
  const long before = resident_pages();
  run(rounds);
  // A number of 200 digits a thread would be 20 times as much.
  if (!kWatched) {
    CHECK(resident_pages() - before < 256);
  }
}

TEST_CASE("an interrupt stops the long work of the threads that watch it") {
  QuarnInterrupt interrupt;
  std::atomic<int> stopped = 0;
  std::atomic<int> watching = 0;
  QuarnFloat results[3];
  const auto work = [&](std::size_t i) {
    if (i < 2) {
      QuarnWatchInterrupt(&interrupt);
    }
    ++watching;
    QuarnSetDigits(30'000);
    try {
      // Ends by the interrupt alone.
      while (i < 2) {
        results[i] = exp(sqrt(QuarnFloat(2)));
      }
    } catch (const QuarnInterrupted&) {
      ++stopped;
    }
    QuarnWatchInterrupt(nullptr);
    QuarnSetDigits(3000);
    results[i] = sin(QuarnFloat(1) / 3);
  };
  std::thread first([&] { work(0); });
  std::thread unwatched([&] { work(2); });
  while (watching < 2) {
    std::this_thread::yield();
  }
  interrupt.request();
  first.join();
  unwatched.join();
  CHECK(stopped == 1);
  CHECK(results[0] == results[2]);
  // The request stays until it is cleared.
  in_thread([&] { work(1); });
  CHECK(stopped == 2);
  CHECK(results[1] == results[2]);
  interrupt.clear();
}

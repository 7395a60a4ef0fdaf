// Random numbers for property tests: the seed is printed, so that a failure can be run again.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace support {

/// The seed of this run: the environment variable TESK_SEED, or the clock. Printed when first asked for.
inline std::uint64_t run_seed() {
  static const std::uint64_t seed = [] {
    const char* given = std::getenv("TESK_SEED");
    const std::uint64_t chosen =
        given != nullptr
            ? std::strtoull(given, nullptr, 10)
            : std::uint64_t(std::chrono::system_clock::now().time_since_epoch() / std::chrono::milliseconds(1));
    std::printf("TESK_SEED=%.0f\n", double(chosen));
    return chosen;
  }();
  return seed;
}

/// A stream of random values that depends on the seed alone, so that it is the same with every standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed = run_seed()) : engine_(seed) {}

  /// 0 <= value < bound
  std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }
  /// low <= value <= high
  std::int64_t between(std::int64_t low, std::int64_t high) {
    return low + std::int64_t(below(std::uint64_t(high - low) + 1));
  }
  /// True once in `times`.
  bool once_in(std::uint64_t times) { return below(times) == 0; }
  /// Decimal digits in runs of random ones, nines and zeros, where carries and ties live.
  std::string digits(std::size_t count) {
    std::string text;
    while (text.size() < count) {
      const std::size_t run = std::size_t(between(1, 1 + std::int64_t(count) / 2));
      const std::uint64_t kind = below(4);
      for (std::size_t i = 0; i < run && text.size() < count; ++i) {
        text += kind == 0 ? '9' : kind == 1 ? '0' : char('0' + below(10));
      }
    }
    return text;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace support

// The number types that are measured side by side, and the loop that measures an operation on each of them.
//
// A benchmark is named operation/peer/digits; bench/compare reads these names.
#pragma once

// The macros of mpfr.h clash with members of mpreal.
#define MPFR_USE_NO_MACRO
#include <benchmark/benchmark.h>
#include <mpfr.h>
#include <mpreal.h>

#include <boost/multiprecision/cpp_dec_float.hpp>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"

namespace bench {

inline mpfr_prec_t bits_for(int digits) { return mpfr_prec_t(std::ceil(digits * std::log2(10.0))); }

/// MPFR without a wrapper: every variable lives through the whole run.
struct RawMpfr {
  mpfr_t value;

  explicit RawMpfr(const char* text) {
    mpfr_init(value);
    mpfr_set_str(value, text, 10, MPFR_RNDN);
  }
  RawMpfr(RawMpfr&& other) noexcept : RawMpfr("0") { mpfr_swap(value, other.value); }
  RawMpfr(const RawMpfr& other) : RawMpfr("0") { mpfr_set(value, other.value, MPFR_RNDN); }
  RawMpfr& operator=(RawMpfr other) noexcept {
    mpfr_swap(value, other.value);
    return *this;
  }
  ~RawMpfr() { mpfr_clear(value); }
};

template <unsigned kDigits>
using BoostDecimal =
    boost::multiprecision::number<boost::multiprecision::cpp_dec_float<kDigits>, boost::multiprecision::et_off>;

inline void set_precision(int digits) {
  QuarnSetDigits(digits);
  mpfr_set_default_prec(bits_for(digits));
  mpfr::mpreal::set_default_prec(bits_for(digits));
}

/// The same random operands for every peer: both signs, all digits used, exponents spread over a few units.
class Operands {
 public:
  Operands(int digits, bool positive, unsigned seed) : digits_(digits), positive_(positive), random_(seed) {}

  template <class T>
  std::vector<T> make(std::size_t count) {
    std::vector<T> numbers;
    numbers.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      numbers.push_back(T(next().c_str()));
    }
    return numbers;
  }

 private:
  std::string next() {
    std::string text = !positive_ && random_() % 2 != 0 ? "-0." : "0.";
    text += char('1' + random_() % 9);
    for (int i = 1; i < digits_; ++i) {
      text += char('0' + random_() % 10);
    }
    return text + "e" + std::to_string(int(random_() % 5) - 2);
  }

  int digits_;
  bool positive_;
  std::mt19937 random_;
};

/// Runs Operation::apply(result, a, b) over arrays that stay in the first-level cache at everyday precision. The pairs
/// change from pass to pass, so that no branch predictor learns them.
template <class Operation, class T>
void measure(benchmark::State& state, int digits) {
  set_precision(digits);
  const std::size_t count = digits <= 1000 ? 128 : digits <= 10000 ? 8 : 2;
  Operands operands(digits, Operation::positive, 20261121);
  std::vector<T> a = operands.make<T>(count);
  std::vector<T> b = operands.make<T>(count);
  std::vector<T> result = operands.make<T>(count);
  std::size_t shift = 0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) {
      Operation::apply(result[i], a[i], b[(i + shift) & (count - 1)]);
    }
    shift += 37;
    benchmark::ClobberMemory();
  }
  state.counters["ns"] =
      benchmark::Counter(double(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Operation, class T>
void register_peer(const char* peer, int digits) {
  const std::string name = std::string(Operation::name) + "/" + peer + "/" + std::to_string(digits);
  benchmark::RegisterBenchmark(name.c_str(), [digits](benchmark::State& state) {
    measure<Operation, T>(state, digits);
  })->Unit(benchmark::kNanosecond);
}

template <class Operation, unsigned... kDigits>
void register_boost(std::integer_sequence<unsigned, kDigits...>) {
  (register_peer<Operation, BoostDecimal<kDigits>>("cpp_dec_float", kDigits), ...);
}

/// Registers an operation for every peer at every digit count. Operation has a `name`, `positive` (operands above zero
/// only), and apply(T& result, const T& a, const T& b) with an overload for RawMpfr.
template <class Operation>
bool register_operation(int most_digits = 100'000) {
  for (const int digits : {20, 50, 100, 200, 1000, 10'000, 100'000, 1'000'000}) {
    if (digits > most_digits) {
      break;
    }
    register_peer<Operation, QuarnFloat>("quarn", digits);
    register_peer<Operation, RawMpfr>("mpfr", digits);
    register_peer<Operation, mpfr::mpreal>("mpreal", digits);
  }
  register_boost<Operation>(std::integer_sequence<unsigned, 20, 50, 100, 200, 1000>{});
  return true;
}

/// Registers body(state, digits) as operation/peer/digits for each digit count; body returns how many units of work one
/// pass has, and the time is given for one of them.
template <class Digits, class Body>
void register_work(const std::string& operation, const char* peer, const Digits& digit_counts, Body body) {
  for (const int digits : digit_counts) {
    const std::string name = operation + "/" + peer + "/" + std::to_string(digits);
    benchmark::RegisterBenchmark(name.c_str(), [digits, body](benchmark::State& state) {
      set_precision(digits);
      const std::size_t units = body(state, digits);
      state.counters["ns"] = benchmark::Counter(
          double(units), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMillisecond);
  }
}

}  // namespace bench

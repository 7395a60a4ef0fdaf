// The complex companion beside the passes that it makes at more than 1100 digits, interleaved in one run:
//
//   bench_block_transforms [largest length]
//
// Medians over rounds, of times and of ratios. "passes" make their table in the call; "kept" is QuarnMPX_c06pcf_ with
// its plan from an earlier call, "fresh" a plan made and used once. Errors are the largest of a part, over the largest
// part of the result, as powers of ten.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "quarn/transform.h"
#include "src/fft/complex_engine.h"
#include "tesk2mp/fft.h"

namespace {

using Sequence = std::vector<Complex>;

constexpr tesk::Engine kPasses{tesk::Constants(tesk::Accuracy::full), tesk::kTooManyFactors, false};

void by_passes(Sequence& x, Sequence& work) {
  kPasses.transform(false, x.data(), {1, Integer(x.size()), 1}, work.data());
}

void by_companion(Sequence& x, Sequence& work) {
  const auto n = Integer(x.size());
  Integer ifail = 0;
  QuarnMPX_c06pcf_("F", x.data(), &n, work.data(), &ifail, 1);
}

void by_fresh_plan(Sequence& x, Sequence&) { QuarnTransform(Integer(x.size())).forward(x.data()); }

using Transform = void (*)(Sequence&, Sequence&);

Sequence random_sequence(int n, int digits) {
  std::mt19937_64 random(20261122);
  const auto number = [&] {
    std::string text = random() % 2 == 0 ? "-0." : "0.";
    for (int i = 0; i < digits; ++i) {
      text += char('0' + random() % 10);
    }
    return QuarnFloat(text);
  };
  Sequence x;
  for (int i = 0; i < n; ++i) {
    QuarnFloat re = number();
    x.emplace_back(std::move(re), number());
  }
  return x;
}

Sequence transformed(Transform transform, Sequence x) {
  Sequence work(2 * x.size());
  transform(x, work);
  return x;
}

/// Processor seconds for one transform of x; copies are not counted.
double seconds(Transform transform, const Sequence& x) {
  std::vector<Sequence> copies(1 + 20000 / (x.size() * std::size_t(QuarnDigits())), x);
  Sequence work(2 * x.size());
  const std::clock_t start = std::clock();
  for (Sequence& copy : copies) {
    transform(copy, work);
  }
  return double(std::clock() - start) / CLOCKS_PER_SEC / double(copies.size());
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
  return values[values.size() / 2];
}

double log10_error(const Sequence& z, const Sequence& exact) {
  QuarnFloat error;
  QuarnFloat largest;
  const auto raise = [](QuarnFloat& top, const QuarnFloat& value) {
    const QuarnFloat magnitude = fabs(value);
    top = magnitude > top ? magnitude : top;
  };
  for (std::size_t i = 0; i < z.size(); ++i) {
    raise(error, z[i].re - exact[i].re);
    raise(error, z[i].im - exact[i].im);
    raise(largest, exact[i].re);
    raise(largest, exact[i].im);
  }
  return FloatToDouble(log10(error / largest));
}

void compare(int n, int digits) {
  QuarnSetDigits(digits);
  const Sequence x = random_sequence(n, digits);
  std::vector<double> passes;
  std::vector<double> kept;
  std::vector<double> fresh;
  std::vector<double> kept_ratio;
  std::vector<double> fresh_ratio;
  const int rounds = n > 20000 ? 3 : 9;
  const Sequence z = transformed(by_companion, x);
  for (int round = 0; round < rounds; ++round) {
    passes.push_back(seconds(by_passes, x));
    fresh.push_back(seconds(by_fresh_plan, x));
    kept.push_back(seconds(by_companion, x));
    kept_ratio.push_back(kept.back() / passes.back());
    fresh_ratio.push_back(fresh.back() / passes.back());
  }
  const Sequence rounded = transformed(by_passes, x);
  QuarnSetDigits(digits + 30);
  const Sequence exact = transformed(by_passes, x);
  std::printf("%6d %5d  %10.1f %10.1f %10.1f   %.3f %.3f   %.2f %.2f\n", n, digits, median(passes) * 1e6,
              median(kept) * 1e6, median(fresh) * 1e6, median(kept_ratio), median(fresh_ratio),
              log10_error(rounded, exact), log10_error(z, exact));
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const int largest = argc > 1 ? std::atoi(argv[1]) : 65536;
  std::printf("     n     D    passes us    kept us   fresh us   kept fresh/passes   errors: passes, companion\n");
  for (const int n : {4, 16, 64, 256, 1000, 1009, 1024, 10007, 65536}) {
    for (const int digits : {20, 50, 100, 500, 1000}) {
      if (n <= largest && (n <= 2000 || digits == 50)) {
        compare(n, digits);
      }
    }
  }
}

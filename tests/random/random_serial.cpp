// Serial and cross-stream tests of every generator, and birthday spacings of a few. Prints the tables of
// docs/random.md.
//
// Serial: 2^20 pairs of successive variates counted in 64 x 64 cells. Cross-stream: pairs of a variate of one row and
// one of the next row, both from the same seed, which is the worst that a user can do who wants independent streams.
// Both give a chi-square with 4095 degrees of freedom, and its probability by the normal approximation of Wilson and
// Hilferty.
//
// Birthday spacings (G. Marsaglia; P. L'Ecuyer and R. Simard, Mathematics and Computers in Simulation 55, 2001): n
// points of two coordinates of 30 bits; the number of equal spacings is nearly Poisson with mean n^3 / 2^62.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "random/draws.h"

namespace {

constexpr int kRows = 273;
constexpr int kCells = 64;
constexpr int kPairs = 1 << 20;

double upper_tail(double normal) { return std::erfc(normal / std::sqrt(2.0)) / 2; }

template <class Next>
double pair_probability(Next next) {
  std::vector<int> counts(std::size_t(kCells * kCells));
  for (int i = 0; i < kPairs; ++i) {
    const auto [a, b] = next();
    ++counts[(a >> 26) * kCells + (b >> 26)];
  }
  const double expected = double(kPairs) / (kCells * kCells);
  double chi = 0;
  for (const int count : counts) {
    chi += (count - expected) * (count - expected) / expected;
  }
  const double k = kCells * kCells - 1;
  return upper_tail((std::cbrt(chi / k) - (1 - 2 / (9 * k))) / std::sqrt(2 / (9 * k)));
}

/// How the probabilities are spread: tenths, extremes, and the distance of Kolmogorov and Smirnov from uniform.
void print_spread(const char* title, std::vector<double> p) {
  std::sort(p.begin(), p.end());
  std::vector<int> tenths(10);
  double distance = 0;
  for (std::size_t i = 0; i < p.size(); ++i) {
    ++tenths[std::size_t(std::min(9.0, p[i] * 10))];
    distance = std::max(
        {distance, std::fabs(p[i] - double(i) / double(p.size())), std::fabs(p[i] - double(i + 1) / double(p.size()))});
  }
  std::printf("| %s | %zu |", title, p.size());
  for (const int count : tenths) {
    std::printf(" %d", count);
  }
  const double scaled = distance * std::sqrt(double(p.size()));
  double ks = 0;
  for (int j = 1; j <= 100; ++j) {
    ks += (j % 2 == 1 ? 2 : -2) * std::exp(-2.0 * j * j * scaled * scaled);
  }
  std::printf(" | %.2g | %.4f | %.2f |\n", p.front(), p.back(), std::min(1.0, ks));
}

void print_birthdays(Integer igen) {
  constexpr std::size_t kPoints = 5'000'000;
  battery::Stream stream(igen);
  std::vector<std::uint64_t> points(kPoints);
  for (std::uint64_t& point : points) {
    const std::uint64_t high = stream.next() >> 2;
    point = high << 30 | stream.next() >> 2;
  }
  std::sort(points.begin(), points.end());
  for (std::size_t i = 0; i + 1 < kPoints; ++i) {
    points[i] = points[i + 1] - points[i];
  }
  points.pop_back();
  std::sort(points.begin(), points.end());
  int equal = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    equal += points[i] == points[i - 1] ? 1 : 0;
  }
  const double mean = std::pow(double(kPoints), 3) / std::ldexp(1.0, 62);
  std::printf("| %d | %d | %.1f |\n", int(igen), equal, mean);
}

}  // namespace

int main() {
  std::printf(
      "| test | runs | probabilities by tenths | least | largest | Kolmogorov-Smirnov |\n|---|---|---|---|---|---|\n");
  std::vector<double> serial;
  std::vector<double> crossed;
  for (Integer igen = 0; igen <= kRows; ++igen) {
    battery::Stream stream(igen);
    serial.push_back(pair_probability([&] {
      const std::uint32_t first = stream.next();
      return std::pair(first, stream.next());
    }));
    if (igen > 0) {
      battery::Stream one(igen);
      battery::Stream other(igen % kRows + 1);
      crossed.push_back(pair_probability([&] { return std::pair(one.next(), other.next()); }));
    }
  }
  print_spread("serial, IGEN 0 to 273", serial);
  print_spread("cross-stream, rows k and k + 1", crossed);
  std::printf("\n| IGEN | equal spacings | expected |\n|---|---|---|\n");
  for (const Integer igen : {0, 1, 6, 139, 272, 273}) {
    print_birthdays(igen);
  }
}

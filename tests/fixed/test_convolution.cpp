#include <doctest/doctest.h>

#include <random>
#include <string>
#include <vector>

#include "quarn/convolution.h"
#include "quarn/exact.h"
#include "support/digits.h"

namespace {

using Numbers = std::vector<QuarnFloat>;

constexpr unsigned kSeed = 20261122;

Numbers random_numbers(Integer count, int digits, int spread, std::mt19937_64& random) {
  Numbers x;
  for (Integer i = 0; i < count; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    for (int digit = 0; digit < digits; ++digit) {
      text += char('0' + random() % 10);
    }
    x.emplace_back(text + "e-" + std::to_string(spread == 0 ? 0 : int(random() % unsigned(spread))));
  }
  return x;
}

/// Result k as one exact sum, rounded once.
QuarnFloat expected(QuarnConvolution kind, const Numbers& a, const Numbers& b, std::size_t k) {
  Numbers left;
  Numbers right;
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (const std::size_t j : {k - i, k + a.size() - i}) {
      if (j < b.size() && (j == k - i || kind == QuarnConvolution::circular)) {
        left.push_back(a[i]);
        right.push_back(b[j]);
      }
    }
  }
  return QuarnDot(left.size(), left.data(), 1, right.data(), 1);
}

bool is_same(const QuarnFloat& x, const QuarnFloat& y) { return x == y || (isnan(x) && isnan(y)); }

Numbers convolved(QuarnConvolution kind, const Numbers& a, const Numbers& b) {
  Numbers z(kind == QuarnConvolution::circular ? a.size() : a.size() + b.size() - 1, QuarnFloat(7));
  QuarnConvolve(kind, a.data(), Integer(a.size()), b.data(), Integer(b.size()), z.data());
  return z;
}

void check(QuarnConvolution kind, const Numbers& a, const Numbers& b) {
  const Numbers z = convolved(kind, a, b);
  int wrong = 0;
  for (std::size_t k = 0; k < z.size(); ++k) {
    wrong += !is_same(z[k], expected(kind, a, b, k));
  }
  CHECK(wrong == 0);
}

}  // namespace

TEST_CASE("convolutions round the exact sums once") {
  std::mt19937_64 random(kSeed);
  for (const auto& shape : {std::pair{1, 0}, {2, 3}, {20, 0}, {20, 30}, {50, 5}, {200, 9}, {333, 700}}) {
    const int digits = shape.first;
    const int spread = shape.second;
    const support::Digits scope(digits);
    for (const auto& lengths : {std::pair{1, 1}, {5, 3}, {60, 60}, {100, 51}, {49, 130}, {640, 600}}) {
      if (lengths.first == 640 && digits != 20 && digits != 200) {
        continue;  // by spectra at any digits
      }
      const Integer na = lengths.first;
      const Integer nb = lengths.second;
      CAPTURE(kSeed);
      CAPTURE(digits);
      CAPTURE(na);
      const Numbers a = random_numbers(na, digits, spread, random);
      Numbers b = random_numbers(nb, digits, spread, random);
      check(QuarnConvolution::linear, a, b);
      b.resize(a.size(), QuarnFloat(3));
      check(QuarnConvolution::circular, a, b);
    }
  }
}

TEST_CASE("convolutions of integers are exact; of zeros zero; exponents may be far") {
  const support::Digits scope(60);
  const Numbers nines(100, QuarnFloat(999'999'999));
  const Numbers z = convolved(QuarnConvolution::linear, nines, nines);
  for (std::int64_t k = 0; k < 199; ++k) {
    CHECK(z[std::size_t(k)] == QuarnFloat(std::min(k + 1, 199 - k)) * QuarnFloat(999'999'999) * 999'999'999);
  }
  for (const QuarnFloat& zero : convolved(QuarnConvolution::circular, Numbers(70), Numbers(70, QuarnFloat(-1)))) {
    CHECK(zero == QuarnFloat());
    CHECK(!signbit(zero));
  }
  Numbers far = nines;
  for (QuarnFloat& value : far) {
    value *= QuarnFloat(1, -999'999'000);
  }
  check(QuarnConvolution::linear, far, Numbers(100, QuarnFloat(3, 999'998'990)));
}

TEST_CASE("infinities and NaN reach the results that they are part of") {
  std::mt19937_64 random(kSeed);
  const support::Digits scope(20);
  Numbers a = random_numbers(64, 20, 2, random);
  Numbers b = random_numbers(70, 20, 2, random);
  b[5] = QuarnFloat();
  a[3] = QuarnFloat("inf");
  check(QuarnConvolution::linear, a, b);
  b[60] = QuarnFloat("-inf");
  a[60] = QuarnFloat("nan");
  check(QuarnConvolution::linear, a, b);
  b.resize(64);
  check(QuarnConvolution::circular, a, b);
}

TEST_CASE("fast lengths have no prime factor above 5") {
  for (Integer n = -1; n < 5000; n += 7) {
    Integer least = std::max<Integer>(n, 1);
    const auto is_fast = [](Integer m) {
      for (const Integer r : {2, 3, 5}) {
        while (m % r == 0) {
          m /= r;
        }
      }
      return m == 1;
    };
    while (!is_fast(least)) {
      ++least;
    }
    CHECK(QuarnFastLength(n) == least);
  }
  CHECK(QuarnFastLength(2'000'000'001) == 2'013'265'920);
  CHECK(QuarnFastLength(2'147'483'647) == 0);
}

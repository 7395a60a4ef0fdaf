// Packed numbers and pairs of doubles.
#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "quarn/functions.h"
#include "quarn/interchange.h"
#include "support/digits.h"

using namespace quarn;

namespace {

bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

std::vector<unsigned char> packed(const QuarnFloat& x) {
  const QuarnFloat one[] = {x};
  return pack(one);
}

}  // namespace

TEST_CASE("packed numbers have the bytes of the layout") {
  const support::Digits working(40);
  CHECK(packed(0) == std::vector<unsigned char>{0});
  CHECK(packed(QuarnFloat("-0")) == std::vector<unsigned char>{4});
  CHECK(packed(QuarnFloat("-inf")) == std::vector<unsigned char>{6});
  CHECK(packed(QuarnFloat("nan")) == std::vector<unsigned char>{3});
  // 1.5: 150000000 is 0x08F0D180
  CHECK(packed(QuarnFloat("1.5")) == std::vector<unsigned char>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0x80, 0xd1, 0xf0, 0x08});
  // -1.234567890123 10^-2: 123456789, then 012300000
  CHECK(packed(QuarnFloat("-0.01234567890123")) ==
        std::vector<unsigned char>{5, 0xfe, 0xff, 0xff, 0xff, 2, 0, 0, 0, 0x15, 0xcd, 0x5b, 0x07, 0xe0, 0xae, 0xbb, 0});
}

TEST_CASE("packed numbers come back with all their digits at any precision") {
  std::mt19937_64 random(20261122);
  std::vector<QuarnFloat> numbers = {0,
                                     QuarnFloat("-0"),
                                     QuarnFloat("inf"),
                                     QuarnFloat("nan"),
                                     QuarnFloat("1e999999999"),
                                     QuarnFloat("-1e-999999999")};
  for (const int digits : {1, 2, 8, 9, 10, 18, 19, 27, 126, 127, 333, 1000}) {
    const support::Digits many(digits);
    std::string text = "0.";
    for (int i = 0; i < digits; ++i) {
      text += char('1' + random() % 9);
    }
    numbers.emplace_back((random() % 2 == 0 ? "-" : "") + text + "e" + std::to_string(int(random() % 4001) - 2000));
  }
  const support::Digits few(2);
  const std::vector<unsigned char> bytes = pack(numbers);
  std::vector<QuarnFloat> again;
  REQUIRE(unpack(bytes, again));
  REQUIRE(again.size() == numbers.size());
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    CHECK(same(again[k], numbers[k]));
    CHECK(packed(again[k]) == packed(numbers[k]));
  }
  std::vector<QuarnFloat> cut;
  CHECK(!unpack({bytes.data(), bytes.size() - 1}, cut));
  CHECK(cut.size() == numbers.size() - 1);
}

TEST_CASE("bytes that no number is packed to are refused, or are a number's only form") {
  std::mt19937_64 random(3);
  const support::Digits working(60);
  const std::vector<unsigned char> good = packed(QuarnFloat("-1234567890123456789.000000001e7"));
  int refused = 0;
  for (int i = 0; i < 20000; ++i) {
    std::vector<unsigned char> bytes = good;
    for (int changes = 1 + int(random() % 3); changes > 0; --changes) {
      bytes[std::size_t(random() % bytes.size())] = static_cast<unsigned char>(random());
    }
    bytes.resize(std::size_t(random() % (bytes.size() + 1)));
    QuarnFloat x = 7;
    const std::size_t used = read_packed(bytes.data(), bytes.size(), x);
    if (used == 0) {
      ++refused;
      CHECK(x == 7);
    } else {
      const std::vector<unsigned char> again = packed(x);
      CHECK(std::equal(again.begin(), again.end(), bytes.begin(), bytes.begin() + std::ptrdiff_t(used)));
    }
  }
  CHECK(refused > 1000);
}

TEST_CASE("pairs of doubles") {
  std::mt19937_64 random(11);
  for (int i = 0; i < 500; ++i) {
    const double high = std::ldexp(double(random()), int(random() % 1800) - 900);
    const double low = std::ldexp(double(random()) - 9.2e18, std::ilogb(high) - 53 - 64 - int(random() % 40));
    const support::Digits many(1500);
    const QuarnFloat sum = from_double_double({high, low});
    CHECK(sum - QuarnFloat(high) == QuarnFloat(low));
    const DoubleDouble again = to_double_double(sum);
    CHECK(again.high == high + low);
    CHECK(QuarnFloat(again.high) + QuarnFloat(again.low) == sum);
  }
  {
    const support::Digits working(50);
    const QuarnFloat third = QuarnFloat(1) / 3;
    const DoubleDouble pair = to_double_double(third);
    CHECK(fabs(from_double_double(pair) - third) < QuarnFloat("1e-32"));
    CHECK(to_double_double(QuarnFloat("1e400")).high == std::numeric_limits<double>::infinity());
    CHECK(to_double_double(QuarnFloat("1e400")).low == 0);
    CHECK(std::isnan(to_double_double(QuarnFloat("nan")).high));
  }
  // One rounding of the exact sum
  const support::Digits working(3);
  CHECK(from_double_double({1.125, 0x1p-900}) == QuarnFloat("1.13"));
  CHECK(from_double_double({1.125, -0x1p-900}) == QuarnFloat("1.12"));
}

// Exact sums against sums at so many digits that nothing is rounded, and their packed form.
#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "quarn/accumulator.h"
#include "support/digits.h"
#include "support/random.h"

using quarn::Accumulator;
using Bytes = std::vector<unsigned char>;

namespace {

Bytes packed(const Accumulator& sum) { return quarn::pack({&sum, 1}); }

Accumulator sum_of(std::initializer_list<const char*> terms) {
  Accumulator sum;
  for (const char* term : terms) {
    sum += QuarnFloat(term);
  }
  return sum;
}

std::string text(const Accumulator& sum) { return sum.rounded().to_string(); }

/// Up to `digits` digits, exponents within `spread`, now and then the negative of the number before.
std::vector<QuarnFloat> numbers(support::Random& random, std::size_t n, int digits, std::int64_t spread) {
  const support::Digits many(digits);
  std::vector<QuarnFloat> x(n);
  for (std::size_t i = 0; i < n; ++i) {
    const std::string coefficient = "0." + random.digits(std::size_t(random.between(1, digits)));
    x[i] = i > 0 && random.once_in(4) ? -x[i - 1]
                                      : QuarnFloat(((random.once_in(2) ? "-" : "") + coefficient + "e" +
                                                    std::to_string(random.between(-spread, spread)))
                                                       .c_str());
  }
  return x;
}

}  // namespace

TEST_CASE("packed sums have the bytes of the layout") {
  const support::Digits working(30);
  CHECK(packed({}) == Bytes{0, 0, 0, 0, 0});
  CHECK(packed(sum_of({"7", "-7"})) == packed({}));
  CHECK(packed(sum_of({"1"})) == Bytes{0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
  // 10^9 - 1 is 1 at place 1 and -1 at place 0
  CHECK(packed(sum_of({"999999999"})) ==
        Bytes{0, 1, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 0xff, 0xff, 0xff, 0xff});
  // 10^36 and 10^-9: four zeros between them
  CHECK(packed(sum_of({"1e36", "1e-9"})) ==
        Bytes{0, 2, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0xff, 0xff, 0xff, 0xff, 1, 0, 0, 0, 1, 0, 0, 0});
  CHECK(packed(sum_of({"5", "-inf"})) == Bytes{6});
  CHECK(packed(sum_of({"inf", "5"})) == Bytes{2});
  CHECK(packed(sum_of({"inf", "-inf"})) == Bytes{3});
  CHECK(packed(sum_of({"nan", "inf"})) == Bytes{3});
}

TEST_CASE("sums are exact at any digits, in any order and in any parts, and rounded once") {
  support::Random random;
  for (const int digits : {1, 2, 8, 9, 10, 18, 19, 50, 126, 127, 333, 1000}) {
    for (const std::int64_t spread : {0, 40, 1500}) {
      CAPTURE(digits);
      CAPTURE(spread);
      const std::size_t n = std::size_t(random.between(1, 40));
      std::vector<QuarnFloat> a = numbers(random, n, digits, spread);
      std::vector<QuarnFloat> b = numbers(random, n, random.once_in(2) ? digits : 7, spread);
      const QuarnFloat exact = [&] {
        const support::Digits enough(9000);
        QuarnFloat sum;
        for (std::size_t i = 0; i < n; ++i) {
          sum += a[i] * b[i];
        }
        return sum;
      }();
      const support::Digits working(int(random.between(1, 2 * digits)));
      const QuarnFloat expected = exact * 1;

      Accumulator whole;
      whole.add_dot(n, a.data(), 1, b.data(), 1);
      CHECK(whole.rounded() == expected);
      std::vector<std::size_t> order(n);
      for (std::size_t i = 0; i < n; ++i) {
        order[i] = i;
      }
      for (std::size_t i = n; i > 1; --i) {
        std::swap(order[i - 1], order[std::size_t(random.below(i))]);
      }
      Accumulator parts[3];
      for (const std::size_t i : order) {
        parts[random.below(3)].add_product(a[i], b[i]);
      }
      Accumulator total;
      for (const std::size_t k : {std::size_t(2), std::size_t(0), std::size_t(1)}) {
        const Bytes bytes = packed(parts[k]);
        REQUIRE(quarn::add_packed(bytes, {&total, 1}));
      }
      CHECK(total == whole);
      CHECK(packed(total) == packed(whole));
      // As many digits as the terms span, and some bytes more.
      const std::size_t spanned = std::size_t(2 * digits + 4 * spread) + 2;
      CHECK(packed(whole).size() <= 13 + 4 * (spanned / 9 + 3) + 8 * n);

      Accumulator numbers_alone;
      for (const QuarnFloat& x : a) {
        numbers_alone += x;
      }
      const QuarnFloat one = 1;
      Accumulator again;
      CHECK(again.add_dot(n, a.data(), 1, &one, 0) == numbers_alone);
    }
  }
}

TEST_CASE("sums of complex products are the four sums of their parts") {
  support::Random random;
  const support::Digits working(60);
  const std::size_t n = 25;
  const std::vector<QuarnFloat> parts = numbers(random, 4 * n, 50, 30);
  std::vector<quarn::Complex> a(n), b(n);
  Accumulator real, imaginary, expected_real, expected_imaginary;
  real += 3;
  expected_real += 3;
  for (std::size_t i = 0; i < n; ++i) {
    a[i] = {parts[4 * i], parts[4 * i + 1]};
    b[i] = {parts[4 * i + 2], parts[4 * i + 3]};
    expected_real.add_product(a[i].re, b[i].re).add_product(a[i].im, b[i].im);
    expected_imaginary.add_product(a[i].re, b[i].im).add_product(-a[i].im, b[i].re);
  }
  quarn::add_inner_product(n, a.data(), b.data(), real, imaginary);
  CHECK(real == expected_real);
  CHECK(imaginary == expected_imaginary);
}

TEST_CASE("terms at both ends of the exponents, and roots of sums beyond them") {
  const support::Digits working(20);
  const QuarnFloat huge("9e999999999");
  const QuarnFloat tiny("9e-999999999");
  Accumulator sum;
  sum.add_product(huge, huge);
  CHECK(isinf(sum.rounded()));
  CHECK(sum.rounded_root() == huge);
  sum.add_product(tiny, -tiny);
  CHECK(packed(sum).size() == 29);  // two runs of one group
  sum.add_product(-huge, huge);
  CHECK(sum.rounded() == 0);
  CHECK(isnan(sum.rounded_root()));
  sum += 0;
  sum.add_product(tiny, tiny);
  CHECK(packed(sum) == packed({}));
  sum.add_product(tiny, tiny);
  CHECK(sum.rounded_root() == tiny);

  // What is far away decides ties, and makes nines.
  CHECK(text(sum_of({"1.0000000000000000005", "-45e-20", "1e-999999999"})) == "1.0000000000000000001");
  CHECK(text(sum_of({"1.0000000000000000005", "-45e-20", "-1e-999999999"})) == "1");
  CHECK(text(sum_of({"1.0000000000000000005", "-45e-20"})) == "1");
  CHECK(text(sum_of({"-1e30", "1e-900000000"})) == "-1e+30");
  CHECK(text(sum_of({"1e400", "1", "-1e400"})) == "1");
  CHECK(!signbit(sum_of({"-0"}).rounded()));
  Accumulator nine = sum_of({"9"});
  nine += nine;
  CHECK(text(nine) == "18");
}

TEST_CASE("infinities and NaN in sums are those of the extended real numbers") {
  const support::Digits working(20);
  const QuarnFloat inf("inf");
  const QuarnFloat nan("nan");
  const auto product = [](const QuarnFloat& a, const QuarnFloat& b) {
    return Accumulator().add_product(a, b).rounded();
  };
  CHECK(isnan(product(inf, 0)));
  CHECK(isnan(product(1, nan)));
  CHECK(product(inf, -2) == -inf);
  Accumulator sum = sum_of({"-inf"});
  CHECK(isnan(sum.rounded_root()));
  sum += sum_of({"1"});
  CHECK(sum.rounded() == -inf);
  sum += inf;
  CHECK(isnan(sum.rounded()));
  CHECK(sum == sum_of({"nan"}));
  // In every place of a long sum.
  std::vector<QuarnFloat> x(7, 1);
  for (QuarnFloat& at : x) {
    at = nan;
    CHECK(isnan(Accumulator().add_dot(x.size(), x.data(), 1, x.data(), 1).rounded()));
    at = inf;
    CHECK(isinf(Accumulator().add_dot(x.size(), x.data(), 1, x.data(), 1).rounded()));
    at = 1;
  }
}

TEST_CASE("bytes that no sum is packed to are refused, or are a sum's only form") {
  support::Random random;
  const support::Digits working(60);
  const Bytes good = packed(sum_of({"-1234567890123456789.000000001e70", "5e9", "1e-200", "-3e-218"}));
  for (std::size_t size = 0; size < good.size(); ++size) {
    Accumulator sum = sum_of({"4"});
    CHECK(sum.read_packed(good.data(), size) == 0);
    CHECK(text(sum) == "4");
  }
  int refused = 0;
  for (int i = 0; i < 20000; ++i) {
    Bytes bytes = good;
    for (std::int64_t changes = random.between(1, 3); changes > 0; --changes) {
      bytes[std::size_t(random.below(bytes.size()))] = static_cast<unsigned char>(random.below(256));
    }
    Accumulator sum;
    const std::size_t used = sum.read_packed(bytes.data(), bytes.size());
    if (used == 0) {
      ++refused;
    } else {
      REQUIRE(packed(sum) == Bytes(bytes.begin(), bytes.begin() + std::ptrdiff_t(used)));
    }
  }
  CHECK(refused > 5000);
  Accumulator two[2];
  two[0] += 1;
  Bytes one_too_many = quarn::pack(two);
  CHECK(!quarn::add_packed(one_too_many, {two, 1}));
  one_too_many.resize(one_too_many.size() - 1);
  CHECK(!quarn::add_packed(one_too_many, two));
  CHECK(text(two[0]) == "1");
}

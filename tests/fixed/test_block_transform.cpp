#include <doctest/doctest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "number/fixed/core.h"
#include "quarn/transform.h"
#include "support/digits.h"

using namespace quarn::block;

namespace {

using Sequence = std::vector<Complex>;

constexpr unsigned kSeed = 20261122;

/// A number of up to `digits` digits and 10^(-spread) < |x| < 1.
QuarnFloat random_number(std::mt19937_64& random, int digits, int spread) {
  std::string text = random() % 2 == 0 ? "-0." : "0.";
  for (int i = 0; i < digits; ++i) {
    text += char('0' + random() % 10);
  }
  return QuarnFloat(text + "e-" + std::to_string(spread == 0 ? 0 : int(random() % unsigned(spread))));
}

Sequence random_sequence(Integer n, int digits, int spread, unsigned seed) {
  std::mt19937_64 random(seed);
  Sequence x;
  for (Integer i = 0; i < n; ++i) {
    QuarnFloat re = random_number(random, digits, spread);
    x.emplace_back(std::move(re), random_number(random, digits, spread));
  }
  return x;
}

Sequence transformed(bool backward, Sequence x) {
  const QuarnTransform plan{Integer(x.size())};
  if (backward) {
    plan.backward(x.data());
  } else {
    plan.forward(x.data());
  }
  return x;
}

/// The sums of the definition, at the working digits.
Sequence by_definition(bool backward, const Sequence& x) {
  const auto n = std::int64_t(x.size());
  const QuarnFloat part = 8 * atan(QuarnFloat(1)) / n;
  Sequence roots;
  for (std::int64_t k = 0; k < n; ++k) {
    const QuarnFloat s = sin(part * k);
    roots.emplace_back(cos(part * k), backward ? s : -s);
  }
  Sequence z;
  for (std::int64_t k = 0; k < n; ++k) {
    Complex sum;
    for (std::int64_t j = 0; j < n; ++j) {
      QuarnAddProduct(sum, x[std::size_t(j)], roots[std::size_t(j * k % n)]);
    }
    const QuarnFloat scale = sqrt(QuarnFloat(n));
    z.emplace_back(sum.re / scale, sum.im / scale);
  }
  return z;
}

QuarnFloat largest_part(const Sequence& x) {
  QuarnFloat largest;
  for (const Complex& value : x) {
    for (const QuarnFloat& part : {fabs(value.re), fabs(value.im)}) {
      largest = part > largest ? part : largest;
    }
  }
  return largest;
}

/// The documented bound: a quarter of 10^-D of the largest part of the data, and half a unit of the result.
bool is_within_bound(const QuarnFloat& result, const QuarnFloat& exact, const QuarnFloat& largest, int digits) {
  const QuarnFloat unit = exact == QuarnFloat() ? exact : pow(QuarnFloat(10), floor(log10(fabs(exact))) + 1 - digits);
  return fabs(result - exact) <= largest * QuarnFloat(1, -digits) / 4 + unit / 2 * (1 + QuarnFloat(1, -15));
}

void check_against_definition(Integer n, int digits, int spread, bool backward) {
  CAPTURE(n);
  CAPTURE(digits);
  CAPTURE(spread);
  CAPTURE(backward);
  CAPTURE(kSeed);
  const support::Digits scope(digits);
  const Sequence x = random_sequence(n, digits, spread, kSeed + unsigned(n));
  const Sequence z = transformed(backward, x);
  QuarnSetDigits(digits + 40);
  const Sequence exact = by_definition(backward, x);
  const QuarnFloat largest = largest_part(x);
  int wrong = 0;
  for (std::size_t k = 0; k < z.size(); ++k) {
    wrong += !is_within_bound(z[k].re, exact[k].re, largest, digits);
    wrong += !is_within_bound(z[k].im, exact[k].im, largest, digits);
  }
  CHECK(wrong == 0);
}

/// FNV-1a of the results as text.
std::uint64_t digest(const Sequence& x) {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const Complex& value : x) {
    for (const char c : value.re.to_string() + " " + value.im.to_string() + "\n") {
      hash = (hash ^ std::uint64_t(static_cast<unsigned char>(c))) * 1099511628211ULL;
    }
  }
  return hash;
}

bool is_plain_zero(const QuarnFloat& x) { return x == QuarnFloat() && !signbit(x); }

}  // namespace

#if QUARN_LIMB_BITS == 64

namespace {

using Halves = std::vector<std::uint32_t>;

Halves halves_of(const std::vector<std::uint64_t>& words) {
  Halves halves;
  for (const std::uint64_t word : words) {
    halves.push_back(std::uint32_t(word));
    halves.push_back(std::uint32_t(word >> 32));
  }
  return halves;
}

std::vector<std::uint64_t> random_words(std::mt19937_64& random, std::size_t count) {
  std::vector<std::uint64_t> words(count);
  for (std::uint64_t& word : words) {
    // Runs of ones and zeros make carries.
    const std::uint64_t kind = random() % 4;
    word = kind == 0 ? 0 : kind == 1 ? ~std::uint64_t(0) : random();
  }
  return words;
}

/// The whole product by words.
std::vector<std::uint64_t> product_of(const std::vector<std::uint64_t>& a, const std::vector<std::uint64_t>& b) {
  std::vector<std::uint64_t> out(a.size() + b.size(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const unsigned __int128 t = static_cast<unsigned __int128>(a[i]) * b[j] + out[i + j] + carry;
      out[i + j] = std::uint64_t(t);
      carry = std::uint64_t(t >> 64);
    }
    out[i + b.size()] = carry;
  }
  return out;
}

}  // namespace

TEST_CASE("the upper half of a product: within its bound, the same bits with words of 32 and of 64 bits") {
  std::mt19937_64 random(kSeed);
  for (int repetition = 0; repetition < 3000; ++repetition) {
    const int places = 2 + int(random() % 8);
    CAPTURE(kSeed);
    CAPTURE(places);
    const auto a = random_words(random, std::size_t(places));
    const auto b = random_words(random, std::size_t(places));
    std::vector<std::uint64_t> out(static_cast<std::size_t>(places));
    Halves out_halves(std::size_t(2 * places));
    with_places(places, [&](auto length) {
      multiply_high(out.data(), a.data(), b.data(), length);
      multiply_high(out_halves.data(), halves_of(a).data(), halves_of(b).data(), length);
    });
    REQUIRE(halves_of(out) == out_halves);
    // The exact upper half less the result is from 0 to L.
    const auto whole = product_of(a, b);
    std::vector<std::uint64_t> error(whole.begin() + places, whole.end());
    subtract(error.data(), error.data(), out.data(), places);
    REQUIRE(error[0] <= std::uint64_t(places));
    REQUIRE(std::all_of(error.begin() + 1, error.end(), [](std::uint64_t word) { return word == 0; }));
  }
}

TEST_CASE("the core gives the same bits with words of 32 and of 64 bits") {
  std::mt19937_64 random(kSeed);
  for (const Integer n : {1, 2, 3, 4, 5, 8, 12, 15, 31, 45, 64, 7 * 16, 128}) {
    for (const int places : {2, 3, 4, 6, 9}) {
      CAPTURE(kSeed);
      CAPTURE(n);
      CAPTURE(places);
      const Core<std::uint64_t> whole(n, places);
      const Core<std::uint32_t> half(n, places);
      auto x = random_words(random, std::size_t(n) * whole.words_per_element());
      for (std::size_t i = std::size_t(places) - 1; i < x.size(); i += std::size_t(places)) {
        x[i] = std::uint64_t(std::int64_t(x[i]) >> 10);
      }
      Halves y = halves_of(x);
      whole.run(x.data());
      half.run(y.data());
      CHECK(halves_of(x) == y);
    }
  }
}

#endif

TEST_CASE("block transforms against the definition") {
  for (const bool backward : {false, true}) {
    for (const Integer n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 16, 25, 30, 31, 37, 49, 64, 74}) {
      check_against_definition(n, n % 2 == 0 ? 20 : 50, 0, backward);
    }
  }
  for (const int digits : {1, 2, 17, 18, 19, 35, 36, 37, 53, 54, 71, 100, 126, 127, 333}) {
    check_against_definition(24, digits, 0, false);
    check_against_definition(24, digits, 60, true);
  }
  for (const int spread : {0, 60, 2000}) {
    check_against_definition(4, 333, spread, spread == 60);
  }
  check_against_definition(20, 1000, 0, false);
  check_against_definition(37, 1000, 2000, true);
  check_against_definition(210, 30, 3, false);
  check_against_definition(256, 30, 3, false);
  check_against_definition(211, 30, 3, true);
}

TEST_CASE("the largest part may lead with any digit and stand at either end of the exponents") {
  const support::Digits scope(30);
  for (const int exponent : {-999'999'990, 0, 999'999'980}) {
    for (const int leading : {1, 2, 3, 4, 5, 9}) {
      Sequence x(12);
      x[3].im = QuarnFloat(-leading, exponent);
      x[7].re = QuarnFloat(leading, exponent - 3);
      const Sequence z = transformed(false, x);
      QuarnSetDigits(80);
      Sequence scaled = x;
      scaled[3].im = -leading;
      scaled[7].re = QuarnFloat(leading, -3);
      const Sequence exact = by_definition(false, scaled);
      for (std::size_t k = 0; k < z.size(); ++k) {
        CHECK(is_within_bound(z[k].re / QuarnFloat(1, exponent), exact[k].re, leading, 30));
        CHECK(is_within_bound(z[k].im / QuarnFloat(1, exponent), exact[k].im, leading, 30));
      }
      QuarnSetDigits(30);
    }
  }
  // Beyond the largest number: infinity.
  Sequence x(16, Complex(QuarnFloat(9, 999'999'999), QuarnFloat()));
  CHECK(isinf(transformed(false, x)[0].re));
}

TEST_CASE("what block transforms keep exactly") {
  for (const int digits : {2, 20, 50, 151}) {
    const support::Digits scope(digits);
    for (const Integer n : {2, 4, 6, 8, 15, 16, 37, 60}) {
      CAPTURE(digits);
      CAPTURE(n);
      // Zeros, negative ones too.
      for (const Complex& z : transformed(true, Sequence(std::size_t(n), Complex(-QuarnFloat(), -QuarnFloat())))) {
        CHECK(is_plain_zero(z.re));
        CHECK(is_plain_zero(z.im));
      }
      // An impulse: n times the same, exactly where that is a number.
      Sequence impulse(static_cast<std::size_t>(n));
      impulse[0].re = -3;
      for (const Complex& z : transformed(false, impulse)) {
        CHECK(fabs(z.re + 3 / sqrt(QuarnFloat(n))) <= QuarnFloat(1, 1 - digits));
        CHECK(is_plain_zero(z.im));
        CHECK((n != 16 || z.re == QuarnFloat(-75, -2)));
      }
      // Real data.
      Sequence x = random_sequence(n, digits, 3, kSeed);
      for (Complex& value : x) {
        value.im = QuarnFloat();
      }
      for (const bool backward : {false, true}) {
        const Sequence z = transformed(backward, x);
        CHECK(is_plain_zero(z[0].im));
        for (Integer k = 1; k < n; ++k) {
          CHECK(z[std::size_t(k)] == conj(z[std::size_t(n - k)]));
          CHECK((2 * k != n || is_plain_zero(z[std::size_t(k)].im)));
        }
      }
    }
  }
}

TEST_CASE("one NaN or infinity anywhere: NaN everywhere") {
  const support::Digits scope(25);
  for (const char* special : {"nan", "inf", "-inf"}) {
    for (std::size_t place = 0; place < 12; ++place) {
      Sequence x = random_sequence(6, 25, 0, kSeed);
      (place % 2 == 0 ? x[place / 2].re : x[place / 2].im) = QuarnFloat(special);
      for (const Complex& z : transformed(place % 3 == 0, x)) {
        CHECK(isnan(z.re));
        CHECK(isnan(z.im));
      }
    }
  }
}

TEST_CASE("a plan keeps its digits, steps by a stride, and undoes itself; rows use a plan that is kept") {
  const support::Digits scope(40);
  const Sequence x = random_sequence(18, 40, 0, kSeed);
  const QuarnTransform plan(18);
  CHECK(plan.length() == 18);
  CHECK(plan.digits() == 40);
  const Sequence z = transformed(false, x);
  Sequence spread(18 * 3, Complex(7.0));
  for (std::size_t i = 0; i < x.size(); ++i) {
    spread[3 * i] = x[i];
  }
  QuarnSetDigits(60);
  plan.forward(spread.data(), 3);
  QuarnSetDigits(40);
  Sequence rows(2 * x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    CHECK(spread[3 * i] == z[i]);
    CHECK(spread[3 * i + 1] == Complex(7.0));
    rows[2 * i] = rows[2 * i + 1] = x[i];
  }
  CHECK(QuarnTransformRows(false, rows.data(), 18, 2, 2, 1));
  Sequence back = z;
  plan.backward(back.data());
  for (std::size_t i = 0; i < x.size(); ++i) {
    CHECK(rows[2 * i] == z[i]);
    CHECK(rows[2 * i + 1] == z[i]);
    CHECK(fabs(back[i].re - x[i].re) + fabs(back[i].im - x[i].im) < QuarnFloat(2, -39));
  }
}

TEST_CASE("lengths and digits that are not supported") {
  const support::Digits scope(20);
  for (const Integer n : {Integer(0), Integer(-1), Integer(-2147483647), Integer(2147483647)}) {
    CHECK(!QuarnTransform::is_supported(n, 20));
    CHECK_THROWS_AS(QuarnTransform{n}, std::invalid_argument);
    CHECK(!QuarnTransformRows(false, nullptr, n, 1, 1, 1));
  }
  CHECK(QuarnTransform::is_supported(1 << 20, 1000));
  CHECK(!QuarnTransform::is_supported(8, 2000));
}

TEST_CASE("the same digits on every platform") {
  std::string digests;
  for (const auto& [n, digits] : {std::pair<Integer, int>{64, 20}, {60, 50}, {37, 100}, {16, 333}, {31, 75}}) {
    const support::Digits scope(digits);
    digests += std::to_string(digest(transformed(false, random_sequence(n, digits, 5, kSeed)))) + " ";
  }
  CHECK(digests ==
        "18114006401187159541 12838744247863836019 3401518373867911184 8019517632480708534 9569428758003278267 ");
}

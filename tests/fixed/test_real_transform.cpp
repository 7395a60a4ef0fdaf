#include <doctest/doctest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "quarn/realtransform.h"
#include "support/digits.h"

namespace {

using Kind = QuarnRealTransform::Kind;
using Numbers = std::vector<QuarnFloat>;

constexpr unsigned kSeed = 20261122;
constexpr Kind kKinds[] = {Kind::dct1, Kind::dct2, Kind::dct3, Kind::dct4,        Kind::dst1,
                           Kind::dst2, Kind::dst3, Kind::dst4, Kind::to_spectrum, Kind::from_spectrum};
constexpr QuarnDivisor kDivisors[] = {QuarnDivisor::one, QuarnDivisor::root, QuarnDivisor::length};

Numbers random_numbers(std::size_t count, int digits, int spread, unsigned seed) {
  std::mt19937_64 random(seed);
  Numbers x;
  for (std::size_t i = 0; i < count; ++i) {
    std::string text = random() % 2 == 0 ? "-0." : "0.";
    for (int digit = 0; digit < digits; ++digit) {
      text += char('0' + random() % 10);
    }
    x.emplace_back(text + "e-" + std::to_string(spread == 0 ? 0 : int(random() % unsigned(spread))));
  }
  return x;
}

/// Spectra as their parts, one after another.
std::size_t count_before(Kind kind, Integer n) { return std::size_t(kind == Kind::from_spectrum ? n / 2 * 2 + 2 : n); }
std::size_t count_after(Kind kind, Integer n) { return std::size_t(kind == Kind::to_spectrum ? n / 2 * 2 + 2 : n); }

Numbers transformed(const QuarnRealTransform& plan, const Numbers& x, QuarnDivisor divisor) {
  const Integer n = plan.length();
  Numbers y(count_after(plan.kind(), n));
  std::vector<Complex> z(std::size_t(n / 2 + 1));
  if (plan.kind() == Kind::to_spectrum) {
    plan.run(x.data(), 1, z.data(), 1, divisor);
    for (std::size_t k = 0; k < z.size(); ++k) {
      y[2 * k] = z[k].re;
      y[2 * k + 1] = z[k].im;
    }
  } else if (plan.kind() == Kind::from_spectrum) {
    for (std::size_t k = 0; k < z.size(); ++k) {
      z[k] = Complex(x[2 * k], x[2 * k + 1]);
    }
    plan.run(z.data(), 1, y.data(), 1, divisor);
  } else {
    plan.run(x.data(), 1, y.data(), 1, divisor);
  }
  return y;
}

Integer logical_length(Kind kind, Integer n) {
  switch (kind) {
    case Kind::to_spectrum:
    case Kind::from_spectrum:
      return n;
    case Kind::dct1:
      return 2 * (n - 1);
    case Kind::dst1:
      return 2 * (n + 1);
    default:
      return 2 * n;
  }
}

/// How often element m of the data counts in result k, before it is divided.
QuarnFloat weight(Kind kind, std::int64_t k, std::int64_t m, std::int64_t n, const QuarnFloat& pi) {
  const auto twice_cos = [&](std::int64_t a, std::int64_t b) { return 2 * cos(pi * a / b); };
  const auto twice_sin = [&](std::int64_t a, std::int64_t b) { return 2 * sin(pi * a / b); };
  switch (kind) {
    case Kind::dct1:
      return m == 0 ? 1 : m == n - 1 ? (k % 2 == 0 ? 1 : -1) : twice_cos(k * m, n - 1);
    case Kind::dct2:
      return twice_cos(k * (2 * m + 1), 2 * n);
    case Kind::dct3:
      return m == 0 ? 1 : twice_cos((2 * k + 1) * m, 2 * n);
    case Kind::dct4:
      return twice_cos((2 * k + 1) * (2 * m + 1), 4 * n);
    case Kind::dst1:
      return twice_sin((k + 1) * (m + 1), n + 1);
    case Kind::dst2:
      return twice_sin((k + 1) * (2 * m + 1), 2 * n);
    case Kind::dst3:
      return m == n - 1 ? (k % 2 == 0 ? 1 : -1) : twice_sin((2 * k + 1) * (m + 1), 2 * n);
    case Kind::dst4:
      return twice_sin((2 * k + 1) * (2 * m + 1), 4 * n);
    default:
      return {};
  }
}

/// The same for spectra.
QuarnFloat spectrum_weight(Kind kind, std::int64_t k, std::int64_t m, std::int64_t n, const QuarnFloat& pi) {
  const std::int64_t number = kind == Kind::to_spectrum ? k / 2 : m / 2;
  const std::int64_t index = kind == Kind::to_spectrum ? m : k;
  const bool imaginary = (kind == Kind::to_spectrum ? k : m) % 2 == 1;
  const bool alone = number == 0 || 2 * number == n;
  if (imaginary && alone) {
    return {};
  }
  const QuarnFloat angle = 2 * pi * (number * index % n) / n;
  const QuarnFloat value = imaginary ? -sin(angle) : cos(angle);
  return kind == Kind::from_spectrum && !alone ? 2 * value : value;
}

/// In orthogonal transforms, the element without a partner.
bool is_alone(Kind kind, std::int64_t i, std::int64_t n) {
  return (kind == Kind::dct1 && (i == 0 || i == n - 1)) || ((kind == Kind::dct2 || kind == Kind::dct3) && i == 0) ||
         ((kind == Kind::dst2 || kind == Kind::dst3) && i == n - 1);
}

/// The sums of the definition, at the working digits.
Numbers by_definition(Kind kind, const Numbers& x, Integer n, QuarnDivisor divisor) {
  const QuarnFloat pi = 4 * atan(QuarnFloat(1));
  const QuarnFloat length = logical_length(kind, n);
  const bool orthogonal = divisor == QuarnDivisor::root;
  const bool spectrum = kind == Kind::to_spectrum || kind == Kind::from_spectrum;
  Numbers y;
  for (std::size_t k = 0; k < count_after(kind, n); ++k) {
    QuarnFloat sum;
    for (std::size_t m = 0; m < x.size(); ++m) {
      const auto row = std::int64_t(k);
      const auto column = std::int64_t(m);
      QuarnFloat term = x[m] * (spectrum ? spectrum_weight : weight)(kind, row, column, n, pi);
      if (orthogonal && kind != Kind::dct2 && kind != Kind::dst2 && is_alone(kind, column, n)) {
        term *= sqrt(QuarnFloat(2));
      }
      sum += term;
    }
    if (orthogonal && kind != Kind::dct3 && kind != Kind::dst3 && is_alone(kind, std::int64_t(k), n)) {
      sum /= sqrt(QuarnFloat(2));
    }
    y.push_back(divisor == QuarnDivisor::one ? sum : sum / (orthogonal ? sqrt(length) : length));
  }
  return y;
}

/// Results outside of the documented bound: a quarter of 10^-D M sqrt(N) / divisor, and half a unit of the result.
int wrong_results(Kind kind, Integer n, int digits, int spread, QuarnDivisor divisor) {
  const support::Digits scope(digits);
  const Numbers x = random_numbers(count_before(kind, n), digits, spread, kSeed + unsigned(n));
  const Numbers y = transformed(QuarnRealTransform(kind, n), x, divisor);
  QuarnSetDigits(digits + 40);
  const Numbers exact = by_definition(kind, x, n, divisor);
  QuarnFloat largest;
  for (const QuarnFloat& value : x) {
    largest = fabs(value) > largest ? fabs(value) : largest;
  }
  const QuarnFloat length = logical_length(kind, n);
  const QuarnFloat scale = divisor == QuarnDivisor::one    ? sqrt(length)
                           : divisor == QuarnDivisor::root ? QuarnFloat(1)
                                                           : 1 / sqrt(length);
  int wrong = 0;
  for (std::size_t k = 0; k < y.size(); ++k) {
    const QuarnFloat unit =
        exact[k] == QuarnFloat() ? exact[k] : pow(QuarnFloat(10), floor(log10(fabs(exact[k]))) + 1 - digits);
    wrong += !(fabs(y[k] - exact[k]) <= largest * scale * QuarnFloat(1, -digits) / 4 + unit / 2);
  }
  return wrong;
}

void check(Kind kind, Integer n, int digits, int spread, QuarnDivisor divisor) {
  if (kind == Kind::dct1 && n < 2) {
    return;
  }
  CAPTURE(int(kind));
  CAPTURE(n);
  CAPTURE(digits);
  CAPTURE(int(divisor));
  CAPTURE(kSeed);
  CHECK(wrong_results(kind, n, digits, spread, divisor) == 0);
}

}  // namespace

TEST_CASE("real transforms against the definition") {
  unsigned count = 0;
  for (const Kind kind : kKinds) {
    for (const Integer n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 17, 21, 23, 24, 30, 37, 64, 73, 74}) {
      for (const QuarnDivisor divisor : kDivisors) {
        check(kind, n, (++count % 2 == 0) ? 20 : 50, 0, divisor);
      }
    }
    for (const int digits : {1, 2, 17, 18, 19, 36, 37, 71, 126, 127, 333}) {
      check(kind, 12, digits, 40, kDivisors[++count % 3]);
    }
    check(kind, 10, 1000, 0, QuarnDivisor::root);
  }
}

TEST_CASE("one transform undoes the other") {
  const struct {
    Kind there;
    Kind back;
  } pairs[] = {{Kind::dct1, Kind::dct1},
               {Kind::dct2, Kind::dct3},
               {Kind::dct4, Kind::dct4},
               {Kind::dst1, Kind::dst1},
               {Kind::dst2, Kind::dst3},
               {Kind::dst4, Kind::dst4},
               {Kind::to_spectrum, Kind::from_spectrum}};
  const support::Digits scope(40);
  for (const Integer n : {2, 3, 8, 365, 730}) {
    const Numbers x = random_numbers(std::size_t(n), 40, 0, kSeed);
    for (const auto& pair : pairs) {
      const Kind there = pair.there;
      const Kind back = pair.back;
      for (const bool orthogonal : {false, true}) {
        const Numbers y =
            transformed(QuarnRealTransform(there, n), x, orthogonal ? QuarnDivisor::root : QuarnDivisor::one);
        const Numbers z =
            transformed(QuarnRealTransform(back, n), y, orthogonal ? QuarnDivisor::root : QuarnDivisor::length);
        QuarnFloat largest;
        for (std::size_t i = 0; i < x.size(); ++i) {
          largest = fabs(z[i] - x[i]) > largest ? fabs(z[i] - x[i]) : largest;
        }
        CAPTURE(n);
        CAPTURE(int(there));
        CHECK(largest < QuarnFloat(3, -39));
      }
    }
  }
}

TEST_CASE("zeros, impulses, special numbers, ends of the exponents, strides and results in place of the data") {
  const support::Digits scope(30);
  for (const Integer n : {2, 7, 12, 37, 74}) {
    CAPTURE(n);
    for (const Kind kind : kKinds) {
      CAPTURE(int(kind));
      const QuarnRealTransform plan(kind, n);
      for (const QuarnFloat& y : transformed(plan, Numbers(count_before(kind, n), -QuarnFloat()), QuarnDivisor::one)) {
        CHECK(y == QuarnFloat());
        CHECK(!signbit(y));
      }
      for (const char* special : {"nan", "inf", "-inf"}) {
        for (std::size_t place = 0; place < std::size_t(n); place += 3) {
          Numbers x = random_numbers(count_before(kind, n), 30, 0, kSeed);
          if (kind != Kind::from_spectrum || place != 1) {
            x[place] = QuarnFloat(special);
            for (const QuarnFloat& y : transformed(plan, x, QuarnDivisor::root)) {
              CHECK(isnan(y));
            }
          }
        }
      }
      // One scale for all: the same digits at either end of the exponents.
      const Numbers x = random_numbers(count_before(kind, n), 30, 5, kSeed);
      const Numbers y = transformed(plan, x, QuarnDivisor::root);
      for (const int exponent : {-999'999'900, 999'999'900}) {
        Numbers scaled = x;
        for (QuarnFloat& value : scaled) {
          value *= QuarnFloat(1, exponent);
        }
        const Numbers results = transformed(plan, scaled, QuarnDivisor::root);
        for (std::size_t k = 0; k < y.size(); ++k) {
          CHECK(results[k] == y[k] * QuarnFloat(1, exponent));
        }
      }
      if (kind != Kind::to_spectrum && kind != Kind::from_spectrum) {
        Numbers spread(3 * x.size(), QuarnFloat(7));
        for (std::size_t i = 0; i < x.size(); ++i) {
          spread[3 * i] = x[i];
        }
        QuarnSetDigits(60);
        plan.run(spread.data(), 3, spread.data(), 3);
        QuarnSetDigits(30);
        for (std::size_t i = 0; i < x.size(); ++i) {
          CHECK(spread[3 * i] == y[i]);
          CHECK(spread[3 * i + 1] == QuarnFloat(7));
        }
      }
    }
    Numbers impulse(static_cast<std::size_t>(n));
    impulse[0] = -3;
    const Numbers z = transformed(QuarnRealTransform(Kind::to_spectrum, n), impulse, QuarnDivisor::one);
    for (std::size_t k = 0; k < z.size(); ++k) {
      CHECK(z[k] == QuarnFloat(k % 2 == 0 ? -3 : 0));
    }
  }
}

TEST_CASE("the spectrum is that of the complex transform, whose numbers 0 and n / 2 are real") {
  const support::Digits scope(25);
  for (const Integer n : {9, 10, 16, 59, 118}) {
    const Numbers x = random_numbers(std::size_t(n), 25, 2, kSeed);
    const Numbers parts = transformed(QuarnRealTransform(Kind::to_spectrum, n), x, QuarnDivisor::length);
    std::vector<Complex> z;
    for (const QuarnFloat& value : x) {
      z.emplace_back(value, QuarnFloat());
    }
    QuarnTransform(n).forward(z.data(), 1, QuarnDivisor::length);
    for (std::size_t k = 0; k < std::size_t(n / 2 + 1); ++k) {
      CHECK(fabs(parts[2 * k] - z[k].re) < QuarnFloat(1, -25));
      CHECK(fabs(parts[2 * k + 1] - z[k].im) < QuarnFloat(1, -25));
    }
    CHECK(parts[1] == QuarnFloat());
    CHECK((n % 2 == 1 || parts[std::size_t(n + 1)] == QuarnFloat()));
  }
}

TEST_CASE("symmetries of the data make exact zeros") {
  const support::Digits scope(25);
  for (const Integer n : {2, 3, 8, 9, 37, 74}) {
    CAPTURE(n);
    const Numbers x = random_numbers(std::size_t(n), 25, 2, kSeed);
    for (const int sign : {1, -1}) {
      Numbers periodic = x;
      Numbers reversible = x;
      for (std::size_t j = 0; j < x.size(); ++j) {
        periodic[j] += sign * x[(x.size() - j) % x.size()];
        reversible[j] += sign * x[x.size() - 1 - j];
      }
      const auto zeros = [sign](const Numbers& y) {
        std::size_t count = 0;
        for (std::size_t i = sign == 1 ? 1 : 0; i < y.size(); i += 2) {
          count += y[i] == QuarnFloat();
        }
        return count;
      };
      CHECK(zeros(transformed(QuarnRealTransform(Kind::to_spectrum, n), periodic, QuarnDivisor::one)) ==
            std::size_t(n / 2 + 1));
      for (const Kind kind : {Kind::dct1, Kind::dct2, Kind::dst1, Kind::dst2}) {
        const std::size_t expected = std::size_t(sign == 1 ? n / 2 : (n + 1) / 2);
        CHECK(zeros(transformed(QuarnRealTransform(kind, n), reversible, QuarnDivisor::root)) == expected);
      }
      // Others are no zeros.
      CHECK(zeros(transformed(QuarnRealTransform(Kind::dct2, n), x, QuarnDivisor::one)) == 0);
    }
  }
}

TEST_CASE("zeros in every second place make exact symmetries") {
  const support::Digits scope(25);
  for (const Integer n : {2, 3, 8, 9, 37, 74}) {
    for (const std::size_t kept : {std::size_t(0), std::size_t(1)}) {
      const QuarnFloat sign = kept == 0 ? 1 : -1;
      for (const Kind kind : {Kind::from_spectrum, Kind::dct1, Kind::dct3, Kind::dst1, Kind::dst3}) {
        CAPTURE(n);
        CAPTURE(int(kind));
        const bool is_spectrum = kind == Kind::from_spectrum;
        const QuarnRealTransform plan(kind, n);
        Numbers x = random_numbers(is_spectrum ? std::size_t(2 * (n / 2 + 1)) : std::size_t(n), 25, 2, kSeed);
        const Numbers general = transformed(plan, x, QuarnDivisor::root);
        for (std::size_t i = 1 - kept; i < x.size(); i += 2) {
          x[i] = QuarnFloat();
        }
        const Numbers y = transformed(plan, x, QuarnDivisor::root);
        bool mirrored = true;
        bool any_mirrored = true;
        for (std::size_t i = is_spectrum ? 1 : 0; i < y.size(); ++i) {
          const std::size_t j = y.size() - (is_spectrum ? 0 : 1) - i;
          mirrored = mirrored && y[i] == sign * y[j];
          any_mirrored = any_mirrored && general[i] == sign * general[j];
        }
        CHECK(mirrored);
        CHECK((!any_mirrored || y.size() < 3));
        if (is_spectrum && kept == 1) {
          CHECK(y[0] == QuarnFloat());
        }
      }
    }
  }
}

TEST_CASE("real transforms that are not supported") {
  CHECK(!QuarnRealTransform::is_supported(Kind::dct1, 1, 20));
  CHECK(!QuarnRealTransform::is_supported(Kind::dct2, 0, 20));
  CHECK(!QuarnRealTransform::is_supported(Kind::dct2, 100, 1101));
  CHECK(!QuarnRealTransform::is_supported(Kind::to_spectrum, 2147483647, 20));
  CHECK_THROWS_AS(QuarnRealTransform(Kind::dct1, 1), std::invalid_argument);
}

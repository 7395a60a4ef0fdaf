#include <doctest/doctest.h>

#include "complex_sample.h"
#include "src/fft/complex_cores.h"
#include "src/fft/complex_passes.h"
#include "support/digits.h"

using sample::ComplexSequence;
using sample::kSingleEntries;
using sample::largest_difference;
using sample::random_complex;
using sample::transformed;

namespace {

/// Every pass alone, first, last and between others; last passes of general radix and ones that are not last.
const std::vector<Integer> kLengths = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,  12,  15,  16,  20,  21,  25,
                                       27, 28, 30, 35, 49, 60, 61, 64, 67, 77, 121, 122, 128, 210, 343, 360, 500};

/// Rounding errors of a transform of length n, generously.
QuarnFloat tolerance(Integer n, const char* entry) {
  const bool capped = std::string(entry) == "classic" && QuarnDigits() > 15;
  return capped ? QuarnFloat(1, -14) : 40 * QuarnFloat(1, -QuarnDigits()) * sqrt(QuarnFloat(n));
}

QuarnFloat energy(const ComplexSequence& x) {
  QuarnFloat sum;
  for (const Complex& z : x) {
    sum += z.re * z.re + z.im * z.im;
  }
  return sum;
}

}  // namespace

TEST_CASE("there and back again, and the sum of squares") {
  for (const int digits : {6, 20, 50, 200}) {
    support::Digits scope(digits);
    for (const Integer n : digits <= 20 ? kLengths : std::vector<Integer>{30, 64, 122}) {
      for (const auto& entry : kSingleEntries) {
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(entry.name);
        const ComplexSequence x = random_complex(n, 1);
        const ComplexSequence z = transformed(entry.transform, "F", x);
        CHECK(largest_difference(transformed(entry.transform, "b", z), x) < tolerance(n, entry.name));
        CHECK(fabs(energy(z) - energy(x)) < tolerance(n, entry.name) * (1 + energy(x)));
      }
    }
  }
}

TEST_CASE("linear, and a real sequence has a Hermitian transform") {
  support::Digits scope(30);
  const Complex a(QuarnFloat("0.3"), QuarnFloat("-1.7"));
  for (const Integer n : kLengths) {
    for (const auto& entry : kSingleEntries) {
      CAPTURE(n);
      CAPTURE(entry.name);
      const ComplexSequence x = random_complex(n, 2);
      ComplexSequence combined = random_complex(n, 3);
      ComplexSequence real = x;
      ComplexSequence expected = transformed(entry.transform, "f", combined);
      const ComplexSequence z = transformed(entry.transform, "F", x);
      for (std::size_t i = 0; i < x.size(); ++i) {
        combined[i] = combined[i] + a * x[i];
        expected[i] = expected[i] + a * z[i];
        real[i].im = 0;
      }
      CHECK(largest_difference(transformed(entry.transform, "F", combined), expected) < 3 * tolerance(n, "companion"));

      const ComplexSequence hermitian = transformed(entry.transform, "B", real);
      ComplexSequence mirrored = {conj(hermitian[0])};
      for (std::size_t i = hermitian.size() - 1; i > 0; --i) {
        mirrored.push_back(conj(hermitian[i]));
      }
      CHECK(largest_difference(mirrored, hermitian) < tolerance(n, entry.name));
    }
  }
}

TEST_CASE("a spike at element p gives the p-th powers of the roots of unity") {
  support::Digits scope(40);
  const QuarnFloat two_pi = 2 * QuarnEvalf1("acos", -1);
  for (const Integer n : kLengths) {
    for (const auto& entry : kSingleEntries) {
      const Integer p = n / 3;
      CAPTURE(n);
      CAPTURE(entry.name);
      ComplexSequence x(static_cast<std::size_t>(n));
      x[std::size_t(p)].re = sqrt(QuarnFloat(n));
      ComplexSequence powers;
      for (Integer k = 0; k < n; ++k) {
        const QuarnFloat angle = two_pi * (std::int64_t(p) * k % n) / n;
        powers.emplace_back(cos(angle), -sin(angle));
      }
      CHECK(largest_difference(transformed(entry.transform, "F", x), powers) < tolerance(n, entry.name));
    }
  }
}

TEST_CASE("zeros of the result carry no sign") {
  support::Digits scope(20);
  for (const char* direct : {"F", "B"}) {
    for (const Integer n : {1, 2, 4, 6, 14, 16}) {
      ComplexSequence x(static_cast<std::size_t>(n));
      x[0].re = -1;
      for (const Complex& z : transformed(QuarnMPX_c06pcf_, direct, x)) {
        CHECK(z.re < 0);
        CHECK(z.im == 0);
        CHECK(!signbit(z.im));
      }
    }
  }
}

TEST_CASE("length 1: the data stay, the table is 1") {
  for (const auto& entry : kSingleEntries) {
    Complex x(QuarnFloat(3), QuarnFloat(-4));
    ComplexSequence work = sample::junk(2);
    Integer n = 1;
    Integer ifail = 0;
    entry.transform("B", &x, &n, work.data(), &ifail, 1);
    CHECK(ifail == 0);
    CHECK(x == Complex(3.0, -4.0));
    CHECK(work[0] == Complex(1.0, 0.0));
  }
}

TEST_CASE("entries without checks do the same, and tell what they cannot do") {
  support::Digits scope(25);
  for (const Integer n : {1, 12, 14, 67}) {
    const ComplexSequence x = random_complex(n, 4);
    const ComplexSequence classic = transformed(QuarnMP_c06pcf_, "B", x);
    const ComplexSequence full = transformed(QuarnMPX_c06pcf_, "B", x);
    ComplexSequence work = sample::junk(2 * std::int64_t(n));
    const auto check = [&](const ComplexSequence& expected, const auto& call) {
      ComplexSequence y = x;
      Integer status = -1;
      call(y.data(), &status);
      CHECK(status == 0);
      CHECK(y == expected);
    };
    check(classic, [&](Complex* y, Integer* status) { QuarnMP_c06pcqn_("B", y, n, work.data(), status, 1); });
    check(full, [&](Complex* y, Integer* status) { QuarnMPX_c06pcqn_("B", y, n, work.data(), status, 1); });
    check(classic, [&](Complex* y, Integer* status) { QuarnMP_c06pczn_("b", n, y, work.data(), status, 1); });
    check(full, [&](Complex* y, Integer* status) { QuarnMPX_c06pczn_("b", n, y, work.data(), status, 1); });
  }
  for (const Integer n : {0, -1, -2147483647 - 1}) {
    Integer status = 0;
    QuarnMP_c06pcqn_("F", nullptr, n, nullptr, &status, 1);
    CHECK(status == Integer(tesk::Status::bad_argument));
    status = 0;
    QuarnMPX_c06pczn_("F", n, nullptr, nullptr, &status, 1);
    CHECK(status == Integer(tesk::Status::bad_argument));
  }
  // Nothing but B and b is backward.
  const ComplexSequence x = random_complex(6, 5);
  ComplexSequence y = x;
  ComplexSequence work(12);
  Integer status = -1;
  QuarnMP_c06pcqn_("Q", y.data(), 6, work.data(), &status, 1);
  CHECK(y == transformed(QuarnMP_c06pcf_, "F", x));
}

TEST_CASE("the passes one by one, by the table that a transform leaves") {
  support::Digits scope(30);
  struct Row {
    Integer radix;
    void (*classic)(Integer, Integer, const Complex*, Complex*, const Complex*);
    void (*full)(Integer, Integer, const Complex*, Complex*, const Complex*);
  };
  const Row rows[] = {{2, QuarnMP_c06ncvn_, QuarnMP_c06ncvn_},
                      {3, QuarnMP_c06ncun_, QuarnMPX_c06ncun_},
                      {4, QuarnMP_c06nctn_, QuarnMP_c06nctn_},
                      {5, QuarnMP_c06ncsn_, QuarnMPX_c06ncsn_}};
  for (const Row& row : rows) {
    for (const bool full : {false, true}) {
      CAPTURE(row.radix);
      CAPTURE(full);
      // A last pass of radix r over r blocks after a first one makes the whole transform of length r r.
      const Integer n = row.radix * row.radix;
      const ComplexSequence x = random_complex(n, 6);
      ComplexSequence table(static_cast<std::size_t>(n));
      tesk::ComplexFactors factors;
      factors.count = 2;
      factors.factor[0] = factors.factor[1] = row.radix;
      tesk::make_table(table.data(), n, factors, (full ? tesk::kFullEngine : tesk::kClassicEngine).constants);
      const auto pass = full ? row.full : row.classic;
      ComplexSequence between = sample::junk(n);
      ComplexSequence y = sample::junk(n);
      pass(row.radix, 1, x.data(), between.data(), table.data());
      pass(1, row.radix, between.data(), y.data(), table.data());
      for (Complex& z : y) {
        z = Complex(z.re / row.radix, z.im / row.radix);
      }
      CHECK(largest_difference(y, transformed(full ? QuarnMPX_c06pcf_ : QuarnMP_c06pcf_, "F", x)) <
            QuarnFloat(1, full ? -28 : -14));
    }
    for (const Integer none : {0, -1, -2147483647 - 1}) {
      row.classic(none, 3, nullptr, nullptr, nullptr);
      row.full(3, none, nullptr, nullptr, nullptr);
    }
  }
}

TEST_CASE("the sequence of passes: any order of the factors, and nothing for a list that does not fit") {
  support::Digits scope(30);
  const ComplexSequence x = random_complex(84, 7);
  const ComplexSequence z = transformed(QuarnMPX_c06pcf_, "F", x);
  const ComplexSequence classic = transformed(QuarnMP_c06pcf_, "F", x);
  const tesk::ComplexFactors factors = tesk::factorize_complex(84);
  ComplexSequence scratch = sample::junk(84);
  for (const std::vector<Integer>& list :
       {std::vector<Integer>{4, 3, 7}, {7, 4, 3}, {3, 7, 4}, {2, 1, 7, 3, 2}, {21, 4}, {4, 21}}) {
    ComplexSequence table(84);
    tesk::ComplexFactors given;
    given.count = Integer(list.size());
    std::copy(list.begin(), list.end(), given.factor.begin());
    tesk::make_table(table.data(), 84, given, tesk::kFullEngine.constants);
    ComplexSequence y = x;
    QuarnMPX_c06ncwn_(84, y.data(), scratch.data(), table.data(), given.count, list.data());
    CHECK(largest_difference(y, z) < QuarnFloat(1, -28));
  }
  ComplexSequence table(84);
  tesk::make_table(table.data(), 84, factors, tesk::kClassicEngine.constants);
  ComplexSequence y = x;
  QuarnMP_c06ncwn_(84, y.data(), scratch.data(), table.data(), factors.count, factors.factor.data());
  CHECK(y == classic);

  for (const std::vector<Integer>& list :
       {std::vector<Integer>{}, {84}, {6, 14}, {4, 3}, {4, 3, 7, 2}, {5, 4, 3}, {0}, {-4, -3, 7}, {4, 3, 7, 0}}) {
    y = x;
    QuarnMP_c06ncwn_(84, y.data(), nullptr, nullptr, Integer(list.size()), list.data());
    QuarnMPX_c06ncwn_(84, y.data(), nullptr, nullptr, Integer(list.size()), list.data());
    CHECK(y == x);
  }
}

TEST_CASE("classic and companion agree to the digits of the double constants, and to no more") {
  support::Digits scope(60);
  for (const Integer n : kLengths) {
    const ComplexSequence x = random_complex(n, 8);
    const QuarnFloat difference =
        largest_difference(transformed(QuarnMP_c06pcf_, "F", x), transformed(QuarnMPX_c06pcf_, "F", x));
    CAPTURE(n);
    CHECK(difference < QuarnFloat(1, -14));
    CHECK((n == 1 || n == 2 || n == 4 ? difference < QuarnFloat(1, -57) : difference > QuarnFloat(1, -20)));
  }
}

TEST_CASE("large primes: sums and convolutions give the same") {
  support::Digits scope(25);
  // The length before is smooth (127, 257), has a large factor itself (107, 167), or the prime is one of several.
  for (const Integer n : {59, 61, 67, 101, 107, 127, 167, 257, 2 * 107, 61 * 3, 67 * 67}) {
    CAPTURE(n);
    const ComplexSequence x = random_complex(n, 9);
    const ComplexSequence z = transformed(QuarnMPX_c06pcf_, "F", x);
    ComplexSequence y = x;
    ComplexSequence work(2 * x.size());
    const tesk::Engine engine{tesk::Constants(tesk::Accuracy::classic)};
    REQUIRE(engine.transform(false, y.data(), {1, n, 1}, work.data()) == tesk::Status::ok);
    CHECK(largest_difference(y, z) < QuarnFloat(1, -13));
    // The passes, which the companion makes at very many digits only.
    const tesk::Engine passes{tesk::Constants(tesk::Accuracy::full), tesk::kTooManyFactors, false};
    y = x;
    REQUIRE(passes.transform(false, y.data(), {1, n, 1}, work.data()) == tesk::Status::ok);
    CHECK(largest_difference(y, z) < QuarnFloat(1, -22));
  }
}

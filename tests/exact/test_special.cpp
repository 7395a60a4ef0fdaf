// What random data does not meet: ties, cancellation, exponents at both ends, infinities, NaN, signed zeros, and
// callers with a floating-point environment of their own.
#include <doctest/doctest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <limits>

#include "exact/samples.h"

using exact_test::Restore;
using support::Random;

namespace {

std::string dot(std::initializer_list<const char*> a, std::initializer_list<const char*> b) {
  const int digits = QuarnSetDigits(2000);
  const std::vector<QuarnFloat> x(a.begin(), a.end());
  const std::vector<QuarnFloat> y(b.begin(), b.end());
  QuarnSetDigits(digits);
  return QuarnDot(x.size(), x.data(), 1, y.data(), 1).to_string();
}

}  // namespace

TEST_CASE("ties, cancellation and far exponents") {
  const Restore restore;
  QuarnSetDigits(3);
  CHECK(dot({"1", "1"}, {"1.24", "0.005"}) == "1.24");
  CHECK(dot({"1", "1"}, {"1.23", "0.005"}) == "1.24");
  CHECK(dot({"1", "1", "1"}, {"1.24", "0.005", "1e-900000000"}) == "1.25");
  CHECK(dot({"1", "-1", "1"}, {"1.24", "1e-900000000", "0.005"}) == "1.24");
  CHECK(dot({"1", "-1", "1"}, {"1.23", "1e-900000000", "0.005"}) == "1.23");
  CHECK(dot({"1", "-1"}, {"1", "1e-900000000"}) == "1");
  CHECK(dot({"1e999999999", "1", "-1e999999999"}, {"1e999999999", "7", "1e999999999"}) == "7");
  CHECK(dot({"1e500000000", "1", "-1e500000000"}, {"1", "7", "1"}) == "7");
  CHECK(dot({"1e500000000", "1e-999999999", "-1e500000000"}, {"1", "-7", "1"}) == "-7e-999999999");
  CHECK(dot({"1e-600000000", "1e-999999999"}, {"1e-600000000", "1"}) == "1e-999999999");
  CHECK(dot({"1e600000000"}, {"1e600000000"}) == "inf");
  CHECK(dot({"-1e-600000000"}, {"1e-600000000"}) == "-0");
  CHECK(dot({"3", "-1"}, {"0.1", "0.3"}) == "0");
  CHECK(dot({}, {}) == "0");
  QuarnSetDigits(50);
  CHECK(dot({"1", "1", "1"}, {"1e60", "1e10", "-1e60"}) == "10000000000");
  CHECK(dot({"1", "1", "1", "1"}, {"1e900", "1e-900", "-1e900", "1e-1000"}).substr(0, 3) == "1e-");
}

TEST_CASE("sums next to ties and powers of ten, with what cancels") {
  const Restore restore;
  Random random;
  for (int round = 0; round < 3000; ++round) {
    const int digits = int(random.between(1, 130));
    const std::size_t most = random.once_in(10) ? 300 : 6;
    QuarnSetDigits(digits);
    std::vector<QuarnFloat> a;
    std::vector<QuarnFloat> b;
    const auto add = [&](const QuarnFloat& x, const QuarnFloat& y) {
      a.push_back(x);
      b.push_back(y);
    };
    // A result, half a unit of its last place or of the place behind, and a little.
    const std::string last = std::to_string(-digits - int(random.below(2)));
    add(QuarnFloat(random.once_in(2) ? "1" : ("0.9" + random.digits(std::size_t(digits) - 1)).c_str()), 1);
    add(random.once_in(2) ? QuarnFloat(-1) : QuarnFloat(1), QuarnFloat("5e" + last));
    add(random.once_in(2) ? QuarnFloat(-1) : QuarnFloat(1), QuarnFloat("1e-" + std::to_string(random.below(200))));
    const std::size_t pairs = random.below(most);
    for (std::size_t p = 0; p < pairs; ++p) {
      const QuarnFloat x = exact_test::number(random, digits, random.once_in(2) ? 4 : 60);
      const QuarnFloat y = exact_test::number(random, digits, 4);
      add(x, y);
      add(-x, y);
    }
    for (std::size_t l = a.size(); l-- > 1;) {
      const std::size_t other = random.below(l + 1);
      std::swap(a[l], a[other]);
      std::swap(b[l], b[other]);
    }
    const QuarnFloat got = QuarnDot(a.size(), a.data(), 1, b.data(), 1);
    QuarnSetDigits(2 * digits + 500);
    QuarnFloat sum;
    for (std::size_t l = 0; l < a.size(); ++l) {
      sum += a[l] * b[l];
    }
    QuarnSetDigits(digits);
    INFO("digits " << digits << ", round " << round << ", terms " << a.size());
    CHECK(got == sum * QuarnFloat(1));
  }
}

TEST_CASE("infinities, NaN and signed zeros follow the extended reals, at every place and with every kernel") {
  const Restore restore;
  Random random;
  const double infinity = std::numeric_limits<double>::infinity();
  const double values[] = {0.0, -0.0, 1, -1, infinity, -infinity, std::nan(""), 2, 3, -2};
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    for (int round = 0; round < 60; ++round) {
      const std::size_t n = 1 + random.below(12);
      const std::size_t k = 1 + random.below(6);
      // Mostly zeros or mostly ordinary numbers, so that special results are neither all nor none.
      const std::uint64_t kinds = random.once_in(3) ? 2 : random.once_in(2) ? 4 : 10;
      const auto make = [&](std::vector<double>& plain, std::vector<QuarnFloat>& numbers, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
          const bool rare = random.once_in(10);
          plain.push_back(values[rare ? random.below(10) : random.below(std::min<std::uint64_t>(kinds, 4))]);
          numbers.emplace_back(plain.back());
        }
      };
      std::vector<double> pa, pb, pc;
      std::vector<QuarnFloat> a, b, c;
      make(pa, a, n * k);
      make(pb, b, k * n);
      make(pc, c, n * n);
      const double alphas[] = {1, -1, 2, infinity};
      const double alpha = alphas[random.below(4)];
      const double beta = random.once_in(3) ? 0 : random.once_in(2) ? 1 : -3;
      const std::ptrdiff_t step = std::ptrdiff_t(n);
      QuarnMatrixProduct(n, n, k, alpha, {a.data(), 1, step}, {b.data(), std::ptrdiff_t(1), std::ptrdiff_t(k)}, beta,
                         {c.data(), 1, step});
      int wrong = 0;
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
          // Small whole numbers: doubles do not round, and alpha of each term is alpha of the sum.
          double sum = beta == 0 ? 0 : beta * pc[i + j * n];
          for (std::size_t l = 0; l < k; ++l) {
            sum += alpha * pa[i + l * n] * pb[l + j * k];
          }
          const QuarnFloat& got = c[i + j * n];
          const bool same = std::isnan(sum) ? isnan(got) : QuarnFloat(sum) == got && std::signbit(sum) == signbit(got);
          wrong += int(!same);
        }
      }
      INFO("kernel " << kernel << ", alpha " << alpha << ", beta " << beta);
      CHECK(wrong == 0);
    }
  }
}

TEST_CASE("old values of zero become NaN by an infinite factor or a NaN") {
  const Restore restore;
  for (const char* kernel : {"none", "sse2", "best"}) {
    QuarnExactKernel(kernel);
    for (const int digits : {2, 20, 333}) {
      QuarnSetDigits(digits);
      for (const char* beta : {"nan", "inf", "-inf"}) {
        for (const std::ptrdiff_t n : {1, 3, 20}) {
          const auto count = std::size_t(n);
          const std::vector<QuarnFloat> a(count * count, QuarnFloat(7));
          std::vector<QuarnFloat> c(count * count);
          QuarnMatrixProduct(count, count, count, 1, {a.data(), 1, n}, {a.data(), 1, n}, QuarnFloat(beta),
                             {c.data(), 1, n});
          CHECK(std::all_of(c.begin(), c.end(), [](const QuarnFloat& x) { return isnan(x); }));
        }
      }
    }
  }
}

TEST_CASE("nothing is read that counts for nothing") {
  const Restore restore;
  std::vector<QuarnFloat> c(4, QuarnFloat("nan"));
  QuarnMatrixProduct(2, 2, 0, QuarnFloat(1), {nullptr, 1, 1}, {nullptr, 1, 1}, QuarnFloat(), {c.data(), 1, 2});
  CHECK(c[3].to_string() == "0");
  c.assign(4, QuarnFloat("1.23456789"));
  QuarnSetDigits(3);
  QuarnMatrixProduct(2, 2, 5, QuarnFloat(), {nullptr, 1, 1}, {nullptr, 1, 1}, QuarnFloat(-1), {c.data(), 1, 2});
  CHECK(c[2].to_string() == "-1.23");
  QuarnMatrixProduct(0, 2, 5, QuarnFloat(1), {nullptr, 1, 1}, {nullptr, 1, 1}, QuarnFloat(), {nullptr, 1, 1});
}

TEST_CASE("the caller's rounding and precision of doubles do not matter, and stay") {
  const Restore restore;
  Random random(7);
  const std::size_t n = 32;
  QuarnSetDigits(50);
  std::vector<QuarnFloat> a(n * n);
  std::vector<QuarnFloat> b(n * n);
  for (std::size_t i = 0; i < n * n; ++i) {
    a[i] = exact_test::number(random, 50, 5);
    b[i] = exact_test::number(random, 50, 5);
  }
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    const auto product = [&] {
      std::vector<QuarnFloat> c(n * n);
      QuarnMatrixProduct(n, n, n, QuarnFloat(1), {a.data(), 1, n}, {b.data(), 1, n}, QuarnFloat(), {c.data(), 1, n});
      return c;
    };
    const std::vector<QuarnFloat> expected = product();
    std::fenv_t saved;
    std::fegetenv(&saved);
    for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
      std::fesetround(mode);
      const std::vector<QuarnFloat> got = product();
      const int after = std::fegetround();
      std::fesetenv(&saved);
      CHECK(after == mode);
      CHECK(got == expected);
    }
#if defined(__i386__) || defined(__x86_64__)
    // 24 bits, upwards; flush to zero, denormals are zero, upwards.
    const unsigned short narrow = 0x087F;
    const unsigned flush = 0x1F80 | 0x8040 | 0x4000;
    __asm__ volatile("fldcw %0" : : "m"(narrow));
    __asm__ volatile("ldmxcsr %0" : : "m"(flush));
    const std::vector<QuarnFloat> got = product();
    unsigned after = 0;
    __asm__ volatile("stmxcsr %0" : "=m"(after));
    std::fesetenv(&saved);
    CHECK((after & 0xFFC0U) == flush);
    CHECK(got == expected);
#endif
  }
}

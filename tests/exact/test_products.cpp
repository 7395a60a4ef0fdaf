// Products against the value of their formula at so many digits that nothing is rounded before the end: every kernel,
// digits from 1 to 1000, shapes, strides, spreads and scalars.
#include <doctest/doctest.h>

#include <cstdint>

#include "exact/samples.h"

using exact_test::conjugate;
using exact_test::entry;
using exact_test::number;
using exact_test::Restore;
using exact_test::rounded_to;
using exact_test::Sample;
using support::Random;

namespace {

/// 1 or -1, or any number of a few digits.
QuarnFloat scalar(Random& random, int digits) {
  QuarnSetDigits(digits);
  return random.once_in(2)   ? QuarnFloat(random.once_in(2) ? 1 : -1)
         : random.once_in(4) ? QuarnFloat()
                             : number(random, digits, 3);
}

constexpr int kDigits[] = {1, 2, 17, 18, 19, 20, 36, 50, 54, 90, 100, 125, 126, 200, 333, 1000};

}  // namespace

TEST_CASE("real products are the rounded exact values") {
  const Restore restore;
  Random random;
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    for (const int digits : kDigits) {
      for (int round = 0; round < (digits > 200 ? 2 : 8); ++round) {
        const bool thin = random.once_in(3);
        const std::size_t m = thin ? 1 + random.below(4) : 1 + random.below(digits > 200 ? 12 : 40);
        const std::size_t n = 1 + random.below(digits > 200 ? 12 : 40);
        const std::size_t k = 1 + random.below(thin ? 3 : digits > 200 ? 12 : 60);
        const int spreads[] = {0, 3, 40, 300, 2500};
        const int spread = spreads[random.below(5)];
        // Operands may have fewer or more digits than the result.
        const int of_a = 1 + int(random.below(std::uint64_t(2 * digits)));
        const int of_b = random.once_in(2) ? digits : 1 + int(random.below(std::uint64_t(digits)));
        Sample a(random, m, k, of_a, spread);
        Sample b(random, k, n, of_b, random.once_in(2) ? 3 : spread);
        Sample c(random, m, n, digits, spread);
        Sample before = c;
        const QuarnFloat alpha = scalar(random, digits);
        const QuarnFloat beta = scalar(random, digits);
        QuarnSetDigits(digits);
        QuarnMatrixProduct(m, n, k, alpha, std::as_const(a).view(), std::as_const(b).view(), beta, c.view());
        int wrong = 0;
        for (int sample = 0; sample < 40; ++sample) {
          const std::size_t i = random.below(m);
          const std::size_t j = random.below(n);
          QuarnSetDigits(6 * digits + 3 * spread + 100);
          QuarnFloat sum;
          for (std::size_t l = 0; l < k; ++l) {
            sum += a.at(i, l) * b.at(l, j);
          }
          sum = alpha * sum + (beta == 0 ? QuarnFloat() : beta * before.at(i, j));
          wrong += int(rounded_to(digits, sum) != c.at(i, j));
        }
        INFO("kernel " << kernel << ", digits " << digits << ", " << m << " x " << n << " x " << k << ", spread "
                       << spread);
        CHECK(wrong == 0);
      }
    }
  }
}

TEST_CASE("a long inner index and a row of huge spread among others") {
  const Restore restore;
  Random random;
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    const std::size_t m = 6;
    const std::size_t n = 5;
    const std::size_t k = 1500;  // more than a run of products
    Sample a(random, m, k, 20, 4);
    Sample b(random, k, n, 20, 4);
    QuarnSetDigits(20);
    for (std::size_t l = 0; l < k; ++l) {
      a.at(2, l) = QuarnFloat("0.99999999999999999999");
      a.at(4, l) = number(random, 20, 3000);
      b.at(l, 1) = QuarnFloat("-0.99999999999999999999");
    }
    std::vector<QuarnFloat> c(m * n);
    QuarnMatrixProduct(m, n, k, QuarnFloat(1), std::as_const(a).view(), std::as_const(b).view(), QuarnFloat(),
                       {c.data(), 1, m});
    QuarnSetDigits(7000);
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        QuarnFloat sum;
        for (std::size_t l = 0; l < k; ++l) {
          sum += a.at(i, l) * b.at(l, j);
        }
        CHECK(rounded_to(20, sum) == c[i + j * m]);
        QuarnSetDigits(7000);
      }
    }
  }
}

TEST_CASE("complex products round each part once") {
  const Restore restore;
  Random random;
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    for (const int digits : {1, 20, 50, 100, 333}) {
      for (unsigned how = 0; how < 8; how += 2) {
        const std::size_t m = 1 + random.below(20);
        const std::size_t n = 1 + random.below(20);
        const std::size_t k = 1 + random.below(30);
        const auto make = [&](std::size_t size) {
          QuarnSetDigits(digits);
          std::vector<Complex> made(size);
          for (Complex& z : made) {
            z = {number(random, digits, 4), number(random, digits, 4)};
          }
          return made;
        };
        const auto a = make(m * k);
        const auto b = make(k * n);
        auto c = make(m * n);
        const auto before = c;
        const Complex alpha{scalar(random, digits), scalar(random, digits)};
        const Complex beta{scalar(random, digits), scalar(random, digits)};
        QuarnSetDigits(digits);
        const auto step = [](std::size_t rows) { return std::ptrdiff_t(rows); };
        QuarnMatrixProduct(m, n, k, alpha, {a.data(), 1, step(m)}, {b.data(), step(n), 1}, beta, {c.data(), 1, step(m)},
                           how);
        int wrong = 0;
        for (std::size_t i = 0; i < m; ++i) {
          for (std::size_t j = 0; j < n; ++j) {
            QuarnSetDigits(6 * digits + 100);
            Complex sum;
            for (std::size_t l = 0; l < k; ++l) {
              const Complex& x = a[i + l * m];
              const Complex& y = b[l * n + j];
              sum = sum + ((how & QuarnConjugateA) != 0 ? conj(x) : x) * ((how & QuarnConjugateB) != 0 ? conj(y) : y);
            }
            sum = alpha * sum + beta * before[i + j * m];
            const Complex& got = c[i + j * m];
            wrong += int(rounded_to(digits, sum.re) != got.re) + int(rounded_to(digits, sum.im) != got.im);
          }
        }
        INFO("kernel " << kernel << ", digits " << digits << ", how " << how);
        CHECK(wrong == 0);
      }
    }
  }
}

TEST_CASE("the digits are the same with every kernel and on every platform") {
  const Restore restore;
  for (const char* const kernel : exact_test::kernels()) {
    QuarnExactKernel(kernel);
    Random random(20261122);
    std::uint64_t digest = 14695981039346656037U;
    for (const int digits : {20, 50, 333}) {
      Sample a(random, 30, 37, digits, 40);
      Sample b(random, 37, 29, digits, 4);
      Sample c(random, 30, 29, digits, 4);
      QuarnMatrixProduct(30, 29, 37, QuarnFloat(-1), std::as_const(a).view(), std::as_const(b).view(), QuarnFloat(1),
                         c.view());
      for (const QuarnFloat& x : c.storage) {
        for (const char character : x.to_string()) {
          digest = (digest ^ std::uint64_t(static_cast<unsigned char>(character))) * 1099511628211U;
        }
      }
    }
    INFO(kernel);
    CHECK(digest == 12409706379347759433U);
  }
}

TEST_CASE("dot products") {
  const Restore restore;
  Random random;
  for (const int digits : kDigits) {
    for (int round = 0; round < 6; ++round) {
      const std::size_t n = random.below(200);
      const int spread = random.once_in(2) ? 3 : 500;
      QuarnSetDigits(digits);
      std::vector<QuarnFloat> a(3 * n + 1);
      std::vector<QuarnFloat> b(n + 1);
      for (QuarnFloat& x : a) {
        x = number(random, digits, spread);
      }
      for (QuarnFloat& x : b) {
        x = number(random, digits, spread);
      }
      const QuarnFloat got = QuarnDot(n, a.data(), 3, b.data() + (n > 0 ? n - 1 : 0), -1);
      QuarnSetDigits(3 * digits + 3 * spread + 100);
      QuarnFloat sum;
      for (std::size_t l = 0; l < n; ++l) {
        sum += a[3 * l] * b[n - 1 - l];
      }
      CHECK(got == rounded_to(digits, sum));
    }
  }
}

TEST_CASE_TEMPLATE("sparse products: entries in any order, doubled, mirrored, conjugated", T, QuarnFloat, Complex) {
  const Restore restore;
  Random random;
  for (const int digits : kDigits) {
    for (int round = 0; round < (digits > 200 ? 2 : 8); ++round) {
      const std::size_t n = 1 + random.below(20);
      const std::size_t entries = random.below(8 * n);
      const int spread = random.once_in(2) ? 3 : 700;
      const unsigned how =
          (random.once_in(2) ? QuarnMirrored : 0U) | (random.once_in(2) ? unsigned(QuarnConjugateA) : 0U);
      const bool sorted = random.once_in(2);
      QuarnSetDigits(digits);
      std::vector<Integer> rows;
      std::vector<Integer> columns;
      std::vector<T> values;
      for (std::size_t k = 0; k < entries; ++k) {
        rows.push_back(sorted ? Integer(k * n / entries) + 1 : Integer(1 + random.below(n)));
        columns.push_back(Integer(1 + random.below((how & QuarnMirrored) != 0 ? std::uint64_t(rows.back()) : n)));
        values.push_back(entry<T>(random, digits, spread));
      }
      std::vector<T> x;
      for (std::size_t i = 0; i < n; ++i) {
        x.push_back(entry<T>(random, digits, 3));
      }
      std::vector<T> y(n);
      QuarnSparseProduct(n, {entries, values.data(), rows.data(), columns.data()}, x.data(), y.data(), how);
      QuarnSetDigits(3 * digits + 2 * spread + 100);
      std::vector<T> expected(n);
      for (std::size_t k = 0; k < entries; ++k) {
        const auto i = std::size_t(rows[k] - 1);
        const auto j = std::size_t(columns[k] - 1);
        const T value = (how & QuarnConjugateA) != 0 ? conjugate(values[k]) : values[k];
        expected[i] = expected[i] + value * x[j];
        if ((how & QuarnMirrored) != 0 && i != j) {
          expected[j] = expected[j] + conjugate(value) * x[i];
        }
      }
      int wrong = 0;
      for (std::size_t i = 0; i < n; ++i) {
        wrong += int(rounded_to(digits, expected[i]) != y[i]);
      }
      INFO("digits " << digits << ", n " << n << ", entries " << entries << ", how " << how);
      CHECK(wrong == 0);
    }
  }
}

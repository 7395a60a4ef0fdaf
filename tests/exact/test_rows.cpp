// Sums over prepared rows against products of one entry, which form them in another way.
#include <doctest/doctest.h>

#include "exact/samples.h"
#include "quarn/rows.h"

namespace {

using support::Random;

template <class T>
T number(Random& random, int digits, int spread) {
  if constexpr (std::is_same_v<T, Complex>) {
    return {exact_test::number(random, digits, spread), exact_test::number(random, digits, spread)};
  } else {
    return exact_test::number(random, digits, spread);
  }
}

void take_product(QuarnFloat& y, std::size_t k, QuarnMatrix<const QuarnFloat> a, QuarnMatrix<const QuarnFloat> b,
                  bool /*conjugate_a*/, bool /*conjugate_b*/) {
  QuarnMatrixProduct(1, 1, k, QuarnFloat(-1), a, b, QuarnFloat(1), {&y, 1, 1});
}
void take_product(Complex& y, std::size_t k, QuarnMatrix<const Complex> a, QuarnMatrix<const Complex> b,
                  bool conjugate_a, bool conjugate_b) {
  QuarnMatrixProduct(1, 1, k, Complex(-1), a, b, Complex(1), {&y, 1, 1},
                     (conjugate_a ? QuarnConjugateA : 0U) | (conjugate_b ? QuarnConjugateB : 0U));
}

QuarnRows rows_of(std::size_t m, std::size_t n, const QuarnFloat* a, bool /*conjugate*/) {
  return {m, n, {a, 1, std::ptrdiff_t(m)}};
}
QuarnRows rows_of(std::size_t m, std::size_t n, const Complex* a, bool conjugate) {
  return {m, n, {a, 1, std::ptrdiff_t(m)}, conjugate};
}

/// Everything about a number: its value, the sign of a zero, NaN.
bool same(const QuarnFloat& a, const QuarnFloat& b) { return isnan(a) ? isnan(b) : a == b && signbit(a) == signbit(b); }
bool same(const Complex& a, const Complex& b) { return same(a.re, b.re) && same(a.im, b.im); }

}  // namespace

TEST_CASE_TEMPLATE("sums over prepared rows are rounded once", T, QuarnFloat, Complex) {
  const exact_test::Restore restore;
  Random random;
  for (const int digits : {1, 2, 17, 18, 19, 50, 53, 54, 90, 125, 126, 333}) {
    for (const int spread : {0, 2, 8, 30, 300}) {
      const std::size_t m = 1 + random.below(digits > 100 ? 12 : 24);
      const std::size_t n = 1 + random.below(m);
      const bool conjugate = random.once_in(2);
      std::vector<T> a(m * n);
      std::vector<T> y(m);
      QuarnSetDigits(digits);
      for (T& x : a) {
        x = number<T>(random, digits, spread);
      }
      for (T& x : y) {
        x = number<T>(random, digits, spread);
      }
      if (random.once_in(4)) {
        a[random.below(m * n)] = T(QuarnFloat(random.once_in(2) ? "nan" : "inf"));
      }
      QuarnRows rows = rows_of(m, n, a.data(), conjugate);
      for (std::size_t l = 0; l < n; ++l) {
        rows.prepare(l, 0, m);
        // Rows change places in the middle of the work.
        const std::size_t i = random.below(m);
        const std::size_t k = random.below(m);
        for (std::size_t q = 0; q < n; ++q) {
          std::swap(a[i + q * m], a[k + q * m]);
        }
        rows.exchange(i, k);
      }
      const std::size_t terms = random.below(n + 1);
      const std::size_t row = random.below(m);
      std::vector<T> substituted = y;
      std::vector<T> less = y;
      std::vector<T> expected = y;
      std::vector<T> expected_less = y;
      const auto step = std::ptrdiff_t(m);
      for (std::size_t i = 0; i < m; ++i) {
        take_product(expected[i], std::min(i, terms), {a.data() + i, 1, step}, {expected.data(), 1, 1}, conjugate,
                     false);
        if (i >= row) {
          take_product(expected_less[i], terms, {a.data() + i, 1, step}, {a.data() + row, step, 1}, conjugate,
                       !conjugate);
        }
      }
      rows.substitute(terms, substituted.data(), 1);
      rows.subtract_products(row, terms, less.data(), 1);
      int wrong = 0;
      for (std::size_t i = 0; i < m; ++i) {
        wrong += !same(substituted[i], expected[i]) || !same(less[i], expected_less[i]);
      }
      CAPTURE(digits);
      CAPTURE(spread);
      CHECK(wrong == 0);
    }
  }
}

TEST_CASE("a sum that lies next to a tie, or cancels") {
  const exact_test::Restore restore;
  QuarnSetDigits(20);
  // 1 - x y with the product half a unit of the last place, and a little more or less.
  const std::vector<QuarnFloat> a = {1, QuarnFloat("5e-21"), QuarnFloat("5.0000000000000000001e-21"),
                                     QuarnFloat("4.9999999999999999999e-21"), 1};
  QuarnRows rows(5, 1, {a.data(), 1, 5});
  rows.prepare(0, 1, 5);
  const QuarnFloat last("2.0000000000000000002");
  std::vector<QuarnFloat> y = {1, last, last, last, 1};
  rows.substitute(1, y.data(), 1);
  CHECK(y[1] == last);
  CHECK(y[2] == last);
  CHECK(y[3] == last);
  CHECK(y[4] == 0);
  y = {1, QuarnFloat("2.0000000000000000001"), 1, 1, 1};
  y[0] = QuarnFloat(10);
  rows.substitute(1, y.data(), 1);
  CHECK(y[1] == QuarnFloat("2"));  // 2.00000000000000000005, to even
  CHECK(y[2] == QuarnFloat("0.99999999999999999995"));
}

TEST_CASE("the solution with a triangle divides by its diagonal") {
  const exact_test::Restore restore;
  QuarnSetDigits(30);
  const std::vector<QuarnFloat> a = {2, 3, 0, 5};
  QuarnRows rows(2, 2, {a.data(), 1, 2});
  rows.prepare(0, 1, 2);
  std::vector<QuarnFloat> y = {4, 21};
  rows.substitute(2, y.data(), 1, true);
  CHECK(y == std::vector<QuarnFloat>{2, 3});
}

#include <doctest/doctest.h>

#include "src/kernels/level1.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "tesk2mp/kernels.h"
#include "tesk2mp/norms.h"

using support::Matrix;

namespace {

/// 3 by 2: (1, -2; 3, 4; -5, 6), with NaN below and between.
Matrix<QuarnFloat> real_example() {
  Matrix<QuarnFloat> a(3, 2);
  const int values[2][3] = {{1, 3, -5}, {-2, 4, 6}};
  for (Integer j = 1; j <= 2; ++j) {
    for (Integer i = 1; i <= 3; ++i) {
      a(i, j) = values[j - 1][i - 1];
    }
  }
  return a;
}

}  // namespace

TEST_CASE("norms of a general matrix by letter") {
  support::Digits digits(40);
  struct Row {
    const char* letters;
    const char* value;
  };
  const Row rows[] = {{"Mm", "6"}, {"Oo1", "12"}, {"Ii", "11"}, {"FfEe", nullptr}, {"X2 ", "0"}};
  Matrix<QuarnFloat> a = real_example();
  Matrix<Complex> z(3, 2);
  for (Integer j = 1; j <= 2; ++j) {
    for (Integer i = 1; i <= 3; ++i) {
      z(i, j) = Complex(3 * a(i, j), -4 * a(i, j));  // five times the modulus
    }
  }
  for (const Row& row : rows) {
    for (const char* letter = row.letters; *letter != '\0'; ++letter) {
      CAPTURE(*letter);
      const bool sums_rows = row.letters[0] == 'I';
      std::vector<QuarnFloat> work(4, QuarnFloat("nan"));
      const QuarnFloat norm = QuarnMP_f06raf_(letter, 3, 2, a.data(), a.lda(), sums_rows ? work.data() : nullptr, 1);
      const QuarnFloat complex_norm =
          QuarnMP_f06uaf_(letter, 3, 2, z.data(), z.lda(), sums_rows ? work.data() : nullptr, 1);
      if (row.value != nullptr) {
        CHECK(norm.to_string() == row.value);
        CHECK(complex_norm == 5 * norm);
      } else {
        CHECK(fabs(norm * norm - 91) <= QuarnFloat(1, -37));
        CHECK(fabs(complex_norm - 5 * norm) <= QuarnFloat(2, -38));
      }
      CHECK(isnan(work[3]));
    }
  }
}

TEST_CASE("Hessenberg norms do not read below the first subdiagonal") {
  support::Digits digits(40);
  support::RandomNumbers random;
  for (const Integer n : {0, 1, 2, 5}) {
    Matrix<QuarnFloat> h(n, n);
    Matrix<QuarnFloat> full(n, n);
    Matrix<Complex> hz(n, n);
    Matrix<Complex> fullz(n, n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        full(i, j) = 0;
        fullz(i, j) = 0;
        if (i <= j + 1) {
          random.make(full(i, j));
          random.make(fullz(i, j));
          h(i, j) = full(i, j);
          hz(i, j) = fullz(i, j);
        }
      }
    }
    std::vector<QuarnFloat> work(std::size_t(n) + 1);
    for (const char* letter : {"M", "O", "I", "F"}) {
      CHECK(QuarnMP_f06rmf_(letter, n, h.data(), h.lda(), work.data(), 1) ==
            QuarnMP_f06raf_(letter, n, n, full.data(), full.lda(), work.data(), 1));
      CHECK(QuarnMP_f06umf_(letter, n, hz.data(), hz.lda(), work.data(), 1) ==
            QuarnMP_f06uaf_(letter, n, n, fullz.data(), fullz.lda(), work.data(), 1));
    }
  }
}

TEST_CASE("empty matrices have norm 0, zero matrices too; scaling guards the Frobenius norm alone") {
  Matrix<QuarnFloat> a = real_example();
  std::vector<QuarnFloat> work(3);
  for (const char* letter : {"M", "1", "I", "E", "?"}) {
    CHECK(QuarnMP_f06raf_(letter, 0, 2, a.data(), a.lda(), work.data(), 1) == 0);
    CHECK(QuarnMP_f06raf_(letter, 3, 0, a.data(), a.lda(), work.data(), 1) == 0);
    CHECK(QuarnMP_f06raf_(letter, -1, -1, a.data(), a.lda(), work.data(), 1) == 0);
    Complex zero[2];
    CHECK(QuarnMP_f06uaf_(letter, 2, 1, zero, 2, work.data(), 1) == 0);
  }
  Complex huge(QuarnFloat("3e999999990"), QuarnFloat("4e999999990"));
  CHECK(isinf(QuarnMP_f06uaf_("M", 1, 1, &huge, 1, work.data(), 1)));
  CHECK(QuarnMP_f06uaf_("F", 1, 1, &huge, 1, work.data(), 1).to_string() == "5e+999999990");
}

TEST_CASE("level-1 entries") {
  support::Digits digits(40);
  // A rotation takes (a, b) to (r, 0), and b encodes it.
  struct Rotation {
    const char *a, *b, *r, *c, *s, *z;
  };
  const Rotation rotations[] = {{"3", "4", "5", "0.6", "0.8", nullptr},   {"4", "3", "5", "0.8", "0.6", "0.6"},
                                {"-4", "3", "-5", "0.8", "-0.6", "-0.6"}, {"0", "2", "2", "0", "1", "1"},
                                {"2", "0", "2", "1", "0", "0"},           {"0", "0", "0", "1", "0", "0"}};
  for (const Rotation& row : rotations) {
    QuarnFloat a(row.a);
    QuarnFloat b(row.b);
    QuarnFloat c;
    QuarnFloat s;
    QuarnMP_f06aaf_(&a, &b, &c, &s);
    CHECK(fabs(a - QuarnFloat(row.r)) <= QuarnFloat(2, -39));
    CHECK(fabs(c - QuarnFloat(row.c)) <= QuarnFloat(2, -40));
    CHECK(fabs(s - QuarnFloat(row.s)) <= QuarnFloat(2, -40));
    CHECK(fabs(b - (row.z == nullptr ? 1 / c : QuarnFloat(row.z))) <= QuarnFloat(2, -39));
  }

  QuarnFloat x[5] = {3, QuarnFloat("nan"), 0, QuarnFloat("nan"), -4};
  CHECK(QuarnMP_f06ejf_(3, x, 2) == 5);
  CHECK(QuarnMP_f06ejf_(3, x, -2) == 5);
  CHECK(QuarnMP_f06ejf_(0, x, 1) == 0);
  QuarnFloat y[3];
  QuarnMP_f06fdf_(3, 2, x, 2, y, -1);
  CHECK((y[0] == -8 && y[1] == 0 && y[2] == 6 && x[0] == 3));

  Complex z[2] = {Complex(1, 2), Complex(3, -4)};
  Complex w[2];
  QuarnMP_f06hdf_(2, Complex(0, 1), z, 1, w, 1);
  CHECK((w[0] == Complex(-2, 1) && w[1] == Complex(4, 3)));
  QuarnMP_f06jjf_(2, z, 1, w, -1);
  CHECK((w[0] == z[1] && w[1] == z[0]));
  QuarnMP_f06caf_(2, -2, z, 1);
  CHECK((z[0] == Complex(-2, -4) && z[1] == Complex(-6, 8)));
  QuarnMP_f06caf_(-1, -2, z, 1);
  CHECK(z[0] == Complex(-2, -4));
}

TEST_CASE("the first of the largest elements wins") {
  const auto largest = [](std::vector<Complex> x) {
    return tesk::index_of_largest(Integer(x.size()), tesk::OneBasedVector<Complex>(x.data(), 1));
  };
  CHECK(largest({}) == 0);
  CHECK(largest({Complex(1, 1), Complex(-2, 0), Complex(0, 2)}) == 1);
  CHECK(largest({Complex(1, 0), Complex(0, -3), Complex(3, 0)}) == 2);
}

TEST_CASE("safe division works on the range of the double") {
  support::Digits digits(60);
  const char* const bound = "44942328371557";
  struct Row {
    const char *a, *b;
    bool failed;
    const char* value;
  };
  const Row rows[] = {
      {"1", "4", false, "0.25"},
      {"0", "5", false, "0"},
      {"0", "0", true, "0"},
      {"3", "0", true, bound},
      {"-3", "0", true, bound},
      {"1e300", "1e-300", true, bound},
      {"1e300", "-1e-300", true, bound},
      {"1e-300", "1e300", false, "0"},
      {"4e307", "1", false, "4e+307"},
      {"4.6e307", "1", true, bound},
      {"2.3e-308", "1", false, "2.3e-308"},
      {"2.2e-308", "1", false, "0"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.a);
    CAPTURE(row.b);
    const QuarnFloat a(row.a);
    const QuarnFloat b(row.b);
    const tesk::SafeQuotient quotient = tesk::safe_divide(a, b);
    CHECK(quotient.failed == row.failed);
    if (row.value == bound) {
      CHECK(fabs(quotient.value) == QuarnFloat(4.49423283715578e+307));
      CHECK(signbit(quotient.value) == (signbit(a) != signbit(b)));
    } else {
      CHECK(quotient.value.to_string() == row.value);
    }
  }
}

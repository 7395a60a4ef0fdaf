// Matrices on which QR codes have been seen to fail at high precision: clustered and multiple eigenvalues, zero
// diagonals, permutations that need exceptional shifts. A zero of multiplicity k is good to D / k digits.
#include <doctest/doctest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "src/dense/hessenberg_qr.h"
#include "src/dense/tuning.h"
#include "support/digits.h"
#include "support/hessenberg.h"
#include "support/multiple.h"
#include "tesk2mp/dense.h"

using support::Matrix;

namespace {

struct Example {
  const char* name;
  Integer n;
  std::function<QuarnFloat(Integer, Integer)> element;
  int multiplicity;  // the highest of an eigenvalue
  bool defective;
  std::function<bool(const Complex&, const QuarnFloat&)> right;  // is this an eigenvalue, to that error?
};

Matrix<QuarnFloat> matrix_of(const Example& example) {
  Matrix<QuarnFloat> a(example.n, example.n);
  for (Integer j = 1; j <= example.n; ++j) {
    for (Integer i = 1; i <= example.n; ++i) {
      a(i, j) = example.element(i, j);
    }
  }
  return a;
}

bool near_integer(const Complex& value, int from, int to, const QuarnFloat& error) {
  const QuarnFloat nearest = floor(value.re + QuarnFloat(0.5));
  return fabs(value.re - nearest) <= error && fabs(value.im) <= error && nearest >= from && nearest <= to;
}

int hadamard_sign(Integer i, Integer j) {
  int bits = 0;
  for (Integer common = (i - 1) & (j - 1); common != 0; common &= common - 1) {
    ++bits;
  }
  return bits % 2 == 0 ? 1 : -1;
}

/// Coefficient k of (x - 1)^3 (x + 2)^3, highest first.
int multiple_zeros(Integer k) {
  const int coefficients[7] = {1, 3, -3, -11, 6, 12, -8};
  return coefficients[k];
}

int binomial(Integer n, Integer k) { return k == 0 || k == n ? 1 : binomial(n - 1, k - 1) + binomial(n - 1, k); }

/// P diag(2, 3, 2, 3, 2, 3) P^-1 with P of binomial coefficients, whose inverse is P with signs: integer all through.
int disguised_cluster(Integer i, Integer j) {
  int sum = 0;
  for (Integer k = j; k <= i; ++k) {
    const int sign = (k - j) % 2 == 0 ? 1 : -1;
    sum += binomial(i - 1, k - 1) * (k % 2 == 0 ? 3 : 2) * binomial(k - 1, j - 1) * sign;
  }
  return sum;
}

std::vector<Example> examples() {
  return {
      {"8 by 8 Hadamard: +-sqrt(8), four times each", 8, hadamard_sign, 4, false,
       [](const Complex& value, const QuarnFloat& error) {
         return tesk::modulus(value * value - Complex(8)) <= 20 * error;
       }},
      {"companion of (x - 1)^3 (x + 2)^3", 6,
       [](Integer i, Integer j) { return i == 1       ? -multiple_zeros(j)
                                         : i == j + 1 ? 1
                                                      : 0; }, 3, true,
       [](const Complex& value, const QuarnFloat& error) {
         return tesk::modulus(value - Complex(1)) <= error || tesk::modulus(value + -Complex(-2)) <= error;
       }},
      {"zero diagonal, skew", 7, [](Integer i, Integer j) { return i == j + 1   ? 1
                                                                   : j == i + 1 ? -1
                                                                                : 0; }, 1, false,
       [](const Complex& value, const QuarnFloat& error) {
         // 2 i cos(k pi / 8): zeros of the Chebyshev recurrence at value / i.
         const QuarnFloat y = value.im;
         QuarnFloat before = 1;
         QuarnFloat now = y;
         for (int k = 2; k <= 7; ++k) {
           const QuarnFloat next = y * now - before;
           before = now;
           now = next;
         }
         return fabs(value.re) <= error && fabs(now) <= 50 * error;
       }},
      {"cyclic permutation of 10", 10, [](Integer i, Integer j) { return i == j + 1 || (i == 1 && j == 10) ? 1 : 0; },
       1, false,
       [](const Complex& value, const QuarnFloat& error) {
         Complex power = 1.0;
         for (int k = 0; k < 10; ++k) {
           power = power * value;
         }
         return tesk::modulus(power - Complex(1)) <= 20 * error;
       }},
      {"clustered small integers: 2, 2, 2, 3, 3, 3 in disguise", 6, disguised_cluster, 3, false,
       [](const Complex& value, const QuarnFloat& error) { return near_integer(value, 2, 3, error); }},
      {"symmetric integers 1 ... 5 in disguise", 5,
       [](Integer i, Integer j) {
         // P diag(1 ... 5) P^-1 with P unit lower triangular of ones: integer all through.
         return i == j ? int(i) : i > j ? -1 : 0;
       },
       1, false, [](const Complex& value, const QuarnFloat& error) { return near_integer(value, 1, 5, error); }},
  };
}

}  // namespace

TEST_CASE("hard matrices at 16, 50, 200 and 1000 digits, by both paths") {
  for (const int digits : {16, 50, 200, 1000}) {
    const support::Digits scope(digits);
    for (const Example& example : examples()) {
      for (Integer shifts : {1, 4}) {
        CAPTURE(std::string(example.name));
        CAPTURE(digits);
        CAPTURE(shifts);
        QuarnMP_f07zaz_(4, "F08PEF", &shifts, 1, 6);
        QuarnMP_f07zaz_(8, "F08PEF", &shifts, 1, 6);
        const Integer n = example.n;
        Matrix<QuarnFloat> h = support::hessenberg_form(matrix_of(example));
        Matrix<QuarnFloat> z(1, 1);
        std::vector<QuarnFloat> wr(std::size_t(n), 0);
        std::vector<QuarnFloat> wi(std::size_t(n), 0);
        std::vector<QuarnFloat> work(std::size_t(n), 0);
        Integer info = -99;
        QuarnMP_f08pef_("E", "N", n, 1, n, h.data(), h.lda(), wr.data(), wi.data(), z.data(), 1, work.data(), n, &info,
                        1, 1);
        // A defective eigenvalue is approached linearly: at many digits the iterations run out, and INFO says so.
        CHECK((info > 0) == (example.defective && digits > 100));
        const QuarnFloat error(1, 4 - digits / example.multiplicity);
        for (auto i = std::size_t(info); i < wr.size(); ++i) {
          CAPTURE(wr[i]);
          CAPTURE(wi[i]);
          CHECK(example.right(Complex(wr[i], wi[i]), error));
        }
      }
    }
  }
  Integer shipped = 1;
  QuarnMP_f07zaz_(4, "F08PEF", &shipped, 1, 6);
  QuarnMP_f07zaz_(8, "F08PEF", &shipped, 1, 6);
}

namespace {

struct Eigenvalues {
  std::vector<QuarnFloat> wr;
  std::vector<QuarnFloat> wi;
  tesk::QrOutcome outcome;
};

/// By the companion, balanced before.
Eigenvalues companion_eigenvalues(Matrix<QuarnFloat> h) {
  const Integer n = h.rows();
  std::vector<QuarnFloat> scale(std::size_t(n), 0);
  Integer ilo = 0;
  Integer ihi = 0;
  Integer info = 0;
  QuarnMPX_f08nhf_("S", n, h.data(), h.lda(), &ilo, &ihi, scale.data(), &info, 1);
  Eigenvalues found{std::vector<QuarnFloat>(std::size_t(n)), std::vector<QuarnFloat>(std::size_t(n)), {}};
  found.outcome = tesk::hessenberg_qr(tesk::Accuracy::full, false, n, 1, n, {h.data(), h.lda()}, found.wr.data(),
                                      found.wi.data(), {{h.data(), h.lda()}, 1, 0});
  return found;
}

}  // namespace

TEST_CASE("the companion finds multiple eigenvalues to D / k digits, double ones in 0.4 D sweeps" *
          doctest::test_suite("long")) {
  for (const int digits : {1, 2, 16, 50, 108, 333, 1000}) {
    const support::Digits scope(digits);
    for (const support::MultipleEigenvalues& example : support::kMultipleEigenvalues) {
      for (const int k : {2, 3, 4, 5, 8}) {
        CAPTURE(std::string(example.name));
        CAPTURE(digits);
        CAPTURE(k);
        const Eigenvalues found = companion_eigenvalues(example.matrix(k));
        REQUIRE(found.outcome.info == 0);
        if (digits < 16) {
          continue;
        }
        for (std::size_t i = 0; i < found.wr.size(); ++i) {
          QuarnFloat error = 100;
          for (const Complex& value : {Complex(1), Complex(-2), Complex(3), Complex(0, 1), Complex(0, -1),
                                       Complex(0, sqrt(QuarnFloat(5))), Complex(0, -sqrt(QuarnFloat(5)))}) {
            error = std::min(error, tesk::modulus(value - Complex(found.wr[i], found.wi[i])));
          }
          CHECK(error <= QuarnFloat(1, 2 - digits / k));
        }
        CHECK((k > 2 || digits < 50 || 10 * found.outcome.sweeps <= 4 * digits * example.clusters));
      }
    }
  }
}

TEST_CASE("the companion takes matrices of any size of numbers, and scales without rounding") {
  const support::Digits scope(40);
  for (const int exponent : {-999999990, -500000000, -134217726, 134217726, 999999980}) {
    CAPTURE(exponent);
    // Eigenvalues 2 +- sqrt(3) i and 5, in tiny or huge units.
    const QuarnFloat unit(1, exponent);
    Matrix<QuarnFloat> h(3, 3);
    const int elements[3][3] = {{2, -3, 1}, {1, 2, 4}, {0, 0, 5}};
    for (Integer j = 1; j <= 3; ++j) {
      for (Integer i = 1; i <= 3; ++i) {
        h(i, j) = elements[i - 1][j - 1] * unit;
      }
    }
    Matrix<QuarnFloat> t = h;
    Matrix<QuarnFloat> z(3, 3);
    std::vector<QuarnFloat> wr(3);
    std::vector<QuarnFloat> wi(3);
    std::vector<QuarnFloat> work(3);
    Integer info = -99;
    QuarnMPX_f08pef_("S", "I", 3, 1, 3, t.data(), t.lda(), wr.data(), wi.data(), z.data(), z.lda(), work.data(), 3,
                     &info, 1, 1);
    REQUIRE(info == 0);
    CHECK(fabs(wr[0] / unit - 2) <= QuarnFloat(1, -38));
    CHECK(fabs(wi[0] / unit - sqrt(QuarnFloat(3))) <= QuarnFloat(1, -38));
    CHECK(fabs(wr[2] / unit - 5) <= QuarnFloat(1, -38));
    CHECK(fabs(t(3, 3) - wr[2]) == 0);
    Matrix<QuarnFloat> vl(3, 3);
    Matrix<QuarnFloat> vr(3, 3);
    Integer m = 0;
    QuarnFloat s[3];
    QuarnFloat sep[3];
    QuarnMPX_f08qkf_("B", "A", nullptr, 3, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), 3, &m, nullptr,
                     &info, 1, 1);
    QuarnMPX_f08qlf_("B", "A", nullptr, 3, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), s, sep, 3, &m,
                     nullptr, 3, nullptr, &info, 1, 1);
    for (const QuarnFloat& gap : sep) {
      CHECK((gap / unit > QuarnFloat(0.1) && gap / unit < 10));
    }
    // T vr = vr(3) lambda
    for (Integer i = 1; i <= 3; ++i) {
      QuarnFloat residual = -(wr[2] / unit * vr(i, 3));
      for (Integer k = 1; k <= 3; ++k) {
        residual += t(i, k) / unit * vr(k, 3);
      }
      CHECK(fabs(residual) <= QuarnFloat(1, -37));
    }
  }
}

TEST_CASE("the companion's eigenvectors of long chains are numbers, at any digits") {
  for (const int digits : {1, 2, 20, 333}) {
    const support::Digits scope(digits);
    for (const Integer n : {9, 12, 20}) {
      for (const bool derivative : {false, true}) {
        Matrix<QuarnFloat> t(n, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            t(i, j) = j != i + 1 ? 0 : derivative ? int(i) : 1;
          }
        }
        Matrix<QuarnFloat> vl(n, n);
        Matrix<QuarnFloat> vr(n, n);
        Integer m = 0;
        Integer info = -99;
        QuarnMPX_f08qkf_("B", "A", nullptr, n, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), n, &m,
                         nullptr, &info, 1, 1);
        REQUIRE(info == 0);
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(derivative);
        for (Integer j = 1; j <= n; ++j) {
          CAPTURE(j);
          // Beside the first unit vector, to within the safe range, and its mirror image.
          for (Integer i = 1; i <= n; ++i) {
            CAPTURE(vl(i, j).to_string());
            CHECK((i == 1 ? fabs(vr(i, j)) > QuarnFloat(0.5) : fabs(vr(i, j)) < QuarnFloat(1, -1000000)));
            CHECK((i == n ? fabs(vl(i, j)) > QuarnFloat(0.5) : fabs(vl(i, j)) < QuarnFloat(1, -1000000)));
          }
        }
      }
    }
  }
}

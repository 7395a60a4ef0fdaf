// Symmetric and Hermitian eigenproblems: residuals in units of the last place, spectra that are known, LAPACK in
// double, and the parts of the driver one by one.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/hermitian.h"
#include "dense/ratios.h"
#include "tesk2mp/eigenproblems.hpp"
#include "tesk2mp/singular_values.hpp"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;

namespace {

template <class T>
struct Exports;
template <>
struct Exports<QuarnFloat> {
  static Integer syev(const char* jobz, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* w,
                      QuarnFloat* work, Integer lwork) {
    Integer info = -99;
    QuarnMPX_dsyev_(jobz, uplo, n, a, lda, w, work, lwork, &info, 1, 1);
    return info;
  }
  static constexpr auto sytrd = QuarnMPX_dsytrd_;
  static constexpr auto orgtr = QuarnMPX_dorgtr_;
  static constexpr auto steqr = QuarnMPX_dsteqr_;
};
template <>
struct Exports<Complex> {
  static Integer syev(const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* w,
                      Complex* work, Integer lwork) {
    Integer info = -99;
    QuarnMPX_zheev_(jobz, uplo, n, a, lda, w, work, lwork, nullptr, &info, 1, 1);
    return info;
  }
  static constexpr auto sytrd = QuarnMPX_zhetrd_;
  static constexpr auto orgtr = QuarnMPX_zungtr_;
  static constexpr auto steqr = QuarnMPX_zsteqr_;
};

template <class T>
void check_decomposition(const Matrix<T>& a, const char* uplo, int digits) {
  const Integer n = a.rows();
  CAPTURE(n);
  CAPTURE(digits);
  Matrix<T> z = only(uplo, a);
  std::vector<QuarnFloat> w(std::size_t(n) + 1);
  std::vector<T> work(3 * std::size_t(n) + 1);
  REQUIRE(Exports<T>::syev("V", uplo, n, z.data(), z.lda(), w.data(), work.data(), Integer(work.size())) == 0);
  CHECK(z.intact());
  CHECK(std::is_sorted(w.begin(), w.end() - 1));
  Matrix<T> untouched = only(uplo, a);
  std::vector<QuarnFloat> alone(w.size());
  REQUIRE(Exports<T>::syev("N", uplo, n, untouched.data(), untouched.lda(), alone.data(), work.data(),
                           Integer(work.size())) == 0);
  const support::Digits finer(digits + kSpare);
  const QuarnFloat norm = one_norm(a);
  Matrix<T> scaled = z;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      tesk::multiply_by(scaled(i, j), w[std::size_t(j - 1)]);
    }
  }
  CHECK(ratio(distance(product(a, z), scaled), norm, n, digits) < kLargestRatio);
  CHECK(ratio(distance(product(adjoint(z), z), unit<T>(n)), 1, n, digits) < kLargestRatio);
  for (std::size_t i = 0; i < std::size_t(n); ++i) {
    CHECK(ratio(fabs(alone[i] - w[i]), norm, n, digits) < kLargestRatio);
  }
}

}  // namespace

TEST_CASE_TEMPLATE("symmetric eigenvalues and eigenvectors of random matrices", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const Integer n : {0, 1, 2, 3, 5, 8, 16, 17, 18, 40}) {
      if (n == 40 && digits != 50) {
        continue;
      }
      const support::Digits scope(digits);
      check_decomposition(hermitian(Matrix<T>(n, n).randomise(random)), n % 2 == 0 ? "L" : "U", digits);
    }
  }
}

TEST_CASE_TEMPLATE("clustered, multiple, graded and extreme symmetric eigenvalues", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr Integer n = 12;
  for (const int digits : {5, 50, 120}) {
    const support::Digits scope(digits);
    for (const int kind : {0, 1, 2, 3, 4, 5}) {
      CAPTURE(kind);
      Matrix<T> a = hermitian(Matrix<T>(n, n).randomise(random));
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n; ++i) {
          switch (kind) {
            case 0:  // 1 and n, the former many times
              a(i, j) = T(i == j ? 2.0 : 1.0);
              break;
            case 1:  // a cluster at 1
              a(i, j) = a(i, j) * T(QuarnFloat(1, -digits + 2)) + T(double(i == j));
              break;
            case 2:
              a(i, j) = a(i, j) * T(QuarnFloat(1, -int(i + j)));
              break;
            case 3:
              a(i, j) = a(i, j) * T(QuarnFloat(1, 400000000));
              break;
            case 4:
              a(i, j) = a(i, j) * T(QuarnFloat(1, -400000000));
              break;
            default:  // the eigenvalues stand in pairs of both signs
              a(i, j) = (i <= n / 2) == (j <= n / 2) ? T(0.0) : a(i, j);
          }
        }
      }
      check_decomposition(a, kind % 2 == 0 ? "U" : "L", digits);
    }
  }
}

TEST_CASE("the second difference and a matrix of pairs have the eigenvalues that formulas give") {
  for (const int digits : {16, 50, 333}) {
    constexpr Integer n = 21;
    const support::Digits scope(digits);
    std::vector<QuarnFloat> d(n, 2);
    std::vector<QuarnFloat> e(n - 1, -1);
    Integer info = -99;
    QuarnMPX_dsteqr_("N", n, d.data(), e.data(), nullptr, 1, nullptr, &info, 1);
    REQUIRE(info == 0);
    const support::Digits finer(digits + kSpare);
    const QuarnFloat pi = acos(QuarnFloat(-1));
    for (Integer k = 1; k <= n; ++k) {
      const QuarnFloat half = sin(k * pi / (2 * (n + 1)));
      // Each is good beside itself, not beside the largest alone.
      CHECK(ratio(fabs(d[std::size_t(k - 1)] - 4 * half * half), 4 * half * half, n, digits) < kLargestRatio);
    }
  }
  // Wilkinson's W21+: its largest two eigenvalues agree to 15 digits.
  const support::Digits scope(40);
  std::vector<QuarnFloat> d;
  std::vector<QuarnFloat> e(20, 1);
  for (int i = -10; i <= 10; ++i) {
    d.push_back(QuarnFloat(i < 0 ? -i : i));
  }
  Integer info = -99;
  QuarnMPX_dsteqr_("N", 21, d.data(), e.data(), nullptr, 1, nullptr, &info, 1);
  CHECK(info == 0);
  CHECK(d[20] - d[19] > QuarnFloat("7e-14"));
  CHECK(d[20] - d[19] < QuarnFloat("8e-14"));
  CHECK(fabs(d[20] - QuarnFloat("10.746194182903393")) < QuarnFloat("1e-14"));
}

TEST_CASE_TEMPLATE("tridiagonal form of either triangle, Q formed, and the driver out of its parts", T, QuarnFloat,
                   Complex) {
  support::RandomNumbers random;
  for (const int digits : {2, 50}) {
    for (const Integer n : {0, 1, 2, 7, 35}) {
      for (const char* uplo : {"L", "u"}) {
        CAPTURE(n);
        CAPTURE(uplo);
        const support::Digits scope(digits);
        const Matrix<T> a = hermitian(Matrix<T>(n, n).randomise(random));
        Matrix<T> q = only(*uplo == 'L' ? "L" : "U", a);
        std::vector<QuarnFloat> d(std::size_t(n) + 1);
        std::vector<QuarnFloat> e(d.size());
        std::vector<T> tau(d.size());
        std::vector<T> work(d.size());
        Integer info = -99;
        Exports<T>::sytrd(uplo, n, q.data(), q.lda(), d.data(), e.data(), tau.data(), work.data(), n + 1, &info, 1);
        REQUIRE(info == 0);
        CHECK(q.intact());
        for (Integer j = 2; j <= n; ++j) {
          CHECK((*uplo == 'L' ? q(j, j - 1) : q(j - 1, j)) == T(e[std::size_t(j - 2)]));
        }
        Exports<T>::orgtr(uplo, n, q.data(), q.lda(), tau.data(), work.data(), n + 1, &info, 1);
        REQUIRE(info == 0);
        CHECK(q.intact());
        Matrix<T> t = unit<T>(n);
        for (Integer j = 1; j <= n; ++j) {
          t(j, j) = T(d[std::size_t(j - 1)]);
          if (j < n) {
            t(j, j + 1) = t(j + 1, j) = T(e[std::size_t(j - 1)]);
          }
        }
        Matrix<T> z = q;
        Exports<T>::steqr("V", n, d.data(), e.data(), z.data(), z.lda(), nullptr, &info, 1);
        REQUIRE(info == 0);
        const support::Digits finer(digits + kSpare);
        CHECK(ratio(distance(product(product(q, t), adjoint(q)), a), one_norm(a), n, digits) < kLargestRatio);
        CHECK(ratio(distance(product(adjoint(q), q), unit<T>(n)), 1, n, digits) < kLargestRatio);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            t(i, j) = i == j ? T(d[std::size_t(j - 1)]) : T(0.0);
          }
        }
        CHECK(ratio(distance(product(a, z), product(z, t)), one_norm(a), n, digits) < kLargestRatio);
      }
    }
  }
}

TEST_CASE_TEMPLATE("what is no number in a symmetric matrix, and wrong arguments", T, QuarnFloat, Complex) {
  constexpr Integer n = 4;
  std::vector<QuarnFloat> w(n);
  std::vector<T> work(3 * n);
  for (const double bad : {HUGE_VAL, -HUGE_VAL, double(NAN)}) {
    for (Integer at = 0; at < n * n; ++at) {
      Matrix<T> a = unit<T>(n);
      a(at % n + 1, at / n + 1) = T(bad);
      const bool read = at % n >= at / n;
      CHECK(Exports<T>::syev("V", "L", n, a.data(), a.lda(), w.data(), work.data(), 3 * n) == (read ? n : 0));
    }
  }
  T a[4] = {T(1.0), T(2.0), T(3.0), T(4.0)};
  CHECK(Exports<T>::syev("X", "L", 2, a, 2, w.data(), work.data(), 9) == -1);
  CHECK(Exports<T>::syev("V", "X", 2, a, 2, w.data(), work.data(), 9) == -2);
  CHECK(Exports<T>::syev("V", "L", -1, a, 2, w.data(), work.data(), 9) == -3);
  CHECK(Exports<T>::syev("V", "L", 2, a, 1, w.data(), work.data(), 9) == -5);
  CHECK(Exports<T>::syev("V", "L", 2, a, 2, w.data(), work.data(), 2) == -8);
  CHECK(Exports<T>::syev("V", "L", 2, a, 2, w.data(), work.data(), -1) == 0);
  CHECK(a[0] == T(1.0));
  Integer info = 0;
  const auto reduced = [&](const char* uplo, Integer order, Integer lda, Integer lwork) {
    Exports<T>::sytrd(uplo, order, a, lda, w.data(), w.data(), a, work.data(), lwork, &info, 1);
    return info;
  };
  CHECK(reduced("X", 2, 2, 2) == -1);
  CHECK(reduced("L", -1, 2, 2) == -2);
  CHECK(reduced("L", 2, 1, 2) == -4);
  CHECK(reduced("L", 2, 2, 0) == -9);
  const auto formed = [&](const char* uplo, Integer order, Integer lda, Integer lwork) {
    Exports<T>::orgtr(uplo, order, a, lda, a, work.data(), lwork, &info, 1);
    return info;
  };
  CHECK(formed("X", 2, 2, 2) == -1);
  CHECK(formed("L", -1, 2, 2) == -2);
  CHECK(formed("L", 2, 1, 2) == -4);
  CHECK(formed("L", 2, 2, 0) == -7);
  const auto solved = [&](const char* compz, Integer order, Integer ldz) {
    Exports<T>::steqr(compz, order, w.data(), w.data(), a, ldz, nullptr, &info, 1);
    return info;
  };
  CHECK(solved("X", 2, 2) == -1);
  CHECK(solved("I", -1, 2) == -2);
  CHECK(solved("V", 2, 1) == -6);
}

TEST_CASE("divide and conquer: joined, deflated and far tridiagonal matrices" * doctest::test_suite("long")) {
  support::RandomNumbers random;
  for (const int digits : {1, 16, 50, 333}) {
    const support::Digits scope(digits);
    for (int kind = 0; kind < 7; ++kind) {
      const Integer n = digits == 50 ? 101 : 51;
      CAPTURE(digits);
      CAPTURE(kind);
      const Matrix<QuarnFloat> numbers = Matrix<QuarnFloat>(n, 2).randomise(random);
      Matrix<QuarnFloat> t(n, n);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n; ++i) {
          t(i, j) = 0;
        }
      }
      for (Integer i = 1; i <= n; ++i) {
        const QuarnFloat far(1, 200000000);
        const QuarnFloat tiny(1, -2 * digits);
        // Random; the second difference; pairs that agree to many digits; split at the halves, with a negative element
        // beside; all equal; far numbers; a norm far below one unit of 1.
        t(i, i) = kind == 0   ? numbers(i, 1)
                  : kind == 1 ? QuarnFloat(2)
                  : kind == 2 ? QuarnFloat(i > n / 2 ? i - n / 2 : n / 2 - i)
                  : kind == 3 ? QuarnFloat(i % 3)
                  : kind == 4 ? QuarnFloat(7)
                  : kind == 5 ? numbers(i, 1) * far
                              : 2 * tiny;
        if (i < n) {
          const QuarnFloat beside = kind == 0   ? numbers(i, 2)
                                    : kind == 1 ? QuarnFloat(-1)
                                    : kind == 2 ? QuarnFloat(1)
                                    : kind == 3 ? QuarnFloat(i == n / 2 ? 0 : -1)
                                    : kind == 4 ? QuarnFloat(0)
                                    : kind == 5 ? numbers(i, 2) * far
                                                : -tiny;
          t(i + 1, i) = beside;
          t(i, i + 1) = beside;
        }
      }
      std::vector<QuarnFloat> d(std::size_t(n) + 1);
      std::vector<QuarnFloat> e(d.size());
      for (Integer i = 1; i <= n; ++i) {
        d[std::size_t(i - 1)] = t(i, i);
        e[std::size_t(i - 1)] = i < n ? t(i + 1, i) : QuarnFloat(0);
      }
      std::vector<QuarnFloat> same_d = d;
      std::vector<QuarnFloat> same_e = e;
      Matrix<Complex> z = unit<Complex>(n);
      Integer info = -99;
      QuarnMPX_zstedc_("V", n, d.data(), e.data(), z.data(), z.lda(), nullptr, 1, nullptr, 1, nullptr, 1, &info, 1);
      REQUIRE(info == 0);
      CHECK(z.intact());
      QuarnMPX_dstedc_("N", n, same_d.data(), same_e.data(), nullptr, 1, nullptr, 1, nullptr, 1, &info, 1);
      REQUIRE(info == 0);
      CHECK(std::is_sorted(d.begin(), d.end() - 1));
      const support::Digits finer(digits + kSpare);
      const QuarnFloat norm = one_norm(t);
      Matrix<QuarnFloat> vectors(n, n);
      Matrix<QuarnFloat> scaled(n, n);
      for (Integer j = 1; j <= n; ++j) {
        CHECK(ratio(fabs(d[std::size_t(j - 1)] - same_d[std::size_t(j - 1)]), norm, n, digits) < kLargestRatio);
        for (Integer i = 1; i <= n; ++i) {
          CHECK(z(i, j).im == 0);
          vectors(i, j) = z(i, j).re;
          scaled(i, j) = z(i, j).re * d[std::size_t(j - 1)];
        }
      }
      CHECK(ratio(distance(product(t, vectors), scaled), norm, n, digits) < kLargestRatio);
      CHECK(ratio(distance(product(adjoint(vectors), vectors), unit<QuarnFloat>(n)), 1, n, digits) < kLargestRatio);
    }
  }
  QuarnFloat d[] = {1, QuarnFloat("nan"), 2};
  QuarnFloat e[] = {1, 1};
  QuarnFloat z[9];
  Integer info = 0;
  QuarnMPX_dstedc_("I", 3, d, e, z, 3, nullptr, 1, nullptr, 1, &info, 1);
  CHECK(info == 3);
  QuarnMPX_dstedc_("X", 3, d, e, z, 3, nullptr, 1, nullptr, 1, &info, 1);
  CHECK(info == -1);
  QuarnMPX_dstedc_("I", 3, d, e, z, 2, nullptr, 1, nullptr, 1, &info, 1);
  CHECK(info == -6);
}

namespace {

/// 10^shift (A + E) with elements of A between -9 and 9 and squares of E, beside those of A, out of the range.
template <class T>
struct FarMatrix {
  tesk2mp::Matrix<T> near;
  tesk2mp::Matrix<T> far;

  FarMatrix(std::size_t n, bool is_hermitian, int shift, support::RandomNumbers& random) : near(n, n), far(n, n) {
    constexpr int kBelow[] = {0, 0, 0, 300000000, 450000000, 550000000, 900000000, 999999000};
    const auto draw = [&](QuarnFloat& close, QuarnFloat& distant) {
      const int digit = int(random.below(19)) - 9;
      const int below = kBelow[random.below(8)];
      close = below == 0 ? QuarnFloat(digit) : QuarnFloat();
      distant = shift - below < -999999990 ? QuarnFloat() : QuarnFloat(digit, shift - below);
    };
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i <= (is_hermitian ? j : n - 1); ++i) {
        if constexpr (std::is_same_v<T, Complex>) {
          draw(near(i, j).re, far(i, j).re);
          if (i != j || !is_hermitian) {
            draw(near(i, j).im, far(i, j).im);
          }
        } else {
          draw(near(i, j), far(i, j));
        }
        if (is_hermitian) {
          near(j, i) = tesk::conjugate(near(i, j));
          far(j, i) = tesk::conjugate(far(i, j));
        }
      }
    }
  }
};

}  // namespace

TEST_CASE_TEMPLATE("eigenvalues and singular values of matrices whose elements are far apart", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (int round = 0; round < 150; ++round) {
    CAPTURE(round);
    const support::Digits scope(20);
    const std::size_t n = 2 + random.below(5);
    const int shift = round % 3 == 0 ? 999999970 : round % 3 == 1 ? -500000000 : 0;
    const QuarnFloat unit(1, shift);
    const auto check = [&](const std::vector<QuarnFloat>& values, const std::vector<QuarnFloat>& expected) {
      REQUIRE(values.size() == expected.size());
      for (std::size_t i = 0; i < values.size(); ++i) {
        CHECK(fabs(values[i] / unit - expected[i]) <= QuarnFloat(1, -16));
      }
    };
    const FarMatrix<T> hermitian(n, true, shift, random);
    check(tesk2mp::symmetric_eigenvalues(hermitian.far), tesk2mp::symmetric_eigenvalues(hermitian.near));
    check(tesk2mp::symmetric_eigen(hermitian.far).values, tesk2mp::symmetric_eigenvalues(hermitian.near));
    const FarMatrix<T> general(n, false, shift, random);
    check(tesk2mp::svd(general.far).values, tesk2mp::singular_values(general.near));
    if constexpr (std::is_same_v<T, Complex>) {
      Complex sum;
      for (const Complex& value : tesk2mp::eigenvalues(general.far)) {
        sum = sum + value;
      }
      for (std::size_t i = 0; i < n; ++i) {
        sum = sum - general.far(i, i);
      }
      CHECK(tesk::magnitude(sum) / unit <= QuarnFloat(1, -16));
    }
  }
  // The largest number, its reciprocal, and one between them.
  const QuarnFloat largest("9e999999999");
  const tesk2mp::Matrix<QuarnFloat> a{{largest, 2}, {2, QuarnFloat(1, -999999999)}};
  CHECK(tesk2mp::symmetric_eigenvalues(a) == std::vector<QuarnFloat>{0, largest});
}

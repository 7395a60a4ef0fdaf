// Generalised symmetric eigenproblems: residuals in units of the last place, the scale of eigenvectors, B that is
// ill-conditioned, far from 1 or not definite.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/hermitian.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;

namespace {

Integer sygv(Integer itype, const char* jobz, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b,
             Integer ldb, QuarnFloat* w, QuarnFloat* work, Integer lwork) {
  Integer info = -99;
  QuarnMPX_dsygv_(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, &info, 1, 1);
  return info;
}
Integer sygv(Integer itype, const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda, Complex* b,
             Integer ldb, QuarnFloat* w, Complex* work, Integer lwork) {
  Integer info = -99;
  QuarnMPX_zhegv_(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, nullptr, &info, 1, 1);
  return info;
}
Integer sygst(Integer itype, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb) {
  Integer info = -99;
  QuarnMPX_dsygst_(itype, uplo, n, a, lda, b, ldb, &info, 1);
  return info;
}
Integer sygst(Integer itype, const char* uplo, Integer n, Complex* a, Integer lda, Complex* b, Integer ldb) {
  Integer info = -99;
  QuarnMPX_zhegst_(itype, uplo, n, a, lda, b, ldb, &info, 1);
  return info;
}
Integer syev(Matrix<QuarnFloat>& a, const char* uplo, QuarnFloat* w, QuarnFloat* work, Integer lwork) {
  Integer info = -99;
  QuarnMPX_dsyev_("N", uplo, a.rows(), a.data(), a.lda(), w, work, lwork, &info, 1, 1);
  return info;
}
Integer syev(Matrix<Complex>& a, const char* uplo, QuarnFloat* w, Complex* work, Integer lwork) {
  Integer info = -99;
  QuarnMPX_zheev_("N", uplo, a.rows(), a.data(), a.lda(), w, work, lwork, nullptr, &info, 1, 1);
  return info;
}

/// M M^H / n + I
template <class T>
Matrix<T> definite(const Matrix<T>& m) {
  Matrix<T> b = product(m, adjoint(m));
  for (Integer j = 1; j <= b.rows(); ++j) {
    for (Integer i = 1; i <= b.rows(); ++i) {
      b(i, j) = b(i, j) * T(QuarnFloat(1) / b.rows()) + T(double(i == j));
    }
  }
  return hermitian(b);
}

template <class T>
Matrix<T> scaled_columns(Matrix<T> x, const std::vector<QuarnFloat>& w) {
  for (Integer j = 1; j <= x.columns(); ++j) {
    for (Integer i = 1; i <= x.rows(); ++i) {
      x(i, j) = x(i, j) * T(w[std::size_t(j - 1)]);
    }
  }
  return x;
}

template <class T>
void check_problem(Integer itype, const char* uplo, const Matrix<T>& a, const Matrix<T>& b, int digits) {
  const Integer n = a.rows();
  CAPTURE(n);
  CAPTURE(digits);
  CAPTURE(itype);
  Matrix<T> x = only(uplo, a);
  Matrix<T> factor = only(uplo, b);
  std::vector<QuarnFloat> w(std::size_t(n) + 1);
  std::vector<T> work(3 * std::size_t(n) + 1);
  const Integer lwork = Integer(work.size());
  REQUIRE(sygv(itype, "V", uplo, n, x.data(), x.lda(), factor.data(), factor.lda(), w.data(), work.data(), lwork) == 0);
  CHECK(x.intact());
  CHECK(factor.intact());
  CHECK(std::is_sorted(w.begin(), w.end() - 1));
  Matrix<T> again = only(uplo, a);
  Matrix<T> b_again = only(uplo, b);
  std::vector<QuarnFloat> alone(w.size());
  REQUIRE(sygv(itype, "N", uplo, n, again.data(), again.lda(), b_again.data(), b_again.lda(), alone.data(), work.data(),
               lwork) == 0);
  QuarnFloat largest = 0;
  for (const QuarnFloat& value : w) {
    largest = std::max(largest, fabs(value));
  }
  for (std::size_t j = 0; j < w.size(); ++j) {
    CHECK(fabs(alone[j] - w[j]) <= largest * QuarnFloat(20, -digits));
  }
  // Out of its parts.
  Matrix<T> standard = only(uplo, a);
  REQUIRE(sygst(itype, uplo, n, standard.data(), standard.lda(), factor.data(), factor.lda()) == 0);
  CHECK(standard.intact());
  REQUIRE(syev(standard, uplo, alone.data(), work.data(), lwork) == 0);
  for (std::size_t j = 0; j < w.size(); ++j) {
    CHECK(fabs(alone[j] - w[j]) <= largest * QuarnFloat(200 * (n + 1), -digits));
  }
  const support::Digits finer(digits + kSpare);
  const Matrix<T> l = tesk::triangle_of(uplo) == tesk::Triangle::lower
                          ? triangle_of_matrix(tesk::Triangle::lower, tesk::Diagonal::general, factor)
                          : adjoint(triangle_of_matrix(tesk::Triangle::upper, tesk::Diagonal::general, factor));
  CHECK(ratio(distance(product(l, adjoint(l)), b), one_norm(b), n, digits) < kLargestRatio);
  const Matrix<T> left = itype == 3 ? product(b, product(a, x)) : product(a, itype == 1 ? x : product(b, x));
  const Matrix<T> right = scaled_columns(itype == 1 ? product(b, x) : x, w);
  const QuarnFloat norm = one_norm(a) * one_norm(b) * one_norm(x);
  CHECK(ratio(distance(left, right), norm, n, digits) < kLargestRatio);
  if (itype == 3) {
    CHECK(ratio(distance(product(x, adjoint(x)), b), one_norm(b), n, digits) < kLargestRatio);
  } else {
    const QuarnFloat size = one_norm(b) * one_norm(x) * one_norm(x);
    CHECK(ratio(distance(product(adjoint(x), product(b, x)), unit<T>(n)), size, n, digits) < kLargestRatio);
  }
}

}  // namespace

TEST_CASE_TEMPLATE("random symmetric matrices beside definite ones", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333, 1000}) {
    const bool long_numbers = digits > 100;
    for (const Integer n : {0, 1, 2, 3, 8, 40}) {
      if (n == 40 ? digits != 50 || sizeof(T) != sizeof(QuarnFloat) : n == 8 && long_numbers) {
        continue;
      }
      for (const Integer itype : {1, 2, 3}) {
        const support::Digits scope(digits);
        const Matrix<T> a = hermitian(Matrix<T>(n, n).randomise(random));
        const Matrix<T> b = definite(Matrix<T>(n, n).randomise(random));
        check_problem(itype, (n + itype) % 2 == 0 ? "L" : "u", a, b, digits);
      }
    }
  }
}

TEST_CASE("an ill-conditioned B costs no digits") {
  constexpr Integer n = 12;
  constexpr int digits = 30;
  const auto values = [](int working) {
    const support::Digits scope(working);
    Matrix<QuarnFloat> a(n, n);
    Matrix<QuarnFloat> b(n, n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        const support::Digits given(digits);
        a(i, j) = QuarnFloat(std::min(i, j));
        b(i, j) = QuarnFloat(1) / (i + j - 1);
      }
    }
    std::vector<QuarnFloat> w(n);
    std::vector<QuarnFloat> work(3 * n);
    REQUIRE(sygv(1, "N", "L", n, a.data(), a.lda(), b.data(), b.lda(), w.data(), work.data(), 3 * n) == 0);
    return w;
  };
  const std::vector<QuarnFloat> w = values(digits);
  const std::vector<QuarnFloat> exact = values(100);
  const support::Digits finer(100);
  CHECK(exact.back() > QuarnFloat("1e14"));
  for (std::size_t j = 0; j < n; ++j) {
    CHECK(fabs(w[j] - exact[j]) <= exact[j] * QuarnFloat(1, 1 - digits));
  }
}

TEST_CASE_TEMPLATE("generalised problems far from 1, without B's definiteness, and with wrong arguments", T, QuarnFloat,
                   Complex) {
  // 4 x = lambda 2 x, and so on, at both ends of the range.
  for (const int power : {-300000001, 0, 300000000}) {
    for (const Integer itype : {1, 2, 3}) {
      CAPTURE(power);
      CAPTURE(itype);
      T a[] = {T(QuarnFloat(4, power)), T(0.0), T(0.0), T(QuarnFloat(9, power))};
      T b[] = {T(QuarnFloat(1, power)), T(0.0), T(0.0), T(QuarnFloat(1, power))};
      QuarnFloat w[2];
      T work[9];
      REQUIRE(sygv(itype, "V", "L", 2, a, 2, b, 2, w, work, 9) == 0);
      CHECK(w[0] == QuarnFloat(4, itype == 1 ? 0 : 2 * power));
      CHECK(w[1] == QuarnFloat(9, itype == 1 ? 0 : 2 * power));
      CHECK(a[1] == T(0.0));
      const QuarnFloat size = tesk::modulus(a[0]) * tesk::modulus(a[0]);
      CHECK(fabs(size * QuarnFloat(1, itype == 3 ? -power : power) - 1) < QuarnFloat(1, 2 - QuarnDigits()));
    }
  }
  constexpr Integer n = 4;
  std::vector<QuarnFloat> w(n);
  std::vector<T> work(3 * n);
  for (Integer i = 1; i <= n; ++i) {
    for (const double bad : {0.0, -1.0, double(NAN), HUGE_VAL}) {
      Matrix<T> a = unit<T>(n);
      Matrix<T> b = unit<T>(n);
      b(i, i) = T(bad);
      CHECK(sygv(1, "V", "U", n, a.data(), a.lda(), b.data(), b.lda(), w.data(), work.data(), 3 * n) == n + i);
      b = unit<T>(n);
      a(1, i) = T(bad);
      CHECK(sygv(1, "V", "U", n, a.data(), a.lda(), b.data(), b.lda(), w.data(), work.data(), 3 * n) ==
            (isfinite(QuarnFloat(bad)) ? 0 : n));
    }
  }
  T a[4] = {T(1.0), T(0.0), T(0.0), T(4.0)};
  T b[4] = {T(1.0), T(0.0), T(0.0), T(1.0)};
  CHECK(sygv(0, "V", "L", 2, a, 2, b, 2, w.data(), work.data(), 9) == -1);
  CHECK(sygv(4, "X", "L", 2, a, 2, b, 2, w.data(), work.data(), 9) == -1);
  CHECK(sygv(1, "X", "X", 2, a, 2, b, 2, w.data(), work.data(), 9) == -2);
  CHECK(sygv(1, "V", "X", -1, a, 2, b, 2, w.data(), work.data(), 9) == -3);
  CHECK(sygv(1, "V", "L", -1, a, 2, b, 2, w.data(), work.data(), 9) == -4);
  CHECK(sygv(1, "V", "L", 2, a, 1, b, 1, w.data(), work.data(), 9) == -6);
  CHECK(sygv(1, "V", "L", 2, a, 2, b, 1, w.data(), work.data(), 9) == -8);
  CHECK(sygv(1, "V", "L", 2, a, 2, b, 2, w.data(), work.data(), 2) == -11);
  CHECK(sygv(1, "V", "L", 2, a, 2, b, 2, w.data(), work.data(), -1) == 0);
  CHECK(a[0] == T(1.0));
  CHECK(sygst(0, "X", 2, a, 2, b, 2) == -1);
  CHECK(sygst(1, "X", -1, a, 2, b, 2) == -2);
  CHECK(sygst(1, "L", -1, a, 2, b, 2) == -3);
  CHECK(sygst(1, "L", 2, a, 1, b, 1) == -5);
  CHECK(sygst(1, "L", 2, a, 2, b, 1) == -7);
}

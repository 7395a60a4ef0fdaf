// Singular values: residuals in units of the last place, matrices of known singular values, graded ones to the last
// digit of each, and the jobs of the driver.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;

namespace {

Integer gesvd(const char* jobu, const char* jobvt, Matrix<QuarnFloat>& a, QuarnFloat* s, Matrix<QuarnFloat>& u,
              Matrix<QuarnFloat>& vt) {
  Integer info = -99;
  std::vector<QuarnFloat> work(500);
  QuarnMPX_dgesvd_(jobu, jobvt, a.rows(), a.columns(), a.data(), a.lda(), s, u.data(), u.lda(), vt.data(), vt.lda(),
                   work.data(), 500, &info, 1, 1);
  return info;
}
Integer gesvd(const char* jobu, const char* jobvt, Matrix<Complex>& a, QuarnFloat* s, Matrix<Complex>& u,
              Matrix<Complex>& vt) {
  Integer info = -99;
  std::vector<Complex> work(500);
  QuarnMPX_zgesvd_(jobu, jobvt, a.rows(), a.columns(), a.data(), a.lda(), s, u.data(), u.lda(), vt.data(), vt.lda(),
                   work.data(), 500, nullptr, &info, 1, 1);
  return info;
}

template <class T>
Matrix<T> columns_of(const Matrix<T>& a, Integer columns) {
  Matrix<T> result(a.rows(), columns);
  for (Integer j = 1; j <= columns; ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      result(i, j) = a(i, j);
    }
  }
  return result;
}

/// norm(A - U diag(s) V^H), norm(U^H U - I), norm(V^H V - I) as ratios.
template <class T>
void check_factors(const Matrix<T>& a, const Matrix<T>& u, const std::vector<QuarnFloat>& s, const Matrix<T>& vt,
                   int digits) {
  const support::Digits finer(digits + kSpare);
  const Integer few = std::min(a.rows(), a.columns());
  const Integer most = std::max<Integer>({1, a.rows(), a.columns()});
  Matrix<T> scaled = columns_of(u, few);
  for (Integer j = 1; j <= few; ++j) {
    for (Integer i = 1; i <= u.rows(); ++i) {
      tesk::multiply_by(scaled(i, j), s[std::size_t(j - 1)]);
    }
  }
  const Matrix<T> v = columns_of(adjoint(vt), few);
  CHECK(ratio(distance(product(scaled, adjoint(v)), a), one_norm(a), most, digits) < kLargestRatio);
  CHECK(ratio(distance(product(adjoint(u), u), unit<T>(u.columns())), 1, most, digits) < kLargestRatio);
  CHECK(ratio(distance(product(vt, adjoint(vt)), unit<T>(vt.rows())), 1, most, digits) < kLargestRatio);
}

template <class T>
void check_svd(const Matrix<T>& a, int digits) {
  const Integer m = a.rows();
  const Integer n = a.columns();
  CAPTURE(m);
  CAPTURE(n);
  CAPTURE(digits);
  const Integer few = std::min(m, n);
  std::vector<QuarnFloat> s(std::size_t(few) + 1, -1);
  Matrix<T> copy = a;
  Matrix<T> u(m, m);
  Matrix<T> vt(n, n);
  REQUIRE(gesvd("A", "A", copy, s.data(), u, vt) == 0);
  CHECK(u.intact());
  CHECK(vt.intact());
  CHECK(std::is_sorted(s.rbegin(), s.rend()));
  CHECK(s.back() == -1);
  check_factors(a, u, s, vt, digits);
  // The same out of the other jobs.
  for (const char* jobs : {"NN", "SO", "OS", "SN", "NS"}) {
    CAPTURE(jobs);
    std::vector<QuarnFloat> again(s.size(), -1);
    Matrix<T> place = a;
    Matrix<T> few_u(m, few);
    Matrix<T> few_vt(few, n);
    REQUIRE(gesvd(jobs, jobs + 1, place, again.data(), few_u, few_vt) == 0);
    CHECK(place.intact());
    const support::Digits finer(digits + kSpare);
    for (std::size_t i = 0; i < s.size(); ++i) {
      CHECK(ratio(fabs(again[i] - s[i]), one_norm(a), std::max<Integer>({1, m, n}), digits) < kLargestRatio);
    }
    if (jobs[0] == 'O' && jobs[1] == 'S') {
      check_factors(a, columns_of(place, few), again, few_vt, digits);
    }
    if (jobs[1] == 'O') {
      check_factors(a, few_u, again, adjoint(columns_of(adjoint(place), few)), digits);
    }
  }
}

}  // namespace

TEST_CASE_TEMPLATE("singular values and vectors of random matrices" * doctest::test_suite("long"), T, QuarnFloat,
                   Complex) {
  support::RandomNumbers random;
  struct Shape {
    Integer m;
    Integer n;
  };
  for (const int digits : {1, 2, 16, 50, 333}) {
    for (const Shape& shape :
         {Shape{0, 0}, {0, 2}, {2, 0}, {1, 1}, {1, 3}, {3, 1}, {4, 4}, {9, 5}, {5, 9}, {18, 18}, {35, 20}, {40, 40}}) {
      if (shape.m > 20 && digits != 50) {
        continue;
      }
      const support::Digits scope(digits);
      check_svd(Matrix<T>(shape.m, shape.n).randomise(random), digits);
    }
  }
}

TEST_CASE_TEMPLATE("singular values that are zero, multiple, graded and of any size", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr Integer n = 10;
  for (const int digits : {5, 50}) {
    const support::Digits scope(digits);
    for (int kind = 0; kind < 6; ++kind) {
      CAPTURE(kind);
      Matrix<T> a = Matrix<T>(n + 2, n).randomise(random);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n + 2; ++i) {
          switch (kind) {
            case 0:
              a(i, j) = T(0.0);
              break;
            case 1:  // rank 2
              a(i, j) = T(double(i + j));
              break;
            case 2:  // columns of zeros, and an orthogonal rest
              a(i, j) = T(double(i == j && j % 3 != 0));
              break;
            case 3:
              a(i, j) = a(i, j) * T(QuarnFloat(1, -5 * int(i + j)));
              break;
            case 4:
              a(i, j) = a(i, j) * T(QuarnFloat(1, 400000000));
              break;
            default:
              a(i, j) = a(i, j) * T(QuarnFloat(1, -400000000));
          }
        }
      }
      check_svd(a, digits);
    }
  }
}

TEST_CASE("singular values that formulas give") {
  // 1 on and above the diagonal: 1 / (2 sin((2 k - 1) pi / (4 n + 2))).
  constexpr Integer n = 24;
  for (const int digits : {16, 60}) {
    const support::Digits scope(digits);
    Matrix<QuarnFloat> a(n, n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        a(i, j) = i <= j ? 1 : 0;
      }
    }
    std::vector<QuarnFloat> s(n);
    Matrix<QuarnFloat> unused(1, 1);
    REQUIRE(gesvd("N", "N", a, s.data(), unused, unused) == 0);
    const support::Digits finer(digits + kSpare);
    const QuarnFloat pi = acos(QuarnFloat(-1));
    for (Integer k = 1; k <= n; ++k) {
      const QuarnFloat expected = 1 / (2 * sin((2 * k - 1) * pi / (4 * n + 2)));
      CHECK(ratio(fabs(s[std::size_t(k - 1)] - expected), s[0], 1, digits) < 2);
    }
  }
}

TEST_CASE_TEMPLATE("what is no number in a matrix of singular values, and wrong arguments", T, QuarnFloat, Complex) {
  std::vector<QuarnFloat> s(4);
  for (const double bad : {HUGE_VAL, -HUGE_VAL, double(NAN)}) {
    for (Integer at = 0; at < 12; ++at) {
      Matrix<T> a = unit<T>(4, 3);
      a(at % 4 + 1, at / 4 + 1) = T(bad);
      Matrix<T> u(4, 4);
      Matrix<T> vt(3, 3);
      CHECK(gesvd("A", "A", a, s.data(), u, vt) == 3);
      CHECK(u.intact());
    }
  }
  const auto wrong = [&](const char* jobu, const char* jobvt, Integer m, Integer n, Integer lda, Integer ldu,
                         Integer ldvt, Integer lwork) {
    T x[4] = {};
    T work[20];
    Integer info = -99;
    if constexpr (std::is_same_v<T, Complex>) {
      QuarnMPX_zgesvd_(jobu, jobvt, m, n, x, lda, s.data(), x, ldu, x, ldvt, work, lwork, nullptr, &info, 1, 1);
    } else {
      QuarnMPX_dgesvd_(jobu, jobvt, m, n, x, lda, s.data(), x, ldu, x, ldvt, work, lwork, &info, 1, 1);
    }
    return info;
  };
  CHECK(wrong("X", "A", 2, 2, 2, 2, 2, 20) == -1);
  CHECK(wrong("A", "X", 2, 2, 2, 2, 2, 20) == -2);
  CHECK(wrong("O", "O", 2, 2, 2, 2, 2, 20) == -2);
  CHECK(wrong("A", "A", -1, 2, 2, 2, 2, 20) == -3);
  CHECK(wrong("A", "A", 2, -1, 2, 2, 2, 20) == -4);
  CHECK(wrong("A", "A", 2, 2, 1, 2, 2, 20) == -6);
  CHECK(wrong("S", "A", 2, 2, 2, 1, 2, 20) == -9);
  CHECK(wrong("N", "A", 2, 2, 2, 1, 1, 20) == -11);
  CHECK(wrong("N", "N", 2, 2, 2, 1, 1, 2) == -13);
  CHECK(wrong("N", "N", 2, 2, 2, 1, 1, -1) == 0);
}

namespace {

Integer gejsv(Matrix<QuarnFloat>& a, QuarnFloat* s, Matrix<QuarnFloat>& u, Matrix<QuarnFloat>& v) {
  Integer info = -99;
  Integer iwork[3];
  QuarnFloat work[7];
  QuarnMPX_dgejsv_("F", "U", "V", "R", "N", "N", a.rows(), a.columns(), a.data(), a.lda(), s, u.data(), u.lda(),
                   v.data(), v.lda(), work, 7, iwork, &info, 1, 1, 1, 1, 1, 1);
  return info;
}
Integer gejsv(Matrix<Complex>& a, QuarnFloat* s, Matrix<Complex>& u, Matrix<Complex>& v) {
  Integer info = -99;
  Integer iwork[3];
  Complex work[2];
  QuarnFloat rwork[7];
  QuarnMPX_zgejsv_("F", "U", "V", "R", "N", "N", a.rows(), a.columns(), a.data(), a.lda(), s, u.data(), u.lda(),
                   v.data(), v.lda(), work, 2, rwork, 7, iwork, &info, 1, 1, 1, 1, 1, 1);
  return info;
}

}  // namespace

TEST_CASE_TEMPLATE("graded singular values to the last digits of each", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr Integer n = 6;
  for (const int digits : {2, 16, 50}) {
    const support::Digits scope(digits);
    // D1 B D2 with D1, D2 from 1 to 1e-200, in no order.
    Matrix<T> a = Matrix<T>(n + 1, n).randomise(random);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n + 1; ++i) {
        a(i, j) = a(i, j) * T(QuarnFloat(1, -40 * int(3 * i % 7) - 40 * int(2 * j % 5)));
      }
    }
    const auto values = [&](int at) {
      const support::Digits more(at);
      Matrix<T> copy = a;
      Matrix<T> u(n + 1, n);
      Matrix<T> v(n, n);
      std::vector<QuarnFloat> s(n);
      CHECK(gejsv(copy, s.data(), u, v) == 0);
      CHECK(u.intact());
      CHECK(v.intact());
      CHECK(std::is_sorted(s.rbegin(), s.rend()));
      check_factors(a, u, s, adjoint(v), at);
      return s;
    };
    const std::vector<QuarnFloat> s = values(digits);
    // The other algorithm, with digits enough for the smallest beside the largest.
    std::vector<QuarnFloat> exact(n);
    {
      const support::Digits many(900);
      Matrix<T> copy = a;
      Matrix<T> unused(1, 1);
      REQUIRE(gesvd("N", "N", copy, exact.data(), unused, unused) == 0);
    }
    const support::Digits finer(digits + kSpare);
    for (std::size_t i = 0; i < n; ++i) {
      CHECK(ratio(fabs(s[i] - exact[i]), exact[i], n, digits) < 100);
    }
  }
}

TEST_CASE_TEMPLATE("one-sided rotations of matrices of any rank", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  const support::Digits scope(30);
  for (const Integer n : {0, 1, 4, 11}) {
    for (int kind = 0; kind < 3; ++kind) {
      Matrix<T> a = Matrix<T>(n + 2, n).randomise(random);
      for (Integer j = 1; j <= n && kind > 0; ++j) {
        for (Integer i = 1; i <= n + 2; ++i) {
          a(i, j) = T(kind == 1 ? 0.0 : double((i + j) % 2));
        }
      }
      Matrix<T> copy = a;
      Matrix<T> u(n + 2, n);
      Matrix<T> v(n, n);
      std::vector<QuarnFloat> s(std::size_t(n) + 1);
      REQUIRE(gejsv(copy, s.data(), u, v) == 0);
      s.pop_back();
      check_factors(a, u, s, adjoint(v), 30);
    }
  }
  Matrix<T> wide(2, 3);
  QuarnFloat s[3];
  CHECK(gejsv(wide, s, wide, wide) == -8);
  Matrix<T> bad = unit<T>(3, 2);
  bad(3, 1) = T(Complex(QuarnFloat("nan")).re);
  CHECK(gejsv(bad, s, bad, bad) == 2);
}

// The test ratios that LAPACK's own tests use (residual over n norm eps), on the classic test matrices. A ratio above
// 30 counts as wrong there, and here.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "src/dense/cholesky.h"
#include "src/dense/eigen.h"
#include "src/dense/lu.h"
#include "support/digits.h"
#include "support/matrices.h"

using support::Matrix;
using Reals = Matrix<QuarnFloat>;
using Complexes = Matrix<Complex>;

namespace {

constexpr double kLargestRatio = 30;

struct Family {
  const char* name;
  std::function<QuarnFloat(Integer, Integer, Integer)> element;  // of order n
};

QuarnFloat power(const QuarnFloat& base, Integer exponent) { return pow(base, QuarnFloat(exponent)); }

/// Families whose elements have a formula; the others are random.
std::vector<Family> families(support::RandomNumbers& random) {
  const auto next = [&random] { return random.next<QuarnFloat>(); };
  return {
      {"random", [=](Integer, Integer, Integer) { return next(); }},
      {"graded", [=](Integer, Integer i, Integer j) { return next() * QuarnFloat(1, -int(i + j)); }},
      {"singular", [](Integer, Integer i, Integer j) { return QuarnFloat(i * j); }},
      {"Hilbert", [](Integer, Integer i, Integer j) { return QuarnFloat(1) / (i + j - 1); }},
      {"Frank",
       [](Integer n, Integer i, Integer j) { return QuarnFloat(i > j + 1 ? Integer(0) : n + 1 - std::max(i, j)); }},
      {"Wilkinson",
       [](Integer n, Integer i, Integer j) {
         const Integer twice = i == j ? n + 1 - 2 * i : 0;
         return i == j ? fabs(QuarnFloat(twice)) / 2 : QuarnFloat(Integer(i - j == 1 || j - i == 1));
       }},
      {"Grcar",
       [](Integer, Integer i, Integer j) { return QuarnFloat(i == j + 1 ? -1 : Integer(j >= i && j <= i + 3)); }},
      {"Kahan",
       [](Integer, Integer i, Integer j) {
         const QuarnFloat s("0.9319");  // sin and cos of 1.2 to 4 digits
         return i > j ? QuarnFloat(0) : power(s, i - 1) * QuarnFloat(i == j ? "1" : "-0.3624");
       }},
      {"Toeplitz", [](Integer, Integer i, Integer j) { return QuarnFloat(1) / (1 + 2 * (i - j) * (i - j)); }},
  };
}

/// The unit roundoff of decimal arithmetic.
QuarnFloat roundoff(int digits) { return QuarnFloat(5, -digits); }

/// Norm of the largest column of a - b, at the precision of the moment.
template <class T>
QuarnFloat distance(const Matrix<T>& a, const Matrix<T>& b) {
  QuarnFloat largest = 0;
  for (Integer j = 1; j <= a.columns(); ++j) {
    QuarnFloat sum = 0;
    for (Integer i = 1; i <= a.rows(); ++i) {
      sum += tesk::modulus(a(i, j) - b(i, j));
    }
    largest = std::max(largest, sum);
  }
  return largest;
}

template <class T>
QuarnFloat one_norm(const Matrix<T>& a) {
  Matrix<T> zero(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      zero(i, j) = T(0.0);
    }
  }
  return distance(a, zero);
}

/// residual / (n norm eps); 0 where the matrix is empty or zero and so is the residual.
double ratio(const QuarnFloat& residual, const QuarnFloat& norm, Integer n, int digits) {
  return residual == 0 ? 0 : FloatToDouble(residual / (norm * roundoff(digits) * n));
}

template <class T>
Matrix<T> transposed(const Matrix<T>& a) {
  return op_of_matrix(tesk::Op::conjugate, a);
}

double lu_ratio(const Reals& a, int digits) {
  const Integer n = a.rows();
  Reals lu = a;
  std::vector<Integer> ipiv(std::size_t(n) + 1);
  Integer info = 0;
  f07adf_(n, n, lu.data(), lu.lda(), ipiv.data(), &info);
  CHECK(info >= 0);
  CHECK(lu.intact());
  const support::Digits exact(3 * digits);
  Reals back = product(triangle_of_matrix(tesk::Triangle::lower, tesk::Diagonal::unit, lu),
                       triangle_of_matrix(tesk::Triangle::upper, tesk::Diagonal::general, lu));
  for (Integer i = n; i >= 1; --i) {
    for (Integer j = 1; j <= n; ++j) {
      std::swap(back(i, j), back(ipiv[std::size_t(i - 1)], j));
    }
  }
  return ratio(distance(back, a), one_norm(a), n, digits);
}

/// Of A A^T + norm(A)^2 I / 4, times a complex diagonal of modulus 1 from both sides.
double cholesky_ratio(const Reals& a, int digits) {
  const Integer n = a.rows();
  Complexes b(n, n);
  {
    const support::Digits exact(3 * digits);
    const QuarnFloat shift = one_norm(a) * one_norm(a) / 4 + QuarnFloat(1, -3);
    const Reals square = product(a, transposed(a));
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        const Complex turned[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
        b(i, j) = Complex(square(i, j) + (i == j ? shift : QuarnFloat(0))) * turned[(i - j + 4 * n) % 4];
      }
    }
  }
  Complexes factor = b;
  Integer info = 0;
  f07frf_("L", n, factor.data(), factor.lda(), &info, 1);
  CHECK(info == 0);
  CHECK(factor.intact());
  const support::Digits exact(3 * digits);
  const Complexes lower = triangle_of_matrix(tesk::Triangle::lower, tesk::Diagonal::general, factor);
  return ratio(distance(product(lower, transposed(lower)), b), one_norm(b), n, digits);
}

/// The larger ratio of the Schur form of A's Hessenberg part: of A - Z T Z^T and of I - Z^T Z.
double schur_ratio(Reals a, int digits) {
  const Integer n = a.rows();
  Reals unit(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      unit(i, j) = Integer(i == j);
      if (i > j + 1) {
        a(i, j) = 0;
      }
    }
  }
  Reals t = a;
  Reals z(n, n);
  std::vector<QuarnFloat> wr(std::size_t(n) + 1);
  std::vector<QuarnFloat> wi(std::size_t(n) + 1);
  std::vector<QuarnFloat> work(std::size_t(n) + 1);
  Integer info = 0;
  f08pef_("S", "I", n, 1, n, t.data(), t.lda(), wr.data(), wi.data(), z.data(), z.lda(), work.data(), n + 1, &info, 1,
          1);
  CHECK(info == 0);
  CHECK(t.intact());
  CHECK(z.intact());
  const support::Digits exact(3 * digits);
  const double back = ratio(distance(product(product(z, t), transposed(z)), a), one_norm(a), n, digits);
  return std::max(back, ratio(distance(product(transposed(z), z), unit), 1, n, digits));
}

}  // namespace

TEST_CASE("test ratios of LU, Cholesky and Schur form on the classic matrices") {
  support::RandomNumbers random;
  struct Round {
    int digits;
    std::vector<Integer> orders;
  };
  for (const Round& round : {Round{50, {0, 1, 2, 3, 5, 10, 30}}, Round{100, {3, 10}}, Round{500, {2, 5}}}) {
    for (const Integer n : round.orders) {
      const support::Digits scope(round.digits);
      for (const Family& family : families(random)) {
        Reals a(n, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            a(i, j) = family.element(n, i, j);
          }
        }
        const std::string which = family.name;
        CAPTURE(which);
        CAPTURE(n);
        CAPTURE(round.digits);
        CHECK(lu_ratio(a, round.digits) < kLargestRatio);
        CHECK(cholesky_ratio(a, round.digits) < kLargestRatio);
        CHECK(schur_ratio(a, round.digits) < kLargestRatio);
      }
    }
  }
}

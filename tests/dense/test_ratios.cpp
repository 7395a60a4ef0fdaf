// The test ratios that LAPACK's own tests use (residual over n norm eps), on the classic test matrices. A ratio above
// 30 counts as wrong there, and here.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "support/digits.h"
#include "support/hessenberg.h"
#include "support/matrices.h"
#include "tesk2mp/dense.h"

using support::Matrix;
using Reals = Matrix<QuarnFloat>;
using Complexes = Matrix<Complex>;

namespace {

constexpr double kLargestRatio = 30;
constexpr int kSpare = 20;  // digits beyond the working ones in which residuals are formed

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
  return op_of_matrix(tesk::Op::conjugate_transpose, a);
}

void factorise(Reals& a, Integer* ipiv, Integer* info) {
  QuarnMP_f07adf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv, info);
}
void factorise(Complexes& a, Integer* ipiv, Integer* info) {
  QuarnMP_f07arf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv, info);
}

template <class T>
double lu_ratio(const Matrix<T>& a, int digits) {
  const Integer n = a.rows();
  Matrix<T> lu = a;
  std::vector<Integer> ipiv(std::size_t(n) + 1);
  Integer info = 0;
  factorise(lu, ipiv.data(), &info);
  CHECK(info >= 0);
  CHECK(lu.intact());
  const support::Digits finer(digits + kSpare);
  Matrix<T> back = product(triangle_of_matrix(tesk::Triangle::lower, tesk::Diagonal::unit, lu),
                           triangle_of_matrix(tesk::Triangle::upper, tesk::Diagonal::general, lu));
  for (Integer i = n; i >= 1; --i) {
    for (Integer j = 1; j <= n; ++j) {
      std::swap(back(i, j), back(ipiv[std::size_t(i - 1)], j));
    }
  }
  return ratio(distance(back, a), one_norm(a), n, digits);
}

/// D A D^H with the diagonal matrix D of powers of i.
Complexes turned(const Reals& a) {
  const Complex powers[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  Complexes b(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      b(i, j) = Complex(a(i, j)) * powers[(i - j + 4 * a.columns()) % 4];
    }
  }
  return b;
}

/// Of A A^T + norm(A)^2 I / 4, made complex.
double cholesky_ratio(const char* uplo, const Reals& a, int digits) {
  const Integer n = a.rows();
  Reals square(n, n);
  {
    const support::Digits finer(digits + kSpare);
    const QuarnFloat shift = one_norm(a) * one_norm(a) / 4 + QuarnFloat(1, -3);
    square = product(a, transposed(a));
    for (Integer j = 1; j <= n; ++j) {
      square(j, j) += shift;
    }
  }
  const Complexes b = turned(square);
  Complexes factor = b;
  Integer info = 0;
  QuarnMP_f07frf_(uplo, n, factor.data(), factor.lda(), &info, 1);
  CHECK(info == 0);
  CHECK(factor.intact());
  const support::Digits finer(digits + kSpare);
  const Complexes stored = triangle_of_matrix(tesk::triangle_of(uplo), tesk::Diagonal::general, factor);
  const Complexes other = transposed(stored);
  const Complexes back =
      tesk::triangle_of(uplo) == tesk::Triangle::lower ? product(stored, other) : product(other, stored);
  return ratio(distance(back, b), one_norm(b), n, digits);
}

/// The larger ratio of the Schur form of a Hessenberg matrix: of A - Z T Z^T and of I - Z^T Z.
double schur_ratio(const Reals& a, int digits) {
  const Integer n = a.rows();
  Reals unit(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      unit(i, j) = Integer(i == j);
    }
  }
  Reals t = a;
  Reals z(n, n);
  std::vector<QuarnFloat> wr(std::size_t(n) + 1);
  std::vector<QuarnFloat> wi(std::size_t(n) + 1);
  std::vector<QuarnFloat> work(std::size_t(n) + 1);
  Integer info = 0;
  QuarnMP_f08pef_("S", "I", n, 1, n, t.data(), t.lda(), wr.data(), wi.data(), z.data(), z.lda(), work.data(), n + 1,
                  &info, 1, 1);
  CHECK(info == 0);
  CHECK(t.intact());
  CHECK(z.intact());
  const support::Digits finer(digits + kSpare);
  const double back = ratio(distance(product(product(z, t), transposed(z)), a), one_norm(a), n, digits);
  return std::max(back, ratio(distance(product(transposed(z), z), unit), 1, n, digits));
}

}  // namespace

TEST_CASE("test ratios of LU, Cholesky and Schur form on the classic matrices") {
  support::RandomNumbers random;
  for (const int digits : {50, 100, 500}) {
    for (const Integer n : {0, 1, 2, 3, 5, 10, 30}) {
      const support::Digits scope(digits);
      std::vector<Family> which_families = families(random);
      if (n == 30 && digits == 500) {
        which_families.resize(4);  // the others would take seconds
      }
      for (const Family& family : which_families) {
        Reals a(n, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            a(i, j) = family.element(n, i, j);
          }
        }
        const std::string which = family.name;
        CAPTURE(which);
        CAPTURE(n);
        CAPTURE(digits);
        CHECK(lu_ratio(a, digits) < kLargestRatio);
        CHECK(lu_ratio(turned(a), digits) < kLargestRatio);
        CHECK(cholesky_ratio("U", a, digits) < kLargestRatio);
        CHECK(cholesky_ratio("L", a, digits) < kLargestRatio);
        CHECK(schur_ratio(support::hessenberg_form(a), digits) < kLargestRatio);
      }
    }
  }
}

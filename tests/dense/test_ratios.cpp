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

/// The exports of one scalar type.
template <class T>
struct Exports;
template <>
struct Exports<QuarnFloat> {
  static constexpr auto getrf = QuarnMP_f07adf_;
  static constexpr auto exact_getrf = QuarnMPX_dgetrf_;
  static constexpr auto exact_getri = QuarnMPX_dgetri_;
  static constexpr auto exact_potrf = QuarnMPX_dpotrf_;
  static constexpr auto exact_potrs = QuarnMPX_dpotrs_;
};
template <>
struct Exports<Complex> {
  static constexpr auto getrf = QuarnMP_f07arf_;
  static constexpr auto exact_getrf = QuarnMPX_zgetrf_;
  static constexpr auto exact_getri = QuarnMPX_zgetri_;
  static constexpr auto potrf = QuarnMP_f07frf_;
  static constexpr auto exact_potrf = QuarnMPX_zpotrf_;
  static constexpr auto exact_potrs = QuarnMPX_zpotrs_;
};

template <class T>
double lu_ratio(const Matrix<T>& a, int digits, decltype(Exports<T>::getrf) factorise = Exports<T>::getrf) {
  const Integer n = a.rows();
  Matrix<T> lu = a;
  std::vector<Integer> ipiv(std::size_t(n) + 1);
  Integer info = 0;
  factorise(n, n, lu.data(), lu.lda(), ipiv.data(), &info);
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

/// A A^H + norm(A)^2 I / 4, at more digits.
template <class T>
Matrix<T> definite(const Matrix<T>& a, int digits) {
  const support::Digits finer(digits + kSpare);
  const QuarnFloat shift = one_norm(a) * one_norm(a) / 4 + QuarnFloat(1, -3);
  Matrix<T> square = product(a, transposed(a));
  for (Integer j = 1; j <= a.rows(); ++j) {
    square(j, j) = square(j, j) + T(shift);
  }
  return square;
}

template <class T>
double cholesky_ratio(const char* uplo, const Matrix<T>& a, int digits,
                      decltype(Exports<T>::exact_potrf) factorise = Exports<T>::exact_potrf) {
  const Integer n = a.rows();
  Matrix<T> factor = a;
  Integer info = 0;
  factorise(uplo, n, factor.data(), factor.lda(), &info, 1);
  CHECK(info == 0);
  CHECK(factor.intact());
  const support::Digits finer(digits + kSpare);
  const Matrix<T> stored = triangle_of_matrix(tesk::triangle_of(uplo), tesk::Diagonal::general, factor);
  const Matrix<T> other = transposed(stored);
  const Matrix<T> back =
      tesk::triangle_of(uplo) == tesk::Triangle::lower ? product(stored, other) : product(other, stored);
  return ratio(distance(back, a), one_norm(a), n, digits);
}

/// Of A X - B with X from the Cholesky factor.
template <class T>
double cholesky_solution_ratio(const char* uplo, Matrix<T> a, const Matrix<T>& b, int digits) {
  const Integer n = a.rows();
  const Matrix<T> given = a;
  Matrix<T> x = b;
  Integer info = 0;
  Exports<T>::exact_potrf(uplo, n, a.data(), a.lda(), &info, 1);
  Exports<T>::exact_potrs(uplo, n, b.columns(), a.data(), a.lda(), x.data(), x.lda(), &info, 1);
  CHECK(info == 0);
  CHECK(x.intact());
  const support::Digits finer(digits + kSpare);
  return ratio(distance(product(given, x), b), one_norm(given) * one_norm(x), n, digits);
}

/// Of A X - I with X the inverse.
template <class T>
double inverse_ratio(const Matrix<T>& a, int digits) {
  const Integer n = a.rows();
  Matrix<T> x = a;
  Matrix<T> unit(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      unit(i, j) = T(double(i == j));
    }
  }
  std::vector<Integer> ipiv(std::size_t(n) + 1);
  std::vector<T> work(std::size_t(n) + 1);
  Integer info = 0;
  Exports<T>::exact_getrf(n, n, x.data(), x.lda(), ipiv.data(), &info);
  if (info > 0 && digits <= 2) {
    return 0;  // random numbers of so few digits make singular matrices
  }
  CHECK(info == 0);
  Exports<T>::exact_getri(n, x.data(), x.lda(), ipiv.data(), work.data(), n + 1, &info);
  CHECK(info == 0);
  CHECK(x.intact());
  const support::Digits finer(digits + kSpare);
  return ratio(distance(product(a, x), unit), one_norm(a) * one_norm(x), n, digits);
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

TEST_CASE("test ratios of LU, Cholesky and Schur form on the classic matrices" * doctest::test_suite("long")) {
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
        const Complexes square = turned(definite(a, digits));
        CHECK(cholesky_ratio("U", square, digits, Exports<Complex>::potrf) < kLargestRatio);
        CHECK(cholesky_ratio("L", square, digits, Exports<Complex>::potrf) < kLargestRatio);
        CHECK(schur_ratio(support::hessenberg_form(a), digits) < kLargestRatio);
      }
    }
  }
}

TEST_CASE_TEMPLATE("factorisations out of sums rounded once have test ratios below one", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const int digits : {2, 16, 50, 125, 126, 333}) {
    for (const Integer n : {0, 1, 2, 20, 70}) {
      if (n == 70 && digits != 50) {
        continue;
      }
      const support::Digits scope(digits);
      CAPTURE(n);
      CAPTURE(digits);
      const Matrix<T> a = Matrix<T>(n, n).randomise(random);
      const Matrix<T> b = Matrix<T>(n, 3).randomise(random);
      Matrix<T> square = definite(a, digits);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n; ++i) {
          square(i, j) = square(i, j) * T(1.0);  // rounded
        }
      }
      const double bound = n < 3 ? 4 : 1;  // a root and a quotient are roundings of one size
      CHECK(lu_ratio(a, digits, Exports<T>::exact_getrf) < bound);
      CHECK(inverse_ratio(a, digits) < bound);
      for (const char* uplo : {"U", "l"}) {
        CHECK(cholesky_ratio(uplo, square, digits) < bound);
        CHECK(cholesky_solution_ratio(uplo, square, b, digits) < bound);
      }
    }
  }
}

TEST_CASE_TEMPLATE("a matrix that is not positive definite stops the factorisation at its minor", T, QuarnFloat,
                   Complex) {
  const support::Digits scope(50);
  for (const Integer n : {1, 5, 70}) {
    for (const Integer bad : {Integer(1), n}) {
      for (const char* uplo : {"U", "L"}) {
        Matrix<T> a(n, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            a(i, j) = T(i == j ? (j == bad ? -4.0 : 4.0) : 0.0);
          }
        }
        Integer info = 0;
        Exports<T>::exact_potrf(uplo, n, a.data(), a.lda(), &info, 1);
        CHECK(info == bad);
        CHECK(a(bad, bad) == T(-4.0));
        CHECK((bad == 1 || a(1, 1) == T(2.0)));
      }
    }
  }
}

// What belongs to linear systems beside their factorisations: condition numbers, inverses, scales, triangular solutions
// near the ends of the range, determinants as mantissa and power of ten.
#include <doctest/doctest.h>

#include <limits>

#include "support/pick.h"
#include "support/ratios.h"
#include "tesk2mp/tesk2mp.h"

using support::adjoint;
using support::Matrix;
using support::norm_of;
using support::RandomNumbers;
using support::ratio;
using support::unit;
using tesk::Diagonal;
using tesk::Op;
using tesk::Triangle;

namespace {

template <class T>
struct Exports {
  static constexpr auto getrf = support::pick<T>(QuarnMPX_dgetrf_, QuarnMPX_zgetrf_);
  static constexpr auto getri = support::pick<T>(QuarnMPX_dgetri_, QuarnMPX_zgetri_);
  static constexpr auto potrf = support::pick<T>(QuarnMPX_dpotrf_, QuarnMPX_zpotrf_);
  static constexpr auto potri = support::pick<T>(QuarnMPX_dpotri_, QuarnMPX_zpotri_);
  static constexpr auto geequ = support::pick<T>(QuarnMPX_dgeequ_, QuarnMPX_zgeequ_);
  static constexpr auto geequb = support::pick<T>(QuarnMPX_dgeequb_, QuarnMPX_zgeequb_);
  static constexpr auto latrs = support::pick<T>(QuarnMPX_dlatrs_, QuarnMPX_zlatrs_);
  static constexpr auto determinant = support::pick<T>(QuarnMPX_f03aff_, QuarnMPX_zdeterminant_);
  static constexpr auto gecon = support::pick<T>(QuarnMPX_dgecon_, QuarnMPX_zgecon_);
  static constexpr auto pocon = support::pick<T>(QuarnMPX_dpocon_, QuarnMPX_zpocon_);
};

/// A A^H + 1, at the working digits.
template <class T>
Matrix<T> definite(const Matrix<T>& a) {
  Matrix<T> square = product(a, adjoint(a));
  for (Integer j = 1; j <= a.rows(); ++j) {
    square(j, j) = square(j, j) + T(1.0);
  }
  return square;
}

template <class T>
QuarnFloat norm_of_inverse(const Matrix<T>& a) {
  const Integer n = a.rows();
  Matrix<T> inverse = a;
  std::vector<Integer> ipiv(std::size_t(n) + 1);
  std::vector<T> work(std::size_t(n) + 1);
  Integer info = 0;
  Exports<T>::getrf(n, n, inverse.data(), inverse.lda(), ipiv.data(), &info);
  Exports<T>::getri(n, inverse.data(), inverse.lda(), ipiv.data(), work.data(), n + 1, &info);
  return norm_of(inverse);
}

}  // namespace

TEST_CASE_TEMPLATE("condition numbers are estimated from below, by not much", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {2, 16, 50, 333}) {
    for (const Integer n : {1, 2, 3, 10, 40}) {
      if (n == 40 && digits == 333) {
        continue;
      }
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Matrix<T> a = Matrix<T>(n, n).randomise(random);
      Matrix<T> lu = a;
      std::vector<Integer> ipiv(std::size_t(n) + 1);
      Integer info = 0;
      Exports<T>::getrf(n, n, lu.data(), lu.lda(), ipiv.data(), &info);
      Matrix<T> square = definite(a);
      const QuarnFloat square_norm = norm_of(square);
      const QuarnFloat square_inverse = norm_of_inverse(square);
      // The estimate and the inverse have errors of their own, of the size of the condition number.
      const auto close = [&](const QuarnFloat& rcond, const QuarnFloat& norm, const QuarnFloat& inverse) {
        const QuarnFloat slack = 1 + 100 * QuarnFloat(1, -digits) * norm * inverse * n;
        CHECK(rcond * norm * inverse * slack >= 1);
        CHECK(rcond * norm * inverse <= 10 * slack);
      };
      for (const char* norm : {"1", "I"}) {
        const Matrix<T> turned = norm[0] == '1' ? a : adjoint(a);
        QuarnFloat rcond = -1;
        Exports<T>::gecon(norm, n, lu.data(), lu.lda(), norm_of(turned), &rcond, nullptr, nullptr, &info, 1);
        CHECK(info == 0);
        close(rcond, norm_of(turned), norm_of_inverse(turned));
      }
      for (const char* uplo : {"U", "l"}) {
        Matrix<T> factor = square;
        Exports<T>::potrf(uplo, n, factor.data(), factor.lda(), &info, 1);
        if (digits == 2 && info > 0) {
          continue;
        }
        REQUIRE(info == 0);
        QuarnFloat rcond = -1;
        Exports<T>::pocon(uplo, n, factor.data(), factor.lda(), square_norm, &rcond, nullptr, nullptr, &info, 1);
        CHECK(info == 0);
        close(rcond, square_norm, square_inverse);
        // The inverse, on its triangle alone.
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            if (uplo[0] == 'U' ? i > j : i < j) {
              factor(i, j) = support::nan_value(static_cast<T*>(nullptr));
            }
          }
        }
        Exports<T>::potri(uplo, n, factor.data(), factor.lda(), &info, 1);
        CHECK(info == 0);
        CHECK(factor.intact());
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i < j; ++i) {
            if (uplo[0] == 'U') {
              CHECK(support::is_nan(factor(j, i)));
              factor(j, i) = tesk::conjugate(factor(i, j));
            } else {
              CHECK(support::is_nan(factor(i, j)));
              factor(i, j) = tesk::conjugate(factor(j, i));
            }
          }
        }
        const support::Digits finer(digits + support::kSpareDigits);
        CHECK(ratio(product(square, factor), unit<T>(n), square_norm * norm_of(factor), n, digits) < 4);
      }
    }
  }
}

TEST_CASE_TEMPLATE("singular matrices, NaN and wrong arguments of condition numbers", T, QuarnFloat, Complex) {
  T a[4] = {T(1.0), T(0.0), T(1.0), T(0.0)};
  QuarnFloat rcond = -1;
  Integer info = 0;
  const auto gecon = [&](const char* norm, Integer n, Integer lda, const QuarnFloat& anorm) {
    Exports<T>::gecon(norm, n, a, lda, anorm, &rcond, nullptr, nullptr, &info, 1);
    return info;
  };
  CHECK(gecon("O", 2, 2, 1) == 0);
  CHECK(rcond == 0);
  CHECK(gecon("O", 0, 1, 0) == 0);
  CHECK(rcond == 1);
  CHECK(gecon("X", 2, 2, 1) == -1);
  CHECK(gecon("I", -2, 2, 1) == -2);
  CHECK(gecon("I", 2, 1, 1) == -4);
  CHECK(gecon("I", 2, 2, -1) == -5);
  CHECK(gecon("I", 2, 2, QuarnFloat("nan")) == -5);
  CHECK(isnan(rcond));
  const auto pocon = [&](const char* uplo, Integer n, Integer lda, const QuarnFloat& anorm) {
    Exports<T>::pocon(uplo, n, a, lda, anorm, &rcond, nullptr, nullptr, &info, 1);
    return info;
  };
  CHECK(pocon("X", 2, 2, 1) == -1);
  CHECK(pocon("U", -2, 2, 1) == -2);
  CHECK(pocon("U", 2, 1, 1) == -4);
  CHECK(pocon("U", 2, 2, QuarnFloat("inf")) == -5);
  const auto potri = [&](const char* uplo, Integer n, Integer lda) {
    Exports<T>::potri(uplo, n, a, lda, &info, 1);
    return info;
  };
  CHECK(potri("X", 2, 2) == -1);
  CHECK(potri("U", -2, 2) == -2);
  CHECK(potri("U", 2, 1) == -4);
  CHECK(potri("U", 2, 2) == 2);
  // An inverse that no number holds, and one that a number just holds.
  a[0] = T(QuarnFloat(1, -600000000));
  a[2] = T(0.0);
  a[3] = T(QuarnFloat(1, -600000000));
  CHECK(pocon("L", 2, 2, 1) == 0);
  CHECK(rcond == 0);
  CHECK(gecon("1", 2, 2, QuarnFloat(1, -600000000)) == 0);
  CHECK(rcond == 1);
}

TEST_CASE_TEMPLATE("scales of rows and columns", T, QuarnFloat, Complex) {
  RandomNumbers random;
  const support::Digits scope(30);
  for (const Integer m : {1, 3, 8}) {
    for (const Integer n : {1, 5}) {
      Matrix<T> a = Matrix<T>(m, n).randomise(random);
      for (Integer i = 1; i <= m; ++i) {
        for (Integer j = 1; j <= n; ++j) {
          a(i, j) = a(i, j) * T(QuarnFloat(1, int(random.between(-100000000, 100000000))));
        }
      }
      for (const bool powers : {false, true}) {
        std::vector<QuarnFloat> r(std::size_t(m), -1);
        std::vector<QuarnFloat> c(std::size_t(n), -1);
        QuarnFloat rowcnd;
        QuarnFloat colcnd;
        QuarnFloat amax;
        Integer info = -99;
        (powers ? Exports<T>::geequb : Exports<T>::geequ)(m, n, a.data(), a.lda(), r.data(), c.data(), &rowcnd, &colcnd,
                                                          &amax, &info);
        REQUIRE(info == 0);
        CHECK(rowcnd > 0);
        CHECK(rowcnd <= 1);
        CHECK(colcnd <= 1);
        for (Integer j = 1; j <= n; ++j) {
          QuarnFloat largest = 0;
          for (Integer i = 1; i <= m; ++i) {
            largest = std::max(largest, tesk::magnitude(a(i, j)) * r[std::size_t(i - 1)] * c[std::size_t(j - 1)]);
          }
          CHECK(largest <= 1 + QuarnFloat(1, -27));
          CHECK(largest >= (powers ? QuarnFloat("0.1") : 1 - QuarnFloat(1, -27)));
        }
      }
    }
  }
  T a[4] = {T(1.0), T(2.0), T(0.0), T(0.0)};
  QuarnFloat x[6];
  Integer info = 0;
  const auto geequ = [&](Integer m, Integer n, Integer lda) {
    Exports<T>::geequ(m, n, a, lda, x, x + 2, x + 4, x + 4, x + 5, &info);
    return info;
  };
  CHECK(geequ(2, 2, 2) == 4);
  a[1] = T(0.0);
  CHECK(geequ(2, 2, 2) == 2);
  CHECK(geequ(-2, 2, 2) == -1);
  CHECK(geequ(2, -2, 2) == -2);
  CHECK(geequ(2, 2, 1) == -4);
  CHECK(geequ(0, 2, 1) == 0);
  a[1] = support::nan_value(static_cast<T*>(nullptr));
  geequ(2, 2, 2);
  CHECK(isnan(x[5]));
}

TEST_CASE_TEMPLATE("triangular solutions scale what would overflow", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {2, 16, 50, 333}) {
    for (const Integer n : {0, 1, 2, 5, 20}) {
      for (const std::int64_t spread : {0, 30000000, 400000000}) {
        for (const char* options : {"UNN", "UTU", "LCN", "LNU", "UCN", "LTN"}) {
          CAPTURE(n);
          CAPTURE(digits);
          CAPTURE(spread);
          CAPTURE(std::string(options));
          const support::Digits scope(digits);
          const Triangle triangle = options[0] == 'U' ? Triangle::upper : Triangle::lower;
          const Diagonal diagonal = options[2] == 'U' ? Diagonal::unit : Diagonal::general;
          const auto power = [&] { return T(QuarnFloat(1, int(random.between(-spread, spread)))); };
          Matrix<T> a = Matrix<T>(n, n).randomise(random);
          Matrix<T> b = Matrix<T>(n, 1).randomise(random);
          for (Integer j = 1; j <= n; ++j) {
            b(j, 1) = b(j, 1) * power();
            for (Integer i = 1; i <= n; ++i) {
              a(i, j) = a(i, j) * power();
            }
          }
          Matrix<T> x = b;
          std::vector<QuarnFloat> cnorm(std::size_t(n) + 1);
          QuarnFloat scale = -1;
          Integer info = -99;
          Exports<T>::latrs(options, options + 1, options + 2, "N", n, a.data(), a.lda(), x.data(), &scale,
                            cnorm.data(), &info, 1, 1, 1, 1);
          REQUIRE(info == 0);
          CHECK(x.intact());
          CHECK((scale > 0 || spread > 100000000));  // or below all numbers
          CHECK(scale <= 1);
          CHECK((spread != 0 || scale == 1));
          // |op(A) x - s b| <= some units of |op(A)| |x| in each element, all scaled down so that nothing overflows.
          const support::Digits finer(digits + support::kSpareDigits);
          const Matrix<T> op = op_of_matrix(options[1] == 'N'   ? Op::none
                                            : options[1] == 'T' ? Op::transpose
                                                                : Op::conjugate_transpose,
                                            triangle_of_matrix(triangle, diagonal, a));
          const T down(QuarnFloat(1, spread == 0 ? 0 : -450000000));
          for (Integer i = 1; i <= n; ++i) {
            T residual = -(T(scale) * b(i, 1) * down * down);
            QuarnFloat size = tesk::modulus(residual);
            for (Integer j = 1; j <= n; ++j) {
              const T term = (op(i, j) * down) * (x(j, 1) * down);
              residual = residual + term;
              size += tesk::modulus(term);
            }
            CHECK(tesk::modulus(residual) <= size * QuarnFloat(1, -digits) * 5 * (n + 4) + QuarnFloat(1, -900000000));
          }
        }
      }
    }
  }
  // With a zero on the diagonal the result is in the null space.
  for (const char* options : {"UNN", "UTN", "LCN", "LNN"}) {
    const support::Digits scope(40);
    const Integer n = 6;
    const Triangle triangle = options[0] == 'U' ? Triangle::upper : Triangle::lower;
    Matrix<T> a = Matrix<T>(n, n).randomise(random);
    a(4, 4) = T(0.0);
    Matrix<T> x = Matrix<T>(n, 1).randomise(random);
    std::vector<QuarnFloat> cnorm(static_cast<std::size_t>(n));
    QuarnFloat scale = -1;
    Integer info = -99;
    Exports<T>::latrs(options, options + 1, options + 2, "N", n, a.data(), a.lda(), x.data(), &scale, cnorm.data(),
                      &info, 1, 1, 1, 1);
    CHECK(scale == 0);
    const Matrix<T> op = op_of_matrix(options[1] == 'N'   ? Op::none
                                      : options[1] == 'T' ? Op::transpose
                                                          : Op::conjugate_transpose,
                                      triangle_of_matrix(triangle, Diagonal::general, a));
    CHECK(norm_of(x) >= 1);
    CHECK(norm_of(product(op, x)) < QuarnFloat(1, -36) * norm_of(x) * n);
    a(2, 2) = support::nan_value(static_cast<T*>(nullptr));
    Exports<T>::latrs(options, options + 1, options + 2, "Y", n, a.data(), a.lda(), x.data(), &scale, cnorm.data(),
                      &info, 1, 1, 1, 1);
    CHECK(info == 0);
  }
  T a[4] = {};
  QuarnFloat scale;
  QuarnFloat cnorm[2];
  Integer info = 0;
  const auto latrs = [&](const char* uplo, const char* trans, const char* diag, const char* normin, Integer n,
                         Integer lda) {
    Exports<T>::latrs(uplo, trans, diag, normin, n, a, lda, a, &scale, cnorm, &info, 1, 1, 1, 1);
    return info;
  };
  CHECK(latrs("X", "N", "N", "N", 2, 2) == -1);
  CHECK(latrs("U", "X", "N", "N", 2, 2) == -2);
  CHECK(latrs("U", "N", "X", "N", 2, 2) == -3);
  CHECK(latrs("U", "N", "N", "X", 2, 2) == -4);
  CHECK(latrs("U", "N", "N", "N", -2, 2) == -5);
  CHECK(latrs("U", "N", "N", "N", 2, 1) == -7);
}

TEST_CASE_TEMPLATE("determinants as mantissa and power of ten", T, QuarnFloat, Complex) {
  struct Found {
    Integer ifail;
    T d;
    Integer id;
    QuarnFloat rcond;
  };
  const auto determinant_of = [](Matrix<T> a) {
    std::vector<Integer> ipiv(std::size_t(a.rows()) + 1);
    Found found{1, T(-1.0), -99, -1};
    Exports<T>::determinant(a.rows(), a.data(), a.lda(), ipiv.data(), &found.d, &found.id, &found.rcond, &found.ifail);
    CHECK(a.intact());
    return found;
  };
  const auto diagonal = [](const QuarnFloat& element, Integer n) {
    Matrix<T> a = support::zeros<T>(n, n);
    for (Integer j = 1; j <= n; ++j) {
      a(j, j) = T(element);
    }
    return a;
  };
  for (const int digits : {1, 2, 16, 50, 333}) {
    const support::Digits scope(digits);
    const Found none = determinant_of(Matrix<T>(0, 0));
    CHECK(none.ifail == 0);
    CHECK(none.d == T(1.0));
    CHECK(none.id == 0);
    const Found eight = determinant_of(diagonal(-20, 3));
    CHECK(eight.ifail == 0);
    CHECK(eight.d == T(-8.0));
    CHECK(eight.id == 3);
    CHECK((eight.rcond == 1 || digits < 3));
    Matrix<T> exchanged = support::zeros<T>(2, 2);
    exchanged(1, 2) = T(2.0);
    exchanged(2, 1) = T(3.0);
    CHECK(determinant_of(exchanged).d == T(-6.0));
    exchanged(1, 1) = T(1.0);
    exchanged(2, 2) = T(4.0);
    exchanged(2, 1) = T(2.0);
    exchanged(1, 2) = T(2.0);
    const Found singular = determinant_of(exchanged);
    CHECK(singular.d == T(0.0));
    CHECK(!signbit(Complex(singular.d).re));
    const Found zero = determinant_of(support::zeros<T>(2, 2));
    CHECK(zero.ifail == 2);
    CHECK(zero.d == T(0.0));
    CHECK(zero.id == 0);
    CHECK(zero.rcond == 0);
    // Far outside of the numbers, and beyond the exponents.
    const Found large = determinant_of(diagonal(QuarnFloat(3, 700000000), 3));
    CHECK(large.ifail == 0);
    CHECK(large.id == 2100000001);
    const Found small = determinant_of(diagonal(QuarnFloat(1, -700000000), 3));
    CHECK(small.ifail == 0);
    CHECK(small.id == -2100000000);
    const Found larger = determinant_of(diagonal(QuarnFloat(1, 800000000), 3));
    CHECK(larger.ifail == 4);
    CHECK(larger.id == std::numeric_limits<Integer>::max());
    const Found smaller = determinant_of(diagonal(QuarnFloat(1, -800000000), 3));
    CHECK(smaller.ifail == 3);
    CHECK(smaller.id == std::numeric_limits<Integer>::min());
    CHECK(smaller.rcond == 1);
    Matrix<T> with = diagonal(1, 3);
    with(2, 3) = support::nan_value(static_cast<T*>(nullptr));
    with(3, 3) = with(2, 3);
    const Found unknown = determinant_of(with);
    CHECK(tesk::magnitude(unknown.d) != tesk::magnitude(unknown.d));
  }
  {
    const support::Digits scope(16);
    // A Hilbert matrix whose condition number is 3.5e22 at order 16: the message, and the digits all the same.
    Matrix<T> hilbert(16, 16);
    for (Integer j = 1; j <= 16; ++j) {
      for (Integer i = 1; i <= 16; ++i) {
        hilbert(i, j) = T(1 / QuarnFloat(i + j - 1));
      }
    }
    const Found found = determinant_of(hilbert);
    CHECK(found.ifail == 2);
    CHECK(found.rcond < QuarnFloat(1, -16));
    CHECK(found.rcond > 0);
  }
  T a[1];
  T d;
  QuarnFloat rcond;
  Integer id = 0;
  Integer ipiv[1];
  Integer ifail = 1;
  Exports<T>::determinant(-1, a, 1, ipiv, &d, &id, &rcond, &ifail);
  CHECK(ifail == 1);
  ifail = 1;
  Exports<T>::determinant(0, a, 0, ipiv, &d, &id, &rcond, &ifail);
  CHECK(ifail == 1);
}

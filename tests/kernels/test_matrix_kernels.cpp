// The level-2 and level-3 kernels against mimics written from the definitions. Every element in use is below 1 in
// magnitude, so that a sum of k products carries an error of at most about 2 k units of 10^-digits; triangular
// matrices get a diagonal of at least 1, so that solutions stay of the size of the right-hand side.
#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "src/kernels/entries.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "support/pick.h"

using support::largest_difference;
using support::Matrix;
using support::op_of_matrix;
using support::product;
using support::RandomNumbers;
using support::triangle_of_matrix;
using support::Vector;
using tesk::Diagonal;
using tesk::Op;
using tesk::Triangle;

namespace {

constexpr double kBound = 600;

const char* const kOps[] = {"N", "t", "Conjugate"};
const char* const kTriangles[] = {"Upper", "l"};
const char* const kDiagonals[] = {"n", "Unit"};
const Integer kIncrements[] = {1, 2, -1, -3};

/// The exported kernels of one scalar type.
template <class T>
struct Kernels {
  static constexpr auto gemv = support::pick<T>(QuarnMP_f06paf_, QuarnMP_f06saf_);
  static constexpr auto trmv = support::pick<T>(QuarnMP_f06pff_, QuarnMP_f06sff_);
  static constexpr auto trsv = support::pick<T>(QuarnMP_f06pjf_, QuarnMP_f06sjf_);
  static constexpr auto exact_trsv = support::pick<T>(QuarnMPX_dtrsv_, QuarnMPX_ztrsv_);
  static constexpr auto exact_trsm = support::pick<T>(QuarnMPX_dtrsm_, QuarnMPX_ztrsm_);
  static constexpr auto gemm = support::pick<T>(QuarnMP_f06yaf_, QuarnMP_f06zaf_);
  static constexpr auto trsm = support::pick<T>(QuarnMP_f06yjf_, QuarnMP_f06zjf_);
};

template <class T>
Matrix<T> as_column(const Vector<T>& x) {
  Matrix<T> column(x.size(), 1);
  for (Integer i = 1; i <= x.size(); ++i) {
    column(i, 1) = x(i);
  }
  return column;
}

template <class T>
Matrix<T> combination(const T& alpha, const Matrix<T>& a, const T& beta, const Matrix<T>& b) {
  Matrix<T> result(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      result(i, j) = tesk::is_zero(beta) ? alpha * a(i, j) : alpha * a(i, j) + beta * b(i, j);
    }
  }
  return result;
}

/// 0, 1 and a random factor.
template <class T>
std::vector<T> factors(RandomNumbers& random) {
  return {T(0.0), T(1.0), random.next<T>()};
}

/// A random triangular system's matrix: NaN in the other triangle, and on a unit diagonal, since neither is read.
template <class T>
Matrix<T> triangular(RandomNumbers& random, Triangle triangle, Diagonal diagonal, Integer n) {
  Matrix<T> a(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      const bool kept = triangle == Triangle::upper ? i < j : i > j;
      if (kept) {
        random.make(a(i, j));
        tesk::multiply_by(a(i, j), QuarnFloat(1) / n);
      } else if (i == j && diagonal == Diagonal::general) {
        a(i, j) = random.next<T>() + T(3.0);
      }
    }
  }
  return a;
}

}  // namespace

TEST_CASE_TEMPLATE("general matrix times vector", T, QuarnFloat, Complex) {
  support::Digits digits(30);
  RandomNumbers random;
  for (const char* trans : kOps) {
    for (const Integer incx : kIncrements) {
      const Integer incy = kIncrements[random.below(4)];
      const Integer m = Integer(random.below(6));
      const Integer n = Integer(random.below(6));
      for (const T& alpha : factors<T>(random)) {
        for (const T& beta : factors<T>(random)) {
          CAPTURE(trans);
          CAPTURE(m);
          CAPTURE(n);
          const Op op = tesk::op_of(trans);
          const Integer lenx = op == Op::none ? n : m;
          const Integer leny = m + n - lenx;
          Matrix<T> a = Matrix<T>(m, n);
          Vector<T> x(lenx, incx);
          Vector<T> y(leny, incy);
          // What a zero factor multiplies stays NaN: it must not be read.
          if (!tesk::is_zero(alpha)) {
            a.randomise(random);
            x.randomise(random);
          }
          if (!tesk::is_zero(beta)) {
            y.randomise(random);
          }
          const Matrix<T> before = as_column(y);
          const Matrix<T> ax = tesk::is_zero(alpha) || m == 0 || n == 0
                                   ? triangle_of_matrix(Triangle::upper, Diagonal::general, Matrix<T>(leny, 0))
                                   : product(op_of_matrix(op, a), as_column(x));
          Kernels<T>::gemv(trans, m, n, alpha, a.data(), a.lda(), x.data(), incx, beta, y.data(), incy, 1);
          CHECK(a.intact());
          if (m == 0 || n == 0) {
            continue;
          }
          if (tesk::is_zero(alpha)) {
            Matrix<T> zero(leny, 1);
            for (Integer i = 1; i <= leny; ++i) {
              zero(i, 1) = T(0.0);
            }
            CHECK(largest_difference(as_column(y), combination(T(1.0), zero, beta, before)) <= kBound);
          } else {
            CHECK(largest_difference(as_column(y), combination(alpha, ax, beta, before)) <= kBound);
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("triangular matrix times vector, and back", T, QuarnFloat, Complex) {
  support::Digits digits(30);
  RandomNumbers random;
  for (const char* uplo : kTriangles) {
    for (const char* trans : kOps) {
      for (const char* diag : kDiagonals) {
        for (const Integer incx : kIncrements) {
          const Integer n = Integer(random.below(7));
          CAPTURE(uplo);
          CAPTURE(trans);
          CAPTURE(diag);
          CAPTURE(n);
          Matrix<T> a = triangular<T>(random, tesk::triangle_of(uplo), tesk::diagonal_of(diag), n);
          Vector<T> x(n, incx);
          x.randomise(random);
          if (n > 2) {
            x(2) = T(0.0);  // the published algorithms pass over zeros
          }
          const Matrix<T> before = as_column(x);
          const Matrix<T> full =
              op_of_matrix(tesk::op_of(trans), triangle_of_matrix(tesk::triangle_of(uplo), tesk::diagonal_of(diag), a));
          Kernels<T>::trmv(uplo, trans, diag, n, a.data(), a.lda(), x.data(), incx, 1, 1, 1);
          CHECK(largest_difference(as_column(x), product(full, before)) <= kBound);
          Vector<T> y = x;
          Kernels<T>::trsv(uplo, trans, diag, n, a.data(), a.lda(), x.data(), incx, 1, 1, 1);
          CHECK(largest_difference(as_column(x), before) <= kBound);
          Kernels<T>::exact_trsv(uplo, trans, diag, n, a.data(), a.lda(), y.data(), incx, 1, 1, 1);
          CHECK(largest_difference(as_column(y), before) <= kBound);
          CHECK(a.intact());
        }
      }
    }
  }
}

TEST_CASE("rank-one updates, real, plain and conjugated") {
  support::Digits digits(30);
  RandomNumbers random;
  const auto check = [&]<class T>(auto kernel, Op op, const T&) {
    for (const Integer incx : kIncrements) {
      for (const Integer incy : kIncrements) {
        const Integer m = Integer(random.below(5));
        const Integer n = Integer(random.below(5));
        Matrix<T> a = Matrix<T>(m, n).randomise(random);
        const Matrix<T> before = a;
        Vector<T> x = Vector<T>(m, incx).randomise(random);
        Vector<T> y = Vector<T>(n, incy).randomise(random);
        const T alpha = random.next<T>();
        kernel(m, n, alpha, x.data(), incx, y.data(), incy, a.data(), a.lda());
        const Op flip = op == Op::conjugate_transpose ? Op::conjugate_transpose : Op::transpose;
        CHECK(largest_difference(a, combination(alpha, product(as_column(x), op_of_matrix(flip, as_column(y))), T(1.0),
                                                before)) <= kBound);
        CHECK(a.intact());
        // A zero factor reads neither vector and leaves the matrix alone.
        Vector<T> unread(m, incx);
        const Matrix<T> kept = a;
        kernel(m, n, T(0.0), unread.data(), incx, y.data(), incy, a.data(), a.lda());
        CHECK(largest_difference(a, kept) == 0);
      }
    }
  };
  check(QuarnMP_f06pmf_, Op::none, QuarnFloat());
  check(QuarnMP_f06smf_, Op::none, Complex());
  check(QuarnMP_f06snf_, Op::conjugate_transpose, Complex());
}

TEST_CASE_TEMPLATE("matrix times matrix", T, QuarnFloat, Complex) {
  support::Digits digits(30);
  RandomNumbers random;
  for (const char* transa : kOps) {
    for (const char* transb : kOps) {
      for (const T& alpha : factors<T>(random)) {
        for (const T& beta : factors<T>(random)) {
          const Integer m = Integer(random.below(5));
          const Integer n = Integer(random.below(5));
          const Integer k = Integer(random.below(5));
          const Op op_a = tesk::op_of(transa);
          const Op op_b = tesk::op_of(transb);
          Matrix<T> a(op_a == Op::none ? m : k, op_a == Op::none ? k : m);
          Matrix<T> b(op_b == Op::none ? k : n, op_b == Op::none ? n : k);
          Matrix<T> c(m, n);
          if (!tesk::is_zero(beta)) {
            c.randomise(random);
          }
          Matrix<T> expected(m, n);
          if (tesk::is_zero(alpha)) {
            Matrix<T> zero(m, n);
            for (Integer j = 1; j <= n; ++j) {
              for (Integer i = 1; i <= m; ++i) {
                zero(i, j) = T(0.0);
              }
            }
            expected = combination(T(1.0), zero, beta, c);
          } else {
            a.randomise(random);
            b.randomise(random);
            expected = combination(alpha, product(op_of_matrix(op_a, a), op_of_matrix(op_b, b)), beta, c);
          }
          Kernels<T>::gemm(transa, transb, m, n, k, alpha, a.data(), a.lda(), b.data(), b.lda(), beta, c.data(),
                           c.lda(), 1, 1);
          CHECK(largest_difference(c, expected) <= kBound);
          CHECK(c.intact());
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("triangular systems with many right-hand sides", T, QuarnFloat, Complex) {
  support::Digits digits(30);
  RandomNumbers random;
  for (const char* side : {"Left", "r"}) {
    for (const char* uplo : kTriangles) {
      for (const char* trans : kOps) {
        for (const char* diag : kDiagonals) {
          for (const T& alpha : factors<T>(random)) {
            const Integer m = Integer(random.below(5));
            const Integer n = Integer(random.below(5));
            const bool left = tesk::letter(side) == 'L';
            CAPTURE(side);
            CAPTURE(uplo);
            CAPTURE(trans);
            CAPTURE(diag);
            Matrix<T> a = triangular<T>(random, tesk::triangle_of(uplo), tesk::diagonal_of(diag), left ? m : n);
            const Matrix<T> full = op_of_matrix(
                tesk::op_of(trans), triangle_of_matrix(tesk::triangle_of(uplo), tesk::diagonal_of(diag), a));
            Matrix<T> x = Matrix<T>(m, n).randomise(random);
            Matrix<T> b = left ? product(full, x) : product(x, full);
            Matrix<T> c = b;
            Kernels<T>::trsm(side, uplo, trans, diag, m, n, alpha, a.data(), a.lda(), b.data(), b.lda(), 1, 1, 1, 1);
            CHECK(largest_difference(b, combination(alpha, x, T(0.0), x)) <= kBound);
            Kernels<T>::exact_trsm(side, uplo, trans, diag, m, n, alpha, a.data(), a.lda(), c.data(), c.lda(), 1, 1, 1,
                                   1);
            CHECK(largest_difference(c, combination(alpha, x, T(0.0), x)) <= kBound);
            CHECK(c.intact());
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("solutions with a lower triangle add up in the published order", T, QuarnFloat, Complex) {
  // 1000 - 1000 + 0.4 with two digits: the one order gives 0.4, the other 0.
  support::Digits digits(2);
  const T b[] = {T(1000.0), T(1.0), T(1.0)};
  T a[9];
  a[1] = T(1000.0);
  a[2] = T(QuarnFloat("-0.4"));
  const auto first = [&](auto solve) {
    T x[] = {b[0], b[1], b[2]};
    solve(x);
    return x[0];
  };
  const T by_index(QuarnFloat("0.4"));
  for (const char* trans : {"T", "C"}) {
    CHECK(first([&](T* x) { Kernels<T>::trsv("L", trans, "U", 3, a, 3, x, 1, 1, 1, 1); }) == T(0.0));
    CHECK(first([&](T* x) { Kernels<T>::trsm("L", "L", trans, "U", 3, 1, 1, a, 3, x, 3, 1, 1, 1, 1); }) == by_index);
  }
  CHECK(first([&](T* x) { Kernels<T>::trsm("R", "L", "N", "U", 1, 3, 1, a, 3, x, 1, 1, 1, 1, 1); }) == by_index);
}

TEST_CASE("Hermitian rank-k updates keep to their triangle and make the diagonal real") {
  support::Digits digits(30);
  RandomNumbers random;
  for (const char* uplo : kTriangles) {
    for (const char* trans : {"n", "C"}) {
      for (const QuarnFloat& alpha : factors<QuarnFloat>(random)) {
        for (const QuarnFloat& beta : factors<QuarnFloat>(random)) {
          const Integer n = Integer(random.below(5));
          const Integer k = 1 + Integer(random.below(4));
          const bool plain = tesk::letter(trans) == 'N';
          Matrix<Complex> a = Matrix<Complex>(plain ? n : k, plain ? k : n).randomise(random);
          const Matrix<Complex> ah = op_of_matrix(Op::conjugate_transpose, a);
          const Matrix<Complex> aa = plain ? product(a, ah) : product(ah, a);
          const bool upper = tesk::letter(uplo) == 'U';
          Matrix<Complex> c(n, n);
          Matrix<Complex> expected(n, n);
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = upper ? 1 : j; i <= (upper ? j : n); ++i) {
              random.make(c(i, j));
              expected(i, j) = Complex(alpha) * aa(i, j) + Complex(beta) * c(i, j);
              if (i == j) {
                expected(i, j).im = 0;
              }
            }
          }
          const bool untouched = (alpha == 0 && beta == 1);
          const Matrix<Complex> before = c;
          QuarnMP_f06zpf_(uplo, trans, n, k, alpha, a.data(), a.lda(), beta, c.data(), c.lda(), 1, 1);
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = 1; i <= n; ++i) {
              if (upper ? i > j : i < j) {
                CHECK(support::is_nan(c(i, j)));
              } else {
                const Complex& right = untouched ? before(i, j) : expected(i, j);
                CHECK(tesk::modulus(c(i, j) - right) <= QuarnFloat(600, -30));
                CHECK((i != j || untouched || c(i, j).im == 0));
              }
            }
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("rank-k updates rounded once have the entries of products rounded once", T, QuarnFloat, Complex) {
  constexpr bool kReal = std::is_same_v<T, QuarnFloat>;
  RandomNumbers random;
  for (const int digits : {1, 50, 200}) {
    const support::Digits scope(digits);
    for (const Integer n : {0, 1, 7, 40}) {
      for (const char* uplo : kTriangles) {
        for (const char* trans : {"N", kReal ? "t" : "c"}) {
          const bool plain = *trans == 'N';
          const Integer k = 5;
          Matrix<T> a = Matrix<T>(plain ? n : k, plain ? k : n).randomise(random);
          Matrix<T> c = Matrix<T>(n, n).randomise(random);
          Matrix<T> expected = c;
          for (Integer j = 1; j <= n; ++j) {
            if constexpr (!kReal) {
              expected(j, j).im = 0;  // what is there is not read
            }
          }
          const Matrix<T> before = c;
          const QuarnFloat alpha("-0.3");
          const char* const adjoint = kReal ? "T" : "C";
          if constexpr (kReal) {
            QuarnMPX_dsyrk_(uplo, trans, n, k, alpha, a.data(), a.lda(), 1, c.data(), c.lda(), 1, 1);
            QuarnMPX_dgemm_(plain ? "N" : adjoint, plain ? adjoint : "N", n, n, k, alpha, a.data(), a.lda(), a.data(),
                            a.lda(), 1, expected.data(), expected.lda(), 1, 1);
          } else {
            QuarnMPX_zherk_(uplo, trans, n, k, alpha, a.data(), a.lda(), 1, c.data(), c.lda(), 1, 1);
            QuarnMPX_zgemm_(plain ? "N" : adjoint, plain ? adjoint : "N", n, n, k, alpha, a.data(), a.lda(), a.data(),
                            a.lda(), 1, expected.data(), expected.lda(), 1, 1);
          }
          Integer wrong = 0;
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = 1; i <= n; ++i) {
              const bool inside = tesk::letter(uplo) == 'U' ? i <= j : i >= j;
              wrong += !(c(i, j) == (inside ? expected(i, j) : before(i, j)));
            }
          }
          CHECK(wrong == 0);
          CHECK(c.intact());
        }
      }
    }
  }
}

#include <doctest/doctest.h>

#include <cmath>

#include "src/dense/tuning.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "tesk2mp/dense.h"

using support::Matrix;
using support::RandomNumbers;
using tesk::Diagonal;
using tesk::Op;
using tesk::Triangle;

namespace {

/// B^H B + I, positive definite, in one triangle; NaN in the other.
struct Definite {
  Matrix<Complex> whole;
  Matrix<Complex> stored;

  Definite(RandomNumbers& random, Triangle triangle, Integer n) : whole(n, n), stored(n, n) {
    const Matrix<Complex> b = Matrix<Complex>(n, n).randomise(random);
    whole = support::product(support::op_of_matrix(Op::conjugate_transpose, b), b);
    for (Integer j = 1; j <= n; ++j) {
      whole(j, j).re += 1;
      whole(j, j).im = 0;
      for (Integer i = 1; i <= n; ++i) {
        if (triangle == Triangle::upper ? i <= j : i >= j) {
          stored(i, j) = whole(i, j);
        }
      }
    }
  }
};

}  // namespace

TEST_CASE("the factor gives the matrix back, blocked or not, on its triangle alone") {
  support::Digits digits(40);
  RandomNumbers random;
  for (const char* uplo : {"Upper", "l"}) {
    const Triangle triangle = tesk::triangle_of(uplo);
    for (const Integer n : {0, 1, 2, 5, 10}) {
      for (Integer nb : {1, 2, 3, 8, 64}) {
        QuarnMP_f07zaz_(1, "F07FRF", &nb, 1, 6);
        CAPTURE(uplo);
        CAPTURE(n);
        CAPTURE(nb);
        Definite a(random, triangle, n);
        Integer info = -99;
        QuarnMP_f07frf_(uplo, n, a.stored.data(), a.stored.lda(), &info, 1);
        CHECK(info == 0);
        CHECK(a.stored.intact());
        for (Integer j = 1; j <= n; ++j) {
          CHECK(a.stored(j, j).re > 0);
          CHECK(a.stored(j, j).im == 0);
          for (Integer i = 1; i <= n; ++i) {
            CHECK(support::is_nan(a.stored(i, j)) == (triangle == Triangle::upper ? i > j : i < j));
          }
        }
        const Matrix<Complex> factor = support::triangle_of_matrix(triangle, Diagonal::general, a.stored);
        const Matrix<Complex> adjoint = support::op_of_matrix(Op::conjugate_transpose, factor);
        const Matrix<Complex> back =
            triangle == Triangle::upper ? support::product(adjoint, factor) : support::product(factor, adjoint);
        CHECK(support::largest_difference(back, a.whole) <= 300.0 * n);
      }
    }
  }
  Integer shipped = 1;
  QuarnMP_f07zaz_(1, "F07FRF", &shipped, 1, 6);
}

TEST_CASE("the factor of a Pascal matrix is Pascal's triangle, turned by powers of i") {
  support::Digits digits(20);
  const Integer n = 12;
  // binomial(i + j, i) i^(i - j): all operations are on small integers, so that nothing is rounded.
  const Complex turned[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  std::vector<std::vector<int>> binomial(2 * n, std::vector<int>(2 * n, 1));
  for (std::size_t i = 1; i < binomial.size(); ++i) {
    for (std::size_t j = 1; j < i; ++j) {
      binomial[i][j] = binomial[i - 1][j - 1] + binomial[i - 1][j];
    }
  }
  for (Integer nb : {1, 2, 8}) {
    for (const char* uplo : {"U", "L"}) {
      QuarnMP_f07zaz_(1, "F07FRF", &nb, 1, 6);
      Matrix<Complex> a(n, n);
      for (Integer i = 0; i < n; ++i) {
        for (Integer j = 0; j < n; ++j) {
          a(i + 1, j + 1) = Complex(binomial[std::size_t(i + j)][std::size_t(i)]) * turned[(i - j + n) % 4];
        }
      }
      Integer info = -99;
      QuarnMP_f07frf_(uplo, n, a.data(), a.lda(), &info, 1);
      REQUIRE(info == 0);
      for (Integer i = 0; i < n; ++i) {
        for (Integer j = 0; j <= i; ++j) {
          const Complex expected = Complex(binomial[std::size_t(i)][std::size_t(j)]) * turned[(i - j) % 4];
          CHECK((uplo[0] == 'L' ? a(i + 1, j + 1) : conj(a(j + 1, i + 1))) == expected);
        }
      }
    }
  }
  Integer shipped = 1;
  QuarnMP_f07zaz_(1, "F07FRF", &shipped, 1, 6);
}

TEST_CASE("illegal arguments in order; one by one matrices") {
  struct Row {
    const char* uplo;
    Integer n, lda, info;
  };
  const Row rows[] = {{"x", -1, 0, -1}, {"U", -1, 0, -2}, {"L", 0, 0, -4}, {"u", 3, 2, -4}, {"l", 0, 1, 0}};
  for (const Row& row : rows) {
    Complex a(QuarnFloat("nan"));
    Integer info = 99;
    QuarnMP_f07frf_(row.uplo, row.n, &a, row.lda, &info, 1);
    CHECK(info == row.info);
    info = 99;
    QuarnMP_f07frz_(row.uplo, row.n, &a, row.lda, &info, 1);
    CHECK(info == row.info);
    CHECK(isnan(a.re));
  }
  struct Single {
    int element;
    Integer info;
    int factor;
  };
  for (const Single& row : {Single{4, 0, 2}, Single{0, 1, 0}, Single{-1, 1, -1}}) {
    for (const char* uplo : {"U", "L"}) {
      Complex a(row.element, 5);  // the imaginary part of the diagonal is not read
      Integer info = 99;
      QuarnMP_f07frf_ENTRY(0, uplo, 1, &a, 1, &info, 1);
      CHECK(info == row.info);
      CHECK(a == Complex(row.factor, 0));
    }
  }
}

TEST_CASE("the first column that is not positive is reported, in global numbering") {
  support::Digits digits(30);
  RandomNumbers random(7);
  for (const char* uplo : {"U", "L"}) {
    for (Integer nb : {1, 2, 3, 8, 64}) {
      QuarnMP_f07zaz_(1, "F07FRF", &nb, 1, 6);
      Definite a(random, tesk::triangle_of(uplo), 6);
      a.stored(5, 5).re = -1000;
      Integer info = 0;
      QuarnMP_f07frf_(uplo, 6, a.stored.data(), a.stored.lda(), &info, 1);
      CHECK(info == 5);
      CHECK(a.stored(5, 5).re < -999);
    }
  }
  Integer shipped = 1;
  QuarnMP_f07zaz_(1, "F07FRF", &shipped, 1, 6);
}

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

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

void set_block_size(Integer nb) { QuarnMP_f07zaz_(1, "F07ADF", &nb, 1, 6), QuarnMP_f07zaz_(1, "F07ARF", &nb, 1, 6); }

class BlockSize {
 public:
  explicit BlockSize(Integer nb) { set_block_size(nb); }
  ~BlockSize() { set_block_size(1); }
  BlockSize(const BlockSize&) = delete;
  BlockSize& operator=(const BlockSize&) = delete;
};

void factorise(Matrix<QuarnFloat>& a, std::vector<Integer>& ipiv, Integer& info) {
  QuarnMP_f07adf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv.data(), &info);
}
void factorise(Matrix<Complex>& a, std::vector<Integer>& ipiv, Integer& info) {
  QuarnMP_f07arf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv.data(), &info);
}

void factorise_by_halves(Matrix<QuarnFloat>& a, std::vector<Integer>& ipiv, Integer& info) {
  QuarnMPX_f07adf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv.data(), &info);
}
void factorise_by_halves(Matrix<Complex>& a, std::vector<Integer>& ipiv, Integer& info) {
  QuarnMPX_f07arf_(a.rows(), a.columns(), a.data(), a.lda(), ipiv.data(), &info);
}

/// L and U as they are stored in the factors.
template <class T>
struct Parts {
  Matrix<T> lower;
  Matrix<T> upper;

  explicit Parts(const Matrix<T>& factors)
      : lower(factors.rows(), std::min(factors.rows(), factors.columns())), upper(lower.columns(), factors.columns()) {
    for (Integer i = 1; i <= lower.rows(); ++i) {
      for (Integer j = 1; j <= lower.columns(); ++j) {
        lower(i, j) = i > j ? factors(i, j) : T(i == j ? 1.0 : 0.0);
      }
    }
    for (Integer i = 1; i <= upper.rows(); ++i) {
      for (Integer j = 1; j <= upper.columns(); ++j) {
        upper(i, j) = i <= j ? factors(i, j) : T(0.0);
      }
    }
  }
};

template <class T>
Matrix<QuarnFloat> moduli(const Matrix<T>& a) {
  Matrix<QuarnFloat> result(a.rows(), a.columns());
  for (Integer i = 1; i <= a.rows(); ++i) {
    for (Integer j = 1; j <= a.columns(); ++j) {
      result(i, j) = tesk::modulus(a(i, j));
    }
  }
  return result;
}

/// P times a, as the interchanges say.
template <class T>
Matrix<T> interchanged(Matrix<T> a, const std::vector<Integer>& ipiv) {
  for (Integer k = Integer(ipiv.size()); k >= 1; --k) {
    for (Integer j = 1; j <= a.columns(); ++j) {
      std::swap(a(k, j), a(ipiv[std::size_t(k - 1)], j));
    }
  }
  return a;
}

/// The largest element of P L U - A in units of 10^-digits.
template <class T>
double residual(const Matrix<T>& original, const Matrix<T>& factors, const std::vector<Integer>& ipiv) {
  const Parts<T> parts(factors);
  return support::largest_difference(interchanged(support::product(parts.lower, parts.upper), ipiv), original);
}

/// The largest quotient of an element of |P L U - A| by that of P |L| |U|: at most the number of roundings of an
/// element times their size, whatever the data.
template <class T>
double backward_error(const Matrix<T>& original, const Matrix<T>& factors, const std::vector<Integer>& ipiv) {
  const Parts<T> parts(factors);
  const Matrix<T> product = interchanged(support::product(parts.lower, parts.upper), ipiv);
  const Matrix<QuarnFloat> scale = interchanged(support::product(moduli(parts.lower), moduli(parts.upper)), ipiv);
  double largest = 0;
  for (Integer i = 1; i <= original.rows(); ++i) {
    for (Integer j = 1; j <= original.columns(); ++j) {
      largest = std::max(largest, double(tesk::modulus(product(i, j) - original(i, j)) / scale(i, j)));
    }
  }
  return largest;
}

}  // namespace

TEST_CASE_TEMPLATE("P L U gives the matrix back, blocked or not", T, QuarnFloat, Complex) {
  support::Digits digits(40);
  RandomNumbers random;
  const Integer shapes[][2] = {{1, 1}, {5, 5}, {7, 4}, {4, 7}, {1, 6}, {6, 1}, {12, 12}};
  for (const auto& shape : shapes) {
    const Matrix<T> original = Matrix<T>(shape[0], shape[1]).randomise(random);
    std::vector<Integer> first_pivots;
    Matrix<T> unblocked = original;
    for (const Integer nb : {1, 2, 3, 8, 64}) {
      CAPTURE(shape[0]);
      CAPTURE(shape[1]);
      CAPTURE(nb);
      const BlockSize scope(nb);
      Matrix<T> a = original;
      std::vector<Integer> ipiv(std::size_t(std::min(shape[0], shape[1])), -1);
      Integer info = -99;
      factorise(a, ipiv, info);
      CHECK(info == 0);
      CHECK(a.intact());
      // |L| <= 1 and the growth of U stays small at these sizes: some units per step.
      CHECK(residual(original, a, ipiv) <= 100.0 * shape[0]);
      if (first_pivots.empty()) {
        first_pivots = ipiv;
        unblocked = a;
      }
      CHECK(ipiv == first_pivots);
      // Each factor alone is as far off as the leading blocks are ill conditioned: random ones well below 1e6.
      CHECK(support::largest_difference(a, unblocked) <= 1e6);
      for (Integer i = 1; i <= shape[0]; ++i) {
        for (Integer j = 1; j < i && j <= shape[1]; ++j) {
          CHECK(tesk::magnitude(a(i, j)) <= 2);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("P L U by halves: the same pivots, and the residual that roundings explain", T, QuarnFloat,
                   Complex) {
  RandomNumbers random;
  const Integer shapes[][2] = {{9, 9}, {17, 3}, {3, 40}, {16, 17}, {40, 40}, {45, 20}, {20, 45}};
  for (const int precision : {20, 50, 200}) {
    for (const auto& shape : shapes) {
      CAPTURE(precision);
      CAPTURE(shape[0]);
      CAPTURE(shape[1]);
      support::Digits digits(precision);
      const Matrix<T> original = Matrix<T>(shape[0], shape[1]).randomise(random);
      const std::size_t steps = std::size_t(std::min(shape[0], shape[1]));
      std::vector<Integer> classic_pivots(steps, -1);
      std::vector<Integer> pivots(steps, -1);
      Matrix<T> classic = original;
      Matrix<T> a = original;
      Integer info = -99;
      factorise(classic, classic_pivots, info);
      factorise_by_halves(a, pivots, info);
      CHECK(info == 0);
      CHECK(a.intact());
      CHECK(pivots == classic_pivots);
      support::Digits more(2 * precision + 10);
      // A product and a sum for each step, and a quotient; a complex operation has at most four roundings of a part.
      const double roundings = std::is_same_v<T, Complex> ? 4.0 : 1.0;
      const double limit = roundings * double(steps + 1) * std::pow(10.0, 1 - precision);
      CHECK(backward_error(original, classic, classic_pivots) <= limit);
      CHECK(backward_error(original, a, pivots) <= limit);
    }
  }
}

TEST_CASE("zero pivots by halves are reported where they are, the rest is factorised") {
  for (const Integer zero : {1, 8, 9, 13, 24}) {
    CAPTURE(zero);
    Matrix<QuarnFloat> a(24, 24);
    for (Integer i = 1; i <= 24; ++i) {
      for (Integer j = 1; j <= 24; ++j) {
        a(i, j) = i != j ? 0 : i == zero || i == 20 ? 0 : i;
      }
    }
    a(17, 16) = 8;
    const Matrix<QuarnFloat> original = a;
    std::vector<Integer> ipiv(24, -1);
    Integer info = -99;
    factorise_by_halves(a, ipiv, info);
    CHECK(info == std::min<Integer>(zero, 20));
    CHECK(residual(original, a, ipiv) == 0);
  }
}

TEST_CASE("illegal arguments in order, empty matrices untouched") {
  struct Row {
    Integer m, n, lda, info;
  };
  const Row rows[] = {{-1, -1, 0, -1}, {2, -1, 0, -2}, {2, 2, 1, -4},
                      {0, 0, 0, -4},   {0, 5, 0, -4},  {0, 5, 1, 0},
                      {5, 0, 5, 0},    {0, 0, 1, 0},   {-2147483647 - 1, 3, 3, -1}};
  for (const Row& row : rows) {
    CAPTURE(row.m);
    CAPTURE(row.n);
    QuarnFloat a("nan");
    Complex z(a, a);
    QuarnFloat weights("nan");
    Integer ipiv = 77;
    for (int routine = 0; routine < 7; ++routine) {
      Integer info = 99;
      switch (routine) {
        case 0:
          QuarnMP_f07adf_(row.m, row.n, &a, row.lda, &ipiv, &info);
          break;
        case 1:
          QuarnMP_f07adf_ENTRY(1, row.m, row.n, &a, row.lda, &ipiv, &info);
          break;
        case 2:
          QuarnMP_f07arf_(row.m, row.n, &z, row.lda, &ipiv, &info);
          break;
        case 3:
          QuarnMP_f07arf_ENTRY(1, row.m, row.n, &z, row.lda, &ipiv, &info);
          break;
        case 4:
          QuarnMPX_f07adf_(row.m, row.n, &a, row.lda, &ipiv, &info);
          break;
        case 5:
          QuarnMPX_f07arf_(row.m, row.n, &z, row.lda, &ipiv, &info);
          break;
        default:
          QuarnMP_f07adg_(row.m, row.n, &a, row.lda, &weights, &info);
          break;
      }
      CHECK(info == row.info);
      CHECK(ipiv == 77);
      CHECK(isnan(weights));
    }
  }
}

TEST_CASE("a zero pivot is reported, the rest is factorised") {
  for (const Integer nb : {1, 2, 3, 8, 64}) {
    const BlockSize scope(nb);
    // Column 3 is twice column 1 in exact arithmetic: after two steps nothing is left of it.
    Matrix<QuarnFloat> a(4, 4);
    const int values[4][4] = {{4, 2, 8, 1}, {2, 2, 4, 3}, {0, 4, 0, 5}, {2, 0, 4, 9}};
    for (Integer i = 1; i <= 4; ++i) {
      for (Integer j = 1; j <= 4; ++j) {
        a(i, j) = values[i - 1][j - 1];
      }
    }
    const Matrix<QuarnFloat> original = a;
    std::vector<Integer> ipiv(4, -1);
    Integer info = -99;
    factorise(a, ipiv, info);
    CHECK(info == 3);
    CHECK(a(3, 3) == 0);
    CHECK(ipiv[2] == 3);
    CHECK(residual(original, a, ipiv) == 0);
  }
  Matrix<Complex> zero(3, 3);
  for (Integer j = 1; j <= 3; ++j) {
    for (Integer i = 1; i <= 3; ++i) {
      zero(i, j) = 0;
    }
  }
  std::vector<Integer> ipiv(3, -1);
  Integer info = -99;
  factorise(zero, ipiv, info);
  CHECK(info == 1);
  CHECK(ipiv == std::vector<Integer>{1, 2, 3});
}

TEST_CASE("the determinant of a Hilbert matrix is the reciprocal of a known integer") {
  support::Digits digits(60);
  const Integer n = 10;
  Matrix<QuarnFloat> a(n, n);
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      a(i, j) = QuarnFloat(1) / (i + j - 1);
    }
  }
  std::vector<Integer> ipiv(n);
  Integer info = -99;
  factorise(a, ipiv, info);
  REQUIRE(info == 0);
  QuarnFloat determinant = 1;
  for (Integer i = 1; i <= n; ++i) {
    determinant *= ipiv[std::size_t(i - 1)] == i ? a(i, i) : -a(i, i);
  }
  // Its condition number is 1.6e13: that many digits go.
  const QuarnFloat reciprocal("46206893947914691316295628839036278726983680000000000");
  CHECK(fabs(determinant * reciprocal - 1) <= QuarnFloat(1, 15 - 60));
}

TEST_CASE("ties go to the first row") {
  Matrix<QuarnFloat> a(3, 1);
  a(1, 1) = -2;
  a(2, 1) = 2;
  a(3, 1) = 2;
  std::vector<Integer> ipiv(1);
  Integer info = -1;
  factorise(a, ipiv, info);
  CHECK(ipiv[0] == 1);
  CHECK((a(1, 1) == -2 && a(2, 1) == -1 && a(3, 1) == -1));
}

TEST_CASE("row weights see through bad scaling, and a small pivot ends the factorisation") {
  support::Digits digits(30);
  RandomNumbers random;
  for (const Integer nb : {1, 2, 4}) {
    const BlockSize scope(nb);
    const Integer n = 6;
    const Matrix<QuarnFloat> base = Matrix<QuarnFloat>(n, n).randomise(random);
    Matrix<QuarnFloat> scaled = base;
    for (Integer i = 1; i <= n; ++i) {
      for (Integer j = 1; j <= n; ++j) {
        scaled(i, j) *= QuarnFloat(1, int(i * 40) - 100);
      }
    }
    Matrix<QuarnFloat> a = base;
    std::vector<QuarnFloat> plain(n);
    std::vector<QuarnFloat> weighted(n);
    Integer info = -99;
    QuarnMP_f07adg_(n, n, a.data(), a.lda(), plain.data(), &info);
    CHECK(info == 0);
    std::vector<Integer> ipiv;
    for (const QuarnFloat& pivot : plain) {
      ipiv.push_back(FloatToInt(pivot));
      CHECK(floor(pivot) == pivot);
    }
    CHECK(residual(base, a, ipiv) <= 600);
    QuarnMP_f07adg_(n, n, scaled.data(), scaled.lda(), weighted.data(), &info);
    CHECK(info == 0);
    CHECK(plain == weighted);

    // A row of zeros gets no weight, so that nothing is left to divide by at the end.
    Matrix<QuarnFloat> singular = base;
    for (Integer j = 1; j <= n; ++j) {
      singular(5, j) = 0;
    }
    QuarnMP_f07adg_(n, n, singular.data(), singular.lda(), plain.data(), &info);
    CHECK(info == n);
  }
}

TEST_CASE("row-weighted pivoting stops in the same place and state, blocked or not") {
  support::Digits digits(30);
  RandomNumbers random;
  const Integer n = 7;
  for (Integer last = 1; last < n; ++last) {
    // One column is tiny: no pivot for it, and the largest of what there is seldom stands first.
    Matrix<QuarnFloat> base = Matrix<QuarnFloat>(n, n).randomise(random);
    for (Integer i = 1; i <= n; ++i) {
      base(i, last + 1) *= QuarnFloat(1, -40);
    }
    Matrix<QuarnFloat> plain = base;
    std::vector<QuarnFloat> plain_pivots(n);
    Integer plain_info = -99;
    QuarnMP_f07adg_(n, n, plain.data(), plain.lda(), plain_pivots.data(), &plain_info);
    CHECK(plain_info == last + 1);
    for (const Integer nb : {2, 3, 4}) {
      CAPTURE(last);
      CAPTURE(nb);
      const BlockSize scope(nb);
      Matrix<QuarnFloat> a = base;
      std::vector<QuarnFloat> pivots(n);
      Integer info = -99;
      QuarnMP_f07adg_(n, n, a.data(), a.lda(), pivots.data(), &info);
      CHECK(info == plain_info);
      CHECK(pivots == plain_pivots);
      CHECK(support::largest_difference(a, plain) <= 600);
    }
  }
}

TEST_CASE_TEMPLATE("solutions from the factors, for each operation", T, QuarnFloat, Complex) {
  const auto factorise = [] {
    if constexpr (std::is_same_v<T, Complex>) {
      return QuarnMP_zgetrf_;
    } else {
      return QuarnMP_dgetrf_;
    }
  }();
  const auto solve = [] {
    if constexpr (std::is_same_v<T, Complex>) {
      return QuarnMPX_zgetrs_;
    } else {
      return QuarnMPX_dgetrs_;
    }
  }();
  support::RandomNumbers random;
  for (const int digits : {1, 20, 333}) {
    const support::Digits scope(digits);
    for (const Integer n : {0, 1, 7}) {
      for (const tesk::Op op : {tesk::Op::none, tesk::Op::transpose, tesk::Op::conjugate_transpose}) {
        support::Matrix<T> a(n, n);
        support::Matrix<T> x(n, 3);
        a.randomise(random);
        x.randomise(random);
        for (Integer i = 1; i <= n; ++i) {
          a(i, i) = a(i, i) + T(10);
        }
        // Interchanges: the rows in the opposite order.
        support::Matrix<T> given(n, n);
        support::Matrix<T> b(n, 3);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            given(i, j) = a(n + 1 - i, j);
          }
        }
        for (Integer j = 1; j <= 3; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            T sum{};
            for (Integer k = 1; k <= n; ++k) {
              const T element = op == tesk::Op::none ? given(i, k) : given(k, i);
              sum = sum + (op == tesk::Op::conjugate_transpose ? tesk::conjugate(element) : element) * x(k, j);
            }
            b(i, j) = sum;
          }
        }
        std::vector<Integer> ipiv(std::size_t(n + 1), 0);
        Integer info = -99;
        factorise(n, n, given.data(), given.lda(), ipiv.data(), &info);
        solve(op == tesk::Op::none        ? "n"
              : op == tesk::Op::transpose ? "T"
                                          : "c",
              n, 3, given.data(), given.lda(), ipiv.data(), b.data(), b.lda(), &info, 1);
        REQUIRE(info == 0);
        for (Integer j = 1; j <= 3; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            CHECK(tesk::modulus(b(i, j) - x(i, j)) <= QuarnFloat(1, 2 - digits));
          }
        }
        CHECK(b.intact());
      }
    }
  }
  T one[1] = {T(1)};
  Integer row[1] = {1};
  const auto info_of = [&](const char* trans, Integer n, Integer nrhs, Integer lda, Integer ldb) {
    Integer info = -99;
    solve(trans, n, nrhs, one, lda, row, one, ldb, &info, 1);
    return info;
  };
  CHECK(info_of("X", -1, -1, 0, 0) == -1);
  CHECK(info_of("N", -1, -1, 0, 0) == -2);
  CHECK(info_of("N", 1, -1, 0, 0) == -3);
  CHECK(info_of("N", 1, 1, 0, 0) == -5);
  CHECK(info_of("N", 1, 1, 1, 0) == -8);
}

TEST_CASE("the threshold of row-weighted pivoting is 8 eps") {
  support::Digits digits(30);
  // Rows (1/2, 1/2) and (1/2, 1/2 + d): the last product is d sqrt(2) to first order.
  struct Row {
    const char* d;
    Integer info;
  };
  for (const Row& row : {Row{"5e-30", 2}, Row{"6e-30", 0}}) {
    QuarnFloat a[4] = {0.5, 0.5, 0.5, 0.5 + QuarnFloat(row.d)};
    QuarnFloat ipiv[2];
    Integer info = -99;
    QuarnMP_f07adg_(2, 2, a, 2, ipiv, &info);
    CHECK(info == row.info);
    CHECK((ipiv[0] == 1 && ipiv[1] == 2));
    CHECK(a[3] == QuarnFloat(row.d));
  }
}

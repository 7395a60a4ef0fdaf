// Symmetric indefinite, band and tridiagonal systems, by residuals in units of the last place against dense matrices.
#include <doctest/doctest.h>

#include "support/pick.h"
#include "support/ratios.h"
#include "tesk2mp/tesk2mp.h"

using support::Matrix;
using support::norm_of;
using support::RandomNumbers;
using support::ratio;
using tesk::Op;

namespace {

/// Factorisation and solution of one kind of symmetry.
struct RealSymmetric {
  using T = QuarnFloat;
  static constexpr auto factorise = QuarnMPX_dsytrf_;
  static constexpr auto solve = QuarnMPX_dsytrs_;
  static T mirrored(const T& x) { return x; }
};
struct ComplexSymmetric {
  using T = Complex;
  static constexpr auto factorise = QuarnMPX_zsytrf_;
  static constexpr auto solve = QuarnMPX_zsytrs_;
  static T mirrored(const T& x) { return x; }
};
struct Hermitian {
  using T = Complex;
  static constexpr auto factorise = QuarnMPX_zhetrf_;
  static constexpr auto solve = QuarnMPX_zhetrs_;
  static T mirrored(const T& x) { return conj(x); }
};

template <class T>
struct Exports {
  static constexpr auto gbtrf = support::pick<T>(QuarnMPX_dgbtrf_, QuarnMPX_zgbtrf_);
  static constexpr auto gbtrs = support::pick<T>(QuarnMPX_dgbtrs_, QuarnMPX_zgbtrs_);
  static constexpr auto gttrf = support::pick<T>(QuarnMPX_dgttrf_, QuarnMPX_zgttrf_);
  static constexpr auto gttrs = support::pick<T>(QuarnMPX_dgttrs_, QuarnMPX_zgttrs_);
  static constexpr auto pttrf = support::pick<T>(QuarnMPX_dpttrf_, QuarnMPX_zpttrf_);
};

/// The residual of a solution over size, norms and unit roundoff.
template <class T>
double solution_ratio(const Matrix<T>& a, const Matrix<T>& x, const Matrix<T>& b, int digits) {
  const support::Digits finer(digits + support::kSpareDigits);
  return ratio(product(a, x), b, norm_of(a) * norm_of(x), a.rows(), digits);
}

const char* const kOps[] = {"N", "t", "C"};

Op op_of(const char* trans) { return tesk::op_of(trans); }

}  // namespace

TEST_CASE_TEMPLATE("symmetric and Hermitian indefinite systems, of one panel or several", Kind, RealSymmetric,
                   ComplexSymmetric, Hermitian) {
  using T = typename Kind::T;
  RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const Integer n : {0, 1, 2, 3, 7, 31, 32, 33, 40, 75}) {
      if (n > 30 && digits != 50 && (n != 40 || digits > 100)) {
        continue;
      }
      // Zeros on the diagonal ask for blocks of order 2.
      for (const Integer zeros : {Integer(0), n / 2, n}) {
        for (const char* uplo : {"U", "l"}) {
          CAPTURE(digits);
          CAPTURE(n);
          CAPTURE(zeros);
          const support::Digits scope(digits);
          const bool upper = uplo[0] == 'U';
          Matrix<T> whole = Matrix<T>(n, n).randomise(random);
          Matrix<T> a(n, n);  // NaN in its other triangle
          for (Integer j = 1; j <= n; ++j) {
            if (j <= zeros) {
              whole(j, j) = T(0.0);
            }
            a(j, j) = whole(j, j);  // of a Hermitian matrix with an imaginary part that is not read
            whole(j, j) = (whole(j, j) + Kind::mirrored(whole(j, j))) / T(2.0);
            for (Integer i = 1; i < j; ++i) {
              whole(j, i) = Kind::mirrored(whole(i, j));
              (upper ? a(i, j) : a(j, i)) = upper ? whole(i, j) : whole(j, i);
            }
          }
          std::vector<Integer> ipiv(std::size_t(n) + 1, 0);
          T work[1];
          Integer info = -99;
          Kind::factorise(uplo, n, a.data(), a.lda(), ipiv.data(), work, 1, &info, 1);
          if (n == zeros && n == 1) {
            CHECK(info == 1);
            continue;
          }
          if (digits > 2) {
            REQUIRE(info == 0);
          }
          if (info > 0) {
            continue;
          }
          CHECK(a.intact());
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = 1; i < j; ++i) {
              CHECK(support::is_nan(upper ? a(j, i) : a(i, j)));
            }
          }
          if (zeros == n && n > 1) {
            CHECK(std::any_of(ipiv.begin(), ipiv.end(), [](Integer row) { return row < 0; }));
          }
          const Matrix<T> b = Matrix<T>(n, 2).randomise(random);
          Matrix<T> x = b;
          Kind::solve(uplo, n, 2, a.data(), a.lda(), ipiv.data(), x.data(), x.lda(), &info, 1);
          CHECK(info == 0);
          CHECK(x.intact());
          CHECK(solution_ratio(whole, x, b, digits) < 10);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("singular blocks, NaN and wrong arguments of indefinite systems", Kind, RealSymmetric,
                   ComplexSymmetric, Hermitian) {
  using T = typename Kind::T;
  T a[9] = {};
  a[0] = T(2.0);
  a[4] = T(0.0);
  a[8] = T(3.0);
  Integer ipiv[3];
  T work[1];
  Integer info = 0;
  const auto factorise = [&](const char* uplo, Integer n, Integer lda, Integer lwork) {
    Kind::factorise(uplo, n, a, lda, ipiv, work, lwork, &info, 1);
    return info;
  };
  for (const char* uplo : {"U", "L"}) {
    CHECK(factorise(uplo, 3, 3, 1) == 2);
    CHECK(a[8] == T(3.0));
  }
  CHECK(factorise("X", 3, 3, 1) == -1);
  CHECK(factorise("U", -3, 3, 1) == -2);
  CHECK(factorise("U", 3, 2, 1) == -4);
  CHECK(factorise("U", 3, 3, 0) == -7);
  CHECK(factorise("U", 3, 3, -1) == 0);
  CHECK(work[0] == T(1.0));
  const auto solve = [&](const char* uplo, Integer n, Integer nrhs, Integer lda, Integer ldb) {
    Kind::solve(uplo, n, nrhs, a, lda, ipiv, a, ldb, &info, 1);
    return info;
  };
  CHECK(solve("X", 3, 1, 3, 3) == -1);
  CHECK(solve("U", -3, 1, 3, 3) == -2);
  CHECK(solve("U", 3, -1, 3, 3) == -3);
  CHECK(solve("U", 3, 1, 2, 3) == -5);
  CHECK(solve("U", 3, 1, 3, 2) == -8);
  RandomNumbers random;
  for (Integer place = 0; place < 10; ++place) {
    Matrix<T> with = Matrix<T>(40, 40).randomise(random);
    const auto i = Integer(random.between(1, 40));
    with(i, Integer(random.between(1, i))) = support::nan_value(static_cast<T*>(nullptr));
    std::vector<Integer> rows(40, 0);
    Kind::factorise("L", 40, with.data(), with.lda(), rows.data(), work, 1, &info, 1);
    for (const Integer row : rows) {
      CHECK(std::abs(int(row)) >= 1);
      CHECK(std::abs(int(row)) <= 40);
    }
  }
}

TEST_CASE_TEMPLATE("band systems", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const Integer n : {0, 1, 2, 7, 40}) {
      for (const Integer kl : {0, 1, 3}) {
        for (const Integer ku : {0, 2, 8}) {
          CAPTURE(digits);
          CAPTURE(n);
          CAPTURE(kl);
          CAPTURE(ku);
          const support::Digits scope(digits);
          Matrix<T> dense = support::zeros<T>(n, n);
          Matrix<T> band(2 * kl + ku + 1, n);
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = std::max<Integer>(1, j - ku); i <= std::min(n, j + kl); ++i) {
              random.make(dense(i, j));
              // A triangle of random numbers would be too ill-conditioned for digits to remain.
              dense(i, j) = i == j && (kl == 0 || ku == 0) ? dense(i, j) + T(3.0) : dense(i, j);
              band(kl + ku + 1 + i - j, j) = dense(i, j);
            }
          }
          std::vector<Integer> ipiv(std::size_t(n) + 1, 0);
          Integer info = -99;
          Exports<T>::gbtrf(n, n, kl, ku, band.data(), band.lda(), ipiv.data(), &info);
          CHECK((info == 0 || (digits < 3 && info > 0)));
          CHECK(band.intact());
          if (info != 0) {
            continue;
          }
          for (const char* trans : kOps) {
            const Matrix<T> b = Matrix<T>(n, 2).randomise(random);
            Matrix<T> x = b;
            Exports<T>::gbtrs(trans, n, kl, ku, 2, band.data(), band.lda(), ipiv.data(), x.data(), x.lda(), &info, 1);
            CHECK(info == 0);
            CHECK(x.intact());
            CHECK(solution_ratio(op_of_matrix(op_of(trans), dense), x, b, digits) < 30);
          }
        }
      }
    }
  }
  T ab[12] = {};
  T b[3];
  Integer ipiv[3];
  Integer info = 0;
  const auto gbtrf = [&](Integer m, Integer n, Integer kl, Integer ku, Integer ldab) {
    Exports<T>::gbtrf(m, n, kl, ku, ab, ldab, ipiv, &info);
    return info;
  };
  CHECK(gbtrf(3, 3, 1, 1, 4) == 1);
  CHECK(gbtrf(-3, 3, 1, 1, 4) == -1);
  CHECK(gbtrf(3, -3, 1, 1, 4) == -2);
  CHECK(gbtrf(3, 3, -1, 1, 4) == -3);
  CHECK(gbtrf(3, 3, 1, -1, 4) == -4);
  CHECK(gbtrf(3, 3, 1, 1, 3) == -6);
  const auto gbtrs = [&](const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, Integer ldab,
                         Integer ldb) {
    Exports<T>::gbtrs(trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, &info, 1);
    return info;
  };
  CHECK(gbtrs("X", 3, 1, 1, 1, 4, 3) == -1);
  CHECK(gbtrs("N", -3, 1, 1, 1, 4, 3) == -2);
  CHECK(gbtrs("N", 3, -1, 1, 1, 4, 3) == -3);
  CHECK(gbtrs("N", 3, 1, -1, 1, 4, 3) == -4);
  CHECK(gbtrs("N", 3, 1, 1, -1, 4, 3) == -5);
  CHECK(gbtrs("N", 3, 1, 1, 1, 3, 3) == -7);
  CHECK(gbtrs("N", 3, 1, 1, 1, 4, 2) == -10);
}

TEST_CASE_TEMPLATE("a rectangular band has the factors of the dense matrix", T, QuarnFloat, Complex) {
  RandomNumbers random;
  const support::Digits scope(50);
  for (const Integer m : {4, 9}) {
    for (const Integer n : {4, 9}) {
      const Integer kl = 2;
      const Integer ku = 1;
      Matrix<T> dense = support::zeros<T>(m, n);
      Matrix<T> band(2 * kl + ku + 1, n);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = std::max<Integer>(1, j - ku); i <= std::min(m, j + kl); ++i) {
          random.make(dense(i, j));
          band(kl + ku + 1 + i - j, j) = dense(i, j);
        }
      }
      std::vector<Integer> ipiv(10, 0);
      std::vector<Integer> dense_ipiv(10, 0);
      Integer info = -99;
      Exports<T>::gbtrf(m, n, kl, ku, band.data(), band.lda(), ipiv.data(), &info);
      CHECK(info == 0);
      if constexpr (std::is_same_v<T, Complex>) {
        QuarnMPX_zgetrf_(m, n, dense.data(), dense.lda(), dense_ipiv.data(), &info);
      } else {
        QuarnMPX_dgetrf_(m, n, dense.data(), dense.lda(), dense_ipiv.data(), &info);
      }
      CHECK(ipiv == dense_ipiv);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = std::max<Integer>(1, j - ku - kl); i <= std::min(m, j); ++i) {
          CHECK(tesk::modulus(band(kl + ku + 1 + i - j, j) - dense(i, j)) < QuarnFloat(1, -45));
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("tridiagonal systems, general and definite", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const Integer n : {0, 1, 2, 3, 40}) {
      CAPTURE(digits);
      CAPTURE(n);
      const support::Digits scope(digits);
      Matrix<T> dl = Matrix<T>(n + 1, 1).randomise(random);
      Matrix<T> d = Matrix<T>(n, 1).randomise(random);
      Matrix<T> du = Matrix<T>(n + 1, 1).randomise(random);
      Matrix<T> du2(n + 1, 1);
      Matrix<T> dense = support::zeros<T>(n, n);
      for (Integer i = 1; i <= n; ++i) {
        dense(i, i) = d(i, 1);
        if (i < n) {
          dense(i + 1, i) = dl(i, 1);
          dense(i, i + 1) = du(i, 1);
        }
      }
      std::vector<Integer> ipiv(std::size_t(n) + 1, 0);
      Integer info = -99;
      Exports<T>::gttrf(n, dl.data(), d.data(), du.data(), du2.data(), ipiv.data(), &info);
      CHECK((info == 0 || digits < 3));
      for (const char* trans : kOps) {
        if (info > 0) {
          break;
        }
        const Matrix<T> b = Matrix<T>(n, 2).randomise(random);
        Matrix<T> x = b;
        Exports<T>::gttrs(trans, n, 2, dl.data(), d.data(), du.data(), du2.data(), ipiv.data(), x.data(), x.lda(),
                          &info, 1);
        CHECK(info == 0);
        CHECK(x.intact());
        CHECK(solution_ratio(op_of_matrix(op_of(trans), dense), x, b, digits) < 30);
      }
      // A diagonal above the sum of its neighbours; e below it, or its conjugates above it.
      for (const char* uplo : {"L", "u"}) {
        Matrix<QuarnFloat> diagonal(n, 1);
        Matrix<T> e = Matrix<T>(n + 1, 1).randomise(random);
        Matrix<T> definite = support::zeros<T>(n, n);
        for (Integer i = 1; i <= n; ++i) {
          diagonal(i, 1) = 3;
          definite(i, i) = T(3.0);
          if (i < n) {
            const bool lower = uplo[0] == 'L' || !std::is_same_v<T, Complex>;
            definite(i + 1, i) = lower ? e(i, 1) : tesk::conjugate(e(i, 1));
            definite(i, i + 1) = lower ? tesk::conjugate(e(i, 1)) : e(i, 1);
          }
        }
        Exports<T>::pttrf(n, diagonal.data(), e.data(), &info);
        REQUIRE(info == 0);
        const Matrix<T> b = Matrix<T>(n, 2).randomise(random);
        Matrix<T> x = b;
        if constexpr (std::is_same_v<T, Complex>) {
          QuarnMPX_zpttrs_(uplo, n, 2, diagonal.data(), e.data(), x.data(), x.lda(), &info, 1);
        } else {
          QuarnMPX_dpttrs_(n, 2, diagonal.data(), e.data(), x.data(), x.lda(), &info);
        }
        CHECK(info == 0);
        CHECK(x.intact());
        CHECK(solution_ratio(definite, x, b, digits) < 10);
      }
    }
  }
  T x[3] = {T(1.0), T(1.0), T(1.0)};
  T zero[3] = {};
  QuarnFloat d[3] = {4, -1, 4};
  Integer ipiv[3];
  Integer info = 0;
  const auto gttrf = [&](Integer n) {
    T dl[2] = {};
    T diagonal[3] = {T(1.0), T(0.0), T(1.0)};
    Exports<T>::gttrf(n, dl, diagonal, zero, zero, ipiv, &info);
    return info;
  };
  CHECK(gttrf(3) == 2);
  CHECK(gttrf(-1) == -1);
  const auto gttrs = [&](const char* trans, Integer n, Integer nrhs, Integer ldb) {
    Exports<T>::gttrs(trans, n, nrhs, zero, x, zero, zero, ipiv, x, ldb, &info, 1);
    return info;
  };
  CHECK(gttrs("X", 3, 1, 3) == -1);
  CHECK(gttrs("N", -3, 1, 3) == -2);
  CHECK(gttrs("N", 3, -1, 3) == -3);
  CHECK(gttrs("N", 3, 1, 2) == -10);
  Exports<T>::pttrf(3, d, zero, &info);
  CHECK(info == 2);
  Exports<T>::pttrf(-3, d, zero, &info);
  CHECK(info == -1);
  if constexpr (std::is_same_v<T, Complex>) {
    const auto zpttrs = [&](const char* uplo, Integer n, Integer nrhs, Integer ldb) {
      QuarnMPX_zpttrs_(uplo, n, nrhs, d, zero, x, ldb, &info, 1);
      return info;
    };
    CHECK(zpttrs("X", 3, 1, 3) == -1);
    CHECK(zpttrs("U", -3, 1, 3) == -2);
    CHECK(zpttrs("U", 3, -1, 3) == -3);
    CHECK(zpttrs("U", 3, 1, 2) == -7);
  } else {
    const auto dpttrs = [&](Integer n, Integer nrhs, Integer ldb) {
      QuarnMPX_dpttrs_(n, nrhs, d, zero, x, ldb, &info);
      return info;
    };
    CHECK(dpttrs(-3, 1, 3) == -1);
    CHECK(dpttrs(3, -1, 3) == -2);
    CHECK(dpttrs(3, 1, 2) == -6);
  }
}

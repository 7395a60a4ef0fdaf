// LQ factorisation, QR with column pivoting, complete orthogonal factorisation, and least squares of any rank and with
// constraints, by residuals in units of the last place and by what makes each solution the one that is asked for.
#include <doctest/doctest.h>

#include "support/pick.h"
#include "support/ratios.h"
#include "tesk2mp/tesk2mp.h"

using support::adjoint;
using support::difference;
using support::Matrix;
using support::norm_of;
using support::part;
using support::RandomNumbers;
using support::ratio;
using support::unit;
using tesk::Diagonal;
using tesk::Triangle;

namespace {

template <class T>
struct Exports {
  static constexpr auto gelqf = support::pick<T>(QuarnMPX_dgelqf_, QuarnMPX_zgelqf_);
  static constexpr auto orglq = support::pick<T>(QuarnMPX_dorglq_, QuarnMPX_zunglq_);
  static constexpr auto ormlq = support::pick<T>(QuarnMPX_dormlq_, QuarnMPX_zunmlq_);
  static constexpr auto ormqr = support::pick<T>(QuarnMPX_dormqr_, QuarnMPX_zunmqr_);
  static constexpr auto tzrzf = support::pick<T>(QuarnMPX_dtzrzf_, QuarnMPX_ztzrzf_);
  static constexpr auto ormrz = support::pick<T>(QuarnMPX_dormrz_, QuarnMPX_zunmrz_);
  static constexpr auto gglse = support::pick<T>(QuarnMPX_dgglse_, QuarnMPX_zgglse_);
  static constexpr auto ggglm = support::pick<T>(QuarnMPX_dggglm_, QuarnMPX_zggglm_);
  static constexpr const char* adjoint = support::pick<T>("T", "C");
};

constexpr Integer kWork = 400;

/// Workspace and INFO of one kind of numbers.
template <class T>
struct Call {
  std::vector<T> work = std::vector<T>(kWork);
  std::vector<QuarnFloat> rwork;
  Integer info = -99;

  void geqp3(Matrix<T>& a, std::vector<Integer>& jpvt, std::vector<T>& tau) {
    if constexpr (std::is_same_v<T, Complex>) {
      QuarnMPX_zgeqp3_(a.rows(), a.columns(), a.data(), a.lda(), jpvt.data(), tau.data(), work.data(), kWork, nullptr,
                       &info);
    } else {
      QuarnMPX_dgeqp3_(a.rows(), a.columns(), a.data(), a.lda(), jpvt.data(), tau.data(), work.data(), kWork, &info);
    }
  }
  Integer gelsy(Matrix<T>& a, Matrix<T>& b, Integer nrhs, std::vector<Integer>& jpvt, const QuarnFloat& rcond) {
    Integer rank = -99;
    if constexpr (std::is_same_v<T, Complex>) {
      QuarnMPX_zgelsy_(a.rows(), a.columns(), nrhs, a.data(), a.lda(), b.data(), b.lda(), jpvt.data(), rcond, &rank,
                       work.data(), kWork, nullptr, &info);
    } else {
      QuarnMPX_dgelsy_(a.rows(), a.columns(), nrhs, a.data(), a.lda(), b.data(), b.lda(), jpvt.data(), rcond, &rank,
                       work.data(), kWork, &info);
    }
    return rank;
  }
};

struct Shape {
  Integer m;
  Integer n;
};

/// Of the rank of its factors, rounded at the working digits.
template <class T>
Matrix<T> of_rank(RandomNumbers& random, Integer m, Integer n, Integer rank) {
  const Matrix<T> left = Matrix<T>(m, rank).randomise(random);
  const Matrix<T> right = Matrix<T>(rank, n).randomise(random);
  return product(left, right);
}

}  // namespace

TEST_CASE_TEMPLATE("L Q gives the matrix back, and Q has orthonormal rows", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 333}) {
    for (const Shape& shape : {Shape{0, 0}, {3, 0}, {1, 1}, {3, 5}, {5, 3}, {40, 40}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      if (m == 40 && digits != 50) {
        continue;
      }
      CAPTURE(m);
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Integer steps = std::min(m, n);
      const Integer most = std::max<Integer>({1, m, n});
      const Matrix<T> a = Matrix<T>(m, n).randomise(random);
      Matrix<T> lq = a;
      std::vector<T> tau(std::size_t(steps) + 1);
      Call<T> call;
      Exports<T>::gelqf(m, n, lq.data(), lq.lda(), tau.data(), call.work.data(), kWork, &call.info);
      CHECK(call.info == 0);
      CHECK(lq.intact());
      Matrix<T> l = part(lq, m, steps);
      for (Integer j = 1; j <= steps; ++j) {
        for (Integer i = 1; i < j && i <= m; ++i) {
          l(i, j) = T(0.0);
        }
      }
      Matrix<T> q = part(lq, steps, n);
      Exports<T>::orglq(steps, n, steps, q.data(), q.lda(), tau.data(), call.work.data(), kWork, &call.info);
      CHECK(call.info == 0);
      CHECK(q.intact());
      Matrix<T> c = a;
      Exports<T>::ormlq("R", Exports<T>::adjoint, m, n, steps, lq.data(), lq.lda(), tau.data(), c.data(), c.lda(),
                        call.work.data(), kWork, &call.info, 1, 1);
      CHECK(call.info == 0);
      CHECK(c.intact());
      Matrix<T> full = unit<T>(n);
      Exports<T>::ormlq("l", "n", n, n, steps, lq.data(), lq.lda(), tau.data(), full.data(), full.lda(),
                        call.work.data(), kWork, &call.info, 1, 1);
      CHECK(call.info == 0);
      const support::Digits finer(digits + support::kSpareDigits);
      CHECK(ratio(product(l, q), a, norm_of(a), most, digits) < 6);
      CHECK(ratio(product(q, adjoint(q)), unit<T>(steps), 1, most, digits) < 6);
      CHECK(ratio(part(c, m, steps), l, norm_of(a), most, digits) < 6);
      CHECK(ratio(part(full, steps, n), q, 1, most, digits) < 6);
    }
  }
}

TEST_CASE_TEMPLATE("QR with column pivoting: factors, order of the diagonal, columns that come first", T, QuarnFloat,
                   Complex) {
  RandomNumbers random;
  for (const int digits : {2, 16, 50, 333}) {
    for (const Shape& shape : {Shape{0, 0}, {0, 3}, {3, 0}, {1, 1}, {4, 7}, {7, 4}, {40, 30}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      for (const Integer fixed : {Integer(0), n / 2}) {
        if (m == 40 && digits != 50) {
          continue;
        }
        CAPTURE(m);
        CAPTURE(n);
        CAPTURE(digits);
        const support::Digits scope(digits);
        const Integer steps = std::min(m, n);
        const Matrix<T> a = Matrix<T>(m, n).randomise(random);
        Matrix<T> qr = a;
        std::vector<Integer> jpvt(std::size_t(n) + 1, 0);
        for (Integer j = 0; j < fixed; ++j) {
          jpvt[std::size_t(n - 1 - j)] = 1;
        }
        const std::vector<Integer> first = jpvt;
        std::vector<T> tau(std::size_t(steps) + 1);
        Call<T> call;
        call.geqp3(qr, jpvt, tau);
        REQUIRE(call.info == 0);
        CHECK(qr.intact());
        for (const int decades : {-900'000'000, 900'000'000}) {  // the squares leave the range
          const T factor = QuarnFloat(1, decades);
          Matrix<T> far = a;
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = 1; i <= m; ++i) {
              far(i, j) = a(i, j) * factor;
            }
          }
          std::vector<Integer> order = first;
          std::vector<T> far_tau = tau;
          call.geqp3(far, order, far_tau);
          CHECK(order == jpvt);
          CHECK(far_tau == tau);
          bool same = true;
          for (Integer j = 1; j <= n; ++j) {
            for (Integer i = 1; i <= m; ++i) {
              same = same && far(i, j) == (i > j ? qr(i, j) : qr(i, j) * factor);
            }
          }
          CHECK(same);
        }
        for (Integer j = 1; j <= fixed; ++j) {
          CHECK(jpvt[std::size_t(j - 1)] == n - fixed + j);
        }
        Matrix<T> back = support::zeros<T>(m, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= std::min(j, m); ++i) {
            back(i, j) = qr(i, j);
          }
        }
        // Norms that are brought up to date keep half of their digits, which is none of two.
        const QuarnFloat slack = 1 + 10 * sqrt(QuarnFloat(1, 1 - digits));
        for (Integer k = digits > 2 ? fixed + 1 : steps + 1; k <= steps; ++k) {
          // No column has more left below row k - 1 than the one that was chosen.
          for (Integer j = k + 1; j <= n; ++j) {
            QuarnFloat rest = 0;
            for (Integer i = k; i <= std::min(j, m); ++i) {
              rest += tesk::modulus(back(i, j)) * tesk::modulus(back(i, j));
            }
            CHECK(sqrt(rest) <= tesk::modulus(back(k, k)) * slack);
          }
        }
        Exports<T>::ormqr("L", "N", m, n, steps, qr.data(), qr.lda(), tau.data(), back.data(), back.lda(),
                          call.work.data(), kWork, &call.info, 1, 1);
        Matrix<T> permuted(m, n);
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= m; ++i) {
            permuted(i, j) = a(i, jpvt[std::size_t(j - 1)]);
          }
        }
        const support::Digits finer(digits + support::kSpareDigits);
        CHECK(ratio(back, permuted, norm_of(a), std::max(m, n), digits) < 6);
      }
    }
  }
}

TEST_CASE_TEMPLATE("a trapezoid becomes a triangle times an orthogonal matrix", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 333}) {
    for (const Shape& shape : {Shape{0, 0}, {0, 3}, {1, 1}, {3, 3}, {3, 7}, {20, 30}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      CAPTURE(m);
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Matrix<T> given = Matrix<T>(m, n).randomise(random);
      Matrix<T> a = support::zeros<T>(m, n);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= std::min(j, m); ++i) {
          a(i, j) = given(i, j);
        }
      }
      Matrix<T> tz = given;  // below the diagonal something that is not read
      std::vector<T> tau(std::size_t(m) + 1);
      Call<T> call;
      Exports<T>::tzrzf(m, n, tz.data(), tz.lda(), tau.data(), call.work.data(), kWork, &call.info);
      REQUIRE(call.info == 0);
      CHECK(tz.intact());
      Matrix<T> z = unit<T>(n);
      Exports<T>::ormrz("R", "N", n, n, m, n - m, tz.data(), tz.lda(), tau.data(), z.data(), z.lda(), call.work.data(),
                        kWork, &call.info, 1, 1);
      REQUIRE(call.info == 0);
      CHECK(z.intact());
      Matrix<T> c = support::zeros<T>(m, n);
      for (Integer j = 1; j <= m; ++j) {
        for (Integer i = 1; i <= j; ++i) {
          c(i, j) = tz(i, j);
        }
      }
      Exports<T>::ormrz("r", "n", m, n, m, n - m, tz.data(), tz.lda(), tau.data(), c.data(), c.lda(), call.work.data(),
                        kWork, &call.info, 1, 1);
      Matrix<T> back = z;
      Exports<T>::ormrz("L", Exports<T>::adjoint, n, n, m, n - m, tz.data(), tz.lda(), tau.data(), back.data(),
                        back.lda(), call.work.data(), kWork, &call.info, 1, 1);
      const support::Digits finer(digits + support::kSpareDigits);
      CHECK(ratio(c, a, norm_of(a) + 1, n, digits) < 6);
      CHECK(ratio(back, unit<T>(n), 1, n, digits) < 6);
    }
  }
}

TEST_CASE_TEMPLATE("least squares of any rank", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {16, 50, 333}) {
    for (const Shape& shape : {Shape{1, 1}, {7, 4}, {4, 7}, {6, 6}, {5, 0}, {0, 5}, {30, 40}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      const Integer steps = std::min(m, n);
      for (const Integer rank : {steps, steps / 2, Integer(0)}) {
        if (m == 30 && digits == 333) {
          continue;
        }
        CAPTURE(m);
        CAPTURE(n);
        CAPTURE(rank);
        CAPTURE(digits);
        const support::Digits scope(digits);
        const Integer most = std::max(m, n);
        Matrix<T> a = rank == steps ? Matrix<T>(m, n).randomise(random) : of_rank<T>(random, m, n, rank);
        const Matrix<T> before = a;
        Matrix<T> b = Matrix<T>(most, 2).randomise(random);
        const Matrix<T> given = part(b, m, 2);
        std::vector<Integer> jpvt(std::size_t(n) + 1, 0);
        Call<T> call;
        const QuarnFloat rcond = QuarnFloat(1, 5 - digits);
        CHECK(call.gelsy(a, b, 2, jpvt, rcond) == rank);
        REQUIRE(call.info == 0);
        CHECK(a.intact());
        CHECK(b.intact());
        // The same rank without right-hand sides.
        Matrix<T> again = before;
        std::vector<Integer> order(std::size_t(n) + 1, 0);
        CHECK(call.gelsy(again, b, 0, order, rcond) == rank);
        const support::Digits finer(digits + support::kSpareDigits);
        const Matrix<T> x = part(b, n, 2);
        const Matrix<T> residual = difference(product(before, x), given);
        const QuarnFloat size = norm_of(before) + QuarnFloat(1, -200);
        const QuarnFloat scale = size * (size * norm_of(x) + norm_of(given));
        CHECK(ratio(norm_of(product(adjoint(before), residual)), scale + QuarnFloat(1, -200), most, digits) < 30);
        // A solution of least norm has nothing in the null space: x = A^H y for some y.
        if (rank == 0) {
          CHECK(norm_of(x) == 0);
          continue;
        }
        Matrix<T> conjugate = adjoint(before);
        Matrix<T> y(most, 2);
        for (Integer j = 1; j <= 2; ++j) {
          for (Integer i = 1; i <= most; ++i) {
            y(i, j) = i <= n ? x(i, j) : T(0.0);
          }
        }
        std::vector<Integer> rows(std::size_t(m) + 1, 0);
        CHECK(call.gelsy(conjugate, y, 2, rows, rcond) == rank);
        // 10^3 for the condition of a random matrix and of what rounding it leaves of its null space.
        CHECK(ratio(product(adjoint(before), part(y, m, 2)), x, norm_of(x) * 1000, most, digits) < 30);
      }
    }
  }
}

TEST_CASE("the rank of a graded triangle that hides it from its diagonal") {
  // Kahan's matrix: pivoting moves nothing, no diagonal element is small, and the matrix is nearly singular.
  const support::Digits scope(30);
  const Integer n = 40;
  const QuarnFloat c("0.3");
  const QuarnFloat s = sqrt(1 - c * c);
  Matrix<QuarnFloat> a = support::zeros<QuarnFloat>(n, n);
  QuarnFloat power = 1;
  for (Integer i = 1; i <= n; ++i) {
    a(i, i) = power * (1 + QuarnFloat(n - i) * QuarnFloat(1, -20));  // keeps the pivots in order
    for (Integer j = i + 1; j <= n; ++j) {
      a(i, j) = -c * power;
    }
    power *= s;
  }
  Matrix<QuarnFloat> b = support::zeros<QuarnFloat>(n, 1);
  Call<QuarnFloat> call;
  std::vector<Integer> jpvt(std::size_t(n), 0);
  Matrix<QuarnFloat> copy = a;
  CHECK(call.gelsy(copy, b, 0, jpvt, QuarnFloat(1, -3)) < n);  // the last diagonal element alone is 0.16 of the first
  copy = a;
  jpvt.assign(std::size_t(n), 0);
  CHECK(call.gelsy(copy, b, 0, jpvt, QuarnFloat(1, -20)) == n);
}

TEST_CASE_TEMPLATE("least squares with constraints, and the Gauss-Markov model", T, QuarnFloat, Complex) {
  RandomNumbers random;
  struct Problem {
    Integer m, n, p;
  };
  for (const int digits : {16, 50, 333}) {
    for (const Problem& problem :
         {Problem{0, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 2, 2}, {5, 4, 2}, {3, 5, 2}, {4, 4, 4}, {6, 3, 0}, {30, 20, 5}}) {
      const Integer m = problem.m;
      const Integer n = problem.n;
      const Integer p = problem.p;
      CAPTURE(m);
      CAPTURE(n);
      CAPTURE(p);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Integer most = std::max<Integer>({1, m, n, p});
      Call<T> call;
      Matrix<T> a = Matrix<T>(m, n).randomise(random);
      Matrix<T> b = Matrix<T>(p, n).randomise(random);
      Matrix<T> c = Matrix<T>(m, 1).randomise(random);
      Matrix<T> d = Matrix<T>(p, 1).randomise(random);
      Matrix<T> x(n, 1);
      const Matrix<T> before = c;
      Exports<T>::gglse(m, n, p, a.data(), a.lda(), b.data(), b.lda(), c.data(), d.data(), x.data(), call.work.data(),
                        kWork, &call.info);
      REQUIRE(call.info == 0);
      CHECK(x.intact());
      CHECK(c.intact());
      {
        const support::Digits finer(digits + support::kSpareDigits);
        const QuarnFloat size = norm_of(x) * (norm_of(b) + 1) + 1;
        CHECK(ratio(product(b, x), d, size * 100, most, digits) < 30);
        // The gradient of norm(c - A x) is a combination of the constraints: A^H r = B^H y for some y.
        const Matrix<T> residual = difference(product(a, x), before);
        const Matrix<T> gradient = product(adjoint(a), residual);
        Matrix<T> conjugate = adjoint(b);
        Matrix<T> y(std::max(n, p), 1);
        for (Integer i = 1; i <= n; ++i) {
          y(i, 1) = gradient(i, 1);
        }
        std::vector<Integer> jpvt(std::size_t(p) + 1, 0);
        CHECK(call.gelsy(conjugate, y, 1, jpvt, QuarnFloat(1, -digits)) == p);
        const QuarnFloat scale = (norm_of(a) + 1) * ((norm_of(a) + 1) * norm_of(x) + norm_of(before)) * 100 + 1;
        CHECK(ratio(product(adjoint(b), part(y, p, 1)), gradient, scale, most, digits) < 30);
        QuarnFloat rest = 0;
        QuarnFloat squares = 0;
        for (Integer i = 1; i <= m; ++i) {
          squares += tesk::modulus(residual(i, 1)) * tesk::modulus(residual(i, 1));
          rest += i > n - p ? tesk::modulus(c(i, 1)) * tesk::modulus(c(i, 1)) : QuarnFloat(0);
        }
        CHECK(fabs(rest - squares) <= QuarnFloat(1, 4 - digits) * (1 + norm_of(x) * norm_of(x)) * (squares + 1) * most);
      }
      // The model with n equations, of m unknowns and p errors, takes A^H and B^H the other way round.
      const Integer errors = m;
      Matrix<T> model = Matrix<T>(n, p).randomise(random);
      Matrix<T> noise = Matrix<T>(n, errors).randomise(random);
      Matrix<T> observed = Matrix<T>(n, 1).randomise(random);
      Matrix<T> u(p, 1);
      Matrix<T> v(errors, 1);
      Exports<T>::ggglm(n, p, errors, model.data(), model.lda(), noise.data(), noise.lda(), observed.data(), u.data(),
                        v.data(), call.work.data(), kWork, &call.info);
      REQUIRE(call.info == 0);
      CHECK(u.intact());
      CHECK(v.intact());
      const support::Digits finer(digits + support::kSpareDigits);
      const QuarnFloat size = 1 + norm_of(u) * norm_of(model) + norm_of(v) * norm_of(noise);
      const Matrix<T> left = product(model, u);
      const Matrix<T> right = difference(observed, product(noise, v));
      CHECK(ratio(left, right, size * 100, most, digits) < 30);
      // y is the shortest: y = B^H z for some z with A^H z = 0.
      Matrix<T> both(n, p + errors);
      for (Integer i = 1; i <= n; ++i) {
        for (Integer j = 1; j <= p + errors; ++j) {
          both(i, j) = j <= p ? model(i, j) : noise(i, j - p);
        }
      }
      Matrix<T> stacked = adjoint(both);
      Matrix<T> z = support::zeros<T>(std::max(n, p + errors), 1);
      for (Integer i = 1; i <= errors; ++i) {
        z(p + i, 1) = v(i, 1);
      }
      const Matrix<T> wanted = part(z, p + errors, 1);
      std::vector<Integer> jpvt(std::size_t(n) + 1, 0);
      CHECK(call.gelsy(stacked, z, 1, jpvt, QuarnFloat(1, -digits)) == n);
      CHECK(ratio(product(adjoint(both), part(z, n, 1)), wanted, size * 1000, most, digits) < 30);
    }
  }
}

TEST_CASE_TEMPLATE("dependent rows and columns, wrong arguments and NaN in least squares", T, QuarnFloat, Complex) {
  T a[4] = {T(1.0), T(2.0), T(3.0), T(4.0)};
  T b[4] = {T(1.0), T(1.0), T(0.0), T(0.0)};
  T none[4] = {};
  T c[2] = {T(1.0), T(2.0)};
  T x[2];
  T y[2];
  T work[20];
  Integer info = 0;
  const auto gglse = [&](Integer m, Integer n, Integer p, T* left, T* right, Integer lda, Integer ldb, Integer lwork) {
    Exports<T>::gglse(m, n, p, left, lda, right, ldb, c, c, x, work, lwork, &info);
    return info;
  };
  CHECK(gglse(2, 2, 2, a, b, 2, 2, 20) == 1);
  CHECK(gglse(2, 2, 1, none, a, 2, 1, 20) == 2);
  CHECK(gglse(-1, 2, 1, a, b, 2, 1, 20) == -1);
  CHECK(gglse(2, -2, 1, a, b, 2, 1, 20) == -2);
  CHECK(gglse(1, 2, 0, a, b, 2, 1, 20) == -3);
  CHECK(gglse(2, 2, 1, a, b, 1, 1, 20) == -5);
  CHECK(gglse(2, 2, 2, a, b, 2, 1, 20) == -7);
  CHECK(gglse(2, 2, 2, a, b, 2, 2, 5) == -12);
  CHECK(gglse(2, 2, 2, a, b, 2, 2, -1) == 0);
  CHECK(work[0] == T(6.0));
  const auto ggglm = [&](Integer n, Integer m, Integer p, T* left, T* right, Integer lda, Integer ldb, Integer lwork) {
    Exports<T>::ggglm(n, m, p, left, lda, right, ldb, c, x, y, work, lwork, &info);
    return info;
  };
  CHECK(ggglm(2, 2, 1, none, a, 2, 2, 20) == 1);
  CHECK(ggglm(2, 1, 2, a, none, 2, 2, 20) == 2);
  CHECK(ggglm(-1, 0, 1, a, b, 2, 2, 20) == -1);
  CHECK(ggglm(2, 3, 1, a, b, 2, 2, 20) == -2);
  CHECK(ggglm(2, 1, 0, a, b, 2, 2, 20) == -3);
  CHECK(ggglm(2, 2, 2, a, b, 1, 2, 20) == -5);
  CHECK(ggglm(2, 2, 2, a, b, 2, 1, 20) == -7);
  CHECK(ggglm(2, 2, 2, a, b, 2, 2, 5) == -12);
  const auto trapezoid = [&](Integer m, Integer n, Integer lda, Integer lwork) {
    Exports<T>::tzrzf(m, n, none, lda, x, work, lwork, &info);
    return info;
  };
  CHECK(trapezoid(-1, 2, 2, 2) == -1);
  CHECK(trapezoid(2, 1, 2, 2) == -2);
  CHECK(trapezoid(2, 2, 1, 2) == -4);
  CHECK(trapezoid(2, 2, 2, 1) == -7);
  const auto turn = [&](const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l, Integer lda,
                        Integer ldc, Integer lwork) {
    Exports<T>::ormrz(side, trans, m, n, k, l, a, lda, x, none, ldc, work, lwork, &info, 1, 1);
    return info;
  };
  CHECK(turn("X", "N", 2, 2, 1, 1, 1, 2, 2) == -1);
  CHECK(turn("L", "X", 2, 2, 1, 1, 1, 2, 2) == -2);
  CHECK(turn("L", "N", -2, 2, 1, 1, 1, 2, 2) == -3);
  CHECK(turn("L", "N", 2, -2, 1, 1, 1, 2, 2) == -4);
  CHECK(turn("L", "N", 1, 2, 2, 1, 1, 2, 2) == -5);
  CHECK(turn("R", "N", 1, 2, 1, 2, 1, 2, 2) == -6);
  CHECK(turn("L", "N", 2, 2, 2, 0, 1, 2, 2) == -8);
  CHECK(turn("L", "N", 2, 2, 1, 1, 1, 1, 2) == -11);
  CHECK(turn("L", "N", 2, 2, 1, 1, 1, 2, 1) == -13);

  // Wherever a NaN stands, it is in the solution, and every call ends.
  for (Integer place = 0; place < 12; ++place) {
    Matrix<T> with(4, 3);
    RandomNumbers random;
    with.randomise(random);
    with(place % 4 + 1, place / 4 + 1) = support::nan_value(static_cast<T*>(nullptr));
    Matrix<T> right = Matrix<T>(4, 1).randomise(random);
    std::vector<Integer> jpvt(3, 0);
    Call<T> call;
    call.gelsy(with, right, 1, jpvt, QuarnFloat(1, -10));
    CHECK(call.info == 0);
    CHECK(isnan(norm_of(part(right, 3, 1))));
  }
}

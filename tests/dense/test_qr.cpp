// QR factorisation, its orthogonal factor kept and applied, least squares, and the reduction to Hessenberg form, by
// residuals in units of the last place and by properties that define the results.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

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

namespace {

template <class T>
struct Exports {
  static constexpr auto geqrf = support::pick<T>(QuarnMPX_dgeqrf_, QuarnMPX_zgeqrf_);
  static constexpr auto orgqr = support::pick<T>(QuarnMPX_dorgqr_, QuarnMPX_zungqr_);
  static constexpr auto ormqr = support::pick<T>(QuarnMPX_dormqr_, QuarnMPX_zunmqr_);
  static constexpr auto gels = support::pick<T>(QuarnMPX_dgels_, QuarnMPX_zgels_);
  static constexpr auto gehrd = support::pick<T>(QuarnMPX_dgehrd_, QuarnMPX_zgehrd_);
  static constexpr const char* adjoint = support::pick<T>("T", "C");
  static constexpr const char* not_adjoint = support::pick<T>("C", "T");
};

struct Shape {
  Integer m;
  Integer n;
};

}  // namespace

TEST_CASE_TEMPLATE("Q R gives the matrix back, and Q is orthogonal", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {2, 20, 50, 333}) {
    for (const Shape& shape : {Shape{0, 0}, {0, 3}, {1, 1}, {5, 3}, {3, 5}, {70, 40}, {64, 70}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      if (m > 60 && digits != 20) {
        continue;
      }
      CAPTURE(m);
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Integer steps = std::min(m, n);
      const Integer most = std::max<Integer>({1, m, n});
      const Matrix<T> a = Matrix<T>(m, n).randomise(random);
      Matrix<T> qr = a;
      std::vector<T> tau(std::size_t(steps) + 1);
      std::vector<T> work(std::size_t(most) + 1);
      Integer info = -99;
      Exports<T>::geqrf(m, n, qr.data(), qr.lda(), tau.data(), work.data(), most, &info);
      CHECK(info == 0);
      CHECK(qr.intact());
      Matrix<T> r = part(qr, steps, n);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = j + 1; i <= steps; ++i) {
          r(i, j) = T(0.0);
        }
      }
      Matrix<T> q = part(qr, m, steps);
      Exports<T>::orgqr(m, steps, steps, q.data(), q.lda(), tau.data(), work.data(), most, &info);
      CHECK(info == 0);
      CHECK(q.intact());
      // Q and its adjoint from both sides, applied to what they take to the given matrix and to units.
      Matrix<T> c = a;
      Exports<T>::ormqr("L", Exports<T>::adjoint, m, n, steps, qr.data(), qr.lda(), tau.data(), c.data(), c.lda(),
                        work.data(), most, &info, 1, 1);
      CHECK(info == 0);
      CHECK(c.intact());
      Matrix<T> full = unit<T>(m);
      Exports<T>::ormqr("r", "n", m, m, steps, qr.data(), qr.lda(), tau.data(), full.data(), full.lda(), work.data(),
                        most, &info, 1, 1);
      CHECK(info == 0);
      Matrix<T> back = full;
      Exports<T>::ormqr("R", Exports<T>::adjoint, m, m, steps, qr.data(), qr.lda(), tau.data(), back.data(), back.lda(),
                        work.data(), most, &info, 1, 1);
      CHECK(info == 0);
      const support::Digits finer(digits + support::kSpareDigits);
      CHECK(ratio(norm_of(difference(product(q, r), a)), norm_of(a), most, digits) < 4);
      CHECK(ratio(norm_of(difference(product(adjoint(q), q), unit<T>(steps))), 1, most, digits) < 4);
      CHECK(ratio(norm_of(difference(part(c, steps, n), r)), norm_of(a), most, digits) < 4);
      CHECK(ratio(norm_of(difference(part(full, m, steps), q)), 1, most, digits) < 4);
      CHECK(ratio(norm_of(difference(back, unit<T>(m))), 1, most, digits) < 4);
    }
  }
}

TEST_CASE_TEMPLATE("least squares and minimum-norm solutions", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {5, 50, 200}) {
    for (const Shape& shape : {Shape{1, 1}, {7, 4}, {4, 7}, {6, 6}, {5, 0}, {0, 5}}) {
      const Integer m = shape.m;
      const Integer n = shape.n;
      for (const bool plain : {true, false}) {
        CAPTURE(m);
        CAPTURE(n);
        CAPTURE(plain);
        CAPTURE(digits);
        const support::Digits scope(digits);
        Matrix<T> a = Matrix<T>(m, n).randomise(random);
        const Matrix<T> before = a;
        const Integer most = std::max(m, n);
        const Integer rows = plain ? m : n;
        const Integer columns = plain ? n : m;
        Matrix<T> b = Matrix<T>(most, 2).randomise(random);
        const Matrix<T> given = part(b, rows, 2);
        std::vector<T> work(40);
        Integer info = -99;
        Exports<T>::gels(plain ? "N" : Exports<T>::adjoint, m, n, 2, a.data(), a.lda(), b.data(), b.lda(), work.data(),
                         40, &info, 1);
        REQUIRE(info == 0);
        CHECK(b.intact());
        const support::Digits finer(digits + support::kSpareDigits);
        const Matrix<T> op = plain ? before : adjoint(before);
        const Matrix<T> x = part(b, columns, 2);
        const Matrix<T> residual = difference(product(op, x), given);
        const QuarnFloat scale = norm_of(op) * (norm_of(op) * norm_of(x) + norm_of(given)) + QuarnFloat(1, -200);
        // The residual is orthogonal to the columns, and an element of a right-hand side left over has its length.
        CHECK(ratio(norm_of(product(adjoint(op), residual)), scale, most, digits) < 4);
        if (rows < columns) {
          // A solution of least norm has nothing in the null space: x = op(A)^H y for the y of normal equations.
          Matrix<T> y = x;
          std::vector<T> more(40);
          Matrix<T> tall = adjoint(op);
          const support::Digits same(digits + support::kSpareDigits);
          Exports<T>::gels("N", columns, rows, 2, tall.data(), tall.lda(), y.data(), y.lda(), more.data(), 40, &info,
                           1);
          CHECK(ratio(norm_of(difference(product(adjoint(op), part(y, rows, 2)), x)), norm_of(x) * 1000 + 1, most,
                      digits) < 4);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("wrong arguments of orthogonal factorisations", T, QuarnFloat, Complex) {
  T a[4] = {T(1.0), T(2.0), T(3.0), T(4.0)};
  T tau[2];
  T work[8];
  Integer info = 0;
  const auto qr = [&](Integer m, Integer n, Integer lda, Integer lwork) {
    Exports<T>::geqrf(m, n, a, lda, tau, work, lwork, &info);
    return info;
  };
  CHECK(qr(-1, 2, 2, 2) == -1);
  CHECK(qr(2, -1, 2, 2) == -2);
  CHECK(qr(2, 2, 1, 2) == -4);
  CHECK(qr(2, 2, 2, 1) == -7);
  CHECK(qr(2, 2, 2, -1) == 0);
  CHECK(work[0] == T(2.0));
  const auto form = [&](Integer m, Integer n, Integer k, Integer lda, Integer lwork) {
    Exports<T>::orgqr(m, n, k, a, lda, tau, work, lwork, &info);
    return info;
  };
  CHECK(form(-1, 0, 0, 1, 1) == -1);
  CHECK(form(1, 2, 1, 1, 2) == -2);
  CHECK(form(2, 1, 2, 2, 2) == -3);
  CHECK(form(2, 2, 2, 1, 2) == -5);
  CHECK(form(2, 2, 2, 2, 0) == -8);
  const auto apply = [&](const char* side, const char* trans, Integer m, Integer n, Integer k, Integer lda, Integer ldc,
                         Integer lwork) {
    Exports<T>::ormqr(side, trans, m, n, k, a, lda, tau, a, ldc, work, lwork, &info, 1, 1);
    return info;
  };
  CHECK(apply("X", "N", 2, 2, 2, 2, 2, 2) == -1);
  CHECK(apply("L", Exports<T>::not_adjoint, 2, 2, 2, 2, 2, 2) == -2);
  CHECK(apply("L", "N", -1, 2, 2, 2, 2, 2) == -3);
  CHECK(apply("L", "N", 2, -1, 2, 2, 2, 2) == -4);
  CHECK(apply("L", "N", 1, 2, 2, 2, 2, 2) == -5);
  CHECK(apply("R", "N", 1, 2, 2, 1, 2, 2) == -7);
  CHECK(apply("L", "N", 2, 2, 2, 2, 1, 2) == -10);
  CHECK(apply("L", "N", 2, 2, 2, 2, 2, 1) == -12);
  const auto solve = [&](const char* trans, Integer m, Integer n, Integer nrhs, Integer lda, Integer ldb,
                         Integer lwork) {
    T b[2] = {};
    Exports<T>::gels(trans, m, n, nrhs, a, lda, b, ldb, work, lwork, &info, 1);
    return info;
  };
  CHECK(solve(Exports<T>::not_adjoint, 2, 2, 1, 2, 2, 4) == -1);
  CHECK(solve("N", -2, 2, 1, 2, 2, 4) == -2);
  CHECK(solve("N", 2, -2, 1, 2, 2, 4) == -3);
  CHECK(solve("N", 2, 2, -1, 2, 2, 4) == -4);
  CHECK(solve("N", 2, 2, 1, 1, 2, 4) == -6);
  CHECK(solve("N", 1, 2, 1, 1, 1, 4) == -8);
  CHECK(solve("N", 2, 2, 1, 2, 2, 1) == -10);
  // A column of zeros: R(2, 2) is exactly zero.
  a[2] = T(0.0);
  a[3] = T(0.0);
  CHECK(solve("N", 2, 2, 1, 2, 2, 4) == 2);
}

TEST_CASE("the reduction to Hessenberg form is a similarity, balanced or not, small or in panels") {
  RandomNumbers random;
  using Reals = Matrix<QuarnFloat>;
  struct Case {
    Integer n;
    Integer ilo;
    Integer ihi;
  };
  for (const int digits : {2, 50, 200}) {
    for (const Case& block : {Case{0, 1, 0}, {1, 1, 1}, {2, 1, 2}, {9, 3, 7}, {12, 1, 12}, {70, 2, 69}}) {
      const Integer n = block.n;
      const Integer ilo = block.ilo;
      const Integer ihi = block.ihi;
      if (n == 70 && digits != 50) {
        continue;
      }
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      Reals a = Reals(n, n).randomise(random);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = j + 1; i <= n; ++i) {
          a(i, j) = j < ilo || i > ihi ? QuarnFloat(0) : a(i, j);
        }
      }
      Reals h = a;
      std::vector<QuarnFloat> tau(std::size_t(n) + 1);
      std::vector<QuarnFloat> work(std::size_t(n) + 1);
      Integer info = -99;
      QuarnMPX_dgehrd_(n, ilo, ihi, h.data(), h.lda(), tau.data(), work.data(), n + 1, &info);
      CHECK(info == 0);
      Reals q = h;
      QuarnMPX_dorghr_(n, ilo, ihi, q.data(), q.lda(), tau.data(), work.data(), n + 1, &info);
      CHECK(info == 0);
      CHECK(h.intact());
      CHECK(q.intact());
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = j + 2; i <= n; ++i) {
          h(i, j) = 0;
        }
      }
      const support::Digits finer(digits + support::kSpareDigits);
      CHECK(ratio(norm_of(difference(product(product(q, h), adjoint(q)), a)), norm_of(a), n, digits) < 6);
      CHECK(ratio(norm_of(difference(product(adjoint(q), q), unit<QuarnFloat>(n))), 1, n, digits) < 6);
    }
  }
  Integer info = 0;
  QuarnFloat x[4];
  const auto wrong = [&](Integer n, Integer ilo, Integer ihi, Integer lda, Integer lwork) {
    QuarnMPX_dgehrd_(n, ilo, ihi, x, lda, x, x, lwork, &info);
    const Integer reduced = info;
    QuarnMPX_dorghr_(n, ilo, ihi, x, lda, x, x, lwork, &info);
    CHECK(info == reduced);
    return info;
  };
  CHECK(wrong(-1, 1, 0, 1, 1) == -1);
  CHECK(wrong(2, 3, 2, 2, 2) == -2);
  CHECK(wrong(2, 1, 3, 2, 2) == -3);
  CHECK(wrong(2, 1, 2, 1, 2) == -5);
  CHECK(wrong(2, 1, 2, 2, 1) == -8);
}

TEST_CASE_TEMPLATE("matrices whose squares leave the range are reduced as others are", T, QuarnFloat, Complex) {
  RandomNumbers random;
  const support::Digits scope(12);
  const auto scaled = [](T number, int decades) {
    if constexpr (std::is_same_v<T, Complex>) {
      number.im *= QuarnFloat(1, decades);
      number.re *= QuarnFloat(1, decades);
      return number;
    } else {
      return number * QuarnFloat(1, decades);
    }
  };
  struct Reduced {
    Matrix<T> a;
    std::vector<T> tau;
  };
  const auto reduced = [](bool hessenberg, Matrix<T> a) {
    const Integer n = a.rows();
    std::vector<T> tau(static_cast<std::size_t>(n));
    std::vector<T> work(std::size_t(n) + 1);
    Integer info = -99;
    if (hessenberg) {
      Exports<T>::gehrd(n, 1, n, a.data(), a.lda(), tau.data(), work.data(), n, &info);
    } else {
      Exports<T>::geqrf(n, n, a.data(), a.lda(), tau.data(), work.data(), n, &info);
    }
    CHECK(info == 0);
    return Reduced{std::move(a), std::move(tau)};
  };
  for (const bool hessenberg : {true, false}) {
    for (const Integer n : {2, 5, 60}) {  // 60: with a block of reflectors
      const Matrix<T> a = Matrix<T>(n, n).randomise(random);
      const Reduced usual = reduced(hessenberg, a);
      for (const int decades : {-900'000'000, -600'000'000, 450'000'000, 900'000'000}) {
        CAPTURE(n);
        CAPTURE(decades);
        Matrix<T> far = a;
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            far(i, j) = scaled(a(i, j), decades);
          }
        }
        const Reduced found = reduced(hessenberg, far);
        CHECK(found.tau == usual.tau);
        bool same = true;
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= n; ++i) {
            const bool below = i > j + (hessenberg ? 1 : 0);  // part of a reflector
            same = same && found.a(i, j) == (below ? usual.a(i, j) : scaled(usual.a(i, j), decades));
          }
        }
        CHECK(same);
      }
    }
  }

  // The square of what is to vanish does not stand for it.
  Matrix<T> graded(2, 2);
  graded(1, 1) = T(QuarnFloat(3));
  graded(2, 1) = T(QuarnFloat(6, -600'000'000));
  const Reduced found = reduced(false, graded);
  CHECK(found.a(1, 1) == T(QuarnFloat(-3)));
  CHECK(found.a(2, 1) == T(QuarnFloat(1, -600'000'000)));
  CHECK(found.tau[0] == T(QuarnFloat(2)));
}

// General pencils A - lambda B: residuals in units of the last place, infinite eigenvalues, known spectra, singular
// pencils, and what is refused.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "quarn/complex.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;
using Complexes = Matrix<Complex>;

namespace {

template <class T>
Complexes complex_of(const Matrix<T>& a) {
  Complexes result(a.rows(), a.columns());
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = 1; i <= a.rows(); ++i) {
      result(i, j) = Complex(a(i, j));
    }
  }
  return result;
}

/// The answer with complex numbers, whatever the matrices have.
struct System {
  Integer info = -99;
  std::vector<Complex> alpha;
  std::vector<QuarnFloat> beta;
  Complexes left;
  Complexes right;

  template <class T>
  System(Matrix<T> a, Matrix<T> b, const char* job = "V") : left(a.rows(), a.rows()), right(a.rows(), a.rows()) {
    const Integer n = a.rows();
    const auto size = std::size_t(n) + 1;
    Matrix<T> vl(n, n);
    Matrix<T> vr(n, n);
    std::vector<T> work(8 * size);
    const Integer lwork = Integer(work.size());
    alpha.resize(size);
    beta.resize(size);
    if constexpr (sizeof(T) == sizeof(QuarnFloat)) {
      std::vector<QuarnFloat> re(size);
      std::vector<QuarnFloat> im(size);
      QuarnMPX_dggev_(job, job, n, a.data(), a.lda(), b.data(), b.lda(), re.data(), im.data(), beta.data(), vl.data(),
                      vl.lda(), vr.data(), vr.lda(), work.data(), lwork, &info, 1, 1);
      left = complex_of(vl);
      right = complex_of(vr);
      for (Integer j = 1; j <= n; ++j) {
        alpha[std::size_t(j - 1)] = Complex(re[std::size_t(j - 1)], im[std::size_t(j - 1)]);
        if (im[std::size_t(j - 1)] > 0 && *job == 'V') {
          for (Complexes* v : {&left, &right}) {
            for (Integer i = 1; i <= n; ++i) {
              Complex& x = (*v)(i, j);
              Complex& y = (*v)(i, j + 1);
              x = Complex(x.re, y.re);
              y = conj(x);
            }
          }
        }
      }
    } else {
      std::vector<Complex> denominators(size);
      QuarnMPX_zggev_(job, job, n, a.data(), a.lda(), b.data(), b.lda(), alpha.data(), denominators.data(), vl.data(),
                      vl.lda(), vr.data(), vr.lda(), work.data(), lwork, nullptr, &info, 1, 1);
      left = vl;
      right = vr;
      for (std::size_t j = 0; j < size; ++j) {
        CHECK(denominators[j].im == 0);
        beta[j] = denominators[j].re;
      }
    }
    CHECK(vl.intact());
    CHECK(vr.intact());
  }
};

/// beta A x - alpha B x
QuarnFloat residual(const Complexes& a, const Complexes& b, const Complexes& x, const System& system, bool conjugated) {
  Complexes ax = product(a, x);
  const Complexes bx = product(b, x);
  Complexes zero(x.rows(), x.columns());
  for (Integer j = 1; j <= x.columns(); ++j) {
    const auto at = std::size_t(j - 1);
    const Complex alpha = conjugated ? conj(system.alpha[at]) : system.alpha[at];
    for (Integer i = 1; i <= x.rows(); ++i) {
      ax(i, j) = Complex(system.beta[at]) * ax(i, j) - alpha * bx(i, j);
      zero(i, j) = Complex(0);
    }
  }
  return distance(ax, zero);
}

template <class T>
void check_system(const Matrix<T>& a, const Matrix<T>& b, int digits) {
  const Integer n = a.rows();
  CAPTURE(n);
  CAPTURE(digits);
  const System system(a, b);
  REQUIRE(system.info == 0);
  const System alone(a, b, "N");
  CHECK(alone.info == 0);
  const support::Digits finer(digits + kSpare);
  const Complexes ac = complex_of(a);
  const Complexes bc = complex_of(b);
  // alpha and beta are as large as A and B.
  const QuarnFloat norm = std::max(one_norm(a) * one_norm(b), QuarnFloat(1, -900000000));
  CHECK(ratio(residual(ac, bc, system.right, system, false), norm, n, digits) < kLargestRatio);
  CHECK(ratio(residual(adjoint(ac), adjoint(bc), system.left, system, true), norm, n, digits) < kLargestRatio);
  for (Integer j = 1; j <= n; ++j) {
    CHECK(system.beta[std::size_t(j - 1)] >= 0);
    for (const Complexes* v : {&system.right, &system.left}) {
      QuarnFloat largest = 0;
      for (Integer i = 1; i <= n; ++i) {
        largest = std::max(largest, tesk::magnitude((*v)(i, j)));
      }
      CHECK(fabs(largest - 1) < QuarnFloat(10, -digits + 1));
    }
  }
}

}  // namespace

TEST_CASE_TEMPLATE("eigenvalues and eigenvectors of random pencils", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333, 1000}) {
    for (const Integer n : {0, 1, 2, 3, 4, 7, 13, 40}) {
      if (n == 40 ? digits != 50 : n > 4 && digits > 100) {
        continue;
      }
      const support::Digits scope(digits);
      check_system(Matrix<T>(n, n).randomise(random), Matrix<T>(n, n).randomise(random), digits);
    }
  }
}

TEST_CASE_TEMPLATE("pencils with special structure", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr Integer n = 8;
  for (const int digits : {16, 50}) {
    const support::Digits scope(digits);
    for (int kind = 0; kind < 9; ++kind) {
      CAPTURE(kind);
      Matrix<T> a = Matrix<T>(n, n).randomise(random);
      Matrix<T> b = Matrix<T>(n, n).randomise(random);
      Integer infinite = 0;
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n; ++i) {
          switch (kind) {
            case 0:  // B of rank n - 2
              b(i, j) = i > n - 2 ? T(0.0) : b(i, j);
              infinite = 2;
              break;
            case 1:  // B = 0
              b(i, j) = T(0.0);
              infinite = n;
              break;
            case 2:  // a nilpotent B: one infinite eigenvalue in a chain
              a(i, j) = T(double(i == j));
              b(i, j) = T(double(j == i + 1));
              infinite = n;
              break;
            case 3:  // a singular A
              a(i, j) = i == 3 ? T(0.0) : a(i, j);
              break;
            case 4:  // a cyclic shift: the roots of unity
              a(i, j) = T(double(i % n + 1 == j));
              b(i, j) = T(double(i == j));
              break;
            case 5:
              a(i, j) = a(i, j) * T(QuarnFloat(1, 300000000));
              b(i, j) = b(i, j) * T(QuarnFloat(1, -400000000));
              break;
            case 6:  // multiple eigenvalues
              a(i, j) = b(i, j) * T(2.0);
              break;
            case 7:  // triangular both, zeros on the diagonals in different places
              a(i, j) = i > j || (i == j && i == 2) ? T(0.0) : a(i, j);
              b(i, j) = i > j || (i == j && i == 5) ? T(0.0) : b(i, j);
              infinite = 1;
              break;
            default:  // zeros in the middle of B's diagonal, A full
              b(i, j) = i > j || (i == j && (i == 3 || i == 4)) ? T(0.0) : b(i, j);
              infinite = 1;
          }
        }
      }
      if (kind != 5) {
        check_system(a, b, digits);
      }
      const System system(a, b);
      REQUIRE(system.info == 0);
      const Integer found = Integer(std::count(system.beta.begin(), system.beta.end() - 1, QuarnFloat(0)));
      CHECK(found >= std::min<Integer>(infinite, 1));
      CHECK((kind == 2 || kind == 8 || found == infinite));
      for (Integer i = 0; i < n && (kind == 4 || kind == 6); ++i) {
        const auto at = std::size_t(i);
        const Complex w = system.alpha[at] / Complex(system.beta[at]);
        if (kind == 6) {
          CHECK(tesk::modulus(w - Complex(2)) < QuarnFloat(1, 4 - digits));
        } else {
          const Complex power = w * w * w * w;
          CHECK(tesk::modulus(power * power - Complex(1)) < QuarnFloat(1000, -digits));
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("singular pencils, what is no number, and wrong arguments of pencils", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const Integer n : {1, 2, 5}) {
    // A common null vector.
    Matrix<T> a = Matrix<T>(n, n).randomise(random);
    Matrix<T> b = Matrix<T>(n, n).randomise(random);
    for (Integer i = 1; i <= n; ++i) {
      a(i, 1) = b(i, 1) = T(0.0);
    }
    const System system(a, b);
    CHECK(system.info == 0);
    bool undefined = false;
    for (std::size_t j = 0; j < std::size_t(n); ++j) {
      undefined = undefined || (system.beta[j] == 0 && system.alpha[j] == Complex(0));
    }
    CHECK(undefined);
  }
  constexpr Integer n = 3;
  for (const double bad : {HUGE_VAL, -HUGE_VAL, double(NAN)}) {
    for (Integer at = 0; at < n * n; ++at) {
      Matrix<T> a = unit<T>(n);
      a(at % n + 1, at / n + 1) = T(bad);
      CHECK(System(a, unit<T>(n)).info == n + 1);
      CHECK(System(unit<T>(n), a).info == n + 1);
    }
  }
  T a[4] = {T(1.0), T(0.0), T(0.0), T(4.0)};
  T b[4] = {T(1.0), T(0.0), T(0.0), T(1.0)};
  T v[4];
  T work[16];
  QuarnFloat x[2];
  constexpr bool real = sizeof(T) == sizeof(QuarnFloat);
  const auto call = [&](const char* jobvl, const char* jobvr, Integer order, Integer lda, Integer ldb, Integer ldvl,
                        Integer ldvr, Integer lwork) {
    Integer info = -99;
    if constexpr (real) {
      QuarnMPX_dggev_(jobvl, jobvr, order, a, lda, b, ldb, x, x, x, v, ldvl, v, ldvr, work, lwork, &info, 1, 1);
    } else {
      QuarnMPX_zggev_(jobvl, jobvr, order, a, lda, b, ldb, v, v, v, ldvl, v, ldvr, work, lwork, nullptr, &info, 1, 1);
    }
    return info;
  };
  CHECK(call("X", "X", 2, 2, 2, 2, 2, 16) == -1);
  CHECK(call("V", "X", -1, 2, 2, 2, 2, 16) == -2);
  CHECK(call("V", "V", -1, 0, 2, 2, 2, 16) == -3);
  CHECK(call("V", "V", 2, 1, 1, 2, 2, 16) == -5);
  CHECK(call("V", "V", 2, 2, 1, 1, 2, 16) == -7);
  CHECK(call("V", "V", 2, 2, 2, 1, 1, 16) == (real ? -12 : -11));
  CHECK(call("N", "V", 2, 2, 2, 1, 1, 16) == (real ? -14 : -13));
  CHECK(call("N", "N", 2, 2, 2, 1, 1, 3) == (real ? -16 : -15));
  CHECK(call("N", "N", 2, 2, 2, 1, 1, -1) == 0);
  CHECK(call("N", "N", 2, 2, 2, 1, 1, 16) == 0);
}

TEST_CASE_TEMPLATE("Hessenberg-triangular and generalised Schur form out of their exports", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr bool kReal = sizeof(T) == sizeof(QuarnFloat);
  for (const int digits : {2, 50, 333}) {
    for (const Integer n : {0, 1, 2, 5, 14}) {
      CAPTURE(digits);
      CAPTURE(n);
      const support::Digits scope(digits);
      const Matrix<T> a = Matrix<T>(n, n).randomise(random);
      Matrix<T> b = Matrix<T>(n, n).randomise(random);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = j + 1; i <= n; ++i) {
          b(i, j) = T(0.0);
        }
      }
      Matrix<T> h = a;
      Matrix<T> t = b;
      Matrix<T> q(n, n);
      Matrix<T> z(n, n);
      Integer info = -99;
      std::vector<QuarnFloat> re(std::size_t(n) + 1);
      std::vector<QuarnFloat> im(re.size());
      std::vector<QuarnFloat> real_beta(re.size());
      std::vector<Complex> alpha(re.size());
      std::vector<Complex> beta(re.size());
      std::vector<T> work(re.size());
      for (const bool schur : {false, true}) {
        CAPTURE(schur);
        if constexpr (kReal) {
          if (schur) {
            QuarnMPX_dhgeqz_("S", "V", "V", n, 1, n, h.data(), h.lda(), t.data(), t.lda(), re.data(), im.data(),
                             real_beta.data(), q.data(), q.lda(), z.data(), z.lda(), work.data(), n + 1, &info, 1, 1,
                             1);
          } else {
            QuarnMPX_dgghrd_("I", "I", n, 1, n, h.data(), h.lda(), t.data(), t.lda(), q.data(), q.lda(), z.data(),
                             z.lda(), &info, 1, 1);
          }
        } else if (schur) {
          QuarnMPX_zhgeqz_("S", "V", "V", n, 1, n, h.data(), h.lda(), t.data(), t.lda(), alpha.data(), beta.data(),
                           q.data(), q.lda(), z.data(), z.lda(), work.data(), n + 1, nullptr, &info, 1, 1, 1);
        } else {
          QuarnMPX_zgghrd_("I", "I", n, 1, n, h.data(), h.lda(), t.data(), t.lda(), q.data(), q.lda(), z.data(),
                           z.lda(), &info, 1, 1);
        }
        REQUIRE(info == 0);
        CHECK(h.intact());
        CHECK(t.intact());
        CHECK(q.intact());
        CHECK(z.intact());
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = j + 1; i <= n; ++i) {
            CHECK(tesk::is_zero(t(i, j)));
            CHECK((tesk::is_zero(h(i, j)) || (i == j + 1 && (kReal || !schur))));
          }
        }
        const support::Digits finer(digits + kSpare);
        CHECK(ratio(distance(product(a, z), product(q, h)), one_norm(a), n, digits) < kLargestRatio);
        CHECK(ratio(distance(product(b, z), product(q, t)), one_norm(b), n, digits) < kLargestRatio);
        CHECK(ratio(distance(product(adjoint(q), q), unit<T>(n)), 1, n, digits) < kLargestRatio);
        CHECK(ratio(distance(product(adjoint(z), z), unit<T>(n)), 1, n, digits) < kLargestRatio);
      }
      for (Integer j = 1; !kReal && j <= n; ++j) {
        const auto at = std::size_t(j - 1);
        CHECK(tesk::modulus(alpha[at] - Complex(h(j, j))) <= QuarnFloat(10, -digits) * tesk::modulus(alpha[at]));
        CHECK(beta[at].re >= 0);
      }
    }
  }
  Integer info = 0;
  T x[1] = {T(1.0)};
  if constexpr (kReal) {
    QuarnMPX_dgghrd_("I", "Q", 1, 1, 1, x, 1, x, 1, x, 1, x, 1, &info, 1, 1);
    CHECK(info == -2);
    QuarnMPX_dhgeqz_("S", "N", "N", 1, 1, 2, x, 1, x, 1, x, x, x, x, 1, x, 1, x, 1, &info, 1, 1, 1);
    CHECK(info == -6);
    QuarnMPX_dhgeqz_("S", "I", "I", 1, 1, 1, x, 1, x, 1, x, x, x, x, 1, x, 0, x, 1, &info, 1, 1, 1);
    CHECK(info == -17);
    QuarnFloat h[] = {QuarnFloat("nan")};
    QuarnMPX_dhgeqz_("S", "N", "N", 1, 1, 1, h, 1, x, 1, x, x, x, x, 1, x, 1, x, 1, &info, 1, 1, 1);
    CHECK(info == 2);
  } else {
    QuarnMPX_zhgeqz_("S", "N", "N", 1, 1, 1, x, 1, x, 1, x, x, x, 1, x, 1, x, 0, nullptr, &info, 1, 1, 1);
    CHECK(info == -18);
  }
}

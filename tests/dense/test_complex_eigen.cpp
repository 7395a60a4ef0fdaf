// The general complex eigenproblem: residuals in units of the last place, known spectra, the real routines as oracle.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "quarn/complex.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;
using Complexes = Matrix<Complex>;

namespace {

struct System {
  explicit System(const Complexes& a)
      : w(std::size_t(a.rows()) + 1), left(a.rows(), a.rows()), right(a.rows(), a.rows()) {
    const Integer n = a.rows();
    Complexes copy = a;
    std::vector<Complex> work(2 * std::size_t(n) + 2);
    QuarnMPX_zgeev_("V", "V", n, copy.data(), copy.lda(), w.data(), left.data(), left.lda(), right.data(), right.lda(),
                    work.data(), Integer(work.size()), nullptr, &info, 1, 1);
    std::vector<Complex> again(w.size());
    Integer alone = -99;
    QuarnMPX_zgeev_("N", "N", n, copy.data(), copy.lda(), again.data(), nullptr, 1, nullptr, 1, work.data(),
                    Integer(work.size()), nullptr, &alone, 1, 1);
    CHECK(alone == info);
    values_alone = again;
    CHECK(left.intact());
    CHECK(right.intact());
    CHECK(copy.intact());
  }

  Integer info = -99;
  std::vector<Complex> w;
  std::vector<Complex> values_alone;
  Complexes left;
  Complexes right;
};

Complexes diagonal(const std::vector<Complex>& w, Integer n) {
  Complexes d(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      d(i, j) = i == j ? w[std::size_t(j - 1)] : Complex(0);
    }
  }
  return d;
}

void check_system(const Complexes& a, int digits) {
  const Integer n = a.rows();
  CAPTURE(n);
  CAPTURE(digits);
  const System system(a);
  REQUIRE(system.info == 0);
  const support::Digits finer(digits + kSpare);
  const QuarnFloat norm = one_norm(a);
  CHECK(ratio(distance(product(a, system.right), product(system.right, diagonal(system.w, n))), norm, n, digits) <
        kLargestRatio);
  std::vector<Complex> conjugates = system.w;
  std::transform(conjugates.begin(), conjugates.end(), conjugates.begin(), [](const Complex& z) { return conj(z); });
  CHECK(ratio(distance(product(adjoint(a), system.left), product(system.left, diagonal(conjugates, n))), norm, n,
              digits) < kLargestRatio);
  for (Integer j = 1; j <= n; ++j) {
    QuarnFloat squares = 0;
    for (Integer i = 1; i <= n; ++i) {
      squares += system.right(i, j).re * system.right(i, j).re + system.right(i, j).im * system.right(i, j).im;
    }
    CHECK(fabs(squares - 1) < QuarnFloat(10, -digits + 1));
  }
}

}  // namespace

TEST_CASE("eigenvalues and eigenvectors of random complex matrices") {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const Integer n : {0, 1, 2, 3, 6, 13, 40}) {
      if (n == 40 && digits != 50) {
        continue;
      }
      const support::Digits scope(digits);
      check_system(Complexes(n, n).randomise(random), digits);
    }
  }
}

TEST_CASE("complex eigenvalues that are multiple, graded, far away, or known") {
  support::RandomNumbers random;
  constexpr Integer n = 8;
  for (const int digits : {16, 50}) {
    const support::Digits scope(digits);
    for (int kind = 0; kind < 7; ++kind) {
      CAPTURE(kind);
      Complexes a = Complexes(n, n).randomise(random);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= n; ++i) {
          switch (kind) {
            case 0:
              a(i, j) = Complex(0);
              break;
            case 1:  // a Jordan block
              a(i, j) = i == j ? Complex(2, 1) : Complex(double(j == i + 1));
              break;
            case 2:  // a cyclic shift: the roots of unity
              a(i, j) = Complex(double(i % n + 1 == j));
              break;
            case 3:
              a(i, j) = a(i, j) * Complex(QuarnFloat(1, -3 * int(i)) * QuarnFloat(1, 3 * int(j)));
              break;
            case 4:
              a(i, j) = a(i, j) * Complex(QuarnFloat(1, 400000000));
              break;
            case 5:
              a(i, j) = a(i, j) * Complex(QuarnFloat(1, -400000000));
              break;
            default:  // reducible
              a(i, j) = i > j + 1 || i == 5 ? Complex(double(i == j)) : a(i, j);
          }
        }
      }
      if (kind != 3) {
        check_system(a, digits);
      }
      const System system(a);
      REQUIRE(system.info == 0);
      for (Integer i = 0; i < n && kind < 3; ++i) {
        const Complex& w = system.values_alone[std::size_t(i)];
        const support::Digits finer(digits + kSpare);
        // Of a chain of eight an eighth of the digits is good.
        const Complex z = kind == 1 ? w - Complex(2, 1) : w;
        const QuarnFloat size = tesk::modulus(z);
        CHECK(size < (kind == 0 ? QuarnFloat(1, -1000) : kind == 1 ? QuarnFloat(1, 1 - digits / 8) : QuarnFloat(2)));
        if (kind == 2) {
          Complex power = z * z;
          power = power * power;
          power = power * power;
          CHECK(tesk::modulus(power - Complex(1)) < QuarnFloat(100, -digits));
        }
      }
    }
  }
}

TEST_CASE("a real matrix has the eigenvalues that the real routine finds") {
  support::RandomNumbers random;
  constexpr Integer n = 12;
  const support::Digits scope(40);
  Matrix<QuarnFloat> real = Matrix<QuarnFloat>(n, n).randomise(random);
  Complexes a(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      real(i, j) = i > j + 1 ? QuarnFloat(0) : real(i, j);
      a(i, j) = Complex(real(i, j));
    }
  }
  std::vector<QuarnFloat> wr(n);
  std::vector<QuarnFloat> wi(n);
  std::vector<QuarnFloat> work(n);
  Integer info = -99;
  QuarnMPX_dhseqr_("E", "N", n, 1, n, real.data(), real.lda(), wr.data(), wi.data(), nullptr, 1, work.data(), n, &info,
                   1, 1);
  REQUIRE(info == 0);
  // The Schur form of the Hessenberg matrix itself, and its eigenvectors one by one.
  Complexes t = a;
  Complexes z(n, n);
  std::vector<Complex> w(n);
  std::vector<Complex> space(n);
  QuarnMPX_zhseqr_("S", "I", n, 1, n, t.data(), t.lda(), w.data(), z.data(), z.lda(), space.data(), n, &info, 1, 1);
  REQUIRE(info == 0);
  for (Integer k = 0; k < n; ++k) {
    QuarnFloat nearest = 1;
    for (const Complex& value : w) {
      nearest = std::min(nearest, tesk::modulus(value - Complex(wr[std::size_t(k)], wi[std::size_t(k)])));
    }
    CHECK(nearest < QuarnFloat("1e-34"));
  }
  CHECK(z.intact());
  CHECK(t.intact());
  std::vector<Integer> select(n, 0);
  select[4] = select[7] = 1;
  Complexes x(n, 2);
  Integer used = -1;
  QuarnMPX_ztrevc_("R", "S", select.data(), n, t.data(), t.lda(), nullptr, 1, x.data(), x.lda(), 2, &used, nullptr,
                   nullptr, &info, 1, 1);
  CHECK(info == 0);
  CHECK(used == 2);
  const support::Digits finer(60);
  CHECK(ratio(distance(product(product(z, t), adjoint(z)), a), one_norm(a), n, 40) < kLargestRatio);
  CHECK(ratio(distance(product(adjoint(z), z), unit<Complex>(n)), 1, n, 40) < kLargestRatio);
  Complexes scaled = x;
  for (Integer i = 1; i <= n; ++i) {
    scaled(i, 1) = w[4] * x(i, 1);
    scaled(i, 2) = w[7] * x(i, 2);
  }
  CHECK(ratio(distance(product(t, x), scaled), one_norm(a) * one_norm(x), n, 40) < kLargestRatio);
}

TEST_CASE("what is no number in a complex matrix, and wrong arguments of its eigenproblem") {
  constexpr Integer n = 3;
  Complex w[n];
  Complex work[2 * n];
  Integer info = 0;
  for (const double bad : {HUGE_VAL, -HUGE_VAL, double(NAN)}) {
    for (Integer at = 0; at < 2 * n * n; ++at) {
      Complexes a = unit<Complex>(n);
      Complex& element = a(at / 2 % n + 1, at / 2 / n + 1);
      (at % 2 == 0 ? element.re : element.im) = bad;
      QuarnMPX_zgeev_("N", "N", n, a.data(), a.lda(), w, nullptr, 1, nullptr, 1, work, 2 * n, nullptr, &info, 1, 1);
      CHECK(info == n);
    }
  }
  Complex a[4] = {};
  const auto eigen = [&](const char* jobvl, const char* jobvr, Integer order, Integer lda, Integer ldvl, Integer ldvr,
                         Integer lwork) {
    QuarnMPX_zgeev_(jobvl, jobvr, order, a, lda, w, a, ldvl, a, ldvr, work, lwork, nullptr, &info, 1, 1);
    return info;
  };
  CHECK(eigen("X", "N", 2, 2, 2, 2, 4) == -1);
  CHECK(eigen("N", "X", 2, 2, 2, 2, 4) == -2);
  CHECK(eigen("N", "N", -1, 2, 2, 2, 4) == -3);
  CHECK(eigen("N", "N", 2, 1, 2, 2, 4) == -5);
  CHECK(eigen("V", "N", 2, 2, 1, 2, 4) == -8);
  CHECK(eigen("N", "V", 2, 2, 1, 1, 4) == -10);
  CHECK(eigen("N", "N", 2, 2, 1, 1, 3) == -12);
  CHECK(eigen("N", "N", 2, 2, 1, 1, -1) == 0);
  const auto schur = [&](const char* job, const char* compz, Integer order, Integer ilo, Integer ihi, Integer ldh,
                         Integer ldz, Integer lwork) {
    QuarnMPX_zhseqr_(job, compz, order, ilo, ihi, a, ldh, w, a, ldz, work, lwork, &info, 1, 1);
    return info;
  };
  CHECK(schur("X", "N", 2, 1, 2, 2, 2, 2) == -1);
  CHECK(schur("E", "X", 2, 1, 2, 2, 2, 2) == -2);
  CHECK(schur("E", "N", -1, 1, 2, 2, 2, 2) == -3);
  CHECK(schur("E", "N", 2, 3, 2, 2, 2, 2) == -4);
  CHECK(schur("E", "N", 2, 1, 3, 2, 2, 2) == -5);
  CHECK(schur("E", "N", 2, 1, 2, 1, 2, 2) == -7);
  CHECK(schur("E", "I", 2, 1, 2, 2, 1, 2) == -10);
  CHECK(schur("E", "N", 2, 1, 2, 2, 2, 1) == -12);
  Integer m = 0;
  const auto vectors = [&](const char* side, const char* howmny, Integer order, Integer ldt, Integer ldvl, Integer ldvr,
                           Integer mm) {
    QuarnMPX_ztrevc_(side, howmny, nullptr, order, a, ldt, a, ldvl, a, ldvr, mm, &m, nullptr, nullptr, &info, 1, 1);
    return info;
  };
  CHECK(vectors("X", "A", 2, 2, 2, 2, 2) == -1);
  CHECK(vectors("B", "X", 2, 2, 2, 2, 2) == -2);
  CHECK(vectors("B", "A", -1, 2, 2, 2, 2) == -4);
  CHECK(vectors("B", "A", 2, 1, 2, 2, 2) == -6);
  CHECK(vectors("L", "A", 2, 2, 1, 2, 2) == -8);
  CHECK(vectors("R", "A", 2, 2, 2, 1, 2) == -10);
  CHECK(vectors("B", "A", 2, 2, 2, 2, 1) == -11);
}

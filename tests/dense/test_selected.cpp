// Chosen eigenvalues of symmetric matrices: against all of them by QL, known spectra, clusters, and what is refused.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/hermitian.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;

namespace {

template <class T>
struct Chosen {
  Integer info = -99;
  Integer m = -1;
  std::vector<QuarnFloat> w;
  Matrix<T> z;
  std::vector<Integer> ifail;

  Chosen(const char* jobz, const char* range, const char* uplo, Matrix<T> a, const QuarnFloat& vl, const QuarnFloat& vu,
         Integer il, Integer iu, const QuarnFloat& abstol = 0)
      : w(std::size_t(a.rows()) + 1), z(a.rows(), a.rows()), ifail(w.size(), -7) {
    const Integer n = a.rows();
    std::vector<T> work(8 * w.size());
    const Integer lwork = Integer(work.size());
    if constexpr (sizeof(T) == sizeof(QuarnFloat)) {
      QuarnMPX_dsyevx_(jobz, range, uplo, n, a.data(), a.lda(), vl, vu, il, iu, abstol, &m, w.data(), z.data(), z.lda(),
                       work.data(), lwork, nullptr, ifail.data(), &info, 1, 1, 1);
    } else {
      QuarnMPX_zheevx_(jobz, range, uplo, n, a.data(), a.lda(), vl, vu, il, iu, abstol, &m, w.data(), z.data(), z.lda(),
                       work.data(), lwork, nullptr, nullptr, ifail.data(), &info, 1, 1, 1);
    }
    w.resize(std::size_t(std::max<Integer>(0, m)));
  }
};

template <class T>
void check_vectors(const Matrix<T>& a, const Chosen<T>& found, int digits) {
  const Integer n = a.rows();
  CHECK(found.info == 0);
  CHECK(found.z.intact());
  CHECK(std::all_of(found.ifail.begin(), found.ifail.begin() + found.m, [](Integer i) { return i == 0; }));
  Matrix<T> z(n, found.m);
  Matrix<T> scaled(n, found.m);
  const support::Digits finer(digits + kSpare);
  for (Integer j = 1; j <= found.m; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      z(i, j) = found.z(i, j);
      scaled(i, j) = z(i, j) * T(found.w[std::size_t(j - 1)]);
    }
  }
  CHECK(ratio(distance(product(a, z), scaled), one_norm(a), n, digits) < kLargestRatio);
  CHECK(ratio(distance(product(adjoint(z), z), unit<T>(found.m)), 1, n, digits) < kLargestRatio);
}

void check_near(const QuarnFloat& x, const QuarnFloat& y, const QuarnFloat& size, int digits) {
  CHECK(fabs(x - y) <= size * QuarnFloat(20, -digits));
}

}  // namespace

TEST_CASE_TEMPLATE("chosen eigenvalues are those of all", T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333, 1000}) {
    for (const Integer n : {1, 2, 3, 7, 40}) {
      if (n == 40 ? digits != 50 : n == 7 && digits > 333) {
        continue;
      }
      CAPTURE(n);
      CAPTURE(digits);
      const support::Digits scope(digits);
      const Matrix<T> a = hermitian(Matrix<T>(n, n).randomise(random));
      const char* uplo = n % 2 == 0 ? "L" : "U";
      const Chosen<T> all("V", "A", uplo, only(uplo, a), 0, 0, 0, 0);
      REQUIRE(all.m == n);
      check_vectors(a, all, digits);
      const QuarnFloat size = one_norm(a);
      const Integer first = 1 + Integer(random.below(std::uint64_t(n)));
      const Integer last = first + Integer(random.below(std::uint64_t(n - first + 1)));
      const Chosen<T> some("V", "I", uplo, only(uplo, a), 0, 0, first, last);
      REQUIRE(some.m == last - first + 1);
      check_vectors(a, some, digits);
      for (Integer i = first; i <= last; ++i) {
        check_near(some.w[std::size_t(i - first)], all.w[std::size_t(i - 1)], size, digits);
      }
      if (digits > 2) {
        // From between two of them to beyond the last.
        const QuarnFloat low = n == 1 ? all.w[0] - 1 : (all.w[0] + all.w[1]) / 2;
        const Chosen<T> above("N", "V", uplo, only(uplo, a), low, all.w.back() + 1, 0, 0);
        REQUIRE(above.m == std::max<Integer>(1, n - 1));
        check_near(above.w.back(), all.w.back(), size, digits);
        const Chosen<T> none("V", "V", uplo, only(uplo, a), all.w.back() + 1, QuarnFloat("inf"), 0, 0);
        CHECK(none.m == 0);
        CHECK(none.info == 0);
        const Chosen<T> coarse("N", "I", uplo, only(uplo, a), 0, 0, 1, n, size / 100);
        for (std::size_t i = 0; i < coarse.w.size(); ++i) {
          CHECK(fabs(coarse.w[i] - all.w[i]) < size / 40);
        }
      }
    }
  }
}

TEST_CASE("known, clustered and multiple eigenvalues by bisection") {
  for (const int digits : {16, 50, 100}) {
    const support::Digits scope(digits);
    CAPTURE(digits);
    // -1, 2, -1: 2 - 2 cos(k pi / (n + 1)), of which n = 11 has 2 - sqrt(3), 1, 2, 3 and others.
    constexpr Integer n = 11;
    std::vector<QuarnFloat> d(n, 2);
    std::vector<QuarnFloat> e(n - 1, -1);
    std::vector<QuarnFloat> w(n);
    std::vector<Integer> iblock(n);
    std::vector<Integer> isplit(n);
    Integer m = -1;
    Integer nsplit = -1;
    Integer info = -99;
    QuarnMPX_dstebz_("I", "E", n, 0, 0, 2, 6, 0, d.data(), e.data(), &m, &nsplit, w.data(), iblock.data(),
                     isplit.data(), nullptr, nullptr, &info, 1, 1);
    REQUIRE(info == 0);
    REQUIRE(m == 5);
    CHECK(nsplit == 1);
    check_near(w[0], 2 - sqrt(QuarnFloat(3)), 1, digits);
    check_near(w[2], 1, 1, digits);
    check_near(w[4], 2, 1, digits);
    // Half-open at both of its ends.
    QuarnMPX_dstebz_("V", "B", n, QuarnFloat("0.5"), QuarnFloat("2.5"), 0, 0, 0, d.data(), e.data(), &m, &nsplit,
                     w.data(), iblock.data(), isplit.data(), nullptr, nullptr, &info, 1, 1);
    CHECK(m == 4);
    // Wilkinson's matrix: pairs that agree to many digits; and twice the same block, so that all are double.
    constexpr Integer half = 21;
    Matrix<QuarnFloat> a(2 * half, 2 * half);
    for (Integer j = 1; j <= 2 * half; ++j) {
      for (Integer i = 1; i <= 2 * half; ++i) {
        const Integer k = (j - 1) % half;
        const Integer place = k < 10 ? 10 - k : k - 10;
        const bool beside = (i == j + 1 && j != half) || (j == i + 1 && i != half);
        a(i, j) = i == j ? QuarnFloat(place) : QuarnFloat(beside ? 1 : 0);
      }
    }
    const Chosen<QuarnFloat> top("V", "I", "L", a, 0, 0, 2 * half - 6, 2 * half);
    REQUIRE(top.m == 7);
    check_vectors(a, top, digits);
    check_near(top.w[6], QuarnFloat("10.746194182903393"), 1, std::min(digits, 16));
    const Chosen<QuarnFloat> inside("V", "V", "L", a, QuarnFloat("0.1"), 4, 0, 0);
    check_vectors(a, inside, digits);
    const Chosen<QuarnFloat> zero("V", "I", "U", Matrix<QuarnFloat>(unit<QuarnFloat>(6)), 0, 0, 2, 4);
    CHECK(zero.w == std::vector<QuarnFloat>{1, 1, 1});
    check_vectors(unit<QuarnFloat>(6), zero, digits);
  }
}

TEST_CASE_TEMPLATE("numbers far from 1, what is no number, and wrong arguments of chosen eigenvalues", T, QuarnFloat,
                   Complex) {
  for (const int power : {-400000000, 400000000}) {
    Matrix<T> a = unit<T>(3);
    for (Integer i = 1; i <= 3; ++i) {
      a(i, i) = T(QuarnFloat(i, power));
    }
    const Chosen<T> found("V", "V", "L", a, QuarnFloat(15, power - 1), QuarnFloat(3, power), 0, 0);
    REQUIRE(found.m == 2);
    CHECK(found.w == std::vector<QuarnFloat>{QuarnFloat(2, power), QuarnFloat(3, power)});
    CHECK(found.z(2, 1) == T(1.0));
  }
  for (const double bad : {HUGE_VAL, double(NAN)}) {
    Matrix<T> a = unit<T>(3);
    a(3, 2) = T(bad);
    CHECK(Chosen<T>("V", "I", "L", a, 0, 0, 1, 1).info == 3);
    CHECK(Chosen<T>("V", "I", "U", a, 0, 0, 1, 1).info == 0);
    QuarnFloat d[2] = {QuarnFloat(bad), 1};
    QuarnFloat e[1] = {1};
    QuarnFloat w[2];
    Integer place[4];
    Integer m = -1;
    Integer info = -99;
    QuarnMPX_dstebz_("A", "E", 2, 0, 0, 0, 0, 0, d, e, &m, place, w, place, place + 2, nullptr, nullptr, &info, 1, 1);
    CHECK(info == 1);
    CHECK(m == 0);
  }
  const Matrix<T> a = unit<T>(3);
  CHECK(Chosen<T>("X", "A", "L", a, 0, 0, 0, 0).info == -1);
  CHECK(Chosen<T>("V", "X", "X", a, 0, 0, 0, 0).info == -2);
  CHECK(Chosen<T>("V", "A", "X", a, 0, 0, 0, 0).info == -3);
  CHECK(Chosen<T>("V", "V", "L", a, 1, 1, 0, 0).info == -8);
  CHECK(Chosen<T>("V", "V", "L", a, 1, QuarnFloat("nan"), 0, 0).info == -8);
  CHECK(Chosen<T>("V", "I", "L", a, 0, 0, 0, 1).info == -9);
  CHECK(Chosen<T>("V", "I", "L", a, 0, 0, 4, 4).info == -9);
  CHECK(Chosen<T>("V", "I", "L", a, 0, 0, 2, 1).info == -10);
  CHECK(Chosen<T>("V", "I", "L", a, 0, 0, 1, 4).info == -10);
  CHECK(Chosen<T>("V", "V", "L", Matrix<T>(0, 0), 1, 1, 0, 0).info == 0);
  QuarnFloat d[] = {1, 2};
  QuarnFloat e[] = {1};
  QuarnFloat w[] = {QuarnFloat("0.381966"), QuarnFloat("2.618034")};
  Integer block[] = {1, 1};
  Integer split[] = {2};
  Integer ifail[2];
  T z[4];
  Integer info = -99;
  const auto vectors = [&](Integer n, Integer m, Integer ldz) {
    if constexpr (sizeof(T) == sizeof(QuarnFloat)) {
      QuarnMPX_dstein_(n, d, e, m, w, block, split, z, ldz, nullptr, nullptr, ifail, &info);
    } else {
      QuarnMPX_zstein_(n, d, e, m, w, block, split, z, ldz, nullptr, nullptr, ifail, &info);
    }
    return info;
  };
  CHECK(vectors(-1, 3, 0) == -1);
  CHECK(vectors(2, 3, 0) == -4);
  CHECK(vectors(2, 2, 1) == -9);
  // Eigenvalues of a few digits are not good enough.
  CHECK(vectors(2, 2, 2) == 2);
  CHECK(ifail[1] == 2);
  std::swap(w[0], w[1]);
  CHECK(vectors(2, 2, 2) == -5);
  block[0] = 2;
  CHECK(vectors(2, 2, 2) == -6);
  split[0] = 3;
  CHECK(vectors(2, 1, 2) == -7);
}

// NaN and infinities in any element: every routine comes back, within its iteration limit, with an INFO or IFAIL that
// is documented, and writes nothing outside its arrays.
#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <vector>

#include "src/dense/tuning.h"
#include "support/digits.h"
#include "support/matrices.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/norms.h"

using support::Matrix;

namespace {

constexpr Integer kOrder = 5;
const char* const kBad[] = {"nan", "inf", "-inf"};

template <class T>
Matrix<T> filled(const std::function<int(Integer, Integer)>& element) {
  Matrix<T> a(kOrder, kOrder);
  for (Integer j = 1; j <= kOrder; ++j) {
    for (Integer i = 1; i <= kOrder; ++i) {
      a(i, j) = T(QuarnFloat(element(i, j)));
    }
  }
  return a;
}

/// Calls with each bad value in turn at each place of a matrix.
void at_each_place(const std::function<void(const QuarnFloat&, Integer, Integer)>& check) {
  const support::Digits digits(30);
  for (const std::string bad : kBad) {
    for (Integer j = 1; j <= kOrder; ++j) {
      for (Integer i = 1; i <= kOrder; ++i) {
        CAPTURE(bad);
        CAPTURE(i);
        CAPTURE(j);
        check(QuarnFloat(bad), i, j);
      }
    }
  }
}

int well_conditioned(Integer i, Integer j) { return i == j ? 20 : int(i * 3 + j * j) % 7; }
int hermitian(Integer i, Integer j) { return i == j ? 20 : int(i + j) % 3; }
int hessenberg(Integer i, Integer j) { return i > j + 1 ? 0 : 1 + int(i * j) % 4; }
int quasi_triangular(Integer i, Integer j) {
  return i == 3 && j == 2 ? -4 : i > j ? 0 : i == j ? int(i == 3 ? 2 : i) : 1 + int(i * j) % 4;
}

class QrPath {
 public:
  explicit QrPath(Integer shifts) { set(shifts); }
  ~QrPath() { set(1); }
  QrPath(const QrPath&) = delete;
  QrPath& operator=(const QrPath&) = delete;

 private:
  static void set(Integer value) {
    QuarnMP_f07zaz_(4, "F08PEF", &value, 1, 6);
    QuarnMP_f07zaz_(8, "F08PEF", &value, 1, 6);
  }
};

}  // namespace

TEST_CASE("factorisations of bad elements") {
  for (Integer nb : {1, 2}) {
    for (const char* name : {"F07ADF", "F07ARF", "F07ADG", "F07FRF"}) {
      QuarnMP_f07zaz_(1, name, &nb, 1, 6);
    }
    at_each_place([](const QuarnFloat& bad, Integer i, Integer j) {
      std::vector<Integer> ipiv(kOrder + 1, 77);
      std::vector<QuarnFloat> weighted(kOrder + 1, 77);
      Integer info = -99;
      Matrix<QuarnFloat> a = filled<QuarnFloat>(well_conditioned);
      a(i, j) = bad;
      Matrix<QuarnFloat> b = a;
      QuarnMP_f07adf_(kOrder, kOrder, a.data(), a.lda(), ipiv.data(), &info);
      CHECK((info >= 0 && info <= kOrder && a.intact()));
      for (Integer step = 1; step <= kOrder; ++step) {
        CHECK((ipiv[std::size_t(step - 1)] >= step && ipiv[std::size_t(step - 1)] <= kOrder));
      }
      QuarnMP_f07adg_(kOrder, kOrder, b.data(), b.lda(), weighted.data(), &info);
      CHECK((info >= 0 && info <= kOrder && b.intact()));
      // The weights of the rows that are left stand where the factorisation ended.
      for (Integer step = 1; step < (info == 0 ? kOrder + 1 : info); ++step) {
        CHECK((weighted[std::size_t(step - 1)] >= step && weighted[std::size_t(step - 1)] <= kOrder));
      }
      Matrix<Complex> z = filled<Complex>(well_conditioned);
      z(i, j).im = bad;
      QuarnMP_f07arf_(kOrder, kOrder, z.data(), z.lda(), ipiv.data(), &info);
      CHECK((info >= 0 && info <= kOrder && z.intact()));
      for (Integer step = 1; step <= kOrder; ++step) {
        CHECK((ipiv[std::size_t(step - 1)] >= step && ipiv[std::size_t(step - 1)] <= kOrder));
      }
      CHECK((ipiv[kOrder] == 77 && weighted[kOrder] == 77));
      for (const char* uplo : {"U", "L"}) {
        Matrix<Complex> c = filled<Complex>(hermitian);
        c(i, j) = Complex(bad);
        QuarnMP_f07frf_(uplo, kOrder, c.data(), c.lda(), &info, 1);
        CHECK((info >= 0 && info <= kOrder && c.intact()));
        const bool seen = uplo[0] == 'U' ? i <= j : i >= j;
        CHECK((seen || info == 0));
      }
    });
  }
  Integer shipped = 1;
  for (const char* name : {"F07ADF", "F07ARF", "F07ADG", "F07FRF"}) {
    QuarnMP_f07zaz_(1, name, &shipped, 1, 6);
  }
}

TEST_CASE("balancing and eigenvalues of bad elements, by both paths") {
  for (const Integer shifts : {1, 3}) {
    const QrPath scope(shifts);
    at_each_place([](const QuarnFloat& bad, Integer i, Integer j) {
      std::vector<QuarnFloat> scale(kOrder);
      Integer ilo = 0;
      Integer ihi = 0;
      Integer info = -99;
      Matrix<QuarnFloat> a = filled<QuarnFloat>(well_conditioned);
      a(i, j) = bad;
      QuarnMP_f08nhf_("B", kOrder, a.data(), a.lda(), &ilo, &ihi, scale.data(), &info, 1);
      CHECK((info == 0 && ilo >= 1 && ilo <= ihi && ihi <= kOrder && a.intact()));

      Matrix<QuarnFloat> h = filled<QuarnFloat>(hessenberg);
      h(i, j) = bad;
      Matrix<QuarnFloat> z(kOrder, kOrder);
      std::vector<QuarnFloat> wr(kOrder);
      std::vector<QuarnFloat> wi(kOrder);
      std::vector<QuarnFloat> work(kOrder);
      QuarnMP_f08pef_("S", "I", kOrder, 1, kOrder, h.data(), h.lda(), wr.data(), wi.data(), z.data(), z.lda(),
                      work.data(), kOrder, &info, 1, 1);
      CHECK((info >= 0 && info <= kOrder && h.intact() && z.intact()));
      // What stands below the subdiagonal is no part of the matrix.
      CHECK((i <= j + 1 || info == 0));
      h = filled<QuarnFloat>(hessenberg);
      h(i, j) = bad;
      QuarnMPX_f08pef_("S", "I", kOrder, 1, kOrder, h.data(), h.lda(), wr.data(), wi.data(), z.data(), z.lda(),
                       work.data(), kOrder, &info, 1, 1);
      CHECK(info == (i <= j + 1 ? i : 0));
    });
  }
}

TEST_CASE("eigenvectors and condition numbers of bad elements") {
  at_each_place([](const QuarnFloat& bad, Integer i, Integer j) {
    Matrix<QuarnFloat> t = filled<QuarnFloat>(quasi_triangular);
    t(i, j) = bad;
    Matrix<QuarnFloat> vl(kOrder, kOrder);
    Matrix<QuarnFloat> vr(kOrder, kOrder);
    std::vector<QuarnFloat> s(kOrder + 1, 77);
    std::vector<QuarnFloat> sep(kOrder + 1, 77);
    Integer m = -1;
    Integer info = -99;
    QuarnMP_f08qkf_("B", "A", nullptr, kOrder, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), kOrder, &m,
                    nullptr, &info, 1, 1);
    CHECK((info == 0 && m == kOrder && vl.intact() && vr.intact()));
    QuarnMP_f08qlf_("B", "A", nullptr, kOrder, t.data(), t.lda(), vl.data(), vl.lda(), vr.data(), vr.lda(), s.data(),
                    sep.data(), kOrder, &m, nullptr, kOrder, nullptr, &info, 1, 1);
    CHECK((info == 0 && m == kOrder && t.intact()));
    CHECK((s[kOrder] == 77 && sep[kOrder] == 77));
  });
}

TEST_CASE("quartics with bad coefficients fail in one of their three ways, or solve") {
  const support::Digits digits(30);
  for (const std::string bad : kBad) {
    for (std::size_t at = 0; at < 5; ++at) {
      CAPTURE(bad);
      CAPTURE(at);
      QuarnFloat k[5] = {1, 2, 3, 4, 5};
      k[at] = QuarnFloat(bad);
      QuarnFloat out[3][5];
      for (auto& each : out) {
        each[4] = 77;
      }
      Integer ifail = 1;
      QuarnMP_c02alf_(&k[0], &k[1], &k[2], &k[3], &k[4], out[0], out[1], out[2], &ifail);
      if (bad == "nan") {
        CHECK(ifail == 3);
      } else {
        // An infinite coefficient cannot be divided by E; by an infinite E the others vanish.
        CHECK(ifail == (at == 0 ? 0 : 2));
      }
      ifail = 1;
      QuarnMPX_c02alf_(&k[0], &k[1], &k[2], &k[3], &k[4], out[0], out[1], out[2], &ifail);
      CHECK(ifail == 2);
      for (const auto& each : out) {
        CHECK(each[4] == 77);
      }
    }
  }
}

TEST_CASE("norms of bad elements") {
  at_each_place([](const QuarnFloat& bad, Integer i, Integer j) {
    Matrix<QuarnFloat> a = filled<QuarnFloat>(well_conditioned);
    a(i, j) = bad;
    std::vector<QuarnFloat> work(kOrder);
    for (const std::string letter : {"M", "1", "I", "F"}) {
      CHECK(isnan(QuarnMPX_f06raf_(letter.c_str(), kOrder, kOrder, a.data(), a.lda(), work.data(), 1)) == isnan(bad));
      CHECK(isnan(QuarnMPX_f06rmf_(letter.c_str(), kOrder, a.data(), a.lda(), work.data(), 1)) ==
            (isnan(bad) && i <= j + 1));
      Matrix<Complex> z = filled<Complex>(well_conditioned);
      z(i, j).im = bad;
      CHECK(isnan(QuarnMPX_f06uaf_(letter.c_str(), kOrder, kOrder, z.data(), z.lda(), work.data(), 1)) == isnan(bad));
      CHECK(isnan(QuarnMPX_f06umf_(letter.c_str(), kOrder, z.data(), z.lda(), work.data(), 1)) ==
            (isnan(bad) && i <= j + 1));
    }
    // Comparisons pass over NaN as published; the sum of squares keeps it.
    CHECK(isnan(QuarnMP_f06raf_("F", kOrder, kOrder, a.data(), a.lda(), work.data(), 1)) == isnan(bad));
    for (const std::string letter : {"M", "1", "I", "F"}) {
      CAPTURE(letter);
      CHECK((isnan(bad) || isinf(QuarnMP_f06raf_(letter.c_str(), kOrder, kOrder, a.data(), a.lda(), work.data(), 1))));
    }
  });
}

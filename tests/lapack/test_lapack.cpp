// Every dense routine against the reference BLAS and LAPACK: the same data at 16 digits and in double precision.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "fortran.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.h"

namespace {

constexpr double kRounding = 1e-12;  // some hundred operations of either arithmetic

/// Real and complex numbers of both sides, and the routines that work on them.
struct RealSide {
  using Ours = QuarnFloat;
  using Theirs = double;
  static constexpr const char* kTransposes = "NTC";
  static Theirs number(support::Random& random) { return double(random.between(-2048, 2048)) / 1024; }
  static Ours ours(Theirs x) { return {x}; }
  static Theirs theirs(const Ours& x) { return FloatToDouble(x); }

  static constexpr auto gemv = std::make_tuple(QuarnMP_f06paf_, dgemv_);
  static constexpr auto trmv = std::make_tuple(QuarnMP_f06pff_, dtrmv_);
  static constexpr auto trsv = std::make_tuple(QuarnMP_f06pjf_, dtrsv_);
  static constexpr auto ger = std::make_tuple(QuarnMP_f06pmf_, dger_);
  static constexpr auto gerc = ger;
  static constexpr auto gemm = std::make_tuple(QuarnMP_f06yaf_, dgemm_);
  static constexpr auto trsm = std::make_tuple(QuarnMP_f06yjf_, dtrsm_);
  static constexpr auto lange = std::make_tuple(QuarnMP_f06raf_, dlange_);
  static constexpr auto lanhs = std::make_tuple(QuarnMP_f06rmf_, dlanhs_);
  static constexpr auto getrf = std::make_tuple(QuarnMP_f07adf_, dgetrf_);
};

struct ComplexSide {
  using Ours = Complex;
  using Theirs = C16;
  static constexpr const char* kTransposes = "NTC";
  static Theirs number(support::Random& random) {
    const double re = RealSide::number(random);
    return {re, RealSide::number(random)};
  }
  static Ours ours(const Theirs& z) { return {z.real(), z.imag()}; }
  static Theirs theirs(const Ours& z) { return {FloatToDouble(z.re), FloatToDouble(z.im)}; }

  static constexpr auto gemv = std::make_tuple(QuarnMP_f06saf_, zgemv_);
  static constexpr auto trmv = std::make_tuple(QuarnMP_f06sff_, ztrmv_);
  static constexpr auto trsv = std::make_tuple(QuarnMP_f06sjf_, ztrsv_);
  static constexpr auto ger = std::make_tuple(QuarnMP_f06smf_, zgeru_);
  static constexpr auto gerc = std::make_tuple(QuarnMP_f06snf_, zgerc_);
  static constexpr auto gemm = std::make_tuple(QuarnMP_f06zaf_, zgemm_);
  static constexpr auto trsm = std::make_tuple(QuarnMP_f06zjf_, ztrsm_);
  static constexpr auto lange = std::make_tuple(QuarnMP_f06uaf_, zlange_);
  static constexpr auto lanhs = std::make_tuple(QuarnMP_f06umf_, zlanhs_);
  static constexpr auto getrf = std::make_tuple(QuarnMP_f07arf_, zgetrf_);
};

/// The same numbers on both sides.
template <class Side>
struct Both {
  std::vector<typename Side::Ours> ours;
  std::vector<typename Side::Theirs> theirs;

  Both() = default;
  Both(support::Random& random, int count) {
    for (int i = 0; i < count; ++i) {
      add(Side::number(random));
    }
  }
  void add(typename Side::Theirs x) {
    ours.push_back(Side::ours(x));
    theirs.push_back(x);
  }
  void set(int at, typename Side::Theirs x) {
    ours[std::size_t(at)] = Side::ours(x);
    theirs[std::size_t(at)] = x;
  }
  /// The largest difference, relative to the largest number.
  double difference() const {
    double largest = 0;
    double apart = 0;
    for (std::size_t i = 0; i < ours.size(); ++i) {
      largest = std::max(largest, double(std::abs(theirs[i])));
      apart = std::max(apart, double(std::abs(Side::theirs(ours[i]) - theirs[i])));
    }
    return largest == 0 ? apart : apart / largest;
  }
};

double apart(const QuarnFloat& ours, double theirs) {
  return std::fabs(FloatToDouble(ours) - theirs) / std::max(std::fabs(theirs), 1e-300);
}

struct Sixteen {
  support::Digits digits{16};
  support::Random random;
};

template <class Side>
void compare_level_2(support::Random& random) {
  const int shapes[][4] = {{4, 4, 1, 1}, {5, 3, -2, 1}, {3, 6, 2, -3}};
  for (const int* shape : shapes) {
    const int m = shape[0];
    const int n = shape[1];
    const int incx = shape[2];
    const int incy = shape[3];
    const int lda = m + 1;
    for (const char* trans = Side::kTransposes; *trans != '\0'; ++trans) {
      Both<Side> a(random, lda * n);
      Both<Side> x(random, 30);
      Both<Side> y(random, 30);
      const auto alpha = Side::number(random);
      const auto beta = Side::number(random);
      CAPTURE(*trans);
      CAPTURE(m);
      CAPTURE(n);
      std::get<0>(Side::gemv)(trans, m, n, Side::ours(alpha), a.ours.data(), lda, x.ours.data(), incx, Side::ours(beta),
                              y.ours.data(), incy, 1);
      std::get<1>(Side::gemv)(trans, &m, &n, &alpha, a.theirs.data(), &lda, x.theirs.data(), &incx, &beta,
                              y.theirs.data(), &incy, 1);
      CHECK(y.difference() < kRounding);

      Both<Side> b(random, lda * n);
      const bool conjugated = *trans == 'C';
      const auto& ger = conjugated ? Side::gerc : Side::ger;
      std::get<0>(ger)(m, n, Side::ours(alpha), x.ours.data(), incx, y.ours.data(), incy, b.ours.data(), lda);
      std::get<1>(ger)(&m, &n, &alpha, x.theirs.data(), &incx, y.theirs.data(), &incy, b.theirs.data(), &lda);
      CHECK(b.difference() < kRounding);
    }
  }
}

/// A triangle with a diagonal that keeps solutions tame.
template <class Side>
Both<Side> triangle(support::Random& random, int n, int lda) {
  Both<Side> a(random, lda * n);
  for (int i = 0; i < n; ++i) {
    a.set(i + i * lda, 3.0 + i);
  }
  return a;
}

template <class Side>
void compare_triangles(support::Random& random) {
  const int n = 5;
  const int lda = 7;
  for (const char* uplo : {"U", "L"}) {
    for (const char* trans : {"N", "T", "C"}) {
      for (const char* diag : {"N", "U"}) {
        for (const int inc : {1, -2}) {
          CAPTURE(std::string(uplo) + trans + diag);
          const Both<Side> a = triangle<Side>(random, n, lda);
          auto ours = a.ours;
          Both<Side> x(random, 20);
          Both<Side> y = x;
          std::get<0>(Side::trmv)(uplo, trans, diag, n, ours.data(), lda, x.ours.data(), inc, 1, 1, 1);
          std::get<1>(Side::trmv)(uplo, trans, diag, &n, a.theirs.data(), &lda, x.theirs.data(), &inc, 1, 1, 1);
          CHECK(x.difference() < kRounding);
          std::get<0>(Side::trsv)(uplo, trans, diag, n, ours.data(), lda, y.ours.data(), inc, 1, 1, 1);
          std::get<1>(Side::trsv)(uplo, trans, diag, &n, a.theirs.data(), &lda, y.theirs.data(), &inc, 1, 1, 1);
          CHECK(y.difference() < kRounding);
        }
        for (const char* side : {"L", "R"}) {
          const int rows = side[0] == 'L' ? n : 4;
          const int columns = side[0] == 'L' ? 4 : n;
          const int ldb = 6;
          const auto alpha = Side::number(random);
          const Both<Side> a = triangle<Side>(random, n, lda);
          auto ours = a.ours;
          Both<Side> b(random, ldb * columns);
          std::get<0>(Side::trsm)(side, uplo, trans, diag, rows, columns, Side::ours(alpha), ours.data(), lda,
                                  b.ours.data(), ldb, 1, 1, 1, 1);
          std::get<1>(Side::trsm)(side, uplo, trans, diag, &rows, &columns, &alpha, a.theirs.data(), &lda,
                                  b.theirs.data(), &ldb, 1, 1, 1, 1);
          CHECK(b.difference() < kRounding);
        }
      }
    }
  }
}

template <class Side>
void compare_products(support::Random& random) {
  const int m = 4;
  const int n = 3;
  const int k = 5;
  const int lda = 7;
  for (const char* transa : {"N", "T", "C"}) {
    for (const char* transb : {"N", "T", "C"}) {
      CAPTURE(std::string(transa) + transb);
      Both<Side> a(random, lda * lda);
      Both<Side> b(random, lda * lda);
      Both<Side> c(random, lda * n);
      const auto alpha = Side::number(random);
      const auto beta = Side::number(random);
      std::get<0>(Side::gemm)(transa, transb, m, n, k, Side::ours(alpha), a.ours.data(), lda, b.ours.data(), lda,
                              Side::ours(beta), c.ours.data(), lda, 1, 1);
      std::get<1>(Side::gemm)(transa, transb, &m, &n, &k, &alpha, a.theirs.data(), &lda, b.theirs.data(), &lda, &beta,
                              c.theirs.data(), &lda, 1, 1);
      CHECK(c.difference() < kRounding);
    }
  }
}

template <class Side>
void compare_norms(support::Random& random) {
  for (const auto& [m, n] : {std::pair(0, 3), {4, 0}, {5, 5}, {6, 3}, {2, 7}}) {
    const int lda = m + 2;
    Both<Side> a(random, lda * std::max(1, n));
    std::vector<QuarnFloat> work(10);
    std::vector<double> their_work(10);
    for (const char* norm : {"M", "m", "O", "1", "I", "F", "E"}) {
      CAPTURE(std::string(norm));
      CHECK(apart(std::get<0>(Side::lange)(norm, m, n, a.ours.data(), lda, work.data(), 1),
                  std::get<1>(Side::lange)(norm, &m, &n, a.theirs.data(), &lda, their_work.data(), 1)) < kRounding);
      if (m == n) {
        CHECK(apart(std::get<0>(Side::lanhs)(norm, n, a.ours.data(), lda, work.data(), 1),
                    std::get<1>(Side::lanhs)(norm, &n, a.theirs.data(), &lda, their_work.data(), 1)) < kRounding);
      }
    }
  }
}

template <class Side>
void compare_lu(support::Random& random) {
  for (const auto& shape : {std::pair(1, 1), {7, 7}, {9, 4}, {4, 9}, {30, 30}}) {
    const int m = shape.first;
    const int n = shape.second;
    const int lda = m + 2;
    Both<Side> a(random, lda * n);
    if (m == 7) {
      for (int i = 0; i < m; ++i) {
        a.set(i + 2 * lda, 0);  // a column of zeros: both go on, and tell the step
      }
    }
    std::vector<Integer> ipiv(std::size_t(std::min(m, n)));
    std::vector<int> their_ipiv(ipiv.size());
    Integer info = 0;
    int their_info = 0;
    std::get<0>(Side::getrf)(m, n, a.ours.data(), lda, ipiv.data(), &info);
    std::get<1>(Side::getrf)(&m, &n, a.theirs.data(), &lda, their_ipiv.data(), &their_info);
    CAPTURE(m);
    CAPTURE(n);
    CHECK(info == their_info);
    CHECK(std::equal(ipiv.begin(), ipiv.end(), their_ipiv.begin()));
    CHECK(a.difference() < kRounding);
  }
}

}  // namespace

TEST_CASE_FIXTURE(Sixteen, "level 1 against the reference") {
  for (const auto& pair : {std::pair(3.0, 4.0), {-4.0, 3.0}, {0.0, 2.0}, {2.0, 0.0}, {0.0, 0.0}, {-1.5, -1.5}}) {
    const double x = pair.first;
    const double y = pair.second;
    QuarnFloat a = x;
    QuarnFloat b = y;
    QuarnFloat c;
    QuarnFloat s;
    double theirs[4] = {x, y, 0, 0};
    QuarnMP_f06aaf_(&a, &b, &c, &s);
    drotg_(&theirs[0], &theirs[1], &theirs[2], &theirs[3]);
    const QuarnFloat* ours[] = {&a, &b, &c, &s};
    for (int i = 0; i < 4; ++i) {
      CAPTURE(x);
      CAPTURE(y);
      CAPTURE(i);
      CHECK(std::fabs(FloatToDouble(*ours[i]) - theirs[i]) < 1e-14);
    }
  }
  for (const int inc : {1, 3}) {
    Both<RealSide> x(random, 20);
    Both<ComplexSide> z(random, 20);
    const int n = 6;
    CHECK(apart(QuarnMP_f06ejf_(n, x.ours.data(), inc), dnrm2_(&n, x.theirs.data(), &inc)) < kRounding);
    const double alpha = -1.25;
    QuarnMP_f06caf_(n, alpha, z.ours.data(), inc);
    zdscal_(&n, &alpha, z.theirs.data(), &inc);
    CHECK(z.difference() == 0);
  }
}

TEST_CASE_FIXTURE(Sixteen, "level 2 against the reference") {
  compare_level_2<RealSide>(random);
  compare_level_2<ComplexSide>(random);
}

TEST_CASE_FIXTURE(Sixteen, "triangles against the reference") {
  compare_triangles<RealSide>(random);
  compare_triangles<ComplexSide>(random);
}

TEST_CASE_FIXTURE(Sixteen, "matrix products against the reference") {
  compare_products<RealSide>(random);
  compare_products<ComplexSide>(random);
  const int n = 4;
  const int k = 3;
  const int lda = 6;
  const double alpha = 0.75;
  const double beta = -2;
  for (const char* uplo : {"U", "L"}) {
    for (const char* trans : {"N", "C"}) {
      Both<ComplexSide> a(random, lda * lda);
      Both<ComplexSide> c(random, lda * n);
      QuarnMP_f06zpf_(uplo, trans, n, k, alpha, a.ours.data(), lda, beta, c.ours.data(), lda, 1, 1);
      zherk_(uplo, trans, &n, &k, &alpha, a.theirs.data(), &lda, &beta, c.theirs.data(), &lda, 1, 1);
      CHECK(c.difference() < kRounding);
    }
  }
}

TEST_CASE_FIXTURE(Sixteen, "norms against the reference") {
  compare_norms<RealSide>(random);
  compare_norms<ComplexSide>(random);
}

TEST_CASE_FIXTURE(Sixteen, "LU against the reference: factors, pivots, the step of a zero pivot") {
  compare_lu<RealSide>(random);
  compare_lu<ComplexSide>(random);
}

TEST_CASE_FIXTURE(Sixteen, "Cholesky against the reference, also where it gives up") {
  for (const int n : {1, 4, 12}) {
    for (const char* uplo : {"U", "L"}) {
      for (const bool definite : {true, false}) {
        const int lda = n + 1;
        Both<ComplexSide> a(random, lda * n);
        for (int i = 0; i < n; ++i) {
          a.set(i + i * lda, definite || i != n / 2 ? 8.0 * n : -1.0);
        }
        Integer info = 0;
        int their_info = 0;
        QuarnMP_f07frf_(uplo, n, a.ours.data(), lda, &info, 1);
        zpotrf_(uplo, &n, a.theirs.data(), &lda, &their_info, 1);
        CAPTURE(n);
        CAPTURE(*uplo);
        CAPTURE(definite);
        CHECK(info == their_info);
        CHECK((info != 0) == !definite);
        if (definite) {
          CHECK(a.difference() < kRounding);
        }
      }
    }
  }
}

TEST_CASE_FIXTURE(Sixteen, "balancing by permutation against the reference") {
  for (int round = 0; round < 20; ++round) {
    const int n = 8;
    Both<RealSide> a(random, n * n);
    for (int i = 0; i < n * n; ++i) {
      if (random.below(3) != 0) {
        a.set(i, 0);
      }
    }
    std::vector<QuarnFloat> scale(n);
    std::vector<double> their_scale(n);
    Integer low = 0;
    Integer high = 0;
    Integer info = 0;
    int theirs[3] = {};
    QuarnMP_f08nhf_("P", n, a.ours.data(), n, &low, &high, scale.data(), &info, 1);
    dgebal_("P", &n, a.theirs.data(), &n, &theirs[0], &theirs[1], their_scale.data(), &theirs[2], 1);
    CHECK(low == theirs[0]);
    CHECK(high == theirs[1]);
    CHECK(a.difference() == 0);
    for (int i = 0; i < n; ++i) {
      CHECK(scale[std::size_t(i)] == their_scale[std::size_t(i)]);
    }
  }
}

namespace {

/// A random Hessenberg matrix of order n on both sides.
Both<RealSide> hessenberg(support::Random& random, int n) {
  Both<RealSide> h(random, n * n);
  for (int j = 0; j < n; ++j) {
    for (int i = j + 2; i < n; ++i) {
      h.set(i + j * n, 0);
    }
  }
  return h;
}

/// Their Schur form, read as ours.
Both<RealSide> schur_form(support::Random& random, int n, std::vector<double>& wr, std::vector<double>& wi) {
  Both<RealSide> t = hessenberg(random, n);
  std::vector<double> work(std::size_t(10 * n));
  const int one = 1;
  const int lwork = 10 * n;
  int info = 0;
  wr.resize(std::size_t(n));
  wi.resize(std::size_t(n));
  dhseqr_("S", "N", &n, &one, &n, t.theirs.data(), &n, wr.data(), wi.data(), nullptr, &one, work.data(), &lwork, &info,
          1, 1);
  REQUIRE(info == 0);
  for (int i = 0; i < n * n; ++i) {
    t.set(i, t.theirs[std::size_t(i)]);
  }
  return t;
}

}  // namespace

TEST_CASE_FIXTURE(Sixteen, "eigenvalues against the reference") {
  for (const int n : {1, 2, 3, 10, 25}) {
    Both<RealSide> h = hessenberg(random, n);
    const double size = 4.0 * n;  // bounds the norm
    std::vector<QuarnFloat> wr(std::size_t(n), 0);
    std::vector<QuarnFloat> wi(std::size_t(n), 0);
    std::vector<QuarnFloat> work(std::size_t(n), 0);
    std::vector<double> their_wr(std::size_t(n), 0);
    std::vector<double> their_wi(std::size_t(n), 0);
    std::vector<double> their_work(std::size_t(10 * n), 0);
    const int one = 1;
    const int lwork = 10 * n;
    Integer info = 0;
    int their_info = 0;
    QuarnMP_f08pef_("E", "N", n, 1, n, h.ours.data(), n, wr.data(), wi.data(), nullptr, 1, work.data(), n, &info, 1, 1);
    dhseqr_("E", "N", &n, &one, &n, h.theirs.data(), &n, their_wr.data(), their_wi.data(), nullptr, &one,
            their_work.data(), &lwork, &their_info, 1, 1);
    REQUIRE(info == 0);
    REQUIRE(their_info == 0);
    // Each of theirs has its own among ours; the order is the algorithms' own. Random matrices of this size have
    // eigenvalue condition numbers well below 1e6.
    for (int i = 0; i < n; ++i) {
      double nearest = 1e300;
      std::size_t which = 0;
      for (std::size_t j = 0; j < wr.size(); ++j) {
        const double distance = std::hypot(FloatToDouble(wr[j]) - their_wr[std::size_t(i)],
                                           FloatToDouble(wi[j]) - their_wi[std::size_t(i)]);
        if (distance < nearest) {
          nearest = distance;
          which = j;
        }
      }
      CAPTURE(n);
      CAPTURE(i);
      CHECK(nearest < 1e-9 * size);
      wr[which] = 1e6;
    }
  }
}

TEST_CASE_FIXTURE(Sixteen, "eigenvectors and their condition numbers against the reference") {
  for (const int n : {1, 2, 5, 12}) {
    std::vector<double> wr;
    std::vector<double> wi;
    Both<RealSide> t = schur_form(random, n, wr, wi);
    Both<RealSide> left(random, n * n);
    Both<RealSide> right(random, n * n);
    std::vector<QuarnFloat> work(std::size_t(n * (n + 6)));
    std::vector<double> their_work(std::size_t(n * (n + 6)));
    Integer m = 0;
    Integer info = 0;
    int their_m = 0;
    int their_info = 0;
    QuarnMP_f08qkf_("B", "A", nullptr, n, t.ours.data(), n, left.ours.data(), n, right.ours.data(), n, n, &m,
                    work.data(), &info, 1, 1);
    dtrevc_("B", "A", nullptr, &n, t.theirs.data(), &n, left.theirs.data(), &n, right.theirs.data(), &n, &n, &their_m,
            their_work.data(), &their_info, 1, 1);
    CAPTURE(n);
    CHECK(m == their_m);
    CHECK(left.difference() < 1e-8);
    CHECK(right.difference() < 1e-8);

    std::vector<QuarnFloat> s(std::size_t(n), 0);
    std::vector<QuarnFloat> sep(std::size_t(n), 0);
    std::vector<double> their_s(std::size_t(n), 0);
    std::vector<double> their_sep(std::size_t(n), 0);
    std::vector<Integer> iwork(std::size_t(2 * n));
    std::vector<int> their_iwork(std::size_t(2 * n));
    QuarnMP_f08qlf_("B", "A", nullptr, n, t.ours.data(), n, left.ours.data(), n, right.ours.data(), n, s.data(),
                    sep.data(), n, &m, work.data(), n, iwork.data(), &info, 1, 1);
    dtrsna_("B", "A", nullptr, &n, t.theirs.data(), &n, left.theirs.data(), &n, right.theirs.data(), &n, their_s.data(),
            their_sep.data(), &n, &their_m, their_work.data(), &n, their_iwork.data(), &their_info, 1, 1);
    for (std::size_t i = 0; i < s.size(); ++i) {
      CHECK(apart(s[i], their_s[i]) < 1e-8);
      // 1-norms after different orthogonal transformations: both are within a factor n of the same number.
      CHECK(FloatToDouble(sep[i]) <= their_sep[i] * (3 * n));
      CHECK(FloatToDouble(sep[i]) >= their_sep[i] / (3 * n));
    }
  }
}

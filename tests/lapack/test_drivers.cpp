// Eigenproblems, least squares and factorisations against the reference LAPACK: the same random data, well-conditioned,
// at 16 digits and in double precision.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "fortran.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.h"

namespace {

constexpr double kRounding = 1e-10;  // times the norm: condition numbers to 1e4 or so
constexpr int kOrder = 12;
constexpr int kLeading = kOrder + 3;
constexpr int kWork = 4000;

double real_part(double x) { return x; }
double real_part(const C16& z) { return z.real(); }
QuarnFloat ours_of(double x) { return {x}; }
Complex ours_of(const C16& z) { return {z.real(), z.imag()}; }
double theirs_of(const QuarnFloat& x) { return FloatToDouble(x); }
C16 theirs_of(const Complex& z) { return {FloatToDouble(z.re), FloatToDouble(z.im)}; }

/// The same numbers on both sides, a matrix of kLeading rows or a vector.
template <class Theirs>
struct Both {
  using Ours = decltype(ours_of(Theirs()));
  std::vector<Ours> ours;
  std::vector<Theirs> theirs;

  explicit Both(std::size_t count) : ours(count), theirs(count) {}
  explicit Both(const std::vector<Theirs>& given) : theirs(given) {
    for (const Theirs& x : given) {
      ours.push_back(ours_of(x));
    }
  }
  Ours* data() { return ours.data(); }
  Theirs* their_data() { return theirs.data(); }
  /// The largest difference of the first numbers, relative to the largest of them.
  double difference(std::size_t count) const {
    return difference(count, [](const Theirs& x) { return x; });
  }
  /// Of their magnitudes: vectors are the same but for a factor of modulus 1.
  double difference_of_magnitudes(std::size_t count) const {
    return difference(count, [](const Theirs& x) { return Theirs(std::abs(x)); });
  }

 private:
  template <class View>
  double difference(std::size_t count, const View& view) const {
    double largest = 1e-300;
    double apart = 0;
    for (std::size_t i = 0; i < count; ++i) {
      largest = std::max(largest, double(std::abs(theirs[i])));
      apart = std::max(apart, double(std::abs(view(theirs_of(ours[i])) - view(theirs[i]))));
    }
    return apart / largest;
  }
};

double number(support::Random& random, double /*kind*/) { return double(random.between(-2048, 2048)) / 1024; }
C16 number(support::Random& random, const C16& /*kind*/) {
  const double re = number(random, 0.0);
  return {re, number(random, 0.0)};
}

/// Of element (i, j), both from 0.
std::size_t place(int i, int j) { return std::size_t(i) + std::size_t(j) * std::size_t(kLeading); }

/// Square, of kOrder columns, with `more` added to the diagonal.
template <class T>
std::vector<T> square(support::Random& random, double more = 0) {
  std::vector<T> a(std::size_t(kLeading) * kOrder);
  for (T& x : a) {
    x = number(random, T());
  }
  for (int i = 0; i < kOrder; ++i) {
    a[place(i, i)] += more;
  }
  return a;
}
template <class T>
std::vector<T> hermitian(support::Random& random, double more = 0) {
  std::vector<T> a = square<T>(random, more);
  for (int j = 0; j < kOrder; ++j) {
    a[place(j, j)] = real_part(a[place(j, j)]);
    for (int i = 0; i < j; ++i) {
      T& above = a[place(i, j)];
      if constexpr (sizeof(T) == sizeof(double)) {
        above = a[place(j, i)];
      } else {
        above = std::conj(a[place(j, i)]);
      }
    }
  }
  return a;
}
/// Upper triangular with eigenvalues 1, 2, ... or so.
template <class T>
std::vector<T> triangular(support::Random& random, double first) {
  std::vector<T> a = square<T>(random);
  for (int j = 0; j < kOrder; ++j) {
    for (int i = j; i < kOrder; ++i) {
      a[place(i, j)] = i == j ? first + j : 0;
    }
  }
  return a;
}
std::vector<double> numbers(support::Random& random, int count) {
  std::vector<double> x(static_cast<std::size_t>(count));
  for (double& each : x) {
    each = number(random, 0.0);
  }
  return x;
}

/// Each of theirs has its own among ours, whatever the order.
void check_nearest(std::vector<C16> ours, const std::vector<C16>& theirs, double size) {
  for (const C16& wanted : theirs) {
    const auto nearest = std::min_element(ours.begin(), ours.end(), [&](const C16& x, const C16& y) {
      return std::abs(x - wanted) < std::abs(y - wanted);
    });
    CHECK(std::abs(*nearest - wanted) < 1e-8 * size);
    *nearest = 1e9;
  }
}

struct Sixteen {
  support::Digits digits{16};
  support::Random random;
  int n = kOrder;
  int lda = kLeading;
  int lwork = kWork;
  std::vector<double> work = std::vector<double>(kWork);
  std::vector<C16> complex_work = std::vector<C16>(kWork);
  std::vector<int> iwork = std::vector<int>(kWork);
  std::vector<QuarnFloat> our_work = std::vector<QuarnFloat>(kWork);
  std::vector<Complex> our_complex_work = std::vector<Complex>(kWork);
  std::vector<Integer> our_iwork = std::vector<Integer>(kWork);
  int their_info = -99;
  Integer info = -99;

  void check_done() {
    CHECK(info == 0);
    CHECK(their_info == 0);
    info = -99;
    their_info = -99;
  }
};

}  // namespace

TEST_CASE_FIXTURE(Sixteen, "symmetric-definite eigenproblems against the reference") {
  for (const int type : {1, 2, 3}) {
    for (const char* uplo : {"U", "L"}) {
      CAPTURE(type);
      Both<double> a(hermitian<double>(random));
      Both<double> b(hermitian<double>(random, 30));
      Both<double> w(kOrder);
      QuarnMPX_dsygv_(type, "V", uplo, n, a.data(), lda, b.data(), lda, w.data(), our_work.data(), lwork, &info, 1, 1);
      dsygv_(&type, "V", uplo, &n, a.their_data(), &lda, b.their_data(), &lda, w.their_data(), work.data(), &lwork,
             &their_info, 1, 1);
      check_done();
      CHECK(w.difference(kOrder) < kRounding);

      Both<C16> c(hermitian<C16>(random));
      Both<C16> d(hermitian<C16>(random, 60));
      QuarnMPX_zhegv_(type, "N", uplo, n, c.data(), lda, d.data(), lda, w.data(), our_complex_work.data(), lwork,
                      nullptr, &info, 1, 1);
      zhegv_(&type, "N", uplo, &n, c.their_data(), &lda, d.their_data(), &lda, w.their_data(), complex_work.data(),
             &lwork, work.data(), &their_info, 1, 1);
      check_done();
      CHECK(w.difference(kOrder) < kRounding);
    }
  }
}

TEST_CASE_FIXTURE(Sixteen, "tridiagonal eigenproblems against the reference") {
  for (const int order : {1, 2, 25, 60}) {
    CAPTURE(order);
    const auto count = std::size_t(order);
    const std::vector<double> diagonal = numbers(random, order);
    const std::vector<double> beside = numbers(random, order);
    Both<double> d(diagonal);
    Both<double> e(beside);
    const int first = (order + 3) / 4;
    const int last = (order + 1) / 2;
    const double none = 0;
    int m = 0;
    int blocks = 0;
    Integer our_m = 0;
    Integer our_blocks = 0;
    Both<double> w(count);
    std::vector<int> block(count);
    std::vector<int> split(count);
    std::vector<Integer> our_block(count);
    std::vector<Integer> our_split(count);
    QuarnMPX_dstebz_("I", "B", order, 0, 0, first, last, 0, d.data(), e.data(), &our_m, &our_blocks, w.data(),
                     our_block.data(), our_split.data(), our_work.data(), our_iwork.data(), &info, 1, 1);
    dstebz_("I", "B", &order, &none, &none, &first, &last, &none, d.their_data(), e.their_data(), &m, &blocks,
            w.their_data(), block.data(), split.data(), work.data(), iwork.data(), &their_info, 1, 1);
    check_done();
    REQUIRE(our_m == m);
    CHECK(our_blocks == blocks);
    CHECK(w.difference(std::size_t(m)) < kRounding);

    // The vectors of their numbers: the residual of ours is as small as the shift is good.
    Both<double> z(count * count);
    std::vector<Integer> failed(count);
    QuarnMPX_dstein_(order, d.data(), e.data(), our_m, w.data(), our_block.data(), our_split.data(), z.data(), order,
                     our_work.data(), our_iwork.data(), failed.data(), &info);
    CHECK(info == 0);
    for (int j = 0; j < m; ++j) {
      for (int i = 0; i < order; ++i) {
        const auto at = [&](int row) {
          return row < 0 || row >= order ? 0 : FloatToDouble(z.ours[std::size_t(row) + std::size_t(j) * count]);
        };
        const double sum = (diagonal[std::size_t(i)] - w.theirs[std::size_t(j)]) * at(i) +
                           (i > 0 ? beside[std::size_t(i - 1)] : 0) * at(i - 1) +
                           (i + 1 < order ? beside[std::size_t(i)] : 0) * at(i + 1);
        CHECK(std::fabs(sum) < kRounding);
      }
    }

    QuarnMPX_dstedc_("I", order, d.data(), e.data(), z.data(), order, nullptr, 1, nullptr, 1, &info, 1);
    dstedc_("N", &order, d.their_data(), e.their_data(), nullptr, &order, work.data(), &lwork, iwork.data(), &lwork,
            &their_info, 1);
    check_done();
    CHECK(d.difference(count) < kRounding);
  }
}

TEST_CASE_FIXTURE(Sixteen, "general pencils against the reference") {
  for (int round = 0; round < 3; ++round) {
    Both<double> a(square<double>(random));
    Both<double> b(square<double>(random, 12));
    Both<double> re(kOrder);
    Both<double> im(kOrder);
    Both<double> beta(kOrder);
    QuarnMPX_dggev_("N", "N", n, a.data(), lda, b.data(), lda, re.data(), im.data(), beta.data(), nullptr, 1, nullptr,
                    1, our_work.data(), lwork, &info, 1, 1);
    const int one = 1;
    dggev_("N", "N", &n, a.their_data(), &lda, b.their_data(), &lda, re.their_data(), im.their_data(),
           beta.their_data(), nullptr, &one, nullptr, &one, work.data(), &lwork, &their_info, 1, 1);
    check_done();
    std::vector<C16> ours;
    std::vector<C16> theirs;
    for (std::size_t j = 0; j < kOrder; ++j) {
      const double below = FloatToDouble(beta.ours[j]);
      ours.emplace_back(FloatToDouble(re.ours[j]) / below, FloatToDouble(im.ours[j]) / below);
      theirs.emplace_back(re.theirs[j] / beta.theirs[j], im.theirs[j] / beta.theirs[j]);
    }
    check_nearest(ours, theirs, 1);

    Both<C16> c(square<C16>(random));
    Both<C16> d(square<C16>(random, 15));
    Both<C16> alpha(kOrder);
    Both<C16> divisor(kOrder);
    QuarnMPX_zggev_("N", "N", n, c.data(), lda, d.data(), lda, alpha.data(), divisor.data(), nullptr, 1, nullptr, 1,
                    our_complex_work.data(), lwork, nullptr, &info, 1, 1);
    zggev_("N", "N", &n, c.their_data(), &lda, d.their_data(), &lda, alpha.their_data(), divisor.their_data(), nullptr,
           &one, nullptr, &one, complex_work.data(), &lwork, work.data(), &their_info, 1, 1);
    check_done();
    for (std::size_t j = 0; j < kOrder; ++j) {
      ours[j] = theirs_of(alpha.ours[j]) / theirs_of(divisor.ours[j]);
      theirs[j] = alpha.theirs[j] / divisor.theirs[j];
    }
    check_nearest(ours, theirs, 1);
  }
}

TEST_CASE_FIXTURE(Sixteen, "Sylvester equations against the reference") {
  for (const char* trana : {"N", "C"}) {
    for (const char* tranb : {"N", "C"}) {
      for (const int sign : {1, -1}) {
        CAPTURE(std::string(trana) + tranb);
        CAPTURE(sign);
        // The spectra of A and -+B do not meet.
        Both<double> a(triangular<double>(random, 20));
        Both<double> b(triangular<double>(random, sign * 10.0 - (sign < 0 ? kOrder : 0)));
        Both<double> c(square<double>(random));
        Both<double> scale(1);
        QuarnMPX_dtrsyl_(trana, tranb, sign, n, n, a.data(), lda, b.data(), lda, c.data(), lda, scale.data(), &info, 1,
                         1);
        dtrsyl_(trana, tranb, &sign, &n, &n, a.their_data(), &lda, b.their_data(), &lda, c.their_data(), &lda,
                scale.their_data(), &their_info, 1, 1);
        check_done();
        CHECK(scale.difference(1) == 0);
        CHECK(c.difference(c.ours.size()) < kRounding);

        Both<C16> x(triangular<C16>(random, 20));
        Both<C16> y(triangular<C16>(random, sign * 10.0 - (sign < 0 ? kOrder : 0)));
        Both<C16> z(square<C16>(random));
        QuarnMPX_ztrsyl_(trana, tranb, sign, n, n, x.data(), lda, y.data(), lda, z.data(), lda, scale.data(), &info, 1,
                         1);
        ztrsyl_(trana, tranb, &sign, &n, &n, x.their_data(), &lda, y.their_data(), &lda, z.their_data(), &lda,
                scale.their_data(), &their_info, 1, 1);
        check_done();
        CHECK(z.difference(z.ours.size()) < kRounding);
      }
    }
  }
}

TEST_CASE_FIXTURE(Sixteen, "Schur forms in another order against the reference") {
  const std::vector<double> given = triangular<double>(random, 1);
  std::vector<double> unit(given.size());
  for (int i = 0; i < n; ++i) {
    unit[place(i, i)] = 1;
  }
  for (const auto& [from, to] : {std::pair{1, kOrder}, std::pair{9, 3}, std::pair{4, 5}}) {
    Both<double> t(given);
    Both<double> q(unit);
    int first = from;
    int last = to;
    Integer our_first = from;
    Integer our_last = to;
    QuarnMPX_dtrexc_("V", n, t.data(), lda, q.data(), lda, &our_first, &our_last, our_work.data(), &info, 1);
    dtrexc_("V", &n, t.their_data(), &lda, q.their_data(), &lda, &first, &last, work.data(), &their_info, 1);
    check_done();
    CHECK(our_last == last);
    CHECK(t.difference_of_magnitudes(t.ours.size() - 3) < 1e-8);
    CHECK(q.difference_of_magnitudes(q.ours.size() - 3) < 1e-8);
  }
  std::vector<int> select(kOrder);
  std::vector<Integer> our_select(kOrder);
  for (std::size_t i = 2; i < kOrder; i += 3) {
    select[i] = 1;
    our_select[i] = 1;
  }
  Both<double> t(given);
  Both<double> q(unit);
  Both<double> re(kOrder);
  Both<double> im(kOrder);
  Both<double> condition(2);
  int m = 0;
  Integer our_m = 0;
  QuarnMPX_dtrsen_("B", "V", our_select.data(), n, t.data(), lda, q.data(), lda, re.data(), im.data(), &our_m,
                   &condition.ours[0], &condition.ours[1], our_work.data(), lwork, our_iwork.data(), kWork, &info, 1,
                   1);
  dtrsen_("B", "V", select.data(), &n, t.their_data(), &lda, q.their_data(), &lda, re.their_data(), im.their_data(), &m,
          &condition.theirs[0], &condition.theirs[1], work.data(), &lwork, iwork.data(), &lwork, &their_info, 1, 1);
  check_done();
  CHECK(our_m == m);
  CHECK(re.difference(kOrder) < 1e-8);
  CHECK(im.difference(kOrder) == 0);
  CHECK(t.difference_of_magnitudes(t.ours.size() - 3) < 1e-6);
  CHECK(std::fabs(FloatToDouble(condition.ours[0]) / condition.theirs[0] - 1) < 1e-6);
  // An estimate, from other start vectors perhaps.
  CHECK(FloatToDouble(condition.ours[1]) < 10 * condition.theirs[1]);
  CHECK(FloatToDouble(condition.ours[1]) > condition.theirs[1] / 10);
}

TEST_CASE_FIXTURE(Sixteen, "least squares of any rank, constrained and generalised, against the reference") {
  for (const int rank : {4, 7}) {
    const int columns = 7;
    const int sides = 2;
    std::vector<double> whole = square<double>(random);
    for (int j = rank; j < columns; ++j) {  // combinations of the others, exact in both arithmetics
      for (int i = 0; i < n; ++i) {
        whole[place(i, j)] = whole[std::size_t(i)] + double(j) * whole[place(i, 1)];
      }
    }
    Both<double> a(whole);
    Both<double> b(square<double>(random));
    const double tolerance = 1e-10;
    int found = 0;
    Integer our_rank = 0;
    std::vector<int> order(kOrder);
    std::vector<Integer> our_order(kOrder);
    QuarnMPX_dgelsy_(n, columns, sides, a.data(), lda, b.data(), lda, our_order.data(), QuarnFloat(1, -10), &our_rank,
                     our_work.data(), lwork, &info);
    dgelsy_(&n, &columns, &sides, a.their_data(), &lda, b.their_data(), &lda, order.data(), &tolerance, &found,
            work.data(), &lwork, &their_info);
    check_done();
    CHECK(our_rank == rank);
    CHECK(found == rank);
    for (std::size_t j = 0; j < 2; ++j) {
      for (std::size_t i = 0; i < 7; ++i) {
        const std::size_t at = i + j * std::size_t(lda);
        CHECK(std::fabs(FloatToDouble(b.ours[at]) - b.theirs[at]) < 1e-8);
      }
    }
  }
  const int unknowns = 8;
  const int constraints = 3;
  Both<double> a(square<double>(random, 10));
  Both<double> b(square<double>(random, 10));
  Both<double> c(numbers(random, kOrder));
  Both<double> d(numbers(random, kOrder));
  Both<double> x(kOrder);
  QuarnMPX_dgglse_(n, unknowns, constraints, a.data(), lda, b.data(), lda, c.data(), d.data(), x.data(),
                   our_work.data(), lwork, &info);
  dgglse_(&n, &unknowns, &constraints, a.their_data(), &lda, b.their_data(), &lda, c.their_data(), d.their_data(),
          x.their_data(), work.data(), &lwork, &their_info);
  check_done();
  CHECK(x.difference(8) < kRounding);

  Both<double> model(square<double>(random, 10));
  Both<double> errors(square<double>(random, 10));
  Both<double> right(numbers(random, kOrder));
  Both<double> y(kOrder);
  QuarnMPX_dggglm_(n, unknowns, n, model.data(), lda, errors.data(), lda, right.data(), x.data(), y.data(),
                   our_work.data(), lwork, &info);
  dggglm_(&n, &unknowns, &n, model.their_data(), &lda, errors.their_data(), &lda, right.their_data(), x.their_data(),
          y.their_data(), work.data(), &lwork, &their_info);
  check_done();
  CHECK(x.difference(8) < kRounding);
  CHECK(y.difference(kOrder) < kRounding);
}

TEST_CASE_FIXTURE(Sixteen, "pivoted factorisations against the reference") {
  for (const char* uplo : {"U", "L"}) {
    // Random numbers of 12 bits on both sides: pivots that differ would be ties.
    Both<double> a(hermitian<double>(random));
    std::vector<int> pivots(kOrder);
    std::vector<Integer> our_pivots(kOrder);
    QuarnMPX_dsytrf_(uplo, n, a.data(), lda, our_pivots.data(), our_work.data(), lwork, &info, 1);
    dsytrf_(uplo, &n, a.their_data(), &lda, pivots.data(), work.data(), &lwork, &their_info, 1);
    check_done();
    for (std::size_t i = 0; i < kOrder; ++i) {
      CHECK(our_pivots[i] == pivots[i]);
    }
    CHECK(a.difference(a.ours.size()) < 1e-9);
  }
  Both<double> a(square<double>(random));
  std::vector<int> order(kOrder);
  std::vector<Integer> our_order(kOrder);
  Both<double> tau(kOrder);
  QuarnMPX_dgeqp3_(n, n, a.data(), lda, our_order.data(), tau.data(), our_work.data(), lwork, &info);
  dgeqp3_(&n, &n, a.their_data(), &lda, order.data(), tau.their_data(), work.data(), &lwork, &their_info);
  check_done();
  for (std::size_t i = 0; i < kOrder; ++i) {
    CHECK(our_order[i] == order[i]);
  }
  CHECK(a.difference_of_magnitudes(a.ours.size()) < 1e-9);
}

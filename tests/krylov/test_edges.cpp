// The exports of this chapter at the ends of the range, with products that are not what they should be, and with wrong
// arguments.
#include <doctest/doctest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "krylov/residuals.h"
#include "sparse/samples.h"
#include "src/frame/constants.h"
#include "src/krylov/thick_restart.h"

using support::Digits;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;

namespace {

constexpr Integer kLargest = std::numeric_limits<Integer>::max();

/// Row by row.
struct Given {
  Integer rows;
  Integer columns;
  std::vector<Real> a;
  Real sigma = 0;
  int products = 0;
  int most_digits = 0;

  static void form(void* context, Integer what, const Real* x, Real* y) {
    Given& self = *static_cast<Given*>(context);
    ++self.products;
    self.most_digits = std::max(self.most_digits, QuarnDigits());
    for (Integer i = 0; i < (what == 1 ? self.columns : self.rows); ++i) {
      y[i] = 0;
      for (Integer j = 0; j < (what == 1 ? self.rows : self.columns); ++j) {
        const Integer place = what == 1 ? j * self.columns + i : i * self.columns + j;
        y[i] += self.a[std::size_t(place)] * x[j];
      }
      if (what == 2) {  // of a diagonal matrix
        const Integer place = i * self.columns + i;
        y[i] = x[i] / (self.a[std::size_t(place)] - self.sigma);
      }
    }
  }
};

Given diagonal(const std::vector<Real>& values) {
  const auto n = Integer(values.size());
  Given given{n, n, std::vector<Real>(values.size() * values.size())};
  for (std::size_t i = 0; i < values.size(); ++i) {
    given.a[i * values.size() + i] = values[i];
  }
  return given;
}

/// What the exports return; arrays are filled with 7 before.
struct Answer {
  std::vector<Real> w = std::vector<Real>(6, Real(7));
  std::vector<Complex> values = std::vector<Complex>(6, Complex(7.0));
  std::vector<Real> z = std::vector<Real>(36, Real(7));
  std::vector<Real> u = std::vector<Real>(36, Real(7));
  std::vector<Complex> vectors = std::vector<Complex>(36, Complex(7.0));
  std::vector<Real> resid = std::vector<Real>(6, Real(7));
  Real norms[4] = {7, 7, 7, 7};
  Integer m = 7;
  Integer products = 7;
  Integer stop = 7;
  Integer info = 7;

  bool untouched() const {
    const Answer none;
    return w == none.w && values == none.values && z == none.z && u == none.u && vectors == none.vectors &&
           resid == none.resid && std::equal(norms, norms + 4, none.norms) && m == 7 && products == 7 && stop == 7;
  }
};

/// As the C++ interface has them.
struct Options {
  const char* which = "LM";
  Integer k = 1;
  const Real* sigma = nullptr;
  Integer ncv = 0;
  Real tol = 0;
  Integer most = 1000;
  const Real* v0 = nullptr;
};

Answer eigsh(Given& a, const Options& options, QuarnRealOperator product = Given::form) {
  Answer found;
  QuarnMPX_deigsh_(options.which, a.rows, options.k, options.sigma, product, &a, options.ncv, options.tol, options.most,
                   options.v0, found.w.data(), found.z.data(), a.rows, found.resid.data(), &found.products, &found.info,
                   2);
  return found;
}

Answer eigs(Given& a, const Options& options, Integer ldz = 0, QuarnRealOperator product = Given::form) {
  Answer found;
  QuarnMPX_deigs_(options.which, a.rows, options.k, options.sigma, product, &a, options.ncv, options.tol, options.most,
                  options.v0, found.values.data(), found.vectors.data(), ldz != 0 ? ldz : a.rows, found.resid.data(),
                  &found.m, &found.products, &found.info, 2);
  return found;
}

Answer svds(Given& a, const Options& options, QuarnRealOperator product = Given::form) {
  Answer found;
  QuarnMPX_dsvds_(options.which, a.rows, a.columns, options.k, product, &a, options.ncv, options.tol, options.most,
                  options.v0, found.w.data(), found.u.data(), a.rows, found.z.data(), a.columns, found.resid.data(),
                  &found.products, &found.info, 2);
  return found;
}

Answer lsmr(Given& a, const std::vector<Real>& b, const Real& damp = 0, const Real& tol = 0,
            QuarnRealOperator product = Given::form) {
  Answer found;
  QuarnMPX_dlsmr_(a.rows, a.columns, product, &a, b.data(), damp, tol, tol, 0, 500, found.w.data(), &found.norms[0],
                  &found.norms[1], &found.norms[2], &found.norms[3], &found.products, &found.stop, &found.info);
  return found;
}

bool is_near(const Real& x, const Real& y) { return fabs(x - y) <= fabs(y) * Real(1, 2 - QuarnDigits()); }

}  // namespace

TEST_CASE("squares of the elements leave the range, results do not") {
  const Digits scope(20);
  for (const int exponent : {-900'000'000, -600'000'000, -200'000'000, 200'000'000, 600'000'000, 900'000'000}) {
    CAPTURE(exponent);
    const Real unit(1, exponent);
    Given a = diagonal({unit, 2 * unit, 3 * unit, 4 * unit});
    const Answer top = eigsh(a, {.which = "LA"});
    CHECK(top.info == 0);
    CHECK(is_near(top.w[0], 4 * unit));
    CHECK(is_near(fabs(top.z[3]), 1));
    const Real sigma = unit * Real("1.9");
    a.sigma = sigma;
    const Answer inner = eigsh(a, {.k = 2, .sigma = &sigma});
    CHECK(inner.info == 0);
    CHECK(is_near(inner.w[0], unit));
    CHECK(is_near(inner.w[1], 2 * unit));
    const Answer singular = svds(a, {.k = 2});
    CHECK(singular.info == 0);
    CHECK(is_near(singular.w[1], 3 * unit));

    Given triangle{2, 2, {unit, unit, 0, 2 * unit}};
    const Answer general = eigs(triangle, {.k = 2});
    CHECK(general.info == 0);
    CHECK(is_near(general.values[0].re, 2 * unit));
    CHECK(is_near(tesk::modulus(general.vectors[0]), sqrt(Real(1) / 2)));
    CHECK(is_near(tesk::modulus(general.vectors[1]), sqrt(Real(1) / 2)));
    CHECK(is_near(tesk::modulus(general.vectors[2]), 1));
    CHECK(tesk::modulus(general.vectors[3]) < Real(1, -18));

    Given one{1, 1, {1}};
    const Answer same = lsmr(one, {unit});
    CHECK(same.info == 0);
    CHECK(is_near(same.w[0], unit));
    const Real other = Real(1, exponent / 10);
    Given tall{3, 2, {unit, 0, 0, 2 * unit, unit, unit}};
    const std::vector<Real> b = {other, other * 2, other * 4};
    for (const Real& damp : {Real(0), unit}) {  // (A^T A + damp^2) x = A^T b
      const Answer least = lsmr(tall, b, damp);
      const Real square = damp == 0 ? 0 : 1;
      const Real det = (2 + square) * (5 + square) - 1;
      CHECK(least.info == 0);
      CHECK(is_near(least.w[0], (5 * (5 + square) - 8) / det * (other / unit)));
      CHECK(is_near(least.w[1], (8 * (2 + square) - 5) / det * (other / unit)));
    }
  }
}

TEST_CASE("complex vectors whose squares leave the range" * doctest::test_suite("long")) {
  const Digits scope(20);
  // Of the second difference with a phase; some restarts are needed.
  constexpr std::size_t kOrder = 30;
  for (const Integer exponent : {0, -900'000'000, -600'000'000, 600'000'000, 900'000'000}) {
    CAPTURE(exponent);
    const Real unit(1, exponent);
    SparseMatrix<Complex> a(kOrder);
    for (std::size_t i = 0; i < kOrder; ++i) {
      a.add(i, i, Complex(2 * unit));
      if (i > 0) {
        a.add(i, i - 1, Complex(0, unit));
        a.add(i - 1, i, Complex(0, -unit));
      }
    }
    tesk2mp::HermitianEigenOptions<Complex> options;
    options.basis = 10;
    tesk2mp::EigenOptions<Complex> general;
    general.basis = 10;
    tesk2mp::SingularOptions<Complex> singular;
    singular.basis = 10;
    const auto pairs = tesk2mp::eigsh(a, 2, options);
    const auto others = tesk2mp::eigs(a, 2, general);
    const auto triplets = tesk2mp::svds(a, 2, singular);
    for (std::size_t j = 0; j < 2; ++j) {
      const Real root = 2 + 2 * cos(Real(2 - int(j)) * tesk2mp::pi() / int(kOrder + 1));
      CHECK(is_near(pairs.values[j], root * unit));
      CHECK(is_near(others.values[1 - j].re, root * unit));
      CHECK(is_near(triplets.values[1 - j], root * unit));
      CHECK(pairs.residuals[j] < Real(1, -17) * unit);
    }
    CHECK(pairs.products < 400);
    CHECK(others.products < 400);
    CHECK(triplets.products < 800);
  }
}

TEST_CASE("products that are not of the matrix that they are said to be of are found out") {
  const Digits scope(20);
  Given given{2, 2, {0, 1, 0, 0}};
  const Answer skew = eigsh(given, {});
  CHECK(skew.info == 1);
  CHECK(skew.resid[0] > Real(1, -1));

  Given a = diagonal({1, 2, 3, 4, 5, 6});
  // A solution that is far too large does not make the digits grow without end.
  const Real sigma = 2;
  const QuarnRealOperator wild = [](void* context, Integer what, const Real* x, Real* y) {
    Given::form(context, what == 2 ? 0 : what, x, y);
    for (Integer i = 0; what == 2 && i < 6; ++i) {
      y[i] *= Real(1, 1'000'000);
    }
  };
  const Answer lost = eigsh(a, {.sigma = &sigma}, wild);
  CHECK(lost.info == 2);
  CHECK(lost.untouched());
  CHECK(a.most_digits < 1000);

  // The adjoint of another matrix, and one that stops being finite on its way.
  const QuarnRealOperator other = [](void* context, Integer what, const Real* x, Real* y) {
    Given::form(context, what, x, y);
    y[0] = what == 1 ? y[0] + x[1] : y[0];
  };
  const Answer wrong = lsmr(a, std::vector<Real>(6, Real(1)), 0, 0, other);
  CHECK(wrong.info == 1);
  CHECK(wrong.stop == 7);
  const QuarnRealOperator breaking = [](void* context, Integer what, const Real* x, Real* y) {
    Given::form(context, what, x, y);
    y[3] = static_cast<Given*>(context)->products > 4 ? Real("nan") : y[3];
  };
  a.products = 0;
  CHECK(lsmr(a, std::vector<Real>(6, Real(1)), 0, 0, breaking).info == 2);
  CHECK(a.products < 9);
  // Tolerances below all digits.
  const Answer most = lsmr(a, std::vector<Real>(6, Real(1)), 0, Real(1, -100));
  CHECK(most.info == 0);
  CHECK(most.products < 30);
}

TEST_CASE("least squares: iterations for digits asked for, limits, norm and condition") {
  const Digits scope(20);
  // Zero asks for the machine precision of the caller, not for that of the work.
  std::vector<Real> values;
  for (int i = 1; i <= 6; ++i) {
    values.push_back(Real(1, i) + 1);
  }
  Given spread = diagonal(values);
  const std::vector<Real> ones(6, Real(1));
  CHECK(lsmr(spread, ones).products == lsmr(spread, ones, 0, tesk::epsilon()).products);

  const auto limited = [&](Given& a, Integer most, const Real& conlim, QuarnRealOperator product) {
    Answer found;
    QuarnMPX_dlsmr_(a.rows, a.columns, product, &a, ones.data(), 0, 0, 0, conlim, most, found.w.data(), &found.norms[0],
                    &found.norms[1], &found.norms[2], &found.norms[3], &found.products, &found.stop, &found.info);
    return found;
  };
  // A product that is wrong when x is looked at: with no iteration left for a second try the x of the first one stays.
  const Answer first = limited(spread, 99, 0, Given::form);
  CHECK(first.info == 0);
  static int wrong_from = 0;
  wrong_from = 2 + 2 * first.products;
  const QuarnRealOperator failing = [](void* context, Integer what, const Real* x, Real* y) {
    Given::form(context, what, x, y);
    y[0] += static_cast<Given*>(context)->products >= wrong_from ? 1 : 0;
  };
  spread.products = 0;
  const Answer kept = limited(spread, first.products, 0, failing);
  CHECK(kept.info == 1);
  CHECK(kept.stop == 7);
  CHECK(kept.products == first.products);
  CHECK(kept.w == first.w);

  // The last element of the diagonal counts.
  Given three = diagonal({1, 1000, 30});
  const Answer both = limited(three, 9, 0, Given::form);
  CHECK(both.norms[3] > 300);
  CHECK(both.norms[3] <= Real("1000.1"));
  const Answer ended = limited(three, 9, 10, Given::form);
  CHECK(ended.info == 0);
  CHECK(ended.stop == 3);
  CHECK(ended.products == 2);

  // The Frobenius norm of A with the damping below it.
  Given plain = diagonal({3, 4});
  const Answer damped = lsmr(plain, {1, 1}, 2);
  CHECK(is_near(damped.norms[2], sqrt(Real(9 + 16 + 2 * 4))));

  constexpr std::size_t kMany = std::size_t(kLargest) / 5;
  CHECK(tesk2mp::detail::most_iterations(0, kMany) == kLargest);
  CHECK(tesk2mp::detail::most_iterations(0, 101) == 1010);
  CHECK(tesk2mp::detail::most_products(0, kMany) == kLargest);
  CHECK(tesk2mp::detail::most_products(0, 7) == 10'000);
}

TEST_CASE("a product that is not finite is seen, whichever it is") {
  const Digits scope(20);
  static int bad_one = 0;
  const QuarnRealOperator breaking = [](void* context, Integer what, const Real* x, Real* y) {
    Given::form(context, what, x, y);
    y[3] = static_cast<Given*>(context)->products == bad_one ? Real("nan") : y[3];
  };
  Given a = diagonal({1, 2, 3, 4, 5, 6});
  const auto sweep = [&](const auto& work) {
    bad_one = 0;
    a.products = 0;
    CHECK(work().info == 0);
    const int all = a.products;
    for (bad_one = 1; bad_one <= all; ++bad_one) {
      CAPTURE(bad_one);
      a.products = 0;
      const Answer found = work();
      CHECK(found.info == 2);
      CHECK(found.untouched());
    }
  };
  sweep([&] { return eigsh(a, {.k = 2}, breaking); });
  sweep([&] { return eigs(a, {.k = 2}, 0, breaking); });
  sweep([&] { return svds(a, {.k = 2}, breaking); });
  sweep([&] { return lsmr(a, std::vector<Real>(6, Real(1)), 0, 0, breaking); });
}

TEST_CASE("all products are counted") {
  const Digits scope(20);
  Given a = diagonal({1, 2, 3, 4, 5, 6});
  const Real sigma = Real("2.2");
  a.sigma = sigma;
  for (const Real* const shift : {static_cast<const Real*>(nullptr), &sigma}) {
    a.products = 0;
    CHECK(eigsh(a, {.sigma = shift}).products == a.products);
    a.products = 0;
    CHECK(eigs(a, {.sigma = shift}).products == a.products);
  }
  a.products = 0;
  CHECK(svds(a, {}).products == a.products);
}

TEST_CASE("general matrices: arguments, a start, a multiple eigenvalue of several vectors, no end") {
  const Digits scope(20);
  Given a = diagonal({5, 5, 5, 2, 1, -1});
  const std::vector<Real> zeros(6);
  const std::vector<Real> start = {1, 1, 1, 1, 1, 1};
  const Real nan("nan");
  const auto info_of = [&](const Options& options, Integer ldz = 0) {
    const Answer found = eigs(a, options, ldz);
    CHECK(found.untouched() == (found.info != 0 && found.info != 1));
    return found.info;
  };
  CHECK(info_of({.which = "LA"}) == -1);
  CHECK(info_of({.k = 0}) == -3);
  CHECK(info_of({.k = 7}) == -3);
  CHECK(info_of({.sigma = &nan}) == -4);
  CHECK(info_of({.k = 2, .ncv = 3}) == -7);
  CHECK(info_of({.k = 2, .ncv = std::numeric_limits<Integer>::min()}) == -7);
  CHECK(info_of({.k = kLargest, .ncv = 3}) == -3);
  CHECK(info_of({.tol = -1}) == -8);
  CHECK(info_of({.most = 0}) == -9);
  CHECK(info_of({.v0 = zeros.data()}) == -10);
  CHECK(info_of({}, 5) == -13);
  CHECK(info_of({.k = 1, .ncv = 3, .most = 1}) == 1);
  // Three eigenvectors, of which one start vector shows one.
  const Answer found = eigs(a, {.k = 3, .ncv = 5, .v0 = start.data()});
  CHECK(found.info == 0);
  REQUIRE(found.m == 3);
  for (std::size_t j = 0; j < 3; ++j) {
    CHECK(is_near(found.values[j].re, 5));
    CHECK(found.resid[j] < Real(1, -18));
  }
  // Of sizes below 1 no vectors are read.
  Given none{-1, 4, {}};
  CHECK(svds(none, {.v0 = start.data()}).info == -2);
  none.rows = 4;
  none.columns = -1;
  CHECK(svds(none, {.v0 = start.data()}).info == -3);
}

TEST_CASE("what did not converge comes with the failure") {
  const Digits scope(20);
  const SparseMatrix<Real> grid = samples::grid(9, tesk2mp::Storage::general);
  const auto result_of = [](const auto& work) {
    using Result = decltype(work());
    try {
      work();
    } catch (const tesk2mp::NotConverged<Result>& failure) {
      return std::optional<Result>(failure.result);
    }
    return std::optional<Result>();
  };
  tesk2mp::HermitianEigenOptions<Real> options;
  options.basis = 5;
  options.most_products = 6;
  const auto pairs = result_of([&] { return tesk2mp::eigsh(grid, 2, options); });
  REQUIRE(pairs);
  for (std::size_t j = 0; j < 2; ++j) {
    const Real rest = krylov::residual(grid, krylov::column(pairs->vectors, j), pairs->values[j], 20);
    CHECK(rest > Real(1, -10));
    CHECK(fabs(rest - pairs->residuals[j]) < Real(1, -18));
  }
  tesk2mp::EigenOptions<Real> general;
  general.basis = 5;
  general.most_products = 6;
  const auto others = result_of([&] { return tesk2mp::eigs(grid, 2, general); });
  REQUIRE(others);
  CHECK(others->residuals.size() == others->vectors.columns());
  tesk2mp::SingularOptions<Real> singular;
  singular.basis = 5;
  singular.most_products = 6;
  CHECK(result_of([&] { return tesk2mp::svds(grid, 2, singular); }));
  tesk2mp::LsmrOptions least;
  least.most_iterations = 3;
  const auto solution = result_of([&] {
    return tesk2mp::lsmr<Real>(
        81, [&](std::span<const Real> x, std::span<Real> y) { grid.multiply(x, y); },
        [&](std::span<const Real> x, std::span<Real> y) { grid.multiply(x, y); }, std::vector<Real>(81, Real(1)),
        least);
  });
  REQUIRE(solution);
  CHECK(solution->stop == tesk2mp::LsmrStop::exhausted);
  CHECK(krylov::length(solution->x) > 0);
  options.which = tesk2mp::Extreme(9);
  CHECK_THROWS_AS(tesk2mp::eigsh(grid, 2, options), tesk2mp::InvalidArgument);
}

TEST_CASE("values found twice are found, though the next one may never be separated") {
  struct Inner {
    int rounds = 0;
    int found_from;  // in that round the first value is there

    bool expand(Integer /*kept*/) { return ++rounds > 0; }
    static bool decompose() { return true; }
    static bool is_complete() { return false; }
    static bool both_ends() { return false; }
    static Integer size() { return 6; }
    static Integer whole(Integer count) { return count; }
    Real residual(Integer i) const { return i == 1 && rounds >= found_from ? 0 : 1; }
    static Real bound(Integer /*i*/) { return Real(1, -10); }
    static Real key(Integer i) { return -i; }
    static void restart(Integer /*kept*/, bool /*fresh*/) {}
    Integer products() const { return rounds; }
  };
  Inner twice{.found_from = 3};
  CHECK(tesk::thick_restart(twice, 1, 20) == tesk::KrylovEnd::converged);
  Inner once{.found_from = 20};
  CHECK(tesk::thick_restart(once, 1, 20) == tesk::KrylovEnd::not_converged);
}

// Proven exponentials, square roots, logarithms and powers of matrices beside references with three times the digits
// and a hundred, of matrices within the bounds of their data; and cases in which each term of the bounds counts.
#include "references.h"
#include "support/digits.h"
#include "tesk2mp/proven_matrix_functions.hpp"

using namespace spectra;
using proven::BoundedMatrix;
using proven::detail::BoundGrid;
using proven::detail::is_known;

namespace {

/// Random; triangular, with zeros, or with multiple eigenvalues now and then.
template <class T>
struct Given {
  Given(support::Random& random, std::size_t n, bool positive)
      : values(random_matrix<T>(random, n, n)), errors(n, n), within(n, n), is_exact(!random.once_in(3)) {
    const bool triangular = random.once_in(4);
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i < n; ++i) {
        values(i, j) = (triangular && i > j) || random.once_in(6) ? T() : values(i, j);
      }
      if (positive) {
        // Away from the negative axis, mostly.
        values(j, j) = values(j, j) + T(double(n));
      }
      for (std::size_t i = 0; i < n; ++i) {
        errors(i, j) = is_exact ? Real() : fabs(Complex(values(i, j)).re) * Real(1, -int(random.between(4, 30)));
        errors(i, j) = QuarnBound(errors(i, j)).value();
        const support::Digits wide(400);
        within(i, j) = values(i, j) + T(Real(double(random.between(-2, 2))) / 2 * errors(i, j));
      }
    }
  }

  Matrix<T> values;
  Matrix<Real> errors;
  Matrix<T> within;
  bool is_exact;
};

/// The proven function beside the plain one.
template <class T, class Proven, class Plain>
void check_function(const Given<T>& given, int digits, Counts& counts, const Proven& of, const Plain& plain) {
  BoundedMatrix<T> found;
  {
    const support::Digits scope(digits);
    found = given.is_exact ? of(given.values) : of(BoundedMatrix<T>(given.values, given.errors));
  }
  if (!is_known(found)) {
    ++counts.open;
    return;
  }
  const support::Digits wide(3 * (digits + 30) + 100);
  check_near(found, plain(given.within), counts);
}

template <class T>
void check_all(support::Random& random, int digits, Counts& exponentials, Counts& roots) {
  const auto n = std::size_t(random.between(1, 6));
  {
    const support::Digits scope(digits);
    const Given<T> given(random, n, false);
    check_function(
        given, digits, exponentials, [](const auto& a) { return proven::exponential(a); },
        [](const auto& a) { return tesk2mp::expm(a); });
  }
  const support::Digits scope(digits);
  const Given<T> given(random, n, true);
  check_function(
      given, digits, roots, [](const auto& a) { return proven::square_root(a); },
      [](const auto& a) { return tesk2mp::sqrtm(a); });
  check_function(
      given, digits, roots, [](const auto& a) { return proven::logarithm(a); },
      [](const auto& a) { return tesk2mp::logm(a); });
  const Real p = random_number<Real>(random) * 3;
  check_function(
      given, digits, roots, [&](const auto& a) { return proven::power(a, p); },
      [&](const auto& a) { return tesk2mp::fractional_matrix_power(a, p); });
}

BoundGrid grid(const Matrix<Real>& a) { return BoundGrid(a); }

}  // namespace

TEST_CASE("functions of matrices are within their bounds, of exact data and of data with bounds") {
  support::Random random;
  Counts exponentials;
  Counts roots;
  for (const int digits : {1, 2, 16, 50, 200}) {
    for (int round = 0; round < (digits < 20 ? 16 : digits < 100 ? 6 : 1); ++round) {
      CAPTURE(digits);
      CAPTURE(round);
      check_all<Real>(random, digits, exponentials, roots);
      check_all<Complex>(random, digits, exponentials, roots);
    }
  }
  CHECK(exponentials.open == 0);
  CHECK(roots.known > roots.open);
}

TEST_CASE("functions of matrices in closed form") {
  const support::Digits scope(40);
  const auto check = [](const BoundedMatrix<Real>& x, const Matrix<Real>& exact) {
    Counts counts;
    CHECK(proven::fewest_true_digits(x) >= 35);
    check_near(x, exact, counts);
  };
  // Nilpotent: 1 + A + A^2 / 2.
  const Matrix<Real> nilpotent = {{0, 2, 3}, {0, 0, 4}, {0, 0, 0}};
  check(proven::exponential(nilpotent), {{1, 2, 7}, {0, 1, 4}, {0, 0, 1}});
  check(proven::logarithm(Matrix<Real>{{1, 2, 7}, {0, 1, 4}, {0, 0, 1}}), nilpotent);
  check(proven::square_root(Matrix<Real>{{4, 4, 1}, {0, 4, 4}, {0, 0, 4}}), {{2, 1, 0}, {0, 2, 1}, {0, 0, 2}});
  check(proven::square_root(Matrix<Real>{{7, 10}, {15, 22}} /* (1, 2; 3, 4)^2, whose root is another one */),
        tesk2mp::sqrtm(Matrix<Real>{{7, 10}, {15, 22}}));
  check(proven::power(Matrix<Real>{{5, 4}, {4, 5}}, Real("1.5")), {{14, 13}, {13, 14}});
  // A rotation by 2 has the logarithm (0, -2; 2, 0), not one with 2 + 2 pi.
  const Matrix<Real> turn = {{cos(Real(2)), -sin(Real(2))}, {sin(Real(2)), cos(Real(2))}};
  Counts counts;
  check_near(proven::logarithm(turn), tesk2mp::logm(turn), counts);
  // Elements that no path leads to stay exactly 0.
  const auto apart = proven::exponential(Matrix<Real>{{1, 1, 0}, {0, 2, 0}, {0, 0, 3}});
  CHECK((apart(1, 0).error.is_zero() && apart(0, 2).error.is_zero() && apart(2, 1).error.is_zero()));
  CHECK_FALSE(apart(0, 1).error.is_zero());
  const auto path = proven::exponential(Matrix<Real>{{0, 1, 0}, {0, 0, 1}, {0, 0, 0}});
  CHECK(path(0, 2).value > Real("0.4"));
  const auto perhaps = proven::exponential(BoundedMatrix<Real>({{0, 0}, {0, 0}}, {{0, 1}, {0, 0}}));
  CHECK((perhaps(0, 1).error >= QuarnBound::count(1) && perhaps(1, 0).error.is_zero()));
  CHECK(BoundGrid(proven::exponential(Matrix<Real>(3, 3)).errors()).is_zero());
  CHECK(proven::square_root(Matrix<Complex>()).rows() == 0);
  // As many digits as are asked for, far from normal too.
  const auto far = proven::to_digits(30, [] { return proven::exponential(Matrix<Real>{{-60, 1000}, {0, 60}}); });
  CHECK(proven::fewest_true_digits(far) >= 30);
}

TEST_CASE("functions of matrices that there are not, or that the digits do not show") {
  const support::Digits scope(20);
  for (const Matrix<Real>& none :
       {Matrix<Real>{{1, 2}, {3, 4}}, {{0, 1}, {0, 0}}, {{-4, 0}, {0, 1}}, {{1, 2}, {2, 4}}}) {
    CHECK_FALSE(is_known(proven::square_root(none)));
    CHECK_FALSE(is_known(proven::logarithm(none)));
    CHECK_FALSE(is_known(proven::power(none, Real("0.5"))));
  }
  // Of a complex matrix too the principal one has its eigenvalues in the right half-plane.
  CHECK_FALSE(is_known(proven::square_root(Matrix<Complex>{{-4}})));
  const auto near_cut = proven::square_root(Matrix<Complex>{{Complex(-4, Real("1e-9"))}});
  CHECK((is_known(near_cut) && near_cut.values()(0, 0).im > 1));
  // Bounds that reach the cut, or 0.
  CHECK_FALSE(is_known(proven::square_root(BoundedMatrix<Complex>({{Complex(-4, Real("0.1"))}}, {{Real("0.2")}}))));
  CHECK_FALSE(is_known(proven::logarithm(BoundedMatrix<Real>({{1}}, {{Real("1.1")}}))));
  CHECK_FALSE(is_known(proven::exponential(Matrix<Real>{{Real("1e10")}})));
  const Matrix<Real> nan = {{Real("nan")}};
  CHECK_THROWS_AS((void)proven::exponential(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::square_root(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::logarithm(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::power(Matrix<Real>(1, 2), Real(1)), tesk2mp::InvalidArgument);
}

TEST_CASE("terms of functions of matrices") {
  const support::Digits scope(18);
  const auto bound = [](const char* text) { return QuarnBound(Real(text)); };
  // R X + X R = F with R = (1, 3; 0, 1): the elements of X from below and the left, upwards.
  const proven::detail::SylvesterBounds equation(Matrix<Complex>{{1, 3}, {0, 1}});
  const BoundGrid x = equation.solved(grid({{0, 0}, {2, 0}}));
  CHECK(x(1, 0) >= bound("1"));
  CHECK(x(0, 0) >= bound("1.5"));
  CHECK(x(1, 1) >= bound("1.5"));
  CHECK(x(0, 1) >= bound("4.5"));
  // The root of numbers from 0.5 to 1.5.
  const auto root = proven::detail::nearly_triangular_root(BoundedMatrix<Complex>({{1}}, {{Real("0.5")}}));
  REQUIRE(root.has_value());
  CHECK((*root)(0, 0).error >= bound("0.292893"));
  // (1, 10; 0.2, 1) has the eigenvalue 1 - sqrt(2).
  CHECK_FALSE(proven::detail::is_in_right_half(Matrix<Complex>{{1, 10}, {0, 1}}, grid({{0, 0}, {Real("0.2"), 0}})));
  CHECK(proven::detail::is_in_right_half(Matrix<Complex>{{1, 10}, {0, 1}}, grid({{0, 0}, {Real("0.01"), 0}})));
  CHECK_FALSE(proven::detail::is_in_right_half(Matrix<Complex>{{1}}, grid({{1}})));
  CHECK_FALSE(proven::detail::is_in_right_half(Matrix<Complex>{{-1}}, grid({{0}})));
  CHECK_FALSE(proven::detail::is_in_right_half(Matrix<Complex>{{Complex(0, 1)}}, grid({{0}})));
  // What is left out of a series.
  CHECK(proven::detail::exponential_series(BoundedMatrix<Real>({{Real("1e-30")}}, {{0}}))(0, 0).error >=
        bound("1e-30"));
  CHECK(proven::detail::exponential_series(BoundedMatrix<Real>({{0}}, {{Real("0.1")}}))(0, 0).error >=
        bound("0.10517"));
  const Real y("1e-6");
  const auto log = proven::detail::nearly_triangular_logarithm(BoundedMatrix<Complex>({{Complex(1 + y)}}, {{0}}), 1);
  REQUIRE(log.has_value());
  const Complex value = (*log)(0, 0).value;
  const Real error = (*log)(0, 0).error.value();
  const support::Digits wide(60);
  CHECK(fabs(value.re - log1p(Real("1e-6"))) <= error);
  CHECK(proven::detail::row_norm(BoundedMatrix<Real>({{3, 4}}, {{1, 1}})) >= QuarnBound::count(9));
}

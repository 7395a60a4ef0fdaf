// Functions of matrices: closed forms, identities in units of the last place, twice the digits, matrices without.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "quarn/functions.h"
#include "tesk2mp/tesk2mp.hpp"

using tesk2mp::Real;

namespace {

template <class T>
using Dense = tesk2mp::Matrix<T>;

template <class T>
Dense<T> random_matrix(std::size_t n, support::RandomNumbers& random) {
  Dense<T> a(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      random.make(a(i, j));
    }
  }
  return a;
}

/// Norm of the largest column.
template <class T>
Real norm(const Dense<T>& a) {
  return a.rows() == 0 ? Real(0) : tesk2mp::norm(tesk2mp::Norm::one, a);
}
template <class T>
Real distance(const Dense<T>& a, const Dense<T>& b) {
  Dense<T> difference = a;
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      difference(i, j) = a(i, j) - b(i, j);
    }
  }
  return norm(difference);
}

/// |a - b| in units of the last place of `size`, n of them.
template <class T>
double units(const Dense<T>& a, const Dense<T>& b, const Real& size, int digits) {
  const support::Digits finer(2 * digits + 40);
  return ratios::ratio(distance(a, b), size, std::max<Integer>(5, Integer(a.rows())), digits);
}

}  // namespace

TEST_CASE_TEMPLATE("exponentials, roots and logarithms agree with themselves at twice the digits", T, Real, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const std::size_t n : {0, 1, 2, 3, 5, 10}) {
      if (n == 10 && digits != 50) {
        continue;
      }
      CAPTURE(digits);
      CAPTURE(n);
      const support::Digits scope(digits);
      Dense<T> a = random_matrix<T>(n, random);
      const Dense<T> f = tesk2mp::expm(a);
      Dense<T> shifted = a;
      for (std::size_t i = 0; i < n; ++i) {
        shifted(i, i) = shifted(i, i) + T(double(2 * n));
      }
      const Dense<T> root = tesk2mp::sqrtm(shifted);
      const Dense<T> logarithm = tesk2mp::logm(shifted);
      const Dense<T> power = tesk2mp::fractional_matrix_power(shifted, Real("0.3"));
      const support::Digits twice(2 * digits + 40);
      const Dense<T> exact = tesk2mp::expm(a);
      CHECK(units(f, exact, norm(exact), digits) < ratios::kLargestRatio);
      CHECK(units(tesk2mp::multiply(root, root), shifted, norm(root) * norm(root), digits) < ratios::kLargestRatio);
      CHECK(units(logarithm, tesk2mp::logm(shifted), norm(logarithm) + Real(n == 0 ? 1 : 0), digits) <
            10 * ratios::kLargestRatio);
      CHECK(units(power, tesk2mp::fractional_matrix_power(shifted, Real("0.3")), norm(power) + Real(n == 0 ? 1 : 0),
                  digits) < 10 * ratios::kLargestRatio);
      if (n > 0) {
        // exp(log(A)) = A and exp(A) exp(-A) = I, to the last of the digits of the moment but those of conditions.
        const Dense<T> back = tesk2mp::expm(tesk2mp::logm(shifted));
        CHECK(distance(back, shifted) < norm(shifted) * Real(1, 8 - QuarnDigits()));
      }
    }
  }
}

TEST_CASE("closed forms") {
  for (const int digits : {16, 50, 333}) {
    const support::Digits scope(digits);
    const Real unit(1, 1 - digits);
    const Dense<Real> turn = tesk2mp::expm(Dense<Real>{{0, -1}, {1, 0}});
    CHECK(fabs(turn(0, 0) - cos(Real(1))) <= unit);
    CHECK(fabs(turn(1, 0) - sin(Real(1))) <= unit);
    // A nilpotent chain, and one with an eigenvalue.
    const Dense<Real> chain = tesk2mp::expm(tesk2mp::gallery::jordan(4, Real(2)));
    CHECK(fabs(chain(0, 3) - exp(Real(2)) / 6) <= 10 * unit);
    CHECK(chain(3, 0) == 0);
    // A hump: what the squares lose is added to the digits.
    const Dense<Real> hump = tesk2mp::expm(Dense<Real>{{-49, 24}, {-64, 31}});
    CHECK(fabs(hump(0, 0) - (3 * exp(Real(-17)) - 2 * exp(Real(-1)))) <= 10 * unit);
    CHECK(fabs(hump(1, 1) - (3 * exp(Real(-1)) - 2 * exp(Real(-17)))) <= 10 * unit);
    const Dense<Real> large = tesk2mp::expm(Dense<Real>{{0, Real("1e6")}, {Real("-1e6"), 0}});
    CHECK(fabs(large(0, 0) - cos(Real("1e6"))) <= 10 * unit);
    CHECK(fabs(large(0, 1) - sin(Real("1e6"))) <= 10 * unit);
    const Dense<Real> quarter = tesk2mp::logm(Dense<Real>{{0, -1}, {1, 0}});
    CHECK(fabs(quarter(1, 0) - acos(Real(0))) <= 10 * unit);
    CHECK(fabs(quarter(0, 0)) <= 10 * unit);
    const Dense<Real> far = tesk2mp::logm(Dense<Real>{{Real("1e-100"), 0}, {0, Real("1e100")}});
    CHECK(fabs(far(1, 1) - 100 * log(Real(10))) <= 1000 * unit);
    CHECK(fabs(far(0, 0) + 100 * log(Real(10))) <= 1000 * unit);
    // A root of a Jordan block: binomial coefficients of 1/2.
    const Dense<Real> root = tesk2mp::sqrtm(tesk2mp::gallery::jordan(4, Real(1)));
    CHECK(fabs(root(0, 3) - Real("0.0625")) <= unit);
    CHECK(tesk2mp::sqrtm(Dense<Real>(3, 3)) == Dense<Real>(3, 3));
    // Whole powers.
    const Dense<Real> fibonacci = {{1, 1}, {1, 0}};
    if (digits >= 16) {
      // Odd, and no double.
      CHECK(tesk2mp::fractional_matrix_power(Dense<Real>{{-1}}, Real("9007199254740993"))(0, 0) == -1);
    }
    CHECK(tesk2mp::fractional_matrix_power(fibonacci, 60)(0, 1) == Real("1548008755920"));
    CHECK(tesk2mp::fractional_matrix_power(fibonacci, -1) == Dense<Real>{{0, 1}, {1, -1}});
    CHECK(tesk2mp::fractional_matrix_power(fibonacci, 0) == Dense<Real>::identity(2));
    const Dense<Real> cube = tesk2mp::fractional_matrix_power(Dense<Real>{{8, 0}, {0, 27}}, Real(1) / 3);
    CHECK(fabs(cube(1, 1) - 3) <= 10 * unit);
  }
}

TEST_CASE("complex roots of what has no real one") {
  const support::Digits scope(30);
  const Dense<Complex> root = tesk2mp::sqrtm(Dense<Complex>{{-4}});
  CHECK(root(0, 0) == Complex(0, 2));
  const Dense<Complex> logarithm = tesk2mp::logm(Dense<Complex>{{-1}});
  CHECK(fabs(logarithm(0, 0).im - acos(Real(-1))) < Real("1e-28"));
}

TEST_CASE("matrices that have no function, and wrong arguments") {
  using tesk2mp::InvalidArgument;
  using tesk2mp::NumericalFailure;
  CHECK_THROWS_AS((void)tesk2mp::sqrtm(Dense<Real>{{-1}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::sqrtm(Dense<Real>{{0, 1}, {0, 0}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::logm(Dense<Real>{{0}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::logm(Dense<Real>{{1, 2}, {0, -1}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::logm(Dense<Complex>{{1, 2}, {0, 0}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::fractional_matrix_power(Dense<Real>{{0}}, -1), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::fractional_matrix_power(Dense<Real>{{2}}, Real("nan")), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::expm(Dense<Real>{{Real("1e20")}}), NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::expm(Dense<Real>{{Real("nan")}}), InvalidArgument);
  CHECK_THROWS_AS((void)tesk2mp::expm(Dense<Real>(2, 3)), InvalidArgument);
  Real a[4] = {Real("nan"), 0, 0, 1};
  Real f[4] = {7, 7, 7, 7};
  const Real p = 2;
  Integer info = 0;
  QuarnMPX_dexpm_(-1, a, 0, f, 0, &info);
  CHECK(info == -1);
  QuarnMPX_dsqrtm_(2, a, 1, f, 0, &info);
  CHECK(info == -3);
  QuarnMPX_dlogm_(2, a, 2, f, 1, &info);
  CHECK(info == -5);
  QuarnMPX_dpowm_(2, a, 2, &p, f, 1, &info);
  CHECK(info == -6);
  QuarnMPX_dpowm_(2, a, 2, &p, f, 2, &info);
  CHECK(info == 1);
  CHECK(f[0] == 7);
  // In place.
  a[0] = 4;
  QuarnMPX_dsqrtm_(2, a, 2, a, 2, &info);
  CHECK(info == 0);
  CHECK(a[0] == 2);
  CHECK(a[3] == 1);
}

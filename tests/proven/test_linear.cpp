// Proven solutions, inverses, determinants and definiteness. The references are made with three times the digits of the
// proof and a hundred, where the condition number cannot matter, or by closed forms.
#include <doctest/doctest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "support/digits.h"
#include "support/random_number.h"
#include "tesk2mp/tesk2mp.hpp"

using support::random_number;
using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::proven::Bounded;

namespace {

/// Random entries; the last row is the first one and something 10^-closeness times smaller, and the columns' exponents
/// spread.
template <class T>
Matrix<T> matrix_of(support::Random& random, std::size_t n, int closeness, int spread) {
  Matrix<T> a(n, n);
  for (std::size_t j = 0; j < n; ++j) {
    const Real scale(("1e" + std::to_string(random.between(-spread, spread))).c_str());
    for (std::size_t i = 0; i < n; ++i) {
      a(i, j) = random_number<T>(random) * T(scale);
    }
    if (n > 1 && closeness > 0) {
      a(n - 1, j) = a(0, j) + a(n - 1, j) * T(Real(("1e-" + std::to_string(closeness)).c_str()));
    }
  }
  return a;
}

Real distance(const Real& a, const Real& b) { return fabs(a - b); }
Real distance(const Complex& a, const Complex& b) {
  const Complex d = a - b;
  return sqrt(d.re * d.re + d.im * d.im);
}

Matrix<Real> hilbert(std::size_t n) {
  Matrix<Real> a(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      a(i, j) = Real(1) / Real(double(i + j + 1));
    }
  }
  return a;
}

struct Counts {
  int proven = 0;
  int open = 0;
};

/// One system and the determinant of its matrix, beside references.
template <class T>
void check_system(support::Random& random, int digits, std::size_t n, int closeness, int spread, Counts& counts) {
  const support::Digits scope(digits);
  const Matrix<T> a = matrix_of<T>(random, n, closeness, spread);
  std::vector<T> b(n);
  for (T& element : b) {
    element = random_number<T>(random);
  }
  const auto determinant = tesk2mp::proven::determinant(a);
  if (tesk2mp::proven::rank(a).value() < n) {
    ++counts.open;
    CHECK(determinant.error.is_zero());
    CHECK_THROWS_AS((void)tesk2mp::proven::solve(a, b), tesk2mp::NumericalFailure);
    const support::Digits wide(3 * digits + 200);
    CHECK(distance(tesk2mp::determinant(a), T(0)) < Real(1, -2 * digits - 60));
    return;
  }
  const auto x = tesk2mp::proven::solve(a, b);
  const auto inverse = tesk2mp::proven::inverse(a);
  const bool proven = std::all_of(x.begin(), x.end(), [](const auto& e) { return e.error.is_finite(); });
  ++(proven ? counts.proven : counts.open);
  const support::Digits wide(3 * (digits + 10) + 100 + 2 * spread + closeness);
  const tesk2mp::LU<T> factors(a);
  if (factors.singular()) {
    CHECK(!proven);
    CHECK((!determinant.error.is_finite() || distance(determinant.value, T(0)) <= determinant.error.value()));
    return;
  }
  if (determinant.error.is_finite()) {
    CHECK(distance(determinant.value, factors.determinant()) <= determinant.error.value());
  }
  const std::vector<T> exact = factors.solve(b);
  const Matrix<T> exact_inverse = factors.inverse();
  // What the reference may be off by: an exact zero among large elements.
  const auto reference_error = [&](const T* elements, std::size_t count) {
    Real largest = 0;
    for (std::size_t k = 0; k < count; ++k) {
      largest = std::max(largest, distance(elements[k], T(0)));
    }
    return largest * Real(("1e-" + std::to_string(QuarnDigits() / 2)).c_str());
  };
  const Real of_exact = reference_error(exact.data(), n);
  const Real of_inverse = reference_error(exact_inverse.data(), n * n);
  for (std::size_t i = 0; i < n; ++i) {
    CHECK((!x[i].error.is_finite() || distance(x[i].value, exact[i]) <= x[i].error.value() + of_exact));
    for (std::size_t j = 0; j < n; ++j) {
      const auto entry = inverse(i, j);
      CHECK(
          (!entry.error.is_finite() || distance(entry.value, exact_inverse(i, j)) <= entry.error.value() + of_inverse));
    }
  }
}

}  // namespace

TEST_CASE("every bound holds, for condition numbers from 1 to beyond the digits") {
  support::Random random;
  for (const int digits : {1, 2, 3, 9, 16, 50}) {
    Counts tame;
    Counts wild;
    for (int round = 0; round < (digits < 20 ? 40 : 12); ++round) {
      const auto n = std::size_t(random.between(1, 7));
      CAPTURE(digits);
      CAPTURE(n);
      check_system<Real>(random, digits, n, 0, 0, tame);
      check_system<Complex>(random, digits, n, 0, 0, tame);
      check_system<Real>(random, digits, n, int(random.between(0, 2 * digits)), int(random.between(0, 30)), wild);
      check_system<Complex>(random, digits, n, int(random.between(0, 2 * digits)), int(random.between(0, 30)), wild);
    }
    // A proof is the rule; where the digits cannot do it that is said.
    CHECK(tame.proven > 3 * tame.open);
    if (digits > 2) {
      CHECK(wild.proven > 0);
      CHECK(wild.open > 0);
    }
  }
}

TEST_CASE("bounds are nearly attained where rounding the result is the only error") {
  const support::Digits scope(2);
  // 1/8 = 0.125 is a tie at two digits.
  const Matrix<Real> eight = {{8}};
  const auto x = tesk2mp::proven::solve(eight, std::vector<Real>{1});
  CHECK(x[0].value.to_string() == "0.12");
  CHECK(x[0].error.value() >= Real("0.005"));
  CHECK(x[0].error <= QuarnBound::count(51) * QuarnBound::power_of_ten(-4));
  const auto d = tesk2mp::proven::determinant(Matrix<Real>{{5, 0}, {0, 25}});
  CHECK(d.value.to_string() == "120");
  CHECK(d.error.value() >= 5);
  CHECK(d.error <= QuarnBound::count(51) * QuarnBound::power_of_ten(-1));
  const auto z = tesk2mp::proven::solve(Matrix<Complex>{{Complex(8, 0)}}, std::vector<Complex>{Complex(1, -3)});
  CHECK(z[0].error.value() >= Real("0.007"));  // sqrt(2) times 0.005 and 0.005
  CHECK(z[0].error <= QuarnBound::count(72) * QuarnBound::power_of_ten(-4));
}

TEST_CASE("exact data are exact whatever the working digits") {
  Matrix<Real> a;
  {
    const support::Digits scope(80);
    a = hilbert(4);
  }
  // At 20 digits the entries keep their 80.
  const support::Digits scope(20);
  const auto x = tesk2mp::proven::solve(a, std::vector<Real>{1, 0, 0, 0});
  const int exact[] = {16, -120, 240, -140};
  for (std::size_t i = 0; i < 4; ++i) {
    CHECK(x[i].error.is_finite());
    CHECK(fabs(x[i].value - exact[i]) <= x[i].error.value() + Real("1e-70"));
    CHECK(x[i].error.value() <= Real("1e-16"));
  }
}

TEST_CASE("bounds of the data are bounds of what follows") {
  support::Random random;
  for (const int digits : {3, 16, 50}) {
    for (int round = 0; round < 20; ++round) {
      const support::Digits scope(digits);
      const auto n = std::size_t(random.between(1, 6));
      // Of the exact data those that are given are the rounded ones.
      Matrix<Real> exact;
      Matrix<Real> exact_b;
      {
        const support::Digits longer(digits + 30);
        exact = matrix_of<Real>(random, n, int(random.between(0, digits)), 3);
        exact_b = matrix_of<Real>(random, n, 0, 3);
      }
      Matrix<Real> given = exact;
      Matrix<Real> given_b = exact_b;
      for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
          given(i, j) = exact(i, j) * Real(1);
          given_b(i, j) = exact_b(i, j) * Real(1);
        }
      }
      const auto x = tesk2mp::proven::solve(tesk2mp::proven::rounded(given), tesk2mp::proven::rounded(given_b));
      const auto d = tesk2mp::proven::determinant(tesk2mp::proven::rounded(given));
      const support::Digits wide(4 * digits + 200);
      const tesk2mp::LU<Real> factors(exact);
      CHECK((!d.error.is_finite() || fabs(d.value - factors.determinant()) <= d.error.value()));
      if (factors.singular()) {
        CHECK(!x(0, 0).error.is_finite());
        continue;
      }
      const Matrix<Real> solution = factors.solve(exact_b);
      for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
          const auto e = x(i, j);
          CHECK((!e.error.is_finite() || fabs(e.value - solution(i, j)) <= e.error.value()));
        }
      }
    }
  }
  // Just attained: of 2 x = 1 +- 1/4, and of (4 +- 1) x = 1, whose solutions reach 1/3.
  const support::Digits scope(20);
  const tesk2mp::proven::BoundedMatrix<Real> one({{1}}, {{Real("0.25")}});
  const auto x = tesk2mp::proven::solve(Matrix<Real>{{2}}, one)(0, 0);
  CHECK(x.error.value() >= Real("0.125"));
  CHECK(x.error.value() <= Real("0.12500001"));
  const tesk2mp::proven::BoundedMatrix<Real> four({{4}}, {{1}});
  const auto y = tesk2mp::proven::solve(four, std::vector<Real>{1})[0];
  CHECK(y.error.value() >= Real(1) / 3 - Real("0.25"));
  CHECK(y.error.value() <= Real("0.0833334"));
  const auto d = tesk2mp::proven::determinant(four);
  CHECK(d.error.value() >= 1);
  CHECK(d.error.value() <= Real("1.34"));
}

TEST_CASE("determinants of Hilbert matrices, and as many digits as are asked for") {
  // 1 / det is an integer: the product of binomials, L. Collar's formula.
  const auto closed_form = [](int n) {
    Real product(1);
    for (int i = 1; i < n; ++i) {
      product = product * (2 * i + 1);
      for (int k = 0; k < 2; ++k) {
        product = product * binomial(2 * i, i);
      }
    }
    return 1 / product;
  };
  const support::Digits working(20);
  for (const int n : {1, 2, 5, 12, 20}) {
    const auto d = tesk2mp::proven::to_digits(
        40, [&] { return tesk2mp::proven::determinant(tesk2mp::proven::rounded(hilbert(std::size_t(n)))); });
    CHECK(QuarnDigits() == 20);
    const support::Digits wide(400);
    const Real exact = closed_form(n);
    CHECK(tesk2mp::proven::true_digits(d) >= 40);
    CHECK(fabs(d.value - exact) <= d.error.value());
  }
  // Of a matrix that is held the digits stay what they are.
  const Matrix<Real> held = hilbert(20);
  const auto d = tesk2mp::proven::to_digits(30, [&] { return tesk2mp::proven::determinant(held); });
  CHECK(tesk2mp::proven::to_text(d, 8) == "8.8241627e-214");
  {
    const support::Digits wide(400);
    CHECK(fabs(d.value - tesk2mp::determinant(held)) <= d.error.value());
  }
  // Where nothing can be known the limit is reported.
  const Matrix<Real> singular = {{1, 2}, {2, 4}};
  CHECK(tesk2mp::proven::to_digits(10, [&] { return tesk2mp::proven::determinant(singular); }).error.is_zero());
  try {
    (void)tesk2mp::proven::to_digits(
        10, [&] { return tesk2mp::proven::determinant(tesk2mp::proven::rounded(singular)); }, 200);
    FAIL("a determinant 0 has no digits");
  } catch (const tesk2mp::NumericalFailure& failure) {
    CHECK(std::string(failure.what()).find("0 of 10 digits are proven with 200 working digits") != std::string::npos);
  }
  CHECK(QuarnDigits() == 20);
  // Bounds that do not shrink take steps that double, to the limit.
  int steps = 0;
  CHECK_THROWS_AS(
      (void)tesk2mp::proven::to_digits(20,
                                       [&] {
                                         ++steps;
                                         return tesk2mp::proven::Bounded<Real>{1, QuarnBound(Real("1e-16"))};
                                       }),
      tesk2mp::NumericalFailure);
  CHECK(steps <= 15);
}

TEST_CASE("singular matrices, specials and wrong arguments") {
  const Real inf("inf");
  const Real nan("nan");
  const std::vector<Real> ones{1, 1};
  for (const auto& a : {Matrix<Real>{{1, 2}, {2, 4}}, Matrix<Real>{{0, 0}, {0, 0}}}) {
    CHECK_THROWS_AS((void)tesk2mp::proven::solve(a, ones), tesk2mp::NumericalFailure);
    CHECK(tesk2mp::proven::determinant(a).value == 0);
    CHECK(tesk2mp::proven::determinant(a).error.is_zero());
  }
  for (const auto& a : {Matrix<Real>{{nan, 1}, {1, 2}}, Matrix<Real>{{1, 1}, {inf, 2}}}) {
    CHECK_THROWS_AS((void)tesk2mp::proven::solve(a, ones), tesk2mp::InvalidArgument);
    CHECK_THROWS_AS((void)tesk2mp::proven::determinant(a), tesk2mp::InvalidArgument);
    CHECK(!tesk2mp::proven::rank(a));
  }
  CHECK_THROWS_AS((void)tesk2mp::proven::solve(Matrix<Real>{{1, 0}, {0, 1}}, std::vector<Real>{1, nan}),
                  tesk2mp::InvalidArgument);
  CHECK(tesk2mp::proven::to_text(Bounded<Real>{nan}, 10) == "?");
  CHECK(tesk2mp::proven::solve(Matrix<Real>(0, 0), std::vector<Real>{}).empty());
  CHECK(tesk2mp::proven::determinant(Matrix<Real>(0, 0)).value == 1);
  CHECK_THROWS_AS((void)tesk2mp::proven::solve(Matrix<Real>(2, 3), std::vector<Real>{1, 1}), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)tesk2mp::proven::determinant(Matrix<Real>(2, 3)), tesk2mp::InvalidArgument);
  Real one(1);
  Real error;
  Integer info = 0;
  QuarnMPX_dproven_solve_(1, 1, &one, 0, nullptr, 0, &one, 1, nullptr, 0, &one, 1, &error, 1, &info);
  CHECK(info == -4);
  QuarnMPX_dproven_determinant_(-1, &one, 1, nullptr, 0, &one, &error, &info);
  CHECK(info == -1);
  QuarnMPX_dproven_definite_("X", 1, &one, 1, &info, 1);
  CHECK(info == -1);

  // Near the ends of the range: what underflows is accounted for, or nothing is known.
  for (const char* text : {"1e-999999990", "1e999999990", "1e-600000000"}) {
    const Matrix<Real> a = {{Real(text), 0}, {0, 3}};
    for (const auto& e : tesk2mp::proven::solve(a, std::vector<Real>{Real("1e-999999999"), 1})) {
      CHECK((!e.error.is_finite() || e.error > QuarnBound()));
    }
  }
}

TEST_CASE("ranks of exact matrices") {
  support::Random random;
  for (int round = 0; round < 40; ++round) {
    const support::Digits scope(int(random.between(1, 60)));
    const auto m = std::size_t(random.between(1, 8));
    const auto n = std::size_t(random.between(1, 8));
    const auto r = std::size_t(random.between(0, 4));
    const auto check = [&]<class T>(T /*kind*/) {
      const Matrix<T> left = matrix_of<T>(random, std::max(m, r), 0, 20);
      const Matrix<T> right = matrix_of<T>(random, std::max(n, r), 0, 0);
      Matrix<T> a(m, n);
      const support::Digits exact(400);
      for (std::size_t i = 0; i < m; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
          for (std::size_t k = 0; k < r; ++k) {
            a(i, j) = a(i, j) + left(i, k) * right(k, j);
          }
        }
      }
      // A lower bound: the rank at 400 digits, of numbers with at most 160.
      CHECK(tesk2mp::proven::rank(a).value() <= std::min({m, n, r}));
      if (m == n && r < n) {
        CHECK(tesk2mp::proven::determinant(a).error.is_zero());
      } else if (m == n && tesk2mp::LU<T>(a).singular()) {
        CHECK(tesk2mp::proven::rank(a).value() < n);
      }
    };
    check(Real());
    check(Complex());
  }
  // One unit in the last of 60 digits decides.
  const auto long_number = [] {
    const support::Digits exact(60);
    return Real("1.00000000000000000000000000000000000000000000000000000000001");
  };
  const Real near = long_number();
  const support::Digits scope(5);
  CHECK(tesk2mp::proven::rank(Matrix<Real>{{1, 1}, {1, near}}) == 2);
  CHECK(tesk2mp::proven::rank(Matrix<Real>{{1, near}, {1, near}}) == 1);
  CHECK(tesk2mp::proven::rank(Matrix<Complex>{{Complex(1), Complex(0, 1)}, {Complex(0, -1), Complex(1)}}) == 1);
  CHECK(tesk2mp::proven::rank(Matrix<Complex>{{Complex(1), Complex(0, 1)}, {Complex(0, 1), Complex(1)}}) == 2);
  CHECK(tesk2mp::proven::rank(Matrix<Real>{{Real("1e900000000"), 0}, {0, Real("-1e-900000000")}}) == 2);
  // A minor that the first primes divide is not 0.
  {
    const support::Digits whole(10);
    CHECK(tesk2mp::proven::rank(Matrix<Real>{{Real(2147483629.0), 0}, {0, Real(2147483549.0)}}) == 2);
  }
  CHECK(tesk2mp::proven::rank(Matrix<Real>(3, 0)) == 0);
}

TEST_CASE("zeros and signs as text") {
  using tesk2mp::proven::to_text;
  const auto bounded = [](const char* value, const char* error) {
    return Bounded<Real>{Real(value), QuarnBound(Real(error))};
  };
  CHECK(to_text(bounded("2.7182818284", "1e-9"), 20) == "2.718282");
  CHECK(to_text(bounded("2.7182818284", "1e-9"), 3) == "2.72");
  CHECK(to_text(bounded("2.5", "0"), 20) == "2.5");
  CHECK(to_text(bounded("0", "0"), 20) == "0");
  CHECK(to_text(bounded("3e-50", "5e-49"), 20) == "0 (abs < 1e-48)");
  CHECK(to_text(bounded("-3e-50", "1e-50"), 20) == "-1e-50 (no digit is known)");
  // As a value: rounded to the working digits, and 0 for a part without a sign.
  {
    const support::Digits all(40);
    const Bounded<Complex> z{{Real("2.7182818284590452353602874"), Real("1e-30")}, QuarnBound(Real("1e-29"))};
    const support::Digits few(5);
    const Complex known = tesk2mp::proven::known_value(z);
    CHECK(known.re.to_string() == "2.7183");
    CHECK(known.im == 0);
  }
  // The sign of a small part counts by its distance from the largest.
  const std::vector<Bounded<Real>> two = {bounded("1", "1e-40"), bounded("0", "1e-39")};
  CHECK(tesk2mp::proven::fewest_true_digits(two) == 37);
}

TEST_CASE("positive definite, not, or not decided") {
  using tesk2mp::proven::is_positive_definite;
  support::Random random;
  for (const int digits : {2, 16, 50, 333}) {
    const support::Digits scope(digits);
    int undecided = 0;
    for (int round = 0; round < (digits > 100 ? 3 : 20); ++round) {
      const auto n = std::size_t(random.between(1, 9));
      // Diagonally dominant, with rows and columns scaled: definite; and with one diagonal element negated: not.
      Matrix<Complex> a(n, n);
      std::vector<Real> scale(n);
      for (Real& s : scale) {
        s = Real(("1e" + std::to_string(random.between(-200, 200))).c_str());
      }
      for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = j; i < n; ++i) {
          const Complex z = i == j ? Complex(Real(2 * double(n)), 0) : random_number<Complex>(random);
          a(i, j) = z * Complex(scale[i] * scale[j]);
        }
      }
      const auto yes = is_positive_definite(a);
      CHECK(yes.value_or(true));
      undecided += yes ? 0 : 1;
      const auto at = std::size_t(random.between(0, std::int64_t(n) - 1));
      a(at, at) = -a(at, at);
      CHECK(is_positive_definite(a) == std::optional(false));
    }
    CHECK((digits == 2 || undecided == 0));
  }
  // Indefinite with a positive diagonal; singular; upper triangle; not finite.
  const support::Digits scope(30);
  CHECK(is_positive_definite(Matrix<Real>{{1, 2}, {2, 1}}) == std::optional(false));
  CHECK(is_positive_definite(Matrix<Real>{{1, 2}, {99, 5}}, tesk2mp::Triangle::upper) == std::optional(true));
  CHECK(!is_positive_definite(Matrix<Real>{{1, 1}, {1, 1}}).value_or(false));
  CHECK(!is_positive_definite(Matrix<Real>{{Real("nan"), 1}, {1, 1}}));
  CHECK(is_positive_definite(hilbert(12)) == std::optional(true));
  // Definite by its last digit, which is beyond the working digits.
  Matrix<Real> edge{{3, 1}, {1, 1}};
  {
    const support::Digits more(60);
    edge(1, 1) = Real("0.3333333333333333333333333333333333333334");
  }
  CHECK(is_positive_definite(edge) != std::optional(false));
  Matrix<Real> h = hilbert(12);
  h(5, 5) = h(5, 5) - Real("1e-12");
  CHECK(is_positive_definite(h) == std::optional(false));
}

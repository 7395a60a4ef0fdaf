// Proven factors, pseudo-inverses and singular vectors beside references by other methods, with three times the digits
// and a hundred, of matrices within the bounds of their data; and cases in which each term of the bounds counts.
#include <optional>
#include <string>

#include "references.h"
#include "support/digits.h"
#include "tesk2mp/proven_pseudo_inverse.hpp"

using namespace spectra;
using proven::BoundedMatrix;
using proven::detail::BoundGrid;

namespace {

template <class T>
T conjugate(const T& x) {
  return proven::detail::conjugate_of(x);
}
template <class T>
Matrix<T> adjoint(const Matrix<T>& a) {
  return proven::detail::adjoint(a);
}
template <class T>
Matrix<T> product(const Matrix<T>& a, const Matrix<T>& b) {
  return tesk2mp::multiply(a, b);
}

/// Data with bounds, or without, and a matrix within these.
template <class T>
struct Given {
  Given(support::Random& random, std::size_t m, std::size_t n, int closeness)
      : values(random_matrix<T>(random, m, n)), errors(m, n), within(m, n), is_exact(!random.once_in(3)) {
    for (std::size_t j = 0; j < n; ++j) {
      if (m > 1 && closeness > 0) {
        values(m - 1, j) = values(0, j) + values(m - 1, j) * T(Real(1, -closeness));
      }
      for (std::size_t i = 0; i < m; ++i) {
        if (random.once_in(5)) {
          values(i, j) = T();
        }
        take(random, i, j);
      }
    }
  }
  /// Positive definite.
  Given(support::Random& random, std::size_t n) : errors(n, n), within(n, n), is_exact(!random.once_in(3)) {
    Matrix<T> factor = random_matrix<T>(random, n + 2, n);
    for (std::size_t k = 0; k < n * (n + 2); ++k) {
      factor.data()[k] = random.once_in(2) ? T() : factor.data()[k];
    }
    values = product(adjoint(factor), factor);
    for (std::size_t j = 0; j < n; ++j) {
      values(j, j) = T(Complex(values(j, j)).re);
      for (std::size_t i = j; i < n; ++i) {
        values(j, i) = conjugate(values(i, j));
        take(random, i, j);
        errors(j, i) = errors(i, j);
        within(j, i) = conjugate(within(i, j));
      }
    }
  }
  BoundedMatrix<T> bounded() const { return {values, errors}; }

  Matrix<T> values;
  Matrix<Real> errors;
  Matrix<T> within;
  bool is_exact;

 private:
  void take(support::Random& random, std::size_t i, std::size_t j) {
    errors(i, j) = is_exact ? Real() : fabs(Complex(values(i, j)).re) * Real(1, -int(random.between(2, 30)));
    errors(i, j) = QuarnBound(errors(i, j)).value();
    const support::Digits wide(400);
    within(i, j) = values(i, j) + T(Real(double(random.between(-2, 2))) / 2 * errors(i, j));
  }
};

/// call(data) with the exact matrix or that with bounds.
template <class T, class Call>
auto of_given(const Given<T>& given, const Call& call) {
  return given.is_exact ? call(given.values) : call(given.bounded());
}

template <class T>
void check_contains(const BoundedMatrix<T>& x, const Matrix<T>& reference) {
  Counts counts;
  check_near(x, reference, counts);
}

/// P A = L U by elimination, no row interchanged any more.
template <class T>
std::optional<std::pair<Matrix<T>, Matrix<T>>> eliminated(const Matrix<T>& a) {
  const std::size_t m = a.rows();
  const std::size_t n = a.columns();
  const std::size_t inner = std::min(m, n);
  Matrix<T> rest = a;
  Matrix<T> l(m, inner);
  Matrix<T> u(inner, n);
  for (std::size_t k = 0; k < inner; ++k) {
    if (size(Complex(rest(k, k))) <= Real(1, -QuarnDigits() / 2)) {
      return std::nullopt;
    }
    for (std::size_t j = k; j < n; ++j) {
      u(k, j) = rest(k, j);
    }
    for (std::size_t i = k; i < m; ++i) {
      l(i, k) = rest(i, k) / u(k, k);
      for (std::size_t j = k; j < n; ++j) {
        rest(i, j) = rest(i, j) - l(i, k) * u(k, j);
      }
    }
  }
  return std::pair(l, u);
}

/// By Gram and Schmidt, twice, with a positive diagonal.
template <class T>
std::pair<Matrix<T>, Matrix<T>> orthogonalised(const Matrix<T>& a) {
  const std::size_t m = a.rows();
  const std::size_t inner = std::min(m, a.columns());
  Matrix<T> q(m, inner);
  for (std::size_t j = 0; j < inner; ++j) {
    for (std::size_t i = 0; i < m; ++i) {
      q(i, j) = a(i, j);
    }
    for (std::size_t k = 0; k < 2 * j; ++k) {
      T inner_product{};
      for (std::size_t i = 0; i < m; ++i) {
        inner_product = inner_product + conjugate(q(i, k % j)) * q(i, j);
      }
      for (std::size_t i = 0; i < m; ++i) {
        q(i, j) = q(i, j) - q(i, k % j) * inner_product;
      }
    }
    Real norm;
    for (std::size_t i = 0; i < m; ++i) {
      norm += size(Complex(q(i, j))) * size(Complex(q(i, j)));
    }
    const Real scale = 1 / sqrt(norm);
    for (std::size_t i = 0; i < m; ++i) {
      q(i, j) = q(i, j) * T(scale);
    }
  }
  return {q, product(adjoint(q), a)};
}

template <class T>
void check_factors(support::Random& random, int digits, Counts& counts) {
  const auto m = std::size_t(random.between(1, 7));
  const auto n = std::size_t(random.between(1, 7));
  const support::Digits scope(digits);
  const Given<T> given(random, m, n, random.once_in(3) ? int(random.between(1, 2 * digits)) : 0);
  const auto lu = of_given(given, [](const auto& a) { return proven::lu(a); });
  const auto qr = of_given(given, [](const auto& a) { return proven::qr(a); });
  const support::Digits wide(3 * (digits + 20) + 150);
  Matrix<T> permuted(m, n);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < m; ++i) {
      permuted(i, j) = given.within(lu.rows[i], j);
    }
  }
  if (const auto reference = eliminated(permuted)) {
    check_near(lu.l, reference->first, counts, "L");
    check_near(lu.u, reference->second, counts, "U");
  } else if (proven::detail::is_known(lu.l)) {
    // Exact ones of a singular matrix, of which there may be several.
    CHECK(lu.u.errors()(0, 0) == 0);
    check_contains(proven::multiply(lu.l, lu.u), permuted);
  }
  if (proven::detail::is_known(qr.q)) {
    const auto reference = orthogonalised(given.within);
    check_near(qr.q, reference.first, counts, "Q");
    check_near(qr.r, reference.second, counts, "R");
    for (std::size_t j = 0; j < std::min(m, n); ++j) {
      CHECK(Complex(qr.r.values()(j, j)).im == 0);
      CHECK(Complex(qr.r.values()(j, j)).re > 0);
    }
  } else {
    ++counts.open;
  }
}

template <class T>
void check_cholesky(support::Random& random, int digits, Counts& counts) {
  const auto n = std::size_t(random.between(1, 7));
  const support::Digits scope(digits);
  const Given<T> given(random, n);
  const bool upper = random.once_in(2);
  const auto factor = [&](const auto& a) {
    return proven::cholesky(a, upper ? tesk2mp::Triangle::upper : tesk2mp::Triangle::lower);
  };
  BoundedMatrix<T> found;
  try {
    found = of_given(given, factor);
  } catch (const tesk2mp::NumericalFailure&) {
    const support::Digits wide(3 * digits + 150);
    CHECK_FALSE(proven::is_positive_definite(given.values).value_or(false));
    return;
  }
  if (!proven::detail::is_known(found)) {
    ++counts.open;
    return;
  }
  const support::Digits wide(3 * (digits + 20) + 150);
  const auto reference = eliminated(given.within);
  REQUIRE(reference.has_value());
  Matrix<T> l = reference->first;
  for (std::size_t j = 0; j < n; ++j) {
    const Real root = sqrt(Complex(reference->second(j, j)).re);
    for (std::size_t i = 0; i < n; ++i) {
      l(i, j) = i < j ? T() : l(i, j) * T(root);
    }
  }
  check_near(found, upper ? adjoint(l) : l, counts, "chol");
}

/// Small integers, so that any rank occurs.
template <class T>
Matrix<T> integers(support::Random& random, std::size_t m, std::size_t n) {
  Matrix<T> a(m, n);
  for (std::size_t k = 0; k < m * n; ++k) {
    a.data()[k] = T(double(random.between(-1, 1)));
    if constexpr (std::is_same_v<T, Complex>) {
      a.data()[k] = Complex(a.data()[k].re, double(random.between(-1, 1)));
    }
  }
  return a;
}

template <class T>
void check_pseudo_inverse(support::Random& random, int digits, Counts& counts) {
  const auto m = std::size_t(random.between(1, 6));
  const auto n = std::size_t(random.between(1, 6));
  const auto inner = std::size_t(random.between(1, 4));
  const support::Digits scope(digits);
  const Matrix<T> a = random.once_in(2) ? product(integers<T>(random, m, inner), integers<T>(random, inner, n))
                                        : integers<T>(random, m, n);
  const BoundedMatrix<T> inverse = proven::pseudo_inverse(a);
  const BoundedMatrix<T> basis = proven::null_space(a);
  const std::size_t rank = proven::rank(a).value();
  CHECK(basis.columns() == n - rank);
  const Matrix<T> right = integers<T>(random, m, 2);
  const BoundedMatrix<T> shortest = proven::minimum_norm(a, right);
  const support::Digits wide(3 * (digits + 20) + 100);
  const Matrix<T> reference = tesk2mp::pseudo_inverse(a);
  check_near(inverse, reference, counts, "pinv");
  check_near(shortest, product(reference, right), counts, "least squares");
  if (basis.columns() > 0 && proven::detail::is_known(basis)) {
    check_contains(proven::multiply(a, basis), Matrix<T>(m, n - rank));
    check_contains(proven::multiply(proven::detail::adjoint(basis), basis), Matrix<T>::identity(n - rank));
  }
}

template <class T>
void check_bounded_null_space(support::Random& random, int digits, Counts& counts) {
  const auto m = std::size_t(random.between(1, 4));
  const auto n = std::size_t(random.between(1, 6));
  const support::Digits scope(digits);
  const Given<T> given(random, m, n, 0);
  const auto basis = proven::null_space(given.bounded());
  const auto rank = proven::rank(given.bounded());
  ++(rank && proven::detail::is_known(basis) ? counts.known : counts.open);
  if (rank) {
    CHECK(proven::rank(given.within) == rank);
  }
  if (proven::detail::is_known(basis)) {
    const std::size_t count = n - proven::rank(given.within).value();
    REQUIRE(basis.columns() == count);
    check_contains(proven::multiply(given.within, basis), Matrix<T>(m, count));
    check_contains(proven::multiply(proven::detail::adjoint(basis), basis), Matrix<T>::identity(count));
  }
}

template <class T>
void check_singular_system(support::Random& random, int digits, Counts& counts) {
  const auto m = std::size_t(random.between(1, 5));
  const auto n = std::size_t(random.between(1, 5));
  const support::Digits scope(digits);
  const Given<T> given(random, m, n, 0);
  const auto found = of_given(given, [](const auto& a) { return proven::singular_system(a); });
  const support::Digits wide(3 * digits + 150);
  const auto reference = tesk2mp::svd(given.within);
  for (std::size_t j = 0; j < found.values.size(); ++j) {
    CHECK(fabs(found.values[j].value - reference.values[j]) <=
          found.values[j].error.value() + Real(1, -QuarnDigits() / 2) * reference.values[0]);
    const bool known = QuarnBound(found.u.errors()(0, j)).is_finite();
    ++(known ? counts.known : counts.open);
    if (!known) {
      continue;
    }
    // With one factor for both: that which brings u, then v, near the reference.
    Complex turn;
    for (std::size_t i = 0; i < n; ++i) {
      turn = turn + conj(Complex(reference.v(i, j))) * Complex(found.v.values()(i, j));
    }
    turn = turn / Complex(size(turn));
    const auto check = [&](const BoundedMatrix<T>& x, const Matrix<T>& y) {
      for (std::size_t i = 0; i < x.rows(); ++i) {
        // The factor may turn by what all bounds of v say.
        Real slack = Real(1, -QuarnDigits() / 2);
        for (std::size_t k = 0; k < n; ++k) {
          slack += found.v.errors()(k, j);
        }
        CHECK(size(Complex(x.values()(i, j)) - turn * Complex(y(i, j))) <= x.errors()(i, j) + 2 * slack);
      }
    };
    check(found.u, reference.u);
    check(found.v, reference.v);
  }
}

}  // namespace

TEST_CASE("factors are within their bounds, of exact data and of data with bounds") {
  support::Random random;
  Counts factors;
  Counts cholesky;
  for (const int digits : {1, 2, 16, 50, 200}) {
    for (int round = 0; round < (digits < 100 ? 40 : 4); ++round) {
      CAPTURE(digits);
      CAPTURE(round);
      check_factors<Real>(random, digits, factors);
      check_factors<Complex>(random, digits, factors);
      check_cholesky<Real>(random, digits, cholesky);
      check_cholesky<Complex>(random, digits, cholesky);
    }
  }
  CHECK(factors.known > factors.open);
  CHECK(cholesky.known > cholesky.open);
}

TEST_CASE("pseudo-inverses, null spaces and singular vectors are within their bounds, whatever the rank") {
  support::Random random;
  Counts inverses;
  Counts bases;
  Counts systems;
  for (const int digits : {1, 2, 16, 50}) {
    for (int round = 0; round < 20; ++round) {
      CAPTURE(digits);
      CAPTURE(round);
      check_pseudo_inverse<Real>(random, digits, inverses);
      check_pseudo_inverse<Complex>(random, digits, inverses);
      check_bounded_null_space<Real>(random, digits, bases);
      check_bounded_null_space<Complex>(random, digits, bases);
      check_singular_system<Real>(random, digits, systems);
      check_singular_system<Complex>(random, digits, systems);
    }
  }
  CHECK(inverses.known > 10 * inverses.open);
  CHECK(bases.known > bases.open);
  CHECK(systems.known > systems.open);
}

TEST_CASE("factors that fit the digits are exact") {
  const support::Digits scope(5);
  const Matrix<Real> a = {{1, 2}, {4, 6}};
  const auto lu = proven::lu(a);
  CHECK(lu.rows == std::vector<std::size_t>{1, 0});
  CHECK(lu.l.values()(1, 0) == Real("0.25"));
  CHECK(lu.u.values()(1, 1) == Real("0.5"));
  for (const BoundedMatrix<Real>& each :
       {lu.l, lu.u, proven::lu(Matrix<Real>{{1, 2}, {2, 4}}).u, proven::cholesky(Matrix<Real>{{4, 2}, {2, 5}}),
        proven::qr(Matrix<Real>{{3, 0}, {0, 4}}).q, proven::pseudo_inverse(Matrix<Real>(2, 3))}) {
    CHECK(BoundGrid(each.errors()).is_zero());
  }
  // Elements that elimination does not fill are exactly 0, others only nearly.
  const Matrix<Real> arrow = {{3, 0, 1}, {0, 3, 1}, {1, 1, 3}};
  const auto filled = proven::cholesky(arrow);
  CHECK((filled(1, 0).error.is_zero() && !filled(2, 0).error.is_zero() && !filled(2, 1).error.is_zero()));
  const auto turned = proven::lu(Matrix<Real>{{3, 1, 1}, {1, 3, 0}, {1, 0, 3}});
  CHECK((!turned.l(2, 1).error.is_zero() && !turned.u(1, 2).error.is_zero()));
  const auto banded = proven::lu(Matrix<Real>{{3, 1, 0}, {1, 3, 1}, {0, 1, 3}});
  CHECK((banded.l(2, 0).error.is_zero() && banded.u(0, 2).error.is_zero() && !banded.u(2, 2).error.is_zero()));
  // Zeros of A^+ are those of A.
  const Matrix<Real> padded = {{Real("0.1"), 0, Real("0.2")}, {0, 0, 0}, {Real("0.3"), 0, Real("0.6")}};
  const Matrix<Real> third = {{Real("1e-6"), 0, Real("1e-6")}, {0, 0, 0}, {Real("1e-6"), 0, 0}};
  for (const auto& each :
       {proven::pseudo_inverse(padded), proven::pseudo_inverse(BoundedMatrix<Real>(padded, third))}) {
    for (std::size_t k = 0; k < 3; ++k) {
      CHECK((each(1, k).error.is_zero() && each(k, 1).error.is_zero()));
    }
    CHECK_FALSE(each(0, 0).error.is_zero());
  }
  const auto perhaps = proven::lu(BoundedMatrix<Real>({{1, 0}, {0, 1}}, {{0, Real("1e-3")}, {0, 0}}));
  CHECK((perhaps.u(0, 1).error >= QuarnBound(Real("1e-3")) && perhaps.l(1, 0).error.is_zero()));
  // The other triangle is not read.
  CHECK(proven::cholesky(Matrix<Real>{{4, 77}, {2, 5}}).values()(1, 1) == 2);
  CHECK(proven::cholesky(Matrix<Complex>{{4, Complex(0, 2)}, {77, 5}}, tesk2mp::Triangle::upper).values()(0, 1) ==
        Complex(0, 1));
  CHECK(proven::scaled_determinant(Matrix<Real>{{300, 0}, {0, 1}}).exponent == 2);
  CHECK(proven::condition(Matrix<Real>{{2, 0}, {0, 1}}).value == 2);
}

TEST_CASE("what has no factor is refused, or not known") {
  const support::Digits scope(20);
  CHECK_THROWS_WITH_AS((void)proven::cholesky(Matrix<Real>{{1, 2}, {2, 1}}),
                       "DPOTRF: the leading minor of order 2 is not positive", tesk2mp::NumericalFailure);
  CHECK_THROWS_WITH_AS(
      (void)proven::cholesky(BoundedMatrix<Real>({{1, 2, 0}, {2, 1, 0}, {0, 0, 1}}, Matrix<Real>(3, 3))),
      "DPOTRF: the leading minor of order 2 is not positive", tesk2mp::NumericalFailure);
  // Perhaps definite: the data do not say.
  const BoundedMatrix<Real> perhaps({{1, 1}, {1, 1}}, {{0, 0}, {0, Real("1e-5")}});
  CHECK_FALSE(proven::detail::is_known(proven::cholesky(perhaps)));
  // Not definite, but which leading minor is not positive is not known: the second one is where the first one is not.
  CHECK_FALSE(proven::detail::is_known(proven::cholesky(BoundedMatrix<Real>({{1, 0}, {0, -1}}, {{2, 0}, {0, 0}}))));
  CHECK_FALSE(proven::detail::is_known(proven::qr(Matrix<Real>{{1, 2}, {2, 4}}).q));
  CHECK_FALSE(proven::detail::is_known(proven::lu(BoundedMatrix<Real>({{1}}, {{2}})).u));
  const Matrix<Real> nan = {{1, Real("nan")}, {2, 3}};
  CHECK_THROWS_AS((void)proven::lu(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::qr(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::cholesky(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::pseudo_inverse(nan), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::null_space(nan), tesk2mp::InvalidArgument);
  CHECK_FALSE(proven::rank(BoundedMatrix<Real>(nan, {{0, 0}, {0, 0}})).has_value());
  CHECK_FALSE(proven::detail::is_known(proven::null_space(BoundedMatrix<Real>({{Real("inf"), 1}}, {{0, 0}}))));
  // Of rank 1 or 2.
  CHECK_FALSE(proven::rank(BoundedMatrix<Real>({{1, 2}, {2, 4}}, {{0, 0}, {0, Real("1e-9")}})).has_value());
  CHECK(proven::rank(BoundedMatrix<Real>({{1, 0}, {0, 0}}, {{Real("0.1"), 0}, {0, 0}})) == 1U);
  CHECK_THROWS_AS((void)proven::cholesky(Matrix<Real>(2, 3)), tesk2mp::InvalidArgument);
  for (const auto& [m, n] : {std::pair(0, 0), std::pair(0, 2), std::pair(2, 0)}) {
    const Matrix<Complex> empty{std::size_t(m), std::size_t(n)};
    CHECK(proven::lu(empty).rows.size() == std::size_t(m));
    CHECK(proven::qr(empty).r.columns() == std::size_t(n));
    CHECK(proven::pseudo_inverse(empty).rows() == std::size_t(n));
    CHECK(proven::null_space(empty).columns() == std::size_t(n));
    CHECK(proven::singular_system(empty).values.empty());
  }
  // Hermitian as far as the bounds say?
  CHECK_FALSE(proven::unmirrored_element(Matrix<Complex>{{1, Complex(2, 3)}, {Complex(2, -3), 1}}).has_value());
  CHECK(proven::unmirrored_element(Matrix<Complex>{{1, 2}, {2, Complex(1, 1)}}) ==
        std::pair<std::size_t, std::size_t>(1, 1));
  const auto apart = [](const char* error) {
    return BoundedMatrix<Real>({{1, 2}, {3, 1}}, {{0, Real(error)}, {Real(error), 0}});
  };
  CHECK(proven::unmirrored_element(apart("0.49")).has_value());
  CHECK_FALSE(proven::unmirrored_element(apart("0.5")).has_value());
}

TEST_CASE("terms of factors") {
  const support::Digits scope(30);
  const auto bound = [](const char* text) { return QuarnBound(Real(text)); };
  const auto one_by_one = [&](const char* text) {
    return BoundGrid(1, 1, [&](std::size_t, std::size_t) { return bound(text); });
  };
  // (1, g; g, 1) = (1, 0; g, 1)(1, g; 0, 1 - g^2)
  const auto change = proven::detail::factor_change(BoundGrid(Matrix<Real>{{0, Real("0.01")}, {Real("0.01"), 0}}));
  REQUIRE(change.has_value());
  CHECK((*change)(0, 1) >= bound("0.01"));
  CHECK((*change)(1, 1) >= bound("0.0001"));
  CHECK_FALSE(proven::detail::factor_change(one_by_one("0.51")).has_value());
  // Z (1 - 0.5) = 1 + 0.1
  CHECK(proven::detail::right_change(one_by_one("1"), one_by_one("0.1"), one_by_one("0.5"))(0, 0) >= bound("1.2"));
  // (0.1, 0) (1, 0.5; 0, 1)^-1 = (0.1, -0.05)
  CHECK(proven::detail::right_change(BoundGrid(1, 2), BoundGrid(Matrix<Real>{{Real("0.1"), 0}}),
                                     BoundGrid(Matrix<Real>{{0, Real("0.5")}, {0, 0}}))(0, 1) >= bound("0.05"));
  // (1 + 0.2)^2 = 1 + 0.44
  CHECK(proven::detail::gram_change(one_by_one("0"), one_by_one("1"), one_by_one("0.2"))(0, 0) >= bound("0.44"));
  CHECK(proven::detail::gram_change(one_by_one("0.1"), one_by_one("1"), one_by_one("0"))(0, 0) >= bound("0.1"));
  const BoundGrid solved =
      proven::detail::solved(Matrix<Real>{{Real("0.5"), 0}, {3, 1}}, BoundGrid(Matrix<Real>{{1}, {1}}));
  CHECK(solved(0, 0) >= bound("2"));
  CHECK(solved(1, 0) >= bound("7"));
  CHECK(proven::detail::divided(BoundGrid(Matrix<Real>{{1, 1}}), Matrix<Real>{{1, 3}, {0, 1}})(0, 1) >= bound("4"));
  {
    // 1.0000001^2 = 1.00000020000001, of which twelve digits are kept.
    const Matrix<Real> x = {{Real("1.0000001")}};
    const BoundedMatrix<Real> a({{Real("1.0000002")}}, {{0}});
    const support::Digits one(1);
    CHECK(proven::detail::residual(a, x, x)(0, 0) >= bound("1e-14"));
    CHECK(proven::detail::residual(BoundedMatrix<Real>({{1}}, {{Real("0.2")}}), {{1}}, {{1}})(0, 0) >= bound("0.2"));
  }
  // Roots of numbers from 3 to 5.
  const BoundedMatrix<Real> uncertain({{4}}, {{1}});
  CHECK(proven::cholesky(uncertain)(0, 0).error >= bound("0.2679491"));
  CHECK(proven::qr(uncertain).r(0, 0).error >= bound("1"));
  CHECK(proven::lu(uncertain).u(0, 0).error >= bound("1"));
  CHECK(proven::pseudo_inverse(uncertain)(0, 0).error >= bound("0.08333333"));
  // (1, d)^+ = (1, d) / (1 + d^2), of a column and of a row.
  const Matrix<Real> values = {{1}, {0}};
  const Matrix<Real> errors = {{0}, {Real("0.001")}};
  const auto inverse = proven::pseudo_inverse(BoundedMatrix<Real>(values, errors));
  CHECK(inverse(0, 0).error >= bound("9.99e-7"));
  CHECK(inverse(0, 1).error >= bound("0.000999"));
  CHECK(proven::pseudo_inverse(BoundedMatrix<Real>({{1, 0}}, {{0, Real("0.001")}}))(1, 0).error >= bound("0.000999"));
  const auto determinant = proven::scaled_determinant(BoundedMatrix<Real>({{300}}, {{7}}));
  CHECK(determinant.exponent == 2);
  CHECK(determinant.mantissa.error >= bound("0.07"));
}

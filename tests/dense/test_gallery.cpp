// Test matrices by their determinants, inverses and spectra; random ones by their singular values and moments.
#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "quarn/functions.h"
#include "src/kernels/scalar.h"
#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

using namespace tesk2mp;

namespace {

constexpr int kDigits = 60;

/// Within 10^-digits of each other, relative to the expected value or 1.
bool near(const Real& value, const Real& expected, int digits) {
  return fabs(value - expected) <= Real(1, -digits) * fmax(Real(1), fabs(expected));
}

template <class T>
Real largest_difference(const Matrix<T>& a, const Matrix<T>& b) {
  Real largest = 0;
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      largest = fmax(largest, tesk2mp::abs(Complex(a(i, j)) - Complex(b(i, j))));
    }
  }
  return largest;
}

template <class T>
Matrix<T> adjoint(const Matrix<T>& a) {
  Matrix<T> result(a.columns(), a.rows());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      result(j, i) = tesk::conjugate(a(i, j));
    }
  }
  return result;
}

/// The real parts, ascending.
std::vector<Real> real_values(const Matrix<Real>& a) {
  std::vector<Real> values;
  for (const Complex& value : eigenvalues(a)) {
    values.push_back(value.re);
  }
  std::sort(values.begin(), values.end());
  return values;
}

/// x^power, where 0^0 is 1.
Real to_the_power(const Real& x, std::size_t power) {
  Real product = 1;
  for (std::size_t k = 0; k < power; ++k) {
    product *= x;
  }
  return product;
}

std::size_t order_of(const std::string& name) { return name == "godunov" ? 7 : 8; }

/// Numbers that each matrix with parameters that must be given is built from.
std::vector<Real> needed(const std::string& name) {
  const std::size_t n = order_of(name);
  const std::size_t count = name == "companion"                         ? n + 1
                            : name == "hankel"                          ? 2 * n - 1
                            : name == "circulant" || name == "toeplitz" ? n
                                                                        : 0;
  std::vector<Real> numbers;
  for (std::size_t k = 0; k < count; ++k) {
    numbers.emplace_back(int(3 + k * k % 7));
  }
  return numbers;
}

}  // namespace

TEST_CASE("test matrices have their determinants") {
  const support::Digits scope(kDigits);
  for (const std::size_t n : {1, 2, 5, 12}) {
    CAPTURE(n);
    for (const char* name : {"frank", "minij", "moler", "pascal", "triw"}) {
      CAPTURE(name);
      CHECK(near(determinant(gallery::matrix(name, n)), 1, 40));
    }
    const Real half = Real(3) / 4;
    CHECK(near(determinant(gallery::matrix("kms", n)), pow(half, int(n) - 1), kDigits - 4));
    Real fiedler = Real(int(n) - 1) / 2;
    Real vandermonde = 1;
    for (int i = 1; i <= int(n); ++i) {
      fiedler *= i == 1 ? 2 : -2;
      for (int j = i + 1; j <= int(n); ++j) {
        vandermonde *= i - j;
      }
    }
    CHECK(near(determinant(gallery::fiedler(n)), fiedler / 2, kDigits - 4));
    CHECK(near(determinant(gallery::matrix("vandermonde", n)) / vandermonde, 1, kDigits - 12));
  }
  CHECK(near(fabs(determinant(gallery::matrix("hadamard", 8))), 4096, kDigits - 4));
  const Matrix<Real> product = multiply(gallery::inverse_hilbert(12), gallery::hilbert(12));
  CHECK(largest_difference(product, Matrix<Real>::identity(12)) < Real(1, -40));
  CHECK(gallery::inverse_hilbert(3) == Matrix<Real>{{9, -36, 30}, {-36, 192, -180}, {30, -180, 180}});
}

TEST_CASE("test matrices have their eigenvalues") {
  const support::Digits scope(kDigits);
  const std::vector<Real> godunov = real_values(gallery::godunov());
  constexpr int kGodunov[] = {-4, -2, -1, 0, 1, 2, 4};
  for (std::size_t i = 0; i < 7; ++i) {
    CHECK(near(godunov[i], kGodunov[i], kDigits - 25));
  }
  const Real far = 10 * sqrt(Real(10405));
  const Real root = 100 * sqrt(Real(26));
  const std::vector<Real> rosser = symmetric_eigenvalues(gallery::rosser());
  const Real expected[] = {-far, 0, 510 - root, 1000, 1000, 510 + root, 1020, far};
  for (std::size_t i = 0; i < 8; ++i) {
    CHECK(near(rosser[i], expected[i], kDigits - 5));
  }
  for (const std::size_t n : {2, 5, 10}) {
    CAPTURE(n);
    const std::vector<Real> clement = real_values(gallery::clement(n));
    const std::vector<Real> symmetric = symmetric_eigenvalues(gallery::matrix("clement", n, {1}));
    const std::vector<Real> difference = symmetric_eigenvalues(gallery::matrix("tridiagonal", n));
    const std::vector<Real> factors = real_values(gallery::companion(polynomial_from_zeros(clement)));
    for (std::size_t i = 0; i < n; ++i) {
      const int value = 2 * int(i) - int(n) + 1;
      CHECK(near(clement[i], value, kDigits - 8));
      CHECK(near(symmetric[i], value, kDigits - 4));
      CHECK(near(difference[i], 2 - 2 * cospi(Real(int(i) + 1) / (int(n) + 1)), kDigits - 3));
      CHECK(near(factors[i], value, kDigits - 20));
    }
    CHECK(gallery::jordan(n, Complex(1, 2))(0, 1) == Complex(1));
  }
}

TEST_CASE("defective eigenvalues have the digits that there are, and condition numbers that say so") {
  const int digits = 50;
  const support::Digits scope(digits);
  for (const int n : {2, 4, 8}) {
    CAPTURE(n);
    tesk2mp::Random random;
    const auto q = gallery::random_orthogonal<Real>(std::size_t(n), random);
    const auto a =
        tesk2mp::multiply(tesk2mp::multiply(q, gallery::jordan(std::size_t(n), Real(2))), tesk2mp::inverse(q));
    const tesk2mp::EigenSystem system = tesk2mp::eigen(a);
    const tesk2mp::EigenConditions conditions = tesk2mp::eigenvalue_conditions(a);
    for (std::size_t j = 0; j < std::size_t(n); ++j) {
      CHECK(hypot(system.values[j].re - 2, system.values[j].im) < Real(1, 2 - digits / n));
      CHECK(conditions.value[j] < Real(1, 3 - digits + digits / n));
    }
  }
  // No number is more of an eigenvalue than another.
  const auto nilpotent = gallery::jordan(3, Real(0));
  CHECK(tesk2mp::eigen(nilpotent, nilpotent).singular());
  CHECK_THROWS_AS((void)tesk2mp::eigenvalues(nilpotent, nilpotent), tesk2mp::NumericalFailure);
}

TEST_CASE("Chebyshev differentiation takes powers to their derivatives") {
  const support::Digits scope(kDigits);
  for (const std::size_t n : {2, 3, 7, 16}) {
    CAPTURE(n);
    const Matrix<Real> d = gallery::chebyshev(n);
    for (std::size_t power = 0; power < n; ++power) {
      for (std::size_t i = 0; i < n; ++i) {
        const auto x = [&](std::size_t k) { return cospi(Real(int(k)) / (int(n) - 1)); };
        Real sum = 0;
        for (std::size_t j = 0; j < n; ++j) {
          sum += d(i, j) * to_the_power(x(j), power);
        }
        const Real derivative = power == 0 ? Real(0) : int(power) * to_the_power(x(i), power - 1);
        CHECK(near(sum, derivative, kDigits - 5));
      }
    }
    CHECK(!LU(gallery::matrix("chebyshev", n, {1})).singular());
  }
  CHECK(gallery::chebyshev(1) == Matrix<Real>{{0}});
}

TEST_CASE("vectors make their matrices") {
  const std::vector<Real> c = {1, 2, 3};
  CHECK(gallery::toeplitz(c) == Matrix<Real>{{1, 2, 3}, {2, 1, 2}, {3, 2, 1}});
  CHECK(gallery::toeplitz(c, {9, 5, 6}) == Matrix<Real>{{1, 5, 6}, {2, 1, 5}, {3, 2, 1}});
  CHECK(gallery::from_vectors("hankel", c) == Matrix<Real>{{1, 2, 3}, {2, 3, 0}, {3, 0, 0}});
  CHECK(gallery::from_vectors("hankel", c, {9, 5, 6}) == Matrix<Real>{{1, 2, 3}, {2, 3, 5}, {3, 5, 6}});
  CHECK(gallery::from_vectors("circulant", c) == Matrix<Real>{{1, 2, 3}, {3, 1, 2}, {2, 3, 1}});
  CHECK(gallery::vandermonde(c) == Matrix<Real>{{1, 1, 1}, {4, 2, 1}, {9, 3, 1}});
  CHECK(gallery::companion(c) == Matrix<Real>{{-2, -3}, {1, 0}});
  CHECK(gallery::from_vectors("cauchy", std::vector<Real>{1, 3}) ==
        Matrix<Real>{{Real("0.5"), Real("0.25")}, {Real("0.25"), Real(1) / 6}});
  CHECK(gallery::from_vectors("cauchy", std::vector<Real>{1, 3}, {0, 1})(1, 0) == Real(1) / 3);
  CHECK(gallery::from_vectors("companion", std::vector<Real>{7}).rows() == 0);
  CHECK(gallery::matrix("frank", 3) == Matrix<Real>{{3, 2, 1}, {2, 2, 1}, {0, 1, 1}});
  CHECK(gallery::matrix("grcar", 4, {1}) == Matrix<Real>{{1, 1, 0, 0}, {-1, 1, 1, 0}, {0, -1, 1, 1}, {0, 0, -1, 1}});
  CHECK(gallery::wilkinson(3) == Matrix<Real>{{1, 1, 0}, {1, 0, 1}, {0, 1, 1}});
  CHECK_THROWS_AS((void)gallery::toeplitz(c, {1, 2}), InvalidArgument);
}

TEST_CASE("elements are rounded once, real and complex alike") {
  for (const gallery::Entry& entry : gallery::entries()) {
    if (entry.name.starts_with("random")) {
      continue;
    }
    CAPTURE(entry.name);
    const std::size_t n = order_of(entry.name);
    const std::vector<Real> numbers = needed(entry.name);
    // The default corner depends on the digits.
    const std::vector<Real> given = entry.name == "forsythe" ? std::vector<Real>{Real("0.5")} : numbers;
    const support::Digits finest(360);
    const Matrix<Real> exact = gallery::matrix(entry.name, n, given);
    for (const int digits : {1, 2, 16, 50, 333}) {
      CAPTURE(digits);
      support::Digits fewer(digits);
      const Matrix<Real> a = gallery::matrix(entry.name, n, given);
      const Matrix<Complex> z = gallery::matrix(entry.name, n, std::vector<Complex>(given.begin(), given.end()));
      const support::Digits more(360);
      for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
          CHECK(fabs(a(i, j) - exact(i, j)) <= fabs(a(i, j)) * Real("5.1") * Real(1, -digits));
          CHECK(fabs(z(i, j).re - a(i, j)) <= fabs(a(i, j)) * Real("1.1") * Real(1, 1 - digits));
          CHECK(z(i, j).im == 0);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("random matrices have their singular values and eigenvalues", T, Real, Complex) {
  support::Random seeds;
  Random random(0, {1 + Integer(seeds.below(30000)), Integer(seeds.below(32768)), 17, 3});
  for (const int digits : {16, 50, 120}) {
    const support::Digits scope(digits);
    for (const std::size_t n : {1, 2, 9}) {
      CAPTURE(digits);
      CAPTURE(n);
      const Matrix<T> q = gallery::random_orthogonal<T>(n, random);
      const Matrix<T> product = multiply(adjoint(q), q);
      CHECK(largest_difference(product, Matrix<T>::identity(n)) < Real(20, -digits));
      std::vector<Real> values;
      for (std::size_t i = 0; i < n; ++i) {
        values.emplace_back(int(20 - 2 * i));
      }
      if (n > 1) {
        const std::vector<Real> found = singular_values(gallery::random_values<T>(values, random));
        for (std::size_t i = 0; i < n; ++i) {
          CHECK(near(found[i], values[i], digits - 2));
        }
      }
      const Matrix<T> definite = gallery::matrix<T>("random_definite", n, {T(1000.0)}, random);
      const std::vector<Real> found = symmetric_eigenvalues(definite);
      CHECK(near(found.front() * (n == 1 ? 1 : 1000), 1, digits - 6));
      CHECK(near(found.back(), 1, digits - 2));
      CHECK(is_hermitian(gallery::matrix<T>("random_symmetric", n, {}, random)));
    }
  }
  const Matrix<T> sparse = gallery::matrix<T>("random_sparse", 40, {T(0.25)}, random);
  const auto filled = std::count_if(sparse.data(), sparse.data() + 1600, [](const T& x) { return x != T(0.0); });
  CHECK(filled > 280);  // 400 with a standard deviation of 17
  CHECK(filled < 520);
}

TEST_CASE("random vectors have their moments, and a stream goes on") {
  support::Random seeds;
  Random random(0, {1 + Integer(seeds.below(30000)), Integer(seeds.below(32768)), 29, 5});
  constexpr int kCount = 4000;
  Real sum = 0;
  Real squares = 0;
  for (const Real& x : gallery::random_vector(gallery::Distribution::normal, kCount, random)) {
    sum += x;
    squares += x * x;
  }
  CHECK(fabs(sum) < 400);  // 6 standard deviations
  CHECK(fabs(squares - kCount) < 540);
  Real radii = 0;
  for (const Complex& z : gallery::random_vector<Complex>(gallery::Distribution::disc, kCount, random)) {
    CHECK(tesk2mp::abs(z) < 1);
    radii += z.re * z.re + z.im * z.im;
  }
  CHECK(fabs(radii - kCount / 2) < 120);
  for (const Complex& z : gallery::random_vector<Complex>(gallery::Distribution::circle, 10, random)) {
    CHECK(near(tesk2mp::abs(z), 1, 19));
  }
  Random again = random;
  const auto first = gallery::random_vector(gallery::Distribution::symmetric, 3, random);
  CHECK(gallery::random_vector(gallery::Distribution::symmetric, 1, again)[0] == first[0]);
  CHECK(gallery::random_vector(gallery::Distribution::symmetric, 2, again)[1] == first[2]);
  Random other(5);
  CHECK_THROWS_AS((void)gallery::random_vector(gallery::Distribution::unit, 1, other), InvalidArgument);
  CHECK_THROWS_AS((void)gallery::random_vector(gallery::Distribution::disc, 1, random), InvalidArgument);
}

TEST_CASE("wrong arguments of the gallery are refused in order") {
  const Real numbers[] = {0, 1, 2, 3};
  Real a[16];
  Integer zeros[4] = {0, 0, 0, 0};
  const auto outcome = [&](const char* name, Integer n, Integer count, Integer* seed, Integer lda) {
    std::fill(std::begin(a), std::end(a), Real(77));
    Integer info = 99;
    QuarnMPX_dgallery_(name, n, numbers, count, seed, a, lda, &info, 0);
    return info;
  };
  CHECK(outcome("", -1, 0, nullptr, 0) == -1);
  CHECK(outcome("Hilbert", 2, 0, nullptr, 2) == -1);
  CHECK(outcome("hilbert", -1, 3, nullptr, 0) == -2);
  CHECK(outcome("godunov", 3, 0, nullptr, 3) == -2);
  CHECK(outcome("hadamard", 3, 0, nullptr, 3) == -2);
  CHECK(outcome("hilbert", 2, 1, nullptr, 0) == -4);
  CHECK(outcome("random_normal", 2, 0, zeros, 2) == -5);
  CHECK(outcome("random_normal", 2, 0, nullptr, 2) == -5);
  CHECK(outcome("hilbert", 2, 0, nullptr, 1) == -7);
  CHECK(outcome("companion", 3, 4, nullptr, 3) == -3);
  CHECK(outcome("cauchy", 2, 4, nullptr, 2) == 0);
  CHECK(outcome("random_values", 2, 1, zeros, 2) == -5);
  zeros[0] = 1;
  CHECK(outcome("random_values", 2, 1, zeros, 2) == -3);
  CHECK(outcome("hilbert", 0, 0, nullptr, 1) == 0);
  CHECK(a[0] == 77);
  CHECK(outcome("hilbert", 2, 0, nullptr, 3) == 0);
  CHECK(a[2] == 77);
  CHECK(a[4] == Real(1) / 3);
  CHECK(QuarnMPX_gallery_text_(0, 1) == nullptr);
  CHECK(QuarnMPX_gallery_text_(1, 4) == nullptr);
  const std::vector<gallery::Entry> entries = gallery::entries();
  CHECK(std::is_sorted(entries.begin(), entries.end(),
                       [](const gallery::Entry& x, const gallery::Entry& y) { return x.name < y.name; }));
  CHECK_THROWS_AS((void)gallery::matrix("hilbert", 2, {1}), InvalidArgument);
}

TEST_CASE_TEMPLATE("determinants from factors do not overflow on the way", T, Real, Complex) {
  for (const int digits : {1, 20}) {
    const support::Digits scope(digits);
    Matrix<T> a(4, 4);
    const char* sizes[] = {"1e900000000", "-2e900000000", "1e-900000000", "1e-900000000"};
    for (std::size_t i = 0; i < 4; ++i) {
      a(i, 3 - i) = T(Real(sizes[i]));
    }
    CHECK(LU(a).determinant() == T(-2.0));
    a(2, 1) = a(1, 2);
    const LU lu(a);
    CHECK(lu.determinant_parts().mantissa == T(4.0));
    CHECK(lu.determinant_parts().exponent == 1800000000);
    CHECK_THROWS_AS((void)lu.determinant(), NumericalFailure);
    CHECK(LU(Matrix<T>(2, 2)).determinant() == T(0.0));
    CHECK(LU(Matrix<T>()).determinant() == T(1.0));
    // The inverse as well.
    T elements[] = {T(2.0), T(0.0), T(0.0), T(4.0)};
    T det[2];
    T work[2];
    Integer rows[] = {1, 2};
    if constexpr (std::is_same_v<T, Real>) {
      QuarnMPX_dgedi_(elements, 2, 2, rows, det, work, 11);
    } else {
      QuarnMPX_zgedi_(elements, 2, 2, rows, det, work, 11);
    }
    CHECK(det[0] == T(8.0));
    CHECK(elements[0] == T(0.5));
  }
}

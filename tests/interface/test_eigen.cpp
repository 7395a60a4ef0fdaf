// Eigenvalues through the C++ interface.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "interface/samples.h"

using namespace front;
using namespace tesk2mp;

namespace {

/// Badly scaled and with isolated eigenvalues, so that balancing has all its kinds of work.
Matrix<Real> awkward(Samples& samples) {
  Matrix<Real> a = samples.matrix<Real>(8, 8);
  for (std::size_t i = 0; i < 8; ++i) {
    a(7, i) = i == 7 ? 3 : 0;
    a(i, 2) = i == 2 ? -2 : 0;
    a(4, i) = a(4, i) * Real(1, 12);
    a(i, 5) = a(i, 5) * Real(1, -9);
  }
  return a;
}

/// A diagonal matrix of the eigenvalues.
Matrix<Complex> diagonal(const std::vector<Complex>& values) {
  Matrix<Complex> d(values.size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    d(i, i) = values[i];
  }
  return d;
}

/// |a - b| beside |a|, in units of 10^-digits.
template <class A, class B>
double relative(const Matrix<A>& a, const Matrix<B>& b) {
  return distance(a, b) / FloatToDouble(norm(Norm::largest, a));
}

constexpr double kUnits = 1e5;

}  // namespace

TEST_CASE("Hessenberg and Schur forms are orthogonally similar to the matrix") {
  const Digits digits(40);
  Samples samples;
  const Matrix<Real> a = samples.matrix<Real>(9, 9);
  const Hessenberg reduced = hessenberg(a);
  const Schur form = schur(a);
  for (const auto& [q, middle, profile] : {std::tuple{reduced.q, reduced.h, 1}, std::tuple{form.z, form.t, 1}}) {
    CHECK(distance(multiply(q, adjoint(q)), Matrix<Real>::identity(9)) < kUnits);
    CHECK(distance(multiply(multiply(q, middle), adjoint(q)), a) < kUnits);
    for (std::size_t j = 0; j < 9; ++j) {
      for (std::size_t i = j + 1 + std::size_t(profile); i < 9; ++i) {
        CHECK(middle(i, j) == 0);
      }
    }
  }
  CHECK(norm(Norm::one, reduced.h) == hessenberg_norm(Norm::one, reduced.h));

  Matrix<Real> dirty = reduced.h;
  dirty(8, 0) = Real("nan");
  CHECK(hessenberg_norm(Norm::one, dirty) == norm(Norm::one, reduced.h));
  CHECK(hessenberg_eigenvalues(dirty) == hessenberg_eigenvalues(reduced.h));
  CHECK(schur({dirty, reduced.q}).t == form.t);
  const EigenSystem system = eigen(form);
  CHECK(relative(multiply(widen(a), system.right), multiply(system.right, diagonal(system.values))) < 1e12);
  CHECK(eigen_conditions(form).vector == eigen_conditions(a).vector);
}

TEST_CASE("eigenvectors, left and right, of matrices that need balancing and of others") {
  const Digits digits(40);
  Samples samples;
  for (const Matrix<Real>& a : {samples.matrix<Real>(7, 7), awkward(samples), Matrix<Real>{{0, 1}, {-1, 0}}}) {
    const EigenSystem system = eigen(a);
    const Matrix<Complex> values = diagonal(system.values);
    CHECK(relative(multiply(widen(a), system.right), multiply(system.right, values)) < 1e12);
    CHECK(relative(multiply(adjoint(system.left), widen(a)), multiply(values, adjoint(system.left))) < 1e12);
    for (std::size_t j = 0; j < a.columns(); ++j) {
      CHECK(fabs(norm(Norm::frobenius, system.right.view().block(0, j, a.rows(), 1)) - 1) < Real(1, 2 - 40));
    }
  }
}

TEST_CASE("eigenvalues that are known") {
  const Digits digits(50);
  std::vector<Complex> values = eigenvalues(Matrix<Real>{{2, 0, 0}, {5, 0, 1}, {7, -1, 0}});
  std::sort(values.begin(), values.end(),
            [](const Complex& a, const Complex& b) { return a.re < b.re || (a.re == b.re && a.im < b.im); });
  CHECK(values == std::vector<Complex>{Complex(0, -1), Complex(0, 1), Complex(2, 0)});

  Samples samples;
  const Matrix<Real> a = awkward(samples);
  Real trace = 0;
  Complex sum(0);
  for (const Complex& value : eigenvalues(a)) {
    sum = sum + value;
  }
  for (std::size_t i = 0; i < a.rows(); ++i) {
    trace += a(i, i);
  }
  CHECK(fabs(sum.re - trace) < norm(Norm::one, a) * Real(1, 2 - 50));
  CHECK(sum.im == 0);
}

TEST_CASE("condition numbers of a normal matrix and of one that is nearly defective") {
  const Digits digits(40);
  const EigenConditions good = eigen_conditions(Matrix<Real>{{1, 0}, {0, 3}});
  CHECK(good.value == std::vector<Real>{1, 1});
  for (const Real& gap : good.vector) {
    CHECK(fabs(gap - 2) < Real(1, -38));
  }
  const EigenConditions bad = eigen_conditions(Matrix<Real>{{1, 1000}, {0, Real("1.001")}});
  CHECK(bad.value[0] < Real(1, -5));
  Samples samples;
  const Matrix<Real> a = samples.matrix<Real>(6, 6);
  CHECK(eigenvalue_conditions(a).value == eigen_conditions(a).value);
  CHECK(eigenvalue_conditions(a).vector.empty());
}

TEST_CASE("eigenvalue functions refuse what is not finite, wherever it stands; norms and roots keep a NaN") {
  for (const char* bad : {"nan", "inf", "-inf"}) {
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        Matrix<Real> a = {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}};
        a(i, j) = Real(bad);
        CHECK_THROWS_AS(eigenvalues(a), InvalidArgument);
        CHECK_THROWS_AS(eigen(a), InvalidArgument);
        CHECK_THROWS_AS(schur(a), InvalidArgument);
        CHECK_THROWS_AS(eigenvalue_conditions(a), InvalidArgument);
        for (const Norm kind : {Norm::largest, Norm::one, Norm::infinity, Norm::frobenius}) {
          CHECK(isnan(norm(kind, a)) == isnan(Real(bad)));
        }
      }
    }
  }
  const Complex root = sqrt(Complex(Real("nan"), Real(0)));
  CHECK((isnan(root.re) && isnan(root.im)));
}

TEST_CASE("matrices of tiny and huge numbers, and chains of equal eigenvalues") {
  for (const int exponent : {-999999990, -134217726, 134217726, 999999980}) {
    const Real unit(1, exponent);
    const std::vector<Complex> values = eigenvalues(Matrix<Real>{{1 * unit, 2 * unit}, {3 * unit, 4 * unit}});
    const Real larger = (5 + sqrt(Real(33))) / 2;
    CHECK(std::min(fabs(values[0].re / unit - larger), fabs(values[1].re / unit - larger)) < Real(1, -18));
  }
  Matrix<Real> shift(12, 12);
  for (std::size_t i = 0; i + 1 < 12; ++i) {
    shift(i, i + 1) = 1;
  }
  const EigenSystem system = eigen(shift);
  for (std::size_t j = 0; j < 12; ++j) {
    for (std::size_t i = 0; i < 12; ++i) {
      CHECK((isfinite(system.right(i, j).re) && isfinite(system.left(i, j).re)));
    }
  }
}

TEST_CASE("zeros of a quartic") {
  const Digits digits(40);
  // (z - 1)(z - 2)(z^2 + 4)
  for (const Zero& zero : quartic_zeros(1, -3, 6, -12, 8)) {
    const Complex z = zero.value;
    const Complex rest = (z - Complex(1)) * (z - Complex(2)) * (z * z + Complex(4));
    CHECK(abs(rest) < Real(1, 4 - 40));
    CHECK(zero.error > 0);
    CHECK(zero.error < Real(1, 4 - 40));
  }
}

// Spectra through the C++ interface: shapes, options and failures; the tests of the library judge the digits.
#include <doctest/doctest.h>

#include <algorithm>

#include "tesk2mp/tesk2mp.hpp"

using namespace tesk2mp;

TEST_CASE_TEMPLATE("symmetric eigenvalues and eigenvectors", T, Real, Complex) {
  const Matrix<T> a = {{0, 3}, {3, 8}};
  const SymmetricEigenSystem<T> system = symmetric_eigen(a);
  CHECK(system.values == std::vector<Real>{-1, 9});
  const Matrix<T> image = multiply(a, system.vectors);
  CHECK(tesk2mp::abs(Complex(image(0, 1)) - Complex(9) * Complex(system.vectors(0, 1))) < Real(1, -18));
  // One triangle is read.
  const Matrix<T> half = {{0, T(Real("nan"))}, {3, 8}};
  CHECK(symmetric_eigenvalues(half) == system.values);
  CHECK_THROWS_AS((void)symmetric_eigenvalues(half, Triangle::upper), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(Matrix<T>(2, 3)), InvalidArgument);
  CHECK(symmetric_eigen(Matrix<T>()).values.empty());
  CHECK(is_hermitian(a));
  CHECK(!is_hermitian(half));
  CHECK(!is_hermitian(Matrix<T>{{1, 2}, {3, 4}}));
}

TEST_CASE("a Hermitian matrix has its conjugates in the other triangle") {
  const Matrix<Complex> a = {{Complex(1), Complex(0, 2)}, {Complex(0, -2), Complex(1)}};
  CHECK(is_hermitian(a));
  CHECK(symmetric_eigenvalues(a, Triangle::upper) == std::vector<Real>{-1, 3});
  CHECK(!is_hermitian(Matrix<Complex>{{Complex(1, 1)}}));
}

TEST_CASE_TEMPLATE("eigenvalues beside a definite matrix", T, Real, Complex) {
  const Matrix<T> a = {{2, -1}, {-1, 2}};
  const Matrix<T> b = {{4, 0}, {0, 4}};
  const SymmetricEigenSystem<T> system = symmetric_eigen(a, b);
  CHECK(system.values == std::vector<Real>{Real("0.25"), Real("0.75")});
  CHECK(tesk2mp::abs(Complex(system.vectors(0, 0) * system.vectors(0, 0)) - Complex(Real("0.125"))) < Real(1, -18));
  CHECK(symmetric_eigenvalues(a, b, DefiniteProblem::bax_x, Triangle::upper) == std::vector<Real>{4, 12});
  CHECK(symmetric_eigenvalues(Matrix<T>(), Matrix<T>()).empty());
  CHECK_THROWS_AS((void)symmetric_eigen(a, Matrix<T>(1, 1)), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(a, Matrix<T>{{1, 0}, {T(Real("nan")), 1}}), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(a, Matrix<T>{{1, 2}, {2, 1}}), NumericalFailure);
}

TEST_CASE_TEMPLATE("eigenvalues of pencils", T, Real, Complex) {
  const Matrix<T> a = {{0, 2, 0}, {-2, 0, 0}, {0, 0, 3}};
  const Matrix<T> b = {{1, 0, 0}, {0, 1, 0}, {0, 0, 0}};
  const PencilEigenSystem system = eigen(a, b);
  const std::vector<Complex> values = system.values();
  REQUIRE(values.size() == 3);
  CHECK(std::count_if(values.begin(), values.end(), [](const Complex& w) { return isinf(w.re); }) == 1);
  for (std::size_t j = 0; j < 3; ++j) {
    if (system.beta[j] != 0) {
      CHECK(tesk2mp::abs(values[j] * values[j] + Complex(4)) < Real(1, -18));
      const Complex residual = Complex(2) * system.right(1, j) - values[j] * system.right(0, j);
      CHECK(tesk2mp::abs(residual) < Real(1, -18));
    }
  }
  CHECK(eigenvalues(a, b).size() == 3);
  CHECK(eigenvalues(Matrix<T>(), Matrix<T>()).empty());
  CHECK(eigen(b, b).singular());
  CHECK_THROWS_AS((void)eigenvalues(b, b), NumericalFailure);
  CHECK_THROWS_AS((void)eigenvalues(a, Matrix<T>(2, 2)), InvalidArgument);
  CHECK_THROWS_AS((void)eigenvalues(Matrix<T>{{1}}, Matrix<T>{{T(Real("nan"))}}), InvalidArgument);
}

TEST_CASE_TEMPLATE("chosen eigenvalues", T, Real, Complex) {
  const Matrix<T> a = {{1, 0, 0}, {0, 5, 0}, {0, 0, 3}};
  const SymmetricEigenSystem<T> top = symmetric_eigen(a, EigenIndices{1, 3});
  CHECK(top.values == std::vector<Real>{3, 5});
  CHECK(top.vectors.columns() == 2);
  CHECK(top.vectors(2, 0) == T(1));
  CHECK(symmetric_eigen(a, EigenInterval{1, 3}, Triangle::upper).values == std::vector<Real>{Real(3)});
  CHECK(symmetric_eigenvalues(a, EigenIndices{0, 1}) == std::vector<Real>{Real(1)});
  CHECK(symmetric_eigenvalues(a, EigenInterval{6, 7}).empty());
  CHECK_THROWS_AS((void)symmetric_eigen(a, EigenIndices{1, 4}), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(a, EigenIndices{1, 1}), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(a, EigenInterval{1, 1}), InvalidArgument);
  CHECK_THROWS_AS((void)symmetric_eigen(Matrix<T>(2, 3), EigenInterval{1, 2}), InvalidArgument);
}

TEST_CASE_TEMPLATE("singular values and their factors", T, Real, Complex) {
  const Matrix<T> a = {{0, 2, 0}, {1, 0, 0}};
  const SingularSystem<T> system = svd(a);
  CHECK(system.values == std::vector<Real>{2, 1});
  CHECK(singular_values(a) == system.values);
  CHECK(system.u.rows() == 2);
  CHECK(system.v.rows() == 3);
  CHECK(system.v.columns() == 2);
  const Matrix<T> image = multiply(a, system.v);
  CHECK(tesk2mp::abs(Complex(image(0, 0)) - Complex(2) * Complex(system.u(0, 0))) < Real(1, -18));
  CHECK(singular_values(Matrix<T>(0, 3)).empty());
  CHECK_THROWS_AS((void)svd(Matrix<T>{{T(Real("inf"))}}), InvalidArgument);
}

TEST_CASE("eigenvalues and eigenvectors of a complex matrix") {
  const Matrix<Complex> a = {{Complex(0, 3), 1}, {0, 2}};
  CHECK(eigenvalues(a) == std::vector<Complex>{Complex(0, 3), 2});
  const EigenSystem system = eigen(a);
  CHECK(system.right(0, 0) == Complex(1));
  CHECK(system.left(1, 1) == Complex(1));
  CHECK_THROWS_AS((void)eigenvalues(Matrix<Complex>(2, 3)), InvalidArgument);
  CHECK_THROWS_AS((void)eigen(Matrix<Complex>{{Complex(Real("nan"))}}), InvalidArgument);
}

TEST_CASE("polynomials") {
  const std::vector<Real> a = {1, -6, 11, -6};
  CHECK(polynomial_from_zeros(std::vector<Real>{1, 2, 3}) == a);
  const std::vector<Zero> zeros = polynomial_zeros(a);
  REQUIRE(zeros.size() == 3);
  CHECK(zeros[0].value == Complex(3));
  CHECK(zeros[0].error < Real(1, -18));
  CHECK(polynomial_value(a, Real(4)) == 6);
  CHECK(polynomial_value(std::vector<Complex>{1, 0, 1}, Complex(0, 1)) == Complex(0));
  const PolynomialQuotient<Real> result = polynomial_quotient(a, std::vector<Real>{1, -2});
  CHECK(result.quotient == std::vector<Real>{1, -4, 3});
  CHECK(result.remainder == std::vector<Real>{0});
  CHECK_THROWS_AS((void)polynomial_zeros(std::vector<Real>()), InvalidArgument);
  CHECK_THROWS_AS((void)polynomial_zeros(std::vector<Real>{0, 1}), InvalidArgument);
  CHECK_THROWS_AS((void)polynomial_zeros(std::vector<Complex>{1, Complex(Real("nan"))}), InvalidArgument);
  CHECK_THROWS_AS((void)polynomial_quotient(a, std::vector<Real>{0, 1}), InvalidArgument);
}

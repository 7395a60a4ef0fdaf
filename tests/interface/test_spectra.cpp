// Spectra through the C++ interface: shapes, options and failures; the tests of the library judge the digits.
#include <doctest/doctest.h>

#include "tesk2mp/tesk2mp.hpp"

using namespace tesk2mp;

TEST_CASE_TEMPLATE("symmetric eigenvalues and eigenvectors", T, Real, Complex) {
  const Matrix<T> a = {{0, 3}, {3, 8}};
  const SymmetricEigenSystem<T> system = symmetric_eigen(a);
  CHECK(system.values == std::vector<Real>{-1, 9});
  const Matrix<T> image = multiply(a, system.vectors);
  CHECK(abs(Complex(image(0, 1)) - Complex(9) * Complex(system.vectors(0, 1))) < Real(1, -18));
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

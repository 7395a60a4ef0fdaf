// Eigen's decompositions over QuarnFloat: residuals within a few units of the working precision.
#include <doctest/doctest.h>

#include <Eigen/Dense>
#include <Eigen/Sparse>
#include <random>

#include "tesk2mp/eigen_support.hpp"

using Matrix = Eigen::Matrix<QuarnFloat, Eigen::Dynamic, Eigen::Dynamic>;
using Vector = Eigen::Matrix<QuarnFloat, Eigen::Dynamic, 1>;

namespace {

Matrix sample(int n) {
  std::mt19937 random(17);
  Matrix a(n, n);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      a(i, j) = QuarnFloat(int(random() % 2001) - 1000) / QuarnFloat(997);
    }
  }
  return a;
}

/// In units of the working precision's epsilon.
double units(const QuarnFloat& x) { return FloatToDouble(x / quarn::Precision10::epsilon()); }

}  // namespace

TEST_CASE("Eigen's decompositions work at every precision") {
  for (const int digits : {10, 60, 150}) {
    QuarnSetDigits(digits);
    const int n = 8;
    const Matrix a = sample(n);
    const Vector b = a * Vector::Ones(n);
    CHECK(units((a.partialPivLu().solve(b) - Vector::Ones(n)).norm()) < 1e4);
    CHECK(units((a.householderQr().solve(b) - Vector::Ones(n)).norm()) < 1e4);
    CHECK(a.fullPivLu().rank() == n);
    const Matrix symmetric = a + a.transpose();
    const Eigen::SelfAdjointEigenSolver<Matrix> eigen(symmetric);
    REQUIRE(eigen.info() == Eigen::Success);
    const Matrix& v = eigen.eigenvectors();
    CHECK(units((symmetric * v - v * eigen.eigenvalues().asDiagonal()).norm()) < 1e3);
    const Eigen::JacobiSVD<Matrix> svd(a, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const Matrix product = svd.matrixU() * svd.singularValues().asDiagonal() * svd.matrixV().transpose();
    CHECK(units((product - a).norm()) < 1e3);
  }
}

TEST_CASE("Eigen's sparse solvers work") {
  QuarnSetDigits(40);
  const int n = 30;
  Eigen::SparseMatrix<QuarnFloat> a(n, n);
  for (int i = 0; i < n; ++i) {
    a.insert(i, i) = 4;
    if (i > 0) {
      a.insert(i, i - 1) = -1;
      a.insert(i - 1, i) = -1;
    }
  }
  a.makeCompressed();
  const Vector b = a * Vector::Ones(n);
  const Eigen::SimplicialLLT<Eigen::SparseMatrix<QuarnFloat>> cholesky(a);
  CHECK(units((cholesky.solve(b) - Vector::Ones(n)).norm()) < 100);
  Eigen::SparseLU<Eigen::SparseMatrix<QuarnFloat>> lu(a);
  CHECK(units((lu.solve(b) - Vector::Ones(n)).norm()) < 100);
  Eigen::ConjugateGradient<Eigen::SparseMatrix<QuarnFloat>> gradients(a);
  CHECK(units((gradients.solve(b) - Vector::Ones(n)).norm()) < 1000);
}

// Views reach the elements that they name, and kernels see them so.
#include <doctest/doctest.h>

#include <array>
#include <vector>

#include "front/samples.h"

using namespace front;
using tesk2mp::MatrixView;
using tesk2mp::Op;
using tesk2mp::VectorView;

TEST_CASE("rows, columns, blocks and reversed vectors name the caller's elements") {
  Matrix<Real> a = {{11, 12, 13}, {21, 22, 23}, {31, 32, 33}, {41, 42, 43}};
  CHECK(a.view().row(1).to_vector() == std::vector<Real>{21, 22, 23});
  CHECK(a.view().column(2).to_vector() == std::vector<Real>{13, 23, 33, 43});
  const MatrixView<Real> block = a.view().block(1, 1, 2, 2);
  CHECK(block(1, 0) == 32);
  block(1, 0) = 5;
  CHECK(a(2, 1) == 5);
  CHECK(Matrix<Real>(block) == Matrix<Real>{{22, 23}, {5, 33}});

  std::array<Real, 3> x = {1, 2, 3};
  const VectorView<Real> backwards(&x[2], 3, -1);
  CHECK(backwards.to_vector() == std::vector<Real>{3, 2, 1});
  const VectorView<const Real> reading(backwards);
  CHECK(reading[0] == 3);
}

TEST_CASE_TEMPLATE("kernels take rows, blocks and reversed vectors like whole ones", T, Real, Complex) {
  Samples samples;
  const Matrix<T> a = samples.matrix<T>(7, 6);
  const Matrix<T> store = samples.matrix<T>(3, 9);
  const std::vector<T> copied = store.view().row(1).to_vector();
  const VectorView<const T> row(&store(1, 0), 4, 3);
  const VectorView<const T> reversed(&store(1, 3), 4, -3);
  const auto block = a.view().block(2, 1, 5, 4);

  const std::vector<T> forward(copied.begin(), copied.begin() + 4);
  const std::vector<T> backward(forward.rbegin(), forward.rend());
  CHECK(tesk2mp::multiply(block, row) == tesk2mp::multiply(Matrix<T>(block), forward));
  CHECK(tesk2mp::multiply(block, reversed) == tesk2mp::multiply(Matrix<T>(block), backward));
  CHECK(tesk2mp::norm(tesk2mp::Norm::one, block) == tesk2mp::norm(tesk2mp::Norm::one, Matrix<T>(block)));
}

TEST_CASE("nothing is a vector and a matrix too") {
  const Matrix<Real> none;
  CHECK(tesk2mp::norm(tesk2mp::Norm::one, none) == 0);
  CHECK(tesk2mp::multiply(none, std::vector<Real>()).empty());
  CHECK(tesk2mp::determinant(none) == 1);
  CHECK(tesk2mp::eigenvalues(none).empty());
  CHECK(tesk2mp::inverse(none).rows() == 0);
  CHECK(tesk2mp::rank({}).empty());
  CHECK(tesk2mp::norm2(std::vector<Real>()) == 0);
}

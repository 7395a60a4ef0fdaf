// Views reach the elements that they name, and kernels see them so.
#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "interface/samples.h"

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

TEST_CASE_TEMPLATE("what is read may overlap what is written", T, Real, Complex) {
  using namespace tesk2mp;
  Samples samples;
  const Matrix<T> given = samples.matrix<T>(5, 5);
  const std::vector<T> x = samples.vector<T>(5);
  const Diagonal unit = Diagonal::unit;
  using Work = void (*)(const MatrixView<T>& target, const Matrix<T>& source, const MatrixView<const T>& read);
  // Each works on a target that is the matrix it reads, and must do what it does with a copy of it.
  const Work table[] = {
      [](auto& a, const auto&, auto& read) { gemv(Op::none, 2, read, read.column(1), 3, a.column(1)); },
      [](auto& a, const auto&, auto& read) { gemv(Op::transpose, 2, read, read.row(2), 0, a.column(4)); },
      [](auto& a, const auto&, auto& read) { trmv(Triangle::upper, Op::none, unit, read, a.column(2)); },
      [](auto& a, const auto&, auto& read) { trsv(Triangle::lower, Op::transpose, unit, read, a.row(0)); },
      [](auto& a, const auto&, auto& read) { ger(2, read.column(0), read.row(3), a); },
      [](auto& a, const auto&, auto& read) { gemm(Op::none, Op::transpose, 2, read, read, 1, a); },
      [](auto& a, const auto& source, auto& read) { gemm(Op::none, Op::none, 1, source, read, 0, a); },
      [](auto& a, const auto&, auto& read) { trsm(Side::left, Triangle::upper, Op::none, unit, 1, read, a); },
      [](auto& a, const auto&, auto& read) { scale(2, read.row(1), a.column(1)); },
      [](auto& a, const auto&, auto& read) { scale(2, read.row(1), a.row(1)); },
      [](auto& a, const auto&, auto& read) {
        scale(3, VectorView<const T>(read.data(), 20), VectorView<T>(a.data() + 5, 20));
      },
      [](auto& a, const auto&, auto& read) {
        scale(3, VectorView<const T>(read.data() + 24, 25, -1), VectorView<T>(a.data(), 25));
      },
  };
  for (const Work& work : table) {
    CAPTURE(&work - table);
    Matrix<T> expected = given;
    work(expected, given, given);
    Matrix<T> a = given;
    work(a, given, a);
    CHECK(a == expected);
  }
  SparseMatrix<T> shift(5);
  shift.add(0, 4, 1);
  shift.add(1, 0, 1);
  shift.add(2, 1, 1);
  std::vector<T> y = x;
  shift.multiply(y, y);
  CHECK(y == std::vector<T>{x[4], x[0], x[1], 0, 0});
}

TEST_CASE("what overlaps among Hermitian and copying kernels") {
  using namespace tesk2mp;
  Samples samples;
  const Matrix<Complex> given = samples.matrix<Complex>(4, 4);
  Matrix<Complex> expected = given;
  Matrix<Complex> a = given;
  herk(Triangle::lower, Op::none, 2, given, 1, expected);
  herk(Triangle::lower, Op::none, 2, a, 1, a);
  CHECK(a == expected);
  copy(VectorView<const Complex>(a.data(), 15), VectorView<Complex>(a.data() + 1, 15));
  CHECK(std::equal(a.data() + 1, a.data() + 16, expected.data()));
}

TEST_CASE("a view counted from 1 shows the same elements") {
  Samples samples;
  Matrix<Real> a = samples.matrix<Real>(4, 3);
  const auto block = tesk2mp::one_based(a.view().block(1, 1, 3, 2));
  CHECK(&block(1, 1) == &a(1, 1));
  CHECK(&block.transposed()(2, 3) == &a(3, 2));
  CHECK(&tesk2mp::one_based(a.view().row(2))(3) == &a(2, 2));
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
  CHECK(tesk2mp::norm2(std::vector<Complex>()) == 0);
  CHECK(tesk2mp::dot(std::vector<Real>(), std::vector<Real>()) == 0);
}

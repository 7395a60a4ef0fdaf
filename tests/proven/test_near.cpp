// How far numbers are from eigenvalues and singular values of sparse matrices.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "support/digits.h"
#include "support/random_number.h"
#include "tesk2mp/proven_krylov.hpp"
#include "tesk2mp/tesk2mp.hpp"

using support::random_number;
using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;
using tesk2mp::SparseRectangle;
using tesk2mp::proven::NearEigenvalue;
using tesk2mp::proven::NearSingularValue;

namespace {

/// The least distance of the values from a number, less what they are off themselves.
QuarnBound least_distance(const std::vector<tesk2mp::proven::Bounded<Real>>& values, const Real& number) {
  std::vector<Real> distances;
  for (const auto& each : values) {
    distances.push_back(fabs(each.value - number) - each.error.value());
  }
  const Real least = *std::min_element(distances.begin(), distances.end());
  return QuarnBound(std::max(Real(0), least));
}

}  // namespace

TEST_CASE_TEMPLATE("an eigenvalue is within the distance", T, QuarnFloat, Complex) {
  support::Random random;
  for (int round = 0; round < 60; ++round) {
    const auto digits = int(random.between(2, 40));
    CAPTURE(digits);
    const auto n = std::size_t(random.between(1, 7));
    Matrix<T> full(n, n);
    SparseMatrix<T> a(n);
    SparseMatrix<T> triangle(n, tesk2mp::Storage::lower_triangle);
    const tesk2mp::Digits scope(digits);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (random.between(0, 2) > 0) {
          full(i, j) = random_number<T>(random);
          full(j, i) = tesk2mp::detail::mirrored(full(i, j));
          a.add(i, j, full(i, j));
          a.add(j, i, full(j, i));
          triangle.add(i, j, full(i, j));
        }
      }
      full(i, i) = T(random_number<Real>(random));
      a.add(i, i, full(i, i));
      triangle.add(i, i, full(i, i));
    }
    NearEigenvalue<T> near(a);
    NearEigenvalue<T> near_triangle(triangle);
    const auto pairs = tesk2mp::eigsh(a, n);
    const auto exact = [&] {
      const tesk2mp::Digits more(3 * digits + 60);
      return tesk2mp::proven::symmetric_eigenvalues(full);
    }();
    for (std::size_t j = 0; j < n; ++j) {
      const std::span<const T> v(pairs.vectors.data() + j * n, n);
      const QuarnBound distance = near.distance(pairs.values[j], v);
      const tesk2mp::Digits more(3 * digits + 60);
      CHECK(least_distance(exact, pairs.values[j]) <= distance);
      CHECK(distance == [&] {
        const tesk2mp::Digits again(digits);
        return near_triangle.distance(pairs.values[j], v);
      }());
      // As good as the eigenvector, which has all digits but a few.
      QuarnBound size;
      for (const auto& each : exact) {
        size = std::max(size, QuarnBound(each.value));
      }
      CHECK(distance <= QuarnBound::count(100) * QuarnBound::power_of_ten(2 - digits) * size);
      // Of any other vector and number too.
      std::vector<T> other(n);
      std::generate(other.begin(), other.end(), [&] { return random_number<T>(random); });
      const Real number = random_number<Real>(random);
      CHECK(least_distance(exact, number) <= near.distance(number, other));
    }
  }
}

TEST_CASE_TEMPLATE("a singular value is within the distance", T, QuarnFloat, Complex) {
  support::Random random;
  for (int round = 0; round < 30; ++round) {
    const auto digits = int(random.between(5, 40));
    const auto m = std::size_t(random.between(1, 6));
    const auto n = std::size_t(random.between(1, 6));
    Matrix<T> full(m, n);
    SparseRectangle<T> a(m, n);
    const tesk2mp::Digits scope(digits);
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        a.add(i, j, full(i, j) = random_number<T>(random));
      }
    }
    NearSingularValue<T> near(a);
    const std::size_t few = std::min(m, n);
    const auto found = tesk2mp::svds(a, few);
    const tesk2mp::Digits more(3 * digits + 60);
    const auto exact = tesk2mp::proven::singular_values(full);
    for (std::size_t j = 0; j < few; ++j) {
      const QuarnBound distance = [&] {
        const tesk2mp::Digits again(digits);
        return near.distance(found.values[j], {found.u.data() + j * m, m}, {found.v.data() + j * n, n});
      }();
      CHECK(least_distance(exact, found.values[j]) <= distance);
      CHECK(distance.is_finite());
    }
  }
}

TEST_CASE("terms of distances from eigenvalues") {
  const tesk2mp::Digits scope(2);
  SparseMatrix<Real> a(1);
  a.add(0, 0, Real("0.4"));
  NearEigenvalue<Real> near(a);
  // 0.41 times 3 is rounded to 0.4 times 3; the distance is 0.01, whatever the length of the vector.
  const QuarnBound distance = near.distance(Real("0.41"), std::vector<Real>{3});
  CHECK(distance >= QuarnBound(Real("0.01")));
  CHECK(near.distance(Real("0.4"), std::vector<Real>{1}) < QuarnBound::power_of_ten(-1));
  // The diagonal of 1 and 2, and a vector between: exactly 0.5 from both.
  SparseMatrix<Real> b(2);
  b.add(0, 0, 1);
  b.add(1, 1, 2);
  NearEigenvalue<Real> middle(b);
  for (const char* length : {"1", "1e-7", "1e9"}) {
    const QuarnBound half = middle.distance(Real("1.5"), std::vector<Real>{Real(length), Real(length)});
    CHECK(half >= QuarnBound(Real("0.5")));
    CHECK(half < QuarnBound(Real("0.6")));
  }
  CHECK_FALSE(near.distance(1, std::vector<Real>{0}).is_finite());
  CHECK_FALSE(near.distance(1, std::vector<Real>{Real("1e200000000")}).is_finite());
  CHECK_FALSE(near.distance(Real("NaN"), std::vector<Real>{1}).is_finite());
  CHECK_THROWS_AS(near.distance(1, std::vector<Real>{1, 2}), tesk2mp::InvalidArgument);
  b.add(0, 1, 3);
  CHECK_THROWS_AS(NearEigenvalue<Real>{b}, tesk2mp::InvalidArgument);
  b.add(1, 0, 1);
  b.add(1, 0, 2);
  CHECK_THROWS_AS(NearEigenvalue<Real>{b}, tesk2mp::InvalidArgument);
  // A value below its bound may be one of the zeros that a matrix that is not square adds.
  SparseRectangle<Real> c(2, 1);
  c.add(0, 0, 1);
  NearSingularValue<Real> tall(c);
  CHECK_FALSE(tall.distance(0, std::vector<Real>{0, 1}, std::vector<Real>{0}).is_finite());
  CHECK(tall.distance(1, std::vector<Real>{1, 0}, std::vector<Real>{1}).is_finite());
  // -3 is an eigenvalue of the doubled matrix, and no singular value.
  SparseRectangle<Real> d(1, 1);
  d.add(0, 0, 3);
  CHECK_FALSE(NearSingularValue<Real>(d).distance(-3, std::vector<Real>{-1}, std::vector<Real>{1}).is_finite());
}

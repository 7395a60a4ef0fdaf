// Proven solutions with sparse matrices, beside those of ever more digits and closed forms.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "support/digits.h"
#include "support/random_number.h"
#include "tesk2mp/proven_sparse.hpp"
#include "tesk2mp/tesk2mp.hpp"

using support::random_number;
using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;

namespace {

/// -Delta on a grid of m by m points.
SparseMatrix<Real> grid(std::size_t m) {
  SparseMatrix<Real> a(m * m);
  for (std::size_t k = 0; k < m * m; ++k) {
    if (k >= m) {
      a.add(k, k - m, -1);
    }
    if (k % m > 0) {
      a.add(k, k - 1, -1);
    }
    a.add(k, k, 4);
    if (k % m + 1 < m) {
      a.add(k, k + 1, -1);
    }
    if (k + m < m * m) {
      a.add(k, k + m, -1);
    }
  }
  return a;
}

/// A diagonal, and three more elements a row; the last row is near the first one.
template <class T>
SparseMatrix<T> random_matrix(support::Random& random, std::size_t n, int closeness) {
  Matrix<T> full(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    full(i, i) = random_number<T>(random);
    for (int k = 0; k < 3; ++k) {
      full(i, std::size_t(random.between(0, int(n) - 1))) = random_number<T>(random);
    }
  }
  SparseMatrix<T> a(n);
  const Real small(1, -closeness);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const T value = i + 1 == n && n > 1 && closeness > 0 ? full(0, j) + full(i, j) * T(small) : full(i, j);
      if (value != T()) {
        a.add(i, j, value);
      }
    }
  }
  return a;
}

template <class T>
Matrix<T> dense(const SparseMatrix<T>& a) {
  Matrix<T> full(a.order(), a.order());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    full(a.row(k), a.column(k)) = a.value(k);
  }
  return full;
}

template <class T>
void check_random(support::Random& random) {
  const support::Digits scope(int(random.between(1, 60)));
  const int digits = QuarnDigits();
  const auto n = std::size_t(random.between(1, 24));
  const SparseMatrix<T> a = random_matrix<T>(random, n, random.once_in(2) ? 0 : random.between(0, digits));
  std::vector<T> b;
  for (std::size_t i = 0; i < n; ++i) {
    b.push_back(random_number<T>(random));
  }
  const auto x = tesk2mp::proven::solve(a, b);
  const tesk2mp::Digits many(3 * digits + 600);
  std::vector<tesk2mp::proven::Bounded<T>> exact;
  try {
    exact = tesk2mp::proven::solve(dense(a), b);
  } catch (const tesk2mp::NumericalFailure&) {  // singular: nothing is proven
    CHECK(!x[0].error.is_finite());
    return;
  }
  QuarnBound largest;
  for (const auto& each : exact) {
    largest = std::max(largest, QuarnBound(each.value));
  }
  for (std::size_t i = 0; i < n; ++i) {
    CAPTURE(n);
    CAPTURE(digits);
    CAPTURE(i);
    // Where factors prove something they do so to nearly all digits, or far below the largest component.
    const QuarnBound distance(x[i].value - exact[i].value);
    CHECK((!x[i].error.is_finite() || distance <= x[i].error + exact[i].error));
    const QuarnBound size(exact[i].value);
    CHECK((!x[i].error.is_finite() || size.is_zero() || digits < 3 ||
           x[i].error <= size * QuarnBound::power_of_ten(2 - digits) ||
           x[i].error <= largest * QuarnBound::power_of_ten(-digits - 6)));
  }
}

}  // namespace

TEST_CASE("sparse solutions have bounds that hold") {
  support::Random random;
  for (int k = 0; k < 60; ++k) {
    check_random<Real>(random);
    check_random<Complex>(random);
  }
}

TEST_CASE("sparse solutions on a grid") {
  const support::Digits scope(30);
  // x is known: b = A x with numbers of few digits.
  const SparseMatrix<Real> a = grid(17);
  std::vector<Real> exact;
  for (std::size_t k = 0; k < a.order(); ++k) {
    exact.emplace_back(double(k % 7) - 2.5);
  }
  const auto x = tesk2mp::proven::solve(a, a.multiply(exact));
  CHECK(tesk2mp::proven::fewest_true_digits(x) >= 28);
  for (std::size_t k = 0; k < x.size(); ++k) {
    CHECK(QuarnBound(x[k].value - exact[k]) <= x[k].error);
  }
}

TEST_CASE("terms of sparse proofs") {
  const support::Digits scope(2);
  // 1 / 3 is rounded to 0.33: the bound is half a unit and no more than ten.
  SparseMatrix<Real> one(1);
  one.add(0, 0, 3);
  const auto third = tesk2mp::proven::solve(one, std::vector<Real>{Real(1)});
  const Real off("0.0033333333333333");
  CHECK(third[0].error >= QuarnBound(off));
  CHECK(third[0].error.value() < Real("0.06"));
  // The bound of A^-1 r itself, which the rounding of x hides.
  const tesk2mp::proven::detail::SparseFactorProof<Real> proof(tesk2mp::SparseLU<Real>(one), 30);
  CHECK(proof.bounds({QuarnBound::count(1)})[0].value() >= Real("0.333"));
  // (1, 1; 1, 1 + e): the factors hold e by far more digits than the working ones, or know nothing.
  SparseMatrix<Real> near(2);
  near.add(0, 0, 1);
  near.add(0, 1, 1);
  near.add(1, 0, 1);
  {
    const tesk2mp::Digits many(60);
    near.add(1, 1, Real("1.0000000000000000000000000000000000000001"));
  }
  const auto x = tesk2mp::proven::solve(near, std::vector<Real>{Real(1), Real(2)});
  CHECK(QuarnBound(x[1].value - Real("1e40")) <= x[1].error);
  CHECK(x[1].error.is_finite());
  // Singular, not finite, given twice.
  SparseMatrix<Real> zero(2);
  zero.add(0, 0, 1);
  zero.add(1, 0, 1);
  CHECK(!tesk2mp::proven::solve(zero, std::vector<Real>{Real(1), Real(2)})[0].error.is_finite());
  SparseMatrix<Real> nan(1);
  nan.add(0, 0, Real("nan"));
  CHECK(!tesk2mp::proven::solve(nan, std::vector<Real>{Real(1)})[0].error.is_finite());
  one.add(0, 0, 1);
  CHECK_THROWS_AS(tesk2mp::proven::solve(one, std::vector<Real>{Real(1)}), tesk2mp::InvalidArgument);
}

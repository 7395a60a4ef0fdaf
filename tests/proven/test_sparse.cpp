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

TEST_CASE("sparse solutions of positive definite systems, several at once") {
  support::Random random;
  const auto check = [&]<class T>(T /*kind*/) {
    const support::Digits scope(int(random.between(2, 60)));
    const auto n = std::size_t(random.between(1, 20));
    const auto m = std::size_t(random.between(0, 4));
    // C C^H of a sparse C, rounded: positive definite, or nearly singular and perhaps not.
    const Matrix<T> c = dense(random_matrix<T>(random, n, random.once_in(2) ? 0 : int(random.between(0, 20))));
    Matrix<T> adjoint(n, n);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        adjoint(i, j) = tesk2mp::detail::mirrored(c(j, i));
      }
    }
    const Matrix<T> full = tesk2mp::multiply(c, adjoint);
    SparseMatrix<T> a(n, tesk2mp::Storage::lower_triangle);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j <= i; ++j) {
        if (full(i, j) != T()) {
          a.add(i, j, full(i, j));
        }
      }
    }
    Matrix<T> b(n, m);
    for (std::size_t k = 0; k < n * m; ++k) {
      b.data()[k] = random_number<T>(random);
    }
    const auto x = tesk2mp::proven::solve(a, b);
    const tesk2mp::Digits many(400);
    for (std::size_t j = 0; j < m && x(0, j).error.is_finite(); ++j) {
      const auto exact = tesk2mp::proven::solve(dense(tesk2mp::whole(a)), std::vector<T>(&b(0, j), &b(0, j) + n));
      for (std::size_t i = 0; i < n; ++i) {
        CHECK(QuarnBound(x(i, j).value - exact[i].value) <= x(i, j).error + exact[i].error);
      }
    }
  };
  for (int k = 0; k < 30; ++k) {
    check(Real());
    check(Complex());
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

namespace {

/// The theorems evaluated with 60 digits, for factors of four: k u = 0.036 for n = 1 and 0.04 for n = 2.
void check_terms() {
  using Proof = tesk2mp::proven::detail::SparseFactorProof<Real>;
  const auto matrix = [](std::vector<Real> rows, tesk2mp::Storage storage) {
    const auto n = std::size_t(rows.size() == 1 ? 1 : 2);
    SparseMatrix<Real> a(n, storage);
    for (std::size_t k = 0; k < n * n; ++k) {
      if (rows[k] != 0) {
        a.add(k / n, k % n, rows[k]);
      }
    }
    return a;
  };
  const auto check = [](const Proof& proof, const std::vector<QuarnBound>& of_r, const char* const(&least)[2]) {
    const auto bounds = proof.bounds(of_r);
    const tesk2mp::Digits fine(60);
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      CAPTURE(i);
      CHECK(bounds[i].value() >= Real(least[i]));
      CHECK(bounds[i].value() <= Real(least[i]) * Real("1.05"));
    }
  };
  const QuarnBound one = QuarnBound::count(1);
  const tesk2mp::Digits four(4);
  using tesk2mp::Storage;
  // z = 1 / 3, g = 0.036 / 0.964, z + g z / (1 - g).
  const Proof third(tesk2mp::SparseLU<Real>(matrix({3}, Storage::general)), 4);
  check(third, {one}, {"0.346264367816091954", ""});
  const Proof root(tesk2mp::SparseCholesky<Real>(matrix({3}, Storage::lower_triangle)), 4);
  check(root, {one}, {"0.346264367816091954", ""});
  // Triangles of two rows, in the order of the pivots: z + g M |L| |U| w max z / (1 - g max M |L| |U| w).
  const std::vector<std::size_t> order{0, 1};
  const auto factors = [&](const std::vector<Real>& rows) {
    return Proof(tesk2mp::SparseLU<Real>(matrix(rows, Storage::general), order), 4);
  };
  check(factors({2, 1, 0, 4}), {one, one}, {"0.68181818", "0.27840909"});
  check(factors({0, 4, 2, 1}), {one + one + one, one}, {"0.95454545", "0.78977272"});
  check(factors({2, 0, 2, 4}), {one, one}, {"0.52272727", "0.54545454"});
  // The second row first.
  const Proof swapped(tesk2mp::SparseLU<Real>(matrix({2, 1, 0, 4}, Storage::general), std::vector<std::size_t>{1, 0}),
                      4);
  check(swapped, {one + one + one, one}, {"1.77272727", "0.32386363"});
  const Proof square(tesk2mp::SparseCholesky<Real>(matrix({4, 0, 2, 5}, Storage::lower_triangle), order), 4);
  check(square, {one, one}, {"0.49411764", "0.42647058"});
  // g = 0.0832 / 0.9168 of 200 rows and five digits.
  SparseMatrix<Real> threes(200);
  for (std::size_t i = 0; i < threes.order(); ++i) {
    threes.add(i, i, 3);
  }
  const tesk2mp::Digits five(5);
  const auto many = Proof(tesk2mp::SparseLU<Real>(threes), 5).bounds(std::vector<QuarnBound>(threes.order(), one));
  CHECK(many[0].value() >= Real("0.3666"));
  // A residual with one rounding: 1.4 becomes 1, and so do both parts of a complex one.
  const auto check_residual = [&]<class T>(const T& b, const Real& least) {
    SparseMatrix<T> a(1);
    a.add(0, 0, T(1));
    tesk2mp::proven::detail::SparseResidual<T> equations(a);
    equations.take({b});
    std::vector<T> r(1);
    const tesk2mp::Digits single(1);
    CHECK(equations.residual({T(0)}, r)[0].value() >= least);
  };
  check_residual(Real("1.4"), Real("1.4"));
  check_residual(Complex(Real("1.4"), Real("1.4")), Real("1.979"));
  // And the solution's own rounding.
  SparseMatrix<Complex> a(1);
  a.add(0, 0, Complex(8));
  const tesk2mp::Digits two(2);
  CHECK(tesk2mp::proven::solve(a, std::vector<Complex>{Complex(1, -3)})[0].error >= QuarnBound(Real("0.007")));
}

}  // namespace

TEST_CASE("terms of sparse proofs") {
  const support::Digits scope(2);
  // 1 / 3 is rounded to 0.33: the bound is half a unit and no more than ten.
  SparseMatrix<Real> one(1);
  one.add(0, 0, 3);
  const auto third = tesk2mp::proven::solve(one, std::vector<Real>{Real(1)});
  const Real off("0.0033333333333333");
  CHECK(third[0].error >= QuarnBound(off));
  CHECK(third[0].error.value() < Real("0.06"));
  check_terms();
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

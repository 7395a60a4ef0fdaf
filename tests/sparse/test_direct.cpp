// Complete sparse factorisations: L U is P A Q, solutions solve, orders are permutations that fill little, and what
// cannot be factorised is said to be so with nothing written.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "sparse/samples.h"
#include "src/kernels/scalar.h"
#include "support/digits.h"
#include "tesk2mp/suitesparse.hpp"
#include "tesk2mp/tesk2mp.hpp"

using samples::definite_sample;
using samples::general_sample;
using samples::grid;
using support::Digits;
using support::Random;
using tesk2mp::FillOf;
using tesk2mp::Real;
using tesk2mp::SparseCholesky;
using tesk2mp::SparseLU;
using tesk2mp::SparseMatrix;
using tesk2mp::Storage;

namespace {

constexpr int kSpare = 20;

template <class T>
using Full = std::vector<std::vector<T>>;

template <class T>
Full<T> full(const SparseMatrix<T>& a) {
  const SparseMatrix<T> all = tesk2mp::whole(a);
  Full<T> dense(a.order(), std::vector<T>(a.order()));
  for (std::size_t k = 0; k < all.entries(); ++k) {
    dense[all.row(k)][all.column(k)] = all.value(k);
  }
  return dense;
}

bool is_permutation(std::vector<std::size_t> order) {
  std::sort(order.begin(), order.end());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (order[i] != i) {
      return false;
    }
  }
  return true;
}

template <class T>
Real largest_sum(const Full<T>& a) {
  Real largest;
  for (const auto& row : a) {
    Real sum;
    for (const T& x : row) {
      sum += tesk::magnitude(x);
    }
    largest = largest >= sum ? largest : sum;
  }
  return largest;
}

/// The largest row sum of |P A Q - L U| over n eps times that of |P A Q| + |L| |U|.
template <class T>
double ratio(const SparseMatrix<T>& a, const Full<T>& l, const Full<T>& u, const std::vector<std::size_t>& rows,
             const std::vector<std::size_t>& columns, int digits) {
  const Digits more(digits + kSpare);
  const Full<T> dense = full(a);
  const std::size_t n = a.order();
  Full<T> rest(n, std::vector<T>(n));
  Full<T> sizes = rest;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      T sum = dense[rows[i]][columns[j]];
      Real size = tesk::magnitude(sum);
      for (std::size_t k = 0; k < n; ++k) {
        tesk::subtract_product(sum, l[i][k], u[k][j]);
        size += tesk::magnitude(l[i][k]) * tesk::magnitude(u[k][j]);
      }
      rest[i][j] = sum;
      sizes[i][j] = T(size);
    }
  }
  return FloatToDouble(largest_sum(rest) / (largest_sum(sizes) * Real(1, -digits) * int(n)));
}

template <class T>
double solution_ratio(const SparseMatrix<T>& a, const std::vector<T>& x, const std::vector<T>& b, tesk2mp::Op op,
                      int digits) {
  const Digits more(digits + kSpare);
  const Full<T> dense = full(a);
  Real rest;
  Real size;
  for (std::size_t i = 0; i < b.size(); ++i) {
    T sum = b[i];
    Real terms = tesk::magnitude(sum);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const T element = op == tesk2mp::Op::none        ? dense[i][j]
                        : op == tesk2mp::Op::transpose ? dense[j][i]
                                                       : tesk::conjugate(dense[j][i]);
      tesk::subtract_product(sum, element, x[j]);
      terms += tesk::magnitude(element) * tesk::magnitude(x[j]);
    }
    rest = std::max(rest, tesk::magnitude(sum));
    size = std::max(size, terms);
  }
  return FloatToDouble(rest / (size * Real(1, -digits)));
}

template <class T>
std::vector<T> right_side(Random& random, std::size_t n) {
  std::vector<T> b;
  for (std::size_t i = 0; i < n; ++i) {
    b.push_back(entries::random_value<T>(random));
  }
  return b;
}

}  // namespace

TEST_CASE_TEMPLATE("L U is P A Q to the last digits, and solves with every op", T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 16, 50, 333}) {
    const Digits scope(digits);
    for (const std::size_t n : {std::size_t(1), std::size_t(2), std::size_t(5), std::size_t(24)}) {
      CAPTURE(digits);
      CAPTURE(n);
      // What is singular to so few digits need not be, unless its diagonal is dominant.
      const SparseMatrix<T> a =
          digits > 2 ? general_sample<T>(random, n, 2) : tesk2mp::whole(definite_sample<T>(random, n));
      {
        const SparseLU<T> factors(a);
        CHECK(is_permutation(factors.row_order()));
        CHECK(is_permutation(factors.column_order()));
        const Full<T> u = full(factors.upper());
        CHECK(ratio(a, full(factors.lower()), u, factors.row_order(), factors.column_order(), digits) < 30);
        for (std::size_t k = 0; k < n; ++k) {  // each pivot is the largest of its row
          CHECK(std::all_of(u[k].begin(), u[k].end(),
                            [&](const T& x) { return tesk::magnitude(x) <= tesk::magnitude(u[k][k]); }));
        }
        const std::vector<T> b = right_side<T>(random, n);
        for (const auto op : {tesk2mp::Op::none, tesk2mp::Op::transpose, tesk2mp::Op::conjugate_transpose}) {
          std::vector<T> x = b;
          factors.solve(std::span<T>(x), op);
          if (digits > 2) {
            CHECK(solution_ratio(a, x, b, op, digits) < 1e7);
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("L D L^H is P A P^T of a definite matrix, and solves", T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 16, 50, 333}) {
    const Digits scope(digits);
    for (const std::size_t n : {std::size_t(1), std::size_t(2), std::size_t(5), std::size_t(24)}) {
      const SparseMatrix<T> a = definite_sample<T>(random, n);
      const SparseCholesky<T> factors(a);
      CHECK(is_permutation(factors.row_order()));
      const Full<T> l = full(factors.lower());
      const std::vector<T> d = factors.diagonal();
      Full<T> u(n, std::vector<T>(n));
      for (std::size_t i = 0; i < n; ++i) {
        const Digits more(digits + kSpare);
        for (std::size_t j = 0; j < n; ++j) {
          u[i][j] = d[i] * tesk::conjugate(l[j][i]);
        }
      }
      CHECK(ratio(a, l, u, factors.row_order(), factors.row_order(), digits) < 30);
      const std::vector<T> b = right_side<T>(random, n);
      std::vector<T> x = b;
      factors.solve(std::span<T>(x));
      CHECK(solution_ratio(a, x, b, tesk2mp::Op::none, digits) < 1e3);
    }
  }
}

TEST_CASE("orders fill little: a grid near the best known, an arrow not at all, dense columns no obstacle") {
  const Digits scope(20);
  const auto fill = [](const SparseMatrix<Real>& a, std::span<const std::size_t> order) {
    return SparseCholesky<Real>(a, order).entries();
  };
  const SparseMatrix<Real> square = grid(40, Storage::lower_triangle);
  std::vector<std::size_t> natural(square.order());
  std::iota(natural.begin(), natural.end(), std::size_t(0));
  CHECK(fill(square, natural) == 79 + 1560 * 41);  // a band, from row 40 on full
  CHECK(fill(square, {}) < 25500);
#ifdef TESK_HAS_SUITESPARSE
  const std::size_t best = fill(square, tesk2mp::suitesparse::amd(square));
  CHECK(double(fill(square, {})) < 1.1 * double(best));
  const SparseMatrix<Real> windy = grid(40, Storage::general, Real(2) / 5);
  const std::size_t by_rows = SparseLU<Real>(windy, tesk2mp::suitesparse::colamd(windy)).entries();
  CHECK(double(SparseLU<Real>(windy).entries()) < 1.3 * double(by_rows));
#endif
  CHECK(is_permutation(least_fill_order(square, FillOf::symmetric)));

  SparseMatrix<Real> arrow(300, Storage::lower_triangle);
  SparseMatrix<Real> general(300);
  for (std::size_t i = 0; i < 300; ++i) {
    arrow.add(i, i, 400);
    general.add(i, i, 400);
    if (i > 0) {
      arrow.add(i, 0, 1);
      general.add(i, 0, 1);
      general.add(0, i, 1);
    }
  }
  arrow.canonicalise();
  general.canonicalise();
  CHECK(fill(arrow, {}) == 599);
  CHECK(is_permutation(least_fill_order(general, FillOf::rows)));
  CHECK(SparseLU<Real>(general, least_fill_order(general, FillOf::symmetric)).entries() == 898);
  CHECK(SparseLU<Real>(general).entries() == 898);
}

TEST_CASE("a given order is kept, and convection on a grid is solved by any") {
  const Digits scope(50);
  const SparseMatrix<Real> a = grid(12, Storage::general, Real(2) / 5);
  std::vector<std::size_t> backwards(a.order());
  std::iota(backwards.rbegin(), backwards.rend(), std::size_t(0));
  const SparseLU<Real> factors(a, backwards);
  CHECK(factors.row_order() == backwards);
  const std::vector<Real> b = a.multiply(std::vector<Real>(a.order(), Real(1)));
  for (const SparseLU<Real>& each :
       {factors, SparseLU<Real>(a), SparseLU<Real>(a, least_fill_order(a, FillOf::symmetric))}) {
    std::vector<Real> x = b;
    each.solve(std::span<Real>(x));
    CHECK(std::all_of(x.begin(), x.end(), [](const Real& one) { return fabs(one - 1) < Real(1, -47); }));
  }
}

TEST_CASE("numbers of any size, and what seems singular because of its scale alone") {
  const Digits scope(30);
  for (const Integer exponent : {-900'000'000, 0, 900'000'000}) {
    SparseMatrix<Real> a(2);
    a.add(0, 0, Real(1, exponent));
    a.add(0, 1, Real(1, exponent - 60));
    a.add(1, 0, Real(1, exponent));
    a.add(1, 1, Real(2, exponent - 60));
    a.canonicalise();
    std::vector<Real> x = {Real(3, exponent), Real(4, exponent)};  // x = (2, 10^60)
    SparseLU<Real>(a).solve(std::span<Real>(x));
    CHECK(fabs(x[0] - 2) < Real(1, -28));
    CHECK(fabs(x[1] - Real(1, 60)) < Real(1, 32));
  }
}

TEST_CASE_TEMPLATE("without a pivot the step is named and nothing is written", T, Real, Complex) {
  const Digits scope(30);
  const auto step_of = [](const auto& work) {
    try {
      work();
    } catch (const tesk2mp::NumericalFailure& failure) {
      return int(failure.code());
    }
    return 0;
  };
  for (const char* special : {"nan", "inf", "-inf"}) {
    for (std::size_t place = 0; place < 5; ++place) {
      SparseMatrix<T> a(3);
      SparseMatrix<T> triangle(3, Storage::lower_triangle);
      const std::size_t rows[] = {0, 1, 1, 2, 2};
      const std::size_t columns[] = {0, 0, 1, 0, 2};
      for (std::size_t k = 0; k < 5; ++k) {
        const T value = k == place ? T(Real(special)) : T(rows[k] == columns[k] ? 4.0 : 1.0);
        a.add(rows[k], columns[k], value);
        triangle.add(rows[k], columns[k], value);
      }
      a.canonicalise();
      triangle.canonicalise();
      CHECK(step_of([&] { SparseLU<T>{a}; }) > 0);
      CHECK(step_of([&] { SparseCholesky<T>{triangle}; }) > 0);
    }
  }
  SparseMatrix<T> singular(3);
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      singular.add(i, j, T(Real(int(3 * i + j + 1)) / 7));
    }
  }
  singular.canonicalise();
  CHECK(step_of([&] { SparseLU<T>{singular}; }) == 3);
  SparseMatrix<T> empty_row(3);
  empty_row.add(0, 0, T(1.0));
  empty_row.add(2, 2, T(1.0));
  empty_row.canonicalise();
  CHECK(step_of([&] { SparseLU<T>{empty_row}; }) > 0);
  SparseMatrix<T> zeros(1, Storage::lower_triangle);
  zeros.add(0, 0, T(0.0));
  CHECK(step_of([&] { SparseCholesky<T>{zeros}; }) == 1);
  SparseMatrix<T> indefinite(2, Storage::lower_triangle);
  indefinite.add(0, 0, T(1.0));
  indefinite.add(1, 0, T(3.0));
  indefinite.add(1, 1, T(1.0));
  indefinite.canonicalise();
  CHECK(step_of([&] { SparseCholesky<T>{indefinite}; }) == 2);
}

TEST_CASE("wrong arguments are named in their order, and the caller's arrays stay as they are") {
  const Digits scope(20);
  struct Arrays {
    std::vector<Real> a = std::vector<Real>(9);
    std::vector<Integer> rows = std::vector<Integer>(9), columns = std::vector<Integer>(9);
    int calls = 0;
    static void make(void* context, Integer count, Real** a, Integer** irow, Integer** icol) {
      auto& arrays = *static_cast<Arrays*>(context);
      ++arrays.calls;
      if (count > 9) {
        throw std::bad_alloc();
      }
      *a = arrays.a.data();
      *irow = arrays.rows.data();
      *icol = arrays.columns.data();
    }
  };
  const auto info_of = [](Integer n, Integer nnz, std::vector<Integer> irow, std::vector<Integer> icol,
                          std::vector<Integer> order) {
    const std::vector<Real> a(irow.size(), Real(1));
    Arrays arrays;
    std::vector<Integer> p(3, -7), q(3, -7), starts(4, -7), diagonals(3, -7);
    Integer lu = -99, cholesky = -99;
    const Integer* const steps = order.empty() ? nullptr : order.data();
    QuarnMPX_sparse_lu_(n, nnz, a.data(), irow.data(), icol.data(), steps, Arrays::make, &arrays, p.data(), q.data(),
                        starts.data(), diagonals.data(), &lu);
    const bool untouched = p == std::vector<Integer>(3, -7) && q == p && diagonals == p && starts[0] == -7;
    CHECK(untouched == (lu != 0));
    CHECK(arrays.calls == (lu == 0 ? 1 : 0));
    QuarnMPX_sparse_cholesky_(n, nnz, a.data(), irow.data(), icol.data(), steps, Arrays::make, &arrays, p.data(),
                              starts.data(), &cholesky);
    CHECK(cholesky == lu);
    return lu;
  };
  CHECK(info_of(2, 2, {1, 2}, {1, 2}, {}) == 0);
  CHECK(info_of(2, 2, {1, 2}, {1, 2}, {2, 1}) == 0);
  CHECK(info_of(0, 2, {1, 2}, {1, 2}, {}) == -1);
  CHECK(info_of(2, 0, {1, 2}, {1, 2}, {}) == -2);
  CHECK(info_of(2, 5, {1, 2, 2, 2, 2}, {1, 2, 2, 2, 2}, {}) == -2);
  CHECK(info_of(2, 2, {0, 2}, {1, 2}, {}) == -4);
  CHECK(info_of(2, 2, {1, 2}, {1, 3}, {}) == -5);
  CHECK(info_of(2, 2, {2, 1}, {1, 1}, {}) == -5);
  CHECK(info_of(2, 2, {1, 1}, {1, 1}, {}) == -5);
  CHECK(info_of(2, 2, {1, 2}, {1, 2}, {1, 1}) == -6);
  CHECK(info_of(2, 2, {1, 2}, {1, 2}, {0, 1}) == -6);
  CHECK(info_of(2, 2, {1, 2}, {1, 2}, {3, 1}) == -6);
  const std::vector<Integer> one = {1, 3};
  Integer order[2] = {-7, -7};
  Integer info = 0;
  const auto order_info = [&](const char* kind, Integer n, Integer nnz) {
    QuarnMPX_sparse_order_(kind, n, nnz, one.data(), one.data(), order, &info, 1);
    return info;
  };
  CHECK(order_info("X", 2, 1) == -1);
  CHECK(order_info("S", 0, 1) == -2);
  CHECK(order_info("S", 2, -1) == -3);
  CHECK(order_info("R", 2, 2) == -4);
  CHECK(order[0] == -7);
  CHECK(order_info("r", 2, 0) == 0);
  CHECK(is_permutation({std::size_t(order[0]) - 1, std::size_t(order[1]) - 1}));
}

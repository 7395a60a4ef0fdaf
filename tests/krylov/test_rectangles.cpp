// Singular values and least squares of rectangular sparse matrices, against the dense routines.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "krylov/residuals.h"
#include "sparse/entries.h"
#include "sparse/samples.h"

using krylov::column;
using krylov::ratio;
using support::Digits;
using support::Random;
using tesk2mp::LsmrOptions;
using tesk2mp::LsmrStop;
using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::SingularOptions;
using tesk2mp::SparseRectangle;

namespace {

/// Three entries in each row and column, at least.
template <class T>
SparseRectangle<T> sample(Random& random, std::size_t rows, std::size_t columns, Integer exponent = 0) {
  SparseRectangle<T> a(rows, columns);
  const std::size_t count = rows * columns == 1 ? 1 : 3 * std::max(rows, columns);  // more might cancel
  for (std::size_t k = 0; k < count; ++k) {
    const std::size_t i = k < rows ? k : std::size_t(random.below(rows));
    const std::size_t j = k < rows ? k % columns : std::size_t(random.below(columns));
    a.add(i, j, entries::random_value<T>(random) * T(Real(1, exponent)));
  }
  return a;
}

template <class T>
Matrix<T> full(const SparseRectangle<T>& a) {
  Matrix<T> dense(a.rows(), a.columns());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    T& element = dense(a.square().row(k), a.square().column(k));
    element = element + a.square().value(k);
  }
  return dense;
}

template <class T>
std::vector<T> image(const SparseRectangle<T>& a, const std::vector<T>& x, bool adjoint) {
  std::vector<T> y(adjoint ? a.columns() : a.rows());
  a.multiply(x, y, adjoint);
  return y;
}

/// ||y - factor x||
template <class T>
Real difference(std::vector<T> y, const std::vector<T>& x, const Real& factor) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    y[i] = y[i] - x[i] * T(factor);
  }
  return krylov::length(y);
}

}  // namespace

TEST_CASE_TEMPLATE("singular values of a sparse matrix are those of its dense form", T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 20, 50, 200}) {
    CAPTURE(digits);
    const Digits scope(digits);
    const std::vector<std::pair<std::size_t, std::size_t>> shapes = {{1, 1}, {1, 4}, {3, 2}, {20, 15}, {15, 20}};
    for (const auto& shape : shapes) {
      const std::size_t few = std::min(shape.first, shape.second);
      if (digits == 200 && few > 10 && !std::is_same_v<T, Real>) {
        continue;
      }
      for (const Integer exponent : {0, digits == 20 ? 1000 : 0, digits == 20 ? -1000 : 0}) {
        const SparseRectangle<T> a = sample<T>(random, shape.first, shape.second, exponent);
        std::vector<Real> all;
        {
          const Digits more(digits + 20);
          all = tesk2mp::singular_values(full(a));
        }
        const Real unit = all.front() * Real(1, -digits);
        for (const bool smallest : {false, true}) {
          SingularOptions<T> options;
          options.smallest = smallest;
          options.basis = few > 10 && !smallest && digits < 200 ? 9 : 0;
          const std::size_t k = few > 10 ? 3 : few;
          const auto found = tesk2mp::svds(a, k, options);
          CHECK(ratio(krylov::lost_orthogonality(found.u, digits), Real(1, -digits)) < 10);
          CHECK(ratio(krylov::lost_orthogonality(found.v, digits), Real(1, -digits)) < 10);
          for (std::size_t j = 0; j < k; ++j) {
            const std::size_t from = smallest ? few - k + j : j;
            CHECK(ratio(fabs(found.values[j] - all[from]), unit) < 6);
            CHECK(ratio(found.residuals[j], unit) < 10);
            const Digits more(2 * digits + 30);
            const auto u = column(found.u, j);
            const auto v = column(found.v, j);
            const Real rest = std::max(difference(image(a, v, false), u, found.values[j]),
                                       difference(image(a, u, true), v, found.values[j]));
            CHECK(ratio(fabs(rest - found.residuals[j]), unit) < (digits > 2 ? 0.01 : 1));
          }
        }
      }
    }
  }
}

TEST_CASE("double singular values are found twice, those of zero too") {
  const Digits scope(30);
  SparseRectangle<Real> a(12, 9);
  for (std::size_t i = 0; i < 6; ++i) {
    a.add(i, i, Real(1 + int(i) / 2));
  }
  SingularOptions<Real> options;
  options.basis = 6;
  CHECK(tesk2mp::svds(a, 4, options).values == std::vector<Real>{3, 3, 2, 2});
  options.smallest = true;
  const std::vector<Real> small = tesk2mp::svds(a, 4, options).values;
  CHECK(fabs(small[0] - 1) < Real(1, -28));
  CHECK(small[1] < Real(1, -28));
  SparseRectangle<Real> none(4, 3);
  CHECK(tesk2mp::svds(none, 3).values == std::vector<Real>(3));
  none.add(2, 1, Real("nan"));
  CHECK_THROWS_AS(tesk2mp::svds(none, 1), tesk2mp::NumericalFailure);
  CHECK_THROWS_AS(tesk2mp::svds(none, 4), tesk2mp::InvalidArgument);
}

TEST_CASE_TEMPLATE("least squares of a sparse matrix are those of its dense form", T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 20, 50, 200}) {
    CAPTURE(digits);
    const Digits scope(digits);
    const std::vector<std::pair<std::size_t, std::size_t>> shapes = {{1, 1}, {6, 6}, {20, 8}, {6, 11}};
    for (const auto& shape : shapes) {
      for (const Integer exponent : {0, digits == 20 ? 1000 : 0, digits == 20 ? -1000 : 0}) {
        const SparseRectangle<T> a = sample<T>(random, shape.first, shape.second, exponent);
        std::vector<T> b;
        for (std::size_t i = 0; i < shape.first; ++i) {
          b.push_back(entries::random_value<T>(random));
        }
        for (const Real& damp : {Real(0), Real(1, exponent + 4)}) {
          CAPTURE(exponent);
          CAPTURE(shape.first);
          LsmrOptions options;
          options.damp = damp;
          options.most_iterations = 20000;
          const auto found = tesk2mp::lsmr<T>(a, b, options);
          const Real eps = digits > 8 ? Real(1, -digits) : Real(1, -8) + Real(1, -digits);
          const Digits more(2 * digits + 30);
          std::vector<T> r = image(a, found.x, false);
          for (std::size_t i = 0; i < r.size(); ++i) {
            r[i] = b[i] - r[i];
          }
          std::vector<T> g = image(a, r, true);
          for (std::size_t j = 0; j < g.size(); ++j) {
            g[j] = g[j] - found.x[j] * T(damp * damp);
          }
          const Real length = krylov::length(found.x);
          const Real rest = sqrt(krylov::length(r) * krylov::length(r) + damp * damp * length * length);
          const Real size = krylov::length(b) + found.matrix_norm * length;
          CHECK(ratio(fabs(rest - found.residual_norm), eps * size) < 10);
          CHECK(ratio(fabs(krylov::length(g) - found.gradient_norm), eps * size * found.matrix_norm) < 10);
          const bool solved = found.stop == LsmrStop::solved;
          CHECK((solved ? ratio(rest, eps * size) : ratio(krylov::length(g), eps * size * found.matrix_norm)) < 10);
          if (digits > 2 && damp > 0) {  // the solution is unique, and well-conditioned
            Matrix<T> stacked(shape.first + shape.second, shape.second);
            const Matrix<T> upper = full(a);
            for (std::size_t j = 0; j < shape.second; ++j) {
              for (std::size_t i = 0; i < shape.first; ++i) {
                stacked(i, j) = upper(i, j);
              }
              stacked(shape.first + j, j) = T(damp);
            }
            std::vector<T> longer = b;
            longer.resize(stacked.rows());
            const auto expected = tesk2mp::least_squares(stacked, longer);
            CHECK(ratio(difference(found.x, expected, Real(1)), eps * length) < 1e4);
          }
        }
      }
    }
  }
}

TEST_CASE("least squares: at 50 digits no more iterations than SciPy's LSMR in doubles, for tolerances of 1e-8") {
  const Digits scope(50);
  const struct {
    std::size_t side;
    const char* wind;
    const char* damp;
    int theirs;  // as tests/sparse/scipy_counts.py prints them
  } cases[] = {{20, "0", "0", 72}, {20, "0", "0.5", 67}, {30, "0.4", "0", 294}, {30, "0.4", "0.5", 112}};
  for (const auto& each : cases) {
    const auto a = samples::grid(each.side, tesk2mp::Storage::general, Real(each.wind));
    LsmrOptions options;
    options.damp = Real(each.damp);
    options.atol = options.btol = Real(1, -8);
    const auto found = tesk2mp::lsmr<Real>(
        a.order(), [&](std::span<const Real> x, std::span<Real> y) { a.multiply(x, y); },
        [&](std::span<const Real> x, std::span<Real> y) { a.multiply(x, y, tesk2mp::Op::conjugate_transpose); },
        a.multiply(std::vector<Real>(a.order(), Real(1))), options);
    INFO(each.side, ", wind ", Real(each.wind), ", damping ", options.damp, ": ", int(found.iterations));
    CHECK(found.iterations <= each.theirs);
    const Real size = found.matrix_norm * krylov::length(found.x);
    const bool solved = found.stop == LsmrStop::solved;
    CHECK((solved ? found.residual_norm : found.gradient_norm) <=
          options.atol *
              (solved ? size + krylov::length(a.multiply(std::vector<Real>(a.order(), Real(1))))
                      : found.matrix_norm * found.residual_norm) *
              Real("1.0001"));
  }
}

TEST_CASE("least squares: nothing to do, no end, and wrong arguments") {
  const Digits scope(20);
  Random random;
  SparseRectangle<Real> a = sample<Real>(random, 9, 4);
  const std::vector<Real> zeros(9);
  CHECK(tesk2mp::lsmr<Real>(a, zeros).x == std::vector<Real>(4));
  const SparseRectangle<Real> none(9, 4);
  const auto found = tesk2mp::lsmr<Real>(none, std::vector<Real>(9, Real(1)));
  CHECK(found.x == std::vector<Real>(4));
  CHECK(found.stop == LsmrStop::least_squares);
  CHECK(found.residual_norm == 3);
  LsmrOptions options;
  options.most_iterations = 1;
  CHECK_THROWS_AS(tesk2mp::lsmr<Real>(a, std::vector<Real>(9, Real(1)), options), tesk2mp::NumericalFailure);
  options = {};
  options.damp = -1;
  CHECK_THROWS_AS(tesk2mp::lsmr<Real>(a, zeros, options), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS(tesk2mp::lsmr<Real>(a, std::vector<Real>(4)), tesk2mp::InvalidArgument);
  a.add(3, 3, Real("inf"));
  CHECK_THROWS_AS(tesk2mp::lsmr<Real>(a, std::vector<Real>(9, Real(1))), tesk2mp::NumericalFailure);
}

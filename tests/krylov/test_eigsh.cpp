// Some eigenvalues of symmetric and Hermitian matrices: against the dense ones, against closed forms, and at the edges.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "krylov/residuals.h"
#include "sparse/samples.h"

using krylov::column;
using krylov::ratio;
using support::Digits;
using support::Random;
using tesk2mp::Extreme;
using tesk2mp::HermitianEigenOptions;
using tesk2mp::HermitianEigenpairs;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;
using tesk2mp::Storage;

namespace {

/// Those of all eigenvalues, ascending, that are wanted most.
std::vector<Real> chosen(std::vector<Real> all, std::size_t k, Extreme which, const std::optional<Real>& sigma) {
  const Digits more(QuarnDigits() + 20);
  const auto seen = [&](const Real& x) { return sigma ? 1 / (x - *sigma) : x; };
  std::ranges::sort(all, [&](const Real& x, const Real& y) {
    const Real a = seen(x);
    const Real b = seen(y);
    return which == Extreme::largest_magnitude    ? fabs(a) > fabs(b)
           : which == Extreme::smallest_magnitude ? fabs(a) < fabs(b)
           : which == Extreme::smallest           ? a < b
                                                  : a > b;
  });
  if (which == Extreme::both_ends) {
    all.erase(all.begin() + std::ptrdiff_t((k + 1) / 2), all.end() - std::ptrdiff_t(k / 2));
  }
  all.resize(k);
  std::ranges::sort(all);
  return all;
}

/// Values as they should be, residuals true and small, vectors orthonormal.
template <class T>
void check_pairs(const SparseMatrix<T>& a, const HermitianEigenpairs<T>& found, const std::vector<Real>& expected,
                 const Real& norm, int digits) {
  const Real unit = norm * Real(1, -digits);
  REQUIRE(found.values.size() == expected.size());
  for (std::size_t j = 0; j < expected.size(); ++j) {
    CAPTURE(j);
    CHECK(ratio(fabs(found.values[j] - expected[j]), unit) < 6);  // a rounding is 5 of these units at most
    CHECK(ratio(found.residuals[j], unit) < 10);
    const Real rest = krylov::residual(a, column(found.vectors, j), found.values[j], digits);
    CHECK(ratio(fabs(rest - found.residuals[j]), unit) < (digits > 2 ? 0.01 : 1));
  }
  CHECK(ratio(krylov::lost_orthogonality(found.vectors, digits), Real(1, -digits)) < 10);
}

constexpr Extreme kAll[] = {Extreme::largest_magnitude, Extreme::smallest_magnitude, Extreme::largest,
                            Extreme::smallest, Extreme::both_ends};

}  // namespace

TEST_CASE_TEMPLATE("eigenvalues of a sparse matrix are those of its dense form" * doctest::test_suite("long"), T, Real,
                   Complex) {
  Random random;
  for (const int digits : {1, 2, 20, 40, 333}) {
    CAPTURE(digits);
    const Digits scope(digits);
    const std::size_t n = digits == 333 ? 9 : 24;
    const SparseMatrix<T> a = samples::definite_sample<T>(random, n);
    std::vector<Real> all;
    {
      const Digits more(digits + 20);
      all = tesk2mp::symmetric_eigenvalues(krylov::dense(a));
    }
    const Real norm = all.back();
    for (const Extreme which : kAll) {
      if (digits == 333 && (which != Extreme::largest || !std::is_same_v<T, Real>)) {
        continue;
      }
      CAPTURE(int(which));
      for (const std::size_t k : {std::size_t(digits == 20 ? 1 : 4)}) {
        HermitianEigenOptions<T> options;
        options.which = which;
        options.basis = digits == 333 ? 8 : 14;
        check_pairs(a, tesk2mp::eigsh(a, k, options), chosen(all, k, which, {}), norm, digits);
        if (which != Extreme::smallest_magnitude) {
          {
            const Digits more(digits + 20);  // at one digit it might be an eigenvalue
            options.sigma = all[n / 2] + (all[n / 2 + 1] - all[n / 2]) / 3;
          }
          check_pairs(a, tesk2mp::eigsh(a, k, options), chosen(all, k, which, options.sigma), norm, digits);
        }
      }
    }
  }
}

TEST_CASE("a grid has its eigenvalues in closed form, each as many times as it counts") {
  for (const int digits : {50}) {
    const Digits scope(digits);
    constexpr int kSide = 6;
    std::vector<Real> all;
    {
      const Digits more(digits + 10);
      const Real pi = acos(Real(-1));
      for (int i = 1; i <= kSide; ++i) {
        for (int j = 1; j <= kSide; ++j) {
          all.push_back(4 - 2 * cos(i * pi / (kSide + 1)) - 2 * cos(j * pi / (kSide + 1)));
        }
      }
    }
    const SparseMatrix<Real> a = samples::grid(kSide, Storage::lower_triangle);
    HermitianEigenOptions<Real> options;
    for (const std::size_t k : {std::size_t(3), std::size_t(6)}) {  // 3: all of a pair; 6: the fifth is one of three
      for (const Extreme which : {Extreme::largest, Extreme::smallest, Extreme::both_ends}) {
        options.which = which;
        options.sigma.reset();
        check_pairs(a, tesk2mp::eigsh(a, k, options), chosen(all, k, which, {}), Real(8), digits);
      }
      options.which = Extreme::largest_magnitude;
      // At 10^-30 from an eigenvalue: the others are 10^30 times as far.
      for (const Real& sigma : {Real(0), all[1] + Real(1, -30), Real(4) + Real(1, -digits / 2)}) {
        const std::size_t few = sigma > 3 ? 6 : k;  // 4 counts 6 times
        options.sigma = sigma;
        check_pairs(a, tesk2mp::eigsh(a, few, options), chosen(all, few, options.which, options.sigma), Real(8),
                    digits);
      }
    }
    options.sigma = Real(4);
    CHECK_THROWS_AS(tesk2mp::eigsh(a, 2, options), tesk2mp::NumericalFailure);
    // From a vector that is symmetric in the two directions, which is orthogonal to half of those vectors.
    options = {};
    options.which = Extreme::smallest;
    options.start.assign(a.order(), Real(1));
    check_pairs(a, tesk2mp::eigsh(a, 6, options), chosen(all, 6, options.which, {}), Real(8), digits);
  }
}

TEST_CASE_TEMPLATE("small matrices, all of their eigenvalues, zero, the identity, any scale", T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 30}) {
    const Digits scope(digits);
    for (const std::size_t n : {std::size_t(1), std::size_t(2), std::size_t(3), std::size_t(7)}) {
      const SparseMatrix<T> sample = samples::definite_sample<T>(random, n);
      for (const Integer exponent : {-1000, 0, 1000, 100'000'000}) {
        SparseMatrix<T> a(n, Storage::lower_triangle);
        for (std::size_t i = 0; i < sample.entries(); ++i) {
          a.add(sample.row(i), sample.column(i), sample.value(i) * T(Real(1, exponent)));
        }
        const std::vector<Real> all = tesk2mp::symmetric_eigenvalues(krylov::dense(a));
        for (std::size_t k = std::max<std::size_t>(1, n - 2); k <= n; ++k) {
          check_pairs(a, tesk2mp::eigsh(a, k), chosen(all, k, Extreme::largest, {}), all.back(), digits);
        }
      }
      for (const Real& value : {Real(0), Real(1) / 3}) {
        SparseMatrix<T> diagonal(n);
        diagonal.add(0, 0, T(value));
        for (std::size_t i = 1; i < n; ++i) {
          diagonal.add(i, i, T(value));
        }
        check_pairs(diagonal, tesk2mp::eigsh(diagonal, n), std::vector<Real>(n, value), Real(1), digits);
        HermitianEigenOptions<T> options;
        options.basis = n > 3 ? 4 : 0;
        check_pairs(diagonal, tesk2mp::eigsh(diagonal, 1, options), {value}, Real(1), digits);
      }
    }
  }
}

TEST_CASE("the same digits every time, with any number of threads, and with values alone") {
  const Digits scope(40);
  const SparseMatrix<Real> a = samples::grid(7, Storage::lower_triangle);
  HermitianEigenOptions<Real> options;
  const HermitianEigenpairs<Real> once = tesk2mp::eigsh(a, 3, options);
  tesk2mp::set_threads(2);
  const HermitianEigenpairs<Real> again = tesk2mp::eigsh(a, 3, options);
  tesk2mp::set_threads(1);
  options.vectors = false;
  const HermitianEigenpairs<Real> alone = tesk2mp::eigsh(a, 3, options);
  CHECK(once.values == again.values);
  CHECK(once.residuals == again.residuals);
  for (std::size_t j = 0; j < 3; ++j) {
    CHECK(column(once.vectors, j) == column(again.vectors, j));
  }
  CHECK(once.values == alone.values);
  CHECK(alone.vectors.columns() == 0);
}

TEST_CASE("what cannot be done is said, and nothing is written") {
  const Digits scope(20);
  const auto info_of = [](const char* which, Integer n, Integer k, const Real* sigma, QuarnRealOperator product,
                          Integer ncv, const Real& tol, Integer most, const Real* v0, Integer ldz) {
    std::vector<Real> w(4, Real(7));
    std::vector<Real> z(16, Real(7));
    std::vector<Real> resid(4, Real(7));
    Integer products = 7;
    Integer info = 7;
    QuarnMPX_deigsh_(which, n, k, sigma, product, nullptr, ncv, tol, most, v0, w.data(), z.data(), ldz, resid.data(),
                     &products, &info, 2);
    const bool untouched = w == std::vector<Real>(4, Real(7)) && z == std::vector<Real>(16, Real(7)) && products == 7;
    CHECK(untouched == (info != 0 && info != 1));
    return info;
  };
  const QuarnRealOperator twice = [](void*, Integer, const Real* x, Real* y) {
    for (int i = 0; i < 4; ++i) {
      y[i] = (i + 1) * x[i];
    }
  };
  const QuarnRealOperator broken = [](void*, Integer, const Real* x, Real* y) {
    std::copy(x, x + 4, y);
    y[2] = Real("nan");
  };
  const Real nan("nan");
  const std::vector<Real> zeros(4);
  const std::vector<Real> wrong(4, Real("inf"));
  CHECK(info_of("la", 4, 2, nullptr, twice, 4, 0, 100, nullptr, 4) == 0);
  CHECK(info_of("LX", 4, 2, nullptr, twice, 4, 0, 100, nullptr, 4) == -1);
  CHECK(info_of("LA", 0, 2, nullptr, twice, 4, 0, 100, nullptr, 4) == -2);
  CHECK(info_of("LA", 4, 0, nullptr, twice, 4, 0, 100, nullptr, 4) == -3);
  CHECK(info_of("LA", 4, 5, nullptr, twice, 4, 0, 100, nullptr, 4) == -3);
  CHECK(info_of("LA", 4, 2, &nan, twice, 4, 0, 100, nullptr, 4) == -4);
  CHECK(info_of("LA", 4, 2, nullptr, nullptr, 4, 0, 100, nullptr, 4) == -5);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 3, 0, 100, nullptr, 4) == -7);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 5, 0, 100, nullptr, 4) == -7);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, 1, 100, nullptr, 4) == -8);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, nan, 100, nullptr, 4) == -8);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, 0, 0, nullptr, 4) == -9);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, 0, 100, zeros.data(), 4) == -10);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, 0, 100, wrong.data(), 4) == -10);
  CHECK(info_of("LA", 4, 2, nullptr, twice, 4, 0, 100, nullptr, 3) == -13);
  CHECK(info_of("LA", 4, 2, nullptr, broken, 4, 0, 100, nullptr, 4) == 2);
  CHECK(info_of("LA", 4, 1, nullptr, twice, 3, 0, 1, nullptr, 4) == 1);

  SparseMatrix<Real> a = samples::grid(6, Storage::general);
  a.add(3, 4, Real(1));
  CHECK_THROWS_AS(tesk2mp::eigsh(a, 2), tesk2mp::InvalidArgument);
  const SparseMatrix<Real> good = samples::grid(6, Storage::general);
  HermitianEigenOptions<Real> options;
  options.start.assign(3, Real(1));
  CHECK_THROWS_AS(tesk2mp::eigsh(good, 2, options), tesk2mp::InvalidArgument);
  options = {};
  options.which = Extreme::smallest_magnitude;
  options.most_products = 30;
  CHECK_THROWS_AS(tesk2mp::eigsh(samples::grid(15, Storage::general), 2, options), tesk2mp::NumericalFailure);
  CHECK(QuarnDigits() == 20);
}

TEST_CASE("what a product throws comes through, and it is not asked again") {
  struct Stop {
    int at;
  };
  QuarnSetDigits(20);
  for (const int at : {1, 2, 7}) {
    int calls = 0;
    const auto product = [&](std::span<const Real> x, std::span<Real> y) {
      if (++calls == at) {
        throw Stop{at};
      }
      for (std::size_t i = 0; i < x.size(); ++i) {
        y[i] = x[i] * Real(int(i) + 1);
      }
    };
    const auto stops = [&](const auto& work) {
      calls = 0;
      int stopped = 0;
      try {
        work();
      } catch (const Stop& stop) {
        stopped = stop.at;
      }
      CHECK(stopped == at);
      CHECK(calls == at);
      CHECK(QuarnDigits() == 20);
    };
    const std::vector<Real> b(30, Real(1));
    HermitianEigenOptions<Real> near;
    near.sigma = Real(0);
    stops([&] { tesk2mp::eigsh<Real>(30, product, 2); });
    stops([&] { tesk2mp::eigsh<Real>(30, product, 2, near, product); });
    stops([&] { tesk2mp::eigs<Real>(30, product, 2); });
    stops([&] { tesk2mp::svds<Real>(30, 30, product, product, 2); });
    stops([&] { tesk2mp::lsmr<Real>(30, product, product, b); });
  }
  const SparseMatrix<Real> grid = samples::grid(2, Storage::general);
  HermitianEigenOptions<Real> at_an_eigenvalue;
  at_an_eigenvalue.sigma = Real(4);
  CHECK_THROWS_AS(tesk2mp::eigsh(grid, 1, at_an_eigenvalue), tesk2mp::NumericalFailure);
}

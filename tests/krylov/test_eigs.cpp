// Some eigenvalues of general matrices: against the dense ones, with pairs kept together, and where there are too few
// eigenvectors.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "krylov/residuals.h"
#include "sparse/samples.h"

using krylov::column;
using krylov::ratio;
using support::Digits;
using support::Random;
using tesk2mp::Dominant;
using tesk2mp::EigenOptions;
using tesk2mp::Eigenpairs;
using tesk2mp::Real;
using tesk2mp::SparseMatrix;
using tesk2mp::Storage;

namespace {

/// The matrix over the complex numbers.
template <class T>
SparseMatrix<Complex> widened(const SparseMatrix<T>& a) {
  SparseMatrix<Complex> wide(a.order());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    wide.add(a.row(k), a.column(k), Complex(a.value(k)));
  }
  return wide;
}

template <class T>
Real preference(Dominant which, const Complex& value) {
  const Real height = std::is_same_v<T, Complex> ? value.im : fabs(value.im);
  return which == Dominant::largest_magnitude    ? tesk::modulus(value)
         : which == Dominant::smallest_magnitude ? -tesk::modulus(value)
         : which == Dominant::largest_real       ? value.re
         : which == Dominant::smallest_real      ? -value.re
         : which == Dominant::largest_imaginary  ? height
                                                 : -height;
}

/// Residuals are true and small; the values are eigenvalues, the most wanted ones within `slack`.
template <class T>
void check_pairs(const SparseMatrix<T>& a, const Eigenpairs& found, const std::vector<Complex>& all, std::size_t k,
                 Dominant which, const std::optional<T>& sigma, const Real& norm, int digits, double slack) {
  const Real unit = norm * Real(1, -digits);
  const SparseMatrix<Complex> wide = widened(a);
  const bool pairs = !std::is_same_v<T, Complex>;
  CHECK(found.values.size() >= k);
  CHECK(found.values.size() <= k + (pairs ? 1 : 0));
  for (std::size_t j = 0; j < found.values.size(); ++j) {
    const std::vector<Complex> x = column(found.vectors, j);
    CHECK(ratio(found.residuals[j], unit) < 20);
    CHECK(ratio(fabs(krylov::residual(wide, x, found.values[j], digits) - found.residuals[j]), unit) <
          (digits > 2 ? 0.01 : 1));
    CHECK(ratio(fabs(krylov::length(x) - 1), Real(1, -digits)) < 20);
  }
  const Digits more(digits + 20);
  std::vector<Real> expected;
  expected.reserve(all.size());
  const auto key = [&](const Complex& value) {
    return preference<T>(which, sigma ? Complex(1.0) / (value - Complex(*sigma)) : value);
  };
  for (const Complex& each : all) {
    expected.push_back(key(each));
  }
  std::ranges::sort(expected, std::greater());
  std::vector<Complex> left = all;
  for (std::size_t j = 0; j < found.values.size(); ++j) {
    CAPTURE(j);
    const auto nearest =
        std::ranges::min_element(left, {}, [&](const Complex& each) { return tesk::modulus(each - found.values[j]); });
    // One rounding, and what the iteration leaves by the condition of the eigenvalue.
    const Real allowed = 6 * tesk::modulus(found.values[j]) * Real(1, -digits);
    CHECK(tesk::modulus(*nearest - found.values[j]) <= allowed + slack * norm * Real(1, -std::max(digits, 8)));
    CHECK((digits <= 2 || key(*nearest) >= expected[j] - fabs(expected[j]) * Real(1, -10)));
    if (digits > 2) {  // a value of fewer digits may be nearer to the eigenvalue of another
      left.erase(nearest);
    }
  }
}

constexpr Dominant kAll[] = {Dominant::largest_magnitude, Dominant::smallest_magnitude, Dominant::largest_real,
                             Dominant::smallest_real,     Dominant::largest_imaginary,  Dominant::smallest_imaginary};

}  // namespace

TEST_CASE_TEMPLATE("eigenvalues of a general sparse matrix are those of its dense form" * doctest::test_suite("long"),
                   T, Real, Complex) {
  Random random;
  for (const int digits : {1, 2, 20, 40, 333}) {
    CAPTURE(digits);
    const Digits scope(digits);
    const std::size_t n = digits == 333 ? 8 : 16;
    const SparseMatrix<T> a = samples::general_sample<T>(random, n, 0);
    std::vector<Complex> all;
    {
      const Digits more(digits + 30);
      all = tesk2mp::eigenvalues(krylov::dense(a));
    }
    Real norm;
    for (const Complex& each : all) {
      norm = std::max(norm, tesk::modulus(each));
    }
    for (const Dominant which : kAll) {
      if (digits == 333 && (std::is_same_v<T, Complex> || which != Dominant::largest_magnitude)) {
        continue;
      }
      CAPTURE(int(which));
      EigenOptions<T> options;
      options.which = which;
      // From inside of the spectrum there is no convergence that could be relied upon.
      const bool inner = which == Dominant::smallest_magnitude || which == Dominant::smallest_imaginary;
      options.basis = inner || digits == 333 ? n : 12;
      const std::size_t k = digits == 20 ? 1 : 3;
      check_pairs(a, tesk2mp::eigs(a, k, options), all, k, which, options.sigma, norm, digits, 1e4);
      if (which == Dominant::largest_magnitude) {
        {
          const Digits more(digits + 20);  // at one digit it might be an eigenvalue
          options.sigma = T(norm / 3);
        }
        check_pairs(a, tesk2mp::eigs(a, k, options), all, k, which, options.sigma, norm, digits, 1e4);
      }
    }
  }
}

TEST_CASE("convection on a grid: pairs of conjugates stay together, real values are real") {
  const Digits scope(30);
  // Winds above 1 turn eigenvalues away from the real axis, alike for all: 4 + 2 i sqrt(w^2 - 1) (cos + cos).
  constexpr int kSide = 5;
  const Real wind = Real(3) / 2;
  std::vector<Complex> all;
  {
    const Digits more(60);
    const Real pi = acos(Real(-1));
    for (int i = 1; i <= kSide; ++i) {
      for (int j = 1; j <= kSide; ++j) {
        all.emplace_back(4, -2 * sqrt(wind * wind - 1) * (cos(i * pi / (kSide + 1)) + cos(j * pi / (kSide + 1))));
      }
    }
  }
  const SparseMatrix<Real> a = samples::grid(kSide, Storage::general, wind);
  EigenOptions<Real> options;
  options.basis = 14;
  const Eigenpairs found = tesk2mp::eigs(a, 3, options);
  REQUIRE(found.values.size() == 4);
  CHECK(found.values[0] == conj(found.values[1]));
  CHECK(found.values[2] == conj(found.values[3]));
  CHECK(column(found.vectors, 0) != column(found.vectors, 1));
  check_pairs(a, found, all, 3, options.which, options.sigma, Real(8), 30, 1e4);
  options.sigma = Real(5);
  check_pairs(a, tesk2mp::eigs(a, 4, options), all, 4, options.which, options.sigma, Real(8), 30, 1e4);
  EigenOptions<Complex> turned;
  turned.sigma = Complex(4, 2);
  turned.basis = 8;
  check_pairs(widened(a), tesk2mp::eigs(widened(a), 3, turned), all, 3, turned.which, turned.sigma, Real(8), 30, 1e4);
}

TEST_CASE_TEMPLATE("defective, zero and small matrices, any scale, all of the eigenvalues", T, Real, Complex) {
  const Digits scope(24);
  for (const std::size_t n : {std::size_t(1), std::size_t(2), std::size_t(3), std::size_t(9)}) {
    for (const Integer exponent : {-1000, 0, 1000}) {
      for (const int value : {0, 1}) {
        SparseMatrix<T> jordan(n);  // one eigenvector
        for (std::size_t i = 0; i < n; ++i) {
          jordan.add(i, i, T(Real(value, exponent)));
          if (i + 1 < n) {
            jordan.add(i, i + 1, T(Real(1, exponent)));
          }
        }
        for (std::size_t k = n > 3 ? n - 3 : 1; k <= n; ++k) {
          const Eigenpairs found = tesk2mp::eigs(jordan, k);
          for (std::size_t j = 0; j < found.values.size(); ++j) {
            CHECK(ratio(found.residuals[j], Real(1, exponent - 24)) < 30);
            CHECK(ratio(tesk::modulus(found.values[j] - Complex(Real(value, exponent))), Real(1, exponent)) < 0.02);
          }
        }
      }
    }
    SparseMatrix<T> none(n);
    none.add(0, 0, T(0.0));
    const Eigenpairs zero = tesk2mp::eigs(none, n);
    CHECK(zero.values == std::vector<Complex>(n));
    CHECK(zero.residuals == std::vector<Real>(n));
  }
  SparseMatrix<T> bad(3);
  bad.add(0, 0, T(1.0));
  bad.add(1, 2, T(Real("nan")));
  CHECK_THROWS_AS(tesk2mp::eigs(bad, 1), tesk2mp::NumericalFailure);
  CHECK_THROWS_AS(tesk2mp::eigs(bad, 4), tesk2mp::InvalidArgument);
}

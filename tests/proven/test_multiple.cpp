// Multiple eigenvalues of exact matrices, which are proven to be equal, beside spectra that are known exactly.
#include <doctest/doctest.h>

#include <vector>

#include "spectra.h"
#include "src/proven/distinct.h"
#include "src/proven/spectrum.h"
#include "support/digits.h"
#include "tesk2mp/proven_certify.hpp"

using namespace spectra;
using tesk::OneBasedMatrix;

namespace {

constexpr int kFine = 400;

Real number(const char* text) {
  const support::Digits scope(kFine);
  return Real(text);
}

/// V J V^-1 for V a product of integer row operations, with factors as far as `most`; exactly.
template <class T>
Matrix<T> similar(support::Random& random, Matrix<T> a, int most) {
  const support::Digits exact(kFine);
  const std::size_t n = a.rows();
  for (std::size_t step = 0; step < 2 * n && n > 1; ++step) {
    const auto i = std::size_t(random.between(0, std::int64_t(n) - 1));
    const auto j = (i + std::size_t(random.between(1, std::int64_t(n) - 1))) % n;
    T factor(double(random.between(-most, most)));
    if constexpr (sizeof(T) != sizeof(Real)) {
      factor.im = Real(double(random.between(-1, 1)));
    }
    for (std::size_t l = 0; l < n; ++l) {
      a(i, l) = a(i, l) + factor * a(j, l);
    }
    for (std::size_t l = 0; l < n; ++l) {
      a(l, j) = a(l, j) - factor * a(l, i);
    }
  }
  return a;
}

/// A Jordan matrix, or its like: a block of k rows for each value, ones beside the diagonal or zeros between them. Of a
/// real matrix values with an imaginary part have pairs of rows.
template <class T>
Matrix<T> jordan(support::Random& random, const std::vector<std::pair<Complex, int>>& values,
                 std::vector<Complex>& spectrum) {
  constexpr bool kReal = sizeof(T) == sizeof(Real);
  std::size_t n = 0;
  for (const auto& [value, k] : values) {
    n += std::size_t(kReal && value.im != 0 ? 2 * k : k);
  }
  Matrix<T> a(n, n);
  std::size_t row = 0;
  for (const auto& [value, k] : values) {
    const std::size_t step = kReal && value.im != 0 ? 2 : 1;
    for (int i = 0; i < k; ++i, row += step) {
      if constexpr (kReal) {
        a(row, row) = value.re;
        if (step == 2) {
          a(row + 1, row + 1) = value.re;
          a(row, row + 1) = value.im;
          a(row + 1, row) = -value.im;
        }
      } else {
        a(row, row) = value;
      }
      for (std::size_t l = 0; l < step && i + 1 < k && !random.once_in(4); ++l) {
        a(row + l, row + l + step) = T(1);
      }
      spectrum.push_back(value);
      if (step == 2) {
        spectrum.push_back(conj(value));
      }
    }
  }
  return a;
}

/// How many roots are known to nearly all digits.
std::size_t check_known(const std::vector<BoundedRoot>& roots, const std::vector<Complex>& spectrum, bool real,
                        int digits) {
  const support::Digits wide(kFine * 2);
  check_roots(roots, spectrum, Real());
  std::size_t sharp = 0;
  for (const BoundedRoot& root : roots) {
    // Those within the bound are one number, which is real where the root says so.
    const Real reach = root.error.is_finite() ? root.error.value() : Real(1);
    if (digits >= 20 && reach < Real(1, 2 - digits)) {
      ++sharp;
      const auto near = std::find_if(spectrum.begin(), spectrum.end(),
                                     [&](const Complex& each) { return size(each - root.value) <= reach; });
      REQUIRE(near != spectrum.end());
      CHECK(std::size_t(std::count(spectrum.begin(), spectrum.end(), *near)) == root.count);
      CHECK((!real || root.is_real == (near->im == 0)));
    }
  }
  return sharp;
}

template <class T>
std::size_t check_random(support::Random& random, int digits) {
  const auto value = [&] {
    const bool has_imaginary = random.once_in(sizeof(T) == sizeof(Real) ? 3 : 2);
    return Complex(number("0.125") * Real(double(random.between(-40, 40))),
                   has_imaginary ? number("0.125") * Real(double(random.between(9, 23))) : Real());
  };
  std::vector<std::pair<Complex, int>> values;
  for (std::int64_t k = random.between(1, 3); k > 0; --k) {
    values.emplace_back(value(), int(random.between(1, 3)));
  }
  std::vector<Complex> spectrum;
  const Matrix<T> a = similar(random, jordan<T>(random, values, spectrum), 1);
  const support::Digits scope(digits);
  const auto system = proven::eigen(a);
  for (std::size_t j = 0; j < a.rows(); ++j) {
    CHECK((system.values[j].count == 1 || !QuarnBound(system.vectors.errors()(0, j)).is_finite()));
  }
  const std::size_t known = check_known(system.values, spectrum, sizeof(T) == sizeof(Real), digits);
  CHECK((digits < 50 || known == a.rows()));
  return known;
}

template <class T>
OneBasedMatrix<T> one_based(std::vector<T>& elements, Integer n) {
  return {elements.data(), n};
}

}  // namespace

TEST_CASE("multiple eigenvalues are known to nearly all digits") {
  support::Random random;
  for (const int digits : {1, 2, 20, 50, 333}) {
    CAPTURE(digits);
    for (int round = 0; round < (digits < 300 ? 5 : 1); ++round) {
      (void)check_random<Real>(random, digits);
      (void)check_random<Complex>(random, digits);
    }
  }
  // Of different multiplicity, nilpotent ones and a single one of order 10, with the digits that are wanted alone.
  const std::vector<std::vector<std::pair<Complex, int>>> kinds = {{{2, 4}, {-3, 3}, {5, 2}, {7, 1}},
                                                                   {{0, 6}, {1, 1}},
                                                                   {{1, 7}},
                                                                   {{Complex(1, 2), 3}, {4, 2}},
                                                                   {{number("0.0078125"), 3}}};
  for (const auto& values : kinds) {
    std::vector<Complex> spectrum;
    const Matrix<Real> a = similar(random, jordan<Real>(random, values, spectrum), 1);
    int worked_with = 0;
    const support::Digits scope(40);
    const auto roots = proven::to_digits(40, [&] {
      worked_with = QuarnDigits();
      return proven::eigenvalues(a);
    });
    CHECK(worked_with <= 50);
    CHECK(check_known(roots, spectrum, true, 40) == a.rows());
    CHECK(std::all_of(roots.begin(), roots.end(), [](const auto& root) { return root.is_real || root.value.im != 0; }));
    const auto certificate = proven::certify_eigenvalues(a, roots, worked_with);
    CHECK_NOTHROW((void)proven::verify(certificate));
  }
}

TEST_CASE("the eigenvalue 0 of an exact singular matrix is exact") {
  support::Random random;
  const auto zeros = [](const auto& roots) {
    return std::count_if(roots.begin(), roots.end(),
                         [](const auto& root) { return root.value == Complex(0) && root.error.is_zero(); });
  };
  const std::vector<std::pair<std::vector<std::pair<Complex, int>>, int>> kinds = {
      {{{0, 5}}, 5}, {{{0, 1}, {-3, 2}, {5, 1}}, 1}, {{{0, 3}, {Complex(1, 2), 1}}, 3}, {{{2, 3}, {7, 1}}, 0}};
  for (const int digits : {1, 2, 40, 333}) {
    CAPTURE(digits);
    for (const auto& [values, expected] : kinds) {
      std::vector<Complex> spectrum;
      const Matrix<Real> a = similar(random, jordan<Real>(random, values, spectrum), 1);
      int worked_with = 0;
      const support::Digits scope(digits);
      const auto roots = proven::to_digits(digits, [&] {
        worked_with = QuarnDigits();
        return proven::eigenvalues(a);
      });
      CHECK(zeros(roots) == expected);
      check_roots(roots, spectrum, Real());
      if (digits <= 40) {
        CHECK_NOTHROW((void)proven::verify(proven::certify_eigenvalues(a, roots, worked_with)));
      }
    }
  }
  // What is close to 0 is no zero, and what errors of the elements allow is none either.
  const support::Digits scope(20);
  const Matrix<Real> near = {{1, 2}, {Real(0.5), Real("1.000000000000000001")}};
  CHECK(zeros(proven::eigenvalues(near)) == 0);
  const proven::BoundedMatrix<Real> uncertain(Matrix<Real>{{1, 2}, {Real(0.5), 1}},
                                              Matrix<Real>{{0, Real("1e-90")}, {0, 0}});
  CHECK(zeros(proven::eigenvalues(uncertain)) == 0);
  CHECK(zeros(proven::eigenvalues(uncertain.values())) == 1);
}

TEST_CASE("eigenvalues that are nearly equal") {
  support::Random random;
  for (const int digits : {2, 20, 50}) {
    for (const bool above : {true, false}) {
      CAPTURE(digits);
      CAPTURE(above);
      // 3 and 3 + 10^-60, or 3 +- 10^-30.
      Matrix<Real> a = {{3, 1, 0}, {0, 3, 0}, {0, 0, 8}};
      (above ? a(1, 1) : a(1, 0)) = above ? number("3") + number("1e-60") : number("1e-60");
      {
        const support::Digits exact(kFine);
        a(1, 1) = above ? Real(3) + Real("1e-60") : Real(3);
      }
      a = similar(random, a, 2);
      const support::Digits scope(digits);
      const auto roots = proven::eigenvalues(a);
      const support::Digits wide(kFine);
      const Real low = above ? Real(3) : Real(3) - Real("1e-30");
      const Real high = above ? Real(3) + Real("1e-60") : Real(3) + Real("1e-30");
      check_roots(roots, {low, high, 8}, Real());
      for (const BoundedRoot& root : roots) {
        const bool is_cluster = root.count == 2;
        CHECK(!(is_cluster && root.is_real));
        CHECK((!is_cluster || size(root.value - Complex(low)) <= root.error.value()));
        CHECK((!is_cluster || size(root.value - Complex(high)) <= root.error.value()));
      }
    }
  }
  // A has one eigenvalue; those of A x = lambda B x are 1 +- 10^-30, nearly.
  const support::Digits scope(20);
  Matrix<Real> b = {{-1, 4}, {-1, 3}};
  {
    const support::Digits exact(kFine);
    const Real little("1e-60");
    b = {{little - 1, 4 - little}, {little - 1, 3 - little}};
  }
  const auto roots = proven::eigenvalues(Matrix<Real>::identity(2), b);
  const support::Digits wide(kFine);
  const Real one(1);
  check_roots(roots, {one / (one + Real("1e-30")), one / (one - Real("1e-30"))}, Real("1e-300"));
}

TEST_CASE("terms of means of eigenvalues") {
  using namespace tesk::proven;
  const auto is_at_least = [](const QuarnBound& bound, const char* value) { return bound.value() >= number(value); };
  const auto of_pair = [](const Complex& second, const char* e11, const char* e12, const char* e21, const char* e22) {
    const Complex w[] = {0, second};
    BoundMatrix e(2);
    e(1, 1) = QuarnBound(number(e11));
    e(1, 2) = QuarnBound(number(e12));
    e(2, 1) = QuarnBound(number(e21));
    e(2, 2) = QuarnBound(number(e22));
    return Spectrum(2, w, e).mean_error({0}, 0);
  };
  // (0, 0.4; -0.4, 1) has the eigenvalue 0.2, (0, 0.2; -0.2, 0.5) has 0.1 with the gap 0.5 and with 1 - 0.5, and
  // (0.5, 0.2; -0.2, 1) has 0.6.
  CHECK(is_at_least(of_pair(1, "0", "0.4", "0.4", "0"), "0.2"));
  CHECK(is_at_least(of_pair(number("0.5"), "0", "0.2", "0.2", "0"), "0.1"));
  CHECK(is_at_least(of_pair(1, "0", "0.2", "0.2", "0.5"), "0.1"));
  CHECK(is_at_least(of_pair(1, "0.5", "0.2", "0.2", "0"), "0.6"));
  CHECK(of_pair(1, "0", "0.2", "0.2", "0").value() < number("0.09"));
  CHECK(!of_pair(1, "0", "2", "2", "0").is_finite());
  {
    const support::Digits scope(1);
    const Complex w[] = {number("1.044"), 2};
    const Spectrum spectrum(2, w, BoundMatrix(2));
    CHECK(is_at_least(spectrum.mean_error({0}, 1), "0.044"));
    CHECK(is_at_least(spectrum.mean_error({0, 1}, 2), "0.478"));
  }
  // An exact block, whose disc is a point whatever its weights.
  std::vector<Complex> m{0, 0, 1, 0};
  CHECK(!Spectrum(2, one_based(m, 2), {1, 3}, BoundMatrix(2)).mean_error({0, 1}, 0).is_finite());
  // 36 = det(2, 0; 0, 18) of 3 and -3, and 18 = tr A^2.
  CHECK(minors_of_traces(2, 1, QuarnBound::count(3)) >= QuarnBound::count(18));
  CHECK(minors_of_traces(2, 2, QuarnBound::count(3)) >= QuarnBound::count(36));
  CHECK(minors_of_traces(2, 2, QuarnBound::power_of_ten(-1)) >= QuarnBound::count(2));
  // Modulo the first two primes this is 0; elements of different exponents.
  std::vector<Complex> both{0, 0, 0, number("2147483629") * number("2147483549e-40")};
  const QuarnBound radius(both[3]);
  CHECK(!distinct_eigenvalues(2, one_based(both, 2), true, radius, 1));
  CHECK(distinct_eigenvalues(2, one_based(both, 2), true, radius, 2) == 2);
  both[0] = number("1e-600000000");
  CHECK(!distinct_eigenvalues(2, one_based(both, 2), true, radius, 1));
  std::vector<Complex> zero(4);
  CHECK(distinct_eigenvalues(2, one_based(zero, 2), true, QuarnBound(), 1) == 1);
  // Equal ones are real where the mirrored disc meets no other one.
  const auto disc = [](const char* re, const char* im, Integer count) {
    return Disc{Complex(number(re), number(im)), QuarnBound(number("0.2")), count, count > 1};
  };
  std::vector<Disc> discs{disc("1", "0.1", 2), disc("2", "0.1", 1)};
  make_real(discs);
  CHECK(discs[0].value == Complex(1));
  CHECK(is_at_least(discs[0].error, "0.3"));
  CHECK(discs[0].count == 2);
  discs = {disc("1", "0.15", 2), disc("1", "-0.3", 2)};
  make_real(discs);
  CHECK(discs[0].value.im != 0);
}

// Each term of a proof where it decides: cases in which the bound without it would be wrong. mutations.py deletes the
// terms one by one.
#include <doctest/doctest.h>

#include <vector>

#include "src/proven/factor_proof.h"
#include "src/proven/forms.h"
#include "src/proven/spectrum.h"
#include "src/proven/taylor.h"
#include "support/digits.h"
#include "tesk2mp/proven.h"
#include "tesk2mp/proven_spectra.h"

using tesk::OneBasedMatrix;
using tesk::OneBasedVector;
using namespace tesk::proven;

namespace {

constexpr int kFine = 60;

QuarnFloat number(const char* text) {
  const support::Digits scope(kFine);
  return QuarnFloat(text);
}
OneBasedMatrix<QuarnFloat> matrix(std::vector<QuarnFloat>& elements, Integer n) { return {elements.data(), n}; }
bool is_at_least(const QuarnBound& bound, const char* value) {
  const support::Digits scope(kFine);
  return bound.value() >= QuarnFloat(value);
}
Range range_of(const std::vector<QuarnFloat>& numbers) {
  Range range;
  for (const QuarnFloat& each : numbers) {
    range.take(each);
  }
  return range;
}

/// Bounds of |y - r / a| by an inverse of so many digits.
QuarnBound by_inverse(const char* a, const char* of_a, int digits, const char* r, const char* of_r) {
  std::vector<QuarnFloat> given{number(a)};
  std::vector<QuarnFloat> error{number(of_a)};
  std::vector<QuarnFloat> right{number(r)};
  std::vector<QuarnFloat> y(1);
  ApproximateInverse<QuarnFloat> inverse(1, matrix(given, 1), {error.data(), 1}, digits, range_of(given));
  inverse.apply(1, matrix(right, 1), matrix(y, 1));
  return inverse.errors(OneBasedVector<QuarnFloat>(y.data(), 1), {QuarnBound(), QuarnBound(number(of_r))},
                        inverse.range())[1];
}

}  // namespace

TEST_CASE("terms of a rounding") {
  const Rounded two(2, Range());
  CHECK(is_at_least(two.error(number("0.12")), "0.005"));
  CHECK(is_at_least(two.size(number("0.12")), "0.125"));
  CHECK(is_at_least(two.error(Complex(number("0.12"), number("-0.12"))), "0.00707106781"));
  CHECK(two.error(number("0")).is_zero());
  const Rounded far(2, range_of({number("1e-900000000")}));
  CHECK(is_at_least(far.error(number("0")), "1e-999999999"));
}

TEST_CASE("terms of the bound of I - R A") {
  std::vector<QuarnFloat> one{number("1")};
  std::vector<QuarnFloat> a{number("0.8999999999999999996")};
  CHECK(is_at_least(distance_from_identity(1, matrix(one, 1), matrix(a, 1), Range())[1], "0.1000000000000000004"));
}

TEST_CASE("terms of the proof by an inverse") {
  const support::Digits scope(18);
  // R = 0.3 of A = 3: 1/3 is 0.3 and 0.3 times 0.1 / 0.9.
  CHECK(is_at_least(by_inverse("3", "0", 1, "1", "0"), "0.033333333333333333"));
  // The same of a residual known to be within 1 alone.
  CHECK(is_at_least(by_inverse("3", "0", 1, "0", "1"), "0.333333333333333333"));
  CHECK(is_at_least(by_inverse("4", "0", 2, "1", "0.01"), "0.0025"));
  CHECK(is_at_least(by_inverse("4", "1", 2, "1", "0"), "0.0833333333"));
  const support::Digits few(2);
  CHECK(is_at_least(by_inverse("4", "0", 2, "0.5", "0"), "0.005"));
}

TEST_CASE("terms of the proof by factors") {
  // Its theorem evaluated with 60 digits, for n = 1 and factors of four digits: g = k u / (1 - k u), k u = 72 * 0.0005.
  std::vector<QuarnFloat> three{number("3")};
  const FactorProof<QuarnFloat> proof(1, matrix(three, 1), 4, range_of(three));
  std::vector<QuarnFloat> y{number("1")};
  const OneBasedVector<QuarnFloat> vector(y.data(), 1);
  const QuarnBound bound = proof.errors(vector, {QuarnBound(), QuarnBound()}, range_of(y))[1];
  const support::Digits scope(kFine);
  const QuarnFloat units = QuarnFloat("0.036");
  const QuarnFloat g = units / (1 - units);
  const QuarnFloat of_triangles = 2 * g + g * g;
  CHECK(proof.norm().value() >= g);
  CHECK(bound.value() >= of_triangles + g * (1 + of_triangles) / (1 - g));
  // Residuals pass the factors, in the order of the pivots.
  std::vector<QuarnFloat> a{number("0.001"), 1, 1, 0};
  const FactorProof<QuarnFloat> both(2, matrix(a, 2), 20, range_of(a));
  std::vector<QuarnFloat> zeros(2);
  const auto bounds = both.errors(OneBasedVector<QuarnFloat>(zeros.data(), 1),
                                  {QuarnBound(), QuarnBound::count(1), QuarnBound()}, range_of(zeros));
  CHECK(bounds[2] >= QuarnBound::count(1));
  std::vector<QuarnFloat> quarter{number("0.25")};
  const FactorProof<QuarnFloat> small(1, matrix(quarter, 1), 20, range_of(quarter));
  CHECK(small.errors(OneBasedVector<QuarnFloat>(zeros.data(), 1), {QuarnBound(), QuarnBound::count(1)},
                     range_of(zeros))[1] >= QuarnBound::count(4));
}

TEST_CASE("terms of norms and defects") {
  std::vector<QuarnFloat> u{number("1.1"), number("1e-10")};
  CHECK(is_at_least(defect(2, 1, matrix(u, 2), range_of(u)), "0.21000000000000000001"));
  SpectralNorm norm(2);
  norm.next_column();
  norm.take(1, QuarnBound::count(3));
  norm.take(2, QuarnBound::count(4));
  CHECK(norm.bound() >= QuarnBound::count(5));
  norm.next_column();
  norm.take(1, QuarnBound::count(4));
  norm.take(2, QuarnBound::count(3));
  CHECK(norm.bound() >= QuarnBound::count(7));  // of (3, 4; 4, 3)
  CHECK(is_at_least(reciprocal_bound(number("3")), "0.33333333333333333333333"));
  CHECK(least_size(Complex(3, 4)) <= 5);
}

TEST_CASE("terms of Miyajima's bounds") {
  QuarnFloat radius[3];
  Integer count[3];
  Integer info = -99;
  {
    // Of the rounding of A X - X D, whose last column is (0, 0.0010000000000000000004, 0.001): X^-1 of that begins with
    // 4e-22, and with 0 once it is rounded.
    const support::Digits scope(20);
    QuarnFloat a[] = {100, 0, 0, -98, 2, 0, 98, number("0.0010000000000000000004"), number("2.001")};
    Complex w[] = {100, 2, 2};
    Complex x[] = {1, 0, 0, 1, 1, 0, 0, 1, 1};
    QuarnMPX_dproven_eigenvalues_(3, a, 3, nullptr, 0, w, x, 3, radius, count, &info);
    CHECK(radius[0] >= number("4e-22"));
    CHECK(radius[0] <= number("4e-20"));
  }
  {
    // Of that of X D, twelve digits here.
    const support::Digits scope(1);
    QuarnFloat a(1);
    Complex w(number("1.0000000000004"));
    Complex x(1);
    QuarnMPX_dproven_eigenvalues_(1, &a, 1, nullptr, 0, &w, &x, 1, radius, count, &info);
    CHECK(radius[0] >= number("4e-13"));
    // Of that of B X.
    QuarnFloat b = number("1.0000000000004");
    w = Complex(1);
    QuarnMPX_dproven_eigen_(1, &a, 1, nullptr, 0, &b, 1, nullptr, 0, &w, &x, 1, radius, nullptr, count, nullptr, &info);
    CHECK(radius[0] >= number("3.999e-13"));
  }
  // Of a rotation by pairs: A moves both parts of x by 0.25.
  const support::Digits scope(20);
  QuarnFloat a[] = {number("0.25"), -1, 1, number("0.25")};
  Complex w[] = {Complex(0, 1), Complex(0, -1)};
  Complex x[] = {1, Complex(0, 1), 1, Complex(0, -1)};
  QuarnMPX_dproven_eigenvalues_(2, a, 2, nullptr, 0, w, x, 2, radius, count, &info);
  CHECK(radius[0] >= number("0.25"));
  CHECK(radius[0] <= number("0.5001"));
  CHECK(count[0] == 1);
}

TEST_CASE("terms of discs and eigenvectors") {
  std::vector<Disc> discs(2);
  const QuarnBound half = QuarnBound::count(5) * QuarnBound::power_of_ten(-1);
  discs[0] = {Complex(0), half};
  discs[1] = {Complex(1), half};
  resolve(discs, false);
  CHECK(discs[0].count == 2);
  CHECK(discs[0].value == Complex(number("0.5")));
  CHECK(discs[0].error >= QuarnBound::count(1));
  // (0.25, 0; 0.25, 1) has (1, -1/3) for 0.25, the end of the first disc.
  const Complex w[] = {0, 1};
  BoundMatrix e(2);
  e(1, 1) = QuarnBound(number("0.25"));
  e(2, 1) = QuarnBound(number("0.25"));
  const Spectrum spectrum(2, w, e);
  CHECK(is_at_least(spectrum.discs()[0].error, "0.25"));
  CHECK(is_at_least(spectrum.coefficients(1)[2], "0.33333333333333333"));
  // And (0.25, 0; 0.25, 1.25), the other disc's end.
  e(2, 2) = QuarnBound(number("0.25"));
  const Complex far[] = {0, number("1.5")};
  CHECK(is_at_least(Spectrum(2, far, e).coefficients(1)[2], "0.25"));
}

TEST_CASE("terms of Pellet's circles") {
  const support::Digits scope(20);
  // z^2 - 2 z + 1.01 has the zeros 1 +- 0.1 i, both 0.1414 away from 1.1: 0.02, 0.2 and 1 are the terms there.
  const std::vector<QuarnFloat> a{1, -2, number("1.01")};
  Complex zeros[] = {Complex(number("1.1")), Complex(5)};
  QuarnFloat error[2];
  Integer count[2];
  Integer info = -99;
  QuarnMPX_dproven_zeros_(2, a.data(), zeros, error, count, &info);
  CHECK((!QuarnBound(error[0]).is_finite() || count[0] == 2 || error[0] >= number("0.141")));
  CHECK((!QuarnBound(error[1]).is_finite() || count[1] == 2 || error[1] >= number("3.9")));
}

TEST_CASE("terms of expansions and circles") {
  // 1.5 + 9 c at c = 1.5 with one digit, and the bound of that evaluated with 60: 32 half units of 1.5 + 9 c.
  std::vector<QuarnFloat> a{number("1.5"), number("9")};
  const Complex c(number("1.5"));
  const auto relative_of = [](const char* units) {
    const support::Digits scope(kFine);
    return QuarnFloat(units) / (1 - QuarnFloat(units));
  };
  for (const auto& [digits, units] : {std::pair(3, "0.24"), std::pair(12, "0.24e-9")}) {
    const support::Digits scope(digits);
    const Taylor t = taylor(a, c);
    const QuarnFloat relative = relative_of(units);
    const support::Digits fine(kFine);
    CHECK(t.errors[0].value() >= relative * number("11.25"));
    CHECK(t.errors[1].value() >= relative * number("1.5"));
    CHECK(QuarnBound(t.values[0] - Complex(number("11.25"))) <= t.errors[0]);
  }
  // t(1) = 4 beside t(0) = 1.5, t(2) = 1.5, r = 1; errors of a half each do not leave it.
  const QuarnBound one = QuarnBound::count(1);
  const QuarnBound half = QuarnBound::count(5) * QuarnBound::power_of_ten(-1);
  const auto is_dominant = [&](std::vector<QuarnBound> errors) {
    return dominates({{Complex(number("1.5")), Complex(4), Complex(number("1.5"))}, std::move(errors)}, 1, one);
  };
  CHECK(is_dominant({QuarnBound(), QuarnBound(), QuarnBound()}));
  CHECK(is_dominant({half, QuarnBound(), QuarnBound()}));
  for (std::size_t large = 0; large < 3; ++large) {
    std::vector<QuarnBound> errors(3);
    errors[large] = one;
    CHECK(!is_dominant(errors));
  }
  // What is as large is not larger, whatever the digits at work round it to.
  const support::Digits scope(2);
  for (const char* size : {"0.945", "0.955", "0.965", "0.975", "0.985", "0.995", "1.05", "1.15"}) {
    const auto part = [&](const char* cosine) {
      const support::Digits fine(kFine);
      return number(size) * QuarnFloat(cosine);
    };
    const Complex turned(part("0.6"), part("0.8"));
    CHECK(!dominates({{Complex(number(size)), turned}, {QuarnBound(), QuarnBound()}}, 1, one));
  }
}

TEST_CASE("terms of forms and Cholesky factors") {
  const support::Digits scope(1);
  const auto form = [](const char* a, const char* x) {
    std::vector<QuarnFloat> matrix_of{number(a)};
    std::vector<QuarnFloat> vector{number(x)};
    const Form result = hermitian_form(1, matrix(matrix_of, 1), matrix(vector, 1), range_of(matrix_of));
    const support::Digits fine(kFine);
    return result.error.value() >= fabs(result.value - number(a) * number(x) * number(x));
  };
  CHECK(form("0.5", "3"));  // 1.5 becomes 2, 4.5 becomes 6
  CHECK(form("6", "1.5"));  // 9 times 1.5 becomes 10
  const auto distance = [](const char* a, const char* l, const char* c) {
    std::vector<QuarnFloat> matrix_of{number(a)};
    std::vector<QuarnFloat> factor{number(l)};
    const QuarnBound bound =
        distance_from_factors(1, matrix(matrix_of, 1), matrix(factor, 1), number(c), range_of(matrix_of));
    const support::Digits fine(kFine);
    return bound.value() >= fabs(number(a) - number(l) * number(l) - number(c));
  };
  CHECK(distance("1.49", "0", "1"));      // 1.49 becomes 1
  CHECK(distance("1", "0", "24"));        // 23 becomes 20
  CHECK(distance("-0.24", "0.9", "24"));  // -1.05 and -25.05, which become -1 and -20
  std::vector<QuarnFloat> a{1, 3, 3, 1};
  std::vector<QuarnFloat> l{1, 0, 0, 1};
  CHECK(distance_from_factors(2, matrix(a, 2), matrix(l, 2), 2, range_of(a)) >= QuarnBound::count(5));
}

TEST_CASE("terms of determinants") {
  const auto error_of = [](std::vector<QuarnFloat> a, std::vector<QuarnFloat> of_a, Integer n) {
    QuarnFloat determinant;
    QuarnFloat error;
    Integer info = -99;
    QuarnMPX_dproven_determinant_(n, a.data(), n, of_a.data(), of_a.empty() ? 0 : n, &determinant, &error, &info);
    CHECK(info == 0);
    return error;
  };
  const auto is_just = [](const QuarnFloat& error, const char* least) {
    const support::Digits fine(kFine);
    return error >= number(least) && error <= number(least) * number("1.000001");
  };
  const support::Digits scope(1);
  // Three steps of 10^(2 - 11), and the rounding of the result.
  CHECK(is_just(error_of({8}, {}, 1), "0.500000024"));
  CHECK(is_just(error_of({4, 0, 0, 4}, {1, 0, 0, 1}, 2), "21"));  // 0.5 / (1 - 0.5) of 16, and 5
  // 30 ones, the first of them within 1 / 2: s / (1 - s) of 0.5000000015, 32 / 10^9, their product, and 0.5.
  constexpr Integer kOrder = 30;
  std::vector<QuarnFloat> identity(std::size_t(kOrder * kOrder));
  for (std::size_t k = 0; k < std::size_t(kOrder); ++k) {
    identity[k * (std::size_t(kOrder) + 1)] = 1;
  }
  std::vector<QuarnFloat> uncertain(identity.size());
  uncertain[0] = number("0.5");
  CHECK(is_just(error_of(identity, uncertain, kOrder), "1.50000007"));
  CHECK(error_of(identity, uncertain, kOrder) >= number("1.50000007"));
  // X has 1 and 1.5 in its columns, Y 0.01 and 1, in the order of the pivots: 100 * 0.75 / 0.25, and 50.
  CHECK(is_just(error_of({50, 100, 1, 0}, {0, 0, 0, number("0.5")}, 2), "350"));
  // (3, 10^8; 0, 7) by its inverse of 11 digits.
  CHECK(is_just(error_of({3, 0, 100'000'000, 7}, {}, 2), "5.02633306"));
}

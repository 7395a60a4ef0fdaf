// Each term of a proof where it decides: cases in which the bound without it would be wrong. mutations.py deletes the
// terms one by one.
#include <doctest/doctest.h>

#include <vector>

#include "src/proven/factor_proof.h"
#include "src/proven/spectrum.h"
#include "support/digits.h"
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
    QuarnMPX_dproven_eigen_(1, &a, 1, nullptr, 0, &b, 1, nullptr, 0, &w, &x, 1, radius, nullptr, count, &info);
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

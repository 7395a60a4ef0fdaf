// Certificates of what does not fit together: refused before anything is read.
#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tesk2mp/proven_certify.hpp"

using tesk2mp::InvalidArgument;
using tesk2mp::Matrix;
using tesk2mp::Real;
namespace proven = tesk2mp::proven;

namespace {

std::vector<proven::BoundedRoot> roots_of(std::size_t count) {
  std::vector<proven::BoundedRoot> roots;
  for (std::size_t k = 0; k < count; ++k) {
    roots.push_back({Complex(int(k) + 1), QuarnBound(), 1, true});
  }
  return roots;
}

}  // namespace

TEST_CASE("certificates are refused where lengths differ, or nothing is there") {
  constexpr int kDigits = 20;
  const tesk2mp::Digits scope(kDigits);
  const Matrix<Real> a = {{Real(1), Real(0)}, {Real(0), Real(2)}};
  const Matrix<Real> none;
  const Matrix<Real> tall(3, 2);
  const Matrix<Real>* unit = nullptr;
  CHECK_THROWS_AS(proven::certify_solution(none, unit, none, none, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_solution(tall, unit, tall, tall, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_solution(a, unit, tall, Matrix<Real>(2, 2), kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_solution(a, unit, Matrix<Real>(2, 2), Matrix<Real>(1, 2), kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_solution(a, &tall, tall, tall, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_determinant(none, Real(1), QuarnBound(), kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_determinant(tall, Real(1), QuarnBound(), kDigits), InvalidArgument);
  for (const bool singular : {false, true}) {
    CHECK_THROWS_AS(proven::certify_values(singular, none, {}, {}, kDigits), InvalidArgument);
    CHECK_THROWS_AS(proven::certify_values(singular, a, {Real(1)}, {Real(), Real()}, kDigits), InvalidArgument);
    CHECK_THROWS_AS(proven::certify_values(singular, a, {Real(1), Real(2)}, {Real()}, kDigits), InvalidArgument);
    CHECK_THROWS_AS(proven::certify_values(singular, tall, std::vector<Real>(3), std::vector<Real>(3), kDigits),
                    InvalidArgument);
  }
  CHECK_THROWS_AS(proven::certify_eigenvalues(none, {}, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_eigenvalues(tall, roots_of(2), kDigits), InvalidArgument);
  const std::vector<Complex> polynomial = {Complex(1), Complex(-3), Complex(2)};
  for (const std::vector<proven::BoundedRoot>& roots : {roots_of(0), roots_of(1), roots_of(3)}) {
    CHECK_THROWS_AS(proven::certify_eigenvalues(a, roots, kDigits), InvalidArgument);
    CHECK_THROWS_AS(proven::certify_zeros(polynomial, roots, kDigits), InvalidArgument);
  }
  CHECK_THROWS_AS(proven::certify_zeros({}, {}, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_zeros({Complex(1)}, {}, kDigits), InvalidArgument);
  CHECK_THROWS_AS(proven::certify_zeros(std::vector<Complex>(3), roots_of(2), kDigits), InvalidArgument);
}

TEST_CASE("a certificate has each part once, and none of another kind") {
  constexpr int kDigits = 20;
  const tesk2mp::Digits scope(kDigits);
  const std::vector<Complex> polynomial = {Complex(1), Complex(-3), Complex(2)};
  std::vector<proven::BoundedRoot> roots = roots_of(2);
  for (proven::BoundedRoot& root : roots) {
    root.error = QuarnBound(Real(1, -10));
  }
  const proven::Certificate certificate = proven::certify_zeros(polynomial, roots, kDigits);
  CHECK(proven::verify(certificate) == "the zeros of a polynomial of degree 2");
  for (const char* name : {"a", "near", "b", ""}) {
    proven::Certificate other = certificate;
    other.add(name, {{Complex(1)}});
    CHECK_THROWS_AS(static_cast<void>(proven::verify(other)), InvalidArgument);
  }
}

TEST_CASE("what a certificate proves depends on no working digits") {
  constexpr std::size_t kOrder = 14;
  constexpr int kDigits = 30;
  const auto says = [](const proven::Certificate& certificate, int digits) -> std::string {
    const tesk2mp::Digits scope(digits);
    try {
      return proven::verify(certificate);
    } catch (const tesk2mp::NumericalFailure& failure) {
      return failure.text();
    }
  };
  std::vector<proven::Certificate> certificates;
  {
    const tesk2mp::Digits scope(kDigits);
    Matrix<Real> a(kOrder, kOrder);
    std::vector<Complex> polynomial(kOrder + 1);
    for (std::size_t i = 0; i < kOrder; ++i) {
      for (std::size_t j = 0; j < kOrder; ++j) {
        a(i, j) = Real(i == j ? 40 + int(i) : 1) / Real(int(i + j) + 3);
      }
      polynomial[i + 1] = Complex(int(i * i % 7) - 3);
    }
    polynomial[0] = Complex(1);
    const auto determinant = proven::determinant(a);
    certificates.push_back(proven::certify_determinant(a, determinant.value, determinant.error, kDigits));
    certificates.push_back(proven::certify_eigenvalues(a, proven::eigenvalues(a), kDigits));
    certificates.push_back(proven::certify_zeros(polynomial, proven::zeros(polynomial), kDigits));
  }
  for (const proven::Certificate& certificate : certificates) {
    CAPTURE(certificate.kind);
    // Bounds of the proof that are a tenth too small.
    proven::Certificate wrong{certificate.kind, {}};
    for (auto [name, values] : certificate.parts) {
      const tesk2mp::Digits scope(kDigits);
      if (name == "near_errors") {
        std::for_each(values.data(), values.data() + values.rows(), [](Complex& x) { x = x * Complex(Real("0.9")); });
      }
      wrong.add(name, std::move(values));
    }
    const std::string holds = says(certificate, kDigits);
    const std::string fails = says(wrong, kDigits);
    CHECK(holds.find("14") != std::string::npos);
    CHECK(fails.find("near_error") != std::string::npos);
    for (const int digits : {1, 2, 3}) {
      CHECK(says(certificate, digits) == holds);
      CHECK(says(wrong, digits) == fails);
    }
  }
}

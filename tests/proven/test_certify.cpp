// Certificates of what does not fit together: refused before anything is read.
#include <doctest/doctest.h>

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

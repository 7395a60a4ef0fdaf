// Polynomials a(1) z^n + ... + a(n + 1), without checks.
#pragma once

#include <vector>

#include "src/kernels/level1.h"

namespace tesk {

/// A zero, and how far the exact one may be.
struct PolynomialZero {
  Complex value;
  QuarnFloat error;
};

/// The n zeros of the polynomial, a(1) != 0, all coefficients finite and taken as exact; with real coefficients pairs
/// stand together, positive imaginary part first. Works with as many digits as it takes until each is good to the
/// working digits, within a limit for zeros of high multiplicity. False when the range of exponents did not suffice.
template <class T>
bool polynomial_zeros(const std::vector<T>& a, std::vector<PolynomialZero>& zeros);

}  // namespace tesk

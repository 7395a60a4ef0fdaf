// Stirling's series for the gamma function and its logarithmic derivative.
#pragma once

#include "number/functions/support.h"
#include "quarn/complex.h"

namespace quarn {

/// The smallest argument from which Stirling's series delivers absolute errors of 10^-a with fewest operations.
double stirling_start(int a) noexcept;

// The size of z that counts for Stirling's series, |z| cos(arg(z) / 2), is at least stirling_start(a) below; its real
// part is not negative. What the series leaves out is below the first term left out of the same series at that size,
// times sqrt(2) where z is not real (F. W. J. Olver, Asymptotics and special functions (1974), chapter 8).

/// The sum over k >= 1 of B(2k) / (2k (2k - 1) z^(2k - 1)), or of B(2k) / (2k z^2k) if `derivative`, to an absolute
/// error of 10^-a.
template <class T>
T stirling_sum(const T& z, int a, bool derivative);

/// log Gamma(z) to an absolute error of 10^-a.
template <class T>
T log_gamma_by_stirling(const T& z, int a);

/// The digamma function of z to an absolute error of 10^-a, by Stirling's series at z + steps. The working digits hold
/// the sum of 1 / (z + j).
template <class T>
T digamma_by_stirling(const T& z, long steps, int a);

/// z (z + 1) ... (z + n - 1) at the working digits, n >= 1; the relative error is below 2 n units for a real z > 0,
/// below 10 n for complex ones.
template <class T>
T rising_product(const T& z, long n);

/// |x| as a double, 1e300 where it is larger.
double magnitude(const QuarnFloat& x) noexcept;

/// The steps that bring z to stirling_start(a).
long steps_to_stirling(const QuarnFloat& z, int a) noexcept;
long steps_to_stirling(const Complex& z, int a) noexcept;

}  // namespace quarn

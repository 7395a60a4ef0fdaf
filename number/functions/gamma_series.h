// Stirling's series for the gamma function and its logarithmic derivative.
#pragma once

#include "number/functions/support.h"

namespace quarn {

/// The smallest argument from which Stirling's series delivers absolute errors of 10^-a with fewest operations.
double stirling_start(int a) noexcept;

/// The sum over k >= 1 of B(2k) / (2k (2k - 1) z^(2k - 1)), or of B(2k) / (2k z^2k) if `derivative`, to an absolute
/// error of 10^-a, for z >= stirling_start(a). What is left out is below the first term left out (z is real and
/// positive).
QuarnFloat stirling_sum(const QuarnFloat& z, int a, bool derivative);

/// log Gamma(z) to an absolute error of 10^-a, z >= stirling_start(a).
QuarnFloat log_gamma_by_stirling(const QuarnFloat& z, int a);

/// x (x + 1) ... (x + n - 1) at the working digits, n >= 1; the relative error is below 2 n units. x > 0.
QuarnFloat rising_product(const QuarnFloat& x, long n);

/// |x| as a double, 1e300 where it is larger.
double magnitude(const QuarnFloat& x) noexcept;

/// The steps that bring x > 0 to stirling_start(a).
long steps_to_stirling(const QuarnFloat& x, int a) noexcept;

}  // namespace quarn

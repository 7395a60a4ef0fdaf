// Series of the error functions, of real and complex numbers.
#pragma once

#include <cmath>

#include "number/functions/complex_parts.h"
#include "number/functions/gamma_series.h"

namespace quarn {

inline constexpr double kLog10E = 0.43429448190325182;

/// 2 / sqrt(pi) at the working digits.
QuarnFloat two_over_root_pi();

/// erf(z) to a relative error of 10^-w by erf z = 2 / sqrt(pi) e^(-z^2) (z + 2 z^3 / 3 + 4 z^5 / 15 + ...), with so
/// many digits more as the sum is smaller than its terms: none for a real z > 0, where all are positive. Horner's rule
/// over the product of all divisors: one quotient at the end.
template <class T>
T erf_by_series(const T& z, int w, int more = 0);

/// erfc(z), |z|^2 log10(e) > w + 8 (w + 16 for complex numbers), to a relative error of 10^-w; the real part of z is
/// not negative: e^(-z^2) / (z sqrt(pi)) (1 - 1 / (2 z^2) + 3 / (2 z^2)^2 - ...). The error is below the first term
/// left out for a real z, and below 3 sqrt(k) + 1 times that after k terms for others (A. B. Olde Daalhuis, NIST
/// Handbook of mathematical functions (2010), 13.7(ii), a = b = 1/2).
template <class T>
T erfc_by_asymptotic_series(const T& z, int w);

}  // namespace quarn

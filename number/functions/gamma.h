// The gamma function and relatives to any number of digits.
#pragma once

#include "number/functions/support.h"

namespace quarn {

/// Gamma(x) for 0 < x < 3 * 10^8, to a relative error of 10^-w.
QuarnFloat approximate_gamma(const QuarnFloat& x, int w);

/// log |Gamma(x)| to an absolute error of 10^-a; x is finite, not zero and not a negative whole number.
QuarnFloat approximate_log_gamma(const QuarnFloat& x, int a);

/// Gamma(x) < 0.
bool gamma_is_negative(const QuarnFloat& x);

/// y / x if that is a decimal number of at most a few digits more than the working ones.
std::optional<QuarnFloat> short_quotient(const QuarnFloat& y, const QuarnFloat& x);

/// first (first + 1) ... last, exactly; 1 if last < first.
QuarnFloat product_of_range(long first, long last);

}  // namespace quarn

// Conversions to and from MPFR's numbers, where <mpfr.h> is found: programs that use them link MPFR.
#pragma once

#if __has_include(<mpfr.h>)
#include <mpfr.h>

#include <string>

#include "quarn/quarnfloat.h"

namespace quarn {

/// Sets y to x, rounded once to the precision of y in that direction. Returns MPFR's ternary value: 0 where y equals x,
/// positive or negative where y is above or below. MPFR's own range of exponents is smaller than that of these numbers
/// unless the program calls mpfr_set_emin() and mpfr_set_emax().
inline int to_mpfr(mpfr_ptr y, const QuarnFloat& x, mpfr_rnd_t direction = MPFR_RNDN) {
  const std::string text = x.to_string();
  return mpfr_strtofr(y, text.c_str(), nullptr, 10, direction);
}

/// x rounded once, half to even, to the working digits: exact where these hold it. As many do as x has bits after the
/// binary point, and its whole part digits. Beyond the range of exponents infinity or zero.
[[nodiscard]] inline QuarnFloat from_mpfr(mpfr_srcptr x) {
  if (mpfr_number_p(x) == 0 || mpfr_zero_p(x) != 0) {
    const char* const text = mpfr_nan_p(x) != 0 ? "nan" : mpfr_inf_p(x) != 0 ? "inf" : "0";
    const QuarnFloat value(text);
    return mpfr_signbit(x) != 0 && mpfr_nan_p(x) == 0 ? -value : value;
  }
  struct Text {
    ~Text() { mpfr_free_str(digits); }
    char* digits;
  };
  // MPFR decides ties of a decimal rounding itself; one digit more than it needs at least.
  mpfr_exp_t exponent = 0;
  const int wanted = QuarnDigits();
  const Text text{mpfr_get_str(nullptr, &exponent, 10, std::size_t(wanted < 2 ? 2 : wanted), x,
                               wanted < 2 ? MPFR_RNDA : MPFR_RNDN)};
  std::string number(text.digits);
  if (wanted < 2) {
    // To one digit: two digits decide, and of the second the direction of its own rounding.
    mpfr_exp_t same = 0;
    const Text below{mpfr_get_str(nullptr, &same, 10, 2, x, MPFR_RNDZ)};
    number = below.digits;
    if (number != text.digits || same != exponent) {
      number += '1';
    }
    exponent = same;
  }
  constexpr mpfr_exp_t kFar = 2000000000;
  exponent = exponent > kFar ? kFar : exponent < -kFar ? -kFar : exponent;
  number.insert(number[0] == '-' ? 1 : 0, "0.");
  return QuarnFloat(number + "e" + std::to_string(exponent));
}

}  // namespace quarn

#endif

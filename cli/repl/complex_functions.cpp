#include "cli/repl/complex_functions.h"

#include <cstdint>

#include "tesk2mp/tesk2mp.hpp"

namespace cli::repl {

namespace {

constexpr std::int64_t kLargestWholePower = 1'000'000;

// By squaring, from the leading bit of the exponent.
Complex whole_power(const Complex& z, std::uint64_t exponent) {
  Complex result(1);
  for (int bit = 63; bit >= 0; --bit) {
    result = result * result;
    if ((exponent >> unsigned(bit) & 1U) != 0) {
      result = result * z;
    }
  }
  return result;
}

bool is_whole(const Complex& w) { return is_real(w) && isfinite(w.re) && trunc(w.re) == w.re; }

}  // namespace

QuarnFloat argument(const Complex& z) { return atan2(z.im, z.re); }

QuarnFloat modulus(const Complex& z) { return is_real(z) ? fabs(z.re) : tesk2mp::abs(z); }

Complex square_root(const Complex& z) {
  if (is_real(z)) {
    return z.re < 0 ? Complex(QuarnFloat(), sqrt(-z.re)) : Complex(sqrt(z.re));
  }
  return tesk2mp::sqrt(z);
}

Complex exponential(const Complex& z) {
  const QuarnFloat length = exp(z.re);
  return is_real(z) ? Complex(length) : Complex(length * cos(z.im), length * sin(z.im));
}

Complex logarithm(const Complex& z) {
  return is_real(z) && z.re >= 0 ? Complex(log(z.re)) : Complex(log(modulus(z)), argument(z));
}

Complex power(const Complex& z, const Complex& w) {
  if (w == Complex(0)) {
    return 1;
  }
  if (is_real(z) && is_real(w) && (z.re >= 0 || is_whole(w))) {
    return pow(z.re, w.re);
  }
  if (is_whole(w) && fabs(w.re) <= kLargestWholePower) {
    const Complex result = whole_power(z, std::uint64_t(FloatToInt(fabs(w.re))));
    return w.re < 0 ? Complex(1) / result : result;
  }
  return z == Complex(0) ? Complex(0) : exponential(w * logarithm(z));
}

Complex sine(const Complex& z) {
  return is_real(z) ? Complex(sin(z.re)) : Complex(sin(z.re) * cosh(z.im), cos(z.re) * sinh(z.im));
}

Complex cosine(const Complex& z) {
  return is_real(z) ? Complex(cos(z.re)) : Complex(cos(z.re) * cosh(z.im), -(sin(z.re) * sinh(z.im)));
}

Complex tangent(const Complex& z) { return is_real(z) ? Complex(tan(z.re)) : sine(z) / cosine(z); }

Complex hyperbolic_sine(const Complex& z) {
  return is_real(z) ? Complex(sinh(z.re)) : Complex(sinh(z.re) * cos(z.im), cosh(z.re) * sin(z.im));
}

Complex hyperbolic_cosine(const Complex& z) {
  return is_real(z) ? Complex(cosh(z.re)) : Complex(cosh(z.re) * cos(z.im), sinh(z.re) * sin(z.im));
}

Complex hyperbolic_tangent(const Complex& z) {
  return is_real(z) ? Complex(tanh(z.re)) : hyperbolic_sine(z) / hyperbolic_cosine(z);
}

}  // namespace cli::repl

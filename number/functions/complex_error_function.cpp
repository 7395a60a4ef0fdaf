// The error function of complex numbers and its complement, from the right half plane: erf is odd.
#include "number/functions/error_function.h"
#include "quarn/functions.h"

namespace quarn {
namespace {

/// Beyond, the angle of a value that overflows is not worked out.
constexpr std::int64_t kFarErfExponent = 1000;

bool is_far(const Complex& z, int w) {
  const double size = std::hypot(magnitude(z.re), magnitude(z.im));
  return size * size * kLog10E > w + 16;
}

/// |e^(-z^2)| in powers of ten, with the other sign.
double places_of(const Complex& z) {
  const double re = magnitude(z.re);
  const double im = magnitude(z.im);
  return (re - im) * (re + im) * kLog10E;
}

/// Its terms add up to e^|z|^2, the sum is the larger one of 1 and e^(x^2 - y^2).
Complex series(const Complex& z, int w) {
  const double re = magnitude(z.re);
  const double im = magnitude(z.im);
  const double lost = (re * re + im * im) * kLog10E - std::max(places_of(z), 0.0);
  return erf_by_series(z, w, int(lost) + 3);
}

NearValue near_erf(const Complex& z, int w) {
  if (!is_far(z, w)) {
    return near_value(series(z, w), w);
  }
  NearValue rest = near_value(erfc_by_asymptotic_series(z, w), w);
  const WorkingDigits scope(w + 5);
  rest.value = Complex(1) - rest.value;
  return rest;
}

/// The real part of z is not negative.
NearValue near_erfc(const Complex& z, int w) {
  if (is_far(z, w)) {
    return near_value(erfc_by_asymptotic_series(z, w), w);
  }
  const int digits = w + int(std::max(places_of(z), 0.0)) + 5;
  NearValue found = near_value(series(z, digits), digits);
  const WorkingDigits scope(digits + 5);
  found.value = Complex(1) - found.value;
  return found;
}

NearValue near_erfc_of_any(const Complex& z, int w) {
  if (!signbit(z.re)) {
    return near_erfc(z, w);
  }
  NearValue found = near_erf(-z, w);
  const WorkingDigits scope(w + 5);
  found.value = Complex(1) + found.value;
  return found;
}

/// The exponent below which one part is infinitely small beside the other one.
std::int64_t small_exponent(const QuarnFloat& other, const Complex& z) {
  return -std::abs(largest_exponent(other)) - 2 * std::int64_t(longest(z)) - 10;
}

/// The derivative, 2 / sqrt(pi) e^(-x^2), on the real axis, or e^(y^2) on the imaginary one, times the small part.
QuarnFloat small_part(const QuarnFloat& large, const QuarnFloat& small, bool real_axis) {
  const WorkingDigits scope(QuarnDigits() + 15 + int(std::max<std::int64_t>(2 * largest_exponent(large), 0)));
  const QuarnFloat square = large * large;
  return two_over_root_pi() * small * ::exp(real_axis ? -square : square);
}

const Complex kNanErf(special(Kind::nan), special(Kind::nan));

/// The most digits more than the working ones that a part is looked for with.
int most_erf_digits(const Complex& z) { return 8 * longest(z) + 100; }

/// Where the exponential over- or underflows for certain: 1 where erfc(z) vanishes, -1 where it is infinite.
int beyond_range(const Complex& z) {
  const std::int64_t exponent = largest_exponent(z);
  if (exponent <= 4) {
    return 0;
  }
  const WorkingDigits scope(30);
  const QuarnFloat re = fabs(z.re);
  const QuarnFloat im = fabs(z.im);
  const QuarnFloat size = (re - im) * (re + im);
  return largest_exponent(size) < 10 ? 0 : signbit(size) ? -1 : 1;
}

/// erf and erfc of a number with two parts that are not zero.
struct ErrorFunctions {
  Complex erf;
  Complex erfc;
};

std::optional<ErrorFunctions> far_values(const Complex& z) {
  const int beyond = beyond_range(z);
  if (beyond > 0) {
    const QuarnFloat one = signbit(z.re) ? -1 : 1;
    return ErrorFunctions{{one, special(Kind::zero, signbit(z.im))}, {QuarnFloat(1) - one, QuarnFloat()}};
  }
  if (beyond == 0 && largest_exponent(z) <= kFarErfExponent) {
    return std::nullopt;
  }
  const Complex unknown = beyond < 0 ? Complex(special(Kind::infinite), special(Kind::nan)) : kNanErf;
  return ErrorFunctions{unknown, unknown};
}

/// erf(i y) / i
QuarnFloat on_imaginary_axis(const QuarnFloat& y) {
  const Complex z(QuarnFloat(), y);
  return parts_from(
             [&z](int w) {
               NearValue found = near_erf(z, w);
               found.value.re = found.value.im;
               return found;
             },
             most_erf_digits(z))
      .im;
}

bool is_tiny(const Complex& z) { return largest_exponent(z) < -std::int64_t(longest(z)) - 5; }

bool is_next_to_real_axis(const Complex& z) { return largest_exponent(z.im) < small_exponent(z.re, z); }
bool is_next_to_imaginary_axis(const Complex& z) { return largest_exponent(z.re) < small_exponent(z.im, z); }

/// 2 / sqrt(pi) z, with so many digits more.
Complex tiny_erf(const Complex& z, int more) {
  const WorkingDigits scope(QuarnDigits() + more);
  const QuarnFloat factor = two_over_root_pi();
  return {factor * z.re, factor * z.im};
}

}  // namespace

Complex erf(const Complex& z) {
  if (kind_of(z.im) == Kind::zero) {
    return {::erf(z.re), z.im};
  }
  if (has_nan(z) || isinf(z.im)) {
    return kNanErf;
  }
  if (isinf(z.re)) {
    return {::erf(z.re), special(Kind::zero, signbit(z.im))};
  }
  if (const auto far = far_values(z)) {
    return far->erf;
  }
  if (kind_of(z.re) == Kind::zero) {
    return {z.re, on_imaginary_axis(z.im)};
  }
  const int digits = QuarnDigits();
  if (is_tiny(z)) {
    return rounded(tiny_erf(z, 10), digits);
  }
  if (is_next_to_real_axis(z)) {
    return {::erf(z.re), rounded(small_part(z.re, z.im, true), digits)};
  }
  if (is_next_to_imaginary_axis(z)) {
    return {rounded(small_part(z.im, z.re, false), digits), on_imaginary_axis(z.im)};
  }
  const auto near = [&z](int w) {
    NearValue found = near_erf(signbit(z.re) ? -z : z, w);
    found.value = signbit(z.re) ? -found.value : found.value;
    return found;
  };
  return parts_from(near, most_erf_digits(z));
}

Complex erfc(const Complex& z) {
  if (kind_of(z.im) == Kind::zero) {
    return {::erfc(z.re), -z.im};
  }
  if (has_nan(z) || isinf(z.im)) {
    return kNanErf;
  }
  if (isinf(z.re)) {
    return {::erfc(z.re), special(Kind::zero, !signbit(z.im))};
  }
  if (const auto far = far_values(z)) {
    return far->erfc;
  }
  if (kind_of(z.re) == Kind::zero) {
    return {1, -on_imaginary_axis(z.im)};
  }
  const int digits = QuarnDigits();
  if (is_tiny(z)) {
    return rounded(Complex(1) - tiny_erf(z, 10), digits);
  }
  if (is_next_to_real_axis(z)) {
    return {::erfc(z.re), -rounded(small_part(z.re, z.im, true), digits)};
  }
  if (is_next_to_imaginary_axis(z)) {
    // 1 is close to the small part only as far as a number of so many digits is.
    const WorkingDigits scope(digits + 2 * longest(z) + 10);
    const QuarnFloat real = QuarnFloat(1) - small_part(z.im, z.re, false);
    const WorkingDigits result(digits);
    return {rounded(real, digits), -on_imaginary_axis(z.im)};
  }
  return parts_from([&z](int w) { return near_erfc_of_any(z, w); }, most_erf_digits(z));
}

}  // namespace quarn

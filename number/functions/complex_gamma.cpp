// The gamma function of complex numbers, its logarithm and the logarithm's derivative.
//
// Below the real axis by reflection about it, left of the imaginary one by pi / (sin(pi z) Gamma(1 - z)); elsewhere
// Stirling's series at z + n. Next to the real axis, where the imaginary part vanishes, by the derivative.
#include <cmath>

#include "number/functions/complex_parts.h"
#include "number/functions/gamma_series.h"
#include "quarn/functions.h"

namespace quarn {
namespace {

constexpr double kLog10OfE = 0.43429448190325182;
constexpr double kPi = 3.14159265358979323846;
/// Beyond, the angle of a value that overflows is not worked out.
constexpr std::int64_t kFarExponent = 1000;

int whole_digits(const Complex& z) { return int(std::max<std::int64_t>(largest_exponent(z) + 1, 0)); }

bool is_real(const Complex& z) { return kind_of(z.im) == Kind::zero; }

/// Sine and cosine of pi (z - floor x) to a relative error of 10^-w.
struct ComplexHalfTurns {
  Complex sin;
  Complex cos;
};

/// From there on the cotangent of pi z is -i to 10^-w.
bool is_far_above(const Complex& z, int w) { return 2 * kPi * kLog10OfE * magnitude(z.im) > w + 5; }

QuarnFloat floor_of(const QuarnFloat& x) {
  const WorkingDigits scope(stored_digits(x) + Radix::digits);
  return floor(x);
}

/// z is above the real axis or on it, and not far.
ComplexHalfTurns complex_half_turns(const Complex& z, int w) {
  const WorkingDigits scope(std::max(w, 1) + 20);
  const QuarnFloat angle = z.im * approximate_pi(QuarnDigits());
  const QuarnFloat s = fabs(sinpi(z.re));
  const QuarnFloat c = is_odd_whole(floor_of(z.re)) ? -cospi(z.re) : cospi(z.re);
  const QuarnFloat hyperbolic_sine = ::sinh(angle);
  const QuarnFloat hyperbolic_cosine = ::cosh(angle);
  return {{s * hyperbolic_cosine, c * hyperbolic_sine}, {c * hyperbolic_cosine, -(s * hyperbolic_sine)}};
}

/// log Gamma(z) to an absolute error of 10^-a, z above the real axis or on it, not a pole. On the left it is the branch
/// that is continuous above the axis.
Complex log_gamma(const Complex& z, int a) {
  const WorkingDigits scope(std::max(a + 20 + whole_digits(z), 10));
  const int w = QuarnDigits();
  if (signbit(z.re) && kind_of(z.re) != Kind::zero) {
    // log sin(pi z) = log sin(pi (z - m)) - i pi m, m = floor x, where the first sine's real part is not negative.
    const QuarnFloat pi = approximate_pi(w);
    const QuarnFloat whole = floor_of(z.re);
    Complex sine;
    if (is_far_above(z, a + 5)) {
      const QuarnFloat rest = [&] {
        const WorkingDigits exact(stored_digits(z.re) + Radix::digits);
        return z.re - whole;
      }();
      sine = {pi * z.im - approximate_ln2(w), pi * (QuarnFloat(5, -1) - rest)};
    } else {
      sine = log(complex_half_turns(z, a + 5).sin);
    }
    const Complex other = log_gamma({QuarnFloat(1) - z.re, z.im}, a + 1);
    return Complex(approximate_log(pi, w), pi * whole) - sine - conj(other);
  }
  const long steps = steps_to_stirling(z, a + 3);
  const Complex start = rounded(z, w);
  Complex value = log_gamma_by_stirling(start + QuarnFloat(steps), a + 3);
  if (steps > 0) {
    Complex product = log(rising_product(start, steps));
    // The logarithm of the product is the sum of logarithms but for whole turns.
    double turns = -FloatToDouble(product.im);
    const double re = magnitude(z.re);
    const double im = magnitude(z.im);
    for (long j = 0; j < steps; ++j) {
      turns += std::atan2(im, re + double(j));
    }
    const long count = std::lround(turns / (2 * kPi));
    if (count != 0) {
      product.im += QuarnFloat(2 * count) * approximate_pi(w);
    }
    value -= product;
  }
  return value;
}

/// The digamma function of z to an absolute error of 10^-a; z as above.
Complex digamma_of(const Complex& z, int a) {
  const int places = int(std::max<std::int64_t>(-largest_exponent(z), 0));
  if (signbit(z.re) && kind_of(z.re) != Kind::zero) {
    // psi(1 - z) - pi cot(pi z)
    const int w = std::max(a, 0) + places + 20;
    const WorkingDigits scope(w + 10);
    Complex cotangent(0, -1);
    if (!is_far_above(z, w)) {
      const ComplexHalfTurns f = complex_half_turns(z, w);
      cotangent = f.cos / f.sin;
    }
    return conj(digamma_of({QuarnFloat(1) - z.re, z.im}, a + 1)) - approximate_pi(QuarnDigits()) * cotangent;
  }
  const long steps = steps_to_stirling(z, a + 3);
  const WorkingDigits scope(std::max(a + 2 * places + 18 + int(std::log10(double(steps) + 1)), 10));
  return digamma_by_stirling(rounded(z, QuarnDigits()), steps, a + 3);
}

/// A function that is real on the real axis, by its values above it.
template <class Function>
Complex reflected(const Complex& z, const Function& function) {
  return signbit(z.im) ? conj(function(conj(z))) : function(z);
}

/// The exponent below which an imaginary part is as good as infinitely small: squares of it, over the distance of a
/// number of so many digits from zeros and poles, change no digit.
std::int64_t small_exponent(const Complex& z) {
  const std::int64_t exponent = largest_exponent(z);
  return (signbit(z.re) ? std::min<std::int64_t>(exponent, 0) : exponent) - 2 * std::int64_t(longest(z)) - 10;
}

NearValue near_log_gamma(const Complex& z, int w) {
  const int a = w - whole_digits(z);
  return {log_gamma(z, a), -std::int64_t(a)};
}

NearValue near_gamma(const Complex& z, int w) {
  const Complex logarithm = log_gamma(z, w + 3);
  const WorkingDigits scope(w + 5);
  return near_value(exp(logarithm), w);
}

NearValue near_digamma(const Complex& z, int w) {
  const int a = w + int(std::clamp<std::int64_t>(largest_exponent(z), -kMaxScientificExponent, 0));
  Complex value = digamma_of(z, a);
  const std::int64_t error = std::max<std::int64_t>(largest_exponent(value), 0) - a;
  return {std::move(value), error};
}

const Complex kNan(special(Kind::nan), special(Kind::nan));

/// The most digits more than the working ones that a part is looked for with.
int most_digits(const Complex& z) { return 8 * longest(z) + 100; }

/// Gamma(-m + i y), y > 0 small: c (psi(m + 1) - i / y), c = (-1)^m / m!
Complex gamma_next_to_pole(const Complex& z) {
  const int digits = QuarnDigits();
  const WorkingDigits scope(digits + 25);
  const QuarnFloat above = QuarnFloat(1) - z.re;
  const QuarnFloat inverse_size = ::exp(-(::lgamma(above) + ::log(z.im)));
  const QuarnFloat signed_size = is_odd_whole(z.re) ? inverse_size : -inverse_size;
  const QuarnFloat re = -(signed_size * z.im * ::digamma(above));
  return rounded(Complex(re, signed_size), digits);
}

/// What has overflowed or vanished whatever its angle; z is large.
std::optional<Complex> far_gamma(const Complex& z) {
  const std::int64_t exponent = largest_exponent(z);
  if (exponent <= kFarExponent) {
    return std::nullopt;
  }
  if (exponent > kMaxScientificExponent / 2) {
    return kNan;
  }
  const QuarnFloat size = log_gamma(z, int(4 - exponent)).re;
  if (largest_exponent(size) < exponent - 3) {
    return kNan;  // neither is known: the angle is not
  }
  return signbit(size) ? Complex() : Complex(special(Kind::infinite), special(Kind::nan));
}

Complex gamma_above(const Complex& z) {
  if (const auto far = far_gamma(z)) {
    return *far;
  }
  const int digits = QuarnDigits();
  const std::int64_t small = -2 * std::int64_t(longest(z)) - 10;
  if (largest_exponent(z) < small) {
    // 1 / z - 0.577...
    const WorkingDigits scope(int(10 - 2 * small));
    const Complex inverse = Complex(1) / z;
    return rounded(Complex(inverse.re + ::digamma(QuarnFloat(1)), inverse.im), digits);
  }
  if (largest_exponent(z.im) < small_exponent(z)) {
    if (is_pole(z.re)) {
      return gamma_next_to_pole(z);
    }
    const WorkingDigits scope(digits + 8);
    const QuarnFloat real = ::tgamma(z.re);
    return rounded(Complex(real, z.im * real * ::digamma(z.re)), digits);
  }
  return parts_from([&z](int w) { return near_gamma(z, w); }, most_digits(z));
}

Complex log_gamma_above(const Complex& z) {
  const int digits = QuarnDigits();
  if (largest_exponent(z) < -2 * std::int64_t(digits) - 10) {
    return -log(z);
  }
  if (largest_exponent(z.im) < small_exponent(z) && !is_pole(z.re)) {
    if (signbit(z.re)) {
      const WorkingDigits scope(digits + 10);
      const QuarnFloat angle = floor_of(z.re) * approximate_pi(digits + 10);
      return rounded(Complex(::lgamma(z.re), angle), digits);
    }
    const WorkingDigits scope(digits + 8);
    QuarnFloat real = ::lgamma(z.re);
    if (kind_of(real) == Kind::zero) {
      // - y^2 psi'(x) / 2, psi'(1) = pi^2 / 6, psi'(2) = psi'(1) - 1
      const QuarnFloat pi = approximate_pi(digits + 8);
      const QuarnFloat derivative = pi * pi / QuarnFloat(6) - (z.re - QuarnFloat(1));
      real = -(z.im * z.im * derivative / QuarnFloat(2));
    }
    return rounded(Complex(real, z.im * ::digamma(z.re)), digits);
  }
  return parts_from([&z](int w) { return near_log_gamma(z, w); }, most_digits(z));
}

Complex digamma_above(const Complex& z) {
  const int digits = QuarnDigits();
  const std::int64_t small = -2 * std::int64_t(longest(z)) - 10;
  if (largest_exponent(z) < small) {
    // - 1 / z - 0.577...
    const WorkingDigits scope(int(10 - 2 * small));
    const Complex inverse = Complex(-1) / z;
    return rounded(Complex(inverse.re + ::digamma(QuarnFloat(1)), inverse.im), digits);
  }
  if (largest_exponent(z.im) < small_exponent(z)) {
    if (is_pole(z.re)) {
      return {::digamma(QuarnFloat(1) - z.re), QuarnFloat(1) / z.im};
    }
    // The imaginary part grows as y does: it is taken where that is larger.
    const QuarnFloat step(1, int(small_exponent(z)));
    const WorkingDigits scope(digits + 6);
    const Complex further = parts_from([&](int w) { return near_digamma({z.re, step}, w); }, most_digits(z));
    return rounded(Complex(::digamma(z.re), further.im * (z.im / step)), digits);
  }
  return parts_from([&z](int w) { return near_digamma(z, w); }, most_digits(z));
}

}  // namespace

Complex tgamma(const Complex& z) {
  if (is_real(z)) {
    return {::tgamma(z.re), z.im};
  }
  return has_nan(z) || has_infinity(z) ? kNan : reflected(z, gamma_above);
}

Complex lgamma(const Complex& z) {
  if (is_real(z)) {
    const QuarnFloat real = ::lgamma(z.re);
    if (!signbit(z.re) || !isfinite(real)) {
      return {real, z.im};
    }
    const int digits = QuarnDigits();
    const WorkingDigits scope(digits + 10);
    const QuarnFloat angle = floor_of(z.re) * approximate_pi(digits + 10);
    return {real, rounded(signbit(z.im) ? -angle : angle, digits)};
  }
  if (has_nan(z) || has_infinity(z)) {
    return kNan;
  }
  return reflected(z, log_gamma_above);
}

Complex digamma(const Complex& z) {
  if (is_real(z)) {
    return {::digamma(z.re), z.im};
  }
  return has_nan(z) || has_infinity(z) ? kNan : reflected(z, digamma_above);
}

}  // namespace quarn

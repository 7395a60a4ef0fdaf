// Real functions at some more digits, in formulas that cancel nowhere: every sum is one of terms of the same sign, or
// of an exact argument and 1.
#include "quarn/complex.h"

#include <algorithm>
#include <cstdlib>

#include "number/elementary/approximate.h"
#include "number/scalar/thread_state.h"

namespace quarn {
namespace {

// Lost in a few operations and functions, each good to a unit or less.
constexpr int kGuard = 12;

/// f() at so many digits more, rounded back.
template <class F>
Complex with_more(const F& f, int more = kGuard) {
  const int digits = QuarnDigits();
  Complex result;
  {
    const WorkingDigits working(digits + more);
    result = f();
  }
  return {rounded(result.re, digits), rounded(result.im, digits)};
}

/// The exponent e of d.ddd * 10^e; 0 for what has none.
std::int64_t exponent_of(const QuarnFloat& x) { return kind_of(x) == Kind::finite ? scientific_exponent(x) : 0; }

QuarnFloat with_sign_of(const QuarnFloat& size, const QuarnFloat& sign) {
  return signbit(sign) ? -fabs(size) : fabs(size);
}

bool is_nan(const Complex& z) { return isnan(z.re) || isnan(z.im); }
bool is_real(const Complex& z) { return kind_of(z.im) == Kind::zero; }

Complex times_i(const Complex& z) { return {-z.im, z.re}; }
Complex over_i(const Complex& z) { return {z.im, -z.re}; }

QuarnFloat hypotenuse(const QuarnFloat& x, const QuarnFloat& y) {
  if (isinf(x) || isinf(y)) {
    return special(Kind::infinite);
  }
  const QuarnFloat larger = std::max(fabs(x), fabs(y));
  if (!(larger > 0)) {
    return x + y;  // zero, or NaN
  }
  const QuarnFloat ratio = std::min(fabs(x), fabs(y)) / larger;
  return larger * ::sqrt(1 + ratio * ratio);
}

/// log(1 + t), t >= 0.
QuarnFloat log_of_one_and(const QuarnFloat& t) {
  const std::int64_t small = -exponent_of(t);
  const int digits = QuarnDigits();
  if (small > digits || !isfinite(t) || t == 0) {
    return t;
  }
  const WorkingDigits working(digits + int(std::max<std::int64_t>(small, 0)));
  return ::log(1 + t);
}

QuarnFloat inverse_sinh(const QuarnFloat& x) {
  const QuarnFloat size = fabs(x);
  const int digits = QuarnDigits();
  const std::int64_t exponent = exponent_of(x);
  if (!isfinite(x) || x == 0 || -2 * exponent > digits + 2) {
    return x;
  }
  if (exponent > digits) {
    return with_sign_of(::log(size) + ::log(QuarnFloat(2)), x);
  }
  // x + x^2 / (1 + sqrt(1 + x^2)) is small where x is.
  const QuarnFloat square = size * size;
  return with_sign_of(log_of_one_and(size + square / (1 + ::sqrt(1 + square))), x);
}

/// log |x + i y|, also where that is near 1.
QuarnFloat log_of_modulus(const QuarnFloat& x, const QuarnFloat& y) {
  const QuarnFloat larger = std::max(fabs(x), fabs(y));
  const QuarnFloat smaller = std::min(fabs(x), fabs(y));
  if (!isfinite(larger) || !(smaller > 0)) {
    return ::log(isinf(x) || isinf(y) ? special(Kind::infinite) : larger + smaller);
  }
  const std::int64_t gap = exponent_of(larger) - exponent_of(smaller);
  const auto length = [](const QuarnFloat& a) { return std::int64_t(view_of(a).length) * Radix::digits; };
  const int digits = QuarnDigits();
  if (2 * gap > length(larger) + digits) {
    return larger == 1 ? smaller * smaller / 2 : ::log(larger);
  }
  if (std::abs(exponent_of(larger)) > 2) {
    const QuarnFloat ratio = smaller / larger;
    return ::log(larger) + log_of_one_and(ratio * ratio) / 2;
  }
  QuarnFloat square;
  {
    const std::int64_t exact = 2 * std::max(length(larger), length(smaller) + gap) + 4;
    const WorkingDigits working(int(std::max<std::int64_t>(exact, digits)));
    square = x * x + y * y;
  }
  return ::log(square) / 2;
}

Complex square_root(const Complex& z) {
  if (isinf(z.im)) {
    return {special(Kind::infinite), z.im};
  }
  const QuarnFloat half = hypotenuse(z.re, z.im) / 2 + fabs(z.re) / 2;
  const QuarnFloat root = ::sqrt(half);
  if (kind_of(root) == Kind::zero) {
    return {QuarnFloat(), z.im};
  }
  const QuarnFloat other = fabs(z.im) / root / 2;
  return signbit(z.re) ? Complex(other, with_sign_of(root, z.im)) : Complex(root, with_sign_of(other, z.im));
}

/// The square roots of 1 - z and 1 + z.
struct Roots {
  Complex minus;
  Complex plus;

  explicit Roots(const Complex& z) : minus(square_root({1 - z.re, -z.im})), plus(square_root({1 + z.re, z.im})) {}
};

// Their argument is finite or infinite, but not NaN; the digits are some more than asked for.

Complex sine(const Complex& z) { return {::sin(z.re) * ::cosh(z.im), ::cos(z.re) * ::sinh(z.im)}; }

Complex tangent(const Complex& z) {
  const QuarnFloat s = ::sin(z.re);
  const QuarnFloat c = ::cos(z.re);
  // Beyond, cosh and sinh differ from e^|y| / 2 by less than a rounding.
  const QuarnFloat far = 2 * QuarnFloat(QuarnDigits());
  if (fabs(z.im) > far) {
    return {4 * s * c * ::exp(-2 * fabs(z.im)), with_sign_of(1, z.im)};
  }
  const QuarnFloat h = ::sinh(z.im);
  const QuarnFloat divisor = c * c + h * h;
  return {s * c / divisor, h * ::cosh(z.im) / divisor};
}

Complex arc_sine(const Complex& z) {
  const auto [a, b] = Roots(z);
  return {::atan2(z.re, a.re * b.re - a.im * b.im), inverse_sinh(a.re * b.im - a.im * b.re)};
}

Complex inverse_hyperbolic_tangent(const Complex& z) {
  if (signbit(z.re)) {
    return -inverse_hyperbolic_tangent(-z);
  }
  const QuarnFloat distance = hypotenuse(1 - z.re, z.im);
  const QuarnFloat growth = isinf(distance) ? QuarnFloat() : 4 * (z.re / distance) / distance;
  const QuarnFloat angle = ::atan2(2 * z.im, (1 - z.re) * (1 + z.re) - z.im * z.im);
  return {isinf(growth) ? growth : log_of_one_and(growth) / 4, angle / 2};
}

/// By squaring, from the leading bit of the exponent.
Complex whole_power(const Complex& z, std::uint32_t exponent) {
  Complex result(1);
  for (int bit = 31; bit >= 0; --bit) {
    result = result * result;
    if ((exponent >> unsigned(bit) & 1U) != 0) {
      result = result * z;
    }
  }
  return result;
}

bool is_whole(const Complex& w) { return is_real(w) && isfinite(w.re) && trunc(w.re) == w.re; }

const Complex kNan(special(Kind::nan), special(Kind::nan));

}  // namespace

QuarnFloat abs(const Complex& z) {
  return is_real(z) ? fabs(z.re) : with_more([&] { return Complex(hypotenuse(z.re, z.im)); }).re;
}

QuarnFloat arg(const Complex& z) { return atan2(z.im, z.re); }

Complex sqrt(const Complex& z) {
  if (is_nan(z)) {
    return kNan;
  }
  if (is_real(z)) {
    return z.re < 0 ? Complex(QuarnFloat(), with_sign_of(::sqrt(-z.re), z.im)) : Complex(::sqrt(z.re), z.im);
  }
  return with_more([&] { return square_root(z); });
}

Complex exp(const Complex& z) {
  if (is_real(z)) {
    return {::exp(z.re), z.im};
  }
  return with_more([&] {
    const QuarnFloat size = ::exp(z.re);
    return Complex(size * ::cos(z.im), size * ::sin(z.im));
  });
}

Complex log(const Complex& z) {
  if (is_real(z) && !signbit(z.re)) {
    return {::log(z.re), z.im};
  }
  return with_more([&] { return Complex(log_of_modulus(z.re, z.im), ::atan2(z.im, z.re)); });
}

Complex log10(const Complex& z) {
  if (is_real(z) && !signbit(z.re)) {
    return {::log10(z.re), z.im};
  }
  return with_more([&] {
    const QuarnFloat ten = ::log(QuarnFloat(10));
    const QuarnFloat re = is_real(z) ? ::log10(-z.re) : log_of_modulus(z.re, z.im) / ten;
    return Complex(re, ::atan2(z.im, z.re) / ten);
  });
}

Complex pow(const Complex& z, const Complex& w) {
  constexpr int kLargestWholePower = 1'000'000;
  if (w == Complex(0)) {
    return 1;
  }
  if (is_real(z) && is_real(w) && (z.re >= 0 || is_whole(w))) {
    return ::pow(z.re, w.re);
  }
  if (is_whole(w) && fabs(w.re) <= kLargestWholePower) {
    return with_more(
        [&] {
          const Complex result = whole_power(z, std::uint32_t(FloatToInt(fabs(w.re))));
          return w.re < 0 ? Complex(1) / result : result;
        },
        kGuard + 8);
  }
  if (z == Complex(0)) {
    return w.re > 0 ? Complex(0) : kNan;
  }
  const QuarnFloat size = abs(w) * (1 + abs(log(z)));
  const std::int64_t lost = std::clamp<std::int64_t>(exponent_of(size), 0, 20);
  return with_more([&] { return exp(w * log(z)); }, kGuard + int(lost));
}

Complex sin(const Complex& z) {
  return is_real(z) ? Complex(::sin(z.re), z.im) : with_more([&] { return sine(z); });
}

Complex cos(const Complex& z) {
  return is_real(z) ? Complex(::cos(z.re))
                    : with_more([&] { return Complex(::cos(z.re) * ::cosh(z.im), -(::sin(z.re) * ::sinh(z.im))); });
}

Complex tan(const Complex& z) {
  return is_real(z) ? Complex(::tan(z.re), z.im) : with_more([&] { return tangent(z); });
}

Complex sinh(const Complex& z) {
  return is_real(z) ? Complex(::sinh(z.re), z.im) : with_more([&] { return over_i(sine(times_i(z))); });
}

Complex cosh(const Complex& z) { return is_real(z) ? Complex(::cosh(z.re)) : cos(times_i(z)); }

Complex tanh(const Complex& z) {
  return is_real(z) ? Complex(::tanh(z.re), z.im) : with_more([&] { return over_i(tangent(times_i(z))); });
}

Complex asin(const Complex& z) {
  if (is_nan(z)) {
    return kNan;
  }
  if (is_real(z) && fabs(z.re) <= 1) {
    return {::asin(z.re), z.im};
  }
  return with_more([&] { return arc_sine(z); });
}

Complex acos(const Complex& z) {
  if (is_nan(z)) {
    return kNan;
  }
  if (is_real(z) && fabs(z.re) <= 1) {
    return {::acos(z.re), -z.im};
  }
  return with_more([&] {
    const auto [a, b] = Roots(z);
    return Complex(2 * ::atan2(a.re, b.re), inverse_sinh(b.re * a.im - b.im * a.re));
  });
}

Complex atan(const Complex& z) {
  if (is_nan(z)) {
    return kNan;
  }
  return is_real(z) ? Complex(::atan(z.re), z.im)
                    : with_more([&] { return over_i(inverse_hyperbolic_tangent(times_i(z))); });
}

Complex asinh(const Complex& z) {
  return is_nan(z) ? kNan : with_more([&] { return over_i(arc_sine(times_i(z))); });
}

Complex acosh(const Complex& z) {
  if (is_nan(z)) {
    return kNan;
  }
  return with_more([&] {
    const Complex a = square_root({z.re - 1, z.im});
    const Complex b = square_root({z.re + 1, z.im});
    return Complex(inverse_sinh(a.re * b.re + a.im * b.im), 2 * ::atan2(a.im, b.re));
  });
}

Complex atanh(const Complex& z) {
  return is_nan(z) ? kNan : with_more([&] { return inverse_hyperbolic_tangent(z); });
}

}  // namespace quarn

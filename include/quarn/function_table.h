// The functions of one and of two numbers by name: for evaluators, consoles, bindings and tests.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "quarn/complex.h"
#include "quarn/functions.h"

namespace quarn {

struct NamedFunction1 {
  const char* name;
  QuarnFloat (*apply)(const QuarnFloat&);
  const char* summary;
  Complex (*complex)(const Complex&) = nullptr;  // where there is one
};

struct NamedFunction2 {
  const char* name;
  QuarnFloat (*apply)(const QuarnFloat&, const QuarnFloat&);
  const char* arguments;
  const char* summary;
  Complex (*complex)(const Complex&, const Complex&) = nullptr;
};

/// Every function of one number; the most used ones come first.
inline auto functions_of_one() noexcept {
  static const NamedFunction1 kTable[] = {
      {"sin", ::sin, "sine", quarn::sin},
      {"cos", ::cos, "cosine", quarn::cos},
      {"tan", ::tan, "tangent", quarn::tan},
      {"asin", ::asin, "arc sine", quarn::asin},
      {"acos", ::acos, "arc cosine", quarn::acos},
      {"atan", ::atan, "arc tangent", quarn::atan},
      {"sinh", ::sinh, "hyperbolic sine", quarn::sinh},
      {"cosh", ::cosh, "hyperbolic cosine", quarn::cosh},
      {"tanh", ::tanh, "hyperbolic tangent", quarn::tanh},
      {"exp", ::exp, "exponential", quarn::exp},
      {"log", ::log, "natural logarithm", quarn::log},
      {"ln", ::log, "natural logarithm", quarn::log},
      {"log10", ::log10, "logarithm to base 10", quarn::log10},
      {"sqrt", ::sqrt, "square root", quarn::sqrt},
      {"fabs", [](const QuarnFloat& x) { return fabs(x); }, "magnitude"},
      {"abs", [](const QuarnFloat& x) { return fabs(x); }, "magnitude"},
      {"floor", ::floor, "largest whole number not above"},
      {"ceil", ::ceil, "smallest whole number not below"},
      {"trunc", ::trunc, "whole part"},
      {"round", ::round, "nearest whole number, halves away from zero"},
      {"rint", ::rint, "nearest whole number, halves to even"},
      {"expm1", ::expm1, "exponential less 1"},
      {"exp2", ::exp2, "power of 2"},
      {"exp10", ::exp10, "power of 10"},
      {"log1p", ::log1p, "natural logarithm of 1 + x"},
      {"log2", ::log2, "logarithm to base 2"},
      {"logb", ::logb, "decimal exponent"},
      {"cbrt", ::cbrt, "cube root"},
      {"asinh", ::asinh, "inverse hyperbolic sine", quarn::asinh},
      {"acosh", ::acosh, "inverse hyperbolic cosine", quarn::acosh},
      {"atanh", ::atanh, "inverse hyperbolic tangent", quarn::atanh},
      {"sinpi", ::sinpi, "sine of pi x"},
      {"cospi", ::cospi, "cosine of pi x"},
      {"tanpi", ::tanpi, "tangent of pi x"},
      {"asinpi", ::asinpi, "arc sine divided by pi"},
      {"acospi", ::acospi, "arc cosine divided by pi"},
      {"atanpi", ::atanpi, "arc tangent divided by pi"},
      {"gamma", ::tgamma, "gamma function", quarn::tgamma},
      {"tgamma", ::tgamma, "gamma function", quarn::tgamma},
      {"lgamma", ::lgamma, "logarithm of the magnitude of the gamma function; of complex numbers its logarithm",
       quarn::lgamma},
      {"digamma", ::digamma, "logarithmic derivative of the gamma function", quarn::digamma},
      {"factorial", ::factorial, "factorial of a whole number"},
      {"erf", ::erf, "error function", quarn::erf},
      {"erfc", ::erfc, "complement of the error function", quarn::erfc},
  };
  return std::span(kTable);
}

/// Every function of two numbers.
inline auto functions_of_two() noexcept {
  static const NamedFunction2 kTable[] = {
      {"fmod", ::fmod, "x, y", "x - y trunc(x / y)"},
      {"pow", ::pow, "x, y", "x to the power y", quarn::pow},
      {"atan2", ::atan2, "y, x", "angle of the point (x, y)"},
      {"hypot", ::hypot, "x, y", "sqrt(x^2 + y^2)"},
      {"remainder", ::remainder, "x, y", "x - n y for the whole n next to x / y"},
      {"fmin", ::fmin, "x, y", "the smaller one"},
      {"fmax", ::fmax, "x, y", "the larger one"},
      {"fdim", ::fdim, "x, y", "x - y, or 0 if that is negative"},
      {"copysign", [](const QuarnFloat& x, const QuarnFloat& y) { return ::copysign(x, y); }, "x, y",
       "|x| with the sign of y"},
      {"nextafter", ::nextafter, "x, y", "the number next to x in the direction of y"},
      {"beta", ::beta, "x, y", "beta function"},
      {"binomial", ::binomial, "x, k", "binomial coefficient"},
  };
  return std::span(kTable);
}

/// The function of that name, or a null pointer.
inline auto find_function1(std::string_view name) noexcept -> QuarnFloat (*)(const QuarnFloat&) {
  for (const NamedFunction1& entry : functions_of_one()) {
    if (name == entry.name) {
      return entry.apply;
    }
  }
  return nullptr;
}

inline auto find_function2(std::string_view name) noexcept -> QuarnFloat (*)(const QuarnFloat&, const QuarnFloat&) {
  for (const NamedFunction2& entry : functions_of_two()) {
    if (name == entry.name) {
      return entry.apply;
    }
  }
  return nullptr;
}

/// f(z) as a calculator gives it: of a real number by the function of real numbers, of a complex one, and where that
/// has no value, by the function of complex numbers. Nothing for a complex number when there is no such function.
inline std::optional<Complex> evaluate(const NamedFunction1& f, const Complex& z) {
  if (z.im == QuarnFloat()) {
    QuarnFloat value = f.apply(z.re);
    if (f.complex == nullptr || isnan(z.re) || !isnan(value)) {
      return Complex(std::move(value));
    }
  }
  return f.complex != nullptr ? std::optional(f.complex(z)) : std::nullopt;
}

inline std::optional<Complex> evaluate(const NamedFunction2& f, const Complex& z, const Complex& w) {
  if (z.im == QuarnFloat() && w.im == QuarnFloat()) {
    QuarnFloat value = f.apply(z.re, w.re);
    if (f.complex == nullptr || isnan(z.re) || isnan(w.re) || !isnan(value)) {
      return Complex(std::move(value));
    }
  }
  return f.complex != nullptr ? std::optional(f.complex(z, w)) : std::nullopt;
}

}  // namespace quarn

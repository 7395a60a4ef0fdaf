// Functions that work element by element.
#include <array>

#include "cli/repl/functions.h"
#include "cli/system/progress.h"
#include "quarn/complex.h"

namespace cli::repl {

namespace {

using Values = std::vector<Value>;

template <class Map>
Values mapped(const Arguments& arguments, const Map& map) {
  const Array& a = arguments.array(0);
  Array result = make_array(a.rows(), a.columns());
  Progress progress("evaluating", double(size(a)));
  for (std::size_t k = 0; k < size(a); ++k) {
    result.data()[k] = map(a.data()[k]);
    progress.advance();
  }
  return {result};
}

template <Complex (*kMap)(const Complex&)>
Values complex_map(State& /*state*/, const Arguments& arguments) {
  return mapped(arguments, kMap);
}

template <QuarnFloat (*kMap)(const Complex&)>
Values real_valued(State& /*state*/, const Arguments& arguments) {
  return mapped(arguments, [](const Complex& z) { return Complex(kMap(z)); });
}

template <QuarnFloat (*kMap)(const QuarnFloat&)>
Values real_map(State& /*state*/, const Arguments& arguments) {
  return mapped(arguments, [](const Complex& z) {
    if (!is_real(z)) {
      throw Unfit("real numbers are needed here", 0);
    }
    return Complex(kMap(z.re));
  });
}

template <QuarnFloat (*kMap)(const QuarnFloat&, const QuarnFloat&)>
Values real_pairs(State& /*state*/, const Arguments& arguments) {
  const RealArray a = arguments.real_matrix(0);
  const RealArray b = arguments.real_matrix(1);
  const bool single = b.rows() == 1 && b.columns() == 1;
  if (!single && (a.rows() != b.rows() || a.columns() != b.columns())) {
    throw Unfit("as many numbers as in the first argument are needed here, or one", 1);
  }
  Array result = make_array(a.rows(), a.columns());
  Progress progress("evaluating", double(size(result)));
  for (std::size_t k = 0; k < size(result); ++k) {
    progress.advance();
    result.data()[k] = kMap(a.data()[k], b.data()[single ? 0 : k]);
  }
  return {result};
}

QuarnFloat modulus(const Complex& z) { return quarn::abs(z); }
QuarnFloat argument(const Complex& z) { return quarn::arg(z); }
QuarnFloat real_part(const Complex& z) { return z.re; }
QuarnFloat imaginary_part(const Complex& z) { return z.im; }
Complex conjugate(const Complex& z) { return is_real(z) ? z : conj(z); }

Values factorials(State& /*state*/, const Arguments& arguments) { return {factorial(arguments.array(0))}; }

// Half away from zero, as in school.
QuarnFloat rounded(const QuarnFloat& x) {
  const QuarnFloat whole = trunc(x);
  const QuarnFloat rest = fabs(x - whole) * 2;
  return rest < 1 ? whole : x < 0 ? whole - 1 : whole + 1;
}

constexpr auto kFunctions = std::to_array<Function>({
    {"sqrt", "x", "y", "square root, complex of negative numbers", 1, 1, complex_map<quarn::sqrt>},
    {"exp", "x", "y", "exponential", 1, 1, complex_map<quarn::exp>},
    {"log", "x", "y", "natural logarithm, complex of negative numbers", 1, 1, complex_map<quarn::log>},
    {"ln", "x", "y", "the same as log", 1, 1, complex_map<quarn::log>},
    {"log10", "x", "y", "decimal logarithm", 1, 1, complex_map<quarn::log10>},
    {"sin", "x", "y", "sine", 1, 1, complex_map<quarn::sin>},
    {"cos", "x", "y", "cosine", 1, 1, complex_map<quarn::cos>},
    {"tan", "x", "y", "tangent", 1, 1, complex_map<quarn::tan>},
    {"asin", "x", "y", "arc sine, complex beyond -1 and 1", 1, 1, complex_map<quarn::asin>},
    {"acos", "x", "y", "arc cosine, complex beyond -1 and 1", 1, 1, complex_map<quarn::acos>},
    {"atan", "x", "y", "arc tangent", 1, 1, complex_map<quarn::atan>},
    {"atan2", "y, x", "a", "angle of the point (x, y)", 2, 2, real_pairs<atan2>},
    {"sinh", "x", "y", "hyperbolic sine", 1, 1, complex_map<quarn::sinh>},
    {"cosh", "x", "y", "hyperbolic cosine", 1, 1, complex_map<quarn::cosh>},
    {"tanh", "x", "y", "hyperbolic tangent", 1, 1, complex_map<quarn::tanh>},
    {"asinh", "x", "y", "inverse hyperbolic sine", 1, 1, complex_map<quarn::asinh>},
    {"acosh", "x", "y", "inverse hyperbolic cosine, complex below 1", 1, 1, complex_map<quarn::acosh>},
    {"atanh", "x", "y", "inverse hyperbolic tangent, complex beyond -1 and 1", 1, 1, complex_map<quarn::atanh>},
    {"factorial", "n", "y", "n!, exact up to 100000 digits", 1, 1, factorials},
    {"abs", "x", "y", "magnitude", 1, 1, real_valued<modulus>},
    {"arg", "x", "y", "angle of a complex number, -pi to pi", 1, 1, real_valued<argument>},
    {"re", "x", "y", "real part", 1, 1, real_valued<real_part>},
    {"im", "x", "y", "imaginary part", 1, 1, real_valued<imaginary_part>},
    {"conj", "x", "y", "conjugate", 1, 1, complex_map<conjugate>},
    {"floor", "x", "y", "largest whole number not above", 1, 1, real_map<floor>},
    {"ceil", "x", "y", "smallest whole number not below", 1, 1, real_map<ceil>},
    {"round", "x", "y", "nearest whole number, halves away from zero", 1, 1, real_map<rounded>},
    {"trunc", "x", "y", "whole part", 1, 1, real_map<trunc>},
    {"mod", "x, y", "r", "x - y trunc(x / y), with the sign of x", 2, 2, real_pairs<fmod>},
});

}  // namespace

std::span<const Function> elementary_functions() { return kFunctions; }

}  // namespace cli::repl

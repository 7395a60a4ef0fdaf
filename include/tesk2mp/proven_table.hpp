// The functions of one and of two bounded numbers by name, for evaluators and bindings: the names of
// quarn/function_table.h.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "tesk2mp/proven_complex.hpp"

namespace tesk2mp::proven {

struct NamedFunction {
  std::string_view name;
  Bounded<Real> (*real)(const Bounded<Real>&);
  Bounded<Complex> (*complex)(const Bounded<Complex>&) = nullptr;  // where there is one
};

inline std::span<const NamedFunction> functions() noexcept {
  static constexpr NamedFunction kTable[] = {
      {"sin", sin, sin},
      {"cos", cos, cos},
      {"tan", tan, tan},
      {"asin", asin, asin},
      {"acos", acos, acos},
      {"atan", atan, atan},
      {"sinh", sinh, sinh},
      {"cosh", cosh, cosh},
      {"tanh", tanh, tanh},
      {"exp", exp, exp},
      {"log", log, log},
      {"ln", log, log},
      {"log10", log10, log10},
      {"sqrt", sqrt, sqrt},
      {"fabs", fabs},
      {"floor", floor},
      {"ceil", ceil},
      {"trunc", trunc},
      {"round", round},
      {"rint", rint},
      {"expm1", expm1},
      {"exp2", exp2},
      {"exp10", exp10},
      {"log1p", log1p},
      {"log2", log2},
      {"logb", logb},
      {"cbrt", cbrt},
      {"asinh", asinh, asinh},
      {"acosh", acosh, acosh},
      {"atanh", atanh, atanh},
      {"sinpi", sinpi},
      {"cospi", cospi},
      {"tanpi", tanpi},
      {"asinpi", asinpi},
      {"acospi", acospi},
      {"atanpi", atanpi},
      {"gamma", tgamma, tgamma},
      {"tgamma", tgamma, tgamma},
      {"lgamma", lgamma, lgamma},
      {"digamma", digamma, digamma},
      {"erf", erf, erf},
      {"erfc", erfc, erfc},
  };
  return kTable;
}

/// A function of two bounded numbers.
struct NamedFunction2 {
  std::string_view name;
  Bounded<Real> (*real)(const Bounded<Real>&, const Bounded<Real>&);
  Bounded<Complex> (*complex)(const Bounded<Complex>&, const Bounded<Complex>&) = nullptr;
};

inline std::span<const NamedFunction2> functions_of_two() noexcept {
  static constexpr NamedFunction2 kTable[] = {
      {"fmod", fmod}, {"pow", pow, pow}, {"atan2", atan2}, {"hypot", hypot}, {"remainder", remainder},
      {"fmin", fmin}, {"fmax", fmax},    {"fdim", fdim},   {"beta", beta},   {"binomial", binomial},
  };
  return kTable;
}

namespace detail {
template <class Named>
const Named* find_named(std::span<const Named> all, std::string_view name) noexcept {
  const auto found = std::find_if(all.begin(), all.end(), [&](const Named& each) { return each.name == name; });
  return found == all.end() ? nullptr : &*found;
}
}  // namespace detail

/// Null when there is none of that name.
inline const NamedFunction* find_function(std::string_view name) noexcept {
  return detail::find_named(functions(), name);
}
inline const NamedFunction2* find_function_of_two(std::string_view name) noexcept {
  return detail::find_named(functions_of_two(), name);
}

}  // namespace tesk2mp::proven

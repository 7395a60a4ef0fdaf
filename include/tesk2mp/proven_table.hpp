// The functions of one bounded number by name, for evaluators and bindings: the names of quarn/function_table.h.
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

/// Null when there is none of that name.
inline const NamedFunction* find_function(std::string_view name) noexcept {
  const auto all = functions();
  const auto found = std::find_if(all.begin(), all.end(), [&](const NamedFunction& each) { return each.name == name; });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace tesk2mp::proven

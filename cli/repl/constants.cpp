#include "cli/repl/constants.h"

#include <algorithm>
#include <iterator>

#include "tesk2mp/util.hpp"

namespace cli::repl {

namespace {

constexpr Constant kConstants[] = {
    {"pi", "the circle's ratio", [] { return Complex(tesk2mp::pi()); }, true},
    {"e", "the base of natural logarithms", [] { return Complex(exp(QuarnFloat(1))); }, true},
    {"i", "the imaginary unit", [] { return Complex(0, 1); }},
    {"eps", "machine precision, 10^-digits", [] { return Complex(tesk2mp::machine_precision()); }, false, true},
};

}  // namespace

std::span<const Constant> constants() { return kConstants; }

const Constant* find_constant(const std::string& name) {
  const auto* found = std::find_if(std::begin(kConstants), std::end(kConstants),
                                   [&](const Constant& constant) { return name == constant.name; });
  return found == std::end(kConstants) ? nullptr : found;
}

}  // namespace cli::repl

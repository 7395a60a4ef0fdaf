#include "vectors/operations.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "support/digits.h"

namespace vectors {

namespace {

constexpr Operation kOperations[] = {
    {"add", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return (a + b).to_string(); }},
    {"subtract", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return (a - b).to_string(); }},
    {"multiply", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return (a * b).to_string(); }},
    {"divide", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return (a / b).to_string(); }},
    {"remainder", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return fmod(a, b).to_string(); }},
    {"squareroot", 1, [](const QuarnFloat& a, const QuarnFloat&) { return sqrt(a).to_string(); }},
    {"compare", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return std::to_string(QuarnCompare(a, b)); }},
    {"exp", 1, [](const QuarnFloat& a, const QuarnFloat&) { return exp(a).to_string(); }},
    {"ln", 1, [](const QuarnFloat& a, const QuarnFloat&) { return log(a).to_string(); }},
    {"log10", 1, [](const QuarnFloat& a, const QuarnFloat&) { return log10(a).to_string(); }},
    {"sin", 1, [](const QuarnFloat& a, const QuarnFloat&) { return sin(a).to_string(); }},
    {"cos", 1, [](const QuarnFloat& a, const QuarnFloat&) { return cos(a).to_string(); }},
    {"tan", 1, [](const QuarnFloat& a, const QuarnFloat&) { return tan(a).to_string(); }},
    {"asin", 1, [](const QuarnFloat& a, const QuarnFloat&) { return asin(a).to_string(); }},
    {"acos", 1, [](const QuarnFloat& a, const QuarnFloat&) { return acos(a).to_string(); }},
    {"atan", 1, [](const QuarnFloat& a, const QuarnFloat&) { return atan(a).to_string(); }},
    {"sinh", 1, [](const QuarnFloat& a, const QuarnFloat&) { return sinh(a).to_string(); }},
    {"cosh", 1, [](const QuarnFloat& a, const QuarnFloat&) { return cosh(a).to_string(); }},
    {"tanh", 1, [](const QuarnFloat& a, const QuarnFloat&) { return tanh(a).to_string(); }},
    {"power", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return pow(a, b).to_string(); }},
    {"atan2", 2, [](const QuarnFloat& a, const QuarnFloat& b) { return atan2(a, b).to_string(); }},
    {"floor", 1, [](const QuarnFloat& a, const QuarnFloat&) { return floor(a).to_string(); }},
    {"ceil", 1, [](const QuarnFloat& a, const QuarnFloat&) { return ceil(a).to_string(); }},
    {"trunc", 1, [](const QuarnFloat& a, const QuarnFloat&) { return trunc(a).to_string(); }},
    {"integer", 1, [](const QuarnFloat& a, const QuarnFloat&) { return std::to_string(FloatToInt(a)); }},
    // The pattern of bits, with one for every NaN.
    {"double", 1,
     [](const QuarnFloat& a, const QuarnFloat&) {
       return isnan(a) ? "nan" : std::to_string(std::bit_cast<std::uint64_t>(FloatToDouble(a)));
     }},
    // The text of the operand, read at the working digits.
    {"text", 1, [](const QuarnFloat& a, const QuarnFloat&) { return QuarnFloat(a.to_string()).to_string(); }},
};

}  // namespace

const Operation* find_operation(std::string_view name) {
  const auto* found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                   [&](const Operation& operation) { return operation.name == name; });
  return found == std::end(kOperations) ? nullptr : found;
}

QuarnFloat read_exactly(const std::string& text) {
  const support::Digits scope(int(std::clamp<std::size_t>(text.size(), 1, 1'000'000)));
  return QuarnFloat(text);
}

std::string evaluate(const Operation& operation, int digits, const std::string& a, const std::string& b) {
  const QuarnFloat x = read_exactly(a);
  const QuarnFloat y = read_exactly(b);
  const support::Digits scope(digits);
  return operation.apply(x, y);
}

}  // namespace vectors

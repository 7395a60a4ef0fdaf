// The text of values with bounds: the digits that are true.
#include <algorithm>

#include "cli/repl/known.h"

namespace cli::repl {

namespace {

bool has_no_digit(const BoundedReal& x) { return proven::true_digits(x) <= 0 && !proven::is_unknown_zero(x); }
// "abs < 1e-40"
std::string reach_text(const QuarnBound& reach) { return "abs < 1e" + std::to_string(reach.exponent() + 1); }
QuarnBound reach(const BoundedReal& x) { return QuarnBound(x.value) + x.error; }

// Whole numbers that are exact stand with all their digits; what is not known is 0.
QuarnFloat rounded_value(const BoundedReal& x) {
  if (x.error.is_zero() && is_whole_number(x.value)) {
    return x.value;
  }
  return proven::is_unknown_zero(x) ? QuarnFloat() : x.value * QuarnFloat(1);
}

QuarnFloat known_part(const BoundedReal& x) {
  const std::int64_t digits = proven::true_digits(x);
  const tesk2mp::Digits scope{int(std::clamp<std::int64_t>(digits, 1, QuarnDigits()))};
  return rounded_value(x);
}

// Between the exact number and the one that is printed; `printed` is rounded.
QuarnBound printed_error(const BoundedReal& x, const QuarnFloat& printed) {
  if (x.error.is_zero() && !isfinite(x.value)) {
    return {};  // infinities and NaN that are results are printed as they are
  }
  constexpr int kFewDigits = 18;
  const tesk2mp::Digits scope(kFewDigits);
  const QuarnBound distance(x.value - printed);
  return x.error + distance + distance.half_unit(kFewDigits - 1);
}

std::string number_shown(const Number& z) {
  for (const BoundedReal& part : {z.re, z.im}) {
    if (!part.error.is_finite()) {
      return "?";
    }
    if (has_no_digit(part)) {
      return z.is_real() ? proven::to_text(part, 1) : "?";
    }
  }
  std::string text = number_text(Complex(known_part(z.re), known_part(z.im)));
  if (z.is_real()) {
    return proven::is_unknown_zero(z.re) ? text + " (" + reach_text(reach(z.re)) + ")" : text;
  }
  std::string unknown;
  for (const auto& [name, part] : {std::pair("re", &z.re), std::pair("im", &z.im)}) {
    if (proven::is_unknown_zero(*part)) {
      unknown += (unknown.empty() ? "" : ", ") + std::string(name) + ": " + reach_text(reach(*part));
    }
  }
  return unknown.empty() ? text : text + " (" + unknown + ")";
}

}  // namespace

std::vector<BoundedReal> parts_of(const Known& a) {
  std::vector<BoundedReal> parts;
  const auto* array = std::get_if<Array>(&a.value);
  for (std::size_t k = 0; array != nullptr && k < a.errors.size(); ++k) {
    const Number z = element(a, k);
    parts.push_back(z.re);
    if (!z.is_real()) {
      parts.push_back(z.im);
    }
  }
  return parts;
}

Array rounded_values(const Known& a) {
  Array values = a.array();
  for (std::size_t k = 0; k < size(values); ++k) {
    const Number z = element(a, k);
    values.data()[k] = Complex(rounded_value(z.re), rounded_value(z.im));
  }
  return values;
}

Value proven_value(const Known& a, std::int64_t digits) {
  const tesk2mp::Digits scope{int(std::clamp<std::int64_t>(digits, 1, QuarnDigits()))};
  return a.is_exact() ? a.value : Value(rounded_values(a));
}

std::string shown(const std::string& name, const Known& value, std::int64_t digits) {
  const auto* array = std::get_if<Array>(&value.value);
  if (array == nullptr || size(*array) == 0) {
    return shown(name, value.value);
  }
  if (is_number(*array)) {
    return name + " = " + number_shown(element(value, 0)) + "\n";
  }
  const std::vector<BoundedReal> parts = parts_of(value);
  if (std::any_of(parts.begin(), parts.end(), [](const BoundedReal& part) { return !part.error.is_finite(); })) {
    return name + " = ?  (" + shape(*array) + ")\n";
  }
  const tesk2mp::Digits scope{int(std::clamp<std::int64_t>(digits, 1, QuarnDigits()))};
  std::vector<std::size_t> unknown;
  for (std::size_t k = 0; k < size(*array); ++k) {
    const Number z = element(value, k);
    if (has_no_digit(z.re) || has_no_digit(z.im)) {
      unknown.push_back(k);
    }
  }
  std::string text = shown(name, rounded_values(value), unknown);
  QuarnBound largest;
  for (const BoundedReal& part : parts) {
    largest = proven::is_unknown_zero(part) ? std::max(largest, reach(part)) : largest;
  }
  return largest.is_zero() ? text : text + "# 0: " + reach_text(largest) + "\n";
}

std::string shown_errors(const std::string& name, const Known& value, std::int64_t digits) {
  const auto* array = std::get_if<Array>(&value.value);
  if (array == nullptr || size(*array) == 0) {
    return "";
  }
  const bool one = is_number(*array);
  const tesk2mp::Digits scope{int(std::clamp<std::int64_t>(digits, 1, QuarnDigits()))};
  Array errors = make_array(array->rows(), array->columns());
  for (std::size_t k = 0; k < size(*array); ++k) {
    const Number z = element(value, k);
    QuarnBound largest;
    for (const BoundedReal& part : {z.re, z.im}) {
      largest = std::max(largest, printed_error(part, one ? known_part(part) : rounded_value(part)));
    }
    errors.data()[k] = Complex(largest.value());
  }
  constexpr int kBoundDigits = 9;
  const tesk2mp::Digits few(kBoundDigits);
  return one ? "# error: " + number_text(errors(0, 0)) + "\n" : shown("error of " + name, Value(errors));
}

}  // namespace cli::repl

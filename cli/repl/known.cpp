#include "cli/repl/known.h"

#include <algorithm>

#include "cli/system/progress.h"

namespace cli::repl {

namespace {

bool is_whole_number(const QuarnFloat& x) {
  const tesk2mp::Digits digits(kMostExactDigits);
  return isfinite(x) && trunc(x) == x;
}

// Infinities and NaN of exact data are what they are, unless numbers left the range of numbers; other results are
// infinitely uncertain then.
BoundedReal settled(BoundedReal result, const BoundedReal& a, const BoundedReal& b, bool has_pole) {
  const bool exact_data = a.error.is_zero() && b.error.is_zero();
  const bool is_overflow = isinf(result.value) && isfinite(a.value) && isfinite(b.value) && !has_pole;
  if (is_overflow) {
    result.error = QuarnBound::infinity();
  } else if (exact_data && !isfinite(result.value)) {
    result.error = QuarnBound();
  }
  return result;
}

// Of whole numbers, however long, the result is exact.
template <class Operation>
BoundedReal exact_if_whole(const Operation& operation, const BoundedReal& a, const BoundedReal& b, bool has_pole) {
  const bool exact_data = a.error.is_zero() && b.error.is_zero();
  BoundedReal result = settled(operation(a, b), a, b, has_pole);
  if (result.error.is_zero() || !exact_data || !is_whole_number(a.value) || !is_whole_number(b.value)) {
    return result;
  }
  const std::int64_t places = std::int64_t(ilogb(result.value)) + 3;
  if (places <= QuarnDigits() || places > kMostExactDigits) {
    return result;
  }
  BoundedReal longer;
  {
    const tesk2mp::Digits digits{int(places)};
    longer = operation(a, b);
  }
  return longer.error.is_zero() ? longer : result;
}

BoundedReal sum(const BoundedReal& a, const BoundedReal& b) {
  return exact_if_whole([](const auto& x, const auto& y) { return x + y; }, a, b, false);
}
BoundedReal product(const BoundedReal& a, const BoundedReal& b) {
  return exact_if_whole([](const auto& x, const auto& y) { return x * y; }, a, b, false);
}
BoundedReal quotient(const BoundedReal& a, const BoundedReal& b) {
  return exact_if_whole([](const auto& x, const auto& y) { return x / y; }, a, b, b.value == 0);
}

Known product(const Known& a, const Known& b) {
  const Array& left = a.array();
  const Array& right = b.array();
  if (left.columns() != right.rows()) {
    throw Unfit("cannot multiply " + shape(left) + " by " + shape(right) + "; .* multiplies element by element");
  }
  const bool real = is_real(a) && is_real(b);
  const Progress progress =
      Progress::estimated("multiplying", double(left.rows()) * double(size(right)) * (real ? 1 : kComplexCost));
  return real ? known(proven::multiply(real_bounds(a), real_bounds(b)))
              : known(proven::multiply(complex_bounds(a), complex_bounds(b)));
}

Known solution(const Known& a, const Known& b) {
  const Array& matrix = a.array();
  const Array& right = b.array();
  if (matrix.rows() != matrix.columns() || right.rows() != matrix.rows()) {
    throw Unfit("cannot solve a system of " + shape(matrix) + " with right-hand sides of " + shape(right));
  }
  const bool real = is_real(a) && is_real(b);
  const Progress progress = Progress::estimated("solving", 2 * factorisation_cost(double(matrix.rows()), !real));
  if (real) {
    return a.is_exact() ? known(proven::solve(real_array(matrix), real_bounds(b)))
                        : known(proven::solve(real_bounds(a), real_bounds(b)));
  }
  return a.is_exact() ? known(proven::solve(matrix, complex_bounds(b)))
                      : known(proven::solve(complex_bounds(a), complex_bounds(b)));
}

Known matrix_power(const Known& a, const Known& b) {
  constexpr Integer kLargest = 1'000'000;
  const Array& matrix = a.array();
  const Complex exponent = is_number(b.array()) && b.is_exact() ? b.array()(0, 0) : Complex(0.5);
  if (matrix.rows() != matrix.columns() || !repl::is_real(exponent) || trunc(exponent.re) != exponent.re ||
      fabs(exponent.re) > kLargest) {
    throw Unfit("a square matrix has whole powers alone; .^ takes powers element by element");
  }
  Known result(complex_array(RealArray::identity(matrix.rows())));
  const Known base = exponent.re < 0 ? solution(a, result) : a;
  const Integer power = FloatToInt(fabs(exponent.re));
  for (Integer bit = 1 << 20; bit > 0; bit >>= 1) {
    if (bit <= power) {
      result = product(result, result);
      result = (power & bit) != 0 ? product(result, base) : result;
    }
  }
  return result;
}

}  // namespace

Known::Known(Array values, std::vector<PartErrors> bounds) : value(std::move(values)) {
  if (std::any_of(bounds.begin(), bounds.end(),
                  [](const PartErrors& each) { return !each.re.is_zero() || !each.im.is_zero(); })) {
    errors = std::move(bounds);
  }
}

const Array& Known::array(int argument) const {
  if (const auto* found = std::get_if<Array>(&value)) {
    return *found;
  }
  throw Unfit("numbers are needed here, not a text", argument);
}

Number element(const Known& a, std::size_t k) {
  const Complex& z = a.array().data()[k];
  if (a.is_exact()) {
    return {proven::exact(z.re), proven::exact(z.im)};
  }
  return {{z.re, a.errors[k].re}, {z.im, a.errors[k].im}};
}

Known known(std::size_t rows, std::size_t columns, const std::vector<Number>& elements) {
  Array values = make_array(rows, columns);
  std::vector<PartErrors> errors;
  for (std::size_t k = 0; k < elements.size(); ++k) {
    values.data()[k] = Complex(elements[k].re.value, elements[k].im.value);
    if (!elements[k].is_exact()) {
      errors.resize(elements.size());
      errors[k] = {elements[k].re.error, elements[k].im.error};
    }
  }
  return {std::move(values), std::move(errors)};
}

Known known(const Number& number) { return known(1, 1, {number}); }

Number as_number(const BoundedReal& x) { return {x, proven::exact(QuarnFloat())}; }
Number as_number(const BoundedComplex& z) { return {{z.value.re, z.error}, {z.value.im, z.error}}; }
Number as_number(const proven::BoundedRoot& root) {
  return {{root.value.re, root.error}, {root.value.im, root.is_real ? QuarnBound() : root.error}};
}
BoundedComplex as_complex(const Number& z) {
  return {Complex(z.re.value, z.im.value), hypotenuse(z.re.error, z.im.error)};
}

bool is_real(const Known& a) {
  return is_real(a.array()) &&
         std::all_of(a.errors.begin(), a.errors.end(), [](const PartErrors& each) { return each.im.is_zero(); });
}

proven::BoundedMatrix<QuarnFloat> real_bounds(const Known& a) {
  RealArray errors(a.array().rows(), a.array().columns());
  for (std::size_t k = 0; k < a.errors.size(); ++k) {
    errors.data()[k] = a.errors[k].re.value();
  }
  return {real_array(a.array()), std::move(errors)};
}

proven::BoundedMatrix<Complex> complex_bounds(const Known& a) {
  RealArray errors(a.array().rows(), a.array().columns());
  for (std::size_t k = 0; k < a.errors.size(); ++k) {
    errors.data()[k] = hypotenuse(a.errors[k].re, a.errors[k].im).value();
  }
  return {a.array(), std::move(errors)};
}

Number add(const Number& a, const Number& b) { return {sum(a.re, b.re), sum(a.im, b.im)}; }
Number subtract(const Number& a, const Number& b) { return add(a, negative(b)); }

Number multiply(const Number& a, const Number& b) {
  if (a.is_real() && b.is_real()) {
    return as_number(product(a.re, b.re));
  }
  if (a.is_real() || b.is_real()) {
    // Not in complex arithmetic, where 0 times infinity would spoil them.
    const BoundedReal& factor = a.is_real() ? a.re : b.re;
    const Number& z = a.is_real() ? b : a;
    return {product(factor, z.re), product(factor, z.im)};
  }
  return {sum(product(a.re, b.re), -product(a.im, b.im)), sum(product(a.re, b.im), product(a.im, b.re))};
}

Number divide(const Number& a, const Number& b) {
  if (b.is_real()) {
    return {quotient(a.re, b.re), a.is_real() ? a.im : quotient(a.im, b.re)};
  }
  const BoundedReal square = sum(product(b.re, b.re), product(b.im, b.im));
  const Number numerator = multiply(a, {b.re, -b.im});
  return {quotient(numerator.re, square), quotient(numerator.im, square)};
}

Number power(const Number& a, const Number& b) {
  constexpr int kMostProducts = 1000;
  const bool whole = b.is_real() && b.is_exact() && is_whole_number(b.re.value);
  if (a.is_real() && b.is_real() && (whole || a.re.value >= 0)) {
    BoundedReal result =
        exact_if_whole([](const auto& x, const auto& y) { return proven::pow(x, y); }, a.re, b.re, a.re.value == 0);
    if (whole && b.re.value == 0) {
      result = proven::exact(1);
    }
    Number power = as_number(result);
    if (!whole && !result.error.is_finite() && !a.is_exact()) {
      power.im.error = QuarnBound::infinity();  // of a number that is perhaps negative
    }
    return power;
  }
  if (whole && fabs(b.re.value) <= kMostProducts) {
    Number result{proven::exact(1)};
    Number square = a;
    for (Integer n = FloatToInt(fabs(b.re.value)); n > 0; n /= 2) {
      result = n % 2 != 0 ? multiply(result, square) : result;
      square = n > 1 ? multiply(square, square) : square;
    }
    return b.re.value < 0 ? divide({proven::exact(1)}, result) : result;
  }
  if (a.is_real() && a.re.value < 0 && !a.re.error.is_zero()) {
    // |a|^b (cos(pi b) + i sin(pi b)): the cut is not crossed.
    if (a.re.error < QuarnBound(a.re.value) && b.is_real()) {
      const BoundedReal size = proven::pow(-a.re, b.re);
      return {size * proven::cospi(b.re), size * proven::sinpi(b.re)};
    }
  }
  return as_number(proven::pow(as_complex(a), as_complex(b)));
}

Number negative(const Number& a) { return {-a.re, a.is_real() ? a.im : -a.im}; }

BoundedReal modulus(const Number& z) { return z.is_real() ? proven::abs(z.re) : proven::hypot(z.re, z.im); }

Known elementwise(const char* what, Number (*operation)(const Number&, const Number&), const Known& a, const Known& b) {
  const Array& left = a.array();
  const Array& right = b.array();
  const bool same = left.rows() == right.rows() && left.columns() == right.columns();
  if (!same && !is_number(left) && !is_number(right)) {
    throw Unfit("cannot " + std::string(what) + " " + shape(left) + " and " + shape(right));
  }
  if (is_number(left) && is_number(right)) {
    return known(operation(element(a, 0), element(b, 0)));
  }
  const Array& larger = is_number(left) ? right : left;
  std::vector<Number> elements;
  elements.reserve(size(larger));
  Progress progress("evaluating", double(size(larger)));
  for (std::size_t k = 0; k < size(larger); ++k) {
    progress.advance();
    elements.push_back(operation(element(a, is_number(left) ? 0 : k), element(b, is_number(right) ? 0 : k)));
  }
  return known(larger.rows(), larger.columns(), elements);
}

Known operate(const std::string& sign, const Known& a, const Known& b) {
  const bool numbers = is_number(a.array()) || is_number(b.array());
  if (sign == "+") {
    return elementwise("add", add, a, b);
  }
  if (sign == "-") {
    return elementwise("subtract", subtract, a, b);
  }
  if (sign == ".*" || (sign == "*" && numbers)) {
    return elementwise("multiply", multiply, a, b);
  }
  if (sign == "./" || (sign == "/" && is_number(b.array()))) {
    return elementwise("divide", divide, a, b);
  }
  if (sign == ".^" || (sign == "^" && is_number(a.array()) && is_number(b.array()))) {
    return elementwise("raise", power, a, b);
  }
  if (sign == "*") {
    return product(a, b);
  }
  if (sign == "\\") {
    return is_number(a.array()) ? elementwise("divide", divide, b, a) : solution(a, b);
  }
  if (sign == "^") {
    return matrix_power(a, b);
  }
  // X / A solves X A = B: the transposes have the usual order.
  return conjugate_transpose(solution(conjugate_transpose(b), conjugate_transpose(a)));
}

Known negative(const Known& a) { return {negative(a.array()), a.errors}; }

Known conjugate_transpose(const Known& a) {
  std::vector<PartErrors> errors(a.errors.size());
  const std::size_t rows = a.array().rows();
  const std::size_t columns = a.array().columns();
  for (std::size_t k = 0; k < errors.size(); ++k) {
    errors[k / rows + k % rows * columns] = a.errors[k];
  }
  return {conjugate_transpose(a.array()), std::move(errors)};
}

Known factorial(const Known& a) {
  if (!a.is_exact()) {
    throw Unfit("factorials are of whole numbers, and this one is not known exactly");
  }
  const Array values = factorial(a.array());
  // Those with more digits than are kept have been rounded to the working ones.
  std::vector<PartErrors> errors(size(values));
  for (std::size_t k = 0; k < errors.size(); ++k) {
    const QuarnFloat& value = values.data()[k].re;
    if (ilogb(value) >= kMostExactDigits) {
      errors[k].re = QuarnBound(value).half_unit(QuarnDigits()) + QuarnBound(value).half_unit(QuarnDigits());
    }
  }
  return {values, std::move(errors)};
}

namespace {

bool is_unknown_zero(const BoundedReal& x) {
  return x.error.is_finite() && !x.error.is_zero() && isfinite(x.value) && x.error.value() >= fabs(x.value);
}
bool has_no_digit(const BoundedReal& x) { return proven::true_digits(x) <= 0 && !is_unknown_zero(x); }
// "abs < 1e-40"
std::string reach_text(const QuarnBound& reach) { return "abs < 1e" + std::to_string(reach.exponent() + 1); }
QuarnBound reach(const BoundedReal& x) { return QuarnBound(x.value) + x.error; }

// Whole numbers that are exact stand with all their digits; what is not known is 0.
QuarnFloat rounded_value(const BoundedReal& x) {
  if (x.error.is_zero() && is_whole_number(x.value)) {
    return x.value;
  }
  return is_unknown_zero(x) ? QuarnFloat() : x.value * QuarnFloat(1);
}

QuarnFloat known_part(const BoundedReal& x) {
  const std::int64_t digits = proven::true_digits(x);
  const tesk2mp::Digits scope{int(std::clamp<std::int64_t>(digits, 1, QuarnDigits()))};
  return rounded_value(x);
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
    return is_unknown_zero(z.re) ? text + " (" + reach_text(reach(z.re)) + ")" : text;
  }
  std::string unknown;
  for (const auto& [name, part] : {std::pair("re", &z.re), std::pair("im", &z.im)}) {
    if (is_unknown_zero(*part)) {
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
    largest = is_unknown_zero(part) ? std::max(largest, reach(part)) : largest;
  }
  return largest.is_zero() ? text : text + "# 0: " + reach_text(largest) + "\n";
}

}  // namespace cli::repl

#include "cli/repl/known.h"

#include <algorithm>
#include <numeric>

namespace cli::repl {

namespace {

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

std::vector<Number> numbers(const Known& a) {
  std::vector<Number> result;
  for (std::size_t k = 0; k < size(a.array()); ++k) {
    result.push_back(element(a, k));
  }
  return result;
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
Number conjugate(const Number& z) { return {z.re, z.is_real() ? z.im : -z.im}; }
Number total(const std::vector<Number>& all) { return std::accumulate(all.begin(), all.end(), Number(), add); }

BoundedReal modulus(const Number& z) { return z.is_real() ? proven::abs(z.re) : proven::hypot(z.re, z.im); }

bool are_paired(const Array& a, const Array& b) {
  return (a.rows() == b.rows() && a.columns() == b.columns()) || is_number(a) || is_number(b);
}

Known elementwise(const char* what, Number (*operation)(const Number&, const Number&), const Known& a, const Known& b) {
  if (!are_paired(a.array(), b.array())) {
    throw Unfit("cannot " + std::string(what) + " " + shape(a.array()) + " and " + shape(b.array()));
  }
  return pairwise(a, b, operation);
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

}  // namespace cli::repl

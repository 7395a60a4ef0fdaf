// Values with bounds of their errors, and what operators make of them.
#pragma once

#include <string>
#include <vector>

#include "cli/repl/value.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_sums.hpp"

namespace cli::repl {

namespace proven = tesk2mp::proven;
using BoundedReal = proven::Bounded<QuarnFloat>;
using BoundedComplex = proven::Bounded<Complex>;

/// What the parts of an element are away from the exact ones at most.
struct PartErrors {
  QuarnBound re;
  QuarnBound im;
};

/// A number whose parts have bounds of their own: real ones stay real.
struct Number {
  BoundedReal re = proven::exact(QuarnFloat());
  BoundedReal im = proven::exact(QuarnFloat());

  bool is_real() const { return im.value == 0 && im.error.is_zero(); }
  bool is_exact() const { return re.error.is_zero() && im.error.is_zero(); }
};

/// A value and the bounds of its elements; none: it is exact.
struct Known {
  Known() = default;
  Known(Value exact) : value(std::move(exact)) {}
  Known(Array exact) : value(std::move(exact)) {}
  Known(Array values, std::vector<PartErrors> bounds);

  bool is_exact() const { return errors.empty(); }
  /// Throws Unfit for a text.
  const Array& array(int argument = -1) const;

  Value value;
  std::vector<PartErrors> errors;
};

Number element(const Known& a, std::size_t k);
Known known(std::size_t rows, std::size_t columns, const std::vector<Number>& elements);
std::vector<Number> numbers(const Known& a);
Known known(const Number& number);
Number as_number(const BoundedReal& x);
Number as_number(const BoundedComplex& z);
Number as_number(const proven::BoundedRoot& root);
BoundedComplex as_complex(const Number& z);
template <class T>
Known known(const proven::BoundedMatrix<T>& a) {
  std::vector<Number> elements;
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      elements.push_back(as_number(a(i, j)));
    }
  }
  return known(a.rows(), a.columns(), elements);
}
/// Numbers or roots as a column.
template <class Item>
Known known_column(const std::vector<Item>& items) {
  std::vector<Number> elements;
  elements.reserve(items.size());
  for (const Item& item : items) {
    elements.push_back(as_number(item));
  }
  return known(items.size(), 1, elements);
}

/// Is every element a real number, exactly?
bool is_real(const Known& a);
proven::BoundedMatrix<QuarnFloat> real_bounds(const Known& a);
proven::BoundedMatrix<Complex> complex_bounds(const Known& a);

/// body(matrix) with what the numbers are: real or complex, exact or with bounds.
template <class Body>
auto with_matrix(const Known& a, const Body& body) {
  if (a.is_exact()) {
    return repl::is_real(a.array()) ? body(real_array(a.array())) : body(a.array());
  }
  return is_real(a) ? body(real_bounds(a)) : body(complex_bounds(a));
}

// Arithmetic -------------------------------------------------------------------------------------------------------

Number add(const Number& a, const Number& b);
Number subtract(const Number& a, const Number& b);
Number multiply(const Number& a, const Number& b);
Number divide(const Number& a, const Number& b);
Number power(const Number& a, const Number& b);
Number negative(const Number& a);
Number conjugate(const Number& z);
Number total(const std::vector<Number>& all);
/// |z|
BoundedReal modulus(const Number& z);

/// map(element) of all.
template <class Map>
Known mapped(const Known& a, const Map& map) {
  const Array& values = a.array(0);
  std::vector<Number> elements;
  elements.reserve(size(values));
  Progress progress("evaluating", double(size(values)));
  for (std::size_t k = 0; k < size(values); ++k) {
    progress.advance();
    elements.push_back(map(element(a, k)));
  }
  return known(values.rows(), values.columns(), elements);
}
/// Have they one shape, or is one of them a number?
bool are_paired(const Array& a, const Array& b);
/// The same of two arrays that are paired; one number meets every element of the other.
template <class Operation>
Known pairwise(const Known& a, const Known& b, const Operation& operation) {
  const bool one_a = is_number(a.array());
  const bool one_b = is_number(b.array());
  const Array& shape = one_a ? b.array() : a.array();
  std::vector<Number> elements;
  elements.reserve(size(shape));
  Progress progress("evaluating", double(size(shape)));
  for (std::size_t k = 0; k < size(shape); ++k) {
    progress.advance();
    elements.push_back(operation(element(a, one_a ? 0 : k), element(b, one_b ? 0 : k)));
  }
  return known(shape.rows(), shape.columns(), elements);
}
/// The same with a check: throws Unfit.
Known elementwise(const char* what, Number (*operation)(const Number&, const Number&), const Known& a, const Known& b);

Known operate(const std::string& sign, const Known& a, const Known& b);
Known negative(const Known& a);
Known conjugate_transpose(const Known& a);
/// n!
Known factorial(const Known& a);

// Text -------------------------------------------------------------------------------------------------------------

/// The parts, each with its bound: imaginary ones unless they are exactly 0.
std::vector<BoundedReal> parts_of(const Known& a);

/// "name = 1.5" and so on with the digits that are true, at most the working ones; "0 (abs < 1e-40)" where the sign is
/// not known. `digits` says how many of all parts are known.
std::string shown(const std::string& name, const Known& value, std::int64_t digits);
/// How far the exact elements are from those of that text at most, parts of them.
std::string shown_errors(const std::string& name, const Known& value, std::int64_t digits);
/// Rounded to the working digits, zeros where the sign is not known.
Array rounded_values(const Known& a);
/// What is exact as it is, other values rounded to so many digits, at most the working ones.
Value proven_value(const Known& a, std::int64_t digits);

}  // namespace cli::repl

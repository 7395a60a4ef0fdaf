// Numbers, vectors and matrices between Python and the front door.
#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <type_traits>
#include <vector>

#include "tesk2mp/tesk2mp.hpp"

namespace python {

namespace py = pybind11;
using tesk2mp::Complex;
using tesk2mp::Matrix;
using tesk2mp::Real;

/// decimal.Decimal, int, fractions.Fraction or text, rounded once to the working digits. Anything else is a TypeError,
/// float too: its digits are not what its writer meant. Text that is no number is a ValueError.
Real to_real(py::handle number);
/// The same, or a Complex.
Complex to_complex(py::handle number);

template <class T>
T to_number(py::handle number) {
  if constexpr (std::is_same_v<T, Complex>) {
    return to_complex(number);
  } else {
    return to_real(number);
  }
}

/// A vector or a matrix, whatever its elements, and no number.
bool is_sequence(py::handle value);
/// An iterator over the elements of a vector or the rows of a matrix; a TypeError for what is neither.
py::iterator elements_of(py::handle sequence);

template <class T>
std::vector<T> to_vector(py::handle sequence) {
  std::vector<T> x;
  for (const py::handle element : elements_of(sequence)) {
    x.push_back(to_number<T>(element));
  }
  return x;
}

/// A sequence of rows of one length.
template <class T>
Matrix<T> to_matrix(py::handle rows) {
  std::vector<std::vector<T>> elements;
  for (const py::handle row : elements_of(rows)) {
    elements.push_back(to_vector<T>(row));
    if (elements.back().size() != elements.front().size()) {
      throw py::value_error("row " + std::to_string(elements.size() - 1) + " of the matrix has " +
                            std::to_string(elements.back().size()) + " elements, row 0 has " +
                            std::to_string(elements.front().size()));
    }
  }
  Matrix<T> a(elements.size(), elements.empty() ? 0 : elements.front().size());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      a(i, j) = std::move(elements[i][j]);
    }
  }
  return a;
}

/// How deeply sequences nest: 1 for a vector, 2 for a matrix, 0 for a number.
int depth_of(py::handle value);
/// A Complex is among the numbers.
bool has_complex(py::handle sequence);

/// Calls `work` with a value of the type that the sequences ask for: a Complex if one of them has any.
template <class Work, class... Sequences>
auto with_scalar(Work work, const Sequences&... sequences) {
  return (has_complex(sequences) || ...) ? work(Complex()) : work(Real());
}

/// A Decimal with the number's digits; a Complex.
py::object from(const Real& number);
py::object from(const Complex& number);

/// Lists, or arrays of objects when the argument that the result is like is an array.
py::object like(py::handle model, py::list result);
template <class T>
py::object from(const std::vector<T>& x, py::handle model) {
  py::list elements;
  for (const T& element : x) {
    if constexpr (std::is_integral_v<T>) {
      elements.append(long(element));
    } else {
      elements.append(from(element));
    }
  }
  return like(model, elements);
}
template <class T>
py::object from(const Matrix<T>& a, py::handle model) {
  py::list rows;
  for (std::size_t i = 0; i < a.rows(); ++i) {
    py::list row;
    for (std::size_t j = 0; j < a.columns(); ++j) {
      row.append(from(a(i, j)));
    }
    rows.append(row);
  }
  return like(model, rows);
}

/// The option of that name; a ValueError with all names otherwise.
template <class Option>
Option option_of(const char* what, const std::string& name,
                 const std::vector<std::pair<std::string, Option>>& options) {
  std::string names;
  for (const auto& [known, option] : options) {
    if (known == name) {
      return option;
    }
    names += (names.empty() ? "'" : ", '") + known + "'";
  }
  throw py::value_error(std::string(what) + " is one of " + names + ", not '" + name + "'");
}

// The rooms of the module.
void add_complex(py::module_& module);
void add_linear(py::module_& module);
void add_eigen(py::module_& module);
void add_sequences(py::module_& module);

}  // namespace python

// Numbers, vectors and matrices between Python and the C++ interface.
#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "long_work.h"
#include "quarn/function_table.h"
#include "tesk2mp/tesk2mp.hpp"

namespace python {

using tesk2mp::Complex;
using tesk2mp::Matrix;
using tesk2mp::Real;

/// Takes an object of the module by its T. One that was made by __new__ alone is refused: its memory holds no T.
template <class T>
struct Whole : py::detail::type_caster_base<T> {
  bool load(py::handle source, bool convert) {
    if (py::isinstance<T>(source) &&
        !reinterpret_cast<py::detail::instance*>(source.ptr())->get_value_and_holder().holder_constructed()) {
      throw py::type_error("an object whose __init__ has not been called");
    }
    return py::detail::type_caster_base<T>::load(source, convert);
  }
};

/// One of two, as the numbers ask for. A sparse matrix may be changed: not while work outside of the interpreter's lock
/// reads it.
struct AnySparse : std::variant<tesk2mp::SparseMatrix<Real>, tesk2mp::SparseMatrix<Complex>> {
  using variant::variant;
  mutable int readers = 0;
};
using AnyLU = std::variant<tesk2mp::LU<Real>, tesk2mp::LU<Complex>>;
using AnyCholesky = std::variant<tesk2mp::Cholesky<Real>, tesk2mp::Cholesky<Complex>>;

}  // namespace python

template <>
struct pybind11::detail::type_caster<tesk2mp::Real> : python::Whole<tesk2mp::Real> {};
template <>
struct pybind11::detail::type_caster<tesk2mp::Complex> : python::Whole<tesk2mp::Complex> {};
template <>
struct pybind11::detail::type_caster<tesk2mp::Random> : python::Whole<tesk2mp::Random> {};
template <>
struct pybind11::detail::type_caster<python::AnySparse> : python::Whole<python::AnySparse> {};
template <>
struct pybind11::detail::type_caster<python::AnyLU> : python::Whole<python::AnyLU> {};
template <>
struct pybind11::detail::type_caster<python::AnyCholesky> : python::Whole<python::AnyCholesky> {};

namespace python {

/// Real, decimal.Decimal, int, fractions.Fraction or text, rounded once to the working digits. Anything else is a
/// TypeError, float too: its digits are not what its writer meant. Text that is no number is a ValueError.
Real to_real(py::handle number);
/// The same, but of a Real, a Decimal, an int or text with all its digits.
Real to_exact(py::handle number);
/// The same, for proofs: a ValueError where that is not possible, the number being too long or beyond the range, or a
/// Fraction without an end in decimal.
Real to_proven(py::handle number);
/// As to_real(), or a Complex.
Complex to_complex(py::handle number);
/// An int of 32 bits; one from 0. A TypeError for what is no int, a ValueError for one out of range.
Integer to_integer(py::handle number);
std::size_t to_index(py::handle number);
/// A number of decimal places, within +-1000000.
int to_places(py::handle number);

/// For messages.
std::string type_name(py::handle value);

/// A vector or a matrix, whatever its elements, and no number, text, set or dict.
bool is_sequence(py::handle value);
/// Is an operation with it in its own hands: a sequence, or a number with a bound?
bool is_operator(py::handle value);
/// An iterator over the elements of a vector or the rows of a matrix; a TypeError for what is neither.
py::iterator elements_of(py::handle sequence);

/// Numbers in sequences of any depth. Each sequence is gone through once, so that generators will do; sequences side by
/// side are of one length.
class Array {
 public:
  /// Which digits of its numbers count.
  enum class Takes { working_digits, all_digits };

  explicit Array(py::handle sequence, Takes takes = Takes::working_digits);

  /// Lengths, the outermost sequence's first.
  const std::vector<std::size_t>& extents() const { return extents_; }
  bool is_vector() const { return extents_.size() == 1; }
  /// A Complex is among the numbers.
  bool is_complex() const { return !im_.empty(); }
  /// Number k, in the order in which they were read.
  template <class T>
  T number(std::size_t k) const {
    if constexpr (std::is_same_v<T, Complex>) {
      return {re_[k], is_complex() ? im_[k] : Real(0)};
    } else {
      return re_[k];
    }
  }
  /// All numbers, whatever the depth.
  template <class T>
  std::vector<T> numbers() const {
    require(std::is_same_v<T, Complex> || !is_complex(), "the numbers here are real, not Complex");
    std::vector<T> x;
    x.reserve(re_.size());
    for (std::size_t k = 0; k < re_.size(); ++k) {
      x.push_back(number<T>(k));
    }
    return x;
  }
  template <class T>
  std::vector<T> vector() const {
    require(is_vector(), "a vector is a sequence of numbers, not of sequences");
    return numbers<T>();
  }
  template <class T>
  Matrix<T> matrix() const {
    require(extents_.size() == 2 || (is_vector() && re_.empty()),
            "a matrix is a sequence of rows, each a sequence of numbers");
    const std::vector<T> x = numbers<T>();
    Matrix<T> a(extents_[0], is_vector() ? 0 : extents_[1]);
    for (std::size_t i = 0; i < a.rows(); ++i) {
      for (std::size_t j = 0; j < a.columns(); ++j) {
        a(i, j) = x[i * a.columns() + j];
      }
    }
    return a;
  }

 private:
  void read(py::handle sequence, std::size_t depth);
  void add(py::handle number);
  /// A TypeError unless it holds.
  static void require(bool holds, const char* text);

  Takes takes_;
  std::vector<std::size_t> extents_;
  std::vector<Real> re_;
  std::vector<Real> im_;  // none until there is a Complex
};

template <class T>
std::vector<T> to_vector(py::handle sequence) {
  return Array(sequence).vector<T>();
}
template <class T>
Matrix<T> to_matrix(py::handle rows) {
  return Array(rows).matrix<T>();
}

/// Calls `work` with a value of the type that the arrays ask for: a Complex if one of them has any.
template <class Work, class... Arrays>
auto with_scalar(Work work, const Arrays&... arrays) {
  return (arrays.is_complex() || ...) ? work(Complex()) : work(Real());
}

/// A Decimal with the number's digits, whatever kind of results the caller wants.
py::object to_decimal(const Real& number);
/// A Decimal with the number's digits, or a Real where the caller wants those; a Complex.
py::object from(const Real& number);
py::object from(const Complex& number);

/// Lists, or arrays of objects when the argument that the result is like is an array.
py::object like(py::handle model, py::list result);
template <class T>
py::object from(const std::vector<T>& x, py::handle model) {
  py::list elements;
  for (const T& element : x) {
    if (elements.size() % 1024 == 1023) {
      check_signals();
    }
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
    check_signals();
    py::list row;
    for (std::size_t j = 0; j < a.columns(); ++j) {
      row.append(from(a(i, j)));
    }
    rows.append(row);
  }
  return like(model, rows);
}

/// The numbers from `next` on in lists of these lengths.
template <class T>
py::list nested(std::span<const std::size_t> extents, std::span<const T> numbers, std::size_t& next) {
  py::list elements;
  for (std::size_t i = 0; i < extents.front(); ++i) {
    if (extents.size() > 1) {
      elements.append(nested(extents.subspan(1), numbers, next));
    } else {
      if (next % 1024 == 1023) {
        check_signals();
      }
      elements.append(from(numbers[next++]));
    }
  }
  return elements;
}

/// Numbers in the packed form of quarn/interchange.h; a ValueError for bytes that are none, or not `count` of them.
py::bytes packed(const std::vector<Real>& numbers);
std::vector<Real> unpacked(const py::bytes& bytes);
std::vector<Real> unpacked(const py::bytes& bytes, std::size_t count);

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

/// The function of a number, or of each in sequences of any depth.
py::object of_each(const quarn::NamedFunction1& f, py::handle x);

tesk2mp::Op op_of(const std::string& name);
tesk2mp::Norm norm_of(const std::string& name);
tesk2mp::Triangle triangle_of(const std::string& name);
tesk2mp::Diagonal diagonal_of(bool unit);

// The parts of the module.
void add_accumulator(py::module_& module);
void add_complex(py::module_& module);
void add_real(py::module_& module);
void add_kernels(py::module_& module);
void add_least_squares(py::module_& module);
void add_function_zeros(py::module_& module);
void add_gallery(py::module_& module);
void add_linear(py::module_& module);
void add_matrix_functions(py::module_& module);
void add_structured(py::module_& module);
void add_incomplete(py::module_& module);
void add_krylov(py::module_& module);
void add_sparse(py::module_& module);
void add_eigen(py::module_& module);
void add_spectra(py::module_& module);
void add_polynomials(py::module_& module);
void add_schur_forms(py::module_& module);
void add_proven(py::module_& module);
void add_sequences(py::module_& module);
void add_transforms(py::module_& module);
void add_functions(py::module_& module);
void add_rounding(py::module_& module);

}  // namespace python

// Proven results between Python and the C++ interface: values and bounds side by side, which the package's module
// `proven` gives their form.
#pragma once

#include "convert.h"

namespace python {

/// The numbers with all their digits: a proof is one for what is given.
Array exact(py::handle numbers);

/// (values, errors)
template <class T>
py::object both(const tesk2mp::proven::BoundedMatrix<T>& a) {
  return py::make_tuple(from(a.values(), py::none()), from(a.errors(), py::none()));
}
template <class T>
py::object both(const std::vector<tesk2mp::proven::Bounded<T>>& x) {
  py::list values;
  py::list errors;
  for (const tesk2mp::proven::Bounded<T>& element : x) {
    values.append(from(element.value));
    errors.append(from(element.error.value()));
  }
  return py::make_tuple(values, errors);
}

/// What is not finite has an infinite bound.
template <class T>
void require_bounded(const T& value, const Real& bound) {
  if (!QuarnBound(value).is_finite() && QuarnBound(bound).is_finite()) {
    throw py::value_error("numbers that are not finite have no proven results");
  }
}

/// The matrix; its elements are exact where there are no bounds of their errors.
template <class T>
tesk2mp::proven::BoundedMatrix<T> bounded_matrix(Matrix<T> matrix, py::handle errors) {
  Matrix<Real> bounds = errors.is_none() ? Matrix<Real>(matrix.rows(), matrix.columns()) : exact(errors).matrix<Real>();
  tesk2mp::detail::require(bounds.rows() == matrix.rows() && bounds.columns() == matrix.columns(), "PROVEN", 2,
                           "a bound for each number is needed");
  for (std::size_t j = 0; j < matrix.columns(); ++j) {
    for (std::size_t i = 0; i < matrix.rows(); ++i) {
      require_bounded(matrix(i, j), bounds(i, j));
    }
  }
  return {std::move(matrix), std::move(bounds)};
}

/// Calls work(matrix): exact, or with bounds of its elements.
template <class T, class Work>
auto with_data(const Array& a, py::handle errors, const Work& work) {
  if (errors.is_none()) {
    return work(a.matrix<T>());
  }
  return work(bounded_matrix(a.matrix<T>(), errors));
}

/// The same for the numbers that the matrix has.
template <class Work>
py::object with_matrix(py::handle a, py::handle errors, const Work& work) {
  const Array given = exact(a);
  return with_scalar(
      [&]<class T>(T) -> py::object {
        return with_data<T>(given, errors, [&](const auto& matrix) -> py::object { return work(matrix); });
      },
      given);
}

/// Adds what works on single bounded numbers, vectors and products of matrices.
void add_bounded(py::module_& module);
/// Adds factors and functions of matrices.
void add_proven_factors(py::module_& module);

}  // namespace python

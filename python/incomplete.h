// Incomplete and complete factors, real or complex, as Python holds them.
#pragma once

#include "convert.h"

namespace python {

struct AnyIncompleteLU : std::variant<tesk2mp::IncompleteLU<Real>, tesk2mp::IncompleteLU<Complex>> {
  using variant::variant;
};
struct AnyIncompleteCholesky : std::variant<tesk2mp::IncompleteCholesky<Real>, tesk2mp::IncompleteCholesky<Complex>> {
  using variant::variant;
};

struct AnySparseLU : std::variant<tesk2mp::SparseLU<Real>, tesk2mp::SparseLU<Complex>> {
  using variant::variant;
};
struct AnySparseCholesky : std::variant<tesk2mp::SparseCholesky<Real>, tesk2mp::SparseCholesky<Complex>> {
  using variant::variant;
};

/// The matrix as a complex one.
inline tesk2mp::SparseMatrix<Complex> widened(const tesk2mp::SparseMatrix<Real>& matrix) {
  tesk2mp::SparseMatrix<Complex> result(matrix.order(), matrix.storage());
  for (std::size_t k = 0; k < matrix.entries(); ++k) {
    result.add(matrix.row(k), matrix.column(k), Complex(matrix.value(k)));
  }
  return result;
}

/// While it lives, the matrix is read without the interpreter's lock; made and ended with it.
class Reading {
 public:
  explicit Reading(const AnySparse& matrix) : matrix_(matrix) { ++matrix_.readers; }
  ~Reading() { --matrix_.readers; }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

 private:
  const AnySparse& matrix_;
};

/// Calls work(matrix), with the matrix as a complex one if that is asked for.
template <class Work>
auto with_matrix(const AnySparse& any, bool is_complex, const Work& work) {
  const Reading reading(any);
  if (const auto* matrix = std::get_if<tesk2mp::SparseMatrix<Complex>>(&any)) {
    return work(*matrix);
  }
  const auto& matrix = std::get<tesk2mp::SparseMatrix<Real>>(any);
  return is_complex ? work(widened(matrix)) : work(matrix);
}

}  // namespace python

template <>
struct pybind11::detail::type_caster<python::AnyIncompleteLU> : python::Whole<python::AnyIncompleteLU> {};
template <>
struct pybind11::detail::type_caster<python::AnyIncompleteCholesky> : python::Whole<python::AnyIncompleteCholesky> {};
template <>
struct pybind11::detail::type_caster<python::AnySparseLU> : python::Whole<python::AnySparseLU> {};
template <>
struct pybind11::detail::type_caster<python::AnySparseCholesky> : python::Whole<python::AnySparseCholesky> {};

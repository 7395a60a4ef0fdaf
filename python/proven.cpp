// Solutions, spectra and zeros of polynomials with proven error bounds.
#include "proven.h"

#include "incomplete.h"
#include "tesk2mp/proven_sparse.hpp"

namespace python {
namespace {

namespace proven = tesk2mp::proven;

/// (value, error, count, is it real) of each.
py::object roots(const std::vector<proven::BoundedRoot>& found) {
  py::list result;
  for (const proven::BoundedRoot& root : found) {
    result.append(py::make_tuple(root.value, from(root.error.value()), root.count, root.is_real));
  }
  return result;
}

/// Calls work(a, b).
template <class Work>
py::object exact_pair(py::handle a, py::handle b, const Work& work) {
  const Array left = exact(a);
  const Array right = exact(b);
  return with_scalar([&]<class T>(T) -> py::object { return work(left.matrix<T>(), right.matrix<T>()); }, left, right);
}

/// The same; both exact, or both with bounds of their elements.
template <class Work>
py::object pencil(py::handle a, py::handle a_errors, py::handle b, py::handle b_errors, const Work& work) {
  return exact_pair(a, b, [&]<class T>(const Matrix<T>& first, const Matrix<T>& second) -> py::object {
    if (a_errors.is_none() && b_errors.is_none()) {
      return work(first, second);
    }
    return work(bounded_matrix(first, a_errors), bounded_matrix(second, b_errors));
  });
}

/// The matrix, all of whose elements, or those of the lower triangle, are finite.
template <class T>
Matrix<T> finite_matrix(const Array& a, bool lower_triangle) {
  Matrix<T> matrix = a.matrix<T>();
  for (std::size_t j = 0; j < matrix.columns(); ++j) {
    for (std::size_t i = lower_triangle ? j : 0; i < matrix.rows(); ++i) {
      require_bounded(matrix(i, j), Real());
    }
  }
  return matrix;
}

}  // namespace

Array exact(py::handle numbers) { return Array(numbers, Array::Takes::all_digits); }

void add_proven(py::module_& module) {
  add_bounded(module);
  add_proven_factors(module);
  module.def("_proven_number", [](py::handle x) { return to_decimal(to_proven(x)); });
  py::class_<proven::detail::DigitSearch>(module, "_DigitSearch")
      .def(py::init<int, int, int, int>())
      .def_property_readonly("working", &proven::detail::DigitSearch::working)
      .def_property_readonly("is_at_end", &proven::detail::DigitSearch::is_at_end)
      .def("raise_digits", &proven::detail::DigitSearch::raise);
  module.def("_proven_solve", [](py::handle a, py::handle errors, py::handle b, py::handle b_errors) {
    const Array given = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          return with_data<T>(given, errors, [&](const auto& matrix) {
            return with_data<T>(right, b_errors, [&](const auto& columns) {
              return both(outside([&] { return proven::solve(matrix, columns); }));
            });
          });
        },
        given, right);
  });
  module.def("_proven_sparse_solve", [](const AnySparse& a, py::handle b) {
    const Array right = exact(b);
    const Reading reading(a);
    const auto solved = [&]<class T>(const tesk2mp::SparseMatrix<T>& matrix) {
      const Matrix<T> columns = right.matrix<T>();
      return both(outside([&] { return proven::solve(matrix, columns); }));
    };
    if (const auto* real = std::get_if<tesk2mp::SparseMatrix<Real>>(&a)) {
      return right.is_complex() ? solved(widened(*real)) : solved(*real);
    }
    return solved(std::get<tesk2mp::SparseMatrix<Complex>>(a));
  });
  module.def("_proven_determinant", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors, [](const auto& matrix) -> py::object {
      const auto result = outside([&] { return proven::determinant(matrix); });
      return py::make_tuple(from(result.value), from(result.error.value()));
    });
  });
  module.def("_proven_definite", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = finite_matrix<T>(given, true);
          const auto answer = outside([&] { return proven::is_positive_definite(matrix); });
          return answer ? py::object(py::bool_(*answer)) : py::none();
        },
        given);
  });
  module.def("_proven_symmetric", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors, [](const auto& matrix) -> py::object {
      const auto system = outside([&] { return proven::symmetric_eigen(matrix); });
      return py::make_tuple(both(system.values), both(system.vectors));
    });
  });
  module.def("_proven_singular", [](py::handle a, py::handle errors) {
    return with_matrix(
        a, errors, [](const auto& matrix) { return both(outside([&] { return proven::singular_values(matrix); })); });
  });
  module.def("_proven_eigenvalues", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors,
                       [](const auto& matrix) { return roots(outside([&] { return proven::eigenvalues(matrix); })); });
  });
  module.def("_proven_pencil", [](py::handle a, py::handle a_errors, py::handle b, py::handle b_errors) {
    return pencil(a, a_errors, b, b_errors, [](const auto& first, const auto& second) -> py::object {
      return roots(outside([&] { return proven::eigenvalues(first, second); }));
    });
  });
  module.def("_proven_infinite", [](py::handle a, py::handle b) {
    return exact_pair(a, b, [](const auto& first, const auto& second) -> py::object {
      const auto found = outside([&] { return proven::infinite_eigenvalues(first, second); });
      return found ? py::object(py::int_(*found)) : py::none();
    });
  });
  module.def("_proven_finite", [](py::handle a, py::handle b) {
    return exact_pair(a, b, [](const auto& first, const auto& second) -> py::object {
      return roots(outside([&] { return proven::finite_eigenvalues(first, second); }));
    });
  });
  module.def("_proven_symmetric_pencil", [](py::handle a, py::handle b) {
    return exact_pair(a, b, [](const auto& first, const auto& second) -> py::object {
      return both(outside([&] { return proven::symmetric_eigenvalues(first, second); }));
    });
  });
  module.def("_proven_eigen", [](py::handle a, py::handle errors, bool left) {
    return with_matrix(a, errors, [&](const auto& matrix) -> py::object {
      const auto system = outside([&] { return proven::eigen(matrix); });
      const py::object vectors = both(system.vectors);
      if (!left) {
        return py::make_tuple(roots(system.values), vectors);
      }
      const auto others = outside([&] { return proven::left_eigenvectors(matrix, system.values); });
      return py::make_tuple(roots(system.values), vectors, both(others));
    });
  });
  module.def("_proven_eigen_pencil", [](py::handle a, py::handle a_errors, py::handle b, py::handle b_errors) {
    return pencil(a, a_errors, b, b_errors, [](const auto& first, const auto& second) -> py::object {
      const auto system = outside([&] { return proven::eigen(first, second); });
      return py::make_tuple(roots(system.values), both(system.vectors));
    });
  });
  module.def("_proven_rank", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = finite_matrix<T>(given, false);
          const auto found = outside([&] { return proven::rank(matrix); });
          return found ? py::object(py::int_(*found)) : py::none();
        },
        given);
  });
  module.def("_proven_zeros", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) {
          const std::vector<T> coefficients = given.vector<T>();
          return roots(outside([&] { return proven::zeros(coefficients); }));
        },
        given);
  });
  module.def("_proven_least_squares", [](py::handle a, py::handle b) {
    const Array given = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) {
          const Matrix<T> matrix = given.matrix<T>();
          const Matrix<T> columns = right.matrix<T>();
          return both(outside([&] { return proven::least_squares(matrix, columns); }));
        },
        given, right);
  });
}

}  // namespace python

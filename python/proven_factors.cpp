// Factors and functions of matrices with proven error bounds.
#include "proven.h"
#include "tesk2mp/proven_matrix_functions.hpp"
#include "tesk2mp/proven_pseudo_inverse.hpp"

namespace python {
namespace {

namespace proven = tesk2mp::proven;

/// work(a) of a matrix, exact or with bounds, gives one.
template <class Work>
void add_function(py::module_& module, const char* name, const Work& work) {
  module.def(name, [work](py::handle a, py::handle errors) {
    return with_matrix(a, errors,
                       [&](const auto& matrix) -> py::object { return both(outside([&] { return work(matrix); })); });
  });
}

}  // namespace

void add_proven_factors(py::module_& module) {
  module.def("_proven_lu", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors, [](const auto& matrix) -> py::object {
      const auto factors = outside([&] { return proven::lu(matrix); });
      py::list rows;
      for (const std::size_t row : factors.rows) {
        rows.append(row);
      }
      return py::make_tuple(rows, both(factors.l), both(factors.u));
    });
  });
  module.def("_proven_cholesky", [](py::handle a, py::handle errors, const std::string& triangle) {
    const tesk2mp::Triangle stored = triangle_of(triangle);
    return with_matrix(a, errors, [&](const auto& matrix) -> py::object {
      return both(outside([&] { return proven::cholesky(matrix, stored); }));
    });
  });
  module.def("_proven_qr", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors, [](const auto& matrix) -> py::object {
      const auto factors = outside([&] { return proven::qr(matrix); });
      return py::make_tuple(both(factors.q), both(factors.r));
    });
  });
  module.def("_proven_svd", [](py::handle a, py::handle errors) {
    return with_matrix(a, errors, [](const auto& matrix) -> py::object {
      const auto system = outside([&] { return proven::singular_system(matrix); });
      return py::make_tuple(both(system.u), both(system.values), both(system.v));
    });
  });
  module.def("_proven_null_space", [](py::handle a) {
    const Array given = exact(a);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = given.matrix<T>();
          return both(outside([&] { return proven::null_space(matrix); }));
        },
        given);
  });
  module.def("_proven_minimum_norm", [](py::handle a, py::handle b) {
    const Array left = exact(a);
    const Array right = exact(b);
    return with_scalar(
        [&]<class T>(T) -> py::object {
          const Matrix<T> matrix = left.matrix<T>();
          const Matrix<T> columns = right.matrix<T>();
          return both(outside([&] { return proven::minimum_norm(matrix, columns); }));
        },
        left, right);
  });
  module.def("_proven_power", [](py::handle a, py::handle errors, py::handle p, py::handle p_error) {
    const proven::Bounded<Real> exponent{to_proven(p), QuarnBound(to_proven(p_error))};
    return with_matrix(a, errors, [&](const auto& matrix) -> py::object {
      return both(outside([&] { return proven::power(matrix, exponent); }));
    });
  });
  add_function(module, "_proven_pinv", [](const auto& a) { return proven::pseudo_inverse(a); });
  add_function(module, "_proven_expm", [](const auto& a) { return proven::exponential(a); });
  add_function(module, "_proven_sqrtm", [](const auto& a) { return proven::square_root(a); });
  add_function(module, "_proven_logm", [](const auto& a) { return proven::logarithm(a); });
}

}  // namespace python

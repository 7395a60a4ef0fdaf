// Products, norms, linear equations and sparse matrices.
#include "convert.h"

namespace python {
namespace {

using tesk2mp::Norm;
using tesk2mp::SparseMatrix;
using tesk2mp::Storage;
using tesk2mp::Triangle;

/// One of the two, as the entries ask for.
using AnySparse = std::variant<SparseMatrix<Real>, SparseMatrix<Complex>>;

/// y := function(x), of one vector in Python.
void call_with_vector(const py::function& function, std::span<const Real> x, std::span<Real> y) {
  const std::vector<Real> result = to_vector<Real>(function(from(std::vector<Real>(x.begin(), x.end()), py::none())));
  if (result.size() != y.size()) {
    throw py::value_error("the function gave " + std::to_string(result.size()) + " numbers for " +
                          std::to_string(y.size()));
  }
  std::copy(result.begin(), result.end(), y.begin());
}

py::tuple solve_iteratively(const py::object& a, const py::object& b, const py::object& preconditioner,
                            const std::string& method, Integer order, const py::object& tolerance,
                            Integer most_iterations, const py::object& guess) {
  using tesk2mp::Method;
  tesk2mp::SolverOptions options;
  options.method = option_of<Method>(
      "method", method,
      {{"rgmres", Method::rgmres}, {"cgs", Method::cgs}, {"bicgstab", Method::bicgstab}, {"tfqmr", Method::tfqmr}});
  options.order = order;
  options.tolerance = to_real(tolerance);
  options.most_iterations = most_iterations;
  std::function<void(std::span<const Real>, std::span<Real>)> precondition;
  if (!preconditioner.is_none()) {
    precondition = [function = py::function(preconditioner)](std::span<const Real> x, std::span<Real> y) {
      call_with_vector(function, x, y);
    };
  }
  const std::vector<Real> right = to_vector<Real>(b);
  const std::vector<Real> first = guess.is_none() ? std::vector<Real>() : to_vector<Real>(guess);
  const auto solved = [&](const auto& matrix) {
    const tesk2mp::IterativeSolution solution = tesk2mp::solve_iteratively(matrix, right, options, precondition, first);
    return py::make_tuple(from(solution.x, b), from(solution.residual, b), long(solution.progress.iterations));
  };
  if (!py::isinstance<AnySparse>(a)) {
    const auto function = py::cast<py::function>(a);
    return solved([&](std::span<const Real> x, std::span<Real> y) { call_with_vector(function, x, y); });
  }
  const auto* matrix = std::get_if<SparseMatrix<Real>>(&py::cast<const AnySparse&>(a));
  if (matrix == nullptr) {
    throw py::type_error("the iterative solver is for real matrices");
  }
  return solved(*matrix);
}

/// Solves for a vector or for the columns of a matrix.
template <class T, class Factorisation>
py::object solve_with(const Factorisation& factorisation, const Array& b, py::handle model) {
  return b.is_vector() ? from(factorisation.solve(b.vector<T>()), model)
                       : from(factorisation.solve(b.matrix<T>()), model);
}

py::object multiply(py::handle a, py::handle b) {
  const Array left(a);
  const Array right(b);
  return with_scalar(
      [&]<class T>(T) {
        return right.is_vector() ? from(tesk2mp::multiply(left.matrix<T>(), right.vector<T>()), a)
                                 : from(tesk2mp::multiply(left.matrix<T>(), right.matrix<T>()), a);
      },
      left, right);
}

py::object norm(py::handle a, const std::string& kind) {
  const Norm chosen = option_of<Norm>(
      "kind", kind,
      {{"largest", Norm::largest}, {"one", Norm::one}, {"infinity", Norm::infinity}, {"frobenius", Norm::frobenius}});
  const Array given(a);
  return with_scalar(
      [&]<class T>(T) {
        if (!given.is_vector()) {
          return from(tesk2mp::norm(chosen, given.matrix<T>()));
        }
        const std::vector<T> x = given.vector<T>();
        return from(tesk2mp::norm(chosen, tesk2mp::MatrixView<const T>(x, x.size(), 1)));
      },
      given);
}

py::object cholesky(py::handle a, const std::string& triangle) {
  const Triangle chosen =
      option_of<Triangle>("triangle", triangle, {{"lower", Triangle::lower}, {"upper", Triangle::upper}});
  const Array given(a);
  return with_scalar([&]<class T>(T) { return from(tesk2mp::Cholesky<T>(given.matrix<T>(), chosen).factor(), a); },
                     given);
}

py::tuple lu(py::handle a) {
  const Array given(a);
  return with_scalar(
      [&]<class T>(T) {
        const tesk2mp::LU<T> lu(given.matrix<T>());
        return py::make_tuple(from(lu.factors(), a), from(lu.pivots(), py::none()));
      },
      given);
}

AnySparse sparse_of(std::size_t order, py::handle entries, bool lower_triangle) {
  std::vector<std::pair<std::size_t, std::size_t>> places;
  py::list values;
  for (const py::handle each : elements_of(entries)) {
    const py::list entry(elements_of(each));
    if (entry.size() != 3) {
      throw py::value_error("an entry is a row, a column and a value");
    }
    places.emplace_back(to_index(entry[0]), to_index(entry[1]));
    values.append(entry[2]);
  }
  const Array numbers(values);
  return with_scalar(
      [&]<class T>(T) -> AnySparse {
        SparseMatrix<T> matrix(order, lower_triangle ? Storage::lower_triangle : Storage::general);
        const std::vector<T> x = numbers.vector<T>();
        for (std::size_t k = 0; k < x.size(); ++k) {
          matrix.add(places[k].first, places[k].second, x[k]);
        }
        return matrix;
      },
      numbers);
}

void add_sparse(py::module_& module) {
  py::class_<AnySparse> type(module, "SparseMatrix", R"(SparseMatrix(order, entries, lower_triangle=False)

A square sparse matrix from its entries (row, column, value), indices from 0. With lower_triangle the entries are the
lower triangle of a symmetric (real) or Hermitian (complex) matrix.

>>> a = SparseMatrix(3, [(0, 0, 2), (2, 1, -1), (0, 0, '0.5')])
>>> a.multiply([1, 1, 1])
[Decimal('2.5'), Decimal('0'), Decimal('-1')]
>>> a.canonicalise().entries()
[(0, 0, Decimal('2.5')), (2, 1, Decimal('-1'))]
)");
  type.def(py::init(&sparse_of), py::arg("order"), py::arg("entries"), py::arg("lower_triangle") = false);
  type.def(
      "canonicalise",
      [](AnySparse& self) -> AnySparse& {
        std::visit([](auto& matrix) { matrix.canonicalise(); }, self);
        return self;
      },
      py::return_value_policy::reference_internal,
      "canonicalise()\n\nSorts the entries by rows, adds up those of the same place, drops zeros; returns the matrix.");
  type.def(
      "entries",
      [](const AnySparse& self) {
        py::list entries;
        std::visit(
            [&](const auto& matrix) {
              for (std::size_t k = 0; k < matrix.entries(); ++k) {
                entries.append(py::make_tuple(matrix.row(k), matrix.column(k), from(matrix.value(k))));
              }
            },
            self);
        return entries;
      },
      "entries()\n\nThe entries (row, column, value) as they are stored.");
  type.def(
      "multiply",
      [](const AnySparse& self, const py::object& x, bool transpose) {
        return std::visit(
            [&]<class T>(const SparseMatrix<T>& matrix) {
              const tesk2mp::Op adjoint =
                  std::is_same_v<T, Complex> ? tesk2mp::Op::conjugate_transpose : tesk2mp::Op::transpose;
              return from(matrix.multiply(to_vector<T>(x), transpose ? adjoint : tesk2mp::Op::none), x);
            },
            self);
      },
      py::arg("x"), py::arg("transpose") = false,
      "multiply(x, transpose=False)\n\nThe product with a vector; of the (conjugate) transpose with transpose=True.");
  type.def_property_readonly("order", [](const AnySparse& self) {
    return std::visit([](const auto& matrix) { return matrix.order(); }, self);
  });
}

}  // namespace

void add_linear(py::module_& module) {
  module.def("multiply", multiply, py::arg("a"), py::arg("b"), R"(multiply(a, b)

The product of a matrix, m by n, with a vector of n or a matrix, n by k.

>>> multiply([[1, 2], [3, 4]], ['0.5', 1])
[Decimal('2.5'), Decimal('5.5')]
)");
  module.def("norm", norm, py::arg("a"), py::arg("kind") = "frobenius", R"(norm(a, kind='frobenius')

A norm of a matrix or a vector (a column). kind: 'largest' (element), 'one' (column sum), 'infinity' (row sum), 'frobenius'.

>>> norm([[1, -2], [3, 4]], 'infinity')
Decimal('7')
)");
  module.def(
      "solve",
      [](py::handle a, py::handle b) {
        const Array left(a);
        const Array right(b);
        return with_scalar([&]<class T>(T) { return solve_with<T>(tesk2mp::LU<T>(left.matrix<T>()), right, b); }, left,
                           right);
      },
      py::arg("a"), py::arg("b"), R"(solve(a, b)

The solution of a x = b for a square matrix, n by n; b: n numbers or a matrix of n rows. NumericalFailure when the matrix is
singular.

>>> with digits(30):
...     solve([[4, 1], [2, 3]], [1, 2])
[Decimal('0.1'), Decimal('0.6')]
)");
  module.def(
      "determinant",
      [](py::handle a) {
        const Array given(a);
        return with_scalar([&]<class T>(T) { return from(tesk2mp::determinant(given.matrix<T>())); }, given);
      },
      py::arg("a"), R"(determinant(a)

The determinant of a square matrix, 0 when it is singular.

>>> determinant([[2, 1], [4, 5]])
Decimal('6')
)");
  module.def(
      "inverse",
      [](py::handle a) {
        const Array given(a);
        return with_scalar([&]<class T>(T) { return from(tesk2mp::inverse(given.matrix<T>()), a); }, given);
      },
      py::arg("a"), R"(inverse(a)

The inverse of a square matrix. NumericalFailure when it is singular.

>>> inverse([[2, 0], [0, 4]])
[[Decimal('0.5'), Decimal('0')], [Decimal('0'), Decimal('0.25')]]
)");
  module.def("lu", lu, py::arg("a"), R"(lu(a)

The factors of a = P L U, m by n: a matrix with L below the diagonal (its ones left out) and U above, and the list of
pivots: row i was interchanged with row pivots[i].

>>> lu([[0, 2], [4, 1]])
([[Decimal('4'), Decimal('1')], [Decimal('0'), Decimal('2')]], [1, 1])
)");
  module.def("cholesky", cholesky, py::arg("a"), py::arg("triangle") = "lower", R"(cholesky(a, triangle='lower')

The factor L of a = L L^H, or U of a = U^H U with triangle='upper'; that triangle of the symmetric or Hermitian matrix is
read. NumericalFailure when it is not positive definite.

>>> cholesky([[4, 2], [2, 5]])
[[Decimal('2'), Decimal('0')], [Decimal('1'), Decimal('2')]]
)");
  add_sparse(module);
  module.def(
      "solve_iteratively", solve_iteratively, py::arg("a"), py::arg("b"), py::arg("preconditioner") = py::none(),
      py::arg("method") = "rgmres", py::arg("order") = 0, py::arg("tolerance") = 0, py::arg("most_iterations") = 1000,
      py::arg("guess") = py::none(),
      R"(solve_iteratively(a, b, preconditioner=None, method='rgmres', order=0, tolerance=0, most_iterations=1000, guess=None)

The solution of a x = b by iteration: (x, residual b - a x, number of iterations). a: a SparseMatrix, or a function that takes
a list of n numbers and gives the n numbers of their product with the matrix. preconditioner: a function that solves with
a matrix near a. method: 'rgmres', 'cgs', 'bicgstab' or 'tfqmr'; order: iterations to a restart of RGMRES, the order of
BICGSTAB, 0 for the usual one. tolerance: 0 for the square root of the machine precision. NumericalFailure when the method
breaks down or runs out of iterations.

>>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
>>> with digits(30):
...     x, residual, iterations = solve_iteratively(a, [1, 2], tolerance='1e-25')
>>> [round(number, 20) for number in x], iterations
([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 2)
)");
}

}  // namespace python

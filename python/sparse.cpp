// Sparse matrices and iterative solution.
#include "callbacks.h"
#include "context.h"
#include "convert.h"
#include "incomplete.h"

namespace python {
namespace {

using tesk2mp::SparseMatrix;
using tesk2mp::Storage;

/// The matrix, to be changed.
AnySparse& changeable(AnySparse& matrix) {
  if (matrix.readers > 0) {
    throw std::runtime_error("the matrix is in use by another thread");
  }
  return matrix;
}

/// Those options that have names or are given as numbers.
tesk2mp::SolverOptions options_of(const std::string& method, const py::object& tolerance, const std::string& criterion,
                                  const std::string& norm, const py::object& weights, const py::object& matrix_norm,
                                  const py::object& largest_singular_value) {
  using tesk2mp::Criterion;
  using tesk2mp::Method;
  using tesk2mp::VectorNorm;
  tesk2mp::SolverOptions options;
  options.method = option_of<Method>("method", method,
                                     {{"rgmres", Method::rgmres},
                                      {"cgs", Method::cgs},
                                      {"bicgstab", Method::bicgstab},
                                      {"tfqmr", Method::tfqmr},
                                      {"cg", Method::cg},
                                      {"minres", Method::minres},
                                      {"symmlq", Method::symmlq},
                                      {"fgmres", Method::fgmres},
                                      {"idrs", Method::idrs}});
  options.criterion = option_of<Criterion>(
      "criterion", criterion,
      {{"preconditioned_residual", Criterion::preconditioned_residual}, {"residual", Criterion::residual}});
  options.norm = option_of<VectorNorm>(
      "norm", norm, {{"infinity", VectorNorm::infinity}, {"one", VectorNorm::one}, {"two", VectorNorm::two}});
  options.tolerance = to_real(tolerance);
  if (!(options.tolerance >= 0)) {
    throw py::value_error("the tolerance is a number from 0 on, not " + std::string(py::str(tolerance)));
  }
  options.matrix_norm = to_real(matrix_norm);
  options.largest_singular_value = to_real(largest_singular_value);
  if (!weights.is_none()) {
    options.weights = to_vector<Real>(weights);
  }
  return options;
}

/// Factors that the caller keeps, as a preconditioner without Python.
template <class T, template <class> class FactorsOf, class Any>
tesk2mp::Product<T> native(const Any& any) {
  using Factors = FactorsOf<T>;
  if constexpr (std::is_same_v<T, Complex>) {
    // Real factors serve both parts.
    if (const auto* real = std::get_if<FactorsOf<Real>>(&any)) {
      return [real](std::span<const T> x, std::span<T> y) {
        std::vector<Real> re(x.size());
        std::vector<Real> im(x.size());
        for (std::size_t i = 0; i < x.size(); ++i) {
          re[i] = x[i].re;
          im[i] = x[i].im;
        }
        real->solve(std::span<Real>(re));
        real->solve(std::span<Real>(im));
        for (std::size_t i = 0; i < y.size(); ++i) {
          y[i] = Complex(re[i], im[i]);
        }
      };
    }
  }
  const auto* factors = std::get_if<Factors>(&any);
  if (factors == nullptr) {
    throw py::type_error("the factors are complex, and the system is real");
  }
  return [factors](std::span<const T> x, std::span<T> y) { (*factors)(x, y); };
}

template <class T>
tesk2mp::Product<T> preconditioner_of(const py::object& given) {
  if (py::isinstance<AnyIncompleteLU>(given)) {
    return native<T, tesk2mp::IncompleteLU>(py::cast<const AnyIncompleteLU&>(given));
  }
  if (py::isinstance<AnyIncompleteCholesky>(given)) {
    return native<T, tesk2mp::IncompleteCholesky>(py::cast<const AnyIncompleteCholesky&>(given));
  }
  if (py::isinstance<AnySparseLU>(given)) {
    return native<T, tesk2mp::SparseLU>(py::cast<const AnySparseLU&>(given));
  }
  if (py::isinstance<AnySparseCholesky>(given)) {
    return native<T, tesk2mp::SparseCholesky>(py::cast<const AnySparseCholesky&>(given));
  }
  return product_of<T>(given);
}

template <class T>
tesk2mp::BasicMonitor<T> monitor_of(const py::object& given) {
  if (!optional_function(given)) {
    return {};
  }
  return [held = given.ptr()](const tesk2mp::Progress& progress, std::span<const T> x, std::span<const T> residual) {
    const py::gil_scoped_acquire lock;
    const CallbackDigits guard;
    return !py::bool_(borrowed(held)(long(progress.iterations), list_of<T>(x), list_of<T>(residual)));
  };
}

/// All messages of a sum, joined: what the function returned is bytes, or several of them.
py::bytes messages_of(const py::object& returned) {
  const auto refuse = [&] {
    PyErr_Clear();
    throw py::type_error("exchange returns the bytes of all ranks, joined or one by one, not " + type_name(returned));
  };
  PyObject* joined = nullptr;
  if (PyObject_CheckBuffer(returned.ptr()) != 0) {
    joined = PyBytes_FromObject(returned.ptr());
  } else {
    if (!py::isinstance<py::iterable>(returned)) {
      refuse();
    }
    const auto each = py::reinterpret_steal<py::object>(PySequence_List(returned.ptr()));
    if (!each) {
      throw py::error_already_set();  // of the code that gives one by one
    }
    joined = PyObject_CallMethod(py::bytes().ptr(), "join", "O", each.ptr());
  }
  if (joined == nullptr) {
    if (PyErr_ExceptionMatches(PyExc_TypeError) == 0) {
      throw py::error_already_set();
    }
    refuse();
  }
  return py::reinterpret_steal<py::bytes>(joined);
}

tesk2mp::SumExchange exchange_of(const py::object& given) {
  if (!optional_function(given)) {
    return {};
  }
  return [held = given.ptr()](std::span<tesk2mp::PartialSum> sums) {
    const std::vector<unsigned char> mine = tesk2mp::pack(sums);
    const py::gil_scoped_acquire lock;
    const CallbackDigits guard;
    const py::bytes all =
        messages_of(borrowed(held)(py::bytes(reinterpret_cast<const char*>(mine.data()), mine.size())));
    const auto bytes = static_cast<std::string_view>(all);
    tesk2mp::add_messages({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}, sums);
  };
}

/// What Python gives of a system, but for the matrix.
struct GivenSystem {
  const py::object& b;
  const py::object& preconditioner;
  const py::object& guess;
  const py::object& monitor;
  const tesk2mp::SolverOptions& options;
};

template <class T, class Operator>
py::tuple solved(const Operator& matrix, const GivenSystem& given) {
  const tesk2mp::Product<T> precondition = preconditioner_of<T>(given.preconditioner);
  const tesk2mp::BasicMonitor<T> look = monitor_of<T>(given.monitor);
  const std::vector<T> right = to_vector<T>(given.b);
  const std::vector<T> first = given.guess.is_none() ? std::vector<T>() : to_vector<T>(given.guess);
  const auto solution = outside([&] {
    return tesk2mp::solve_iteratively(matrix, std::span<const T>(right), given.options, precondition,
                                      std::span<const T>(first), look);
  });
  if (solution.inconsistent && PyErr_WarnEx(PyExc_RuntimeWarning,
                                            "the residual is small beside |a| |x| alone, not beside |b|: a may be "
                                            "singular, and b not in its range",
                                            3) != 0) {  // the caller of the function of Python
    throw py::error_already_set();
  }
  return py::make_tuple(from(solution.x, given.b), from(solution.residual, given.b),
                        long(solution.progress.iterations));
}

py::tuple solve_iteratively(const py::object& a, const py::object& b, const py::object& preconditioner,
                            const std::string& method, Integer order, const py::object& tolerance,
                            Integer most_iterations, const py::object& guess, const py::object& transpose,
                            const std::string& criterion, const std::string& norm, const py::object& weights,
                            const py::object& matrix_norm, const py::object& largest_singular_value,
                            const py::object& monitor, Integer rows, Integer first_row, const py::object& exchange) {
  tesk2mp::SolverOptions options =
      options_of(method, tolerance, criterion, norm, weights, matrix_norm, largest_singular_value);
  options.order = order;
  options.most_iterations = most_iterations;
  options.rows = rows;
  options.first_row = first_row;
  options.dot = exchange_of(exchange);
  if (bool(options.dot) != (rows != 0)) {
    throw py::value_error("rows that are shared out need both rows, of the whole system, and exchange");
  }
  const py::object right = py::isinstance<py::sequence>(b) ? b : py::object(py::list(elements_of(b)));
  const GivenSystem given{right, preconditioner, guess, monitor, options};
  const bool is_complex = Array(right).is_complex() || (!guess.is_none() && Array(guess).is_complex());
  if (!py::isinstance<AnySparse>(a)) {
    const py::function product(a);
    const std::optional<py::function> transposed_product = optional_function(transpose);
    const auto multiply = [&]<class T>(std::span<const T> x, std::span<T> y, bool transposed) {
      if (transposed && !transposed_product) {
        const py::gil_scoped_acquire held;
        throw py::value_error("criterion 'residual' needs matrix_norm, or products with the transpose to estimate it");
      }
      call_with_vector<T>(transposed ? *transposed_product : product, x, y);
    };
    return is_complex ? solved<Complex>(multiply, given) : solved<Real>(multiply, given);
  }
  return with_matrix(py::cast<const AnySparse&>(a), is_complex, [&]<class T>(const SparseMatrix<T>& matrix) {
    return solved<T>(
        [&](std::span<const T> x, std::span<T> y, bool transposed) {
          matrix.multiply(x, y, transposed ? tesk2mp::Op::conjugate_transpose : tesk2mp::Op::none);
        },
        given);
  });
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

/// Order, storage, kind of numbers, places and packed values: what a pickle holds.
py::tuple state_of(const AnySparse& self) {
  return std::visit(
      []<class T>(const SparseMatrix<T>& matrix) {
        py::list rows;
        py::list columns;
        std::vector<Real> values;
        for (std::size_t k = 0; k < matrix.entries(); ++k) {
          rows.append(matrix.row(k));
          columns.append(matrix.column(k));
          if constexpr (std::is_same_v<T, Complex>) {
            values.push_back(matrix.value(k).re);
            values.push_back(matrix.value(k).im);
          } else {
            values.push_back(matrix.value(k));
          }
        }
        return py::make_tuple(matrix.order(), matrix.storage() == Storage::lower_triangle, std::is_same_v<T, Complex>,
                              rows, columns, packed(values));
      },
      static_cast<const AnySparse::variant&>(self));
}

template <class T>
AnySparse restored_as(const py::tuple& state) {
  const py::list rows = state[3];
  const py::list columns = state[4];
  constexpr std::size_t kParts = std::is_same_v<T, Complex> ? 2 : 1;
  const std::vector<Real> values = unpacked(state[5], kParts * rows.size());
  SparseMatrix<T> matrix(to_index(state[0]), py::cast<bool>(state[1]) ? Storage::lower_triangle : Storage::general);
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if constexpr (kParts == 2) {
      matrix.add(to_index(rows[k]), to_index(columns[k]), Complex(values[2 * k], values[2 * k + 1]));
    } else {
      matrix.add(to_index(rows[k]), to_index(columns[k]), values[k]);
    }
  }
  return matrix;
}

AnySparse restored(const py::tuple& state) {
  return py::cast<bool>(state[2]) ? restored_as<Complex>(state) : restored_as<Real>(state);
}

void add_matrix(py::module_& module) {
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
      "add",
      [](AnySparse& self, py::handle row, py::handle column, py::handle value) {
        std::visit(
            [&]<class T>(SparseMatrix<T>& matrix) {
              matrix.add(to_index(row), to_index(column), Array(py::make_tuple(value)).vector<T>().front());
            },
            changeable(self));
      },
      py::arg("row"), py::arg("column"), py::arg("value"),
      "add(row, column, value)\n\nOne more entry; those of the same place add up.");
  type.def(
      "canonicalise",
      [](AnySparse& self, const std::string& duplicates, const std::string& zeros) -> AnySparse& {
        using tesk2mp::Duplicates;
        using tesk2mp::Zeros;
        const auto same_place = option_of<Duplicates>(
            "duplicates", duplicates,
            {{"sum", Duplicates::sum}, {"keep_first", Duplicates::keep_first}, {"fail", Duplicates::fail}});
        const auto nothing =
            option_of<Zeros>("zeros", zeros, {{"remove", Zeros::remove}, {"keep", Zeros::keep}, {"fail", Zeros::fail}});
        std::visit([&](auto& matrix) { matrix.canonicalise(same_place, nothing); }, changeable(self));
        return self;
      },
      py::return_value_policy::reference_internal, py::arg("duplicates") = "sum", py::arg("zeros") = "remove",
      R"(canonicalise(duplicates='sum', zeros='remove')

Sorts the entries by rows, then columns, and returns the matrix. duplicates, entries of the same place: 'sum', 'keep_first' or
'fail'. zeros: 'remove', 'keep' or 'fail'. To fail is an InvalidArgument and for general storage only.)");
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
              const std::vector<T> numbers = to_vector<T>(x);
              const Reading reading(self);
              return from(outside([&] { return matrix.multiply(numbers, transpose ? adjoint : tesk2mp::Op::none); }),
                          x);
            },
            self);
      },
      py::arg("x"), py::arg("transpose") = false,
      "multiply(x, transpose=False)\n\nThe product with a vector; of the (conjugate) transpose with transpose=True.");
  type.def(py::pickle(&state_of, &restored));
  type.def_property_readonly("lower_triangle", [](const AnySparse& self) {
    return std::visit([](const auto& matrix) { return matrix.storage() == Storage::lower_triangle; }, self);
  });
  type.def_property_readonly("order", [](const AnySparse& self) {
    return std::visit([](const auto& matrix) { return matrix.order(); }, self);
  });
}

}  // namespace

void add_sparse(py::module_& module) {
  add_matrix(module);
  module.def(
      "solve_iteratively", solve_iteratively, py::arg("a"), py::arg("b"), py::arg("preconditioner") = py::none(),
      py::arg("method") = "rgmres", py::arg("order") = 0, py::arg("tolerance") = 0, py::arg("most_iterations") = 1000,
      py::arg("guess") = py::none(), py::arg("transpose") = py::none(),
      py::arg("criterion") = "preconditioned_residual", py::arg("norm") = "infinity", py::arg("weights") = py::none(),
      py::arg("matrix_norm") = 0, py::arg("largest_singular_value") = 0, py::arg("monitor") = py::none(),
      py::arg("rows") = 0, py::arg("first_row") = 0, py::arg("exchange") = py::none(),
      R"(solve_iteratively(a, b, preconditioner=None, method='rgmres', order=0, tolerance=0, most_iterations=1000, guess=None,
                  transpose=None, criterion='preconditioned_residual', norm='infinity', weights=None, matrix_norm=0,
                  largest_singular_value=0, monitor=None, rows=0, first_row=0, exchange=None)

The solution of a x = b by iteration, real or complex: (x, residual b - a x, number of iterations). a: a SparseMatrix, or a function that takes
a list of n numbers and gives the n numbers of their product with the matrix. RuntimeWarning when x is so large that the
criterion holds although |b - a x| > sqrt(tolerance) |b|, as with a singular matrix. preconditioner: a function that solves with
a matrix near a, an IncompleteLU, IncompleteCholesky, SparseLU or SparseCholesky. method: 'rgmres', 'cgs',
'bicgstab', 'tfqmr', 'idrs' or 'fgmres', whose preconditioner may change from call to call; for a symmetric or Hermitian matrix
also 'minres', 'symmlq' and, when it is positive definite, 'cg'; order: iterations to a restart of RGMRES and FGMRES, the order
of BICGSTAB and IDR, 0 for the usual one. tolerance: 0 for the square root of the machine precision. NumericalFailure when the method
breaks down or runs out of iterations.

criterion: an iterate x is good enough when its 'residual' is small beside |b| + |a| |x|, or its 'preconditioned_residual'
beside that of the preconditioned system. norm: 'infinity', 'one' or 'two', with positive weights if given. matrix_norm: of a,
for 'residual'; 0: estimated, with products of a function `transpose`
(conjugated, when complex) when a is a function. largest_singular_value: of the
preconditioned matrix, for the other one; 0: estimated. monitor: a function of the number of iterations, x and the residual,
called after each; what is true ends the iterations.

Rows may be shared out among several programs: each calls with its block of b, guess and weights, the number of rows of the
whole system, that of its first row, from 0, and functions a and preconditioner for its block, which take what they need of
others. exchange: a function that takes bytes, what this program knows of inner products and norms, and returns those of all
programs, joined or one by one; with mpi4py comm.allgather. Sums are exact and rounded once: the digits do not depend on how rows
are shared out.

>>> a = SparseMatrix(2, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3)])
>>> with digits(30):
...     x, residual, iterations = solve_iteratively(a, [1, 2], tolerance='1e-25')
>>> [round(number, 20) for number in x], iterations
([Decimal('0.10000000000000000000'), Decimal('0.60000000000000000000')], 2)
)");
}

}  // namespace python

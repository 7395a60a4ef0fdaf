// Linear equations with a dense matrix.
#include "context.h"
#include "convert.h"

namespace python {
namespace {

AnyLU lu_of(py::handle a, bool row_weighted) {
  const Array given(a);
  return with_scalar(
      [&]<class T>(T) -> AnyLU {
        if (!row_weighted) {
          return outside([&] { return tesk2mp::LU<T>(given.matrix<T>()); });
        }
        if constexpr (std::is_same_v<T, Real>) {
          return outside([&] { return tesk2mp::LU<Real>::row_weighted(given.matrix<Real>()); });
        } else {
          throw py::type_error("row weights are for real matrices");
        }
      },
      given);
}

AnyCholesky cholesky_of(py::handle a, const std::string& triangle) {
  const Array given(a);
  return with_scalar(
      [&]<class T>(T) -> AnyCholesky {
        const tesk2mp::Triangle stored = triangle_of(triangle);
        return outside([&] { return tesk2mp::Cholesky<T>(given.matrix<T>(), stored); });
      },
      given);
}

/// Solves for a vector or for the columns of a matrix.
template <class T, class Factorisation, class... Options>
py::object solve_with(const Factorisation& factorisation, const Array& b, py::handle model, Options... options) {
  if (b.is_vector()) {
    return from(outside([&] { return factorisation.solve(b.vector<T>(), options...); }), model);
  }
  return from(outside([&] { return factorisation.solve(b.matrix<T>(), options...); }), model);
}

/// Calls `work` with the factorisation that is held.
template <class Any, class Work>
auto on(const Any& held, Work work) {
  return std::visit(work, held);
}

/// Kind of numbers, rows, columns and packed elements of a matrix, in a pickle.
template <class T>
py::tuple state_of(const Matrix<T>& matrix) {
  std::vector<Real> values;
  for (std::size_t k = 0; k < matrix.rows() * matrix.columns(); ++k) {
    if constexpr (std::is_same_v<T, Complex>) {
      values.push_back(matrix.data()[k].re);
      values.push_back(matrix.data()[k].im);
    } else {
      values.push_back(matrix.data()[k]);
    }
  }
  return py::make_tuple(std::is_same_v<T, Complex>, matrix.rows(), matrix.columns(), packed(values));
}

/// Calls make(matrix) with the matrix of such a state.
template <class Make>
auto restored(const py::handle& state, const Make& make) {
  const auto parts = py::cast<py::tuple>(state);
  const auto matrix = [&]<class T>(T) {
    const std::size_t rows = to_index(parts[1]);
    const std::size_t columns = to_index(parts[2]);
    constexpr std::size_t kParts = std::is_same_v<T, Complex> ? 2 : 1;
    const auto bytes = py::cast<py::bytes>(parts[3]);
    if (columns != 0 && rows > py::len(bytes) / columns) {
      throw py::value_error("these bytes are no packed matrix");
    }
    const std::vector<Real> values = unpacked(bytes, kParts * rows * columns);
    Matrix<T> result(rows, columns);
    for (std::size_t k = 0; k < rows * columns; ++k) {
      if constexpr (kParts == 2) {
        result.data()[k] = Complex(values[2 * k], values[2 * k + 1]);
      } else {
        result.data()[k] = values[k];
      }
    }
    return result;
  };
  return py::cast<bool>(parts[0]) ? make(matrix(Complex())) : make(matrix(Real()));
}

py::tuple state_of_lu(const AnyLU& self) {
  return on(self, [](const auto& lu) { return py::make_tuple(state_of(lu.factors()), from(lu.pivots(), py::none())); });
}

AnyLU restored_lu(const py::tuple& state) {
  std::vector<Integer> pivots;
  for (const py::handle row : py::cast<py::list>(state[1])) {
    pivots.push_back(to_integer(row));
  }
  return restored(state[0], [&]<class T>(Matrix<T> factors) -> AnyLU {
    return tesk2mp::LU<T>::from_factors(std::move(factors), std::move(pivots));
  });
}

py::tuple state_of_cholesky(const AnyCholesky& self) {
  return on(self, [](const auto& a) {
    return py::make_tuple(state_of(a.factor()), a.triangle() == tesk2mp::Triangle::lower);
  });
}

AnyCholesky restored_cholesky(const py::tuple& state) {
  return restored(state[0], [&]<class T>(Matrix<T> factor) -> AnyCholesky {
    using tesk2mp::Triangle;
    return tesk2mp::Cholesky<T>::from_factor(std::move(factor),
                                             py::cast<bool>(state[1]) ? Triangle::lower : Triangle::upper);
  });
}

void add_lu(py::module_& module) {
  py::class_<AnyLU>(module, "LU", R"(LU(a, row_weighted=False)

The factors of a = P L U by partial pivoting, for solving more than once. row_weighted, for a real a: pivots are chosen as if
all rows had length 1, and a pivot below 8 times the machine precision is a NumericalFailure.

factors: a matrix with L below the diagonal (its ones left out) and U above. pivots: row i was interchanged with row
pivots[i]. singular: a pivot is exactly zero. Both, and the inverse, are lists; a solution is as its right-hand side.

>>> lu = LU([[0, 2], [4, 1]])
>>> lu.solve([2, 9]), lu.solve([4, 3], op='transpose'), lu.determinant(), lu.pivots
([Decimal('2'), Decimal('1')], [Decimal('1'), Decimal('1')], Decimal('-8'), [1, 1])
)")
      .def(py::init(&lu_of), py::arg("a"), py::arg("row_weighted") = false)
      .def(py::pickle(&state_of_lu, &restored_lu))
      .def_property_readonly(
          "factors",
          [](const AnyLU& self) { return on(self, [](const auto& lu) { return from(lu.factors(), py::none()); }); })
      .def_property_readonly(
          "pivots",
          [](const AnyLU& self) { return on(self, [](const auto& lu) { return from(lu.pivots(), py::none()); }); })
      .def_property_readonly("singular",
                             [](const AnyLU& self) { return on(self, [](const auto& lu) { return lu.singular(); }); })
      .def("determinant",
           [](const AnyLU& self) { return on(self, [](const auto& lu) { return from(lu.determinant()); }); })
      .def("inverse",
           [](const AnyLU& self) {
             return on(self, [](const auto& lu) { return from(outside([&] { return lu.inverse(); }), py::none()); });
           })
      .def(
          "solve",
          [](const AnyLU& self, py::handle b, const std::string& op) {
            const Array right(b);
            return on(self, [&]<class T>(const tesk2mp::LU<T>& lu) { return solve_with<T>(lu, right, b, op_of(op)); });
          },
          py::arg("b"), py::arg("op") = "none",
          R"(solve(b, op='none')

The solution x of op(a) x = b, for a vector or for each column of a matrix; b of a real a is real.)");
}

void add_cholesky(py::module_& module) {
  py::class_<AnyCholesky>(module, "Cholesky", R"(Cholesky(a, triangle='lower')

The factor of a = L L^H, or of a = U^H U with triangle='upper', of a symmetric or Hermitian positive definite matrix, for
solving more than once; that triangle of a is read. NumericalFailure when the matrix is not positive definite.

>>> a = Cholesky([[4, 2], [2, 5]])
>>> a.solve([8, 12]), a.determinant()
([Decimal('1'), Decimal('2')], Decimal('16'))
>>> a.factor
[[Decimal('2'), Decimal('0')], [Decimal('1'), Decimal('2')]]
)")
      .def(py::init(&cholesky_of), py::arg("a"), py::arg("triangle") = "lower")
      .def(py::pickle(&state_of_cholesky, &restored_cholesky))
      .def_property_readonly(
          "factor",
          [](const AnyCholesky& self) { return on(self, [](const auto& a) { return from(a.factor(), py::none()); }); })
      .def("determinant",
           [](const AnyCholesky& self) { return on(self, [](const auto& a) { return from(a.determinant()); }); })
      .def("inverse",
           [](const AnyCholesky& self) {
             return on(self, [](const auto& a) { return from(outside([&] { return a.inverse(); }), py::none()); });
           })
      .def(
          "solve",
          [](const AnyCholesky& self, py::handle b) {
            const Array right(b);
            return on(self, [&]<class T>(const tesk2mp::Cholesky<T>& a) { return solve_with<T>(a, right, b); });
          },
          py::arg("b"),
          "solve(b)\n\nThe solution x of a x = b, for a vector or for each column of a matrix; b of a real a is real.");
}

void add_tuning(py::module_& module) {
  using tesk2mp::Tuning;
  const auto item_of = [](const std::string& name) {
    return option_of<Tuning>("item", name,
                             {{"block_size", Tuning::block_size},
                              {"shifts", Tuning::shifts},
                              {"largest_small_block", Tuning::largest_small_block}});
  };
  module.def(
      "tuning",
      [=](const std::string& routine, const std::string& item) {
        return long(tesk2mp::tuning(routine, item_of(item)));
      },
      py::arg("routine"), py::arg("item"), R"(tuning(routine, item)

A setting of a dense routine, 'F07ADF' or the like, for the whole process. item: 'block_size' of a factorisation,
'shifts' or 'largest_small_block' of the QR algorithm.

>>> tuning('F07ADF', 'block_size')
1
)");
  module.def(
      "set_tuning",
      [=](const std::string& routine, const std::string& item, Integer value) {
        return long(tesk2mp::set_tuning(routine, item_of(item), value));
      },
      py::arg("routine"), py::arg("item"), py::arg("value"), R"(set_tuning(routine, item, value)

Sets one and returns its former value.

>>> former = set_tuning('F07ADF', 'block_size', 8)
>>> set_tuning('F07ADF', 'block_size', former)
8
)");
}

}  // namespace

void add_linear(py::module_& module) {
  module.def(
      "solve",
      [](py::handle a, py::handle b) {
        const Array left(a);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              const auto lu = outside([&] { return tesk2mp::LU<T>(left.matrix<T>()); });
              return solve_with<T>(lu, right, b);
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), R"(solve(a, b)

The solution of a x = b for a square matrix, n by n; b: n numbers or a matrix of n rows. NumericalFailure when the matrix is
singular.

>>> with digits(30):
...     solve([[4, 1], [2, 3]], [1, 2])
[Decimal('0.1'), Decimal('0.6')]
)");
  module.def(
      "refine",
      [](py::handle a, py::handle b, const std::string& op) {
        const Array left(a);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              const auto matrix = left.matrix<T>();
              const auto refined = outside([&] {
                const tesk2mp::LU<T> lu(matrix);
                return right.is_vector() ? tesk2mp::refine(matrix, lu, right.vector<T>(), op_of(op))
                                         : tesk2mp::refine(matrix, lu, right.matrix<T>(), op_of(op));
              });
              if (!refined.converged) {
                refuse("NumericalFailure", "the matrix is singular to the working precision");
              }
              if (right.is_vector()) {
                const std::vector<T> x(refined.x.data(), refined.x.data() + refined.x.rows());
                return py::make_tuple(from(x, b), from(refined.forward_errors[0]));
              }
              return py::make_tuple(from(refined.x, b), from(refined.forward_errors, py::none()));
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), py::arg("op") = "none", R"(refine(a, b, op='none')

The solution x of op(a) x = b, corrected with exact residuals until its largest element is good to the last digit, and an
estimate of its largest error beside that element: (x, error), or (x, errors) for the columns of a matrix. NumericalFailure
when a is singular, or singular to the working precision.

>>> refine([[4, 1], [2, 3]], [1, 2])[0]
[Decimal('0.1'), Decimal('0.6')]
)");
  module.def(
      "determinant",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) { return from(outside([&] { return tesk2mp::determinant(given.matrix<T>()); })); }, given);
      },
      py::arg("a"), R"(determinant(a)

The determinant of a square matrix, 0 when it is singular.

>>> determinant([[2, 1], [4, 5]])
Decimal('6')
)");
  module.def(
      "scaled_determinant",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const auto scaled = outside([&] { return tesk2mp::scaled_determinant(given.matrix<T>()); });
              return py::make_tuple(from(scaled.mantissa), long(scaled.exponent), scaled.nearly_singular);
            },
            given);
      },
      py::arg("a"), R"(scaled_determinant(a)

The determinant of a square matrix as mantissa and exponent of ten, however large or small, and whether roundings alone may have
made the matrix singular or regular. The mantissa is from 1 to 10, of a Complex its larger part; 0 when the matrix is singular.

>>> scaled_determinant([['1e800000000', 0], [0, '-25e800000000']])
(Decimal('-2.5'), 1600000001, False)
)");
  module.def(
      "reciprocal_condition",
      [](py::handle a, const std::string& norm) {
        const Array given(a);
        const auto kind = option_of<tesk2mp::Norm>(
            "norm", norm, {{"one", tesk2mp::Norm::one}, {"infinity", tesk2mp::Norm::infinity}});
        return with_scalar(
            [&]<class T>(T) {
              return from(outside([&] { return tesk2mp::reciprocal_condition(given.matrix<T>(), kind); }));
            },
            given);
      },
      py::arg("a"), py::arg("norm") = "one", R"(reciprocal_condition(a, norm='one')

An estimate of 1 / (norm(a) norm(inverse(a))) of a square matrix, in the norm 'one' or 'infinity'; the norm of the inverse is
estimated from below, hardly ever by less than a third of it. 0 when the matrix is singular.

>>> reciprocal_condition([[1, 0], [0, 4]])
Decimal('0.25')
)");
  module.def(
      "equilibrate",
      [](py::handle a, bool powers_of_ten) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const auto found = outside([&] { return tesk2mp::equilibrate(given.matrix<T>(), powers_of_ten); });
              return py::make_tuple(from(found.rows, a), from(found.columns, a));
            },
            given);
      },
      py::arg("a"), py::arg("powers_of_ten") = false, R"(equilibrate(a, powers_of_ten=False)

Factors r of rows and c of columns such that the largest element of each row and column of r[i] a[i][j] c[j] is 1; with powers
of ten, which round nothing, it is from 0.1 to 1. NumericalFailure when a row or a column is zero.

>>> equilibrate([[4, 0], [0, 50]])
([Decimal('0.25'), Decimal('0.02')], [Decimal('1'), Decimal('1')])
)");
  module.def(
      "solve_scaled",
      [](py::handle a, py::handle b, const std::string& triangle, const std::string& op, bool unit) {
        const Array left(a);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              const auto found = outside([&] {
                return tesk2mp::solve_scaled(triangle_of(triangle), op_of(op), diagonal_of(unit), left.matrix<T>(),
                                             right.vector<T>());
              });
              return py::make_tuple(from(found.x, b), from(found.scale));
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), py::arg("triangle") = "upper", py::arg("op") = "none", py::arg("unit") = false,
      R"(solve_scaled(a, b, triangle='upper', op='none', unit=False)

The x and the scale, at most 1, with op(a) x = scale b for a triangular matrix, such that nothing overflows: a power of ten, 1
unless it has to be less. The scale of a singular matrix is 0, and x not zero with op(a) x = 0.

>>> solve_scaled([['1e-800000000']], ['1e800000000'])
([Decimal('1E+998999997')], Decimal('1E-601000003'))
)");
  module.def(
      "inverse",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) { return from(outside([&] { return tesk2mp::inverse(given.matrix<T>()); }), a); }, given);
      },
      py::arg("a"), R"(inverse(a)

The inverse of a square matrix. NumericalFailure when it is singular.

>>> inverse([[2, 0], [0, 4]])
[[Decimal('0.5'), Decimal('0')], [Decimal('0'), Decimal('0.25')]]
)");
  module.def(
      "lu",
      [](py::handle a) {
        return on(lu_of(a, false),
                  [&](const auto& lu) { return py::make_tuple(from(lu.factors(), a), from(lu.pivots(), py::none())); });
      },
      py::arg("a"), R"(lu(a)

The factors of a = P L U, m by n: a matrix with L below the diagonal (its ones left out) and U above, and the list of
pivots: row i was interchanged with row pivots[i].

>>> lu([[0, 2], [4, 1]])
([[Decimal('4'), Decimal('1')], [Decimal('0'), Decimal('2')]], [1, 1])
)");
  module.def(
      "cholesky",
      [](py::handle a, const std::string& triangle) {
        return on(cholesky_of(a, triangle), [&](const auto& factors) { return from(factors.factor(), a); });
      },
      py::arg("a"), py::arg("triangle") = "lower", R"(cholesky(a, triangle='lower')

The factor L of a = L L^H, or U of a = U^H U with triangle='upper'; that triangle of the symmetric or Hermitian matrix is
read. NumericalFailure when it is not positive definite.

>>> cholesky([[4, 2], [2, 5]])
[[Decimal('2'), Decimal('0')], [Decimal('1'), Decimal('2')]]
)");
  add_lu(module);
  add_cholesky(module);
  add_tuning(module);
}

}  // namespace python

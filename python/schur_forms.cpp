// Schur forms, their order, Sylvester equations.
#include <functional>

#include "context.h"
#include "convert.h"

namespace python {
namespace {

using Chosen = std::function<bool(const Complex&)>;

/// What an eigenvalue has to be to come first: a name, or a function of Python's own.
Chosen chosen_by(const py::object& sort) {
  if (!py::isinstance<py::str>(sort)) {
    return [sort](const Complex& value) {
      const CallbackDigits guard;
      return py::cast<bool>(py::bool_(sort(from(value))));
    };
  }
  enum class Half { left, right, inside, outside };
  const auto half =
      option_of<Half>("sort", py::cast<std::string>(sort),
                      {{"lhp", Half::left}, {"rhp", Half::right}, {"iuc", Half::inside}, {"ouc", Half::outside}});
  return [half](const Complex& value) {
    switch (half) {
      case Half::left:
        return value.re < 0;
      case Half::right:
        return value.re >= 0;
      case Half::inside:
        return tesk2mp::abs(value) <= 1;
      default:
        return tesk2mp::abs(value) > 1;
    }
  };
}

template <class Form>
py::object result_of(Form form, const py::object& sort, py::handle model) {
  if (sort.is_none()) {
    return py::make_tuple(from(form.t, model), from(form.z, model), from(form.values, model));
  }
  // The function that chooses is Python's: the interpreter's lock is kept.
  const auto ordered = interruptible([&] { return tesk2mp::order_schur(std::move(form), chosen_by(sort)); });
  return py::make_tuple(from(ordered.form.t, model), from(ordered.form.z, model), from(ordered.form.values, model),
                        ordered.dimension);
}

}  // namespace

void add_schur_forms(py::module_& module) {
  module.def(
      "schur",
      [](py::handle a, const py::object& sort) {
        const Array given(a);
        if (given.is_complex()) {
          const auto matrix = given.matrix<Complex>();
          return result_of(outside([&] { return tesk2mp::complex_schur(matrix); }), sort, a);
        }
        const auto matrix = given.matrix<Real>();
        return result_of(outside([&] { return tesk2mp::schur(matrix); }), sort, a);
      },
      py::arg("a"), py::arg("sort") = py::none(), R"(schur(a, sort=None)

The Schur form a = z t z^H of a square matrix: (t, z, values), z orthogonal or unitary, t upper triangular; of a real matrix
but for a 2 by 2 block for each pair of conjugate eigenvalues. sort: a function of an eigenvalue, or 'lhp', 'rhp', 'iuc',
'ouc' (in the left or right half plane, in or out of the unit circle); those that it holds for come first, and their number
is a fourth result: the first columns of z span their invariant subspace.

>>> t, z, values = schur([[1, 2], [0, 3]])
>>> t
[[Decimal('1'), Decimal('2')], [Decimal('0'), Decimal('3')]]
>>> t, z, values, count = schur([[1, 2], [0, -3]], sort='lhp')
>>> values, count
([Complex('-3', '0'), Complex('1', '0')], 1)
)");
  module.def(
      "solve_sylvester",
      [](py::handle a, py::handle b, py::handle c) {
        const Array left(a);
        const Array right(b);
        const Array sum(c);
        return with_scalar(
            [&]<class T>(T) {
              const Matrix<T> first = left.matrix<T>();
              const Matrix<T> second = right.matrix<T>();
              const Matrix<T> third = sum.matrix<T>();
              return from(outside([&] { return tesk2mp::solve_sylvester(first, second, third); }), a);
            },
            left, right, sum);
      },
      py::arg("a"), py::arg("b"), py::arg("c"), R"(solve_sylvester(a, b, c)

The solution x of a x + x b = c. NumericalFailure when a and -b have a common eigenvalue, or nearly.

>>> solve_sylvester([[2]], [[3]], [[10]])
[[Decimal('2')]]
)");
}

}  // namespace python

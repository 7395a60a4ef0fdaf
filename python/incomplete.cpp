// Incomplete and complete factorisations of sparse matrices.
#include "incomplete.h"

#include "context.h"
#include "convert.h"

namespace python {
namespace {

using tesk2mp::SparseMatrix;

tesk2mp::FillOptions fill_of(Integer level, const py::object& drop_tolerance, bool modified) {
  tesk2mp::FillOptions fill;
  fill.level = drop_tolerance.is_none() ? level : -1;
  fill.modified = modified;
  if (!drop_tolerance.is_none()) {
    fill.drop_tolerance = to_real(drop_tolerance);
  }
  return fill;
}

AnyIncompleteLU incomplete_lu_of(const AnySparse& a, Integer level, const py::object& drop_tolerance, bool modified,
                                 const std::string& search) {
  using tesk2mp::PivotSearch;
  const tesk2mp::FillOptions fill = fill_of(level, drop_tolerance, modified);
  const auto pivots = option_of<PivotSearch>("search", search,
                                             {{"none", PivotSearch::none},
                                              {"rows", PivotSearch::rows},
                                              {"columns", PivotSearch::columns},
                                              {"both", PivotSearch::both},
                                              {"least_fill", PivotSearch::least_fill}});
  const Reading reading(a);
  return std::visit(
      [&]<class T>(const SparseMatrix<T>& matrix) -> AnyIncompleteLU {
        return outside([&] { return tesk2mp::IncompleteLU<T>(tesk2mp::whole(matrix), fill, pivots); });
      },
      static_cast<const AnySparse::variant&>(a));
}

AnyIncompleteCholesky incomplete_cholesky_of(const AnySparse& a, Integer level, const py::object& drop_tolerance,
                                             bool modified, const std::string& search, const py::object& shift) {
  using tesk2mp::DiagonalSearch;
  const tesk2mp::FillOptions fill = fill_of(level, drop_tolerance, modified);
  const Real more = to_real(shift);
  const auto order = option_of<DiagonalSearch>("search", search,
                                               {{"none", DiagonalSearch::none},
                                                {"largest", DiagonalSearch::largest},
                                                {"least_fill", DiagonalSearch::least_fill}});
  const Reading reading(a);
  return std::visit(
      [&]<class T>(const SparseMatrix<T>& matrix) -> AnyIncompleteCholesky {
        return outside(
            [&] { return tesk2mp::IncompleteCholesky<T>(tesk2mp::lower_triangle(matrix), fill, order, more); });
      },
      static_cast<const AnySparse::variant&>(a));
}

/// None, or the rows of the matrix in the order of their elimination.
std::vector<std::size_t> order_of(const py::object& order) {
  std::vector<std::size_t> rows;
  if (!order.is_none()) {
    for (const py::handle row : py::iterable(order)) {
      rows.push_back(to_index(row));
    }
  }
  return rows;
}

AnySparseLU sparse_lu_of(const AnySparse& a, const py::object& order) {
  const std::vector<std::size_t> rows = order_of(order);
  const Reading reading(a);
  return std::visit(
      [&]<class T>(const SparseMatrix<T>& matrix) -> AnySparseLU {
        return outside([&] { return tesk2mp::SparseLU<T>(tesk2mp::whole(matrix), rows); });
      },
      static_cast<const AnySparse::variant&>(a));
}

AnySparseCholesky sparse_cholesky_of(const AnySparse& a, const py::object& order) {
  const std::vector<std::size_t> rows = order_of(order);
  const Reading reading(a);
  return std::visit(
      [&]<class T>(const SparseMatrix<T>& matrix) -> AnySparseCholesky {
        return outside([&] { return tesk2mp::SparseCholesky<T>(tesk2mp::lower_triangle(matrix), rows); });
      },
      static_cast<const AnySparse::variant&>(a));
}

py::list list_of(const std::vector<std::size_t>& order) {
  py::list list;
  for (const std::size_t i : order) {
    list.append(i);
  }
  return list;
}

/// The solution for one right-hand side, by solve(factors, x) in place.
template <class Any, class Solve>
py::object solution_of(const Any& self, const py::object& b, const Solve& solve) {
  return std::visit(
      [&](const auto& factors) {
        using T = typename std::decay_t<decltype(factors)>::value_type;
        std::vector<T> x = to_vector<T>(b);
        outside([&] { solve(factors, std::span<T>(x)); });
        return py::object(from(x, b));
      },
      self);
}

template <class Type>
void add_factor_properties(Type& type) {
  using Any = typename Type::type;
  type.def_property_readonly("order",
                             [](const Any& self) { return std::visit([](const auto& f) { return f.order(); }, self); })
      .def_property_readonly(
          "entries", [](const Any& self) { return std::visit([](const auto& f) { return f.entries(); }, self); })
      .def_property_readonly(
          "corrected_pivots",
          [](const Any& self) { return std::visit([](const auto& f) { return long(f.corrected_pivots()); }, self); })
      .def_property_readonly(
          "lower",
          [](const Any& self) { return std::visit([](const auto& f) -> AnySparse { return f.lower(); }, self); })
      .def_property_readonly("row_order", [](const Any& self) {
        return std::visit([](const auto& f) { return list_of(f.row_order()); }, self);
      });
}

template <class Type>
void add_lu_properties(Type& type) {
  using Any = typename Type::type;
  add_factor_properties(type);
  type.def_property_readonly(
          "upper",
          [](const Any& self) { return std::visit([](const auto& f) -> AnySparse { return f.upper(); }, self); })
      .def_property_readonly(
          "column_order",
          [](const Any& self) { return std::visit([](const auto& f) { return list_of(f.column_order()); }, self); })
      .def(
          "solve",
          [](const Any& self, const py::object& b, const std::string& op) {
            const tesk2mp::Op wanted = op_of(op);
            return solution_of(self, b, [&](const auto& factors, auto x) { factors.solve(x, wanted); });
          },
          py::arg("b"), py::arg("op") = "none",
          "solve(b, op='none')\n\nThe x with op(M) x = b, M = P^T L U Q^T; op is 'none', 'transpose' or "
          "'conjugate_transpose'.");
}

template <class Type>
void add_cholesky_properties(Type& type) {
  using Any = typename Type::type;
  add_factor_properties(type);
  type.def_property_readonly("diagonal",
                             [](const Any& self) {
                               return std::visit([](const auto& f) { return from(f.diagonal(), py::none()); }, self);
                             })
      .def(
          "solve",
          [](const Any& self, const py::object& b) {
            return solution_of(self, b, [](const auto& factors, auto x) { factors.solve(x); });
          },
          py::arg("b"), "solve(b)\n\nThe x with M x = b, M = P^T L D L^H P.");
}

}  // namespace

void add_incomplete(py::module_& module) {
  py::class_<AnyIncompleteLU> lu(module, "IncompleteLU",
                                 R"(IncompleteLU(a, level=0, drop_tolerance=None, modified=False, search='none')

Sparse triangles with P a Q = L U + R, of a SparseMatrix in canonical form; R is the fill that is dropped: what has a higher
level, or with drop_tolerance what is smaller than that times the largest element of its row (0 drops none). modified: what is
dropped is added to the pivots, so that row sums stay. search: where pivots are looked for, 'none', 'rows', 'columns', 'both', or 'least_fill'
among elements that are large enough.
Serves as preconditioner of solve_iteratively and, with drop_tolerance=0, to solve with.

lower, upper: the triangles. row_order, column_order: row k of L U is this row of a, column k this column. entries: of both,
the diagonal once. corrected_pivots: number of pivots that were zero and have been replaced.

>>> a = SparseMatrix(3, [(0, 0, 4), (0, 1, 1), (1, 0, 2), (1, 1, 3), (2, 1, 1), (2, 2, 2)])
>>> factors = IncompleteLU(a, drop_tolerance=0)
>>> factors.solve([6, 8, 8])
[Decimal('1'), Decimal('2'), Decimal('3')]
>>> factors.upper.entries()
[(0, 0, Decimal('4')), (0, 1, Decimal('1')), (1, 1, Decimal('2.5')), (2, 2, Decimal('2'))]
)");
  lu.def(py::init(&incomplete_lu_of), py::arg("a"), py::arg("level") = 0, py::arg("drop_tolerance") = py::none(),
         py::arg("modified") = false, py::arg("search") = "none");
  add_lu_properties(lu);

  py::class_<AnyIncompleteCholesky> cholesky(
      module, "IncompleteCholesky",
      R"(IncompleteCholesky(a, level=0, drop_tolerance=None, modified=False, search='none', shift=0)

A sparse triangle L and a positive diagonal D with P a P^T = L D L^H + R, of a symmetric or Hermitian SparseMatrix in canonical
form, of which the lower triangle counts. As IncompleteLU; search: which diagonal element a step takes, 'none' the next,
'largest', or 'least_fill', that with the fewest entries left in its row. shift: the diagonal is multiplied by 1 + shift first.

>>> a = SparseMatrix(2, [(0, 0, 4), (1, 0, 2), (1, 1, 3)], lower_triangle=True)
>>> factors = IncompleteCholesky(a)
>>> factors.solve([8, 8]), factors.diagonal
([Decimal('1'), Decimal('2')], [Decimal('4'), Decimal('2')])
)");
  cholesky.def(py::init(&incomplete_cholesky_of), py::arg("a"), py::arg("level") = 0,
               py::arg("drop_tolerance") = py::none(), py::arg("modified") = false, py::arg("search") = "none",
               py::arg("shift") = 0);
  add_cholesky_properties(cholesky);

  py::class_<AnySparseLU> complete_lu(module, "SparseLU", R"(SparseLU(a, order=None)

Sparse triangles with P a Q = L U, of a SparseMatrix in canonical form, to solve with. order: the rows of a as they are to be
eliminated, each with its largest element left as the pivot; None: an order that fills little. A NumericalFailure where a is
singular to working precision. Everything else is as IncompleteLU has it.

>>> a = SparseMatrix(3, [(0, 1, 2), (1, 0, 4), (1, 2, 1), (2, 2, 3)])
>>> SparseLU(a).solve([2, 5, 3])
[Decimal('1'), Decimal('1'), Decimal('1')]
)");
  complete_lu.def(py::init(&sparse_lu_of), py::arg("a"), py::arg("order") = py::none());
  add_lu_properties(complete_lu);

  py::class_<AnySparseCholesky> complete_cholesky(module, "SparseCholesky", R"(SparseCholesky(a, order=None)

A sparse triangle L and a positive diagonal D with P a P^T = L D L^H, of a positive definite SparseMatrix in canonical form, of
which the lower triangle counts. order: the rows of a as they are to be eliminated; None: an order that fills little. A
NumericalFailure where a is not positive definite. Everything else is as IncompleteCholesky has it.

>>> a = SparseMatrix(2, [(0, 0, 4), (1, 0, 2), (1, 1, 3)], lower_triangle=True)
>>> SparseCholesky(a).solve([8, 8])
[Decimal('1'), Decimal('2')]
)");
  complete_cholesky.def(py::init(&sparse_cholesky_of), py::arg("a"), py::arg("order") = py::none());
  add_cholesky_properties(complete_cholesky);
}

}  // namespace python

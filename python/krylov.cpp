// Large matrices that are sparse or functions: some eigenvalues and singular values, least squares.
#include "callbacks.h"
#include "incomplete.h"

namespace python {
namespace {

using tesk2mp::SparseMatrix;
using tesk2mp::SparseRectangle;

/// What the functions for some values share, but for the matrix and the choice of values.
struct Given {
  const py::object& v0;
  std::size_t ncv;
  const py::object& tolerance;
  Integer most_products;

  template <class T>
  void fill(tesk2mp::KrylovOptions<T>& options) const {
    options.tolerance = to_real(tolerance);
    options.basis = ncv;
    options.most_products = most_products;
    if (!v0.is_none()) {
      options.start = to_vector<T>(v0);
    }
  }
};

/// Calls work(matrix or nothing, a number of the type that the matrix has): of a function the numbers are those of v0.
template <class Work>
auto of_operator(const py::object& a, const py::object& like, const Work& work) {
  const bool is_complex = !like.is_none() && Array(like).is_complex();
  if (!py::isinstance<AnySparse>(a)) {
    const py::function checked(a);
    const SparseMatrix<Real>* const real = nullptr;
    const SparseMatrix<Complex>* const complex = nullptr;
    return is_complex ? work(complex) : work(real);
  }
  return with_matrix(py::cast<const AnySparse&>(a), is_complex, [&](const auto& matrix) { return work(&matrix); });
}

/// What eigsh and eigs share: products instead of the entries, and solutions with the shifted matrix.
struct GivenOperator {
  const py::object& a;
  std::size_t n;
  const py::object& solve;

  /// (values, vectors, residuals) by routine(matrix, k, options), or routine(n, product, k, options, solve).
  template <class T, class Options, class Routine>
  py::tuple eigenpairs(const SparseMatrix<T>* matrix, std::size_t k, const Options& options,
                       const Routine& routine) const {
    const auto found = matrix != nullptr ? outside([&] { return routine(*matrix, k, options); })
                                         : outside([&, product = product_of<T>(a), inverse = product_of<T>(solve)] {
                                             return routine(n, product, k, options, inverse);
                                           });
    return py::make_tuple(from(found.values, py::none()), from(found.vectors, py::none()),
                          from(found.residuals, py::none()));
  }
};

py::tuple eigsh(const py::object& a, std::size_t k, std::size_t n, const std::string& which, const py::object& sigma,
                const py::object& solve, const py::object& v0, std::size_t ncv, const py::object& tolerance,
                Integer most_products) {
  using tesk2mp::Extreme;
  const auto extreme = option_of<Extreme>("which", which,
                                          {{"LM", Extreme::largest_magnitude},
                                           {"SM", Extreme::smallest_magnitude},
                                           {"LA", Extreme::largest},
                                           {"SA", Extreme::smallest},
                                           {"BE", Extreme::both_ends}});
  return of_operator(a, v0, [&]<class T>(const SparseMatrix<T>* matrix) {
    tesk2mp::HermitianEigenOptions<T> options;
    Given{v0, ncv, tolerance, most_products}.fill(options);
    options.which = extreme;
    if (!sigma.is_none()) {
      options.sigma = to_real(sigma);
    }
    return GivenOperator{a, n, solve}.eigenpairs(
        matrix, k, options, [](const auto&... arguments) { return tesk2mp::eigsh<T>(arguments...); });
  });
}

py::tuple eigs(const py::object& a, std::size_t k, std::size_t n, const std::string& which, const py::object& sigma,
               const py::object& solve, const py::object& v0, std::size_t ncv, const py::object& tolerance,
               Integer most_products) {
  using tesk2mp::Dominant;
  const auto dominant = option_of<Dominant>("which", which,
                                            {{"LM", Dominant::largest_magnitude},
                                             {"SM", Dominant::smallest_magnitude},
                                             {"LR", Dominant::largest_real},
                                             {"SR", Dominant::smallest_real},
                                             {"LI", Dominant::largest_imaginary},
                                             {"SI", Dominant::smallest_imaginary}});
  // A complex shift makes the work complex.
  const py::object like = sigma.is_none() ? v0 : py::object(py::make_tuple(sigma));
  return of_operator(a, like, [&]<class T>(const SparseMatrix<T>* matrix) {
    tesk2mp::EigenOptions<T> options;
    Given{v0, ncv, tolerance, most_products}.fill(options);
    options.which = dominant;
    if (!sigma.is_none()) {
      options.sigma = to_vector<T>(like).front();
    }
    return GivenOperator{a, n, solve}.eigenpairs(
        matrix, k, options, [](const auto&... arguments) { return tesk2mp::eigs<T>(arguments...); });
  });
}

/// The leading rows and columns, 0 for all.
template <class T>
SparseRectangle<T> rectangle_of(const SparseMatrix<T>& matrix, std::size_t rows, std::size_t columns) {
  const SparseMatrix<T> all = tesk2mp::whole(matrix);
  SparseRectangle<T> result(rows != 0 ? rows : matrix.order(), columns != 0 ? columns : matrix.order());
  for (std::size_t k = 0; k < all.entries(); ++k) {
    result.add(all.row(k), all.column(k), all.value(k));
  }
  return result;
}

/// What svds and lsmr share: a matrix that need not be square, or products with it and with its adjoint.
struct GivenRectangle {
  const py::object& a;
  std::size_t rows;
  std::size_t columns;
  const py::object& adjoint;

  /// with_entries(rectangle), or with_products(product, adjoint).
  template <class T, class WithEntries, class WithProducts>
  auto solved(const SparseMatrix<T>* matrix, const WithEntries& with_entries, const WithProducts& with_products) const {
    if (matrix != nullptr) {
      return outside([&] { return with_entries(rectangle_of(*matrix, rows, columns)); });
    }
    if (adjoint.is_none()) {
      throw py::value_error("products with the conjugate transpose are needed");
    }
    return outside([&, product = product_of<T>(a), adjoint_product = product_of<T>(adjoint)] {
      return with_products(product, adjoint_product);
    });
  }
};

py::tuple svds(const py::object& a, std::size_t k, std::size_t rows, std::size_t columns, const py::object& adjoint,
               const std::string& which, const py::object& v0, std::size_t ncv, const py::object& tolerance,
               Integer most_products) {
  const bool smallest = option_of<bool>("which", which, {{"LM", false}, {"SM", true}});
  return of_operator(a, v0, [&]<class T>(const SparseMatrix<T>* matrix) {
    tesk2mp::SingularOptions<T> options;
    Given{v0, ncv, tolerance, most_products}.fill(options);
    options.smallest = smallest;
    const auto found = GivenRectangle{a, rows, columns, adjoint}.solved(
        matrix, [&](const SparseRectangle<T>& entries) { return tesk2mp::svds(entries, k, options); },
        [&](const auto&... products) { return tesk2mp::svds<T>(rows, columns, products..., k, options); });
    return py::make_tuple(from(found.u, py::none()), from(found.values, py::none()), from(found.v, py::none()),
                          from(found.residuals, py::none()));
  });
}

py::tuple lsmr(const py::object& a, const py::object& b, std::size_t columns, const py::object& adjoint,
               const py::object& damp, const py::object& atol, const py::object& btol, const py::object& conlim,
               Integer most_iterations) {
  tesk2mp::LsmrOptions options;
  options.damp = to_real(damp);
  options.atol = to_real(atol);
  options.btol = to_real(btol);
  options.largest_condition = to_real(conlim);
  options.most_iterations = most_iterations;
  const py::object right = py::isinstance<py::sequence>(b) ? b : py::object(py::list(elements_of(b)));
  return of_operator(a, right, [&]<class T>(const SparseMatrix<T>* matrix) {
    const std::vector<T> numbers = to_vector<T>(right);
    const auto found = GivenRectangle{a, numbers.size(), columns, adjoint}.solved(
        matrix, [&](const SparseRectangle<T>& entries) { return tesk2mp::lsmr<T>(entries, numbers, options); },
        [&](const auto&... products) { return tesk2mp::lsmr<T>(columns, products..., numbers, options); });
    return py::make_tuple(from(found.x, right), int(found.stop), long(found.iterations), from(found.residual_norm),
                          from(found.gradient_norm), from(found.matrix_norm), from(found.condition));
  });
}

}  // namespace

void add_krylov(py::module_& module) {
  const auto add_eigenpairs = [&module](const char* name, const auto& function, const char* text) {
    module.def(name, function, py::arg("a"), py::arg("k"), py::arg("n") = 0, py::arg("which") = "LM",
               py::arg("sigma") = py::none(), py::arg("solve") = py::none(), py::arg("v0") = py::none(),
               py::arg("ncv") = 0, py::arg("tolerance") = 0, py::arg("most_products") = 0, text);
  };
  add_eigenpairs("eigsh", eigsh,
                 R"(eigsh(a, k, n=0, which='LM', sigma=None, solve=None, v0=None, ncv=0, tolerance=0, most_products=0)

k eigenvalues of a large symmetric or Hermitian matrix, ascending, each as many times as it counts: (values, vectors, residuals), the
vectors in the columns of an n by k matrix. a: a SparseMatrix, or a function that gives the product of a list of n numbers with the
matrix, complex if v0 is, and with sigma another one, solve, for the inverse of a - sigma. which: 'LM' and 'SM' by magnitude, 'LA', 'SA',
'BE' for both ends; with sigma of 1 / (value - sigma), so that 'LM' are the nearest. ncv vectors at a time, 0 for the usual number.
tolerance: of residuals beside the norm, 0 for the machine precision. While a function works, `decimal` has ten digits more than
the routine.

>>> a = SparseMatrix(3, [(0, 0, 1), (1, 1, 2), (2, 2, 5)])
>>> values, vectors, residuals = eigsh(a, 2)
>>> values
[Decimal('2'), Decimal('5')]
>>> eigsh(a, 1, sigma='1.2')[0]
[Decimal('1')]
)");
  add_eigenpairs("eigs", eigs,
                 R"(eigs(a, k, n=0, which='LM', sigma=None, solve=None, v0=None, ncv=0, tolerance=0, most_products=0)

k eigenvalues of a large general matrix, the most wanted first, and k + 1 where two conjugates of a real matrix would be parted:
(values, vectors, residuals). As eigsh; which: 'LM' and 'SM' by magnitude, 'LR', 'SR', 'LI', 'SI' by real and imaginary parts.

>>> a = SparseMatrix(3, [(0, 1, 2), (1, 0, -2), (2, 2, 1)])
>>> values, vectors, residuals = eigs(a, 1)
>>> [round(abs(value.imag), 10) for value in values]
[Decimal('2.0000000000'), Decimal('2.0000000000')]
)");
  module.def("svds", svds, py::arg("a"), py::arg("k"), py::arg("rows") = 0, py::arg("columns") = 0,
             py::arg("adjoint") = py::none(), py::arg("which") = "LM", py::arg("v0") = py::none(), py::arg("ncv") = 0,
             py::arg("tolerance") = 0, py::arg("most_products") = 0,
             R"(svds(a, k, rows=0, columns=0, adjoint=None, which='LM', v0=None, ncv=0, tolerance=0, most_products=0)

k singular values of a large matrix, descending: (u, values, v, residuals) with the vectors in the columns of u and v. a: a SparseMatrix,
of which only so many rows and columns have entries, 0 for all; or a function for products, and adjoint for those with the conjugate
transpose. which: 'LM' or 'SM', the largest or the smallest.

>>> a = SparseMatrix(3, [(0, 0, 1), (1, 1, -2), (2, 1, 0)])
>>> svds(a, 2, rows=3, columns=2)[1]
[Decimal('2'), Decimal('1')]
)");
  module.def("lsmr", lsmr, py::arg("a"), py::arg("b"), py::arg("columns") = 0, py::arg("adjoint") = py::none(),
             py::arg("damp") = 0, py::arg("atol") = 0, py::arg("btol") = 0, py::arg("conlim") = 0,
             py::arg("most_iterations") = 0,
             R"(lsmr(a, b, columns=0, adjoint=None, damp=0, atol=0, btol=0, conlim=0, most_iterations=0)

The x of least |b - a x|^2 + damp^2 |x|^2 by iteration: (x, stop, iterations, residual norm, norm of a^H times the residual, estimates of
norm and condition of a). a and adjoint: as with svds, with as many rows as b has numbers. stop: 1 for a x = b, 2 for least squares, 3 when
the condition is conlim or more. atol, btol: relative errors of a and b, 0 for the machine precision.

>>> a = SparseMatrix(3, [(0, 0, 1), (1, 0, 1), (2, 0, 1)])
>>> x, stop, *_ = lsmr(a, [1, 2, 6], columns=1)
>>> x, stop
([Decimal('3')], 2)
)");
}

}  // namespace python

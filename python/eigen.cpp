// Eigenvalues and the zeros of a quartic.
#include "of_matrices.h"

namespace python {
namespace {

/// routine(a) of a real matrix.
template <class Routine>
auto of_matrix(Routine routine, py::handle a) {
  const Matrix<Real> matrix = to_matrix<Real>(a);
  return outside([&] { return routine(matrix); });
}

const std::vector<Complex>& values_of(const tesk2mp::EigenSystem& system) { return system.values; }
std::vector<Complex> values_of(const tesk2mp::PencilEigenSystem& system) { return system.values(); }

}  // namespace

void add_eigen(py::module_& module) {
  module.def(
      "eigenvalues",
      [](py::handle a, py::handle b) {
        const auto routine = [](const auto&... matrices) { return tesk2mp::eigenvalues(matrices...); };
        const auto to_python = [a](const std::vector<Complex>& values) { return from(values, a); };
        const Array given(a);
        if (b.is_none()) {
          return of_matrices(routine, to_python, given);
        }
        return of_matrices(routine, to_python, given, Array(b));
      },
      py::arg("a"), py::arg("b") = py::none(),
      R"(eigenvalues(a, b=None)

The eigenvalues of a square matrix, each a Complex. Of a real one pairs stand together, positive imaginary part first.
NumericalFailure when the QR algorithm does not converge. With a second matrix those of a x = lambda b x, infinite ones as
Complex('inf', '0'); NumericalFailure when every number is one.

>>> eigenvalues([[0, 1], [-1, 0]])
[Complex('0', '1'), Complex('0', '-1')]
>>> eigenvalues([[2, 0], [0, 3]], [[1, 0], [0, 0]])
[Complex('2', '0'), Complex('inf', '0')]
)");
  module.def(
      "eigen",
      [](py::handle a, py::handle b) {
        const auto routine = [](const auto&... matrices) { return tesk2mp::eigen(matrices...); };
        const auto to_python = [a](const auto& system) {
          return py::make_tuple(from(values_of(system), a), from(system.right, a), from(system.left, a));
        };
        const Array given(a);
        if (b.is_none()) {
          return of_matrices(routine, to_python, given);
        }
        return of_matrices(routine, to_python, given, Array(b));
      },
      py::arg("a"), py::arg("b") = py::none(), R"(eigen(a, b=None)

Eigenvalues and eigenvectors of a square matrix, n by n: (values, right, left). Eigenvector j is column j of an n by n
matrix and has Euclidean norm 1: a right = right diag(values), left^H a = diag(values) left^H. With a second matrix those of a x = lambda b x, left^H a = diag(values) left^H b, and
eigenvectors whose largest element has |re| + |im| = 1.

>>> values, right, left = eigen([[2, 0], [0, 3]])
>>> [value.real for value in values], right[1][1]
([Decimal('2'), Decimal('3')], Complex('1', '0'))
)");
  module.def(
      "eigen_conditions",
      [](py::handle a) {
        const tesk2mp::EigenConditions conditions =
            of_matrix([](const Matrix<Real>& matrix) { return tesk2mp::eigen_conditions(matrix); }, a);
        return py::make_tuple(from(conditions.values, a), from(conditions.value, a), from(conditions.vector, a));
      },
      py::arg("a"), R"(eigen_conditions(a)

How sharp the eigenproblem of a real square matrix is: (values, value, vector). A change of size e in the matrix moves
eigenvalue i by about e / value[i] and turns its right eigenvector by about e / vector[i].

>>> values, value, vector = eigen_conditions([[2, 0], [0, 3]])
>>> value
[Decimal('1'), Decimal('1')]
)");
  module.def(
      "eigenvalue_conditions",
      [](py::handle a) {
        const tesk2mp::EigenConditions conditions =
            of_matrix([](const Matrix<Real>& matrix) { return tesk2mp::eigenvalue_conditions(matrix); }, a);
        return py::make_tuple(from(conditions.values, a), from(conditions.value, a));
      },
      py::arg("a"), R"(eigenvalue_conditions(a)

The first two results of eigen_conditions, (values, value), without the work for the eigenvectors.

>>> values, value = eigenvalue_conditions([[2, 0], [0, 3]])
>>> value
[Decimal('1'), Decimal('1')]
)");
  module.def(
      "hessenberg",
      [](py::handle a) {
        const tesk2mp::Hessenberg form =
            of_matrix([](const Matrix<Real>& matrix) { return tesk2mp::hessenberg(matrix); }, a);
        return py::make_tuple(from(form.h, a), from(form.q, a));
      },
      py::arg("a"), R"(hessenberg(a)

a = q h q^T of a real square matrix: (h, q), q orthogonal, h zero below its first subdiagonal.

>>> h, q = hessenberg([[1, 2], [3, 4]])
>>> h == [[1, 2], [3, 4]]
True
)");
  module.def(
      "hessenberg_eigenvalues",
      [](py::handle h) {
        return from(of_matrix([](const Matrix<Real>& matrix) { return tesk2mp::hessenberg_eigenvalues(matrix); }, h),
                    h);
      },
      py::arg("h"),
      R"(hessenberg_eigenvalues(h)

The eigenvalues of a real upper Hessenberg matrix; what lies below its first subdiagonal is not read.

>>> hessenberg_eigenvalues([[0, 1], [-1, 0]])
[Complex('0', '1'), Complex('0', '-1')]
)");
  module.def(
      "balance",
      [](py::handle a, const std::string& job) {
        using tesk2mp::Balancing;
        const auto chosen = option_of<Balancing>("job", job,
                                                 {{"both", Balancing::both},
                                                  {"permute", Balancing::permute},
                                                  {"scale", Balancing::scale},
                                                  {"none", Balancing::none}});
        const tesk2mp::Balanced balanced =
            of_matrix([&](const Matrix<Real>& matrix) { return tesk2mp::balance(matrix, chosen); }, a);
        return py::make_tuple(from(balanced.matrix, a), balanced.low, balanced.high, from(balanced.scale, a));
      },
      py::arg("a"), py::arg("job") = "both", R"(balance(a, job='both')

A matrix similar to a real square one, with rows and columns of like norm: (matrix, low, high, scale). Rows and columns low
... high-1 hold the eigenvalues still to be found, the others stand on the diagonal. scale: the scale factors of low ... high-1;
elsewhere the row, from 1, that was interchanged. job: 'both', 'permute', 'scale' or 'none'.

>>> balance([[1, 5], [0, 2]])
([[Decimal('1'), Decimal('5')], [Decimal('0'), Decimal('2')]], 0, 1, [Decimal('1'), Decimal('2')])
)");
  module.def(
      "quartic_zeros",
      [](py::handle e, py::handle a, py::handle b, py::handle c, py::handle d) {
        py::list zeros;
        for (const tesk2mp::Zero& zero :
             tesk2mp::quartic_zeros(to_real(e), to_real(a), to_real(b), to_real(c), to_real(d))) {
          zeros.append(py::make_tuple(zero.value, from(zero.error)));
        }
        return zeros;
      },
      py::arg("e"), py::arg("a"), py::arg("b"), py::arg("c"), py::arg("d"), R"(quartic_zeros(e, a, b, c, d)

The four zeros of e z^4 + a z^3 + b z^2 + c z + d, each with what one rounding of the coefficients does to it: a list of
(Complex, Decimal). InvalidArgument when e is 0.

>>> with digits(30):
...     zeros = quartic_zeros(1, 0, 0, 0, -16)
>>> sorted(round(z.real, 20) for z, error in zeros) == [-2, 0, 0, 2]
True
)");
}

}  // namespace python

// Products, updates and norms: the vector and matrix kernels.
#include "convert.h"

namespace python {
namespace {

using tesk2mp::Diagonal;
using tesk2mp::MatrixView;
using tesk2mp::Norm;
using tesk2mp::Op;
using tesk2mp::Side;
using tesk2mp::Triangle;
using tesk2mp::VectorView;

/// A number as an array of one, so that it has its say in the choice of the scalar.
Array one_number(py::handle number) {
  Array numbers(py::make_tuple(number));
  if (!numbers.is_vector()) {
    throw py::type_error("a number is needed, not a sequence");
  }
  return numbers;
}

/// The array as a matrix, or zeros of those extents when there is none.
template <class T>
Matrix<T> matrix_or_zeros(const std::optional<Array>& c, std::size_t rows, std::size_t columns) {
  return c ? c->matrix<T>() : Matrix<T>(rows, columns);
}
std::optional<Array> optional_array(py::handle sequence) {
  return sequence.is_none() ? std::nullopt : std::optional<Array>(sequence);
}

py::object multiply(py::handle a, py::handle b, const std::string& op_a, const std::string& op_b, py::handle alpha,
                    py::handle beta, py::handle c) {
  const Array left(a);
  const Array right(b);
  const Array factors(py::make_tuple(alpha, beta));
  const std::optional<Array> added = optional_array(c);
  const Op first = op_of(op_a);
  const Op second = op_of(op_b);
  return with_scalar(
      [&]<class T>(T) {
        const T times = factors.number<T>(0);
        const T keep = added ? factors.number<T>(1) : T(0);
        const Matrix<T> p = left.matrix<T>();
        const std::size_t rows = first == Op::none ? p.rows() : p.columns();
        if (right.is_vector()) {
          if (second != Op::none) {
            throw py::value_error("op_b is for a matrix b");
          }
          std::vector<T> y = added ? added->vector<T>() : std::vector<T>(rows);
          if (p.rows() == 0 || p.columns() == 0) {  // the kernel would leave y as it is
            tesk2mp::scale(keep, y, y);
          }
          outside([&] { tesk2mp::gemv(first, times, p, right.vector<T>(), keep, y); });
          return from(y, a);
        }
        const Matrix<T> q = right.matrix<T>();
        Matrix<T> product = matrix_or_zeros<T>(added, rows, second == Op::none ? q.columns() : q.rows());
        outside([&] { tesk2mp::gemm(first, second, times, p, q, keep, product); });
        return from(product, a);
      },
      left, right, factors, added ? *added : factors);
}

py::object triangular_multiply(py::handle a, py::handle x, const std::string& triangle, const std::string& op,
                               bool unit) {
  const Array left(a);
  const Array right(x);
  return with_scalar(
      [&]<class T>(T) {
        const Matrix<T> factor = left.matrix<T>();
        const Triangle stored = triangle_of(triangle);
        const Op chosen = op_of(op);
        const auto work = [&](const VectorView<T>& column) {
          tesk2mp::trmv(stored, chosen, diagonal_of(unit), factor, column);
        };
        if (right.is_vector()) {
          std::vector<T> y = right.vector<T>();
          outside([&] { work(y); });
          return from(y, x);
        }
        Matrix<T> b = right.matrix<T>();
        outside([&] {
          for (std::size_t j = 0; j < b.columns(); ++j) {
            work(b.view().column(j));
          }
        });
        return from(b, x);
      },
      left, right);
}

py::object triangular_solve(py::handle a, py::handle b, const std::string& triangle, const std::string& op, bool unit,
                            const std::string& side) {
  const Array left(a);
  const Array right(b);
  const Side chosen = option_of<Side>("side", side, {{"left", Side::left}, {"right", Side::right}});
  return with_scalar(
      [&]<class T>(T) {
        const Matrix<T> factor = left.matrix<T>();
        const Triangle stored = triangle_of(triangle);
        const Op turned = op_of(op);
        if (right.is_vector() && chosen == Side::left) {
          std::vector<T> x = right.vector<T>();
          outside([&] { tesk2mp::trsv(stored, turned, diagonal_of(unit), factor, x); });
          return from(x, b);
        }
        Matrix<T> x = right.matrix<T>();
        outside([&] { tesk2mp::trsm(chosen, stored, turned, diagonal_of(unit), 1, factor, x); });
        return from(x, b);
      },
      left, right);
}

py::object outer(py::handle x, py::handle y, bool conjugate, py::handle alpha, py::handle a) {
  const Array left(x);
  const Array right(y);
  const Array factor = one_number(alpha);
  const std::optional<Array> added = optional_array(a);
  return with_scalar(
      [&]<class T>(T) {
        const std::vector<T> p = left.vector<T>();
        const std::vector<T> q = right.vector<T>();
        Matrix<T> sum = matrix_or_zeros<T>(added, p.size(), q.size());
        if constexpr (std::is_same_v<T, Complex>) {
          if (conjugate) {
            outside([&] { tesk2mp::gerc(factor.number<T>(0), p, q, sum); });
            return from(sum, x);
          }
        }
        outside([&] { tesk2mp::ger(factor.number<T>(0), p, q, sum); });
        return from(sum, x);
      },
      left, right, factor, added ? *added : factor);
}

py::object hermitian_product(py::handle a, const std::string& op, const std::string& triangle, py::handle alpha,
                             py::handle beta, py::handle c) {
  const Matrix<Complex> factor = to_matrix<Complex>(a);
  const Op chosen = op_of(op);
  const std::size_t n = chosen == Op::none ? factor.rows() : factor.columns();
  const std::optional<Array> added = optional_array(c);
  Matrix<Complex> sum = matrix_or_zeros<Complex>(added, n, n);
  const Triangle stored = triangle_of(triangle);
  const Real times = to_real(alpha);
  const Real keep = added ? to_real(beta) : Real(0);
  outside([&] { tesk2mp::herk(stored, chosen, times, factor, keep, sum); });
  return from(sum, a);
}

py::object dot(py::handle x, py::handle y, bool conjugate) {
  const Array left(x);
  const Array right(y);
  return with_scalar(
      [&]<class T>(T) {
        const std::vector<T> p = left.vector<T>();
        const std::vector<T> q = right.vector<T>();
        return from(outside([&] { return conjugate ? tesk2mp::dotc(p, q) : tesk2mp::dot(p, q); }));
      },
      left, right);
}

py::object scale(py::handle alpha, py::handle x) {
  const Array factor = one_number(alpha);
  const Array given(x);
  return with_scalar(
      [&]<class T>(T) {
        std::vector<T> y = given.vector<T>();
        tesk2mp::scale(factor.number<T>(0), y, y);
        return from(y, x);
      },
      factor, given);
}

py::object norm(py::handle a, const std::string& kind) {
  const Norm chosen = norm_of(kind);
  const Array given(a);
  return with_scalar(
      [&]<class T>(T) {
        if (!given.is_vector()) {
          return from(outside([&] { return tesk2mp::norm(chosen, given.matrix<T>()); }));
        }
        const std::vector<T> x = given.vector<T>();
        return from(tesk2mp::norm(chosen, MatrixView<const T>(x, x.size(), 1)));
      },
      given);
}

void add_products(py::module_& module) {
  module.def("multiply", multiply, py::arg("a"), py::arg("b"), py::arg("op_a") = "none", py::arg("op_b") = "none",
             py::arg("alpha") = 1, py::arg("beta") = 1, py::arg("c") = py::none(),
             R"(multiply(a, b, op_a='none', op_b='none', alpha=1, beta=1, c=None)

alpha op_a(a) op_b(b), plus beta c when there is a c. op_a(a), m by n, meets a vector b of n, for m numbers, or a matrix
op_b(b), n by k, for m by k; c is of the result's shape. op_a, op_b: 'none', 'transpose' or 'conjugate_transpose'.

>>> multiply([[1, 2], [3, 4]], ['0.5', 1])
[Decimal('2.5'), Decimal('5.5')]
>>> multiply([[1, 2], [3, 4]], [[1, 0], [0, 1]], op_a='transpose', alpha=-1, c=[[1, 1], [1, 1]])
[[Decimal('0'), Decimal('-2')], [Decimal('-1'), Decimal('-3')]]
)");
  module.def("triangular_multiply", triangular_multiply, py::arg("a"), py::arg("x"), py::arg("triangle") = "upper",
             py::arg("op") = "none", py::arg("unit") = false,
             R"(triangular_multiply(a, x, triangle='upper', op='none', unit=False)

The product of op(a), a triangular of order n, with a vector of n or a matrix of n rows. The other triangle of a is not
read, its diagonal neither with unit=True: it is taken for ones. triangle: 'upper' or 'lower'. op: as in multiply().

>>> triangular_multiply([[2, 1], [7, 3]], [1, 10])
[Decimal('12'), Decimal('30')]
)");
  module.def("triangular_solve", triangular_solve, py::arg("a"), py::arg("b"), py::arg("triangle") = "upper",
             py::arg("op") = "none", py::arg("unit") = false, py::arg("side") = "left",
             R"(triangular_solve(a, b, triangle='upper', op='none', unit=False, side='left')

The solution x of op(a) x = b, or of x op(a) = b for a matrix b with side='right'; a, triangle, op and unit as in
triangular_multiply(). A zero on the diagonal is not looked for: it gives infinities and NaNs.

>>> triangular_solve([[2, 1], [7, 3]], [12, 30])
[Decimal('1'), Decimal('10')]
)");
  module.def("outer", outer, py::arg("x"), py::arg("y"), py::arg("conjugate") = false, py::arg("alpha") = 1,
             py::arg("a") = py::none(), R"(outer(x, y, conjugate=False, alpha=1, a=None)

alpha x y^T of m and of n numbers, alpha x y^H with conjugate=True, plus a when there is one: m by n.

>>> outer([1, 2], [3, 4])
[[Decimal('3'), Decimal('4')], [Decimal('6'), Decimal('8')]]
)");
  module.def("hermitian_product", hermitian_product, py::arg("a"), py::arg("op") = "none",
             py::arg("triangle") = "lower", py::arg("alpha") = 1, py::arg("beta") = 1, py::arg("c") = py::none(),
             R"(hermitian_product(a, op='none', triangle='lower', alpha=1, beta=1, c=None)

One triangle of alpha a a^H, or of alpha a^H a with op='conjugate_transpose', plus beta c when there is a Hermitian c; alpha
and beta are real. The other triangle is that of c, or zeros.

>>> hermitian_product([[Complex(1, 1)], [2]])
[[Complex('2', '0'), Complex('0', '0')], [Complex('2', '-2'), Complex('4', '0')]]
)");
}

void add_vectors(py::module_& module) {
  module.def("dot", dot, py::arg("x"), py::arg("y"), py::arg("conjugate") = false, R"(dot(x, y, conjugate=False)

The sum of x_i y_i over two vectors of one length; with conjugate=True that of conj(x_i) y_i.

>>> dot(['0.1', 2], [10, 3])
Decimal('7')
)");
  module.def("scale", scale, py::arg("alpha"), py::arg("x"), R"(scale(alpha, x)

The vector alpha x.

>>> scale('0.5', [3, 4])
[Decimal('1.5'), Decimal('2')]
)");
  module.def(
      "rotation",
      [](py::handle a, py::handle b) {
        const tesk2mp::Rotation turn = tesk2mp::rotation(to_real(a), to_real(b));
        return py::make_tuple(from(turn.c), from(turn.s), from(turn.r), from(turn.z));
      },
      py::arg("a"), py::arg("b"), R"(rotation(a, b)

The plane rotation that takes the real (a, b) to (r, 0): (c, s, r, z), c a + s b = r, c b - s a = 0; z alone gives c and s
again.

>>> rotation(3, 4)
(Decimal('0.6'), Decimal('0.8'), Decimal('5'), Decimal('1.6666666666666666667'))
)");
  module.def("norm", norm, py::arg("a"), py::arg("kind") = "frobenius", R"(norm(a, kind='frobenius')

A norm of a matrix or a vector (a column). kind: 'largest' (element), 'one' (column sum), 'infinity' (row sum), 'frobenius'.

>>> norm([[1, -2], [3, 4]], 'infinity')
Decimal('7')
)");
  module.def(
      "hessenberg_norm",
      [](py::handle h, const std::string& kind) {
        const Array given(h);
        return with_scalar([&]<class T>(T) { return from(tesk2mp::hessenberg_norm(norm_of(kind), given.matrix<T>())); },
                           given);
      },
      py::arg("h"), py::arg("kind") = "frobenius", R"(hessenberg_norm(h, kind='frobenius')

The same of an upper Hessenberg matrix; what lies below its first subdiagonal is not read.

>>> hessenberg_norm([[1, 2, 3], [4, 5, 6], ['nan', 8, 9]], 'one')
Decimal('18')
)");
}

}  // namespace

tesk2mp::Op op_of(const std::string& name) {
  return option_of<Op>(
      "op", name, {{"none", Op::none}, {"transpose", Op::transpose}, {"conjugate_transpose", Op::conjugate_transpose}});
}

tesk2mp::Norm norm_of(const std::string& name) {
  return option_of<Norm>(
      "kind", name,
      {{"largest", Norm::largest}, {"one", Norm::one}, {"infinity", Norm::infinity}, {"frobenius", Norm::frobenius}});
}

tesk2mp::Triangle triangle_of(const std::string& name) {
  return option_of<Triangle>("triangle", name, {{"lower", Triangle::lower}, {"upper", Triangle::upper}});
}

tesk2mp::Diagonal diagonal_of(bool unit) { return unit ? Diagonal::unit : Diagonal::general; }

void add_kernels(py::module_& module) {
  add_products(module);
  add_vectors(module);
}

}  // namespace python

// Vector and matrix kernels of the C++ interface, real and complex. Part of tesk2mp.hpp; kernels.h says what each does.
//
// Sizes come from the views. What does not fit together throws InvalidArgument before the kernel is called, with the
// position of the argument in the kernel's own list as its code. What is read may overlap what is written: it is copied
// first then.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tesk2mp/options.hpp"
#include "tesk2mp/views.hpp"

namespace tesk2mp {

enum class Norm : char { largest = 'M', one = 'O', infinity = 'I', frobenius = 'F' };

namespace detail {

/// Names of the real and the complex kernel, as the library prints them.
template <class T>
const char* name(const char* real, const char* complex) {
  return kIsComplex<T> ? complex : real;
}

inline void require_length(const char* routine, Integer position, Integer length, Integer needed) {
  require(length == needed, routine, position, "a vector of ", length, " elements where ", needed, " are needed");
}

inline Integer rows_of(Op op, Integer rows, Integer columns) { return op == Op::none ? rows : columns; }

template <class T>
void require_shape(const char* routine, Integer position, const RawMatrix<T>& a, Integer rows, Integer columns) {
  require(a.rows == rows && a.columns == columns, routine, position, "a matrix of ", a.rows, " by ", a.columns,
          " where ", rows, " by ", columns, " is needed");
}

}  // namespace detail

// Level 1 -----------------------------------------------------------------------------------------------------------

/// The plane rotation that takes (a, b) to (r, 0); z is the one number that gives c and s again.
struct Rotation {
  Real c;
  Real s;
  Real r;
  Real z;
};
inline Rotation rotation(Real a, Real b) {
  Rotation result;
  QuarnMP_f06aaf_(&a, &b, &result.c, &result.s);
  result.r = a;
  result.z = b;
  return result;
}

/// The Euclidean norm of a real vector, without overflow unless the result overflows.
inline Real norm2(const VectorView<const Real>& x) {
  const detail::RawVector<Real> raw(x);
  return QuarnMP_f06ejf_(raw.size, raw.data, raw.increment);
}

/// y := alpha x
template <VectorSource X, VectorTarget Y>
void scale(const Element<X>& alpha, const X& x, Y&& y) {
  using T = Element<X>;
  const detail::RawVector<T> to{VectorView<T>(y)};
  const auto from = detail::SourceVector<T>::elementwise(x, to);
  detail::require_length(detail::name<T>("F06FDF", "F06HDF"), 5, to.size, from.size);
  detail::pick<T>(QuarnMP_f06fdf_, QuarnMP_f06hdf_)(from.size, alpha, from.data, from.increment, to.data, to.increment);
}

/// x := alpha x of a complex vector with a real alpha, at half the cost of a complex one.
inline void scale(const Real& alpha, const VectorView<Complex>& x) {
  const detail::RawVector<Complex> raw(x);
  QuarnMP_f06caf_(raw.size, alpha, raw.data, raw.increment);
}

/// y := x, complex
inline void copy(const VectorView<const Complex>& x, const VectorView<Complex>& y) {
  const detail::RawVector<Complex> to(y);
  const detail::SourceVector<Complex> from(x, to);
  detail::require_length("F06JJF/ZCOPY", 4, to.size, from.size);
  QuarnMP_f06jjf_(from.size, from.data, from.increment, to.data, to.increment);
}

// Level 2 -----------------------------------------------------------------------------------------------------------

/// y := alpha op(A) x + beta y, each element rounded once; a matrix without elements leaves y alone.
template <MatrixSource A, VectorSource X, VectorTarget Y>
void gemv(Op op, const Element<A>& alpha, const A& a, const X& x, const Element<A>& beta, Y&& y) {
  using T = Element<A>;
  const char* routine = detail::name<T>("F06PAF/DGEMV", "F06SAF/ZGEMV");
  const detail::RawVector<T> ry{VectorView<T>(y)};
  const detail::SourceMatrix<T> ra(a, ry);
  const detail::SourceVector<T> rx(x, ry);
  detail::require_length(routine, 7, rx.size, detail::rows_of(op, ra.columns, ra.rows));
  detail::require_length(routine, 10, ry.size, detail::rows_of(op, ra.rows, ra.columns));
  detail::call_kernel([&] {
    detail::pick<T>(QuarnMPX_dgemv_, QuarnMPX_zgemv_)(detail::Option(op), ra.rows, ra.columns, alpha, ra.data,
                                                      ra.leading, rx.data, rx.increment, beta, ry.data, ry.increment,
                                                      1);
  });
}

namespace detail {

template <class T, class Kernel>
void triangular(const char* routine, Kernel kernel, Triangle triangle, Op op, Diagonal diagonal,
                const MatrixView<const T>& matrix, const RawVector<T>& x) {
  const SourceMatrix<T> a(matrix, x);
  const Integer n = order_of(routine, 4, a);
  require_length(routine, 7, x.size, n);
  call_kernel([&] {
    kernel(Option(triangle), Option(op), Option(diagonal), n, a.data, a.leading, x.data, x.increment, 1, 1, 1);
  });
}

}  // namespace detail

/// x := op(A) x, A triangular
template <MatrixSource A, VectorTarget X>
void trmv(Triangle triangle, Op op, Diagonal diagonal, const A& a, X&& x) {
  using T = Element<A>;
  detail::triangular<T>(detail::name<T>("F06PFF/DTRMV", "F06SFF/ZTRMV"),
                        detail::pick<T>(QuarnMP_dtrmv_, QuarnMP_ztrmv_), triangle, op, diagonal, a, {VectorView<T>(x)});
}

/// x := op(A)^-1 x, A triangular. A zero on the diagonal is not tested for.
template <MatrixSource A, VectorTarget X>
void trsv(Triangle triangle, Op op, Diagonal diagonal, const A& a, X&& x) {
  using T = Element<A>;
  detail::triangular<T>(detail::name<T>("F06PJF/DTRSV", "F06SJF/ZTRSV"),
                        detail::pick<T>(QuarnMPX_dtrsv_, QuarnMPX_ztrsv_), triangle, op, diagonal, a,
                        {VectorView<T>(x)});
}

namespace detail {

template <class T, class Kernel>
void rank_one(const char* routine, Kernel kernel, const T& alpha, const VectorView<const T>& left,
              const VectorView<const T>& right, const RawMatrix<T>& a) {
  const SourceVector<T> x(left, a);
  const SourceVector<T> y(right, a);
  require_length(routine, 4, x.size, a.rows);
  require_length(routine, 6, y.size, a.columns);
  call_kernel([&] { kernel(a.rows, a.columns, alpha, x.data, x.increment, y.data, y.increment, a.data, a.leading); });
}

}  // namespace detail

/// A := alpha x y^T + A
template <VectorSource X, VectorSource Y, MatrixTarget A>
void ger(const Element<A>& alpha, const X& x, const Y& y, A&& a) {
  using T = Element<A>;
  detail::rank_one<T>(detail::name<T>("F06PMF/DGER", "F06SMF/ZGERU"), detail::pick<T>(QuarnMP_dger_, QuarnMP_zgeru_),
                      alpha, x, y, {MatrixView<T>(a)});
}

/// A := alpha x y^H + A, complex
inline void gerc(const Complex& alpha, const VectorView<const Complex>& x, const VectorView<const Complex>& y,
                 const MatrixView<Complex>& a) {
  detail::rank_one<Complex>("F06SNF/ZGERC", QuarnMP_zgerc_, alpha, x, y, {a});
}

namespace detail {

/// op(x) y, x as a matrix of one column.
template <class T>
T inner_product(Op op, const VectorView<const T>& x, const VectorView<const T>& y) {
  const std::vector<T> gathered = x.stride() == 1 ? std::vector<T>() : x.to_vector();
  T product(0);
  gemv(op, 1,
       MatrixView<const T>(x.stride() == 1 ? x.data() : gathered.data(), x.size(), 1,
                           std::max<std::size_t>(1, x.size())),
       y, 0, std::span<T>(&product, 1));
  return product;
}

}  // namespace detail

// Level 3 -----------------------------------------------------------------------------------------------------------

/// C := alpha op(A) op(B) + beta C, each entry (of complex matrices each part) its exact value rounded once.
template <MatrixSource A, MatrixSource B, MatrixTarget C>
void gemm(Op op_a, Op op_b, const Element<A>& alpha, const A& a, const B& b, const Element<A>& beta, C&& c) {
  using T = Element<A>;
  const char* routine = detail::name<T>("F06YAF/DGEMM", "F06ZAF/ZGEMM");
  const detail::RawMatrix<T> rc{MatrixView<T>(c)};
  const detail::SourceMatrix<T> ra(a, rc);
  const detail::SourceMatrix<T> rb(b, rc);
  const Integer m = detail::rows_of(op_a, ra.rows, ra.columns);
  const Integer k = detail::rows_of(op_a, ra.columns, ra.rows);
  const Integer inner = detail::rows_of(op_b, rb.rows, rb.columns);
  const Integer n = detail::rows_of(op_b, rb.columns, rb.rows);
  detail::require(inner == k, routine, 9, "op(B) has ", inner, " rows, op(A) has ", k, " columns");
  detail::require_shape(routine, 12, rc, m, n);
  detail::call_kernel([&] {
    detail::pick<T>(QuarnMPX_dgemm_, QuarnMPX_zgemm_)(detail::Option(op_a), detail::Option(op_b), m, n, k, alpha,
                                                      ra.data, ra.leading, rb.data, rb.leading, beta, rc.data,
                                                      rc.leading, 1, 1);
  });
}

/// B := alpha op(A)^-1 B (side left) or alpha B op(A)^-1 (right), A triangular
template <MatrixSource A, MatrixTarget B>
void trsm(Side side, Triangle triangle, Op op, Diagonal diagonal, const Element<A>& alpha, const A& a, B&& b) {
  using T = Element<A>;
  const char* routine = detail::name<T>("F06YJF/DTRSM", "F06ZJF/ZTRSM");
  const detail::RawMatrix<T> rb{MatrixView<T>(b)};
  const detail::SourceMatrix<T> ra(a, rb);
  const Integer order = side == Side::left ? rb.rows : rb.columns;
  detail::require_shape(routine, 8, ra, order, order);
  detail::call_kernel([&] {
    detail::pick<T>(QuarnMPX_dtrsm_, QuarnMPX_ztrsm_)(detail::Option(side), detail::Option(triangle),
                                                      detail::Option(op), detail::Option(diagonal), rb.rows, rb.columns,
                                                      alpha, ra.data, ra.leading, rb.data, rb.leading, 1, 1, 1, 1);
  });
}

namespace detail {

template <class T, class Kernel>
void rank_k(const char* routine, Kernel kernel, Triangle triangle, Op op, const Real& alpha,
            const MatrixView<const T>& source, const Real& beta, const MatrixView<T>& target) {
  const RawMatrix<T> c{MatrixView<const T>(target)};
  const SourceMatrix<T> a(source, c);
  const Integer n = rows_of(op, a.rows, a.columns);
  require_shape(routine, 9, c, n, n);
  call_kernel([&] {
    kernel(Option(triangle), Option(op), n, rows_of(op, a.columns, a.rows), alpha, a.data, a.leading, beta, c.data,
           c.leading, 1, 1);
  });
}

}  // namespace detail

/// C := alpha A A^H + beta C (op none) or alpha A^H A + beta C (conjugate_transpose) on one triangle of the Hermitian
/// matrix C, each part of an entry rounded once; alpha and beta are real.
inline void herk(Triangle triangle, Op op, const Real& alpha, const MatrixView<const Complex>& a, const Real& beta,
                 const MatrixView<Complex>& c) {
  detail::require(op != Op::transpose, "F06ZPF/ZHERK", 2, "the plain transpose makes no Hermitian matrix");
  detail::rank_k("F06ZPF/ZHERK", QuarnMPX_zherk_, triangle, op, alpha, a, beta, c);
}

/// C := alpha A A^T + beta C (op none) or alpha A^T A + beta C (any other) on one triangle of the symmetric matrix C,
/// each entry rounded once.
inline void syrk(Triangle triangle, Op op, const Real& alpha, const MatrixView<const Real>& a, const Real& beta,
                 const MatrixView<Real>& c) {
  detail::rank_k("DSYRK", QuarnMPX_dsyrk_, triangle, op, alpha, a, beta, c);
}

/// x^T y
template <VectorSource X, VectorSource Y>
Element<X> dot(const X& x, const Y& y) {
  return detail::inner_product<Element<X>>(Op::transpose, x, y);
}
/// x^H y
template <VectorSource X, VectorSource Y>
Element<X> dotc(const X& x, const Y& y) {
  return detail::inner_product<Element<X>>(Op::conjugate_transpose, x, y);
}

/// The product A x or A B.
template <MatrixSource A, VectorSource X>
std::vector<Element<A>> multiply(const A& a, const X& x) {
  std::vector<Element<A>> y(MatrixView<const Element<A>>(a).rows());
  gemv(Op::none, 1, a, x, 0, y);
  return y;
}
template <MatrixSource A, MatrixSource B>
Matrix<Element<A>> multiply(const A& a, const B& b) {
  using T = Element<A>;
  Matrix<T> c(MatrixView<const T>(a).rows(), MatrixView<const T>(b).columns());
  gemm(Op::none, Op::none, 1, a, b, 0, c);
  return c;
}

// Norms -------------------------------------------------------------------------------------------------------------

/// A norm of a matrix, NaN when an element is. The one of a matrix without elements is 0.
///
/// @code
/// const tesk2mp::Real largest_row_sum = tesk2mp::norm(tesk2mp::Norm::infinity, a);
/// @endcode
template <MatrixSource A>
Real norm(Norm kind, const A& a) {
  using T = Element<A>;
  const detail::RawMatrix<T> raw{MatrixView<const T>(a)};
  std::vector<Real> work(kind == Norm::infinity ? std::size_t(raw.rows) : 0);
  return detail::pick<T>(QuarnMPX_f06raf_, QuarnMPX_f06uaf_)(detail::Option(kind), raw.rows, raw.columns, raw.data,
                                                             raw.leading, work.data(), 1);
}

/// The Euclidean norm of a complex vector.
inline Real norm2(const VectorView<const Complex>& x) {
  const std::vector<Complex> column = x.to_vector();
  return norm(Norm::frobenius, MatrixView<const Complex>(column, column.size(), 1));
}

/// The norm of an upper Hessenberg matrix; what lies below its first subdiagonal is not read.
template <MatrixSource A>
Real hessenberg_norm(Norm kind, const A& a) {
  using T = Element<A>;
  const detail::RawMatrix<T> raw{MatrixView<const T>(a)};
  const Integer n = detail::order_of(detail::name<T>("F06RMF", "F06UMF"), 2, raw);
  std::vector<Real> work(kind == Norm::infinity ? std::size_t(n) : 0);
  return detail::pick<T>(QuarnMPX_f06rmf_, QuarnMPX_f06umf_)(detail::Option(kind), n, raw.data, raw.leading,
                                                             work.data(), 1);
}

}  // namespace tesk2mp

// Schur forms in the C++ interface: their order, invariant subspaces, Sylvester equations. Part of tesk2mp.hpp;
// schur_forms.h documents methods and costs.
#pragma once

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

#include "tesk2mp/eigenproblems.hpp"

namespace tesk2mp {

/// A = Z T Z^H: Z unitary, T upper triangular. values: the diagonal of T.
struct ComplexSchur {
  Matrix<Complex> t;
  Matrix<Complex> z;
  std::vector<Complex> values;
};

/// The complex Schur form of a square matrix, real or complex. Throws NumericalFailure when the QR algorithm does not
/// converge, InvalidArgument when an element is not finite.
template <MatrixSource A>
ComplexSchur complex_schur(const A& a) {
  constexpr const char* kRoutine = "ZHSEQR";
  const MatrixView<const Element<A>> given(a);
  detail::require(given.rows() == given.columns(), kRoutine, 3, "a matrix of ", given.rows(), " by ", given.columns(),
                  " is not square");
  const std::size_t n = given.rows();
  ComplexSchur form{Matrix<Complex>(n, n), {}, std::vector<Complex>(n)};
  detail::require_finite(kRoutine, 6, given);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      form.t(i, j) = Complex(given(i, j));
    }
  }
  const detail::RawMatrix<Complex> t{form.t.view()};
  std::vector<Complex> tau(n + 1);
  std::vector<Complex> work(n + 1);
  Integer info = 0;
  QuarnMPX_zgehrd_(t.rows, 1, t.rows, t.data, t.leading, tau.data(), work.data(), Integer(work.size()), &info);
  form.z = form.t;
  const detail::RawMatrix<Complex> z{form.z.view()};
  QuarnMPX_zunghr_(t.rows, 1, t.rows, z.data, z.leading, tau.data(), work.data(), Integer(work.size()), &info);
  QuarnMPX_zhseqr_(detail::Option('S'), detail::Option('V'), t.rows, 1, t.rows, t.data, t.leading, form.values.data(),
                   z.data, z.leading, work.data(), Integer(work.size()), &info, 1, 1);
  if (info > 0) {
    throw NumericalFailure(kRoutine, info, 0, "eigenvalue " + std::to_string(info) + " was not found",
                           {std::int64_t(info)});
  }
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = j + 1; i < n; ++i) {
      form.t(i, j) = Complex();
    }
  }
  return form;
}

/// A Schur form with chosen eigenvalues at the top: the first `dimension` columns of form.z span their invariant
/// subspace. mean: a lower bound of the reciprocal condition number of the mean of these eigenvalues; separation: an
/// estimate of that of the subspace.
template <class Form>
struct OrderedSchur {
  Form form;
  std::size_t dimension = 0;
  Real mean;
  Real separation;
};

namespace detail {

inline void select(Schur& form, const std::vector<Integer>& chosen, Integer* m, Real* s, Real* sep, Integer* info) {
  const RawMatrix<Real> t{form.t.view()};
  const RawMatrix<Real> z{form.z.view()};
  std::vector<Real> re(form.values.size());
  std::vector<Real> im(form.values.size());
  QuarnMPX_dtrsen_(Option('B'), Option('V'), chosen.data(), t.rows, t.data, t.leading, z.data, z.leading, re.data(),
                   im.data(), m, s, sep, nullptr, 0, nullptr, 0, info, 1, 1);
  for (std::size_t i = 0; i < re.size(); ++i) {
    form.values[i] = Complex(re[i], im[i]);
  }
}
inline void select(ComplexSchur& form, const std::vector<Integer>& chosen, Integer* m, Real* s, Real* sep,
                   Integer* info) {
  const RawMatrix<Complex> t{form.t.view()};
  const RawMatrix<Complex> z{form.z.view()};
  QuarnMPX_ztrsen_(Option('B'), Option('V'), chosen.data(), t.rows, t.data, t.leading, z.data, z.leading,
                   form.values.data(), m, s, sep, nullptr, 0, info, 1, 1);
}

}  // namespace detail

/// Brings the eigenvalues for which chosen(value) holds to the top of a Schur form; of a real one both of a pair where
/// it holds for one. Throws NumericalFailure when two eigenvalues are too close for an exchange.
///
/// @code
/// const auto stable = order_schur(schur(a), [](const tesk2mp::Complex& z) { return z.re < 0; });
/// @endcode
template <class Form, class Chosen>
OrderedSchur<Form> order_schur(Form form, const Chosen& chosen) {
  const char* routine = std::is_same_v<Form, Schur> ? "DTRSEN" : "ZTRSEN";
  const std::size_t n = form.values.size();
  detail::require(form.t.rows() == n && form.t.columns() == n && form.z.rows() == n && form.z.columns() == n, routine,
                  5, "T and Z are not of order ", n);
  std::vector<Integer> flags(n + 1);
  std::transform(form.values.begin(), form.values.end(), flags.begin(),
                 [&](const Complex& value) { return chosen(value) ? 1 : 0; });
  OrderedSchur<Form> result{std::move(form), 0, {}, {}};
  Integer m = 0;
  Integer info = 0;
  detail::select(result.form, flags, &m, &result.mean, &result.separation, &info);
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, "two eigenvalues are too close to be exchanged", {});
  }
  result.dimension = std::size_t(m);
  return result;
}

namespace detail {

inline Schur schur_form(const Matrix<Real>& a) { return schur(a); }
inline ComplexSchur schur_form(const Matrix<Complex>& a) { return complex_schur(a); }

/// op(A) B op(C)
template <class T>
Matrix<T> between(Op first, const Matrix<T>& a, const Matrix<T>& b, Op second, const Matrix<T>& c) {
  Matrix<T> half(b.rows(), b.columns());
  gemm(first, Op::none, 1, a, b, 0, half);
  Matrix<T> product(b.rows(), b.columns());
  gemm(Op::none, second, 1, half, c, 0, product);
  return product;
}

}  // namespace detail

/// The solution X of A X + X B = C. Throws NumericalFailure when A and -B have a common eigenvalue, or nearly.
template <Scalar T>
Matrix<T> solve_sylvester(const Matrix<T>& a, const Matrix<T>& b, const Matrix<T>& c) {
  const char* routine = detail::name<T>("DTRSYL", "ZTRSYL");
  const auto left = detail::schur_form(a);
  const auto right = detail::schur_form(b);
  detail::require(c.rows() == a.rows() && c.columns() == b.rows(), routine, 10, "a right-hand side of ", c.rows(),
                  " by ", c.columns(), " does not go with matrices of order ", a.rows(), " and ", b.rows());
  Matrix<T> x = detail::between(Op::conjugate_transpose, left.z, c, Op::none, right.z);
  Matrix<T> ta = left.t;
  Matrix<T> tb = right.t;
  const detail::RawMatrix<T> raw_a{ta.view()};
  const detail::RawMatrix<T> raw_b{tb.view()};
  const detail::RawMatrix<T> raw_x{x.view()};
  Real scale;
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dtrsyl_, QuarnMPX_ztrsyl_)(detail::Option('N'), detail::Option('N'), 1, raw_a.rows,
                                                      raw_b.rows, raw_a.data, raw_a.leading, raw_b.data, raw_b.leading,
                                                      raw_x.data, raw_x.leading, &scale, &info, 1, 1);
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, "A and -B have a common eigenvalue, or nearly", {});
  }
  return detail::between(Op::none, left.z, x, Op::conjugate_transpose, right.z);
}

}  // namespace tesk2mp

// Functions of square matrices in the C++ interface. Part of tesk2mp.hpp; matrix_functions.h documents methods and
// costs.
#pragma once

#include "tesk2mp/finite.hpp"
#include "tesk2mp/kernels.hpp"

namespace tesk2mp {
namespace detail {

/// call(n, a, lda, f, ldf, info); `none` says why there is no result.
template <class T, class Call>
Matrix<T> function_of_matrix(const char* routine, const MatrixView<const T>& a, const char* none, const Call& call) {
  const RawMatrix<T> given(a);
  const Integer n = order_of(routine, 2, given);
  Matrix<T> result(a.rows(), a.columns());
  const RawMatrix<T> f{result.view()};
  require_finite(routine, 2, a);
  Integer info = 0;
  call(n, given.data, given.leading, f.data, f.leading, &info);
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, info == 1 ? none : "iterations or digits did not suffice", {});
  }
  return result;
}

}  // namespace detail

/// exp(A), to some units of the last place of its norm. Throws NumericalFailure when it is beyond the range of numbers.
///
/// @code
/// const auto turn = tesk2mp::expm(tesk2mp::Matrix<tesk2mp::Real>{{0, -1}, {1, 0}});  // cos 1, -sin 1; sin 1, cos 1
/// @endcode
template <MatrixSource A>
Matrix<Element<A>> expm(const A& a) {
  using T = Element<A>;
  return detail::function_of_matrix<T>(detail::name<T>("DEXPM", "ZEXPM"), a, "the exponential is not finite",
                                       detail::pick<T>(QuarnMPX_dexpm_, QuarnMPX_zexpm_));
}
/// The principal square root; of a real matrix a real one. Throws NumericalFailure when there is none: a
/// Matrix<Complex> with the same elements has one where eigenvalues are negative.
template <MatrixSource A>
Matrix<Element<A>> sqrtm(const A& a) {
  using T = Element<A>;
  return detail::function_of_matrix<T>(detail::name<T>("DSQRTM", "ZSQRTM"), a, "the matrix has no such square root",
                                       detail::pick<T>(QuarnMPX_dsqrtm_, QuarnMPX_zsqrtm_));
}
/// The principal logarithm, under the same conditions and of regular matrices.
template <MatrixSource A>
Matrix<Element<A>> logm(const A& a) {
  using T = Element<A>;
  return detail::function_of_matrix<T>(detail::name<T>("DLOGM", "ZLOGM"), a, "the matrix has no such logarithm",
                                       detail::pick<T>(QuarnMPX_dlogm_, QuarnMPX_zlogm_));
}
/// A^p: by products for a whole p, otherwise exp(p log(A)).
template <MatrixSource A>
Matrix<Element<A>> fractional_matrix_power(const A& a, const Real& p) {
  using T = Element<A>;
  return detail::function_of_matrix<T>(detail::name<T>("DPOWM", "ZPOWM"), a, "the matrix has no such power",
                                       [&p](Integer n, const T* given, Integer lda, T* f, Integer ldf, Integer* info) {
                                         detail::pick<T>(QuarnMPX_dpowm_, QuarnMPX_zpowm_)(n, given, lda, &p, f, ldf,
                                                                                           info);
                                       });
}

}  // namespace tesk2mp

// Singular values in the C++ interface. Part of tesk2mp.hpp; singular_values.h documents methods and costs.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tesk2mp/finite.hpp"
#include "tesk2mp/kernels.hpp"

namespace tesk2mp {

/// A = U diag(values) V^H of an m by n matrix: values descending, min(m, n) of them; U and V with as many columns,
/// which are orthonormal.
template <Scalar T>
struct SingularSystem {
  Matrix<T> u;
  std::vector<Real> values;
  Matrix<T> v;
};

namespace detail {

/// Job S: with the factors; N: values alone.
template <class T>
SingularSystem<T> singular_system(char job, Matrix<T> a) {
  const char* routine = name<T>("DGESVD", "ZGESVD");
  require_finite(routine, 5, a);
  const std::size_t few = std::min(a.rows(), a.columns());
  const bool wanted = job == 'S';
  SingularSystem<T> result{Matrix<T>(wanted ? a.rows() : 0, wanted ? few : 0), std::vector<Real>(few), {}};
  Matrix<T> adjoint(wanted ? few : 0, wanted ? a.columns() : 0);
  const RawMatrix<T> raw{a.view()};
  const RawMatrix<T> u{result.u.view()};
  const RawMatrix<T> vt{adjoint.view()};
  std::vector<T> work(std::max<std::size_t>(1, 5 * few + std::max(a.rows(), a.columns())));
  Integer info = 0;
  if constexpr (kIsComplex<T>) {
    QuarnMPX_zgesvd_(Option(job), Option(job), raw.rows, raw.columns, raw.data, raw.leading, result.values.data(),
                     u.data, u.leading, vt.data, vt.leading, work.data(), Integer(work.size()), nullptr, &info, 1, 1);
  } else {
    QuarnMPX_dgesvd_(Option(job), Option(job), raw.rows, raw.columns, raw.data, raw.leading, result.values.data(),
                     u.data, u.leading, vt.data, vt.leading, work.data(), Integer(work.size()), &info, 1, 1);
  }
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, std::to_string(info) + " singular values were not found",
                           {std::int64_t(info)});
  }
  result.v = Matrix<T>(adjoint.columns(), adjoint.rows());
  for (std::size_t j = 0; j < result.v.columns(); ++j) {
    for (std::size_t i = 0; i < result.v.rows(); ++i) {
      if constexpr (kIsComplex<T>) {
        result.v(i, j) = conj(adjoint(j, i));
      } else {
        result.v(i, j) = adjoint(j, i);
      }
    }
  }
  return result;
}

}  // namespace detail

/// The singular value decomposition. Throws InvalidArgument when an element is not finite.
///
/// @code
/// const auto system = tesk2mp::svd(tesk2mp::Matrix<tesk2mp::Real>{{0, 2}, {1, 0}});  // values 2 and 1
/// @endcode
template <MatrixSource A>
SingularSystem<Element<A>> svd(const A& a) {
  using T = Element<A>;
  return detail::singular_system('S', Matrix<T>{MatrixView<const T>(a)});
}
/// The singular values alone, descending.
template <MatrixSource A>
std::vector<Real> singular_values(const A& a) {
  using T = Element<A>;
  return detail::singular_system('N', Matrix<T>{MatrixView<const T>(a)}).values;
}

}  // namespace tesk2mp

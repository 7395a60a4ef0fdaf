// Generalised eigenproblems in the C++ interface. Part of tesk2mp.hpp; generalised.h documents methods and costs.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tesk2mp/eigenproblems.hpp"

namespace tesk2mp {

/// The three problems of a symmetric or Hermitian A beside a positive definite B: A x = lambda B x, A B x = lambda x,
/// B A x = lambda x.
enum class DefiniteProblem { ax_bx = 1, abx_x = 2, bax_x = 3 };

namespace detail {

template <class T>
SymmetricEigenSystem<T> symmetric_eigen(char job, Matrix<T> a, Matrix<T> b, DefiniteProblem problem, Triangle stored) {
  const char* routine = name<T>("DSYGV", "ZHEGV");
  const RawMatrix<T> raw_a{a.view()};
  const RawMatrix<T> raw_b{b.view()};
  const Integer n = order_of(routine, 5, raw_a);
  require_shape(routine, 7, raw_b, n, n);
  require_finite_triangle(routine, 5, a, stored);
  require_finite_triangle(routine, 7, b, stored);
  std::vector<Real> values(a.rows());
  std::vector<T> work(std::max<std::size_t>(1, 3 * a.rows()));
  Integer info = 0;
  if constexpr (kIsComplex<T>) {
    QuarnMPX_zhegv_(Integer(problem), Option(job), Option(stored), n, raw_a.data, raw_a.leading, raw_b.data,
                    raw_b.leading, values.data(), work.data(), Integer(work.size()), nullptr, &info, 1, 1);
  } else {
    QuarnMPX_dsygv_(Integer(problem), Option(job), Option(stored), n, raw_a.data, raw_a.leading, raw_b.data,
                    raw_b.leading, values.data(), work.data(), Integer(work.size()), &info, 1, 1);
  }
  if (info > n) {
    throw NumericalFailure(
        routine, info, 0,
        "B is not positive definite: its leading minor of order " + std::to_string(info - n) + " is not positive",
        {std::int64_t(info - n)});
  }
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, std::to_string(info) + " eigenvalues were not found",
                           {std::int64_t(info)});
  }
  return {std::move(values), std::move(a)};
}

}  // namespace detail

/// Eigenvalues, ascending, and eigenvectors of A x = lambda B x, or of one of its relatives, with A symmetric or
/// Hermitian and B positive definite, of which that triangle is read. V^H B V = I, of bax_x V^H B^-1 V = I. Throws
/// NumericalFailure when B is not positive definite, InvalidArgument when an element is not finite.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> stiffness = {{2, -1}, {-1, 2}}, mass = {{2, 0}, {0, 2}};
/// const auto system = tesk2mp::symmetric_eigen(stiffness, mass);  // values 0.5 and 1.5
/// @endcode
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> SymmetricEigenSystem<Element<A>> symmetric_eigen(
    const A& a, const B& b, DefiniteProblem problem = DefiniteProblem::ax_bx, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::symmetric_eigen('V', Matrix<T>{MatrixView<const T>(a)}, Matrix<T>{MatrixView<const T>(b)}, problem,
                                 stored);
}
/// The eigenvalues alone, ascending.
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> std::vector<Real> symmetric_eigenvalues(
    const A& a, const B& b, DefiniteProblem problem = DefiniteProblem::ax_bx, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::symmetric_eigen('N', Matrix<T>{MatrixView<const T>(a)}, Matrix<T>{MatrixView<const T>(b)}, problem,
                                 stored)
      .values;
}

}  // namespace tesk2mp

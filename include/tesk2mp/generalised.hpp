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
  require_finite(routine, 5, a, part_of(stored));
  require_finite(routine, 7, b, part_of(stored));
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

/// Eigenvalues alpha / beta of A x = lambda B x, beta >= 0, with eigenvectors x and y, y^H A = lambda y^H B, each a
/// column whose largest element has |re| + |im| = 1. beta = 0 stands for an infinite eigenvalue, alpha = beta = 0 for a
/// pencil that is singular to the working digits: every number is an eigenvalue of it.
struct PencilEigenSystem {
  std::vector<Complex> alpha;
  std::vector<Real> beta;
  Matrix<Complex> right;
  Matrix<Complex> left;

  bool singular() const {
    for (std::size_t j = 0; j < beta.size(); ++j) {
      if (beta[j] == 0 && alpha[j] == Complex(0)) {
        return true;
      }
    }
    return false;
  }
  /// alpha / beta, infinite ones as (infinity, 0). Throws NumericalFailure when the pencil is singular.
  std::vector<Complex> values() const {
    if (singular()) {
      throw NumericalFailure("DGGEV", 0, 0,
                             "the pencil is singular to the working digits: every number is an eigenvalue", {});
    }
    std::vector<Complex> result;
    for (std::size_t j = 0; j < beta.size(); ++j) {
      result.push_back(beta[j] == 0 ? Complex(Real("inf")) : Complex(alpha[j].re / beta[j], alpha[j].im / beta[j]));
    }
    return result;
  }
};

namespace detail {

/// Column by column as complex numbers: of a real pencil's pair the parts are in two columns.
template <class T>
Matrix<Complex> pencil_vectors(const Matrix<T>& v, const std::vector<Complex>& alpha) {
  Matrix<Complex> result(v.rows(), v.columns());
  for (std::size_t j = 0; j < v.columns(); ++j) {
    const bool pair = !kIsComplex<T> && alpha[j].im > 0;
    for (std::size_t i = 0; i < v.rows(); ++i) {
      result(i, j) = Complex(v(i, j));
      if constexpr (!kIsComplex<T>) {
        if (pair) {
          result(i, j) = Complex(v(i, j), v(i, j + 1));
          result(i, j + 1) = conj(result(i, j));
        }
      }
    }
    j += pair ? 1 : 0;
  }
  return result;
}

/// Job V: with eigenvectors; N: values alone; R: with right eigenvectors alone.
template <class T>
PencilEigenSystem pencil_eigen(char job, Matrix<T> a, Matrix<T> b) {
  const char* routine = name<T>("DGGEV", "ZGGEV");
  const RawMatrix<T> raw_a{a.view()};
  const RawMatrix<T> raw_b{b.view()};
  const Integer n = order_of(routine, 4, raw_a);
  require_shape(routine, 6, raw_b, n, n);
  require_finite(routine, 4, a);
  require_finite(routine, 6, b);
  const std::size_t order = a.rows();
  const char of_left = job == 'V' ? 'V' : 'N';
  const char of_right = job == 'N' ? 'N' : 'V';
  const std::size_t left_columns = job == 'V' ? order : 0;
  const std::size_t right_columns = job == 'N' ? 0 : order;
  Matrix<T> left(left_columns, left_columns);
  Matrix<T> right(right_columns, right_columns);
  const RawMatrix<T> vl{left.view()};
  const RawMatrix<T> vr{right.view()};
  std::vector<T> work(std::max<std::size_t>(1, 8 * order));
  PencilEigenSystem system;
  Integer info = 0;
  if constexpr (kIsComplex<T>) {
    system.alpha.resize(order);
    std::vector<Complex> beta(order);
    QuarnMPX_zggev_(Option(of_left), Option(of_right), n, raw_a.data, raw_a.leading, raw_b.data, raw_b.leading,
                    system.alpha.data(), beta.data(), vl.data, vl.leading, vr.data, vr.leading, work.data(),
                    Integer(work.size()), nullptr, &info, 1, 1);
    for (const Complex& each : beta) {
      system.beta.push_back(each.re);
    }
  } else {
    system.beta.resize(order);
    std::vector<Real> re(order);
    std::vector<Real> im(order);
    QuarnMPX_dggev_(Option(of_left), Option(of_right), n, raw_a.data, raw_a.leading, raw_b.data, raw_b.leading,
                    re.data(), im.data(), system.beta.data(), vl.data, vl.leading, vr.data, vr.leading, work.data(),
                    Integer(work.size()), &info, 1, 1);
    for (std::size_t j = 0; j < order; ++j) {
      system.alpha.emplace_back(re[j], im[j]);
    }
  }
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, "eigenvalue " + std::to_string(info) + " was not found",
                           {std::int64_t(info)});
  }
  system.left = pencil_vectors(left, system.alpha);
  system.right = pencil_vectors(right, system.alpha);
  return system;
}

}  // namespace detail

/// Eigenvalues and eigenvectors of A x = lambda B x with square matrices, B singular or not; in no particular order.
///
/// @code
/// const tesk2mp::Matrix<tesk2mp::Real> a = {{2, 0}, {0, 3}}, b = {{1, 0}, {0, 0}};
/// const auto values = tesk2mp::eigen(a, b).values();  // 2 and infinity
/// @endcode
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> PencilEigenSystem eigen(const A& a, const B& b) {
  using T = Element<A>;
  return detail::pencil_eigen('V', Matrix<T>{MatrixView<const T>(a)}, Matrix<T>{MatrixView<const T>(b)});
}
/// The eigenvalues alone, infinite ones as (infinity, 0). Throws NumericalFailure when the pencil is singular to the
/// working digits.
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> std::vector<Complex> eigenvalues(const A& a, const B& b) {
  using T = Element<A>;
  return detail::pencil_eigen('N', Matrix<T>{MatrixView<const T>(a)}, Matrix<T>{MatrixView<const T>(b)}).values();
}

}  // namespace tesk2mp

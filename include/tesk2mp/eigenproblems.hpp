// Eigenproblems of symmetric, Hermitian and general complex matrices in the C++ interface. Part of tesk2mp.hpp;
// eigenproblems.h documents methods and costs.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tesk2mp/eigen.hpp"

namespace tesk2mp {

/// Whether the square matrix is its own adjoint, to the last digit; NaN is equal to nothing.
template <MatrixSource A>
bool is_hermitian(const A& a) {
  using T = Element<A>;
  const MatrixView<const T> given(a);
  if (given.rows() != given.columns()) {
    return false;
  }
  for (std::size_t j = 0; j < given.columns(); ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      if constexpr (detail::kIsComplex<T>) {
        if (!(given(i, j) == conj(given(j, i)))) {
          return false;
        }
      } else if (!(given(i, j) == given(j, i))) {
        return false;
      }
    }
  }
  return true;
}

/// Chosen eigenvalues: those with low < w <= high, or the ones numbered first ... end - 1 in ascending order, from 0.
struct EigenInterval {
  Real low;
  Real high;
};
struct EigenIndices {
  std::size_t first;
  std::size_t end;
};

/// A = V diag(values) V^H of a symmetric or Hermitian matrix, values ascending, V orthogonal or unitary.
template <Scalar T>
struct SymmetricEigenSystem {
  std::vector<Real> values;
  Matrix<T> vectors;
};

namespace detail {

template <class T>
SymmetricEigenSystem<T> symmetric_eigen(char job, Matrix<T> a, Triangle stored) {
  const char* routine = name<T>("DSYEV", "ZHEEV");
  const RawMatrix<T> raw{a.view()};
  const Integer n = order_of(routine, 4, raw);
  require_finite(routine, 4, a, part_of(stored));
  std::vector<Real> values(a.rows());
  std::vector<T> work(std::max<std::size_t>(1, 3 * a.rows()));
  Integer info = 0;
  if constexpr (kIsComplex<T>) {
    QuarnMPX_zheev_(Option(job), Option(stored), n, raw.data, raw.leading, values.data(), work.data(),
                    Integer(work.size()), nullptr, &info, 1, 1);
  } else {
    QuarnMPX_dsyev_(Option(job), Option(stored), n, raw.data, raw.leading, values.data(), work.data(),
                    Integer(work.size()), &info, 1, 1);
  }
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, std::to_string(info) + " eigenvalues were not found",
                           {std::int64_t(info)});
  }
  return {std::move(values), std::move(a)};
}

}  // namespace detail

namespace detail {

template <class T>
SymmetricEigenSystem<T> chosen_eigen(char job, char range, const EigenInterval& interval, const EigenIndices& indices,
                                     Matrix<T> a, Triangle stored) {
  const char* routine = name<T>("DSYEVX", "ZHEEVX");
  const RawMatrix<T> raw{a.view()};
  const Integer n = order_of(routine, 5, raw);
  require_finite(routine, 5, a, part_of(stored));
  require(range != 'V' || interval.low < interval.high, routine, 8, "the interval is empty");
  require(range != 'I' || (indices.first < indices.end && indices.end <= a.rows()), routine, 10, "indices ",
          indices.first, " ... ", indices.end, " - 1 of ", a.rows(), " eigenvalues");
  const bool wanted = job == 'V';
  Matrix<T> z(wanted ? a.rows() : 0, wanted ? a.rows() : 0);
  const RawMatrix<T> raw_z{z.view()};
  std::vector<Real> values(a.rows());
  std::vector<T> work(std::max<std::size_t>(1, 8 * a.rows()));
  std::vector<Integer> failed(a.rows());
  const Integer first = Integer(indices.first) + 1;
  const Integer last = Integer(indices.end);
  Integer m = 0;
  Integer info = 0;
  if constexpr (kIsComplex<T>) {
    QuarnMPX_zheevx_(Option(job), Option(range), Option(stored), n, raw.data, raw.leading, interval.low, interval.high,
                     first, last, Real(), &m, values.data(), raw_z.data, raw_z.leading, work.data(),
                     Integer(work.size()), nullptr, nullptr, failed.data(), &info, 1, 1, 1);
  } else {
    QuarnMPX_dsyevx_(Option(job), Option(range), Option(stored), n, raw.data, raw.leading, interval.low, interval.high,
                     first, last, Real(), &m, values.data(), raw_z.data, raw_z.leading, work.data(),
                     Integer(work.size()), nullptr, failed.data(), &info, 1, 1, 1);
  }
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, std::to_string(info) + " eigenvectors did not converge",
                           {std::int64_t(info)});
  }
  values.resize(std::size_t(m));
  const std::size_t columns = wanted ? values.size() : 0;
  Matrix<T> vectors(wanted ? a.rows() : 0, columns);
  std::copy_n(z.data(), a.rows() * columns, vectors.data());
  return {std::move(values), std::move(vectors)};
}

}  // namespace detail

/// Eigenvalues and eigenvectors of the symmetric or Hermitian matrix of which one triangle is read. Throws
/// InvalidArgument when an element is not finite.
///
/// @code
/// const auto system = tesk2mp::symmetric_eigen(tesk2mp::Matrix<tesk2mp::Real>{{2, 1}, {1, 2}});  // values 1 and 3
/// @endcode
template <MatrixSource A>
SymmetricEigenSystem<Element<A>> symmetric_eigen(const A& a, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::symmetric_eigen('V', Matrix<T>{MatrixView<const T>(a)}, stored);
}
/// The eigenvalues alone, ascending.
template <MatrixSource A>
std::vector<Real> symmetric_eigenvalues(const A& a, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::symmetric_eigen('N', Matrix<T>{MatrixView<const T>(a)}, stored).values;
}

/// The same of chosen eigenvalues alone, by bisection and inverse iteration.
///
/// @code
/// const auto lowest = tesk2mp::symmetric_eigen(a, tesk2mp::EigenIndices{0, 3});
/// @endcode
template <MatrixSource A>
SymmetricEigenSystem<Element<A>> symmetric_eigen(const A& a, const EigenInterval& interval,
                                                 Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::chosen_eigen('V', 'V', interval, {}, Matrix<T>{MatrixView<const T>(a)}, stored);
}
template <MatrixSource A>
SymmetricEigenSystem<Element<A>> symmetric_eigen(const A& a, const EigenIndices& indices,
                                                 Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::chosen_eigen('V', 'I', {}, indices, Matrix<T>{MatrixView<const T>(a)}, stored);
}
template <MatrixSource A>
std::vector<Real> symmetric_eigenvalues(const A& a, const EigenInterval& interval, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::chosen_eigen('N', 'V', interval, {}, Matrix<T>{MatrixView<const T>(a)}, stored).values;
}
template <MatrixSource A>
std::vector<Real> symmetric_eigenvalues(const A& a, const EigenIndices& indices, Triangle stored = Triangle::lower) {
  using T = Element<A>;
  return detail::chosen_eigen('N', 'I', {}, indices, Matrix<T>{MatrixView<const T>(a)}, stored).values;
}

namespace detail {

/// Job V: with eigenvectors; N: values alone; R: with right eigenvectors alone.
inline EigenSystem complex_eigen(char job, Matrix<Complex> a) {
  constexpr const char* kRoutine = "ZGEEV";
  const RawMatrix<Complex> raw{a.view()};
  const Integer n = order_of(kRoutine, 4, raw);
  require_finite(kRoutine, 4, a);
  const char of_left = job == 'V' ? 'V' : 'N';
  const char of_right = job == 'N' ? 'N' : 'V';
  const std::size_t left_order = job == 'V' ? a.rows() : 0;
  const std::size_t right_order = job == 'N' ? 0 : a.rows();
  EigenSystem system{std::vector<Complex>(a.rows()), Matrix<Complex>(right_order, right_order),
                     Matrix<Complex>(left_order, left_order)};
  const RawMatrix<Complex> right{system.right.view()};
  const RawMatrix<Complex> left{system.left.view()};
  std::vector<Complex> work(std::max<std::size_t>(2, 2 * a.rows()));
  Integer info = 0;
  QuarnMPX_zgeev_(Option(of_left), Option(of_right), n, raw.data, raw.leading, system.values.data(), left.data,
                  left.leading, right.data, right.leading, work.data(), Integer(work.size()), nullptr, &info, 1, 1);
  if (info > 0) {
    throw NumericalFailure(kRoutine, info, 0, "eigenvalue " + std::to_string(info) + " was not found",
                           {std::int64_t(info)});
  }
  return system;
}

}  // namespace detail

/// The eigenvalues of a square complex matrix, balanced first; in no particular order.
template <MatrixSource A>
requires std::same_as<Element<A>, Complex> std::vector<Complex> eigenvalues(const A& a) {
  return detail::complex_eigen('N', Matrix<Complex>{MatrixView<const Complex>(a)}).values;
}
/// Eigenvalues and eigenvectors of a square complex matrix; the largest element of each vector is real.
template <MatrixSource A>
requires std::same_as<Element<A>, Complex> EigenSystem eigen(const A& a) {
  return detail::complex_eigen('V', Matrix<Complex>{MatrixView<const Complex>(a)});
}

}  // namespace tesk2mp

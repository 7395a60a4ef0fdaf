// Complete factorisations of sparse matrices in the C++ interface. Part of tesk2mp.hpp; sparse_direct.h describes them.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/incomplete.hpp"
#include "tesk2mp/sparse_direct.h"

namespace tesk2mp {

/// Whose fill an order of elimination is for: that of a factorisation that keeps its pivots on the diagonal, or of one
/// that eliminates the rows, each with any pivot.
enum class FillOf : char { symmetric = 'S', rows = 'R' };

/// The rows of a matrix in an order of elimination that fills little.
template <Scalar T>
std::vector<std::size_t> least_fill_order(const SparseMatrix<T>& a, FillOf what) {
  std::vector<Integer> order(a.order());
  Integer info = 0;
  QuarnMPX_sparse_order_(detail::Option(what), detail::count_of(a.order()), detail::count_of(a.entries()),
                         a.rows_from_one().data(), a.columns_from_one().data(), order.data(), &info, 1);
  std::vector<std::size_t> from_zero;
  from_zero.reserve(order.size());
  for (const Integer i : order) {
    from_zero.push_back(std::size_t(i) - 1);
  }
  return from_zero;
}

namespace detail {

/// The order as the exports take it; none leaves it to them.
inline std::vector<Integer> order_from_one(const char* routine, std::size_t n, std::span<const std::size_t> order) {
  std::vector<Integer> from_one;
  from_one.reserve(order.size());
  require(order.empty() || order.size() == n, routine, 6, "an order of ", order.size(), " rows of a matrix of order ",
          n);
  for (const std::size_t i : order) {
    require(i < n, routine, 6, "row ", i, " in the order of a matrix of order ", n);
    from_one.push_back(Integer(i) + 1);
  }
  return from_one;
}

/// Of the arrays that a complete factorisation asks for.
template <Scalar T>
struct FactorArrays {
  std::vector<T>& values;
  std::vector<Integer>& rows;
  std::vector<Integer>& columns;

  static void make(void* context, Integer count, T** a, Integer** irow, Integer** icol) {
    auto& arrays = *static_cast<FactorArrays*>(context);
    arrays.values.resize(std::size_t(count));
    arrays.rows.resize(std::size_t(count));
    arrays.columns.resize(std::size_t(count));
    *a = arrays.values.data();
    *irow = arrays.rows.data();
    *icol = arrays.columns.data();
  }
};

inline void raise_unfactored(const char* routine, Integer info, const char* what) {
  require(info >= 0, routine, -info,
          info == -6   ? "an order that is no permutation"
          : info <= -4 ? "entries outside the matrix, or not in canonical form"
                       : "a matrix without rows or entries, or with more entries than places");
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, what + std::string(": step ") + std::to_string(info),
                           {std::int64_t(info)});
  }
}

}  // namespace detail

/// P A Q = L U, to solve with. Throws NumericalFailure with the number of the step, from 1, that found no pivot.
///
/// @code
/// const auto x = tesk2mp::SparseLU(a).solve(b);
/// @endcode
template <Scalar T>
class SparseLU : public detail::LuFactors<T> {
 public:
  /// a: general, in canonical form. order: in which its rows are eliminated; none: least_fill_order(a, FillOf::rows)
  explicit SparseLU(const SparseMatrix<T>& a, std::span<const std::size_t> order = {})
      : detail::LuFactors<T>(a.order()) {
    const char* const routine = detail::name<T>("SPARSE_LU", "ZSPARSE_LU");
    detail::require(a.storage() == Storage::general, routine, 3, "a triangle in place of a whole matrix");
    const std::vector<Integer> steps = detail::order_from_one(routine, a.order(), order);
    detail::FactorArrays<T> arrays{this->values_, this->rows_, this->columns_};
    Integer info = 0;
    detail::pick<T>(QuarnMPX_sparse_lu_, QuarnMPX_zsparse_lu_)(
        detail::count_of(a.order()), detail::count_of(a.entries()), a.values().data(), a.rows_from_one().data(),
        a.columns_from_one().data(), steps.empty() ? nullptr : steps.data(), detail::FactorArrays<T>::make, &arrays,
        this->row_order_.data(), this->column_order_.data(), this->starts_.data(), this->diagonals_.data(), &info);
    detail::raise_unfactored(routine, info, "the matrix is singular to working precision, or not finite");
  }
};

/// P A P^T = L D L^H of a positive definite matrix, to solve with. Throws NumericalFailure with the number of the step,
/// from 1, whose pivot is not positive.
template <Scalar T>
class SparseCholesky : public detail::CholeskyFactors<T> {
 public:
  /// a: a lower triangle, in canonical form. order: of elimination; none: least_fill_order(a, FillOf::symmetric)
  explicit SparseCholesky(const SparseMatrix<T>& a, std::span<const std::size_t> order = {})
      : detail::CholeskyFactors<T>(a.order()) {
    const char* const routine = detail::name<T>("SPARSE_CHOLESKY", "ZSPARSE_CHOLESKY");
    detail::require(a.storage() == Storage::lower_triangle, routine, 3, "a whole matrix in place of a lower triangle");
    const std::vector<Integer> steps = detail::order_from_one(routine, a.order(), order);
    detail::FactorArrays<T> arrays{this->values_, this->rows_, this->columns_};
    Integer info = 0;
    detail::pick<T>(QuarnMPX_sparse_cholesky_, QuarnMPX_zsparse_cholesky_)(
        detail::count_of(a.order()), detail::count_of(a.entries()), a.values().data(), a.rows_from_one().data(),
        a.columns_from_one().data(), steps.empty() ? nullptr : steps.data(), detail::FactorArrays<T>::make, &arrays,
        this->order_.data(), this->starts_.data(), &info);
    detail::raise_unfactored(routine, info, "the matrix is not positive definite to working precision");
  }
};

}  // namespace tesk2mp

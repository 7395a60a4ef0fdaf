// Preconditioners of the C++ interface, for solve_iteratively() and for loops of one's own. Part of tesk2mp.hpp;
// sparse.h describes them.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/sparse.hpp"

namespace tesk2mp {
namespace detail {

/// What the preconditioners know of a matrix in canonical form, which must outlive them as it is.
template <Scalar T>
class DiagonalPlaces {
 public:
  explicit DiagonalPlaces(const SparseMatrix<T>& a) : a_(&a), starts_(a.order() + 1), places_(a.order()) {
    const char* const routine = name<T>("SPARSE_DIAGONAL", "ZSPARSE_DIAGONAL");
    require(a.storage() == Storage::general, routine, 3, "a triangle in place of a whole matrix");
    Integer info = 0;
    pick<T>(QuarnMPX_sparse_diagonal_, QuarnMPX_zsparse_diagonal_)(
        order(), count_of(a.entries()), a.values().data(), a.rows_from_one().data(), a.columns_from_one().data(),
        starts_.data(), places_.data(), &info);
    require(info >= 0, routine, -info, "entries that are not in canonical form");
    if (info > 0) {
      throw NumericalFailure(routine, info, 0,
                             "row " + std::to_string(info) + " has no diagonal entry, or a zero there",
                             {std::int64_t(info)});
    }
  }

 protected:
  Integer order() const { return Integer(a_->order()); }
  const T* values() const { return a_->values().data(); }
  const Integer* columns() const { return a_->columns_from_one().data(); }
  const Integer* starts() const { return starts_.data(); }
  const Integer* places() const { return places_.data(); }
  void require_order(const char* routine, Integer argument, std::size_t length) const {
    require_length(routine, argument, count_of(length), order());
  }

 private:
  const SparseMatrix<T>* a_;
  std::vector<Integer> starts_;
  std::vector<Integer> places_;
};

}  // namespace detail

/// The diagonal of a matrix. Throws NumericalFailure with the number of the first row, from 1, that has none.
template <Scalar T>
class Jacobi : detail::DiagonalPlaces<T> {
 public:
  explicit Jacobi(const SparseMatrix<T>& a) : detail::DiagonalPlaces<T>(a) {}

  /// x := op(D)^-1 x
  void solve(std::span<T> x, Op op = Op::none) const {
    this->require_order(detail::name<T>("JACOBI", "ZJACOBI"), 5, x.size());
    Integer info = 0;
    detail::pick<T>(QuarnMPX_jacobi_, QuarnMPX_zjacobi_)(detail::Option(op), this->order(), this->values(),
                                                         this->places(), x.data(), &info, 1);
  }
  /// y := D^-1 x
  void operator()(std::span<const T> x, std::span<T> y) const {
    this->require_order(detail::name<T>("JACOBI", "ZJACOBI"), 5, y.size());
    this->require_order(detail::name<T>("JACOBI", "ZJACOBI"), 5, x.size());
    std::copy(x.begin(), x.end(), y.begin());
    solve(y);
  }
};

/// M = omega / (2 - omega) (D / omega + L) D^-1 (D / omega + U) of a matrix A = L + D + U. Throws as Jacobi does.
///
/// @code
/// const auto x = tesk2mp::solve_iteratively(a, b, options, tesk2mp::Ssor(a)).x;
/// @endcode
template <Scalar T>
class Ssor : detail::DiagonalPlaces<T> {
 public:
  explicit Ssor(const SparseMatrix<T>& a, Real omega = 1) : detail::DiagonalPlaces<T>(a), omega_(std::move(omega)) {
    detail::require(omega_ > 0 && omega_ < 2, routine(), 7, "omega must lie between 0 and 2");
  }

  /// x := op(M)^-1 x
  void solve(std::span<T> x, Op op = Op::none) const {
    this->require_order(routine(), 8, x.size());
    Integer info = 0;
    detail::pick<T>(QuarnMPX_ssor_, QuarnMPX_zssor_)(detail::Option(op), this->order(), this->values(), this->columns(),
                                                     this->starts(), this->places(), omega_, x.data(), &info, 1);
  }
  /// y := M^-1 x
  void operator()(std::span<const T> x, std::span<T> y) const {
    this->require_order(routine(), 8, y.size());
    this->require_order(routine(), 8, x.size());
    std::copy(x.begin(), x.end(), y.begin());
    solve(y);
  }

 private:
  static const char* routine() { return detail::name<T>("SSOR", "ZSSOR"); }

  Real omega_;
};

}  // namespace tesk2mp

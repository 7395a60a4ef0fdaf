// Incomplete factorisations of the C++ interface, which are preconditioners. Part of tesk2mp.hpp; incomplete.h
// describes them.
#pragma once

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "tesk2mp/sparse.hpp"

namespace tesk2mp {

/// Where the pivot of a step is looked for; least_fill takes one that fills little, among those that are large enough.
enum class PivotSearch : char { none = 'N', rows = 'R', columns = 'C', both = 'B', least_fill = 'M' };
/// Which diagonal element a step takes: the next, the largest, or that with the fewest entries left in its row.
enum class DiagonalSearch : char { none = 'N', largest = 'D', least_fill = 'M' };

/// What of the fill is kept.
struct FillOptions {
  Integer level = 0;        ///< up to this level; negative: drop_tolerance decides
  Real drop_tolerance = 0;  ///< fill below it times the largest element of its row is dropped; 0: none
  bool modified = false;    ///< what is dropped goes into the pivots, so that row sums stay
};

namespace detail {

/// The arrays of a factorisation without the matrix before them; permutations and starts count from 1 there.
template <Scalar T>
class Factors {
 public:
  using value_type = T;

  std::size_t order() const { return starts_.size() - 1; }
  /// Of both factors, the diagonal once.
  std::size_t entries() const { return values_.size(); }
  /// Pivots that have been replaced because there were none; not 0: the factors may be poor.
  Integer corrected_pivots() const { return corrected_; }
  /// L with its unit diagonal.
  SparseMatrix<T> lower() const {
    SparseMatrix<T> l(order());
    for (std::size_t k = 0; k < values_.size(); ++k) {
      if (columns_[k] <= rows_[k]) {
        l.add(std::size_t(rows_[k]) - 1, std::size_t(columns_[k]) - 1,
              columns_[k] == rows_[k] ? T(Real(1)) : values_[k]);
      }
    }
    return l;
  }

 protected:
  explicit Factors(std::size_t order) : starts_(order + 1) {}

  /// By a routine that stores the factors behind the matrix.
  template <class Factorise>
  void factorise_behind(const SparseMatrix<T>& a, const Factorise& factorise) {
    const auto before = std::ptrdiff_t(a.entries());
    // A guess: where it is too small the routine says what it needs, and works twice.
    std::size_t room = 4 * a.entries() + a.order();
    for (Integer needed = 0;; room = a.entries() + std::size_t(needed)) {
      values_.assign(a.values().begin(), a.values().end());
      rows_.assign(a.rows_from_one().begin(), a.rows_from_one().end());
      columns_.assign(a.columns_from_one().begin(), a.columns_from_one().end());
      values_.resize(room);
      rows_.resize(room);
      columns_.resize(room);
      const Integer n = count_of(a.order());
      const Integer nnz = count_of(a.entries());
      const Integer la = count_of(room);
      const Listener listener;
      Integer ifail = 1;
      factorise(&n, &nnz, values_.data(), &la, rows_.data(), columns_.data(), starts_.data(), &needed, &corrected_,
                &ifail);
      if (ifail == 0) {
        room = std::size_t(needed);
        break;
      }
      if (ifail != 3) {
        listener.raise({});
      }
    }
    const auto cut = [&](auto& array) {
      array.erase(array.begin(), array.begin() + before);
      array.resize(room);
      array.shrink_to_fit();
    };
    cut(values_);
    cut(rows_);
    cut(columns_);
    for (Integer& start : starts_) {
      start -= Integer(before);
    }
  }

  static std::vector<std::size_t> from_zero(const std::vector<Integer>& order) {
    std::vector<std::size_t> from_zero;
    from_zero.reserve(order.size());
    for (const Integer i : order) {
      from_zero.push_back(std::size_t(i) - 1);
    }
    return from_zero;
  }

  std::vector<T> values_;
  std::vector<Integer> rows_;
  std::vector<Integer> columns_;
  std::vector<Integer> starts_;
  Integer corrected_ = 0;
};

/// P A Q = L U, or near it, and solutions with that.
template <Scalar T>
class LuFactors : public Factors<T> {
 public:
  /// x := op(M)^-1 x with M = P^T L U Q^T
  void solve(std::span<T> x, Op op = Op::none) const {
    if constexpr (kIsComplex<T>) {
      if (op == Op::transpose) {
        std::vector<T> conjugated(x.begin(), x.end());
        conjugate(conjugated);
        apply('T', conjugated, x);
        conjugate(x);
        return;
      }
    }
    apply(op == Op::none ? 'N' : 'T', x, x);
  }
  /// y := M^-1 x
  void operator()(std::span<const T> x, std::span<T> y) const { apply('N', x, y); }

  SparseMatrix<T> upper() const {
    SparseMatrix<T> u(this->order());
    for (std::size_t k = 0; k < this->values_.size(); ++k) {
      if (this->columns_[k] >= this->rows_[k]) {
        u.add(std::size_t(this->rows_[k]) - 1, std::size_t(this->columns_[k]) - 1, this->values_[k]);
      }
    }
    return u;
  }
  /// Row k of L U is this row of A, column k this column.
  std::vector<std::size_t> row_order() const { return this->from_zero(row_order_); }
  std::vector<std::size_t> column_order() const { return this->from_zero(column_order_); }

 protected:
  explicit LuFactors(std::size_t order)
      : Factors<T>(order), row_order_(order), column_order_(order), diagonals_(order) {}

  std::vector<Integer> row_order_;
  std::vector<Integer> column_order_;
  std::vector<Integer> diagonals_;

 private:
  static void conjugate(std::span<T> x) {
    for (T& z : x) {
      z.im = -z.im;
    }
  }
  /// x := op(M)^-1 y; they may be the same.
  void apply(char trans, std::span<const T> y, std::span<T> x) const {
    const char* const routine = name<T>("F11DBF", "F11DPF");
    const Integer n = count_of(this->order());
    const Integer la = count_of(this->entries());
    require_length(routine, 13, count_of(x.size()), n);
    require_length(routine, 12, count_of(y.size()), n);
    call([&](Integer* ifail) {
      pick<T>(QuarnMPX_f11dbf_, QuarnMPX_f11dpf_)(
          Option(trans), &n, this->values_.data(), &la, this->rows_.data(), this->columns_.data(), row_order_.data(),
          column_order_.data(), this->starts_.data(), diagonals_.data(), Option('N'), y.data(), x.data(), ifail, 1, 1);
    });
  }
};

/// P A P^T = L D L^H, or near it, and solutions with that.
template <Scalar T>
class CholeskyFactors : public Factors<T> {
 public:
  /// x := M^-1 x with M = P^T L D L^H P
  void solve(std::span<T> x) const { (*this)(x, x); }
  /// y := M^-1 x
  void operator()(std::span<const T> x, std::span<T> y) const {
    const char* const routine = name<T>("F11JBF", "F11JPF");
    const Integer n = count_of(this->order());
    const Integer la = count_of(this->entries());
    require_length(routine, 10, count_of(y.size()), n);
    require_length(routine, 9, count_of(x.size()), n);
    call([&](Integer* ifail) {
      pick<T>(QuarnMPX_f11jbf_, QuarnMPX_f11jpf_)(&n, this->values_.data(), &la, this->rows_.data(),
                                                  this->columns_.data(), order_.data(), this->starts_.data(),
                                                  Option('N'), x.data(), y.data(), ifail, 1);
    });
  }

  /// The elements of D, positive unless A holds NaN.
  std::vector<T> diagonal() const {
    std::vector<T> d;
    for (std::size_t k = 1; k < this->starts_.size(); ++k) {
      d.push_back(this->values_[std::size_t(this->starts_[k]) - 2]);
    }
    return d;
  }
  /// Row k of L is this row of A.
  std::vector<std::size_t> row_order() const { return this->from_zero(order_); }

 protected:
  explicit CholeskyFactors(std::size_t order) : Factors<T>(order), order_(order) {}

  std::vector<Integer> order_;
};

}  // namespace detail

/// P A Q = L U + R with sparse triangles, as a preconditioner or, with complete fill (level -1), to solve with.
///
/// @code
/// const tesk2mp::IncompleteLU factors(a, {.level = 1});
/// const auto x = tesk2mp::solve_iteratively(a, b, options, factors).x;
/// @endcode
template <Scalar T>
class IncompleteLU : public detail::LuFactors<T> {
 public:
  /// a: general, in canonical form.
  explicit IncompleteLU(const SparseMatrix<T>& a, const FillOptions& fill = {}, PivotSearch search = PivotSearch::none)
      : detail::LuFactors<T>(a.order()) {
    detail::require(a.storage() == Storage::general, detail::name<T>("F11DAF", "F11DNF"), 3,
                    "a triangle in place of a whole matrix");
    this->factorise_behind(a, [&](const Integer* n, const Integer* nnz, T* values, const Integer* la, Integer* irow,
                                  Integer* icol, Integer* istr, Integer* nnzc, Integer* npivm, Integer* ifail) {
      detail::pick<T>(QuarnMP_f11daf_, QuarnMP_f11dnf_)(
          n, nnz, values, la, irow, icol, &fill.level, &fill.drop_tolerance, detail::Option(search),
          detail::Option(fill.modified ? 'M' : 'N'), this->row_order_.data(), this->column_order_.data(), istr,
          this->diagonals_.data(), nnzc, npivm, ifail, 1, 1);
    });
    for (Integer& place : this->diagonals_) {
      place -= detail::count_of(a.entries());
    }
  }
};

/// P A P^T = L D L^H + R of a symmetric or Hermitian matrix, as a preconditioner or, with complete fill (level -1), to
/// solve with.
template <Scalar T>
class IncompleteCholesky : public detail::CholeskyFactors<T> {
 public:
  /// a: a lower triangle, in canonical form. shift: its diagonal is multiplied by 1 + shift first.
  explicit IncompleteCholesky(const SparseMatrix<T>& a, const FillOptions& fill = {},
                              DiagonalSearch search = DiagonalSearch::none, const Real& shift = 0)
      : detail::CholeskyFactors<T>(a.order()) {
    detail::require(a.storage() == Storage::lower_triangle, detail::name<T>("F11JAF", "F11JNF"), 3,
                    "a whole matrix in place of a lower triangle");
    this->factorise_behind(a, [&](const Integer* n, const Integer* nnz, T* values, const Integer* la, Integer* irow,
                                  Integer* icol, Integer* istr, Integer* nnzc, Integer* npivm, Integer* ifail) {
      detail::pick<T>(QuarnMP_f11jaf_, QuarnMP_f11jnf_)(
          n, nnz, values, la, irow, icol, &fill.level, &fill.drop_tolerance, detail::Option(fill.modified ? 'M' : 'N'),
          &shift, detail::Option(search), this->order_.data(), istr, nnzc, npivm, ifail, 1, 1);
    });
  }
};

}  // namespace tesk2mp

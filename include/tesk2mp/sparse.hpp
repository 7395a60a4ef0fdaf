// Sparse matrices of the C++ interface. Part of tesk2mp.hpp; sparse.h describes storage and methods.
#pragma once

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tesk2mp/kernels.hpp"

namespace tesk2mp {

/// What the entries of a sparse matrix stand for: themselves, or the lower triangle of a symmetric (real) or Hermitian
/// (complex) matrix.
enum class Storage { general, lower_triangle };
/// Entries of the same place: keep the first, add them up, or fail (general storage only).
enum class Duplicates : char { keep_first = 'R', sum = 'S', fail = 'F' };
/// Entries that are zero: remove them, keep them, or fail (general storage only).
enum class Zeros : char { remove = 'R', keep = 'K', fail = 'F' };

/// A square sparse matrix as a list of entries, real or complex. Indices count from 0.
///
/// @code
/// tesk2mp::SparseMatrix<tesk2mp::Real> a(3);
/// a.add(0, 0, 2);
/// a.add(2, 1, -1);
/// a.canonicalise();
/// const std::vector<tesk2mp::Real> y = a.multiply(std::vector<tesk2mp::Real>{1, 1, 1});
/// @endcode
template <Scalar T>
class SparseMatrix {
 public:
  using value_type = T;

  explicit SparseMatrix(std::size_t order, Storage storage = Storage::general)
      : order_(detail::count_of(order)), storage_(storage) {
    detail::require(order >= 1, routine(), 1, "a sparse matrix of order ", order);
  }

  /// One more entry; those of the same place add up in products.
  void add(std::size_t row, std::size_t column, T value) {
    const auto order = std::size_t(order_);
    detail::require(row < order, routine(), 4, "row ", row, " of a matrix of order ", order);
    detail::require(column < (storage_ == Storage::general ? order : row + 1), routine(), 5, "column ", column,
                    " in row ", row, " of ", storage_ == Storage::general ? "a matrix" : "the lower triangle",
                    " of order ", order);
    detail::require(values_.size() < std::size_t(std::numeric_limits<Integer>::max() - 1), routine(), 2,
                    "too many entries");
    values_.push_back(std::move(value));
    rows_.push_back(Integer(row) + 1);
    columns_.push_back(Integer(column) + 1);
  }

  std::size_t order() const { return std::size_t(order_); }
  std::size_t entries() const { return values_.size(); }
  Storage storage() const { return storage_; }
  const T& value(std::size_t entry) const { return values_.at(entry); }
  std::size_t row(std::size_t entry) const { return std::size_t(rows_.at(entry)) - 1; }
  std::size_t column(std::size_t entry) const { return std::size_t(columns_.at(entry)) - 1; }
  /// The entries as the exports take them: rows and columns count from 1.
  std::span<const T> values() const { return values_; }
  std::span<const Integer> rows_from_one() const { return rows_; }
  std::span<const Integer> columns_from_one() const { return columns_; }

  /// Sorts the entries by rows, then columns, merges those of the same place and drops zeros; sums are rounded once.
  /// Returns where each row starts: row i is the entries start[i] ... start[i + 1] - 1. Linear time. With
  /// Duplicates::fail or Zeros::fail throws InvalidArgument at the first such entry.
  std::vector<Integer> canonicalise(Duplicates duplicates = Duplicates::sum, Zeros zeros = Zeros::remove) {
    auto entries = detail::count_of(values_.size());
    std::vector<Integer> starts(std::size_t(order_) + 1);
    std::vector<Integer> work(std::size_t(order_) + values_.size());
    detail::call([&](Integer* ifail) {
      const auto canonical = [&](auto sort) {
        sort(&order_, &entries, values_.data(), rows_.data(), columns_.data(), detail::Option(duplicates),
             detail::Option(zeros), starts.data(), work.data(), ifail, 1, 1);
      };
      if (storage_ == Storage::general) {
        canonical(detail::pick<T>(QuarnMPX_f11zaf_, QuarnMPX_f11znf_));
      } else {
        canonical(detail::pick<T>(QuarnMPX_f11zbf_, QuarnMPX_f11zpf_));
      }
    });
    values_.resize(std::size_t(entries));
    rows_.resize(std::size_t(entries));
    columns_.resize(std::size_t(entries));
    for (Integer& start : starts) {
      --start;
    }
    return starts;
  }

  /// y := A x, or op(A) x, with one rounding of each result. The plain transpose of a complex matrix is not supported;
  /// of a symmetric or Hermitian matrix every op gives A x.
  template <VectorSource X>
  std::vector<T> multiply(const X& x, Op op = Op::none) const {
    std::vector<T> y(order());
    multiply(x, y, op);
    return y;
  }
  template <VectorSource X>
  void multiply(const X& source, std::span<T> y, Op op = Op::none) const {
    const VectorView<const T> view(source);
    const bool usable = view.stride() == 1 && !detail::overlap(detail::RawVector<T>(view), detail::RawVector<T>(y));
    const std::vector<T> gathered = usable ? std::vector<T>() : view.to_vector();
    const T* x = usable ? view.data() : gathered.data();
    detail::require_length(product(), 8, detail::count_of(view.size()), order_);
    detail::require_length(product(), 9, detail::count_of(y.size()), order_);
    detail::require(op != Op::transpose || !detail::kIsComplex<T>, product(), 1,
                    "the plain transpose of a complex sparse matrix");
    // Entries add up in any order and number: their structure needs no check, add() saw to the indices.
    const auto entries = detail::count_of(values_.size());
    const detail::Option unchecked('N');
    detail::call([&](Integer* ifail) {
      if (storage_ == Storage::general) {
        detail::pick<T>(QuarnMPX_f11xaf_, QuarnMPX_f11xnf_)(detail::Option(op == Op::none ? 'N' : 'T'), &order_,
                                                            &entries, values_.data(), rows_.data(), columns_.data(),
                                                            unchecked, x, y.data(), ifail, 1, 1);
      } else {
        detail::pick<T>(QuarnMPX_f11xef_, QuarnMPX_f11xsf_)(&order_, &entries, values_.data(), rows_.data(),
                                                            columns_.data(), unchecked, x, y.data(), ifail, 1);
      }
    });
  }

 private:
  const char* routine() const {
    return storage_ == Storage::general ? detail::name<T>("F11ZAF", "F11ZNF") : detail::name<T>("F11ZBF", "F11ZPF");
  }
  const char* product() const {
    return storage_ == Storage::general ? detail::name<T>("F11XAF", "F11XNF") : detail::name<T>("F11XEF", "F11XSF");
  }

  Integer order_;
  Storage storage_;
  std::vector<T> values_;
  std::vector<Integer> rows_;  // from 1, as the exports take them
  std::vector<Integer> columns_;
};

namespace detail {

/// Entries (row, column, value) of a into a matrix of another storage.
template <Scalar T, class Add>
SparseMatrix<T> rearranged(const SparseMatrix<T>& a, Storage storage, const Add& add) {
  SparseMatrix<T> result(a.order(), storage);
  for (std::size_t k = 0; k < a.entries(); ++k) {
    add(result, a.row(k), a.column(k), a.value(k));
  }
  result.canonicalise(Duplicates::sum, Zeros::keep);
  return result;
}

template <Scalar T>
T mirrored(const T& value) {
  if constexpr (kIsComplex<T>) {
    return conj(value);
  } else {
    return value;
  }
}

}  // namespace detail

/// The matrix with both of its triangles, in canonical form.
template <Scalar T>
SparseMatrix<T> whole(const SparseMatrix<T>& a) {
  const bool triangle = a.storage() == Storage::lower_triangle;
  return detail::rearranged(a, Storage::general,
                            [&](auto& result, std::size_t row, std::size_t column, const T& value) {
                              result.add(row, column, value);
                              if (triangle && row != column) {
                                result.add(column, row, detail::mirrored(value));
                              }
                            });
}

/// The lower triangle of a symmetric or Hermitian matrix, in canonical form; what is above the diagonal is left out.
template <Scalar T>
SparseMatrix<T> lower_triangle(const SparseMatrix<T>& a) {
  return detail::rearranged(a, Storage::lower_triangle,
                            [](auto& result, std::size_t row, std::size_t column, const T& value) {
                              if (column <= row) {
                                result.add(row, column, value);
                              }
                            });
}

/// Is the matrix symmetric (real) or Hermitian (complex)? Of entries in canonical form, zeros among them where they
/// mirror each other.
template <Scalar T>
bool is_hermitian(const SparseMatrix<T>& a) {
  if (a.storage() == Storage::lower_triangle) {
    return true;
  }
  const SparseMatrix<T> adjoint =
      detail::rearranged(a, Storage::general, [](auto& result, std::size_t row, std::size_t column, const T& value) {
        result.add(column, row, detail::mirrored(value));
      });
  return std::ranges::equal(a.rows_from_one(), adjoint.rows_from_one()) &&
         std::ranges::equal(a.columns_from_one(), adjoint.columns_from_one()) &&
         std::ranges::equal(a.values(), adjoint.values());
}

}  // namespace tesk2mp

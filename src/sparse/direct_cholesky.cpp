// Sparse Cholesky factorisation L D L^H by columns: A. George, J. W.-H. Liu, Computer Solution of Large Sparse Positive
// Definite Systems, Prentice-Hall 1981, chapter 5. The places of L are known before its values.
#include <algorithm>
#include <utility>

#include "src/frame/check_points.h"
#include "src/kernels/scalar.h"
#include "src/sparse/direct.h"

namespace tesk {
namespace {

constexpr Integer kEnd = -1;

/// An entry of the permuted triangle: its row, and its place in A.
struct PermutedEntry {
  Integer row;
  Integer place;
  bool mirrored;  // it stands above the diagonal there
};

template <class Value>
class DirectCholesky {
 public:
  DirectCholesky(const CoordinateMatrix<Value>& triangle, const std::vector<Integer>& order)
      : triangle_(triangle),
        order_(order),
        entries_(std::size_t(triangle.n)),
        columns_(std::size_t(triangle.n)),
        diagonal_(std::size_t(triangle.n)),
        x_(std::size_t(triangle.n)) {
    std::vector<Integer> step(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
      step[std::size_t(order[k])] = Integer(k);
    }
    for (Integer k = 0; k < triangle.nnz; ++k) {
      const Integer row = step[std::size_t(triangle.irow[k]) - 1];
      const Integer column = step[std::size_t(triangle.icol[k]) - 1];
      entries_[std::size_t(std::min(row, column))].push_back({std::max(row, column), k, row < column});
    }
  }

  DirectFactors<Value> factorise() {
    find_places();
    if (compute_columns()) {
      collect_rows();
      factors_.row_order = order_;
    }
    return std::move(factors_);
  }

 private:
  /// Column j has the places of A's column j and of those columns whose first element below the diagonal is in row j.
  void find_places() {
    const auto n = std::size_t(triangle_.n);
    std::vector<Integer> first_child(n, kEnd);
    std::vector<Integer> sibling(n, kEnd);
    std::vector<Integer> seen(n, kEnd);
    for (Integer j = 0; j < triangle_.n; ++j) {
      std::vector<Integer>& rows = columns_[std::size_t(j)].columns;
      seen[std::size_t(j)] = j;
      const auto visit = [&](Integer i) {
        if (seen[std::size_t(i)] != j) {
          seen[std::size_t(i)] = j;
          rows.push_back(i);
        }
      };
      for (const PermutedEntry& entry : entries_[std::size_t(j)]) {
        visit(entry.row);
      }
      for (Integer child = first_child[std::size_t(j)]; child != kEnd; child = sibling[std::size_t(child)]) {
        for (const Integer i : columns_[std::size_t(child)].columns) {
          visit(i);
        }
      }
      check_points_.pass(std::ptrdiff_t(rows.size()) + 1);
      std::sort(rows.begin(), rows.end());
      rows.shrink_to_fit();
      if (!rows.empty()) {
        Integer& first = first_child[std::size_t(rows.front())];
        sibling[std::size_t(j)] = first;
        first = j;
      }
    }
  }

  /// Column j of A minus the columns k of L that have an element in row j: those are in a list of the row, and move on
  /// to that of their next element.
  bool compute_columns() {
    const auto n = std::size_t(triangle_.n);
    std::vector<Integer> first_in_row(n, kEnd);
    std::vector<Integer> next_in_row(n, kEnd);
    std::vector<std::size_t> reached(n);
    const auto enlist = [&](Integer k) {
      const std::vector<Integer>& rows = columns_[std::size_t(k)].columns;
      const std::size_t at = reached[std::size_t(k)];
      if (at < rows.size()) {
        next_in_row[std::size_t(k)] = first_in_row[std::size_t(rows[at])];
        first_in_row[std::size_t(rows[at])] = k;
      }
    };
    for (Integer j = 0; j < triangle_.n; ++j) {
      Value pivot;
      for (const PermutedEntry& entry : entries_[std::size_t(j)]) {
        const Value& a = triangle_.a[entry.place];
        (entry.row == j ? pivot : x_[std::size_t(entry.row)]) = entry.mirrored ? conjugate(a) : a;
      }
      const QuarnFloat whole = fabs(real_part(pivot));
      for (Integer k = first_in_row[std::size_t(j)]; k != kEnd;) {
        const Integer next = next_in_row[std::size_t(k)];
        const FactorRow<Value>& column = columns_[std::size_t(k)];
        std::size_t at = reached[std::size_t(k)]++;
        Value factor = conjugate(column.values[at]);
        multiply_by(factor, diagonal_[std::size_t(k)]);
        subtract_product(pivot, column.values[at], factor);
        for (++at; at < column.columns.size(); ++at) {
          subtract_product(x_[std::size_t(column.columns[at])], column.values[at], factor);
        }
        check_points_.pass(std::ptrdiff_t(column.columns.size() - reached[std::size_t(k)]) + 1);
        enlist(k);
        k = next;
      }
      QuarnFloat& d = diagonal_[std::size_t(j)] = real_part(pivot);
      if (!(d > rounding_of(whole)) || !isfinite(d)) {
        factors_.failed = j + 1;
        return false;
      }
      FactorRow<Value>& column = columns_[std::size_t(j)];
      column.values.reserve(column.columns.size());
      for (const Integer i : column.columns) {
        divide_by(x_[std::size_t(i)], d);
        column.values.push_back(std::move(x_[std::size_t(i)]));
        x_[std::size_t(i)] = Value();
      }
      enlist(j);
    }
    return true;
  }

  /// L by rows, the diagonal last.
  void collect_rows() {
    const auto n = std::size_t(triangle_.n);
    std::vector<std::size_t> lengths(n, 1);
    for (const FactorRow<Value>& column : columns_) {
      for (const Integer i : column.columns) {
        ++lengths[std::size_t(i)];
      }
    }
    factors_.rows.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
      factors_.rows[i].columns.reserve(lengths[i]);
      factors_.rows[i].values.reserve(lengths[i]);
    }
    const auto append = [&](Integer i, Integer j, Value value) {
      factors_.rows[std::size_t(i)].columns.push_back(j);
      factors_.rows[std::size_t(i)].values.push_back(std::move(value));
    };
    for (Integer j = 0; j < triangle_.n; ++j) {
      FactorRow<Value> column = std::move(columns_[std::size_t(j)]);
      append(j, j, Value(std::move(diagonal_[std::size_t(j)])));
      for (std::size_t at = 0; at < column.columns.size(); ++at) {
        append(column.columns[at], j, std::move(column.values[at]));
      }
    }
  }

  const CoordinateMatrix<Value>& triangle_;
  const std::vector<Integer>& order_;
  std::vector<std::vector<PermutedEntry>> entries_;  // by columns
  std::vector<FactorRow<Value>> columns_;            // of L below its diagonal
  std::vector<QuarnFloat> diagonal_;
  std::vector<Value> x_;  // the column being computed; zero between columns
  DirectFactors<Value> factors_;
  CheckPoints check_points_;
};

}  // namespace

template <class Value>
DirectFactors<Value> direct_cholesky(const CoordinateMatrix<Value>& triangle, const std::vector<Integer>& order) {
  return DirectCholesky<Value>(triangle, order).factorise();
}

template DirectFactors<QuarnFloat> direct_cholesky(const CoordinateMatrix<QuarnFloat>&, const std::vector<Integer>&);
template DirectFactors<Complex> direct_cholesky(const CoordinateMatrix<Complex>&, const std::vector<Integer>&);

}  // namespace tesk

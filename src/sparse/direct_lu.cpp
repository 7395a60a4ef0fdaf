// Sparse LU factorisation by rows: J. R. Gilbert, T. Peierls, SIAM J. Sci. Stat. Comput. 9, 1988, for the transpose. A
// row's pattern is what it reaches through the rows of U, so that the time is that of the operations on numbers.
#include <algorithm>
#include <utility>

#include "src/frame/check_points.h"
#include "src/kernels/scalar.h"
#include "src/sparse/direct.h"

namespace tesk {
namespace {

constexpr Integer kNoStep = -1;

template <class Value>
class DirectLu {
 public:
  DirectLu(const CoordinateMatrix<Value>& matrix, const std::vector<Integer>& order)
      : matrix_(matrix),
        order_(order),
        starts_(std::size_t(matrix.n) + 1),
        column_count_(std::size_t(matrix.n)),
        column_largest_(std::size_t(matrix.n)),
        x_(std::size_t(matrix.n)),
        seen_(std::size_t(matrix.n), kNoStep),
        step_of_(std::size_t(matrix.n), kNoStep) {
    for (Integer k = 0; k < matrix.nnz; ++k) {
      ++starts_[std::size_t(matrix.irow[k])];
      const auto column = std::size_t(matrix.icol[k]) - 1;
      ++column_count_[column];
      column_largest_[column] = std::max(column_largest_[column], magnitude(matrix.a[k]));
    }
    for (std::size_t i = 1; i < starts_.size(); ++i) {
      starts_[i] += starts_[i - 1];
    }
    factors_.rows.resize(std::size_t(matrix.n));
    upper_.resize(std::size_t(matrix.n));
  }

  DirectFactors<Value> factorise() {
    for (Integer k = 0; k < matrix_.n; ++k) {
      const Integer i = order_[std::size_t(k)];
      reach(k, i);
      if (!eliminate(k) || !take_pivot(k, i)) {
        factors_.failed = k + 1;
        return std::move(factors_);
      }
    }
    for (Integer k = 0; k < matrix_.n; ++k) {
      append_upper(k);
    }
    factors_.row_order = order_;
    return std::move(factors_);
  }

 private:
  /// The row of A into x, and where it and what it reaches has elements.
  void reach(Integer k, Integer i) {
    steps_.clear();
    columns_.clear();
    largest_of_row_ = 0;
    for (Integer at = starts_[std::size_t(i)]; at < starts_[std::size_t(i) + 1]; ++at) {
      const Integer column = matrix_.icol[at] - 1;
      visit(k, column);
      x_[std::size_t(column)] = matrix_.a[at];
      largest_of_row_ = std::max(largest_of_row_, magnitude(matrix_.a[at]));
    }
    for (std::size_t next = 0; next < steps_.size(); ++next) {
      for (const Integer column : upper_[std::size_t(steps_[next])].columns) {
        visit(k, column);
      }
    }
    std::sort(steps_.begin(), steps_.end());
  }
  void visit(Integer k, Integer column) {
    if (seen_[std::size_t(column)] != k) {
      seen_[std::size_t(column)] = k;
      const Integer step = step_of_[std::size_t(column)];
      (step == kNoStep ? columns_ : steps_).push_back(step == kNoStep ? column : step);
    }
  }

  /// False when an element of L is not finite; those of U, and what follows from them, do not become pivots.
  bool eliminate(Integer k) {
    FactorRow<Value>& row = factors_.rows[std::size_t(k)];
    row.columns.reserve(steps_.size());
    row.values.reserve(steps_.size());
    for (const Integer step : steps_) {
      Value& element = x_[std::size_t(factors_.column_order[std::size_t(step)])];
      if (!is_zero(element)) {
        const FactorRow<Value>& source = upper_[std::size_t(step)];
        const Value factor = quotient(element, pivots_[std::size_t(step)]);
        if (!isfinite(magnitude(factor))) {
          return false;
        }
        for (std::size_t at = 0; at < source.values.size(); ++at) {
          subtract_product(x_[std::size_t(source.columns[at])], factor, source.values[at]);
        }
        check_points_.pass(std::ptrdiff_t(source.values.size()) + 1);
        row.columns.push_back(step);
        row.values.push_back(factor);
      }
      element = Value();
    }
    return true;
  }

  /// Of equal elements that on the diagonal, otherwise that in the column with the fewest elements.
  bool take_pivot(Integer k, Integer i) {
    Integer pivot = kNoStep;
    QuarnFloat largest;
    for (const Integer column : columns_) {
      const QuarnFloat size = magnitude(x_[std::size_t(column)]);
      if (pivot == kNoStep || !(size <= largest) ||
          (size == largest && pivot != i &&
           (column == i || column_count_[std::size_t(column)] < column_count_[std::size_t(pivot)]))) {
        pivot = column;
        largest = size;
        if (isnan(size)) {
          break;
        }
      }
    }
    // What is left of a row or a column by cancellation to the last digit is rounding.
    if (pivot == kNoStep || !isfinite(largest) ||
        !(largest > rounding_of(std::min(largest_of_row_, column_largest_[std::size_t(pivot)])))) {
      return false;
    }
    step_of_[std::size_t(pivot)] = k;
    factors_.column_order.push_back(pivot);
    pivots_.push_back(std::move(x_[std::size_t(pivot)]));
    x_[std::size_t(pivot)] = Value();
    FactorRow<Value>& rest = upper_[std::size_t(k)];
    for (const Integer column : columns_) {
      Value& element = x_[std::size_t(column)];
      if (column != pivot && !is_zero(element)) {
        rest.columns.push_back(column);
        rest.values.push_back(std::move(element));
      }
      element = Value();
    }
    return true;
  }

  /// The row of U behind that of L, its columns as steps.
  void append_upper(Integer k) {
    FactorRow<Value>& row = factors_.rows[std::size_t(k)];
    FactorRow<Value> rest = std::move(upper_[std::size_t(k)]);
    factors_.diagonals.push_back(Integer(row.columns.size()));
    row.columns.push_back(k);
    row.values.push_back(std::move(pivots_[std::size_t(k)]));
    std::vector<std::pair<Integer, std::size_t>> places;
    places.reserve(rest.columns.size());
    for (std::size_t at = 0; at < rest.columns.size(); ++at) {
      places.emplace_back(step_of_[std::size_t(rest.columns[at])], at);
    }
    std::sort(places.begin(), places.end());
    row.columns.reserve(row.columns.size() + places.size());
    row.values.reserve(row.columns.size() + places.size());
    for (const auto& place : places) {
      row.columns.push_back(place.first);
      row.values.push_back(std::move(rest.values[place.second]));
    }
  }

  const CoordinateMatrix<Value>& matrix_;
  const std::vector<Integer>& order_;
  std::vector<Integer> starts_;
  std::vector<Integer> column_count_;
  std::vector<QuarnFloat> column_largest_;
  std::vector<Value> x_;                 // the row being eliminated, by columns of A; zero between rows
  std::vector<Integer> seen_;            // the last step whose row has a column
  std::vector<Integer> step_of_;         // of each column that has become a pivot's
  std::vector<FactorRow<Value>> upper_;  // without the pivots, columns of A
  std::vector<Value> pivots_;
  std::vector<Integer> steps_;    // of the row being eliminated: columns of L
  std::vector<Integer> columns_;  // and those that are left for U
  QuarnFloat largest_of_row_;
  DirectFactors<Value> factors_;
  CheckPoints check_points_;
};

}  // namespace

template <class Value>
DirectFactors<Value> direct_lu(const CoordinateMatrix<Value>& matrix, const std::vector<Integer>& order) {
  return DirectLu<Value>(matrix, order).factorise();
}

template DirectFactors<QuarnFloat> direct_lu(const CoordinateMatrix<QuarnFloat>&, const std::vector<Integer>&);
template DirectFactors<Complex> direct_lu(const CoordinateMatrix<Complex>&, const std::vector<Integer>&);

}  // namespace tesk

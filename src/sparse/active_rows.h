// What an incomplete factorisation has not eliminated yet, by rows, and the rule that keeps fill or drops it. Fill is
// collected whatever its level or size, and judged when its row or column is eliminated.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "src/frame/check_points.h"
#include "src/frame/constants.h"
#include "src/kernels/scalar.h"
#include "src/sparse/incomplete.h"

namespace tesk {

template <class Value>
struct ActiveEntry {
  Integer column;
  Integer level;
  Value value;
};

template <class Value>
using ActiveRow = std::vector<ActiveEntry<Value>>;  // columns ascending

template <class Value>
class ActiveRows {
 public:
  using Entry = ActiveEntry<Value>;
  using Row = ActiveRow<Value>;

  ActiveRows(const CoordinateMatrix<Value>& matrix, const FillRule& rule, Storage storage)
      : rule_(rule), storage_(storage), rows_(std::size_t(matrix.n)), holders_(rows_.size()), largest_(rows_.size()) {
    for (Integer k = 0; k < matrix.nnz; ++k) {
      const Integer row = matrix.irow[k] - 1;
      const Integer column = matrix.icol[k] - 1;
      at(rows_, row).push_back({column, 0, matrix.a[k]});
      at(holders_, column).push_back(row);
      const QuarnFloat size = magnitude(matrix.a[k]);
      at(largest_, row) = std::max(at(largest_, row), size);
      if (storage == Storage::lower_triangle) {
        at(largest_, column) = std::max(at(largest_, column), size);
      }
    }
  }

  Row& row(Integer i) { return at(rows_, i); }
  /// The rows that have an entry in a column, those eliminated among them.
  std::vector<Integer>& holders(Integer column) { return at(holders_, column); }

  /// An entry of level 0, zero where there is none.
  void ensure(Integer i, Integer column) {
    if (find(i, column) == nullptr) {
      Row& entries = row(i);
      entries.insert(std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.column > column; }),
                     {column, 0, Value()});
      holders(column).push_back(i);
    }
  }
  Entry* find(Integer i, Integer column) {
    Row& entries = row(i);
    const auto found = std::lower_bound(entries.begin(), entries.end(), column,
                                        [](const Entry& entry, Integer wanted) { return entry.column < wanted; });
    return found != entries.end() && found->column == column ? &*found : nullptr;
  }
  Entry take(Integer i, Integer column) {
    Entry* const found = find(i, column);
    Entry entry = std::move(*found);
    row(i).erase(row(i).begin() + (found - row(i).data()));
    return entry;
  }

  /// Is this element of row i left out of the factors? Asked when all steps have contributed to it.
  bool is_dropped(Integer i, const Entry& entry) const {
    if (rule_.level >= 0 || entry.level == 0) {
      return rule_.level >= 0 && entry.level > rule_.level;
    }
    // An element of a triangle stands in two rows, and is dropped when it is small beside both.
    const QuarnFloat& size = largest_[std::size_t(i)];
    const QuarnFloat& other = storage_ == Storage::lower_triangle ? largest_[std::size_t(entry.column)] : size;
    return rule_.tolerance > 0 && magnitude(entry.value) < rule_.tolerance * std::min(size, other);
  }

  /// row i := row i - factor source, up to the column `last`; filled(column) is called for each fill.
  template <class Filled>
  void subtract(Integer i, const Value& factor, Integer level, const Row& source, Integer last, const Filled& filled) {
    Row& entries = row(i);
    auto place = entries.begin();
    fill_.clear();
    check_points_.pass(std::ptrdiff_t(source.size()) + 1);
    for (const Entry& entry : source) {
      if (entry.column > last) {
        break;
      }
      place = std::find_if(place, entries.end(), [&](const Entry& each) { return each.column >= entry.column; });
      const Integer fill_level = level_of_fill(level, entry.level);
      if (place != entries.end() && place->column == entry.column) {
        subtract_product(place->value, factor, entry.value);
        place->level = std::min(place->level, fill_level);
      } else {
        fill_.emplace_back();
        fill_.back().column = entry.column;
        fill_.back().level = fill_level;
        subtract_product(fill_.back().value, factor, entry.value);
        holders(entry.column).push_back(i);
        filled(entry.column);
      }
    }
    if (!fill_.empty()) {
      const auto middle = std::ptrdiff_t(entries.size());
      entries.insert(entries.end(), std::make_move_iterator(fill_.begin()), std::make_move_iterator(fill_.end()));
      std::inplace_merge(entries.begin(), entries.begin() + middle, entries.end(),
                         [](const Entry& a, const Entry& b) { return a.column < b.column; });
    }
  }

  /// What a pivot becomes that is no larger than rounding makes it: the largest element of its row of A, or 1.
  Value replacement(Integer i) const {
    return largest_[std::size_t(i)] > 0 ? Value(largest_[std::size_t(i)]) : Value(1);
  }
  QuarnFloat rounding(Integer i) const { return epsilon() * largest_[std::size_t(i)]; }

 private:
  template <class Elements>
  static typename Elements::reference at(Elements& elements, Integer i) {
    return elements[std::size_t(i)];
  }

  static Integer level_of_fill(Integer a, Integer b) {
    return Integer(std::min<std::int64_t>(std::int64_t(a) + b + 1, std::numeric_limits<Integer>::max()));
  }

  FillRule rule_;
  Storage storage_;
  std::vector<Row> rows_;
  std::vector<std::vector<Integer>> holders_;
  std::vector<QuarnFloat> largest_;
  Row fill_;
  CheckPoints check_points_;
};

}  // namespace tesk

// Incomplete LU factorisation: step k takes a pivot, and subtracts multiples of its row from those below it.

#include <set>

#include "src/sparse/active_rows.h"

namespace tesk {
namespace {

constexpr Integer kNone = -1;

// A search for least fill looks at so many rows, and at elements no smaller than a part of their rows' largest: I. S.
// Duff, A. M. Erisman, J. K. Reid, Direct Methods for Sparse Matrices, Oxford 1986, sections 5.4 and 7.2.
constexpr int kRowsSearched = 4;
constexpr int kLargestOverPivot = 10;

template <class Value>
class IncompleteLu {
 public:
  IncompleteLu(const CoordinateMatrix<Value>& matrix, const FillRule& rule, PivotSearch search)
      : n_(matrix.n),
        modified_(rule.modified),
        search_(search),
        active_(matrix, rule, Storage::general),
        lost_(std::size_t(n_)),
        lower_(std::size_t(n_)),
        upper_(std::size_t(n_)),
        pivots_(std::size_t(n_)),
        row_step_(std::size_t(n_), kNone),
        column_step_(std::size_t(n_), kNone),
        best_(std::size_t(search == PivotSearch::both ? n_ : 0)),
        column_count_(std::size_t(n_)) {}

  IncompleteFactors<Value> factorise() {
    for (Integer i = 0; search_ == PivotSearch::none && i < n_; ++i) {
      active_.ensure(i, i);
    }
    for (Integer i = 0; i < Integer(best_.size()); ++i) {
      best_[std::size_t(i)] = best_of_row(i);
    }
    for (Integer i = 0; search_ == PivotSearch::least_fill && i < n_; ++i) {
      queue_.emplace(active_.row(i).size(), i);
      for (const ActiveEntry<Value>& entry : active_.row(i)) {
        ++column_count_[std::size_t(entry.column)];
      }
    }
    for (Integer k = 0; k < n_; ++k) {
      QuarnCheckInterrupt();
      advance(next_row_, row_step_);
      advance(next_column_, column_step_);
      const auto [row, column] = choose();
      eliminate(k, row, column);
    }
    return collected();
  }

 private:
  struct Place {
    Integer row;
    Integer column;
  };
  /// The largest element of a row.
  struct Candidate {
    Integer column = kNone;
    QuarnFloat size;
  };

  static void advance(Integer& next, const std::vector<Integer>& steps) {
    while (steps[std::size_t(next)] != kNone) {
      ++next;
    }
  }

  QuarnFloat size_of(Integer i, const ActiveEntry<Value>& entry) {
    return modified_ ? magnitude(entry.value + lost_[std::size_t(i)]) : magnitude(entry.value);
  }

  Candidate best_of_row(Integer i) {
    Candidate best;
    for (const ActiveEntry<Value>& entry : active_.row(i)) {
      QuarnFloat size = size_of(i, entry);
      if ((best.column == kNone || size > best.size) && !active_.is_dropped(i, entry)) {
        best = {entry.column, std::move(size)};
      }
    }
    return best;
  }

  // Where nothing is left the next row or column takes part, and its pivot will be corrected.
  Place choose() {
    switch (search_) {
      case PivotSearch::none:
        break;
      case PivotSearch::rows:
        return {best_in_column(next_column_), next_column_};
      case PivotSearch::columns: {
        const Candidate best = best_of_row(next_row_);
        return {next_row_, best.column == kNone ? next_column_ : best.column};
      }
      case PivotSearch::both:
        return best_of_all();
      case PivotSearch::least_fill:
        return least_fill();
    }
    return {next_row_, next_row_};
  }

  Integer best_in_column(Integer column) {
    Integer best = kNone;
    QuarnFloat largest;
    for (const Integer i : active_.holders(column)) {
      if (row_step_[std::size_t(i)] != kNone) {
        continue;
      }
      const ActiveEntry<Value>& entry = *active_.find(i, column);
      const QuarnFloat size = size_of(i, entry);
      if ((best == kNone || size > largest || (size == largest && i < best)) && !active_.is_dropped(i, entry)) {
        best = i;
        largest = size;
      }
    }
    return best == kNone ? next_row_ : best;
  }

  Place best_of_all() {
    Integer row = kNone;
    for (Integer i = next_row_; i < n_; ++i) {
      if (row_step_[std::size_t(i)] == kNone && best_[std::size_t(i)].column != kNone &&
          (row == kNone || best_[std::size_t(i)].size > best_[std::size_t(row)].size)) {
        row = i;
      }
    }
    return row == kNone ? Place{next_row_, next_column_} : Place{row, best_[std::size_t(row)].column};
  }

  /// Of the elements that are large enough in the shortest rows, that with the least product of the others in its row
  /// and its column.
  Place least_fill() {
    Place best{next_row_, next_column_};
    std::int64_t least = -1;
    int searched = 0;
    for (auto at = queue_.begin(); at != queue_.end() && searched < kRowsSearched && least != 0; ++at) {
      const Integer i = at->second;
      const Candidate largest = best_of_row(i);
      searched += largest.column == kNone ? 0 : 1;
      for (const ActiveEntry<Value>& entry : active_.row(i)) {
        const std::int64_t fill = (std::int64_t(at->first) - 1) * (column_count_[std::size_t(entry.column)] - 1);
        if ((least < 0 || fill < least) && !active_.is_dropped(i, entry) &&
            kLargestOverPivot * size_of(i, entry) >= largest.size) {
          best = {i, entry.column};
          least = fill;
        }
      }
    }
    return best;
  }

  /// Row p leaves the counts.
  void forget(Integer p) {
    if (search_ == PivotSearch::least_fill) {
      queue_.erase({active_.row(p).size(), p});
      for (const ActiveEntry<Value>& entry : active_.row(p)) {
        --column_count_[std::size_t(entry.column)];
      }
    }
  }
  /// A row has changed its length.
  void recount(Integer i, std::size_t former) {
    if (search_ == PivotSearch::least_fill && former != active_.row(i).size()) {
      queue_.erase({former, i});
      queue_.emplace(active_.row(i).size(), i);
    }
  }

  void lose(Integer i, const Value& dropped) {
    if (modified_) {
      lost_[std::size_t(i)] = lost_[std::size_t(i)] + dropped;
    }
  }

  /// The rest of row p, without what is dropped.
  ActiveRow<Value> kept_row(Integer p) {
    ActiveRow<Value> row = std::move(active_.row(p));
    auto end = row.begin();
    for (ActiveEntry<Value>& entry : row) {
      if (active_.is_dropped(p, entry)) {
        lose(p, entry.value);
      } else {
        if (&*end != &entry) {
          *end = std::move(entry);
        }
        ++end;
      }
    }
    row.erase(end, row.end());
    return row;
  }

  void eliminate(Integer k, Integer p, Integer q) {
    Value& pivot = pivots_[std::size_t(k)];
    forget(p);
    if (active_.find(p, q) != nullptr) {
      pivot = active_.take(p, q).value;
    }
    ActiveRow<Value>& source = upper_[std::size_t(k)] = kept_row(p);
    if (modified_) {
      pivot = pivot + lost_[std::size_t(p)];
    }
    if (magnitude(pivot) <= active_.rounding(p)) {
      pivot = active_.replacement(p);
      ++corrected_;
    }
    row_step_[std::size_t(p)] = k;
    column_step_[std::size_t(q)] = k;
    row_order_.push_back(p);
    column_order_.push_back(q);

    const std::vector<Integer> below = std::move(active_.holders(q));
    for (const Integer i : below) {
      if (row_step_[std::size_t(i)] != kNone) {
        continue;
      }
      const std::size_t length = active_.row(i).size();
      ActiveEntry<Value> factor = active_.take(i, q);
      if (active_.is_dropped(i, factor)) {
        lose(i, factor.value);
      } else {
        factor.column = k;
        factor.value = quotient(factor.value, pivot);
        active_.subtract(i, factor.value, factor.level, source, n_,
                         [&](Integer column) { ++column_count_[std::size_t(column)]; });
        lower_[std::size_t(i)].push_back(std::move(factor));
      }
      recount(i, length);
      if (!best_.empty()) {
        best_[std::size_t(i)] = best_of_row(i);
      }
    }
  }

  IncompleteFactors<Value> collected() {
    IncompleteFactors<Value> factors;
    const auto add = [&](Integer row, Integer column, Value&& value) {
      factors.rows.push_back(row);
      factors.columns.push_back(column);
      factors.values.push_back(std::move(value));
    };
    factors.starts.push_back(0);
    for (Integer k = 0; k < n_; ++k) {
      for (ActiveEntry<Value>& entry : lower_[std::size_t(row_order_[std::size_t(k)])]) {
        add(k, entry.column, std::move(entry.value));
      }
      factors.diagonals.push_back(Integer(factors.values.size()));
      add(k, k, std::move(pivots_[std::size_t(k)]));
      ActiveRow<Value>& rest = upper_[std::size_t(k)];
      for (ActiveEntry<Value>& entry : rest) {
        entry.column = column_step_[std::size_t(entry.column)];
      }
      std::sort(rest.begin(), rest.end(), [](const auto& a, const auto& b) { return a.column < b.column; });
      for (ActiveEntry<Value>& entry : rest) {
        add(k, entry.column, std::move(entry.value));
      }
      factors.starts.push_back(Integer(factors.values.size()));
    }
    factors.row_order = std::move(row_order_);
    factors.column_order = std::move(column_order_);
    factors.corrected = corrected_;
    return factors;
  }

  Integer n_;
  bool modified_;
  PivotSearch search_;
  ActiveRows<Value> active_;
  std::vector<Value> lost_;              // what has been dropped of a row, for its pivot
  std::vector<ActiveRow<Value>> lower_;  // by rows of A, columns are steps
  std::vector<ActiveRow<Value>> upper_;  // by steps, columns are those of A
  std::vector<Value> pivots_;
  std::vector<Integer> row_step_;     // when a row was eliminated
  std::vector<Integer> column_step_;  // and a column
  std::vector<Integer> row_order_;
  std::vector<Integer> column_order_;
  std::vector<Candidate> best_;                      // of each row, for a search of rows and columns
  std::set<std::pair<std::size_t, Integer>> queue_;  // of the rows that are left, by length, for a search of least fill
  std::vector<Integer> column_count_;                // of the elements that are left
  Integer next_row_ = 0;                             // the first that is left
  Integer next_column_ = 0;
  Integer corrected_ = 0;
};

}  // namespace

template <class Value>
IncompleteFactors<Value> incomplete_lu(const CoordinateMatrix<Value>& matrix, const FillRule& rule,
                                       PivotSearch search) {
  return IncompleteLu<Value>(matrix, rule, search).factorise();
}

template IncompleteFactors<QuarnFloat> incomplete_lu(const CoordinateMatrix<QuarnFloat>&, const FillRule&, PivotSearch);
template IncompleteFactors<Complex> incomplete_lu(const CoordinateMatrix<Complex>&, const FillRule&, PivotSearch);

}  // namespace tesk

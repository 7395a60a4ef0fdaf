// Incomplete Cholesky factorisation L D L^H: step k takes a diagonal element, and subtracts from the lower triangle of
// what is left the products of its column's elements.
#include <set>

#include "src/sparse/active_rows.h"

namespace tesk {
namespace {

template <class Value>
class IncompleteCholesky {
 public:
  IncompleteCholesky(const CoordinateMatrix<Value>& triangle, const FillRule& rule, DiagonalSearch search,
                     const QuarnFloat& shift)
      : n_(triangle.n),
        modified_(rule.modified),
        search_(search),
        active_(triangle, rule, Storage::lower_triangle),
        lower_(std::size_t(n_)),
        diagonal_(std::size_t(n_)),
        pivots_(std::size_t(n_)),
        step_(std::size_t(n_), kLeft),
        neighbours_(std::size_t(n_)) {
    for (Integer i = 0; i < n_; ++i) {
      if (active_.find(i, i) != nullptr) {
        diagonal_[std::size_t(i)] = real_part(active_.take(i, i).value) * (1 + shift);
      }
      for (const ActiveEntry<Value>& entry : active_.row(i)) {
        ++neighbours_[std::size_t(i)];
        ++neighbours_[std::size_t(entry.column)];
      }
    }
    for (Integer i = 0; search == DiagonalSearch::least_fill && i < n_; ++i) {
      queue_.emplace(neighbours_[std::size_t(i)], i);
    }
  }

  IncompleteFactors<Value> factorise() {
    for (Integer k = 0; k < n_; ++k) {
      QuarnCheckInterrupt();
      eliminate(k, choose());
    }
    return collected();
  }

 private:
  static constexpr Integer kLeft = -1;

  bool is_left(Integer i) const { return step_[std::size_t(i)] == kLeft; }

  Integer choose() {
    if (search_ == DiagonalSearch::least_fill) {
      const Integer first = queue_.begin()->second;
      queue_.erase(queue_.begin());
      return first;
    }
    while (!is_left(next_)) {
      ++next_;
    }
    Integer best = next_;
    for (Integer i = next_ + 1; search_ == DiagonalSearch::largest && i < n_; ++i) {
      if (is_left(i) && diagonal_[std::size_t(i)] > diagonal_[std::size_t(best)]) {
        best = i;
      }
    }
    return best;
  }

  void count(Integer i, Integer more) {
    Integer& neighbours = neighbours_[std::size_t(i)];
    if (search_ == DiagonalSearch::least_fill && is_left(i)) {
      queue_.erase({neighbours, i});
      queue_.emplace(neighbours + more, i);
    }
    neighbours += more;
  }

  /// Column q of what is left, without its diagonal and what is dropped.
  ActiveRow<Value> column(Integer q) {
    ActiveRow<Value> column;
    const auto add = [&](Integer row, Integer holder, ActiveEntry<Value>&& entry) {
      count(row, -1);
      if (!active_.is_dropped(holder, entry)) {
        column.push_back({row, entry.level, std::move(entry.value)});
      } else if (modified_) {
        diagonal_[std::size_t(row)] += real_part(entry.value);
        diagonal_[std::size_t(q)] += real_part(entry.value);
      }
    };
    ActiveRow<Value> row = std::move(active_.row(q));
    for (ActiveEntry<Value>& entry : row) {
      entry.value = conjugate(entry.value);
      add(entry.column, q, std::move(entry));
    }
    for (const Integer i : active_.holders(q)) {
      if (i != q && is_left(i)) {
        add(i, i, active_.take(i, q));
      }
    }
    std::sort(column.begin(), column.end(), [](const auto& a, const auto& b) { return a.column < b.column; });
    return column;
  }

  void eliminate(Integer k, Integer q) {
    step_[std::size_t(q)] = k;
    order_.push_back(q);
    const ActiveRow<Value> elements = column(q);
    Value& pivot = pivots_[std::size_t(k)] = Value(diagonal_[std::size_t(q)]);
    if (diagonal_[std::size_t(q)] <= active_.rounding(q)) {
      pivot = active_.replacement(q);
      ++corrected_;
    }

    ActiveRow<Value> source = elements;
    for (ActiveEntry<Value>& entry : source) {
      entry.value = conjugate(entry.value);
    }
    for (const ActiveEntry<Value>& element : elements) {
      const Integer i = element.column;
      const Value factor = quotient(element.value, pivot);
      Value product = Value();
      subtract_product(product, factor, conjugate(element.value));
      diagonal_[std::size_t(i)] += real_part(product);
      active_.subtract(i, factor, element.level, source, i - 1, [&](Integer j) {
        count(i, 1);
        count(j, 1);
      });
      lower_[std::size_t(i)].push_back({k, element.level, factor});
    }
  }

  IncompleteFactors<Value> collected() {
    IncompleteFactors<Value> factors;
    factors.starts.push_back(0);
    for (Integer k = 0; k < n_; ++k) {
      for (ActiveEntry<Value>& entry : lower_[std::size_t(order_[std::size_t(k)])]) {
        factors.rows.push_back(k);
        factors.columns.push_back(entry.column);
        factors.values.push_back(std::move(entry.value));
      }
      factors.diagonals.push_back(Integer(factors.values.size()));
      factors.rows.push_back(k);
      factors.columns.push_back(k);
      factors.values.push_back(std::move(pivots_[std::size_t(k)]));
      factors.starts.push_back(Integer(factors.values.size()));
    }
    factors.row_order = std::move(order_);
    factors.corrected = corrected_;
    return factors;
  }

  Integer n_;
  bool modified_;
  DiagonalSearch search_;
  ActiveRows<Value> active_;  // without the diagonal
  std::vector<ActiveRow<Value>> lower_;
  std::vector<QuarnFloat> diagonal_;
  std::vector<Value> pivots_;
  std::vector<Integer> step_;                    // when a row was eliminated
  std::vector<Integer> neighbours_;              // elements of a row and its column that are left
  std::set<std::pair<Integer, Integer>> queue_;  // of the rows that are left, by neighbours
  std::vector<Integer> order_;
  Integer next_ = 0;  // no row before it is left
  Integer corrected_ = 0;
};

}  // namespace

template <class Value>
IncompleteFactors<Value> incomplete_cholesky(const CoordinateMatrix<Value>& triangle, const FillRule& rule,
                                             DiagonalSearch search, const QuarnFloat& shift) {
  return IncompleteCholesky<Value>(triangle, rule, search, shift).factorise();
}

template IncompleteFactors<QuarnFloat> incomplete_cholesky(const CoordinateMatrix<QuarnFloat>&, const FillRule&,
                                                           DiagonalSearch, const QuarnFloat&);
template IncompleteFactors<Complex> incomplete_cholesky(const CoordinateMatrix<Complex>&, const FillRule&,
                                                        DiagonalSearch, const QuarnFloat&);

}  // namespace tesk

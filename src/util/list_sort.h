// Stable ranking of values that stay where they are: natural runs, linked through the array of ranks, merged in the
// order of J. I. Munro and S. Wild, "Nearly-optimal mergesorts: fast, practical sorting methods that optimally adapt to
// existing runs", ESA 2018.
//
// The runs need the merge order to be good whatever their lengths: it costs at most n H + 2 n comparisons, H the
// entropy of the run lengths (at most log2 of the number of runs), with a stack that 33 entries always hold.
#pragma once

#include <bit>
#include <cstdint>

#include "quarn/quarnfloat.h"
#include "src/frame/check_points.h"

namespace tesk {

/// The order of the operators < and == alone. Values that compare false with everything (NaN) end up anywhere.
struct PlainOrder {
  template <class Value>
  bool less(const Value& a, const Value& b) const {
    return a < b;
  }
  template <class Value>
  bool equal(const Value& a, const Value& b) const {
    return a == b;
  }
};

/// NaN equals NaN and comes after all numbers, or before them in a list that is still to be reversed.
struct NanAtOneEnd {
  bool before = false;

  bool less(const QuarnFloat& a, const QuarnFloat& b) const {
    return a < b || (isnan(before ? a : b) && !isnan(before ? b : a));
  }
  bool equal(const QuarnFloat& a, const QuarnFloat& b) const { return a == b || (isnan(a) && isnan(b)); }
};

/// Ranks `count` values by an order; values are never copied. Positions are 1 ... count, and 0 ends a list. `links` has
/// room for `count` entries. The result is a permutation whatever the values.
template <class Value, class Ordering = PlainOrder>
class ListSort {
 public:
  ListSort(const Value* values, Integer count, Integer* links, Ordering ordering = {}) noexcept
      : values_(values - 1), links_(links - 1), count_(count), ordering_(ordering) {}

  /// Sorts; gives the head of the ascending list, equal values by position. count must be at least 1.
  Integer ascending() {
    Pending stack[kStackDepth];
    int depth = 0;
    Run run = next_run(1);
    while (run.last() < count_) {
      const Run following = next_run(run.last() + 1);
      const int power = merge_power(run, following);
      while (depth > 0 && stack[depth - 1].power > power) {
        run = merged(stack[--depth].run, run);
      }
      stack[depth++] = {run, power};
      run = following;
    }
    while (depth > 0) {
      run = merged(stack[--depth].run, run);
    }
    return run.head;
  }

  /// Turns an ascending list into a descending one in which equal values still go by position: group by group.
  Integer descending(Integer head) {
    Integer reversed = 0;
    while (head != 0) {
      Integer last = head;
      Integer next = links_[last];
      while (next != 0 && ordering_.equal(values_[next], values_[head])) {
        last = next;
        next = links_[last];
      }
      links_[last] = reversed;
      reversed = head;
      head = next;
    }
    return reversed;
  }

  /// Writes the ranks first, first + 1, ... over the links, in the order of the list.
  void number(Integer head, Integer first) noexcept {
    Integer rank = first - 1;
    while (head != 0) {
      const Integer next = links_[head];
      links_[head] = ++rank;
      head = next;
    }
  }

 private:
  /// A sorted list that holds the positions start ... start + length - 1.
  struct Run {
    Integer head;
    Integer start;
    Integer length;
    Integer last() const noexcept { return start + (length - 1); }
  };
  struct Pending {
    Run run;
    int power;
  };

  bool less(const Value& a, const Value& b) {
    check_points_.pass(1);
    return ordering_.less(a, b);
  }

  static constexpr int kStackDepth = 33;
  /// From the position that opened a run up to here, a value may be inserted inside it.
  static constexpr Integer kInsertionSpan = 10;

  /// The longest run from `start`: values go to its tail or head at any length, into its middle while it is short.
  Run next_run(Integer opening) {
    Integer head = opening;
    Integer tail = opening;
    links_[opening] = 0;
    Integer length = 1;
    for (; length <= count_ - opening; ++length) {
      const Integer position = opening + length;
      const Value& value = values_[position];
      if (!less(value, values_[tail])) {
        links_[tail] = position;
        links_[position] = 0;
        tail = position;
      } else if (less(value, values_[head])) {
        links_[position] = head;
        head = position;
      } else if (length < kInsertionSpan) {
        insert(position, head, tail);
      } else {
        break;
      }
    }
    return {head, opening, length};
  }

  /// Behind every element that the value is not less than; it is known to belong before the tail.
  void insert(Integer position, Integer head, Integer tail) {
    Integer before = head;
    while (links_[before] != tail && !less(values_[position], values_[links_[before]])) {
      before = links_[before];
    }
    links_[position] = links_[before];
    links_[before] = position;
  }

  /// The depth, in a binary tree over the positions, of the split between two adjoining runs: the first binary digit
  /// in which the midpoints of the runs, as fractions of the whole, differ.
  int merge_power(const Run& left, const Run& right) const noexcept {
    const auto midpoint = [this](const Run& run) {
      const std::uint64_t doubled = 2 * std::uint64_t(run.start - 1) + std::uint64_t(run.length);
      return std::uint32_t((doubled << 31) / std::uint64_t(count_));
    };
    return std::countl_zero(midpoint(left) ^ midpoint(right));
  }

  Run merged(const Run& left, const Run& right) {
    Integer head = 0;
    Integer* end = &head;
    Integer a = left.head;
    Integer b = right.head;
    while (a != 0 && b != 0) {
      // Strictly: among equals the earlier run goes first.
      if (less(values_[b], values_[a])) {
        *end = b;
        end = &links_[b];
        b = *end;
      } else {
        *end = a;
        end = &links_[a];
        a = *end;
      }
    }
    *end = a != 0 ? a : b;
    return {head, left.start, left.length + right.length};
  }

  const Value* values_;  // 1-based, as positions are
  Integer* links_;
  Integer count_;
  [[no_unique_address]] Ordering ordering_;
  CheckPoints check_points_;
};

}  // namespace tesk

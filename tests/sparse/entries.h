// Matrices in coordinate storage for the tests, and values of either type.
#pragma once

#include <type_traits>
#include <utility>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/random.h"

namespace entries {

/// A small value; the imaginary part is for Complex.
template <class Value>
Value value_of(int re, int im) {
  if constexpr (std::is_same_v<Value, Complex>) {
    return {QuarnFloat(re), QuarnFloat(im)};
  } else {
    return re;
  }
}

/// A value with many digits.
template <class Value>
Value random_value(support::Random& random) {
  const auto part = [&random] { return QuarnFloat(Integer(random.between(-999999, 999999))) / 7; };
  if constexpr (std::is_same_v<Value, Complex>) {
    QuarnFloat re = part();
    return {re, part()};
  } else {
    return part();
  }
}

template <class Value>
struct Coordinates {
  Integer n = 0;
  std::vector<Value> a;
  std::vector<Integer> irow;
  std::vector<Integer> icol;

  Integer nnz() const { return Integer(a.size()); }
  void add(Integer row, Integer column, Value value) {
    irow.push_back(row);
    icol.push_back(column);
    a.push_back(std::move(value));
  }
  friend bool operator==(const Coordinates& x, const Coordinates& y) {
    return x.n == y.n && x.a == y.a && x.irow == y.irow && x.icol == y.icol;
  }
};

}  // namespace entries

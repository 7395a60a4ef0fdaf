// Orders of elimination by AMD and COLAMD of SuiteSparse, for SparseCholesky and SparseLU. Not part of tesk2mp.hpp: a
// program that includes this links with -lamd -lcolamd. Without SuiteSparse's headers there is nothing in it.
#pragma once

#if __has_include(<suitesparse/amd.h>)
#include <suitesparse/amd.h>
#include <suitesparse/colamd.h>
#elif __has_include(<amd.h>)
#include <amd.h>
#include <colamd.h>
#endif

#ifdef AMD_OK

#include <algorithm>
#include <new>
#include <vector>

#include "tesk2mp/sparse.hpp"

namespace tesk2mp::suitesparse {
namespace detail {

/// The pattern by compressed columns, or by rows, with what is in each of them ascending.
struct Compressed {
  std::vector<int> starts;
  std::vector<int> indices;
};

template <Scalar T>
Compressed compressed(const SparseMatrix<T>& a, bool by_rows) {
  const std::size_t n = a.order();
  Compressed c{std::vector<int>(n + 1), std::vector<int>(a.entries())};
  const auto outer = [&](std::size_t k) { return by_rows ? a.row(k) : a.column(k); };
  for (std::size_t k = 0; k < a.entries(); ++k) {
    ++c.starts[outer(k) + 1];
  }
  for (std::size_t i = 0; i < n; ++i) {
    c.starts[i + 1] += c.starts[i];
  }
  std::vector<int> next(c.starts.begin(), c.starts.end() - 1);
  for (std::size_t k = 0; k < a.entries(); ++k) {
    c.indices[std::size_t(next[outer(k)]++)] = int(by_rows ? a.column(k) : a.row(k));
  }
  return c;
}

inline std::vector<std::size_t> order_of(const std::vector<int>& order, std::size_t n) {
  std::vector<std::size_t> rows(n);
  std::transform(order.begin(), order.begin() + std::ptrdiff_t(n), rows.begin(), [](int i) { return std::size_t(i); });
  return rows;
}

}  // namespace detail

/// For pivots on the diagonal, SparseCholesky's above all.
template <Scalar T>
std::vector<std::size_t> amd(const SparseMatrix<T>& a) {
  const detail::Compressed c = detail::compressed(a, false);
  std::vector<int> order(a.order());
  if (amd_order(int(a.order()), c.starts.data(), c.indices.data(), order.data(), nullptr, nullptr) < AMD_OK) {
    throw std::bad_alloc();
  }
  return detail::order_of(order, a.order());
}

/// For SparseLU, which eliminates rows: COLAMD of the transposed matrix.
template <Scalar T>
std::vector<std::size_t> colamd(const SparseMatrix<T>& a) {
  detail::Compressed c = detail::compressed(a, true);
  const int n = int(a.order());
  c.indices.resize(colamd_recommended(int(a.entries()), n, n));
  int stats[COLAMD_STATS];
  if (c.indices.empty() ||
      ::colamd(n, n, int(c.indices.size()), c.indices.data(), c.starts.data(), nullptr, stats) == 0) {
    throw std::bad_alloc();
  }
  return detail::order_of(c.starts, a.order());
}

}  // namespace tesk2mp::suitesparse

#endif

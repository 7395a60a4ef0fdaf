// Products of a sparse matrix and a vector with one rounding of each result: the terms of a row are collected, then
// summed exactly.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "number/exact/dispatch.h"
#include "number/exact/sparse_row.h"
#include "quarn/exact.h"
#include "quarn/parallel.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {
namespace {

/// The entries of each row. An entry's name is twice its place, and one more for its mirrored place.
class Rows {
 public:
  template <class T>
  Rows(std::size_t n, const QuarnSparseMatrix<T>& a, bool mirror) : starts_(n + 1, 0) {
    bool sorted = !mirror;
    for (std::size_t k = 0; k < a.entries; ++k) {
      ++starts_[std::size_t(a.rows[k])];
      sorted = sorted && (k == 0 || a.rows[k - 1] <= a.rows[k]);
      if (mirror && a.rows[k] != a.columns[k]) {
        ++starts_[std::size_t(a.columns[k])];
      }
    }
    for (std::size_t i = 0; i < n; ++i) {
      starts_[i + 1] += starts_[i];
    }
    if (sorted) {
      return;
    }
    names_.resize(starts_[n]);
    columns_.resize(starts_[n]);
    // Each row's start moves to the next one's, which is put right afterwards.
    for (std::size_t k = 0; k < a.entries; ++k) {
      add(a.rows[k], a.columns[k], std::uint32_t(2 * k));
      if (mirror && a.rows[k] != a.columns[k]) {
        add(a.columns[k], a.rows[k], std::uint32_t(2 * k + 1));
      }
    }
    std::move_backward(starts_.begin(), starts_.end() - 1, starts_.end());
    starts_[0] = 0;
  }

  std::size_t begin(std::size_t row) const { return starts_[row]; }
  std::size_t end(std::size_t row) const { return starts_[row + 1]; }
  bool in_place() const { return names_.empty(); }
  const std::uint32_t* names() const { return names_.data(); }
  const Integer* columns() const { return columns_.data(); }

 private:
  void add(Integer row, Integer column, std::uint32_t name) {
    const std::size_t place = starts_[std::size_t(row) - 1]++;
    names_[place] = name;
    columns_[place] = column;
  }

  std::vector<std::size_t> starts_;
  std::vector<std::uint32_t> names_;
  std::vector<Integer> columns_;
};

constexpr std::size_t kAhead = 16;  // entries

template <class T>
void sparse_product(std::size_t n, const QuarnSparseMatrix<T>& a, const T* x, T* y, unsigned how) {
  const Rows rows(n, a, (how & QuarnMirrored) != 0);
  const Rounder rounder;
  std::vector<T> made(n);
  const auto do_rows = [&](std::size_t first, std::size_t last) {
    Prospects prospects;
    for (std::size_t i = first; i < last; ++i) {
      const std::size_t begin = rows.begin(i);
      const std::size_t end = rows.end(i);
      if (begin == end) {
        continue;
      }
      SparseRow row = sparse_row(a.values, a.columns, x, end - begin, (how & QuarnConjugateA) != 0);
      if (rows.in_place()) {
        // What later rows take comes while this one is summed.
        for (std::size_t k = begin + kAhead; k < std::min(end + kAhead, a.entries); ++k) {
          __builtin_prefetch(&a.values[k]);
          __builtin_prefetch(&x[a.columns[k] - 1]);
        }
        row.values = parts_of(a.values + begin);
        row.columns += begin;
      } else {
        row.names = rows.names() + begin;
        row.columns = rows.columns() + begin;
      }
      round_row(made[i], row, rounder, prospects);
    }
  };
  // Less does not pay for starting threads.
  constexpr std::size_t kWorthThreads = 10'000;
  const std::size_t parts = a.entries < kWorthThreads ? 1 : std::min(n, 8 * std::size_t(QuarnThreads()));
  if (n > 0) {
    QuarnParallelFor(parts, [&](std::size_t part) { do_rows(n * part / parts, n * (part + 1) / parts); });
  }
  std::move(made.begin(), made.end(), y);
}

}  // namespace
}  // namespace quarn::exact

void QuarnSparseProduct(std::size_t n, const QuarnSparseMatrix<QuarnFloat>& a, const QuarnFloat* x, QuarnFloat* y,
                        unsigned how) {
  quarn::exact::sparse_product(n, a, x, y, how);
}

void QuarnSparseProduct(std::size_t n, const QuarnSparseMatrix<Complex>& a, const Complex* x, Complex* y,
                        unsigned how) {
  quarn::exact::sparse_product(n, a, x, y, how);
}

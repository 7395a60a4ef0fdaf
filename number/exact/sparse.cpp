// Products of a sparse matrix and a vector with one rounding of each result: the terms of a row are collected, then
// summed exactly.
#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "number/exact/dispatch.h"
#include "number/exact/dot.h"
#include "number/exact/leading.h"
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
    // Each row's start moves to the next one's, which is put right afterwards.
    for (std::size_t k = 0; k < a.entries; ++k) {
      names_[starts_[std::size_t(a.rows[k]) - 1]++] = std::uint32_t(2 * k);
      if (mirror && a.rows[k] != a.columns[k]) {
        names_[starts_[std::size_t(a.columns[k]) - 1]++] = std::uint32_t(2 * k + 1);
      }
    }
    std::move_backward(starts_.begin(), starts_.end() - 1, starts_.end());
    starts_[0] = 0;
  }

  std::size_t begin(std::size_t row) const { return starts_[row]; }
  std::size_t end(std::size_t row) const { return starts_[row + 1]; }
  bool in_place() const { return names_.empty(); }
  std::uint32_t operator[](std::size_t place) const { return names_[place]; }
  std::size_t longest() const {
    std::size_t longest = 0;
    for (std::size_t i = 1; i < starts_.size(); ++i) {
      longest = std::max(longest, starts_[i] - starts_[i - 1]);
    }
    return longest;
  }

 private:
  std::vector<std::size_t> starts_;
  std::vector<std::uint32_t> names_;
};

/// The terms of a result, or of both parts of a complex one.
template <class T>
class Terms {
 public:
  static constexpr std::size_t kParts = std::is_same_v<T, Complex> ? 2 : 1;

  explicit Terms(std::size_t longest) {
    for (std::vector<Term>& list : lists_) {
      list.resize(kParts * longest);
    }
  }

  void clear() { count_ = 0; }
  void add(const T& a, const T& x, bool conjugate) {
    if constexpr (kParts == 1) {
      lists_[0][count_++] = {&a, &x, false};
    } else {
      lists_[0][count_] = {&a.re, &x.re, false};
      lists_[1][count_++] = {&a.re, &x.im, false};
      lists_[0][count_] = {&a.im, &x.im, !conjugate};
      lists_[1][count_++] = {&a.im, &x.re, conjugate};
    }
  }
  void round(T& y, const Rounder& rounder, Prospects& prospects) const {
    if constexpr (kParts == 1) {
      round_list(y, 0, rounder, prospects);
    } else {
      round_list(y.re, 0, rounder, prospects);
      round_list(y.im, 1, rounder, prospects);
    }
  }

 private:
  void round_list(QuarnFloat& y, int part, const Rounder& rounder, Prospects& prospects) const {
    const TermList list{lists_[part].data(), count_};
    if (!prospects.decides(y, list, rounder)) {
      rounded_whole_total(y, list, rounder, false);
    }
  }

  std::vector<Term> lists_[kParts];
  std::size_t count_ = 0;
};

constexpr std::size_t kAhead = 16;  // entries

template <class T>
void sparse_product(std::size_t n, const QuarnSparseMatrix<T>& a, const T* x, T* y, unsigned how) {
  const bool conjugate = (how & QuarnConjugateA) != 0;
  const Rows rows(n, a, (how & QuarnMirrored) != 0);
  const std::size_t longest = rows.longest();
  const Rounder rounder;
  std::vector<T> made(n);
  const auto do_rows = [&](std::size_t first, std::size_t last) {
    Terms<T> terms(longest);
    Prospects prospects;
    for (std::size_t i = first; i < last; ++i) {
      const std::size_t begin = rows.begin(i);
      const std::size_t end = rows.end(i);
      terms.clear();
      if (rows.in_place()) {
        // What later rows take comes while this one is summed.
        for (std::size_t k = begin + kAhead; k < std::min(end + kAhead, a.entries); ++k) {
          __builtin_prefetch(&a.values[k]);
          __builtin_prefetch(&x[a.columns[k] - 1]);
        }
        if constexpr (std::is_same_v<T, QuarnFloat>) {
          if (prospects.decides(made[i], SparseRow{a.values + begin, a.columns + begin, x, end - begin}, rounder)) {
            continue;
          }
        }
        for (std::size_t k = begin; k < end; ++k) {
          terms.add(a.values[k], x[a.columns[k] - 1], conjugate);
        }
      } else {
        for (std::size_t place = begin; place < end; ++place) {
          const std::size_t k = rows[place] / 2;
          const bool mirrored = rows[place] % 2 != 0;
          terms.add(a.values[k], x[(mirrored ? a.rows[k] : a.columns[k]) - 1], conjugate != mirrored);
        }
      }
      terms.round(made[i], rounder, prospects);
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

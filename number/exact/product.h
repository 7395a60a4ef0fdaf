// Matrix products in which every entry is rounded once.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <vector>

#include "number/exact/dispatch.h"
#include "number/exact/dot.h"
#include "number/exact/pack.h"
#include "number/exact/tables.h"
#include "quarn/parallel.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {

/// Scalars of C := alpha A B + beta C. Weights of 0 and +-1 cost nothing; others are applied to the exact total.
struct Weights {
  const QuarnFloat* alpha[2] = {nullptr, nullptr};  // parts, the second one null when it is zero
  const QuarnFloat* beta[2] = {nullptr, nullptr};   // the first one null as well: C is not read
};

/// One product of `rows` by `inner` by `columns` real numbers (see operand.h for complex ones), none of them 0.
class Product {
 public:
  Product(std::size_t rows, std::size_t columns, std::size_t inner, const Grid& a, const Grid& b,
          const Weights& weights, QuarnFloat* c, std::ptrdiff_t c_row, std::ptrdiff_t c_column, unsigned parts);

  /// Throws std::bad_alloc, with C unchanged.
  void run();

 private:
  /// Digits of 10^6 up to which lines are done by residues, and the cost.
  struct Choice {
    std::int64_t left = -1;
    std::int64_t right = -1;
    const Kernel* kernel = nullptr;
    double cost = 0;
  };
  struct Block {
    std::size_t first;
    std::size_t size;
  };
  struct Operands;
  struct Cut;
  // Limbs in front of a total that an old value is added to.
  static constexpr std::size_t kHead = 18 / Radix::digits;

  QuarnFloat* old_value(std::size_t i, std::size_t j) const noexcept {
    return c_ + std::ptrdiff_t(i) * c_row_ + std::ptrdiff_t(j >> parts_) * c_column_ + (j & parts_);
  }
  /// Results are made beside C where storage may run out on the way.
  QuarnFloat& result(std::size_t i, std::size_t j) noexcept {
    return aside_.empty() ? *old_value(i, j) : aside_[i + j * rows_];
  }

  /// body(thread, index) for each index, by so many threads that each has a number of its own.
  template <class Body>
  void share(std::size_t count, const Body& body) const {
    std::atomic<std::size_t> next = 0;
    QuarnParallelFor(std::min(threads_, count), [&](std::size_t thread) {
      const PlainRounding rounding;
      for (std::size_t i = next++; i < count; i = next++) {
        QuarnCheckInterrupt();
        body(thread, i);
      }
    });
  }

  void look_at_lines();
  Choice choose() const;
  double cost_of_total(std::int64_t left, std::int64_t right) const;
  double cost_by_residues(const Kernel& kernel, std::int64_t left, std::int64_t right) const;
  Cut cut(std::size_t primes) const;
  void by_residues();
  void pack(Operands& work, Block rows, Block columns, Block inner);
  void pack_left(Operands& work, std::size_t thread, Block rows, Block inner, std::size_t place);
  void pack_right(Operands& work, std::size_t thread, Block columns, Block inner, std::size_t place);
  void finish_tile(Operands& work, std::size_t thread, double* sums, std::size_t first_row, std::size_t first_column);
  void finish_column(Operands& work, std::size_t thread, double* sums, std::size_t first_row, std::size_t j);
  void finish_weighted(Operands& work, std::size_t thread, double* sums, std::size_t step, std::size_t first_row,
                       std::size_t j);
  void by_leading_limbs();
  void move_results();
  void one_by_one();
  void tile_by_sums(std::size_t first_row, std::size_t first_column);
  void store_total(std::size_t i, std::size_t j, const Total& total, bool zero);
  void store_totals(std::size_t i, std::size_t j, const Total* totals, const bool* zero);
  void add_old_value(QuarnFloat& to, std::size_t i, std::size_t j, Total total);
  void entry(std::size_t i, std::size_t j);
  void weighted_entry(std::size_t i, std::size_t j);
  void store_weighted(std::size_t i, std::size_t j, const Total* totals);
  void term_by_term(std::size_t i, std::size_t j);
  Row row(std::size_t i, std::size_t j) const;
  Row terms_of(std::size_t i, std::size_t j) const;

  std::size_t rows_;
  std::size_t columns_;
  std::size_t inner_;
  Grid a_;
  Grid b_;
  Weights weights_;
  QuarnFloat* c_;
  std::ptrdiff_t c_row_;
  std::ptrdiff_t c_column_;
  unsigned parts_;
  bool negate_ = false;    // alpha is -1
  bool weighted_ = false;  // alpha is neither 1 nor -1, or beta is complex
  bool finite_weights_ = true;
  bool beta_is_unit_ = false;
  const Kernel* kernel_;
  std::size_t threads_ = 1;
  Rounder rounder_;
  std::vector<Line> left_;
  std::vector<Line> right_;
  std::vector<QuarnFloat> aside_;
};

}  // namespace quarn::exact

// How a product is done: by residues, entry by entry, or some of its rows and columns so and the others so.
#include "number/exact/product.h"

#include <algorithm>
#include <utility>

#include "number/exact/aligned.h"
#include "number/exact/leading.h"

namespace quarn::exact {
namespace {

bool is_unit(const QuarnFloat& x) { return x == 1 || x == -1; }

/// Nanoseconds of a term of a total, operands as long as the working precision.
double cost_of_term(int digits) {
  const int limbs = digits / Radix::digits + 1;
  const double n = limbs;
  if constexpr (Radix::digits == 18) {
    return n <= 7 ? 10 + 1.4 * n * (n + 1) : 60 + 8 * n + 0.65 * n * n;
  }
  return 120 + 25 * n + 3 * n * n;
}

}  // namespace

Product::Product(std::size_t rows, std::size_t columns, std::size_t inner, const Grid& a, const Grid& b,
                 const Weights& weights, QuarnFloat* c, std::ptrdiff_t c_row, std::ptrdiff_t c_column, unsigned parts)
    : rows_(rows),
      columns_(columns),
      inner_(inner),
      a_(a),
      b_(b),
      weights_(weights),
      c_(c),
      c_row_(c_row),
      c_column_(c_column),
      parts_(parts),
      kernel_(kernel_in_use()) {
  weighted_ = weights.alpha[1] != nullptr || weights.beta[1] != nullptr || !is_unit(*weights.alpha[0]);
  for (const QuarnFloat* const alpha : weights.alpha) {
    finite_weights_ = finite_weights_ && (alpha == nullptr || isfinite(*alpha));
  }
  negate_ = !weighted_ && signbit(*weights.alpha[0]);
  beta_is_unit_ = weights.beta[0] != nullptr && is_unit(*weights.beta[0]);
}

void Product::run() {
  // Less does not pay for starting threads.
  const auto threads_for = [](double cost) { return cost < 500'000 ? 1 : std::size_t(QuarnThreads()); };
  if (std::min(rows_, columns_) == 1 && !weighted_ && leading_totals(rounder_)) {
    constexpr double kLeadingTerm = 20;
    threads_ = threads_for(double(rows_) * double(columns_) * double(inner_) * kLeadingTerm);
    return by_leading_limbs();
  }
  look_at_lines();
  const Choice choice = choose();
  threads_ = threads_for(choice.cost);
  for (Line& line : left_) {
    line.exactly = !line.finite || line.digits() > choice.left;
  }
  for (Line& line : right_) {
    line.exactly = !line.finite || line.digits() > choice.right;
  }
  const auto by_entry = [](const Line& line) { return line.exactly; };
  const bool all_left = std::none_of(left_.begin(), left_.end(), by_entry);
  const bool all_right = std::none_of(right_.begin(), right_.end(), by_entry);
  // Short results by residues alone allocate nothing once the work has begun.
  constexpr int kNeverAllocates = 90;
  const bool other_weights = weighted_ || (weights_.beta[0] != nullptr);
  if (rounder_.digits() > kNeverAllocates || !all_left || !all_right || other_weights) {
    aside_.resize(rows_ * columns_);
  }
  if (choice.kernel != nullptr) {
    kernel_ = choice.kernel;
    by_residues();
  }
  if (!all_left || !all_right) {
    one_by_one();
  }
  move_results();
}

void Product::move_results() {
  if (!aside_.empty()) {
    for (std::size_t j = 0; j < columns_; ++j) {
      for (std::size_t i = 0; i < rows_; ++i) {
        *old_value(i, j) = std::move(aside_[i + j * rows_]);
      }
    }
  }
}

void Product::look_at_lines() {
  left_.resize(rows_);
  right_.resize(columns_);
  const bool rows_first = std::abs(a_.row) <= std::abs(a_.column);
  for (std::size_t outer = 0; outer < (rows_first ? inner_ : rows_); ++outer) {
    for (std::size_t within = 0; within < (rows_first ? rows_ : inner_); ++within) {
      const std::size_t i = rows_first ? within : outer;
      left_[i].take(*a_.left(i, rows_first ? outer : within).number);
    }
  }
  const bool columns_first = std::abs(b_.column) < std::abs(b_.row);
  for (std::size_t outer = 0; outer < (columns_first ? inner_ : columns_); ++outer) {
    for (std::size_t within = 0; within < (columns_first ? columns_ : inner_); ++within) {
      const std::size_t j = columns_first ? within : outer;
      right_[j].take(*b_.right(columns_first ? outer : within, j).number);
    }
  }
}

double Product::cost_by_residues(const Kernel& kernel, std::int64_t left, std::int64_t right) const {
  if (left + right > kMaxDigits) {
    return 1e300;
  }
  const int primes = primes_for(inner_, int(left + right));
  if (primes > kMaxPrimes) {
    return 1e300;
  }
  const auto padded = [](std::size_t n, int step) {
    const std::size_t steps = (n + std::size_t(step) - 1) / std::size_t(step);
    return double(steps * std::size_t(step));
  };
  const double m = padded(rows_, kernel.group);
  const double n = padded(columns_, kernel.panel);
  const double k = double(inner_);
  const double p = primes * (kernel.step * 1e-3);
  const auto packing = [&](double lines, std::int64_t digits) { return lines * k * (12 + double(digits) * (2.5 + p)); };
  const double finishing = m * n * (double(left + right + 2) * (p + 2) + 30);
  return m * n * k * p + packing(m, left) + packing(n, right) + finishing + 1000;
}

/// Nanoseconds of an entry by sums of limbs, for lines of so many digits of 10^6.
double Product::cost_of_total(std::int64_t left, std::int64_t right) const {
  constexpr double kRounding = 150;
  constexpr double kAlignedRounding = 70;
  const auto shared = [](std::size_t n) { return 1 / double(std::min(n, kTileEdge)); };
  const int limbs = int(std::min<std::int64_t>(std::max(left, right) / 3 + 1, 100));
  const double aligned = cost_of_aligned_term(limbs) + kCostOfAligning * (shared(rows_) + shared(columns_));
  const double inner = double(inner_);
  return std::min(inner * cost_of_term(rounder_.digits()) + kRounding, inner * aligned + kAlignedRounding);
}

Product::Choice Product::choose() const {
  Choice best;
  if (!finite_weights_) {
    return best;
  }
  const auto sorted_digits = [](const std::vector<Line>& lines) {
    std::vector<std::int64_t> digits;
    for (const Line& line : lines) {
      if (line.finite) {
        digits.push_back(std::max<std::int64_t>(line.digits(), 1));
      }
    }
    std::sort(digits.begin(), digits.end());
    return digits;
  };
  const std::vector<std::int64_t> left = sorted_digits(left_);
  const std::vector<std::int64_t> right = sorted_digits(right_);
  if (left.empty() || right.empty()) {
    return best;
  }
  const double term = cost_of_total(left[left.size() / 2], right[right.size() / 2]);
  best.cost = double(rows_) * double(columns_) * term;
  if (kernel_ == nullptr) {
    return best;
  }
  // All lines, or without the widest ones.
  for (const int percent : {100, 95, 75, 50}) {
    const auto at = [percent](const std::vector<std::int64_t>& digits) {
      return (digits.size() - 1) * std::size_t(percent) / 100;
    };
    const std::int64_t limit_left = left[at(left)];
    const std::int64_t limit_right = right[at(right)];
    const auto within = [](const std::vector<std::int64_t>& digits, std::int64_t limit) {
      return double(std::upper_bound(digits.begin(), digits.end(), limit) - digits.begin());
    };
    const double others = double(rows_) * double(columns_) - within(left, limit_left) * within(right, limit_right);
    // Narrower vectors waste less of a small matrix.
    for (const Kernel* const kernel : {kernel_, narrowest_kernel()}) {
      const double cost = cost_by_residues(*kernel, limit_left, limit_right) + others * term;
      if (cost < best.cost) {
        best = {limit_left, limit_right, kernel, cost};
      }
    }
  }
  return best;
}

}  // namespace quarn::exact

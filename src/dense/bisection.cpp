// Bisection: W. Givens's counts of sign changes, as in W. Barth, R. S. Martin, J. H. Wilkinson, Calculation of the
// eigenvalues of a symmetric tridiagonal matrix by the method of bisection, Numer. Math. 9 (1967), and xSTEBZ of E.
// Anderson et al., LAPACK Users' Guide. Where an interval holds a single eigenvalue, Newton's iteration on the
// determinant takes steps that pass it by a little, so that the interval shrinks from both ends and the digits double.
#include "src/dense/bisection.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "quarn/quarnthread.h"
#include "src/dense/power_of_ten.h"
#include "src/frame/constants.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

/// An interval (low, high] with the numbers of eigenvalues that are not above its ends.
struct Bracket {
  QuarnFloat low;
  QuarnFloat high;
  Integer below_low;
  Integer below_high;

  Integer count() const { return below_high - below_low; }
  QuarnFloat width() const { return high - low; }
  QuarnFloat middle() const { return low + width() * QuarnFloat(0.5); }
};

/// Rows of a tridiagonal matrix that negligible elements do not couple with others.
class Block {
 public:
  Block(Integer n, const QuarnFloat* d, const QuarnFloat* squares) : n_(n), d_(d), squares_(squares) {
    QuarnFloat largest = 1;
    for (Integer i = 0; i + 1 < n; ++i) {
      largest = std::max(largest, squares[i]);
    }
    smallest_pivot_ = smallest_number() * largest;
  }

  Integer order() const { return n_; }
  const QuarnFloat& first() const { return d_[0]; }

  /// How many eigenvalues are not above x; step: Newton's from x, when it is wanted.
  Integer count(const QuarnFloat& x, QuarnFloat* step = nullptr) const {
    QuarnCheckInterrupt();
    Integer negative = 0;
    QuarnFloat pivot;
    QuarnFloat slope;  // derivative of the pivot over the pivot
    QuarnFloat sum;
    for (Integer i = 0; i < n_; ++i) {
      QuarnFloat next = d_[i] - x;
      QuarnFloat next_slope = -1;
      if (i > 0) {
        const QuarnFloat taken = squares_[i - 1] / pivot;
        next -= taken;
        if (step != nullptr) {
          next_slope += taken * slope;
        }
      }
      if (fabs(next) < smallest_pivot_) {
        next = -smallest_pivot_;
      }
      negative += next < 0 ? 1 : 0;
      pivot = std::move(next);
      if (step != nullptr) {
        slope = next_slope / pivot;
        sum += slope;
      }
    }
    if (step != nullptr) {
      *step = sum == 0 ? QuarnFloat("inf") : -1 / sum;
    }
    return negative;
  }

  /// Bounds of all eigenvalues.
  Bracket whole(const QuarnFloat& ulp) const {
    QuarnFloat low = d_[0];
    QuarnFloat high = d_[0];
    QuarnFloat before;
    for (Integer i = 0; i < n_; ++i) {
      QuarnFloat beside = i + 1 < n_ ? sqrt(squares_[i]) : QuarnFloat();
      const QuarnFloat radius = before + beside;
      before = std::move(beside);
      low = std::min(low, d_[i] - radius);
      high = std::max(high, d_[i] + radius);
    }
    const QuarnFloat spare = (2 * n_ + 2) * ulp * std::max(fabs(low), fabs(high)) + 2 * smallest_pivot_;
    return {low - spare, high + spare, 0, n_};
  }

 private:
  Integer n_;
  const QuarnFloat* d_;
  const QuarnFloat* squares_;
  QuarnFloat smallest_pivot_;
};

class Bisection {
 public:
  Bisection(const QuarnFloat& ulp, const QuarnFloat& tolerance) : ulp_(ulp), tolerance_(tolerance) {}

  /// To the tolerance, or to two units of the last place: neighbouring numbers are up to one unit apart.
  bool narrow(const Bracket& bracket) const {
    return bracket.width() <= std::max(tolerance_, 4 * ulp_ * std::max(fabs(bracket.low), fabs(bracket.high)));
  }

  /// The eigenvalues in the bracket, ascending.
  void find(const Block& block, const Bracket& bracket, std::vector<QuarnFloat>& found) const {
    if (bracket.count() < 1) {
      return;
    }
    if (narrow(bracket)) {
      found.insert(found.end(), std::size_t(bracket.count()), bracket.middle());
      return;
    }
    if (bracket.count() == 1) {
      found.push_back(find_single(block, bracket));
      return;
    }
    const QuarnFloat middle = bracket.middle();
    const Integer below = within(bracket, block.count(middle));
    find(block, {bracket.low, middle, bracket.below_low, below}, found);
    find(block, {middle, bracket.high, below, bracket.below_high}, found);
  }

  /// The interval (low, high] with the eigenvalues first ... last, and perhaps others as close as roundings.
  Bracket around(const Block& block, Integer first, Integer last) const {
    const Bracket whole = block.whole(ulp_);
    const Bracket lower = cut(block, whole, first - 1);
    const Bracket upper = cut(block, whole, last);
    return {lower.low, upper.high, lower.below_low, upper.below_high};
  }

 private:
  static Integer within(const Bracket& bracket, Integer count) {
    return std::min(std::max(count, bracket.below_low), bracket.below_high);
  }

  /// A bracket whose ends have at most and at least `wanted` eigenvalues below them: as narrow as it takes for both to
  /// have exactly so many.
  Bracket cut(const Block& block, Bracket bracket, Integer wanted) const {
    if (wanted <= bracket.below_low) {
      return {bracket.low, bracket.low, bracket.below_low, bracket.below_low};
    }
    if (wanted >= bracket.below_high) {
      return {bracket.high, bracket.high, bracket.below_high, bracket.below_high};
    }
    while (!narrow(bracket)) {
      const QuarnFloat middle = bracket.middle();
      const Integer below = within(bracket, block.count(middle));
      if (below == wanted) {
        return {middle, middle, below, below};
      }
      if (below < wanted) {
        bracket.low = middle;
        bracket.below_low = below;
      } else {
        bracket.high = middle;
        bracket.below_high = below;
      }
    }
    return bracket;
  }

  QuarnFloat find_single(const Block& block, Bracket bracket) const {
    constexpr int kPatience = 3;  // steps in which the interval must be halved
    const QuarnFloat room = bracket.width();
    QuarnFloat goal = room;
    int patience = 0;
    QuarnFloat x = bracket.middle();
    while (!narrow(bracket)) {
      QuarnFloat step;
      const bool below = block.count(x, &step) <= bracket.below_low;
      (below ? bracket.low : bracket.high) = x;
      const QuarnFloat width = bracket.width();
      if (2 * width <= goal) {
        goal = width;
        patience = kPatience;
      }
      // Beyond the eigenvalue by what the step may be wrong by.
      QuarnFloat beyond = 2 * step * step / room;
      beyond = std::max(beyond, QuarnFloat(0.25) * std::max(tolerance_, 4 * ulp_ * fabs(x)));
      QuarnFloat next = x + step + (below ? beyond : -beyond);
      x = patience-- > 0 && next > bracket.low && next < bracket.high ? std::move(next) : bracket.middle();
    }
    return bracket.middle();
  }

  QuarnFloat ulp_;
  QuarnFloat tolerance_;
};

/// The eigenvalues of one block that the selection may hold.
std::vector<QuarnFloat> of_block(const Bisection& bisection, const QuarnFloat& ulp, const Block& block,
                                 const QuarnFloat* low, const QuarnFloat* high) {
  if (block.order() == 1) {
    const bool inside = (low == nullptr || block.first() > *low) && (high == nullptr || block.first() <= *high);
    return std::vector<QuarnFloat>(inside ? 1 : 0, block.first());
  }
  Bracket bracket = block.whole(ulp);
  if (low != nullptr && *low > bracket.low) {
    bracket.low = std::min(*low, bracket.high);
    bracket.below_low = block.count(bracket.low);
  }
  if (high != nullptr && *high < bracket.high) {
    bracket.high = std::max(*high, bracket.low);
    bracket.below_high = std::max(bracket.below_low, block.count(bracket.high));
  }
  std::vector<QuarnFloat> found;
  bisection.find(block, bracket, found);
  return found;
}

/// Without the smallest and the largest ones, so many of them.
void discard(ChosenEigenvalues& chosen, Integer smallest, Integer largest) {
  const std::vector<std::size_t> order = ascending(chosen);
  std::vector<bool> kept(order.size(), true);
  for (std::size_t i = 0; i < order.size(); ++i) {
    kept[order[i]] = Integer(i) >= smallest && Integer(order.size() - i) > largest;
  }
  ChosenEigenvalues rest{{}, {}, chosen.split};
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (kept[i]) {
      rest.w.push_back(chosen.w[i]);
      rest.block.push_back(chosen.block[i]);
    }
  }
  chosen = std::move(rest);
}

}  // namespace

std::vector<std::size_t> ascending(const ChosenEigenvalues& chosen) {
  std::vector<std::size_t> order(chosen.w.size());
  std::iota(order.begin(), order.end(), std::size_t(0));
  std::stable_sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return chosen.w[i] < chosen.w[j]; });
  return order;
}

ChosenEigenvalues bisect(const Selection& selection, Integer n, OneBasedVector<QuarnFloat> d,
                         OneBasedVector<QuarnFloat> e, const QuarnFloat& tolerance) {
  ChosenEigenvalues chosen;
  if (n < 1) {
    return chosen;
  }
  const QuarnFloat ulp = 5 * epsilon();
  std::vector<QuarnFloat> diagonal;
  std::vector<QuarnFloat> squares;
  QuarnFloat norm;
  for (Integer i = 1; i <= n; ++i) {
    diagonal.push_back(d(i));
    norm = std::max(norm, fabs(d(i)));
    if (i < n) {
      const QuarnFloat square = e(i) * e(i);
      const bool negligible = square <= fabs(d(i) * d(i + 1)) * ulp * ulp;
      squares.push_back(negligible ? QuarnFloat() : square);
      norm = std::max(norm, fabs(e(i)));
      if (negligible) {
        chosen.split.push_back(i);
      }
    }
  }
  chosen.split.push_back(n);
  squares.emplace_back();
  const Bisection bisection(ulp, tolerance > 0 ? std::max(tolerance, ulp * ulp * norm) : ulp * norm);
  const bool by_indices = selection.kind == Selection::Kind::indices;
  Bracket around;
  if (by_indices) {
    around = bisection.around(Block(n, diagonal.data(), squares.data()), selection.first, selection.last);
  } else if (selection.kind == Selection::Kind::interval) {
    around = {selection.low, selection.high, 0, 0};
  }
  const bool all = selection.kind == Selection::Kind::all;
  Integer first = 0;
  for (std::size_t b = 0; b < chosen.split.size(); ++b) {
    const Block block(chosen.split[b] - first, &diagonal[std::size_t(first)], &squares[std::size_t(first)]);
    for (QuarnFloat& w : of_block(bisection, ulp, block, all ? nullptr : &around.low, all ? nullptr : &around.high)) {
      chosen.w.push_back(std::move(w));
      chosen.block.push_back(Integer(b + 1));
    }
    first = chosen.split[b];
  }
  if (by_indices) {
    const Integer surplus = Integer(chosen.w.size()) - (selection.last - selection.first + 1);
    const Integer smallest = std::min(std::max<Integer>(0, selection.first - 1 - around.below_low), surplus);
    discard(chosen, smallest, std::max<Integer>(0, surplus - smallest));
  }
  return chosen;
}

}  // namespace tesk

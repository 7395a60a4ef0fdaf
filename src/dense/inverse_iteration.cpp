// Inverse iteration: G. Peters, J. H. Wilkinson, The calculation of specified eigenvectors by inverse iteration, in J.
// H. Wilkinson, C. Reinsch, Handbook for Automatic Computation 2, Springer 1971; xSTEIN of E. Anderson et al., LAPACK
// Users' Guide.
#include <algorithm>
#include <cstdint>

#include "quarn/quarnthread.h"
#include "src/dense/bisection.h"
#include "src/dense/householder.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

/// The factors of T - x I with row interchanges, T tridiagonal: U has two diagonals above its main one.
class ShiftedFactors {
 public:
  ShiftedFactors(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, const QuarnFloat& x,
                 const QuarnFloat& smallest)
      : rows_(std::size_t(n)) {
    rows_[0].pivot = d(1) - x;
    rows_[0].next = n > 1 ? e(1) : QuarnFloat();
    for (Integer i = 1; i < n; ++i) {
      Row& row = rows_[std::size_t(i - 1)];
      Row& below = rows_[std::size_t(i)];
      QuarnFloat diagonal = d(i + 1) - x;
      const QuarnFloat beside = i + 1 < n ? e(i + 1) : QuarnFloat();
      row.swapped = fabs(e(i)) > fabs(row.pivot);
      if (row.swapped) {
        row.factor = row.pivot / e(i);
        below.pivot = row.next - row.factor * diagonal;
        below.next = -row.factor * beside;
        row.pivot = e(i);
        row.next = std::move(diagonal);
        row.second = beside;
      } else {
        row.factor = row.pivot == 0 ? QuarnFloat() : e(i) / row.pivot;
        below.pivot = diagonal - row.factor * row.next;
        below.next = beside;
      }
    }
    for (Row& row : rows_) {
      if (fabs(row.pivot) < smallest) {
        row.pivot = row.pivot < 0 ? -smallest : smallest;
      }
    }
  }

  void solve(std::vector<QuarnFloat>& y) const {
    const std::size_t n = rows_.size();
    for (std::size_t i = 0; i + 1 < n; ++i) {
      if (rows_[i].swapped) {
        std::swap(y[i], y[i + 1]);
      }
      y[i + 1] -= rows_[i].factor * y[i];
    }
    for (std::size_t i = n; i-- > 0;) {
      QuarnFloat sum = std::move(y[i]);
      if (i + 1 < n) {
        sum -= rows_[i].next * y[i + 1];
      }
      if (i + 2 < n) {
        sum -= rows_[i].second * y[i + 2];
      }
      y[i] = sum / rows_[i].pivot;
    }
  }

 private:
  struct Row {
    QuarnFloat pivot;
    QuarnFloat next;
    QuarnFloat second;
    QuarnFloat factor;
    bool swapped = false;
  };
  std::vector<Row> rows_;
};

/// The eigenvectors of one block, a neighbour after the other.
class BlockVectors {
 public:
  /// error: of the eigenvalues.
  BlockVectors(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, const QuarnFloat& error)
      : n_(n), d_(d), e_(e), error_(error) {
    for (Integer i = 1; i <= n; ++i) {
      norm_ =
          std::max(norm_, fabs(d(i)) + (i > 1 ? fabs(e(i - 1)) : QuarnFloat()) + (i < n ? fabs(e(i)) : QuarnFloat()));
    }
  }

  /// The vector for eigenvalue x, not below the one before; whether it converged.
  bool next(const QuarnFloat& x, std::vector<QuarnFloat>& y) {
    y.assign(std::size_t(n_), QuarnFloat(1));
    if (n_ == 1) {
      return true;
    }
    const bool follows = !group_.empty();
    QuarnFloat shift = x;
    if (follows) {
      const QuarnFloat apart = 10 * ulp_ * fabs(x);
      shift = std::max(shift, former_ + apart);
      if (shift - former_ > norm_ / 1000) {
        group_.clear();
      }
    }
    const bool converged = iterate(ShiftedFactors(n_, d_, e_, shift, ulp_ * norm_), y);
    former_ = std::move(shift);
    group_.push_back(y);
    return converged;
  }

 private:
  bool iterate(const ShiftedFactors& factors, std::vector<QuarnFloat>& y) {
    constexpr int kMostSteps = 8;
    constexpr int kMoreSteps = 2;  // after the first one that was good
    const QuarnFloat limit = 4 * QuarnFloat(n_) * sqrt(QuarnFloat(n_)) * error_;
    start(y);
    QuarnFloat size = norm_of(y);
    int good = 0;
    for (int step = 0; step < kMostSteps && good <= kMoreSteps; ++step) {
      QuarnCheckInterrupt();
      normalise(y, size);
      factors.solve(y);
      for (const std::vector<QuarnFloat>& known : group_) {
        const OneBasedVector<QuarnFloat> z(const_cast<QuarnFloat*>(known.data()), 1);
        const OneBasedVector<QuarnFloat> own(y.data(), 1);
        add_multiple(n_, -QuarnDot(y.size(), known.data(), 1, y.data(), 1), z, own);
      }
      // y had norm 1: its residual is 1 / norm(y).
      size = norm_of(y);
      good += size * limit >= 1 ? 1 : 0;
    }
    normalise(y, size);
    return good > 0;
  }

  /// Numbers that look random, the same in every run.
  void start(std::vector<QuarnFloat>& y) {
    for (QuarnFloat& element : y) {
      state_ = state_ * 1664525U + 1013904223U;
      element = QuarnFloat(std::int32_t(state_ >> 8U) - (1 << 23U));
    }
  }

  QuarnFloat norm_of(const std::vector<QuarnFloat>& y) const {
    return sqrt(QuarnDot(y.size(), y.data(), 1, y.data(), 1));
  }

  /// From this norm to norm 1, with a positive element of largest magnitude.
  void normalise(std::vector<QuarnFloat>& y, const QuarnFloat& size) const {
    const OneBasedVector<QuarnFloat> x(y.data(), 1);
    if (size == 0) {
      y[0] = 1;
      return;
    }
    scale(n_, (x(index_of_largest(n_, x)) < 0 ? -1 : 1) / size, x);
  }

  Integer n_;
  OneBasedVector<QuarnFloat> d_;
  OneBasedVector<QuarnFloat> e_;
  QuarnFloat norm_;
  QuarnFloat ulp_ = 5 * epsilon();
  QuarnFloat error_;
  QuarnFloat former_;
  std::vector<std::vector<QuarnFloat>> group_;
  std::uint32_t state_ = 1;
};

}  // namespace

template <class T>
std::vector<Integer> inverse_iteration(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e,
                                       const ChosenEigenvalues& chosen, const QuarnFloat& known, OneBasedMatrix<T> z) {
  // Eigenvalues are known to roundings of the whole matrix, also where a block has smaller numbers.
  QuarnFloat norm;
  for (Integer i = 1; i <= n; ++i) {
    norm = std::max(norm, std::max(fabs(d(i)), i < n ? fabs(e(i)) : QuarnFloat()));
  }
  const QuarnFloat error = 3 * known * norm;
  std::vector<Integer> failed;
  std::vector<QuarnFloat> y;
  std::size_t j = 0;
  Integer first = 1;
  for (std::size_t b = 0; b < chosen.split.size(); ++b) {
    const Integer rows = chosen.split[b] - first + 1;
    BlockVectors block(rows, d.from(first), e.from(first), error);
    for (; j < chosen.w.size() && chosen.block[j] == Integer(b + 1); ++j) {
      const OneBasedVector<T> column = z.column(Integer(j + 1));
      if (!block.next(chosen.w[j], y)) {
        failed.push_back(Integer(j + 1));
      }
      fill(n, T(), column);
      for (Integer i = 1; i <= rows; ++i) {
        column(first + i - 1) = T(y[std::size_t(i - 1)]);
      }
    }
    first = chosen.split[b] + 1;
  }
  return failed;
}
template std::vector<Integer> inverse_iteration(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>,
                                                const ChosenEigenvalues&, const QuarnFloat&,
                                                OneBasedMatrix<QuarnFloat>);
template std::vector<Integer> inverse_iteration(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>,
                                                const ChosenEigenvalues&, const QuarnFloat&, OneBasedMatrix<Complex>);

}  // namespace tesk

#include "src/dense/cluster_shifts.h"

#include <algorithm>

#include "src/kernels/scalar.h"

namespace tesk {
namespace {

// Clusters of more rows are left to the usual shifts.
constexpr Integer kLargestCluster = 32;
// Sweeps on one cluster without an eigenvalue split off: more would go round in circles.
constexpr int kPatience = 5;

}  // namespace

ClusterShifts::Point ClusterShifts::point_of(const Shifts& shifts) {
  const QuarnFloat half_difference = (shifts.h33 - shifts.h44) / 2;
  const QuarnFloat discriminant = half_difference * half_difference + shifts.h43h34;
  if (discriminant < 0) {
    return {(shifts.h33 + shifts.h44) / 2, sqrt(-discriminant)};
  }
  return {shifts.h44, 0};
}

Shifts ClusterShifts::shifts_at(const Point& point) {
  return {point.re, point.re, point.im == 0 ? QuarnFloat() : -(point.im * point.im)};
}

QuarnFloat ClusterShifts::distance(const Point& a, const Point& b) { return fabs(a.re - b.re) + fabs(a.im - b.im); }

void ClusterShifts::forget() {
  usual_.clear();
  former_.clear();
  means_.clear();
}

/// Rows below `high` have split off: what is left of the cluster is found at once.
void ClusterShifts::start_block(Integer high) {
  size_ = size_ > 0 ? size_ - (high_ - high) : 0;
  if (size_ < 2 || (pair_ && size_ % 2 != 0)) {
    size_ = 0;
  }
  sweeps_ = 0;
  high_ = high;
  forget();
}

/// The mean of m eigenvalues is their sum over m. For m / 2 times a + ib and a - ib, the sum of the squares, which is
/// the trace of the squared block, is m (a^2 - b^2).
void ClusterShifts::measure(OneBasedMatrix<QuarnFloat> h, Integer low, Integer high) {
  means_.clear();
  QuarnFloat sum;
  QuarnFloat squares;
  for (Integer m = 1; m <= std::min(high - low + 1, kLargestCluster); ++m) {
    const Integer j = high - m + 1;
    sum += h(j, j);
    squares += h(j, j) * h(j, j);
    if (m > 1) {
      squares += 2 * h(j, j + 1) * h(j + 1, j);
    }
    const QuarnFloat a = sum / m;
    const QuarnFloat b = m % 2 == 0 ? sqrt(a * a - squares / m) : QuarnFloat("nan");
    means_.push_back({{a, 0}, {a, b}});
  }
}

const ClusterShifts::Point& ClusterShifts::mean(const std::vector<Means>& means, Integer size, bool pair) const {
  const Means& both = means[std::size_t(size - 1)];
  return pair ? both.pair : both.real;
}

/// Whether the usual shifts of the last four sweeps approach their limit at a steady ratio.
bool ClusterShifts::settled() const {
  const std::size_t n = usual_.size();
  if (n < 4 || former_.empty()) {
    return false;
  }
  const QuarnFloat first = distance(usual_[n - 3], usual_[n - 4]);
  const QuarnFloat second = distance(usual_[n - 2], usual_[n - 3]);
  const QuarnFloat third = distance(usual_[n - 1], usual_[n - 2]);
  const QuarnFloat ratio = third / second;
  return 10 * ratio > 3 && 100 * ratio < 97 && 10 * fabs(ratio - second / first) < 1;
}

/// Looks for the trailing rows whose mean is nearer to the limit than the usual shift is, and moved least in the last
/// sweep: a tenth of the usual shift's way at most.
bool ClusterShifts::find(const Point& limit) {
  const Point& now = usual_.back();
  const QuarnFloat error = distance(now, limit);
  QuarnFloat least = distance(now, usual_[usual_.size() - 2]) / 10;
  for (const bool pair : {false, true}) {
    for (Integer m = 2; m <= Integer(std::min(means_.size(), former_.size())); ++m) {
      const Point& candidate = mean(means_, m, pair);
      QuarnFloat moved = distance(candidate, mean(former_, m, pair));
      if (moved < least && distance(candidate, limit) <= error) {
        least = std::move(moved);
        size_ = m;
        pair_ = pair;
        mean_ = candidate;
      }
    }
  }
  sweeps_ = 0;
  return size_ > 0;
}

/// How far rounding moves the eigenvalues of the cluster: the k-th root of a unit of the block's largest element.
QuarnFloat ClusterShifts::radius(OneBasedMatrix<QuarnFloat> h, Integer high) const {
  QuarnFloat largest;
  for (Integer j = high - size_ + 1; j <= high; ++j) {
    for (Integer i = high - size_ + 1; i <= j; ++i) {
      largest = std::max(largest, fabs(h(i, j)));
    }
  }
  const Integer multiplicity = pair_ ? size_ / 2 : size_;
  return largest * QuarnFloat(1, -int((QuarnDigits() - 1) / multiplicity));
}

/// A shift as near to the mean as the eigenvalues themselves lie. At the mean itself the sweep would be that of a
/// singular matrix, again and again, and the eigenvalues would not come apart.
ClusterShifts::Point ClusterShifts::beside_mean(const QuarnFloat& radius) const {
  if (!pair_) {
    return {mean_.re, radius};
  }
  const QuarnFloat step = sweeps_ % 4 < 2 ? radius : -radius;
  return sweeps_ % 2 == 0 ? Point{mean_.re + step, mean_.im} : Point{mean_.re, mean_.im + step};
}

Shifts ClusterShifts::improve(OneBasedMatrix<QuarnFloat> h, Integer low, Integer high, const Shifts& usual) {
  if (high != high_) {
    start_block(high);
  }
  const Point now = point_of(usual);
  usual_.push_back(now);
  former_.swap(means_);
  measure(h, low, high);
  if (size_ > Integer(means_.size())) {
    size_ = 0;
  }
  if (size_ > 0) {
    const Point former = mean_;
    mean_ = mean(means_, size_, pair_);
    ++sweeps_;
    if (sweeps_ > kPatience || isnan(mean_.im)) {
      size_ = 0;
      forget();
      return usual;
    }
    // The mean stands still: the usual shifts end the work, unless they have come nearer to it than they ought to.
    const QuarnFloat near = radius(h, high);
    if (distance(mean_, former) <= near && 100 * distance(mean_, now) > near) {
      return usual;
    }
    return shifts_at(beside_mean(near));
  }
  if (!settled()) {
    return usual;
  }
  const Point& before = usual_[usual_.size() - 2];
  const QuarnFloat ratio = distance(now, before) / distance(before, usual_[usual_.size() - 3]);
  const QuarnFloat ahead = ratio / (1 - ratio);
  const Point limit = {now.re + (now.re - before.re) * ahead, now.im + (now.im - before.im) * ahead};
  if (find(limit)) {
    return shifts_at(beside_mean(radius(h, high)));
  }
  usual_.clear();
  return shifts_at(limit);
}

}  // namespace tesk

// Shifts of the QR algorithm for multiple eigenvalues.
//
// The usual shifts approach a defective eigenvalue of multiplicity k linearly: about 2 D sweeps at D digits. Their
// corrections then settle at a constant ratio, and two things are known better: the limit that they extrapolate to
// (A. C. Aitken, On Bernoulli's numerical solution of algebraic equations, Proc. R. Soc. Edinb. 46 (1926)), and the
// mean of the eigenvalues of a trailing block, which rounding moves by one unit where it moves the eigenvalues by a
// k-th root of one. The block whose mean moves least and lies at that limit is the cluster. Any shift is backward
// stable, so that a wrong guess costs a sweep and no digits.
#pragma once

#include <vector>

#include "src/kernels/views.h"

namespace tesk {

/// The two shifts of a sweep, as the zeros of (x - h33) (x - h44) - h43h34.
struct Shifts {
  QuarnFloat h33;
  QuarnFloat h44;
  QuarnFloat h43h34;
};

class ClusterShifts {
 public:
  /// Shifts for the next sweep on the active block low ... high, for which `usual` would be taken.
  Shifts improve(OneBasedMatrix<QuarnFloat> h, Integer low, Integer high, const Shifts& usual);
  /// Whether a cluster is being worked on, so that exceptional shifts would only disturb.
  bool found() const { return size_ > 0; }

 private:
  /// A real shift used twice (im = 0), or a pair.
  struct Point {
    QuarnFloat re;
    QuarnFloat im;
  };
  /// What the trailing rows would be a cluster at: one real eigenvalue, or one pair (NaN when that cannot be).
  struct Means {
    Point real;
    Point pair;
  };

  static Point point_of(const Shifts& shifts);
  static Shifts shifts_at(const Point& point);
  static QuarnFloat distance(const Point& a, const Point& b);

  void start_block(Integer high);
  void forget();
  void measure(OneBasedMatrix<QuarnFloat> h, Integer low, Integer high);
  const Point& mean(const std::vector<Means>& means, Integer size, bool pair) const;
  bool settled() const;
  bool find(const Point& limit);
  QuarnFloat radius(OneBasedMatrix<QuarnFloat> h, Integer high) const;
  Point beside_mean(const QuarnFloat& radius) const;

  Integer high_ = 0;
  std::vector<Point> usual_;   // of the latest sweeps on this block
  std::vector<Means> means_;   // of the trailing 1, 2, ... rows
  std::vector<Means> former_;  // the same a sweep ago
  // The cluster: rows (0: none), kind, mean, and the sweeps that were spent on it.
  Integer size_ = 0;
  bool pair_ = false;
  Point mean_;
  int sweeps_ = 0;
};

}  // namespace tesk

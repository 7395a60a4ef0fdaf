// The zeros of a secular equation: J. R. Bunch, C. P. Nielsen, D. C. Sorensen, Rank-one modification of the symmetric
// eigenproblem, Numer. Math. 31 (1978); R.-C. Li, Solving secular equations stably and efficiently, LAPACK Working Note
// 89 (1993), the middle way.
#pragma once

#include <vector>

#include "quarn/quarnfloat.h"

namespace tesk {

/// 1 + rho sum of z_j^2 / (d_j - x), with the d ascending and apart, rho > 0 and no z zero.
class SecularEquation {
 public:
  SecularEquation(const std::vector<QuarnFloat>& d, const std::vector<QuarnFloat>& z, const QuarnFloat& rho);

  /// Zero i lies between d_i and d_i+1, the last one behind d_n: its distances d_j - x, good to nearly all digits, and
  /// its value.
  QuarnFloat zero(std::size_t i, std::vector<QuarnFloat>& distances) const;

 private:
  struct Value {
    QuarnFloat sum;
    QuarnFloat size;
    QuarnFloat left_slope;   // of the terms up to `split`
    QuarnFloat right_slope;  // of those behind it
  };
  Value value(std::size_t split, const std::vector<QuarnFloat>& distances) const;

  const std::vector<QuarnFloat>& d_;
  std::vector<QuarnFloat> weights_;  // rho z^2
};

}  // namespace tesk

// The points of a curve as doubles, and as few of them as a picture shows.
#pragma once

#include <cstddef>
#include <vector>

#include "quarn/quarnfloat.h"

namespace cli {

struct Points {
  std::vector<double> x;
  std::vector<double> y;

  std::size_t size() const { return x.size(); }
};

/// A number of a picture: some four digits are seen, so that a double is enough, and what is a rounding error beside
/// the largest number counts as zero, so that no axis stretches below zero for its sake. Throws Failure for a number
/// beyond the range of a double.
double drawn(const QuarnFloat& value, double largest = 0);

/// The points of a picture that is so many dots wide and high. Of points that are joined, and whose x ascend or
/// descend, the first, the lowest, the highest and the last one within each dot's width are kept, which give the same
/// picture; of points that are not joined one at each dot.
Points points_of(const std::vector<QuarnFloat>& x, const std::vector<QuarnFloat>& y, bool joined, std::size_t width,
                 std::size_t height);

}  // namespace cli

// The points of a curve as doubles, and as few of them as a picture shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"

namespace cli {

struct Points {
  std::vector<double> x;
  std::vector<double> y;
  // The powers of ten in which they are given: 0 where doubles hold the numbers.
  std::int64_t x_exponent = 0;
  std::int64_t y_exponent = 0;

  std::size_t size() const { return x.size(); }
};

/// A number of a picture: some four digits are seen, so that a double is enough, and what is a rounding error beside
/// the largest number counts as zero, so that no axis stretches below zero for its sake.
double drawn(const QuarnFloat& value, std::int64_t exponent = 0, double largest = 0);

/// The power of ten in which numbers are drawn that are too large or all too small for a double; else 0.
std::int64_t unit_exponent(const std::vector<QuarnFloat>& values);

/// The title of an axis on which numbers are given in a power of ten.
std::string in_unit(const std::string& title, std::int64_t exponent);

/// A power of ten, of which the exponent is given: "2.4e2".
std::string power_text(double exponent);

/// The points of a picture that is so many dots wide and high. Of points that are joined, and whose x ascend or
/// descend, the first, the lowest, the highest and the last one within each dot's width are kept, which give the same
/// picture; of points that are not joined one at each dot.
Points points_of(const std::vector<QuarnFloat>& x, const std::vector<QuarnFloat>& y, bool joined, std::size_t width,
                 std::size_t height);

/// Points of the complex plane, with one unit for both axes.
Points points_of(const std::vector<Complex>& values, std::size_t width, std::size_t height);

}  // namespace cli

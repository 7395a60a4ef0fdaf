#include "cli/plot/points.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "cli/commands/failure.h"
#include "cli/io/matrix_input.h"
#include "cli/io/result.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

/// Which dot of `count` between two ends a coordinate falls on.
class Scale {
 public:
  Scale(const std::vector<double>& values, std::size_t count) : count_(count) {
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    low_ = *least;
    // Halves, since the difference may be beyond the range.
    span_ = *most / 2 - *least / 2;
  }
  std::size_t operator()(double value) const {
    const double part = span_ > 0 ? (value / 2 - low_ / 2) / span_ : 0;
    return std::min(std::size_t(part * double(count_)), count_ - 1);
  }

 private:
  std::size_t count_;
  double low_ = 0;
  double span_ = 0;
};

Points joined_points(const Points& all, std::size_t width) {
  const Scale column(all.x, width);
  Points kept{{}, {}, all.x_exponent, all.y_exponent};
  for (std::size_t first = 0; first < all.size();) {
    const std::size_t here = column(all.x[first]);
    std::size_t end = first;
    std::size_t lowest = first;
    std::size_t highest = first;
    for (; end < all.size() && column(all.x[end]) == here; ++end) {
      lowest = all.y[end] < all.y[lowest] ? end : lowest;
      highest = all.y[end] > all.y[highest] ? end : highest;
    }
    std::size_t chosen[] = {first, std::min(lowest, highest), std::max(lowest, highest), end - 1};
    const auto* const last = std::unique(std::begin(chosen), std::end(chosen));
    for (const std::size_t* i = chosen; i != last; ++i) {
      kept.x.push_back(all.x[*i]);
      kept.y.push_back(all.y[*i]);
    }
    first = end;
  }
  return kept;
}

Points single_points(const Points& all, std::size_t width, std::size_t height) {
  const Scale column(all.x, width);
  const Scale row(all.y, height);
  std::vector<bool> taken(width * height);
  Points kept{{}, {}, all.x_exponent, all.y_exponent};
  for (std::size_t i = 0; i < all.size(); ++i) {
    const std::size_t dot = row(all.y[i]) * width + column(all.x[i]);
    if (!taken[dot]) {
      taken[dot] = true;
      kept.x.push_back(all.x[i]);
      kept.y.push_back(all.y[i]);
    }
  }
  return kept;
}

}  // namespace

double drawn(const QuarnFloat& value, std::int64_t exponent, double largest) {
  constexpr double kInvisible = 1e-12;
  const double number = FloatToDouble(exponent == 0 ? value : value / QuarnFloat(1, int(exponent)));
  if (!std::isfinite(number)) {
    throw bad_output("cannot draw numbers beyond the range of a double");
  }
  return std::fabs(number) < largest * kInvisible ? 0 : number;
}

std::int64_t unit_exponent(const std::vector<QuarnFloat>& values) {
  constexpr std::int64_t kFar = 300;
  const QuarnFloat largest = largest_magnitude(values);
  const std::int64_t exponent = largest == 0 || !isfinite(largest) ? 0 : decimal_exponent(largest);
  return exponent > kFar || exponent < -kFar ? exponent : 0;
}

std::string in_unit(const std::string& title, std::int64_t exponent) {
  return exponent == 0 ? title : title + " / 1e" + std::to_string(exponent);
}

std::string power_text(double exponent) {
  double whole = std::floor(exponent);
  double mantissa = std::round(10 * std::pow(10, exponent - whole)) / 10;
  if (mantissa >= 10) {
    mantissa = 1;
    ++whole;
  }
  char text[48];
  std::snprintf(text, sizeof text, "%ge%.0f", mantissa, whole);
  return text;
}

namespace {

Points points_in(const std::vector<QuarnFloat>& x, std::int64_t x_exponent, const std::vector<QuarnFloat>& y,
                 std::int64_t y_exponent) {
  constexpr std::size_t kOften = 65536;
  const double largest = std::fabs(drawn(largest_magnitude(y), y_exponent));
  Points all;
  all.x_exponent = x_exponent;
  all.y_exponent = y_exponent;
  all.x.reserve(x.size());
  all.y.reserve(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (i % kOften == 0) {
      QuarnCheckInterrupt();
    }
    all.x.push_back(drawn(x[i], x_exponent));
    all.y.push_back(drawn(y[i], y_exponent, largest));
  }
  return all;
}

}  // namespace

Points points_of(const std::vector<QuarnFloat>& x, const std::vector<QuarnFloat>& y, bool joined, std::size_t width,
                 std::size_t height) {
  Points all = points_in(x, unit_exponent(x), y, unit_exponent(y));
  if (all.size() <= 4 * width) {
    return all;
  }
  if (!joined) {
    return single_points(all, width, height);
  }
  const bool in_order = std::is_sorted(all.x.begin(), all.x.end()) || std::is_sorted(all.x.rbegin(), all.x.rend());
  return in_order ? joined_points(all, width) : all;
}

Points points_of(const std::vector<Complex>& values, std::size_t width, std::size_t height) {
  const std::vector<QuarnFloat> x = real_parts(values);
  const std::vector<QuarnFloat> y = imaginary_parts(values);
  const std::int64_t exponent = unit_exponent({largest_magnitude(x), largest_magnitude(y)});
  Points all = points_in(x, exponent, y, exponent);
  return all.size() <= 4 * width ? all : single_points(all, width, height);
}

}  // namespace cli

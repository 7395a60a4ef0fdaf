#include "src/dense/secular.h"

#include <algorithm>
#include <utility>

#include "src/frame/constants.h"

namespace tesk {

SecularEquation::SecularEquation(const std::vector<QuarnFloat>& d, const std::vector<QuarnFloat>& z,
                                 const QuarnFloat& rho)
    : d_(d) {
  weights_.reserve(z.size());
  for (const QuarnFloat& element : z) {
    weights_.push_back(rho * element * element);
  }
}

SecularEquation::Value SecularEquation::value(std::size_t split, const std::vector<QuarnFloat>& distances) const {
  Value result{QuarnFloat(1), QuarnFloat(1), QuarnFloat(), QuarnFloat()};
  for (std::size_t j = 0; j < d_.size(); ++j) {
    const QuarnFloat term = weights_[j] / distances[j];
    (j <= split ? result.left_slope : result.right_slope) += term / distances[j];
    result.size += fabs(term);
    result.sum += term;
  }
  return result;
}

QuarnFloat SecularEquation::zero(std::size_t i, std::vector<QuarnFloat>& distances) const {
  const std::size_t n = d_.size();
  if (n == 1) {
    distances[0] = -weights_[0];
    return d_[0] + weights_[0];
  }
  const bool last = i + 1 == n;
  // The terms of poles `left` and `left` + 1 are kept as they are, those beyond them move to them.
  const std::size_t left = last ? n - 2 : i;
  QuarnFloat low;
  QuarnFloat high;
  std::size_t origin = i;
  if (last) {
    for (const QuarnFloat& weight : weights_) {
      high += weight;
    }
  } else {
    high = (d_[i + 1] - d_[i]) / 2;
    for (std::size_t j = 0; j < n; ++j) {
      distances[j] = (d_[j] - d_[i]) - high;
    }
    if (value(left, distances).sum < 0) {
      origin = i + 1;
      low = -high;
      high = 0;
    }
  }
  std::vector<QuarnFloat> poles;
  poles.reserve(n);
  for (const QuarnFloat& pole : d_) {
    poles.push_back(pole - d_[origin]);
  }
  const QuarnFloat ulp = epsilon();
  QuarnFloat at = (low + high) / 2;
  for (int left_over = 20 * QuarnDigits() + 100; left_over > 0; --left_over) {
    for (std::size_t j = 0; j < n; ++j) {
      distances[j] = poles[j] - at;
    }
    const Value f = value(left, distances);
    if (fabs(f.sum) <= ulp * f.size) {
      break;
    }
    (f.sum < 0 ? low : high) = at;
    const QuarnFloat& a1 = distances[left];
    const QuarnFloat& a2 = distances[left + 1];
    const QuarnFloat c = f.sum - a1 * f.left_slope - a2 * f.right_slope;
    const QuarnFloat a = (a1 + a2) * f.sum - a1 * a2 * (f.left_slope + f.right_slope);
    const QuarnFloat b = a1 * a2 * f.sum;
    const QuarnFloat root = sqrt(std::max(a * a - 4 * b * c, QuarnFloat()));
    QuarnFloat step;
    if (last) {
      step = a >= 0 ? (a + root) / (2 * c) : 2 * b / (a - root);
    } else {
      step = a <= 0 ? (a - root) / (2 * c) : 2 * b / (a + root);
    }
    QuarnFloat next = at + step;
    if (!(next > low && next < high)) {
      next = (low + high) / 2;
    }
    if (fabs(next - at) <= ulp * fabs(next)) {
      break;
    }
    at = std::move(next);
  }
  return d_[origin] + at;
}

}  // namespace tesk

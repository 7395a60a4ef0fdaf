#include "src/fft/twiddles.h"

#include <cstdint>
#include <utility>

namespace tesk {

TwiddleSource::TwiddleSource(const Constants& constants)
    : accuracy_(constants.accuracy()), pi_(constants.pi()), two_pi_(QuarnFloat(2.0) * pi_) {}

Complex TwiddleSource::rotation(Integer k, Integer n) const {
  if (accuracy_ == Accuracy::full) {
    return folded_rotation(k, n);
  }
  const QuarnFloat theta = two_pi_ * k / n;
  // Asked for in turn with one angle, the pair costs the host one evaluation.
  QuarnFloat cosine = QuarnEvalf1("cos", theta);
  return {std::move(cosine), QuarnEvalf1("sin", theta)};
}

Complex TwiddleSource::folded_rotation(Integer k, Integer n) const {
  // The angle is a/n quarter turns.
  const auto quarter = std::int64_t(n);
  std::int64_t a = 4 * std::int64_t(k);
  const bool lower_half = a > 2 * quarter;
  if (lower_half) {
    a = 4 * quarter - a;
  }
  const bool left_half = a > quarter;
  if (left_half) {
    a = 2 * quarter - a;
  }
  const bool steep = 2 * a > quarter;
  if (steep) {
    a = quarter - a;
  }
  const QuarnFloat theta = pi_ * a / (2 * quarter);
  QuarnFloat cosine = QuarnEvalf1("cos", theta);
  QuarnFloat sine = QuarnEvalf1("sin", theta);
  if (steep) {
    std::swap(cosine, sine);
  }
  return {left_half ? -cosine : std::move(cosine), lower_half ? -sine : std::move(sine)};
}

}  // namespace tesk

#include "src/fft/twiddles.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace tesk {
namespace {

/// Asked for in turn with one angle, the pair costs the host one evaluation.
Complex cosine_and_sine(const QuarnFloat& angle) {
  QuarnFloat cosine = QuarnEvalf1("cos", angle);
  return {std::move(cosine), QuarnEvalf1("sin", angle)};
}

}  // namespace

Folding::Folding(Integer k, Integer n) : parts_(4 * std::int64_t(k)) {
  const std::int64_t quarter = n;
  lower_half_ = parts_ > 2 * quarter;
  if (lower_half_) {
    parts_ = 4 * quarter - parts_;
  }
  left_half_ = parts_ > quarter;
  if (left_half_) {
    parts_ = 2 * quarter - parts_;
  }
  steep_ = 2 * parts_ > quarter;
  if (steep_) {
    parts_ = quarter - parts_;
  }
}

Complex Folding::unfolded(Complex w) const {
  if (steep_) {
    std::swap(w.re, w.im);
  }
  if (left_half_) {
    w.re = -w.re;
  }
  if (lower_half_) {
    w.im = -w.im;
  }
  return w;
}

Circle::Circle(const Constants& constants)
    : accuracy_(constants.accuracy()), pi_(constants.pi()), two_pi_(QuarnFloat(2.0) * pi_) {}

Complex Circle::within_quarter(std::int64_t parts, std::int64_t n) const {
  return cosine_and_sine(pi_ * parts / (2 * n));
}

Complex Circle::rotation(Integer k, Integer n) const {
  if (accuracy_ == Accuracy::classic) {
    return cosine_and_sine(two_pi_ * k / n);
  }
  const Folding folding(k, n);
  return folding.unfolded(within_quarter(folding.parts(), n));
}

Twiddles::Twiddles(const Circle& circle, Integer n, std::int64_t uses) : circle_(circle), n_(n) {
  if (circle.accuracy() == Accuracy::classic) {
    return;
  }
  unit_ = n % 4 == 0 ? 4 : n % 2 == 0 ? 2 : 1;
  const std::int64_t last = n / 2 / unit_;
  block_ = std::int64_t(std::sqrt(double(last))) + 1;
  const std::int64_t blocks = last / block_ + 1;
  if (uses <= block_ + blocks) {
    return;
  }
  for (std::int64_t i = 0; i < blocks; ++i) {
    coarse_.push_back(circle.within_quarter(i * block_ * unit_, n));
  }
  for (std::int64_t i = 0; i < block_; ++i) {
    const Complex half = circle.within_quarter(i * unit_, 2 * std::int64_t(n));
    fine_.emplace_back(-twice(half.im * half.im), twice(half.re * half.im));
  }
}

Complex Twiddles::rotation(Integer k) const {
  if (coarse_.empty()) {
    return circle_.rotation(k, n_);
  }
  const Folding folding(k, n_);
  const std::int64_t index = folding.parts() / unit_;
  const Complex& c = coarse_[std::size_t(index / block_)];
  const Complex& f = fine_[std::size_t(index % block_)];
  if (index % block_ == 0) {
    return folding.unfolded(c);
  }
  return folding.unfolded({c.re + (c.re * f.re - c.im * f.im), c.im + (c.im * f.re + c.re * f.im)});
}

}  // namespace tesk

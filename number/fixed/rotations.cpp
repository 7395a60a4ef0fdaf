#include "number/fixed/rotations.h"

#include <cmath>

#include "number/elementary/approximate.h"
#include "number/fixed/decimal.h"
#include "quarn/quarnthread.h"

namespace quarn::block {
namespace {

using Fraction = std::vector<Limb>;

Fraction product(const Fraction& a, const Fraction& b) {
  Fraction out(a.size());
  multiply_high(out.data(), a.data(), b.data(), int(a.size()) / kPerPlace<Limb>);
  return out;
}

/// x in [0, 1], 1 as one unit less.
Fraction fraction(const QuarnFloat& x, const DecimalReader& reader, int places) {
  Fraction out(std::size_t(places * kPerPlace<Limb>), 0);
  if (!(x < QuarnFloat(1))) {
    std::fill(out.begin(), out.end(), ~Limb(0));
  } else if (x != QuarnFloat()) {
    reader.read(out.data(), x, 0, places);
    add(out.data(), out.data(), out.data(), places);
  }
  return out;
}

}  // namespace

UnitCircle::UnitCircle(std::int64_t n, int places) : n_(n), places_(places) {
  unit_ = n % 8 == 0 ? 8 : n % 4 == 0 ? 4 : n % 2 == 0 ? 2 : 1;
  const std::int64_t last = n / unit_;
  block_ = std::int64_t(std::sqrt(double(last))) + 1;
  const int long_places = places + 1;
  const DecimalReader reader(long_places);
  const WorkingDigits digits(int(64 * long_places * 0.30103) + 4);
  const QuarnFloat quarter_pi = rounded(approximate_pi(QuarnDigits() + 20), QuarnDigits()) / 4;
  const auto point = [&](std::int64_t eighths) -> Point {
    QuarnCheckInterrupt();
    const QuarnFloat angle = quarter_pi * QuarnFloat(eighths) / QuarnFloat(n);
    return {fraction(cos(angle), reader, long_places), fraction(sin(angle), reader, long_places)};
  };
  for (std::int64_t i = 0; i <= last / block_; ++i) {
    coarse_.push_back(point(i * block_ * unit_));
  }
  for (std::int64_t i = 0; i < block_; ++i) {
    fine_.push_back(point(i * unit_));
  }
}

UnitCircle::Point UnitCircle::within_octant(std::int64_t index) const {
  const Point& c = coarse_[std::size_t(index / block_)];
  const Point& f = fine_[std::size_t(index % block_)];
  if (index % block_ == 0) {
    return c;
  }
  if (index < block_) {
    return f;
  }
  Point out{product(c.cosine, f.cosine), product(c.sine, f.cosine)};
  const Fraction sines = product(c.sine, f.sine);
  const Fraction mixed = product(c.cosine, f.sine);
  subtract(out.cosine.data(), out.cosine.data(), sines.data(), places_ + 1);
  add(out.sine.data(), out.sine.data(), mixed.data(), places_ + 1);
  return out;
}

Rotation UnitCircle::rotation(std::int64_t k) const {
  // In eighths of the n-th part of the circle: octants are n long.
  const std::int64_t eighths = 8 * (k % n_);
  const std::int64_t octant = eighths / n_;
  const std::int64_t rest = octant % 2 == 0 ? eighths % n_ : n_ - eighths % n_;
  Point point = within_octant(rest / unit_);
  if (octant % 4 == 1 || octant % 4 == 2) {
    std::swap(point.cosine, point.sine);
  }
  const auto leading = [](const Fraction& x) { return Fraction(x.begin() + kPerPlace<Limb>, x.end()); };
  return {leading(point.cosine), leading(point.sine), octant >= 2 && octant < 6, octant >= 4};
}

}  // namespace quarn::block

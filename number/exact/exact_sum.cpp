#include "number/exact/exact_sum.h"

#include <algorithm>

namespace quarn::exact {
namespace {

/// Takes b off a, both of n limbs and a not below b, or the other way round; returns the sign of a - b.
int subtract_magnitudes(Limb* a, Limb* b, std::size_t n) {
  const int order = compare<Radix>(a, b, n);
  if (order >= 0) {
    subtract<Radix>(a, a, b, n);
  } else {
    subtract<Radix>(a, b, a, n);
  }
  return order;
}

}  // namespace

void ExactSum::add(const QuarnFloat& a, const QuarnFloat& b, bool flip) {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  const bool negative = (signbit(a) != signbit(b)) != flip;
  if (kind_a == Kind::finite && kind_b == Kind::finite) {
    const View x = view_of(a);
    const View y = view_of(b);
    const std::int64_t top = x.exponent + y.exponent;
    products_.push_back({x, y, negative, top, top - Radix::digits * std::int64_t(x.length + y.length)});
  } else if (kind_a == Kind::nan || kind_b == Kind::nan) {
    nan_ = true;
  } else if (kind_a == Kind::infinite || kind_b == Kind::infinite) {
    nan_ = nan_ || kind_a == Kind::zero || kind_b == Kind::zero;
    infinite_[negative] = true;
  }
  other_than_negative_zero_ = other_than_negative_zero_ || !negative;
}

void ExactSum::add(const View& a, const QuarnFloat& b) {
  if (a.length != 0 && kind_of(b) == Kind::finite) {
    const View y = view_of(b);
    const std::int64_t top = a.exponent + y.exponent;
    products_.push_back({a, y, a.negative != y.negative, top, top - Radix::digits * std::int64_t(a.length + y.length)});
  } else if (kind_of(b) == Kind::nan || kind_of(b) == Kind::infinite) {
    nan_ = nan_ || kind_of(b) == Kind::nan || a.length == 0;
    infinite_[a.negative != signbit(b)] = true;
  }
  other_than_negative_zero_ = other_than_negative_zero_ || a.negative == signbit(b);
}

ExactSum::Cluster ExactSum::sum_of(std::size_t first, std::size_t last, std::int64_t low) const {
  Cluster cluster;
  // A limb in front takes the carries of less than 10^18 (10^9) terms.
  cluster.exponent = products_[first].top + 2 * Radix::digits;
  const std::size_t length = std::size_t((cluster.exponent - low + Radix::digits - 1) / Radix::digits) + 1;
  cluster.limbs.assign(2 * length, 0);
  Limb* const positive = cluster.limbs.data();
  Limb* const negative = positive + length;
  std::vector<Limb> work;
  for (std::size_t t = first; t < last; ++t) {
    const Product& term = products_[t];
    const std::size_t n = term.a.length + term.b.length;
    work.resize(2 * n + 1);
    Limb* const moved = work.data();
    Limb* const product = moved + n + 1;
    multiply<Radix>(product, term.a.limbs, term.a.length, term.b.limbs, term.b.length);
    const std::int64_t distance = cluster.exponent - term.top;
    shift_right<Radix>(moved, product, n, int(distance % Radix::digits));
    Limb* const to = (term.negative ? negative : positive) + distance / Radix::digits;
    const Limb carry = quarn::add<Radix>(to, to, moved, n + 1);
    Limb* const sum = term.negative ? negative : positive;
    add_limb<Radix>(sum, std::size_t(to - sum), carry);
  }
  cluster.sign = subtract_magnitudes(positive, negative, length);
  cluster.limbs.resize(length);
  return cluster;
}

QuarnFloat ExactSum::rounded_sum(int digits, bool signed_zero) {
  if (nan_ || (infinite_[0] && infinite_[1])) {
    return special(Kind::nan);
  }
  if (infinite_[0] || infinite_[1]) {
    return special(Kind::infinite, infinite_[1]);
  }
  std::sort(products_.begin(), products_.end(), [](const Product& a, const Product& b) { return a.top > b.top; });
  // Terms so far below all before them that their sum, whatever it is, only decides a rounding are left for later.
  const std::size_t guard = std::size_t(digits) / std::size_t(Radix::digits) + 3;
  const std::int64_t gap = Radix::digits * std::int64_t(guard + 3);
  Cluster lead;
  for (std::size_t first = 0; first < products_.size();) {
    std::int64_t low = products_[first].low;
    std::size_t last = first + 1;
    for (; last < products_.size() && products_[last].top >= low - gap; ++last) {
      low = std::min(low, products_[last].low);
    }
    Cluster next = sum_of(first, last, low);
    first = last;
    if (next.sign == 0) {
      continue;
    }
    if (lead.sign == 0) {
      lead = std::move(next);
      continue;
    }
    // What follows is not zero and smaller than a unit of the last of `guard` further limbs.
    if (next.sign != lead.sign) {
      lead.limbs.resize(lead.limbs.size() + guard);
      subtract_limb<Radix>(lead.limbs.data(), lead.limbs.size(), 1);
    }
    return rounded(lead.sign < 0, lead.exponent, lead.limbs.data(), lead.limbs.size(), true, digits);
  }
  if (lead.sign == 0) {
    return special(Kind::zero, signed_zero && !other_than_negative_zero_ && products_.empty());
  }
  return rounded(lead.sign < 0, lead.exponent, lead.limbs.data(), lead.limbs.size(), false, digits);
}

}  // namespace quarn::exact

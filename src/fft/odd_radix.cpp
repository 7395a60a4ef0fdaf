#include "src/fft/odd_radix.h"

#include <utility>

namespace tesk {

OddRadix::OddRadix(Integer r, const Constants& constants, const Circle& circle) : r_(r), h_((r - 1) / 2) {
  if (r == 3) {
    sums3_.emplace(constants);
  } else if (r == 5) {
    sums5_.emplace(constants, circle);
  } else {
    for (Integer q = 1; q <= h_; ++q) {
      roots_[q] = circle.rotation(q, r);
    }
  }
}

void OddRadix::sums_any(Terms& even, Terms& odd) const {
  Terms e;
  Terms o;
  e[0] = even[0];
  for (Integer q = 1; q <= h_; ++q) {
    e[0] = e[0] + even[q];
  }
  for (Integer s = 1; s <= h_; ++s) {
    sums_of_pairs(
        r_, s, [&](Integer q) -> const QuarnFloat& { return even[q]; },
        [&](Integer q) -> const QuarnFloat& { return odd[q]; }, [&](Integer q) -> const Complex& { return roots_[q]; },
        e[s], o[s]);
  }
  even = std::move(e);
  odd = std::move(o);
}

void OddRadix::sums(Terms& even, Terms& odd) const {
  if (r_ == 3) {
    (*sums3_)(even.data(), odd.data());
  } else if (r_ == 5) {
    (*sums5_)(even.data(), odd.data());
  } else {
    sums_any(even, odd);
  }
}

template <Direction direction>
void OddRadix::first(const Slots& x) const {
  Terms even;
  Terms odd;
  even[0] = std::move(x.low(0));
  for (Integer q = 1; q <= h_; ++q) {
    if constexpr (direction == Direction::forward) {
      even[q] = x.low(q) + x.low(r_ - q);
      odd[q] = x.low(r_ - q) - x.low(q);
    } else {
      even[q] = twice(x.low(q));
      odd[q] = twice(x.low(r_ - q));
    }
  }
  sums(even, odd);
  x.low(0) = std::move(even[0]);
  for (Integer s = 1; s <= h_; ++s) {
    if constexpr (direction == Direction::forward) {
      x.low(s) = std::move(even[s]);
      x.low(r_ - s) = std::move(odd[s]);
    } else {
      x.low(s) = even[s] - odd[s];
      x.low(r_ - s) = even[s] + odd[s];
    }
  }
}

template <Direction direction>
void OddRadix::inner(const Slots& x, const Complex* w) const {
  Terms even_re;
  Terms even_im;
  // Signs are such that no result has to be negated: the real parts' differences are taken as x_(r-q) - x_q forward.
  Terms odd_re;
  Terms odd_im;
  if constexpr (direction == Direction::forward) {
    even_re[0] = std::move(x.low(0));
    even_im[0] = std::move(x.high(0));
    for (Integer q = 1; q <= h_; ++q) {
      const Complex a = rotated<direction>(x.low(q), x.high(q), w[q]);
      const Complex b = rotated<direction>(x.low(r_ - q), x.high(r_ - q), w[r_ - q]);
      even_re[q] = a.re + b.re;
      even_im[q] = a.im + b.im;
      odd_re[q] = b.re - a.re;
      odd_im[q] = a.im - b.im;
    }
  } else {
    even_re[0] = std::move(x.low(0));
    even_im[0] = std::move(x.high(r_ - 1));
    for (Integer s = 1; s <= h_; ++s) {
      even_re[s] = x.low(s) + x.high(s - 1);
      even_im[s] = x.high(r_ - 1 - s) - x.low(r_ - s);
      odd_re[s] = x.low(s) - x.high(s - 1);
      odd_im[s] = x.high(r_ - 1 - s) + x.low(r_ - s);
    }
  }
  sums(even_re, odd_re);
  sums(even_im, odd_im);
  x.low(0) = std::move(even_re[0]);
  if constexpr (direction == Direction::forward) {
    x.high(r_ - 1) = std::move(even_im[0]);
    for (Integer s = 1; s <= h_; ++s) {
      x.low(s) = even_re[s] + odd_im[s];
      x.high(r_ - 1 - s) = even_im[s] + odd_re[s];
      x.high(s - 1) = even_re[s] - odd_im[s];
      x.low(r_ - s) = odd_re[s] - even_im[s];
    }
  } else {
    x.high(0) = std::move(even_im[0]);
    for (Integer q = 1; q <= h_; ++q) {
      Complex a = rotated<direction>(even_re[q] - odd_im[q], even_im[q] + odd_re[q], w[q]);
      Complex b = rotated<direction>(even_re[q] + odd_im[q], even_im[q] - odd_re[q], w[r_ - q]);
      x.low(q) = std::move(a.re);
      x.high(q) = std::move(a.im);
      x.low(r_ - q) = std::move(b.re);
      x.high(r_ - q) = std::move(b.im);
    }
  }
}

template <Direction direction>
void OddRadix::middle(const Slots& x) const {
  Terms even;
  Terms odd;
  even[0] = std::move(x.low(direction == Direction::forward ? 0 : h_));
  for (Integer q = 1; q <= h_; ++q) {
    if constexpr (direction == Direction::forward) {
      const bool minus = q % 2 != 0;
      const QuarnFloat sum = x.low(q) + x.low(r_ - q);
      even[q] = minus ? x.low(r_ - q) - x.low(q) : x.low(q) - x.low(r_ - q);
      odd[q] = minus ? -sum : sum;
    } else {
      even[q] = twice(x.low(h_ - q));
      odd[q] = twice(x.low(h_ + q));
    }
  }
  sums(even, odd);
  x.low(direction == Direction::forward ? h_ : 0) = std::move(even[0]);
  for (Integer s = 1; s <= h_; ++s) {
    if constexpr (direction == Direction::forward) {
      x.low(h_ - s) = std::move(even[s]);
      x.low(h_ + s) = std::move(odd[s]);
    } else {
      const bool minus = s % 2 != 0;
      const QuarnFloat sum = even[s] + odd[s];
      x.low(s) = minus ? -sum : sum;
      x.low(r_ - s) = minus ? even[s] - odd[s] : odd[s] - even[s];
    }
  }
}

template void OddRadix::first<Direction::forward>(const Slots&) const;
template void OddRadix::first<Direction::backward>(const Slots&) const;
template void OddRadix::inner<Direction::forward>(const Slots&, const Complex*) const;
template void OddRadix::inner<Direction::backward>(const Slots&, const Complex*) const;
template void OddRadix::middle<Direction::forward>(const Slots&) const;
template void OddRadix::middle<Direction::backward>(const Slots&) const;

}  // namespace tesk

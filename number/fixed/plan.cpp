#include "number/fixed/plan.h"

#include <cmath>
#include <utility>

#include "number/limbs/scratch.h"
#include "quarn/quarnthread.h"

namespace quarn::block {
namespace {

bool has_large_factor(Integer n) {
  while (n % 2 == 0) {
    n /= 2;
  }
  for (Integer r = 3; r <= kLargestRadix; r += 2) {
    while (n % r == 0) {
      n /= r;
    }
  }
  return n > 1;
}

/// The cheapest length of 2^a, 3 2^a, 5 2^a, 9 2^a or 15 2^a from n on.
Integer padded_length(Integer n) {
  std::int64_t best = std::bit_ceil(unsigned(n));
  for (const std::int64_t odd : {3, 5, 9, 15}) {
    std::int64_t length = odd;
    while (length < n) {
      length *= 2;
    }
    best = std::min(best, length);
  }
  return Integer(best);
}

/// A bound of |error| of a result of the core, in units, when each part of the data is off by at most `input` units.
double bound_for(Integer n, int places, double input) {
  const double turn = 2.24 * places + 1.5;
  double sum = 1.4143 * input * n;
  double left = n;
  for (Integer r = kLargestRadix; r > 2; r -= 2) {
    bool prime = true;
    for (Integer d = 3; d < r; d += 2) {
      prime = prime && r % d != 0;
    }
    for (; prime && n % r == 0; n /= r) {
      left /= r;
      sum += left * (1.4143 * (r - 1) * (places + 1) + 1.42 * turn);
    }
  }
  return sum + left / 3 * turn;
}

}  // namespace

Format format_for(Integer n, int digits, const Steps& steps, double root) {
  Format format;
  format.padded = has_large_factor(n) ? padded_length(2 * n - 1) : 0;
  if (root == 0) {
    root = std::sqrt(double(n));
  }
  // Sums over n numbers of magnitude sqrt 2; for a convolution see docs/accuracy.md.
  format.headroom = format.padded == 0 ? std::max(2, int(std::ceil(std::log2(double(n)))))
                                       : int(std::ceil(std::log2(double(format.padded)) + std::log2(4.0 * n) / 2));
  format.headroom += steps.growth;
  // kMaxPlaces are more than any supported transform takes.
  for (int places = 2;; ++places) {
    format.places = places;
    const int bits = format.fraction_bits();
    const double cut = std::exp2(bits + 3 - 18 * units_for(places) * 3.321928);
    const double read = 1 + (places + 1) * std::exp2(2 - format.headroom) + cut;
    const double input = steps.factor_before * read + steps.turns_before * (2.24 * places + 1.5) / 1.4142;
    double error = 0;
    if (format.padded == 0) {
      error = bound_for(n, places, input);
    } else {
      const double m = format.padded;
      const double turn = 3.2 * places + 3;
      error = m * (1.7 * input + 4.6 * turn) + 10 * std::sqrt(m) * turn;
    }
    error = steps.factor_after * error + steps.turns_after * (2.24 * places + 1.5);
    error += (format.padded == 0 ? 15 : 30) * (places + 4);
    // The largest part is from 0.49 on.
    if (bits >= digits * 3.3219281 + 3.1 + std::log2(error / root)) {
      return format;
    }
  }
}

Chirp::Chirp(Integer n, const Format& format)
    : n_(n), places_(format.places), shift_(0), core_(format.padded, format.places) {
  const Integer m = format.padded;
  const int words = places_ * kPerPlace<Limb>;
  // One place more, so that the spectrum is good to all places.
  const int long_places = places_ + 1;
  const int long_words = long_places * kPerPlace<Limb>;
  const int headroom = int(std::bit_width(unsigned(m))) + 1;
  const UnitCircle circle(2 * std::int64_t(n), long_places);
  const Core<Limb> core(m, long_places);
  std::vector<Limb> data(std::size_t(m) * core.words_per_element(), 0);
  for (Integer j = 0; j < n; ++j) {
    const Rotation r = circle.rotation(std::int64_t(j) * j % (2 * std::int64_t(n)));
    chirp_.insert(chirp_.end(), r.cosine.begin() + kPerPlace<Limb>, r.cosine.end());
    chirp_.insert(chirp_.end(), r.sine.begin() + kPerPlace<Limb>, r.sine.end());
    chirp_.push_back(Limb(0) - Limb(r.cosine_negative));
    chirp_.push_back(Limb(r.sine_negative) - Limb(1));
    for (const Integer place : {j, (m - j) % m}) {
      Limb* const x = data.data() + std::size_t(place) * core.words_per_element();
      fixed::shift_down(x, r.cosine.data(), long_words, headroom);
      negate_if(x, x, Limb(0) - Limb(r.cosine_negative), long_places);
      fixed::shift_down(x + long_words, r.sine.data(), long_words, headroom);
      negate_if(x + long_words, x + long_words, Limb(0) - Limb(r.sine_negative), long_places);
    }
  }
  core.run(data.data());
  // All parts below 1: left-aligned by the largest one.
  std::vector<Limb> signs;
  int zeros = 64 * long_places;
  for (std::size_t i = 0; i < data.size(); i += std::size_t(long_words)) {
    signs.push_back(sign_mask(&data[i], long_places));
    negate_if(&data[i], &data[i], signs.back(), long_places);
    zeros = std::min(zeros, fixed::leading_zeros(&data[i], long_words));
  }
  shift_ = headroom - zeros;
  spectrum_.reserve(std::size_t(m) * std::size_t(2 * words + 2));
  std::vector<Limb> moved(static_cast<std::size_t>(long_words));
  for (std::size_t i = 0; i < signs.size(); ++i) {
    fixed::shift_up(moved.data(), &data[i * std::size_t(long_words)], long_words, zeros);
    spectrum_.insert(spectrum_.end(), moved.begin() + kPerPlace<Limb>, moved.end());
    if (i % 2 == 1) {
      spectrum_.push_back(signs[i - 1]);
      spectrum_.push_back(signs[i]);
    }
  }
}

template <class Length>
void Chirp::multiply(Limb* out, const Limb* x, const Limb* factor, Length places) {
  constexpr int kRoom = room<Limb, Length>();
  const int n = places * kPerPlace<Limb>;
  const Limb re_sign = factor[2 * n];
  const Limb im_sign = factor[2 * n + 1];
  Limb products[4][kRoom];
  for (int part = 0; part < 2; ++part) {
    multiply_fraction(products[part], x + part * n, factor, places);
    multiply_fraction(products[2 + part], x + part * n, factor + n, places);
    negate_if(products[part], products[part], re_sign, places);
    negate_if(products[2 + part], products[2 + part], im_sign, places);
  }
  subtract(out, products[0], products[3], places);
  add(out + n, products[1], products[2], places);
}

template <class Length>
void Chirp::run(Limb* x, Length places) const {
  const Integer m = core_.length();
  const std::size_t element = core_.words_per_element();
  const std::size_t factor = element + 2;
  const std::vector<Integer>& order = core_.order();
  Scratch<Limb> first(std::size_t(m) * element);
  Scratch<Limb> second(std::size_t(m) * element);
  for (Integer j = 0; j < n_; ++j) {
    multiply(&first[std::size_t(j) * element], x + std::size_t(j) * element, &chirp_[std::size_t(j) * factor], places);
  }
  std::fill_n(&first[std::size_t(n_) * element], std::size_t(m - n_) * element, Limb(0));
  core_.run(first.data());
  for (std::size_t i = 0; i < std::size_t(m); ++i) {
    multiply(&second[std::size_t(order[i]) * element], &first[i * element], &spectrum_[i * factor], places);
  }
  // Forward once more: the results of a backward transform in reverse order.
  core_.run(second.data());
  for (std::size_t i = 0; i < std::size_t(m); ++i) {
    const Integer k = order[i] == 0 ? 0 : m - order[i];
    if (k < n_) {
      multiply(x + std::size_t(k) * element, &second[i * element], &chirp_[std::size_t(k) * factor], places);
    }
  }
}

void Chirp::run(Limb* x) const {
  with_places(places_, [&](auto places) { run(x, places); });
}

Sums::Sums(Integer n, const Format& format) : padded_(format.padded) {
  if (format.padded != 0) {
    chirp_.emplace(n, format);
    return;
  }
  core_.emplace(n, format.places);
  places_.resize(std::size_t(n));
  for (Integer i = 0; i < n; ++i) {
    places_[std::size_t(core_->order()[std::size_t(i)])] = i;
  }
}

void Sums::run(Limb* x) const {
  if (core_) {
    core_->run(x);
  } else {
    chirp_->run(x);
  }
}

QuarnFloat Sums::scale() const {
  return chirp_ ? QuarnFloat(padded_) / QuarnFloat(std::uint64_t(1) << chirp_->shift()) : QuarnFloat(1);
}

int Survey::doublings() const {
  int count = 0;
  while (count < 3 && (top + 1) << (count + 1) <= 1'000'000'000) {
    ++count;
  }
  return count;
}

std::vector<DecimalWriter> writers_for(const QuarnFloat& factor, const Format& format, const DecimalReader& constants) {
  std::vector<DecimalWriter> writers;
  const int bits = 64 * format.places - format.fraction_bits();
  for (int doublings = 0; doublings <= 3; ++doublings) {
    writers.emplace_back(factor * QuarnFloat(std::uint64_t(1) << (bits - doublings)), format.places, constants);
  }
  return writers;
}

QuarnFloat value_of(QuarnDivisor divisor, const QuarnFloat& length) {
  return divisor == QuarnDivisor::length ? length : divisor == QuarnDivisor::root ? sqrt(length) : QuarnFloat(1);
}

QuarnFloat quotient(const QuarnFloat& x, const QuarnFloat& length, QuarnDivisor divisor, int digits) {
  if (kind_of(x) == Kind::zero) {
    return {};
  }
  const WorkingDigits more(digits + 20);
  return rounded(x / value_of(divisor, length), digits);
}

}  // namespace quarn::block

using quarn::Kind;
using quarn::Limb;
using namespace quarn::block;

QuarnTransform::Plan::Plan(Integer length, int digit_count)
    : n(length), digits(digit_count), format(format_for(n, digits)), reader(format.places), sums(n, format) {
  const quarn::WorkingDigits working(int(64 * (format.places + 1) * 0.30103) + 4);
  const DecimalReader constants(format.places + 1);
  for (const QuarnDivisor divisor : {QuarnDivisor::one, QuarnDivisor::root, QuarnDivisor::length}) {
    writers[int(divisor)] = writers_for(1 / (value_of(divisor, n) * sums.scale()), format, constants);
  }
}

namespace {

/// The check point of a loop over numbers.
void check_now_and_then(Integer i) {
  if (i % 256 == 0) {
    QuarnCheckInterrupt();
  }
}

}  // namespace

template <class Length>
void QuarnTransform::Plan::run(bool backward, const Places& at, QuarnDivisor divisor, Length places) const {
  Survey data;
  bool is_real = true;
  bool is_impulse = true;  // nothing but in place 0
  for (Integer i = 0; i < n; ++i) {
    const Complex& value = at.x[i * at.stride_x];
    data.look(value.re);
    data.look(value.im);
    const bool real = quarn::kind_of(value.im) == Kind::zero;
    is_real = is_real && real;
    is_impulse = is_impulse && (i == 0 || (real && quarn::kind_of(value.re) == Kind::zero));
  }
  // Conversions cost less than exact sums up to so many digits.
  constexpr int kConverted = 150;
  if (n == 4 && digits > kConverted && data.finite && !is_impulse) {
    return run_four(backward, at, divisor);
  }
  const bool stores = stands_aside(digits, n);
  std::vector<Complex> aside(stores ? std::size_t(n) : 0);
  Complex* const out = stores ? aside.data() : at.y;
  const std::ptrdiff_t stride = stores ? 1 : at.stride_y;
  if (!data.finite || is_impulse) {
    const Complex value = data.finite ? Complex(quotient(at.x[0].re, n, divisor, digits),  //
                                                quotient(at.x[0].im, n, divisor, digits))
                                      : Complex(quarn::special(Kind::nan), quarn::special(Kind::nan));
    for (Integer i = 0; i < n; ++i) {
      out[i * stride] = value;
    }
  } else {
    const std::size_t words = std::size_t(int(places)) * kPerPlace<Limb>;
    const std::size_t element = 2 * words;
    quarn::Scratch<Limb> z(std::size_t(n) * element);
    const BlockReader<Length> read(reader, format, data, places);
    for (Integer i = 0; i < n; ++i) {
      check_now_and_then(i);
      read(&z[std::size_t(i) * element], at.x[i * at.stride_x].re, false);
      read(&z[std::size_t(i) * element + words], at.x[i * at.stride_x].im, backward);
    }
    sums.run(z.data());
    const DecimalWriter& writer = writers[int(divisor)][std::size_t(data.doublings())];
    const Integer results = is_real ? n / 2 + 1 : n;
    for (Integer k = 0; k < results; ++k) {
      if (stores) {
        check_now_and_then(k);
      }
      at.fetch_next(k);
      const Integer mirror = k == 0 ? 0 : n - k;
      const Limb* const sum = &z[sums.place(k) * element];
      Complex& result = out[k * stride];
      result.re = writer.write(sum, data.exponent, false, digits, places);
      if (!is_real) {
        result.im = writer.write(sum + words, data.exponent, backward, digits, places);
      } else if (k == mirror) {
        result.im = QuarnFloat();
      } else {
        result.im = writer.write(sum + words, data.exponent, backward, digits, places);
        at.fetch_next(mirror);
        out[mirror * stride].re = result.re;
        out[mirror * stride].im = quarn::kind_of(result.im) == Kind::zero ? result.im : -result.im;
      }
    }
  }
  for (std::size_t k = 0; k < aside.size(); ++k) {
    at.y[std::ptrdiff_t(k) * at.stride_y] = std::move(aside[k]);
  }
}

void QuarnTransform::Plan::run(bool backward, const Places& at, QuarnDivisor divisor) const {
  with_places(format.places, [&](auto places) { run(backward, at, divisor, places); });
}

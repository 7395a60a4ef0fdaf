// A transform with its conversions: what stands behind QuarnTransform.
#pragma once

#include <memory>
#include <optional>

#include "number/fixed/core.h"
#include "number/fixed/decimal.h"
#include "quarn/transform.h"

namespace quarn::block {

/// The shape of a transform: how many places its numbers have, and bits before the binary point. Known before any table
/// is made.
struct Format {
  Integer padded = 0;  // length of the convolution, 0: there is none
  int headroom = 0;    // results are below 2^(headroom - 1/2) times the data
  int places = 0;

  int fraction_bits() const { return 64 * places - 2 - headroom; }
};

inline constexpr Integer kLongest = Integer(1) << 24;
inline constexpr int kMostDigits = 1100;

constexpr bool is_supported(Integer n, int digits) { return n >= 1 && n <= kLongest && digits <= kMostDigits; }

/// What happens to the data before the sums, and to the sums afterwards: factors of their errors, and turns on top.
struct Steps {
  int growth = 0;  // bits that numbers gain by it
  double factor_before = 1;
  double turns_before = 0;
  double factor_after = 1;
  double turns_after = 0;
};

/// The shape for sums over a supported number of elements: results divided by `root`, sqrt(n) when that is 0, are off
/// by a quarter of 10^-digits of the largest part of the data at most.
Format format_for(Integer n, int digits, const Steps& steps = {}, double root = 0);

/// Convolution with a chirp: j k = (j^2 + k^2 - (k-j)^2) / 2.
class Chirp {
 public:
  Chirp(Integer n, const Format& format);

  /// The sums over j of x_j exp(-2 pi i j k / n) in order of k, times padded / 2^shift().
  void run(Limb* x) const;
  int shift() const { return shift_; }

 private:
  template <class Length>
  void run(Limb* x, Length places) const;
  template <class Length>
  static void multiply(Limb* out, const Limb* x, const Limb* factor, Length places);

  Integer n_;
  int places_;
  int shift_;
  Core<Limb> core_;
  std::vector<Limb> chirp_;     // exp(-pi i j^2 / n): magnitudes of its parts, masks of their signs
  std::vector<Limb> spectrum_;  // of the conjugate chirp over 2^shift, as the core orders its results
};

/// Either of the two.
class Sums {
 public:
  Sums(Integer n, const Format& format);

  /// x: n complex numbers. Result k is in place place(k), times scale().
  void run(Limb* x) const;
  std::size_t place(Integer k) const { return places_.empty() ? std::size_t(k) : std::size_t(places_[std::size_t(k)]); }
  QuarnFloat scale() const;

 private:
  std::optional<Core<Limb>> core_;
  std::optional<Chirp> chirp_;
  Integer padded_;
  std::vector<Integer> places_;
};

/// What a look at the data shows.
struct Survey {
  bool finite = true;
  std::int64_t exponent = INT64_MIN;  // of the largest part, unless all are zero
  std::uint64_t top = 0;

  void look(const QuarnFloat& part) {
    if (kind_of(part) == Kind::zero) {
      return;
    }
    finite = finite && isfinite(part);
    if (!finite) {
      return;
    }
    const std::int64_t place = QuarnAccess::exponent(part);
    // Nine digits, whatever a limb holds.
    const std::uint64_t leading = QuarnAccess::limbs(part)[0] / Radix::powers[std::size_t(Radix::digits - 9)];
    if (place > exponent) {
      exponent = place;
      top = leading;
    } else if (place == exponent) {
      top = std::max(top, leading);
    }
  }
  bool is_zero() const { return exponent == INT64_MIN; }
  /// So often the data may be doubled below 10^exponent, up to three times.
  int doublings() const;
};

/// Writers for data that were doubled 0 to 3 times to come near 1, of numbers in that format times a factor.
std::vector<DecimalWriter> writers_for(const QuarnFloat& factor, const Format& format, const DecimalReader& constants);

/// Whether results are put together aside, since storage may run out on the way, or an interrupt come.
constexpr bool stands_aside(int digits, Integer n) {
  constexpr Integer kUninterrupted = 65536;
  return digits > QuarnFloat::kInlineLimbs * Radix::digits || n > kUninterrupted;
}

/// Reads numbers on one scale.
template <class Length>
class BlockReader {
 public:
  BlockReader(const DecimalReader& reader, const Format& format, const Survey& survey, Length places)
      : reader_(reader), exponent_(survey.exponent), drop_(format.headroom + 1 - survey.doublings()), places_(places) {}

  void operator()(Limb* out, const QuarnFloat& part, bool negated) const {
    const int words = places_ * kPerPlace<Limb>;
    if (kind_of(part) == Kind::zero) {
      std::fill_n(out, words, Limb(0));
      return;
    }
    reader_.read(out, part, exponent_, places_);
    fixed::shift_down(out, out, words, drop_);
    negate_if(out, out, Limb(0) - Limb(QuarnAccess::negative(part) != negated), places_);
  }

 private:
  const DecimalReader& reader_;
  std::int64_t exponent_;
  int drop_;
  Length places_;
};

}  // namespace quarn::block

struct QuarnTransform::Plan {
  Plan(Integer length, int digit_count);

  /// Where a sequence is, where its transform goes, and how far off the next ones are that follow: 0, there are none.
  struct Places {
    const Complex* x;
    std::ptrdiff_t stride_x;
    Complex* y;
    std::ptrdiff_t stride_y;
    std::ptrdiff_t next_x = 0;
    std::ptrdiff_t next_y = 0;

    /// Asks for element i of the next sequence, which would have to be waited for.
    void fetch_next(Integer i) const {
      if (next_x != 0) {
        const Complex* const data = x + i * stride_x + next_x;
        __builtin_prefetch(&data->re);
        __builtin_prefetch(&data->im);
        Complex* const results = y + i * stride_y + next_y;
        __builtin_prefetch(&results->re, 1);
        __builtin_prefetch(&results->im, 1);
      }
    }
  };
  /// y := the transform of x; y may be x. y is as it was when storage runs out.
  void run(bool backward, const Places& at, QuarnDivisor divisor) const;

  Integer n;
  int digits;
  quarn::block::Format format;
  quarn::block::DecimalReader reader;
  quarn::block::Sums sums;
  std::vector<quarn::block::DecimalWriter> writers[3];  // for each divisor

 private:
  void run_four(bool backward, const Places& at, QuarnDivisor divisor) const;
  template <class Length>
  void run(bool backward, const Places& at, QuarnDivisor divisor, Length places) const;
};

namespace quarn::block {

/// x / divisor, rounded to `digits` digits.
QuarnFloat quotient(const QuarnFloat& x, const QuarnFloat& length, QuarnDivisor divisor, int digits);
/// 1, sqrt(length), length at the working digits.
QuarnFloat value_of(QuarnDivisor divisor, const QuarnFloat& length);

}  // namespace quarn::block

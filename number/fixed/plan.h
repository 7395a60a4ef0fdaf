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

/// The shape for a supported length and number of digits.
Format format_for(Integer n, int digits);

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

}  // namespace quarn::block

struct QuarnTransform::Plan {
  Plan(Integer length, int digit_count, const quarn::block::Format& shape);

  void run(bool backward, Complex* x, std::ptrdiff_t stride) const;

  Integer n;
  int digits;
  quarn::block::Format format;
  quarn::block::DecimalReader reader;
  std::optional<quarn::block::Core<quarn::Limb>> core;
  std::optional<quarn::block::Chirp> chirp;
  // For data that were doubled 0 to 3 times to come near 1.
  std::vector<quarn::block::DecimalWriter> writers;

 private:
  QuarnFloat scaled(const QuarnFloat& x) const;
  template <class Length>
  void run(bool backward, Complex* x, std::ptrdiff_t stride, Length places) const;
};

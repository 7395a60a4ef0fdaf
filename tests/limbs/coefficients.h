// Coefficients for the tests of the limb algorithms: the radices, digits to limbs and back, a naive product.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "number/limbs/radix.h"
#include "number/limbs/tuning.h"
#include "quarn/exact.h"
#include "support/random.h"

namespace support {

/// Radix 10 and 100 have a carry at every other limb.
using Tiny32 = quarn::DecimalRadix<std::uint32_t, std::uint64_t, 1>;
using Small32 = quarn::DecimalRadix<std::uint32_t, std::uint64_t, 2>;
#if defined(__SIZEOF_INT128__)
using Tiny64 = quarn::DecimalRadix<std::uint64_t, unsigned __int128, 1>;
using Small64 = quarn::DecimalRadix<std::uint64_t, unsigned __int128, 2>;
#define TESK_ALL_RADICES \
  support::Tiny32, support::Small32, quarn::Radix32, support::Tiny64, support::Small64, quarn::Radix64
#else
#define TESK_ALL_RADICES support::Tiny32, support::Small32, quarn::Radix32
#endif

template <class R>
using Limbs = std::vector<typename R::Limb>;

/// `length` limbs, leading zeros before the digits.
template <class R>
Limbs<R> from_digits(const std::string& digits, std::size_t length) {
  const std::string text = std::string(length * R::digits - digits.size(), '0') + digits;
  Limbs<R> limbs(length);
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto& limb = limbs[i / R::digits];
    limb = limb * 10 + typename R::Limb(text[i] - '0');
  }
  return limbs;
}

template <class R>
std::string to_digits(const Limbs<R>& limbs) {
  std::string text;
  for (const auto limb : limbs) {
    const std::string part = std::to_string(limb);
    text += std::string(R::digits - part.size(), '0') + part;
  }
  return text;
}

/// Runs of nines, zeros and random digits; the leading limb is as it comes.
template <class R>
Limbs<R> random_limbs(Random& random, std::size_t length) {
  return from_digits<R>(random.digits(length * R::digits), length);
}

/// The limbs that carries like best: all nines, 1 and zeros, zeros and 1, or random ones.
template <class R>
Limbs<R> extreme_limbs(Random& random, std::size_t length) {
  Limbs<R> limbs = random_limbs<R>(random, length);
  switch (random.below(4)) {
    case 0:
      limbs.assign(length, R::base - 1);
      break;
    case 1:
      limbs.assign(length, 0);
      limbs.front() = R::base / 10;
      break;
    case 2:
      limbs.assign(length, 0);
      limbs.back() = 1;
      break;
    default:
      break;
  }
  return limbs;
}

/// a * b, a limb at a time.
template <class R>
Limbs<R> naive_product(const Limbs<R>& a, const Limbs<R>& b) {
  Limbs<R> out(a.size() + b.size(), 0);
  for (std::size_t j = b.size(); j-- > 0;) {
    typename R::Wide carry = 0;
    for (std::size_t i = a.size(); i-- > 0;) {
      carry += typename R::Wide(a[i]) * b[j] + out[i + j + 1];
      out[i + j + 1] = typename R::Limb(carry % R::base);
      carry /= R::base;
    }
    out[j] = typename R::Limb(carry);
  }
  return out;
}

/// Other thresholds for a scope, so that short coefficients reach every algorithm.
template <class R>
class LowThresholds {
 public:
  explicit LowThresholds(const quarn::Thresholds& low) { tables()[0] = tables()[1] = low; }
  ~LowThresholds() { std::copy_n(saved_, 2, tables()); }
  LowThresholds(const LowThresholds&) = delete;
  LowThresholds& operator=(const LowThresholds&) = delete;

 private:
  static quarn::Thresholds* tables() { return quarn::thresholds<typename R::Limb>; }
  quarn::Thresholds saved_[2] = {tables()[0], tables()[1]};
};

/// Transforms on integers, or on doubles with one of the kernels that this processor runs, for a scope.
class AnyKernel {
 public:
  explicit AnyKernel(Random& random) {
    static constexpr const char* kNames[] = {"none", "avx2", "avx512"};
    QuarnExactKernel(kNames[random.between(0, 2)]);
  }
  ~AnyKernel() { QuarnExactKernel("best"); }
  AnyKernel(const AnyKernel&) = delete;
  AnyKernel& operator=(const AnyKernel&) = delete;
};

}  // namespace support

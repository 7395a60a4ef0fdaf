// Between decimal numbers and binary fixed point.
#pragma once

#include <vector>

#include "number/elementary/words.h"

namespace quarn::fixed {

/// The fractions base^-1, base^-2, ..., each to the same number of words, rounded down; kept for the calls of the
/// thread.
class NegativePowers {
 public:
  /// Good for `words` words. Everyday lengths have their own, which stay in the nearer caches.
  static const NegativePowers& for_words(int words);

  explicit NegativePowers(int words);
  int words() const { return words_; }
  int count() const { return count_; }
  /// The leading `words` words of base^-(i+1).
  const Word* power(int i, int words) const { return &powers_[std::size_t(i + 1) * std::size_t(words_)] - words; }
  /// Words that are zero at the top of base^-(i+1).
  static int zero_words(int i) { return (i + 1) * kBitsOfBase / kBits; }

 private:
  static constexpr int kBitsOfBase = kBits == 64 ? 59 : 29;  // rounded down

  int words_;
  int count_;
  std::vector<Word> powers_;
};

/// |x| as n fraction words and an integer word above them, at most two units below. |x| fits the integer word.
template <class Length>
void from_decimal(Word* out, const View& x, Length length) {
  // x = 10^shift * sum of limb(i) base^(whole-1-i), the shift below a limb. Every term is less than base units short,
  // and the shift multiplies that again: two words more take both.
  const int n = length;
  const int words = n + 2;
  const NegativePowers& powers = NegativePowers::for_words(words);
  std::int64_t whole = x.exponent / Radix::digits;
  std::int64_t shift = x.exponent % Radix::digits;
  if (shift < 0) {
    shift += Radix::digits;
    --whole;
  }
  Word sum[kRoom<Length>];
  std::fill_n(sum, words + 1, Word(0));
  for (std::size_t i = 0; i < x.length; ++i) {
    const std::int64_t place = std::int64_t(i) - whole;
    if (place < 0) {
      sum[words] = sum[words] * Radix::base + x.limbs[i];
      continue;
    }
    const int zeros = place < powers.count() ? powers.zero_words(int(place)) : words;
    if (zeros >= words) {
      break;
    }
    const Word* const power = powers.power(int(place), words);
    if constexpr (kIsConstant<Length>) {
      sum[words] += add_product(sum, power, words, x.limbs[i]);
    } else {
      const int used = words - zeros;
      Word carry = add_product(sum, power, used, x.limbs[i]);
      for (int j = used; carry != 0; ++j) {
        sum[j] += carry;
        carry = sum[j] < carry ? 1 : 0;
      }
    }
  }
  // An integer limb without a fraction limb after it still has its place.
  for (std::int64_t i = std::int64_t(x.length); i < whole; ++i) {
    sum[words] *= Radix::base;
  }
  multiply_word(sum, sum, words + 1, Radix::powers[std::size_t(shift)]);
  std::copy_n(sum + 2, n + 1, out);
}

/// A number as limbs, (-1)^negative * 0.L0 L1 ... * 10^exponent with L0 not zero, of which `digits` digits are certain;
/// 0: nothing is.
struct DecimalLimbs {
  static constexpr int kBitsPerLimb = kBits == 64 ? 59 : 29;  // rounded down

  DecimalLimbs() = default;
  DecimalLimbs(const DecimalLimbs&) = delete;
  DecimalLimbs& operator=(const DecimalLimbs&) = delete;

  /// The number of n fraction words and an integer word, not zero, times 10^power, to all its digits: at most two units
  /// of 10^-D below, D being the digits of its last bit.
  template <class Length>
  void set(const Word* x, Length n_words, std::int64_t power) {
    // Each limb takes kBitsPerLimb bits and more, so that as many may be forgotten at the lower end.
    const int n = n_words;
    const int fraction_limbs = n * kBits / kBitsPerLimb + 1;
    storage[0] = x[n] / Radix::base;
    storage[1] = x[n] % Radix::base;
    Word rest[kRoom<Length>];
    std::copy_n(x, n, rest);
#pragma GCC unroll 8
    for (int i = 0; i < fraction_limbs; ++i) {
      const int forgotten = i * kBitsPerLimb / kBits;
      storage[i + 2] = multiply_word(rest + forgotten, rest + forgotten, n - forgotten, Radix::base);
    }
    int first = 0;
    while (storage[first] == 0) {
      ++first;
    }
    limbs = storage + first;
    length = std::size_t(fraction_limbs + 2 - first);
    exponent = power + (2 - first) * Radix::digits;
  }

  bool negative = false;
  int digits = 0;
  std::int64_t exponent = 0;
  std::size_t length = 0;
  const Limb* limbs = nullptr;
  Limb storage[kMaxWords * kBits / kBitsPerLimb + 4];
};

}  // namespace quarn::fixed

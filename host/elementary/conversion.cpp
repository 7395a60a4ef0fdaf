#include "host/elementary/conversion.h"

#include <cstdint>
#include <vector>

namespace quarn::fixed {
namespace {

/// The fractions base^-1, base^-2, ..., each to the same number of words, rounded down.
class NegativePowers {
 public:
  void grow(int words) {
    if (words <= words_) {
      return;
    }
    words_ = words + words / 4;
    // Beyond, the powers are below the last word.
    count_ = words_ * kBits / kBitsOfBase + 1;
    powers_.assign(std::size_t(count_) * std::size_t(words_), 0);
    std::vector<Word> power(std::size_t(words_) + 1, 0);
    power.back() = 1;
    for (int i = 0; i < count_; ++i) {
      divide_word(power.data(), power.data(), words_ + 1, Radix::base);
      std::copy_n(power.data(), words_, &powers_[std::size_t(i) * std::size_t(words_)]);
    }
  }
  int count() const { return count_; }
  /// The leading `words` words of base^-(i+1).
  const Word* power(int i, int words) const { return &powers_[std::size_t(i + 1) * std::size_t(words_)] - words; }
  /// Words that are zero at the top of base^-(i+1).
  static int zero_words(int i) { return (i + 1) * kBitsOfBase / kBits; }

 private:
  static constexpr int kBitsOfBase = kBits == 64 ? 59 : 29;  // rounded down
  std::vector<Word> powers_;
  int words_ = 0;
  int count_ = 0;
};

NegativePowers& negative_powers() {
  static NegativePowers& powers = *new NegativePowers;
  return powers;
}

}  // namespace

void from_decimal(Word* out, const View& x, int n) {
  // x = 10^shift * sum of limb(i) base^(whole-1-i), the shift below a limb. Every term is less than base units short,
  // and the shift multiplies that again: two words more take both.
  const int words = n + 2;
  NegativePowers& powers = negative_powers();
  powers.grow(words);
  std::int64_t whole = x.exponent / Radix::digits;
  std::int64_t shift = x.exponent % Radix::digits;
  if (shift < 0) {
    shift += Radix::digits;
    --whole;
  }
  Number sum;
  std::fill_n(sum.words, words + 1, Word(0));
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
    const int used = words - zeros;
    Word carry = add_product(sum, powers.power(int(place), words), used, x.limbs[i]);
    for (int j = used; carry != 0; ++j) {
      sum[j] += carry;
      carry = sum[j] < carry ? 1 : 0;
    }
  }
  // An integer limb without a fraction limb after it still has its place.
  for (std::int64_t i = std::int64_t(x.length); i < whole; ++i) {
    sum[words] *= Radix::base;
  }
  multiply_word(sum, sum, words + 1, Radix::powers[std::size_t(shift)]);
  std::copy_n(sum.words + 2, n + 1, out);
}

QuarnFloat to_decimal(bool negative, const Word* x, int n, std::int64_t power) {
  // Each limb takes kBitsPerLimb bits and more, so that as many may be forgotten at the lower end.
  constexpr int kBitsPerLimb = kBits == 64 ? 59 : 29;
  const int fraction_limbs = n * kBits / kBitsPerLimb + 1;
  Limb limbs[kMaxWords * kBits / kBitsPerLimb + 4];
  limbs[0] = x[n] / Radix::base;
  limbs[1] = x[n] % Radix::base;
  Number rest;
  std::copy_n(x, n, rest.words);
  int length = 2;
  for (int i = 0; i < fraction_limbs; ++i) {
    const int forgotten = i * kBitsPerLimb / kBits;
    limbs[length++] = multiply_word(rest.words + forgotten, rest.words + forgotten, n - forgotten, Radix::base);
  }
  const int first = limbs[0] == 0 ? 1 : 0;
  return rounded(negative, power + (2 - first) * Radix::digits, limbs + first, std::size_t(length - first), false,
                 length * Radix::digits);
}

}  // namespace quarn::fixed

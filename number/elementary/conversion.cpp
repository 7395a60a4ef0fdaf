#include "number/elementary/conversion.h"

namespace quarn::fixed {

NegativePowers& NegativePowers::for_words(int words) {
  constexpr int kEverydayWords = 640 / kBits + 2;
  static NegativePowers& shorter = *new NegativePowers;
  static NegativePowers& longer = *new NegativePowers;
  NegativePowers& powers = words <= kEverydayWords ? shorter : longer;
  powers.grow(words <= kEverydayWords ? kEverydayWords : words);
  return powers;
}

void NegativePowers::grow(int words) {
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

}  // namespace quarn::fixed

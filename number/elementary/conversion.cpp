#include "number/elementary/conversion.h"

#include <memory>

#include "number/scalar/thread_state.h"

namespace quarn::fixed {

const NegativePowers& NegativePowers::for_words(int words) {
  constexpr int kEverydayWords = 640 / kBits + 2;
  struct Held {
    std::unique_ptr<const NegativePowers> shorter;
    std::unique_ptr<const NegativePowers> longer;
  };
  Held& held = own_cache<Held>(Cache::powers);
  auto& powers = words <= kEverydayWords ? held.shorter : held.longer;
  if (powers == nullptr || words > powers->words()) {
    const int kept = std::max(words, kEverydayWords);
    powers = std::make_unique<const NegativePowers>(kept + kept / 4);
  }
  return *powers;
}

// Beyond `count`, the powers are below the last word.
NegativePowers::NegativePowers(int words)
    : words_(words), count_(words * kBits / kBitsOfBase + 1), powers_(std::size_t(count_) * std::size_t(words), 0) {
  std::vector<Word> power(std::size_t(words) + 1, 0);
  power.back() = 1;
  for (int i = 0; i < count_; ++i) {
    divide_word(power.data(), power.data(), words + 1, Radix::base);
    std::copy_n(power.data(), words, &powers_[std::size_t(i) * std::size_t(words)]);
  }
}

}  // namespace quarn::fixed

#include "src/util/random.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "src/frame/constants.h"
#include "src/frame/working_digits.h"

namespace tesk {
namespace {

constexpr std::uint64_t kBasicMultiplier = 302875106592253;  // 13^13
constexpr int kStateBits = 60;
constexpr std::uint64_t kStateMask = (std::uint64_t(1) << kStateBits) - 1;
constexpr int kWordBits = 15;
constexpr std::uint64_t kWordMask = (std::uint64_t(1) << kWordBits) - 1;
constexpr int kBlockDigits = 9;
constexpr std::int64_t kBlock = 1'000'000'000;

/// Rounding to the working precision may have reached 1, which is no variate: then the number below it.
QuarnFloat below_one(QuarnFloat u) {
  if (u >= 1) {
    return 1 - epsilon();
  }
  return u;
}

QuarnFloat no_generator() { return QuarnFloat("nan"); }

/// The number that a double in [0, 1) with at most 60 bits behind the point is, with all its digits.
QuarnFloat exactly(double value) {
  const WorkingDigits enough(std::max(QuarnDigits(), kStateBits));
  return QuarnFloat(value);
}

}  // namespace

std::uint64_t basic_step(Integer* iseed) noexcept {
  std::uint64_t state = 0;
  for (int i = 3; i >= 0; --i) {
    // Modulo 2^60, so that words that are no digits have a meaning too.
    state = (state << kWordBits) + std::uint64_t(std::int64_t(iseed[i]));
  }
  state = (state * kBasicMultiplier) & kStateMask;
  for (int i = 0; i < 4; ++i) {
    iseed[i] = Integer((state >> (kWordBits * i)) & kWordMask);
  }
  return state;
}

const MultipleSetRow* multiple_set_row(Integer igen) noexcept {
  return igen >= 1 && std::size_t(igen) <= std::size(kMultipleSetTable) ? &kMultipleSetTable[igen - 1] : nullptr;
}

void multiple_set_step(const MultipleSetRow& row, Integer* iseed) noexcept {
  for (int i = 0; i < 4; ++i) {
    iseed[i] = Integer(std::int64_t(row.multipliers[i]) * iseed[i] % row.moduli[i]);
  }
}

std::int64_t next_nine_digits(Integer igen, Integer* iseed) noexcept {
  if (igen == 0) {
    // floor(10^9 X / 2^60), by halves of 30 bits.
    const std::uint64_t state = basic_step(iseed);
    const std::uint64_t low = (state & ((1U << 30) - 1)) * std::uint64_t(kBlock) >> 30;
    return std::int64_t(((state >> 30) * std::uint64_t(kBlock) + low) >> 30);
  }
  const MultipleSetRow* row = multiple_set_row(igen);
  if (row == nullptr) {
    return -1;
  }
  multiple_set_step(*row, iseed);
  std::int64_t digits = 0;
  for (int i = 0; i < 4; ++i) {
    digits += iseed[i] * kBlock / row->moduli[i];
  }
  // Never negative, even for negative states.
  return (digits % kBlock + kBlock) % kBlock;
}

QuarnFloat basic_variate(Integer* iseed) {
  // A conversion of the whole state rounds once, as the sum of its halves would; x87 registers cannot interfere.
  QuarnFloat u = exactly(double(std::int64_t(basic_step(iseed))) * 0x1p-60);
  QuarnFloat largest = 1 - epsilon();
  return u < largest ? u : largest;
}

QuarnFloat multiple_set_variate(Integer igen, Integer* iseed) {
  const MultipleSetRow* row = multiple_set_row(igen);
  if (row == nullptr) {
    return no_generator();
  }
  multiple_set_step(*row, iseed);
  QuarnFloat u;
  for (int i = 0; i < 4; ++i) {
    u += QuarnFloat(iseed[i]) / QuarnFloat(row->moduli[i]);
  }
  return QuarnEvalf2("fmod", u, 1);
}

QuarnFloat full_variate(Integer igen, Integer* iseed) {
  const int blocks = (QuarnDigits() + kBlockDigits - 1) / kBlockDigits + 1;
  std::string text(std::size_t(2 + kBlockDigits * blocks), '0');
  text[1] = '.';
  for (int i = 0; i < blocks; ++i) {
    std::int64_t digits = next_nine_digits(igen, iseed);
    if (digits < 0) {
      return no_generator();
    }
    for (int j = 2 + kBlockDigits * (i + 1); digits > 0; digits /= 10) {
      text[std::size_t(--j)] = char('0' + digits % 10);
    }
  }
  return below_one(QuarnFloat(text));
}

}  // namespace tesk

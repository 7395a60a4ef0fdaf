// Numbers modulo X^points - 1 as chunks below X = 10^kDigits, the lowest one first: how limbs get into a cyclic product
// and out of it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "number/limbs/regroup.h"

namespace quarn {

template <class R, class Word, int kDigits>
struct ChunkCycle {
  using Limb = typename R::Limb;
  static constexpr std::int64_t base = [] {
    std::int64_t power = 1;
    for (int i = 0; i < kDigits; ++i) {
      power *= 10;
    }
    return power;
  }();

  /// The chunks that hold `limbs` limbs.
  static constexpr std::size_t chunks(std::size_t limbs) {
    return std::size_t((std::uint64_t(limbs) * R::digits + kDigits - 1) / kDigits);
  }

  /// out[0 .. points) = the number a[0 .. length), the leading limb first: sums of chunks, below 2^6 X each for a
  /// number at most 64 times as long as the cycle.
  static void load(Word* out, std::size_t points, const Limb* a, std::size_t length) {
    constexpr std::size_t kGroup = Regroup<Word, R::digits, kDigits>::outputs;
    std::size_t filled = 0;  // up to here chunks were stored, beyond the cycle they are added
    limbs_to_chunks<R, kDigits, Word>(a, length, [&](std::size_t index, const Word* group) {
      if (index + kGroup <= points) {
        std::copy_n(group, kGroup, out + index);
        filled = index + kGroup;
        return;
      }
      for (std::size_t i = 0; i < kGroup; ++i) {
        if (index + i < points) {
          out[index + i] = group[i];
          filled = index + i + 1;
        } else {
          out[(index + i) % points] += group[i];
        }
      }
    });
    std::fill(out + filled, out + points, Word(0));
  }

  /// The lowest limbs of a number with all carries done.
  static void store(const Word* chunks, std::size_t points, Limb* out, std::size_t length) {
    chunks_to_limbs<R, kDigits>(chunks, points, out, length);
  }

  /// Stores the lowest limbs of |a - number|, given that the difference lies well between -X^points / 2 and X^points /
  /// 2; returns whether it is negative. Destroys the number; `minuend` is room for another one.
  static bool store_difference(Word* number, Word* minuend, std::size_t points, Limb* out, std::size_t length,
                               const Limb* a, std::size_t na) {
    load(minuend, points, a, na);
    // X^points counts as one: what is carried or borrowed beyond the end comes in again at the start.
    std::int64_t carry = 0;
    for (int round = 0; round == 0 || carry != 0; ++round) {
      for (std::size_t i = 0; i < points && (round == 0 || carry != 0); ++i) {
        std::int64_t value =
            carry + (round == 0 ? std::int64_t(minuend[i]) - std::int64_t(number[i]) : std::int64_t(number[i]));
        carry = 0;
        for (; value < 0; value += base) {
          --carry;
        }
        for (; value >= base; value -= base) {
          ++carry;
        }
        number[i] = Word(value);
      }
    }
    bool negative = number[points - 1] >= Word(base / 2);
    if (negative) {
      // All nines are a zero as well.
      negative = std::any_of(number, number + points, [](Word chunk) { return chunk != Word(base - 1); });
      for (std::size_t i = 0; i < points; ++i) {
        number[i] = Word(base - 1) - number[i];
      }
    }
    store(number, points, out, length);
    return negative;
  }
};

}  // namespace quarn

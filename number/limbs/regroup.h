// The same digits in words of another length: limbs to the chunks of a transform and back.
#pragma once

#include <cstddef>
#include <numeric>
#include <utility>

namespace quarn {

/// Words of kFrom decimal digits into words of kTo digits, a period of both at a time: the lengths of a period, and the
/// digits moved with divisors known when this is compiled.
template <class Word, int kFrom, int kTo>
struct Regroup {
  static constexpr int period = std::lcm(kFrom, kTo);
  static constexpr std::size_t inputs = period / kFrom;
  static constexpr std::size_t outputs = period / kTo;

  /// in[0 .. inputs) and out[0 .. outputs), the least significant first.
  static void apply(const Word* in, Word* out) {
    Word held = 0;
    [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
      (take<int(kIndex) * kFrom, kFrom>(held, in[kIndex], out), ...);
    }
    (std::make_index_sequence<inputs>());
  }

 private:
  static constexpr Word power(int exponent) { return exponent == 0 ? Word(1) : Word(10) * power(exponent - 1); }

  // Adds the kDigits digits of `word`, whose lowest one is digit kPlace of the period, to the digits held.
  template <int kPlace, int kDigits>
  static void take(Word& held, Word word, Word* out) {
    constexpr int kHeld = kPlace % kTo;
    constexpr int kRoom = kTo - kHeld;
    if constexpr (kDigits < kRoom) {
      held += word * power(kHeld);
    } else if constexpr (kDigits == kRoom) {
      out[kPlace / kTo] = held + word * power(kHeld);
      held = 0;
    } else {
      out[kPlace / kTo] = held + word % power(kRoom) * power(kHeld);
      held = 0;
      take<kPlace + kRoom, kDigits - kRoom>(held, word / power(kRoom), out);
    }
  }
};

/// Cuts limbs (the leading one first) into chunks (the lowest one first): every chunk of the number is set, and `sink`
/// gets a period of them with the index of its first one.
template <class R, int kChunkDigits, class Word, class Sink>
void limbs_to_chunks(const typename R::Limb* limbs, std::size_t length, Sink&& sink) {
  using Groups = Regroup<Word, R::digits, kChunkDigits>;
  Word in[Groups::inputs];
  Word out[Groups::outputs];
  std::size_t index = 0;
  const auto* end = limbs + length;
  for (; std::size_t(end - limbs) >= Groups::inputs; end -= Groups::inputs, index += Groups::outputs) {
    for (std::size_t i = 0; i < Groups::inputs; ++i) {
      in[i] = *(end - 1 - i);
    }
    Groups::apply(in, out);
    sink(index, out);
  }
  if (end != limbs) {
    for (std::size_t i = 0; i < Groups::inputs; ++i) {
      in[i] = end > limbs ? *--end : 0;
    }
    Groups::apply(in, out);
    sink(index, out);
  }
}

/// The other way: `length` limbs from chunks[0 .. count), as if followed by chunks of zero.
template <class R, int kChunkDigits, class Word>
void chunks_to_limbs(const Word* chunks, std::size_t count, typename R::Limb* limbs, std::size_t length) {
  using Groups = Regroup<Word, kChunkDigits, R::digits>;
  Word in[Groups::inputs];
  Word out[Groups::outputs];
  auto* end = limbs + length;
  for (std::size_t index = 0; end != limbs; index += Groups::inputs) {
    if (index + Groups::inputs <= count) {
      Groups::apply(chunks + index, out);
    } else {
      for (std::size_t i = 0; i < Groups::inputs; ++i) {
        in[i] = index + i < count ? chunks[index + i] : 0;
      }
      Groups::apply(in, out);
    }
    for (std::size_t i = 0; i < Groups::outputs && end != limbs; ++i) {
      *--end = typename R::Limb(out[i]);
    }
  }
}

}  // namespace quarn

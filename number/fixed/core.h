// The transform itself: sums x_j exp(-2 pi i j k / n) of signed fixed-point numbers, in place.
//
//  1. Odd prime factors r, one after another: n = r q. q sums over r numbers, then the results 0, +-1, +-2, ... turned
//  by
//     exp(-2 pi i j m / n); r transforms of length q are left (decimation in frequency, Gentleman and Sande, 1966).
//  2. A power of 2 in split radix with conjugate pairs (H. Sorensen, M. Heideman, S. Burrus, IEEE Trans. ASSP 34, 1986;
//     I. Kamar and Y. Elcherif, Electronics Letters 25, 1989): half a transform of length n / 2, two of n / 4, whose
//     turns are conjugates of each other.
//
// Places of the results: order(). Numbers have L places; nothing overflows while n times the largest magnitude of a
// part of the data is below 2^(64 L - 2).
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "number/fixed/rotations.h"
#include "quarn/quarnthread.h"

namespace quarn::block {

/// Prime factors above this go by convolution.
inline constexpr Integer kLargestRadix = 31;

/// out = x (c - i s), or x (c + i s) the other way; out may be x. turn: magnitudes of c and s, and where signs count,
/// the mask of c's.
template <bool kConjugate, bool kSigned, class Word, class Length>
[[gnu::always_inline]] inline void rotate(Word* out, const Word* x, const Word* turn, Length places) {
  constexpr int kRoom = room<Word, Length>();
  const int n = places * kPerPlace<Word>;
  Word re_cosine[kRoom];
  Word re_sine[kRoom];
  Word im_cosine[kRoom];
  Word im_sine[kRoom];
  multiply_fraction(re_cosine, x, turn, places);
  multiply_fraction(re_sine, x, turn + n, places);
  multiply_fraction(im_cosine, x + n, turn, places);
  multiply_fraction(im_sine, x + n, turn + n, places);
  if (kSigned && turn[2 * n] != 0) {
    negate_if(re_cosine, re_cosine, ~Word(0), places);
    negate_if(im_cosine, im_cosine, ~Word(0), places);
  }
  if constexpr (kConjugate) {
    subtract(out, re_cosine, im_sine, places);
    add(out + n, im_cosine, re_sine, places);
  } else {
    add(out, re_cosine, im_sine, places);
    subtract(out + n, im_cosine, re_sine, places);
  }
}

/// Word is that of the platform but in tests.
template <class Word>
class Core {
 public:
  /// n has no prime factor above kLargestRadix.
  Core(Integer n, int places) : n_(n), places_(places) {
    const UnitCircle circle(n, places);
    order_.resize(std::size_t(n));
    Integer rest = n;
    std::vector<Integer> radices;
    for (Integer r = 3; r <= kLargestRadix && rest > 1; r += 2) {
      for (; rest % r == 0; rest /= r) {
        radices.push_back(r);
      }
    }
    Integer length = n;
    for (auto r = radices.rbegin(); r != radices.rend(); ++r) {
      add_odd_step(*r, length, circle);
      length /= *r;
    }
    add_pairs(length / 4, circle);
    number(0, n, 0, 1, 0);
  }

  Integer length() const { return n_; }
  int places() const { return places_; }
  /// order()[i]: which result stands in place i.
  const std::vector<Integer>& order() const { return order_; }
  std::size_t words_per_element() const { return std::size_t(2 * places_ * kPerPlace<Word>); }

  /// x: n complex numbers of two parts of L places each.
  void run(Word* x) const {
    with_places(places_, [&](auto places) { step(x, n_, 0, places); });
  }

 private:
  /// Rotations one after another: cosine, sine, masks of their signs.
  struct Turns {
    std::vector<Word> words;
  };
  struct OddStep {
    Integer radix;
    Turns roots;  // exp(-2 pi i a / r), a = 1 .. (r-1)/2
    Turns turns;  // exp(-2 pi i j m / n), m = 1 .. (r-1)/2 for j = 1, then j = 2, ...
  };

  void append(std::vector<Word>& out, const Rotation& rotation) const {
    const auto put = [&out](const std::vector<Limb>& limbs) {
      for (const Limb limb : limbs) {
        for (int part = 0; part < int(sizeof(Limb) / sizeof(Word)); ++part) {
          out.push_back(Word(limb >> (part * kBits<Word> % kBits<Limb>)));
        }
      }
    };
    put(rotation.cosine);
    put(rotation.sine);
    out.push_back(Word(0) - Word(rotation.cosine_negative));
  }

  /// exp(-2 pi i j / (4 q)), j = 1 .. q-1, for q = quarter, quarter / 2, ..., 2.
  void add_pairs(Integer quarter, const UnitCircle& circle) {
    if (quarter <= 1) {
      return;
    }
    const std::size_t half = words_per_element() / 2;
    const std::size_t entry = 2 * half + 1;
    Turns first;
    for (Integer j = 1; j <= quarter / 2; ++j) {
      append(first.words, circle.rotation(std::int64_t(n_ / (4 * quarter)) * j));
    }
    // Beyond an eighth of the circle, cosine and sine change places.
    first.words.resize(std::size_t(quarter - 1) * entry, 0);
    for (std::size_t j = 1; j < std::size_t(quarter / 2); ++j) {
      const Word* const from = &first.words[(j - 1) * entry];
      Word* const to = &first.words[(std::size_t(quarter) - j - 1) * entry];
      std::copy_n(from, half, to + half);
      std::copy_n(from + half, half, to);
    }
    pairs_.push_back(std::move(first));
    for (std::size_t q = std::size_t(quarter) / 2; q > 1; q /= 2) {
      // Every second one of those before.
      const Word* const before = pairs_.back().words.data();
      Turns turns;
      turns.words.resize((q - 1) * entry);
      for (std::size_t j = 1; j < q; ++j) {
        std::copy_n(before + (2 * j - 1) * entry, entry, &turns.words[(j - 1) * entry]);
      }
      pairs_.push_back(std::move(turns));
    }
  }

  /// The check point of a loop over butterflies.
  static void check_now_and_then(Integer j) {
    if (j % 512 == 511) {
      QuarnCheckInterrupt();
    }
  }

  void add_odd_step(Integer r, Integer length, const UnitCircle& circle) {
    OddStep odd{r, {}, {}};
    for (Integer a = 1; a <= r / 2; ++a) {
      append(odd.roots.words, circle.rotation(std::int64_t(n_ / r) * a));
    }
    for (Integer j = 1; j < length / r; ++j) {
      for (Integer m = 1; m <= r / 2; ++m) {
        append(odd.turns.words, circle.rotation(std::int64_t(n_ / length) * j * m));
      }
    }
    odd_.push_back(std::move(odd));
  }

  /// Numbers the results of a transform of `length` at `place`: first, first + stride, ... modulo n.
  void number(std::size_t place, Integer length, std::int64_t first, std::int64_t stride, std::size_t odd) {
    first = (first % n_ + n_) % n_;
    if (length == 1) {
      order_[place] = Integer(first);
    } else if (odd < odd_.size()) {
      const Integer r = odd_[odd].radix;
      for (Integer m = 0; m < r; ++m) {
        const Integer residue = m <= r / 2 ? m : m - r;
        number(place + std::size_t(length / r * m), length / r, first + stride * residue, stride * r, odd + 1);
      }
    } else if (length == 2) {
      number(place, 1, first, 0, odd);
      number(place + 1, 1, first + stride, 0, odd);
    } else {
      const Integer quarter = length / 4;
      number(place, 2 * quarter, first, 2 * stride, odd);
      number(place + std::size_t(2 * quarter), quarter, first + stride, 4 * stride, odd);
      number(place + std::size_t(3 * quarter), quarter, first - stride, 4 * stride, odd);
    }
  }

  template <class Length>
  static constexpr int words(Length places) {
    return places * kPerPlace<Word>;
  }

  template <class Length>
  void step(Word* x, Integer length, std::size_t odd, Length places) const {
    if (odd == odd_.size()) {
      return split(x, length, places);
    }
    const OddStep& now = odd_[odd];
    const Integer quotient = length / now.radix;
    const std::size_t rotation = std::size_t(2 * words(places) + 1);
    const Word* turns = now.turns.words.data();
    for (Integer j = 0; j < quotient; ++j) {
      check_now_and_then(j);
      odd_butterfly(x + std::size_t(j) * std::size_t(2 * words(places)), quotient, now, j == 0 ? nullptr : turns,
                    places);
      turns += j == 0 ? 0 : rotation * std::size_t(now.radix / 2);
    }
    for (Integer m = 0; m < now.radix; ++m) {
      step(x + std::size_t(m) * std::size_t(quotient) * std::size_t(2 * words(places)), quotient, odd + 1, places);
    }
  }

  template <class Length>
  [[gnu::noinline]] void odd_butterfly(Word* x, Integer quotient, const OddStep& odd, const Word* turns,
                                       Length places) const {
    constexpr int kRoom = 2 * room<Word, Length>();
    const int n = words(places);
    const std::size_t stride = std::size_t(quotient) * std::size_t(2 * n);
    const std::size_t rotation = std::size_t(2 * n + 1);
    const Integer half = odd.radix / 2;
    Word sums[kLargestRadix / 2][kRoom];
    Word differences[kLargestRadix / 2][kRoom];
    Word total[kRoom];
    std::copy_n(x, 2 * n, total);
    for (Integer a = 0; a < half; ++a) {
      const Word* const upper = x + stride * std::size_t(a + 1);
      const Word* const lower = x + stride * std::size_t(odd.radix - 1 - a);
      for (int part = 0; part < 2; ++part) {
        add(sums[a] + part * n, upper + part * n, lower + part * n, places);
        subtract(differences[a] + part * n, upper + part * n, lower + part * n, places);
        add(total + part * n, total + part * n, sums[a] + part * n, places);
      }
    }
    for (Integer m = 1; m <= half; ++m) {
      // even - i odd and even + i odd are the results m and -m.
      Word even[kRoom];
      Word odds[kRoom];
      Word product[kRoom];
      std::copy_n(x, 2 * n, even);
      std::fill_n(odds, 2 * n, Word(0));
      for (Integer a = 1; a <= half; ++a) {
        const Integer power = a * m % odd.radix;
        const Word* const root =
            odd.roots.words.data() + std::size_t(std::min(power, odd.radix - power) - 1) * rotation;
        const Word cosine_negative = root[2 * n];
        for (int part = 0; part < 2; ++part) {
          multiply_fraction(product, sums[a - 1] + part * n, root, places);
          if (cosine_negative != 0) {
            subtract(even + part * n, even + part * n, product, places);
          } else {
            add(even + part * n, even + part * n, product, places);
          }
          multiply_fraction(product, differences[a - 1] + part * n, root + n, places);
          if (power > half) {
            subtract(odds + part * n, odds + part * n, product, places);
          } else {
            add(odds + part * n, odds + part * n, product, places);
          }
        }
      }
      Word* const upper = x + stride * std::size_t(m);
      Word* const lower = x + stride * std::size_t(odd.radix - m);
      Word y[kRoom];
      Word z[kRoom];
      add(y, even, odds + n, places);
      subtract(y + n, even + n, odds, places);
      subtract(z, even, odds + n, places);
      add(z + n, even + n, odds, places);
      // The inputs m and -m have been used up by the sums.
      if (turns == nullptr) {
        std::copy_n(y, 2 * n, upper);
        std::copy_n(z, 2 * n, lower);
      } else {
        const Word* const turn = turns + std::size_t(m - 1) * rotation;
        rotate<false, true>(upper, y, turn, places);
        rotate<true, true>(lower, z, turn, places);
      }
    }
    std::copy_n(total, 2 * n, x);
  }

  template <class Length>
  void split(Word* x, Integer length, Length places) const {
    if (length == 1) {
      return;
    }
    const int n = words(places);
    const std::size_t element = std::size_t(2 * n);
    if (length == 2) {
      Word first[2 * room<Word, Length>()];
      std::copy_n(x, 2 * n, first);
      for (int part = 0; part < 2; ++part) {
        add(x + part * n, first + part * n, x + (2 + part) * n, places);
        subtract(x + (2 + part) * n, first + part * n, x + (2 + part) * n, places);
      }
      return;
    }
    const Integer quarter = length / 4;
    const std::size_t stride = std::size_t(quarter) * element;
    quarter_butterfly<false>(x, stride, nullptr, places);
    if (quarter > 1) {
      // From the longest table to that for two.
      const Word* turn = pairs_[pairs_.size() - std::size_t(std::countr_zero(unsigned(quarter)))].words.data();
      for (Integer j = 1; j < quarter; ++j, turn += 2 * n + 1) {
        check_now_and_then(j);
        quarter_butterfly<true>(x + std::size_t(j) * element, stride, turn, places);
      }
    }
    split(x, 2 * quarter, places);
    split(x + 2 * stride, quarter, places);
    split(x + 3 * stride, quarter, places);
  }

  template <bool kTurned, class Length>
  [[gnu::always_inline]] static void quarter_butterfly(Word* x, std::size_t stride, const Word* turn, Length places) {
    constexpr int kRoom = room<Word, Length>();
    const int n = words(places);
    Word difference[2 * kRoom];
    Word other[2 * kRoom];
    for (int part = 0; part < 2; ++part) {
      Word* const a = x + part * n;
      Word* const b = a + stride;
      Word* const c = b + stride;
      Word* const d = c + stride;
      subtract(difference + part * n, a, c, places);
      subtract(other + part * n, b, d, places);
      add(a, a, c, places);
      add(b, b, d, places);
    }
    Word y[2 * kRoom];
    Word z[2 * kRoom];
    Word* const first = kTurned ? y : x + 2 * stride;
    Word* const second = kTurned ? z : x + 3 * stride;
    // difference - i other and difference + i other
    add(first, difference, other + n, places);
    subtract(first + n, difference + n, other, places);
    subtract(second, difference, other + n, places);
    add(second + n, difference + n, other, places);
    if constexpr (kTurned) {
      rotate<false, false>(x + 2 * stride, y, turn, places);
      rotate<true, false>(x + 3 * stride, z, turn, places);
    }
  }

  Integer n_;
  int places_;
  std::vector<Integer> order_;
  std::vector<OddStep> odd_;
  std::vector<Turns> pairs_;
};

}  // namespace quarn::block

// Arithmetic modulo word-size primes, for the number-theoretic transform.
//
// A prime p is below a quarter of the word's range, so that values may wait unreduced below 4p between the steps of a
// transform (D. Harvey, "Faster arithmetic for number-theoretic transforms", J. Symbolic Comput. 60, 2014).
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quarn {

/// A constant factor w with the quotient floor(w * 2^bits / p) that saves the division (Shoup's trick).
template <class Word>
struct ShoupFactor {
  Word value;
  Word quotient;
};

/// The integers modulo kPrime = 1 + 315 * 2^kTwos * c. kRoot has the order 315 * 2^kTwos.
template <class WordType, class WideType, WordType kPrime, int kTwos, WordType kRoot>
struct PrimeField {
  using Word = WordType;
  using Wide = WideType;
  using Factor = ShoupFactor<Word>;
  static constexpr int bits = 8 * sizeof(Word);
  static constexpr Word p = kPrime;
  static constexpr int twos = kTwos;
  static constexpr Word odd = 315;
  static_assert(kPrime < Word(1) << (bits - 2) && (kPrime - 1) % (odd << kTwos) == 0);

  static constexpr Word high(Word a, Word b) { return Word((Wide(a) * b) >> bits); }

  /// From below 4p to below 2p.
  static constexpr Word below_2p(Word x) { return std::min<Word>(x, x - 2 * p); }
  /// From below 2p to below p.
  static constexpr Word below_p(Word x) { return std::min<Word>(x, x - p); }

  /// x * w, below 2p, for any word x.
  static constexpr Word multiply(Word x, Factor w) { return x * w.value - high(x, w.quotient) * p; }

  // 1 / p modulo 2^bits, by Newton's iteration from three right bits.
  static constexpr Word inverse_p = [] {
    Word x = p;
    for (int i = 0; i < 5; ++i) {
      x *= 2 - p * x;
    }
    return x;
  }();

  /// sum / 2^bits, below 3p, for a sum of products below 8 p^2 (Montgomery's reduction).
  static constexpr Word montgomery_reduce(Wide sum) { return Word(sum >> bits) - high(Word(sum) * inverse_p, p) + p; }

  // Slower arithmetic on reduced values, for constants and tables.
  static constexpr Word product(Word a, Word b) { return Word(Wide(a) * b % p); }
  static constexpr Word difference(Word a, Word b) { return a < b ? a + (p - b) : a - b; }
  static constexpr Word power(Word x, Word exponent) {
    Word result = 1;
    for (; exponent != 0; exponent >>= 1) {
      if (exponent & 1) {
        result = product(result, x);
      }
      x = product(x, x);
    }
    return result;
  }
  static constexpr Word inverse(Word x) { return power(x, p - 2); }
  /// 2^bits modulo p, and the same as a factor.
  static constexpr Word montgomery_one = Word((Wide(1) << bits) % p);

  /// The factor of a reduced w without a division: w * 2^bits = quotient * p + remainder holds modulo 2^bits as well.
  static constexpr Factor factor(Word w) {
    constexpr Factor shift{montgomery_one, Word((Wide(montgomery_one) << bits) / p)};
    return {w, Word(0) - below_p(multiply(w, shift)) * inverse_p};
  }
  /// A root of unity of the order 2^k.
  static constexpr Word root_of_two_power(int k) { return power(kRoot, odd << (kTwos - k)); }
  /// A root of unity of an odd order that divides 315.
  static constexpr Word root_of_odd(Word order) { return power(kRoot, (odd / order) << kTwos); }

  static_assert(power(kRoot, odd << kTwos) == 1 && power(kRoot, odd << (kTwos - 1)) != 1 &&
                power(kRoot, (odd / 3) << kTwos) != 1 && power(kRoot, (odd / 5) << kTwos) != 1 &&
                power(kRoot, (odd / 7) << kTwos) != 1);
};

/// For a word type: two primes, and the digits of a chunk, the coefficient that a transform takes.
template <class Word>
struct TransformPrimes;

#if defined(__SIZEOF_INT128__)
template <>
struct TransformPrimes<std::uint64_t> {
  using First = PrimeField<std::uint64_t, unsigned __int128, 4611685965512048641U, 24, 1645534782818079666U>;
  using Second = PrimeField<std::uint64_t, unsigned __int128, 4611685907378995201U, 24, 96235921856054493U>;
  static constexpr int chunk_digits = 16;
};
#endif
template <>
struct TransformPrimes<std::uint32_t> {
  using First = PrimeField<std::uint32_t, std::uint64_t, 1073479681U, 17, 820384675U>;
  using Second = PrimeField<std::uint32_t, std::uint64_t, 1032192001U, 17, 169794967U>;
  static constexpr int chunk_digits = 6;
};

}  // namespace quarn

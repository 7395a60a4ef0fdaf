// Arithmetic of binary fixed-point numbers: arrays of words, the least significant one first.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#include "number/limbs/divider.h"
#include "number/scalar/access.h"

namespace quarn::fixed {

using Word = Limb;
using Wide = Radix::Wide;
inline constexpr int kBits = 8 * sizeof(Word);

/// The longest number, integer word and guard words included.
inline constexpr int kMaxWords = 12'800 / kBits;

/// Words for a number of n = Length fraction words, with a few to spare: constant lengths are 7 and less.
template <class Length>
inline constexpr int kRoom = kIsConstant<Length> ? 16 : kMaxWords;

/// Room for a number of that length; how many words are in use is known to its user. One word is set, so that compilers
/// which do not know that a length is positive see no use of what was never written.
template <class Length>
struct Room {
  Room() { words[0] = 0; }
  Word words[kRoom<Length>];
  operator Word*() { return words; }
  operator const Word*() const { return words; }
};

/// A number of up to kMaxWords words.
using Number = Room<int>;

/// out = a * b, the word above returned. out may be a.
inline Word multiply_word(Word* out, const Word* a, int n, Word b) {
  Word carry = 0;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(a[i]) * b + carry;
    out[i] = Word(t);
    carry = Word(t >> kBits);
  }
  return carry;
}

/// out -= a * b, what is to be taken from the word above returned.
inline Word subtract_product(Word* out, const Word* a, int n, Word b) {
  Word carry = 0;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(a[i]) * b + carry;
    carry = Word(t >> kBits) + Word(out[i] < Word(t));
    out[i] -= Word(t);
  }
  return carry;
}

/// out += a * b, the word above returned.
inline Word add_product(Word* out, const Word* a, int n, Word b) {
  Word carry = 0;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(a[i]) * b + out[i] + carry;
    out[i] = Word(t);
    carry = Word(t >> kBits);
  }
  return carry;
}

inline Word add(Word* out, const Word* a, const Word* b, int n) {
  Word carry = 0;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(a[i]) + b[i] + carry;
    out[i] = Word(t);
    carry = Word(t >> kBits);
  }
  return carry;
}

inline Word subtract(Word* out, const Word* a, const Word* b, int n) {
  Word borrow = 0;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(a[i]) - b[i] - borrow;
    out[i] = Word(t);
    borrow = Word(t >> kBits) & 1;
  }
  return borrow;
}

/// out = -a modulo the word above.
inline void negate(Word* out, const Word* a, int n) {
  Word carry = 1;
  for (int i = 0; i < n; ++i) {
    const Wide t = Wide(Word(~a[i])) + carry;
    out[i] = Word(t);
    carry = Word(t >> kBits);
  }
}

/// out = a / b, rounded down. out may be a.
inline void divide_word(Word* out, const Word* a, int n, Word b) {
#if QUARN_LIMB_BITS == 64
  // Moeller and Granlund, Improved division by invariant integers (2011), algorithm 4, with a and b moved up.
  const int shift = std::countl_zero(b);
  const Word divisor = b << shift;
  const Word reciprocal = reciprocal_word(divisor);
  const auto upper = [shift](Word word) { return word >> 1 >> (kBits - 1 - shift); };
  Word rest = upper(a[n - 1]);
  for (int i = n; i-- > 0;) {
    const Word low = Word(a[i] << shift) | (i > 0 ? upper(a[i - 1]) : 0);
    const Wide estimate = Wide(reciprocal) * rest + ((Wide(rest) << kBits) | low);
    Word quotient = Word(estimate >> kBits) + 1;
    rest = low - quotient * divisor;
    if (rest > Word(estimate)) {
      --quotient;
      rest += divisor;
    }
    if (rest >= divisor) [[unlikely]] {
      ++quotient;
      rest -= divisor;
    }
    out[i] = quotient;
  }
#else
  Word rest = 0;
  for (int i = n; i-- > 0;) {
    const Wide t = (Wide(rest) << kBits) | a[i];
    out[i] = Word(t / b);
    rest = Word(t % b);
  }
#endif
}

/// out = a * 2^bits modulo the word above. out may be a.
inline void shift_up(Word* out, const Word* a, int n, int bits) {
  const int whole = bits / kBits;
  const int part = bits % kBits;
  for (int i = n; i-- > 0;) {
    const Word high = i >= whole ? a[i - whole] : 0;
    const Word low = i > whole ? a[i - whole - 1] : 0;
    out[i] = part == 0 ? high : Word(high << part) | Word(low >> (kBits - part));
  }
}

/// out = a / 2^bits, rounded down. out may be a.
inline void shift_down(Word* out, const Word* a, int n, int bits) {
  const int whole = bits / kBits;
  const int part = bits % kBits;
  for (int i = 0; i < n; ++i) {
    const Word low = i + whole < n ? a[i + whole] : 0;
    const Word high = i + whole + 1 < n ? a[i + whole + 1] : 0;
    out[i] = part == 0 ? low : Word(low >> part) | Word(high << (kBits - part));
  }
}

/// The product of two fractions of n words: at most n units below the exact one, never above. out may be a or b.
template <class Length>
inline void multiply_high(Word* out, const Word* a, const Word* b, Length length) {
  // By columns, the low and high words of the products summed apart: no carry is waited for inside a column. Columns
  // below n - 1 are left out: less than n - 1 units.
  const int n = length;
  // Long squares are worth half the products.
  const bool square = !kIsConstant<Length> && a == b;
  Word result[kRoom<Length>];
  Wide carry = 0;
#pragma GCC unroll 8
  for (int column = n - 1; column <= 2 * n - 2; ++column) {
    Wide low = 0;
    Wide high = 0;
    const auto put = [&](int i) {
      const Wide product = Wide(a[i]) * b[column - i];
      low += Word(product);
      high += Word(product >> kBits);
    };
    if constexpr (kIsConstant<Length>) {
#pragma GCC unroll 8
      for (int i = 0; i < n; ++i) {
        if (column - i < n) {
          put(i);
        }
      }
    } else {
      const int end = square ? (column + 1) / 2 : n;
#pragma GCC unroll 8
      for (int i = column - n + 1; i < end; ++i) {
        put(i);
      }
      if (square) {
        low *= 2;
        high *= 2;
        if (column % 2 == 0) {
          put(column / 2);
        }
      }
    }
    low += carry;
    if (column >= n) {
      result[column - n] = Word(low);
    }
    carry = (low >> kBits) + high;
  }
  result[n - 1] = Word(carry);
  std::copy_n(result, n, out);
}

inline bool is_zero(const Word* a, int n) {
  return std::all_of(a, a + n, [](Word word) { return word == 0; });
}

/// Zero bits above the leading one bit.
inline int leading_zeros(const Word* a, int n) {
  int zeros = 0;
  for (int i = n; i-- > 0; zeros += kBits) {
    if (a[i] != 0) {
      for (Word top = a[i]; top >> (kBits - 1) == 0; top <<= 1) {
        ++zeros;
      }
      break;
    }
  }
  return zeros;
}

}  // namespace quarn::fixed

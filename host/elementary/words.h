// Arithmetic of binary fixed-point numbers: arrays of words, the least significant one first.
#pragma once

#include <algorithm>
#include <cstddef>

#include "host/number/access.h"

namespace quarn::fixed {

using Word = Limb;
using Wide = Radix::Wide;
inline constexpr int kBits = 8 * sizeof(Word);

/// The longest number, integer word and guard words included.
inline constexpr int kMaxWords = 12'800 / kBits;

/// A number of up to kMaxWords words; how many are in use is known to its user.
struct Number {
  Number() { words[0] = 0; }
  Word words[kMaxWords];
  operator Word*() { return words; }
  operator const Word*() const { return words; }
};

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
  Word rest = 0;
  for (int i = n; i-- > 0;) {
    const Wide t = (Wide(rest) << kBits) | a[i];
    out[i] = Word(t / b);
    rest = Word(t % b);
  }
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
inline void multiply_high(Word* out, const Word* a, const Word* b, int n) {
  // By columns, the low and high words of the products summed apart: no carry is waited for inside a column. Columns
  // below n - 1 are left out: less than n - 1 units.
  Word result[kMaxWords];
  Wide carry = 0;
  for (int column = n - 1; column <= 2 * n - 2; ++column) {
    const int first = column - n + 1;
    Wide low = carry;
    Wide high = 0;
    const Word* x = a + first;
    const Word* y = b + n - 1;
#pragma GCC unroll 8
    for (int i = n - first; i > 0; --i) {
      const Wide product = Wide(*x++) * *y--;
      low += Word(product);
      high += Word(product >> kBits);
    }
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

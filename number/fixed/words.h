// Signed fixed-point numbers of L 64-bit places for block transforms: arrays of words, the least significant one first,
// two's complement.
//
// A place is one 64-bit word or two 32-bit ones, and every function gives the same bits with either: where low columns
// of a product are left out, they are those of whole places.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "number/limbs/with_constant.h"
#include "number/scalar/access.h"

namespace quarn::block {

template <class Word>
struct WordTraits;
#if defined(__SIZEOF_INT128__)
template <>
struct WordTraits<std::uint64_t> {
  using Wide = unsigned __int128;
};
#endif
template <>
struct WordTraits<std::uint32_t> {
  using Wide = std::uint64_t;
};

template <class Word>
inline constexpr int kBits = 8 * sizeof(Word);
/// Words to a place.
template <class Word>
inline constexpr int kPerPlace = 64 / kBits<Word>;

/// The longest number, in places: 1000 digits of a long sequence, and one place more for its tables.
inline constexpr int kMaxPlaces = 64;

/// Room for a number of L places.
template <class Word, class Length>
inline constexpr int room() {
  if constexpr (kIsConstant<Length>) {
    return Length::value * kPerPlace<Word>;
  } else {
    return kMaxPlaces * kPerPlace<Word>;
  }
}

/// a + b + carry; carry is 0 or 1, before and after.
template <class Word>
[[gnu::always_inline]] inline Word add_carry(Word a, Word b, unsigned char& carry) {
#if defined(__x86_64__)
  if constexpr (sizeof(Word) == 8) {
    unsigned long long sum;
    carry = _addcarry_u64(carry, a, b, &sum);
    return sum;
  }
#endif
  using Wide = typename WordTraits<Word>::Wide;
  const Wide sum = Wide(a) + b + carry;
  carry = static_cast<unsigned char>(sum >> kBits<Word>);
  return Word(sum);
}

/// a - b - borrow.
template <class Word>
[[gnu::always_inline]] inline Word subtract_borrow(Word a, Word b, unsigned char& borrow) {
#if defined(__x86_64__)
  if constexpr (sizeof(Word) == 8) {
    unsigned long long difference;
    borrow = _subborrow_u64(borrow, a, b, &difference);
    return difference;
  }
#endif
  using Wide = typename WordTraits<Word>::Wide;
  const Wide difference = Wide(a) - b - borrow;
  borrow = static_cast<unsigned char>((difference >> kBits<Word>)&1);
  return Word(difference);
}

template <class Word, class Length>
[[gnu::always_inline]] inline void add(Word* out, const Word* a, const Word* b, Length places) {
  unsigned char carry = 0;
  const int n = places * kPerPlace<Word>;
#pragma GCC unroll 8
  for (int i = 0; i < n; ++i) {
    out[i] = add_carry(a[i], b[i], carry);
  }
}

template <class Word, class Length>
[[gnu::always_inline]] inline void subtract(Word* out, const Word* a, const Word* b, Length places) {
  unsigned char borrow = 0;
  const int n = places * kPerPlace<Word>;
#pragma GCC unroll 8
  for (int i = 0; i < n; ++i) {
    out[i] = subtract_borrow(a[i], b[i], borrow);
  }
}

/// out = a where mask is 0, -a where it is all ones. out may be a.
template <class Word, class Length>
[[gnu::always_inline]] inline void negate_if(Word* out, const Word* a, Word mask, Length places) {
  unsigned char carry = mask & 1;
  const int n = places * kPerPlace<Word>;
#pragma GCC unroll 8
  for (int i = 0; i < n; ++i) {
    out[i] = add_carry(Word(a[i] ^ mask), Word(0), carry);
  }
}

/// All ones for a negative number, else 0.
template <class Word, class Length>
[[gnu::always_inline]] inline Word sign_mask(const Word* a, Length places) {
  return Word(0) - (a[places * kPerPlace<Word> - 1] >> (kBits<Word> - 1));
}

/// The sum of products in one column of a product, and what it carries to the next.
template <class Word>
class Column {
 public:
  [[gnu::always_inline]] void add(Word a, Word b) {
#if defined(__x86_64__)
    if constexpr (sizeof(Word) == 8) {
      // Compilers keep no carry between additions.
      Word high;
      __asm__("mulq %[b]\n\taddq %%rax, %[low]\n\tadcq %%rdx, %[middle]\n\tadcq $0, %[top]"
              : [low] "+r"(low_), [middle] "+r"(middle_), [top] "+r"(top_), "+a"(a), "=&d"(high)
              : [b] "rm"(b)
              : "cc");
      return;
    }
#endif
    using Wide = typename WordTraits<Word>::Wide;
    const Wide product = Wide(a) * b;
    const Wide low = Wide(low_) + Word(product);
    low_ = Word(low);
    const Wide middle = Wide(middle_) + Word(product >> kBits<Word>) + Word(low >> kBits<Word>);
    middle_ = Word(middle);
    top_ += Word(middle >> kBits<Word>);
  }
  /// The word of this column; the next one begins.
  [[gnu::always_inline]] Word next() {
    const Word word = low_;
    low_ = middle_;
    middle_ = top_;
    top_ = 0;
    return word;
  }

 private:
  Word low_ = 0;
  Word middle_ = 0;
  Word top_ = 0;
};

/// The upper half of the product of two unsigned numbers: at most L units below the exact one, never above. Products of
/// places i and j with i + j < L - 1 are left out: less than L - 1 units. out overlaps neither operand.
template <class Word, class Length>
[[gnu::always_inline]] inline void multiply_high(Word* out, const Word* a, const Word* b, Length places) {
  constexpr int kPart = kPerPlace<Word>;
  const int n = places * kPart;
  Column<Word> column;
#pragma GCC unroll 16
  for (int w = n - kPart; w < 2 * n - 1; ++w) {
    const int first = w < n ? 0 : w - n + 1;
    const int last = w < n ? w : n - 1;
#pragma GCC unroll 8
    for (int i = first; i <= last; ++i) {
      if (kPart == 1 || i / kPart + (w - i) / kPart >= n / kPart - 1) {
        column.add(a[i], b[w - i]);
      }
    }
    const Word word = column.next();
    if (w >= n) {
      out[w - n] = word;
    }
  }
  out[n - 1] = column.next();
}

/// out = a * b / 2^(64 L), a signed and b an unsigned fraction: at most L units below the exact value, never above.
template <class Word, class Length>
[[gnu::always_inline]] inline void multiply_fraction(Word* out, const Word* a, const Word* b, Length places) {
  Word product[room<Word, Length>()];
  multiply_high(product, a, b, places);
  // A negative number is its bits less 2^(64 L).
  const Word mask = sign_mask(a, places);
  unsigned char borrow = 0;
  const int n = places * kPerPlace<Word>;
#pragma GCC unroll 8
  for (int i = 0; i < n; ++i) {
    out[i] = subtract_borrow(product[i], Word(b[i] & mask), borrow);
  }
}

/// Calls f with L as a constant where numbers are short.
template <class Function>
auto with_places(int places, const Function& f) {
  return with_constant<2, 3, 4, 6>(places, f);
}

}  // namespace quarn::block

// Taylor sums and addition theorems in fixed point. "Unit" is the last word's unit; n words. Lengths are constants for
// everyday precisions, and plain ints above.
#pragma once

#include "number/elementary/coefficients.h"
#include "number/elementary/tables.h"

namespace quarn::fixed {

/// The powers x, x^2, ... x^count of a fraction of n words, each at most n + 1 units below; count <= kMostPowers.
inline constexpr int kMostPowers = 16;

template <class Length>
class Powers {
 public:
  Powers(const Word* x, Length n, int count) : n_(n), count_(count) {
    std::copy_n(x, int(n), power(1));
    for (int i = 2; i <= count; ++i) {
      multiply_high(power(i), power(i / 2), power(i - i / 2), n_);
    }
  }
  int count() const { return count_; }
  /// The leading `length` words of x^i.
  const Word* leading(int i, int length) const { return words_ + (i * int(n_) - length); }

 private:
  Word* power(int i) { return words_ + (i - 1) * int(n_); }

  Length n_;
  int count_;
  Word words_[kMostPowers * kRoom<Length>];
};

/// out = the sum of c(k) x^k over k >= 1 with the coefficients of the table, 0 <= x < 2^-bits; with the signs + - + -
/// if kAlternating.
///
/// With x^(i + m j) = x^i (x^m)^j the terms of a row j need powers up to x^(m-1) alone, and rows are joined by
/// products with x^m (M. S. Paterson, L. J. Stockmeyer 1973; D. M. Smith 1989). Coefficients are words over common
/// denominators, so that a term is a product by a word; the sum is divided where the denominator changes (F. Johansson,
/// "Efficient implementation of elementary functions in the medium-precision range", 2015). Rows are computed to the
/// words that count.
template <bool kAlternating, class Length>
void factorial_sum(Word* out, const Coefficients& table, const Powers<Length>& powers, Length length, int bits) {
  const int n = length;
  const int m = powers.count();
  int k = table.terms(n * kBits, bits);
  int i = k % m;
  const auto words_of = [=](int row) {
    return kIsConstant<Length> ? n : std::max(1, n - std::max(0, bits * m * row - 8) / kBits);
  };
  int row = k / m;
  int used = words_of(row);
  // One word more for the integer part, which the numerators go into.
  Word sum[kRoom<Length>];
  std::fill(sum + (n - used), sum + (n + 1), Word(0));
  for (;; --k) {
    Word* const low = sum + (n - used);
    const bool negative = kAlternating && k % 2 != 0;
    const Word numerator = table.numerator[k];
    if (i == 0) {
      // m is even, and so is k.
      sum[n] += numerator;
    } else if (negative) {
      sum[n] -= subtract_product(low, powers.leading(i, used), used, numerator);
    } else {
      sum[n] += add_product(low, powers.leading(i, used), used, numerator);
    }
    if (table.divisor[k] != 0) {
      // The latest term outweighs those after it: the sum has its sign.
      if (negative) {
        negate(low, low, used + 1);
      }
      divide_word(low, low, used + 1, table.divisor[k]);
      if (k == 1) {
        break;
      }
      if (negative) {
        negate(low, low, used + 1);
      }
    }
    if (i-- == 0) {
      i = m - 1;
      // The power must be good for the row that the product goes to.
      const int longer = words_of(--row);
      std::fill(sum + (n - longer), low, Word(0));
      used = longer;
      Word* const top = sum + (n - used);
      const Word whole = sum[n];
      if constexpr (kIsConstant<Length>) {
        multiply_high(top, top, powers.leading(m, used), length);
      } else {
        multiply_high(top, top, powers.leading(m, used), used);
      }
      sum[n] = add_product(top, powers.leading(m, used), used, whole);
    }
  }
  std::copy_n(sum, n, out);
}

/// An even number of powers about which products of full length are fewest.
inline int power_count(int terms, int sums) {
  int m = 2;
  while (m < kMostPowers && (m + 1) * (m + 1) < terms * sums) {
    m += 2;
  }
  return m;
}

/// e = exp(r) - 1 for 0 <= r < 2^-bits.
template <class Length>
void exp_series(Word* e, const Word* r, Length n, int bits) {
  const Coefficients& table = coefficients(Coefficients::Kind::every);
  const Powers<Length> powers(r, n, power_count(table.terms(n * kBits, bits), 1));
  factorial_sum<false>(e, table, powers, n, bits);
}

/// s = sin r and v = 1 - cos r for 0 <= r < 2^-bits.
template <class Length>
void sin_cos_series(Word* s, Word* v, const Word* r, Length n, int bits) {
  Word square[kRoom<Length>];
  multiply_high(square, r, r, n);
  // With y = r^2: 1 - cos r = y / 2! - y^2 / 4! + ..., sin r = r - r (y / 3! - y^2 / 5! + ...).
  const Coefficients& even = coefficients(Coefficients::Kind::even);
  const Powers<Length> powers(square, n, power_count(even.terms(n * kBits, 2 * bits), 2));
  factorial_sum<true>(v, even, powers, n, 2 * bits);
  factorial_sum<true>(s, coefficients(Coefficients::Kind::odd), powers, n, 2 * bits);
  multiply_high(s, s, r, n);
  subtract(s, r, s, n);
}

/// a := (1 + a)(1 + b) - 1; all below 1.
template <class Length>
void combine_exp(Word* a, const Word* b, Length n) {
  Word product[kRoom<Length>];
  multiply_high(product, a, b, n);
  add(a, a, b, n);
  add(a, a, product, n);
}

/// The sine and versine of the sum of two angles, into the first.
template <class Length>
void combine_sin_cos(Word* s, Word* v, const Word* other_s, const Word* other_v, Length n) {
  // sin(a+b) = sa + sb - (sa vb + va sb), 1 - cos(a+b) = va + vb - va vb + sa sb; the bracket is
  // (sa + va)(sb + vb) - sa sb - va vb, whose sums are below 1 for angles up to pi/4.
  Room<Length> ss;
  Room<Length> vv;
  Room<Length> cross;
  Room<Length> other_sum;
  multiply_high(ss, s, other_s, n);
  multiply_high(vv, v, other_v, n);
  add(cross, s, v, n);
  add(other_sum, other_s, other_v, n);
  multiply_high(cross, cross, other_sum, n);
  subtract(cross, cross, ss, n);
  subtract(cross, cross, vv, n);
  add(s, s, other_s, n);
  subtract(s, s, cross, n);
  add(v, v, other_v, n);
  subtract(v, v, vv, n);
  add(v, v, ss, n);
}

/// out = c(2) - u (c(3) - u (c(4) - ...)) with c(k) = 1 / k, 0 <= u < 2^-bits. The term with u^k is computed to n -
/// floor((bits k - 8) / kBits) words: it is at most n + 2 units of these off, and that counts 2^-8 units of the result
/// for k >= 1. Altogether below (n + 2)(1 + terms / 256) + 1 units.
template <class Length, class Coefficient>
void horner(Word* out, const Word* u, Length full, int bits, int last, const Coefficient& c) {
  const int n = full;
  const auto words_of = [=](int k) { return kIsConstant<Length> ? n : std::min(n, n - (bits * k - 8) / kBits); };
  int k = std::min(last, (n * kBits - 1) / bits);
  while (words_of(k) < 1) {
    --k;
  }
  int length = words_of(k);
  std::copy_n(c(k, length), length, out + (n - length));
  while (k-- > 0) {
    const int longer = words_of(k);
    std::fill(out + (n - longer), out + (n - length), Word(0));
    length = longer;
    Word* const top = out + (n - length);
    if constexpr (kIsConstant<Length>) {
      multiply_high(top, top, u, full);
    } else {
      multiply_high(top, top, u + (n - length), length);
    }
    subtract(top, c(k, length), top, length);
  }
}

/// The same sum for long numbers, with few products of long numbers: the terms with u^(i + m j) are summed over j for
/// each i < m (Smith 1989, "Efficient multiple-precision evaluation of elementary functions"). The sums are n N / m
/// units short for N terms, m of them being taken at a time, which the factor u that every caller multiplies with makes
/// small.
inline void concurrent_sums(Word* out, const Word* u, int n, int bits) {
  constexpr int kMostSums = 16;
  const int terms = n * kBits / bits;
  const int m = terms < 60 ? 4 : terms < 160 ? 8 : kMostSums;
  Number block;
  std::copy_n(u, n, block.words);
  for (int i = 1; i < m; i *= 2) {
    multiply_high(block, block, block, n);
  }
  Number sums[kMostSums];
  for (int i = 0; i < m; ++i) {
    std::copy_n(inverse_integer(2 + i, n), n, sums[i].words);
  }
  Number t;
  Number quotient;
  std::copy_n(block.words, n, t.words);
  int k = 2 + m;
  for (int length = n; length > 0;) {
    for (int i = 0; i < m; ++i, ++k) {
      divide_word(quotient, t, length, Word(k));
      Word carry = add(sums[i], sums[i], quotient, length);
      for (int up = length; carry != 0; ++up) {
        carry = ++sums[i][up] == 0 ? 1 : 0;
      }
    }
    // Only the lower words are left.
    while (length > 0 && t[length - 1] == 0) {
      --length;
    }
    if (length > 0) {
      multiply_high(t, t, block.words + (n - length), length);
    }
  }
  horner(out, u, n, bits, m - 1, [&](int i, int length) { return sums[i] + (n - length); });
}

/// Above, each product of long numbers costs many divisions by a word.
inline constexpr int kConcurrentBits = 1200;

/// out = log(1 + u) for 0 <= u < 2^-bits, bits >= 8.
template <class Length>
void log_series(Word* out, const Word* u, Length n, int bits) {
  // u - u (u (1/2 - u (1/3 - ...)))
  Number sum;
  if (!kIsConstant<Length> && n * kBits >= kConcurrentBits) {
    concurrent_sums(sum, u, n, bits);
  } else {
    horner(sum.words, u, n, bits, n * kBits,
           [n](int k, int length) { return inverse_integer(k + 2, n) + (n - length); });
  }
  multiply_high(sum.words, sum.words, u, n);
  multiply_high(sum.words, sum.words, u, n);
  subtract(out, u, sum, n);
}

}  // namespace quarn::fixed

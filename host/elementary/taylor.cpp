// Taylor sums and addition theorems in fixed point. "Unit" is the last word's unit; n words.
#include "host/elementary/tables.h"

namespace quarn::fixed {
namespace {

/// out = c(first) +- y (c(first + step) +- y (c(first + 2 step) ...)), where 0 <= y < 2^-bits and c falls and is below
/// 1. The term with y^k is computed to n - floor((bits k - 8) / kBits) words: it is at most n + 2 units of these off,
/// and that counts 2^-8 units of the result for k >= 1. Altogether below (n + 2)(1 + terms / 256) + 1 units.
template <bool kAlternating, class Coefficient>
void horner(Word* out, const Word* y, int n, int bits, int first, int step, int last, const Coefficient& c) {
  const auto length_at = [=](int k) { return std::min(n, n - (bits * k - 8) / kBits); };
  int k = 0;
  while (first + (k + 1) * step <= last && length_at(k + 1) >= 1 && bits * (k + 1) < n * kBits) {
    ++k;
  }
  int length = std::max(length_at(k), 1);
  std::copy_n(c(first + k * step, length), length, out + (n - length));
  while (k-- > 0) {
    const int longer = std::max(length_at(k), 1);
    std::fill(out + (n - longer), out + (n - length), Word(0));
    length = longer;
    Word* const top = out + (n - length);
    multiply_high(top, top, y + (n - length), length);
    if constexpr (kAlternating) {
      subtract(top, c(first + k * step, length), top, length);
    } else {
      add(top, top, c(first + k * step, length), length);
    }
  }
}

/// Which coefficients a sum has: 1/k! for every k or every other one, or 1/k.
enum class Series { factorial, alternate_factorial, logarithm };

/// The same sum for long numbers, from c(first) on, with few products of long numbers: the terms with y^(i + m j) are
/// summed over j for each i < m (Smith 1989, "Efficient multiple-precision evaluation of elementary functions"), where
/// a division by a word leads from one to the next. The sums are n N / m units short for N terms, m of them being
/// taken at a time, which the factor y that every caller multiplies with makes small.
template <bool kAlternating, Series kSeries>
void concurrent_sums(Word* out, const Word* y, int n, int bits, int first) {
  constexpr int kStep = kSeries == Series::alternate_factorial ? 2 : 1;
  constexpr int kMostSums = 16;
  const int terms = n * kBits / (bits + (kSeries == Series::logarithm ? 0 : 5 * kStep));
  const int m = terms < 60 ? 4 : terms < 160 ? 8 : kMostSums;
  const auto c = [](int k, int length) {
    return kSeries == Series::logarithm ? inverse_integer(k, length) : inverse_factorial(k, length);
  };
  Number block;
  std::copy_n(y, n, block.words);
  for (int i = 1; i < m; i *= 2) {
    multiply_high(block, block, block, n);
  }
  Number sums[kMostSums];
  for (int i = 0; i < m; ++i) {
    std::copy_n(c(first + i * kStep, n), n, sums[i].words);
  }
  Number t;
  int k = first + m * kStep;
  if constexpr (kSeries == Series::logarithm) {
    std::copy_n(block.words, n, t.words);
  } else {
    multiply_high(t, block, c(k, n), n);
  }
  Number quotient;
  for (int j = 1, length = n; length > 0; ++j) {
    for (int i = 0; i < m; ++i, k += kStep) {
      const Word* term = t;
      if constexpr (kSeries == Series::logarithm) {
        divide_word(quotient, t, length, Word(k));
        term = quotient;
      }
      Word carry = add(sums[i], sums[i], term, length);
      for (int up = length; carry != 0; ++up) {
        carry = ++sums[i][up] == 0 ? 1 : 0;
      }
      if constexpr (kSeries == Series::factorial) {
        divide_word(t, t, length, Word(k) + 1);
      } else if constexpr (kSeries == Series::alternate_factorial) {
        divide_word(t, t, length, (Word(k) + 1) * (Word(k) + 2));
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
  horner<kAlternating>(out, y, n, bits, 0, 1, m - 1, [&](int i, int length) { return sums[i] + (n - length); });
}

/// Above, each product of long numbers costs many divisions by a word.
constexpr int kConcurrentBits = 1200;

template <bool kAlternating, Series kSeries>
void sum_series(Word* out, const Word* y, int n, int bits, int first) {
  if (n * kBits >= kConcurrentBits) {
    concurrent_sums<kAlternating, kSeries>(out, y, n, bits, first);
  } else if constexpr (kSeries == Series::logarithm) {
    horner<kAlternating>(out, y, n, bits, first, 1, n * kBits, inverse_integer);
  } else {
    constexpr int kStep = kSeries == Series::alternate_factorial ? 2 : 1;
    horner<kAlternating>(out, y, n, bits, first, kStep, factorial_count() - 1, inverse_factorial);
  }
}

}  // namespace

void exp_series(Word* e, const Word* r, int n, int bits) {
  // r + r (r (1/2! + r/3! + ...))
  Number sum;
  sum_series<false, Series::factorial>(sum, r, n, bits, 2);
  multiply_high(sum, sum, r, n);
  multiply_high(sum, sum, r, n);
  add(e, r, sum, n);
}

void combine_exp(Word* a, const Word* b, int n) {
  Number product;
  multiply_high(product, a, b, n);
  add(a, a, b, n);
  add(a, a, product, n);
}

void sin_cos_series(Word* s, Word* v, const Word* r, int n, int bits) {
  Number square;
  multiply_high(square, r, r, n);
  // 1 - cos r = y (1/2! - y/4! + ...), sin r = r - r y (1/3! - y/5! + ...), y = r^2
  Number sum;
  sum_series<true, Series::alternate_factorial>(sum, square, n, 2 * bits, 2);
  multiply_high(v, sum, square, n);
  sum_series<true, Series::alternate_factorial>(sum, square, n, 2 * bits, 3);
  multiply_high(sum, sum, square, n);
  multiply_high(sum, sum, r, n);
  subtract(s, r, sum, n);
}

void combine_sin_cos(Word* s, Word* v, const Word* other_s, const Word* other_v, int n) {
  // sin(a+b) = sa + sb - (sa vb + va sb), 1 - cos(a+b) = va + vb - va vb + sa sb; the bracket is
  // (sa + va)(sb + vb) - sa sb - va vb, whose sums are below 1 for angles up to pi/4.
  Number ss;
  Number vv;
  Number cross;
  Number other_sum;
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

void log_series(Word* out, const Word* u, int n, int bits) {
  // u - u (u (1/2 - u (1/3 - ...)))
  Number sum;
  sum_series<true, Series::logarithm>(sum, u, n, bits, 2);
  multiply_high(sum, sum, u, n);
  multiply_high(sum, sum, u, n);
  subtract(out, u, sum, n);
}

}  // namespace quarn::fixed

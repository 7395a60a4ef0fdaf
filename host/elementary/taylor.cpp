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

}  // namespace

void exp_series(Word* e, const Word* r, int n, int bits) {
  // r + r (r (1/2! + r/3! + ...))
  Number sum;
  horner<false>(sum, r, n, bits, 2, 1, factorial_count() - 1, inverse_factorial);
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
  horner<true>(sum, square, n, 2 * bits, 2, 2, factorial_count() - 1, inverse_factorial);
  multiply_high(v, sum, square, n);
  horner<true>(sum, square, n, 2 * bits, 3, 2, factorial_count() - 1, inverse_factorial);
  multiply_high(sum, sum, square, n);
  multiply_high(sum, sum, r, n);
  subtract(s, r, sum, n);
}

void combine_sin_cos(Word* s, Word* v, const Word* other_s, const Word* other_v, int n) {
  // sin(a+b) = sa + sb - sa vb - va sb, 1 - cos(a+b) = va + vb - va vb + sa sb
  Number ss;
  Number sv;
  Number vs;
  Number vv;
  multiply_high(ss, s, other_s, n);
  multiply_high(sv, s, other_v, n);
  multiply_high(vs, v, other_s, n);
  multiply_high(vv, v, other_v, n);
  add(s, s, other_s, n);
  subtract(s, s, sv, n);
  subtract(s, s, vs, n);
  add(v, v, other_v, n);
  subtract(v, v, vv, n);
  add(v, v, ss, n);
}

void log_series(Word* out, const Word* u, int n, int bits) {
  // u - u (u (1/2 - u (1/3 - ...)))
  Number sum;
  horner<true>(sum, u, n, bits, 2, 1, 1 << 20, inverse_integer);
  multiply_high(sum, sum, u, n);
  multiply_high(sum, sum, u, n);
  subtract(out, u, sum, n);
}

}  // namespace quarn::fixed

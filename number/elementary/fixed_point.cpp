#include "number/elementary/fixed_point.h"

#include <bit>
#include <cmath>

#include "number/elementary/conversion.h"
#include "number/elementary/rounding.h"
#include "number/elementary/taylor.h"
#include "number/limbs/with_constant.h"

namespace quarn::fixed {
namespace {

/// The error of a result of n words is below 2^(error_bits - 1) units of the last one: docs/accuracy.md counts.
int error_bits(int n) { return 5 + int(std::bit_width(unsigned(n))); }

/// Words for w digits after `slack` bits of zeros.
int words_for(int w, int slack) {
  const double bits = double(w) * 3.3219281 + double(slack);
  int n = std::max(int(bits / kBits) + 1, 128 / kBits);
  while (double(n) * kBits < bits + error_bits(n)) {
    ++n;
  }
  return n;
}

/// Look-ups that pay before the Taylor sum.
int stages_for(int n) {
  const int bits = n * kBits;
  return bits <= 640 ? 2 : bits <= 1600 ? 3 : bits <= 6400 ? 4 : 5;
}

bool in_range(int n) { return n + n / 4 + 8 < kMaxWords; }

/// The bits at [place, place + 8) after the binary point, and whatever is above them, of a fraction.
int top_bits(const Word* x, int n, int place) {
  const int low = n * kBits - place - kStageBits;
  const Word word = x[low / kBits] >> (low % kBits);
  const Word above = low % kBits != 0 && low / kBits + 1 < n ? x[low / kBits + 1] << (kBits - low % kBits) : 0;
  return int((word | above) & 0x3FF);
}

/// Takes the first eight bits after `place` (all bits above are zero) off x and returns them.
int take_bits(Word* x, int n, int stage) {
  const int place = kStageBits * stage;
  const int j = top_bits(x, n, place) & 0xFF;
  const int low = n * kBits - place - kStageBits;
  x[low / kBits] &= (Word(1) << (low % kBits)) - 1;
  return j;
}

/// Digits that a number of n fraction words and an integer word has for certain.
int certain_digits(const Word* x, int n) {
  // x >= 2^(-zeros - 1): the bit that this costs is the one that error_bits has to spare.
  const int zeros = leading_zeros(x, n + 1) - kBits;
  return std::max(int((n * kBits - zeros - error_bits(n)) * 0.30102999), 0);
}

/// What four digits more than the working precision leave undecided is one call in 250.
constexpr int kFirstExtraDigits = 4;

Approximation approximation(const DecimalLimbs& x) {
  if (x.digits == 0) {
    return {};
  }
  return {rounded(x.negative, x.exponent, x.limbs, x.length, false, int(x.length) * Radix::digits), x.digits};
}

std::optional<QuarnFloat> rounded_if_decided(const DecimalLimbs& x) {
  const int digits = QuarnDigits();
  if (x.digits <= digits || !rounds_safely(x.limbs, x.length, digits, x.digits)) {
    return std::nullopt;
  }
  return rounded(x.negative, x.exponent, x.limbs, x.length, false, digits);
}

/// n + 1, of the same kind.
template <int N>
Constant<N + 1> one_more(Constant<N>) {
  return {};
}
int one_more(int n) { return n + 1; }

double to_double(const Word* x, int n) {
  constexpr double kUnit = 1.0 / (65536.0 * 65536.0);
  return double(x[n]) + double(x[n - 1]) * (kBits == 64 ? kUnit * kUnit : kUnit);
}

/// r mod constant for r >= 0, and the quotient, which is below 2^kBits.
template <class Length>
Word reduce(Word* r, const Word* constant, Length n) {
  Word quotient = Word(to_double(r, n) / to_double(constant, n));
  Word multiple[kRoom<Length>];
  multiply_word(multiple, constant, n + 1, quotient);
  subtract(r, r, multiple, n + 1);
  // The estimate is at most one off: below, or above, which shows as a negative rest.
  if (r[n] >> (kBits - 1) != 0) {
    add(r, r, constant, n + 1);
    --quotient;
  }
  if (subtract(multiple, r, constant, n + 1) == 0) {
    std::copy_n(multiple, n + 1, r);
    ++quotient;
  }
  return quotient;
}

/// f(n) with n as a constant where lengths are everyday ones.
template <class Function>
auto with_length(int n, const Function& f) {
  if constexpr (kBits == 64) {
    return with_constant<2, 3, 4, 5, 6, 7>(n, f);
  } else {
    return f(n);
  }
}

/// rest := constant - rest, with an integer word.
void reflect(Word* rest, const Word* constant, int n) { subtract(rest, constant, rest, n + 1); }

/// sum = exp(r) with an integer word, 0 <= r < ln 2.
template <class Length>
void exp_of_rest(Word* sum, Word* r, Length n) {
  const int stages = stages_for(n);
  int rows[kMaxStages];
  for (int stage = 0; stage < stages; ++stage) {
    rows[stage] = take_bits(r, n, stage);
  }
  exp_series(sum, r, n, kStageBits * stages);
  for (int stage = stages; stage-- > 0;) {
    if (rows[stage] != 0) {
      combine_exp(sum, exp_entry(stage, rows[stage], n), n);
    }
  }
  sum[n] = 1;
}

/// s = sin r and c = cos r with an integer word each, 0 <= r < 0.79.
template <class Length>
void sin_cos_of_rest(Word* s, Word* c, Word* r, Length n) {
  const int stages = std::min(stages_for(n), 3);
  int rows[kMaxStages];
  for (int stage = 0; stage < stages; ++stage) {
    rows[stage] = take_bits(r, n, stage);
  }
  sin_cos_series(s, c, r, n, kStageBits * stages);
  for (int stage = stages; stage-- > 0;) {
    if (rows[stage] != 0) {
      combine_sin_cos(s, c, sin_entry(stage, rows[stage], n), versine_entry(stage, rows[stage], n), n);
    }
  }
  s[n] = 0;
  c[n] = 0;
  // 1 - (1 - cos r)
  negate(c, c, n + 1);
  c[n] += 1;
}

/// Each of these is false out of the range of fixed point.
bool exp_digits(const QuarnFloat& x, int w, DecimalLimbs& out) {
  const View v = view_of(x);
  const int n = words_for(w, 0);
  if (!in_range(n) || v.exponent > 9) {
    return false;
  }
  prepare_tables(n + 1);
  with_length(n, [&](auto length) {
    // One word more for the multiple of ln 10, which has up to 30 bits.
    const auto more = one_more(length);
    Word wide[kRoom<decltype(length)>];
    from_decimal(wide, v, more);
    std::int64_t power = std::int64_t(reduce(wide, ln10(more), more));
    if (v.negative) {
      reflect(wide, ln10(more), more);
      power = -power - 1;
    }
    const int doublings = int(reduce(wide, ln2(more), more));
    Word sum[kRoom<decltype(length)>];
    exp_of_rest(sum, wide + 1, length);
    out.digits = certain_digits(sum, length);
    shift_up(sum, sum, length + 1, doublings);
    out.set(sum, length, power);
  });
  return true;
}

/// log(0.L0 L1 ... * 10^exponent) of v with n words; returns the digits that are certain.
template <class Length>
int log_with(const View& v, Length n, DecimalLimbs& out) {
  const auto more = one_more(n);
  const bool low = v.limbs[0] < Radix::base / 1000 * 316;
  const std::int64_t e = v.exponent - (low ? 1 : 0);
  // m = x / 10^e from 0.316 to 3.16, doubled or halved into [1, 2).
  Word m[kRoom<Length>];
  from_decimal(m, {false, low ? 1 : 0, v.limbs, v.length}, n);
  int doublings = 0;
  if (m[n] == 0) {
    doublings = 1 - int(m[n - 1] >> (kBits - 1)) + 1;
    shift_up(m, m, more, doublings);
  } else if (m[n] > 1) {
    doublings = -1;
    shift_down(m, m, more, 1);
  }
  // u = m f - 1 for f = factor / 512 just above 1 / m.
  const int leading = int(m[n - 1] >> (kBits - 8));
  const Word factor = (131'072 + 255 + Word(leading)) / (256 + Word(leading));
  multiply_word(m, m, more, factor);
  shift_down(m, m, more, 9);
  Word sum[kRoom<Length>];
  std::copy_n(log_entry(0, int(factor) - 256, factor, n), int(n), sum);
  sum[n] = 0;
  Word* const u = m;
  u[n] = 0;
  Word product[kRoom<Length>];
  const int stages = std::min(3 + n * kBits / 256, kMaxStages);
  for (int stage = 1; stage < stages; ++stage) {
    // u' = (1 + u)(1 - d) - 1 = u - d - u d, d just below 1 - 1 / (1 + j / 2^place).
    const int place = kStageBits * (stage + 1);
    const int j = top_bits(u, n, kStageBits * stage);
    if (j == 0) {
      continue;
    }
    const int places = kStageBits * stage + 30;
    const std::uint64_t d = place >= 40
                                ? (std::uint64_t(j) << 22) - 1
                                : (std::uint64_t(j) << places) / ((std::uint64_t(1) << place) + std::uint64_t(j));
    product[n] = multiply_word(product, u, n, Word(d));
    shift_down(product, product, more, places);
    subtract(u, u, product, n);
    std::fill_n(product, int(n), Word(0));
    product[0] = Word(d);
    shift_up(product, product, n, n * kBits - places);
    subtract(u, u, product, n);
    sum[n] += add(sum, sum, log_entry(stage, j, Word(d), n), n);
  }
  Word rest[kRoom<Length>];
  log_series(rest, u, n, kStageBits * stages - 1);
  sum[n] += add(sum, sum, rest, n);
  // log x = sum - doublings ln 2 + e ln 10
  if (doublings != 0) {
    multiply_word(product, ln2(n), more, Word(std::abs(doublings)));
    if (doublings > 0) {
      subtract(sum, sum, product, more);
    } else {
      add(sum, sum, product, more);
    }
  }
  bool negative = sum[n] >> (kBits - 1) != 0;
  if (e != 0) {
    multiply_word(product, ln10(more), n + 2, Word(std::abs(e)));
    const Word* const multiple = product + 1;
    // |e ln 10| is the larger one.
    if (e > 0) {
      add(sum, multiple, sum, more);
    } else {
      subtract(sum, multiple, sum, more);
    }
    negative = e < 0;
  } else if (negative) {
    negate(sum, sum, more);
  }
  out.negative = negative;
  out.digits = certain_digits(sum, n);
  if (out.digits > 0) {
    out.set(sum, n, 0);
  }
  return out.digits;
}

bool log_digits(const QuarnFloat& x, int w, DecimalLimbs& out) {
  for (int slack = 0;;) {
    const int n = words_for(w, slack + 3);
    if (!in_range(n)) {
      return false;
    }
    prepare_tables(n + 1);
    const int digits = with_length(n, [&](auto length) { return log_with(view_of(x), length, out); });
    if (digits >= w) {
      return true;
    }
    slack += std::max(8, std::min(int((w - digits) * 3.33), n * kBits) + 4);
  }
}

bool sin_cos_digits(const QuarnFloat& x, int w, DecimalLimbs& sine, DecimalLimbs& cosine) {
  const View v = view_of(x);
  const int zeros = v.exponent < 0 && v.exponent > -10'000 ? int(double(-v.exponent) * 3.33) : 0;
  const int n = words_for(w, zeros + 4);
  if (!in_range(n) || v.exponent > 9 || v.exponent <= -10'000) {
    return false;
  }
  prepare_tables(n + 1);
  with_length(n, [&](auto length) {
    const auto more = one_more(length);
    Word wide[kRoom<decltype(length)>];
    from_decimal(wide, v, more);
    const int quadrant = int(reduce(wide, half_pi(more), more) & 3);
    // Angles above pi/4, or nearly so, are taken from the other side.
    const bool reflected = to_double(wide + 1, length) > 0.785;
    if (reflected) {
      reflect(wide, half_pi(more), more);
    }
    Word s[kRoom<decltype(length)>];
    Word c[kRoom<decltype(length)>];
    sin_cos_of_rest(s, c, wide + 1, length);
    const bool swapped = reflected != (quadrant % 2 == 1);
    sine.negative = (quadrant >= 2) != v.negative;
    cosine.negative = quadrant == 1 || quadrant == 2;
    for (const bool upper : {false, true}) {
      const Word* const value = upper ? c : s;
      DecimalLimbs& out = upper != swapped ? cosine : sine;
      out.digits = certain_digits(value, length);
      if (out.digits > 0) {
        out.set(value, length, 0);
      }
    }
  });
  return true;
}

}  // namespace

std::optional<Approximation> exp(const QuarnFloat& x, int w) {
  DecimalLimbs value;
  return exp_digits(x, w, value) ? std::optional(approximation(value)) : std::nullopt;
}

std::optional<Approximation> log(const QuarnFloat& x, int w) {
  DecimalLimbs value;
  return log_digits(x, w, value) ? std::optional(approximation(value)) : std::nullopt;
}

std::optional<SinCosApproximation> sin_cos(const QuarnFloat& x, int w) {
  DecimalLimbs sine;
  DecimalLimbs cosine;
  if (!sin_cos_digits(x, w, sine, cosine)) {
    return std::nullopt;
  }
  return SinCosApproximation{approximation(sine), approximation(cosine)};
}

std::optional<QuarnFloat> rounded_exp(const QuarnFloat& x) {
  DecimalLimbs value;
  return exp_digits(x, QuarnDigits() + kFirstExtraDigits, value) ? rounded_if_decided(value) : std::nullopt;
}

std::optional<QuarnFloat> rounded_log(const QuarnFloat& x) {
  DecimalLimbs value;
  return log_digits(x, QuarnDigits() + kFirstExtraDigits, value) ? rounded_if_decided(value) : std::nullopt;
}

RoundedSinCos rounded_sin_cos(const QuarnFloat& x) {
  DecimalLimbs sine;
  DecimalLimbs cosine;
  if (!sin_cos_digits(x, QuarnDigits() + kFirstExtraDigits, sine, cosine)) {
    return {};
  }
  return {rounded_if_decided(sine), rounded_if_decided(cosine)};
}

}  // namespace quarn::fixed

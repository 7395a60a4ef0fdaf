// The kernels' one source: included by a file of each instruction set, which defines QUARN_VECTOR_BYTES.
#include <immintrin.h>

#include "number/convolution/kernel.h"

namespace quarn::convolution {
namespace {

typedef double Vector __attribute__((vector_size(QUARN_VECTOR_BYTES), may_alias));
typedef uint64_t Words __attribute__((vector_size(QUARN_VECTOR_BYTES), may_alias));

constexpr size_t kLanes = QUARN_VECTOR_BYTES / 8;
/// Up to so many vectors a piece is worked through level by level; it fits the first-level cache.
constexpr size_t kPiece = 16384 / QUARN_VECTOR_BYTES;

#define QUARN_INLINE [[gnu::always_inline]] inline

QUARN_INLINE Vector all(double x) { return x - Vector{}; }

#if QUARN_VECTOR_BYTES == 64
QUARN_INLINE Vector multiply_add(Vector a, Vector b, Vector c) { return (Vector)_mm512_fmadd_pd(a, b, c); }
QUARN_INLINE Vector multiply_subtract(Vector a, Vector b, Vector c) { return (Vector)_mm512_fmsub_pd(a, b, c); }
QUARN_INLINE Vector subtract_product(Vector c, Vector a, Vector b) { return (Vector)_mm512_fnmadd_pd(a, b, c); }
#else
QUARN_INLINE Vector multiply_add(Vector a, Vector b, Vector c) { return (Vector)_mm256_fmadd_pd(a, b, c); }
QUARN_INLINE Vector multiply_subtract(Vector a, Vector b, Vector c) { return (Vector)_mm256_fmsub_pd(a, b, c); }
QUARN_INLINE Vector subtract_product(Vector c, Vector a, Vector b) { return (Vector)_mm256_fnmadd_pd(a, b, c); }
#endif

constexpr double kShift = 6755399441055744.0;  // 1.5 * 2^52

/// The whole number next to a * b, below 2^51 in magnitude.
QUARN_INLINE Vector nearest(Vector a, Vector b) { return multiply_add(a, b, all(kShift)) - kShift; }

/// One prime, and its arithmetic.
struct Modulus {
  Vector prime;
  Vector inverse;

  QUARN_INLINE explicit Modulus(const Field& field) : prime(all(field.prime)), inverse(all(field.inverse)) {}

  /// x, at most 8 in magnitude, to at most 1/2 and a trifle.
  QUARN_INLINE Vector reduce(Vector x) const { return subtract_product(x, nearest(x, inverse), prime); }
  /// x * w, from at most 5.3 to at most 0.8.
  QUARN_INLINE Vector multiply(Vector x, Vector w, Vector quotient) const {
    const Vector high = x * w;
    const Vector low = multiply_subtract(x, w, high);
    return subtract_product(high, nearest(x, quotient), prime) + low;
  }
  QUARN_INLINE Vector multiply(Vector x, const Factor& w) const { return multiply(x, all(w.value), all(w.quotient)); }
};

/// j >= 1
QUARN_INLINE size_t mirror(size_t j) { return (size_t(3) << (63 - __builtin_clzll(j))) - 1 - j; }

// Forward ---------------------------------------------------------------------------------------------------------

/// Two levels for one block of four quarters: from at most 4.3 to at most 2.1. kPlain: the factors w and w0 are one.
template <bool kPlain>
QUARN_INLINE void split_block(const Modulus& m, Vector* x, size_t quarter, const Factor& w, const Factor& w0,
                              const Factor& w1) {
  for (size_t i = 0; i < quarter; ++i) {
    const Vector a0 = m.reduce(x[i]);
    const Vector a1 = kPlain ? m.reduce(x[i + quarter]) : x[i + quarter];
    const Vector a2 = kPlain ? m.reduce(x[i + 2 * quarter]) : m.multiply(x[i + 2 * quarter], w);
    const Vector a3 = kPlain ? m.reduce(x[i + 3 * quarter]) : m.multiply(x[i + 3 * quarter], w);
    const Vector b0 = a0 + a2;
    const Vector b1 = kPlain ? a1 + a3 : m.multiply(a1 + a3, w0);
    const Vector b2 = a0 - a2;
    const Vector b3 = m.multiply(a1 - a3, w1);
    x[i] = b0 + b1;
    x[i + quarter] = b0 - b1;
    x[i + 2 * quarter] = b2 + b3;
    x[i + 3 * quarter] = b2 - b3;
  }
}

template <size_t kQuarter = 0>
void split_blocks(const Field& field, Vector* x, size_t quarter, size_t blocks, size_t first) {
  if (kQuarter != 0) {
    quarter = kQuarter;
  }
  const Modulus m(field);
  const Factor* const twiddles = field.twiddles;
  const size_t last = first + blocks;
  if (first == 0) {
    split_block<true>(m, x, quarter, twiddles[0], twiddles[0], twiddles[1]);
    ++first;
    x += 4 * quarter;
  }
  for (size_t j = first; j < last; ++j, x += 4 * quarter) {
    split_block<false>(m, x, quarter, twiddles[j], twiddles[2 * j], twiddles[2 * j + 1]);
  }
}

void split(const Field& field, Vector* x, size_t n, size_t block) {
  if (n > kPiece) {
    split_blocks(field, x, n / 4, 1, block);
    for (size_t i = 0; i < 4; ++i) {
      split(field, x + i * (n / 4), n / 4, 4 * block + i);
    }
    return;
  }
  size_t blocks = 1;
  for (size_t quarter = n / 4; quarter > 1; quarter /= 4, blocks *= 4) {
    split_blocks(field, x, quarter, blocks, blocks * block);
  }
  if (n > 1) {
    split_blocks<1>(field, x, 1, blocks, blocks * block);
  }
}

/// One level, with a twiddle of one: from at most 8 to at most 1 and a trifle.
void split_once(const Field& field, Vector* x, size_t half) {
  const Modulus m(field);
  for (size_t i = 0; i < half; ++i) {
    const Vector a = m.reduce(x[i]);
    const Vector b = m.reduce(x[i + half]);
    x[i] = a + b;
    x[i + half] = a - b;
  }
}

QUARN_INLINE bool odd_power(size_t n) { return (__builtin_ctzll(n) & 1) != 0; }

// Inverse ---------------------------------------------------------------------------------------------------------

/// Undoes split_block but for a factor 4: from at most 1.25 to at most 1.25. Dividing by a twiddle is multiplying by
/// its mirror image with the difference turned round.
template <bool kPlain>
QUARN_INLINE void join_block(const Modulus& m, Vector* x, size_t quarter, const Factor& w, const Factor& w0,
                             const Factor& w1) {
  for (size_t i = 0; i < quarter; ++i) {
    const Vector b0 = x[i];
    const Vector b1 = x[i + quarter];
    const Vector b2 = x[i + 2 * quarter];
    const Vector b3 = x[i + 3 * quarter];
    const Vector a0 = b0 + b1;
    const Vector a1 = kPlain ? m.reduce(b0 - b1) : m.multiply(b1 - b0, w0);
    const Vector a2 = b2 + b3;
    const Vector a3 = m.multiply(b3 - b2, w1);
    x[i] = m.reduce(a0 + a2);
    x[i + quarter] = a1 + a3;
    x[i + 2 * quarter] = kPlain ? m.reduce(a0 - a2) : m.multiply(a2 - a0, w);
    x[i + 3 * quarter] = kPlain ? a1 - a3 : m.multiply(a3 - a1, w);
  }
}

template <size_t kQuarter = 0>
void join_blocks(const Field& field, Vector* x, size_t quarter, size_t blocks, size_t first) {
  if (kQuarter != 0) {
    quarter = kQuarter;
  }
  const Modulus m(field);
  const Factor* const twiddles = field.twiddles;
  const size_t last = first + blocks;
  if (first == 0) {
    join_block<true>(m, x, quarter, twiddles[0], twiddles[0], twiddles[1]);
    ++first;
    x += 4 * quarter;
  }
  for (size_t j = first; j < last; ++j, x += 4 * quarter) {
    join_block<false>(m, x, quarter, twiddles[mirror(j)], twiddles[mirror(2 * j)], twiddles[mirror(2 * j + 1)]);
  }
}

void join(const Field& field, Vector* x, size_t n, size_t block) {
  if (n > kPiece) {
    for (size_t i = 0; i < 4; ++i) {
      join(field, x + i * (n / 4), n / 4, 4 * block + i);
    }
    join_blocks(field, x, n / 4, 1, block);
    return;
  }
  if (n > 1) {
    join_blocks<1>(field, x, 1, n / 4, n / 4 * block);
  }
  size_t blocks = n / 16;
  for (size_t quarter = 4; quarter < n; quarter *= 4, blocks /= 4) {
    join_blocks(field, x, quarter, blocks, blocks * block);
  }
}

// Odd factors -----------------------------------------------------------------------------------------------------

/// Transforms of length kParts across parts of `length` vectors, 3 or 5 and a power of two: numbering coefficients by
/// their index modulo kParts leaves no twiddle factors. From at most 8 to at most 2.7.
template <bool kInverse, size_t kParts>
void across_odd(const Field& field, const Factor* roots, Vector* x, size_t length) {
  constexpr size_t half = kParts / 2;
  const Modulus m(field);
  // place[u]: the part whose first coefficient has an index of u modulo kParts. One coefficient on, all turn by one.
  size_t place[2 * kParts];
  for (size_t j = 0; j < kParts; ++j) {
    const size_t u = j * length % kParts;
    place[u] = place[u + kParts] = j * length;
  }
  for (size_t i = 0, turn = 0; i < length; ++i, turn = turn + 1 == kParts ? 0 : turn + 1) {
    const size_t* const at = place + (turn == 0 ? 0 : kParts - turn);
    const auto from = [&](size_t u) { return m.reduce(x[i + (kInverse ? u * length : at[u])]); };
    const auto to = [&](size_t u) -> Vector& { return x[i + (kInverse ? at[u] : u * length)]; };
    const Vector first = from(0);
    Vector sum[half];
    Vector difference[half];
    Vector total = first;
#pragma GCC unroll 2
    for (size_t k = 0; k < half; ++k) {
      const Vector a = from(k + 1);
      const Vector b = from(kParts - 1 - k);
      sum[k] = a + b;
      difference[k] = kInverse ? b - a : a - b;
      total += sum[k];
    }
    to(0) = m.reduce(total);
#pragma GCC unroll 2
    for (size_t j = 0; j < half; ++j) {
      Vector even = first;
      Vector odd{};
#pragma GCC unroll 2
      for (size_t k = 0; k < half; ++k) {
        even += m.multiply(sum[k], roots[(j * half + k) * 2]);
        odd += m.multiply(difference[k], roots[(j * half + k) * 2 + 1]);
      }
      to(j + 1) = even + odd;
      to(kParts - 1 - j) = even - odd;
    }
  }
}

template <bool kInverse>
void across_parts(const Field& field, Vector* x, size_t parts, size_t length) {
  if (parts == 3) {
    across_odd<kInverse, 3>(field, field.third, x, length);
  } else if (parts == 5) {
    across_odd<kInverse, 5>(field, field.fifth, x, length);
  }
}

// The steps -------------------------------------------------------------------------------------------------------

QUARN_INLINE Vector* vectors_at(double* x) { return reinterpret_cast<Vector*>(x); }
QUARN_INLINE const Vector* vectors_at(const double* x) { return reinterpret_cast<const Vector*>(x); }

void convert(const uint64_t* words, double* out, size_t vectors) {
  const auto* const in = reinterpret_cast<const Words*>(words);
  for (size_t i = 0; i < vectors; ++i) {
    vectors_at(out)[i] = (Vector)(in[i] | 0x4330000000000000U) - 4503599627370496.0;
  }
}

void forward(const Field& field, double* data, size_t vectors) {
  Vector* const x = vectors_at(data);
  const size_t part = size_t(1) << __builtin_ctzll(vectors);
  across_parts<false>(field, x, vectors / part, part);
  for (size_t i = 0; i < vectors; i += part) {
    if (odd_power(part)) {
      split_once(field, x + i, part / 2);
      split(field, x + i, part / 2, 0);
      split(field, x + i + part / 2, part / 2, 1);
    } else {
      split(field, x + i, part, 0);
    }
  }
}

void inverse(const Field& field, double* data, size_t vectors) {
  Vector* const x = vectors_at(data);
  const size_t part = size_t(1) << __builtin_ctzll(vectors);
  for (size_t i = 0; i < vectors; i += part) {
    if (odd_power(part)) {
      join(field, x + i, part / 2, 0);
      join(field, x + i + part / 2, part / 2, 1);
      split_once(field, x + i, part / 2);
    } else {
      join(field, x + i, part, 0);
    }
  }
  across_parts<true>(field, x, vectors / part, part);
}

/// Lane l of rotated[i]: lane l - i of b, or lane l - i + kLanes of bw.
#if QUARN_VECTOR_BYTES == 64
#define QUARN_ROTATED(i) __builtin_shufflevector(bw, b, 8 - i, 9 - i, 10 - i, 11 - i, 12 - i, 13 - i, 14 - i, 15 - i)
#define QUARN_SHIFTED(i, low, high) \
  __builtin_shufflevector(low, high, 8 - i, 9 - i, 10 - i, 11 - i, 12 - i, 13 - i, 14 - i, 15 - i)
#else
#define QUARN_ROTATED(i) __builtin_shufflevector(bw, b, 4 - i, 5 - i, 6 - i, 7 - i)
#define QUARN_SHIFTED(i, low, high) __builtin_shufflevector(low, high, 4 - i, 5 - i, 6 - i, 7 - i)
#endif

/// a * b * scale modulo x^kLanes - w: from at most 2.7 to 1/2 and a trifle. Products are added up as multiples of 2^50,
/// at most 2.6 p^2, and what is left of each, at most 2^49.
QUARN_INLINE Vector multiply_leaf(const Modulus& m, Vector x, Vector y, const Vector (&scale)[2], Vector w,
                                  Vector w_quotient) {
  constexpr double kStart = 7605903601369376408980219232256.0;  // 1.5 * 2^102
  const Vector a = m.reduce(x);
  const Vector b = m.multiply(y, scale[0], scale[1]);
  const Vector bw = m.multiply(b, w, w_quotient);
  Vector high = all(kStart);
  Vector low{};
  const auto add = [&](Vector lane, Vector rotated) {
    const Vector sum = multiply_add(lane, rotated, high);
    low += multiply_subtract(lane, rotated, sum - high);
    high = sum;
  };
  add(all(a[0]), b);
  add(all(a[1]), QUARN_ROTATED(1));
  add(all(a[2]), QUARN_ROTATED(2));
  add(all(a[3]), QUARN_ROTATED(3));
#if QUARN_VECTOR_BYTES == 64
  add(all(a[4]), QUARN_ROTATED(4));
  add(all(a[5]), QUARN_ROTATED(5));
  add(all(a[6]), QUARN_ROTATED(6));
  add(all(a[7]), QUARN_ROTATED(7));
#endif
  high -= kStart;
  return m.reduce(subtract_product(high, nearest(high, m.inverse), m.prime) + low);
}

void multiply(const Field& field, double* data, const double* other, size_t vectors, double factor) {
  Vector* const x = vectors_at(data);
  const Vector* const y = vectors_at(other);
  const Modulus m(field);
  const Vector scale[2] = {all(factor), all(factor) / m.prime};
  const size_t part = size_t(1) << __builtin_ctzll(vectors);
  for (size_t i = 0, u = 0; i < vectors; i += part, ++u) {
    const Factor& root = vectors == 5 * part ? field.fifth_root[u] : field.third_root[u];
    if (part == 1) {
      x[i] = multiply_leaf(m, x[i], y[i], scale, all(root.value), all(root.quotient));
      continue;
    }
    for (size_t j = 0; j < part / 2; ++j) {
      Vector w = all(field.twiddles[j].value);
      Vector quotient = all(field.twiddles[j].quotient);
      if (u != 0) {
        w = m.reduce(m.multiply(w, root));
        quotient = w / m.prime;
      }
      const size_t at = i + 2 * j;
      const Vector even = multiply_leaf(m, x[at], y[at], scale, w, quotient);
      x[at + 1] = multiply_leaf(m, x[at + 1], y[at + 1], scale, -w, -quotient);
      x[at] = even;
    }
  }
}

/// The digits of one vector of coefficients: in all c0 + c1 base + c2 base^2, each below 2^50.
struct Digits {
  Vector c0, c1, c2;
};

QUARN_INLINE Digits digits_of(const Modulus& first, const Modulus& second, const Recombination& how, Vector x,
                              Vector y) {
  // The number is r + k p1, r near zero; then k >= 0.
  const Vector r = first.reduce(x);
  const Vector k = second.multiply(second.reduce(y) - r, how.inverse);
  const Vector base = all(how.base);
  const Vector base_inverse = all(how.base_inverse);
  const Vector k1 = nearest(k, base_inverse);
  const Vector k0 = subtract_product(k, k1, base);
  const Vector high = k0 * how.prime_low;
  const Vector low = multiply_subtract(k0, all(how.prime_low), high);
  const Vector q = nearest(high, base_inverse);
  Digits digits;
  digits.c0 = subtract_product(high, q, base) + low + r;
  digits.c1 = multiply_add(k1, all(how.prime_low), multiply_add(k0, all(how.prime_high), q));
  digits.c2 = k1 * how.prime_high;
  return digits;
}

void recombine(const Field& field1, const Field& field2, const Recombination& how, const double* x, const double* y,
               int64_t* out, size_t vectors) {
  const Modulus first(field1);
  const Modulus second(field2);
  const Vector base = all(how.base);
  Digits before{};
  Vector carry{};
  // What comes in at the start is what goes out at the end, which is found beforehand.
  constexpr size_t kLead = 2;
  for (size_t step = 0; step < vectors + kLead; ++step) {
    const size_t i = step < kLead ? vectors - kLead + step : step - kLead;
    const Digits now = digits_of(first, second, how, vectors_at(x)[i], vectors_at(y)[i]);
    const Vector sum = now.c0 + QUARN_SHIFTED(1, before.c1, now.c1) + QUARN_SHIFTED(2, before.c2, now.c2);
    Vector quotient = nearest(sum, all(how.base_inverse));
    Vector rest = subtract_product(sum, quotient, base);
    const auto negative = rest < 0.0;
    rest += negative ? base : Vector{};
    quotient -= negative ? all(1.0) : Vector{};
    if (step >= kLead) {
      const Vector digit = rest + QUARN_SHIFTED(1, carry, quotient);
      constexpr uint64_t kBits = 0x4338000000000000U;  // of kShift
      reinterpret_cast<Words*>(out)[i] = (Words)(digit + kShift) - kBits;
    }
    before = now;
    carry = quotient;
  }
}

void fill(const Field& field, const Factor* in, Factor* out, size_t count, double root) {
  const Modulus m(field);
  const Vector w = all(root);
  const Vector quotient = w / m.prime;
  for (size_t i = 0; i < count; ++i) {
    const Vector product = m.reduce(m.multiply(all(in[i].value), w, quotient));
    const Vector by_prime = product / m.prime;
    out[i] = {product[0], by_prime[0]};
  }
}

const Kernel kThis = {kLanes, convert, forward, multiply, inverse, recombine, fill};

}  // namespace
}  // namespace quarn::convolution

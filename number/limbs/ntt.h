// The number-theoretic transform: polynomials of a length m * 2^k, m in {1, 3, 5, 7, 9}, modulo one prime.
//
// forward() takes the coefficients to the values at all roots of x^n - 1, in an order that only pointwise() and
// inverse() need to agree on:
//  1. m > 1: a transform of length m across the m parts of length 2^k. Because m and 2^k are coprime, numbering each
//     coefficient by its index modulo m leaves no twiddle factors (I. J. Good, J. Roy. Statist. Soc. B 20, 1958).
//  2. In each part, x^s - r^2 is split into x^(s/2) - r and x^(s/2) + r, two levels at a time, depth first, so that a
//     piece is finished while it is in the cache. Block j of a level has r = twiddles[j], whatever the level.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <memory>
#include <vector>

#include "number/limbs/prime_field.h"

namespace quarn {

/// The shortest supported transform length of at least n points, 0 if there is none; its power of two divides
/// 2^twos.
inline std::size_t transform_length(std::size_t n, int twos) {
  const std::size_t longest_part = std::size_t(1) << twos;
  for (std::size_t top = std::bit_ceil(n); top / 16 <= longest_part; top *= 2) {
    for (const unsigned sixteenths : {9U, 10U, 12U, 14U, 16U}) {
      const std::size_t length = top >= 16 ? top / 16 * sixteenths : top;
      if (length >= n && (length & (0 - length)) <= longest_part) {
        return length;
      }
    }
  }
  return 0;
}

template <class Field>
class Ntt {
 public:
  using Word = typename Field::Word;
  using Wide = typename Field::Wide;
  using Factor = typename Field::Factor;

  /// x[0 .. n): from below p to below 4p.
  static void forward(Word* x, std::size_t n) {
    const std::size_t part = std::size_t(1) << std::countr_zero(n);
    grow_twiddles(part / 2);
    across_parts<false>(x, n / part, part);
    for (std::size_t i = 0; i < n; i += part) {
      split(x + i, part, 0);
    }
  }

  /// x[i] *= y[i] / 2^bits: from below 4p to below 2p.
  static void pointwise(Word* x, const Word* y, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
      x[i] = Field::below_2p(Field::montgomery_reduce(Wide(Field::below_2p(x[i])) * y[i]));
    }
  }

  /// Undoes forward, but for the factor n: from below 2p to below 4p.
  static void inverse(Word* x, std::size_t n) {
    const std::size_t part = std::size_t(1) << std::countr_zero(n);
    grow_twiddles(part / 2);
    for (std::size_t i = 0; i < n; i += part) {
      join(x + i, part, 0);
    }
    across_parts<true>(x, n / part, part);
  }

  /// The constant that makes forward, pointwise and inverse an exact cyclic product.
  static Factor scale(std::size_t n) {
    return Field::factor(Field::product(Field::montgomery_one, Field::inverse(Word(n % Field::p))));
  }

 private:
  // Up to this many words a piece is worked through level by level; it fits the first-level cache with its twiddles.
  static constexpr std::size_t kPiece = std::size_t(16384) / sizeof(Word);

  // twiddles[0] = 1 and twiddles[2^t + i] = twiddles[i] * (root of order 2^(t+2)); hence twiddles[2 j]^2 = twiddles[j],
  // twiddles[2 j + 1] = sqrt(-1) * twiddles[2 j], and 1 / twiddles[j] = -twiddles[mirror(j)].
  // All threads share them. A longer array has the same factors at its front; the shorter ones stay, as long in all as
  // the longest, because nobody knows who still looks at them.
  struct Twiddles {
    explicit Twiddles(std::size_t count) : factors(count) {
      factors[0] = Field::factor(1);
      for (std::size_t size = 1; size < count; size *= 2) {
        const Factor root = Field::factor(Field::root_of_two_power(std::countr_zero(size) + 2));
        for (std::size_t i = 0; i < size; ++i) {
          factors[size + i] = Field::factor(Field::below_p(Field::multiply(factors[i].value, root)));
        }
      }
    }
    std::vector<Factor> factors;
    const Twiddles* shorter = nullptr;
  };
  static inline constinit std::atomic<const Twiddles*> published_ = nullptr;

  static const Factor* twiddles() { return published_.load(std::memory_order_acquire)->factors.data(); }

  static void grow_twiddles(std::size_t count) {
    const Twiddles* longest = published_.load(std::memory_order_acquire);
    const auto enough = [&] { return longest != nullptr && longest->factors.size() >= count; };
    if (enough()) {
      return;
    }
    auto made = std::make_unique<Twiddles>(std::bit_ceil(std::max<std::size_t>(count, 1)));
    do {
      made->shorter = longest;
      if (published_.compare_exchange_weak(longest, made.get(), std::memory_order_acq_rel)) {
        made.release();
        return;
      }
    } while (!enough());
  }

  static std::size_t mirror(std::size_t j) { return 3 * std::bit_floor(j) - 1 - j; }

  static void split(Word* x, std::size_t n, std::size_t block) {
    if (std::countr_zero(n) % 2 != 0) {
      // Only a whole part is an odd power of two long, and there the twiddle is one.
      split_once(x, n / 2);
      split(x, n / 2, 2 * block);
      split(x + n / 2, n / 2, 2 * block + 1);
    } else if (n > kPiece) {
      split_blocks(x, n / 4, 1, block);
      for (std::size_t i = 0; i < 4; ++i) {
        split(x + i * (n / 4), n / 4, 4 * block + i);
      }
    } else {
      std::size_t blocks = 1;
      for (std::size_t quarter = n / 4; quarter > 1; quarter /= 4, blocks *= 4) {
        split_blocks(x, quarter, blocks, blocks * block);
      }
      if (n > 1) {
        split_blocks<1>(x, 1, blocks, blocks * block);
      }
    }
  }

  static void split_once(Word* x, std::size_t half) {
    for (std::size_t i = 0; i < half; ++i) {
      const Word a = Field::below_2p(x[i]);
      const Word b = Field::below_2p(x[i + half]);
      x[i] = a + b;
      x[i + half] = a - b + 2 * Field::p;
    }
  }

  // Two levels for `blocks` neighbouring blocks, each of four quarters.
  template <std::size_t kQuarter = 0>
  static void split_blocks(Word* x, std::size_t quarter, std::size_t blocks, std::size_t first) {
    if constexpr (kQuarter != 0) {
      quarter = kQuarter;
    }
    const Factor* const twiddles = Ntt::twiddles();
    const std::size_t last = first + blocks;
    if (first == 0) {
      split_block<true>(x, quarter, {}, {}, twiddles[1]);
      ++first;
      x += 4 * quarter;
    }
    for (std::size_t j = first; j < last; ++j, x += 4 * quarter) {
      split_block<false>(x, quarter, twiddles[j], twiddles[2 * j], twiddles[2 * j + 1]);
    }
  }

  // kPlain: the factors w and w0 are one.
  template <bool kPlain>
  static void split_block(Word* x, std::size_t quarter, Factor w, Factor w0, Factor w1) {
    constexpr Word p2 = 2 * Field::p;
    for (std::size_t i = 0; i < quarter; ++i) {
      const Word a0 = Field::below_2p(x[i]);
      const Word a1 = Field::below_2p(x[i + quarter]);
      const Word a2 = kPlain ? Field::below_2p(x[i + 2 * quarter]) : Field::multiply(x[i + 2 * quarter], w);
      const Word a3 = kPlain ? Field::below_2p(x[i + 3 * quarter]) : Field::multiply(x[i + 3 * quarter], w);
      const Word b0 = Field::below_2p(a0 + a2);
      const Word b1 = kPlain ? Field::below_2p(a1 + a3) : Field::multiply(a1 + a3, w0);
      const Word b2 = Field::below_2p(a0 - a2 + p2);
      const Word b3 = Field::multiply(a1 - a3 + p2, w1);
      x[i] = b0 + b1;
      x[i + quarter] = b0 - b1 + p2;
      x[i + 2 * quarter] = b2 + b3;
      x[i + 3 * quarter] = b2 - b3 + p2;
    }
  }

  static void join(Word* x, std::size_t n, std::size_t block) {
    if (std::countr_zero(n) % 2 != 0) {
      join(x, n / 2, 2 * block);
      join(x + n / 2, n / 2, 2 * block + 1);
      split_once(x, n / 2);
    } else if (n > kPiece) {
      for (std::size_t i = 0; i < 4; ++i) {
        join(x + i * (n / 4), n / 4, 4 * block + i);
      }
      join_blocks(x, n / 4, 1, block);
    } else {
      if (n > 1) {
        join_blocks<1>(x, 1, n / 4, n / 4 * block);
      }
      std::size_t blocks = n / 16;
      for (std::size_t quarter = 4; quarter < n; quarter *= 4, blocks /= 4) {
        join_blocks(x, quarter, blocks, blocks * block);
      }
    }
  }

  template <std::size_t kQuarter = 0>
  static void join_blocks(Word* x, std::size_t quarter, std::size_t blocks, std::size_t first) {
    if constexpr (kQuarter != 0) {
      quarter = kQuarter;
    }
    const Factor* const twiddles = Ntt::twiddles();
    const std::size_t last = first + blocks;
    if (first == 0) {
      join_block<true>(x, quarter, {}, {}, twiddles[1]);
      ++first;
      x += 4 * quarter;
    }
    for (std::size_t j = first; j < last; ++j, x += 4 * quarter) {
      join_block<false>(x, quarter, twiddles[mirror(j)], twiddles[mirror(2 * j)], twiddles[mirror(2 * j + 1)]);
    }
  }

  // Dividing by a twiddle is multiplying by its mirror image with the difference turned round.
  template <bool kPlain>
  static void join_block(Word* x, std::size_t quarter, Factor w, Factor w0, Factor w1) {
    constexpr Word p2 = 2 * Field::p;
    for (std::size_t i = 0; i < quarter; ++i) {
      const Word b0 = x[i];
      const Word b1 = x[i + quarter];
      const Word b2 = x[i + 2 * quarter];
      const Word b3 = x[i + 3 * quarter];
      const Word a0 = Field::below_2p(b0 + b1);
      const Word a1 = kPlain ? Field::below_2p(b0 - b1 + p2) : Field::multiply(b1 - b0 + p2, w0);
      const Word a2 = Field::below_2p(b2 + b3);
      const Word a3 = Field::multiply(b3 - b2 + p2, w1);
      x[i] = Field::below_2p(a0 + a2);
      x[i + quarter] = Field::below_2p(a1 + a3);
      x[i + 2 * quarter] = kPlain ? Field::below_2p(a0 - a2 + p2) : Field::multiply(a2 - a0 + p2, w);
      x[i + 3 * quarter] = kPlain ? Field::below_2p(a1 - a3 + p2) : Field::multiply(a3 - a1 + p2, w);
    }
  }

  template <bool kInverse>
  static void across_parts(Word* x, std::size_t parts, std::size_t length) {
    switch (parts) {
      case 3:
        return across_odd<kInverse, 3>(x, length);
      case 5:
        return across_odd<kInverse, 5>(x, length);
      case 7:
        return across_odd<kInverse, 7>(x, length);
      case 9:
        return across_odd<kInverse, 9>(x, length);
    }
  }

  // Half sums and half differences of the m-th roots of unity, in Montgomery form: [i][k] belongs to the power (i + 1)
  // (k + 1).
  template <std::size_t kParts>
  struct OddRoots {
    static constexpr std::size_t half = kParts / 2;
    Word cosine[half][half];
    Word sine[half][half];

    static constexpr OddRoots make(bool inverse) {
      OddRoots roots{};
      const Word root = Field::root_of_odd(kParts);
      const Word halved = Field::product(Field::montgomery_one, (Field::p + 1) / 2);
      for (std::size_t i = 0; i < half; ++i) {
        for (std::size_t k = 0; k < half; ++k) {
          const Word exponent = Word((i + 1) * (k + 1) % kParts);
          const Word up = Field::power(root, inverse ? kParts - exponent : exponent);
          const Word down = Field::power(root, inverse ? exponent : kParts - exponent);
          roots.cosine[i][k] = Field::product(halved, Word((Wide(up) + down) % Field::p));
          roots.sine[i][k] = Field::product(halved, Field::difference(up, down));
        }
      }
      return roots;
    }
  };

  template <bool kInverse, std::size_t kParts>
  static void across_odd(Word* x, std::size_t length) {
    static constexpr auto roots = OddRoots<kParts>::make(kInverse);
    // place[u]: the part whose first coefficient has an index of u modulo m. One coefficient on, all places turn by
    // one.
    std::size_t place[2 * kParts];
    for (std::size_t j = 0; j < kParts; ++j) {
      const std::size_t u = j * length % kParts;
      place[u] = place[u + kParts] = j * length;
    }
    std::size_t i = 0;
    for (; i + kParts <= length; i += kParts) {
#pragma GCC unroll 9
      for (std::size_t turn = 0; turn < kParts; ++turn) {
        // Index i + turn is turn modulo m in the part where it was 0 for i: the parts count back.
        odd_butterfly<kInverse>(x + i + turn, place + (kParts - turn) % kParts, length, roots);
      }
    }
    for (std::size_t turn = 0; i < length; ++i, ++turn) {
      odd_butterfly<kInverse>(x + i, place + (kParts - turn) % kParts, length, roots);
    }
  }

  // The coefficients are numbered by `place`, the residues by their part.
  template <bool kInverse, std::size_t kParts>
  static void odd_butterfly(Word* x, const std::size_t* place, std::size_t length, const OddRoots<kParts>& roots) {
    const auto from = [&](std::size_t u) -> const Word& { return x[kInverse ? u * length : place[u]]; };
    const auto to = [&](std::size_t u) -> Word& { return x[kInverse ? place[u] : u * length]; };
    constexpr std::size_t half = kParts / 2;
    const Word first = Field::below_2p(from(0));
    Word sum[half];
    Word difference[half];
    Word total = first;
    for (std::size_t k = 0; k < half; ++k) {
      const Word a = Field::below_2p(from(k + 1));
      const Word b = Field::below_2p(from(kParts - 1 - k));
      sum[k] = Field::below_2p(a + b);
      difference[k] = Field::below_2p(a - b + 2 * Field::p);
      total = Field::below_2p(total + sum[k]);
    }
    to(0) = total;
    for (std::size_t i = 0; i < half; ++i) {
      Wide even = 0;
      Wide odd = 0;
      for (std::size_t k = 0; k < half; ++k) {
        even += Wide(sum[k]) * roots.cosine[i][k];
        odd += Wide(difference[k]) * roots.sine[i][k];
      }
      const Word e = Field::below_2p(first + Field::below_2p(Field::montgomery_reduce(even)));
      const Word o = Field::below_2p(Field::montgomery_reduce(odd));
      to(i + 1) = e + o;
      to(kParts - 1 - i) = e - o + 2 * Field::p;
    }
  }
};

}  // namespace quarn

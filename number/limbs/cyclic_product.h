// Products of coefficients by number-theoretic transforms.
//
// A coefficient is cut into chunks of X = 10^C, the coefficients of a polynomial. Polynomials are multiplied modulo
// x^n - 1 and two primes; the Chinese remainder theorem gives the coefficients of the product, carries make chunks of
// them. The result is the product modulo X^n - 1: the product itself when it has at most n chunks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

#include "number/limbs/chunk_cycle.h"
#include "number/limbs/ntt.h"
#include "number/limbs/prime_field.h"
#include "number/limbs/radix.h"
#include "number/limbs/scratch.h"

namespace quarn {

/// One factor, or the product, of a cyclic product of `points` chunks.
template <class R>
class CyclicProduct {
 public:
  using Limb = typename R::Limb;
  using Primes = TransformPrimes<Limb>;
  using First = typename Primes::First;
  using Second = typename Primes::Second;
  using Wide = typename First::Wide;
  static constexpr int chunk_digits = Primes::chunk_digits;

  using Chunks = ChunkCycle<R, Limb, chunk_digits>;

  static constexpr std::size_t chunks(std::size_t limbs) { return Chunks::chunks(limbs); }
  /// The points for a product of at least `limbs` limbs, with a shorter factor of at most `shorter` limbs; 0 when the
  /// primes do not reach so far.
  static std::size_t points_for(std::size_t limbs, std::size_t shorter) {
    return chunks(shorter) > max_terms ? 0 : transform_length(chunks(limbs), std::min(First::twos, Second::twos));
  }

  explicit CyclicProduct(std::size_t points) : points_(points), residues_(2 * points) {}

  /// Takes the number a[0 .. length), the leading limb first, modulo X^points - 1. At most 64 times as long as the
  /// cycle.
  [[gnu::noinline]] void load(const Limb* a, std::size_t length) {
    Chunks::load(first(), points_, a, length);
    std::memcpy(second(), first(), points_ * sizeof(Limb));
    Ntt<First>::forward(first(), points_);
    Ntt<Second>::forward(second(), points_);
  }

  /// Becomes the product with the other factor (which may be this one); to be finished.
  [[gnu::noinline]] void multiply_by(const CyclicProduct& other) {
    Ntt<First>::pointwise(first(), other.first(), points_);
    Ntt<Second>::pointwise(second(), other.second(), points_);
  }

  /// Turns the product into chunks with all carries done: a number from 0 to X^points - 1.
  [[gnu::noinline]] void finish() {
    Ntt<First>::inverse(first(), points_);
    Ntt<Second>::inverse(second(), points_);
    carry_all();
  }

  /// The lowest limbs of the finished product.
  void store(Limb* out, std::size_t length) const { Chunks::store(first(), points_, out, length); }

  /// Stores the lowest limbs of |a - product|, of the finished product, given that the difference lies well between
  /// -X^points / 2 and X^points / 2; returns whether it is negative. Destroys the product.
  bool store_difference(Limb* out, std::size_t length, const Limb* a, std::size_t na) {
    return Chunks::store_difference(first(), second(), points_, out, length, a, na);
  }

 private:
  static constexpr Limb chunk_base = Limb(Chunks::base);
  // So many products of two chunks, and less than one more for the carries, stay below the product of the primes.
  static constexpr std::size_t max_terms = std::size_t(std::min<Wide>(
      Wide(First::p) * Second::p / (Wide(chunk_base) * chunk_base) - 1, std::numeric_limits<std::size_t>::max()));

  Limb* first() { return residues_.data(); }
  const Limb* first() const { return residues_.data(); }
  Limb* second() { return residues_.data() + points_; }
  const Limb* second() const { return residues_.data() + points_; }

  // x / X for x below 2 X^2; x becomes the remainder.
  static Limb divide_by_chunk_base(Wide& x) {
    constexpr int kShift = 2 * std::bit_width(chunk_base) + 1 - First::bits;
    static_assert(Wide(chunk_base) * chunk_base >> (First::bits + kShift - 1) == 0);
    constexpr Limb kReciprocal = Limb((Wide(1) << (First::bits + kShift)) / chunk_base);
    Limb quotient = First::high(Limb(x >> kShift), kReciprocal);
    Limb remainder = Limb(x) - quotient * chunk_base;
    while (remainder >= chunk_base) {
      remainder -= chunk_base;
      ++quotient;
    }
    x = remainder;
    return quotient;
  }

  void carry_all() {
    static constexpr auto kInverse = Second::factor(Second::inverse(First::p % Second::p));
    static constexpr Limb kHigh = First::p / chunk_base;
    static constexpr Limb kLow = First::p % chunk_base;
    const auto scale1 = Ntt<First>::scale(points_);
    const auto scale2 = Ntt<Second>::scale(points_);
    Limb* const x1 = first();
    const Limb* const x2 = second();
    Limb next = 0;   // what earlier coefficients leave for this chunk
    Limb after = 0;  // and for the one after it
    for (std::size_t i = 0; i < points_; ++i) {
      // The coefficient is r + k * p1 with k = (x2 - r) / p1 modulo p2.
      const Limb r = First::below_p(First::multiply(x1[i], scale1));
      const Limb k = Second::below_p(Second::multiply(Second::multiply(x2[i], scale2) + 2 * Second::p - r, kInverse));
      const Limb k_high = k / chunk_base;
      const Limb k_low = k % chunk_base;
      Wide low = Wide(k_low) * kLow + r;
      const Limb middle = divide_by_chunk_base(low) + k_high * kLow + k_low * kHigh;
      const Limb middle_high = middle / chunk_base;
      Limb chunk = Limb(low) + next;
      Limb carry = 0;
      while (chunk >= chunk_base) {
        chunk -= chunk_base;
        ++carry;
      }
      x1[i] = chunk;
      next = after + carry + (middle - middle_high * chunk_base);
      after = k_high * kHigh + middle_high;
    }
    // The cycle closes: what is left counts from the start again.
    for (std::size_t i = 0; next != 0 || after != 0; i = i + 1 == points_ ? 0 : i + 1) {
      const Limb sum = x1[i] + next;
      x1[i] = sum % chunk_base;
      next = after + sum / chunk_base;
      after = 0;
    }
  }

  std::size_t points_;
  Scratch<Limb> residues_;
};

// Compiled once, in cyclic_product.cpp, and called: inlined, they would be compiled with each caller.
extern template class CyclicProduct<Radix>;

}  // namespace quarn

// Products of coefficients by transforms on doubles (number/convolution/kernel.h), in chunks of 10^12.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "number/convolution/tables.h"
#include "number/limbs/chunk_cycle.h"
#include "number/limbs/ntt.h"
#include "number/limbs/scratch.h"
#include "number/processor/vectors.h"

namespace quarn {

/// What CyclicProduct is, for processors with fused multiply-adds.
template <class R>
class DoubleProduct {
 public:
  using Limb = typename R::Limb;
  static constexpr int chunk_digits = 12;
  using Chunks = ChunkCycle<R, std::uint64_t, chunk_digits>;

  static constexpr std::size_t chunks(std::size_t limbs) { return Chunks::chunks(limbs); }
  /// The points for a product of at least `limbs` limbs, with a shorter factor of at most `shorter` limbs; 0 when the
  /// primes do not reach so far, or the processor does not serve.
  static std::size_t points_for(std::size_t limbs, std::size_t shorter) {
    if (convolution::kernel_in_use() == nullptr || chunks(shorter) > max_terms) {
      return 0;
    }
    // Grains in all, 1, 3 or 5 times a power of two.
    const std::size_t grains = (chunks(limbs) + convolution::kGrain - 1) / convolution::kGrain;
    const std::size_t top = std::bit_ceil(grains);
    const std::size_t found = top >= 8 && grains <= top / 8 * 5   ? top / 8 * 5
                              : top >= 4 && grains <= top / 4 * 3 ? top / 4 * 3
                                                                  : top;
    return top > std::size_t(1) << (convolution::kTwos - 2) ? 0 : found * convolution::kGrain;
  }

  explicit DoubleProduct(std::size_t points)
      : points_(points),
        vectors_(points / convolution::kernel_in_use()->lanes),
        kernel_(*convolution::kernel_in_use()),
        fields_(convolution::fields_for(kernel_, vectors_)),
        residues_(2 * points) {}

  /// Takes the number a[0 .. length), the leading limb first, modulo X^points - 1. At most 64 times as long as the
  /// cycle.
  void load(const Limb* a, std::size_t length) {
    Chunks::load(words(), points_, a, length);
    const processor::PlainRounding scope;
    kernel_.convert(words(), residues(1), vectors_);
    kernel_.convert(words(), residues(0), vectors_);
    for (const int i : {0, 1}) {
      kernel_.forward(fields_[i], residues(i), vectors_);
    }
  }

  /// Becomes the product with the other factor (which may be this one); to be finished.
  void multiply_by(const DoubleProduct& other) {
    const processor::PlainRounding scope;
    for (const int i : {0, 1}) {
      // The inverse of a divisor of p - 1.
      const double scale = -double(std::int64_t((convolution::kPrimes[i] - 1) / vectors_));
      kernel_.multiply(fields_[i], residues(i), other.residues(i), vectors_, scale);
    }
  }

  /// Turns the product into chunks with all carries done: a number from 0 to X^points - 1.
  void finish() {
    {
      const processor::PlainRounding scope;
      for (const int i : {0, 1}) {
        kernel_.inverse(fields_[i], residues(i), vectors_);
      }
      kernel_.recombine(fields_[0], fields_[1], convolution::kDecimal, residues(0), residues(1), digits(), vectors_);
    }
    std::int64_t carry = 0;
    std::int64_t* const x = digits();
    for (int round = 0; round == 0 || carry != 0; ++round) {
      for (std::size_t i = 0; i < points_ && (round == 0 || carry != 0); ++i) {
        const std::int64_t value = x[i] + carry;
        carry = std::int64_t(value >= Chunks::base) - std::int64_t(value < 0);
        x[i] = value - carry * Chunks::base;
      }
    }
  }

  /// The lowest limbs of the finished product.
  void store(Limb* out, std::size_t length) const { Chunks::store(words(), points_, out, length); }

  /// CyclicProduct::store_difference.
  bool store_difference(Limb* out, std::size_t length, const Limb* a, std::size_t na) {
    return Chunks::store_difference(words(), words() + points_, points_, out, length, a, na);
  }

 private:
  // So many products of two chunks stay below 0.4 times the product of the primes.
  static constexpr std::size_t max_terms = 280'000;

  std::uint64_t* words() { return residues_.data(); }
  const std::uint64_t* words() const { return residues_.data(); }
  std::int64_t* digits() { return reinterpret_cast<std::int64_t*>(words()); }
  double* residues(int i) { return reinterpret_cast<double*>(words() + std::size_t(i) * points_); }
  const double* residues(int i) const { return reinterpret_cast<const double*>(words() + std::size_t(i) * points_); }

  std::size_t points_;
  std::size_t vectors_;
  const convolution::Kernel& kernel_;
  const convolution::Field* fields_;
  Scratch<std::uint64_t> residues_;
};

}  // namespace quarn

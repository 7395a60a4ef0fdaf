// The factors of a transform length, in the order that the passes and the permutation need.
#pragma once

#include <array>
#include <cstddef>

#include "quarn/quarnfloat.h"

namespace tesk {

inline constexpr Integer kLargestPrime = 19;
inline constexpr Integer kLargestMergedPower = 8;
inline constexpr std::size_t kMostFactors = 20;

/// A list of factors, ended by a 0. The search asks whether there are 20 factors before it takes another one, and may
/// then take a pair: 21 factors is the most that a list can come to hold, whatever the length, before it is refused.
using FactorList = std::array<Integer, kMostFactors + 2>;

struct Factorization {
  enum class Status { ok, large_prime, too_many_factors };

  Status status = Status::ok;
  /// One radix a pass: the primes in symmetric order, runs of 2 merged into 4 and 8. A 1 is no pass.
  FactorList passes{};
  /// The same primes before merging; empty when there is one only, for which nothing is to be permuted.
  FactorList permutation{};
};

/// The prime factors of n >= 1. Pairs of equal primes stand at mirrored places, the largest outside, and what is left
/// over stands ascending in the middle: 180 gives 3, 2, 5, 2, 3. A prime above 19 or more than 20 factors refuse n.
Factorization c06FactorN(Integer n);

}  // namespace tesk

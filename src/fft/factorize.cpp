#include "src/fft/factorize.h"

namespace tesk {
namespace {

/// Turns each run of 2 into radices 8 and at most one 4 or 2, and the places so consumed into 1.
void merge_powers_of_two(FactorList& passes) {
  Integer merged = 1;
  for (std::size_t i = 0; passes[i] != 0; ++i) {
    if (passes[i] != 2) {
      continue;
    }
    merged *= 2;
    passes[i] = 1;
    if (merged >= kLargestMergedPower || passes[i + 1] != 2) {
      passes[i] = merged;
      merged = 1;
    }
  }
}

}  // namespace

Factorization c06FactorN(Integer n) {
  Factorization result;
  FactorList singles{};
  FactorList pairs{};
  std::size_t single_count = 0;
  std::size_t pair_count = 0;

  Integer rest = n;
  Integer divisor = 2;
  while (rest > 1) {
    while (divisor <= kLargestPrime && rest % divisor != 0) {
      ++divisor;
    }
    if (divisor > kLargestPrime) {
      result.status = Factorization::Status::large_prime;
      return result;
    }
    if (single_count + 2 * pair_count >= kMostFactors) {
      result.status = Factorization::Status::too_many_factors;
      return result;
    }
    rest /= divisor;
    if (rest % divisor == 0) {
      rest /= divisor;
      pairs[pair_count++] = divisor;
    } else {
      singles[single_count++] = divisor;
    }
  }
  // 19 factors and a pair, as 2^19 * 3^2 has them.
  if (single_count + 2 * pair_count > kMostFactors) {
    result.status = Factorization::Status::too_many_factors;
    return result;
  }

  std::size_t count = 0;
  for (std::size_t i = pair_count; i > 0; --i) {
    result.passes[count++] = pairs[i - 1];
  }
  for (std::size_t i = 0; i < single_count; ++i) {
    result.passes[count++] = singles[i];
  }
  for (std::size_t i = 0; i < pair_count; ++i) {
    result.passes[count++] = pairs[i];
  }
  if (count > 1) {
    result.permutation = result.passes;
  }
  merge_powers_of_two(result.passes);
  return result;
}

}  // namespace tesk

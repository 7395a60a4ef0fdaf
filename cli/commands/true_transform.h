// Transforms to digits that are true: proven by the bounds of the transforms, or else by a second computation.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/commands/estimate.h"
#include "tesk2mp/proven_sums.hpp"

namespace cli {

/// Numbers to the digits that are asked for, how far the exact ones are away from those, and how that is known.
template <class T>
struct TrueNumbers {
  std::vector<T> values;
  std::vector<QuarnFloat> errors;  // none: nothing is proven
  std::vector<QuarnFloat> magnitudes;
};

template <class T>
std::vector<tesk2mp::proven::Bounded<QuarnFloat>> magnitudes_of(
    const std::vector<tesk2mp::proven::Bounded<T>>& numbers) {
  std::vector<tesk2mp::proven::Bounded<QuarnFloat>> magnitudes;
  magnitudes.reserve(numbers.size());
  for (const auto& each : numbers) {
    magnitudes.push_back(tesk2mp::proven::abs(each));
  }
  return magnitudes;
}

/// prove() gives the transform with bounds, compute() without. The digits are said in the second note, and in facts.
/// So many zeros follow from the kind of the transform.
template <class T, class Prove, class Compute>
TrueNumbers<T> true_transform(const ProofOptions& options, const std::string& routine, bool has_proof,
                              const Prove& prove, const Compute& compute, Result& result,
                              std::size_t structural_zeros = 0) {
  TrueNumbers<T> found;
  const auto take = [&](const std::vector<tesk2mp::proven::Bounded<T>>& numbers, int working_digits) {
    std::vector<tesk2mp::proven::Bounded<QuarnFloat>> magnitudes;
    {
      const tesk2mp::Digits scope(working_digits);
      magnitudes = magnitudes_of(numbers);
    }
    found.values = known_values(numbers);
    found.magnitudes = known_values(magnitudes);
  };
  std::string why_not = has_proof ? "" : "not proven: there is no bound for this";
  if (!has_proof && options.insisted) {
    throw bad_input("--proven: there is no bound for this transform");
  }
  try {
    if (has_proof && options.wanted() && try_proof(options, why_not, [&] {
          int worked_with = 0;
          const auto numbers = with_true_digits(options, worked_with, prove);
          result.notes[1] = proof_note(worked_with, routine);
          result.facts.push_back({"proven", "true", true});
          result.facts.push_back({"working_digits", std::to_string(worked_with), true});
          add_zeros(result, numbers, structural_zeros);
          take(numbers, worked_with);
          found.errors = errors_of(numbers);
        })) {
      return found;
    }
  } catch (const tesk2mp::InvalidArgument&) {  // longer, or with more digits, than there are bounds for
    if (options.insisted) {
      throw;
    }
  }
  const auto estimate = estimated<T>(options, [&] { return std::optional(compute()); });
  add_estimate(options, estimate, routine, result);
  take(estimate.numbers, estimate.second_digits);
  return found;
}

}  // namespace cli

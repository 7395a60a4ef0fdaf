// Transforms to digits that are true: proven by the bounds of the transforms, or else by a second computation.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/commands/estimate.h"
#include "cli/commands/failure.h"
#include "tesk2mp/proven_sums.hpp"
#include "tesk2mp/util.hpp"

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
  const std::string limits =
      "there are no bounds for this transform: for none behind a window, of more than 2^24 "
      "numbers, or with more than some 1100 digits";
  TrueNumbers<T> found;
  std::string why_not = has_proof ? "" : "not proven: " + limits;
  try {
    const auto attempt = [&] {
      int worked_with = 0;
      const auto numbers = with_true_digits(options, worked_with, prove);
      result.notes[1] = proof_note(worked_with, routine);
      result.facts.push_back({"proven", "true", true});
      result.facts.push_back({"working_digits", std::to_string(worked_with), true});
      add_zeros(result, numbers, structural_zeros);
      found.values = known_values(numbers);
      found.errors = errors_of(numbers);
      const tesk2mp::Digits scope(worked_with);
      found.magnitudes = known_values(magnitudes_of(numbers));
    };
    if (has_proof && try_proof(options, why_not, attempt, "")) {
      for (QuarnFloat& magnitude : found.magnitudes) {
        magnitude *= 1;
      }
      return found;
    }
  } catch (const tesk2mp::InvalidArgument&) {
    why_not = "not proven: " + limits;
  }
  if (options.insisted) {
    throw bad_input("--proven: " + limits);
  }
  const auto estimate = estimated<T>(options, [&] { return std::optional(Computed<T>{compute(), {}, {}}); });
  if (options.wanted()) {
    result.notes.push_back(why_not);
  }
  add_estimate(options, estimate, routine, result);
  found.values = estimated_values(options, estimate.numbers);
  for (const T& value : found.values) {
    found.magnitudes.push_back(tesk2mp::abs(Complex(value)));
  }
  return found;
}

}  // namespace cli

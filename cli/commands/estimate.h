// What the commands share whose results have no proof: a second computation says which digits are true.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/proven.h"

namespace cli {

/// Numbers with estimates in place of bounds, and the working digits of both computations.
template <class T>
struct Estimated {
  std::vector<tesk2mp::proven::Bounded<T>> numbers;
  int first_digits = 0;
  int second_digits = 0;
};

/// What compute() gives at the working digits and with more of them: by as much as they differ the former is wrong.
/// compute() gives nothing where more digits may help.
template <class T, class Compute>
Estimated<T> estimated_once(const ProofOptions& options, const Compute& compute) {
  Estimated<T> estimate{
      {}, QuarnDigits(), int(std::min<Integer>(Integer(QuarnDigits()) + QuarnDigits() / 4 + 10, kMostDigits))};
  const std::optional<std::vector<T>> first = compute();
  const tesk2mp::Digits scope(estimate.second_digits);
  std::optional<std::vector<T>> second = compute();
  if (!first || !second || first->size() != second->size()) {
    estimate.numbers.emplace_back();
    return estimate;
  }
  for (std::size_t k = 0; k < second->size(); ++k) {
    const QuarnBound error((*first)[k] - (*second)[k]);
    estimate.numbers.push_back({options.wanted() ? std::move((*second)[k]) : (*first)[k], error});
  }
  return estimate;
}

/// The same with as many working digits as make all digits true that are asked for, or with --working-digits at once.
/// Where that is not found in the time and digits that proofs have, or is_hopeless() says after a first try that it
/// never is: what was found last.
template <class T, class Compute, class IsHopeless>
Estimated<T> estimated(const ProofOptions& options, const Compute& compute, const IsHopeless& is_hopeless) {
  if (!options.wanted()) {
    return estimated_once<T>(options, compute);
  }
  Estimated<T> estimate;
  try {
    int worked_with = 0;
    int tries = 0;
    with_true_digits(options, worked_with, [&] {
      if (++tries == 2 && is_hopeless()) {
        throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0, "more digits do not help", {});
      }
      estimate = estimated_once<T>(options, compute);
      return estimate.numbers;
    });
  } catch (const tesk2mp::NumericalFailure& failure) {
    if (failure.routine() != "TO_DIGITS") {
      throw;
    }
  }
  return estimate;
}
template <class T, class Compute>
Estimated<T> estimated(const ProofOptions& options, const Compute& compute) {
  return estimated<T>(options, compute, [] { return false; });
}

/// "20 digits, by ROUTINE (worked with 25)" as the second note, how many of them are true as the last one, and both as
/// facts.
template <class T>
void add_estimate(const ProofOptions& options, const Estimated<T>& estimate, const std::string& routine,
                  Result& result) {
  const auto known = std::clamp<std::int64_t>(tesk2mp::proven::fewest_true_digits(estimate.numbers), 0, QuarnDigits());
  result.notes[1] = digits_text() + ", by " + routine +
                    (options.wanted() ? " (worked with " + std::to_string(estimate.first_digits) + ")" : std::string());
  result.notes.push_back("about " + std::to_string(known) + " digits are true (estimate by a second computation with " +
                         std::to_string(estimate.second_digits) + ")");
  result.facts.push_back({"working_digits", std::to_string(estimate.first_digits), true});
  result.facts.push_back({"true_digits_estimated", std::to_string(known), true});
}

}  // namespace cli

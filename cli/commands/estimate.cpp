#include "cli/commands/estimate.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace cli {

namespace {

template <class T>
std::vector<tesk2mp::proven::Bounded<T>> with_distances(std::vector<T> numbers, const std::vector<T>& others,
                                                        bool is_comparable) {
  std::vector<tesk2mp::proven::Bounded<T>> bounded;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    const QuarnBound error = is_comparable ? QuarnBound(numbers[k] - others[k]) : QuarnBound::infinity();
    bounded.push_back({std::move(numbers[k]), error});
  }
  return bounded;
}

/// How many parts are 0 in both, of numbers that are not: of a structure, which needs no estimate.
template <class T>
std::size_t common_zeros(const std::vector<T>& numbers, const std::vector<T>& others) {
  std::size_t count = 0;
  if constexpr (std::is_same_v<T, Complex>) {
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      const bool same = numbers[k] == others[k];
      count += !same && numbers[k].re == 0 && others[k].re == 0 ? 1 : 0;
      count += !same && numbers[k].im == 0 && others[k].im == 0 ? 1 : 0;
    }
  }
  return count;
}

template <class T>
Estimated<T> estimated_once(const ProofOptions& options, const Computation<T>& compute) {
  const auto more = [](Integer digits) { return digits + digits / 4 + 10; };
  Estimated<T> estimate;
  estimate.first_digits = QuarnDigits();
  while (more(estimate.first_digits) > kMostDigits) {
    estimate.first_digits -= std::max(1, estimate.first_digits / 8);
  }
  estimate.second_digits = int(more(estimate.first_digits));
  const auto computed = [&](int digits) -> std::optional<Computed<T>> {
    const tesk2mp::Digits scope(digits);
    return compute();
  };
  std::optional<Computed<T>> first = computed(estimate.first_digits);
  std::optional<Computed<T>> second = computed(estimate.second_digits);
  if (!first || !second) {
    return estimate;
  }
  const bool same = first->choice == second->choice && first->numbers.size() == second->numbers.size() &&
                    first->single.size() == second->single.size();
  // The better one, unless one computation is asked for or what differs says nothing about it.
  if (same && options.wanted()) {
    std::swap(first, second);
  }
  const tesk2mp::Digits scope(estimate.second_digits);
  estimate.structural_zeros = same ? common_zeros(first->numbers, second->numbers) : 0;
  estimate.numbers = with_distances(std::move(first->numbers), second->numbers, same);
  estimate.single = with_distances(std::move(first->single), second->single, same);
  estimate.choice = std::move(first->choice);
  return estimate;
}

}  // namespace

template <class T>
std::int64_t Estimated<T>::known_digits() const {
  std::int64_t known = choice ? tesk2mp::proven::fewest_true_digits(numbers) : 0;
  for (const auto& each : single) {
    known = std::min(known, tesk2mp::proven::fewest_true_digits(each));
  }
  return known;
}

template <class T>
Estimated<T> estimated(const ProofOptions& options, const Computation<T>& compute,
                       const std::function<bool()>& is_hopeless) {
  if (!options.wanted()) {
    return estimated_once<T>(options, compute);
  }
  Estimated<T> estimate;
  const int wanted = QuarnDigits();
  try {
    int worked_with = 0;
    int tries = 0;
    with_true_digits(options, worked_with, [&] {
      if (++tries == 2 && is_hopeless && is_hopeless()) {
        throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0, "more digits do not help", {});
      }
      estimate = estimated_once<T>(options, compute);
      auto numbers = estimate.numbers;
      if (estimate.known_digits() < wanted) {
        numbers.emplace_back();  // of which nothing is known
      }
      return numbers;
    });
  } catch (const tesk2mp::NumericalFailure& failure) {
    if (failure.routine() != "TO_DIGITS") {
      throw;
    }
  }
  return estimate;
}

template <class T>
std::vector<T> estimated_values(const ProofOptions& options,
                                const std::vector<tesk2mp::proven::Bounded<T>>& estimates) {
  const auto part = [&](const QuarnFloat& x, const QuarnBound& error) {
    return options.wanted() && is_unknown_zero(x, error) ? QuarnFloat() : x * 1;
  };
  std::vector<T> values;
  values.reserve(estimates.size());
  for (const auto& each : estimates) {
    if constexpr (std::is_same_v<T, Complex>) {
      values.emplace_back(part(each.value.re, each.error), part(each.value.im, each.error));
    } else {
      values.push_back(part(each.value, each.error));
    }
  }
  return values;
}

template <class T>
void add_estimate(const ProofOptions& options, const Estimated<T>& estimate, const std::string& routine, Result& result,
                  const std::string& condition) {
  const auto known = std::clamp<std::int64_t>(estimate.known_digits(), 0, QuarnDigits());
  result.notes[1] = digits_text() + ", by " + routine +
                    (options.wanted() || estimate.first_digits != QuarnDigits()
                         ? " (worked with " + std::to_string(estimate.first_digits) + ")"
                         : std::string());
  result.notes.push_back(condition + "about " + std::to_string(known) + (known == 1 ? " digit is" : " digits are") +
                         " true (estimate by a second computation with " + std::to_string(estimate.second_digits) +
                         ")");
  if (options.wanted()) {
    add_zeros(result, estimate.numbers, estimate.structural_zeros);
  }
  result.facts.push_back({"working_digits", std::to_string(estimate.first_digits), true});
  result.facts.push_back({"true_digits_estimated", std::to_string(known), true});
}

template struct Estimated<QuarnFloat>;
template struct Estimated<Complex>;
template Estimated<QuarnFloat> estimated(const ProofOptions&, const Computation<QuarnFloat>&,
                                         const std::function<bool()>&);
template Estimated<Complex> estimated(const ProofOptions&, const Computation<Complex>&, const std::function<bool()>&);
template std::vector<QuarnFloat> estimated_values(const ProofOptions&,
                                                  const std::vector<tesk2mp::proven::Bounded<QuarnFloat>>&);
template std::vector<Complex> estimated_values(const ProofOptions&,
                                               const std::vector<tesk2mp::proven::Bounded<Complex>>&);
template void add_estimate(const ProofOptions&, const Estimated<QuarnFloat>&, const std::string&, Result&,
                           const std::string&);
template void add_estimate(const ProofOptions&, const Estimated<Complex>&, const std::string&, Result&,
                           const std::string&);

}  // namespace cli

// What the commands share whose results have no proof: a second computation says which digits are true.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands/proven.h"

namespace cli {

/// What was computed: numbers that count beside the largest of them, and numbers each of which counts for itself; with
/// them what has to be the same in both computations, such as pivots or a rank.
template <class T>
struct Computed {
  std::vector<T> numbers;
  std::vector<T> single;
  std::vector<Integer> choice;
};

/// Gives nothing where more digits may help.
template <class T>
using Computation = std::function<std::optional<Computed<T>>()>;

/// One computation, the estimates of its errors, and the working digits of both.
template <class T>
struct Estimated {
  std::vector<tesk2mp::proven::Bounded<T>> numbers;
  std::vector<tesk2mp::proven::Bounded<T>> single;
  std::optional<std::vector<Integer>> choice;  // none: no computation came to an end
  std::size_t structural_zeros = 0;            // parts of numbers that are exactly 0 in both computations
  int first_digits = 0;
  int second_digits = 0;

  /// How many digits are true of the number that has fewest.
  std::int64_t known_digits() const;
};

/// What compute() gives with as many working digits as make all digits true that are asked for, or with
/// --working-digits at once: by as much as two computations differ, the second with more digits, the first is wrong.
/// Where that is not found in the time and digits that proofs have, or is_hopeless() says after a first try that it
/// never is: what was found last.
template <class T>
Estimated<T> estimated(const ProofOptions& options, const Computation<T>& compute,
                       const std::function<bool()>& is_hopeless = {});

/// The numbers rounded to the working digits, 0 where the sign is not known.
template <class T>
std::vector<T> estimated_values(const ProofOptions& options, const std::vector<tesk2mp::proven::Bounded<T>>& estimates);

/// "20 digits, by ROUTINE (worked with 25)" as the second note, how many of them are true, on that condition, as the
/// last one, and both as facts.
template <class T>
void add_estimate(const ProofOptions& options, const Estimated<T>& estimate, const std::string& routine, Result& result,
                  const std::string& condition = {});

}  // namespace cli

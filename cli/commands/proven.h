// What the commands share that print proven digits.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "cli/commands/command.h"
#include "cli/commands/failure.h"
#include "cli/io/result.h"
#include "tesk2mp/proven.hpp"

namespace cli {

inline void add_proven_option(Command& command, bool& proven) {
  command.flag("--proven", proven, "work with so many digits that all that are printed are true");
}

/// With so many digits data are read: all that they have where the result is to be proven.
inline int digits_of_data(bool proven) {
  constexpr int kAnyNumberOfDigits = 100'000;
  return proven ? std::max(kAnyNumberOfDigits, QuarnDigits()) : QuarnDigits();
}

/// What problem() gives, to as many true digits as are asked for, and with how many the proof worked.
template <class Problem>
auto with_true_digits(int& worked_with, const Problem& problem) {
  const int digits = QuarnDigits();
  return tesk2mp::proven::to_digits(
      digits,
      [&] {
        worked_with = QuarnDigits();
        return problem();
      },
      40 * digits + 1000);
}

inline std::string proof_note(int worked_with, const std::string& routine) {
  return digits_text() + ", all proven (worked with " + std::to_string(worked_with) + "), by " + routine;
}

/// The same, said in the second note and the facts.
template <class Problem>
auto proven_result(Result& result, const std::string& routine, const Problem& problem) {
  int worked_with = 0;
  auto found = with_true_digits(worked_with, problem);
  result.notes[1] = proof_note(worked_with, routine);
  result.facts = {{"routine", routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"proven", "true", true},
                  {"working_digits", std::to_string(worked_with), true}};
  return found;
}

/// Bounds as numbers.
template <class Bound>
std::vector<QuarnFloat> errors_of(const std::vector<Bound>& results) {
  std::vector<QuarnFloat> errors;
  errors.reserve(results.size());
  for (const Bound& each : results) {
    errors.push_back(each.error.value());
  }
  return errors;
}

/// A column of bounds.
inline void add_errors(Result& result, const std::vector<QuarnFloat>& errors, const std::string& what) {
  result.notes.push_back("error: so far away is the exact " + what + " at most");
  result.table.push_back({"error", brief_cells(errors)});
  result.data.push_back({"error", exact_cells(errors)});
}

/// A note, and a column, where several roots share a disc.
inline void add_counts(Result& result, const std::vector<tesk2mp::proven::BoundedRoot>& roots) {
  if (std::none_of(roots.begin(), roots.end(), [](const auto& root) { return root.count > 1; })) {
    return;
  }
  result.notes.emplace_back("count: so many are within that error of each other");
  ResultColumn column{"count", {}, true};
  for (const auto& root : roots) {
    column.cells.push_back(std::to_string(root.count));
  }
  result.table.push_back(column);
  result.data.push_back(column);
}

}  // namespace cli

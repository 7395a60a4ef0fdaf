// What the commands share that print proven digits.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "cli/commands/command.h"
#include "cli/commands/failure.h"
#include "cli/io/result.h"
#include "tesk2mp/proven.hpp"

namespace cli {

/// What --digits means: digits that are proven to be true, or, with --working-digits, those of one computation.
struct ProofOptions {
  Integer once = 0;  // working digits; 0: a proof
  Integer seconds = 60;
  bool insisted = false;
  bool errors = false;
  std::string certificate;  // the file for it; empty: none

  bool wanted() const { return once == 0 || insisted; }
  /// For the work of a command, before its data are read.
  void start() {
    insisted = insisted || !certificate.empty();
    if (insisted && once != 0) {
      throw bad_input("--proven and --working-digits exclude each other");
    }
    if (errors && once != 0) {
      throw bad_input("--error shows the bounds of a proof, and --working-digits makes none");
    }
    if (!wanted()) {
      QuarnSetDigits(int(once));
    }
  }
};

inline void add_working_digits(Command& command, ProofOptions& proof) {
  command.number("--working-digits", "D", proof.once, 1, kMostDigits, "compute once with D digits, without a proof");
  command.number("--proof-time", "S", proof.seconds, 0, 1'000'000,
                 "after S seconds try no more working digits for a proof (default 60)");
}

/// The options of results that have no proof.
inline void add_estimated_digits(Command& command, ProofOptions& proof) {
  command.add_digits("digits that are printed, and estimated to be true");
  add_working_digits(command, proof);
}

inline void add_true_digits(Command& command, ProofOptions& proof) {
  command.add_digits("digits that are printed, and proven to be true");
  add_working_digits(command, proof);
  command.flag("--proven", proof.insisted, "print nothing that is not proven");
  command.flag("--error", proof.errors, "bounds of the errors as well; csv and json of columns have them always");
}

inline void add_certificate(Command& command, ProofOptions& proof) {
  command.text("--certificate", "FILE", proof.certificate,
               "write what proves the result, for `quarn verify`; implies --proven");
}

/// With so many digits data are read: all that they have where the result is to be proven.
inline int digits_of_data(bool proven) { return proven ? int(kMostDigits) : QuarnDigits(); }

/// What problem() gives, to as many true digits as are asked for, and with how many the proof worked.
template <class Problem>
auto with_true_digits(const ProofOptions& options, int& worked_with, const Problem& problem) {
  using Clock = std::chrono::steady_clock;
  const int digits = QuarnDigits();
  const Clock::time_point end = Clock::now() + std::chrono::seconds(options.seconds);
  std::int64_t known = 0;
  worked_with = 0;
  return tesk2mp::proven::to_digits(
      digits,
      [&] {
        if (worked_with != 0 && Clock::now() > end) {
          throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0,
                                          std::to_string(known) + " of " + std::to_string(digits) +
                                              " digits are proven with " + std::to_string(worked_with) +
                                              " working digits, after " + std::to_string(options.seconds) + " s",
                                          {known, std::int64_t(digits), std::int64_t(worked_with)});
        }
        worked_with = QuarnDigits();
        auto result = problem();
        known = tesk2mp::proven::fewest_true_digits(result);
        return result;
      },
      std::min(int(kMostDigits), 40 * digits + 1000));
}

inline QuarnBound rounding_of(const QuarnFloat& x) { return QuarnBound(x).half_unit(QuarnDigits()); }
inline QuarnBound rounding_of(const Complex& z) { return hypotenuse(rounding_of(z.re), rounding_of(z.im)); }

/// The numbers rounded to the working digits, with bounds of that; those that fit are exact.
template <class T>
std::vector<tesk2mp::proven::Bounded<T>> at_working_digits(const std::vector<T>& exact) {
  std::vector<tesk2mp::proven::Bounded<T>> rounded;
  rounded.reserve(exact.size());
  for (const T& x : exact) {
    T nearest = x * T(1);
    const QuarnBound error = nearest == x ? QuarnBound() : rounding_of(nearest);
    rounded.push_back({std::move(nearest), error});
  }
  return rounded;
}

/// Values as they are printed.
template <class T>
std::vector<T> known_values(const std::vector<tesk2mp::proven::Bounded<T>>& bounded) {
  std::vector<T> values;
  values.reserve(bounded.size());
  for (const auto& each : bounded) {
    values.push_back(tesk2mp::proven::known_value(each));
  }
  return values;
}

/// Runs attempt(), which proves its result. Where there is no proof and none was insisted on: false, and why.
template <class Attempt>
bool try_proof(const ProofOptions& options, std::string& why_not, const Attempt& attempt,
               const std::string& what_follows = "; what follows is an estimate, computed once with " + digits_text()) {
  if (!options.wanted()) {
    return false;
  }
  try {
    attempt();
    return true;
  } catch (const tesk2mp::NumericalFailure& failure) {
    if (options.insisted || failure.routine() != "TO_DIGITS") {
      throw;
    }
    why_not = "not proven: " + failure.text() + what_follows;
    return false;
  }
}

/// What a computation without a proof is worth, by a reciprocal condition number.
inline std::string estimate_note(const QuarnFloat& reciprocal_condition, const std::string& method) {
  constexpr double kLost = 1;
  double digits = 0;
  if (reciprocal_condition > 0) {
    digits = QuarnDigits() + std::min(0, ilogb(reciprocal_condition)) - kLost;
  }
  return "about " + std::to_string(std::max(0, int(digits))) + " digits are true (estimate by " + method + ")";
}

inline std::string proof_note(int worked_with, const std::string& routine) {
  return digits_text() + ", all proven (worked with " + std::to_string(worked_with) + "), by " + routine;
}

/// A note about the zeros that are printed where no sign is known; `structural` of them need no proof.
template <class Found>
void add_zeros(Result& result, const Found& found, std::size_t structural = 0) {
  std::size_t count = 0;
  QuarnBound largest;
  tesk2mp::proven::detail::for_each_part(found, [&](const tesk2mp::proven::Bounded<QuarnFloat>& x) {
    if (x.error.is_finite() && !x.error.is_zero() && x.error.value() >= fabs(x.value)) {
      ++count;
      largest = std::max(largest, QuarnBound(x.value) + x.error);
    }
  });
  if (count > structural) {
    result.notes.push_back("0 (abs < 1e" + std::to_string(largest.exponent() + 1) + "): no more is known of " +
                           counted(Integer(count - structural), "number that prints", "numbers that print") + " as 0");
  }
}

/// The same, said in the second note and the facts.
template <class Problem>
auto proven_result(const ProofOptions& options, Result& result, const std::string& routine, int& worked_with,
                   const Problem& problem) {
  auto found = with_true_digits(options, worked_with, problem);
  result.notes[1] = proof_note(worked_with, routine);
  result.facts = {{"routine", routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"proven", "true", true},
                  {"working_digits", std::to_string(worked_with), true}};
  add_zeros(result, found);
  return found;
}

/// How far the exact number is at most from the one that is printed, which is rounded to the digits.
template <class Bounded>
QuarnBound printed_error(const Bounded& x) {
  constexpr int kFewDigits = 18;
  const auto printed = tesk2mp::proven::known_value(x);
  const tesk2mp::Digits scope(kFewDigits);
  const QuarnBound distance(x.value - printed);
  return x.error + distance + distance.half_unit(kFewDigits - 1);
}

/// Bounds as numbers.
template <class Bound>
std::vector<QuarnFloat> errors_of(const std::vector<Bound>& results) {
  std::vector<QuarnFloat> errors;
  errors.reserve(results.size());
  for (const Bound& each : results) {
    errors.push_back(printed_error(each).value());
  }
  return errors;
}

/// Roots as they are printed, with bounds that hold for that.
inline std::vector<tesk2mp::proven::BoundedRoot> printed_roots(std::vector<tesk2mp::proven::BoundedRoot> roots) {
  for (tesk2mp::proven::BoundedRoot& root : roots) {
    const QuarnBound error = printed_error(root);
    root.value = tesk2mp::proven::known_value(root);
    root.error = error;
  }
  return roots;
}

/// A column of bounds, in text where it is wanted there.
inline void add_errors(Result& result, const std::vector<QuarnFloat>& errors, const std::string& what,
                       bool in_text = true) {
  if (in_text) {
    result.notes.push_back("error: so far away is the exact " + what + " at most");
    result.table.push_back({"error", brief_cells(errors)});
  }
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

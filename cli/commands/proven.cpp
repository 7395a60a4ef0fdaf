#include "cli/commands/proven.h"

#include <chrono>
#include <utility>

#include "cli/commands/failure.h"

namespace cli {

void ProofOptions::start() {
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

void add_working_digits(Command& command, ProofOptions& proof) {
  command.number("--working-digits", "D", proof.once, 1, kMostDigits, "compute once with D digits, without a proof");
  command.number("--proof-time", "S", proof.seconds, 0, 1'000'000,
                 "after S seconds try no more working digits for a proof (default 60)");
}

void add_estimated_digits(Command& command, ProofOptions& proof) {
  command.add_digits("digits that are printed, and estimated to be true");
  add_working_digits(command, proof);
}

void add_true_digits(Command& command, ProofOptions& proof, const std::string& errors) {
  command.add_digits("digits that are printed, and proven to be true");
  add_working_digits(command, proof);
  command.flag("--proven", proof.insisted, "print nothing that is not proven");
  command.flag("--error", proof.errors, errors);
}

void add_certificate(Command& command, ProofOptions& proof) {
  command.text("--certificate", "FILE", proof.certificate,
               "write what proves the result, for `quarn verify`; implies --proven");
}

template <class Found>
Found found_with_true_digits(const ProofOptions& options, int& worked_with, const std::function<Found()>& problem) {
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
        Found result = problem();
        known = tesk2mp::proven::fewest_true_digits(result);
        return result;
      },
      std::min(int(kMostDigits), 40 * digits + 1000 + options.more_digits));
}

// The kinds of results that have bounds.
template <class Found>
using OfFound = Found(const ProofOptions&, int&, const std::function<Found()>&);
template OfFound<tesk2mp::proven::Bounded<QuarnFloat>> found_with_true_digits;
template OfFound<tesk2mp::proven::Bounded<Complex>> found_with_true_digits;
template OfFound<std::vector<tesk2mp::proven::Bounded<QuarnFloat>>> found_with_true_digits;
template OfFound<std::vector<tesk2mp::proven::Bounded<Complex>>> found_with_true_digits;
template OfFound<tesk2mp::proven::BoundedMatrix<QuarnFloat>> found_with_true_digits;
template OfFound<tesk2mp::proven::BoundedMatrix<Complex>> found_with_true_digits;
template OfFound<std::vector<tesk2mp::proven::BoundedRoot>> found_with_true_digits;

std::string computed_once() { return "; what follows is an estimate, computed once with " + digits_text(); }

bool try_proof(const ProofOptions& options, std::string& why_not, const std::function<void()>& attempt,
               const std::string& what_follows) {
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

std::string estimate_note(const QuarnFloat& reciprocal_condition, const std::string& method) {
  constexpr double kLost = 1;
  double digits = 0;
  if (reciprocal_condition > 0) {
    digits = QuarnDigits() + std::min(0, ilogb(reciprocal_condition)) - kLost;
  }
  return "about " + std::to_string(std::max(0, int(digits))) + " digits are true (estimate by " + method + ")";
}

std::string proof_note(int worked_with, const std::string& routine) {
  return digits_text() + ", all proven (worked with " + std::to_string(worked_with) + "), by " + routine;
}

void add_zeros(Result& result, std::size_t count, const QuarnBound& largest) {
  if (count > 0) {
    result.notes.push_back("0 (abs < 1e" + std::to_string(largest.exponent() + 1) + "): no more is known of " +
                           counted(Integer(count), "number that prints", "numbers that print") + " as 0");
  }
}

void add_proof(Result& result, const std::string& routine, int worked_with) {
  result.notes[1] = proof_note(worked_with, routine);
  result.facts = {{"routine", routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"proven", "true", true},
                  {"working_digits", std::to_string(worked_with), true}};
}

std::vector<tesk2mp::proven::BoundedRoot> printed_roots(std::vector<tesk2mp::proven::BoundedRoot> roots) {
  for (tesk2mp::proven::BoundedRoot& root : roots) {
    const QuarnBound error = printed_error(root);
    root.value = tesk2mp::proven::known_value(root);
    root.error = error;
  }
  return roots;
}

void add_errors(Result& result, const std::vector<QuarnFloat>& errors, const std::string& what, bool in_text) {
  if (in_text) {
    result.notes.push_back("error: so far away is the exact " + what + " at most");
    result.table.push_back({"error", brief_cells(errors)});
  }
  result.data.push_back({"error", exact_cells(errors)});
}

void add_counts(Result& result, const std::vector<tesk2mp::proven::BoundedRoot>& roots) {
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

// What the commands share that print proven digits.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "cli/commands/command.h"
#include "cli/commands/failure.h"
#include "cli/commands/proof_limits.h"
#include "cli/io/result.h"
#include "tesk2mp/proven.hpp"

namespace cli {

/// What --digits means: digits that are proven to be true, or, with --working-digits, those of one computation.
struct ProofOptions : ProofLimits {
  int more_digits = 0;      // working digits of a proof beyond the usual most
  std::string certificate;  // the file for it; empty: none

  bool wanted() const { return once == 0 || insisted; }
  /// For the work of a command, before its data are read.
  void start();
};

/// --working-digits and --proof-time
void add_working_digits(Command& command, ProofOptions& proof);
/// The options of results that have no proof.
void add_estimated_digits(Command& command, ProofOptions& proof);
void add_true_digits(
    Command& command, ProofOptions& proof,
    const std::string& errors = "bounds of the errors as well; csv and json of columns have them always");
void add_certificate(Command& command, ProofOptions& proof);

/// run(options) as the command's work, behind what options.proof has to say.
template <class Options>
void set_proven_work(Command& command, const std::shared_ptr<Options>& options, void (*run)(const Options&)) {
  command.work = [options, run] {
    options->proof.start();
    run(*options);
  };
}

/// With so many digits data are read: all that they have where the result is to be proven.
inline int digits_of_data(bool proven) { return proven ? int(kMostDigits) : QuarnDigits(); }

/// What read() gives: numbers with all the digits that they have in a file, where they are to be proven or estimated.
template <class Read>
auto read_exactly(bool proven, const Read& read) {
  const tesk2mp::Digits scope(digits_of_data(proven));
  return read();
}

/// What problem() gives, to as many true digits as are asked for, and with how many the proof worked. Compiled for
/// numbers, vectors and matrices with bounds, and for roots.
template <class Found>
Found found_with_true_digits(const ProofOptions& options, int& worked_with, const std::function<Found()>& problem);

template <class Problem>
auto with_true_digits(const ProofOptions& options, int& worked_with, const Problem& problem) {
  return found_with_true_digits<std::invoke_result_t<const Problem&>>(options, worked_with, std::cref(problem));
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

/// What follows a proof that failed.
std::string computed_once();

/// Runs attempt(), which proves its result. Where there is no proof and none was insisted on: false, and why.
bool try_proof(const ProofOptions& options, std::string& why_not, const std::function<void()>& attempt,
               const std::string& what_follows = computed_once());

/// compute(), which follows where nothing could be proven: a failure says that first.
template <class Compute>
auto after_no_proof(const std::string& why_not, const Compute& compute) {
  try {
    return compute();
  } catch (const tesk2mp::NumericalFailure& failure) {
    throw Failure(ExitStatus::library, "quarn: " + (why_not.empty() ? "" : why_not + ": ") + failure.what() + "\n");
  }
}

/// What a computation without a proof is worth, by a reciprocal condition number.
std::string estimate_note(const QuarnFloat& reciprocal_condition, const std::string& method);

std::string proof_note(int worked_with, const std::string& routine);

/// Is a number printed as 0 because not even its sign is known?
inline bool is_unknown_zero(const QuarnFloat& x, const QuarnBound& error) {
  return error.is_finite() && !error.is_zero() && error.value() >= fabs(x);
}

/// A note that so many numbers, smaller than the bound, print as 0; none where there are none.
void add_zeros(Result& result, std::size_t count, const QuarnBound& largest);

/// A note about the zeros that are printed where no sign is known; `structural` of them need no proof.
template <class Found>
void add_zeros(Result& result, const Found& found, std::size_t structural = 0) {
  std::size_t count = 0;
  QuarnBound largest;
  tesk2mp::proven::detail::for_each_part(found, [&](const tesk2mp::proven::Bounded<QuarnFloat>& x) {
    if (is_unknown_zero(x.value, x.error)) {
      ++count;
      largest = std::max(largest, QuarnBound(x.value) + x.error);
    }
  });
  add_zeros(result, count - std::min(count, structural), largest);
}

/// The same, said in the second note and the facts.
void add_proof(Result& result, const std::string& routine, int worked_with);
template <class Problem>
auto proven_result(const ProofOptions& options, Result& result, const std::string& routine, int& worked_with,
                   const Problem& problem) {
  auto found = with_true_digits(options, worked_with, problem);
  add_proof(result, routine, worked_with);
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
std::vector<tesk2mp::proven::BoundedRoot> printed_roots(std::vector<tesk2mp::proven::BoundedRoot> roots);

/// A column of bounds, in text where it is wanted there.
void add_errors(Result& result, const std::vector<QuarnFloat>& errors, const std::string& what, bool in_text = true);

/// A note, and a column, where several roots share a disc.
void add_counts(Result& result, const std::vector<tesk2mp::proven::BoundedRoot>& roots);

/// A matrix as it is printed; how far the exact elements are from that at most goes to the facts, and with --error to
/// the notes.
template <class T>
tesk2mp::Matrix<T> known_matrix(const ProofOptions& options, const tesk2mp::proven::BoundedMatrix<T>& bounded,
                                Result& result) {
  QuarnBound largest;
  for (std::size_t j = 0; j < bounded.columns(); ++j) {
    for (std::size_t i = 0; i < bounded.rows(); ++i) {
      largest = std::max(largest, printed_error(bounded(i, j)));
    }
  }
  result.facts.push_back({"largest_error", largest.value().to_string()});
  if (options.errors) {
    result.notes.push_back("so far away is the exact value of an element at most: " + brief(largest.value()));
  }
  return tesk2mp::proven::known_value(bounded);
}

}  // namespace cli

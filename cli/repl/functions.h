// The routines by plain names: one table, which the evaluation, the help and the completion of names read.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/repl/known.h"
#include "cli/repl/unproven.h"

namespace cli::repl {

/// What rows, columns and points are counted to.
constexpr Integer kLargestSize = 100'000'000;

/// What functions remember between calls.
struct State {
  tesk2mp::Random random;
};

using Values = std::vector<Value>;
using Knowns = std::vector<Known>;

/// The values that a function is called with. Each access throws Unfit for a value that is something else.
class Arguments {
 public:
  explicit Arguments(Knowns values) : values_(std::move(values)) {}

  std::size_t count() const { return values_.size(); }
  const Known& known(std::size_t k) const { return values_[k]; }
  bool are_exact() const;
  // What follows leaves the bounds out.
  const Array& array(std::size_t k) const;
  const Array& square(std::size_t k) const;
  const Array& vector(std::size_t k) const;
  /// Not empty.
  const Array& filled(std::size_t k) const;
  RealArray real_matrix(std::size_t k) const;
  std::vector<QuarnFloat> reals(std::size_t k) const;
  Complex number(std::size_t k) const;
  Integer whole(std::size_t k, Integer least, Integer most) const;
  const std::string& text(std::size_t k) const;
  /// Which of the words the text is.
  std::size_t choice(std::size_t k, const std::vector<std::string>& words) const;

 private:
  Knowns values_;
};

/// The call of a function.
struct Evaluation {
  State& state;
  const char* name;
  /// The digits that are asked for; the working digits are more.
  int digits = 0;
  /// No more digits follow: what cannot be decided is not known.
  bool is_last = false;
  /// Why the results have no bounds; empty where they have.
  Unproven unproven = {};
};

/// What a function is, beside its results.
enum class Nature {
  value,
  data,    // random numbers and files: results that are kept when an expression is evaluated anew
  effect,  // it writes, draws or starts random numbers anew, and has no value
};

struct Function {
  const char* name;
  const char* arguments;  // "A, b"; optional ones in brackets
  const char* results;    // names: "x", or "L, U, p" of several
  const char* purpose;
  std::size_t least;  // number of arguments
  std::size_t most;
  /// Results without a proof have no bounds; the evaluation says so.
  Knowns (*apply)(Evaluation& evaluation, const Arguments& arguments);
  Nature nature = Nature::value;
};

/// A function of values without bounds.
using PlainFunction = Values (*)(State& state, const Arguments& arguments);

/// The results are exact whatever the bounds of the arguments.
template <PlainFunction kFunction>
Knowns plain(Evaluation& evaluation, const Arguments& arguments) {
  const Values values = kFunction(evaluation.state, arguments);
  return {values.begin(), values.end()};
}
/// The results have no proof. Of several faults that of the first argument, an array, is reported.
template <PlainFunction kFunction>
Knowns estimated(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  evaluation.unproven = no_proof_found(evaluation.name);
  return plain<kFunction>(evaluation, arguments);
}
/// The results of exact arguments are exact, those of others have no proof.
template <PlainFunction kFunction>
Knowns exact_or_estimated(Evaluation& evaluation, const Arguments& arguments) {
  (void)arguments.array(0);
  return arguments.are_exact() ? plain<kFunction>(evaluation, arguments) : estimated<kFunction>(evaluation, arguments);
}

/// operation(x, y) of the elements of two arguments, of which one may be a number.
template <class Operation>
Known paired(const Arguments& arguments, const Operation& operation) {
  const Array& a = arguments.array(0);
  if (!are_paired(a, arguments.array(1))) {
    throw Unfit("as many numbers as in the first argument are needed here, or one", 1);
  }
  return pairwise(arguments.known(0), arguments.known(1), operation);
}

struct FunctionGroup {
  const char* title;
  std::span<const Function> functions;
};

/// All of them.
std::span<const FunctionGroup> function_groups();
/// Null when there is none of that name.
const Function* find_function(const std::string& name);
/// "L, U, P = lu(A)"
std::string usage(const Function& function);

// The groups, a file each.
std::span<const Function> elementary_functions();
std::span<const Function> array_functions();
std::span<const Function> linear_functions();
std::span<const Function> gallery_functions();
std::span<const Function> other_functions();

}  // namespace cli::repl

// The functions of the console with bounds of their results.
#pragma once

#include <string>
#include <vector>

#include "cli/repl/functions.h"
#include "cli/repl/known.h"

namespace cli::repl {

/// An evaluation of an expression.
struct Evaluation {
  /// A function that took part and has no proof for its arguments; empty: everything is proven.
  std::string unproven;
  /// The digits that are asked for; the working digits are more.
  int digits = 0;
  /// No more digits follow: what cannot be decided is not known.
  bool is_last = false;
};

using Knowns = std::vector<Known>;

/// What a name does with values that have bounds. Results without a proof have no bounds; the evaluation says so.
Knowns apply(const Function& function, State& state, const Knowns& arguments, Evaluation& evaluation);

/// Random numbers and files: results that are kept when an expression is evaluated anew.
bool gives_data(const Function& function);
/// It writes, draws or starts random numbers anew, and has no value.
bool has_effect(const Function& function);

/// The functions of one and two numbers, element by element; false for other names.
bool apply_to_elements(const std::string& name, const Knowns& arguments, Evaluation& evaluation, Known& result);
/// Those of matrices and vectors.
using Proof = Knowns (*)(const Knowns& arguments);
/// Null when there is none.
Proof find_matrix_proof(const std::string& name);

/// The plain values, for functions that need nothing else.
Arguments plain(const Knowns& arguments);

}  // namespace cli::repl

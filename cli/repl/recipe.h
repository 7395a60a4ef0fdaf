// What a variable was made from: it is evaluated anew when more digits are needed.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/proof_limits.h"
#include "cli/repl/known.h"
#include "cli/repl/parser.h"
#include "cli/repl/unproven.h"

namespace cli::repl {

struct Recipe;

/// Working digits beyond those that are wanted.
constexpr int kSpareDigits = 10;

/// One of the results of a recipe.
struct Variable {
  std::shared_ptr<Recipe> recipe;
  std::size_t place = 0;

  const Known& value() const;
};
using Variables = std::map<std::string, Variable>;
using NamedValues = std::vector<std::pair<std::string, Variable>>;

/// What is read once, and what in it has no proof.
struct Datum {
  Known value;
  Unproven unproven;
};

/// An expression, with the variables that it names as they were; or elements of a variable that were replaced by those
/// of `source`. Values without errors need neither.
struct Recipe {
  explicit Recipe(std::vector<Known> values = {}) : results(std::move(values)), is_fixed(!results.empty()) {}

  Node expression;
  std::unique_ptr<Node> target;  // name(indices) of the variable whose elements are replaced
  Variable source;
  Variables environment;
  /// Random numbers and files, by the places of their calls: read once.
  std::map<std::size_t, Datum> data;
  int asked = 0;  // the digits that were asked for when it was made

  std::vector<Known> results;
  int digits = 0;  // which the results were computed with
  Unproven unproven;
  std::size_t depth = 0;  // of recipes that it needs
  bool is_fixed = false;  // never to be evaluated again
};

inline const Known& Variable::value() const { return recipe->results.at(place); }

}  // namespace cli::repl

// Runs the console's language: variables, statements, commands.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cli/repl/functions.h"
#include "cli/repl/parser.h"
#include "cli/repl/recipe.h"

namespace cli::repl {

class Interpreter {
 public:
  /// `print` takes what statements show.
  explicit Interpreter(std::function<void(const std::string&)> print, const ProofLimits& limits = {})
      : print_(std::move(print)), limits_(limits) {}

  /// Runs the statements of the text, one after the other. Throws Fault; the statements before it have been run.
  void run(const std::string& text);
  /// quit or exit has been given.
  bool finished() const { return finished_; }
  /// Names that start so: variables, functions, constants and commands.
  std::vector<std::string> names_with(const std::string& start) const;

 private:
  // These return what is to be shown.
  std::string run(const Statement& statement);
  std::string run_command(const Statement& statement);
  void save(const Statement& statement);
  void load(const Statement& statement);
  std::string set_digits(const Statement& statement);
  std::string help(const std::vector<Node>& words) const;
  std::string who() const;
  std::string text_of(const Statement& statement, const std::shared_ptr<Recipe>& recipe);

  void clear(const Statement& statement);
  std::vector<Variable> assign(const Statement& statement, const std::shared_ptr<Recipe>& recipe);
  Variable assigned_elements(const Node& target, const Variable& value);

  // Recipes.
  std::shared_ptr<Recipe> made(const Node& expression);
  /// Evaluates, unless that has been done with as many digits. The digits are those of the call.
  void evaluate_anew(Recipe& recipe);
  /// The same with so many digits, or as many as it takes to decide the length of ranges and the like.
  void evaluate_decided(Recipe& recipe, int digits);
  void settle(Recipe& recipe);
  /// Raises the digits until those asked for are proven, or a limit is met; returns how many are.
  std::int64_t prove(Recipe& recipe, const std::vector<std::size_t>& places);
  /// The same with a text about what is not proven; `at` is where the expression stands.
  void require_proof(const std::string& what, const Recipe& recipe, std::int64_t digits, std::size_t at) const;
  std::string shown_proven(const NamedValues& values, std::size_t at);
  std::string shown_estimate(const NamedValues& values, std::size_t at);
  /// Of a call that has an effect and no value: the arguments are proven, then rounded.
  void run_effect(const Node& call, const Function& function);
  int first_digits() const;

  std::vector<Known> values_of(const Node& node);
  Known evaluate(const Node& node);
  Known evaluate_array(const Node& node);
  Known chain(const Node& node);
  Known postfixed(const Node& node);
  Known range(const Node& node);
  Integer range_length(const Node& node, const BoundedReal& distance) const;
  Known matrix(const Node& node);
  std::vector<Known> call(const Node& node);
  /// What indices name, column by column, and the shape that it has.
  struct Places {
    std::vector<std::size_t> elements;
    std::size_t rows;
    std::size_t columns;
  };
  Places element_places(const Node& node, const Array& array);
  Known indexed(const Node& node, const Known& variable);
  Known replaced(const Node& target, const Known& before, const Known& source);
  std::vector<std::size_t> indices(const Node& node, std::size_t size);
  const Variable* find_variable(const Node& node);
  // ", did you mean ...?", where a name is like the one that does not exist.
  std::string suggestion(const std::string& name) const;

  std::function<void(const std::string&)> print_;
  ProofLimits limits_;
  Variables variables_;
  State state_;
  std::vector<std::size_t> ends_;  // what `end` stands for: one for each index that is being evaluated
  Recipe* recipe_ = nullptr;       // which is being evaluated
  bool is_last_ = false;           // no more digits follow
  bool finished_ = false;
};

}  // namespace cli::repl

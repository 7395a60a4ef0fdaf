// Runs the console's language: variables, statements, commands.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cli/repl/functions.h"
#include "cli/repl/parser.h"

namespace cli::repl {

class Interpreter {
 public:
  /// `print` takes what statements show.
  explicit Interpreter(std::function<void(const std::string&)> print) : print_(std::move(print)) {}

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
  void save(const Statement& statement) const;
  void load(const Statement& statement);
  std::string set_digits(const Statement& statement);
  std::string help(const std::vector<Node>& words) const;
  std::string who() const;
  std::string text_of(const Statement& statement, const std::vector<Value>& values);

  void clear(const Statement& statement);
  void assign(const Statement& statement, std::vector<Value> values);
  void assign_elements(const Node& target, const Value& value);

  std::vector<Value> values_of(const Node& node);
  Value evaluate(const Node& node);
  Array evaluate_array(const Node& node);
  Array chain(const Node& node);
  Array postfixed(const Node& node);
  Array range(const Node& node);
  Array matrix(const Node& node);
  std::vector<Value> call(const Node& node);
  Array indexed(const Node& node, const Value& variable);
  std::vector<std::size_t> indices(const Node& node, std::size_t size);
  // ", did you mean ...?", where a name is like the one that does not exist.
  std::string suggestion(const std::string& name) const;

  std::function<void(const std::string&)> print_;
  std::map<std::string, Value> variables_;
  State state_;
  std::vector<std::size_t> ends_;  // what `end` stands for: one for each index that is being evaluated
  bool finished_ = false;
};

}  // namespace cli::repl

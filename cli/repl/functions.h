// The routines by plain names: one table, which the evaluation, the help and the completion of names read.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/repl/value.h"

namespace cli::repl {

/// What rows, columns and points are counted to.
constexpr Integer kLargestSize = 100'000'000;

/// What functions remember between calls.
struct State {
  tesk2mp::Random random;
};

/// The values that a function is called with. Each access throws Unfit for a value that is something else.
class Arguments {
 public:
  explicit Arguments(std::vector<Value> values) : values_(std::move(values)) {}

  std::size_t count() const { return values_.size(); }
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
  std::vector<Value> values_;
};

struct Function {
  const char* name;
  const char* arguments;  // "A, b"; optional ones in brackets
  const char* results;    // names: "x", or "L, U, p" of several
  const char* purpose;
  std::size_t least;  // number of arguments
  std::size_t most;
  std::vector<Value> (*apply)(State& state, const Arguments& arguments);
};

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

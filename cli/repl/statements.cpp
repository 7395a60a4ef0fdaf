// Statements: what they assign, and their results with the digits that are proven.
#include <algorithm>
#include <limits>
#include <set>

#include "cli/commands/command.h"
#include "cli/io/result.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;

std::vector<std::string> names_in(const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find(", ", at), list.size());
    names.push_back(list.substr(at, end - at));
    at = end + 2;
  }
  return names;
}

// Does it need something without a proof that a second computation leaves as it is?
bool keeps_unproven(const Recipe& recipe, std::set<const Recipe*>& seen) {
  if (!seen.insert(&recipe).second) {
    return false;
  }
  const auto is_marked = [](const auto& each) { return !each.second.unproven.empty(); };
  return (recipe.is_fixed && !recipe.unproven.empty()) ||
         std::any_of(recipe.data.begin(), recipe.data.end(), is_marked) ||
         (recipe.source.recipe != nullptr && keeps_unproven(*recipe.source.recipe, seen)) ||
         std::any_of(recipe.environment.begin(), recipe.environment.end(),
                     [&](const auto& each) { return keeps_unproven(*each.second.recipe, seen); });
}

// Those of a recipe's results that are among the values.
std::vector<std::size_t> places_of(const Recipe& recipe, const NamedValues& values) {
  std::vector<std::size_t> places;
  for (const auto& [name, variable] : values) {
    if (variable.recipe.get() == &recipe) {
      places.push_back(variable.place);
    }
  }
  return places;
}

std::string digit_count(std::int64_t digits) { return std::to_string(std::max<std::int64_t>(0, digits)); }

// How many digits of all elements two computations have in common.
std::int64_t common_digits(const Known& a, const Known& b) {
  const auto* left = std::get_if<Array>(&a.value);
  const auto* right = std::get_if<Array>(&b.value);
  if (left == nullptr || right == nullptr) {
    return proven::kAllDigits;
  }
  if (left->rows() != right->rows() || left->columns() != right->columns()) {
    return 0;
  }
  std::int64_t digits = proven::kAllDigits;
  int largest = std::numeric_limits<int>::min();
  for (std::size_t k = 0; k < size(*right); ++k) {
    const Complex& z = right->data()[k];
    largest = std::max({largest, ilogb(z.re), ilogb(z.im)});
  }
  for (std::size_t k = 0; k < size(*right); ++k) {
    const Complex& x = left->data()[k];
    const Complex& y = right->data()[k];
    for (const auto& [first, second] : {std::pair(&x.re, &y.re), std::pair(&x.im, &y.im)}) {
      const QuarnFloat difference = *first - *second;
      if (difference != 0 && !(isnan(*first) && isnan(*second))) {
        digits = std::min<std::int64_t>(digits, std::int64_t(largest) - ilogb(difference) - 1);
      }
    }
  }
  return digits;
}

// Parts of the second computation's elements that are not larger than their distance from the first one's are 0 as far
// as is known.
Array without_noise(Array second, const Known& first) {
  const auto* before = std::get_if<Array>(&first.value);
  if (before == nullptr || before->rows() != second.rows() || before->columns() != second.columns()) {
    return second;
  }
  for (std::size_t k = 0; k < size(second); ++k) {
    Complex& z = second.data()[k];
    const Complex& other = before->data()[k];
    for (const auto& [part, of_first] : {std::pair(&z.re, &other.re), std::pair(&z.im, &other.im)}) {
      if (*part != *of_first && fabs(*part) <= fabs(*part - *of_first)) {
        *part = 0;
      }
    }
  }
  return second;
}

}  // namespace

std::string Interpreter::run(const Statement& statement) {
  if (!statement.command.empty()) {
    return run_command(statement);
  }
  if (statement.value.kind == Kind::call && variables_.find(statement.value.text) == variables_.end()) {
    const Function* function = find_function(statement.value.text);
    if (function != nullptr && function->nature == Nature::effect) {
      if (!statement.targets.empty()) {
        throw Fault(statement.targets.front().at, "there is no value to assign");
      }
      run_effect(statement.value, *function);
      return "";
    }
  }
  const std::shared_ptr<Recipe> recipe = made(statement.value);
  if (!statement.targets.empty()) {
    const std::vector<Variable> assigned = assign(statement, recipe);
    NamedValues values;
    for (std::size_t k = 0; k < assigned.size(); ++k) {
      values.emplace_back(statement.targets[k].text, assigned[k]);
    }
    return statement.silent ? "" : shown_proven(values, statement.value.at);
  }
  variables_["ans"] = {recipe, 0};
  return statement.silent ? "" : text_of(statement, recipe);
}

std::vector<Variable> Interpreter::assign(const Statement& statement, const std::shared_ptr<Recipe>& recipe) {
  const std::vector<Known>& values = recipe->results;
  if (values.size() < statement.targets.size()) {
    const std::string reason = values.empty()       ? "there is no value to assign"
                               : values.size() == 1 ? "there is only 1 value"
                                                    : "there are only " + std::to_string(values.size()) + " values";
    throw Fault(statement.targets[values.size()].at, reason);
  }
  std::vector<Variable> assigned;
  Variables before = statement.targets.size() > 1 ? variables_ : Variables();
  try {
    for (std::size_t k = 0; k < statement.targets.size(); ++k) {
      const Node& target = statement.targets[k];
      assigned.push_back(target.kind == Kind::name ? Variable{recipe, k}
                                                   : assigned_elements(target, Variable{recipe, k}));
      variables_[target.text] = assigned.back();
    }
  } catch (...) {
    if (statement.targets.size() > 1) {
      variables_.swap(before);
    }
    throw;
  }
  return assigned;
}

// With --proven nothing else is shown, written or drawn.
void Interpreter::require_proof(const std::string& what, const Recipe& recipe, std::int64_t digits,
                                std::size_t at) const {
  if (limits_.insisted && (!recipe.unproven.empty() || digits < QuarnDigits())) {
    throw Fault(at, !recipe.unproven.empty() ? what + " is not proven: " + recipe.unproven.reason
                                             : digit_count(digits) + " of " + digits_text() + " are proven with " +
                                                   std::to_string(recipe.digits) + " working digits");
  }
}

std::string Interpreter::shown_proven(const NamedValues& values, std::size_t at) {
  std::string text;
  std::string note;
  std::int64_t fewest = QuarnDigits();
  int worked_with = 0;
  for (const auto& [name, variable] : values) {
    // All of its results, of one evaluation: factors belong together.
    prove(*variable.recipe, places_of(*variable.recipe, values));
  }
  for (const auto& [name, variable] : values) {
    Recipe& recipe = *variable.recipe;
    const std::int64_t digits = prove(recipe, {variable.place});
    require_proof("'" + name + "'", recipe, digits, at);
    if (!recipe.unproven.empty()) {
      return shown_estimate(values, at);
    }
    const bool once = limits_.once > 0;
    const Known& value = variable.value();
    text += once && std::holds_alternative<Array>(value.value)
                ? shown(name, Known(rounded_values(value)), QuarnDigits())
                : shown(name, value, digits);
    text += limits_.errors && !once ? shown_errors(name, value, digits) : "";
    worked_with = value.is_exact() ? worked_with : std::max(worked_with, recipe.digits);
    if (digits < fewest) {
      fewest = digits;
      note = once ? "# about " + digit_count(digits) + " digits are true (estimate by error bounds)\n"
                  : "# " + digit_count(digits) + " of " + std::to_string(QuarnDigits()) + " digits are proven with " +
                        std::to_string(recipe.digits) + " working digits\n";
    }
  }
  if (limits_.insisted) {
    note = worked_with == 0 ? "# exact\n"
                            : "# " + digits_text() + ", all proven (worked with " + std::to_string(worked_with) + ")\n";
  }
  return text + note;
}

// What has no proof is computed a second time, with more digits.
std::string Interpreter::shown_estimate(const NamedValues& values, std::size_t at) {
  std::string text;
  Unproven unproven;
  std::int64_t fewest = QuarnDigits();
  bool is_compared = limits_.once == 0;
  for (const auto& [name, variable] : values) {
    Recipe& recipe = *variable.recipe;
    const Known first = variable.value();
    if (limits_.once == 0 && !recipe.is_fixed) {
      // More than it has been computed with, also where it is shown again.
      const Integer more = std::max(2 * Integer(QuarnDigits()) + 3 * kSpareDigits,
                                    Integer(recipe.digits) + QuarnDigits() + kSpareDigits);
      evaluate_decided(recipe, int(std::min<Integer>(more, kMostDigits)));
    }
    unproven.add(recipe.unproven);
    std::set<const Recipe*> seen;
    is_compared = is_compared && !keeps_unproven(recipe, seen);
    const std::int64_t digits = std::min<std::int64_t>(common_digits(first, variable.value()), QuarnDigits());
    fewest = std::min(fewest, digits);
    const tesk2mp::Digits scope(int(std::max<std::int64_t>(digits, 1)));
    const Known& value = variable.value();
    text += shown(
        name, std::holds_alternative<Array>(value.value) ? Known(without_noise(rounded_values(value), first)) : value,
        digits);
  }
  if (unproven.empty()) {
    return shown_proven(values, at);  // more digits brought the proof
  }
  const std::string digits = "about " + digit_count(fewest) + (fewest == 1 ? " digit is" : " digits are") +
                             " true (estimate by a second computation";
  if (!is_compared || !unproven.taken.empty()) {
    return text + "# not proven: " + (unproven.taken.empty() ? unproven.reason : unproven.taken) +
           (is_compared ? "; if that is right, " + digits + ")" : "") + "\n";
  }
  return text + "# " + digits + ": " + unproven.reason + ")\n";
}

void Interpreter::run_effect(const Node& call, const Function& function) {
  if (call.children.size() < function.least || call.children.size() > function.most) {
    throw Fault(call.at, "it is called so: " + usage(function));
  }
  Knowns arguments;
  for (const Node& child : call.children) {
    const std::shared_ptr<Recipe> recipe = made(child);
    const std::int64_t digits = prove(*recipe, {0});
    if (digits <= 0) {
      throw Fault(child.at, "no digit of this is proven");
    }
    require_proof("this", *recipe, digits, child.at);
    const bool is_proven = recipe->unproven.empty();
    const Known& value = recipe->results.at(0);
    const bool is_text = std::holds_alternative<std::string>(value.value);
    arguments.push_back(is_proven || is_text ? Known(proven_value(value, digits)) : Known(rounded_values(value)));
    if (!is_proven) {
      print_("# not proven: " + recipe->unproven.reason + "\n");
    } else if (digits < QuarnDigits()) {
      print_("# rounded to " + std::to_string(digits) + " digits, those that are proven\n");
    }
  }
  try {
    Evaluation evaluation{state_, function.name};
    function.apply(evaluation, Arguments(std::move(arguments)));
  } catch (const Unfit& unfit) {
    const auto argument = std::size_t(unfit.argument());
    throw Fault(unfit.argument() >= 0 ? call.children.at(argument).at : call.at, unfit.what());
  }
}

std::string Interpreter::text_of(const Statement& statement, const std::shared_ptr<Recipe>& recipe) {
  std::vector<std::string> names = {"ans"};
  if (statement.value.kind == Kind::name) {
    names = {statement.value.text};
  } else if (recipe->results.size() > 1) {
    names = names_in(find_function(statement.value.text)->results);
  }
  NamedValues values;
  for (std::size_t k = 0; k < recipe->results.size(); ++k) {
    values.emplace_back(names[k], Variable{recipe, k});
  }
  return shown_proven(values, statement.value.at);
}

}  // namespace cli::repl

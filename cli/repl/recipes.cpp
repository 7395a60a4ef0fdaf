// Statements: assignments as recipes, results with the digits that are proven.
#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include "cli/commands/command.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;
using NamedValues = std::vector<std::pair<std::string, Variable>>;

constexpr int kSpareDigits = 10;
constexpr std::size_t kDeepest = 64;

std::vector<std::string> names_in(const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find(", ", at), list.size());
    names.push_back(list.substr(at, end - at));
    at = end + 2;
  }
  return names;
}

void collect_names(const Node& node, const Variables& all, Variables& used) {
  if (node.kind == Kind::name || node.kind == Kind::call) {
    if (const auto found = all.find(node.text); found != all.end()) {
      used.insert(*found);
    }
  }
  for (const Node& child : node.children) {
    collect_names(child, all, used);
  }
}

std::int64_t fewest_digits(const Recipe& recipe, const std::vector<std::size_t>& places) {
  std::int64_t fewest = proven::kAllDigits;
  for (const std::size_t place : places) {
    fewest = std::min(fewest, proven::fewest_true_digits(parts_of(recipe.results.at(place))));
  }
  return fewest;
}

// Every part has its digits, or is so near 0 that more digits would hardly show its sign.
bool only_zeros_are_missing(const Recipe& recipe, const std::vector<std::size_t>& places, int digits) {
  for (const std::size_t place : places) {
    for (const BoundedReal& part : parts_of(recipe.results.at(place))) {
      const bool is_tiny = part.error.is_finite() && part.error.exponent() < -2 * std::int64_t(digits) &&
                           part.error.value() >= fabs(part.value);
      if (proven::true_digits(part) < digits && !is_tiny) {
        return false;
      }
    }
  }
  return true;
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

// Where proofs end.
int most_digits() { return int(std::min<Integer>(40 * Integer(QuarnDigits()) + 1000, kMostDigits)); }

}  // namespace

int Interpreter::first_digits() const { return limits_.once > 0 ? QuarnDigits() : QuarnDigits() + kSpareDigits; }

std::string Interpreter::run(const Statement& statement) {
  if (!statement.command.empty()) {
    return run_command(statement);
  }
  if (statement.value.kind == Kind::call && variables_.find(statement.value.text) == variables_.end()) {
    const Function* function = find_function(statement.value.text);
    if (function != nullptr && has_effect(*function)) {
      run_effect(statement.value, *function);
      if (!statement.targets.empty()) {
        throw Fault(statement.targets.front().at, "there is no value to assign");
      }
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
    return statement.silent ? "" : shown_proven(values);
  }
  variables_["ans"] = {recipe, 0};
  return statement.silent ? "" : text_of(statement, recipe);
}

std::shared_ptr<Recipe> Interpreter::made(const Node& expression) {
  auto recipe = std::make_shared<Recipe>();
  recipe->expression = expression;
  recipe->asked = QuarnDigits();
  collect_names(expression, variables_, recipe->environment);
  evaluate_decided(*recipe, first_digits());
  settle(*recipe);
  return recipe;
}

void Interpreter::evaluate_decided(Recipe& recipe, int digits) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::seconds(limits_.seconds);
  const int most = std::max(digits, most_digits());
  struct Scope {
    bool& is_last;
    bool former;
    ~Scope() { is_last = former; }
  };
  while (true) {
    const tesk2mp::Digits scope(digits);
    const bool is_last = limits_.once > 0 || digits == most || Clock::now() > end;
    const Scope last{is_last_, std::exchange(is_last_, is_last)};
    try {
      return evaluate_anew(recipe);
    } catch (const Undecided&) {
      digits = int(std::min<Integer>(2 * Integer(digits) + kSpareDigits, most));
    }
  }
}

void Interpreter::evaluate_anew(Recipe& recipe) {
  if (recipe.is_fixed || recipe.digits >= QuarnDigits()) {
    return;
  }
  // Left again however the evaluation ends.
  struct Scope {
    Recipe*& current;
    Recipe* former;
    std::vector<std::size_t>& ends;
    std::vector<std::size_t> former_ends;
    std::string former_unproven;
    bool is_done = false;
    ~Scope() {
      if (!is_done) {
        current->unproven.swap(former_unproven);  // that of the results, which stay
      }
      current = former;
      ends.swap(former_ends);
    }
  };
  Scope scope{recipe_, std::exchange(recipe_, &recipe), ends_, std::exchange(ends_, {}),
              std::exchange(recipe.unproven, {})};
  std::vector<Known> results;
  if (recipe.target != nullptr) {
    const Variable before = recipe.environment.at(recipe.target->text);
    evaluate_anew(*before.recipe);
    evaluate_anew(*recipe.source.recipe);
    for (const Variable& each : {before, recipe.source}) {
      recipe.unproven = recipe.unproven.empty() ? each.recipe->unproven : recipe.unproven;
    }
    results = {replaced(*recipe.target, before.value(), recipe.source.value())};
  } else {
    results = values_of(recipe.expression);
  }
  recipe.results.swap(results);
  recipe.digits = QuarnDigits();
  scope.is_done = true;
}

// Exact values need no recipe any more, and long chains of recipes end with a value of many digits.
void Interpreter::settle(Recipe& recipe) {
  for (const auto& [name, variable] : recipe.environment) {
    recipe.depth = std::max(recipe.depth, variable.recipe->depth + 1);
  }
  if (recipe.source.recipe != nullptr) {
    recipe.depth = std::max(recipe.depth, recipe.source.recipe->depth + 1);
  }
  const bool exact = recipe.unproven.empty() && std::all_of(recipe.results.begin(), recipe.results.end(),
                                                            [](const Known& each) { return each.is_exact(); });
  if (!exact && recipe.depth <= kDeepest) {
    return;
  }
  if (!exact && limits_.once == 0) {
    evaluate_decided(recipe, int(std::min<Integer>(2 * Integer(first_digits()) + 20, kMostDigits)));
  }
  recipe.is_fixed = true;
  recipe.depth = 0;
  recipe.expression = Node();
  recipe.target.reset();
  recipe.environment.clear();
  recipe.data.clear();
  recipe.source = Variable();
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
  for (std::size_t k = 0; k < statement.targets.size(); ++k) {
    const Node& target = statement.targets[k];
    assigned.push_back(target.kind == Kind::name ? Variable{recipe, k}
                                                 : assigned_elements(target, Variable{recipe, k}));
    variables_[target.text] = assigned.back();
  }
  return assigned;
}

Variable Interpreter::assigned_elements(const Node& target, const Variable& value) {
  const auto found = variables_.find(target.text);
  if (found == variables_.end() || !std::holds_alternative<Array>(found->second.value().value)) {
    throw Fault(target.at, "there is no matrix '" + target.text + "'");
  }
  if (!std::holds_alternative<Array>(value.value().value)) {
    throw Fault(target.at, "an element is a number");
  }
  auto recipe = std::make_shared<Recipe>();
  recipe->target = std::make_unique<Node>(target);
  recipe->asked = QuarnDigits();
  recipe->source = value;
  collect_names(target, variables_, recipe->environment);
  evaluate_decided(*recipe, first_digits());
  settle(*recipe);
  return {recipe, 0};
}

std::int64_t Interpreter::prove(Recipe& recipe, const std::vector<std::size_t>& places) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::seconds(limits_.seconds);
  const int wanted = QuarnDigits();
  const int most = most_digits();
  int working = first_digits();
  int working_before = 0;
  std::int64_t known_before = 0;
  while (true) {
    evaluate_decided(recipe, working);
    const std::int64_t known = fewest_digits(recipe, places);
    const bool enough = known >= wanted || (working >= 4 * wanted && only_zeros_are_missing(recipe, places, wanted));
    if (enough || limits_.once > 0 || recipe.is_fixed || !recipe.unproven.empty()) {
      return enough ? std::max<std::int64_t>(known, wanted) : known;
    }
    if (working == most || Clock::now() > end) {
      return known;
    }
    // Where some digits are known the loss is known too.
    std::int64_t next = 2 * std::int64_t(working) + kSpareDigits;
    if (known > 0) {
      const std::int64_t missing = wanted - known + kSpareDigits;
      const bool seen = known_before > 0 && known > known_before;
      const std::int64_t rate =
          seen ? (working - working_before + known - known_before - 1) / (known - known_before) : 1;
      next = std::min(next + missing, working + std::max<std::int64_t>(rate, 1) * missing);
    }
    known_before = known;
    working_before = working;
    working = int(std::min<std::int64_t>(next, most));
  }
}

std::string Interpreter::shown_proven(const NamedValues& values) {
  std::string text;
  std::string note;
  std::int64_t fewest = QuarnDigits();
  for (const auto& [name, variable] : values) {
    Recipe& recipe = *variable.recipe;
    const std::int64_t digits = prove(recipe, {variable.place});
    if (!recipe.unproven.empty()) {
      return shown_estimate(values);
    }
    const bool once = limits_.once > 0;
    const Known& value = variable.value();
    text += once && std::holds_alternative<Array>(value.value)
                ? shown(name, Known(rounded_values(value)), QuarnDigits())
                : shown(name, value, digits);
    if (digits < fewest) {
      fewest = digits;
      note = once ? "# about " + digit_count(digits) + " digits are true (estimate by error bounds)\n"
                  : "# " + digit_count(digits) + " of " + std::to_string(QuarnDigits()) + " digits are proven with " +
                        std::to_string(recipe.digits) + " working digits\n";
    }
  }
  return text + note;
}

// What has no proof is computed a second time, with more digits.
std::string Interpreter::shown_estimate(const NamedValues& values) {
  std::string text;
  std::string unproven;
  std::int64_t fewest = QuarnDigits();
  bool is_compared = limits_.once == 0;
  for (const auto& [name, variable] : values) {
    Recipe& recipe = *variable.recipe;
    unproven = recipe.unproven.empty() ? unproven : recipe.unproven;
    const Known first = variable.value();
    if (limits_.once == 0 && !recipe.is_fixed) {
      // More than it has been computed with, also where it is shown again.
      const Integer more = std::max(2 * Integer(QuarnDigits()) + 3 * kSpareDigits,
                                    Integer(recipe.digits) + QuarnDigits() + kSpareDigits);
      evaluate_decided(recipe, int(std::min<Integer>(more, kMostDigits)));
    }
    std::set<const Recipe*> seen;
    is_compared = is_compared && !keeps_unproven(recipe, seen);
    const std::int64_t digits = std::min<std::int64_t>(common_digits(first, variable.value()), QuarnDigits());
    fewest = std::min(fewest, digits);
    const tesk2mp::Digits scope(int(std::max<std::int64_t>(digits, 1)));
    const Known& value = variable.value();
    text += shown(name, std::holds_alternative<Array>(value.value) ? Known(rounded_values(value)) : value, digits);
  }
  return text + (is_compared
                     ? "# about " + digit_count(fewest) +
                           " digits are true (estimate by a second computation: " + unproven + " has no proof)\n"
                     : "# not proven: " + unproven + " has no proof\n");
}

void Interpreter::run_effect(const Node& call, const Function& function) {
  if (call.children.size() < function.least || call.children.size() > function.most) {
    throw Fault(call.at, "it is called so: " + usage(function));
  }
  std::vector<Value> arguments;
  for (const Node& child : call.children) {
    const std::shared_ptr<Recipe> recipe = made(child);
    const std::int64_t digits = prove(*recipe, {0});
    if (digits <= 0) {
      throw Fault(child.at, "no digit of this is proven");
    }
    const bool is_proven = recipe->unproven.empty();
    const Known& value = recipe->results.at(0);
    const bool is_text = std::holds_alternative<std::string>(value.value);
    arguments.push_back(is_proven || is_text ? proven_value(value, digits) : Value(rounded_values(value)));
    if (!is_proven) {
      print_("# not proven: " + recipe->unproven + " has no proof\n");
    } else if (digits < QuarnDigits()) {
      print_("# rounded to " + std::to_string(digits) + " digits, those that are proven\n");
    }
  }
  try {
    function.apply(state_, Arguments(std::move(arguments)));
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
  return shown_proven(values);
}

}  // namespace cli::repl

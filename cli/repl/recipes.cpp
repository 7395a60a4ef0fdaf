// Recipes: evaluation with as many digits as it takes.
#include <algorithm>
#include <chrono>
#include <utility>

#include "cli/commands/command.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;

constexpr std::size_t kDeepest = 64;

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
      const bool is_tiny = proven::is_unknown_zero(part) && part.error.exponent() < -2 * std::int64_t(digits);
      if (proven::true_digits(part) < digits && !is_tiny) {
        return false;
      }
    }
  }
  return true;
}

// Where proofs end.
int most_digits() { return int(std::min<Integer>(40 * Integer(QuarnDigits()) + 1000, kMostDigits)); }

}  // namespace

int Interpreter::first_digits() const { return limits_.once > 0 ? QuarnDigits() : QuarnDigits() + kSpareDigits; }

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
    Unproven former_unproven;
    bool is_done = false;
    ~Scope() {
      if (!is_done) {
        std::swap(current->unproven, former_unproven);  // that of the results, which stay
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
      recipe.unproven.add(each.recipe->unproven);
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
  for (tesk2mp::proven::detail::DigitSearch search(wanted, first_digits(), most, kSpareDigits);;) {
    const int working = search.working();
    evaluate_decided(recipe, working);
    const std::int64_t known = fewest_digits(recipe, places);
    const bool enough = known >= wanted || (working >= 4 * wanted && only_zeros_are_missing(recipe, places, wanted));
    if (enough || limits_.once > 0 || recipe.is_fixed || !recipe.unproven.empty()) {
      return enough ? std::max<std::int64_t>(known, wanted) : known;
    }
    if (search.is_at_end() || Clock::now() > end) {
      return known;
    }
    search.raise(known);
  }
}

}  // namespace cli::repl

#include "cli/repl/interpreter.h"

#include <algorithm>
#include <new>

#include "cli/commands/command.h"
#include "cli/io/number_text.h"
#include "cli/repl/constants.h"
#include "cli/repl/fault.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;

// Runs a piece of work; what goes wrong in it gets the node's place, or that of one of its arguments.
template <class Work>
auto at_place(const Node& node, const Work& work) {
  const auto fault = [&](const std::string& reason, ExitStatus status) { return Fault(node.at, reason, status); };
  try {
    return work();
  } catch (const Unfit& unfit) {
    const auto argument = std::size_t(unfit.argument());
    const bool known = unfit.argument() >= 0 && argument < node.children.size();
    throw Fault(known ? node.children[argument].at : node.at, unfit.what());
  } catch (const tesk2mp::Error& error) {
    throw fault(error.what(), ExitStatus::library);
  } catch (const Failure& failure) {
    constexpr std::string_view kProgram = "quarn: ";
    std::string reason = failure.what();
    reason = reason.substr(reason.starts_with(kProgram) ? kProgram.size() : 0);
    throw fault(reason.substr(0, reason.find_last_not_of('\n') + 1), failure.status());
  } catch (const std::bad_alloc&) {
    throw fault("not enough memory", ExitStatus::library);
  }
}

}  // namespace

void Interpreter::run(const std::string& text) {
  const std::vector<Statement> statements = at_place(Node{}, [&] { return statements_of(text); });
  for (const Statement& statement : statements) {
    const std::string shown = at_place(Node{Kind::name, statement.at, "", {}}, [&] { return run(statement); });
    if (!shown.empty()) {
      print_(shown);
    }
    if (finished_) {
      return;
    }
  }
}

std::vector<Known> Interpreter::values_of(const Node& node) {
  return node.kind == Kind::call ? call(node) : std::vector<Known>{evaluate(node)};
}

const Variable* Interpreter::find_variable(const Node& node) {
  const Variables& scope = recipe_ != nullptr ? recipe_->environment : variables_;
  const auto found = scope.find(node.text);
  if (found == scope.end()) {
    return nullptr;
  }
  const Variable& variable = found->second;
  try {
    evaluate_anew(*variable.recipe);
  } catch (const Fault& fault) {
    throw Fault(node.at, fault.what(), fault.status());
  }
  if (recipe_ != nullptr) {
    recipe_->unproven.add(variable.recipe->unproven);
  }
  return &variable;
}

Known Interpreter::evaluate(const Node& node) {
  switch (node.kind) {
    case Kind::number: {
      // Numbers are taken as they are, however long.
      const std::size_t length = std::min(node.text.size(), std::size_t(kMostDigits));
      const tesk2mp::Digits digits(std::max(QuarnDigits(), int(length)));
      const Complex value = to_complex_number(node.text);
      if (const char* reason = why_unfit(node.text, value)) {
        throw Fault(node.at, shown_text(node.text) + " " + reason);
      }
      return number(value);
    }
    case Kind::text:
      return Value(node.text);
    case Kind::name: {
      if (node.text == "end" && !ends_.empty()) {
        return number(Complex(QuarnFloat(ends_.back())));
      }
      if (const Variable* variable = find_variable(node)) {
        return variable->value();
      }
      if (const Constant* constant = find_constant(node.text)) {
        const tesk2mp::Digits digits(constant->follows_digits && recipe_ != nullptr ? recipe_->asked : QuarnDigits());
        const Complex value = constant->value();
        const QuarnBound error = constant->is_rounded ? QuarnBound(value).half_unit(QuarnDigits()) : QuarnBound();
        return {number(value), {{error, QuarnBound()}}};
      }
      const Function* function = find_function(node.text);
      throw Fault(node.at, function != nullptr ? "'" + node.text + "' is a function: " + usage(*function)
                                               : "there is no variable '" + node.text + "'" + suggestion(node.text));
    }
    case Kind::call: {
      std::vector<Known> values = call(node);
      if (values.empty()) {
        throw Fault(node.at, "'" + node.text + "' has no value");
      }
      return std::move(values.front());
    }
    case Kind::sign: {
      Known value = evaluate_array(node.children.front());
      return node.text == "-" ? negative(value) : value;
    }
    case Kind::chain:
      return chain(node);
    case Kind::postfix:
      return postfixed(node);
    case Kind::range:
      return range(node);
    default:
      return matrix(node);
  }
}

Known Interpreter::evaluate_array(const Node& node) {
  Known value = evaluate(node);
  if (std::holds_alternative<Array>(value.value)) {
    return value;
  }
  throw Fault(node.at, "a number is needed here, not a text");
}

Known Interpreter::chain(const Node& node) {
  Known result = evaluate_array(node.children.front());
  for (std::size_t k = 0; k < node.signs.size(); ++k) {
    const Known right = evaluate_array(node.children[k + 1]);
    const Sign& sign = node.signs[k];
    result = at_place(Node{Kind::sign, sign.at, "", {}}, [&] { return operate(sign.text, result, right); });
  }
  return result;
}

Known Interpreter::postfixed(const Node& node) {
  Known result = evaluate_array(node.children.front());
  for (const Sign& sign : node.signs) {
    result = at_place(Node{Kind::sign, sign.at, "", {}},
                      [&] { return sign.text == "!" ? factorial(result) : conjugate_transpose(result); });
  }
  return result;
}

// Of a range whose end is so many steps away.
Integer Interpreter::range_length(const Node& node, const BoundedReal& distance) const {
  constexpr Integer kMost = 100'000'000;
  constexpr int kLeastDigits = 20;
  const tesk2mp::Digits digits(std::max(QuarnDigits(), kLeastDigits));
  const bool is_bounded = distance.error.is_finite();
  const QuarnFloat error = is_bounded ? distance.error.value() : QuarnFloat();
  QuarnFloat most = floor(quarn::add(distance.value, error, quarn::Rounding::ceiling));
  QuarnFloat least = floor(quarn::subtract(distance.value, error, quarn::Rounding::floor));
  if (distance.error.is_zero()) {
    most = least = floor(distance.value);
  }
  if (!is_last_ && (!is_bounded || (most != least && most >= 0))) {
    throw Undecided();
  }
  // An end that cannot be distinguished from one of the numbers counts as one.
  if (!is_bounded || (most >= 0 && most > least + 1)) {
    throw Fault(node.at, "the length of this range is not known");
  }
  if (!(most < kMost)) {
    throw Fault(node.at, "a range of more than " + std::to_string(kMost) + " numbers");
  }
  return most < 0 ? 0 : FloatToInt(most) + 1;
}

Known Interpreter::range(const Node& node) {
  std::vector<Number> ends;
  for (const Node& child : node.children) {
    const Known value = evaluate_array(child);
    if (!is_number(value.array()) || !is_real(value) || !isfinite(value.array()(0, 0).re)) {
      throw Fault(child.at, "a range needs real numbers");
    }
    ends.push_back(element(value, 0));
  }
  const Number step = ends.size() == 3 ? ends[1] : Number{proven::exact(1)};
  if (step.re.value == 0) {
    throw Fault(node.at, "the step of a range cannot be 0");
  }
  const Integer count = range_length(node, divide(subtract(ends.back(), ends.front()), step).re);
  return at_place(node, [&] {
    std::vector<Number> numbers;
    numbers.reserve(std::size_t(count));
    for (Integer k = 0; k < count; ++k) {
      numbers.push_back(add(ends.front(), multiply(step, {proven::exact(QuarnFloat(k))})));
    }
    return known(1, numbers.size(), numbers);
  });
}

Known Interpreter::matrix(const Node& node) {
  std::vector<std::vector<Known>> rows;
  std::size_t height = 0;
  std::size_t width = 0;
  for (const Node& row : node.children) {
    // Matrices side by side, then these rows below each other.
    std::vector<Known> blocks;
    std::size_t columns = 0;
    for (const Node& child : row.children) {
      blocks.push_back(evaluate_array(child));
      const Array& block = blocks.back().array();
      const std::size_t first_rows = blocks.front().array().rows();
      if (block.rows() != first_rows) {
        throw Fault(child.at, "this has " + std::to_string(block.rows()) + " rows, what stands left of it " +
                                  std::to_string(first_rows));
      }
      columns += block.columns();
    }
    if (blocks.empty()) {
      continue;
    }
    if (!rows.empty() && columns != width) {
      throw Fault(row.at, "this row has " + std::to_string(columns) + (columns == 1 ? " column" : " columns") +
                              ", the first has " + std::to_string(width));
    }
    width = columns;
    height += blocks.front().array().rows();
    rows.push_back(std::move(blocks));
  }
  return at_place(node, [&] {
    Array values = make_array(height, width);
    std::vector<PartErrors> errors;
    std::size_t first = 0;
    for (const std::vector<Known>& blocks : rows) {
      std::size_t column = 0;
      for (const Known& block : blocks) {
        const Array& array = block.array();
        for (std::size_t k = 0; k < size(array); ++k) {
          const std::size_t place = first + k % array.rows() + (column + k / array.rows()) * height;
          values.data()[place] = array.data()[k];
          if (!block.is_exact()) {
            errors.resize(size(values));
            errors[place] = block.errors[k];
          }
        }
        column += array.columns();
      }
      first += blocks.front().array().rows();
    }
    return Known(std::move(values), std::move(errors));
  });
}

std::vector<Known> Interpreter::call(const Node& node) {
  if (const Variable* variable = find_variable(node)) {
    return {indexed(node, variable->value())};
  }
  const Function* function = find_function(node.text);
  if (function == nullptr) {
    throw Fault(node.at, "there is no variable and no function '" + node.text + "'" + suggestion(node.text));
  }
  const std::size_t count = node.children.size();
  if (count < function->least || count > function->most) {
    throw Fault(node.at, "it is called so: " + usage(*function));
  }
  if (function->nature == Nature::effect) {
    throw Fault(node.at, "'" + node.text + "' has no value");
  }
  if (recipe_ != nullptr) {
    if (const auto found = recipe_->data.find(node.at); found != recipe_->data.end()) {
      recipe_->unproven.add(found->second.unproven);
      return {found->second.value};
    }
  }
  Knowns values;
  for (const Node& child : node.children) {
    values.push_back(evaluate(child));
  }
  const Arguments arguments(std::move(values));
  return at_place(node, [&] {
    Evaluation evaluation{state_, function->name, recipe_ != nullptr ? recipe_->asked : QuarnDigits(), is_last_};
    const auto drawn = state_.random.state();
    Knowns results = function->apply(evaluation, arguments);
    if (recipe_ != nullptr) {
      recipe_->unproven.add(evaluation.unproven);
      if (function->nature == Nature::data || state_.random.state() != drawn) {
        // Not drawn or read a second time.
        recipe_->data[node.at] = {Known(results.front().value), evaluation.unproven};
        results.resize(1);
        results.front().errors.clear();
      }
    }
    return results;
  });
}

Interpreter::Places Interpreter::element_places(const Node& node, const Array& array) {
  if (node.children.size() == 1) {
    std::vector<std::size_t> elements = indices(node.children[0], size(array));
    const std::size_t count = elements.size();
    const bool is_row = array.rows() == 1 && array.columns() != 1;
    return {std::move(elements), is_row ? 1 : count, is_row ? count : 1};
  }
  if (node.children.size() != 2) {
    throw Fault(node.at, "an element has one index or two");
  }
  const std::vector<std::size_t> rows = indices(node.children[0], array.rows());
  const std::vector<std::size_t> columns = indices(node.children[1], array.columns());
  Places places{{}, rows.size(), columns.size()};
  for (const std::size_t j : columns) {
    for (const std::size_t i : rows) {
      places.elements.push_back(i + j * array.rows());
    }
  }
  return places;
}

Known Interpreter::indexed(const Node& node, const Known& variable) {
  const auto* array = std::get_if<Array>(&variable.value);
  if (array == nullptr) {
    throw Fault(node.at, "'" + node.text + "' is a text");
  }
  const Places places = element_places(node, *array);
  Array values = make_array(places.rows, places.columns);
  std::vector<PartErrors> errors(variable.is_exact() ? 0 : size(values));
  for (std::size_t k = 0; k < size(values); ++k) {
    values.data()[k] = array->data()[places.elements[k]];
    if (!errors.empty()) {
      errors[k] = variable.errors[places.elements[k]];
    }
  }
  return {std::move(values), std::move(errors)};
}

Known Interpreter::replaced(const Node& target, const Known& before, const Known& source) {
  const Array& given = before.array();
  const Array& elements = source.array();
  const std::vector<std::size_t> places = element_places(target, given).elements;
  if (!is_number(elements) && size(elements) != places.size()) {
    throw Fault(target.at, std::to_string(places.size()) + " elements cannot take " + shape(elements));
  }
  Array values = given;
  std::vector<PartErrors> errors = before.errors;
  if (!source.is_exact()) {
    errors.resize(size(values));
  }
  for (std::size_t k = 0; k < places.size(); ++k) {
    const std::size_t from = is_number(elements) ? 0 : k;
    values.data()[places[k]] = elements.data()[from];
    if (!errors.empty()) {
      errors[places[k]] = source.is_exact() ? PartErrors() : source.errors[from];
    }
  }
  return {std::move(values), std::move(errors)};
}

std::vector<std::size_t> Interpreter::indices(const Node& node, std::size_t size) {
  std::vector<std::size_t> places;
  if (node.kind == Kind::all) {
    for (std::size_t k = 0; k < size; ++k) {
      places.push_back(k);
    }
    return places;
  }
  // Left again however the evaluation ends.
  struct End {
    std::vector<std::size_t>& ends;
    ~End() { ends.pop_back(); }
  };
  ends_.push_back(size);
  const End end{ends_};
  const Known found = evaluate_array(node);
  for (std::size_t k = 0; k < repl::size(found.array()); ++k) {
    const Complex& value = found.array().data()[k];
    const bool whole = value.im == 0 && isfinite(value.re) && trunc(value.re) == value.re;
    if (!element(found, k).is_exact() && value.im == 0) {
      throw Fault(node.at, "this index is not known exactly");
    }
    if (!whole || value.re < 1 || value.re > QuarnFloat(size)) {
      throw Fault(node.at, "index " + complex_text(value) + " is not one of 1 to " + std::to_string(size));
    }
    places.push_back(std::size_t(FloatToInt(value.re)) - 1);
  }
  return places;
}

}  // namespace cli::repl

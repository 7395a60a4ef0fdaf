#include "cli/repl/interpreter.h"

#include <algorithm>
#include <new>

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

std::vector<std::string> names_in(const std::string& list) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find(", ", at), list.size());
    names.push_back(list.substr(at, end - at));
    at = end + 2;
  }
  return names;
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

std::string Interpreter::run(const Statement& statement) {
  if (!statement.command.empty()) {
    return run_command(statement);
  }
  std::vector<Value> values = values_of(statement.value);
  if (!statement.targets.empty()) {
    assign(statement, values);
  } else if (!values.empty()) {
    variables_["ans"] = values.front();
  }
  return statement.silent ? "" : text_of(statement, values);
}

void Interpreter::assign(const Statement& statement, std::vector<Value> values) {
  if (values.size() < statement.targets.size()) {
    const std::string reason = values.empty()       ? "there is no value to assign"
                               : values.size() == 1 ? "there is only 1 value"
                                                    : "there are only " + std::to_string(values.size()) + " values";
    throw Fault(statement.targets[values.size()].at, reason);
  }
  for (std::size_t k = 0; k < statement.targets.size(); ++k) {
    const Node& target = statement.targets[k];
    if (target.kind == Kind::name) {
      variables_[target.text] = std::move(values[k]);
    } else {
      at_place(target, [&] { assign_elements(target, values[k]); });
    }
  }
}

void Interpreter::assign_elements(const Node& target, const Value& value) {
  const auto found = variables_.find(target.text);
  if (found == variables_.end() || !std::holds_alternative<Array>(found->second)) {
    throw Fault(target.at, "there is no matrix '" + target.text + "'");
  }
  const auto* source = std::get_if<Array>(&value);
  if (source == nullptr) {
    throw Fault(target.at, "an element is a number");
  }
  Array changed = std::get<Array>(found->second);
  std::vector<std::size_t> places;
  if (target.children.size() == 1) {
    places = indices(target.children[0], size(changed));
  } else if (target.children.size() == 2) {
    const std::vector<std::size_t> rows = indices(target.children[0], changed.rows());
    for (const std::size_t j : indices(target.children[1], changed.columns())) {
      for (const std::size_t i : rows) {
        places.push_back(i + j * changed.rows());
      }
    }
  } else {
    throw Fault(target.at, "an element has one index or two");
  }
  if (!is_number(*source) && size(*source) != places.size()) {
    throw Fault(target.at, std::to_string(places.size()) + " elements cannot take " + shape(*source));
  }
  for (std::size_t k = 0; k < places.size(); ++k) {
    changed.data()[places[k]] = source->data()[is_number(*source) ? 0 : k];
  }
  found->second = std::move(changed);
}

std::string Interpreter::text_of(const Statement& statement, const std::vector<Value>& values) {
  std::string text;
  for (const Node& target : statement.targets) {
    text += shown(target.text, variables_[target.text]);
  }
  if (!statement.targets.empty()) {
    return text;
  }
  std::vector<std::string> names = {"ans"};
  if (statement.value.kind == Kind::name) {
    names = {statement.value.text};
  } else if (values.size() > 1) {
    names = names_in(find_function(statement.value.text)->results);
  }
  for (std::size_t k = 0; k < values.size(); ++k) {
    text += shown(names[k], values[k]);
  }
  return text;
}

std::vector<Value> Interpreter::values_of(const Node& node) {
  return node.kind == Kind::call ? call(node) : std::vector<Value>{evaluate(node)};
}

Value Interpreter::evaluate(const Node& node) {
  switch (node.kind) {
    case Kind::number: {
      // Whole numbers are taken as they are, however long.
      const bool whole = std::all_of(node.text.begin(), node.text.end(), is_digit);
      const std::size_t length = std::min(node.text.size(), std::size_t(kMostExactDigits));
      const tesk2mp::Digits digits(std::max(QuarnDigits(), whole ? int(length) : 1));
      const Complex value = to_complex_number(node.text);
      if (!isfinite(value)) {
        throw Fault(node.at, "beyond the range of numbers");
      }
      return number(value);
    }
    case Kind::text:
      return node.text;
    case Kind::name: {
      if (node.text == "end" && !ends_.empty()) {
        return number(Complex(QuarnFloat(ends_.back())));
      }
      if (const auto found = variables_.find(node.text); found != variables_.end()) {
        return found->second;
      }
      if (const Constant* constant = find_constant(node.text)) {
        return number(constant->value());
      }
      const Function* function = find_function(node.text);
      throw Fault(node.at, function != nullptr ? "'" + node.text + "' is a function: " + usage(*function)
                                               : "there is no variable '" + node.text + "'" + suggestion(node.text));
    }
    case Kind::call: {
      std::vector<Value> values = call(node);
      if (values.empty()) {
        throw Fault(node.at, "'" + node.text + "' has no value");
      }
      return std::move(values.front());
    }
    case Kind::sign: {
      Array value = evaluate_array(node.children.front());
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

Array Interpreter::evaluate_array(const Node& node) {
  Value value = evaluate(node);
  if (auto* array = std::get_if<Array>(&value)) {
    return std::move(*array);
  }
  throw Fault(node.at, "a number is needed here, not a text");
}

Array Interpreter::chain(const Node& node) {
  Array result = evaluate_array(node.children.front());
  for (std::size_t k = 0; k < node.signs.size(); ++k) {
    const Array right = evaluate_array(node.children[k + 1]);
    const Sign& sign = node.signs[k];
    result = at_place(Node{Kind::sign, sign.at, "", {}}, [&] { return operate(sign.text, result, right); });
  }
  return result;
}

Array Interpreter::postfixed(const Node& node) {
  Array result = evaluate_array(node.children.front());
  for (const Sign& sign : node.signs) {
    result = at_place(Node{Kind::sign, sign.at, "", {}},
                      [&] { return sign.text == "!" ? factorial(result) : conjugate_transpose(result); });
  }
  return result;
}

Array Interpreter::range(const Node& node) {
  std::vector<QuarnFloat> ends;
  for (const Node& child : node.children) {
    const Array value = evaluate_array(child);
    if (!is_number(value) || !is_real(value) || !isfinite(value(0, 0).re)) {
      throw Fault(child.at, "a range needs real numbers");
    }
    ends.push_back(value(0, 0).re);
  }
  const QuarnFloat step = ends.size() == 3 ? ends[1] : QuarnFloat(1);
  if (step == 0) {
    throw Fault(node.at, "the step of a range cannot be 0");
  }
  constexpr Integer kMost = 100'000'000;
  const QuarnFloat steps = floor((ends.back() - ends.front()) / step);
  if (steps >= kMost) {
    throw Fault(node.at, "a range of more than " + std::to_string(kMost) + " numbers");
  }
  const Integer count = steps < 0 ? 0 : FloatToInt(steps) + 1;
  return at_place(node, [&] {
    Array result = make_array(1, std::size_t(count));
    for (Integer k = 0; k < count; ++k) {
      result(0, std::size_t(k)) = ends.front() + step * k;
    }
    return result;
  });
}

Array Interpreter::matrix(const Node& node) {
  std::vector<Array> rows;
  std::size_t height = 0;
  std::size_t width = 0;
  for (const Node& row : node.children) {
    // Matrices side by side, then these rows below each other.
    std::vector<Array> blocks;
    std::size_t columns = 0;
    for (const Node& child : row.children) {
      blocks.push_back(evaluate_array(child));
      if (blocks.back().rows() != blocks.front().rows()) {
        throw Fault(child.at, "this has " + std::to_string(blocks.back().rows()) + " rows, what stands left of it " +
                                  std::to_string(blocks.front().rows()));
      }
      columns += blocks.back().columns();
    }
    if (blocks.empty()) {
      continue;
    }
    if (!rows.empty() && columns != width) {
      throw Fault(row.at, "this row has " + std::to_string(columns) + (columns == 1 ? " column" : " columns") +
                              ", the first has " + std::to_string(width));
    }
    Array joined = at_place(node, [&] { return make_array(blocks.front().rows(), columns); });
    Complex* next = joined.data();
    for (const Array& block : blocks) {
      next = std::copy_n(block.data(), size(block), next);
    }
    width = columns;
    height += joined.rows();
    rows.push_back(std::move(joined));
  }
  Array result = at_place(node, [&] { return make_array(height, width); });
  std::size_t first = 0;
  for (const Array& row : rows) {
    for (std::size_t j = 0; j < width; ++j) {
      for (std::size_t i = 0; i < row.rows(); ++i) {
        result(first + i, j) = row(i, j);
      }
    }
    first += row.rows();
  }
  return result;
}

std::vector<Value> Interpreter::call(const Node& node) {
  if (const auto found = variables_.find(node.text); found != variables_.end()) {
    return {indexed(node, found->second)};
  }
  const Function* function = find_function(node.text);
  if (function == nullptr) {
    throw Fault(node.at, "there is no variable and no function '" + node.text + "'" + suggestion(node.text));
  }
  const std::size_t count = node.children.size();
  if (count < function->least || count > function->most) {
    throw Fault(node.at, "it is called so: " + usage(*function));
  }
  std::vector<Value> values;
  for (const Node& child : node.children) {
    values.push_back(evaluate(child));
  }
  return at_place(node, [&] { return function->apply(state_, Arguments(std::move(values))); });
}

Array Interpreter::indexed(const Node& node, const Value& variable) {
  const auto* array = std::get_if<Array>(&variable);
  if (array == nullptr) {
    throw Fault(node.at, "'" + node.text + "' is a text");
  }
  if (node.children.size() == 1) {
    const std::vector<std::size_t> places = indices(node.children[0], size(*array));
    const bool row = array->rows() == 1 && array->columns() != 1;
    Array result = row ? make_array(1, places.size()) : make_array(places.size(), 1);
    std::transform(places.begin(), places.end(), result.data(), [&](std::size_t k) { return array->data()[k]; });
    return result;
  }
  if (node.children.size() != 2) {
    throw Fault(node.at, "an element has one index or two");
  }
  const std::vector<std::size_t> rows = indices(node.children[0], array->rows());
  const std::vector<std::size_t> columns = indices(node.children[1], array->columns());
  Array result = make_array(rows.size(), columns.size());
  for (std::size_t j = 0; j < columns.size(); ++j) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      result(i, j) = (*array)(rows[i], columns[j]);
    }
  }
  return result;
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
  for (const Complex& value : elements(evaluate_array(node))) {
    const bool whole = value.im == 0 && isfinite(value.re) && trunc(value.re) == value.re;
    if (!whole || value.re < 1 || value.re > QuarnFloat(size)) {
      throw Fault(node.at, "index " + complex_text(value) + " is not one of 1 to " + std::to_string(size));
    }
    places.push_back(std::size_t(FloatToInt(value.re)) - 1);
  }
  return places;
}

}  // namespace cli::repl

#include "cli/repl/interpreter.h"

#include <algorithm>
#include <new>

#include "cli/commands/options.h"
#include "cli/io/input.h"
#include "cli/io/number_text.h"
#include "cli/io/output.h"
#include "cli/repl/fault.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;

struct Constant {
  const char* name;
  const char* purpose;
  Complex (*value)();
};

// At the working digits of the moment.
constexpr Constant kConstants[] = {
    {"pi", "the circle's ratio", [] { return Complex(tesk2mp::pi()); }},
    {"e", "the base of natural logarithms", [] { return Complex(exp(QuarnFloat(1))); }},
    {"i", "the imaginary unit", [] { return Complex(0, 1); }},
    {"eps", "machine precision, 10^-digits", [] { return Complex(tesk2mp::machine_precision()); }},
};

const Constant* find_constant(const std::string& name) {
  const auto* found = std::find_if(std::begin(kConstants), std::end(kConstants),
                                   [&](const Constant& constant) { return name == constant.name; });
  return found == std::end(kConstants) ? nullptr : found;
}

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

std::string usage(const Function& function) {
  const std::string results = function.results;
  return (results.empty() ? "" : results + " = ") + std::string(function.name) + "(" + function.arguments + ")";
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

std::string padded(const std::string& text, std::size_t width) {
  return text + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

constexpr const char* kOverview =
    R"(Expressions: + - * / ^ with the usual precedence, \ solves, ' transposes and conjugates,
.* ./ .^ go element by element. Numbers 1.5e-3, 2i; vectors [1, 2, 3]; matrices
[1, 2; 3, 4]; ranges 1:10 and 0:0.1:1; elements A(2, 1), A(:, 1), x(3), x(end), from 1.
2pi is 2*pi; 10! a factorial. Whole numbers are exact at any size, whatever the digits.
A name takes a value by x = 1.5; several by L, U, P = lu(A). A semicolon at the end
keeps quiet, # or % starts a comment.

Commands:
  digits D        work with D digits from now on; digits alone tells them
  who             the variables
  clear [NAMES]   forget variables
  save "FILE"     write variables, digits and random state to a file
  load "FILE"     run the lines of such a file
  help [NAME]     this page, or what a function does
  quit, exit      end
)";

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

std::string Interpreter::run_command(const Statement& statement) {
  const std::string& command = statement.command;
  if (command == "digits") {
    return set_digits(statement);
  }
  if (command == "help") {
    return help(statement.words);
  }
  if (command == "clear") {
    clear(statement);
    return "";
  }
  if (command == "save" || command == "load") {
    if (statement.words.size() != 1 || statement.words.front().kind != Kind::text) {
      throw Fault(statement.at, command + " takes the name of a file: " + command + " \"session.quarn\"");
    }
    command == "save" ? save(statement) : load(statement);
    return "";
  }
  if (!statement.words.empty()) {
    throw Fault(statement.words.front().at, command + " stands alone");
  }
  finished_ = command != "who";
  return finished_ ? "" : who();
}

std::string Interpreter::who() const {
  std::string text;
  for (const auto& [name, value] : variables_) {
    const auto* array = std::get_if<Array>(&value);
    text += "  " + padded(name, 8) + "  " + (array == nullptr ? "a text" : shape(*array)) + "\n";
  }
  return text;
}

namespace {

// Text that reads as the same number; infinity and NaN have no letters in the language.
std::string part_text(const QuarnFloat& x) {
  return isnan(x) ? "(0/0)" : isinf(x) ? (signbit(x) ? "(-1/0)" : "(1/0)") : x.to_string();
}

std::string element_text(const Complex& z) {
  return is_real(z) ? part_text(z.re) : "(" + part_text(z.re) + " + " + part_text(z.im) + "*i)";
}

std::string array_text(const Array& a) {
  if (size(a) == 0) {
    return "fill(" + std::to_string(a.rows()) + ", " + std::to_string(a.columns()) + ")";
  }
  std::string text = "[";
  for (std::size_t i = 0; i < a.rows(); ++i) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      text += (j > 0 ? ", " : i > 0 ? ";\n  " : "") + element_text(a(i, j));
    }
  }
  return text + "]";
}

}  // namespace

// A script: the variables with all their digits, then the working digits and the random numbers' state.
void Interpreter::save(const Statement& statement) const {
  std::string text;
  std::size_t longest = std::size_t(QuarnDigits());
  for (const auto& [name, value] : variables_) {
    const auto* array = std::get_if<Array>(&value);
    text += name + " = " + (array == nullptr ? "\"" + std::get<std::string>(value) + "\"" : array_text(*array)) + ";\n";
    for (const Complex& element : array == nullptr ? std::vector<Complex>() : elements(*array)) {
      longest = std::max({longest, element.re.to_string().size(), element.im.to_string().size()});
    }
  }
  std::string seeds = std::to_string(state_.random.generator());
  for (const Integer word : state_.random.state()) {
    seeds += ", " + std::to_string(word);
  }
  const std::size_t most = std::size_t(kMostDigits);
  write_output("# quarn session\ndigits " + std::to_string(std::min(longest, most)) + "\n" + text + "seed(" + seeds +
                   ");\ndigits " + std::to_string(QuarnDigits()) + "\n",
               statement.words.front().text);
}

void Interpreter::load(const Statement& statement) {
  const Node& file = statement.words.front();
  const std::string text = read_input(file.text);
  try {
    run(text);
  } catch (const Fault& fault) {
    const std::string place = file.text + ":" + std::to_string(line_of(text, fault) + 1) + ": ";
    throw Fault(file.at, place + fault.what(), fault.status());
  }
}

std::string Interpreter::suggestion(const std::string& name) const {
  std::string best;
  std::size_t least = std::max<std::size_t>(1, name.size() / 3) + 1;
  for (const std::string& known : names_with("")) {
    // Levenshtein's distance, row by row; two neighbours that changed places count once.
    std::vector<std::vector<std::size_t>> rows(name.size() + 1, std::vector<std::size_t>(known.size() + 1));
    for (std::size_t i = 0; i <= name.size(); ++i) {
      for (std::size_t j = 0; j <= known.size(); ++j) {
        if (i == 0 || j == 0) {
          rows[i][j] = i + j;
          continue;
        }
        rows[i][j] = std::min(
            {rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + (name[i - 1] == known[j - 1] ? 0 : 1)});
        if (i > 1 && j > 1 && name[i - 1] == known[j - 2] && name[i - 2] == known[j - 1]) {
          rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
      }
    }
    if (rows.back().back() < std::min(least, std::max(name.size(), known.size()))) {
      least = rows.back().back();
      best = known;
    }
  }
  return best.empty() ? "" : "; did you mean '" + best + "'?";
}

std::string Interpreter::set_digits(const Statement& statement) {
  if (statement.words.empty()) {
    return std::to_string(QuarnDigits()) + "\n";
  }
  const Node& word = statement.words.front();
  constexpr std::size_t kLongest = 7;
  const bool whole = word.text.size() <= kLongest && std::all_of(word.text.begin(), word.text.end(), is_digit);
  const int digits = whole ? std::stoi(word.text) : 0;
  if (digits < 1 || digits > kMostDigits || statement.words.size() > 1) {
    throw Fault(word.at, "digits takes a whole number from 1 to " + std::to_string(kMostDigits));
  }
  QuarnSetDigits(digits);
  return "";
}

void Interpreter::clear(const Statement& statement) {
  if (statement.words.empty()) {
    variables_.clear();
  }
  for (const Node& word : statement.words) {
    if (variables_.erase(word.text) == 0) {
      throw Fault(word.at, "there is no variable '" + word.text + "'" + suggestion(word.text));
    }
  }
}

std::string Interpreter::help(const std::vector<Node>& words) const {
  std::string text;
  if (words.empty()) {
    text = kOverview;
    for (const FunctionGroup& group : function_groups()) {
      constexpr std::size_t kWidth = 80;
      std::string line = "\n" + std::string(group.title) + ":\n ";
      std::size_t used = 1;
      for (const Function& function : group.functions) {
        const std::string name = std::string(" ") + function.name;
        if (used + name.size() > kWidth) {
          line += "\n ";
          used = 1;
        }
        line += name;
        used += name.size();
      }
      text += line + "\n";
    }
    text += "\nConstants:\n ";
    for (const Constant& constant : kConstants) {
      text += std::string(" ") + constant.name;
    }
    return text + "\n";
  }
  for (const Node& word : words) {
    if (const Function* function = find_function(word.text)) {
      text += usage(*function) + "\n  " + function->purpose + "\n";
    } else if (const Constant* constant = find_constant(word.text)) {
      text += word.text + "\n  " + constant->purpose + "\n";
    } else {
      throw Fault(word.at, "there is no function '" + word.text + "' (help lists them)");
    }
  }
  return text;
}

std::vector<std::string> Interpreter::names_with(const std::string& start) const {
  std::vector<std::string> names = command_names();
  for (const auto& [name, value] : variables_) {
    names.push_back(name);
  }
  for (const FunctionGroup& group : function_groups()) {
    for (const Function& function : group.functions) {
      names.emplace_back(function.name);
    }
  }
  for (const Constant& constant : kConstants) {
    names.emplace_back(constant.name);
  }
  std::erase_if(names, [&](const std::string& name) { return !name.starts_with(start); });
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
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

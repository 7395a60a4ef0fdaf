// The commands of the console's language.
#include <algorithm>

#include "cli/commands/command.h"
#include "cli/io/input.h"
#include "cli/io/number_text.h"
#include "cli/io/output.h"
#include "cli/repl/constants.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"

namespace cli::repl {

namespace {

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
  digits D        show D digits from now on, all proven; digits alone says how many
  who             the variables
  clear [NAMES]   forget variables
  save "FILE"     write variables, digits and random state to a file
  load "FILE"     run the lines of such a file
  help [NAME]     this page, or what a function does
  quit, exit      end
)";

}  // namespace

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
    if (statement.words.size() != 1 || statement.words.front().kind != Node::Kind::text) {
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
  for (const auto& [name, variable] : variables_) {
    const auto* array = std::get_if<Array>(&variable.value().value);
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

// A script: the variables with the digits that are proven, exact ones with all, then the digits and the random numbers'
// state.
void Interpreter::save(const Statement& statement) {
  std::string text;
  std::size_t longest = std::size_t(QuarnDigits());
  for (const auto& [name, variable] : variables_) {
    const std::int64_t digits = prove(*variable.recipe, {variable.place});
    if (!variable.recipe->unproven.empty()) {
      throw Fault(statement.at, "'" + name + "' is not proven (" + variable.recipe->unproven.reason +
                                    "), and what is saved is exact when it is loaded; clear forgets it");
    }
    if (digits <= 0) {
      throw Fault(statement.at, "no digit of '" + name + "' is proven");
    }
    if (digits < QuarnDigits()) {
      text += "# " + std::to_string(digits) + " of " + std::to_string(QuarnDigits()) + " digits were proven\n";
    }
    const Value value = proven_value(variable.value(), digits);
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

// All of it or nothing.
void Interpreter::load(const Statement& statement) {
  const Node& file = statement.words.front();
  const std::string text = read_input(file.text);
  auto variables = variables_;
  const State state = state_;
  const int digits = QuarnDigits();
  const auto go_back = [&] {
    variables_.swap(variables);
    state_ = state;
    QuarnSetDigits(digits);
  };
  try {
    run(text);
  } catch (const Fault& fault) {
    go_back();
    const std::string place = file.text + ":" + std::to_string(line_of(text, fault) + 1) + ": ";
    throw Fault(file.at, place + fault.what(), fault.status());
  } catch (...) {
    go_back();
    throw;
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
    // Of names as near as each other, one that starts alike: few mistype the first letter.
    const std::size_t distance = rows.back().back();
    const bool starts_alike = !best.empty() && best.front() != name.front() && known.front() == name.front();
    if (distance < std::min(least + (starts_alike ? 1 : 0), std::max(name.size(), known.size()))) {
      least = distance;
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
    for (const Constant& constant : constants()) {
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
  for (const Constant& constant : constants()) {
    names.emplace_back(constant.name);
  }
  std::erase_if(names, [&](const std::string& name) { return !name.starts_with(start); });
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace cli::repl

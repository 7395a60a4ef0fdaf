// The console's language as trees.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli::repl {

/// An operator and its place in the text, from 0.
struct Sign {
  std::string text;
  std::size_t at = 0;
};

struct Node {
  enum class Kind {
    number,   // text
    text,     // text
    name,     // text
    call,     // text (children): a function's value or elements of a variable
    sign,     // text: "+" or "-" before its only child
    chain,    // operands joined from left to right by `signs`: one child more than signs
    postfix,  // its only child, conjugated and transposed for each ' among the `signs`, n! for each !
    range,    // first : last, or first : step : last
    all,      // a colon alone, as an index
    matrix,   // children are rows
    row       // children are elements
  };
  Kind kind = Kind::number;
  std::size_t at = 0;  // in the text, from 0
  std::string text;
  std::vector<Node> children;
  std::vector<Sign> signs = {};
};

struct Statement {
  std::size_t at = 0;
  std::vector<Node> targets;  // names, or one call: what the values are assigned to; may be empty
  Node value;                 // when there is no command
  std::string command;        // "digits", "help", ... or empty
  std::vector<Node> words;    // of the command: names and numbers
  bool silent = false;        // ended by a semicolon
};

/// The statements of a text. Grammar, the loosest first:
///   statement   [NAME {, NAME} = | NAME(arguments) =] expression, or a command with its words; ended by ; or the line
///   expression  sum [: sum [: sum]]
///   sum         product {(+ | -) product}
///   product     signed {(* | / | \ | .* | ./) signed}
///   signed      {+ | -} power
///   power       postfix [(^ | .^) signed]         so that -2^2 is -4 and 2^3^2 is 2^9
///             | number power                      a number that touches a name: 2pi, 1/2pi is 1/(2 pi)
///   postfix     primary {' | !}                   the conjugate transpose, the factorial
///   primary     number, "text", NAME, NAME(arguments), (expression), [rows between semicolons]
/// In a row, commas or blanks part the elements: [1 -2] has two, [1 - 2] and [1-2] one.
/// Throws Fault.
std::vector<Statement> statements_of(const std::string& text);

/// The words that start a command.
const std::vector<std::string>& command_names();

}  // namespace cli::repl

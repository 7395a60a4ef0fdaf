// A text as words of the console's language.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli::repl {

struct Token {
  enum class Kind { number, name, text, sign, newline, end };
  Kind kind = Kind::end;
  std::string text;    // of a sign: "+", ".*", ...; of a text: what stands between the quotes
  std::size_t at = 0;  // in the text, from 0
  bool blank_before = false;
  bool blank_after = false;

  bool is(const char* sign) const { return kind == Kind::sign && text == sign; }
};

/// The tokens, the last of kind end. A comment runs from # to the end of its line. Line ends within brackets are no
/// tokens. Throws Fault.
std::vector<Token> tokens_of(const std::string& text);

/// How many brackets are open after the line when `open` of them were before it: the next line belongs to them. 0 for a
/// line that is no tokens.
int open_brackets(const std::string& line, int open = 0);

}  // namespace cli::repl

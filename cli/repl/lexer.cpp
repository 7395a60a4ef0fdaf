#include "cli/repl/lexer.h"

#include <algorithm>
#include <string_view>

#include "cli/io/number_text.h"
#include "cli/repl/fault.h"

namespace cli::repl {

namespace {

constexpr std::string_view kSigns[] = {".*", "./", ".^", "+", "-", "*", "/", "\\", "^", "(",
                                       ")",  "[",  "]",  ",", ";", ":", "=", "'",  "!"};

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

class Lexer {
 public:
  explicit Lexer(const std::string& text, int depth = 0) : text_(text), depth_(depth) {}

  std::vector<Token> run() {
    while (skip_blanks(), at_ < text_.size()) {
      read_token();
    }
    add(Token::Kind::end, "", at_);
    return std::move(tokens_);
  }
  /// Brackets that are open so far.
  int depth() const { return depth_; }

 private:
  char look(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

  void skip_blanks() {
    const auto at_comment = [this] { return look() == '#' || look() == '%'; };
    while (is_blank(look()) || at_comment() || (look() == '\n' && depth_ > 0)) {
      if (at_comment()) {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else {
        ++at_;
      }
      blank_ = true;
    }
  }

  void add(Token::Kind kind, std::string text, std::size_t at) {
    if (!tokens_.empty()) {
      tokens_.back().blank_after = blank_;
    }
    tokens_.push_back({kind, std::move(text), at, blank_, false});
    blank_ = false;
  }

  void read_token() {
    const std::size_t start = at_;
    if (look() == '\n') {
      ++at_;
      add(Token::Kind::newline, "\n", start);
    } else if (is_digit(look()) || (look() == '.' && is_digit(look(1)))) {
      read_number();
    } else if (is_letter(look())) {
      while (is_letter(look()) || is_digit(look())) {
        ++at_;
      }
      add(Token::Kind::name, text_.substr(start, at_ - start), start);
    } else if (look() == '"') {
      const std::size_t end = text_.find_first_of("\"\n", start + 1);
      if (end == std::string::npos || text_[end] == '\n') {
        throw Fault(start, "the closing \" is missing");
      }
      at_ = end + 1;
      add(Token::Kind::text, text_.substr(start + 1, end - start - 1), start);
    } else {
      read_sign();
    }
  }

  // Digits, one point that is not the start of an operator, an exponent, the letter i.
  void read_number() {
    const std::size_t start = at_;
    const auto skip_digits = [&] {
      while (is_digit(look())) {
        ++at_;
      }
    };
    skip_digits();
    if (look() == '.' && look(1) != '*' && look(1) != '/' && look(1) != '^') {
      ++at_;
      skip_digits();
    }
    const bool sign = look(1) == '+' || look(1) == '-';
    if ((look() == 'e' || look() == 'E') && is_digit(look(sign ? 2 : 1))) {
      at_ += sign ? 2 : 1;
      skip_digits();
    }
    if (look() == 'i' && !is_letter(look(1)) && !is_digit(look(1))) {
      ++at_;
    }
    if (look() == '.' && look(1) != '*' && look(1) != '/' && look(1) != '^') {
      throw Fault(at_, "a number ends before this character");
    }
    add(Token::Kind::number, text_.substr(start, at_ - start), start);
  }

  void read_sign() {
    const std::string_view rest = std::string_view(text_).substr(at_);
    const auto* sign = std::find_if(std::begin(kSigns), std::end(kSigns),
                                    [&](std::string_view candidate) { return rest.starts_with(candidate); });
    if (sign == std::end(kSigns)) {
      throw Fault(at_, "this character has no meaning here");
    }
    const std::size_t start = at_;
    at_ += sign->size();
    if (*sign == "(" || *sign == "[") {
      ++depth_;
    } else if (*sign == ")" || *sign == "]") {
      depth_ = std::max(0, depth_ - 1);
    }
    add(Token::Kind::sign, std::string(*sign), start);
  }

  const std::string& text_;
  std::size_t at_ = 0;
  int depth_;
  bool blank_ = false;
  std::vector<Token> tokens_;
};

}  // namespace

std::vector<Token> tokens_of(const std::string& text) { return Lexer(text).run(); }

int open_brackets(const std::string& line, int open) {
  Lexer lexer(line, open);
  try {
    lexer.run();
  } catch (const Fault&) {
    return 0;
  }
  return lexer.depth();
}

}  // namespace cli::repl

#include "cli/repl/parser.h"

#include <algorithm>
#include <utility>

#include "cli/repl/fault.h"
#include "cli/repl/lexer.h"

namespace cli::repl {

namespace {

using Kind = Node::Kind;

class Parser {
 public:
  explicit Parser(const std::string& text) : tokens_(tokens_of(text)) {}

  std::vector<Statement> run() {
    std::vector<Statement> statements;
    while (skip_separators(), look().kind != Token::Kind::end) {
      statements.push_back(statement());
    }
    return statements;
  }

 private:
  const Token& look(std::size_t ahead = 0) const { return tokens_[std::min(next_ + ahead, tokens_.size() - 1)]; }
  const Token& take() { return tokens_[std::min(next_++, tokens_.size() - 1)]; }
  bool take_if(const char* sign) {
    const bool is = look().is(sign);
    next_ += is ? 1 : 0;
    return is;
  }
  // The closing bracket, or the complaint that it is missing: at the opening one when the text has ended.
  void expect(const char* sign, std::size_t opened) {
    if (take_if(sign)) {
      return;
    }
    if (look().kind == Token::Kind::end) {
      throw Fault(opened, "this bracket is not closed");
    }
    throw Fault(look().at, std::string(sign) + " is expected here");
  }
  void skip_separators() {
    while (look().is(";") || look().kind == Token::Kind::newline) {
      ++next_;
    }
  }
  bool at_end() const {
    return look().kind == Token::Kind::end || look().kind == Token::Kind::newline || look().is(";");
  }

  Statement statement() {
    Statement result;
    result.at = look().at;
    const auto& commands = command_names();
    if (look().kind == Token::Kind::name && !look(1).is("=") && !look(1).is("(") &&
        std::find(commands.begin(), commands.end(), look().text) != commands.end()) {
      result.command = take().text;
      while (!at_end()) {
        result.words.push_back(word());
      }
    } else {
      if (is_assignment()) {
        do {
          result.targets.push_back(target());
        } while (take_if(","));
        take();
      }
      result.value = expression();
    }
    if (!at_end()) {
      throw Fault(look().at, "the statement should end here");
    }
    result.silent = look().is(";");
    return result;
  }

  Node word() {
    const Token& token = take();
    if (token.kind == Token::Kind::text) {
      return {Kind::text, token.at, token.text, {}};
    }
    if (token.kind != Token::Kind::name && token.kind != Token::Kind::number) {
      throw Fault(token.at, "a name or a number is expected here");
    }
    return {token.kind == Token::Kind::name ? Kind::name : Kind::number, token.at, token.text, {}};
  }

  // An equals sign outside brackets before the statement ends.
  bool is_assignment() const {
    int depth = 0;
    for (std::size_t i = next_; i < tokens_.size(); ++i) {
      const Token& token = tokens_[i];
      depth += token.is("(") || token.is("[") ? 1 : token.is(")") || token.is("]") ? -1 : 0;
      if (depth == 0 && token.is("=")) {
        return true;
      }
      if (depth <= 0 && (token.is(";") || token.kind == Token::Kind::newline)) {
        return false;
      }
    }
    return false;
  }

  Node target() {
    const Token& name = take();
    if (name.kind != Token::Kind::name) {
      throw Fault(name.at, "a name is expected left of =");
    }
    Node node{Kind::name, name.at, name.text, {}};
    if (look().is("(")) {
      node = call(name);
    }
    if (!look().is(",") && !look().is("=")) {
      throw Fault(look().at, "left of = there can be a name, names between commas, or a name with an index");
    }
    return node;
  }

  // Brackets and signs nest; so does the call stack.
  class Nesting {
   public:
    Nesting(int& depth, std::size_t at) : depth_(depth) {
      constexpr int kDeepest = 200;
      if (++depth_ > kDeepest) {
        --depth_;
        throw Fault(at, "nested too deeply");
      }
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    int& depth_;
  };

  Node expression() {
    const Nesting nesting(depth_, look().at);
    Node first = sum();
    if (!look().is(":")) {
      return first;
    }
    Node range{Kind::range, look().at, "", {}};
    range.children.push_back(std::move(first));
    while (range.children.size() < 3 && take_if(":")) {
      range.children.push_back(sum());
    }
    return range;
  }

  // In a row a sign that touches what follows, but not what stands before, starts the next element.
  bool starts_element() const { return in_row_ && look().blank_before && !look().blank_after; }

  // However long a chain is, its operands stand side by side in one node: only brackets make a tree deep.
  Node chain(std::initializer_list<const char*> signs, Node (Parser::*operand)()) {
    Node result{Kind::chain, look().at, "", {}};
    result.children.push_back((this->*operand)());
    for (;;) {
      const Token& token = look();
      const bool sum = token.is("+") || token.is("-");
      if (std::none_of(signs.begin(), signs.end(), [&](const char* sign) { return token.is(sign); }) ||
          (sum && starts_element())) {
        break;
      }
      result.at = token.at;
      result.signs.push_back({token.text, token.at});
      take();
      result.children.push_back((this->*operand)());
    }
    if (result.signs.empty()) {
      return std::move(result.children.front());
    }
    return result;
  }
  Node sum() { return chain({"+", "-"}, &Parser::product); }
  Node product() { return chain({"*", "/", "\\", ".*", "./"}, &Parser::signed_power); }

  Node signed_power() {
    const Nesting nesting(depth_, look().at);
    if (look().is("+") || look().is("-")) {
      const Token& sign = take();
      Node result{Kind::sign, sign.at, sign.text, {}};
      result.children.push_back(signed_power());
      return result;
    }
    const bool is_number = look().kind == Token::Kind::number;
    Node base = postfix();
    if (is_number && base.kind == Kind::number && look().kind == Token::Kind::name && !look().blank_before) {
      Node product{Kind::chain, look().at, "", {}, {{"*", look().at}}};
      product.children.push_back(std::move(base));
      product.children.push_back(signed_power());
      return product;
    }
    if (!look().is("^") && !look().is(".^")) {
      return base;
    }
    const Token& sign = take();
    Node result{Kind::chain, sign.at, "", {}, {{sign.text, sign.at}}};
    result.children.push_back(std::move(base));
    result.children.push_back(signed_power());
    return result;
  }

  Node postfix() {
    Node operand = primary();
    std::vector<Sign> signs;
    while ((look().is("'") || look().is("!")) && !(in_row_ && look().blank_before)) {
      signs.push_back({look().text, look().at});
      take();
    }
    if (signs.empty()) {
      return operand;
    }
    Node result{Kind::postfix, signs.back().at, "", {}, std::move(signs)};
    result.children.push_back(std::move(operand));
    return result;
  }

  Node primary() {
    const Token& token = take();
    switch (token.kind) {
      case Token::Kind::number:
        return {Kind::number, token.at, token.text, {}};
      case Token::Kind::text:
        return {Kind::text, token.at, token.text, {}};
      case Token::Kind::name:
        return look().is("(") && !(in_row_ && look().blank_before) ? call(token)
                                                                   : Node{Kind::name, token.at, token.text, {}};
      default:
        break;
    }
    if (token.is("(")) {
      const bool in_row = std::exchange(in_row_, false);
      Node inner = expression();
      in_row_ = in_row;
      expect(")", token.at);
      return inner;
    }
    if (token.is("[")) {
      return matrix(token);
    }
    throw Fault(token.at, "a number, a name or a bracket is expected here");
  }

  Node call(const Token& name) {
    Node node{Kind::call, name.at, name.text, {}};
    const std::size_t opened = take().at;
    const bool in_row = std::exchange(in_row_, false);
    while (!look().is(")")) {
      if (look().is(":") && (look(1).is(",") || look(1).is(")"))) {
        node.children.push_back({Kind::all, take().at, ":", {}});
      } else {
        node.children.push_back(expression());
      }
      if (!take_if(",")) {
        break;
      }
    }
    in_row_ = in_row;
    expect(")", opened);
    return node;
  }

  Node matrix(const Token& opening) {
    const bool in_row = std::exchange(in_row_, true);
    Node result{Kind::matrix, opening.at, "[", {}};
    while (!look().is("]") && look().kind != Token::Kind::end) {
      Node row{Kind::row, look().at, "", {}};
      while (!look().is(";") && !look().is("]") && look().kind != Token::Kind::end) {
        row.children.push_back(expression());
        if (!take_if(",") && !look().blank_before && !look().is(";")) {
          break;
        }
      }
      result.children.push_back(std::move(row));
      if (!take_if(";")) {
        break;
      }
    }
    in_row_ = in_row;
    expect("]", opening.at);
    return result;
  }

  std::vector<Token> tokens_;
  std::size_t next_ = 0;
  int depth_ = 0;
  bool in_row_ = false;
};

}  // namespace

const std::vector<std::string>& command_names() {
  static const std::vector<std::string> kNames = {"clear", "digits", "exit", "help", "load", "quit", "save", "who"};
  return kNames;
}

std::vector<Statement> statements_of(const std::string& text) { return Parser(text).run(); }

}  // namespace cli::repl

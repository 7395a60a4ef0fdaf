#include "cli/repl/fault.h"

#include <algorithm>

namespace cli::repl {

std::string explanation(const std::string& text, const Fault& fault, const std::string& heading) {
  const std::size_t at = std::min(fault.at(), text.size());
  const std::size_t newline = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
  const std::size_t start = newline == std::string::npos ? 0 : newline + 1;
  const std::string line = text.substr(start, std::min(text.find('\n', start), text.size()) - start);
  std::string caret;
  for (std::size_t i = start; i < at; ++i) {
    const bool continues = (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;  // a character of several bytes
    caret += continues ? "" : text[i] == '\t' ? "\t" : " ";
  }
  return "  " + line + "\n  " + caret + "^\n" + heading + fault.what() + "\n";
}

std::size_t line_of(const std::string& text, const Fault& fault) {
  return std::size_t(std::count(text.begin(), text.begin() + std::ptrdiff_t(std::min(fault.at(), text.size())), '\n'));
}

}  // namespace cli::repl

// Names from outside, such as those of files and columns, for texts of one line.
#pragma once

#include <cstdio>
#include <string>

namespace cli {

/// The text with its control characters written as escapes (\n, \t, \x1b): it neither ends a line nor moves a terminal.
inline std::string one_line(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '\n' || c == '\t' || c == '\r') {
      line += c == '\n' ? "\\n" : c == '\t' ? "\\t" : "\\r";
    } else if (code < 0x20U || code == 0x7FU) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", unsigned(code));
      line += escape;
    } else {
      line += c;
    }
  }
  return line;
}

}  // namespace cli

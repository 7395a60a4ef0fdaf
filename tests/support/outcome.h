// One call of a routine with a failure indicator, and everything that it said.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/console.h"

namespace support {

struct Outcome {
  Integer ifail = 0;
  std::string buffer;   // the message buffer
  std::string console;  // the message record
};

/// Calls core(message_buffer, &ifail, 200) with IFAIL -13 (records alone are printed). The buffer has a guard behind
/// it; a touched guard shows as text in `buffer`.
template <class Core>
Outcome outcome_of(Core core) {
  constexpr int kLength = 200;
  std::vector<char> buffer(kLength + 8, 'j');
  Outcome outcome;
  outcome.ifail = -13;
  ConsoleCapture console;
  core(buffer.data(), &outcome.ifail, kLength);
  outcome.console = console.text();
  outcome.buffer = buffer[kLength - 1] == '\0' ? std::string(buffer.data()) : "no NUL at the end of the buffer";
  if (std::string(buffer.end() - 8, buffer.end()) != "jjjjjjjj") {
    outcome.buffer += " (and written past its end)";
  }
  return outcome;
}

/// "C06FAF", 3, 99999, {"               1"}: the text that a failing routine leaves in its message buffer.
inline std::string buffer_text(const std::string& routine, int ierror, int label,
                               const std::vector<std::string>& values) {
  char head[64];
  std::snprintf(head, sizeof head, "%s %5d %5d %5d", routine.c_str(), ierror, label, int(values.size()));
  std::string text = head;
  for (const std::string& value : values) {
    text += " " + value;
  }
  return text;
}

/// An Integer as "%16ld" shows it.
inline std::string wide(long long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%16.0f", double(value));
  return text;
}

}  // namespace support

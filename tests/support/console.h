// Collects what the library writes to the host console.
#pragma once

#include <string>

#include "quarn/quarnconsole.h"

namespace support {

/// Console text arrives in text() while the object lives. (Newlines that the library writes with putchar do not pass
/// through the console.)
class ConsoleCapture {
 public:
  ConsoleCapture() {
    QuarnRedirectConsole([](const char* text, void* self) { static_cast<ConsoleCapture*>(self)->text_ += text; }, this);
  }
  ~ConsoleCapture() { QuarnRedirectConsole(nullptr, nullptr); }
  ConsoleCapture(const ConsoleCapture&) = delete;
  ConsoleCapture& operator=(const ConsoleCapture&) = delete;

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace support

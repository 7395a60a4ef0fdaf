#include <cstdarg>
#include <cstdio>
#include <string>

#include "quarn/quarnconsole.h"

namespace {

QuarnConsoleSink redirected = nullptr;
void* redirected_context = nullptr;

}  // namespace

extern "C" {

int OldQuarnPrintf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  int length = 0;
  if (redirected == nullptr) {
    length = std::vprintf(format, arguments);
  } else {
    va_list measured;
    va_copy(measured, arguments);
    length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length > 0) {
      std::string text(std::size_t(length), '\0');
      std::vsnprintf(text.data(), text.size() + 1, format, arguments);
      redirected(text.c_str(), redirected_context);
    }
  }
  va_end(arguments);
  return length;
}

void QuarnRedirectConsole(QuarnConsoleSink sink, void* context) {
  redirected = sink;
  redirected_context = context;
}
}

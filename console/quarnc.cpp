#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>

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
      // A message that is short of memory for all of it is cut: the caller may not throw.
      char inside[512];
      const std::size_t size = std::size_t(length) + 1;
      const std::unique_ptr<char[]> outside(size > sizeof inside ? new (std::nothrow) char[size] : nullptr);
      char* const text = outside ? outside.get() : inside;
      std::vsnprintf(text, outside ? size : sizeof inside, format, arguments);
      redirected(text, redirected_context);
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

// The names of the methods.
#pragma once

#include <algorithm>
#include <cstring>

#include "src/frame/option.h"
#include "src/sparse/solver_methods.h"

namespace tesk {

/// METHOD without blanks at its ends, in capital letters; empty when it does not fit.
class MethodName {
 public:
  MethodName(const char* text, int length) noexcept {
    const char* end = std::find(text, text + std::max(length, 0), '\0');
    const char* first = std::find_if(text, end, [](char c) { return c != ' '; });
    while (end != first && end[-1] == ' ') {
      --end;
    }
    if (end - first <= kLongest) {
      std::transform(first, end, name_, capital);
    }
  }
  bool starts_with(const char* name) const noexcept { return std::strncmp(name_, name, std::strlen(name)) == 0; }

 private:
  static constexpr std::ptrdiff_t kLongest = 32;
  char name_[kLongest + 1] = {};
};

/// The method that METHOD names, or null. CG comes last: it is the beginning of another name.
inline const SolverMethod* method_named(Methods methods, const MethodName& name) {
  for (const SolverMethod* method : {&kRgmres, &kCgs, &kBicgstab, &kTfqmr, &kMinres, &kSymmlq, &kFgmres, &kIdr, &kCg}) {
    if (methods == Methods::classic && companion_method(method->code) != nullptr) {
      continue;
    }
    if (name.starts_with(method->name)) {
      return method;
    }
  }
  return nullptr;
}

}  // namespace tesk

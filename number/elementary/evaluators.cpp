// The functions by name.
#include <cstring>

#include "number/scalar/access.h"
#include "quarn/quarnconsole.h"

namespace {

using Function1 = QuarnFloat (*)(const QuarnFloat&);
using Function2 = QuarnFloat (*)(const QuarnFloat&, const QuarnFloat&);

template <class Function>
struct Named {
  const char* name;
  Function function;
};

constexpr Named<Function1> kFunctions1[] = {
    {"sin", sin},
    {"cos", cos},
    {"tan", tan},
    {"asin", asin},
    {"acos", acos},
    {"atan", atan},
    {"sinh", sinh},
    {"cosh", cosh},
    {"tanh", tanh},
    {"exp", exp},
    {"log", log},
    {"ln", log},
    {"log10", log10},
    {"sqrt", sqrt},
    {"fabs", [](const QuarnFloat& x) { return fabs(x); }},
    {"abs", [](const QuarnFloat& x) { return fabs(x); }},
    {"floor", floor},
    {"ceil", ceil},
    {"trunc", trunc},
};

constexpr Named<Function2> kFunctions2[] = {
    {"fmod", fmod},
    {"pow", pow},
    {"atan2", atan2},
};

template <class Function, std::size_t N>
Function find(const Named<Function> (&table)[N], const char* name) {
  for (const auto& entry : table) {
    if (name != nullptr && std::strcmp(entry.name, name) == 0) {
      return entry.function;
    }
  }
  OldQuarnPrintf("No function named \"%s\".\n", name == nullptr ? "" : name);
  return nullptr;
}

}  // namespace

QuarnFloat QuarnEvalf1(const char* function, const QuarnFloat& x) {
  const Function1 f = find(kFunctions1, function);
  return f == nullptr ? quarn::special(quarn::Kind::nan) : f(x);
}

QuarnFloat QuarnEvalf2(const char* function, const QuarnFloat& x, const QuarnFloat& y) {
  const Function2 f = find(kFunctions2, function);
  return f == nullptr ? quarn::special(quarn::Kind::nan) : f(x, y);
}

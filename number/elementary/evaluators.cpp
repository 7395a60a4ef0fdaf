// The functions by name.
#include "number/scalar/access.h"
#include "quarn/function_table.h"
#include "quarn/quarnconsole.h"

namespace {

QuarnFloat without_function(const char* name) {
  OldQuarnPrintf("No function named \"%s\".\n", name);
  return quarn::special(quarn::Kind::nan);
}

}  // namespace

QuarnFloat QuarnEvalf1(const char* function, const QuarnFloat& x) {
  const char* const name = function == nullptr ? "" : function;
  const auto f = quarn::find_function1(name);
  return f == nullptr ? without_function(name) : f(x);
}

QuarnFloat QuarnEvalf2(const char* function, const QuarnFloat& x, const QuarnFloat& y) {
  const char* const name = function == nullptr ? "" : function;
  const auto f = quarn::find_function2(name);
  return f == nullptr ? without_function(name) : f(x, y);
}

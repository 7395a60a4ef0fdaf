// The functions of the library's tables with bounds of their results.
#pragma once

#include "cli/repl/functions.h"
#include "quarn/function_table.h"

namespace cli::repl {

Number function_value(const quarn::NamedFunction1& f, const Number& z, Evaluation& evaluation);
Number function_value(const quarn::NamedFunction2& f, const Number& z, const Number& w, Evaluation& evaluation);

}  // namespace cli::repl

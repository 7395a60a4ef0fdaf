// Dense matrices as operands of commands.
#pragma once

#include <string>

#include "cli/io/matrix_input.h"
#include "tesk2mp/linear.hpp"

namespace cli {

/// Reads a dense matrix; throws Failure when `square` is asked for and it is not.
DenseMatrix read_operand(const std::string& file, const TableOptions& options, bool square);

/// A number as one text, exact: "1.5", "1.5-2i".
std::string exact_text(const QuarnFloat& value);
std::string exact_text(const Complex& value);

}  // namespace cli

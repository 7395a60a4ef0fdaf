// Dense matrices as operands of commands.
#pragma once

#include <cstdint>
#include <string>

#include "cli/io/matrix_input.h"
#include "tesk2mp/linear.hpp"

namespace cli {

/// Reads a dense matrix; throws Failure when `square` is asked for and it is not.
DenseMatrix read_operand(const std::string& file, const TableOptions& options, bool square);

/// A number as one text, exact: "1.5", "1.5-2i".
std::string exact_text(const QuarnFloat& value);
std::string exact_text(const Complex& value);
/// mantissa 10^exponent as a number, or what stands for it beyond the exponents of numbers: "2.5e1000000007".
std::string determinant_text(const QuarnFloat& mantissa, std::int64_t exponent);
std::string determinant_text(const Complex& mantissa, std::int64_t exponent);

}  // namespace cli

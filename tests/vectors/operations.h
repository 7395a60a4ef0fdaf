// The operations that can be asked for by name: what the differential programs have in common.
#pragma once

#include <string>
#include <string_view>

#include "quarn/quarnfloat.h"

namespace vectors {

struct Operation {
  std::string_view name;
  int operands;
  std::string (*apply)(const QuarnFloat& a, const QuarnFloat& b);
};

/// Null when there is no such operation.
const Operation* find_operation(std::string_view name);

/// The number with every digit of the text, whatever the working digits.
QuarnFloat read_exactly(const std::string& text);

/// Applies the operation at so many digits to operands that are not rounded before; the result as text.
std::string evaluate(const Operation& operation, int digits, const std::string& a, const std::string& b);

}  // namespace vectors

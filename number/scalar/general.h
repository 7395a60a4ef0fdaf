// The slow path of arithmetic: operands of any length, special values, results at any number of digits.
#pragma once

#include "quarn/quarnfloat.h"

namespace quarn {

/// a + b, or a - b when `flip` says so.
QuarnFloat general_sum(const QuarnFloat& a, const QuarnFloat& b, bool flip);
QuarnFloat general_product(const QuarnFloat& a, const QuarnFloat& b);
QuarnFloat general_quotient(const QuarnFloat& a, const QuarnFloat& b);
QuarnFloat general_square_root(const QuarnFloat& a);

}  // namespace quarn

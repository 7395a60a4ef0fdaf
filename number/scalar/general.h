// The slow path of arithmetic: operands of any length, special values, results at any number of digits.
#pragma once

#include "quarn/quarnfloat.h"

namespace quarn {

/// a + b, or a - b when `flip` says so.
QuarnFloat general_sum(const QuarnFloat& a, const QuarnFloat& b, bool flip);
/// result = that for the most common long operands; false, with the result untouched, for others.
bool sum_of_full(QuarnFloat& result, const QuarnFloat& a, const QuarnFloat& b, bool flip);
QuarnFloat general_product(const QuarnFloat& a, const QuarnFloat& b);
QuarnFloat general_quotient(const QuarnFloat& a, const QuarnFloat& b);
QuarnFloat general_square_root(const QuarnFloat& a);

}  // namespace quarn

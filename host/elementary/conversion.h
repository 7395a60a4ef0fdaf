// Between decimal numbers and binary fixed point.
#pragma once

#include "host/elementary/words.h"

namespace quarn::fixed {

/// |x| as n fraction words and an integer word above them, at most two units below. |x| fits the integer word.
void from_decimal(Word* out, const View& x, int n);

/// The number of n fraction words and an integer word, times 10^power, to all its digits: at most two units of 10^-D
/// below, D being the digits of its last bit.
QuarnFloat to_decimal(bool negative, const Word* x, int n, std::int64_t power);

}  // namespace quarn::fixed

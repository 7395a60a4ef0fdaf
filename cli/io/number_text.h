// Numbers as decimal text, both ways without losing a digit.
#pragma once

#include <string>
#include <string_view>

#include "quarn/quarnfloat.h"

namespace cli {

/// No number has more significant digits.
inline constexpr Integer kMostDigits = 1'000'000;

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Whether the text is [+-]digits[.digits][e[+-]digits], where one side of the point may be empty.
bool is_number(std::string_view text);

/// The value of a text that is_number accepts, rounded to the working digits.
QuarnFloat to_number(const std::string& text);

/// Whether the text is a number, a number times i (or i alone), or the first followed by the sign and the rest of the
/// second: 2, -i, 0.5i, 1-2e-3i. The letter may be j as well.
bool is_complex_number(std::string_view text);

/// The value of a text that is_complex_number accepts, its parts rounded to the working digits.
Complex to_complex_number(const std::string& text);

/// Why `value`, read from such a text, is not what the text says at any precision: "is beyond the range of numbers" or
/// "has more than 1000000 digits"; nothing for texts that are a number's.
const char* why_unfit(std::string_view text, const Complex& value);

/// For messages: the text between apostrophes, its beginning where it is long.
std::string shown_text(std::string_view text);

/// The exact text of a complex number: a, or a+bi when the imaginary part is not zero.
std::string complex_text(const Complex& value);

/// A whole number in plain digits, however large.
std::string whole_number_text(const QuarnFloat& value);

inline bool isfinite(const Complex& value) { return isfinite(value.re) && isfinite(value.im); }

}  // namespace cli

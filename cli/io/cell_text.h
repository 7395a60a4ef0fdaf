// How the numbers of a table may be written, beside the console's own way.
#pragma once

#include <string>
#include <string_view>

#include "quarn/quarnfloat.h"

namespace cli {

/// How to read a table or a matrix, where its text leaves that open.
struct TableOptions {
  std::string decimal;            // "point" or "comma"; empty: as the numbers look
  Integer skip = 0;               // lines at the top
  std::string missing = "error";  // "drop" or "interpolate": cells without a number
  bool mirror = false;            // a symmetric Matrix Market file may hold its upper triangle
};

/// Whether a cell says that there is no number: nothing, NA, N/A, NaN, null, none, -, --.
bool is_missing(std::string_view cell);

/// 1,5 or -2,5e3: a number with a comma for its point.
bool has_decimal_comma(std::string_view cell);

/// The same with a point.
std::string with_decimal_point(std::string cell);

/// A cell with a Fortran exponent, 1.5D+03, or typographic minus signs in the usual way; any other cell as it is.
std::string with_plain_signs(std::string cell);

/// Whether a cell that is no number was meant as one: digits in groups, 1,234.5 or 1.234,5 or 12 345, or two numbers
/// with a blank between; no date.
bool has_groups(std::string_view cell);

}  // namespace cli

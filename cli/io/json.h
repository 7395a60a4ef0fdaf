// JSON, read and written. The library for it is known to json.cpp alone.
#pragma once

#include <string>
#include <vector>

#include "cli/io/number_table.h"
#include "cli/io/result.h"

namespace cli {

/// The columns of a JSON text: an array of scalars, an array of rows, or the arrays of an object, every number as it is
/// written. Throws Failure; `source` names the text in messages.
std::vector<NumberTable::Column> columns_of_json(const std::string& text, const std::string& source);

/// One object of the result's facts and, as arrays, its data.
std::string render_json(const Result& result);

}  // namespace cli

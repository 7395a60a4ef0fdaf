// JSON, read and written. The library for it is known to json.cpp alone.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/io/number_table.h"
#include "cli/io/result.h"

namespace cli {

/// The columns of a JSON text: an array of scalars, an array of rows, or the arrays of an object, every number as it is
/// written. Throws Failure; `source` names the text in messages.
std::vector<NumberTable::Column> columns_of_json(const std::string& text, const std::string& source);

/// An object with a kind and matrices of texts, by their names; one of a single column is an array of texts.
struct NamedMatrices {
  using Rows = std::vector<std::vector<std::string>>;
  std::string kind;
  std::vector<std::pair<std::string, Rows>> matrices;
};
std::string render_matrices(const std::string& key, const NamedMatrices& given);
/// Reads it back; the member `key` is the kind. Throws Failure where something else is in it.
NamedMatrices matrices_of_json(const std::string& text, const std::string& source, const std::string& key);

/// One object of the result's facts and, as arrays, its data.
std::string render_json(const Result& result);

}  // namespace cli

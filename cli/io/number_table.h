// Tables of numbers as people keep them: columns of decimal text, read without losing a digit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/failure.h"
#include "cli/io/cell_text.h"
#include "cli/io/number_text.h"
#include "quarn/quarnfloat.h"

namespace cli {

/// The columns of one input. Four shapes are read, told apart by their contents:
/// - lines of cells between commas, semicolons, tabs or blanks, with or without a line of names and one of units below,
///   where lines that start with # or %, what follows a # behind numbers, and empty lines do not count (a plain list of
///   numbers is a table of one column);
/// - a Matrix Market file, the columns of whose matrix have no names;
/// - a JSON array of numbers, of rows of numbers, or of objects, whose members are the columns;
/// - a JSON object, whose members that are arrays are the columns.
class NumberTable {
 public:
  struct Column {
    std::string name;  // empty when the input has no names
    std::vector<std::string> cells;
  };

  /// Reads a file, or standard input for "-". Throws Failure with file, line and reason.
  static NumberTable read(const std::string& file, const TableOptions& options = {});
  /// The same for a text at hand; `source` names it in messages.
  static NumberTable parse(const std::string& text, const std::string& source, const TableOptions& options = {});

  const std::string& source() const { return source_; }
  const std::vector<Column>& columns() const { return columns_; }
  /// The column of that name, or at that position counted from 1; null when there is none.
  const Column* find(const std::string& name) const;
  /// Whether the first cell that is not missing is a number. Throws Failure for what was meant as one.
  bool holds_numbers(const Column& column) const;
  /// Whether it says how true others are, in a table whose first column is "k", "i" or "sample" as results have it:
  /// "error", "error NAME", and "count" beside those; where there are no others it is numbers as any.
  bool is_about_errors(const Column& column) const;
  /// The column that was asked for, or when `name` is empty the last one that starts with a number and is not about
  /// errors.
  const Column& choose(const std::string& name) const;
  /// Which one of several it is, for headings: " of 'name' (column 2 of 3)"; nothing about the only column without a
  /// name.
  std::string described(const Column& column) const;
  /// Where cells that are missing are dropped, leaves out all rows that have such a cell.
  void drop_incomplete_rows();
  /// Whether a row's cell is left out by numbers().
  bool drops(const std::string& cell) const { return options_.missing == "drop" && is_missing(cell); }
  /// The column's numbers, rounded to the working digits; fewer than cells where missing ones are dropped. Throws
  /// Failure.
  std::vector<QuarnFloat> numbers(const Column& column) const;
  /// The same for complex numbers, such as 2, -i or 1.5-2e3i.
  std::vector<Complex> complex_numbers(const Column& column) const;
  /// Where a cell stands, for messages: "FILE:LINE" or "FILE: NAME[INDEX]".
  std::string place(const Column& column, std::size_t row) const;

 private:
  void parse_lines(const std::string& text);
  void settle_decimals();
  void drop_indentation();
  Failure without_number(const Column& column, std::size_t row) const;
  template <class T>
  std::vector<T> values(const Column& column, bool (*is_value)(std::string_view),
                        T (*to_value)(const std::string&)) const;

  std::string source_;
  TableOptions options_;
  std::vector<Column> columns_;
  std::vector<std::size_t> lines_;  // of each row; empty for JSON
  char separator_ = ' ';
};

}  // namespace cli

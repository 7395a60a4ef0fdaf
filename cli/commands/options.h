// Options that have the same name and meaning in every sub-command.
#pragma once

#include <string>

#include "cli/commands/command.h"
#include "cli/io/cell_text.h"
#include "cli/io/result.h"

namespace cli {

struct OutputOptions {
  Format format = Format::text;
  bool format_given = false;
  std::string file;     // empty: standard output
  std::string picture;  // empty: none
};

/// --decimal, --skip and --missing of a table.
void add_table_options(Command& command, TableOptions& options);
/// The same, and --mirror of a matrix.
void add_matrix_options(Command& command, TableOptions& options);

/// --output alone
void add_output_file_option(Command& command, std::string& file);

/// The forms of a result; only a matrix can be written as a Matrix Market file.
enum class Forms { table, matrix };
/// What the ending of a file's name says; text for any other ending.
Format format_of_file(Forms forms, const std::string& file);
/// --format and --output. Without the first, a file's name that ends in .csv, .json or .mtx says the format,
/// one in .txt or without an ending means text, and any other is refused.
void add_output_options(Command& command, OutputOptions& options, Forms forms = Forms::table);
/// --plot; a name that is not a picture's is refused.
void add_plot_option(Command& command, OutputOptions& options);

/// Writes the result as the options ask, and draws its picture.
void deliver(const Result& result, const OutputOptions& options);

}  // namespace cli

// Options that have the same name and meaning in every sub-command.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "cli/io/result.h"

namespace cli {

inline constexpr int kDefaultDigits = 20;
inline constexpr int kMostDigits = 1'000'000;

/// What the command line asks for; the sub-command that was named leaves its work here.
struct Session {
  int digits = kDefaultDigits;
  bool quiet = false;
  std::function<void()> work;
};

struct OutputOptions {
  Format format = Format::text;
  std::string file;     // empty: standard output
  std::string picture;  // empty: none
};

/// --digits and --quiet
void add_digits_option(CLI::App& command, Session& session);
/// --output alone
CLI::Option* add_output_file_option(CLI::App& command, std::string& file);

/// The forms of a result; only a matrix can be written as a Matrix Market file.
enum class Forms { table, matrix };
/// What the ending of a file's name says; text for any other ending.
Format format_of_file(Forms forms, const std::string& file);
/// --format and --output. Without the first, a file's name that ends in .csv, .json or .mtx says the format.
void add_output_options(CLI::App& command, OutputOptions& options, Forms forms = Forms::table);
/// Accepts the words alone, and says which they are.
CLI::Validator one_of(const std::vector<std::string>& words);
/// --plot; a name that is not a picture's is refused.
void add_plot_option(CLI::App& command, OutputOptions& options);

/// Writes the result as the options ask, and draws its picture.
void deliver(const Result& result, const OutputOptions& options);

}  // namespace cli

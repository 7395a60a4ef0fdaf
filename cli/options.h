// Options that have the same name and meaning in every sub-command.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "cli/result.h"

namespace cli {

inline constexpr int kDefaultDigits = 20;
inline constexpr int kMostDigits = 1'000'000;

/// What the command line asks for; the sub-command that was named leaves its work here.
struct Session {
  int digits = kDefaultDigits;
  std::function<void()> work;
};

struct OutputOptions {
  Format format = Format::text;
  std::string file;     // empty: standard output
  std::string picture;  // empty: none
};

/// --digits
void add_digits_option(CLI::App& command, Session& session);
/// --format and --output
void add_output_options(CLI::App& command, OutputOptions& options);
/// --plot
void add_plot_option(CLI::App& command, OutputOptions& options);

/// Writes the result as the options ask.
void deliver(const Result& result, const OutputOptions& options);

}  // namespace cli

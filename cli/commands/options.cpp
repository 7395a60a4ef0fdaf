#include "cli/commands/options.h"

#include <span>

#include "cli/commands/failure.h"
#include "cli/io/output.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

struct NamedFormat {
  const char* name;
  Format format;
};
constexpr NamedFormat kFormats[] = {
    {"text", Format::text}, {"csv", Format::csv}, {"json", Format::json}, {"mtx", Format::mtx}};

std::span<const NamedFormat> formats_of(Forms forms) {
  return {kFormats, std::size(kFormats) - (forms == Forms::matrix ? 0 : 1)};
}

}  // namespace

Format format_of_file(Forms forms, const std::string& file) {
  for (const auto& [name, format] : formats_of(forms)) {
    if (file.ends_with(std::string(".") + name)) {
      return format;
    }
  }
  return Format::text;
}

void add_table_options(Command& command, TableOptions& options) {
  command.choice("--decimal", "SIGN", options.decimal, {"point", "comma"},
                 "the decimal sign (default: what the numbers have)");
  constexpr Integer kMostLines = 1'000'000;
  command.number("--skip", "LINES", options.skip, 0, kMostLines, "leave out so many lines at the top");
  command.choice("--missing", "WAY", options.missing, {"error", "drop", "interpolate"},
                 "cells that are empty, NA, NaN or null: error (default), drop or interpolate");
}

void add_matrix_options(Command& command, TableOptions& options) {
  add_table_options(command, options);
  command.flag("--mirror", options.mirror, "take a symmetric Matrix Market file that stores the upper triangle");
}

void add_output_file_option(Command& command, std::string& file) {
  command.text("--output", "FILE", file, "write the result to this file; - is standard output (default)");
}

void add_output_options(Command& command, OutputOptions& options, Forms forms) {
  Option format{"--format", "F",
                forms == Forms::matrix
                    ? "text (default), csv, json or mtx (Matrix Market); all but text hold every digit"
                    : "text (default), csv or json; csv and json hold every digit"};
  for (const NamedFormat& each : formats_of(forms)) {
    format.words.emplace_back(each.name);
  }
  format.take = [&options, forms](const std::vector<std::string>& values) {
    options.format = format_of_file(forms, "." + values.front());
    options.format_given = true;
  };
  command.add(std::move(format));
  Option output{"--output", "FILE", "write the result to this file; - is standard output (default)"};
  output.take = [&options, forms](const std::vector<std::string>& values) {
    options.file = values.front();
    if (!options.format_given) {
      options.format = format_of_file(forms, options.file);
      const std::string name = options.file.substr(options.file.find_last_of("/\\") + 1);
      const std::size_t ending = name.rfind('.');
      if (options.format == Format::text && ending != std::string::npos && ending > 0 && !name.ends_with(".txt")) {
        throw bad_input("--output: '" + name.substr(ending) + "' says no format: end the name in .txt, .csv" +
                        (forms == Forms::matrix ? ", .json or .mtx" : " or .json") + ", or give --format");
      }
    }
  };
  command.add(std::move(output));
}

void add_plot_option(Command& command, OutputOptions& options) {
  Option plot{"--plot", "FILE", "draw a picture as well (.svg, .png or .pdf; needs gnuplot), or with - by characters"};
  plot.take = [&options](const std::vector<std::string>& values) {
    options.picture = values.front();
    if (!is_picture_name(options.picture)) {
      throw bad_input("--plot: the file name must end in .svg, .png or .pdf, or be -: '" + options.picture + "'");
    }
  };
  command.add(std::move(plot));
}

void deliver(const Result& result, const OutputOptions& options) {
  const bool drawn_below = options.picture == kTextPlot;
  if (!options.picture.empty() && !drawn_below) {
    result.picture(options.picture);  // first, since a run that fails writes no result
  }
  const bool on_terminal = options.file.empty() || options.file == "-";
  if (drawn_below && on_terminal && options.format != Format::text) {
    throw bad_input("--plot -: a plot would stand in the result; --output FILE puts that elsewhere");
  }
  write_output(render(result, options.format), options.file);
  if (drawn_below) {
    if (on_terminal) {
      write_output("\n", "");
    }
    result.picture(options.picture);
  }
}

}  // namespace cli

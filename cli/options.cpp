#include "cli/options.h"

#include "cli/output.h"
#include "cli/plot.h"

namespace cli {

namespace {

// Replaces a format's name by its number, which is what the option parser wants of an enumeration; returns the
// complaint about any other text.
std::string number_of_format(std::string& name) {
  const std::pair<const char*, Format> formats[] = {
      {"text", Format::text}, {"csv", Format::csv}, {"json", Format::json}};
  for (const auto& [known, format] : formats) {
    if (name == known) {
      name = std::to_string(int(format));
      return {};
    }
  }
  return "'" + name + "' is not text, csv or json";
}

}  // namespace

void add_digits_option(CLI::App& command, Session& session) {
  command.add_option("--digits", session.digits, "working precision in decimal digits, 1 to 1000000 (default 20)")
      ->type_name("D")
      ->check(CLI::Range(1, kMostDigits).description(""));
}

void add_output_options(CLI::App& command, OutputOptions& options) {
  command.add_option("--format", options.format, "text (default), csv or json; csv and json hold every digit")
      ->type_name("F")
      ->transform(CLI::Validator(number_of_format, ""));
  command.add_option("--output", options.file, "write the result to this file instead of standard output")
      ->type_name("FILE");
}

void add_plot_option(CLI::App& command, OutputOptions& options) {
  command.add_option("--plot", options.picture, "draw a picture as well (.svg or .png; needs gnuplot)")
      ->type_name("FILE");
}

void deliver(const Result& result, const OutputOptions& options) {
  write_output(render(result, options.format), options.file);
}

}  // namespace cli

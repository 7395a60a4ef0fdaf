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

std::vector<std::string> names_of(Forms forms) {
  std::vector<std::string> names;
  for (const NamedFormat& format : formats_of(forms)) {
    names.emplace_back(format.name);
  }
  return names;
}

// The complaint about a word that is none of those; empty for one of them.
std::string complaint_about(const std::string& word, const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& known : words) {
    if (word == known) {
      return {};
    }
    list += (list.empty() ? "" : &known == &words.back() ? " or " : ", ") + known;
  }
  return "'" + word + "' is not " + list;
}

// Replaces a format's name by its number, which is what the option parser wants of an enumeration; returns the
// complaint about any other text.
std::string number_of_format(Forms forms, std::string& name) {
  std::string complaint = complaint_about(name, names_of(forms));
  for (const auto& [known, format] : formats_of(forms)) {
    if (name == known) {
      name = std::to_string(int(format));
      break;
    }
  }
  return complaint;
}

// A validator's name carries the words: the completion of command lines reads it.
std::string joined(const std::vector<std::string>& words) {
  std::string name;
  for (const std::string& word : words) {
    name += (name.empty() ? "" : "|") + word;
  }
  return name;
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

void add_digits_option(CLI::App& command, Session& session) {
  command.add_option("--digits", session.digits, "working precision in decimal digits, 1 to 1000000 (default 20)")
      ->type_name("D")
      ->check(CLI::Range(1, kMostDigits).description(""));
  command.add_flag("--quiet", session.quiet, "no progress lines on standard error");
}

CLI::Option* add_output_file_option(CLI::App& command, std::string& file) {
  return command.add_option("--output", file, "write the result to this file; - is standard output (default)")
      ->type_name("FILE");
}

void add_output_options(CLI::App& command, OutputOptions& options, Forms forms) {
  const CLI::Option* format =
      command
          .add_option("--format", options.format,
                      forms == Forms::matrix
                          ? "text (default), csv, json or mtx (Matrix Market); all but text hold every digit"
                          : "text (default), csv or json; csv and json hold every digit")
          ->type_name("F")
          ->transform(CLI::Validator([forms](std::string& name) { return number_of_format(forms, name); }, "",
                                     joined(names_of(forms))));
  add_output_file_option(command, options.file)->each([format, forms, &options](const std::string& file) {
    if (format->count() == 0) {
      options.format = format_of_file(forms, file);
    }
  });
}

CLI::Validator one_of(const std::vector<std::string>& words) {
  return {[words](const std::string& word) { return complaint_about(word, words); }, "", joined(words)};
}

void add_plot_option(CLI::App& command, OutputOptions& options) {
  command.add_option("--plot", options.picture, "draw a picture as well (.svg or .png; needs gnuplot)")
      ->type_name("FILE")
      ->each([](const std::string& file) {
        if (!is_picture_name(file)) {
          throw bad_input("--plot: the file name must end in .svg or .png: '" + file + "'");
        }
      });
}

void deliver(const Result& result, const OutputOptions& options) {
  if (!options.picture.empty()) {
    result.picture(options.picture);  // first, since a run that fails writes no result
  }
  write_output(render(result, options.format), options.file);
}

}  // namespace cli

// quarn convolve: convolution and correlation of two real sequences.
#include <algorithm>

#include "cli/commands/options.h"
#include "cli/io/sequence.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/transforms.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct ConvolveOptions {
  std::string first;
  std::string second;
  std::string column;
  std::string second_column;
  std::string mode = "full";
  bool correlate = false;
  OutputOptions output;
};

using Numbers = std::vector<QuarnFloat>;

Numbers result_of(const ConvolveOptions& options, const Numbers& a, const Numbers& b) {
  using tesk2mp::Results;
  if (options.mode == "circular") {
    if (!options.correlate) {
      return tesk2mp::circular_convolve(a, b);
    }
    // b at the places 0, n - 1, n - 2, ...
    Numbers turned(b.rbegin(), b.rend());
    std::rotate(turned.begin(), turned.end() - 1, turned.end());
    return tesk2mp::circular_convolve(a, turned);
  }
  const Results results = options.mode == "same"    ? Results::same
                          : options.mode == "valid" ? Results::valid
                                                    : Results::full;
  return (options.correlate ? tesk2mp::correlate<QuarnFloat> : tesk2mp::convolve<QuarnFloat>)(a, b, results);
}

// The k of the first result: of a correlation, how far b is moved.
std::int64_t first_index(const ConvolveOptions& options, std::size_t na, std::size_t nb) {
  const auto shorter = std::int64_t(std::min(na, nb));
  const std::int64_t skipped = options.mode == "same" ? (shorter - 1) / 2 : options.mode == "valid" ? shorter - 1 : 0;
  return skipped - (options.correlate && options.mode != "circular" ? std::int64_t(nb) - 1 : 0);
}

void run_convolve(const ConvolveOptions& options) {
  const NumberTable first = NumberTable::read(options.first);
  const NumberTable second = options.second == options.first ? first : NumberTable::read(options.second);
  const Numbers a = first.numbers(first.choose(options.column));
  const Numbers b = second.numbers(second.choose(options.second_column));
  const std::string counted = std::to_string(a.size()) + " and " + std::to_string(b.size()) + " values";
  require_memory(6 * double(a.size() + b.size()), "a convolution of " + counted);
  Numbers z;
  {
    const Progress progress = Progress::estimated("convolve", 6 * transform_cost(double(a.size() + b.size())));
    z = result_of(options, a, b);
  }
  const std::string title = std::string(options.mode == "circular" ? "Circular " : "") +
                            (options.correlate            ? options.mode == "circular" ? "correlation" : "Correlation"
                             : options.mode == "circular" ? "convolution"
                                                          : "Convolution") +
                            " of " + counted;
  const std::int64_t start = first_index(options, a.size(), b.size());

  Result result;
  result.notes = {title + " in " + first.source() + (options.second == options.first ? "" : " and " + second.source()),
                  precision_note("QuarnMPX_convolve_", false),
                  options.correlate ? "z_k = sum_i a_(k+i) b_i, exact and rounded once"
                                    : "z_k = sum_i a_i b_(k-i), exact and rounded once"};
  result.facts = {{"first", options.first},
                  {"second", options.second},
                  {"routine", "QuarnMPX_convolve_"},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"mode", options.mode}};
  result.data = {{"k", {}, true}, {"value", exact_cells(z)}};
  for (std::size_t i = 0; i < z.size(); ++i) {
    result.data[0].cells.push_back(std::to_string(start + std::int64_t(i)));
  }
  result.table = result.data;
  result.table[1] = aligned_column("value", z, largest_magnitude(z));
  result.picture = [&](const std::string& file) {
    Panel panel{title, "k", "result", {{}, z}, {}, Panel::Style::line};
    for (std::size_t i = 0; i < z.size(); ++i) {
      panel.curve.x.emplace_back(start + std::int64_t(i));
    }
    draw({panel}, file);
  };
  deliver(result, options.output);
}

constexpr const char* kFooter =
    R"(A and B hold columns of numbers as for quarn fft, and may be the same file. Each result is the
exact sum of products, rounded once: of integers it is exact where --digits suffices.

--mode full gives every k, same as many as the longer sequence has, valid those to which all of
the shorter one contributes, circular the indices modulo the common length.

Examples:
  quarn convolve signal.csv kernel.csv --mode same --digits 40
  quarn convolve data.csv data.csv --correlate --column 2 --column-b 2 --plot correlation.svg)";

void declare(Command& command) {
  auto options = std::make_shared<ConvolveOptions>();
  command.argument("A", options->first, "the first sequence; - is standard input");
  command.argument("B", options->second, "the second sequence");
  command.text("--column", "NAME", options->column, "the column of A (default: the last numeric one)");
  command.text("--column-b", "NAME", options->second_column, "the column of B (default: the last numeric one)");
  command.choice("--mode", "MODE", options->mode, {"full", "same", "valid", "circular"},
                 "which results (default: full)");
  command.flag("--correlate", options->correlate, "correlation: sums of a_(k+i) b_i");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.work = [options] { run_convolve(*options); };
}

const Registered kCommand(26, "convolve", "Convolution and correlation of two sequences", kFooter, declare);

}  // namespace

}  // namespace cli

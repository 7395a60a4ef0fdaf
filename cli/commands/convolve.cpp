// quarn convolve: convolution and correlation of two sequences.
#include <algorithm>
#include <type_traits>
#include <utility>

#include "cli/commands/options.h"
#include "cli/io/matrix_input.h"
#include "cli/io/number_table.h"
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
  TableOptions table;
  std::string mode = "full";
  bool correlate = false;
  OutputOptions output;
};

template <class T>
std::vector<T> result_of(const ConvolveOptions& options, const std::vector<T>& a, const std::vector<T>& b) {
  using tesk2mp::Results;
  if (options.mode == "circular") {
    if (!options.correlate) {
      return tesk2mp::circular_convolve(a, b);
    }
    // The conjugates of b at the places 0, n - 1, n - 2, ...
    std::vector<T> turned(b.rbegin(), b.rend());
    if constexpr (std::is_same_v<T, Complex>) {
      std::transform(turned.begin(), turned.end(), turned.begin(), [](const Complex& z) { return conj(z); });
    }
    std::rotate(turned.begin(), turned.end() - 1, turned.end());
    return tesk2mp::circular_convolve(a, turned);
  }
  const Results results = options.mode == "same"    ? Results::same
                          : options.mode == "valid" ? Results::valid
                                                    : Results::full;
  return (options.correlate ? tesk2mp::correlate<T> : tesk2mp::convolve<T>)(a, b, results);
}

// The k of the first result: of a correlation, how far b is moved.
std::int64_t first_index(const ConvolveOptions& options, std::size_t na, std::size_t nb) {
  const auto shorter = std::int64_t(std::min(na, nb));
  const std::int64_t skipped = options.mode == "same" ? (shorter - 1) / 2 : options.mode == "valid" ? shorter - 1 : 0;
  return skipped - (options.correlate && options.mode != "circular" ? std::int64_t(nb) - 1 : 0);
}

std::string convolution_title(const ConvolveOptions& options) {
  const bool circular = options.mode == "circular";
  return options.correlate ? circular ? "Circular correlation" : "Correlation"
         : circular        ? "Circular convolution"
                           : "Convolution";
}

// The result with an index for each number.
template <class T>
void convolve(const ConvolveOptions& options, const std::vector<T>& a, const std::vector<T>& b,
              const std::string& sources) {
  constexpr bool kComplex = std::is_same_v<T, Complex>;
  const std::string counted =
      std::to_string(a.size()) + " and " + std::to_string(b.size()) + (kComplex ? " complex values" : " values");
  const char* const routine = kComplex ? "QuarnMPX_zconvolve_" : "QuarnMPX_convolve_";
  require_memory((kComplex ? 24 : 6) * double(a.size() + b.size()), "a convolution of " + counted);
  std::vector<T> z;
  {
    const Progress progress =
        Progress::estimated("convolve", (kComplex ? 24 : 6) * transform_cost(double(a.size() + b.size())));
    z = result_of(options, a, b);
  }
  const std::string title = convolution_title(options) + " of " + counted;
  const std::int64_t start = first_index(options, a.size(), b.size());

  Result result;
  result.notes = {title + " in " + sources, digits_text() + ", all of them true, by " + routine,
                  std::string(!options.correlate ? "z_k = sum_i a_i b_(k-i)"
                              : kComplex         ? "z_k = sum_i a_(k+i) conj(b_i)"
                                                 : "z_k = sum_i a_(k+i) b_i") +
                      ", exact and rounded once"};
  result.facts = {{"first", options.first},
                  {"second", options.second},
                  {"routine", routine},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"mode", options.mode}};
  const std::vector<Complex> values(z.begin(), z.end());
  ResultColumn index{"k", {}, true};
  for (std::size_t i = 0; i < z.size(); ++i) {
    index.cells.push_back(std::to_string(start + std::int64_t(i)));
  }
  result.data = {index};
  result.table = {index};
  const std::vector<std::pair<const char*, std::vector<QuarnFloat>>> parts =
      kComplex ? std::vector<std::pair<const char*, std::vector<QuarnFloat>>>{{"real", real_parts(values)},
                                                                              {"imaginary", imaginary_parts(values)}}
               : std::vector<std::pair<const char*, std::vector<QuarnFloat>>>{{"value", real_parts(values)}};
  for (const auto& [name, part] : parts) {
    result.data.push_back({name, exact_cells(part)});
    result.table.push_back(aligned_column(name, part, largest_magnitude(part)));
  }
  result.picture = [&](const std::string& file) {
    std::vector<Panel> panels;
    for (const auto& [name, part] : parts) {
      Panel panel{title, "k", kComplex ? std::string(name) + " part" : "result", {{}, part}, {}, Panel::Style::line};
      for (std::size_t i = 0; i < part.size(); ++i) {
        panel.curve.x.emplace_back(start + std::int64_t(i));
      }
      panels.push_back(std::move(panel));
    }
    draw(panels, file);
  };
  deliver(result, options.output);
}

std::string described(const NumberTable& table, const std::string& column) {
  const bool parts = column.empty() && table.find("real") != nullptr && table.find("imaginary") != nullptr;
  return table.source() + (table.columns().size() == 1 || parts ? "" : table.described(table.choose(column)));
}

void run_convolve(const ConvolveOptions& options) {
  const NumberTable first = NumberTable::read(options.first, options.table);
  const NumberTable second = options.second == options.first ? first : NumberTable::read(options.second, options.table);
  const auto exactly = [](const NumberTable& table, const std::string& column) {
    const tesk2mp::Digits scope{int(kMostDigits)};
    return vector_from(table, column);
  };
  const DenseMatrix a = exactly(first, options.column);
  const DenseMatrix b = exactly(second, options.second_column);
  const std::string first_source = described(first, options.column);
  const std::string second_source = described(second, options.second_column);
  const std::string sources = first_source + (first_source == second_source ? "" : " and " + second_source);
  if (a.complex() || b.complex()) {
    convolve(options, elements_of<Complex>(a), elements_of<Complex>(b), sources);
  } else {
    convolve(options, elements_of<QuarnFloat>(a), elements_of<QuarnFloat>(b), sources);
  }
}

constexpr const char* kConvolveFooter =
    R"(A and B hold columns of numbers as for quarn fft, and may be the same file; columns real and
imaginary, or cells such as 1-2i, are complex numbers. They are taken with all their digits, and
each result is the exact sum of products, rounded once: of integers it is exact where --digits
suffices.

--mode full gives every k, same as many as the longer sequence has, valid those to which all of
the shorter one contributes, circular the indices modulo the common length.

Examples:
  quarn convolve signal.csv kernel.csv --mode same --digits 40
  quarn convolve data.csv data.csv --correlate --column 2 --column-b 2 --plot correlation.svg)";

void declare_convolve(Command& command) {
  auto options = std::make_shared<ConvolveOptions>();
  command.argument("A", options->first, "the first sequence; - is standard input");
  command.argument("B", options->second, "the second sequence");
  command.text("--column", "NAME", options->column, "the column of A (default: the last numeric one)");
  command.text("--column-b", "NAME", options->second_column, "the column of B (default: the last numeric one)");
  add_table_options(command, options->table);
  command.choice("--mode", "MODE", options->mode, {"full", "same", "valid", "circular"},
                 "which results (default: full)");
  command.flag("--correlate", options->correlate, "correlation: sums of a_(k+i) b_i");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.work = [options] { run_convolve(*options); };
}

const Registered kConvolveCommand(26, "convolve", "Convolution and correlation of two sequences", kConvolveFooter,
                                  declare_convolve);

}  // namespace

}  // namespace cli

// quarn fft: the discrete Fourier transform of a real sequence, and back.
#include "tesk2mp/fft.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "cli/commands/cfft.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/spectrum.h"
#include "cli/io/input.h"
#include "cli/io/matrix_input.h"
#include "cli/io/sequence.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/transforms.hpp"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct FftOptions {
  std::string input;
  std::vector<std::string> columns;
  TableOptions table;
  bool inverse = false;
  bool classic = false;
  SpectrumOptions shown;
  bool complex = false;
  std::string shape;
  Integer dimension = 0;
  OutputOptions output;

  // The one column, or none.
  std::string column() const { return columns.empty() ? "" : columns.front(); }
};

// In half-complex order, in place.
struct Entry {
  const char* name;
  void (*transform)(std::span<QuarnFloat> x);
};

constexpr tesk2mp::Along kUnitary = {.norm = tesk2mp::Scaling::orthonormal};

void transform_real(std::span<QuarnFloat> x) {
  const std::vector<Complex> z = tesk2mp::rfft(std::span<const QuarnFloat>(x), kUnitary);
  for (std::size_t k = 0; k < z.size(); ++k) {
    x[k] = z[k].re;
    if (k > 0 && 2 * k < x.size()) {
      x[x.size() - k] = z[k].im;
    }
  }
}

void transform_hermitian(std::span<QuarnFloat> x) {
  std::vector<Complex> z;
  for (std::size_t k = 0; 2 * k <= x.size(); ++k) {
    z.emplace_back(x[k], k > 0 && 2 * k < x.size() ? x[x.size() - k] : QuarnFloat());
  }
  tesk2mp::Along along = kUnitary;
  along.n = x.size();
  const std::vector<QuarnFloat> values = tesk2mp::irfft(z, along);
  std::copy(values.begin(), values.end(), x.begin());
}

Entry entry_for(const FftOptions& options) {
  if (options.inverse) {
    return options.classic ? Entry{"QuarnMP_c06fbf_", tesk2mp::classic::transform_hermitian}
                           : Entry{"QuarnMPX_irfft_", transform_hermitian};
  }
  return options.classic ? Entry{"QuarnMP_c06faf_", tesk2mp::classic::transform_real}
                         : Entry{"QuarnMPX_rfft_", transform_real};
}

void transform(const Entry& entry, std::vector<QuarnFloat>& x) {
  require_memory(2 * double(x.size()), "a transform of " + std::to_string(x.size()) + " values");
  const Progress progress = Progress::estimated("transform", transform_cost(double(x.size())));
  entry.transform(x);
}

std::vector<Fact> facts_of(const FftOptions& options, const Entry& entry, std::size_t n) {
  return {{"input", options.input},
          {"routine", entry.name},
          {"digits", std::to_string(QuarnDigits()), true},
          {"n", std::to_string(n), true}};
}

Spectrum spectrum_of(const Sequence& sequence, const FftOptions& options, const Entry& entry) {
  Spectrum spectrum{sequence.values, {}, fabs(sequence.step) * std::int64_t(sequence.values.size()), 0, 0};
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  apply_window(options.shown, spectrum.half_complex);
  transform(entry, spectrum.half_complex);
  for (std::size_t k = 0; k <= x.size() / 2; ++k) {
    spectrum.magnitudes.push_back(tesk2mp::abs({real_part(x, k), imaginary_part(x, k)}));
  }
  spectrum.last = x.size() / 2;
  choose_range(options.shown, spectrum);
  return spectrum;
}

void check_number(const std::string& option, const std::string& text) {
  if (!text.empty() && (!is_number(text) || !isfinite(QuarnFloat(text.c_str())))) {
    throw bad_input(option + ": '" + text + "' is not a number");
  }
}

// One column and its spectrum.
struct Analysis {
  Analysis(const FftOptions& options, const NumberTable& table, const std::string& column, const Entry& entry)
      : sequence(sequence_from(table, column)),
        spectrum(spectrum_of(sequence, options, entry)),
        scale(options.shown, spectrum) {}

  std::string counted() const {
    return cli::counted(Integer(sequence.values.size()), "value", "values") +
           (sequence.name.empty() ? "" : " of '" + sequence.name + "'");
  }

  Sequence sequence;
  Spectrum spectrum;
  MagnitudeScale scale;
};

void add_window(const FftOptions& options, Result& result) {
  if (options.shown.window != "none") {
    const std::string text =
        options.shown.window + (options.shown.window == "kaiser" ? ", beta " + options.shown.beta : "");
    result.notes.push_back("less their mean, by a window: " + text);
    result.facts.push_back({"window", text});
  }
}

// The columns of one spectrum, behind those that all of them have in common.
void append(std::vector<ResultColumn>& all, std::vector<ResultColumn> columns, const std::string& name) {
  constexpr std::size_t kCommon = 2;
  for (std::size_t i = all.empty() ? 0 : kCommon; i < columns.size(); ++i) {
    columns[i].name += i < kCommon ? "" : " " + name;
    all.push_back(std::move(columns[i]));
  }
}

void run_forward(const FftOptions& options, const NumberTable& table) {
  const Entry entry = entry_for(options);
  check_number("--beta", options.shown.beta);
  check_number("--from", options.shown.from);
  check_number("--to", options.shown.to);
  std::vector<Analysis> analyses;
  for (const std::string& column : options.columns.empty() ? std::vector<std::string>{""} : options.columns) {
    analyses.emplace_back(options, table, column, entry);
  }
  const Sequence& first = analyses.front().sequence;
  const bool alone = analyses.size() == 1;
  std::string described;
  for (const Analysis& each : analyses) {
    if (each.sequence.values.size() != first.values.size()) {
      throw bad_input(table.source() + ": columns of " + std::to_string(first.values.size()) + " and " +
                      std::to_string(each.sequence.values.size()) +
                      " numbers have no frequencies in common (--missing interpolate keeps their lengths)");
    }
    described += (described.empty() ? "" : " and") + each.sequence.described;
  }

  Result result;
  result.notes = {"Fourier transform of " + cli::counted(Integer(first.values.size()), "value", "values") + described +
                      " in " + table.source(),
                  precision_note(entry.name, options.classic)};
  result.facts = facts_of(options, entry, first.values.size());
  result.facts.push_back({"unit", first.unit});
  add_window(options, result);
  if (!first.uneven.empty()) {
    result.notes.push_back("'" + first.uneven + "' is not evenly spaced: the values are taken as samples, one by one");
  }
  for (std::size_t i = 0; i < analyses.size(); ++i) {
    const Analysis& each = analyses[i];
    Result part;
    if (options.output.format == Format::text) {
      add_text_table(part, each.sequence, each.spectrum, each.scale);
    } else {
      add_data(part, each.spectrum);
    }
    if (alone) {
      result.notes.insert(result.notes.end(), part.notes.begin(), part.notes.end());
      result.table = std::move(part.table);
      result.data = std::move(part.data);
      break;
    }
    const std::string name = each.sequence.name.empty() ? "column " + options.columns[i] : each.sequence.name;
    if (!part.notes.empty()) {
      result.notes.push_back(name + ": " + part.notes.front());
    }
    append(result.table, std::move(part.table), name);
    append(result.data, std::move(part.data), name);
  }
  result.picture = [&](const std::string& file) {
    std::vector<Panel> panels;
    for (const Analysis& each : analyses) {
      panels.push_back(panel_of(each.sequence, each.counted()));
      panels.push_back(panel_of(each.sequence, each.spectrum, options.shown, each.scale));
    }
    draw(panels, file);
  };
  deliver(result, options.output);
}

void run_inverse(const FftOptions& options, const NumberTable& table) {
  Sequence sequence;
  sequence.values = half_complex_from(table, options.column());
  const Entry entry = entry_for(options);
  transform(entry, sequence.values);
  const std::string values = counted(Integer(sequence.values.size()), "value", "values");

  Result result;
  result.notes = {"Real sequence of " + values + " from the spectrum in " + table.source(),
                  precision_note(entry.name, options.classic),
                  "x_j = 1/sqrt(N) sum_k z_k exp(+2 pi i j k/N), N = " + std::to_string(sequence.values.size())};
  result.facts = facts_of(options, entry, sequence.values.size());
  result.data = {{"sample", {}, true}, {"value", exact_cells(sequence.values)}};
  for (std::size_t j = 0; j < sequence.values.size(); ++j) {
    result.data[0].cells.push_back(std::to_string(j));
  }
  result.table = result.data;
  result.table[1] = aligned_column("value", sequence.values, largest_magnitude(sequence.values));
  result.picture = [&](const std::string& file) { draw({panel_of(sequence, values)}, file); };
  deliver(result, options.output);
}

// Whether the input is complex, though no option says so: a matrix, columns real and imaginary, or
// cells such as 1-2i.
bool takes_complex(const FftOptions& options, const std::string& text, const NumberTable& table) {
  if (options.complex || !options.shape.empty() || options.dimension != 0) {
    return true;
  }
  if (is_matrix_market(text) && table.columns().size() > 1 && options.columns.empty()) {
    return true;
  }
  if (options.columns.empty() && table.find("real") != nullptr && table.find("imaginary") != nullptr) {
    return !options.inverse;  // then that of real numbers is expected
  }
  return is_complex(table.choose(options.column()));
}

void run(const FftOptions& options) {
  const std::string text = read_input(options.input);
  const NumberTable table = NumberTable::parse(text, name_of_input(options.input), options.table);
  if (takes_complex(options, text, table)) {
    if (options.columns.size() > 1) {
      throw bad_input("--column: one column of complex numbers at a time");
    }
    if (options.shown.window != "none" || options.shown.scale != "linear" || options.shown.axis != "frequency" ||
        !options.shown.from.empty() || !options.shown.to.empty()) {
      throw bad_input(table.source() +
                      ": complex numbers, of which --window, --scale, --axis, --from and --to know nothing");
    }
    run_cfft({options.input, options.column(), options.shape, options.dimension, options.inverse, options.classic,
              options.table, options.output},
             text);
  } else if (options.inverse) {
    if (options.columns.size() > 1) {
      throw bad_input("--column: one spectrum at a time");
    }
    run_inverse(options, table);
  } else {
    run_forward(options, table);
  }
}

constexpr const char* kFftFooter = R"(FILE holds columns of numbers: CSV (commas, semicolons, tabs or blanks, with or
without a line of names, # starts a comment line), one number a line, or JSON.
Where the first column is evenly spaced it gives the unit of the periods.

--inverse reads what --format csv or json wrote (columns real and imaginary, a row
for each k), or one column in half-complex order: the real parts of z_0 ... z_(N/2),
then the imaginary parts from the highest k down to 1.

--scale log has an axis of powers of ten, --scale db shows decibels below the largest magnitude.
--from and --to leave a range of the frequencies, or of the periods with --axis period.
Complex numbers (columns real and imaginary, cells such as 1-2i), Matrix Market files, and
arrays with --shape and --dim are transformed as quarn cfft does.

Examples:
  quarn fft examples/sunspots.csv --digits 40
  quarn fft examples/sunspots.csv --plot sunspots.svg
  quarn fft examples/sunspots.csv --window hann --scale db --axis period --to 30
  quarn fft data.csv --column temperature --format csv --output spectrum.csv
  quarn fft --inverse spectrum.csv --digits 40
  seq 1 100 | quarn fft - --format json)";

void declare_fft(Command& command) {
  auto options = std::make_shared<FftOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.texts("--column", "NAME", options->columns,
                "name or number of the column (default: the last numeric one); once for each of several");
  add_table_options(command, options->table);
  command.flag("--inverse,--backward", options->inverse, "the inverse transform, from a spectrum back");
  command.flag("--classic", options->classic,
               "use the classic entry, whose constants are doubles (about 16 digits at any precision)");
  command.choice("--window", "WINDOW", options->shown.window, {"none", "hann", "hamming", "blackman", "kaiser"},
                 "what the values are multiplied by (default: none)");
  command.text("--beta", "BETA", options->shown.beta, "of the Kaiser window (default: 8.6)");
  command.choice("--axis", "AXIS", options->shown.axis, {"frequency", "period"},
                 "the axis of picture and range (default: frequency)");
  command.choice("--scale", "SCALE", options->shown.scale, {"linear", "log", "db"},
                 "of the magnitudes (default: linear)");
  command.text("--from", "X", options->shown.from, "the lowest frequency or period to show");
  command.text("--to", "X", options->shown.to, "the highest one");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.flag("--complex", options->complex,
               "take the numbers as complex, all columns as a matrix, as quarn cfft does");
  command.text("--shape", "SHAPE", options->shape, "the extents of the array, such as 4x6x5");
  command.number("--dim", "L", options->dimension, std::numeric_limits<Integer>::min(),
                 std::numeric_limits<Integer>::max(), "the one dimension to transform, from 1");
  command.work = [options] { run(*options); };
}

const Registered kFftCommand(10, "fft", "Fourier transform of a real sequence", kFftFooter, declare_fft);

}  // namespace

}  // namespace cli

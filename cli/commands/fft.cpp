// quarn fft: the discrete Fourier transform of a real sequence, and back.
#include "tesk2mp/fft.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "cli/commands/cfft.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/spectrum.h"
#include "cli/commands/true_transform.h"
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
  ProofOptions proof;
  bool complex = false;
  std::string shape;
  Integer dimension = 0;
  OutputOptions output;

  // The one column, or none.
  std::string column() const { return columns.empty() ? "" : columns.front(); }
};

// z_0 ... z_(n/2) of x, and the n numbers back; the classic entries have half-complex order.
using Bins = std::vector<Complex>;

constexpr tesk2mp::Along kUnitary = {.norm = tesk2mp::Scaling::orthonormal};

Bins bins_of(const std::vector<QuarnFloat>& half_complex) {
  Bins z;
  for (std::size_t k = 0; 2 * k <= half_complex.size(); ++k) {
    z.emplace_back(real_part(half_complex, k), imaginary_part(half_complex, k));
  }
  return z;
}

std::vector<QuarnFloat> half_complex_of(const Bins& z, std::size_t n) {
  std::vector<QuarnFloat> x(n);
  for (std::size_t k = 0; k < z.size(); ++k) {
    x[k] = z[k].re;
    if (k > 0 && 2 * k < n) {
      x[n - k] = z[k].im;
    }
  }
  return x;
}

const char* routine_for(const FftOptions& options) {
  return options.inverse   ? options.classic ? "QuarnMP_c06fbf_" : "QuarnMPX_irfft_"
         : options.classic ? "QuarnMP_c06faf_"
                           : "QuarnMPX_rfft_";
}

// With all digits that the numbers have, where they are to be proven or estimated.
int digits_of_values(const FftOptions& options) { return digits_of_data(!options.classic); }

Progress progress_of(const FftOptions& options, std::size_t n) {
  constexpr double kWithBounds = 8;
  require_memory((options.proof.wanted() ? kWithBounds : 2) * double(n),
                 "a transform of " + std::to_string(n) + " values");
  return Progress::estimated("transform", transform_cost(double(n)));
}

// By the working digits, with no word about how true they are.
Bins spectrum_once(const FftOptions& options, std::vector<QuarnFloat> x) {
  apply_window(options.shown, x);
  if (options.classic) {
    tesk2mp::classic::transform_real(x);
    return bins_of(x);
  }
  return tesk2mp::rfft(x, kUnitary);
}

std::vector<QuarnFloat> sequence_once(const FftOptions& options, const std::vector<QuarnFloat>& half_complex) {
  if (options.classic) {
    std::vector<QuarnFloat> x = half_complex;
    tesk2mp::classic::transform_hermitian(x);
    return x;
  }
  tesk2mp::Along along = kUnitary;
  along.n = half_complex.size();
  return tesk2mp::irfft(bins_of(half_complex), along);
}

std::vector<Fact> facts_of(const FftOptions& options, std::size_t n) {
  return {{"input", options.input},
          {"routine", routine_for(options)},
          {"digits", std::to_string(QuarnDigits()), true},
          {"n", std::to_string(n), true}};
}

// The note and the facts of `said` are about the digits.
Spectrum spectrum_of(const Sequence& sequence, const FftOptions& options, Result& said) {
  const std::vector<QuarnFloat>& x = sequence.values;
  Spectrum spectrum;
  {
    const tesk2mp::Digits scope(position_digits());
    spectrum.length = fabs(sequence.step) * std::int64_t(x.size());
  }
  const Progress progress = progress_of(options, x.size());
  if (options.classic) {
    const Bins z = spectrum_once(options, x);
    spectrum.half_complex = half_complex_of(z, x.size());
    for (const Complex& each : z) {
      spectrum.magnitudes.push_back(tesk2mp::abs(each));
    }
  } else {
    TrueNumbers<Complex> found = true_transform<Complex>(
        options.proof, routine_for(options), options.shown.window == "none",
        [&] { return tesk2mp::proven::spectrum(at_working_digits(x)); }, [&] { return spectrum_once(options, x); },
        said, x.size() % 2 == 0 ? 2 : 1);
    spectrum.half_complex = half_complex_of(found.values, x.size());
    spectrum.magnitudes = std::move(found.magnitudes);
    spectrum.errors = std::move(found.errors);
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
  Analysis(const FftOptions& options, const NumberTable& table, const std::string& column)
      : sequence(sequence_from(table, column, digits_of_values(options))),
        spectrum(spectrum_of(sequence, options, said)),
        scale(options.shown, spectrum) {}

  std::string counted() const {
    return cli::counted(Integer(sequence.values.size()), "value", "values") +
           (sequence.name.empty() ? "" : " of '" + sequence.name + "'");
  }

  Result said{{"", ""}, {}, {}, {}, {}, {}};  // about the digits: the second note and the last one, facts
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
  check_number("--beta", options.shown.beta);
  check_number("--from", options.shown.from);
  check_number("--to", options.shown.to);
  std::vector<Analysis> analyses;
  for (const std::string& column : options.columns.empty() ? std::vector<std::string>{""} : options.columns) {
    analyses.emplace_back(options, table, column);
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
  const bool same_digits = std::all_of(analyses.begin(), analyses.end(), [&](const Analysis& each) {
    return each.said.notes[1] == analyses.front().said.notes[1];
  });
  result.notes = {"Fourier transform of " + cli::counted(Integer(first.values.size()), "value", "values") + described +
                      " in " + table.source(),
                  options.classic ? precision_note(routine_for(options), true)
                  : same_digits   ? analyses.front().said.notes[1]
                                  : digits_text() + ", by " + routine_for(options)};
  result.facts = facts_of(options, first.values.size());
  result.facts.push_back({"unit", first.unit});
  add_window(options, result);
  if (!first.uneven.empty()) {
    result.notes.push_back("'" + first.uneven + "' is not evenly spaced: the values are taken as samples, one by one");
  }
  for (std::size_t i = 0; i < analyses.size(); ++i) {
    const Analysis& each = analyses[i];
    Result part;
    if (options.output.format == Format::text) {
      add_text_table(part, each.sequence, each.spectrum, each.scale, options.shown.with_errors);
    } else {
      add_data(part, each.spectrum);
    }
    if (alone) {
      result.facts.insert(result.facts.end(), each.said.facts.begin(), each.said.facts.end());
      result.notes.insert(result.notes.end(), each.said.notes.begin() + 2, each.said.notes.end());
      result.notes.insert(result.notes.end(), part.notes.begin(), part.notes.end());
      result.table = std::move(part.table);
      result.data = std::move(part.data);
      break;
    }
    const std::string name = each.sequence.name.empty() ? "column " + options.columns[i] : each.sequence.name;
    const std::string heading = name + ": ";
    for (std::size_t j = same_digits ? 2 : 1; j < each.said.notes.size(); ++j) {
      result.notes.push_back(heading + each.said.notes[j]);
    }
    for (const Fact& fact : each.said.facts) {
      result.facts.push_back({fact.name + " " + name, fact.value, fact.count});
    }
    for (const std::string& note : part.notes) {
      result.notes.push_back(heading + note);
    }
    append(result.table, std::move(part.table), name);
    append(result.data, std::move(part.data), name);
  }
  if (options.output.format == Format::text) {
    add_meaning(result, analyses.front().spectrum, options.shown.with_errors);
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
  const std::vector<QuarnFloat> given = [&] {
    const tesk2mp::Digits scope(digits_of_values(options));
    return half_complex_from(table, options.column());
  }();
  const std::size_t n = given.size();
  const std::string values = counted(Integer(n), "value", "values");

  Result result;
  result.notes = {"Real sequence of " + values + " from the spectrum in " + table.source(),
                  precision_note(routine_for(options), options.classic)};
  result.facts = facts_of(options, n);
  std::vector<QuarnFloat> errors;
  {
    const Progress progress = progress_of(options, n);
    if (options.classic) {
      sequence.values = sequence_once(options, given);
    } else {
      TrueNumbers<QuarnFloat> found = true_transform<QuarnFloat>(
          options.proof, routine_for(options), true,
          [&] { return tesk2mp::proven::from_spectrum(at_working_digits(bins_of(given)), n); },
          [&] { return sequence_once(options, given); }, result);
      sequence.values = std::move(found.values);
      errors = std::move(found.errors);
    }
  }
  result.notes.push_back("x_j = 1/sqrt(N) sum_k z_k exp(+2 pi i j k/N), N = " + std::to_string(n));
  result.data = {{"sample", {}, true}, {"value", exact_cells(sequence.values)}};
  for (std::size_t j = 0; j < sequence.values.size(); ++j) {
    result.data[0].cells.push_back(std::to_string(j));
  }
  result.table = result.data;
  result.table[1] = aligned_column("value", sequence.values, largest_magnitude(sequence.values));
  if (!errors.empty()) {
    add_errors(result, errors, "value", options.proof.errors);
  }
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

void run(FftOptions options) {
  options.proof.start();
  options.shown.with_errors = options.proof.errors;
  if (options.classic && options.proof.insisted) {
    throw bad_input("--proven: the classic entry's constants are doubles");
  }
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
              options.table, options.proof, options.output},
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

The numbers are taken with all their digits, and D digits of every part are proven; one of
which not even the sign is known, D digits below the largest, is 0. Behind a window two
computations agree to the digits instead, and so they do with more than some 1100 digits.

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
  add_true_digits(command, options->proof);
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

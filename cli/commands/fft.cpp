// quarn fft: the discrete Fourier transform of a real sequence, and back.
#include "tesk2mp/fft.hpp"

#include <algorithm>
#include <limits>
#include <optional>

#include "cli/commands/cfft.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
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
  std::string column;
  TableOptions table;
  bool inverse = false;
  bool classic = false;
  std::string window = "none";
  std::string beta = "8.6";
  std::string axis = "frequency";
  std::string scale = "linear";
  std::string from;
  std::string to;
  bool complex = false;
  std::string shape;
  Integer dimension = 0;
  OutputOptions output;
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

// The spectrum with what follows from it, for k = 0 ... N/2.
struct Spectrum {
  std::vector<QuarnFloat> half_complex;
  std::vector<QuarnFloat> magnitudes;
  QuarnFloat length;  // of the whole sequence, in its unit
  std::size_t first = 0;
  std::size_t last = 0;  // the k that are asked for

  QuarnFloat period(std::size_t k) const { return length / std::int64_t(k); }
  QuarnFloat frequency(std::int64_t k) const { return QuarnFloat(k) / length; }
};

tesk2mp::WindowKind kind_of(const std::string& window) {
  using tesk2mp::WindowKind;
  return window == "hann"       ? WindowKind::hann
         : window == "hamming"  ? WindowKind::hamming
         : window == "blackman" ? WindowKind::blackman
                                : WindowKind::kaiser;
}

// The mean would spread over its neighbours.
void apply_window(const FftOptions& options, std::vector<QuarnFloat>& x) {
  if (options.window == "none" || x.empty()) {
    return;
  }
  QuarnFloat mean;
  for (const QuarnFloat& value : x) {
    mean += value;
  }
  mean /= std::int64_t(x.size());
  const std::vector<QuarnFloat> w =
      tesk2mp::window(kind_of(options.window), x.size(), true, QuarnFloat(options.beta.c_str()));
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = (x[i] - mean) * w[i];
  }
}

// Leaves the k within --from and --to, which are on the axis that was chosen.
void choose_range(const FftOptions& options, Spectrum& spectrum) {
  const bool periods = options.axis == "period";
  const auto outside = [&](std::size_t k) {
    if (periods && k == 0) {
      return !options.to.empty();
    }
    const QuarnFloat x = periods ? spectrum.period(k) : spectrum.frequency(std::int64_t(k));
    return (!options.from.empty() && x < QuarnFloat(options.from.c_str())) ||
           (!options.to.empty() && x > QuarnFloat(options.to.c_str()));
  };
  while (spectrum.first < spectrum.last && outside(spectrum.first)) {
    ++spectrum.first;
  }
  while (spectrum.last > spectrum.first && outside(spectrum.last)) {
    --spectrum.last;
  }
  if (outside(spectrum.first)) {
    throw bad_input("--from, --to: the spectrum has no " + options.axis + " between them");
  }
}

// Magnitudes on the scale that was chosen; zeros have none on a logarithmic one.
class MagnitudeScale {
 public:
  MagnitudeScale(const FftOptions& options, const Spectrum& spectrum)
      : linear_(options.scale == "linear"),
        decibels_(options.scale == "db"),
        largest_(largest_magnitude(spectrum.magnitudes)) {}

  std::string name() const { return linear_ ? "magnitude" : decibels_ ? "decibels" : "log10 magnitude"; }
  std::string title() const {
    return linear_ ? "magnitude |z_k|" : decibels_ ? "|z_k| in decibels below the largest" : "log10 of |z_k|";
  }
  bool is_linear() const { return linear_; }
  std::optional<QuarnFloat> operator()(const QuarnFloat& magnitude) const {
    if (linear_) {
      return magnitude;
    }
    if (magnitude == 0) {
      return std::nullopt;
    }
    return decibels_ ? 20 * log10(magnitude / largest_) : log10(magnitude);
  }

 private:
  bool linear_;
  bool decibels_;
  QuarnFloat largest_;
};

Spectrum spectrum_of(const Sequence& sequence, const FftOptions& options, const Entry& entry) {
  Spectrum spectrum{sequence.values, {}, fabs(sequence.step) * std::int64_t(sequence.values.size()), 0, 0};
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  apply_window(options, spectrum.half_complex);
  transform(entry, spectrum.half_complex);
  for (std::size_t k = 0; k <= x.size() / 2; ++k) {
    spectrum.magnitudes.push_back(tesk2mp::abs({real_part(x, k), imaginary_part(x, k)}));
  }
  spectrum.last = x.size() / 2;
  choose_range(options, spectrum);
  return spectrum;
}

std::string period_note(const Sequence& sequence, const Spectrum& spectrum) {
  constexpr std::size_t kMostPeaks = 3;
  std::string text;
  for (const std::size_t k : peaks_of(spectrum.magnitudes, kMostPeaks)) {
    text +=
        (text.empty() ? "; highest peaks at " : ", ") + brief(spectrum.period(k)) + " (k = " + std::to_string(k) + ")";
  }
  return "periods in units of " + sequence.unit + text;
}

void add_text_table(Result& result, const Sequence& sequence, const Spectrum& spectrum, const MagnitudeScale& scale) {
  constexpr int kMagnitudeDigits = 8;
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  const std::size_t half = x.size() / 2;
  const QuarnFloat largest = largest_magnitude(spectrum.magnitudes);
  const NumberFormat part(largest, QuarnDigits());
  const int whole_digits = largest == 0 ? 1 : int(decimal_exponent(largest)) + 1;
  const int digits = std::min(std::max(kMagnitudeDigits, whole_digits), QuarnDigits());
  const NumberFormat magnitude(scale.is_linear() ? largest : QuarnFloat(100), digits, kBriefDigits);
  const QuarnFloat shortest = spectrum.period(std::max<std::size_t>(half, 1));
  const NumberFormat period(spectrum.length,
                            kBriefDigits + int(decimal_exponent(spectrum.length) - decimal_exponent(shortest)),
                            kBriefDigits);
  result.table = {{"k", {}}, {"period", {}}, {"real", {}}, {"imaginary", {}}, {scale.name(), {}}};
  for (std::size_t k = spectrum.first; k <= spectrum.last; ++k) {
    const std::optional<QuarnFloat> scaled = scale(spectrum.magnitudes[k]);
    const std::string cells[] = {std::to_string(k), k == 0 ? "-" : period(spectrum.period(k)), part(real_part(x, k)),
                                 part(imaginary_part(x, k)), scaled ? magnitude(*scaled) : "-"};
    for (std::size_t i = 0; i < result.table.size(); ++i) {
      result.table[i].cells.push_back(cells[i]);
    }
  }
  for (ResultColumn& column : result.table) {
    align_points(column.cells);
  }
  const std::string n = std::to_string(x.size());
  result.notes.push_back(period_note(sequence, spectrum));
  result.notes.push_back("z_k = 1/sqrt(N) sum_j x_j exp(-2 pi i j k/N), N = " + n +
                         "; z_(N-k) is the conjugate of z_k");
}

void add_data(Result& result, const Spectrum& spectrum) {
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  const std::size_t n = x.size();
  result.data = {{"k", {}, true}, {"frequency", {}}, {"real", {}}, {"imaginary", {}}, {"magnitude", {}}};
  for (std::size_t k = 0; k < n; ++k) {
    const std::int64_t signed_k = std::int64_t(k) - (2 * k <= n ? 0 : std::int64_t(n));
    const std::size_t partner = std::min(k, n - k);
    if (partner < spectrum.first || partner > spectrum.last) {
      continue;
    }
    const std::string cells[] = {std::to_string(k), spectrum.frequency(signed_k).to_string(),
                                 real_part(x, k).to_string(), imaginary_part(x, k).to_string(),
                                 spectrum.magnitudes[partner].to_string()};
    for (std::size_t i = 0; i < result.data.size(); ++i) {
      result.data[i].cells.push_back(cells[i]);
    }
  }
}

Panel panel_of(const Sequence& sequence, const std::string& title) {
  Panel panel;
  panel.title = "The " + title;
  panel.x_title = sequence.unit;
  panel.y_title = sequence.quantity();
  panel.curve.y = sequence.values;
  for (std::size_t i = 0; i < sequence.values.size(); ++i) {
    panel.curve.x.push_back(sequence.start + sequence.step * std::int64_t(i));
  }
  return panel;
}

Panel panel_of(const Sequence& sequence, const Spectrum& spectrum, const FftOptions& options,
               const MagnitudeScale& scale) {
  const bool periods = options.axis == "period";
  // Of nearly the same height they would cover each other.
  const std::size_t most_labels = scale.is_linear() || periods ? 3 : 1;
  const auto place = [&](std::size_t k) { return periods ? spectrum.period(k) : spectrum.frequency(std::int64_t(k)); };
  Panel panel;
  panel.title = "Spectrum of " + sequence.quantity() + ", highest peaks with their periods";
  panel.x_title = periods ? "period (" + sequence.unit + ")" : "frequency (cycles per " + sequence.unit + ")";
  panel.y_title = scale.title();
  panel.style = scale.is_linear() && !periods && options.from.empty() ? Panel::Style::area : Panel::Style::line;
  for (std::size_t k = std::max<std::size_t>(spectrum.first, 1); k <= spectrum.last; ++k) {
    if (const auto magnitude = scale(spectrum.magnitudes[k])) {
      panel.curve.x.push_back(place(k));
      panel.curve.y.push_back(*magnitude);
    }
  }
  for (const std::size_t k : peaks_of(spectrum.magnitudes, most_labels)) {
    if (k >= spectrum.first && k <= spectrum.last) {
      panel.labels.push_back(
          {place(k), *scale(spectrum.magnitudes[k]), brief(spectrum.period(k)) + " " + sequence.unit});
    }
  }
  return panel;
}

void check_number(const std::string& option, const std::string& text) {
  if (!text.empty() && (!is_number(text) || !isfinite(QuarnFloat(text.c_str())))) {
    throw bad_input(option + ": '" + text + "' is not a number");
  }
}

void run_forward(const FftOptions& options) {
  const NumberTable table = NumberTable::read(options.input, options.table);
  const Sequence sequence = sequence_from(table, options.column);
  const Entry entry = entry_for(options);
  check_number("--beta", options.beta);
  check_number("--from", options.from);
  check_number("--to", options.to);
  const Spectrum spectrum = spectrum_of(sequence, options, entry);
  const MagnitudeScale scale(options, spectrum);
  const std::string counted =
      std::to_string(sequence.values.size()) + " values" + (sequence.name.empty() ? "" : " of '" + sequence.name + "'");

  Result result;
  result.notes = {"Fourier transform of " + counted + " in " + table.source(),
                  precision_note(entry.name, options.classic)};
  result.facts = facts_of(options, entry, sequence.values.size());
  result.facts.push_back({"unit", sequence.unit});
  if (options.window != "none") {
    const std::string text = options.window + (options.window == "kaiser" ? ", beta " + options.beta : "");
    result.notes.push_back("less their mean, by a window: " + text);
    result.facts.push_back({"window", text});
  }
  if (!sequence.uneven.empty()) {
    result.notes.push_back("'" + sequence.uneven +
                           "' is not evenly spaced: the values are taken as samples, one by one");
  }
  if (options.output.format == Format::text) {
    add_text_table(result, sequence, spectrum, scale);
  } else {
    add_data(result, spectrum);
  }
  result.picture = [&](const std::string& file) {
    draw({panel_of(sequence, counted), panel_of(sequence, spectrum, options, scale)}, file);
  };
  deliver(result, options.output);
}

void run_inverse(const FftOptions& options) {
  const NumberTable table = NumberTable::read(options.input, options.table);
  Sequence sequence;
  sequence.values = half_complex_from(table, options.column);
  const Entry entry = entry_for(options);
  transform(entry, sequence.values);
  const std::string counted = std::to_string(sequence.values.size()) + " values";

  Result result;
  result.notes = {"Real sequence of " + counted + " from the spectrum in " + table.source(),
                  precision_note(entry.name, options.classic),
                  "x_j = 1/sqrt(N) sum_k z_k exp(+2 pi i j k/N), N = " + std::to_string(sequence.values.size())};
  result.facts = facts_of(options, entry, sequence.values.size());
  result.data = {{"sample", {}, true}, {"value", exact_cells(sequence.values)}};
  for (std::size_t j = 0; j < sequence.values.size(); ++j) {
    result.data[0].cells.push_back(std::to_string(j));
  }
  result.table = result.data;
  result.table[1] = aligned_column("value", sequence.values, largest_magnitude(sequence.values));
  result.picture = [&](const std::string& file) { draw({panel_of(sequence, counted)}, file); };
  deliver(result, options.output);
}

constexpr const char* kFooter = R"(FILE holds columns of numbers: CSV (commas, semicolons, tabs or blanks, with or
without a line of names, # starts a comment line), one number a line, or JSON.
Where the first column is evenly spaced it gives the unit of the periods.

--inverse reads what --format csv or json wrote (columns real and imaginary, a row
for each k), or one column in half-complex order: the real parts of z_0 ... z_(N/2),
then the imaginary parts from the highest k down to 1.

--scale log and db show logarithms of the magnitudes, and decibels below the largest one.
--from and --to leave a range of the frequencies, or of the periods with --axis period.
--complex, --shape and --dim read and transform as quarn cfft does: complex numbers, and
arrays of several dimensions.

Examples:
  quarn fft examples/sunspots.csv --digits 40
  quarn fft examples/sunspots.csv --plot sunspots.svg
  quarn fft examples/sunspots.csv --window hann --scale db --axis period --to 30
  quarn fft data.csv --column temperature --format csv --output spectrum.csv
  quarn fft --inverse spectrum.csv --digits 40
  seq 1 100 | quarn fft - --format json)";

void declare(Command& command) {
  auto options = std::make_shared<FftOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the column (default: the last numeric one)");
  add_table_options(command, options->table);
  command.flag("--inverse,--backward", options->inverse, "the inverse transform, from a spectrum back");
  command.flag("--classic", options->classic,
               "use the classic entry, whose constants are doubles (about 16 digits at any precision)");
  command.choice("--window", "WINDOW", options->window, {"none", "hann", "hamming", "blackman", "kaiser"},
                 "what the values are multiplied by (default: none)");
  command.text("--beta", "BETA", options->beta, "of the Kaiser window (default: 8.6)");
  command.choice("--axis", "AXIS", options->axis, {"frequency", "period"},
                 "the axis of picture and range (default: frequency)");
  command.choice("--scale", "SCALE", options->scale, {"linear", "log", "db"}, "of the magnitudes (default: linear)");
  command.text("--from", "X", options->from, "the lowest frequency or period to show");
  command.text("--to", "X", options->to, "the highest one");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.flag("--complex", options->complex, "complex numbers, as quarn cfft reads them");
  command.text("--shape", "SHAPE", options->shape, "the extents of the array, such as 4x6x5");
  command.number("--dim", "L", options->dimension, std::numeric_limits<Integer>::min(),
                 std::numeric_limits<Integer>::max(), "the one dimension to transform, from 1");
  command.work = [options] {
    if (options->complex || !options->shape.empty() || options->dimension != 0) {
      run_cfft({options->input, options->column, options->shape, options->dimension, options->inverse, options->classic,
                options->output});
    } else if (options->inverse) {
      run_inverse(*options);
    } else {
      run_forward(*options);
    }
  };
}

const Registered kCommand(10, "fft", "Fourier transform of a real sequence", kFooter, declare);

}  // namespace

}  // namespace cli

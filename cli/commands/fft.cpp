// quarn fft: the discrete Fourier transform of a real sequence, and back.
#include "tesk2mp/fft.hpp"

#include <algorithm>

#include "cli/commands/options.h"
#include "cli/io/sequence.h"
#include "cli/plot/plot.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

struct FftOptions {
  std::string input;
  std::string column;
  bool inverse = false;
  bool classic = false;
  OutputOptions output;
};

struct Entry {
  const char* name;
  void (*transform)(std::span<QuarnFloat> x);
};

Entry entry_for(const FftOptions& options) {
  if (options.inverse) {
    return options.classic ? Entry{"QuarnMP_c06fbf_", tesk2mp::classic::transform_hermitian}
                           : Entry{"QuarnMPX_c06fbf_", tesk2mp::transform_hermitian};
  }
  return options.classic ? Entry{"QuarnMP_c06faf_", tesk2mp::classic::transform_real}
                         : Entry{"QuarnMPX_c06faf_", tesk2mp::transform_real};
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

  QuarnFloat period(std::size_t k) const { return length / std::int64_t(k); }
  QuarnFloat frequency(std::int64_t k) const { return QuarnFloat(k) / length; }
};

Spectrum spectrum_of(const Sequence& sequence, const Entry& entry) {
  Spectrum spectrum{sequence.values, {}, fabs(sequence.step) * std::int64_t(sequence.values.size())};
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  transform(entry, spectrum.half_complex);
  for (std::size_t k = 0; k <= x.size() / 2; ++k) {
    spectrum.magnitudes.push_back(tesk2mp::abs({real_part(x, k), imaginary_part(x, k)}));
  }
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

void add_text_table(Result& result, const Sequence& sequence, const Spectrum& spectrum) {
  constexpr int kMagnitudeDigits = 8;
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  const std::size_t half = x.size() / 2;
  const QuarnFloat largest = largest_magnitude(spectrum.magnitudes);
  const NumberFormat part(largest, QuarnDigits());
  const int whole_digits = largest == 0 ? 1 : int(decimal_exponent(largest)) + 1;
  const NumberFormat magnitude(largest, std::min(std::max(kMagnitudeDigits, whole_digits), QuarnDigits()),
                               kBriefDigits);
  const NumberFormat period(
      spectrum.length, kBriefDigits + int(decimal_exponent(spectrum.length) - decimal_exponent(spectrum.period(half))),
      kBriefDigits);
  result.table = {{"k", {}}, {"period", {}}, {"real", {}}, {"imaginary", {}}, {"magnitude", {}}};
  for (std::size_t k = 0; k <= half; ++k) {
    const std::string cells[] = {std::to_string(k), k == 0 ? "-" : period(spectrum.period(k)), part(real_part(x, k)),
                                 part(imaginary_part(x, k)), magnitude(spectrum.magnitudes[k])};
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
    const std::string cells[] = {std::to_string(k), spectrum.frequency(signed_k).to_string(),
                                 real_part(x, k).to_string(), imaginary_part(x, k).to_string(),
                                 spectrum.magnitudes[std::min(k, n - k)].to_string()};
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

Panel panel_of(const Sequence& sequence, const Spectrum& spectrum) {
  constexpr std::size_t kMostLabels = 3;
  Panel panel;
  panel.title = "Spectrum of " + sequence.quantity() + ", highest peaks with their periods";
  panel.x_title = "frequency (cycles per " + sequence.unit + ")";
  panel.y_title = "magnitude |z_k|";
  panel.style = Panel::Style::area;
  for (std::size_t k = 1; k < spectrum.magnitudes.size(); ++k) {
    panel.curve.x.push_back(spectrum.frequency(std::int64_t(k)));
    panel.curve.y.push_back(spectrum.magnitudes[k]);
  }
  for (const std::size_t k : peaks_of(spectrum.magnitudes, kMostLabels)) {
    panel.labels.push_back(
        {panel.curve.x[k - 1], panel.curve.y[k - 1], brief(spectrum.period(k)) + " " + sequence.unit});
  }
  return panel;
}

void run_forward(const FftOptions& options) {
  const NumberTable table = NumberTable::read(options.input);
  const Sequence sequence = sequence_from(table, options.column);
  const Entry entry = entry_for(options);
  const Spectrum spectrum = spectrum_of(sequence, entry);
  const std::string counted =
      std::to_string(sequence.values.size()) + " values" + (sequence.name.empty() ? "" : " of '" + sequence.name + "'");

  Result result;
  result.notes = {"Fourier transform of " + counted + " in " + table.source(),
                  precision_note(entry.name, options.classic)};
  result.facts = facts_of(options, entry, sequence.values.size());
  result.facts.push_back({"unit", sequence.unit});
  if (options.output.format == Format::text) {
    add_text_table(result, sequence, spectrum);
  } else {
    add_data(result, spectrum);
  }
  result.picture = [&](const std::string& file) {
    draw({panel_of(sequence, counted), panel_of(sequence, spectrum)}, file);
  };
  deliver(result, options.output);
}

void run_inverse(const FftOptions& options) {
  const NumberTable table = NumberTable::read(options.input);
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

Examples:
  quarn fft examples/sunspots.csv --digits 40
  quarn fft examples/sunspots.csv --plot sunspots.svg
  quarn fft data.csv --column temperature --format csv --output spectrum.csv
  quarn fft --inverse spectrum.csv --digits 40
  seq 1 100 | quarn fft - --format json)";

void declare(Command& command) {
  auto options = std::make_shared<FftOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the column (default: the last numeric one)");
  command.flag("--inverse,--backward", options->inverse, "the inverse transform, from a spectrum back");
  command.flag("--classic", options->classic,
               "use the classic entry, whose constants are doubles (about 16 digits at any precision)");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  command.work = [options] { options->inverse ? run_inverse(*options) : run_forward(*options); };
}

const Registered kCommand(10, "fft", "Fourier transform of a real sequence", kFooter, declare);

}  // namespace

}  // namespace cli

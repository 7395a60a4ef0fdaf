#include "cli/commands/spectrum.h"

#include <algorithm>

#include "cli/commands/failure.h"
#include "tesk2mp/transforms.hpp"

namespace cli {

namespace {

tesk2mp::WindowKind kind_of(const std::string& window) {
  using tesk2mp::WindowKind;
  return window == "hann"       ? WindowKind::hann
         : window == "hamming"  ? WindowKind::hamming
         : window == "blackman" ? WindowKind::blackman
                                : WindowKind::kaiser;
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

}  // namespace

void apply_window(const SpectrumOptions& options, std::vector<QuarnFloat>& x) {
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

void choose_range(const SpectrumOptions& options, Spectrum& spectrum) {
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

void add_text_table(Result& result, const Sequence& sequence, const Spectrum& spectrum, const MagnitudeScale& scale,
                    bool with_errors) {
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
  if (with_errors && !spectrum.errors.empty()) {
    result.table.push_back({"error", brief_cells({spectrum.errors.begin() + std::ptrdiff_t(spectrum.first),
                                                  spectrum.errors.begin() + std::ptrdiff_t(spectrum.last) + 1})});
  }
  result.notes.push_back(period_note(sequence, spectrum));
}

void add_meaning(Result& result, const Spectrum& spectrum, bool with_errors) {
  if (with_errors && !spectrum.errors.empty()) {
    result.notes.emplace_back("error: so far away is the exact z_k at most");
  }
  result.notes.push_back("z_k = 1/sqrt(N) sum_j x_j exp(-2 pi i j k/N), N = " +
                         std::to_string(spectrum.half_complex.size()) + "; z_(N-k) is the conjugate of z_k");
}

void add_data(Result& result, const Spectrum& spectrum) {
  const std::vector<QuarnFloat>& x = spectrum.half_complex;
  const std::size_t n = x.size();
  result.data = {{"k", {}, true}, {"frequency", {}}, {"real", {}}, {"imaginary", {}}, {"magnitude", {}}};
  if (!spectrum.errors.empty()) {
    result.data.push_back({"error", {}});
  }
  for (std::size_t k = 0; k < n; ++k) {
    const std::int64_t signed_k = std::int64_t(k) - (2 * k <= n ? 0 : std::int64_t(n));
    const std::size_t partner = std::min(k, n - k);
    if (partner < spectrum.first || partner > spectrum.last) {
      continue;
    }
    const std::string cells[] = {std::to_string(k),
                                 (spectrum.frequency(signed_k) * 1).to_string(),
                                 real_part(x, k).to_string(),
                                 imaginary_part(x, k).to_string(),
                                 spectrum.magnitudes[partner].to_string(),
                                 spectrum.errors.empty() ? "" : spectrum.errors[partner].to_string()};
    for (std::size_t i = 0; i < result.data.size(); ++i) {
      result.data[i].cells.push_back(cells[i]);
    }
  }
}

Panel panel_of(const Sequence& sequence, const std::string& title) {
  Panel panel;
  panel.title = "The " + title;
  panel.x_title = sequence.axis;
  panel.y_title = sequence.quantity();
  panel.curve.y = sequence.values;
  for (std::size_t i = 0; i < sequence.values.size(); ++i) {
    panel.curve.x.push_back(sequence.start + sequence.step * std::int64_t(i));
  }
  return panel;
}

Panel panel_of(const Sequence& sequence, const Spectrum& spectrum, const SpectrumOptions& options,
               const MagnitudeScale& scale) {
  const bool periods = options.axis == "period";
  // Of nearly the same height they would cover each other.
  const std::size_t most_labels = scale.is_linear() || periods ? 3 : 1;
  const auto place = [&](std::size_t k) { return periods ? spectrum.period(k) : spectrum.frequency(std::int64_t(k)); };
  Panel panel;
  panel.title = "Spectrum of " + sequence.quantity() + ", highest peaks with their periods";
  panel.x_title = periods ? "period (" + sequence.unit + ")" : "frequency (cycles per " + sequence.unit + ")";
  panel.y_title = scale.title();
  panel.exponents = scale.is_logarithmic();
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

}  // namespace cli

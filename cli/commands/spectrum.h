// Spectra of real sequences as results and pictures: windows, ranges, scales.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/io/result.h"
#include "cli/io/sequence.h"
#include "cli/plot/plot.h"
#include "tesk2mp/error.hpp"

namespace cli {

struct SpectrumOptions {
  std::string window = "none";
  std::string beta = "8.6";
  std::string axis = "frequency";
  std::string scale = "linear";
  std::string from;
  std::string to;
  bool with_errors = false;  // for people too
};

/// The spectrum with what follows from it, for k = 0 ... N/2.
struct Spectrum {
  std::vector<QuarnFloat> half_complex;
  std::vector<QuarnFloat> magnitudes;
  QuarnFloat length;  // of the whole sequence, in its unit
  std::size_t first = 0;
  std::size_t last = 0;            // the k that are asked for
  std::vector<QuarnFloat> errors;  // of z_k at most, where they are proven

  /// With digits to spare, for what is rounded when it is written.
  QuarnFloat period(std::size_t k) const {
    const tesk2mp::Digits scope(position_digits());
    return length / std::int64_t(k);
  }
  QuarnFloat frequency(std::int64_t k) const {
    const tesk2mp::Digits scope(position_digits());
    return QuarnFloat(k) / length;
  }
};

/// Multiplies by the window, of which the mean, which would spread over its neighbours, is taken away before.
void apply_window(const SpectrumOptions& options, std::vector<QuarnFloat>& x);

/// Leaves the k within --from and --to, which are on the axis that was chosen. Throws Failure when there are none.
void choose_range(const SpectrumOptions& options, Spectrum& spectrum);

/// Magnitudes on the scale that was chosen; zeros have none on a logarithmic one.
class MagnitudeScale {
 public:
  MagnitudeScale(const SpectrumOptions& options, const Spectrum& spectrum)
      : linear_(options.scale == "linear"),
        decibels_(options.scale == "db"),
        largest_(largest_magnitude(spectrum.magnitudes)) {}

  std::string name() const { return linear_ ? "magnitude" : decibels_ ? "decibels" : "log10 magnitude"; }
  std::string title() const { return decibels_ ? "|z_k| in decibels below the largest" : "magnitude |z_k|"; }
  bool is_linear() const { return linear_; }
  bool is_logarithmic() const { return !linear_ && !decibels_; }
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

/// For people: k, period, parts and magnitudes, with the highest peaks in a note.
void add_text_table(Result& result, const Sequence& sequence, const Spectrum& spectrum, const MagnitudeScale& scale,
                    bool with_errors);
/// What the columns of such tables are, in notes.
void add_meaning(Result& result, const Spectrum& spectrum, bool with_errors);
/// For programs: every digit of all N coefficients.
void add_data(Result& result, const Spectrum& spectrum);

Panel panel_of(const Sequence& sequence, const std::string& title);
Panel panel_of(const Sequence& sequence, const Spectrum& spectrum, const SpectrumOptions& options,
               const MagnitudeScale& scale);

}  // namespace cli

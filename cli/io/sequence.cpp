#include "cli/io/sequence.h"

#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/io/result.h"
#include "tesk2mp/error.hpp"

namespace cli {

namespace {

// Positions are read with digits of their own: at few working digits neighbouring years would round to one number.
constexpr int kPositionDigits = 40;

// Takes start and step from a column whose numbers are evenly spaced up to a hundredth of a step, which lets positions
// pass that were rounded when they were written, such as months in years.
void take_positions(Sequence& sequence, const NumberTable& table, const NumberTable::Column& column) {
  const bool dropped = sequence.values.size() != column.cells.size();
  if (dropped || column.cells.size() < 2 || !std::all_of(column.cells.begin(), column.cells.end(), is_number)) {
    return;
  }
  const tesk2mp::Digits scope(std::max(kPositionDigits, QuarnDigits()));
  const std::vector<QuarnFloat> positions = table.numbers(column);
  const Integer intervals = Integer(positions.size() - 1);
  const QuarnFloat step = (positions.back() - positions.front()) / intervals;
  const QuarnFloat tolerance = fabs(step) / 100;
  const std::string name = column.name.empty() ? "column 1" : column.name;
  if (step == 0) {
    sequence.uneven = name;
    return;
  }
  for (Integer i = 1; i < intervals; ++i) {
    if (fabs(positions[std::size_t(i)] - positions.front() - step * i) > tolerance) {
      sequence.uneven = name;
      return;
    }
  }
  sequence.start = positions.front();
  sequence.step = step;
  sequence.unit = name;
}

// Whether z_k and z_(N-k) are conjugates; k = 0 and k = N/2 are their own partners.
bool mirrored(const std::vector<QuarnFloat>& real, const std::vector<QuarnFloat>& imaginary, std::size_t k) {
  const std::size_t partner = k == 0 ? 0 : real.size() - k;
  return real[k] == real[partner] && imaginary[k] == -imaginary[partner];
}

}  // namespace

Sequence sequence_from(const NumberTable& table, const std::string& column) {
  const NumberTable::Column& chosen = table.choose(column);
  Sequence sequence;
  sequence.name = chosen.name;
  sequence.values = table.numbers(chosen);
  if (&chosen != &table.columns().front()) {
    take_positions(sequence, table, table.columns().front());
  }
  return sequence;
}

std::vector<QuarnFloat> half_complex_from(const NumberTable& table, const std::string& column) {
  const NumberTable::Column* real_column = table.find("real");
  const NumberTable::Column* imaginary_column = table.find("imaginary");
  if (!column.empty() || real_column == nullptr || imaginary_column == nullptr) {
    return table.numbers(table.choose(column));
  }
  std::vector<QuarnFloat> x = table.numbers(*real_column);
  const std::vector<QuarnFloat> imaginary = table.numbers(*imaginary_column);
  const std::size_t n = x.size();
  if (imaginary.size() != n) {
    throw bad_input(table.source() + ": " + std::to_string(n) + " real and " + std::to_string(imaginary.size()) +
                    " imaginary parts");
  }
  for (std::size_t k = 0; k <= n / 2 && k < n; ++k) {
    if (!mirrored(x, imaginary, k)) {
      throw bad_input(table.place(*imaginary_column, k) + ": z_" + std::to_string(k) + " is not the conjugate of z_" +
                      std::to_string(k == 0 ? 0 : n - k) + ", as the spectrum of " + std::to_string(n) +
                      " real numbers needs (a row for each k from 0)");
    }
  }
  for (std::size_t k = 1; 2 * k < n; ++k) {
    x[n - k] = imaginary[k];
  }
  return x;
}

QuarnFloat real_part(const std::vector<QuarnFloat>& x, std::size_t k) { return x[std::min(k, x.size() - k)]; }

QuarnFloat imaginary_part(const std::vector<QuarnFloat>& x, std::size_t k) {
  const std::size_t n = x.size();
  if (k == 0 || 2 * k == n) {
    return 0;
  }
  return 2 * k < n ? x[n - k] : 0 - x[k];
}

std::vector<std::size_t> peaks_of(const std::vector<QuarnFloat>& magnitudes, std::size_t most) {
  std::vector<std::size_t> peaks;
  for (std::size_t k = 1; k < magnitudes.size(); ++k) {
    const bool rises = k == 1 || magnitudes[k - 1] < magnitudes[k];
    const bool falls = k + 1 == magnitudes.size() || magnitudes[k + 1] < magnitudes[k];
    if (rises && falls) {
      peaks.push_back(k);
    }
  }
  std::stable_sort(peaks.begin(), peaks.end(),
                   [&](std::size_t a, std::size_t b) { return magnitudes[b] < magnitudes[a]; });
  const QuarnFloat noise = largest_magnitude(magnitudes) * QuarnFloat(1, -std::clamp(QuarnDigits() - 3, 1, 12));
  if (!peaks.empty() && magnitudes[peaks.front()] <= noise) {
    return {};
  }
  while (!peaks.empty() && (peaks.size() > most || magnitudes[peaks.back()] * 3 < magnitudes[peaks.front()])) {
    peaks.pop_back();
  }
  return peaks;
}

}  // namespace cli

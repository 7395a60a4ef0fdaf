#include "cli/io/sequence.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "cli/commands/failure.h"
#include "cli/io/dates.h"
#include "cli/io/result.h"
#include "tesk2mp/error.hpp"

namespace cli {

namespace {

// The cells of a column in the rows whose number is kept.
std::vector<std::string> kept_cells(const NumberTable& table, const NumberTable::Column& column,
                                    const NumberTable::Column& values) {
  std::vector<std::string> cells;
  for (std::size_t row = 0; row < std::min(column.cells.size(), values.cells.size()); ++row) {
    if (!table.drops(values.cells[row])) {
      cells.push_back(column.cells[row]);
    }
  }
  return cells;
}

// Dates, all of them or nothing.
std::vector<Moment> moments_of(const std::vector<std::string>& cells) {
  std::vector<Moment> moments;
  for (const std::string& cell : cells) {
    const std::optional<Moment> moment = parse_moment(cell);
    if (!moment) {
      return {};
    }
    moments.push_back(*moment);
  }
  return moments;
}

// Numbers that are evenly spaced up to a hundredth of a step, which lets positions pass that were rounded when they
// were written, such as months in years: the first one and the step; nothing for others.
std::optional<std::pair<QuarnFloat, QuarnFloat>> even_numbers(const std::vector<std::string>& cells) {
  std::vector<QuarnFloat> positions;
  std::transform(cells.begin(), cells.end(), std::back_inserter(positions), to_number);
  const auto intervals = Integer(positions.size() - 1);
  const QuarnFloat step = (positions.back() - positions.front()) / intervals;
  const QuarnFloat tolerance = fabs(step) / 100;
  for (Integer i = 1; i < intervals; ++i) {
    if (fabs(positions[std::size_t(i)] - positions.front() - step * i) > tolerance) {
      return std::nullopt;
    }
  }
  return step == 0 ? std::nullopt : std::optional(std::pair(positions.front(), step));
}

// Takes start and step from a first column of numbers or dates.
void take_positions(Sequence& sequence, const NumberTable& table, const NumberTable::Column& values) {
  const NumberTable::Column& column = table.columns().front();
  const std::vector<std::string> cells = kept_cells(table, column, values);
  if (cells.size() < 2 || cells.size() != sequence.values.size()) {
    return;
  }
  const tesk2mp::Digits scope(position_digits());
  const std::string name = column.name.empty() ? "column 1" : column.name;
  if (std::all_of(cells.begin(), cells.end(), is_number)) {
    if (const auto even = even_numbers(cells)) {
      sequence.start = even->first;
      sequence.step = even->second;
      sequence.unit = name;
      sequence.axis = name;
    } else {
      sequence.uneven = name;
    }
  } else if (const std::vector<Moment> moments = moments_of(cells); !moments.empty()) {
    if (const auto even = steps_of(moments)) {
      sequence.step = even->step;
      sequence.unit = even->unit;
      sequence.axis = even->unit + "s since " + cells.front();
    } else {
      sequence.uneven = name;
    }
  }
}

// Whether z_k and z_(N-k) are conjugates; k = 0 and k = N/2 are their own partners.
bool mirrored(const std::vector<QuarnFloat>& real, const std::vector<QuarnFloat>& imaginary, std::size_t k) {
  const std::size_t partner = k == 0 ? 0 : real.size() - k;
  return real[k] == real[partner] && imaginary[k] == -imaginary[partner];
}

}  // namespace

Sequence sequence_from(const NumberTable& table, const std::string& column, int digits) {
  const NumberTable::Column& chosen = table.choose(column);
  Sequence sequence;
  sequence.name = chosen.name;
  sequence.described = table.described(chosen);
  {
    const tesk2mp::Digits scope(digits);
    sequence.values = table.numbers(chosen);
  }
  if (&chosen != &table.columns().front()) {
    take_positions(sequence, table, chosen);
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
                      " real numbers needs (a row for each k from 0; --complex takes other spectra)");
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

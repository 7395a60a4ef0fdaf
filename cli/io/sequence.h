// Real sequences and their Hermitian spectra, between tables of numbers and the transforms' arrays.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "cli/commands/command.h"
#include "cli/io/number_table.h"
#include "quarn/quarnfloat.h"

namespace cli {

/// Evenly spaced samples. Where the input has a first column of evenly spaced numbers (years, say) or dates, those
/// count; otherwise the samples themselves do, from 0.
struct Sequence {
  std::string name;       // of the column; may be empty
  std::string described;  // which column it is, for headings
  std::vector<QuarnFloat> values;
  std::string unit = "sample";
  QuarnFloat start;
  QuarnFloat step = 1;
  std::string axis = "sample";  // the title of an axis of positions
  std::string uneven;           // the name of a first column of numbers or dates that are not evenly spaced

  std::string quantity() const { return name.empty() ? "value" : name; }
};

/// The digits of positions and what follows from them: at few working digits neighbouring years would round to one
/// number.
inline int position_digits() { return std::clamp(QuarnDigits() + 5, 40, int(kMostDigits)); }

/// Takes a sequence from a table: the column named, or the last numeric one; its values rounded to so many digits.
/// Throws Failure.
Sequence sequence_from(const NumberTable& table, const std::string& column, int digits);

/// Half-complex order from a table: from columns "real" and "imaginary" with a row for each of the N coefficients, of
/// which the second half must mirror the first, else from the one column named, or the last numeric one, as it stands.
/// Throws Failure.
std::vector<QuarnFloat> half_complex_from(const NumberTable& table, const std::string& column);

/// z_k of the N coefficients that x holds in half-complex order, k = 0 ... N-1.
QuarnFloat real_part(const std::vector<QuarnFloat>& x, std::size_t k);
QuarnFloat imaginary_part(const std::vector<QuarnFloat>& x, std::size_t k);

/// The indices, strongest first, of up to `most` local maxima among magnitudes 1, 2, ... that reach a third of the
/// highest of them; none when all of them are rounding errors beside magnitude 0.
std::vector<std::size_t> peaks_of(const std::vector<QuarnFloat>& magnitudes, std::size_t most);

}  // namespace cli

// Dates as positions of the rows of a table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "quarn/quarnfloat.h"

namespace cli {

/// A date and time of the Gregorian calendar.
struct Moment {
  int year = 0;
  unsigned month = 1;
  unsigned day = 1;
  QuarnFloat seconds;  // since 1970, without leap seconds
};

/// 2024-03, 2024-03-31, 2024/03/31 or 31.03.2024, the last three with a time behind a blank or a T: 12:30, 12:30:15,
/// 12:30:15.5, and Z or an offset such as +01:00. Nothing for any other text.
std::optional<Moment> parse_moment(std::string_view text);

/// Equal steps from one moment to the next, in the largest unit of which they are a whole number, or in seconds.
struct Steps {
  std::string unit;  // year, month, day, hour, minute, second
  QuarnFloat step;
};

/// Nothing where the steps differ. Ends of months are equal steps, and so is the same day of each month.
std::optional<Steps> steps_of(const std::vector<Moment>& moments);

}  // namespace cli

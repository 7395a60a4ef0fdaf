#include "cli/io/dates.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "cli/io/number_text.h"

namespace cli {

namespace {

/// Reads a text from its front.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool at_end() const { return rest_.empty(); }
  bool take(char c) {
    const bool found = rest_.starts_with(c);
    rest_.remove_prefix(found ? 1 : 0);
    return found;
  }
  /// As many digits as these, or -1.
  int number(std::size_t least, std::size_t most) {
    std::size_t length = 0;
    int value = 0;
    for (; length < most && length < rest_.size() && is_digit(rest_[length]); ++length) {
      value = 10 * value + (rest_[length] - '0');
    }
    rest_.remove_prefix(length);
    return length < least ? -1 : value;
  }
  /// The digits behind the point of a second.
  std::string fraction() {
    const std::size_t length = std::size_t(std::find_if_not(rest_.begin(), rest_.end(), is_digit) - rest_.begin());
    std::string digits(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return digits;
  }

 private:
  std::string_view rest_;
};

constexpr std::int64_t kDay = 86400;

bool read_date(Reader& reader, Moment& moment) {
  const int first = reader.number(1, 4);
  const bool by_points = reader.take('.');
  const char separator = by_points ? '.' : reader.take('-') ? '-' : reader.take('/') ? '/' : '\0';
  if (first < 0 || separator == '\0') {
    return false;
  }
  const int month = reader.number(by_points ? 1 : 2, 2);
  const bool has_more = reader.take(separator);
  const int last = has_more ? reader.number(by_points ? 4 : 2, by_points ? 4 : 2) : 1;
  if (!has_more && separator != '-') {
    return false;
  }
  moment.year = by_points ? last : first;
  const int day = by_points ? first : last;
  if (month < 1 || day < 1 || moment.year < 1 || (!by_points && first < 1000)) {
    return false;
  }
  moment.month = unsigned(month);
  moment.day = unsigned(day);
  return true;
}

/// Seconds of the day; nothing when it is no time.
std::optional<QuarnFloat> read_time(Reader& reader) {
  const int hours = reader.number(1, 2);
  const int minutes = reader.take(':') ? reader.number(2, 2) : -1;
  const bool has_seconds = reader.take(':');
  const int seconds = has_seconds ? reader.number(2, 2) : 0;
  if (hours < 0 || hours > 24 || minutes < 0 || minutes > 59 || seconds < 0 || seconds > 60) {
    return std::nullopt;
  }
  QuarnFloat total = (60 * hours + minutes) * 60 + seconds;
  if (has_seconds && (reader.take('.') || reader.take(','))) {
    const std::string digits = reader.fraction();
    if (digits.empty()) {
      return std::nullopt;
    }
    total += QuarnFloat(("0." + digits).c_str());
  }
  const int sign = reader.take('+') ? -1 : reader.take('-') ? 1 : 0;
  if (sign == 0) {
    reader.take('Z');
    return total;
  }
  const int offset_hours = reader.number(2, 2);
  reader.take(':');
  const int offset_minutes = reader.number(2, 2);
  if (offset_hours < 0 || offset_minutes < 0) {
    return std::nullopt;
  }
  return total + sign * 60 * (60 * offset_hours + offset_minutes);
}

bool is_end_of_month(const Moment& moment) {
  using namespace std::chrono;
  return unsigned((year(moment.year) / month(moment.month) / last).day()) == moment.day;
}

std::int64_t months_of(const Moment& moment) { return 12 * std::int64_t(moment.year) + moment.month; }

/// The time of the day, which the same days of months have in common.
QuarnFloat time_of(const Moment& moment) { return moment.seconds - floor(moment.seconds / kDay) * kDay; }

}  // namespace

std::optional<Moment> parse_moment(std::string_view text) {
  Reader reader(text);
  Moment moment;
  if (!read_date(reader, moment)) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date(std::chrono::year(moment.year), std::chrono::month(moment.month),
                                         std::chrono::day(moment.day));
  if (!date.ok()) {
    return std::nullopt;
  }
  moment.seconds = QuarnFloat(std::int64_t(std::chrono::sys_days(date).time_since_epoch().count())) * kDay;
  if (reader.take('T') || reader.take(' ')) {
    const std::optional<QuarnFloat> time = read_time(reader);
    if (!time) {
      return std::nullopt;
    }
    moment.seconds += *time;
  }
  return reader.at_end() ? std::optional(moment) : std::nullopt;
}

std::optional<Steps> steps_of(const std::vector<Moment>& moments) {
  if (moments.size() < 2) {
    return std::nullopt;
  }
  const auto all = [&](const auto& is_such) {
    for (std::size_t i = 1; i < moments.size(); ++i) {
      if (!is_such(moments[i - 1], moments[i])) {
        return false;
      }
    }
    return true;
  };
  const std::int64_t months = months_of(moments[1]) - months_of(moments[0]);
  const bool by_months = months != 0 && all([&](const Moment& a, const Moment& b) {
                           const bool same_day = a.day == b.day || (is_end_of_month(a) && is_end_of_month(b));
                           return months_of(b) - months_of(a) == months && same_day && time_of(a) == time_of(b);
                         });
  if (by_months) {
    return months % 12 == 0 ? Steps{"year", months / 12} : Steps{"month", months};
  }
  const QuarnFloat step = moments[1].seconds - moments[0].seconds;
  if (step == 0 || !all([&](const Moment& a, const Moment& b) { return b.seconds - a.seconds == step; })) {
    return std::nullopt;
  }
  struct Unit {
    const char* name;
    std::int64_t seconds;
  };
  for (const auto& [name, seconds] : {Unit{"day", kDay}, Unit{"hour", 3600}, Unit{"minute", 60}}) {
    const QuarnFloat whole = step / seconds;
    if (trunc(whole) == whole) {
      return Steps{name, whole};
    }
  }
  return Steps{"second", step};
}

}  // namespace cli

#include "cli/io/result.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "cli/io/json.h"
#include "cli/io/one_line.h"
#include "cli/system/progress.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

std::string formatted(const char* format, const QuarnFloat& value) {
  std::string text(std::size_t(QFsnprintf(nullptr, 0, format, value)), '\0');
  QFsnprintf(text.data(), text.size() + 1, format, value);
  return text;
}

std::string with_decimals(const QuarnFloat& value, long decimals, char conversion) {
  return formatted(("%." + std::to_string(decimals) + conversion).c_str(), value);
}

// The exponent of a number in scientific form, 0 of an infinity or NaN.
long exponent_of(const std::string& text) {
  const std::size_t mark = text.find_first_of("eE");
  return mark == std::string::npos ? 0 : std::strtol(text.c_str() + mark + 1, nullptr, 10);
}

constexpr long kSmallestFixed = -5;
constexpr int kFewDigits = 17;

std::string render_text(const Result& result) {
  std::string text;
  for (const std::string& note : result.notes) {
    text += "# " + one_line(note) + "\n";
  }
  if (result.table.empty()) {
    return text;
  }
  std::vector<std::size_t> widths;
  for (const ResultColumn& column : result.table) {
    widths.push_back(column.name.size());
    for (const std::string& cell : column.cells) {
      widths.back() = std::max(widths.back(), cell.size());
    }
  }
  const auto add_line = [&](const auto& cell_of) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string& cell = cell_of(result.table[i]);
      const std::string filling(widths[i] - cell.size(), ' ');
      text += (i == 0 ? "" : "  ") + (result.table[i].words ? cell + filling : filling + cell);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += "\n";
  };
  add_line([](const ResultColumn& column) -> const std::string& { return column.name; });
  for (std::size_t row = 0; row < result.table.front().cells.size(); ++row) {
    QuarnCheckInterrupt();
    add_line([row](const ResultColumn& column) -> const std::string& { return column.cells[row]; });
  }
  return text;
}

std::string csv_cell(const std::string& cell) {
  if (cell.find_first_of(",\"\n") == std::string::npos) {
    return cell;
  }
  std::string quoted = "\"";
  for (const char c : cell) {
    quoted.append(c == '"' ? 2 : 1, c);
  }
  return quoted + "\"";
}

std::string render_csv(const Result& result) {
  std::string text;
  const auto add_line = [&](const auto& cell_of) {
    for (std::size_t i = 0; i < result.data.size(); ++i) {
      text += (i == 0 ? "" : ",") + csv_cell(cell_of(result.data[i]));
    }
    text += "\n";
  };
  add_line([](const ResultColumn& column) -> const std::string& { return column.name; });
  const std::size_t rows = result.data.empty() ? 0 : result.data.front().cells.size();
  for (std::size_t row = 0; row < rows; ++row) {
    QuarnCheckInterrupt();
    add_line([row](const ResultColumn& column) -> const std::string& { return column.cells[row]; });
  }
  return text;
}

}  // namespace

std::string render(const Result& result, Format format) {
  switch (format) {
    case Format::csv:
      return render_csv(result);
    case Format::json:
      return render_json(result);
    case Format::mtx:
      return result.matrix_market();
    case Format::text:
      break;
  }
  return render_text(result);
}

std::vector<std::string> exact_cells(const std::vector<QuarnFloat>& values) {
  std::vector<std::string> cells;
  cells.reserve(values.size());
  Progress progress("writing numbers", double(values.size()));
  for (const QuarnFloat& value : values) {
    cells.push_back(value.to_string());
    progress.advance();
  }
  return cells;
}

long decimal_exponent(const QuarnFloat& value) {
  return exponent_of(with_decimals(value, std::max(kFewDigits, QuarnDigits() - 1), 'e'));
}

NumberFormat::NumberFormat(const QuarnFloat& largest, int significant, int least)
    : significant_(significant), least_(std::min(least, significant)) {
  constexpr long kLargestFixed = 15;
  const long exponent = largest == 0 ? 0 : decimal_exponent(largest);
  decimals_ = significant - 1 - exponent;
  fixed_ = exponent >= kSmallestFixed && exponent <= kLargestFixed && decimals_ >= 0;
}

std::string NumberFormat::operator()(const QuarnFloat& value) const {
  if (!fixed_) {
    return with_decimals(value, significant_ - 1, 'e');
  }
  return value == 0 || !isfinite(value) ? with_decimals(value, decimals_, 'f') : smaller(value);
}

// A number that is not above the largest. Digits behind the common place that are all zero are left out.
std::string NumberFormat::smaller(const QuarnFloat& value) const {
  std::string scientific = with_decimals(value, least_ - 1, 'e');
  const long exponent = exponent_of(scientific);
  const long decimals = std::max(decimals_, least_ - 1 - exponent);
  if (exponent < kSmallestFixed && exponent < -decimals_) {
    return scientific;
  }
  std::string text = with_decimals(value, decimals, 'f');
  long kept = decimals;
  while (kept > decimals_ && text.back() == '0') {
    text.pop_back();
    --kept;
  }
  if (text.back() == '.') {
    text.pop_back();
  }
  return kept > decimals_ && exponent < kSmallestFixed ? scientific : text;
}

void align_points(std::vector<std::string>& cells) {
  const auto behind_point = [](const std::string& cell) {
    const std::size_t point = cell.find('.');
    return point == std::string::npos ? std::size_t(0) : cell.size() - point;
  };
  const auto in_line = [](const std::string& cell) {
    return !cell.empty() && std::isdigit(static_cast<unsigned char>(cell.back())) != 0 &&
           cell.find_first_not_of("+-.0123456789") == cell.npos;
  };
  std::size_t longest = 0;
  for (const std::string& cell : cells) {
    longest = in_line(cell) ? std::max(longest, behind_point(cell)) : longest;
  }
  for (std::string& cell : cells) {
    cell.append(in_line(cell) ? longest - behind_point(cell) : 0, ' ');
  }
}

ResultColumn aligned_column(const std::string& name, const std::vector<QuarnFloat>& values, const QuarnFloat& largest) {
  ResultColumn column{name, {}};
  std::transform(values.begin(), values.end(), std::back_inserter(column.cells), NumberFormat(largest, QuarnDigits()));
  align_points(column.cells);
  return column;
}

std::vector<std::string> brief_cells(const std::vector<QuarnFloat>& values) {
  std::vector<std::string> cells;
  std::transform(values.begin(), values.end(), std::back_inserter(cells), brief);
  return cells;
}

std::string digits_text() { return std::to_string(QuarnDigits()) + (QuarnDigits() == 1 ? " digit" : " digits"); }

std::string precision_note(const std::string& routine, bool classic) {
  return digits_text() + ", by " + routine +
         (classic ? " (classic entry: its constants are doubles, about 16 digits are true)"
                  : " (constants true to the working precision)");
}

std::string counted(Integer number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

QuarnFloat largest_magnitude(const std::vector<QuarnFloat>& values) {
  QuarnFloat largest;
  for (const QuarnFloat& value : values) {
    if (largest < fabs(value)) {
      largest = fabs(value);
    }
  }
  return largest;
}

std::string brief(const QuarnFloat& value) {
  return formatted(("%." + std::to_string(kBriefDigits) + "g").c_str(), value);
}

}  // namespace cli

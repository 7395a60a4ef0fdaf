#include "cli/io/number_table.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <type_traits>
#include <utility>

#include "cli/commands/failure.h"
#include "cli/io/input.h"
#include "cli/io/json.h"
#include "cli/io/matrix_market.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"
#include "tesk2mp/error.hpp"

namespace cli {

namespace {

constexpr std::string_view kBlanks = " \t\r\f\v";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// A character a separator of cells, or ' ' for any run of blanks.
char separator_of(std::string_view line, bool decimal_commas) {
  for (const char candidate : {';', ',', '\t'}) {
    if ((candidate != ',' || !decimal_commas) && line.find(candidate) != std::string_view::npos) {
      return candidate;
    }
  }
  return ' ';
}

// One line's cells. A cell in double quotes may hold the separator, and a quote as two of them. Nothing where a quote
// is not closed.
std::optional<std::vector<std::string>> cells_of(std::string_view line, char separator) {
  std::vector<std::string> cells;
  std::size_t at = 0;
  for (;;) {
    while (at < line.size() && line[at] != separator && kBlanks.find(line[at]) != std::string_view::npos) {
      ++at;
    }
    std::string cell;
    if (at < line.size() && line[at] == '"') {
      for (++at;; ++at) {
        if (at >= line.size()) {
          return std::nullopt;
        }
        if (line[at] == '"' && line.substr(at, 2) != "\"\"") {
          ++at;
          break;
        }
        at += line[at] == '"';
        cell += line[at];
      }
    }
    const std::size_t end =
        std::min(separator == ' ' ? line.find_first_of(kBlanks, at) : line.find(separator, at), line.size());
    if (at < end) {
      cell += trimmed(line.substr(at, end - at));
    }
    cells.push_back(with_plain_signs(std::move(cell)));
    at = end;
    if (separator == ' ') {
      at = std::min(line.find_first_not_of(kBlanks, at), line.size());
      if (at == line.size()) {
        return cells;
      }
    } else if (at == line.size()) {
      return cells;
    } else {
      ++at;
    }
  }
}

// The line without a comment: a # behind a blank, outside quotes.
std::string_view without_comment(std::string_view line) {
  bool quoted = false;
  for (std::size_t at = 1; at < line.size(); ++at) {
    quoted = quoted != (line[at - 1] == '"');
    if (line[at] == '#' && !quoted && kBlanks.find(line[at - 1]) != std::string_view::npos) {
      return line.substr(0, at);
    }
  }
  return line;
}

bool is_not_finite(std::string_view cell) {
  std::string word;
  for (const char c : cell) {
    if (c != '+' && c != '-') {
      word += char(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return word == "nan" || word == "inf" || word == "infinity";
}

// Names are words: a first line such as "5x" is a damaged number, not a line of names.
bool are_names(const std::vector<std::string>& cells) {
  bool words = false;
  for (const std::string& cell : cells) {
    if (is_missing(cell)) {
      continue;
    }
    if (is_number(cell) || is_not_finite(cell) || is_digit(cell[0]) ||
        (cell.size() > 1 && std::string_view("+-.").find(cell[0]) != std::string_view::npos && is_digit(cell[1]))) {
      return false;
    }
    words = true;
  }
  return words;
}

std::string shown(const std::string& cell) { return cell.empty() ? "nothing" : shown_text(cell); }

std::vector<NumberTable::Column> columns_of(const DenseMatrix& matrix) {
  std::vector<NumberTable::Column> columns(static_cast<std::size_t>(matrix.columns()));
  const std::vector<Complex> elements = elements_of<Complex>(matrix);
  for (std::size_t k = 0; k < elements.size(); ++k) {
    columns[k / std::size_t(matrix.rows())].cells.push_back(complex_text(elements[k]));
  }
  return columns;
}

}  // namespace

NumberTable NumberTable::read(const std::string& file, const TableOptions& options) {
  return parse(read_input(file), name_of_input(file), options);
}

NumberTable NumberTable::parse(const std::string& text, const std::string& source, const TableOptions& options) {
  NumberTable table;
  table.source_ = source;
  table.options_ = options;
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (is_matrix_market(text)) {
    table.columns_ = columns_of(parse_dense_matrix(text, source, options.mirror));
  } else if (first != std::string::npos && (text[first] == '{' || text[first] == '[')) {
    table.columns_ = columns_of_json(text, source);
  } else {
    table.parse_lines(text);
    table.settle_decimals();
  }
  if (table.columns_.empty() || table.columns_.front().cells.empty()) {
    throw bad_input(source + ": no numbers in it");
  }
  return table;
}

void NumberTable::parse_lines(const std::string& text) {
  std::size_t number = 0;
  bool started = false;
  bool named = false;
  const auto parted = [&](std::string_view line) {
    std::optional<std::vector<std::string>> cells = cells_of(line, separator_);
    if (!cells) {
      throw bad_input(source_ + ":" + std::to_string(number) + ": a quotation mark is not closed");
    }
    return std::move(*cells);
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view whole = std::string_view(text).substr(at, end - at);
    const std::string_view line = trimmed(whole);
    at = end + 1;
    ++number;
    if (number <= std::size_t(options_.skip) || line.empty() || line[0] == '#' || line[0] == '%') {
      continue;
    }
    if (!started) {
      separator_ = separator_of(line, options_.decimal == "comma");
    }
    // A cell before the first tab or behind the last one may be empty.
    const auto cells_in = [&](std::string_view part) {
      std::vector<std::string> cells = parted(part);
      while (separator_ == '\t' && cells.size() > 1 && cells.back().empty() &&
             (!started || cells.size() > columns_.size())) {
        cells.pop_back();
      }
      return cells;
    };
    const std::string_view given = separator_ == '\t' ? whole : line;
    std::vector<std::string> cells = cells_in(without_comment(given));
    if (!started) {
      const bool names = are_names(cells);
      cells = names ? cells_in(given) : cells;  // of names # is a character like others
      started = true;
      columns_.resize(cells.size());
      if (names) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
          columns_[i].name = std::move(cells[i]);
        }
        named = true;
        continue;
      }
    }
    const bool below_names = std::exchange(named, false);
    // Units; the first column, of dates perhaps, may have none.
    const auto known = cells.begin() + (cells.size() > 1 && cells.front().empty() ? 1 : 0);
    if (below_names && are_names(cells) && std::none_of(known, cells.end(), is_missing)) {
      continue;
    }
    if (cells.size() != columns_.size()) {
      throw bad_input(source_ + ":" + std::to_string(number) + ": " + std::to_string(cells.size()) +
                      (cells.size() == 1 ? " cell" : " cells") + " where the lines before have " +
                      std::to_string(columns_.size()) +
                      (separator_ == ',' && cells.size() == 2 * columns_.size()
                           ? "; if these are decimal commas, semicolons or tabs have to part the cells"
                           : ""));
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
      columns_[i].cells.push_back(std::move(cells[i]));
    }
    lines_.push_back(number);
  }
  drop_indentation();
}

// Lines that all start with a tab have no column before it.
void NumberTable::drop_indentation() {
  const auto is_empty = [](const std::string& cell) { return cell.empty(); };
  while (separator_ == '\t' && columns_.size() > 1 && columns_.front().name.empty() &&
         std::all_of(columns_.front().cells.begin(), columns_.front().cells.end(), is_empty)) {
    columns_.erase(columns_.begin());
  }
}

// Commas stand for points where no number has a point.
void NumberTable::settle_decimals() {
  const auto find_cell = [&](const auto& is_such) -> std::pair<const Column*, std::size_t> {
    for (const Column& column : columns_) {
      const auto cell = std::find_if(column.cells.begin(), column.cells.end(), is_such);
      if (cell != column.cells.end()) {
        return {&column, std::size_t(cell - column.cells.begin())};
      }
    }
    return {nullptr, 0};
  };
  const auto has_point = [](const std::string& cell) {
    return cell.find('.') != std::string::npos && is_complex_number(cell);
  };
  if (options_.decimal == "point" || find_cell(has_decimal_comma).first == nullptr) {
    return;
  }
  if (const auto [column, row] = find_cell(has_point); column != nullptr) {
    throw bad_input(place(*column, row) + ": '" + column->cells[row] +
                    "' has a point, and other numbers have commas: " +
                    (options_.decimal.empty() ? "--decimal comma or --decimal point says which are right"
                                              : "it does not go with --decimal comma"));
  }
  for (Column& column : columns_) {
    for (std::string& cell : column.cells) {
      if (has_decimal_comma(cell)) {
        cell = with_decimal_point(std::move(cell));
      }
    }
  }
}

const NumberTable::Column* NumberTable::find(const std::string& name) const {
  for (const Column& column : columns_) {
    if (column.name == name) {
      return &column;
    }
  }
  constexpr std::size_t kLongestPosition = 9;
  if (!name.empty() && name.size() <= kLongestPosition && std::all_of(name.begin(), name.end(), is_digit)) {
    const std::size_t position = std::stoul(name);
    if (position >= 1 && position <= columns_.size()) {
      return &columns_[position - 1];
    }
  }
  return nullptr;
}

bool NumberTable::holds_numbers(const Column& column) const {
  const auto first = std::find_if_not(column.cells.begin(), column.cells.end(), is_missing);
  if (first == column.cells.end()) {
    return false;
  }
  if (has_groups(*first)) {
    throw bad_input(place(column, std::size_t(first - column.cells.begin())) + ": " + shown(*first) +
                    " is not a number" +
                    (separator_ == ',' && first->find(' ') != std::string::npos
                         ? " (--decimal comma, if commas are decimal; --column takes another column)"
                         : " (numbers have no thousands separators; --column takes another column)"));
  }
  return is_complex_number(*first);
}

bool NumberTable::is_about_errors(const Column& column) const {
  const std::string& first = columns_.front().name;
  const bool has_errors = find("error") != nullptr;
  const auto is_about = [has_errors](const Column& each) {
    return each.name == "error" || each.name.starts_with("error ") || (each.name == "count" && has_errors);
  };
  const bool is_result = (first == "k" || first == "i" || first == "sample") &&
                         !std::all_of(columns_.begin() + 1, columns_.end(), is_about);
  return is_result && is_about(column);
}

const NumberTable::Column& NumberTable::choose(const std::string& name) const {
  if (!name.empty()) {
    const Column* column = find(name);
    if (column == nullptr) {
      std::string names;
      for (const Column& each : columns_) {
        names +=
            (names.empty() ? "" : ", ") + (each.name.empty() ? std::to_string(&each - columns_.data() + 1) : each.name);
      }
      throw bad_input(source_ + ": no column '" + name + "', there is: " + names);
    }
    return *column;
  }
  const Column* chosen = nullptr;
  for (auto column = columns_.rbegin(); column != columns_.rend(); ++column) {
    if (chosen != nullptr && separator_ != ',') {
      break;
    }
    // Parted at their decimal commas, numbers in front are refused, not passed over.
    if (holds_numbers(*column) && chosen == nullptr && !is_about_errors(*column)) {
      chosen = &*column;
    }
  }
  if (chosen != nullptr) {
    return *chosen;
  }
  throw bad_input(place(columns_.back(), 0) + ": " + shown(columns_.back().cells.front()) + " is not a number");
}

std::string NumberTable::described(const Column& column) const {
  const bool several = columns_.size() > 1;
  const auto missing =
      options_.missing == "error" ? 0 : std::count_if(column.cells.begin(), column.cells.end(), is_missing);
  std::string position =
      several ? "column " + std::to_string(&column - columns_.data() + 1) + " of " + std::to_string(columns_.size())
              : "";
  if (missing > 0) {
    position += (several ? ", " : "") + std::to_string(missing) +
                (options_.missing == "drop" ? " missing left out" : " missing interpolated");
  }
  if (std::any_of(columns_.begin(), columns_.end(), [this](const Column& each) { return is_about_errors(each); })) {
    position += ", bounds of errors passed over";
  }
  if (column.name.empty()) {
    return position.empty() ? "" : several ? " of " + position : " (" + position + ")";
  }
  return " of '" + column.name + "'" + (position.empty() ? "" : " (" + position + ")");
}

void NumberTable::drop_incomplete_rows() {
  const std::size_t rows = columns_.front().cells.size();
  const auto is_short = [rows](const Column& column) { return column.cells.size() != rows; };
  if (options_.missing != "drop" || std::any_of(columns_.begin(), columns_.end(), is_short)) {
    return;
  }
  std::size_t kept = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    if (std::any_of(columns_.begin(), columns_.end(),
                    [&](const Column& each) { return is_missing(each.cells[row]); })) {
      continue;
    }
    for (Column& column : columns_) {
      std::swap(column.cells[kept], column.cells[row]);
    }
    if (!lines_.empty()) {
      lines_[kept] = lines_[row];
    }
    ++kept;
  }
  if (kept == 0) {
    throw bad_input(source_ + ": no row without a missing number");
  }
  for (Column& column : columns_) {
    column.cells.resize(kept);
  }
}

std::string NumberTable::place(const Column& column, std::size_t row) const {
  if (!lines_.empty()) {
    return source_ + ":" + std::to_string(lines_[row]);
  }
  const std::string position = "[" + std::to_string(row + 1) + "]";
  return source_ + ": " + (column.name.empty() ? "element " : column.name) + position;
}

Failure NumberTable::without_number(const Column& column, std::size_t row) const {
  const std::string& cell = column.cells[row];
  return bad_input(place(column, row) + ": " + shown(cell) + " is not a " + (is_not_finite(cell) ? "finite " : "") +
                   "number" + (is_missing(cell) ? " (--missing drop or interpolate goes on without it)" : ""));
}

template <class T>
std::vector<T> NumberTable::values(const Column& column, bool (*is_value)(std::string_view),
                                   T (*to_value)(const std::string&)) const {
  constexpr std::size_t kParts = std::is_same_v<T, Complex> ? 2 : 1;
  {
    // Read with all their digits, numbers have those that are written.
    std::size_t longest = 1;
    for (const std::string& cell : column.cells) {
      longest = std::max(longest, cell.size());
    }
    const tesk2mp::Digits scope(int(std::min(std::size_t(QuarnDigits()), longest)));
    require_memory(double(kParts * column.cells.size()), std::to_string(column.cells.size()) + " numbers");
  }
  Progress progress("reading numbers", double(column.cells.size()));
  std::vector<T> values;
  values.reserve(column.cells.size());
  const bool interpolates = options_.missing == "interpolate";
  std::size_t known = 0;  // one behind the last row with a number
  for (std::size_t row = 0; row < column.cells.size(); ++row) {
    const std::string& cell = column.cells[row];
    const bool skips = options_.missing != "error" && is_missing(cell);
    if (skips && (!interpolates || (known > 0 && row + 1 < column.cells.size()))) {
      continue;
    }
    if (!is_value(cell)) {
      throw without_number(column, row);
    }
    // On the straight line from the last number to this one.
    const std::size_t gap = interpolates ? row - known : 0;
    const T next = to_value(cell);
    if (gap > 0) {
      constexpr int kMostInterpolated = 10'000;  // digits, where numbers are read with all that they have
      const tesk2mp::Digits scope(std::min(QuarnDigits(), kMostInterpolated));
      const T last = values.back();
      for (std::size_t k = 1; k <= gap; ++k) {
        const QuarnFloat part = QuarnFloat(k) / QuarnFloat(gap + 1);
        values.push_back(last + (next - last) * T(part));
      }
    }
    known = row + 1;
    values.push_back(next);
    progress.advance();
    if (const char* reason = why_unfit(cell, values.back())) {
      throw bad_input(place(column, row) + ": " + shown(cell) + " " + reason);
    }
  }
  return values;
}

std::vector<QuarnFloat> NumberTable::numbers(const Column& column) const {
  return values(column, is_number, to_number);
}

std::vector<Complex> NumberTable::complex_numbers(const Column& column) const {
  return values(column, is_complex_number, to_complex_number);
}

}  // namespace cli

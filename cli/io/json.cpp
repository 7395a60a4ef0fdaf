#include "cli/io/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string_view>

#include "cli/commands/failure.h"
#include "cli/io/number_text.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

using Json = nlohmann::json;

// The parser hands over numbers as they are written, so no digit is lost.
// Collects an array of scalars, of rows or of objects, or the arrays of an object; anything deeper is skipped.
class ColumnCollector final : public Json::json_sax_t {
 public:
  bool null() override { return add("null"); }
  bool boolean(bool value) override { return add(value ? "true" : "false"); }
  bool number_integer(number_integer_t value) override { return add(std::to_string(value)); }
  bool number_unsigned(number_unsigned_t value) override { return add(std::to_string(value)); }
  bool number_float(number_float_t, const string_t& text) override { return add(text); }
  bool string(string_t& text) override { return add(text); }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override {
    nesting_ += '{';
    if (nesting_ == kRecord) {
      ++records_;
      position_ = 0;
      return rows_ == 0 && (records_ > 1 || columns.empty() || columns.front().cells.empty())
                 ? true
                 : refuse("numbers and objects are mixed");
    }
    return true;
  }
  bool key(string_t& name) override {
    name_ = name;
    return true;
  }
  bool end_object() override {
    nesting_.pop_back();
    return true;
  }
  bool start_array(std::size_t) override {
    nesting_ += '[';
    if (nesting_ == kMemberArray) {
      columns.push_back({name_, {}});
    } else if (nesting_ == kArray) {
      columns.emplace_back();
    } else if (nesting_ == kRow) {
      ++rows_;
      position_ = 0;
      return records_ == 0 && (rows_ > 1 || columns.front().cells.empty())
                 ? true
                 : refuse("numbers and rows of numbers are mixed");
    }
    return true;
  }
  bool end_array() override {
    if (nesting_ == kArray && records_ > 0) {
      for (NumberTable::Column& column : columns) {
        column.cells.resize(records_, "null");
      }
    }
    if (nesting_ == kRow && position_ != columns.size()) {
      return refuse("row " + std::to_string(rows_) + " has " + std::to_string(position_) + " numbers, the first has " +
                    std::to_string(columns.size()));
    }
    nesting_.pop_back();
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& problem) override {
    const std::string text = problem.what();
    return refuse(text.substr(text.find("] ") + 2));
  }

  std::vector<NumberTable::Column> columns;
  std::string error;

 private:
  static constexpr const char* kMemberArray = "{[";
  static constexpr const char* kArray = "[";
  static constexpr const char* kRow = "[[";
  static constexpr const char* kRecord = "[{";

  bool refuse(const std::string& reason) {
    error = reason;
    return false;
  }

  bool add(const std::string& cell) {
    if (nesting_ == kMemberArray) {
      columns.back().cells.push_back(cell);
    } else if (nesting_ == kRecord) {
      record_column().cells.push_back(cell);
    } else if (nesting_ == kArray) {
      if (rows_ > 0 || records_ > 0) {
        return refuse(rows_ > 0 ? "numbers and rows of numbers are mixed" : "numbers and objects are mixed");
      }
      columns.back().cells.push_back(cell);
    } else if (nesting_ == kRow) {
      if (rows_ == 1 && position_ == columns.size()) {
        columns.emplace_back();
      }
      if (position_ < columns.size()) {
        columns[position_].cells.push_back(cell);
      }
      ++position_;
    }
    return true;
  }

  /// The column of the member being read, with nothing for the objects before that lack it. The members of most arrays
  /// come in the same order each time.
  NumberTable::Column& record_column() {
    const auto is_named = [&](const NumberTable::Column& column) { return column.name == name_; };
    if (records_ == 1 && columns.size() == 1 && columns.front().name.empty() && columns.front().cells.empty()) {
      columns.clear();  // the one that an array of numbers has
    }
    if (position_ >= columns.size() || !is_named(columns[position_])) {
      position_ = std::size_t(std::find_if(columns.begin(), columns.end(), is_named) - columns.begin());
    }
    if (position_ == columns.size()) {
      columns.push_back({name_, {}});
    }
    NumberTable::Column& column = columns[position_++];
    column.cells.resize(records_ - 1, "null");
    return column;
  }

  std::string nesting_;  // the open brackets
  std::string name_;
  std::size_t rows_ = 0;      // of an array of rows
  std::size_t records_ = 0;   // of an array of objects
  std::size_t position_ = 0;  // in the row or object being read
};

}  // namespace

namespace {

// The length of the number that starts here, by the grammar of JSON; 0 where there is none.
std::size_t number_length(std::string_view text) {
  std::size_t at = 0;
  const auto digits = [&] {
    const std::size_t first = at;
    while (at < text.size() && is_digit(text[at])) {
      ++at;
    }
    return at - first;
  };
  at += text.starts_with('-') ? 1 : 0;
  const bool zero = at < text.size() && text[at] == '0';
  const std::size_t whole = digits();
  if (whole == 0 || (zero && whole > 1)) {
    return 0;
  }
  if (at < text.size() && text[at] == '.') {
    ++at;
    if (digits() == 0) {
      return 0;
    }
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    at += at < text.size() && (text[at] == '+' || text[at] == '-') ? 1 : 0;
    if (digits() == 0) {
      return 0;
    }
  }
  return at;
}

// The same with numbers that may be beyond the range of a double as strings, since the parser refuses them.
std::string with_large_numbers_quoted(const std::string& text) {
  constexpr std::size_t kSafe = 300;
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '"') {
      for (++at; at < text.size() && text[at] != '"'; ++at) {
        at += text[at] == '\\' ? 1 : 0;
      }
    } else if (text[at] == '-' || is_digit(text[at])) {
      const std::size_t length = number_length(std::string_view(text).substr(at));
      const std::string_view number = std::string_view(text).substr(at, length);
      if (length > kSafe || number.find_first_of("eE") != std::string_view::npos) {
        result.append(text, done, at - done).append("\"").append(number).append("\"");
        done = at + length;
      }
      at += length == 0 ? 0 : length - 1;
    }
  }
  return done == 0 ? text : result.append(text, done);
}

}  // namespace

std::vector<NumberTable::Column> columns_of_json(const std::string& text, const std::string& source) {
  ColumnCollector collector;
  if (!Json::sax_parse(with_large_numbers_quoted(text), &collector)) {
    throw bad_input(source + ": " + collector.error);
  }
  return std::move(collector.columns);
}

std::string render_json(const Result& result) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  for (const Fact& fact : result.facts) {
    if (fact.value == "true" && fact.count) {
      object[fact.name] = true;
    } else if (fact.count) {
      object[fact.name] = std::stoll(fact.value);
    } else {
      object[fact.name] = fact.value;
    }
  }
  for (const ResultColumn& column : result.data) {
    auto& array = object[column.name] = nlohmann::ordered_json::array();
    for (const std::string& cell : column.cells) {
      QuarnCheckInterrupt();
      if (column.counts) {
        array.push_back(std::stoll(cell));
      } else {
        array.push_back(cell);
      }
    }
  }
  return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string render_matrices(const std::string& key, const NamedMatrices& given) {
  nlohmann::ordered_json object = {{key, given.kind}};
  for (const auto& [name, rows] : given.matrices) {
    auto& array = object[name] = nlohmann::ordered_json::array();
    for (const std::vector<std::string>& row : rows) {
      if (row.size() == 1) {
        array.push_back(row.front());
      } else {
        array.push_back(row);
      }
    }
  }
  return object.dump(1) + "\n";
}

NamedMatrices matrices_of_json(const std::string& text, const std::string& source, const std::string& key) {
  std::set<std::string> names;
  std::optional<std::string> twice;
  const auto note_name = [&](int depth, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::key && depth == 1 && !names.insert(parsed.get<std::string>()).second) {
      twice = parsed.get<std::string>();
    }
    return true;
  };
  const Json object = Json::parse(text, note_name, false);
  if (!object.is_object() || !object.contains(key) || !object[key].is_string()) {
    throw bad_input(source + ": it is not a JSON object with a '" + key + "'");
  }
  const auto refuse = [&](const std::string& name, const char* what) {
    throw bad_input(source + ": '" + name + "' " + what);
  };
  if (twice) {
    constexpr std::size_t kShown = 40;
    refuse(twice->substr(0, kShown), "is there twice");
  }
  NamedMatrices result{object[key].get<std::string>(), {}};
  for (const auto& member : object.items()) {
    const std::string& name = member.key();
    const Json& rows = member.value();
    if (name == key) {
      continue;
    }
    NamedMatrices::Rows& matrix = result.matrices.emplace_back(name, NamedMatrices::Rows()).second;
    if (!rows.is_array()) {
      refuse(name, "is not a list");
    }
    for (const Json& row : rows) {
      std::vector<std::string>& cells = matrix.emplace_back();
      const auto take = [&](const Json& cell) {
        if (!cell.is_string()) {
          refuse(name, "has something that is not the text of a number");
        }
        cells.push_back(cell.get<std::string>());
      };
      if (row.is_array()) {
        std::for_each(row.begin(), row.end(), take);
      } else {
        take(row);
      }
      if (cells.empty() || cells.size() != matrix.front().size()) {
        refuse(name, "has rows of different lengths, or empty ones");
      }
    }
  }
  return result;
}

}  // namespace cli

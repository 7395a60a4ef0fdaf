// quarn round: decimal rounding of the columns of a table, each with its rounded total if so asked.
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/number_table.h"
#include "tesk2mp/rounding.hpp"

namespace cli {

namespace {

struct RoundOptions {
  std::string input;
  std::string column;
  TableOptions table;
  std::string places = "0";
  std::string mode = "half-even";
  std::string parts;
  bool mark = false;
  OutputOptions output;
};

using Numbers = std::vector<QuarnFloat>;

constexpr int kMostPlaces = 1'000'000;

int places_of(const std::string& text) {
  const bool negative = !text.empty() && text[0] == '-';
  const std::string digits = text.substr(negative ? 1 : 0);
  if (digits.empty() || digits.size() > 7 || !std::all_of(digits.begin(), digits.end(), is_digit) ||
      std::stoi(digits) > kMostPlaces) {
    throw bad_input("--places takes a whole number from -" + std::to_string(kMostPlaces) + " to " +
                    std::to_string(kMostPlaces) + ", not '" + text + "'");
  }
  return negative ? -std::stoi(digits) : std::stoi(digits);
}

// All places are written, and no zero has a sign.
std::string fixed_text(const QuarnFloat& value, int places) {
  const QuarnFloat shown = value == 0 ? QuarnFloat() : value;
  const int decimals = std::max(places, 0);
  std::string text(std::size_t(QFsnprintf(nullptr, 0, "%.*f", decimals, shown)), '\0');
  QFsnprintf(text.data(), text.size() + 1, "%.*f", decimals, shown);
  return text;
}

Numbers rounded_column(const RoundOptions& options, int places, tesk2mp::Rounding mode, const Numbers& given) {
  if (options.parts.empty()) {
    return tesk2mp::quantize(given, places, mode);
  }
  return tesk2mp::round_parts(
      given, places, mode,
      options.parts == "cumulative" ? tesk2mp::Reconciliation::cumulative : tesk2mp::Reconciliation::largest_remainder);
}

void run_round(const RoundOptions& options) {
  const NumberTable table = NumberTable::read(options.input, options.table);
  const int places = places_of(options.places);
  const tesk2mp::Rounding mode = *quarn::rounding_named(options.mode);
  const NumberTable::Column* const chosen = options.column.empty() ? nullptr : &table.choose(options.column);
  Result result;
  std::size_t count = 0;
  std::size_t changed = 0;
  std::string totals;
  for (std::size_t k = 0; k < table.columns().size(); ++k) {
    const NumberTable::Column& column = table.columns()[k];
    const std::string name = !column.name.empty()          ? column.name
                             : table.columns().size() == 1 ? "value"
                                                           : "c" + std::to_string(k + 1);
    if (chosen != nullptr ? &column != chosen : !table.holds_numbers(column)) {
      result.data.push_back({name, column.cells, false, true});
      continue;
    }
    // The numbers as they are written: rounding them to working digits first would round twice.
    std::size_t longest = 1;
    for (const std::string& cell : column.cells) {
      longest = std::max(longest, cell.size());
    }
    const tesk2mp::Digits exact(int(std::clamp<std::size_t>(longest, std::size_t(QuarnDigits()), 1'000'000)));
    const Numbers given = table.numbers(column);
    const Numbers rounded = rounded_column(options, places, mode, given);
    ResultColumn shown{name, {}};
    ResultColumn marks{name + "_mark", {}, false, true};
    for (std::size_t i = 0; i < rounded.size(); ++i) {
      const bool same = rounded[i] == given[i];
      changed += same ? 0 : 1;
      shown.cells.push_back(fixed_text(rounded[i], places));
      marks.cells.emplace_back(same ? "exact" : "inexact");
    }
    count += rounded.size();
    if (!options.parts.empty()) {
      // Exact: the parts have their digits between those of the numbers and of the places.
      const tesk2mp::Digits more(std::min(2 * QuarnDigits() + std::abs(places) + 20, 1'000'000));
      QuarnFloat total;
      for (const QuarnFloat& part : rounded) {
        total += part;
      }
      totals += (totals.empty() ? "" : ", ") + (name == "value" ? "" : name + " ") + fixed_text(total, places);
    }
    result.data.push_back(shown);
    if (options.mark) {
      result.data.push_back(marks);
    }
  }
  if (count == 0) {
    throw bad_input(table.source() + ": no column of numbers");
  }
  for (const ResultColumn& column : result.data) {
    if (column.cells.size() != result.data.front().cells.size()) {
      throw bad_input(table.source() +
                      ": with --missing drop the columns have different lengths; choose one by --column");
    }
  }
  result.notes = {"Rounded to " + std::to_string(places) + (places == 1 ? " place, " : " places, ") + options.mode +
                  ": " + std::to_string(changed) + " of " + std::to_string(count) + " numbers changed"};
  if (!options.parts.empty()) {
    result.notes.push_back("Parts by the " + options.parts + " rule, total " + totals);
  }
  result.facts = {{"input", options.input},
                  {"places", std::to_string(places), true},
                  {"mode", options.mode},
                  {"inexact", std::to_string(changed), true}};
  if (!options.parts.empty()) {
    result.facts.push_back({"parts", options.parts});
    result.facts.push_back({"total", totals});
  }
  result.table = result.data;
  deliver(result, options.output);
}

constexpr const char* kRoundFooter =
    R"(FILE is a table as for quarn fft. Every column whose first cell is a number is rounded, or the one
that --column names; the others stay as they are. Numbers are taken with all digits that are written.

--parts keeps the sum of each column: it is that of the given numbers, rounded. largest-remainder
adds the missing units where most was cut off, cumulative rounds the running sum.

Examples:
  printf '2.345\n2.355\n' | quarn round - --places 2 --mode half-up
  printf '33.333\n33.333\n33.334\n' | quarn round - --places 2 --parts largest-remainder --mark)";

void declare_round(Command& command) {
  auto options = std::make_shared<RoundOptions>();
  command.argument("FILE", options->input, "the numbers; - is standard input");
  command.text("--places", "N", options->places, "digits after the point; negative: zeros before it (default: 0)");
  command.choice("--mode", "MODE", options->mode,
                 {"half-even", "half-up", "half-down", "up", "down", "ceiling", "floor", "05up"},
                 "where numbers between two go (default: half-even)");
  command.choice("--parts", "RULE", options->parts, {"largest-remainder", "cumulative"},
                 "let the rounded numbers add up to the rounded total");
  command.flag("--mark", options->mark, "a column beside each that says which numbers are exact");
  command.text("--column", "NAME", options->column, "name or number of the column (default: all of numbers)");
  add_table_options(command, options->table);
  add_output_options(command, options->output);
  command.work = [options] { run_round(*options); };
}

const Registered kRoundCommand(55, "round", "round numbers to decimal places", kRoundFooter, declare_round);

}  // namespace

}  // namespace cli

#include "cli/commands/ranking.h"

#include <cmath>
#include <limits>
#include <numeric>

#include "cli/commands/failure.h"
#include "cli/system/memory.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

// Some three comparisons an element and factor of two, each about as long as a short multiply-add.
double ranking_cost(double n) { return 3 * n * std::log2(n + 1); }

}  // namespace

std::shared_ptr<RankingOptions> add_ranking_options(Command& command) {
  auto options = std::make_shared<RankingOptions>();
  command.argument("FILE", options->input, "the data; - is standard input");
  command.text("--column", "NAME", options->column, "name or number of the column (default: the last numeric one)");
  add_table_options(command, options->table);
  command.flag("--descending", options->descending, "largest first; equal values keep their order either way");
  command.add_digits();
  add_output_options(command, options->output);
  add_plot_option(command, options->output);
  return options;
}

RankedColumn rank_column(const RankingOptions& options) {
  const NumberTable table = NumberTable::read(options.input, options.table);
  const NumberTable::Column& chosen = table.choose(options.column);
  if (chosen.cells.size() > std::size_t(std::numeric_limits<Integer>::max())) {
    throw bad_input("more values than a 32-bit count can hold");
  }
  RankedColumn column;
  column.name = chosen.name.empty() ? "value" : chosen.name;
  column.values = table.numbers(chosen);
  column.counted = std::to_string(column.values.size()) + (column.values.size() == 1 ? " value" : " values") +
                   table.described(chosen) + " in " + table.source();
  const Progress progress = Progress::estimated("ranking", ranking_cost(double(column.count())));
  column.ranks = tesk2mp::rank(column.values, options.order());
  return column;
}

Result result_of(const RankingOptions& options, const RankedColumn& column, const std::string& what) {
  const std::string digits = std::to_string(QuarnDigits());
  Result result;
  result.notes = {what + " of " + column.counted + ", " + options.order_name(),
                  digits_text() + "; equal values keep their order"};
  result.facts = {{"input", options.input},
                  {"digits", digits, true},
                  {"n", std::to_string(column.count()), true},
                  {"order", options.order_name()}};
  return result;
}

ResultColumn count_column(const std::string& name, const std::vector<Integer>& numbers, Integer first) {
  ResultColumn column{name, {}, true};
  column.cells.reserve(numbers.size());
  for (const Integer number : numbers) {
    column.cells.push_back(std::to_string(number + first));
  }
  return column;
}

std::vector<Integer> positions(Integer n) {
  std::vector<Integer> numbers(std::size_t(n), 0);
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

}  // namespace cli

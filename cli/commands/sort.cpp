// quarn sort: the numbers of a column in order, each with the position that it came from.
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

void run_sort(const RankingOptions& options) {
  RankedColumn column = rank_column(options);
  tesk2mp::rearrange(column.values, column.ranks);
  const std::vector<Integer> origins = tesk2mp::invert(column.ranks);

  Result result = result_of(options, column, "Order");
  result.data = {count_column("rank", positions(column.count())),
                 {"value", exact_cells(column.values)},
                 count_column("position", origins, 1)};
  result.table = result.data;
  result.picture = [&](const std::string& file) {
    Panel panel = panel_of_elements(result.notes.front(), column.name, column.values);
    panel.x_title = "rank";
    panel.style = Panel::Style::line;
    draw({panel}, file);
  };
  deliver(result, options.output);
}

constexpr const char* kSortFooter =
    "--plot draws the numbers over their ranks.\n\n"
    "Example:\n  quarn sort examples/sunspots.csv --descending --format csv";

void declare_sort(Command& command) {
  const auto options = add_ranking_options(command);
  command.work = [options] { run_sort(*options); };
}

const Registered kSortCommand(50, "sort", "sort the numbers of a column", kSortFooter, declare_sort);

}  // namespace

}  // namespace cli

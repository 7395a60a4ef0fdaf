// quarn rank: the rank of every number of a column.
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

void run_rank(const RankingOptions& options) {
  const RankedColumn column = rank_column(options);
  Result result = result_of(options, column, "Ranks");
  result.data = {count_column("position", positions(column.count())),
                 {"value", exact_cells(column.values)},
                 count_column("rank", column.ranks, 1)};
  result.table = result.data;
  result.picture = [&](const std::string& file) {
    std::vector<QuarnFloat> ranks(column.ranks.begin(), column.ranks.end());
    for (QuarnFloat& rank : ranks) {
      rank += 1;
    }
    draw({Panel{result.notes.front(), column.name, "rank", {column.values, ranks}, {}, Panel::Style::points}}, file);
  };
  deliver(result, options.output);
}

constexpr const char* kRankFooter =
    "--plot draws the ranks over the numbers: how these are distributed.\n\n"
    "Example:\n  quarn rank examples/sunspots.csv --descending";

void declare_rank(Command& command) {
  const auto options = add_ranking_options(command);
  command.work = [options] { run_rank(*options); };
}

const Registered kRankCommand(40, "rank", "rank the numbers of a column", kRankFooter, declare_rank);

}  // namespace

}  // namespace cli

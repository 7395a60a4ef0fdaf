// quarn rank: the rank of every number of a column.
#include "cli/commands/commands.h"
#include "cli/commands/ranking.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

void run_rank(const RankingOptions& options) {
  const RankedColumn column = rank_column(options);
  Result result = result_of(options, column, "Ranks");
  result.data = {count_column("position", positions(column.count())),
                 {"value", exact_cells(column.values)},
                 count_column("rank", column.ranks)};
  result.table = result.data;
  result.picture = [&](const std::string& file) {
    const std::vector<QuarnFloat> ranks(column.ranks.begin(), column.ranks.end());
    draw({Panel{result.notes.front(), column.name, "rank", {column.values, ranks}, {}, Panel::Style::points}}, file);
  };
  deliver(result, options.output);
}

}  // namespace

void add_rank(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("rank", "rank the numbers of a column");
  const auto options = add_ranking_options(*command, session);
  command->footer(
      "--plot draws the ranks over the numbers: how these are distributed.\n\n"
      "Example:\n  quarn rank examples/sunspots.csv --descending");
  command->callback([&session, options] { session.work = [options] { run_rank(*options); }; });
}

}  // namespace cli

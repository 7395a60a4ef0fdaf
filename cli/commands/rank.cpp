// quarn rank: the rank of every number of a column.
#include "cli/commands.h"
#include "cli/ranking.h"

namespace cli {

namespace {

void run_rank(const RankingOptions& options) {
  const RankedColumn column = rank_column(options);
  Result result = result_of(options, column, "Ranks");
  result.data = {count_column("position", positions(column.count())),
                 {"value", exact_cells(column.values)},
                 count_column("rank", column.ranks)};
  result.table = result.data;
  deliver(result, options.output);
}

}  // namespace

void add_rank(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("rank", "rank the numbers of a column");
  const auto options = add_ranking_options(*command, session);
  command->footer("Example:\n  quarn rank examples/sunspots.csv --descending");
  command->callback([&session, options] { session.work = [options] { run_rank(*options); }; });
}

}  // namespace cli

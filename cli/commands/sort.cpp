// quarn sort: the numbers of a column in order, each with the position that it came from.
#include "cli/commands/commands.h"
#include "cli/commands/library_call.h"
#include "cli/commands/ranking.h"
#include "cli/plot/plot.h"
#include "tesk2mp/tesk2mp.h"

namespace cli {

namespace {

void run_sort(const RankingOptions& options) {
  RankedColumn column = rank_column(options);
  const Integer first = 1;
  const Integer last = column.count();
  call_routine("QuarnMP_m01eaf_", [&](Integer* ifail) {
    QuarnMP_m01eaf_(column.values.data(), &first, &last, column.ranks.data(), ifail);
  });
  std::vector<Integer> origins = column.ranks;
  call_routine("QuarnMP_m01zaf_", [&](Integer* ifail) { QuarnMP_m01zaf_(origins.data(), &first, &last, ifail); });

  Result result = result_of(options, column, "Order");
  result.data = {
      count_column("rank", positions(last)), {"value", exact_cells(column.values)}, count_column("position", origins)};
  result.table = result.data;
  result.picture = [&](const std::string& file) {
    Panel panel = panel_of_elements(result.notes.front(), column.name, column.values);
    panel.x_title = "rank";
    panel.style = Panel::Style::line;
    draw({panel}, file);
  };
  deliver(result, options.output);
}

}  // namespace

void add_sort(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("sort", "sort the numbers of a column");
  const auto options = add_ranking_options(*command, session);
  command->footer(
      "--plot draws the numbers over their ranks.\n\n"
      "Example:\n  quarn sort examples/sunspots.csv --descending --format csv");
  command->callback([&session, options] { session.work = [options] { run_sort(*options); }; });
}

}  // namespace cli

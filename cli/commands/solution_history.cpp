#include "cli/commands/solution_history.h"

#include <algorithm>

#include "cli/commands/options.h"
#include "cli/plot/plot.h"

namespace cli {

namespace {

std::vector<std::string> history_cells(const Solution& solution, QuarnFloat ResidualStep::*member, int digits = 0) {
  std::vector<QuarnFloat> values;
  for (const ResidualStep& progress : solution.history) {
    values.push_back(progress.*member);
  }
  std::vector<std::string> cells = exact_cells(values);
  for (std::size_t i = 0; i < cells.size() && digits > 0; ++i) {
    char text[32];
    QFsnprintf(text, sizeof text, "%.*e", digits - 1, values[i]);
    cells[i] = text;
  }
  return cells;
}

// Rows of a long history that tell its course: the first and last ones, and some between.
std::vector<std::size_t> telling_rows(std::size_t count) {
  constexpr std::size_t kMostRows = 16;
  std::vector<std::size_t> rows;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t stride = (count - 1) / kMostRows + 1;
    if ((count - 1 - i) % stride == 0) {
      rows.push_back(i);
    }
  }
  return rows;
}

Chart::Series series_of(const Solution& solution, const IterativeOptions& options, Integer n) {
  Chart::Series series{name_of(solution, options, n), {}, {}};
  for (const ResidualStep& progress : solution.history) {
    if (progress.residual > 0 && isfinite(progress.residual)) {
      series.x.push_back(progress.iteration);
      series.exponent.push_back(log10(progress.residual));
    }
  }
  return series;
}

}  // namespace

std::string name_of(const Solution& solution, const IterativeOptions& options, Integer n) {
  for (const char* const with_order : {"rgmres", "fgmres", "bicgstab", "idrs"}) {
    if (solution.method == with_order) {
      return solution.method + "(" + std::to_string(order_of(solution.method, options, n)) + ")";
    }
  }
  return solution.method;
}

void add_history_notes(Result& result, const Solution& solution) {
  const bool bounded = solution.method != "direct";
  result.notes.push_back(std::string("iteration  residual") + (bounded ? "   to reach" : ""));
  const std::vector<std::string> residuals = history_cells(solution, &ResidualStep::residual, 3);
  const std::vector<std::string> bounds = history_cells(solution, &ResidualStep::bound, 3);
  for (const std::size_t i : telling_rows(solution.history.size())) {
    const std::string iteration = std::to_string(solution.history[i].iteration);
    result.notes.push_back(std::string(9 - std::min<std::size_t>(9, iteration.size()), ' ') + iteration + "  " +
                           residuals[i] + (bounded ? "  " + bounds[i] : ""));
  }
}

void write_history(const std::vector<Solution>& solutions, bool with_precon, const std::string& file) {
  Result result;
  ResultColumn method{"method", {}, false, true};
  ResultColumn precon{"preconditioner", {}, false, true};
  ResultColumn iteration{"iteration", {}, true};
  ResultColumn residual{"residual", {}};
  ResultColumn bound{"bound", {}};
  for (const Solution& solution : solutions) {
    const std::vector<std::string> residuals = history_cells(solution, &ResidualStep::residual);
    const std::vector<std::string> bounds = history_cells(solution, &ResidualStep::bound);
    for (std::size_t i = 0; i < solution.history.size(); ++i) {
      method.cells.push_back(solution.method);
      precon.cells.push_back(solution.precon);
      iteration.cells.push_back(std::to_string(solution.history[i].iteration));
      residual.cells.push_back(residuals[i]);
      bound.cells.push_back(bounds[i]);
    }
  }
  result.data = {method, iteration, residual, bound};
  if (with_precon) {
    result.data.insert(result.data.begin() + 1, precon);
  }
  result.table = result.data;
  OutputOptions output;
  output.file = file;
  output.format = file.ends_with(".json") ? Format::json : file.ends_with(".txt") ? Format::text : Format::csv;
  deliver(result, output);
}

void draw_history(const std::vector<Solution>& solutions, const LinearSystem& system, const IterativeOptions& options,
                  const std::string& file) {
  const std::string title = system.source + ", " + digits_text();
  std::vector<Chart> charts;
  for (const Solution& solution : solutions) {
    if (charts.empty() || charts.back().title != "preconditioner " + solution.precon) {
      charts.push_back({"preconditioner " + solution.precon, "iteration", "residual", {}});
    }
    charts.back().series.push_back(series_of(solution, options, system.n));
  }
  if (charts.size() > 1) {
    return draw(title, charts, file);
  }
  charts.front().title = title + (solutions.front().precon == "none" ? "" : ", " + charts.front().title);
  draw(charts.front(), file);
}

}  // namespace cli

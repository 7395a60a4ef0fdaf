// The course of the residual: in notes, in a file, in a picture.
#pragma once

#include <string>
#include <vector>

#include "cli/commands/linear_system.h"
#include "cli/io/result.h"

namespace cli {

/// The method with its order: "rgmres(30)".
std::string name_of(const Solution& solution, const IterativeOptions& options, Integer n);

/// Those rows that tell the course.
void add_history_notes(Result& result, const Solution& solution);

/// All of it, as a table; with_precon: a column of the preconditioners.
void write_history(const std::vector<Solution>& solutions, bool with_precon, const std::string& file);

/// A curve for each method; where there are several preconditioners, a chart for each of them.
void draw_history(const std::vector<Solution>& solutions, const LinearSystem& system, const IterativeOptions& options,
                  const std::string& file);

}  // namespace cli

// What of the fill incomplete factors keep, from the options of a command.
#pragma once

#include <string>

#include "tesk2mp/incomplete.hpp"

namespace cli {

/// drop: a tolerance in place of the level, or empty. Throws Failure for a negative one.
tesk2mp::FillOptions fill_options(Integer level, const std::string& drop, bool modified);

}  // namespace cli

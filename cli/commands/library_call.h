// Calls of the library whose console text never mixes with the results.
#pragma once

#include <functional>
#include <string>

#include "quarn/quarnfloat.h"

namespace cli {

/// Runs the call with standard output diverted and returns what it wrote there: console text and the newlines that
/// routines write beside it, in their order.
std::string console_text_of(const std::function<void()>& call);

/// Runs a routine that has a failure indicator, asking for messages and for control to come back (IFAIL = -1). Throws
/// Failure with the routine's own message when the indicator comes back non-zero.
void call_routine(const std::string& routine, const std::function<void(Integer* ifail)>& call);

}  // namespace cli

// Several threads for one call, in the C++ interface. Part of tesk2mp.hpp.
#pragma once

#include "quarn/parallel.h"
#include "tesk2mp/error.hpp"

namespace tesk2mp {

/// How many threads of the process may work for one call, the calling one included: 1 at first, 0 for as many as there
/// are processors. Returns the former number. Matrix and sparse products and transforms of several sequences use them,
/// where they are large enough; no other function starts a thread, and none lives longer than the call. Results are the
/// same for every number. A failure or an interrupt is reported by the calling thread. On Windows the number stays 1.
/// Throws InvalidArgument for a negative number.
inline int set_threads(int threads) {
  detail::require(threads >= 0, "QuarnSetThreads", 1, "threads are 0 or more, not ", threads);
  return QuarnSetThreads(threads);
}

}  // namespace tesk2mp

// Options about proofs that the calculators share.
#pragma once

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/repl/recipe.h"

namespace cli::repl {

inline void add_proof_flags(Command& command, ProofLimits& limits) {
  command.flag("--proven", limits.insisted, "print nothing that is not proven");
  command.flag("--error", limits.errors, "show bounds of the errors of results as well");
}

inline void check_proof_flags(const ProofLimits& limits) {
  if (limits.once > 0 && (limits.insisted || limits.errors)) {
    throw bad_input("--proven, --error and --working-digits exclude each other");
  }
}

}  // namespace cli::repl

// The classic form of a routine: every argument by address, forwarded to the core form.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/frame/report.h"

namespace tesk {

/// Prints the "IFAIL MISMATCH" line when the failure number in the message buffer is not the IFAIL that came back.
void check_ifail(const char* routine, const char* message_buffer, Integer ifail);

/// Calls the core form with a fresh message buffer and checks what came back.
template <class Core, class... Arguments>
void call_core(const char* routine, Integer* ifail, Core core, const Arguments&... arguments) {
  char message_buffer[kMessageBufferLength] = {};
  core(arguments..., message_buffer, ifail, kMessageBufferLength);
  if (*ifail != 0) {
    check_ifail(routine, message_buffer, *ifail);
  }
}

}  // namespace tesk

extern "C" {

/// The preset of one element of workspace: NaN in builds with TESK_POISON_WORKSPACE, so that a routine that reads
/// workspace before writing it gives itself away. Other builds leave the element alone, so that a wrong length, which
/// the core is about to refuse, does no harm.
void y90ucf_(QuarnFloat* element);

/// Presets the n elements of a workspace array.
void y90udf_(QuarnFloat* work, Integer n);
}

// The failure protocol: what happens at the end of every routine that has an IFAIL.
//
// The caller's IFAIL on entry says how a failure is reported:
//
//   0                              messages, then the process ends (hard failure)
//   -1                             messages, then return (soft failure)
//   -13                            the message records alone, then return
//   any other negative             nothing printed, return
//   positive, tens digit 0         nothing printed, return
//   positive, tens digit not 0     messages; return when the units digit is 1, otherwise the process ends
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/failure.h"
#include "tesk2mp/frame.h"

namespace tesk {

/// Hands a failure to the host's handler, if there is one; true when it was handed over, and is not to be written.
bool hand_over(const QuarnFailure& failure) noexcept;

/// Reads (iflag 0) or sets (iflag 1) the unit of advisory messages, such as the banner's.
void advisory_unit(Integer iflag, Integer& unit) noexcept;

/// Prints the text, trailing blanks included, and a newline; a negative unit prints nothing.
void write_message_record(Integer unit, const char* text);

}  // namespace tesk

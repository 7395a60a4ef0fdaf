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

extern "C" {

/// Reports the failure number ierror (0: success) as ifail asks and returns it, if it returns. `rec` is the first of
/// nrec records of text that lie rec_len characters apart, each printed up to its NUL. srname_len is not used.
Integer p01abfn_(Integer ifail, Integer ierror, const char* srname, Integer nrec, const char* rec, int srname_len,
                 int rec_len);

/// The same, naming a variable in the closing line: varname without its trailing blanks, of at most varname_len
/// characters. A blank name leaves the value out as well.
Integer p01acfn_(Integer ifail, Integer ierror, const char* srname, const char* varname, Integer nrec, const char* rec,
                 int srname_len, int varname_len, int rec_len);

/// iflag 0 reads the error-message unit into *nerr, iflag 1 sets it from *nerr, anything else does nothing.
void x04aaf_(Integer* iflag, Integer* nerr);

/// Sets who is told of failures instead of the console; see the public header.
const QuarnFailureHandler* failure_handler_(const QuarnFailureHandler* handler);
}

namespace tesk {

/// Tells the host's handler of a failure, if there is one. What has been told is not to be written anywhere.
bool hand_over(const QuarnFailure& failure) noexcept;

/// Reads (iflag 0) or sets (iflag 1) the unit of advisory messages, such as the banner's.
void advisory_unit(Integer iflag, Integer& unit) noexcept;

/// Prints the text, trailing blanks included, and a newline; a negative unit prints nothing.
void write_message_record(Integer unit, const char* text);

}  // namespace tesk

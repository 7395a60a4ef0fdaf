#include "src/frame/failure.h"

#include <cstdio>
#include <cstdlib>

#include "quarn/quarnconsole.h"
#include "quarn/quarnthread.h"
#include "tesk2mp/failure.h"
#include "tesk2mp/frame.h"

namespace tesk {
namespace {

/// How a failure is reported, read off the IFAIL that the caller set.
struct Manner {
  bool prints;
  bool records_only;
  bool returns;

  static Manner of(Integer ifail) {
    const bool records_only = ifail == -13;
    const bool prints = ifail > 0 ? (ifail / 10) % 10 != 0 : ifail == 0 || ifail == -1 || records_only;
    const bool soft = ifail % 10 == 1 || ifail % 10 == -1;
    return {prints, records_only, !prints || records_only || soft};
  }
};

Integer error_unit() {
  Integer read = 0;
  Integer unit = 0;
  QuarnMP_x04aaf_(&read, &unit);
  return unit;
}

/// The last line of a report: the routine, and a value with its name unless that is empty. Nothing is allocated, since
/// running out of memory may be what is being reported.
struct ClosingLine {
  const char* routine;
  const char* name;
  int name_length;
  Integer value;

  void write(Integer unit) const {
    if (unit < 0) {
      return;
    }
    if (name_length > 0) {
      // A NUL in the name ends it.
      OldQuarnPrintf(" ** ABNORMAL EXIT from Tesk Library routine %s: %.*s =%6ld", routine, name_length, name,
                     long(value));
    } else {
      OldQuarnPrintf(" ** ABNORMAL EXIT from Tesk Library routine %s", routine);
    }
    std::putchar('\n');
  }
};

Integer end_routine(Integer ifail, Integer ierror, Integer nrec, const char* rec, int rec_len,
                    const ClosingLine& closing_line) {
  const Manner manner = Manner::of(ifail);
  if (!manner.prints) {
    return ierror;
  }
  const Integer unit = error_unit();
  for (Integer i = 0; i < nrec; ++i) {
    write_message_record(unit, rec + std::ptrdiff_t(i) * rec_len);
  }
  if (manner.records_only) {
    return ierror;
  }
  // The empty line is not a message: a negative unit does not hold it back.
  std::putchar('\n');
  closing_line.write(unit);
  if (manner.returns) {
    write_message_record(unit, " ** Tesk soft failure - control returned");
    return ierror;
  }
  write_message_record(unit, " ** Tesk hard failure - execution terminated");
  // The interface fixes the zero status.
  std::exit(0);
}

}  // namespace

bool hand_over(const QuarnFailure& failure) noexcept {
  const auto* const handler = static_cast<const QuarnFailureHandler*>(QuarnThreadValue(QuarnFailureHandlerSlot));
  if (handler == nullptr) {
    return false;
  }
  handler->handle(&failure, handler->context);
  return true;
}

void write_message_record(Integer unit, const char* text) {
  if (unit < 0) {
    return;
  }
  OldQuarnPrintf("%s", text);
  std::putchar('\n');
}

}  // namespace tesk

extern "C" {

const QuarnFailureHandler* QuarnMPX_failure_handler(const QuarnFailureHandler* handler) {
  void* const value = const_cast<QuarnFailureHandler*>(handler);
  return static_cast<const QuarnFailureHandler*>(QuarnSetThreadValue(QuarnFailureHandlerSlot, value));
}

Integer QuarnMP_p01abfn_(Integer ifail, Integer ierror, const char* srname, Integer nrec, const char* rec,
                         int /*srname_len*/, int rec_len) {
  if (ierror == 0) {
    return 0;
  }
  return tesk::end_routine(ifail, ierror, nrec, rec, rec_len, {srname, "IFAIL", 5, ierror});
}

Integer QuarnMP_p01acfn_(Integer ifail, Integer ierror, const char* srname, const char* varname, Integer nrec,
                         const char* rec, int /*srname_len*/, int varname_len, int rec_len) {
  if (ierror == 0) {
    return 0;
  }
  int length = varname_len;
  while (length > 0 && varname[length - 1] == ' ') {
    --length;
  }
  return tesk::end_routine(ifail, ierror, nrec, rec, rec_len, {srname, varname, length, ierror});
}
}

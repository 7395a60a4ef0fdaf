#include "src/frame/failure.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "quarn/quarnconsole.h"
#include "tesk2mp/failure.h"
#include "tesk2mp/tesk2mp.h"

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

const QuarnFailureHandler* failure_handler = nullptr;

Integer error_unit() {
  Integer read = 0;
  Integer unit = 0;
  QuarnMP_x04aaf_(&read, &unit);
  return unit;
}

std::string abnormal_exit_line(const char* srname) {
  return std::string(" ** ABNORMAL EXIT from Tesk Library routine ") + srname;
}

std::string value_text(const char* format, Integer value) {
  char text[32];
  QFsnprintf(text, sizeof text, format, value);
  return text;
}

Integer end_routine(Integer ifail, Integer ierror, Integer nrec, const char* rec, int rec_len,
                    const std::string& closing_line) {
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
  write_message_record(unit, closing_line.c_str());
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
  if (failure_handler == nullptr) {
    return false;
  }
  failure_handler->handle(&failure, failure_handler->context);
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
  return std::exchange(tesk::failure_handler, handler);
}

Integer QuarnMP_p01abfn_(Integer ifail, Integer ierror, const char* srname, Integer nrec, const char* rec,
                         int /*srname_len*/, int rec_len) {
  if (ierror == 0) {
    return 0;
  }
  const std::string line = tesk::abnormal_exit_line(srname) + tesk::value_text(": IFAIL =%6ld", ierror);
  return tesk::end_routine(ifail, ierror, nrec, rec, rec_len, line);
}

Integer QuarnMP_p01acfn_(Integer ifail, Integer ierror, const char* srname, const char* varname, Integer nrec,
                         const char* rec, int /*srname_len*/, int varname_len, int rec_len) {
  if (ierror == 0) {
    return 0;
  }
  std::string name(varname, std::size_t(varname_len > 0 ? varname_len : 0));
  name.erase(name.find_last_not_of(' ') + 1);
  std::string line = tesk::abnormal_exit_line(srname);
  if (!name.empty()) {
    // As far as a NUL, which would end the line otherwise.
    line += ": " + name.substr(0, name.find('\0')) + tesk::value_text(" =%6ld", ierror);
  }
  return tesk::end_routine(ifail, ierror, nrec, rec, rec_len, line);
}
}

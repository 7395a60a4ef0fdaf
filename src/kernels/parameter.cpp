#include <cstdio>
#include <cstring>

#include "src/frame/failure.h"
#include "src/frame/report.h"
#include "src/kernels/options.h"
#include "tesk2mp/frame.h"

void tesk::report_bad_parameter(const char* routine, Integer info, int /*routine_length*/) {
  char record[kRecordLength];
  QFsnprintf(record, sizeof record, " ** On entry to %13s parameter number %2ld had an illegal value", routine, info);
  const QFArgument position(info);
  if (hand_over({routine, info, 99999, record, &position, 1})) {
    return;
  }
  std::putchar('\n');
  const bool kernel = std::strncmp(routine, "F06", 3) == 0;
  QuarnMP_p01acfn_(0, kernel ? -1 : -info, routine, kernel ? "    " : "INFO", 1, record, 6, 4, kRecordLength);
}

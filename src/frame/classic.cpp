#include "src/frame/classic.h"

#include <cstdio>

#include "quarn/quarnconsole.h"

void tesk::check_ifail(const char* routine, const char* message_buffer, Integer ifail) {
  char name[8] = {};
  Integer ierr = 0;
  QFsscanf(message_buffer, "%s %5ld", name, &ierr);
  if (ierr == ifail) {
    return;
  }
  OldQuarnPrintf(" *** IFAIL MISMATCH IN %s: IFAIL =", routine);
  OldQuarnPrintf(" %ld", long(ifail));
  OldQuarnPrintf(" %s", ", IERR =");
  OldQuarnPrintf(" %ld", long(ierr));
  OldQuarnPrintf(" %s", ", SRNAME =");
  OldQuarnPrintf(" %s", name);
  std::putchar('\n');
}

extern "C" {

void y90ucf_([[maybe_unused]] QuarnFloat* element) {
#ifdef TESK_POISON_WORKSPACE
  *element = QuarnFloat("nan");
#endif
}

void y90udf_([[maybe_unused]] QuarnFloat* work, [[maybe_unused]] Integer n) {
#ifdef TESK_POISON_WORKSPACE
  for (Integer i = 0; i < n; ++i) {
    y90ucf_(work + i);
  }
#endif
}
}

// Ranking.
#include "src/frame/classic.h"
#include "src/util/list_sort.h"
#include "src/util/m01.h"
#include "src/util/section.h"

void tesk::m01da(const QuarnFloat* rv, Integer m1, Integer m2, const Option& order, Integer* irank,
                 char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("M01DAF", message_buffer, ifail);
  if (!section_is_valid(report, m1, m2)) {
    return;
  }
  if (!order.is_one_of("AD")) {
    return report.fail(2, kFirstOwnLabel, " ** On entry, ORDER has an illegal value: ORDER = '%1s'.", order.text());
  }

  ListSort<QuarnFloat> list(rv + (m1 - 1), m2 - m1 + 1, irank + (m1 - 1));
  const Integer head = list.ascending();
  list.number(order.letter() == 'D' ? list.descending(head) : head, m1);
}

extern "C" void m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                        Integer* ifail, int order_length) {
  tesk::call_core("M01DAF", ifail, tesk::m01da, rv, *m1, *m2, tesk::Option(order, order_length), irank);
}

// Ranking.
#include "src/frame/classic.h"
#include "src/util/list_sort.h"
#include "src/util/m01.h"
#include "src/util/section.h"
#include "tesk2mp/util.h"

namespace tesk {
namespace {

template <class Ordering>
void rank(const QuarnFloat* values, Integer count, Integer* ranks, Integer first, bool descending, Ordering ordering) {
  ListSort<QuarnFloat, Ordering> list(values, count, ranks, ordering);
  const Integer head = list.ascending();
  list.number(descending ? list.descending(head) : head, first);
}

}  // namespace

void m01da(NanRank nan, const QuarnFloat* rv, Integer m1, Integer m2, const Option& order, Integer* irank,
           char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("M01DAF", message_buffer, ifail);
  if (!section_is_valid(report, m1, m2)) {
    return;
  }
  if (!order.is_one_of("AD")) {
    return report.fail(2, kFirstOwnLabel, " ** On entry, ORDER has an illegal value: ORDER = '%1s'.", order.text());
  }

  const QuarnFloat* section = rv + (m1 - 1);
  const bool descending = order.letter() == 'D';
  if (nan == NanRank::last) {
    rank(section, m2 - m1 + 1, irank + (m1 - 1), m1, descending, NanAtOneEnd{descending});
  } else {
    rank(section, m2 - m1 + 1, irank + (m1 - 1), m1, descending, PlainOrder());
  }
}

}  // namespace tesk

extern "C" {

void QuarnMP_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                     Integer* ifail, int order_length) {
  tesk::call_core("M01DAF", ifail, tesk::m01da, tesk::NanRank::anywhere, rv, *m1, *m2,
                  tesk::Option(order, order_length), irank);
}

void QuarnMPX_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                      Integer* ifail, int order_length) {
  tesk::call_core("M01DAF", ifail, tesk::m01da, tesk::NanRank::last, rv, *m1, *m2, tesk::Option(order, order_length),
                  irank);
}
}

#include "src/util/rank.h"

#include "src/util/list_sort.h"

namespace tesk {
namespace {

template <class Ordering>
void rank_by(Ordering ordering, const QuarnFloat* values, Integer count, Order order, Integer first, Integer* ranks) {
  ListSort<QuarnFloat, Ordering> list(values, count, ranks, ordering);
  const Integer head = list.ascending();
  list.number(order == Order::descending ? list.descending(head) : head, first);
}

}  // namespace

void rank(const QuarnFloat* values, Integer count, Order order, NanRank nan, Integer first, Integer* ranks) {
  if (nan == NanRank::last) {
    rank_by(NanAtOneEnd{order == Order::descending}, values, count, order, first, ranks);
  } else {
    rank_by(PlainOrder(), values, count, order, first, ranks);
  }
}

}  // namespace tesk

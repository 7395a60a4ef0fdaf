#include "src/util/entries.h"

#include "src/frame/classic.h"
#include "src/util/cycles.h"

namespace tesk {
namespace {

/// Labels of the messages that come after those of the section.
constexpr Integer kFirstOwnLabel = 99996;

/// False, with the failure reported, unless 1 <= m1 <= m2.
bool section_is_valid(Report& report, Integer m1, Integer m2) noexcept {
  if (m2 < 1) {
    report.fail(1, 99999, " ** On entry, M2 .lt. 1: M2 =%16ld.", m2);
    return false;
  }
  if (m1 < 1) {
    report.fail(1, 99998, " ** On entry, M1 .lt. 1: M1 =%16ld.", m1);
    return false;
  }
  if (m1 > m2) {
    report.fail(1, 99997, " ** On entry, M1 .gt. M2:\n    M1 =%16ld, M2 =%16ld.", m1, m2);
    return false;
  }
  return true;
}

/// What a routine says when its array is no permutation.
struct PermutationMessages {
  const char* out_of_range;
  const char* repeated;
};

/// False, with the failure reported, unless the section is valid and each of its entries lies in m1 ... m2.
bool permutation_is_in_range(Report& report, const PermutationMessages& messages, const Integer* entries, Integer m1,
                             Integer m2) noexcept {
  if (!section_is_valid(report, m1, m2)) {
    return false;
  }
  const Integer* section = entries + (m1 - 1);
  const Integer place = find_out_of_range(section, m2 - m1 + 1, m1, m2);
  if (place >= 0) {
    report.fail(2, kFirstOwnLabel, messages.out_of_range, m1 + place, section[place]);
  }
  return place < 0;
}

void report_repeated(Report& report, const PermutationMessages& messages, Integer repeated) noexcept {
  if (repeated != 0) {
    report.fail(3, kFirstOwnLabel - 1, messages.repeated, repeated);
  }
}

constexpr PermutationMessages kRankMessages = {
    " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IRANK(I) contains an out-of-range value:\n    I =%16ld, IRANK(I) =%16ld.",
    " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IRANK contains a repeated value:%16ld."};

constexpr PermutationMessages kPermutationMessages = {
    " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IPERM(I) contains an out-of-range value:\n    I =%16ld, IPERM(I) =%16ld.",
    " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IPERM contains a repeated value:%16ld."};

template <class Value>
void rearrange(const char* routine, Value* values, Integer m1, Integer m2, Integer* irank, char* message_buffer,
               Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (permutation_is_in_range(report, kRankMessages, irank, m1, m2)) {
    const Integer repeated = move_to_ranks(irank + (m1 - 1), m1, m2 - m1 + 1, values + (m1 - 1));
    report_repeated(report, kRankMessages, repeated);
  }
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
  rank(rv + (m1 - 1), m2 - m1 + 1, order.letter() == 'D' ? Order::descending : Order::ascending, nan, m1,
       irank + (m1 - 1));
}

void m01ea(QuarnFloat* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int /*buffer_length*/) {
  rearrange("M01EAF", rv, m1, m2, irank, message_buffer, ifail);
}

void m01ed(Complex* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int /*buffer_length*/) {
  rearrange("M01EDF", rv, m1, m2, irank, message_buffer, ifail);
}

void m01za(Integer* iperm, Integer m1, Integer m2, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("M01ZAF", message_buffer, ifail);
  if (!permutation_is_in_range(report, kPermutationMessages, iperm, m1, m2)) {
    return;
  }
  Integer* section = iperm + (m1 - 1);
  const Integer count = m2 - m1 + 1;
  if (find_repeated(section, m1, count) == 0) {
    return invert_permutation(section, m1, count);
  }
  // What is no permutation stays as it is. Of several repeated values the message names the one that a cycle meets
  // first, as it does in rearranging.
  report_repeated(report, kPermutationMessages, move_to_ranks(section, m1, count));
}

}  // namespace tesk

using namespace tesk;

extern "C" {

void QuarnMP_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                     Integer* ifail, int order_length) {
  call_core("M01DAF", ifail, m01da, NanRank::anywhere, rv, *m1, *m2, Option(order, order_length), irank);
}

void QuarnMPX_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                      Integer* ifail, int order_length) {
  call_core("M01DAF", ifail, m01da, NanRank::last, rv, *m1, *m2, Option(order, order_length), irank);
}

void QuarnMP_m01eaf_(QuarnFloat* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail) {
  call_core("M01EAF", ifail, m01ea, rv, *m1, *m2, irank);
}

void QuarnMP_m01edf_(Complex* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail) {
  call_core("M01EDF", ifail, m01ed, rv, *m1, *m2, irank);
}

void QuarnMP_m01zaf_(Integer* iperm, const Integer* m1, const Integer* m2, Integer* ifail) {
  call_core("M01ZAF", ifail, m01za, iperm, *m1, *m2);
}
}

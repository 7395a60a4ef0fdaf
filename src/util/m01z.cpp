// The inverse of a permutation.
#include "src/frame/classic.h"
#include "src/util/m01.h"
#include "src/util/section.h"
#include "tesk2mp/util.h"

namespace tesk {
namespace {

constexpr PermutationMessages kMessages = {
    " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IPERM(I) contains an out-of-range value:\n    I =%16ld, IPERM(I) =%16ld.",
    " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IPERM contains a repeated value:%16ld."};

}  // namespace

void m01za(Integer* iperm, Integer m1, Integer m2, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("M01ZAF", message_buffer, ifail);
  if (!permutation_is_in_range(report, kMessages, iperm, m1, m2)) {
    return;
  }
  Integer* section = iperm + (m1 - 1);
  const Integer count = m2 - m1 + 1;
  if (find_repeated(section, m1, count) == 0) {
    return invert_permutation(section, m1, count);
  }
  // What is no permutation stays as it is. Of several repeated values the message names the one that a cycle meets
  // first, as it does in rearranging.
  report_repeated(report, kMessages, move_to_ranks(section, m1, count));
}

}  // namespace tesk

extern "C" void QuarnMP_m01zaf_(Integer* iperm, const Integer* m1, const Integer* m2, Integer* ifail) {
  tesk::call_core("M01ZAF", ifail, tesk::m01za, iperm, *m1, *m2);
}

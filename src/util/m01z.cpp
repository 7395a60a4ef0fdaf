// Permutations: inverse and check.
#include "src/frame/classic.h"
#include "src/util/m01.h"
#include "src/util/section.h"

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
  if (permutation_is_in_range(report, kMessages, iperm, m1, m2)) {
    report_repeated(report, kMessages, invert_permutation(iperm + (m1 - 1), m1, m2 - m1 + 1));
  }
}

void m01zb(Integer* iperm, Integer m1, Integer m2, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("M01ZBF", message_buffer, ifail);
  if (permutation_is_in_range(report, kMessages, iperm, m1, m2)) {
    report_repeated(report, kMessages, find_repeated(iperm + (m1 - 1), m1, m2 - m1 + 1));
  }
}

}  // namespace tesk

extern "C" void m01zaf_(Integer* iperm, const Integer* m1, const Integer* m2, Integer* ifail) {
  tesk::call_core("M01ZAF", ifail, tesk::m01za, iperm, *m1, *m2);
}

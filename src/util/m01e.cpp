// Rearranging by ranks: one body for real and complex values.
#include "src/frame/classic.h"
#include "src/util/m01.h"
#include "src/util/section.h"
#include "tesk2mp/util.h"

namespace tesk {
namespace {

constexpr PermutationMessages kMessages = {
    " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IRANK(I) contains an out-of-range value:\n    I =%16ld, IRANK(I) =%16ld.",
    " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
    "    IRANK contains a repeated value:%16ld."};

template <class Value>
void rearrange(const char* routine, Value* values, Integer m1, Integer m2, Integer* irank, char* message_buffer,
               Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (permutation_is_in_range(report, kMessages, irank, m1, m2)) {
    const Integer repeated = move_to_ranks(irank + (m1 - 1), m1, m2 - m1 + 1, values + (m1 - 1));
    report_repeated(report, kMessages, repeated);
  }
}

}  // namespace

void m01ea(QuarnFloat* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int /*buffer_length*/) {
  rearrange("M01EAF", rv, m1, m2, irank, message_buffer, ifail);
}

void m01ed(Complex* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int /*buffer_length*/) {
  rearrange("M01EDF", rv, m1, m2, irank, message_buffer, ifail);
}

}  // namespace tesk

extern "C" {

void QuarnMP_m01eaf_(QuarnFloat* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail) {
  tesk::call_core("M01EAF", ifail, tesk::m01ea, rv, *m1, *m2, irank);
}

void QuarnMP_m01edf_(Complex* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail) {
  tesk::call_core("M01EDF", ifail, tesk::m01ed, rv, *m1, *m2, irank);
}
}

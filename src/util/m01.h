// Ranking, rearranging and permutations over a section M1 ... M2 of the caller's arrays.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/frame/option.h"

namespace tesk {

/// Where NaN is ranked: wherever comparisons leave it, or after all numbers in either order.
enum class NanRank { anywhere, last };

// The routines behind the classic forms, with the message buffer that those provide.

void m01da(NanRank nan, const QuarnFloat* rv, Integer m1, Integer m2, const Option& order, Integer* irank,
           char* message_buffer, Integer* ifail, int buffer_length);
void m01ea(QuarnFloat* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int buffer_length);
void m01ed(Complex* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int buffer_length);
void m01za(Integer* iperm, Integer m1, Integer m2, char* message_buffer, Integer* ifail, int buffer_length);

}  // namespace tesk

extern "C" {

void m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
             Integer* ifail, int order_length);
void m01daf_full_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order, Integer* irank,
                  Integer* ifail, int order_length);
void m01eaf_(QuarnFloat* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail);
void m01edf_(Complex* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail);
void m01zaf_(Integer* iperm, const Integer* m1, const Integer* m2, Integer* ifail);
}

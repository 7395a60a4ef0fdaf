// Ranking, rearranging and permutations over a section M1 ... M2 of the caller's arrays: entries.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/frame/option.h"
#include "src/util/rank.h"
#include "tesk2mp/util.h"

namespace tesk {

// The routines behind the classic forms, with the message buffer that those provide.

void m01da(NanRank nan, const QuarnFloat* rv, Integer m1, Integer m2, const Option& order, Integer* irank,
           char* message_buffer, Integer* ifail, int buffer_length);
void m01ea(QuarnFloat* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int buffer_length);
void m01ed(Complex* rv, Integer m1, Integer m2, Integer* irank, char* message_buffer, Integer* ifail,
           int buffer_length);
void m01za(Integer* iperm, Integer m1, Integer m2, char* message_buffer, Integer* ifail, int buffer_length);

}  // namespace tesk

// Made by tools/contract.py from include/tesk2mp/linear.h; do not edit.
// clang-format off
#include "tesk2mp/linear.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMPX_f03aff_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* d, Integer* id, QuarnFloat* rcond, Integer* ifail) {
  tesk::call_core("F03AFF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f03affn_(n, a, lda, ipiv, d, id, rcond, message_buffer, outcome, buffer_length); });
}
}

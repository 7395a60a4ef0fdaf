// The real transform and its inverse: entries.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
void c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail, int buffer_length);
void c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
void c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail, int buffer_length);

// Companions with constants true to the working precision.
void c06faf_full_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
void c06fafn_full_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail, int buffer_length);
void c06fbf_full_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail);
void c06fbfn_full_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail, int buffer_length);
}

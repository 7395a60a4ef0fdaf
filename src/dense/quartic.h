#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d, QuarnFloat* zeror,
             QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail);
}

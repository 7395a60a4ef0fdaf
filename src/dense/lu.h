// LU factorisation with row interchanges. INFO: 0, -k when argument k is illegal (nothing is printed), or the first j
// with U(j, j) exactly zero, the factorisation being completed.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
void f07adf_ENTRY(int selector, Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info);
void f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);
void f07arf_ENTRY(int selector, Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info);

/// Row-weighted pivoting. ipiv has max(m, 1) elements: it holds a weight for each row on the way, and on return the
/// min(m, n) interchanges as whole numbers. INFO j: no pivot of step j is large enough; the factorisation stops there.
void f07adg_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* ipiv, Integer* info);
}

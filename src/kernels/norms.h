// Matrix norms, named by a letter: M (largest element), O or 1 (largest column sum), I (largest row sum), F or E
// (Frobenius). Any other letter is not an error and gives zero.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

QuarnFloat f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int);
QuarnFloat f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int);
QuarnFloat f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* work, int);
QuarnFloat f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work, int);
}

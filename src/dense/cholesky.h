// Cholesky factorisation of a complex Hermitian matrix: A = U^H U or A = L L^H on the triangle named by uplo; the other
// triangle is not touched. INFO: 0, -k when argument k is illegal (nothing is printed), or the first j whose diagonal
// element comes out not positive, which is then stored there.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
void f07frf_ENTRY(int selector, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
/// Unblocked.
void f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length);
}

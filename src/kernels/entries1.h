// The exported level-1 kernels. A count below 1 does nothing.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

/// Plane rotation (DROTG): c, s with c a + s b = r, -s a + c b = 0; r goes into a, the one number that tells c and s
/// into b.
void f06aaf_(QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* s);
/// x := alpha x, complex x, real alpha (ZDSCAL).
void f06caf_(Integer n, QuarnFloat alpha, Complex* x, Integer incx);
/// The Euclidean norm of x (DNRM2).
QuarnFloat f06ejf_(Integer n, QuarnFloat* x, Integer incx);
/// y := alpha x, real; x stays.
void f06fdf_(Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy);
/// y := alpha x, complex; x stays.
void f06hdf_(Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy);
/// y := x, complex (ZCOPY).
void f06jjf_(Integer n, Complex* x, Integer incx, Complex* y, Integer incy);
}

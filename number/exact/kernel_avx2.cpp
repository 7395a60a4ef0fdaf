// The kernels in AVX2 with FMA.
#include "number/exact/kernel.h"

#if defined(__AVX2__) && defined(__FMA__)
#define QUARN_VECTOR_BYTES 32
#define QUARN_KERNEL_NAME "avx2"
#include "number/exact/kernel_body.h"

const quarn::exact::Kernel* const quarn::exact::kKernel32 = &kThis;
#else
const quarn::exact::Kernel* const quarn::exact::kKernel32 = nullptr;
#endif

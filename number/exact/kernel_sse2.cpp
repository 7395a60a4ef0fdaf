// The kernels in vectors of 16 bytes, SSE2 on x86.
#include "number/exact/kernel.h"

#if defined(__SSE2__) || !(defined(__i386__) || defined(__x86_64__))
#define QUARN_VECTOR_BYTES 16
#define QUARN_KERNEL_NAME "sse2"
#include "number/exact/kernel_body.h"

const quarn::exact::Kernel* const quarn::exact::kKernel16 = &kThis;
#else
const quarn::exact::Kernel* const quarn::exact::kKernel16 = nullptr;
#endif

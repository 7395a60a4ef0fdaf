// The kernels in AVX-512.
#include "number/exact/kernel.h"

#if defined(__AVX512F__) && defined(__AVX512DQ__)
#define QUARN_VECTOR_BYTES 64
#define QUARN_KERNEL_NAME "avx512"
#include "number/exact/kernel_body.h"

const quarn::exact::Kernel* const quarn::exact::kKernel64 = &kThis;
#else
const quarn::exact::Kernel* const quarn::exact::kKernel64 = nullptr;
#endif

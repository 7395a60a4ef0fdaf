// The kernels in AVX-512.
#include "number/convolution/kernel.h"

#if defined(__AVX512F__) && defined(__AVX512DQ__)
#define QUARN_VECTOR_BYTES 64
#include "number/convolution/kernel_body.h"

const quarn::convolution::Kernel* const quarn::convolution::kKernel64 = &kThis;
#else
const quarn::convolution::Kernel* const quarn::convolution::kKernel64 = nullptr;
#endif

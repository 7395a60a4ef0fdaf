// The kernels in AVX2 with FMA.
#include "number/convolution/kernel.h"

#if defined(__AVX2__) && defined(__FMA__)
#define QUARN_VECTOR_BYTES 32
#include "number/convolution/kernel_body.h"

const quarn::convolution::Kernel* const quarn::convolution::kKernel32 = &kThis;
#else
const quarn::convolution::Kernel* const quarn::convolution::kKernel32 = nullptr;
#endif

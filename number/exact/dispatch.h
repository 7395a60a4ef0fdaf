// Which kernels are in use.
#pragma once

#include "number/exact/kernel.h"
#include "number/processor/vectors.h"

namespace quarn::exact {

using processor::PlainRounding;

/// The kernels in use, null when residues are not to be used: the processor has none of the instruction sets.
const Kernel* kernel_in_use() noexcept;

/// Those for small matrices: the narrowest ones that the processor runs, or the ones in use where a test has set these.
const Kernel* narrowest_kernel() noexcept;

}  // namespace quarn::exact

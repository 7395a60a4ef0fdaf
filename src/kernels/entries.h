// What the level-2 and level-3 entries share.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/kernels/options.h"
#include "tesk2mp/kernels.h"

namespace tesk {

/// Kernel names in messages are stored blank-padded to this length.
inline constexpr int kKernelNameLength = 13;

}  // namespace tesk

// Storage of numbers that a thread keeps for later.
#pragma once

#include "quarn/quarnfloat.h"

/// Gives the storage back to the system that the calling thread has kept of numbers that are gone, up to 256 MB: for
/// programs that go on where memory has ended, or that did long work and will not do more.
QRNFLOAT_API void QuarnReleaseStorage() noexcept;

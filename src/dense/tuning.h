// The tuning table: block sizes and the like of every dense factorisation and eigenvalue routine.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/dense.h"

namespace tesk {

/// What a cell of a row holds: those of the eight that a routine reads.
enum TuningKind : Integer { kBlockSize = 1, kShifts = 4, kLargestSmallBlock = 8 };

/// The value for the routine of that name ("F07ADF"), 0 when the table has no row for it.
Integer tuning_value(TuningKind kind, const char* routine) noexcept;

}  // namespace tesk

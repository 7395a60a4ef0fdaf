// The tuning table: block sizes and the like of every dense factorisation and eigenvalue routine.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

/// What a cell of a row holds. The other kinds up to 8 are free for the routine.
enum TuningKind : Integer { kBlockSize = 1, kMinimumBlock = 2, kCrossover = 3, kShifts = 4, kLargestSmallBlock = 8 };

/// The value for the routine of that name ("F07ADF"), 0 when the table has no row for it.
Integer tuning_value(TuningKind kind, const char* routine) noexcept;

}  // namespace tesk

extern "C" {

/// Reads (rwflag 0) cell ispec of the row of the named routine into *ival, or writes it from *ival. *ival becomes -1
/// when ispec is not in 1 ... 8, otherwise -2 when the name has no row.
void f07zaz_(Integer ispec, const char* name, Integer* ival, Integer rwflag, int name_length);
}

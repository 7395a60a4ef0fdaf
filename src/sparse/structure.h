// The structure of a matrix in coordinate storage, and the check that all consumers of one share.
#pragma once

#include "src/sparse/coordinate.h"

namespace tesk {

/// What can be wrong with a structure, in the order of the checks.
enum class StructureFault {
  none,
  order,         // N < 1
  few_entries,   // NNZ < 1
  many_entries,  // NNZ > N*N, or N*(N+1)/2 for a triangle
  row_range,     // IROW(I) outside 1 ... N
  column_range,  // ICOL(I) outside 1 ... N, or 1 ... IROW(I)
  out_of_order,  // entry I belongs before entry I-1
  duplicate      // entry I has the place of entry I-1
};

struct StructureCheck {
  StructureFault fault;
  Integer entry;  // I, or 0 when no entry is to blame
};

/// The first fault. All checks of one entry come before those of the next. The bound on NNZ is computed in QuarnFloat
/// arithmetic, which cannot overflow; below ten working digits it is rounded like every other number.
StructureCheck f11_check_cs(Integer n, Integer nnz, const Integer* irow, const Integer* icol, Storage storage);

/// The position of the argument that a fault is in, of a routine that begins with N, NNZ, A, IROW, ICOL; 0 for none.
Integer argument_at_fault(StructureFault fault);

}  // namespace tesk

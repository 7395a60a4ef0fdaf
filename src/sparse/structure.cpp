#include "src/sparse/structure.h"

namespace tesk {
namespace {

QuarnFloat most_entries(Integer n, Storage storage) {
  const QuarnFloat order(n);
  if (storage == Storage::general) {
    return order * order;
  }
  return order * (order + QuarnFloat(1.0)) / QuarnFloat(2.0);
}

StructureFault check_entry(Integer n, const Integer* irow, const Integer* icol, Integer k, Storage storage) noexcept {
  if (irow[k] < 1 || irow[k] > n) {
    return StructureFault::row_range;
  }
  if (icol[k] < 1 || icol[k] > (storage == Storage::general ? n : irow[k])) {
    return StructureFault::column_range;
  }
  if (k == 0 || irow[k] > irow[k - 1]) {
    return StructureFault::none;
  }
  if (irow[k] < irow[k - 1] || icol[k] < icol[k - 1]) {
    return StructureFault::out_of_order;
  }
  return icol[k] == icol[k - 1] ? StructureFault::duplicate : StructureFault::none;
}

}  // namespace

StructureCheck f11_check_cs(Integer n, Integer nnz, const Integer* irow, const Integer* icol, Storage storage) {
  if (n < 1) {
    return {StructureFault::order, 0};
  }
  if (nnz < 1) {
    return {StructureFault::few_entries, 0};
  }
  if (QuarnFloat(nnz) > most_entries(n, storage)) {
    return {StructureFault::many_entries, 0};
  }
  for (Integer k = 0; k < nnz; ++k) {
    const StructureFault fault = check_entry(n, irow, icol, k, storage);
    if (fault != StructureFault::none) {
      return {fault, k + 1};
    }
  }
  return {StructureFault::none, 0};
}

Integer argument_at_fault(StructureFault fault) {
  switch (fault) {
    case StructureFault::none:
      return 0;
    case StructureFault::order:
      return 1;
    case StructureFault::few_entries:
    case StructureFault::many_entries:
      return 2;
    case StructureFault::row_range:
      return 4;
    case StructureFault::column_range:
    case StructureFault::out_of_order:
    case StructureFault::duplicate:
      break;
  }
  return 5;
}

}  // namespace tesk

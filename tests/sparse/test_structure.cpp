#include <doctest/doctest.h>

#include <climits>
#include <vector>

#include "src/sparse/structure.h"
#include "support/digits.h"

using tesk::f11_check_cs;
using tesk::Storage;
using tesk::StructureFault;

TEST_CASE("the first fault and its entry") {
  struct Row {
    Integer n;
    std::vector<Integer> irow, icol;
    Storage storage;
    StructureFault fault;
    Integer entry;
  };
  const Storage cs = Storage::general;
  const Storage scs = Storage::lower_triangle;
  const Row rows[] = {
      {3, {1, 1, 2, 3}, {1, 3, 2, 1}, cs, StructureFault::none, 0},
      {3, {1, 2, 2, 3}, {1, 1, 2, 3}, scs, StructureFault::none, 0},
      {1, {1}, {1}, scs, StructureFault::none, 0},
      {0, {}, {}, cs, StructureFault::order, 0},
      {INT_MIN, {9}, {9}, scs, StructureFault::order, 0},
      {3, {}, {}, cs, StructureFault::few_entries, 0},
      {1, {1, 1}, {1, 1}, cs, StructureFault::many_entries, 0},
      {2, {1, 2, 2, 2}, {1, 1, 2, 2}, scs, StructureFault::many_entries, 0},
      {2, {1, 1, 2, 2}, {1, 2, 1, 2}, cs, StructureFault::none, 0},
      {3, {0, 1}, {1, 1}, cs, StructureFault::row_range, 1},
      {3, {1, 4}, {1, 1}, cs, StructureFault::row_range, 2},
      {3, {1, INT_MIN}, {1, 9}, cs, StructureFault::row_range, 2},
      {3, {1, 2}, {1, 0}, cs, StructureFault::column_range, 2},
      {3, {1, 2}, {1, 4}, cs, StructureFault::column_range, 2},
      {3, {1, 2}, {1, 3}, cs, StructureFault::none, 0},
      {3, {1, 2}, {1, 3}, scs, StructureFault::column_range, 2},
      {3, {1, 2, 1}, {1, 1, 3}, cs, StructureFault::out_of_order, 3},
      {3, {1, 2, 2}, {1, 3, 2}, cs, StructureFault::out_of_order, 3},
      {3, {1, 2, 2}, {1, 3, 3}, cs, StructureFault::duplicate, 3},
      // One entry is looked at whole before the next: order at 2 before a range at 3, a range before the order.
      {3, {2, 1, 9}, {1, 1, 9}, cs, StructureFault::out_of_order, 2},
      {3, {2, 1, 1}, {1, 9, 1}, cs, StructureFault::column_range, 2},
      {3, {2, 2, 0}, {2, 2, 0}, cs, StructureFault::duplicate, 2},
  };
  for (const Row& row : rows) {
    const auto check = f11_check_cs(row.n, Integer(row.irow.size()), row.irow.data(), row.icol.data(), row.storage);
    CAPTURE(row.n);
    CHECK(check.fault == row.fault);
    CHECK(check.entry == row.entry);
  }
}

TEST_CASE("the bound on NNZ has no overflow") {
  // The first entry is faulty, so that no other is read whatever NNZ says.
  const Integer irow = 0;
  const Integer icol = 0;
  struct Row {
    Integer n, nnz;
    Storage storage;
    bool fits;
  };
  const Row rows[] = {
      {46340, 2147395600, Storage::general, true},
      {46340, 2147395601, Storage::general, false},
      {46341, INT_MAX, Storage::general, true},
      {65535, 2147450880, Storage::lower_triangle, true},
      {65535, 2147450881, Storage::lower_triangle, false},
      {65536, INT_MAX, Storage::lower_triangle, true},
      {INT_MAX, INT_MAX, Storage::general, true},
      {INT_MAX, INT_MAX, Storage::lower_triangle, true},
  };
  for (const int digits : {10, 20, 50}) {
    support::Digits scope(digits);
    for (const Row& row : rows) {
      CAPTURE(row.n);
      CAPTURE(row.nnz);
      const auto check = f11_check_cs(row.n, row.nnz, &irow, &icol, row.storage);
      CHECK(check.fault == (row.fits ? StructureFault::row_range : StructureFault::many_entries));
    }
  }
}

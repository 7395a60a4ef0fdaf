// Canonical form of a matrix in coordinate storage: rows ascending, columns ascending within a row, no place twice. One
// body for real and complex values, whole matrices and lower triangles.
#pragma once

#include <utility>

#include "src/sparse/coordinate.h"

namespace tesk {

/// Entries of the same place: keep the first, keep their sum, or fail.
enum class Duplicates { keep_first, sum, fail };
/// Entries that equal zero after that: remove them, keep them, or fail.
enum class Zeros { remove, keep, fail };

/// The entries of a matrix, to be rearranged; they count from 0, indices from 1.
template <class Value>
struct EntryList {
  Integer n;
  Integer nnz;
  Value* a;
  Integer* irow;
  Integer* icol;

  bool same_place(Integer k, Integer l) const noexcept { return irow[k] == irow[l] && icol[k] == icol[l]; }
  void move(Integer from, Integer to) noexcept {
    if (from != to) {
      a[to] = std::move(a[from]);
      irow[to] = irow[from];
      icol[to] = icol[from];
    }
  }
};

enum class CanonicalFault { none, row_range, column_range, duplicate, zero };

struct CanonicalOutcome {
  CanonicalFault fault = CanonicalFault::none;
  Integer entry = -1;  // the first at fault, from 0
};

/// Brings the entries into canonical form, n >= 1 and nnz >= 0; starts[i - 1] := the number, from 1, of the first entry
/// of row i, i = 1 ... n + 1. work has room for n + nnz Integers and is touched only where entries are out of order.
///
/// All ranges of one entry are looked at before those of the next; an index out of range leaves everything as it is. At
/// a duplicate the entries are sorted and starts fit them, and so it is where storage for exact sums runs out; at a
/// zero duplicates are merged as well.
template <class Value>
CanonicalOutcome canonicalize(Sums sums, Storage storage, EntryList<Value>& matrix, Duplicates duplicates, Zeros zeros,
                              Integer* starts, Integer* work);

}  // namespace tesk

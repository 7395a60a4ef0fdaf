// Entries are ordered by a stable counting sort, first by column, then by row. Only indices are sorted; the values move
// once, at the end.
#include "src/sparse/canonical.h"

#include <algorithm>
#include <vector>

#include "quarn/exact.h"
#include "src/kernels/scalar.h"
#include "src/util/cycles.h"

namespace tesk {
namespace {

/// starts[i - 1] := base + the number of keys below i, i = 1 ... n; gives base + the number of all keys.
Integer bucket_starts(const Integer* keys, Integer count, Integer n, Integer base, Integer* starts) {
  std::fill_n(starts, n, 0);
  for (Integer k = 0; k < count; ++k) {
    ++starts[keys[k] - 1];
  }
  Integer next = base;
  for (Integer i = 0; i < n; ++i) {
    next += std::exchange(starts[i], next);
  }
  return next;
}

template <class Value>
void row_starts(const EntryList<Value>& matrix, Integer* istr) {
  istr[matrix.n] = bucket_starts(matrix.irow, matrix.nnz, matrix.n, 1, istr);
}

/// Sorts by row and column, stably: two passes of a counting sort over indices, then one move of each value. istr holds
/// the row starts; iwork has room for n + nnz Integers.
template <class Value>
void sort_entries(const EntryList<Value>& matrix, Integer* istr, Integer* iwork) {
  // 1. The entries by column; each count ends up at the end of its column.
  Integer* column_end = iwork;
  Integer* permutation = iwork + matrix.n;
  bucket_starts(matrix.icol, matrix.nnz, matrix.n, 0, column_end);
  for (Integer k = 0; k < matrix.nnz; ++k) {
    permutation[column_end[matrix.icol[k] - 1]++] = k;
  }
  // 2. In that order each takes the next place of its row; the row gives way to the place, and the columns, which the
  // counts tell, are written as they will be.
  Integer column = 1;
  for (Integer k = 0; k < matrix.nnz; ++k) {
    while (column_end[column - 1] == k) {
      ++column;
    }
    Integer& row = matrix.irow[permutation[k]];
    const Integer place = istr[row - 1]++ - 1;
    row = place;
    matrix.icol[place] = column;
  }
  // 3. The values. The places in irow and their inverse say where to.
  for (Integer k = 0; k < matrix.nnz; ++k) {
    permutation[matrix.irow[k]] = k;
  }
  move_to_ranks_ahead(matrix.irow, permutation, matrix.nnz, matrix.a);
  // 4. The rows from their starts, each of which has become the next one's.
  std::copy_backward(istr, istr + matrix.n - 1, istr + matrix.n);
  istr[0] = 1;
  Integer* row_entry = matrix.irow;
  for (Integer i = 1; i <= matrix.n; ++i) {
    row_entry = std::fill_n(row_entry, istr[i] - istr[i - 1], i);
  }
}

/// The first entry, from 0, that has the place of the one before it; nnz when there is none.
template <class Value>
Integer find_duplicate(const EntryList<Value>& matrix) noexcept {
  Integer k = 1;
  while (k < matrix.nnz && !matrix.same_place(k, k - 1)) {
    ++k;
  }
  return std::min(k, matrix.nnz);
}

/// The first entry behind those of the place of entry `from`.
template <class Value>
Integer end_of_place(const EntryList<Value>& matrix, Integer from) noexcept {
  Integer k = from + 1;
  while (k < matrix.nnz && matrix.same_place(k, from)) {
    ++k;
  }
  return k;
}

QuarnFloat exact_sum(const QuarnFloat* terms, Integer count, std::ptrdiff_t step = 1) {
  const QuarnFloat one(1);
  return QuarnDot(std::size_t(count), terms, step, &one, 0);
}
Complex exact_sum(const Complex* terms, Integer count) {
  return {exact_sum(&terms->re, count, 2), exact_sum(&terms->im, count, 2)};
}

/// Gives the first entry of each place their sum; the one at `duplicate` is the first that is not.
template <class Value>
void add_duplicates(Sums sums, EntryList<Value>& matrix, Integer duplicate) {
  const auto for_each_sum = [&](const auto& use) {
    for (Integer from = duplicate - 1, next = 0; from < matrix.nnz; from = next) {
      next = end_of_place(matrix, from);
      if (next - from > 1) {
        use(from, next);
      }
    }
  };
  if (sums == Sums::in_order) {
    return for_each_sum([&](Integer from, Integer next) {
      for (Integer k = from + 1; k < next; ++k) {
        matrix.a[from] = matrix.a[from] + matrix.a[k];
      }
    });
  }
  std::vector<Value> found;  // exact sums take storage: all of them before the first changes the matrix
  for_each_sum([&](Integer from, Integer next) { found.push_back(exact_sum(matrix.a + from, next - from)); });
  auto sum = found.begin();
  for_each_sum([&](Integer from, Integer /*next*/) { matrix.a[from] = std::move(*sum++); });
}

/// Keeps the first of the entries of the same place, of which the one at `duplicate` is the first that is not, and then
/// drops zeros, in one sweep. Gives the first zero that is left, or -1.
template <class Value>
Integer compact(EntryList<Value>& matrix, Integer duplicate, Zeros zeros) {
  if (zeros == Zeros::keep && duplicate == matrix.nnz) {
    return -1;
  }
  Integer first_zero = -1;
  Integer kept = zeros == Zeros::keep ? duplicate - 1 : 0;
  for (Integer from = kept, next = 0; from < matrix.nnz; from = next) {
    next = from + 1 < duplicate ? from + 1 : end_of_place(matrix, from);
    if (zeros != Zeros::keep && is_zero(matrix.a[from])) {
      if (zeros == Zeros::remove) {
        continue;
      }
      first_zero = first_zero < 0 ? kept : first_zero;
    }
    matrix.move(from, kept++);
  }
  matrix.nnz = kept;
  return first_zero;
}

/// The first index out of range, and whether the entries are in order already.
template <class Value>
CanonicalOutcome check_ranges(Storage storage, const EntryList<Value>& matrix, bool& sorted) {
  sorted = true;
  Integer former_row = 0;
  Integer former_column = 0;
  for (Integer k = 0; k < matrix.nnz; ++k) {
    const Integer row = matrix.irow[k];
    const Integer column = matrix.icol[k];
    if (row < 1 || row > matrix.n) {
      return {CanonicalFault::row_range, k};
    }
    if (column < 1 || column > (storage == Storage::general ? matrix.n : row)) {
      return {CanonicalFault::column_range, k};
    }
    sorted = sorted && (row > former_row || (row == former_row && column >= former_column));
    former_row = row;
    former_column = column;
  }
  return {};
}

}  // namespace

template <class Value>
CanonicalOutcome canonicalize(Sums sums, Storage storage, EntryList<Value>& matrix, Duplicates duplicates, Zeros zeros,
                              Integer* starts, Integer* work) {
  bool sorted = false;
  const CanonicalOutcome ranges = check_ranges(storage, matrix, sorted);
  if (ranges.fault != CanonicalFault::none) {
    return ranges;
  }
  row_starts(matrix, starts);
  if (!sorted) {
    sort_entries(matrix, starts, work);
  }
  const Integer duplicate = find_duplicate(matrix);
  if (duplicates == Duplicates::fail && duplicate < matrix.nnz) {
    return {CanonicalFault::duplicate, duplicate};
  }
  const Integer count = matrix.nnz;
  if (duplicates == Duplicates::sum && duplicate < matrix.nnz) {
    add_duplicates(sums, matrix, duplicate);
  }
  const Integer zero = compact(matrix, duplicate, zeros);
  if (matrix.nnz < count) {
    row_starts(matrix, starts);
  }
  return zero < 0 ? CanonicalOutcome{} : CanonicalOutcome{CanonicalFault::zero, zero};
}

template CanonicalOutcome canonicalize(Sums, Storage, EntryList<QuarnFloat>&, Duplicates, Zeros, Integer*, Integer*);
template CanonicalOutcome canonicalize(Sums, Storage, EntryList<Complex>&, Duplicates, Zeros, Integer*, Integer*);

}  // namespace tesk

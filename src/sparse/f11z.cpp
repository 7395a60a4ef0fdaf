// Canonical form of a matrix in coordinate storage: one body for real and complex values, whole matrices and lower
// triangles.
//
// Entries are ordered by a stable counting sort, first by column, then by row. Only indices are sorted; the values move
// once, at the end.
#include <algorithm>
#include <utility>

#include "src/frame/option.h"
#include "src/frame/report.h"
#include "src/kernels/scalar.h"
#include "src/sparse/messages.h"
#include "src/sparse/structure.h"
#include "src/util/cycles.h"
#include "tesk2mp/sparse.h"

namespace tesk {
namespace {

/// What a routine of the family accepts, and what it says otherwise.
struct Rules {
  const char* routine;
  Storage storage;
  const char* dup_letters;
  const char* dup_message;
  const char* zero_letters;
  const char* zero_message;
  const char* column_message;
};

constexpr Rules general(const char* routine) {
  return {routine,     Storage::general,
          "RSF",       " ** On entry, DUP .ne. 'R', 'S', or 'F': DUP = '%s'.",
          "RKF",       " ** On entry, ZERO .ne. 'R', 'K', or 'F': ZERO   = '%s'.",
          kColumnRange};
}

constexpr Rules lower_triangle(const char* routine) {
  return {routine,       Storage::lower_triangle,
          "RS",          " ** On entry, DUP .ne. 'R' or 'S': DUP = '%s'.",
          "RK",          " ** On entry, ZERO .ne. 'R' or 'K': ZERO = '%s' .",
          kTriangleRange};
}

/// A matrix that the caller owns; entries count from 0, indices from 1.
template <class Value>
struct Entries {
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
void row_starts(const Entries<Value>& matrix, Integer* istr) {
  istr[matrix.n] = bucket_starts(matrix.irow, matrix.nnz, matrix.n, 1, istr);
}

/// Sorts by row and column, stably: two passes of a counting sort over indices, then one move of each value. istr holds
/// the row starts; iwork has room for n + nnz Integers.
template <class Value>
void sort_entries(const Entries<Value>& matrix, Integer* istr, Integer* iwork) {
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
Integer find_duplicate(const Entries<Value>& matrix) noexcept {
  Integer k = 1;
  while (k < matrix.nnz && !matrix.same_place(k, k - 1)) {
    ++k;
  }
  return std::min(k, matrix.nnz);
}

/// Merges entries of the same place, of which the one at `duplicate` is the first, and then drops zeros, in one sweep.
/// Gives the first zero that is left, or -1.
template <class Value>
Integer compact(Entries<Value>& matrix, Integer duplicate, char dup, char zero) {
  if (zero == 'K' && duplicate == matrix.nnz) {
    return -1;
  }
  Integer first_zero = -1;
  Integer kept = zero == 'K' ? duplicate - 1 : 0;
  for (Integer k = kept; k < matrix.nnz;) {
    const Integer from = k;
    while (++k < matrix.nnz && k >= duplicate && matrix.same_place(k, from)) {
      if (dup == 'S') {
        matrix.a[from] = matrix.a[from] + matrix.a[k];
      }
    }
    if (zero != 'K' && is_zero(matrix.a[from])) {
      if (zero == 'R') {
        continue;
      }
      first_zero = first_zero < 0 ? kept : first_zero;
    }
    matrix.move(from, kept++);
  }
  matrix.nnz = kept;
  return first_zero;
}

/// Sees to the checks of arguments and index ranges; false when one failed. `sorted` tells whether the entries are in
/// order already.
template <class Value>
bool is_valid(Report& report, const Rules& rules, const Entries<Value>& matrix, const Option& dup, const Option& zero,
              bool& sorted) {
  if (matrix.n < 1) {
    return report.fail(1, 99999, " ** On entry, N .lt. 1: N =%16ld.", matrix.n), false;
  }
  if (matrix.nnz < 0) {
    return report.fail(1, 99998, " ** On entry, NNZ .lt. 0: NNZ =%16ld.", matrix.nnz), false;
  }
  if (!dup.is_one_of(rules.dup_letters)) {
    return report.fail(1, 99997, rules.dup_message, dup.text()), false;
  }
  if (!zero.is_one_of(rules.zero_letters)) {
    return report.fail(1, 99996, rules.zero_message, zero.text()), false;
  }
  sorted = true;
  Integer former_row = 0;
  Integer former_column = 0;
  for (Integer k = 0; k < matrix.nnz; ++k) {
    const Integer row = matrix.irow[k];
    const Integer column = matrix.icol[k];
    if (row < 1 || row > matrix.n) {
      return report.fail(2, 99995, kRowRange, k + 1, row, matrix.n), false;
    }
    const Integer last_column = rules.storage == Storage::general ? matrix.n : row;
    if (column < 1 || column > last_column) {
      return report.fail(2, 99994, rules.column_message, k + 1, column, last_column), false;
    }
    sorted = sorted && (row > former_row || (row == former_row && column >= former_column));
    former_row = row;
    former_column = column;
  }
  return true;
}

template <class Value>
void canonicalize(const Rules& rules, Integer n, Integer* nnz, Value* a, Integer* irow, Integer* icol,
                  const Option& dup, const Option& zero, Integer* istr, Integer* iwork, char* message_buffer,
                  Integer* ifail) {
  Report report(rules.routine, message_buffer, ifail);
  Entries<Value> matrix{n, *nnz, a, irow, icol};
  bool sorted = false;
  if (!is_valid(report, rules, matrix, dup, zero, sorted)) {
    return;
  }

  row_starts(matrix, istr);
  if (!sorted) {
    sort_entries(matrix, istr, iwork);
  }
  const Integer duplicate = find_duplicate(matrix);
  if (dup.letter() == 'F' && duplicate < matrix.nnz) {
    return report.fail(
        3, 99993, " ** On entry, a duplicate entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
        irow[duplicate], icol[duplicate]);
  }
  const Integer zero_entry = compact(matrix, duplicate, dup.letter(), zero.letter());
  if (zero_entry >= 0) {
    report.fail(4, 99992, " ** On entry, a zero entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
                irow[zero_entry], icol[zero_entry]);
  }
  if (matrix.nnz < *nnz) {
    *nnz = matrix.nnz;
    row_starts(matrix, istr);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;

extern "C" {

void QuarnMP_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonicalize(tesk::general("F11ZAF"), n, nnz, a, irow, icol, Option(dup, dup_length), Option(zero, zero_length),
                     istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonicalize(tesk::lower_triangle("F11ZBF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                     Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonicalize(tesk::general("F11ZNF"), n, nnz, a, irow, icol, Option(dup, dup_length), Option(zero, zero_length),
                     istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonicalize(tesk::lower_triangle("F11ZPF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                     Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}
}

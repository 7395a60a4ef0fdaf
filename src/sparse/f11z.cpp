// Canonical form of a matrix in coordinate storage: one body for real and complex values, whole matrices and lower
// triangles.
//
// Entries are ordered by a stable counting sort, first by column, then by row. Only indices are sorted; the values move
// once, at the end.
#include <algorithm>
#include <cstdint>

#include "src/frame/classic.h"
#include "src/frame/option.h"
#include "src/sparse/f11.h"
#include "src/sparse/messages.h"
#include "src/sparse/structure.h"
#include "src/util/cycles.h"

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

/// start[i - 1] := `base` + the number of keys below i, i = 1 ... n + 1 (the last only when `with_end`).
void bucket_starts(const Integer* keys, Integer count, Integer n, Integer base, bool with_end, Integer* start) {
  std::fill_n(start, std::size_t(n) + (with_end ? 1 : 0), 0);
  for (Integer k = 0; k < count; ++k) {
    ++start[keys[k] - 1];
  }
  // Unsigned: one past the last of 2^31 - 1 entries wraps.
  auto next = std::uint32_t(base);
  for (Integer i = 0; i < n; ++i) {
    next += std::uint32_t(std::exchange(start[i], Integer(next)));
  }
  if (with_end) {
    start[n] = Integer(next);
  }
}

/// Sorts by row and column, stably. istr holds the row starts; iwork has room for n + nnz Integers.
template <class Value>
void sort_entries(const Entries<Value>& matrix, const Integer* istr, Integer* iwork) {
  Integer* next = iwork;
  Integer* by_column = iwork + matrix.n;
  bucket_starts(matrix.icol, matrix.nnz, matrix.n, 0, false, next);
  for (Integer k = 0; k < matrix.nnz; ++k) {
    by_column[next[matrix.icol[k] - 1]++] = k;
  }
  // The rows give way to the ranks of their entries: they can be told from the row starts afterwards.
  std::copy_n(istr, matrix.n, next);
  for (Integer k = 0; k < matrix.nnz; ++k) {
    Integer& row = matrix.irow[by_column[k]];
    row = next[row - 1]++;
  }
  move_to_ranks(matrix.irow, 1, matrix.nnz, matrix.a, matrix.icol);
  Integer* row = matrix.irow;
  for (Integer i = 0; i < matrix.n; ++i) {
    const std::uint32_t length = std::uint32_t(istr[i + 1]) - std::uint32_t(istr[i]);
    row = std::fill_n(row, length, i + 1);
  }
}

/// Drops or sums entries of the same place. Gives the first duplicate of a sorted list for DUP 'F', otherwise -1.
template <class Value>
Integer merge_duplicates(Entries<Value>& matrix, char dup) {
  Integer kept = 0;
  for (Integer k = 1; k < matrix.nnz; ++k) {
    if (!matrix.same_place(k, kept)) {
      matrix.move(k, ++kept);
    } else if (dup == 'F') {
      return k;
    } else if (dup == 'S') {
      matrix.a[kept] = matrix.a[kept] + matrix.a[k];
    }
  }
  matrix.nnz = std::min(matrix.nnz, kept + 1);
  return -1;
}

/// Drops zeros. Gives the first one for ZERO 'F', otherwise -1.
template <class Value>
Integer remove_zeros(Entries<Value>& matrix, char zero) {
  if (zero == 'K') {
    return -1;
  }
  const Value nothing(QuarnFloat(0));
  Integer kept = 0;
  for (Integer k = 0; k < matrix.nnz; ++k) {
    if (matrix.a[k] != nothing) {
      matrix.move(k, kept++);
    } else if (zero == 'F') {
      return k;
    }
  }
  matrix.nnz = kept;
  return -1;
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

  bucket_starts(irow, matrix.nnz, n, 1, true, istr);
  if (!sorted) {
    sort_entries(matrix, istr, iwork);
  }
  const Integer duplicate = merge_duplicates(matrix, dup.letter());
  if (duplicate >= 0) {
    return report.fail(
        3, 99993, " ** On entry, a duplicate entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
        irow[duplicate], icol[duplicate]);
  }
  const Integer zero_entry = remove_zeros(matrix, zero.letter());
  if (zero_entry >= 0) {
    report.fail(4, 99992, " ** On entry, a zero entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
                irow[zero_entry], icol[zero_entry]);
  }
  if (matrix.nnz < *nnz) {
    *nnz = matrix.nnz;
    bucket_starts(irow, matrix.nnz, n, 1, true, istr);
  }
}

template <class Value, class Core>
void classic(const char* routine, Core core, const Integer* n, Integer* nnz, Value* a, Integer* irow, Integer* icol,
             const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length,
             int zero_length) {
  call_core(routine, ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) {
    core(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length,
         buffer_length);
  });
}

}  // namespace
}  // namespace tesk

using tesk::Option;

extern "C" {

void f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int /*buffer_length*/) {
  tesk::canonicalize(tesk::general("F11ZAF"), n, nnz, a, irow, icol, Option(dup, dup_length), Option(zero, zero_length),
                     istr, iwork, message_buffer, ifail);
}

void f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int /*buffer_length*/) {
  tesk::canonicalize(tesk::lower_triangle("F11ZBF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                     Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int /*buffer_length*/) {
  tesk::canonicalize(tesk::general("F11ZNF"), n, nnz, a, irow, icol, Option(dup, dup_length), Option(zero, zero_length),
                     istr, iwork, message_buffer, ifail);
}

void f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int /*buffer_length*/) {
  tesk::canonicalize(tesk::lower_triangle("F11ZPF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                     Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::classic("F11ZAF", f11zafn_, n, nnz, a, irow, icol, dup, zero, istr, iwork, ifail, dup_length, zero_length);
}

void f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::classic("F11ZNF", f11znfn_, n, nnz, a, irow, icol, dup, zero, istr, iwork, ifail, dup_length, zero_length);
}

void f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::classic("F11ZPF", f11zpfn_, n, nnz, a, irow, icol, dup, zero, istr, iwork, ifail, dup_length, zero_length);
}
}

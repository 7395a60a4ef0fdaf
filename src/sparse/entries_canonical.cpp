// Canonical form of a sparse matrix: entries.
#include "src/frame/option.h"
#include "src/frame/report.h"
#include "src/sparse/canonical.h"
#include "src/sparse/messages.h"
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

template <class Value>
void canonical_form(Sums sums, const Rules& rules, Integer n, Integer* nnz, Value* a, Integer* irow, Integer* icol,
                    const Option& dup, const Option& zero, Integer* istr, Integer* iwork, char* message_buffer,
                    Integer* ifail) {
  Report report(rules.routine, message_buffer, ifail);
  if (n < 1) {
    return report.fail(1, 99999, " ** On entry, N .lt. 1: N =%16ld.", n);
  }
  if (*nnz < 0) {
    return report.fail(1, 99998, " ** On entry, NNZ .lt. 0: NNZ =%16ld.", *nnz);
  }
  if (!dup.is_one_of(rules.dup_letters)) {
    return report.fail(1, 99997, rules.dup_message, dup.text());
  }
  if (!zero.is_one_of(rules.zero_letters)) {
    return report.fail(1, 99996, rules.zero_message, zero.text());
  }
  const Duplicates duplicates = dup.letter() == 'R'   ? Duplicates::keep_first
                                : dup.letter() == 'S' ? Duplicates::sum
                                                      : Duplicates::fail;
  const Zeros zeros = zero.letter() == 'R' ? Zeros::remove : zero.letter() == 'K' ? Zeros::keep : Zeros::fail;

  EntryList<Value> matrix{n, *nnz, a, irow, icol};
  const auto [fault, k] = canonicalize(sums, rules.storage, matrix, duplicates, zeros, istr, iwork);
  *nnz = matrix.nnz;
  switch (fault) {
    case CanonicalFault::none:
      return;
    case CanonicalFault::row_range:
      return report.fail(2, 99995, kRowRange, k + 1, irow[k], n);
    case CanonicalFault::column_range:
      return report.fail(2, 99994, rules.column_message, k + 1, icol[k],
                         rules.storage == Storage::general ? n : irow[k]);
    case CanonicalFault::duplicate:
      return report.fail(
          3, 99993, " ** On entry, a duplicate entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
          irow[k], icol[k]);
    case CanonicalFault::zero:
      return report.fail(4, 99992,
                         " ** On entry, a zero entry has been found in row I and column J:\n    I = %16ld, J = %16ld.",
                         irow[k], icol[k]);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;
using tesk::Sums;

extern "C" {

void QuarnMP_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::in_order, tesk::general("F11ZAF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMPX_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                       const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                       int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::exact, tesk::general("F11ZAF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::in_order, tesk::lower_triangle("F11ZBF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMPX_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                       const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                       int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::exact, tesk::lower_triangle("F11ZBF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::in_order, tesk::general("F11ZNF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMPX_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                       const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                       int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::exact, tesk::general("F11ZNF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMP_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                      const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                      int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::in_order, tesk::lower_triangle("F11ZPF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}

void QuarnMPX_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                       const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                       int dup_length, int zero_length, int /*buffer_length*/) {
  tesk::canonical_form(Sums::exact, tesk::lower_triangle("F11ZPF"), n, nnz, a, irow, icol, Option(dup, dup_length),
                       Option(zero, zero_length), istr, iwork, message_buffer, ifail);
}
}

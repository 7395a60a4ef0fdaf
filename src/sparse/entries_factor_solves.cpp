// Solutions with incomplete factorisations: entries, and the check of factors that come back from the caller.
#include <vector>

#include "src/frame/option.h"
#include "src/kernels/scalar.h"
#include "src/sparse/factor_solves.h"
#include "src/sparse/structure_report.h"
#include "tesk2mp/incomplete.h"

namespace tesk {
namespace {

/// What a routine says of arrays that an earlier call has left. The texts about permutations of the complex routines
/// name the real partner: the interface fixes them so.
struct Advice {
  const char* arrays;
  const char* permutations;
};

constexpr Advice kRealLu = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DAF "
    "and "
    "F11DBF.",
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DAF "
    "and "
    "F11DBF."};
constexpr Advice kComplexLu = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DNF "
    "and "
    "F11DPF.",
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DNF "
    "and "
    "F11DBF."};
constexpr Advice kRealCholesky = {
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JAF and F11JBF.",
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JAF and F11JBF."};
constexpr Advice kComplexCholesky = {
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and F11JPF.",
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and F11JBF."};

/// Factors as they come back. Each check returns false when it has reported a failure.
template <class Value>
class ReturnedFactors {
 public:
  ReturnedFactors(Report& report, const Advice& advice, Storage storage, const FactorView<Value>& factors, Integer la,
                  const Integer* irow)
      : report_(report), advice_(advice), storage_(storage), factors_(factors), la_(la), irow_(irow) {}

  /// `first` is the label of N < 1.
  bool are_valid(Integer first) {
    if (factors_.n < 1) {
      report_.fail(2, first, " ** On entry, N .lt. 1: N =%16ld.", factors_.n);
      return false;
    }
    return starts_fit(first) && entries_are_valid(first) && rows_are_valid(first) &&
           is_permutation(factors_.row_order, first - 10,
                          storage_ == Storage::general
                              ? " ** On entry, IPIVP(I) .lt. 1 or IPIVP(I) .gt. N:\n    I =%16ld, IPIVP(I) =%16ld."
                              : " ** On entry, IPIV(I) .lt. 1 or IPIV(I) .gt. N:\n    I =%16ld, IPIV(I) =%16ld.",
                          storage_ == Storage::general
                              ? " ** On entry, IPIVP(I) is a repeated value:\n    I =%16ld, IPIVP(I) =%16ld."
                              : " ** On entry, IPIV(I) is a repeated value:\n    I =%16ld, IPIV(I) =%16ld.") &&
           (storage_ == Storage::lower_triangle ||
            is_permutation(factors_.column_order, first - 12,
                           " ** On entry, IPIVQ(I) .lt. 1 or IPIVQ(I) .gt. N:\n    I =%16ld, IPIVQ(I) =%16ld.",
                           " ** On entry, IPIVQ(I) is a repeated value:\n    I =%16ld, IPIVQ(I) =%16ld."));
  }

 private:
  template <class... Values>
  bool fail(Integer label, const char* message, const Values&... values) {
    report_.fail(3, label, AdvisedMessage(message, advice_.arrays), values...);
    return false;
  }
  bool fail_at_start(Integer first, Integer i) {
    return fail(first - 7, " ** On entry, ISTR(I) is not where row I starts:\n    I =%16ld, ISTR(I) =%16ld.", i + 1,
                factors_.istr[i]);
  }

  bool starts_fit(Integer first) {
    const Integer before = factors_.istr[0] - 1;
    if (before < 1) {
      return fail(first - 1, " ** On entry, NNZ .lt. 1: NNZ =%16ld.", before);
    }
    for (Integer i = 1; i <= factors_.n; ++i) {
      if (factors_.istr[i] <= factors_.istr[i - 1] || factors_.istr[i] - 1 > la_) {
        return fail_at_start(first, i);
      }
    }
    return true;
  }

  bool entries_are_valid(Integer first) {
    const Integer before = factors_.istr[0] - 1;
    return structure_is_valid(report_, {first, 3, 3, advice_.arrays, before}, storage_, factors_.n,
                              factors_.istr[factors_.n] - factors_.istr[0], irow_ + before, factors_.icol + before);
  }

  bool rows_are_valid(Integer first) {
    for (Integer i = 0; i < factors_.n; ++i) {
      const Integer start = factors_.istr[i];
      const Integer end = factors_.istr[i + 1];
      if (irow_[start - 1] != i + 1 || irow_[end - 2] != i + 1) {
        return fail_at_start(first, i);
      }
      const Integer place = storage_ == Storage::general ? factors_.idiag[i] : end - 1;
      if (place < start || place >= end || factors_.icol[place - 1] != i + 1) {
        return storage_ == Storage::general
                   ? fail(first - 8,
                          " ** On entry, IDIAG(I) is not the place of the pivot of row I:\n    I =%16ld, IDIAG(I) "
                          "=%16ld.",
                          i + 1, place)
                   : fail(first - 8, " ** On entry, row I of the factors does not end in its pivot:\n    I =%16ld.",
                          i + 1);
      }
      if (is_zero(factors_.a[place - 1])) {
        return fail(first - 9, " ** On entry, the pivot of row I of the factors is zero:\n    I =%16ld.", i + 1);
      }
    }
    return true;
  }

  bool is_permutation(const Integer* order, Integer label, const char* out_of_range, const char* repeated) {
    std::vector<char> seen(std::size_t(factors_.n) + 1);
    for (Integer i = 0; i < factors_.n; ++i) {
      const bool outside = order[i] < 1 || order[i] > factors_.n;
      if (outside || seen[std::size_t(order[i])] != 0) {
        report_.fail(3, outside ? label : label - 1,
                     AdvisedMessage(outside ? out_of_range : repeated, advice_.permutations), i + 1, order[i]);
        return false;
      }
      seen[std::size_t(order[i])] = 1;
    }
    return true;
  }

  Report& report_;
  const Advice& advice_;
  Storage storage_;
  const FactorView<Value>& factors_;
  Integer la_;
  const Integer* irow_;
};

/// The check of CHECK, and with 'C' that of the factors.
template <class Value>
bool factors_are_valid(Report& report, const Advice& advice, Storage storage, const FactorView<Value>& factors,
                       Integer la, const Integer* irow, const Option& check, Integer label) {
  if (!check.is_one_of("CN")) {
    report.fail(1, label, " ** On entry, CHECK .ne. 'C' or 'N': CHECK = '%s'.", check.text());
    return false;
  }
  return check.letter() == 'N' ||
         ReturnedFactors<Value>(report, advice, storage, factors, la, irow).are_valid(label - 1);
}

template <class Value>
void solve_with_lu(const char* routine, const Advice& advice, const Option& trans, const FactorView<Value>& factors,
                   Integer la, const Integer* irow, const Option& check, const Value* y, Value* x, char* message_buffer,
                   Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (!trans.is_one_of("NT")) {
    return report.fail(1, 99999, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = '%s'.", trans.text());
  }
  if (factors_are_valid(report, advice, Storage::general, factors, la, irow, check, 99998)) {
    solve_lu(trans.letter() == 'N' ? Op::none : Op::conjugate_transpose, factors, y, x);
  }
}

template <class Value>
void solve_with_cholesky(const char* routine, const Advice& advice, const FactorView<Value>& factors, Integer la,
                         const Integer* irow, const Option& check, const Value* y, Value* x, char* message_buffer,
                         Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (factors_are_valid(report, advice, Storage::lower_triangle, factors, la, irow, check, 99999)) {
    solve_cholesky(factors, y, x);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;

extern "C" {

void QuarnMP_f11dbfn_(const char* trans, Integer n, const QuarnFloat* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::solve_with_lu<QuarnFloat>("F11DBF", tesk::kRealLu, Option(trans, trans_length),
                                  {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                                  message_buffer, ifail);
}

void QuarnMP_f11dpfn_(const char* trans, Integer n, const Complex* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const char* check, const Complex* y, Complex* x, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::solve_with_lu<Complex>("F11DPF", tesk::kComplexLu, Option(trans, trans_length),
                               {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                               message_buffer, ifail);
}

void QuarnMP_f11jbfn_(Integer n, const QuarnFloat* a, Integer la, const Integer* irow, const Integer* icol,
                      const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y, QuarnFloat* x,
                      char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<QuarnFloat>("F11JBF", tesk::kRealCholesky, {n, a, icol, istr, nullptr, ipiv, nullptr}, la,
                                        irow, Option(check, check_length), y, x, message_buffer, ifail);
}

void QuarnMP_f11jpfn_(Integer n, const Complex* a, Integer la, const Integer* irow, const Integer* icol,
                      const Integer* ipiv, const Integer* istr, const char* check, const Complex* y, Complex* x,
                      char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<Complex>("F11JPF", tesk::kComplexCholesky, {n, a, icol, istr, nullptr, ipiv, nullptr}, la,
                                     irow, Option(check, check_length), y, x, message_buffer, ifail);
}
}

// Solutions with incomplete factorisations: entries.
#include "src/frame/option.h"
#include "src/sparse/messages.h"
#include "src/sparse/returned_factors.h"
#include "tesk2mp/incomplete.h"

namespace tesk {
namespace {

/// The check of CHECK, and with 'C' that of the factors.
template <class Value>
bool factors_are_valid(Report& report, const Advice& advice, Storage storage, const FactorView<Value>& factors,
                       Integer la, const Integer* irow, const Option& check, Integer label) {
  if (!check.is_one_of("CN")) {
    report.fail(1, label, kCheckOption, check.text());
    return false;
  }
  return check.letter() == 'N' ||
         ReturnedFactors<Value>(report, advice, storage, factors, la, irow).are_valid(label - 1);
}

template <class Value>
void solve_with_lu(Sums sums, const char* routine, const Advice& advice, const Option& trans,
                   const FactorView<Value>& factors, Integer la, const Integer* irow, const Option& check,
                   const Value* y, Value* x, char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (!trans.is_one_of("NT")) {
    return report.fail(1, 99999, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = '%s'.", trans.text());
  }
  if (factors_are_valid(report, advice, Storage::general, factors, la, irow, check, 99998)) {
    solve_lu(sums, trans.letter() == 'N' ? Op::none : Op::conjugate_transpose, factors, y, x);
  }
}

template <class Value>
void solve_with_cholesky(Sums sums, const char* routine, const Advice& advice, const FactorView<Value>& factors,
                         Integer la, const Integer* irow, const Option& check, const Value* y, Value* x,
                         char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (factors_are_valid(report, advice, Storage::lower_triangle, factors, la, irow, check, 99999)) {
    solve_cholesky(sums, factors, y, x);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;
using tesk::Sums;

extern "C" {

void QuarnMP_f11dbfn_(const char* trans, Integer n, const QuarnFloat* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::solve_with_lu<QuarnFloat>(Sums::in_order, "F11DBF", tesk::kRealLu, Option(trans, trans_length),
                                  {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                                  message_buffer, ifail);
}

void QuarnMPX_f11dbfn_(const char* trans, Integer n, const QuarnFloat* a, Integer la, const Integer* irow,
                       const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                       const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x,
                       char* message_buffer, Integer* ifail, int trans_length, int check_length,
                       int /*buffer_length*/) {
  tesk::solve_with_lu<QuarnFloat>(Sums::exact, "F11DBF", tesk::kRealLu, Option(trans, trans_length),
                                  {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                                  message_buffer, ifail);
}

void QuarnMP_f11dpfn_(const char* trans, Integer n, const Complex* a, Integer la, const Integer* irow,
                      const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                      const Integer* idiag, const char* check, const Complex* y, Complex* x, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::solve_with_lu<Complex>(Sums::in_order, "F11DPF", tesk::kComplexLu, Option(trans, trans_length),
                               {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                               message_buffer, ifail);
}

void QuarnMPX_f11dpfn_(const char* trans, Integer n, const Complex* a, Integer la, const Integer* irow,
                       const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                       const Integer* idiag, const char* check, const Complex* y, Complex* x, char* message_buffer,
                       Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::solve_with_lu<Complex>(Sums::exact, "F11DPF", tesk::kComplexLu, Option(trans, trans_length),
                               {n, a, icol, istr, idiag, ipivp, ipivq}, la, irow, Option(check, check_length), y, x,
                               message_buffer, ifail);
}

void QuarnMP_f11jbfn_(Integer n, const QuarnFloat* a, Integer la, const Integer* irow, const Integer* icol,
                      const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y, QuarnFloat* x,
                      char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<QuarnFloat>(Sums::in_order, "F11JBF", tesk::kRealCholesky,
                                        {n, a, icol, istr, nullptr, ipiv, nullptr}, la, irow,
                                        Option(check, check_length), y, x, message_buffer, ifail);
}

void QuarnMPX_f11jbfn_(Integer n, const QuarnFloat* a, Integer la, const Integer* irow, const Integer* icol,
                       const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y, QuarnFloat* x,
                       char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<QuarnFloat>(Sums::exact, "F11JBF", tesk::kRealCholesky,
                                        {n, a, icol, istr, nullptr, ipiv, nullptr}, la, irow,
                                        Option(check, check_length), y, x, message_buffer, ifail);
}

void QuarnMP_f11jpfn_(Integer n, const Complex* a, Integer la, const Integer* irow, const Integer* icol,
                      const Integer* ipiv, const Integer* istr, const char* check, const Complex* y, Complex* x,
                      char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<Complex>(Sums::in_order, "F11JPF", tesk::kComplexCholesky,
                                     {n, a, icol, istr, nullptr, ipiv, nullptr}, la, irow, Option(check, check_length),
                                     y, x, message_buffer, ifail);
}

void QuarnMPX_f11jpfn_(Integer n, const Complex* a, Integer la, const Integer* irow, const Integer* icol,
                       const Integer* ipiv, const Integer* istr, const char* check, const Complex* y, Complex* x,
                       char* message_buffer, Integer* ifail, int check_length, int /*buffer_length*/) {
  tesk::solve_with_cholesky<Complex>(Sums::exact, "F11JPF", tesk::kComplexCholesky,
                                     {n, a, icol, istr, nullptr, ipiv, nullptr}, la, irow, Option(check, check_length),
                                     y, x, message_buffer, ifail);
}
}

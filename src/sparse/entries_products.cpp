// Products of a sparse matrix and a vector: entries.
#include "src/frame/option.h"
#include "src/frame/report.h"
#include "src/sparse/messages.h"
#include "src/sparse/spmv.h"
#include "src/sparse/structure_report.h"
#include "tesk2mp/sparse.h"

namespace tesk {
namespace {

/// The check of CHECK, and with 'C' that of the structure; false when one fails.
template <class Value>
bool matrix_is_valid(Report& report, const Option& check, Integer structure_label, const CoordinateMatrix<Value>& m,
                     Storage storage) {
  if (!check.is_one_of("CN")) {
    report.fail(1, 99999, kCheckOption, check.text());
    return false;
  }
  return check.letter() == 'N' ||
         structure_is_valid(report, StructureReport{structure_label, 2, 3}, storage, m.n, m.nnz, m.irow, m.icol);
}

template <class Value>
void general_product(Sums sums, const char* routine, const Option& trans, const CoordinateMatrix<Value>& matrix,
                     const Option& check, const Value* x, Value* y, char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (!matrix_is_valid(report, check, 99997, matrix, Storage::general)) {
    return;
  }
  if (!trans.is_one_of("NT")) {
    return report.fail(1, 99998, " ** On entry, TRANS .ne. 'N' or 'T': TRANS = '%s'.", trans.text());
  }

  if (trans.letter() == 'N') {
    return spmv(sums, Storage::general, matrix, x, y);
  }
  spmv_adjoint(sums, matrix, x, y);
}

template <class Value>
void triangle_product(Sums sums, const char* routine, const CoordinateMatrix<Value>& matrix, const Option& check,
                      const Value* x, Value* y, char* message_buffer, Integer* ifail) {
  Report report(routine, message_buffer, ifail);
  if (matrix_is_valid(report, check, 99998, matrix, Storage::lower_triangle)) {
    spmv(sums, Storage::lower_triangle, matrix, x, y);
  }
}

}  // namespace
}  // namespace tesk

using tesk::Option;
using tesk::Sums;

extern "C" {

void QuarnMP_f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                      const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::general_product<QuarnFloat>(Sums::in_order, "F11XAF", Option(trans, trans_length), {n, nnz, a, irow, icol},
                                    Option(check, check_length), x, y, message_buffer, ifail);
}

void QuarnMPX_f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                       const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer,
                       Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::general_product<QuarnFloat>(Sums::exact, "F11XAF", Option(trans, trans_length), {n, nnz, a, irow, icol},
                                    Option(check, check_length), x, y, message_buffer, ifail);
}

void QuarnMP_f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow,
                      const Integer* icol, const char* check, const Complex* x, Complex* y, char* message_buffer,
                      Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::general_product<Complex>(Sums::in_order, "F11XNF", Option(trans, trans_length), {n, nnz, a, irow, icol},
                                 Option(check, check_length), x, y, message_buffer, ifail);
}

void QuarnMPX_f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow,
                       const Integer* icol, const char* check, const Complex* x, Complex* y, char* message_buffer,
                       Integer* ifail, int trans_length, int check_length, int /*buffer_length*/) {
  tesk::general_product<Complex>(Sums::exact, "F11XNF", Option(trans, trans_length), {n, nnz, a, irow, icol},
                                 Option(check, check_length), x, y, message_buffer, ifail);
}

void QuarnMP_f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                      const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer, Integer* ifail,
                      int check_length, int /*buffer_length*/) {
  tesk::triangle_product<QuarnFloat>(Sums::in_order, "F11XEF", {n, nnz, a, irow, icol}, Option(check, check_length), x,
                                     y, message_buffer, ifail);
}

void QuarnMPX_f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                       const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer, Integer* ifail,
                       int check_length, int /*buffer_length*/) {
  tesk::triangle_product<QuarnFloat>(Sums::exact, "F11XEF", {n, nnz, a, irow, icol}, Option(check, check_length), x, y,
                                     message_buffer, ifail);
}

void QuarnMP_f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                      const char* check, const Complex* x, Complex* y, char* message_buffer, Integer* ifail,
                      int check_length, int /*buffer_length*/) {
  tesk::triangle_product<Complex>(Sums::in_order, "F11XSF", {n, nnz, a, irow, icol}, Option(check, check_length), x, y,
                                  message_buffer, ifail);
}

void QuarnMPX_f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                       const char* check, const Complex* x, Complex* y, char* message_buffer, Integer* ifail,
                       int check_length, int /*buffer_length*/) {
  tesk::triangle_product<Complex>(Sums::exact, "F11XSF", {n, nnz, a, irow, icol}, Option(check, check_length), x, y,
                                  message_buffer, ifail);
}
}

// Made by tools/contract.py from include/tesk2mp/kernels.h; do not edit.
// clang-format off
#include "tesk2mp/kernels.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_f06paf_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int trans_length) {
  QuarnMP_f06paf_ENTRY(0, trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMP_dgemv_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int trans_length) {
  QuarnMP_f06paf_ENTRY(1, trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMPX_dgemv_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int trans_length) {
  QuarnMPX_f06paf_(trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMP_f06saf_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length) {
  QuarnMP_f06saf_ENTRY(0, trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMP_zgemv_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length) {
  QuarnMP_f06saf_ENTRY(1, trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMPX_zgemv_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length) {
  QuarnMPX_f06saf_(trans, m, n, std::move(alpha), a, lda, x, incx, std::move(beta), y, incy, trans_length);
}

void QuarnMP_f06pff_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06pff_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_dtrmv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06pff_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_f06sff_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06sff_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_ztrmv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06sff_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_f06pjf_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06pjf_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_dtrsv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06pjf_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMPX_dtrsv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMPX_f06pjf_(uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_f06sjf_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06sjf_ENTRY(0, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_ztrsv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMP_f06sjf_ENTRY(1, uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMPX_ztrsv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length, int diag_length) {
  QuarnMPX_f06sjf_(uplo, trans, diag, n, a, lda, x, incx, uplo_length, trans_length, diag_length);
}

void QuarnMP_f06pmf_(Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy, QuarnFloat* a, Integer lda) {
  QuarnMP_f06pmf_ENTRY(0, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_dger_(Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy, QuarnFloat* a, Integer lda) {
  QuarnMP_f06pmf_ENTRY(1, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_f06smf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a, Integer lda) {
  QuarnMP_f06smf_ENTRY(0, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_zgeru_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a, Integer lda) {
  QuarnMP_f06smf_ENTRY(1, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_f06snf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a, Integer lda) {
  QuarnMP_f06snf_ENTRY(0, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_zgerc_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a, Integer lda) {
  QuarnMP_f06snf_ENTRY(1, m, n, std::move(alpha), x, incx, y, incy, a, lda);
}

void QuarnMP_f06yaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMP_f06yaf_ENTRY(0, transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMP_dgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMP_f06yaf_ENTRY(1, transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMPX_dgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMPX_f06yaf_(transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMP_f06zaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMP_f06zaf_ENTRY(0, transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMP_zgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMP_f06zaf_ENTRY(1, transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMPX_zgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int transa_length, int transb_length) {
  QuarnMPX_f06zaf_(transa, transb, m, n, k, std::move(alpha), a, lda, b, ldb, std::move(beta), c, ldc, transa_length, transb_length);
}

void QuarnMP_f06yjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMP_f06yjf_ENTRY(0, side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMP_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMP_f06yjf_ENTRY(1, side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMPX_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMPX_f06yjf_(side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMP_f06zjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMP_f06zjf_ENTRY(0, side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMP_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMP_f06zjf_ENTRY(1, side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMPX_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int side_length, int uplo_length, int transa_length, int diag_length) {
  QuarnMPX_f06zjf_(side, uplo, transa, diag, m, n, std::move(alpha), a, lda, b, ldb, side_length, uplo_length, transa_length, diag_length);
}

void QuarnMP_f06zpf_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length, int trans_length) {
  QuarnMP_f06zpf_ENTRY(0, uplo, trans, n, k, std::move(alpha), a, lda, std::move(beta), c, ldc, uplo_length, trans_length);
}

void QuarnMP_zherk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length, int trans_length) {
  QuarnMP_f06zpf_ENTRY(1, uplo, trans, n, k, std::move(alpha), a, lda, std::move(beta), c, ldc, uplo_length, trans_length);
}

void QuarnMPX_zherk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length, int trans_length) {
  QuarnMPX_f06zpf_(uplo, trans, n, k, std::move(alpha), a, lda, std::move(beta), c, ldc, uplo_length, trans_length);
}
}

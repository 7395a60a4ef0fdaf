// Made by tools/contract.py from include/tesk2mp/dense.h; do not edit.
// clang-format off
#include "tesk2mp/dense.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMP_f07adf_ENTRY(0, m, n, a, lda, ipiv, info);
}

void QuarnMP_dgetrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMP_f07adf_ENTRY(1, m, n, a, lda, ipiv, info);
}

void QuarnMPX_dgetrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMPX_f07adf_(m, n, a, lda, ipiv, info);
}

void QuarnMP_f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMP_f07arf_ENTRY(0, m, n, a, lda, ipiv, info);
}

void QuarnMP_zgetrf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMP_f07arf_ENTRY(1, m, n, a, lda, ipiv, info);
}

void QuarnMPX_zgetrf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info) {
  QuarnMPX_f07arf_(m, n, a, lda, ipiv, info);
}

void QuarnMP_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length) {
  QuarnMP_f07frf_ENTRY(0, uplo, n, a, lda, info, uplo_length);
}

void QuarnMP_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length) {
  QuarnMP_f07frf_ENTRY(1, uplo, n, a, lda, info, uplo_length);
}

void QuarnMPX_zpotrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length) {
  QuarnMPX_f07frf_(uplo, n, a, lda, info, uplo_length);
}

void QuarnMP_zpotf2_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int uplo_length) {
  QuarnMP_f07frz_(uplo, n, a, lda, info, uplo_length);
}

void QuarnMPX_dgebal_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi, QuarnFloat* scale, Integer* info, int job_length) {
  QuarnMPX_f08nhf_(job, n, a, lda, ilo, ihi, scale, info, job_length);
}

void QuarnMP_f08pef_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info, int job_length, int compz_length) {
  QuarnMP_f08pef_ENTRY(0, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info, job_length, compz_length);
}

void QuarnMP_dhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info, int job_length, int compz_length) {
  QuarnMP_f08pef_ENTRY(1, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info, job_length, compz_length);
}

void QuarnMPX_dhseqr_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info, int job_length, int compz_length) {
  QuarnMPX_f08pef_(job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info, job_length, compz_length);
}

void QuarnMP_dlahqr_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z, Integer ldz, Integer* info) {
  QuarnMP_f08pez_(wantt, wantz, n, ilo, ihi, h, ldh, wr, wi, iloz, ihiz, z, ldz, info);
}

void QuarnMP_dtrevc_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm, Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length) {
  QuarnMP_f08qkf_(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info, side_length, howmny_length);
}

void QuarnMPX_dtrevc_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm, Integer* m, QuarnFloat* work, Integer* info, int side_length, int howmny_length) {
  QuarnMPX_f08qkf_(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info, side_length, howmny_length);
}

void QuarnMP_dtrsna_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s, QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork, Integer* iwork, Integer* info, int job_length, int howmny_length) {
  QuarnMP_f08qlf_(job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, iwork, info, job_length, howmny_length);
}

void QuarnMPX_dtrsna_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt, QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s, QuarnFloat* sep, Integer mm, Integer* m, QuarnFloat* work, Integer ldwork, Integer* iwork, Integer* info, int job_length, int howmny_length) {
  QuarnMPX_f08qlf_(job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, iwork, info, job_length, howmny_length);
}
}

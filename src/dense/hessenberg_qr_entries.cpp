// The entries of the QR algorithm: DHSEQR and its double-shift kernel DLAHQR.
#include <algorithm>

#include "src/dense/hessenberg_qr.h"
#include "src/kernels/level1.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

/// Checks, then the algorithm; the arguments of DHSEQR but for the two lengths.
void checked_qr(Accuracy accuracy, const char* job, const char* compz, Integer n, Integer ilo, Integer ihi,
                QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz,
                QuarnFloat* work, Integer lwork, Integer* info) {
  const bool wants_schur_form = letter(job) == 'S';
  const bool initialises = letter(compz) == 'I';
  const bool wants_vectors = initialises || letter(compz) == 'V';
  const Integer least = std::max<Integer>(1, n);
  work[0] = least;
  *info = -first_wrong({{!wants_schur_form && letter(job) != 'E', 1},
                        {!wants_vectors && letter(compz) != 'N', 2},
                        {n < 0, 3},
                        {ilo < 1 || ilo > least, 4},
                        {ihi < std::min(ilo, n) || ihi > n, 5},
                        {ldh < least, 7},
                        {ldz < (wants_vectors ? least : 1), 11},
                        {lwork < least && lwork != -1, 13}});
  if (*info != 0 || lwork == -1) {
    return;
  }
  const OneBasedMatrix<QuarnFloat> zv(z, ldz);
  if (initialises) {
    for (Integer j = 1; j <= n; ++j) {
      fill(n, QuarnFloat(), zv.column(j));
      zv(j, j) = 1;
    }
  }
  *info = hessenberg_qr(accuracy, wants_schur_form, n, ilo, ihi, {h, ldh}, wr, wi, {zv, 1, wants_vectors ? n : 0}).info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f08pez_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh,
                     QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z, Integer ldz,
                     Integer* info) {
  *info =
      tesk::double_shift_qr(wantt != 0, n, ilo, ihi, {h, ldh}, wr, wi, {{z, ldz}, iloz, wantz != 0 ? ihiz : iloz - 1});
}

void QuarnMP_f08pef_ENTRY(int /*selector*/, const char* job, const char* compz, Integer n, Integer ilo, Integer ihi,
                          QuarnFloat* h, Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz,
                          QuarnFloat* work, Integer lwork, Integer* info, int /*job_length*/, int /*compz_length*/) {
  tesk::checked_qr(tesk::Accuracy::classic, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info);
}

void QuarnMPX_f08pef_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                      Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work,
                      Integer lwork, Integer* info, int /*job_length*/, int /*compz_length*/) {
  tesk::checked_qr(tesk::Accuracy::full, job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info);
}
}

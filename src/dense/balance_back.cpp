// E. Anderson et al., LAPACK Users' Guide: DGEBAK.
#include <algorithm>

#include "src/kernels/level1.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

template <class T>
Integer undo_balancing(const char* job, const char* side, Integer n, Integer ilo, Integer ihi, const QuarnFloat* scale,
                       Integer m, T* v, Integer ldv) {
  const char what = letter(job);
  const bool permutes = what == 'P' || what == 'B';
  const bool scales = what == 'S' || what == 'B';
  const Integer least = std::max<Integer>(1, n);
  const Integer info = -first_wrong({{!permutes && !scales && what != 'N', 1},
                                     {!is_side(side), 2},
                                     {n < 0, 3},
                                     {ilo < 1 || ilo > least, 4},
                                     {ihi < std::min(ilo, n) || ihi > n, 5},
                                     {m < 0, 7},
                                     {ldv < least, 9}});
  if (info != 0 || n == 0 || m == 0) {
    return info;
  }
  const OneBasedMatrix<T> vectors(v, ldv);
  for (Integer i = ilo; scales && i <= ihi; ++i) {
    // Left eigenvectors are those of the transpose.
    tesk::scale(m, side_of(side) == Side::right ? scale[i - 1] : 1 / scale[i - 1], vectors.row(i));
  }
  const auto interchange = [&](Integer i) {
    if (const Integer row = FloatToInt(scale[i - 1]); row != i) {
      swap_vectors(m, vectors.row(i), vectors.row(row));
    }
  };
  if (permutes) {
    for (Integer i = ilo - 1; i >= 1; --i) {
      interchange(i);
    }
    for (Integer i = ihi + 1; i <= n; ++i) {
      interchange(i);
    }
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgebak_(const char* job, const char* side, Integer n, Integer ilo, Integer ihi, QuarnFloat* scale,
                      Integer m, QuarnFloat* v, Integer ldv, Integer* info, int /*job_length*/, int /*side_length*/) {
  *info = tesk::undo_balancing(job, side, n, ilo, ihi, scale, m, v, ldv);
}

void QuarnMPX_zgebak_(const char* job, const char* side, Integer n, Integer ilo, Integer ihi, QuarnFloat* scale,
                      Integer m, Complex* v, Integer ldv, Integer* info, int /*job_length*/, int /*side_length*/) {
  *info = tesk::undo_balancing(job, side, n, ilo, ihi, scale, m, v, ldv);
}
}

// The Schur form of a square matrix by the steps of LAPACK.
#pragma once

#include <vector>

#include "src/dense/qr.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {

/// A := T with A = Z T Z^H; INFO of the QR algorithm.
inline Integer form_schur(Integer n, OneBasedMatrix<QuarnFloat> a, OneBasedMatrix<QuarnFloat> z) {
  std::vector<QuarnFloat> tau(static_cast<std::size_t>(n));
  std::vector<QuarnFloat> work(tau.size());
  std::vector<QuarnFloat> wr(tau.size());
  std::vector<QuarnFloat> wi(tau.size());
  Integer info = 0;
  QuarnMPX_dgehrd_(n, 1, n, a.first(), n, tau.data(), work.data(), n, &info);
  copy_matrix(n, n, a, z);
  QuarnMPX_dorghr_(n, 1, n, z.first(), n, tau.data(), work.data(), n, &info);
  QuarnMPX_dhseqr_("S", "V", n, 1, n, a.first(), n, wr.data(), wi.data(), z.first(), n, work.data(), n, &info, 1, 1);
  return info;
}
inline Integer form_schur(Integer n, OneBasedMatrix<Complex> a, OneBasedMatrix<Complex> z) {
  std::vector<Complex> tau(static_cast<std::size_t>(n));
  std::vector<Complex> work(tau.size());
  std::vector<Complex> w(tau.size());
  Integer info = 0;
  QuarnMPX_zgehrd_(n, 1, n, a.first(), n, tau.data(), work.data(), n, &info);
  copy_matrix(n, n, a, z);
  QuarnMPX_zunghr_(n, 1, n, z.first(), n, tau.data(), work.data(), n, &info);
  QuarnMPX_zhseqr_("S", "V", n, 1, n, a.first(), n, w.data(), z.first(), n, work.data(), n, &info, 1, 1);
  return info;
}

}  // namespace tesk

// The QR algorithm on a real upper Hessenberg matrix, without checks.
#pragma once

#include <cstdint>

#include "src/frame/constants.h"
#include "src/kernels/views.h"

namespace tesk {

/// The matrix that the reflectors of the QR algorithm are applied to from the right, and its rows that they change.
struct SchurVectors {
  OneBasedMatrix<QuarnFloat> z;
  Integer first;
  Integer last;  // below first: no vectors are wanted
};

struct QrOutcome {
  Integer info = 0;
  std::int64_t sweeps = 0;
};

/// Eigenvalues and, if wanted, the Schur form of rows and columns ilo ... ihi of H; those beside them are read from the
/// diagonal. Full accuracy: shifts for multiple eigenvalues, a limit of iterations that follows the digits, and any
/// size of numbers; an element that is not finite ends the work at once.
QrOutcome hessenberg_qr(Accuracy accuracy, bool wants_schur_form, Integer n, Integer ilo, Integer ihi,
                        OneBasedMatrix<QuarnFloat> h, QuarnFloat* wr, QuarnFloat* wi, SchurVectors vectors);

/// The double-shift algorithm alone; returns INFO.
Integer double_shift_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<QuarnFloat> h,
                        QuarnFloat* wr, QuarnFloat* wi, SchurVectors vectors);

}  // namespace tesk

// Tesk MP: classic numerical routines in arbitrary decimal precision.
//
// Forms. `QuarnMP_<code>_` is the classic form of a routine: every argument by address, IFAIL last. `QuarnMP_<code>n_`
// is its core form: input scalars by value, then a message buffer of 200 characters, IFAIL and the buffer's length.
// Routines that have neither failures nor arrays take what their declaration says. `QuarnMPX_` names are companions:
// same arguments, same failures, but with every constant true to the working precision where the classic entry carries
// one as a double.
//
// Conventions. Reals are QuarnFloat, integers are Integer (signed, 32 bits). Arrays belong to the caller; matrices are
// column-major with a leading dimension; indices are 1-based. The working precision is QuarnDigits() at the time of
// the call. One thread at a time may call it, or several that have a failure
// handler each (quarnthread.h).
//
// Character options are a text of which the first character counts, in either case; their lengths are the last
// arguments, in the order of the texts. In a core form the buffer's length comes after them. Where an option is checked
// by a routine with an IFAIL (c06, f11, m01) a length below 1 makes it an empty text, which is refused; the kernels
// (f06, f07, f08) read the first character whatever the length.
//
// Arguments that mean the same wherever they occur, and are described here alone:
//
//   @param[in,out] ifail how a failure is reported; on exit the failure number, 0 for success
//   @param[out] info 0; -k: argument k is illegal; a positive value: what the page says
//   @param[out] message_buffer 200 characters: "NONE", or what failed
//   @param[in] buffer_length characters of message_buffer
//   @param[in] selector by which name the master is entered: 0 the code, 1 the published name; changes nothing
//   @param[in] *_length characters of *
//
// Failures. IFAIL holds on entry how a failure is to be reported and on exit the failure number, 0 for success:
//
//   on entry                       on failure
//   0                              messages on the console, then the process ends with exit status 0 (hard failure)
//   -1                             messages on the console, then return (soft failure)
//   1                              nothing printed, return
//   -13                            the message records alone, then return
//   other negative                 nothing printed, return
//   positive, tens digit 0         nothing printed, return
//   positive, tens digit not 0     messages; return when the units digit is 1, otherwise the process ends
//
// A failing routine writes one newline to standard output for each text that it formats (its message and the message
// buffer), even when nothing is printed. The message buffer of a core form holds "NONE" on success, otherwise the
// routine's name, the failure number, the label of the message (99999 for a routine's first message, counting down),
// the number of values in the message and the values.
//
// QuarnMPX_failure_handler (failure.h) takes failures out of this protocol: a function of the host is told, nothing is
// written, every failure returns.
#pragma once

#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"
#include "tesk2mp/failure.h"
#include "tesk2mp/fft.h"
#include "tesk2mp/frame.h"
#include "tesk2mp/function_zeros.h"
#include "tesk2mp/gallery.h"
#include "tesk2mp/generalised.h"
#include "tesk2mp/incomplete.h"
#include "tesk2mp/iterative.h"
#include "tesk2mp/kernels.h"
#include "tesk2mp/krylov.h"
#include "tesk2mp/least_squares.h"
#include "tesk2mp/linear.h"
#include "tesk2mp/matrix_functions.h"
#include "tesk2mp/norms.h"
#include "tesk2mp/orthogonal.h"
#include "tesk2mp/polynomials.h"
#include "tesk2mp/proven.h"
#include "tesk2mp/proven_spectra.h"
#include "tesk2mp/random.h"
#include "tesk2mp/refinement.h"
#include "tesk2mp/schur_forms.h"
#include "tesk2mp/singular_values.h"
#include "tesk2mp/sparse.h"
#include "tesk2mp/sparse_direct.h"
#include "tesk2mp/special.h"
#include "tesk2mp/structured.h"
#include "tesk2mp/transforms.h"
#include "tesk2mp/util.h"

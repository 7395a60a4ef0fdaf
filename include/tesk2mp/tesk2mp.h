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
// the call. The library is to be called by one thread at a time.
//
// Character options are a text of which the first character counts, in either case; their lengths are the last
// arguments, in the order of the texts. In a core form the buffer's length comes after them. Where an option is checked
// by a routine with an IFAIL (c06, f11, m01) a length below 1 makes it an empty text, which is refused; the kernels
// (f06, f07, f08) read the first character whatever the length.
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

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/failure.h"
#include "tesk2mp/fft.h"
#include "tesk2mp/iterative.h"
#include "tesk2mp/kernels.h"
#include "tesk2mp/random.h"
#include "tesk2mp/sparse.h"
#include "tesk2mp/util.h"

extern "C" {

// Frame ----------------------------------------------------------------------------------------------------------
//
// Cost: of the text that is written, if any.

/// Prints the implementation details on the advisory-message unit: what the library is and which mark.
TESK2MP_API void QuarnMP_a00aafn_();

/// Ends a routine: reports the failure number ierror as ifail asks (table above) and returns it, if it returns.
///
///   ifail        what the caller wants of a failure
///   ierror       the failure number; 0 prints nothing and returns 0
///   srname       name of the routine, NUL-terminated
///   nrec         number of message records
///   rec          the first of them, each NUL-terminated, rec_len characters apart; not read when nrec is 0
///   srname_len   not used
///   rec_len      characters from one record to the next
TESK2MP_API Integer QuarnMP_p01abfn_(Integer ifail, Integer ierror, const char* srname, Integer nrec, const char* rec,
                                     int srname_len, int rec_len);

/// As p01abfn, with the name of a variable in the closing line; trailing blanks of the varname_len characters of
/// varname are ignored, and a blank name leaves the value out as well.
///
///   varname       name of the variable
///   varname_len   characters of varname
TESK2MP_API Integer QuarnMP_p01acfn_(Integer ifail, Integer ierror, const char* srname, const char* varname,
                                     Integer nrec, const char* rec, int srname_len, int varname_len, int rec_len);

/// The unit of error messages, 6 at first, of the whole process. A negative unit suppresses every message; all others
/// mean the host console.
///
///   iflag   0 stores the unit into *nerr, 1 sets it from *nerr, any other value does nothing
///   nerr    the unit: out when *iflag is 0, in when it is 1
TESK2MP_API void QuarnMP_x04aaf_(Integer* iflag, Integer* nerr);

// Constants ------------------------------------------------------------------------------------------------------
//
// Cost: of one number made. Pi is computed when the digits have been raised, and kept.

/// pi as the double 3.141592653589793: about 16 digits whatever the working precision. See QuarnMPX_x01aaf_.
TESK2MP_API QuarnFloat QuarnMP_x01aaf_();
/// pi to the working precision.
TESK2MP_API QuarnFloat QuarnMPX_x01aaf_();
/// The machine precision, 10 to the power -QuarnDigits().
TESK2MP_API QuarnFloat QuarnMP_x02ajf_();
/// The smallest positive model number, 10 to the power -134217726.
TESK2MP_API QuarnFloat QuarnMP_x02akf_();
/// The largest positive model number, 10 to the power 134217726.
TESK2MP_API QuarnFloat QuarnMP_x02alf_();
/// The safe range: the smallest positive number whose reciprocal is a model number, equal to x02akf.
TESK2MP_API QuarnFloat QuarnMP_x02amf_();
/// The base of the model, 10.
TESK2MP_API Integer QuarnMP_x02bhf_();

// Complex arithmetic on separate parts ---------------------------------------------------------------------------
//
// Cost: a few multiplications, divisions and square roots, whatever the values.

/// *yr + i *yi := the principal square root of xr + i xi; sqrt(-4 + 0i) is 2i. For |xr| <= 1 the result carries a
/// factor sqrt(1/2) that is a double, so that it is good to about 16 digits only; the companion is good to a few units
/// in the last place everywhere. y may overlap x.
///
///   xr, xi   real and imaginary part of the number
///   yr, yi   out: those of its root, yr >= 0
TESK2MP_API void QuarnMP_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
TESK2MP_API void QuarnMPX_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
/// The same with every argument by address.
TESK2MP_API void QuarnMP_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);
TESK2MP_API void QuarnMPX_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);

/// The modulus of xr + i xi, without overflow unless the result overflows.
///
///   xr, xi   real and imaginary part
TESK2MP_API QuarnFloat QuarnMP_a02abfn_(QuarnFloat xr, QuarnFloat xi);

/// The complex quotient: *zr + i *zi := (xr + i xi) / (yr + i yi) by the method of R. L. Smith (Comm. ACM 5, 1962). A
/// zero divisor is not tested for: it gives what QuarnFloat gives for 0/0.
///
///   xr, xi   the dividend
///   yr, yi   the divisor
///   zr, zi   out: the quotient
TESK2MP_API void QuarnMP_a02acfn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat yr, QuarnFloat yi, QuarnFloat* zr,
                                  QuarnFloat* zi);
}

// Failure protocol, machine constants, complex arithmetic.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

// Numbers are returned by value: both sides are C++, which C linkage alone does not tell clang.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

TESK2MP_NAMES_BEGIN
extern "C" {

// Frame ----------------------------------------------------------------------------------------------------------

/// @defgroup a00aaf implementation details
///
/// Prints the implementation details on the advisory-message unit: what the library is and which mark.
///
/// @par Source
/// No published one: the description of this library.
///
/// @par Cost
/// That of the text which is written.
/// @{
TESK2MP_API void QuarnMP_a00aafn_();
/// @}

/// @defgroup p01abf end of a routine
///
/// Ends a routine: reports the failure number ierror as ifail asks (IFAIL, tesk2mp.h) and returns it, if it returns.
///
/// @param[in] ifail what the caller wants of a failure
/// @param[in] ierror the failure number; 0 prints nothing and returns 0
/// @param[in] srname name of the routine, NUL-terminated
/// @param[in] nrec number of message records
/// @param[in] rec the first of them, each NUL-terminated, rec_len characters apart; not read when nrec is 0
/// @param[in] srname_len not used
/// @param[in] rec_len characters from one record to the next
///
/// @par Failures
/// Ends the process where ifail asks for that.
///
/// @par Source
/// No published one: the failure protocol of this library.
///
/// @par Cost
/// That of the text which is written, if any.
/// @{
TESK2MP_API Integer QuarnMP_p01abfn_(Integer ifail, Integer ierror, const char* srname, Integer nrec, const char* rec,
                                     int srname_len, int rec_len);
/// @}

/// @defgroup p01acf end of a routine, naming a variable
///
/// As p01abfn, with the name of a variable in the closing line; trailing blanks of the varname_len characters of
/// varname are ignored, and a blank name leaves the value out as well.
///
/// @like p01abf
///
/// @param[in] varname name of the variable
/// @param[in] varname_len characters of varname
///
/// @par Failures
/// Ends the process where ifail asks for that.
/// @{
TESK2MP_API Integer QuarnMP_p01acfn_(Integer ifail, Integer ierror, const char* srname, const char* varname,
                                     Integer nrec, const char* rec, int srname_len, int varname_len, int rec_len);
/// @}

/// @defgroup x04aaf unit of error messages
///
/// The unit of error messages, 6 at first, of the whole process. A negative unit suppresses every message; all others
/// mean the host console.
///
/// @param[in] iflag 0 stores the unit into *nerr, 1 sets it from *nerr, any other value does nothing
/// @param[in,out] nerr the unit: out when *iflag is 0, in when it is 1
///
/// @par Source
/// No published one: the failure protocol of this library.
///
/// @par Cost
/// An integer is copied.
/// @{
TESK2MP_API void QuarnMP_x04aaf_(Integer* iflag, Integer* nerr);
/// @}

// Constants ------------------------------------------------------------------------------------------------------

/// @defgroup x01aaf pi
///
/// pi: the companion to the working precision, the classic entry as the double 3.141592653589793, about 16 digits
/// whatever the working precision.
///
/// @par Source
/// The companion: D. V. Chudnovsky, G. V. Chudnovsky, Approximations and complex multiplication according to
/// Ramanujan, in: Ramanujan Revisited, Academic Press 1988.
///
/// @par Cost
/// One number is made. Pi is computed when the digits have been raised, and kept.
/// @{
TESK2MP_API QuarnFloat QuarnMP_x01aaf_();
TESK2MP_API QuarnFloat QuarnMPX_x01aaf_();
/// @}

/// @defgroup x02ajf machine precision
///
/// The machine precision, 10 to the power -QuarnDigits().
///
/// @par Source
/// The model is that of W. S. Brown, A simple but realistic model of floating-point computation, ACM Trans. Math.
/// Softw. 7 (1981).
///
/// @par Cost
/// One number is made.
/// @{
TESK2MP_API QuarnFloat QuarnMP_x02ajf_();
/// @}

/// @defgroup x02akf smallest positive model number
///
/// The smallest positive model number, 10 to the power -134217726.
///
/// @par Source
/// The model is that of W. S. Brown, A simple but realistic model of floating-point computation, ACM Trans. Math.
/// Softw. 7 (1981).
///
/// @par Cost
/// One number is made.
/// @{
TESK2MP_API QuarnFloat QuarnMP_x02akf_();
/// @}

/// @defgroup x02alf largest positive model number
///
/// The largest positive model number, 10 to the power 134217726.
///
/// @par Source
/// The model is that of W. S. Brown, A simple but realistic model of floating-point computation, ACM Trans. Math.
/// Softw. 7 (1981).
///
/// @par Cost
/// One number is made.
/// @{
TESK2MP_API QuarnFloat QuarnMP_x02alf_();
/// @}

/// @defgroup x02amf safe range
///
/// The safe range: the smallest positive number whose reciprocal is a model number, equal to x02akf.
///
/// @par Source
/// The model is that of W. S. Brown, A simple but realistic model of floating-point computation, ACM Trans. Math.
/// Softw. 7 (1981).
///
/// @par Cost
/// One number is made.
/// @{
TESK2MP_API QuarnFloat QuarnMP_x02amf_();
/// @}

/// @defgroup x02bhf base of the model
///
/// The base of the model, 10.
///
/// @par Source
/// The model is that of W. S. Brown, A simple but realistic model of floating-point computation, ACM Trans. Math.
/// Softw. 7 (1981).
///
/// @par Cost
/// None.
/// @{
TESK2MP_API Integer QuarnMP_x02bhf_();
/// @}

// Complex arithmetic on separate parts ---------------------------------------------------------------------------

/// @defgroup a02aaf complex square root
///
/// *yr + i *yi := the principal square root of xr + i xi; sqrt(-4 + 0i) is 2i. For |xr| <= 1 the result carries a
/// factor sqrt(1/2) that is a double, so that it is good to about 16 digits only; the companion is good to a few units
/// in the last place everywhere, and makes both parts NaN when one of x is. y may overlap x.
///
/// @param[in] xr real part of the number
/// @param[in] xi its imaginary part
/// @param[out] yr real part of the root, >= 0
/// @param[out] yi its imaginary part
///
/// @par Source
/// P. Friedland, Algorithm 312: absolute value and square root of a complex number, Comm. ACM 10 (1967).
///
/// @par Cost
/// A few multiplications, divisions and square roots, whatever the values.
/// @{
TESK2MP_API void QuarnMP_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
TESK2MP_API void QuarnMPX_a02aafn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat* yr, QuarnFloat* yi);
TESK2MP_API void QuarnMP_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);
TESK2MP_API void QuarnMPX_a02aaf_(QuarnFloat* xr, QuarnFloat* xi, QuarnFloat* yr, QuarnFloat* yi);
/// @}

/// @defgroup a02abf modulus of a complex number
///
/// The modulus of xr + i xi, without overflow unless the result overflows.
///
/// @param[in] xr real part
/// @param[in] xi imaginary part
///
/// @par Source
/// P. Friedland, Algorithm 312: absolute value and square root of a complex number, Comm. ACM 10 (1967).
///
/// @par Cost
/// A few multiplications, divisions and square roots, whatever the values.
/// @{
TESK2MP_API QuarnFloat QuarnMP_a02abfn_(QuarnFloat xr, QuarnFloat xi);
/// @}

/// @defgroup a02acf complex quotient
///
/// The complex quotient: *zr + i *zi := (xr + i xi) / (yr + i yi) by the method of R. L. Smith (Comm. ACM 5, 1962).
///
/// @param[in] xr real part of the dividend
/// @param[in] xi its imaginary part
/// @param[in] yr real part of the divisor
/// @param[in] yi its imaginary part
/// @param[out] zr real part of the quotient
/// @param[out] zi its imaginary part
///
/// @par Failures
/// A zero divisor is not tested for: it gives what QuarnFloat gives for 0/0.
///
/// @par Source
/// R. L. Smith, Algorithm 116: complex division, Comm. ACM 5 (1962).
///
/// @par Cost
/// A few multiplications, divisions and square roots, whatever the values.
/// @{
TESK2MP_API void QuarnMP_a02acfn_(QuarnFloat xr, QuarnFloat xi, QuarnFloat yr, QuarnFloat yi, QuarnFloat* zr,
                                  QuarnFloat* zi);
/// @}
}
TESK2MP_NAMES_END

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

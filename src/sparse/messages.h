// Texts that several sparse routines share.
#pragma once

namespace tesk {

inline constexpr char kRowRange[] =
    " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = %16ld, IROW(I) = %16ld, N = %16ld.";
inline constexpr char kColumnRange[] =
    " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = %16ld, ICOL(I) = %16ld, N = %16ld.";
inline constexpr char kTriangleRange[] =
    " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =%16ld, ICOL(I) =%16ld, IROW(I) =%16ld.";
inline constexpr char kCheckOption[] = " ** On entry, CHECK .ne. 'C' or 'N': CHECK = '%s'.";

inline constexpr char kOrderRange[] = " ** On entry, M .lt. 1 or M .gt. MIN (N,%2ld):\n    M =%16ld";
inline constexpr char kInaccurate[] =
    " ** The required accuracy could not be obtained.\n"
    " ** However, a reasonable accuracy may have been achieved.";
inline constexpr char kNotConverged[] = " ** The solution has not converged after%7ld iterations.";
inline constexpr char kBreakdown[] = " ** Algorithm breakdown at iteration no.%7ld";

}  // namespace tesk

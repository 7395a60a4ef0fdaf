// Texts that several sparse routines share.
#pragma once

namespace tesk {

inline constexpr char kRowRange[] =
    " ** On entry, IROW(I) .lt. 1 or IROW(I) .gt. N:\n    I = %16ld, IROW(I) = %16ld, N = %16ld.";
inline constexpr char kColumnRange[] =
    " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. N:\n    I = %16ld, ICOL(I) = %16ld, N = %16ld.";
inline constexpr char kTriangleRange[] =
    " ** On entry, ICOL(I) .lt. 1 or ICOL(I) .gt. IROW(I):\n    I =%16ld, ICOL(I) =%16ld, IROW(I) =%16ld.";

}  // namespace tesk

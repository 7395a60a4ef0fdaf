// Ranking, rearranging and permutations.
//
// All of them work on the section M1 ... M2 of arrays whose positions count from 1: rv points at position 1, and only
// positions M1 ... M2 are read or written. Nothing is allocated. Failures that they share:
//
//   IFAIL 1, label 99999   M2 < 1
//   IFAIL 1, label 99998   M1 < 1
//   IFAIL 1, label 99997   M1 > M2
//
// The checks are made in the order given, and the first that fails decides.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup m01daf ranks of real values
///
/// Ranks RV(M1:M2): IRANK(i) := the rank of RV(i), one of M1 ... M2, in ascending (ORDER 'A') or descending ('D')
/// order. Equal values are ranked by position in both orders; -0 equals 0. RV is not changed. IRANK(M1:M2) need not be
/// set. NaN compares false with everything: with a NaN in RV the ranks are a permutation in no particular order. The
/// companion ranks NaN after all numbers in both orders.
///
/// @param[in] rv the values, M1 ... M2 of them read
/// @param[in] m1 first position of the section, 1 ... M2
/// @param[in] m2 last position, >= 1
/// @param[in] order 'A' ascending, 'D' descending, in either case
/// @param[out] irank IRANK(M1:M2), a permutation of M1 ... M2
///
/// @par Failures
/// IFAIL 2, label 99996: ORDER is neither 'A' nor 'D'.
///
/// @par Method
/// Natural runs, built up to 10 values by insertion, linked through IRANK and merged in the order of Munro and Wild
/// (ESA 2018): at most n H + O(n) comparisons, H <= log2 n the entropy of the run lengths, for every input.
///
/// @par Source
/// J. I. Munro, S. Wild, Nearly-optimal mergesorts: fast, practical sorting methods that optimally adapt to existing
/// runs, ESA 2018.
///
/// @par Cost
/// At most n log2 n + O(n) comparisons, n = M2 - M1 + 1; O(n) where the values come in a few runs.
/// @{
TESK2MP_API void QuarnMP_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order,
                                 Integer* irank, Integer* ifail, int order_length);
TESK2MP_API void QuarnMPX_m01daf_(const QuarnFloat* rv, const Integer* m1, const Integer* m2, const char* order,
                                  Integer* irank, Integer* ifail, int order_length);
/// @}

/// @defgroup m01eaf rearrangement by ranks
///
/// Moves RV(i) to position IRANK(i), i = M1 ... M2, in place; after m01daf this sorts. IRANK comes back as it was.
///
/// @param[in,out] rv the values, rearranged
/// @param[in] m1 first position of the section, 1 ... M2
/// @param[in] m2 last position, >= 1
/// @param[in] irank IRANK(M1:M2), a permutation of M1 ... M2; kept
///
/// @par Failures
/// IFAIL 2, label 99996: some IRANK(I) is outside M1 ... M2; nothing has been moved. IFAIL 3, label 99995: a value is
/// in IRANK(M1:M2) twice; the message says which. RV then holds its values in some other order.
///
/// @par Source
/// D. E. Knuth, The Art of Computer Programming 1, section 1.3.3: a permutation is followed along its cycles.
///
/// @par Cost
/// Linear in M2 - M1 + 1.
/// @{
TESK2MP_API void QuarnMP_m01eaf_(QuarnFloat* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail);
/// @}

/// @defgroup m01edf rearrangement of complex values by ranks
///
/// The same for complex values.
///
/// @like m01eaf
/// @{
TESK2MP_API void QuarnMP_m01edf_(Complex* rv, const Integer* m1, const Integer* m2, Integer* irank, Integer* ifail);
/// @}

/// @defgroup m01zaf inverse of a permutation
///
/// Inverts a permutation: IPERM of M1 ... M2 in place.
///
/// @param[in,out] iperm IPERM(M1:M2), a permutation of M1 ... M2; out its inverse
/// @param[in] m1 first position of the section, 1 ... M2
/// @param[in] m2 last position, >= 1
///
/// @par Failures
/// IFAIL 2, label 99996: some IPERM(I) is outside M1 ... M2; nothing has been changed. IFAIL 3, label 99995: a value is
/// in IPERM(M1:M2) twice; the message says which. Nothing has been changed.
///
/// @par Source
/// D. E. Knuth, The Art of Computer Programming 1, section 1.3.3: inverses in place.
///
/// @par Cost
/// Linear in M2 - M1 + 1.
/// @{
TESK2MP_API void QuarnMP_m01zaf_(Integer* iperm, const Integer* m1, const Integer* m2, Integer* ifail);
/// @}
}
TESK2MP_NAMES_END

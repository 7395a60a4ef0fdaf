// The check of incomplete factors that come back from the caller, with what is said of them.
#pragma once

#include <vector>

#include "src/kernels/scalar.h"
#include "src/sparse/factor_solves.h"
#include "src/sparse/structure_report.h"

namespace tesk {

/// What a routine says of arrays that an earlier call has left. The texts about permutations of the complex routines
/// name the real partner: the interface fixes them so.
struct Advice {
  const char* arrays;
  const char* permutations = arrays;
};

inline constexpr Advice kRealLu = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DAF "
    "and F11DBF."};
inline constexpr Advice kComplexLu = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DNF "
    "and F11DPF.",
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DNF "
    "and F11DBF."};
inline constexpr Advice kRealCholesky = {
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JAF and F11JBF."};
inline constexpr Advice kComplexCholesky = {
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and F11JPF.",
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and F11JBF."};

inline constexpr Advice kRealLuDriver = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DAF "
    "and F11DCF."};
inline constexpr Advice kComplexLuDriver = {
    "\n    Check that A, IROW, ICOL, IPIVP, IPIVQ, ISTR and IDIAG\n    have not been corrupted between calls to F11DNF "
    "and F11DQF.",
    kComplexLu.permutations};
inline constexpr Advice kComplexCholeskyDriver = {
    "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and F11JQF.",
    kComplexCholesky.permutations};

/// Factors as they come back. Each check returns false when it has reported a failure.
template <class Value>
class ReturnedFactors {
 public:
  ReturnedFactors(Report& report, const Advice& advice, Storage storage, const FactorView<Value>& factors, Integer la,
                  const Integer* irow)
      : report_(report), advice_(advice), storage_(storage), factors_(factors), la_(la), irow_(irow) {}

  /// `first` is the label of N < 1.
  bool are_valid(Integer first) {
    if (factors_.n < 1) {
      report_.fail(2, first, " ** On entry, N .lt. 1: N =%16ld.", factors_.n);
      return false;
    }
    return starts_fit(first) && entries_are_valid(first) && rows_are_valid(first) &&
           is_permutation(factors_.row_order, first - 10,
                          storage_ == Storage::general
                              ? " ** On entry, IPIVP(I) .lt. 1 or IPIVP(I) .gt. N:\n    I =%16ld, IPIVP(I) =%16ld."
                              : " ** On entry, IPIV(I) .lt. 1 or IPIV(I) .gt. N:\n    I =%16ld, IPIV(I) =%16ld.",
                          storage_ == Storage::general
                              ? " ** On entry, IPIVP(I) is a repeated value:\n    I =%16ld, IPIVP(I) =%16ld."
                              : " ** On entry, IPIV(I) is a repeated value:\n    I =%16ld, IPIV(I) =%16ld.") &&
           (storage_ == Storage::lower_triangle ||
            is_permutation(factors_.column_order, first - 12,
                           " ** On entry, IPIVQ(I) .lt. 1 or IPIVQ(I) .gt. N:\n    I =%16ld, IPIVQ(I) =%16ld.",
                           " ** On entry, IPIVQ(I) is a repeated value:\n    I =%16ld, IPIVQ(I) =%16ld."));
  }

 private:
  static constexpr Integer kFailure = 3;

  template <class... Values>
  bool fail(Integer label, const char* message, const Values&... values) {
    report_.fail(kFailure, label, AdvisedMessage(message, advice_.arrays), values...);
    return false;
  }
  bool fail_at_start(Integer first, Integer i) {
    return fail(first - 7, " ** On entry, ISTR(I) is not where row I starts:\n    I =%16ld, ISTR(I) =%16ld.", i + 1,
                factors_.istr[i]);
  }

  bool starts_fit(Integer first) {
    const Integer before = factors_.istr[0] - 1;
    if (before < 1) {
      return fail(first - 1, " ** On entry, NNZ .lt. 1: NNZ =%16ld.", before);
    }
    for (Integer i = 1; i <= factors_.n; ++i) {
      if (factors_.istr[i] <= factors_.istr[i - 1] || factors_.istr[i] - 1 > la_) {
        return fail_at_start(first, i);
      }
    }
    return true;
  }

  bool entries_are_valid(Integer first) {
    const Integer before = factors_.istr[0] - 1;
    return structure_is_valid(report_, {first, kFailure, kFailure, advice_.arrays, before}, storage_, factors_.n,
                              factors_.istr[factors_.n] - factors_.istr[0], irow_ + before, factors_.icol + before);
  }

  bool rows_are_valid(Integer first) {
    for (Integer i = 0; i < factors_.n; ++i) {
      const Integer start = factors_.istr[i];
      const Integer end = factors_.istr[i + 1];
      if (irow_[start - 1] != i + 1 || irow_[end - 2] != i + 1) {
        return fail_at_start(first, i);
      }
      const Integer place = storage_ == Storage::general ? factors_.idiag[i] : end - 1;
      if (place < start || place >= end || factors_.icol[place - 1] != i + 1) {
        return storage_ == Storage::general
                   ? fail(first - 8,
                          " ** On entry, IDIAG(I) is not the place of the pivot of row I:\n    I =%16ld, IDIAG(I) "
                          "=%16ld.",
                          i + 1, place)
                   : fail(first - 8, " ** On entry, row I of the factors does not end in its pivot:\n    I =%16ld.",
                          i + 1);
      }
      if (is_zero(factors_.a[place - 1])) {
        return fail(first - 9, " ** On entry, the pivot of row I of the factors is zero:\n    I =%16ld.", i + 1);
      }
    }
    return true;
  }

  bool is_permutation(const Integer* order, Integer label, const char* out_of_range, const char* repeated) {
    std::vector<char> seen(std::size_t(factors_.n) + 1);
    for (Integer i = 0; i < factors_.n; ++i) {
      const bool outside = order[i] < 1 || order[i] > factors_.n;
      if (outside || seen[std::size_t(order[i])] != 0) {
        report_.fail(kFailure, outside ? label : label - 1,
                     AdvisedMessage(outside ? out_of_range : repeated, advice_.permutations), i + 1, order[i]);
        return false;
      }
      seen[std::size_t(order[i])] = 1;
    }
    return true;
  }

  Report& report_;
  const Advice& advice_;
  Storage storage_;
  const FactorView<Value>& factors_;
  Integer la_;
  const Integer* irow_;
};

}  // namespace tesk

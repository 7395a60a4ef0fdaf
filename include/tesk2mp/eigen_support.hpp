// Eigen with QuarnFloat: LU, QR, symmetric and general eigenvalues, singular values, sparse solvers and its other
// algorithms at the working precision of the moment. Include it before or after Eigen's own headers; Eigen 3.3 or
// later.
#pragma once

#if __has_include(<Eigen/Core>)
#include <Eigen/Core>
#include <limits>

#include "quarn/numeric.hpp"

namespace Eigen {

/// Traits that follow QuarnDigits() at the time of the call.
template <>
struct NumTraits<QuarnFloat> : GenericNumTraits<QuarnFloat> {
  using Real = QuarnFloat;
  using NonInteger = QuarnFloat;
  using Nested = QuarnFloat;
  using Literal = QuarnFloat;

  enum {
    IsInteger = 0,
    IsSigned = 1,
    IsComplex = 0,
    RequireInitialization = 1,
    ReadCost = 4,
    AddCost = 30,
    MulCost = 30
  };

  static Real epsilon() { return quarn::Precision10::epsilon(); }
  /// What isApprox() and the like take as relative tolerance: a thousand times epsilon.
  static Real dummy_precision() { return QuarnFloat(1, 4 - QuarnDigits()); }
  static Real highest() { return std::numeric_limits<QuarnFloat>::max(); }
  static Real lowest() { return std::numeric_limits<QuarnFloat>::lowest(); }
  static Real infinity() { return std::numeric_limits<QuarnFloat>::infinity(); }
  static Real quiet_NaN() { return std::numeric_limits<QuarnFloat>::quiet_NaN(); }
  static int digits10() { return QuarnDigits(); }
};

/// As std::complex over a real type, for matrices of quarn::Complex.
template <>
struct NumTraits<quarn::Complex> : GenericNumTraits<quarn::Complex> {
  using Real = QuarnFloat;
  using NonInteger = quarn::Complex;
  using Nested = quarn::Complex;
  using Literal = QuarnFloat;

  enum {
    IsInteger = 0,
    IsSigned = 1,
    IsComplex = 1,
    RequireInitialization = 1,
    ReadCost = 8,
    AddCost = 60,
    MulCost = 120
  };

  static Real epsilon() { return NumTraits<QuarnFloat>::epsilon(); }
  static Real dummy_precision() { return NumTraits<QuarnFloat>::dummy_precision(); }
  static Real highest() { return NumTraits<QuarnFloat>::highest(); }
  static Real lowest() { return NumTraits<QuarnFloat>::lowest(); }
  static int digits10() { return QuarnDigits(); }
};

namespace internal {

/// Uniform in [-1, 1] or the range asked for, with the working digits in steps of 2^-53.
template <>
inline QuarnFloat random<QuarnFloat>(const QuarnFloat& low, const QuarnFloat& high) {
  return low + (high - low) * QuarnFloat((random<double>() + 1) / 2);
}
template <>
inline QuarnFloat random<QuarnFloat>() {
  return QuarnFloat(random<double>());
}

}  // namespace internal
}  // namespace Eigen

#endif

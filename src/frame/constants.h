// Machine constants, and the one place that numerical constants come from.
#pragma once

#include "quarn/quarnfloat.h"

namespace tesk {

/// The machine precision: 10 to the power -QuarnDigits().
inline QuarnFloat epsilon() { return {1, -QuarnDigits()}; }

/// The exponent range of the model, which the interface fixes; QuarnFloat reaches further.
inline constexpr int kModelExponent = 134217726;
inline QuarnFloat smallest_number() { return {1, -kModelExponent}; }
inline QuarnFloat largest_number() { return {1, kModelExponent}; }
inline constexpr Integer kBase = 10;

/// The interface fixes some constants of classic entries as doubles; their companions use the same code with constants
/// true to the working precision.
enum class Accuracy { classic, full };

/// Hands out the constants of one accuracy at the working precision of the call.
class Constants {
 public:
  explicit constexpr Constants(Accuracy accuracy) noexcept : accuracy_(accuracy) {}

  Accuracy accuracy() const noexcept { return accuracy_; }
  QuarnFloat pi() const;
  /// sqrt(1/2)
  QuarnFloat sqrt_half() const;
  /// sqrt(3)/2
  QuarnFloat half_sqrt3() const;
  /// sqrt(5)/4
  QuarnFloat quarter_sqrt5() const;

 private:
  Accuracy accuracy_;
};

}  // namespace tesk

extern "C" {

/// The largest Integer; the argument only stands for the type in question.
Integer x02bbfn_(QuarnFloat x);
/// The decimal digits of the model; the argument only stands for the type in question.
Integer x02befn_(QuarnFloat x);
}

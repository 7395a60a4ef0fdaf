#include "src/frame/constants.h"

#include <limits>

#include "tesk2mp/frame.h"

namespace {

// The model's exponent range is that of the oldest hosts; QuarnFloat itself reaches further.
constexpr int kModelExponent = 134217726;

}  // namespace

namespace tesk {

QuarnFloat Constants::pi() const {
  return accuracy_ == Accuracy::classic ? QuarnFloat(3.141592653589793) : QuarnEvalf1("acos", -1);
}

QuarnFloat Constants::sqrt_half() const {
  return accuracy_ == Accuracy::classic ? QuarnFloat(0.7071067811865476) : sqrt(QuarnFloat(0.5));
}

QuarnFloat Constants::half_sqrt3() const {
  return accuracy_ == Accuracy::classic ? QuarnFloat(0.8660254037844386) : sqrt(QuarnFloat(0.75));
}

QuarnFloat Constants::quarter_sqrt5() const {
  return accuracy_ == Accuracy::classic ? QuarnFloat(0.5590169943749475) : sqrt(QuarnFloat(0.3125));
}

}  // namespace tesk

extern "C" {

QuarnFloat QuarnMP_x01aaf_() { return tesk::Constants(tesk::Accuracy::classic).pi(); }
QuarnFloat QuarnMPX_x01aaf_() { return tesk::Constants(tesk::Accuracy::full).pi(); }
QuarnFloat QuarnMP_x02ajf_() { return {1, -QuarnDigits()}; }
QuarnFloat QuarnMP_x02akf_() { return {1, -kModelExponent}; }
QuarnFloat QuarnMP_x02alf_() { return {1, kModelExponent}; }
QuarnFloat QuarnMP_x02amf_() { return QuarnMP_x02akf_(); }
Integer QuarnMP_x02bhf_() { return 10; }

Integer x02bbfn_(QuarnFloat /*x*/) { return std::numeric_limits<Integer>::max(); }
Integer x02befn_(QuarnFloat /*x*/) { return QuarnDigits(); }
}

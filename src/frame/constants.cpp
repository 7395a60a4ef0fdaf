#include "src/frame/constants.h"

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

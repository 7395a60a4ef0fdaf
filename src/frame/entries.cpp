// Machine constants: entries.
#include <limits>

#include "src/frame/constants.h"
#include "tesk2mp/frame.h"

using namespace tesk;

extern "C" {

QuarnFloat QuarnMP_x01aaf_() { return Constants(Accuracy::classic).pi(); }
QuarnFloat QuarnMPX_x01aaf_() { return Constants(Accuracy::full).pi(); }
QuarnFloat QuarnMP_x02ajf_() { return epsilon(); }
QuarnFloat QuarnMP_x02akf_() { return smallest_number(); }
QuarnFloat QuarnMP_x02alf_() { return largest_number(); }
QuarnFloat QuarnMP_x02amf_() { return smallest_number(); }
Integer QuarnMP_x02bhf_() { return kBase; }

Integer x02bbfn_(QuarnFloat /*x*/) { return std::numeric_limits<Integer>::max(); }
Integer x02befn_(QuarnFloat /*x*/) { return QuarnDigits(); }
}

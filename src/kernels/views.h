// The views of the kernels and of what is built on them.
#pragma once

#include "tesk2mp/one_based.hpp"

namespace tesk {

using tesk2mp::OneBasedMatrix;
using tesk2mp::OneBasedVector;

}  // namespace tesk

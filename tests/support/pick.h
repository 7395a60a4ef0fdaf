// The one of two exports that works on T.
#pragma once

#include "quarn/quarnfloat.h"

namespace support {

template <class T, class RealExport, class ComplexExport>
constexpr auto pick(RealExport real, ComplexExport complex) {
  if constexpr (sizeof(T) == sizeof(quarn::Complex)) {
    return complex;
  } else {
    return real;
  }
}

}  // namespace support

// Random numbers with all of the working digits.
#pragma once

#include "quarn/complex.h"
#include "support/random.h"

namespace support {

/// Between -1 and 1, or with parts between them.
template <class T>
T random_number(Random& random) {
  const auto part = [&] {
    const std::string text = random.digits(std::size_t(QuarnDigits()));
    return QuarnFloat(((random.once_in(2) ? "-0." : "0.") + text).c_str());
  };
  if constexpr (sizeof(T) == sizeof(QuarnFloat)) {
    return part();
  } else {
    QuarnFloat re = part();
    return T(std::move(re), part());
  }
}

}  // namespace support

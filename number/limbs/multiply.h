// Products of long coefficients: the dispatch between schoolbook, Karatsuba and number-theoretic transform.
#pragma once

#include "number/limbs/columns.h"
#include "number/limbs/cyclic_product.h"
#include "number/limbs/karatsuba.h"
#include "number/limbs/tuning.h"

namespace quarn {

/// out[0 .. na+nb) = a * b by one cyclic product; false, and nothing done, when the operands are too long for it. out
/// overlaps neither operand; a and b may be the same.
template <class R>
bool multiply_transform(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                        std::size_t nb) {
  const std::size_t points = CyclicProduct<R>::points_for(na + nb, std::min(na, nb));
  if (points == 0) {
    return false;
  }
  CyclicProduct<R> product(points);
  product.load(a, na);
  if (a == b && na == nb) {
    product.multiply_by(product);
  } else {
    CyclicProduct<R> other(points);
    other.load(b, nb);
    product.multiply_by(other);
  }
  product.finish();
  product.store(out, na + nb);
  return true;
}

/// The same for a much longer a, in pieces of three times the length of b, which is transformed once.
template <class R>
bool multiply_transform_in_pieces(typename R::Limb* out, const typename R::Limb* a, std::size_t na,
                                  const typename R::Limb* b, std::size_t nb) {
  using Limb = typename R::Limb;
  const std::size_t points = CyclicProduct<R>::points_for(4 * nb, nb);
  if (points == 0) {
    return false;
  }
  CyclicProduct<R> repeated(points);
  repeated.load(b, nb);
  multiply_in_pieces<R>(out, a, na, nb, 3 * nb, [&](Limb* to, const Limb* from, std::size_t length) {
    CyclicProduct<R> product(points);
    product.load(from, length);
    product.multiply_by(repeated);
    product.finish();
    product.store(to, length + nb);
  });
  return true;
}

/// out[0 .. 2n) = a * b, both of n >= 1 limbs, by the fastest way for this length; a square when a and b are the same
/// array. out overlaps neither operand.
template <class R>
void multiply_balanced(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n) {
  const Thresholds& limit = thresholds<typename R::Limb>;
  const bool square = a == b;
  if (n < std::max<std::size_t>(4, square ? limit.karatsuba_square : limit.karatsuba)) {
    multiply_columns<R>(out, a, n, b, n, 2 * n);
  } else if (n < (square ? limit.transform_square : limit.transform) || !multiply_transform<R>(out, a, n, b, n)) {
    multiply_karatsuba<R>(out, a, b, n, multiply_balanced<R>);
  }
}

/// out[0 .. na+nb) = a * b. na, nb >= 1; out overlaps neither operand, which may be the same array.
template <class R>
void multiply(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
              std::size_t nb) {
  if (na < nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  const Thresholds& limit = thresholds<typename R::Limb>;
  if (na == nb) {
    multiply_balanced<R>(out, a, b, na);
  } else if (nb < limit.karatsuba) {
    multiply_columns<R>(out, a, na, b, nb, na + nb);
  } else if (nb < limit.transform || !(na > 8 * nb ? multiply_transform_in_pieces<R>(out, a, na, b, nb)
                                                   : multiply_transform<R>(out, a, na, b, nb))) {
    multiply_in_pieces<R>(out, a, na, nb, nb,
                          [b, nb](typename R::Limb* to, const typename R::Limb* from, std::size_t length) {
                            multiply<R>(to, from, length, b, nb);
                          });
  }
}

/// out[0 .. 2*na) = a * a.
template <class R>
void square(typename R::Limb* out, const typename R::Limb* a, std::size_t na) {
  multiply_balanced<R>(out, a, a, na);
}

}  // namespace quarn

// Products of long coefficients: the dispatch between schoolbook, Karatsuba and number-theoretic transform.
#pragma once

#include <type_traits>

#include "number/limbs/columns.h"
#include "number/limbs/cyclic_product.h"
#include "number/limbs/double_product.h"
#include "number/limbs/karatsuba.h"
#include "number/limbs/tuning.h"

namespace quarn {

/// Calls use(type, points) with the kind of cyclic product that this processor forms fastest, and points for a product
/// of at least `limbs` limbs with a shorter factor of `shorter` limbs; false when it is too long for every kind.
template <class R, class Use>
bool with_cyclic_product(std::size_t limbs, std::size_t shorter, const Use& use) {
  if (const std::size_t points = DoubleProduct<R>::points_for(limbs, shorter); points != 0) {
    use(std::type_identity<DoubleProduct<R>>(), points);
    return true;
  }
  if (const std::size_t points = CyclicProduct<R>::points_for(limbs, shorter); points != 0) {
    use(std::type_identity<CyclicProduct<R>>(), points);
    return true;
  }
  return false;
}

/// product := a * b, to be finished.
template <class Product, class Limb>
void load_product(Product& product, std::size_t points, const Limb* a, std::size_t na, const Limb* b, std::size_t nb) {
  product.load(a, na);
  if (a == b && na == nb) {
    product.multiply_by(product);
  } else {
    Product other(points);
    other.load(b, nb);
    product.multiply_by(other);
  }
}

/// out[0 .. na+nb) = a * b by one cyclic product; false, and nothing done, when the operands are too long for it. out
/// overlaps neither operand; a and b may be the same.
template <class R>
bool multiply_transform(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                        std::size_t nb) {
  return with_cyclic_product<R>(na + nb, std::min(na, nb),
                                [&]<class Product>(std::type_identity<Product>, std::size_t points) {
                                  Product product(points);
                                  load_product(product, points, a, na, b, nb);
                                  product.finish();
                                  product.store(out, na + nb);
                                });
}

/// The same for a much longer a, in pieces of three times the length of b, which is transformed once.
template <class R>
bool multiply_transform_in_pieces(typename R::Limb* out, const typename R::Limb* a, std::size_t na,
                                  const typename R::Limb* b, std::size_t nb) {
  using Limb = typename R::Limb;
  return with_cyclic_product<R>(4 * nb, nb, [&]<class Product>(std::type_identity<Product>, std::size_t points) {
    Product repeated(points);
    repeated.load(b, nb);
    multiply_in_pieces<R>(out, a, na, nb, 3 * nb, [&](Limb* to, const Limb* from, std::size_t length) {
      Product product(points);
      product.load(from, length);
      product.multiply_by(repeated);
      product.finish();
      product.store(to, length + nb);
    });
  });
}

/// out[0 .. 2n) = a * b, both of n >= 1 limbs, by the fastest way for this length; a square when a and b are the same
/// array. out overlaps neither operand.
template <class R>
void multiply_balanced(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n) {
  const Thresholds& limit = limits<typename R::Limb>();
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
  const Thresholds& limit = limits<typename R::Limb>();
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

// Compiled once, in instances.cpp: the transforms take the compiler seconds.
extern template void multiply_balanced<Radix>(Radix::Limb*, const Radix::Limb*, const Radix::Limb*, std::size_t);
extern template void multiply<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t, const Radix::Limb*, std::size_t);

}  // namespace quarn

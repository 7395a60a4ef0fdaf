// Products of middling and of unequal lengths, from shorter products.
#pragma once

#include <algorithm>
#include <cstddef>

#include "number/limbs/linear.h"
#include "number/limbs/scratch.h"

namespace quarn {

/// out[0 .. n) = |a - b|; returns whether a < b.
template <class R>
bool absolute_difference(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n) {
  const bool negative = compare<R>(a, b, n) < 0;
  if (negative) {
    std::swap(a, b);
  }
  subtract<R>(out, a, b, n);
  return negative;
}

/// out[0 .. 2n) = a * b, n >= 4, in three products of half the length: with a = a1 * B + a0 and b alike, the middle of
/// the product is a1 b1 + a0 b0 - (a1 - a0)(b1 - b0). When a and b are the same array all three are squares.
/// `product(out, a, b, n)` multiplies shorter ones. out overlaps neither operand.
template <class R, class Product>
void multiply_karatsuba(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n,
                        const Product& product) {
  using Limb = typename R::Limb;
  const std::size_t high = n / 2;
  const std::size_t low = n - high;  // the longer half by up to one limb
  // |a1 - a0| and |b1 - b0| wait where the product will be. A shorter high half gets a leading zero there first.
  const auto difference = [&](Limb* to, const Limb* x) {
    to[0] = 0;
    std::copy_n(x, high, to + (low - high));
    return absolute_difference<R>(to, to, x + high, low);
  };
  Scratch<Limb> middle(2 * low + 1);
  bool negative = difference(out, a);
  const Limb* second = out;
  if (a != b) {
    negative = difference(out + low, b) != negative;
    second = out + low;
  } else {
    negative = false;
  }
  Limb* const cross = middle.data() + 1;
  product(cross, out, second, low);
  product(out, a, b, high);
  product(out + 2 * high, a + high, b + high, low);
  // middle = low product + high product - cross, never negative
  const std::size_t extra = 2 * (low - high);
  Limb* const top = middle.data();
  top[0] = 0;
  if (negative) {
    top[0] = add<R>(cross, cross, out + 2 * high, 2 * low);
  } else {
    top[0] = R::base - subtract<R>(cross, out + 2 * high, cross, 2 * low);  // the base stands for zero for a while
  }
  const Limb carry = add<R>(cross + extra, cross + extra, out, 2 * high);
  top[0] += add_limb<R>(cross, extra, carry);
  if (!negative) {
    top[0] -= R::base;
  }
  const std::size_t start = 2 * n - low - (2 * low + 1);
  add_limb<R>(out, start, add<R>(out + start, out + start, top, 2 * low + 1));
}

/// out[0 .. na+nb) = a * b by products of `piece` limbs of a, from the low end, with the whole b:
/// `product(out, a, length)` forms out[0 .. length+nb).
template <class R, class Product>
void multiply_in_pieces(typename R::Limb* out, const typename R::Limb* a, std::size_t na, std::size_t nb,
                        std::size_t piece, const Product& product) {
  using Limb = typename R::Limb;
  Scratch<Limb> part(piece + nb);
  std::size_t end = na;
  std::size_t length = std::min(piece, end);
  product(out + end - length, a + end - length, length);
  for (end -= length; end > 0; end -= length) {
    length = std::min(piece, end);
    product(part.data(), a + end - length, length);
    const Limb carry = add<R>(out + end, out + end, part.data() + length, nb);
    std::copy_n(part.data(), length, out + end - length);
    add_limb<R>(out + end - length, length, carry);
  }
}

}  // namespace quarn

// Products, and products that are added, as in arithmetic.cpp.
#include <utility>

#include "number/scalar/fixed_length.h"

namespace quarn {
namespace {

#if QUARN_LIMB_BITS == 64

struct Product {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t, const Cut& cut) {
    Limb limbs[3][N];
    Term a, b, r;
    return load<N>(a, limbs[0], x) && load<N>(b, limbs[1], y) && product<N, kMore>(r, limbs[2], a, b, cut) &&
           store<N>(result, r);
  }
};

/// The product is rounded like one that is stored, and must be in range like one.
struct AddProduct {
  template <int N, bool kMore>
  static bool run(QuarnFloat& total, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t flip, const Cut& cut) {
    Limb limbs[5][N];
    Term a, b, c, p, r;
    return load<N>(a, limbs[0], x, flip) && load<N>(b, limbs[1], y) && load<N>(c, limbs[2], total) &&
           product<N, kMore>(p, limbs[3], a, b, cut) && in_range(p) && sum<N>(r, limbs[4], c, p, cut) &&
           store<N>(total, r);
  }
};

struct AddComplexProduct {
  template <int N, bool kMore>
  static bool run(Complex& total, const Complex& x, const Complex& y, unsigned how, const Cut& cut) {
    const auto flip_if = [how](unsigned flag) { return (how & flag) != 0 ? QuarnAccess::kSign : 0; };
    const std::uint32_t flip = flip_if(QuarnSubtract);
    Limb limbs[6][N];
    Term xr, xi, yr, yi, re, im;
    if (!(load<N>(xr, limbs[0], x.re, flip) && load<N>(xi, limbs[1], x.im, flip ^ flip_if(QuarnConjugateA)) &&
          load<N>(yr, limbs[2], y.re) && load<N>(yi, limbs[3], y.im, flip_if(QuarnConjugateB)) &&
          load<N>(re, limbs[4], total.re) && load<N>(im, limbs[5], total.im))) [[unlikely]] {
      return false;
    }
    // part := part + (a b + c d), the second product with its sign flipped where said.
    const auto add = [&cut](Term & part, Limb * p, const Term& a, const Term& b, const Term& c, const Term& d,
                            std::uint32_t flip_second) __attribute__((always_inline)) {
      Limb between[3][N];
      Term first, second, both;
      if (!(product<N, kMore>(first, between[0], a, b, cut) && in_range(first) &&
            product<N, kMore>(second, between[1], c, d, cut) && in_range(second))) [[unlikely]] {
        return false;
      }
      second.sign ^= flip_second;
      return sum<N>(both, between[2], first, second, cut) && in_range(both) && sum<N>(part, p, part, both, cut) &&
             in_range(part);
    };
    Limb results[2][N];
    return add(re, results[0], xr, yr, xi, yi, QuarnAccess::kSign) && add(im, results[1], xr, yi, xi, yr, 0) &&
           store<N>(total.re, re) && store<N>(total.im, im);
  }
};

#else

struct Product;
struct AddProduct;
struct AddComplexProduct;

#endif

}  // namespace
}  // namespace quarn

using namespace quarn;

QuarnFloat operator*(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Product>(result, a, b)) [[unlikely]] {
    assign(result, general_product, a, b);
  }
  return result;
}

QuarnFloat& QuarnFloat::operator*=(const QuarnFloat& b) {
  if (!by_length<Product>(*this, *this, b)) [[unlikely]] {
    assign(*this, general_product, *this, b);
  }
  return *this;
}

void QuarnAddProduct(QuarnFloat& sum, const QuarnFloat& a, const QuarnFloat& b, unsigned signs) {
  const bool subtract = (signs & QuarnSubtract) != 0;
  if (!by_length<AddProduct>(sum, a, b, subtract ? QuarnAccess::kSign : 0)) [[unlikely]] {
    sum = subtract ? sum - a * b : sum + a * b;
  }
}

void QuarnAddProduct(Complex& sum, const Complex& a, const Complex& b, unsigned signs) {
  if (by_length<AddComplexProduct>(sum, a, b, signs)) [[likely]] {
    return;
  }
  const bool conjugate_a = (signs & QuarnConjugateA) != 0;
  const bool conjugate_b = (signs & QuarnConjugateB) != 0;
  const auto combine = [](bool minus, const QuarnFloat& x, const QuarnFloat& y) { return minus ? x - y : x + y; };
  const QuarnFloat re = combine(conjugate_a == conjugate_b, a.re * b.re, a.im * b.im);
  const QuarnFloat im = conjugate_b ? combine(true, conjugate_a ? -(a.im * b.re) : a.im * b.re, a.re * b.im)
                                    : combine(conjugate_a, a.re * b.im, a.im * b.re);
  const bool subtract = (signs & QuarnSubtract) != 0;
  QuarnFloat total_re = combine(subtract, sum.re, re);
  sum.im = combine(subtract, sum.im, im);
  sum.re = std::move(total_re);
}

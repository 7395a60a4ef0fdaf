// + - / and sqrt: everyday lengths take fixed-length code, chosen once by the working precision; everything else, and
// the few results that short code cannot decide, take the slow path.
#include "number/scalar/fixed_length.h"

namespace quarn {
namespace {

#if QUARN_LIMB_BITS == 64

struct Sum {
  template <int N, bool>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t flip, const Cut& cut) {
    Limb limbs[3][N];
    Term a, b, r;
    return load<N>(a, limbs[0], x) && load<N>(b, limbs[1], y, flip) && sum<N>(r, limbs[2], a, b, cut) &&
           store<N>(result, r);
  }
};

struct Quotient {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t, const Cut& cut) {
    Limb limbs[3][N];
    Term a, b;
    if (!load<N>(a, limbs[0], x) || !load<N>(b, limbs[1], y) || a.limbs[0] == b.limbs[0]) [[unlikely]] {
      return false;
    }
    int change = 0;
    return fixed::divide<N, kMore>(limbs[2], a.limbs, b.limbs, a.limbs[0] > b.limbs[0], cut, change) &&
           store<N>(result, {limbs[2], a.sign ^ b.sign, a.exponent - b.exponent + change});
  }
};

struct SquareRoot {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat&, std::uint32_t, const Cut& cut) {
    Limb buffer[N];
    Term a;
    if (!load<N>(a, buffer, x) || a.sign != 0) [[unlikely]] {
      return false;
    }
    const int odd = int(a.exponent & 1);
    Limb p[N];
    int change = 0;
    return fixed::square_root<N, kMore>(p, a.limbs, odd, cut, change) &&
           store<N>(result, {p, 0, (a.exponent + odd) / 2 + change});
  }
};

#else

struct Sum;
struct Quotient;
struct SquareRoot;

#endif

}  // namespace
}  // namespace quarn

using namespace quarn;

namespace {

template <bool kFlip>
[[gnu::noinline]] void long_sum(QuarnFloat& result, const QuarnFloat& a, const QuarnFloat& b) {
  if (!sum_of_full(result, a, b, kFlip)) {
    result = general_sum(a, b, kFlip);
  }
}

}  // namespace

QuarnFloat operator+(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b)) [[unlikely]] {
    long_sum<false>(result, a, b);
  }
  return result;
}

QuarnFloat operator-(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b, QuarnAccess::kSign)) [[unlikely]] {
    long_sum<true>(result, a, b);
  }
  return result;
}

QuarnFloat operator/(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Quotient>(result, a, b)) [[unlikely]] {
    assign(result, general_quotient, a, b);
  }
  return result;
}

QuarnFloat& QuarnFloat::operator+=(const QuarnFloat& b) {
  if (!by_length<Sum, false>(*this, *this, b)) [[unlikely]] {
    long_sum<false>(*this, *this, b);
  }
  return *this;
}

QuarnFloat& QuarnFloat::operator-=(const QuarnFloat& b) {
  if (!by_length<Sum, false>(*this, *this, b, QuarnAccess::kSign)) [[unlikely]] {
    long_sum<true>(*this, *this, b);
  }
  return *this;
}

QuarnFloat& QuarnFloat::operator/=(const QuarnFloat& b) {
  if (!by_length<Quotient>(*this, *this, b)) [[unlikely]] {
    assign(*this, general_quotient, *this, b);
  }
  return *this;
}

QuarnFloat sqrt(const QuarnFloat& x) {
  QuarnFloat result;
  if (!by_length<SquareRoot>(result, x, x)) [[unlikely]] {
    result = general_square_root(x);
  }
  return result;
}

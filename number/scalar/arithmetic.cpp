// + - * / and sqrt: everyday lengths take fixed-length code, chosen once by the working precision; everything else, and
// the few results that short code cannot decide, take the slow path.
#include <utility>

#include "number/scalar/access.h"
#include "number/scalar/general.h"
#include "number/scalar/thread_state.h"

namespace quarn {

#if QUARN_LIMB_BITS == 64

namespace {

using fixed::Cut;

/// N limbs of an operand, or of a rounded result on its way into a number or the next operation. The limbs are arrays
/// of their own, so that the compiler can keep all this in registers.
struct Term {
  const Limb* limbs;
  std::uint32_t sign;
  std::int64_t exponent;
};

/// Whether x has 1 to N limbs; fewer are padded in the buffer.
template <int N>
[[gnu::always_inline]] inline bool load(Term& term, Limb* buffer, const QuarnFloat& x, std::uint32_t flip = 0) {
  const std::uint32_t length = QuarnAccess::length(x);
  if (length - 1 >= std::uint32_t(N)) [[unlikely]] {
    return false;
  }
  term = {QuarnAccess::inside(x), QuarnAccess::sign(x) ^ flip, QuarnAccess::exponent(x)};
  if (length != N) [[unlikely]] {
    for (std::uint32_t i = 0; i < std::uint32_t(N); ++i) {
      buffer[i] = i < length ? term.limbs[i] : 0;
    }
    term.limbs = buffer;
  }
  return true;
}

[[gnu::always_inline]] inline bool in_range(const Term& term) {
  return std::uint64_t(term.exponent - 1 + kMaxScientificExponent) <= 2 * std::uint64_t(kMaxScientificExponent);
}

template <int N>
[[gnu::always_inline]] inline bool store(QuarnFloat& result, const Term& term) {
  if (!in_range(term)) [[unlikely]] {
    return false;
  }
  std::uint32_t length = N;
  while (term.limbs[length - 1] == 0) {
    --length;
  }
  QuarnAccess::set(result, term.sign | length, std::int32_t(term.exponent));
  Limb* const inside = QuarnAccess::inside(result);
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    inside[i] = term.limbs[i];
  }
  return true;
}

/// The sum of two terms, its limbs in p.
template <int N>
[[gnu::always_inline]] inline bool sum(Term& result, Limb* p, const Term& x, const Term& y, const Cut& cut) {
  const Limb* const a = x.limbs;
  const Limb* const b = y.limbs;
  const bool subtracting = x.sign != y.sign;
  std::int64_t distance = x.exponent - y.exponent;
  // The larger operand first, by exponent and leading limb: all in conditional moves, since nobody can predict it.
  const bool swapped = distance < 0 || (distance == 0 && a[0] < b[0]);
  const Limb* const larger = swapped ? b : a;
  const Limb* const smaller = swapped ? a : b;
  const std::uint32_t sign = swapped ? y.sign : x.sign;
  const std::int64_t exponent = swapped ? y.exponent : x.exponent;
  distance = distance < 0 ? -distance : distance;
  if (distance == 0 && subtracting && a[0] == b[0]) [[unlikely]] {
    return false;
  }
  int change = 0;
  const bool done = fixed::add<N>(p, larger, smaller, std::uint32_t(distance), subtracting, cut, change);
  result = {p, sign, exponent + change};
  return done;
}

template <int N, bool kMore>
[[gnu::always_inline]] inline bool product(Term& result, Limb* p, const Term& x, const Term& y, const Cut& cut) {
  int change = 0;
  const bool done = fixed::multiply<N, kMore>(p, x.limbs, y.limbs, cut, change);
  result = {p, x.sign ^ y.sign, x.exponent + y.exponent + change};
  return done;
}

struct Sum {
  template <int N, bool>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t flip, const Cut& cut) {
    Limb limbs[3][N];
    Term a, b, r;
    return load<N>(a, limbs[0], x) && load<N>(b, limbs[1], y, flip) && sum<N>(r, limbs[2], a, b, cut) &&
           store<N>(result, r);
  }
};

struct Product {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t, const Cut& cut) {
    Limb limbs[3][N];
    Term a, b, r;
    return load<N>(a, limbs[0], x) && load<N>(b, limbs[1], y) && product<N, kMore>(r, limbs[2], a, b, cut) &&
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

// The cut is found again rather than passed: a register less to be kept while the columns are summed.
template <class Operation, int N, bool kMore, class Number>
[[gnu::noinline]] bool run(Number& result, const Number& x, const Number& y, std::uint32_t flip) {
  return Operation::template run<N, kMore>(result, x, y, flip, thread_state().precision.cut);
}

/// The one dispatch on the length. Returns false, with the result untouched, where fixed-length code does not serve.
template <class Operation, bool kUsesMore = true, class Number>
[[gnu::always_inline]] inline bool by_length(Number& result, const Number& x, const Number& y, std::uint32_t flip = 0) {
  const Precision& precision = thread_state().precision;
  switch (kUsesMore ? precision.fixed_length : precision.fixed_length & (Precision::kMore - 1)) {
    case 1:
      return run<Operation, 1, false>(result, x, y, flip);
    case 2:
      return run<Operation, 2, false>(result, x, y, flip);
    case 3:
      return run<Operation, 3, false>(result, x, y, flip);
    case 4:
      return run<Operation, 4, false>(result, x, y, flip);
    case 5:
      return run<Operation, 5, false>(result, x, y, flip);
    case 6:
      return run<Operation, 6, false>(result, x, y, flip);
    case 7:
      return run<Operation, 7, false>(result, x, y, flip);
    case Precision::kMore + 1:
      return run<Operation, 1, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 2:
      return run<Operation, 2, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 3:
      return run<Operation, 3, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 4:
      return run<Operation, 4, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 5:
      return run<Operation, 5, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 6:
      return run<Operation, 6, kUsesMore>(result, x, y, flip);
    case Precision::kMore + 7:
      return run<Operation, 7, kUsesMore>(result, x, y, flip);
    default:
      return false;
  }
}

}  // namespace

#else

namespace {

// Fixed-length code needs the slack of 64-bit limbs; narrower ones always take the slow path.
struct Sum;
struct Product;
struct AddProduct;
struct AddComplexProduct;
struct Quotient;
struct SquareRoot;

template <class Operation, bool = true, class Number>
bool by_length(Number&, const Number&, const Number&, std::uint32_t = 0) {
  return false;
}

}  // namespace

#endif

}  // namespace quarn

using namespace quarn;

namespace {

// Out of line, so that the operators need no room for a number of their own.
template <class Slow>
[[gnu::noinline]] void assign(QuarnFloat& result, const Slow& slow, const QuarnFloat& a, const QuarnFloat& b) {
  result = slow(a, b);
}

constexpr auto sum_of = [](const QuarnFloat& a, const QuarnFloat& b) { return general_sum(a, b, false); };
constexpr auto difference_of = [](const QuarnFloat& a, const QuarnFloat& b) { return general_sum(a, b, true); };

}  // namespace

QuarnFloat operator+(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b)) [[unlikely]] {
    assign(result, sum_of, a, b);
  }
  return result;
}

QuarnFloat operator-(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b, QuarnAccess::kSign)) [[unlikely]] {
    assign(result, difference_of, a, b);
  }
  return result;
}

QuarnFloat operator*(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Product>(result, a, b)) [[unlikely]] {
    assign(result, general_product, a, b);
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
    assign(*this, sum_of, *this, b);
  }
  return *this;
}

QuarnFloat& QuarnFloat::operator-=(const QuarnFloat& b) {
  if (!by_length<Sum, false>(*this, *this, b, QuarnAccess::kSign)) [[unlikely]] {
    assign(*this, difference_of, *this, b);
  }
  return *this;
}

QuarnFloat& QuarnFloat::operator*=(const QuarnFloat& b) {
  if (!by_length<Product>(*this, *this, b)) [[unlikely]] {
    assign(*this, general_product, *this, b);
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

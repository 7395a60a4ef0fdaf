// + - * / and sqrt: everyday lengths take fixed-length code, chosen once by the working precision; everything else, and
// the few results that short code cannot decide, go the general road.
#include "host/number/access.h"
#include "host/number/general.h"
#include "host/number/precision.h"

namespace quarn {

#if QUARN_LIMB_BITS == 64

namespace {

/// N limbs of an operand with 1 to N limbs.
template <int N>
[[gnu::always_inline]] inline const Limb* padded(const QuarnFloat& x, Limb* buffer) {
  const std::uint32_t length = QuarnAccess::length(x);
  const Limb* const limbs = QuarnAccess::inside(x);
  if (length == N) [[likely]] {
    return limbs;
  }
  for (std::uint32_t i = 0; i < std::uint32_t(N); ++i) {
    buffer[i] = i < length ? limbs[i] : 0;
  }
  return buffer;
}

/// N limbs of each operand.
template <int N>
class Operands {
 public:
  /// Whether both have 1 to N limbs.
  [[gnu::always_inline]] bool load(const QuarnFloat& x, const QuarnFloat& y) {
    if (QuarnAccess::length(x) - 1 >= std::uint32_t(N) || QuarnAccess::length(y) - 1 >= std::uint32_t(N)) [[unlikely]] {
      return false;
    }
    a = padded<N>(x, buffer_x_);
    b = padded<N>(y, buffer_y_);
    return true;
  }

  const Limb* a;
  const Limb* b;

 private:
  Limb buffer_x_[N];
  Limb buffer_y_[N];
};

template <int N>
[[gnu::always_inline]] inline bool store(QuarnFloat& result, std::uint32_t sign, std::int64_t exponent,
                                         const Limb* limbs) {
  if (exponent - 1 + kMaxScientificExponent > 2 * kMaxScientificExponent || exponent - 1 + kMaxScientificExponent < 0)
      [[unlikely]] {
    return false;
  }
  std::uint32_t length = N;
  while (limbs[length - 1] == 0) {
    --length;
  }
  QuarnAccess::set(result, sign | length, std::int32_t(exponent));
  Limb* const inside = QuarnAccess::inside(result);
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    inside[i] = limbs[i];
  }
  return true;
}

struct Sum {
  template <int N, bool>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t flip) {
    Operands<N> both;
    if (!both.load(x, y)) [[unlikely]] {
      return false;
    }
    const Limb* const a = both.a;
    const Limb* const b = both.b;
    std::uint32_t sign = QuarnAccess::sign(x);
    const std::uint32_t sign_b = QuarnAccess::sign(y) ^ flip;
    const bool subtracting = sign != sign_b;
    std::int64_t exponent = QuarnAccess::exponent(x);
    std::int64_t distance = exponent - QuarnAccess::exponent(y);
    // The larger operand first, by exponent and leading limb: all in conditional moves, since nobody can predict it.
    const bool swapped = distance < 0 || (distance == 0 && a[0] < b[0]);
    const Limb* const larger = swapped ? b : a;
    const Limb* const smaller = swapped ? a : b;
    sign = swapped ? sign_b : sign;
    exponent = swapped ? exponent - distance : exponent;
    distance = distance < 0 ? -distance : distance;
    if (distance == 0 && subtracting && a[0] == b[0]) [[unlikely]] {
      return false;
    }
    Limb p[N];
    int change = 0;
    return fixed::add<N>(p, larger, smaller, std::uint32_t(distance), subtracting, precision.cut, change) &&
           store<N>(result, sign, exponent + change, p);
  }
};

struct Product {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t) {
    Operands<N> both;
    if (!both.load(x, y)) [[unlikely]] {
      return false;
    }
    Limb p[N];
    int change = 0;
    return fixed::multiply<N, kMore>(p, both.a, both.b, precision.cut, change) &&
           store<N>(result, QuarnAccess::sign(x) ^ QuarnAccess::sign(y),
                    std::int64_t(QuarnAccess::exponent(x)) + QuarnAccess::exponent(y) + change, p);
  }
};

struct Quotient {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t) {
    Operands<N> both;
    if (!both.load(x, y) || both.a[0] == both.b[0]) [[unlikely]] {
      return false;
    }
    Limb p[N];
    int change = 0;
    return fixed::divide<N, kMore>(p, both.a, both.b, both.a[0] > both.b[0], precision.cut, change) &&
           store<N>(result, QuarnAccess::sign(x) ^ QuarnAccess::sign(y),
                    std::int64_t(QuarnAccess::exponent(x)) - QuarnAccess::exponent(y) + change, p);
  }
};

struct SquareRoot {
  template <int N, bool kMore>
  static bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat&, std::uint32_t) {
    if (QuarnAccess::length(x) - 1 >= std::uint32_t(N) || QuarnAccess::negative(x)) [[unlikely]] {
      return false;
    }
    Limb buffer[N];
    const Limb* const a = padded<N>(x, buffer);
    const std::int64_t exponent = QuarnAccess::exponent(x);
    const int odd = int(exponent & 1);
    Limb p[N];
    int change = 0;
    return fixed::square_root<N, kMore>(p, a, odd, precision.cut, change) &&
           store<N>(result, 0, (exponent + odd) / 2 + change, p);
  }
};

template <class Operation, int N, bool kMore>
[[gnu::noinline]] bool run(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y, std::uint32_t flip) {
  return Operation::template run<N, kMore>(result, x, y, flip);
}

/// The one dispatch on the length. Returns false, with the result untouched, where fixed-length code does not serve.
template <class Operation, bool kUsesMore = true>
[[gnu::always_inline]] inline bool by_length(QuarnFloat& result, const QuarnFloat& x, const QuarnFloat& y,
                                             std::uint32_t flip = 0) {
  const int road = kUsesMore ? precision.road : precision.road & (Precision::kMore - 1);
  switch (road) {
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

// Fixed-length code needs the slack of 64-bit limbs; narrower ones always go the general road.
struct Sum;
struct Product;
struct Quotient;
struct SquareRoot;

template <class Operation, bool = true>
bool by_length(QuarnFloat&, const QuarnFloat&, const QuarnFloat&, std::uint32_t = 0) {
  return false;
}

}  // namespace

#endif

}  // namespace quarn

using namespace quarn;

QuarnFloat operator+(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b)) [[unlikely]] {
    result = general_sum(a, b, false);
  }
  return result;
}

QuarnFloat operator-(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Sum, false>(result, a, b, QuarnAccess::kSign)) [[unlikely]] {
    result = general_sum(a, b, true);
  }
  return result;
}

QuarnFloat operator*(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Product>(result, a, b)) [[unlikely]] {
    result = general_product(a, b);
  }
  return result;
}

QuarnFloat operator/(const QuarnFloat& a, const QuarnFloat& b) {
  QuarnFloat result;
  if (!by_length<Quotient>(result, a, b)) [[unlikely]] {
    result = general_quotient(a, b);
  }
  return result;
}

QuarnFloat sqrt(const QuarnFloat& x) {
  QuarnFloat result;
  if (!by_length<SquareRoot>(result, x, x)) [[unlikely]] {
    result = general_square_root(x);
  }
  return result;
}

// The frame of fixed-length arithmetic: operands of a few limbs, the choice of the code by the working precision, and
// the slow path for everything else.
#pragma once

#include "number/scalar/access.h"
#include "number/scalar/general.h"
#include "number/scalar/thread_state.h"

namespace quarn {

#if QUARN_LIMB_BITS == 64

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

#else

// Fixed-length code needs the slack of 64-bit limbs; narrower ones always take the slow path.
template <class Operation, bool = true, class Number>
bool by_length(Number&, const Number&, const Number&, std::uint32_t = 0) {
  return false;
}

#endif

// Out of line, so that the operators need no room for a number of their own.
template <class Slow>
[[gnu::noinline]] void assign(QuarnFloat& result, const Slow& slow, const QuarnFloat& a, const QuarnFloat& b) {
  result = slow(a, b);
}

}  // namespace quarn

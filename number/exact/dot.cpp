#include "number/exact/dot.h"

#include <algorithm>

#include "number/exact/columns.h"
#include "number/exact/exact_sum.h"
#include "number/exact/leading.h"

namespace quarn::exact {
namespace {

// Limbs of a total that are summed in place; wider ones are sorted by exponents.
constexpr std::size_t kWidest = 512;
// Two limbs in front of the largest term take the carries.
constexpr std::int64_t kHeadroom = 2;

constexpr bool by_columns(const Span& span) { return Radix::digits == 18 && span.longest <= 7; }

/// Makes the total's limbs those of first - second, both of its length.
void take_difference(Total& total, Limb* first, Limb* second) {
  total.negative = compare<Radix>(first, second, total.length) < 0;
  if (total.negative) {
    std::swap(first, second);
  }
  subtract<Radix>(total.limbs, first, second, total.length);
}

#if QUARN_LIMB_BITS == 64

/// Adds x y to columns of radix 10^18, to[0] the one before the first of the product; x is moved by `places` digits.
template <int N>
[[gnu::always_inline]] inline void add_columns(Signed* to, const QuarnFloat& x, const QuarnFloat& y, int places,
                                               bool negative) {
  const Limb* const from_x = QuarnAccess::inside(x);
  const Limb* const from_y = QuarnAccess::inside(y);
  const std::uint32_t length_x = QuarnAccess::length(x);
  const std::uint32_t length_y = QuarnAccess::length(y);
  Limb padded[N];
  std::int64_t b[N];
#pragma GCC unroll 8
  for (std::uint32_t i = 0; i < N; ++i) {
    padded[i] = i < length_x ? from_x[i] : 0;
    b[i] = std::int64_t(i < length_y ? from_y[i] : 0);
    // Otherwise the choice is made between 128-bit numbers, and each product takes three multiplications.
    __asm__("" : "+r"(b[i]));
  }
  Limb moved[N + 1];
  fixed::move_right<N>(moved, padded, places);
  std::int64_t a[N + 1];
  const std::int64_t mask = -std::int64_t(negative);
#pragma GCC unroll 8
  for (int i = 0; i <= N; ++i) {
    a[i] = (std::int64_t(moved[i]) ^ mask) - mask;
  }
#pragma GCC unroll 16
  for (int c = 0; c < 2 * N; ++c) {
    Signed sum = 0;
#pragma GCC unroll 8
    for (int i = 0; i <= N; ++i) {
      if (c - i >= 0 && c - i < N) {
        sum += Signed(a[i]) * b[c - i];
      }
    }
    to[c + 1] += sum;
  }
}

/// Operands of up to N limbs.
template <int N, class Terms>
void total_by_columns(const Terms& row, Total& total) {
  // A column takes up to N products of 10^36 for each term, and 84 fit what take_bases can hold.
  constexpr std::size_t kHold = 80 / N;
  const std::size_t length = total.length;
  Scratch<Signed> columns(length);
  std::fill_n(columns.data(), length, Signed(0));
  const std::size_t size = row.size();
  const std::int64_t top = total.exponent;
  for (std::size_t first = 0; first < size; first += kHold) {
    const std::size_t last = std::min(size, first + kHold);
    for (std::size_t l = first; l < last; ++l) {
      const Term term = row[l];
      if (QuarnAccess::length(*term.a) == 0 || QuarnAccess::length(*term.b) == 0) {
        continue;
      }
      const std::uint64_t distance =
          std::uint64_t(top - QuarnAccess::exponent(*term.a) - QuarnAccess::exponent(*term.b));
      const std::uint64_t skip = distance / std::uint64_t(Radix::digits);
      const bool negative = (QuarnAccess::negative(*term.a) != QuarnAccess::negative(*term.b)) != term.flip;
      add_columns<N>(columns.data() + skip, *term.a, *term.b, int(distance % std::uint64_t(Radix::digits)), negative);
    }
    if (last < size) {
      for (std::size_t c = length; c-- > 1;) {
        fixed::take_bases(columns.data() + c);
      }
    }
  }
  carry_columns(columns.data(), total);
}

#endif

/// Operands of any length: whole products, moved and added with carries.
template <class Terms>
void total_by_products(const Terms& row, const Span& span, Total& total) {
  const std::size_t length = total.length;
  Scratch<Limb> work(2 * length + 3 * std::size_t(span.longest) + 2);
  Limb* const sums[2] = {work.data(), work.data() + length};
  Limb* const product = work.data() + 2 * length;
  Limb* const moved = product + 2 * span.longest + 1;
  std::fill_n(work.data(), 2 * length, Limb(0));
  const std::size_t size = row.size();
  for (std::size_t l = 0; l < size; ++l) {
    const Term term = row[l];
    if (QuarnAccess::length(*term.a) == 0 || QuarnAccess::length(*term.b) == 0) {
      continue;
    }
    const View a = view_of(*term.a);
    const View b = view_of(*term.b);
    const std::size_t n = a.length + b.length;
    const std::int64_t distance = total.exponent - a.exponent - b.exponent;
    shift_right<Radix>(moved, a.limbs, a.length, int(distance % Radix::digits));
    multiply<Radix>(product, moved, a.length + 1, b.limbs, b.length);
    Limb* const sum = sums[(a.negative != b.negative) != term.flip];
    Limb* const to = sum + distance / Radix::digits;
    const Limb carry = quarn::add<Radix>(to, to, product, n + 1);
    add_limb<Radix>(sum, std::size_t(to - sum), carry);
  }
  take_difference(total, sums[0], sums[1]);
}

}  // namespace

template <class Terms>
Span span_of(const Terms& terms) noexcept {
  Span span;
  const std::size_t size = terms.size();
  for (std::size_t l = 0; l < size; ++l) {
    const Term term = terms[l];
    const std::uint32_t length_a = QuarnAccess::length(*term.a);
    const std::uint32_t length_b = QuarnAccess::length(*term.b);
    if (length_a == 0 || length_b == 0) {
      span.finite = span.finite && isfinite(*term.a) && isfinite(*term.b);
      continue;
    }
    const std::int64_t top = std::int64_t(QuarnAccess::exponent(*term.a)) + QuarnAccess::exponent(*term.b);
    span.bottom = span.longest == 0 ? top : std::min(span.bottom, top);
    span.top = std::max(span.top, top);
    span.low = std::min(span.low, top - Radix::digits * std::int64_t(length_a + length_b));
    span.longest = std::max({span.longest, length_a, length_b});
  }
  return span;
}

std::size_t total_size(const Span& span) noexcept {
  if (!span.finite) {
    return 0;
  }
  if (span.longest == 0) {
    return 1;
  }
  // In columns shorter operands are padded to the longest one.
  const std::int64_t size =
      kHeadroom + 3 +
      (by_columns(span) ? (span.top - span.bottom) / Radix::digits + 2 * std::int64_t(span.longest)
                        : (span.top - span.low) / Radix::digits);
  return size > std::int64_t(kWidest + 4 * span.longest) ? 0 : std::size_t(size);
}

template <class Terms>
void total_of(const Terms& terms, const Span& span, Total& total) {
  total.length = total_size(span);
  total.negative = false;
  if (span.longest == 0) {
    total.limbs[0] = 0;
    total.exponent = 0;
    return;
  }
  total.exponent = span.top + kHeadroom * Radix::digits;
#if QUARN_LIMB_BITS == 64
  switch (span.longest) {
    case 1:
      return total_by_columns<1>(terms, total);
    case 2:
      return total_by_columns<2>(terms, total);
    case 3:
      return total_by_columns<3>(terms, total);
    case 4:
      return total_by_columns<4>(terms, total);
    case 5:
      return total_by_columns<5>(terms, total);
    case 6:
      return total_by_columns<6>(terms, total);
    case 7:
      return total_by_columns<7>(terms, total);
    default:
      break;
  }
#endif
  total_by_products(terms, span, total);
}

template <class Terms>
void rounded_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder, bool signed_zero) {
  if (!rounded_leading_total(result, terms, rounder)) {
    rounded_whole_total(result, terms, rounder, signed_zero);
  }
}

template <class Terms>
void rounded_whole_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder, bool signed_zero) {
  const Span span = span_of(terms);
  if (const std::size_t size = total_size(span); size != 0 && !(signed_zero && span.longest == 0)) {
    Scratch<Limb> limbs(size);
    Total total;
    total.limbs = limbs.data();
    total_of(terms, span, total);
    rounder.store(result, total.negative, total.exponent, total.limbs, total.length);
    return;
  }
  ExactSum sum;
  for (std::size_t l = 0; l < terms.size(); ++l) {
    const Term term = terms[l];
    sum.add(*term.a, *term.b, term.flip);
  }
  result = sum.rounded_sum(rounder.digits(), signed_zero);
}

template Span span_of(const Row&) noexcept;
template Span span_of(const TermList&) noexcept;
template void total_of(const Row&, const Span&, Total&);
template void total_of(const TermList&, const Span&, Total&);
template void rounded_total(QuarnFloat&, const Row&, const Rounder&, bool);
template void rounded_total(QuarnFloat&, const TermList&, const Rounder&, bool);
template void rounded_whole_total(QuarnFloat&, const Row&, const Rounder&, bool);
template void rounded_whole_total(QuarnFloat&, const TermList&, const Rounder&, bool);
template void rounded_whole_total(QuarnFloat&, const SparseRow&, const Rounder&, bool);

}  // namespace quarn::exact

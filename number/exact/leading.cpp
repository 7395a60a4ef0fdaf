// Terms are aligned to the largest possible one and cut into W limbs; of the products of limbs those are formed that
// reach into them. What is left out of a term is below N + 3 units of the last limb: less than N of the first column
// that is not formed, one of all columns behind it, one of the operand that was moved, one of a term that was moved
// by whole limbs. The carry out of the last column is off by less than 21.
//
// Where one operand of each term has a single limb, as in matrices of small integers, all columns are formed and
// nothing is left out: such sums often cancel.
#include "number/exact/leading.h"

#include <algorithm>
#include <type_traits>

#include "number/limbs/digitwise.h"

namespace quarn::exact {

#if QUARN_LIMB_BITS == 64

namespace {

using fixed::Signed;

// So that the doubt fits a limb with room, and so does the limb that takes what passes the largest term.
constexpr std::size_t kMostTerms = 1'000'000;

/// A sum on its way: column c has the products of limbs i and c - i.
template <int W>
struct LeadingSum {
  static constexpr std::int64_t kNone = INT64_MIN;
  std::int64_t top = kNone;    // every term is below 10^top
  std::uint32_t length_a = 0;  // 1 where no operand is longer
  std::uint32_t length_b = 0;
  Signed over = 0;  // what carries leave
  Signed columns[W] = {};
};

/// The terms that are formed as products: all but the number that a sparse row may add to them.
template <class Terms>
std::size_t products_of(const Terms& terms) noexcept {
  if constexpr (std::is_same_v<Terms, SparseRow>) {
    return terms.products();
  } else {
    return terms.size();
  }
}

/// Raises the top to that of terms; false when they are not for leading limbs.
template <int N, int W, class Terms>
[[gnu::always_inline]] inline bool find_top(LeadingSum<W>& sum, const Terms& terms, std::size_t first,
                                            std::size_t last) noexcept {
  std::int64_t top = sum.top;
  for (std::size_t l = first; l < last; ++l) {
    const Term term = terms[l];
    const std::uint32_t length_a = QuarnAccess::length(*term.a);
    const std::uint32_t length_b = QuarnAccess::length(*term.b);
    if (length_a - 1 >= std::uint32_t(N) || length_b - 1 >= std::uint32_t(N)) [[unlikely]] {
      if (length_a > std::uint32_t(N) || length_b > std::uint32_t(N) || !isfinite(*term.a) || !isfinite(*term.b)) {
        return false;
      }
      continue;
    }
    sum.length_a |= length_a;
    sum.length_b |= length_b;
    top = std::max(top, std::int64_t(QuarnAccess::exponent(*term.a)) + QuarnAccess::exponent(*term.b));
  }
  sum.top = top;
  return true;
}

/// The same for a number that is added to them.
template <int N, int W>
[[gnu::always_inline]] inline bool find_top_of_number(LeadingSum<W>& sum, const QuarnFloat& x) noexcept {
  const std::uint32_t length = QuarnAccess::length(x);
  if (length - 1 >= std::uint32_t(N)) [[unlikely]] {
    return length <= std::uint32_t(N) && isfinite(x);
  }
  sum.top = std::max(sum.top, std::int64_t(QuarnAccess::exponent(x)));
  return true;
}

template <int N>
[[gnu::always_inline]] inline const Limb* padded(Limb* buffer, const QuarnFloat& x) noexcept {
  const Limb* const from = QuarnAccess::inside(x);
  const std::uint32_t length = QuarnAccess::length(x);
  if (length == N) [[likely]] {
    return from;
  }
  for (std::uint32_t i = 0; i < std::uint32_t(N); ++i) {
    buffer[i] = i < length ? from[i] : 0;
  }
  return buffer;
}

/// Adds the leading columns of a product whose first limb is `distance` digits behind the point.
template <int N, int W>
[[gnu::always_inline]] inline void add_leading(Signed* columns, const Term& term, std::uint64_t distance) noexcept {
  Limb buffers[2][N];
  const Limb* const from_a = padded<N>(buffers[0], *term.a);
  const Limb* const from_b = padded<N>(buffers[1], *term.b);
  Limb moved[N + 1];
  fixed::move_right<N>(moved, from_a, int(distance % Radix::digits));
  if (distance >= Radix::digits) [[unlikely]] {
    const std::size_t skip = std::size_t(distance / Radix::digits);
    for (std::size_t i = N + 1; i-- > 0;) {
      moved[i] = i < skip ? 0 : moved[i - skip];
    }
  }
  const bool negative = (QuarnAccess::negative(*term.a) != QuarnAccess::negative(*term.b)) != term.flip;
  const std::int64_t mask = -std::int64_t(negative);
  std::int64_t a[W];
  std::int64_t b[N];
#pragma GCC unroll 8
  for (int i = 0; i < W; ++i) {
    a[i] = (std::int64_t(moved[i]) ^ mask) - mask;
  }
#pragma GCC unroll 8
  for (int i = 0; i < N; ++i) {
    b[i] = std::int64_t(from_b[i]);
    // Otherwise the sign is applied to 128-bit numbers, and each product takes three multiplications.
    __asm__("" : "+r"(b[i]));
  }
#pragma GCC unroll 8
  for (int c = 0; c < W; ++c) {
    Signed sum = 0;
#pragma GCC unroll 8
    for (int i = 0; i < W; ++i) {
      if (c - i >= 0 && c - i < N) {
        sum += Signed(a[i]) * b[c - i];
      }
    }
    columns[c] += sum;
  }
}

/// Adds the leading limbs of a number: limb i, from 0, is in the column of limbs whose places add up to i - 1.
template <int N, int W>
[[gnu::always_inline]] inline void add_number(LeadingSum<W>& sum, const QuarnFloat& x) noexcept {
  const std::uint64_t distance = std::uint64_t(sum.top - QuarnAccess::exponent(x));
  if (QuarnAccess::length(x) == 0 || distance >= W * Radix::digits) [[unlikely]] {
    return;
  }
  Limb buffer[N];
  Limb moved[N + 1];
  fixed::move_right<N>(moved, padded<N>(buffer, x), int(distance % Radix::digits));
  const std::int64_t mask = -std::int64_t(QuarnAccess::negative(x));
  const int skip = int(distance / Radix::digits);
  for (int i = 0; i <= N && i + skip <= W; ++i) {
    const Signed limb = (std::int64_t(moved[i]) ^ mask) - mask;
    (i + skip == 0 ? sum.over : sum.columns[i + skip - 1]) += limb;
  }
}

// A column takes up to N products of 10^36 for each term, and 84 fit what bases_of can hold.
template <int N>
constexpr std::size_t kHold = 80 / N;

/// Takes whole bases out of the columns, so that they hold further terms.
template <int W>
[[gnu::always_inline]] inline void move_carries(LeadingSum<W>& sum) noexcept {
#pragma GCC unroll 8
  for (int c = W - 1; c >= 0; --c) {
    const Signed bases = fixed::bases_of(sum.columns[c]);
    sum.columns[c] -= bases * Signed(fixed::kBase);
    (c > 0 ? sum.columns[c - 1] : sum.over) += bases;
  }
}

/// Adds up to kHold terms; `more` come later.
template <int N, int W, class Terms>
[[gnu::always_inline]] inline void add_terms(LeadingSum<W>& sum, const Terms& terms, std::size_t first,
                                             std::size_t last, bool more) noexcept {
  for (std::size_t l = first; l < last; ++l) {
    const Term term = terms[l];
    if (QuarnAccess::length(*term.a) == 0 || QuarnAccess::length(*term.b) == 0) [[unlikely]] {
      continue;
    }
    const std::uint64_t distance =
        std::uint64_t(sum.top - QuarnAccess::exponent(*term.a) - QuarnAccess::exponent(*term.b));
    if (distance < W * Radix::digits) [[likely]] {
      add_leading<N, W>(sum.columns, term, distance);
    }
  }
  if (more) [[unlikely]] {
    move_carries(sum);
  }
}

/// Carries, rounds and stores a whole sum, the last column with it.
template <int W>
[[gnu::noinline]] bool finish_whole(QuarnFloat& result, const LeadingSum<W>& sum, const Rounder& rounder) noexcept {
  // Column c belongs to limb c + 2, the first of which takes what passes the largest term.
  constexpr int kLast = W + 1;
  Limb limbs[kLast + 1];
  Signed carry = 0;
#pragma GCC unroll 9
  for (int q = kLast; q > 0; --q) {
    const Signed column = carry + (q > 1 ? sum.columns[q - 2] : sum.over);
    // Off by up to 21 bases from below, and by 16 from above where the column is negative.
    const Signed bases = fixed::bases_of(column);
    const Signed rest = column - bases * Signed(fixed::kBase);
    const Signed away = rest < 0 ? -17 : rest >= Signed(fixed::kBase) * 16 ? 16 : 0;
    const Limb settled = Limb(rest - away * Signed(fixed::kBase));
    const Limb more = settled / fixed::kBase;
    limbs[q] = settled - more * fixed::kBase;
    carry = bases + away + Signed(more);
  }
  const bool negative = carry < 0;
  if (negative) {
    Limb borrow = 0;
#pragma GCC unroll 9
    for (int q = kLast; q > 0; --q) {
      const Limb taken = limbs[q] + borrow;
      borrow = taken != 0;
      limbs[q] = borrow != 0 ? fixed::kBase - taken : 0;
    }
    limbs[0] = Limb(-carry) - borrow;
  } else {
    limbs[0] = Limb(carry);
  }
  if (all_zero<Radix>(limbs, kLast + 1)) {
    result = QuarnFloat();
    return true;
  }
  return rounder.store_if_decided(result, negative, sum.top + Radix::digits, limbs, kLast + 1, 0);
}

/// Whole bases of what carries leave in a column: rounded down, or one more next to a whole number. |column| < 2^81.
inline std::int64_t few_bases_of(Signed column) noexcept {
  constexpr std::int64_t kReciprocal = std::int64_t((fixed::Wide(1) << 88) / fixed::kBase);
  return std::int64_t((Signed(std::int64_t(column >> 24)) * kReciprocal) >> 64);
}

/// Carries, rounds and stores leading columns, N limbs. False also where the first limbs cancel. Carries of all columns
/// move at once, each twice; what is left then is a carry between limbs that are full, which is rare.
template <int N, int W>
[[gnu::always_inline]] inline bool finish(QuarnFloat& result, const LeadingSum<W>& sum, const Rounder& rounder,
                                          Limb doubt) noexcept {
  // 10^18 times what passes the first column and that column, in units of 2^18; the columns behind add less than 100.
  constexpr std::int64_t kPart = std::int64_t(fixed::kBase >> 18);
  const Signed lead = sum.over * kPart + (sum.columns[0] >> 18);
  const Signed sign = lead >> 127;
  if (((lead ^ sign) - sign) < 200 * Signed(kPart)) [[unlikely]] {
    return false;
  }
  // Column c belongs to limb c + 2; limb 1 takes what passes the largest term.
  Signed rest[W + 1];
  Signed bases[W + 1];
#pragma GCC unroll 9
  for (int c = 0; c < W; ++c) {
    const Signed column = (sum.columns[c] ^ sign) - sign;
    bases[c] = fixed::bases_of(column);
    rest[c + 1] = column - bases[c] * Signed(fixed::kBase);
  }
  rest[0] = (sum.over ^ sign) - sign;
  std::int64_t carry[W + 1];
  Limb limbs[W + 1];
#pragma GCC unroll 9
  for (int q = 0; q < W; ++q) {
    const Signed column = rest[q] + bases[q];
    // One less than there are, so that no limb is negative.
    carry[q] = few_bases_of(column) - 1;
    limbs[q + 1] = Limb(column) - Limb(carry[q]) * fixed::kBase;
  }
  Limb over[W + 2];
  over[W + 1] = 0;
#pragma GCC unroll 9
  for (int q = 1; q <= W; ++q) {
    const Limb limb = limbs[q] + (q < W ? Limb(carry[q]) : 0);
    over[q] = Limb(limb >= fixed::kBase) + Limb(limb >= 2 * fixed::kBase) + Limb(limb >= 3 * fixed::kBase);
    limbs[q] = limb - over[q] * fixed::kBase;
  }
  limbs[0] = Limb(carry[0]);
  Limb full = 0;
#pragma GCC unroll 9
  for (int q = 0; q <= W; ++q) {
    limbs[q] += over[q + 1];
    full |= fixed::kBase - 1 - limbs[q];
  }
  if (full >> 63 != 0) [[unlikely]] {
    for (int q = W; q > 0; --q) {
      const Limb more = limbs[q] / fixed::kBase;
      limbs[q] -= more * fixed::kBase;
      limbs[q - 1] += more;
    }
  }
  const bool negative = sign != 0;
  if (limbs[0] == 0 && limbs[1] != 0) [[likely]] {
    return rounder.store_known<N, W>(result, negative, sum.top, limbs + 1, doubt);
  }
  return rounder.store_if_decided(result, negative, sum.top + Radix::digits, limbs, W + 1, doubt);
}

/// The same as a call, where fewer copies of it matter more than some nanoseconds.
template <int N, int W>
[[gnu::noinline]] bool finish_by_call(QuarnFloat& result, const LeadingSum<W>& sum, const Rounder& rounder,
                                      Limb doubt) noexcept {
  return finish<N>(result, sum, rounder, doubt);
}

enum class Outcome { done, undecided, not_for_this };

/// The whole sum of terms of which one operand has a single limb, the first or the second.
template <int N, bool kFirst, class Terms>
[[gnu::noinline]] Outcome try_short(QuarnFloat& result, const Terms& terms, const Rounder& rounder,
                                    std::int64_t top) noexcept {
  LeadingSum<N + 1> sum;
  sum.top = top;
  const std::size_t size = terms.size();
  for (std::size_t l = 0, held = 1; l < size; ++l, ++held) {
    const Term term = terms[l];
    if (QuarnAccess::length(*term.a) == 0 || QuarnAccess::length(*term.b) == 0) [[unlikely]] {
      continue;
    }
    const std::uint64_t distance = std::uint64_t(top - QuarnAccess::exponent(*term.a) - QuarnAccess::exponent(*term.b));
    if (distance >= Radix::digits) [[unlikely]] {
      return Outcome::not_for_this;
    }
    Limb buffer[N];
    const Limb* const limbs = padded<N>(buffer, kFirst ? *term.b : *term.a);
    Limb moved[2];
    fixed::move_right<1>(moved, QuarnAccess::inside(kFirst ? *term.a : *term.b), int(distance));
    const bool negative = (QuarnAccess::negative(*term.a) != QuarnAccess::negative(*term.b)) != term.flip;
    const std::int64_t first = negative ? -std::int64_t(moved[0]) : std::int64_t(moved[0]);
    const std::int64_t second = negative ? -std::int64_t(moved[1]) : std::int64_t(moved[1]);
    std::int64_t before = 0;
#pragma GCC unroll 8
    for (int i = 0; i < N; ++i) {
      std::int64_t limb = std::int64_t(limbs[i]);
      __asm__("" : "+r"(limb));
      sum.columns[i] += Signed(first) * limb + Signed(second) * before;
      before = limb;
    }
    sum.columns[N] += Signed(second) * before;
    if (held == kHold<2>) [[unlikely]] {
      move_carries(sum);
      held = 0;
    }
  }
  return finish_whole(result, sum, rounder) ? Outcome::done : Outcome::undecided;
}

template <int N, int W, class Terms>
bool try_leading(QuarnFloat& result, const Terms& terms, const Rounder& rounder, Limb doubt) noexcept {
  LeadingSum<W> sum;
  const std::size_t size = products_of(terms);
  if (!find_top<N>(sum, terms, 0, size)) {
    return false;
  }
  if constexpr (std::is_same_v<Terms, SparseRow>) {
    if (terms.addend != nullptr && !find_top_of_number<N>(sum, *terms.addend)) {
      return false;
    }
  }
  if (sum.top == sum.kNone) {
    return false;
  }
  if ((sum.length_a == 1 || sum.length_b == 1) && size == terms.size()) [[unlikely]] {
    const Outcome outcome = sum.length_a == 1 ? try_short<N, true>(result, terms, rounder, sum.top)
                                              : try_short<N, false>(result, terms, rounder, sum.top);
    if (outcome != Outcome::not_for_this) {
      return outcome == Outcome::done;
    }
  }
  for (std::size_t first = 0; first < size; first += kHold<N>) {
    const std::size_t last = std::min(size, first + kHold<N>);
    add_terms<N>(sum, terms, first, last, last < size);
  }
  if constexpr (std::is_same_v<Terms, SparseRow>) {
    if (terms.addend != nullptr) {
      add_number<N>(sum, *terms.addend);
    }
  }
  if constexpr (std::is_same_v<Terms, Row>) {
    return finish<N>(result, sum, rounder, doubt);
  } else {
    return finish_by_call<N>(result, sum, rounder, doubt);
  }
}

template <int N, int W>
void try_several(std::size_t count, QuarnFloat* const* results, const Row* rows, bool* done, const Rounder& rounder,
                 Limb doubt) noexcept {
  LeadingSum<W> sums[kSeveral];
  const std::size_t size = rows[0].size();
  std::fill_n(done, count, true);
  const auto in_parts = [&](const auto& body) {
    for (std::size_t first = 0; first < size; first += kHold<N>) {
      const std::size_t last = std::min(size, first + kHold<N>);
      for (std::size_t t = 0; t < count; ++t) {
        if (done[t]) {
          body(t, first, last);
        }
      }
    }
  };
  in_parts([&](std::size_t t, std::size_t first, std::size_t last) {
    done[t] = find_top<N>(sums[t], rows[t], first, last);
  });
  in_parts([&](std::size_t t, std::size_t first, std::size_t last) {
    add_terms<N>(sums[t], rows[t], first, last, last < size);
  });
  for (std::size_t t = 0; t < count; ++t) {
    done[t] = done[t] && sums[t].top != sums[t].kNone && finish<N>(*results[t], sums[t], rounder, doubt);
  }
}

/// How `count` terms are summed at the rounder's digits.
struct Plan {
  bool possible;
  std::size_t length;  // limbs of an operand
  bool longer;         // the sum has one more
  Limb doubt;

  Plan(std::size_t count, const Rounder& rounder) noexcept
      : possible(leading_totals(rounder) && count <= kMostTerms),
        length(std::size_t(rounder.digits() / Radix::digits + 1)),
        doubt(Limb(count) * Limb(length + 3) + 21) {
    // A product may start two digits below its exponent. With three more digits one result in a thousand is undecided.
    longer = int(length) * Radix::digits - rounder.digits() - 2 - count_digits<Radix>(doubt) < 3;
  }
};

}  // namespace

template <class Terms>
bool rounded_leading_total(QuarnFloat& result, const Terms& terms, const Rounder& rounder) noexcept {
  using Try = bool (*)(QuarnFloat&, const Terms&, const Rounder&, Limb) noexcept;
  static constexpr Try kTry[7][2] = {
      {try_leading<1, 1, Terms>, try_leading<1, 2, Terms>}, {try_leading<2, 2, Terms>, try_leading<2, 3, Terms>},
      {try_leading<3, 3, Terms>, try_leading<3, 4, Terms>}, {try_leading<4, 4, Terms>, try_leading<4, 5, Terms>},
      {try_leading<5, 5, Terms>, try_leading<5, 6, Terms>}, {try_leading<6, 6, Terms>, try_leading<6, 7, Terms>},
      {try_leading<7, 7, Terms>, try_leading<7, 8, Terms>}};
  const Plan plan(terms.size(), rounder);
  return plan.possible && kTry[plan.length - 1][plan.longer](result, terms, rounder, plan.doubt);
}

void rounded_leading_totals(std::size_t count, QuarnFloat* const* results, const Row* rows, bool* done,
                            const Rounder& rounder) noexcept {
  using Try = void (*)(std::size_t, QuarnFloat* const*, const Row*, bool*, const Rounder&, Limb) noexcept;
  static constexpr Try kTry[7][2] = {{try_several<1, 1>, try_several<1, 2>}, {try_several<2, 2>, try_several<2, 3>},
                                     {try_several<3, 3>, try_several<3, 4>}, {try_several<4, 4>, try_several<4, 5>},
                                     {try_several<5, 5>, try_several<5, 6>}, {try_several<6, 6>, try_several<6, 7>},
                                     {try_several<7, 7>, try_several<7, 8>}};
  const Plan plan(rows[0].size(), rounder);
  if (plan.possible) {
    kTry[plan.length - 1][plan.longer](count, results, rows, done, rounder, plan.doubt);
  } else {
    std::fill_n(done, count, false);
  }
}

#else

template <class Terms>
bool rounded_leading_total(QuarnFloat& /*result*/, const Terms& /*terms*/, const Rounder& /*rounder*/) noexcept {
  return false;
}

void rounded_leading_totals(std::size_t count, QuarnFloat* const* /*results*/, const Row* /*rows*/, bool* done,
                            const Rounder& /*rounder*/) noexcept {
  std::fill_n(done, count, false);
}

#endif

template bool rounded_leading_total(QuarnFloat&, const Row&, const Rounder&) noexcept;
template bool rounded_leading_total(QuarnFloat&, const TermList&, const Rounder&) noexcept;
template bool rounded_leading_total(QuarnFloat&, const SparseRow&, const Rounder&) noexcept;

}  // namespace quarn::exact

// Sums kept exactly as groups of nine digits with a sign of their own, so that 10^k - 10^-k has two groups rather than
// a string of nines, and a sum has one form.
#include "quarn/accumulator.h"

#include <algorithm>
#include <utility>

#include "number/exact/dot.h"
#include "number/limbs/linear.h"
#include "number/limbs/multiply.h"
#include "number/limbs/scratch.h"

namespace quarn {

struct AccumulatorAccess {
  static unsigned char& kind(Accumulator& sum) noexcept { return sum.kind_; }
  static std::vector<detail::AccumulatorGroup>& groups(Accumulator& sum) noexcept { return sum.groups_; }
};

namespace {

using Group = detail::AccumulatorGroup;
using Groups = std::vector<Group>;

constexpr int kGroupDigits = 9;
constexpr std::int64_t kGroupBase = 1'000'000'000;
constexpr std::int64_t kLargestGroup = kGroupBase / 2;
constexpr std::size_t kLimbGroups = std::size_t(Radix::digits) / kGroupDigits;
// A product of two numbers is below 10^2000000002.
constexpr std::int64_t kLargestPlace = 230'000'000;
// Zeros between two groups of a run.
constexpr std::int64_t kLargestGap = 2;

// Byte 0 of the packed form.
constexpr unsigned char kFinite = 0;
constexpr unsigned char kPositiveInfinity = 2;
constexpr unsigned char kNaN = 3;
constexpr unsigned char kNegativeInfinity = 6;

unsigned char infinity(bool negative) noexcept { return negative ? kNegativeInfinity : kPositiveInfinity; }

unsigned char sum_of_kinds(unsigned char a, unsigned char b) noexcept {
  return a == kFinite || a == b ? b : b == kFinite ? a : kNaN;
}

unsigned char kind_of_product(const QuarnFloat& a, const QuarnFloat& b, bool flip) noexcept {
  const Kind kind_a = kind_of(a);
  const Kind kind_b = kind_of(b);
  if (kind_a == Kind::nan || kind_b == Kind::nan) {
    return kNaN;
  }
  if (kind_a != Kind::infinite && kind_b != Kind::infinite) {
    return kFinite;
  }
  return kind_a == Kind::zero || kind_b == Kind::zero ? kNaN : infinity((signbit(a) != signbit(b)) != flip);
}

/// a + b, where the groups of b may be anything below 10^9 in size.
Groups sum_of(const Groups& a, const Groups& b) {
  Groups sum;
  sum.reserve(a.size() + b.size() + 1);
  std::size_t i = 0;
  std::size_t k = 0;
  std::int64_t carry = 0;
  std::int64_t place = 0;
  while (i < a.size() || k < b.size() || carry != 0) {
    if (carry != 0) {
      ++place;
    } else {
      place = i == a.size() ? b[k].place : k == b.size() ? a[i].place : std::min(a[i].place, b[k].place);
    }
    std::int64_t value = carry;
    if (i < a.size() && a[i].place == place) {
      value += a[i++].value;
    }
    if (k < b.size() && b[k].place == place) {
      value += b[k++].value;
    }
    carry = 0;
    for (; value > kLargestGroup; value -= kGroupBase) {
      ++carry;
    }
    for (; value <= -kLargestGroup; value += kGroupBase) {
      --carry;
    }
    if (value != 0) {
      sum.push_back({std::int32_t(place), std::int32_t(value)});
    }
  }
  return sum;
}

/// (-1)^negative * 0.limbs * 10^exponent
Groups groups_of(bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length) {
  const int places = int(((-exponent) % kGroupDigits + kGroupDigits) % kGroupDigits);
  Scratch<Limb> moved(length + 1);
  shift_right<Radix>(moved.data(), limbs, length, places);
  const std::int64_t top = (exponent + places) / kGroupDigits;
  const std::size_t count = (length + 1) * kLimbGroups;
  Groups groups;
  groups.reserve(count);
  for (std::size_t i = count; i-- > 0;) {
    const Limb limb = moved[i / kLimbGroups];
    const bool low = i % kLimbGroups == kLimbGroups - 1;
    const auto value = std::int32_t((low ? limb : limb / Limb(kGroupBase)) % Limb(kGroupBase));
    if (value != 0) {
      groups.push_back({std::int32_t(top - 1 - std::int64_t(i)), negative ? -value : value});
    }
  }
  return groups;
}

void add(Groups& groups, const Groups& more) {
  if (!more.empty()) {
    Groups sum = sum_of(groups, more);
    groups.swap(sum);
  }
}

/// Adds terms of which all operands are finite.
template <class Terms>
bool add_close_terms(Groups& groups, const Terms& terms, const exact::Span& span) {
  const std::size_t size = exact::total_size(span);
  if (size == 0) {
    return false;
  }
  Scratch<Limb> limbs(size);
  exact::Total total;
  total.limbs = limbs.data();
  exact::total_of(terms, span, total);
  add(groups, groups_of(total.negative, total.exponent, total.limbs, total.length));
  return true;
}

/// Terms far apart in magnitude: by halves, which are closer to each other, down to single terms.
Groups sum_of_far_terms(const exact::TermList& terms) {
  Groups groups;
  if (!add_close_terms(groups, terms, exact::span_of(terms))) {
    const std::size_t half = terms.count / 2;
    groups = sum_of_far_terms({terms.terms, half});
    add(groups, sum_of_far_terms({terms.terms + half, terms.count - half}));
  }
  return groups;
}

Accumulator sum_of_terms(const exact::Row& row) {
  Accumulator sum;
  Groups& groups = AccumulatorAccess::groups(sum);
  const exact::Span span = exact::span_of(row);
  if (!span.finite) {
    unsigned char& kind = AccumulatorAccess::kind(sum);
    for (std::size_t l = 0; l < row.size(); ++l) {
      const exact::Term term = row[l];
      kind = sum_of_kinds(kind, kind_of_product(*term.a, *term.b, term.flip));
    }
  } else if (span.longest != 0 && !add_close_terms(groups, row, span)) {
    std::vector<exact::Term> terms(row.size());
    for (std::size_t l = 0; l < terms.size(); ++l) {
      terms[l] = row[l];
    }
    groups = sum_of_far_terms({terms.data(), terms.size()});
  }
  return sum;
}

exact::Row row_of(std::size_t n, exact::Grid a, exact::Grid b) { return {a, b, 0, 0, n}; }

/// The sum times 10^-shift, rounded.
QuarnFloat number_of(const Groups& groups, std::int64_t shift) {
  const int digits = QuarnDigits();
  const std::size_t limb_count = std::size_t(digits) / std::size_t(Radix::digits) + 4;
  const std::size_t count = limb_count * kLimbGroups;
  const bool negative = groups.back().value < 0;
  const std::int64_t top = groups.back().place;
  std::vector<std::int64_t> window(count);
  std::size_t left = groups.size();
  for (; left > 0 && top - groups[left - 1].place < std::int64_t(count); --left) {
    const std::int32_t value = groups[left - 1].value;
    window[std::size_t(top - groups[left - 1].place)] = negative ? -value : value;
  }
  const bool sticky = left > 0;
  if (sticky && (groups[left - 1].value < 0) != negative) {
    --window.back();
  }
  std::int64_t borrow = 0;
  for (std::size_t i = count; i-- > 0;) {
    window[i] -= borrow;
    borrow = window[i] < 0 ? 1 : 0;
    window[i] += borrow * kGroupBase;
  }
  std::vector<Limb> limbs(limb_count);
  for (std::size_t i = 0; i < count; ++i) {
    limbs[i / kLimbGroups] = Limb(limbs[i / kLimbGroups] * Limb(kGroupBase) + Limb(window[i]));
  }
  return rounded(negative, kGroupDigits * (top + 1) - shift, limbs.data(), limbs.size(), sticky, digits);
}

void store(unsigned char*& bytes, std::int64_t word) noexcept {
  for (int i = 0; i < 4; ++i) {
    *bytes++ = static_cast<unsigned char>(std::uint32_t(word) >> (8 * i));
  }
}

std::uint32_t load(const unsigned char*& bytes) noexcept {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) {
    word |= std::uint32_t(*bytes++) << (8 * i);
  }
  return word;
}

/// The end, downwards, of the run that has groups[last - 1] in front.
std::size_t end_of_run(const Groups& groups, std::size_t last) noexcept {
  std::size_t first = last - 1;
  while (first > 0 && groups[first].place - groups[first - 1].place <= kLargestGap + 1) {
    --first;
  }
  return first;
}

/// The groups of a run, which precede those that are there; false for a run that is not one.
bool read_run(const unsigned char*& bytes, std::size_t& size, Groups& falling) {
  if (size < 8) {
    return false;
  }
  const std::int64_t top = std::int32_t(load(bytes));
  const std::size_t count = load(bytes);
  size -= 8;
  if (count == 0 || count > size / 4 || top > kLargestPlace || top - std::int64_t(count) < -kLargestPlace ||
      (!falling.empty() && falling.back().place - top <= kLargestGap + 1)) {
    return false;
  }
  size -= 4 * count;
  std::int64_t zeros = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto value = std::int32_t(load(bytes));
    zeros = value == 0 ? zeros + 1 : 0;
    const bool at_an_end = i == 0 || i + 1 == count;
    if (value > kLargestGroup || value <= -kLargestGroup || zeros > (at_an_end ? 0 : kLargestGap)) {
      return false;
    }
    if (value != 0) {
      falling.push_back({std::int32_t(top - std::int64_t(i)), value});
    }
  }
  return true;
}

}  // namespace

Accumulator& Accumulator::operator+=(const QuarnFloat& x) {
  const Kind kind = quarn::kind_of(x);
  if (kind != Kind::finite) {
    const unsigned char added = kind == Kind::nan ? kNaN : kind == Kind::infinite ? infinity(signbit(x)) : kFinite;
    kind_ = sum_of_kinds(kind_, added);
    if (kind_ != kFinite) {
      groups_.clear();
    }
  } else if (kind_ == kFinite) {
    const View v = view_of(x);
    add(groups_, groups_of(v.negative, v.exponent, v.limbs, v.length));
  }
  return *this;
}

Accumulator& Accumulator::operator+=(const Accumulator& other) {
  if (kind_ == kFinite && other.kind_ == kFinite) {
    add(groups_, other.groups_);
    return *this;
  }
  kind_ = sum_of_kinds(kind_, other.kind_);
  groups_.clear();
  return *this;
}

Accumulator& Accumulator::add_product(const QuarnFloat& a, const QuarnFloat& b) { return add_dot(1, &a, 1, &b, 1); }

Accumulator& Accumulator::add_dot(std::size_t n, const QuarnFloat* a, std::ptrdiff_t step_a, const QuarnFloat* b,
                                  std::ptrdiff_t step_b) {
  return *this += sum_of_terms(row_of(n, {a, 0, step_a, 0, false}, {b, step_b, 0, 0, false}));
}

void add_inner_product(std::size_t n, const Complex* a, const Complex* b, Accumulator& real, Accumulator& imaginary) {
  if (n == 0) {
    return;
  }
  exact::Row row = row_of(2 * n, {&a->re, 0, 2, 1, true}, {&b->re, 2, 0, 1, false});
  Accumulator sums[2] = {real, imaginary};
  for (std::size_t part = 0; part < 2; ++part) {
    row.j = part;
    sums[part] += sum_of_terms(row);
  }
  real = std::move(sums[0]);
  imaginary = std::move(sums[1]);
}

QuarnFloat Accumulator::rounded() const {
  if (kind_ != kFinite) {
    return special(kind_ == kNaN ? Kind::nan : Kind::infinite, kind_ == kNegativeInfinity);
  }
  return groups_.empty() ? special(Kind::zero) : number_of(groups_, 0);
}

QuarnFloat Accumulator::rounded_root() const {
  if (kind_ != kFinite || groups_.empty()) {
    return kind_ == kNegativeInfinity ? special(Kind::nan) : rounded();
  }
  const std::int64_t exponent = kGroupDigits * (std::int64_t(groups_.back().place) + 1);
  const std::int64_t half = (exponent - (exponent & 1)) / 2;
  QuarnFloat root = sqrt(number_of(groups_, 2 * half));
  if (quarn::kind_of(root) != Kind::finite) {
    return root;
  }
  const View v = view_of(root);
  return quarn::rounded(v.negative, v.exponent + half, v.limbs, v.length, false);
}

std::size_t Accumulator::packed_size() const noexcept {
  if (kind_ != kFinite) {
    return 1;
  }
  std::size_t size = 5;
  for (std::size_t last = groups_.size(); last > 0;) {
    const std::size_t first = end_of_run(groups_, last);
    size += 8 + 4 * std::size_t(groups_[last - 1].place - groups_[first].place + 1);
    last = first;
  }
  return size;
}

std::size_t Accumulator::write_packed(unsigned char* bytes) const noexcept {
  unsigned char* at = bytes;
  *at++ = kind_;
  if (kind_ != kFinite) {
    return 1;
  }
  unsigned char* head = at;
  at += 4;
  std::int64_t runs = 0;
  for (std::size_t last = groups_.size(); last > 0; ++runs) {
    const std::size_t first = end_of_run(groups_, last);
    const std::int64_t top = groups_[last - 1].place;
    store(at, top);
    store(at, top - groups_[first].place + 1);
    for (std::int64_t place = top; last > first; --place) {
      const bool here = groups_[last - 1].place == place;
      store(at, here ? groups_[last - 1].value : 0);
      last -= here ? 1 : 0;
    }
  }
  store(head, runs);
  return std::size_t(at - bytes);
}

std::size_t Accumulator::read_packed(const unsigned char* bytes, std::size_t size) {
  if (size == 0 ||
      (bytes[0] != kFinite && bytes[0] != kPositiveInfinity && bytes[0] != kNegativeInfinity && bytes[0] != kNaN)) {
    return 0;
  }
  const unsigned char* at = bytes + 1;
  Groups groups;
  if (bytes[0] == kFinite) {
    if (size < 5) {
      return 0;
    }
    std::size_t left = size - 5;
    for (std::size_t runs = load(at); runs > 0; --runs) {
      if (!read_run(at, left, groups)) {
        return 0;
      }
    }
    std::reverse(groups.begin(), groups.end());
  }
  kind_ = bytes[0];
  groups_.swap(groups);
  return std::size_t(at - bytes);
}

bool add_packed(std::span<const unsigned char> bytes, std::span<Accumulator> sums) {
  std::vector<Accumulator> totals(sums.begin(), sums.end());
  for (Accumulator& total : totals) {
    Accumulator part;
    const std::size_t used = part.read_packed(bytes.data(), bytes.size());
    if (used == 0) {
      return false;
    }
    total += part;
    bytes = bytes.subspan(used);
  }
  if (!bytes.empty()) {
    return false;
  }
  for (std::size_t i = 0; i < sums.size(); ++i) {
    sums[i] = std::move(totals[i]);
  }
  return true;
}

}  // namespace quarn

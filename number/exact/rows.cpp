// Entries as W limbs of a fixed-point number, aligned to an exponent for each row and each vector, with W one more than
// a result has. A limb but the first is within half a base of zero, so that a column of the product takes kTogether
// terms.
//
// Of the W^2 products of limbs the W (W + 1) / 2 leading ones are formed, those of the last column in doubles, since
// only what it carries counts. What is left out, and what doubles and carries leave, changes the last limb kept by less
// than kDoubt units; a sum whose rounding that might change is formed again from the entries themselves. Results
// therefore are those of exact sums, with limbs of any width.
#include "quarn/rows.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "number/exact/dot.h"
#include "number/limbs/digitwise.h"
#include "number/processor/vectors.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {
namespace {

// Exponents of rows and vectors lie so much above that of their first entries: what comes later may be larger.
constexpr std::int64_t kRoom = 3;
constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::min();

/// A row or a vector in prepared form.
struct Aligned {
  std::int64_t exponent = kUnknown;  // every entry is below 10^exponent
  bool ready = true;                 // every entry fits
};

#if QUARN_LIMB_BITS == 64

using fixed::kBase;
using fixed::Signed;
using Word = std::int64_t;

constexpr int kLongest = 8;  // limbs of a prepared entry
// Terms below 2.25 10^36 each in a column, so that bases_of can take its carries.
constexpr std::size_t kTogether = 32;
constexpr std::size_t kMostRowTerms = 128;
// Products left out take up to kLongest kMostRowTerms / 2 units. The last column is below 3.2 10^38: it has
// kMostRowTerms kLongest products, a quarter of 10^36 each but for the two with a first limb, which are below half of
// it. Each half of them, added in 512 steps one by one, is off by 512 2^-52 1.6 10^38 at most, whatever the rounding
// mode: together below 3.7 10^7 units of 10^18.
constexpr Limb kDoubt = 40'000'000;

using Pair = double __attribute__((vector_size(16)));

/// Words of an entry: its limbs, and the same as doubles.
constexpr std::size_t words_of(std::size_t limbs) { return 2 * limbs; }

/// The doubles of an entry behind its limbs, the last limb first for factors.
template <int W>
void add_doubles(Word* entry, bool reversed) noexcept {
  double doubles[W];
  for (int i = 0; i < W; ++i) {
    doubles[i] = double(entry[reversed ? W - 1 - i : i]);
  }
  std::memcpy(entry + W, doubles, sizeof doubles);
}

/// The sum of the last column's products.
template <int W>
class LastColumn {
 public:
  [[gnu::always_inline]] void add(const Word* row, const Word* factor) noexcept {
#pragma GCC unroll 4
    for (int i = 0; i + 1 < W; i += 2) {
      Pair x;
      Pair y;
      std::memcpy(&x, row + W + i, sizeof x);
      std::memcpy(&y, factor + W + i, sizeof y);
      pairs_[i / 2 % 2] += x * y;
    }
    if constexpr (W % 2 != 0) {
      double x = 0;
      double y = 0;
      std::memcpy(&x, row + 2 * W - 1, sizeof x);
      std::memcpy(&y, factor + 2 * W - 1, sizeof y);
      lone_ += x * y;
    }
  }
  /// In bases, to a thousand of them.
  [[nodiscard]] Signed bases() const noexcept {
    const Pair pair = pairs_[0] + pairs_[1];
    return Signed(std::int64_t((pair[0] + pair[1] + lone_) * (1e-3 / double(kBase)))) * 1000;
  }

 private:
  Pair pairs_[2] = {};  // two, so that a sum does not wait for the one before
  double lone_ = 0;
};

/// x as W limbs at 10^exponent, or with the opposite sign; false when it does not fit exactly.
template <int W>
bool align(Word* out, const QuarnFloat& x, std::int64_t exponent, bool flip) noexcept {
  const std::uint32_t length = QuarnAccess::length(x);
  if (length == 0) {
    std::fill_n(out, W, Word(0));
    return kind_of(x) == Kind::zero;
  }
  const std::int64_t distance = exponent - QuarnAccess::exponent(x);
  if (distance < 0 || distance >= W * Radix::digits || length > W) {
    return false;
  }
  const Limb* const from = QuarnAccess::limbs(x);
  Limb padded[W];
  for (std::uint32_t i = 0; i < W; ++i) {
    padded[i] = i < length ? from[i] : 0;
  }
  Limb moved[W + 1];
  fixed::move_right<W>(moved, padded, int(distance % Radix::digits));
  const int skip = int(distance / Radix::digits);
  for (int i = W - skip; i <= W; ++i) {
    if (moved[i] != 0) {
      return false;
    }
  }
  const bool negative = QuarnAccess::negative(x) != flip;
  Word carry = 0;
  for (int i = W - 1; i >= 0; --i) {
    Word limb = (i < skip ? 0 : Word(moved[i - skip])) + carry;
    carry = i > 0 && limb > Word(kBase / 2);
    limb -= carry * Word(kBase);
    out[i] = negative ? -limb : limb;
  }
  return true;
}

/// y := y - sum of a(l) b(l), numbers at exponents whose sum is given; false, with y as it was, when that is not
/// decided.
template <int W>
bool subtract_sum(QuarnFloat& y, const Word* a, const Word* b, std::size_t terms, std::int64_t exponent,
                  const Rounder& rounder) noexcept {
  constexpr int kHead = 2;
  constexpr int kLength = kHead + W;
  const std::uint32_t length = QuarnAccess::length(y);
  Limb old[kHead + 2 * W + 1] = {};
  if (length == 0) {
    if (kind_of(y) != Kind::zero) {
      return false;
    }
  } else {
    const std::int64_t distance = exponent + (kHead - 1) * Radix::digits - QuarnAccess::exponent(y);
    if (distance < 0 || distance >= W * Radix::digits || length > W) {
      return false;
    }
    const Limb* const from = QuarnAccess::limbs(y);
    Limb padded[W];
    for (std::uint32_t i = 0; i < W; ++i) {
      padded[i] = i < length ? from[i] : 0;
    }
    fixed::move_right<W>(old + 1 + distance / Radix::digits, padded, int(distance % Radix::digits));
  }
  constexpr int kColumns = W - 1;
  Signed columns[kColumns] = {};
  LastColumn<W> last;
  Signed over = 0;
  for (std::size_t left = terms; left > 0; left -= std::min(kTogether, left)) {
    for (std::size_t l = 0; l < std::min(kTogether, left); ++l, a += words_of(W), b += words_of(W)) {
#pragma GCC unroll 8
      for (int i = 0; i < kColumns; ++i) {
#pragma GCC unroll 8
        for (int j = 0; j < kColumns - i; ++j) {
          columns[i + j] += Signed(a[i]) * b[j];
        }
      }
      last.add(a, b);
    }
    if (left > kTogether) {
#pragma GCC unroll 8
      for (int c = kColumns - 1; c >= 0; --c) {
        const Signed bases = fixed::bases_of(columns[c]);
        columns[c] -= bases * Signed(kBase);
        (c > 0 ? columns[c - 1] : over) += bases;
      }
    }
  }
  // Column c belongs to limb c + 1 behind the head.
  const bool minus = QuarnAccess::negative(y);
  Limb limbs[kLength];
  Signed carry = -last.bases();
#pragma GCC unroll 8
  for (int q = W - 1; q >= -1; --q) {
    const Limb digit = old[kHead + q];
    const Signed column = carry + (minus ? -Signed(digit) : Signed(digit)) -
                          (q > 0    ? columns[q - 1]
                           : q == 0 ? over
                                    : 0);
    // Off by up to 21 bases from below, and by 16 from above where the column is negative.
    const Signed bases = fixed::bases_of(column);
    const Signed rest = column - bases * Signed(kBase);
    const Signed away = rest < 0 ? -17 : rest >= Signed(kBase) * 16 ? 16 : 0;
    const Limb settled = Limb(rest - away * Signed(kBase));
    const Limb more = settled / kBase;
    limbs[kHead + q] = settled - more * kBase;
    carry = bases + away + Signed(more);
  }
  const bool negative = carry < 0;
  if (negative) {
    Limb borrow = 0;
    for (int i = kLength - 1; i > 0; --i) {
      const Limb taken = limbs[i] + borrow;
      borrow = taken != 0;
      limbs[i] = borrow != 0 ? kBase - taken : 0;
    }
    limbs[0] = Limb(-carry) - borrow;
  } else {
    limbs[0] = Limb(carry);
  }
  return rounder.store_if_decided(y, negative, exponent + kHead * Radix::digits, limbs, kLength, kDoubt);
}

/// What depends on the length of a prepared entry.
struct Lengthwise {
  void (*add_doubles)(Word* entry, bool reversed) noexcept;
  bool (*align)(Word* out, const QuarnFloat& x, std::int64_t exponent, bool flip) noexcept;
  bool (*subtract_sum)(QuarnFloat& y, const Word* a, const Word* b, std::size_t terms, std::int64_t exponent,
                       const Rounder& rounder) noexcept;
};
template <int W>
constexpr Lengthwise kOf = {add_doubles<W>, align<W>, subtract_sum<W>};
constexpr Lengthwise kLengthwise[] = {{}, {}, kOf<2>, kOf<3>, kOf<4>, kOf<5>, kOf<6>, kOf<7>, kOf<8>};

#endif

}  // namespace
}  // namespace quarn::exact

using quarn::exact::Aligned;
using quarn::exact::Grid;
using quarn::exact::kUnknown;

struct QuarnRows::Store {
  std::size_t rows;
  std::size_t columns;
  Grid grid;
  quarn::exact::Rounder rounder{};
  QuarnFloat one{1};
#if QUARN_LIMB_BITS == 64
  using Word = quarn::exact::Word;

  std::size_t width = 0;   // limbs of an entry, 0 where all sums are formed from the entries
  std::size_t stride = 0;  // words of a part of it
  std::vector<Aligned> aligned{};
  std::vector<Word> words{};  // [row][column][part]
  // A vector, for a complex one the two that give real and imaginary parts of sums.
  Aligned vector{};
  std::vector<Word> factors[2]{};
#endif

  std::size_t parts() const { return 1 + grid.parts; }

  Store(std::size_t row_count, std::size_t column_count, const Grid& entries)
      : rows(row_count), columns(column_count), grid(entries) {
#if QUARN_LIMB_BITS == 64
    const int length = rounder.digits() / quarn::Radix::digits + 2;
    if (length > quarn::exact::kLongest || columns * parts() > quarn::exact::kMostRowTerms) {
      return;
    }
    width = std::size_t(length);
    aligned.resize(rows);
    stride = quarn::exact::words_of(width);
    words.resize(rows * columns * parts() * stride);
    for (std::size_t part = 0; part < parts(); ++part) {
      factors[part].resize(columns * parts() * stride);
    }
#endif
  }

  /// Part `part` of y(i) less the sum over `terms` entries of the vector that starts at `first`.
  void subtract_exactly(std::size_t i, std::size_t terms, const Grid& vector_grid, QuarnFloat& y, std::size_t part) {
    quarn::exact::Row row{grid, vector_grid, i, part, terms * parts()};
    row.negate = true;
    row.others[row.more++] = {&y, &one, false};
    quarn::exact::rounded_total(y, row, rounder, true);
  }

#if QUARN_LIMB_BITS == 64
  const quarn::exact::Lengthwise& by_length() const { return quarn::exact::kLengthwise[width]; }
  Word* entry(std::size_t i, std::size_t l) { return words.data() + (i * columns + l) * parts() * stride; }

  void prepare(std::size_t i, std::size_t l) noexcept {
    const QuarnFloat* const numbers = grid.first + std::ptrdiff_t(i) * grid.row;
    append(aligned[i], l, numbers, grid.column, [&](std::size_t q, const QuarnFloat* number, std::int64_t exponent) {
      bool fits = true;
      for (std::size_t part = 0; part < parts(); ++part) {
        Word* const to = entry(i, q) + part * stride;
        fits = fits && by_length().align(to, number[part], exponent, part != 0 && grid.conjugate);
        by_length().add_doubles(to, false);
      }
      return fits;
    });
  }

  /// Element l of the vector joins the factors of sums: (re, -im) for real parts, (im, re) for imaginary ones.
  void take_factor(std::size_t l, const QuarnFloat* numbers, std::ptrdiff_t step) noexcept {
    append(vector, l, numbers, step, [&](std::size_t q, const QuarnFloat* number, std::int64_t exponent) {
      bool fits = by_length().align(factor(0, q), number[0], exponent, false);
      if (grid.parts != 0) {
        fits = fits && by_length().align(factor(1, q), number[1], exponent, false);
      }
      complete_factor(q);
      return fits;
    });
  }

  Word* factor(std::size_t part, std::size_t l) { return factors[part].data() + l * parts() * stride; }

  /// From the limbs of its parts, each the first one of a factor, all that sums need of element l.
  void complete_factor(std::size_t l) noexcept {
    Word* const first = factor(0, l);
    if (grid.parts != 0) {
      Word* const second = factor(1, l);
      std::copy_n(first, width, second + stride);
      std::transform(second, second + width, first + stride, [](Word limb) { return -limb; });
      by_length().add_doubles(first + stride, true);
      by_length().add_doubles(second, true);
      by_length().add_doubles(second + stride, true);
    }
    by_length().add_doubles(first, true);
  }

  /// Number l joins the earlier ones, which move to a larger exponent if it needs one.
  template <class Align>
  void append(Aligned& line, std::size_t l, const QuarnFloat* numbers, std::ptrdiff_t step,
              const Align& align) noexcept {
    if (!line.ready) {
      return;
    }
    std::size_t q = l;
    if (const std::int64_t top = top_of(numbers + std::ptrdiff_t(l) * step); top > line.exponent) {
      line.exponent = top + quarn::exact::kRoom;
      q = 0;
    }
    for (; line.ready && q <= l; ++q) {
      line.ready = align(q, numbers + std::ptrdiff_t(q) * step, line.exponent);
    }
  }

  /// The exponent of a number, of the larger part of a complex one; unknown for zero.
  std::int64_t top_of(const QuarnFloat* number) const noexcept {
    std::int64_t top = kUnknown;
    for (std::size_t part = 0; part < parts(); ++part) {
      if (QuarnAccess::length(number[part]) != 0) {
        top = std::max<std::int64_t>(top, QuarnAccess::exponent(number[part]));
      }
    }
    return top;
  }

  bool subtract_quickly(std::size_t i, std::size_t terms, QuarnFloat& y, std::size_t part) {
    const Aligned& line = aligned[i];
    if (!line.ready || !vector.ready) {
      return false;
    }
    if (line.exponent == kUnknown || vector.exponent == kUnknown) {
      // Nothing but zeros; a zero may get their sign.
      if (QuarnAccess::length(y) == 0) {
        return false;
      }
      if (QuarnAccess::length(y) >= width - 1) {
        y = quarn::rounded(y, rounder.digits());
      }
      return true;
    }
    return by_length().subtract_sum(y, entry(i, 0), factors[part].data(), terms * parts(),
                                    line.exponent + vector.exponent, rounder);
  }
#endif

  void subtract(std::size_t i, std::size_t terms, const Grid& vector_grid, QuarnFloat* y) {
    for (std::size_t part = 0; part < parts(); ++part) {
#if QUARN_LIMB_BITS == 64
      if (width != 0 && subtract_quickly(i, terms, y[part], part)) {
        continue;
      }
#endif
      subtract_exactly(i, terms, vector_grid, y[part], part);
    }
  }

  void substitute(std::size_t terms, QuarnFloat* numbers, std::ptrdiff_t step, bool divide);
  void subtract_products(std::size_t row, std::size_t terms, QuarnFloat* y, std::ptrdiff_t step);
};

/// `numbers` are the parts of the elements, `step` counts them.
void QuarnRows::Store::substitute(std::size_t terms, QuarnFloat* numbers, std::ptrdiff_t step, bool divide) {
  QuarnCheckInterrupt();
  const Grid vector_grid{numbers, step, 0, grid.parts, false};
#if QUARN_LIMB_BITS == 64
  const quarn::processor::PlainRounding plain;
  vector = Aligned();
  if (width != 0) {
    for (std::size_t i = 0; i < std::min(terms, rows); ++i) {
      vector.exponent = std::max(vector.exponent, top_of(numbers + std::ptrdiff_t(i) * step));
    }
    vector.exponent += vector.exponent == kUnknown ? 0 : quarn::exact::kRoom;
  }
#endif
  for (std::size_t i = 0; i < rows; ++i) {
    QuarnFloat* const element = numbers + std::ptrdiff_t(i) * step;
    if (i > 0 && terms > 0) {
      subtract(i, std::min(i, terms), vector_grid, element);
    }
    if (i >= terms) {
      continue;
    }
    if (divide) {
      const QuarnFloat* const pivot = grid.first + std::ptrdiff_t(i) * (grid.row + grid.column);
      if (grid.parts != 0 && pivot[1] != 0) {
        Complex quotient = Complex(element[0], element[1]) / Complex(pivot[0], grid.conjugate ? -pivot[1] : pivot[1]);
        element[0] = std::move(quotient.re);
        element[1] = std::move(quotient.im);
      } else {
        for (std::size_t part = 0; part < parts(); ++part) {
          element[part] /= *pivot;
        }
      }
    }
#if QUARN_LIMB_BITS == 64
    if (width != 0) {
      take_factor(i, numbers, step);
    }
#endif
  }
}

void QuarnRows::Store::subtract_products(std::size_t row, std::size_t terms, QuarnFloat* y, std::ptrdiff_t step) {
  QuarnCheckInterrupt();
  if (terms == 0) {
    return;
  }
  const Grid vector_grid{grid.first + std::ptrdiff_t(row) * grid.row, grid.column, 0, grid.parts, !grid.conjugate};
#if QUARN_LIMB_BITS == 64
  const quarn::processor::PlainRounding plain;
  if (width != 0) {
    vector = aligned[row];
    for (std::size_t l = 0; l < terms; ++l) {
      const Word* const from = entry(row, l);
      std::copy_n(from, width, factor(0, l));
      if (grid.parts != 0) {
        std::transform(from + stride, from + stride + width, factor(1, l), [](Word limb) { return -limb; });
      }
      complete_factor(l);
    }
  }
#endif
  for (std::size_t i = row; i < rows; ++i) {
    subtract(i, terms, vector_grid, y + std::ptrdiff_t(i) * step);
  }
}

QuarnRows::QuarnRows(std::size_t rows, std::size_t columns, QuarnMatrix<const QuarnFloat> entries)
    : store_(std::make_unique<Store>(rows, columns, Grid{entries.first, entries.row, entries.column, 0, false})) {}

QuarnRows::QuarnRows(std::size_t rows, std::size_t columns, QuarnMatrix<const Complex> entries, bool conjugate)
    : store_(std::make_unique<Store>(rows, columns,
                                     Grid{&entries.first->re, 2 * entries.row, 2 * entries.column, 1, conjugate})) {}

QuarnRows::~QuarnRows() = default;

void QuarnRows::prepare([[maybe_unused]] std::size_t column, [[maybe_unused]] std::size_t first,
                        [[maybe_unused]] std::size_t last) noexcept {
#if QUARN_LIMB_BITS == 64
  if (store_->width != 0) {
    const quarn::processor::PlainRounding plain;
    for (std::size_t i = first; i < last; ++i) {
      store_->prepare(i, column);
    }
  }
#endif
}

void QuarnRows::exchange([[maybe_unused]] std::size_t i, [[maybe_unused]] std::size_t k) noexcept {
#if QUARN_LIMB_BITS == 64
  if (store_->width != 0 && i != k) {
    const std::size_t size = store_->columns * store_->parts() * store_->stride;
    std::swap_ranges(store_->entry(i, 0), store_->entry(i, 0) + size, store_->entry(k, 0));
    std::swap(store_->aligned[i], store_->aligned[k]);
  }
#endif
}

void QuarnRows::substitute(std::size_t terms, QuarnFloat* y, std::ptrdiff_t step, bool divide) {
  store_->substitute(terms, y, step, divide);
}
void QuarnRows::substitute(std::size_t terms, Complex* y, std::ptrdiff_t step, bool divide) {
  store_->substitute(terms, &y->re, 2 * step, divide);
}
void QuarnRows::subtract_products(std::size_t row, std::size_t terms, QuarnFloat* y, std::ptrdiff_t step) {
  store_->subtract_products(row, terms, y, step);
}
void QuarnRows::subtract_products(std::size_t row, std::size_t terms, Complex* y, std::ptrdiff_t step) {
  store_->subtract_products(row, terms, &y->re, 2 * step);
}

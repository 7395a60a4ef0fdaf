#include "number/exact/aligned.h"

#include <algorithm>
#include <utility>

#include "number/exact/columns.h"

namespace quarn::exact {

#if QUARN_LIMB_BITS == 64

namespace {

constexpr int kMostLimbs = 8;

/// out = the limbs of x behind 10^top, with its sign.
template <int N>
[[gnu::always_inline]] inline void align(std::int64_t* out, const Entry& entry, std::int64_t top) {
  const QuarnFloat& x = *entry.number;
  const std::uint32_t length = QuarnAccess::length(x);
  const Limb* const limbs = QuarnAccess::limbs(x);
  Limb padded[N];
#pragma GCC unroll 8
  for (std::uint32_t i = 0; i < N; ++i) {
    padded[i] = i < length ? limbs[i] : 0;
  }
  const auto distance = length == 0 ? 0 : std::uint64_t(top - QuarnAccess::exponent(x));
  Limb moved[2 * N + 1] = {};
  fixed::move_right<N>(moved + N, padded, int(distance % Radix::digits));
  const std::size_t skip = std::min<std::size_t>(distance / Radix::digits, N);
  const std::int64_t mask = -std::int64_t(QuarnAccess::negative(x) != entry.flip);
#pragma GCC unroll 8
  for (std::size_t i = 0; i < N; ++i) {
    out[i] = (std::int64_t(moved[N + i - skip]) ^ mask) - mask;
  }
}

/// Adds the products of aligned numbers to columns, sums[0] one that takes carries.
template <int N>
void add_products(Signed* sums, const std::int64_t* a, const std::int64_t* b, std::size_t terms) {
  // 84 products of 10^36 are what take_bases can hold.
  constexpr std::size_t kHold = 80 / N;
  while (terms > 0) {
    const std::size_t run = std::min(terms, kHold);
    Signed column[2 * N - 1] = {};
    for (std::size_t l = 0; l < run; ++l) {
#pragma GCC unroll 16
      for (int c = 0; c < 2 * N - 1; ++c) {
#pragma GCC unroll 8
        for (int i = 0; i < N; ++i) {
          if (c - i >= 0 && c - i < N) {
            column[c] += Signed(a[i]) * b[c - i];
          }
        }
      }
      a += N;
      b += N;
    }
#pragma GCC unroll 16
    for (int c = 2 * N - 2; c >= 0; --c) {
      sums[c + 1] += column[c];
      fixed::take_bases(sums + c + 1);
    }
    terms -= run;
  }
}

struct Steps {
  void (*align)(std::int64_t* out, const Entry& entry, std::int64_t top);
  void (*add_products)(Signed* sums, const std::int64_t* a, const std::int64_t* b, std::size_t terms);
};

template <int... N>
constexpr auto steps_of(std::integer_sequence<int, N...>) {
  struct All {
    Steps of[sizeof...(N)];
  };
  return All{{{[](std::int64_t* out, const Entry& entry, std::int64_t top) { align<N + 1>(out, entry, top); },
               add_products<N + 1>}...}};
}
constexpr auto kSteps = steps_of(std::make_integer_sequence<int, kMostLimbs>());

}  // namespace

int aligned_limbs(const Line& line) noexcept {
  if (!line.finite) {
    return 0;
  }
  const std::int64_t limbs = line.top == INT64_MIN ? 1 : (line.top - line.low + Radix::digits - 1) / Radix::digits;
  return limbs > kMostLimbs ? 0 : int(limbs);
}

double cost_of_aligned_term(int limbs) noexcept { return limbs > kMostLimbs ? 1e300 : 1.5 + 0.45 * limbs * limbs; }

AlignedTile::AlignedTile(int limbs, std::size_t rows, std::size_t columns)
    : limbs_(limbs),
      rows_(rows),
      columns_(columns),
      length_(kTotalHead + 2 * std::size_t(limbs)),
      step_(512 / std::size_t(limbs)),
      sums_(rows * columns * length_),
      left_(rows * step_ * std::size_t(limbs)),
      right_(step_ * std::size_t(limbs)) {
  std::fill_n(sums_.data(), rows * columns * length_, Signed(0));
}

void AlignedTile::add(const Grid& a, const Grid& b, std::size_t first_row, std::size_t first_column, std::size_t inner,
                      const Line* rows, const Line* columns) {
  const Steps& steps = kSteps.of[limbs_ - 1];
  const auto limbs = std::size_t(limbs_);
  const bool all_rows = std::any_of(columns, columns + columns_, [](const Line& line) { return line.exactly; });
  bool taken[kTileEdge];
  for (std::size_t i = 0; i < rows_; ++i) {
    taken[i] = aligned_limbs(rows[i]) != 0 && (all_rows || rows[i].exactly);
  }
  for (std::size_t first = 0; first < inner; first += step_) {
    const std::size_t size = std::min(step_, inner - first);
    for (std::size_t l = 0; l < size; ++l) {
      for (std::size_t i = 0; i < rows_; ++i) {
        if (taken[i]) {
          steps.align(left_.data() + (i * step_ + l) * limbs, a.left(first_row + i, first + l), rows[i].exponent());
        }
      }
    }
    for (std::size_t j = 0; j < columns_; ++j) {
      if (aligned_limbs(columns[j]) == 0) {
        continue;
      }
      for (std::size_t l = 0; l < size; ++l) {
        steps.align(right_.data() + l * limbs, b.right(first + l, first_column + j), columns[j].exponent());
      }
      for (std::size_t i = 0; i < rows_; ++i) {
        if (taken[i] && (rows[i].exactly || columns[j].exactly)) {
          steps.add_products(sums_.data() + (i * columns_ + j) * length_ + kTotalHead, left_.data() + i * step_ * limbs,
                             right_.data(), size);
        }
      }
    }
  }
}

bool AlignedTile::total(std::size_t row, std::size_t column, std::int64_t top, Total& total) noexcept {
  total.length = length_;
  total.exponent = top + std::int64_t(kTotalHead) * Radix::digits;
  carry_columns(sums_.data() + (row * columns_ + column) * length_, total);
  return all_zero<Radix>(total.limbs, total.length);
}

#else

int aligned_limbs(const Line& /*line*/) noexcept { return 0; }
double cost_of_aligned_term(int /*limbs*/) noexcept { return 1e300; }

AlignedTile::AlignedTile(int limbs, std::size_t rows, std::size_t columns)
    : limbs_(limbs), rows_(rows), columns_(columns), length_(0) {}
void AlignedTile::add(const Grid& /*a*/, const Grid& /*b*/, std::size_t /*first_row*/, std::size_t /*first_column*/,
                      std::size_t /*inner*/, const Line* /*rows*/, const Line* /*columns*/) {}
bool AlignedTile::total(std::size_t /*row*/, std::size_t /*column*/, std::int64_t /*top*/, Total& /*total*/) noexcept {
  return true;
}

#endif

}  // namespace quarn::exact

// The part of a product that is done by residues.
//
//   1. pack     rows of A and columns of B, each aligned to its largest exponent, as residues modulo P primes
//   2. multiply P products of matrices of doubles
//   3. finish   Chinese remainders to decimal digits, one rounding
//
// A and B have SA and SB digits of 10^6, so that an entry is below K 10^(6 (SA + SB)) units; the product of the primes
// is more than four times that. Cost: P m n k multiply-adds of doubles, P SA m k and P SB k n for the residues, and
// P (SA + SB) m n for the remainders.
#include <algorithm>
#include <bit>
#include <memory>
#include <new>
#include <numeric>

#include "number/exact/product.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {
namespace {

constexpr std::size_t kBlockLimbs = 18 / Radix::digits;
constexpr bool kWide = kBlockLimbs == 1;

constexpr std::size_t round_up(std::size_t n, std::size_t step) { return (n + step - 1) / step * step; }

/// The whole number that a kernel left biased by 2^52.
std::uint64_t unbiased(double x) noexcept { return std::bit_cast<std::uint64_t>(x) & ((std::uint64_t(1) << 52) - 1); }

/// Limbs from two numbers for each 18 digits, the lowest first in `digits`, the leading one first in `limbs`.
void fetch_limbs(Limb* limbs, const double* digits, std::size_t step, std::size_t blocks) noexcept {
  for (std::size_t i = 0; i < blocks; ++i) {
    const double* const block = digits + 2 * (blocks - 1 - i) * step;
#if QUARN_LIMB_BITS == 64
    limbs[i] = unbiased(block[step]) * 1'000'000'000'000 + unbiased(block[0]);
#else
    limbs[2 * i] = Limb(unbiased(block[step]));
    limbs[2 * i + 1] = Limb(unbiased(block[0]));
#endif
  }
}

/// Arrays of doubles in one piece: of the arena, which keeps it for the next product, while it is of moderate size.
class Storage {
 public:
  void want(double*& place, std::size_t size) {
    places_[count_] = &place;
    starts_[count_++] = size_;
    size_ += round_up(size, 8);
  }

  class Held {
   public:
    explicit Held(const Storage& storage) : near_(storage.size_ <= kKept ? storage.size_ : 0) {
      if (storage.size_ > kKept) {
        far_.reset(static_cast<double*>(::operator new(storage.size_ * sizeof(double), kAligned)));
      }
      double* const start = far_ != nullptr ? far_.get() : near_.data();
      for (std::size_t i = 0; i < storage.count_; ++i) {
        *storage.places_[i] = start + storage.starts_[i];
      }
    }

   private:
    static constexpr std::align_val_t kAligned = std::align_val_t(64);
    static constexpr std::size_t kKept = std::size_t(6) << 20;
    struct Delete {
      void operator()(double* p) const noexcept { ::operator delete(p, kAligned); }
    };
    Scratch<double> near_;
    std::unique_ptr<double, Delete> far_;
  };

 private:
  double** places_[8] = {};
  std::size_t starts_[8] = {};
  std::size_t count_ = 0;
  std::size_t size_ = 0;
};

}  // namespace

/// Working storage of a product by residues.
struct Product::Operands {
  /// A thread's own part of it.
  struct Own {
    double* sums;
    double* digits;  // for packing, and then of results: two columns
    double* signs;
    Limb* limbs;
  };

  SharedTables tables;
  int left_digits;
  int right_digits;
  int out_digits;      // what the kernels form
  std::size_t blocks;  // of three digits, the last one filled up
  std::size_t left_stride = 0;
  std::size_t right_stride = 0;
  double* left = nullptr;
  double* right = nullptr;
  std::vector<Own> own{};
  std::vector<Limb> limbs{};
};

/// How a product is cut. A block's residues are there at once; its tiles are shared among the threads.
struct Product::Cut {
  bool whole;  // one block: sums belong to a thread, otherwise to a tile of the block
  std::size_t block_rows;
  std::size_t block_columns;
  std::size_t block_inner;
  std::size_t tile_rows;
  std::size_t tile_columns;
};

Product::Cut Product::cut(std::size_t primes) const {
  constexpr std::size_t kBudget = std::size_t(256) << 20;  // bytes of a block
  constexpr std::size_t kTilesForThread = 4;
  const auto group = std::size_t(kernel_->group);
  const auto panel = std::size_t(kernel_->panel);
  const std::size_t all_rows = round_up(rows_, group);
  const std::size_t all_columns = round_up(columns_, panel);
  Cut cut{true, all_rows, all_columns, inner_, all_rows, all_columns};
  cut.whole = (double(all_rows) + double(all_columns)) * double(inner_) * double(8 * primes) < double(kBudget);
  if (!cut.whole) {
    std::size_t edge = 64;
    while (16 * primes * (edge + 32) * (edge + 32) < kBudget) {
      edge += 32;
    }
    cut.block_rows = std::min(all_rows, round_up(edge, group));
    cut.block_columns = std::min(all_columns, round_up(edge, panel));
    cut.block_inner = std::min(inner_, edge / 2);
  }
  cut.tile_rows = cut.block_rows;
  cut.tile_columns = cut.block_columns;
  if (cut.whole) {
    // The sums of a tile and what they come from stay in the cache.
    constexpr std::size_t kNear = std::size_t(3) << 19;
    cut.tile_rows = std::min(cut.block_rows, round_up(std::max<std::size_t>(group, kNear / 3 / 8 / inner_), group));
    const std::size_t room = kNear / 8 / (primes + 1) / cut.tile_rows;
    cut.tile_columns = std::min(cut.block_columns, std::max(panel, room / panel * panel));
  }
  if (threads_ > 1) {
    const std::size_t down = (cut.block_rows + cut.tile_rows - 1) / cut.tile_rows;
    const std::size_t across = (kTilesForThread * threads_ + down - 1) / down;
    cut.tile_columns = std::min(cut.tile_columns, round_up((cut.block_columns + across - 1) / across, panel));
  }
  return cut;
}

void Product::by_residues() {
  int left_digits = 1;
  int right_digits = 1;
  for (const Line& line : left_) {
    left_digits = line.exactly ? left_digits : std::max(left_digits, int(line.digits()));
  }
  for (const Line& line : right_) {
    right_digits = line.exactly ? right_digits : std::max(right_digits, int(line.digits()));
  }
  const int digits = left_digits + right_digits;
  const std::uint64_t terms = inner_;
  const int carries = terms < 400'000 ? 1 : terms < 400'000'000'000 ? 2 : 4;
  const auto group = std::size_t(kernel_->group);
  const auto panel = std::size_t(kernel_->panel);
  Operands work{SharedTables(primes_for(inner_, digits)), left_digits, right_digits, digits + carries,
                (std::size_t(digits + carries) + 2) / 3};
  const auto primes = std::size_t(work.tables->primes);
  const Cut cut = this->cut(primes);
  work.left_stride = cut.block_rows * cut.block_inner;
  work.right_stride = round_up(cut.block_columns * cut.block_inner, group);
  const int packing = std::max(left_digits, right_digits);
  const std::size_t sums_size =
      round_up((cut.whole ? cut.tile_rows * cut.tile_columns : cut.block_rows * cut.block_columns) * (primes + 1), 8);
  const std::size_t digits_size =
      round_up(std::max(Packer::digits_size(*kernel_, packing), 6 * group * work.blocks), 8);
  const std::size_t own_size = digits_size + round_up(2 * group, 8) + (cut.whole ? sums_size : 0);
  const std::size_t limbs_size = std::max(Packer::limbs_size(packing), 2 * (work.blocks * kBlockLimbs + kHead));
  double* own = nullptr;
  double* shared_sums = nullptr;
  Storage storage;
  storage.want(work.left, primes * work.left_stride);
  storage.want(work.right, primes * work.right_stride);
  storage.want(own, threads_ * own_size);
  storage.want(shared_sums, cut.whole ? 0 : sums_size);
  const Storage::Held held(storage);
  work.limbs.resize(threads_ * limbs_size);
  for (std::size_t t = 0; t < threads_; ++t) {
    double* const first = own + t * own_size;
    double* const signs = first + digits_size;
    work.own.push_back(
        {cut.whole ? signs + round_up(2 * group, 8) : shared_sums, first, signs, work.limbs.data() + t * limbs_size});
  }

  const std::size_t all_rows = round_up(rows_, group);
  const std::size_t all_columns = round_up(columns_, panel);
  for (std::size_t i = 0; i < all_rows; i += cut.block_rows) {
    const Block rows{i, std::min(cut.block_rows, all_rows - i)};
    for (std::size_t j = 0; j < all_columns; j += cut.block_columns) {
      const Block columns{j, std::min(cut.block_columns, all_columns - j)};
      for (std::size_t l = 0; l < inner_; l += cut.block_inner) {
        const Block inner{l, std::min(cut.block_inner, inner_ - l)};
        pack(work, rows, columns, inner);
        const std::size_t down = (rows.size + cut.tile_rows - 1) / cut.tile_rows;
        const std::size_t across = (columns.size + cut.tile_columns - 1) / cut.tile_columns;
        share(down * across, [&](std::size_t thread, std::size_t tile) {
          const std::size_t ti = tile / across * cut.tile_rows;
          const std::size_t tj = tile % across * cut.tile_columns;
          const std::size_t height = std::min(cut.tile_rows, rows.size - ti);
          const std::size_t width = std::min(cut.tile_columns, columns.size - tj);
          double* sums = work.own[thread].sums + (cut.whole ? 0 : tj * height * (primes + 1));
          kernel_->multiply(*work.tables, work.left + ti * inner.size, work.left_stride, work.right + tj * inner.size,
                            work.right_stride, height / group, width / panel, inner.size, l > 0, sums);
          if (l + inner.size < inner_) {
            return;
          }
          for (std::size_t q = 0; q < width; q += panel) {
            QuarnCheckInterrupt();
            for (std::size_t g = 0; g < height; g += group) {
              finish_tile(work, thread, sums, rows.first + ti + g, columns.first + tj + q);
              sums += panel * (primes + 1) * group;
            }
          }
        });
      }
    }
  }
}

/// The residues of a block of both operands. Their places do not depend on how the work is shared.
void Product::pack(Operands& work, Block rows, Block columns, Block inner) {
  const auto group = std::size_t(kernel_->group);
  const auto panel = std::size_t(kernel_->panel);
  // Packers write whole groups: a part of the right operand begins where one does.
  const std::size_t unit = panel * (group / std::gcd(group, panel * inner.size));
  const auto part_of = [this](std::size_t size, std::size_t step) {
    return threads_ == 1 ? size : round_up((size + 2 * threads_ - 1) / (2 * threads_), step);
  };
  const std::size_t rows_of_part = part_of(rows.size, group);
  const std::size_t columns_of_part = part_of(columns.size, unit);
  const std::size_t left_parts = (rows.size + rows_of_part - 1) / rows_of_part;
  const std::size_t right_parts = (columns.size + columns_of_part - 1) / columns_of_part;
  share(left_parts + right_parts, [&](std::size_t thread, std::size_t part) {
    if (part < left_parts) {
      const std::size_t skip = part * rows_of_part;
      pack_left(work, thread, {rows.first + skip, std::min(rows_of_part, rows.size - skip)}, inner, skip * inner.size);
    } else {
      const std::size_t skip = (part - left_parts) * columns_of_part;
      pack_right(work, thread, {columns.first + skip, std::min(columns_of_part, columns.size - skip)}, inner,
                 skip * inner.size);
    }
  });
}

void Product::pack_left(Operands& work, std::size_t thread, Block rows, Block inner, std::size_t place) {
  const Operands::Own& own = work.own[thread];
  Packer packer(*kernel_, *work.tables, work.left_digits, own.digits, own.limbs, work.left + place, work.left_stride);
  const auto group = std::size_t(kernel_->group);
  for (std::size_t first = rows.first; first < rows.first + rows.size; first += group) {
    QuarnCheckInterrupt();
    const std::size_t there = std::min(first + group, rows_);
    for (std::size_t l = inner.first; l < inner.first + inner.size; ++l) {
      for (std::size_t i = first; i < there; ++i) {
        packer.put(a_.left(i, l), left_[i]);
      }
      for (std::size_t i = there; i < first + group; ++i) {
        packer.put_zero();
      }
    }
  }
  packer.finish();
}

void Product::pack_right(Operands& work, std::size_t thread, Block columns, Block inner, std::size_t place) {
  const Operands::Own& own = work.own[thread];
  Packer packer(*kernel_, *work.tables, work.right_digits, own.digits, own.limbs, work.right + place,
                work.right_stride);
  const auto panel = std::size_t(kernel_->panel);
  for (std::size_t first = columns.first; first < columns.first + columns.size; first += panel) {
    QuarnCheckInterrupt();
    const std::size_t there = std::min(first + panel, columns_);
    for (std::size_t l = inner.first; l < inner.first + inner.size; ++l) {
      for (std::size_t j = first; j < there; ++j) {
        Entry entry = b_.right(l, j);
        entry.flip = entry.flip != negate_;
        packer.put(entry, right_[j]);
      }
      for (std::size_t j = there; j < first + panel; ++j) {
        packer.put_zero();
      }
    }
  }
  packer.finish();
}

void Product::finish_tile(Operands& work, std::size_t thread, double* sums, std::size_t first_row,
                          std::size_t first_column) {
  const std::size_t column = std::size_t(work.tables->primes + 1) * std::size_t(kernel_->group);
  const std::size_t there = std::min(first_column + std::size_t(kernel_->panel), columns_);
  const std::size_t together = weighted_ ? 1 + parts_ : 1;
  for (std::size_t j = first_column; j < there; j += together, sums += together * column) {
    if (right_[j].exactly) {
      continue;
    }
    if (weighted_) {
      finish_weighted(work, thread, sums, column, first_row, j);
    } else {
      finish_column(work, thread, sums, first_row, j);
    }
  }
}

void Product::finish_column(Operands& work, std::size_t thread, double* sums, std::size_t first_row, std::size_t j) {
  const auto group = std::size_t(kernel_->group);
  const std::size_t blocks = work.blocks;
  const Operands::Own& own = work.own[thread];
  double* const digits = own.digits;
  kernel_->recombine(*work.tables, sums, work.out_digits, kWide, digits, own.signs);
  const std::int64_t shift = 6 * (3 * std::int64_t(work.blocks) - work.left_digits - work.right_digits);
  const std::int64_t exponent = right_[j].exponent() + shift;
  for (std::size_t r = 0; r < group && first_row + r < rows_; ++r) {
    const std::size_t i = first_row + r;
    if (left_[i].exactly) {
      continue;
    }
    Limb* const limbs = own.limbs + kHead;
    fetch_limbs(limbs, digits + r, group, blocks);
    const Total total{own.signs[r] < 0, exponent + left_[i].exponent(), limbs, blocks * kBlockLimbs};
    store_total(i, j, total, own.signs[r] == 0);
  }
}

void Product::finish_weighted(Operands& work, std::size_t thread, double* sums, std::size_t step, std::size_t first_row,
                              std::size_t j) {
  const auto group = std::size_t(kernel_->group);
  const std::size_t blocks = work.blocks;
  const Operands::Own& own = work.own[thread];
  const auto digits = [&](unsigned part) { return own.digits + part * 3 * blocks * group; };
  const std::int64_t shift = 6 * (3 * std::int64_t(work.blocks) - work.left_digits - work.right_digits);
  for (unsigned part = 0; part <= parts_; ++part) {
    kernel_->recombine(*work.tables, sums + part * step, work.out_digits, kWide, digits(part),
                       own.signs + part * group);
  }
  for (std::size_t r = 0; r < group && first_row + r < rows_; ++r) {
    const std::size_t i = first_row + r;
    if (left_[i].exactly) {
      continue;
    }
    Total totals[2];
    bool zero[2];
    for (unsigned part = 0; part <= parts_; ++part) {
      Limb* const limbs = own.limbs + part * blocks * kBlockLimbs;
      fetch_limbs(limbs, digits(part) + r, group, blocks);
      zero[part] = own.signs[part * group + r] == 0;
      totals[part] = {own.signs[part * group + r] < 0, right_[j + part].exponent() + left_[i].exponent() + shift, limbs,
                      blocks * kBlockLimbs};
    }
    store_totals(i, j, totals, zero);
  }
}

}  // namespace quarn::exact

// The entries of a product that are not done by residues: sums of limbs.
#include <algorithm>
#include <optional>
#include <utility>

#include "number/exact/aligned.h"
#include "number/exact/exact_sum.h"
#include "number/exact/leading.h"
#include "number/exact/product.h"
#include "quarn/quarnthread.h"

namespace quarn::exact {
namespace {

/// Whether a b is -0, so that terms decide the sign of a zero total.
bool negative_zero(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  return signbit(a) != signbit(b) && (kind_of(a) == Kind::zero || kind_of(b) == Kind::zero);
}

}  // namespace

Row Product::row(std::size_t i, std::size_t j) const {
  Row row{a_, b_, i, j, inner_};
  row.negate = negate_;
  return row;
}

void Product::one_by_one() {
  const std::size_t down = (rows_ + kTileEdge - 1) / kTileEdge;
  const std::size_t across = (columns_ + kTileEdge - 1) / kTileEdge;
  share(down * across,
        [&](std::size_t, std::size_t tile) { tile_by_sums(tile % down * kTileEdge, tile / down * kTileEdge); });
}

/// Entries of a tile that are not done by residues: those of lines of few limbs together, the others one by one.
void Product::tile_by_sums(std::size_t first_row, std::size_t first_column) {
  const std::size_t height = std::min(kTileEdge, rows_ - first_row);
  const std::size_t width = std::min(kTileEdge, columns_ - first_column);
  const auto most_limbs = [](const Line* lines, std::size_t size) {
    int most = 0;
    for (std::size_t i = 0; i < size; ++i) {
      most = std::max(most, aligned_limbs(lines[i]));
    }
    return most;
  };
  const int of_rows = most_limbs(left_.data() + first_row, height);
  const int of_columns = most_limbs(right_.data() + first_column, width);
  std::optional<AlignedTile> tile;
  std::size_t room = 0;
  if (of_rows != 0 && of_columns != 0 && finite_weights_) {
    tile.emplace(std::max(of_rows, of_columns), height, width);
    tile->add(a_, b_, first_row, first_column, inner_, left_.data() + first_row, right_.data() + first_column);
    room = tile->length() + kHead;
  }
  Scratch<Limb> limbs(2 * room);
  for (std::size_t j = first_column; j < first_column + width; ++j) {
    for (std::size_t i = first_row; i < first_row + height; ++i) {
      QuarnCheckInterrupt();
      if ((!left_[i].exactly && !right_[j].exactly) || (weighted_ && (j & parts_) != 0)) {
        continue;
      }
      if (!tile || aligned_limbs(left_[i]) == 0 || aligned_limbs(right_[j]) == 0) {
        weighted_ ? weighted_entry(i, j) : entry(i, j);
        continue;
      }
      Total totals[2];
      bool zero[2];
      for (unsigned part = 0; part <= (weighted_ ? parts_ : 0); ++part) {
        totals[part].limbs = limbs.data() + part * room + kHead;
        const std::int64_t top = left_[i].exponent() + right_[j + part].exponent();
        zero[part] = tile->total(i - first_row, j + part - first_column, top, totals[part]);
        totals[part].negative = totals[part].negative != negate_;
      }
      if (weighted_) {
        store_totals(i, j, totals, zero);
      } else {
        store_total(i, j, totals[0], zero[0]);
      }
    }
  }
}

/// Puts the total of an entry, in front of which kHead limbs are free, into its place.
void Product::store_total(std::size_t i, std::size_t j, const Total& total, bool zero) {
  if (weights_.beta[0] == nullptr) {
    rounder_.store(result(i, j), total.negative, total.exponent, total.limbs, total.length);
  } else if (zero && negative_zero(*old_value(i, j), *weights_.beta[0])) {
    entry(i, j);
  } else {
    add_old_value(result(i, j), i, j, total);
  }
}

/// The same with weights, for both parts of a complex entry.
void Product::store_totals(std::size_t i, std::size_t j, const Total* totals, const bool* zero) {
  bool terms_decide = false;
  for (unsigned part = 0; part <= parts_; ++part) {
    terms_decide =
        terms_decide || (weights_.beta[0] != nullptr && zero[part] && kind_of(*old_value(i, j + part)) == Kind::zero);
  }
  if (terms_decide) {
    term_by_term(i, j);
  } else {
    store_weighted(i, j, totals);
  }
}

/// to := total + beta * old value. The kHead limbs in front of the total's may be used.
void Product::add_old_value(QuarnFloat& to, std::size_t i, std::size_t j, Total total) {
  const QuarnFloat& old = *old_value(i, j);
  if (kind_of(old) == Kind::zero && isfinite(*weights_.beta[0])) {
    rounder_.store(to, total.negative, total.exponent, total.limbs, total.length);
    return;
  }
  const std::uint32_t length = QuarnAccess::length(old);
  constexpr std::int64_t kDigits = Radix::digits;
  const std::int64_t distance = total.exponent - QuarnAccess::exponent(old);
  const bool fits = distance >= 0 && distance / kDigits + std::int64_t(length) + 1 <= std::int64_t(total.length);
  if (length != 0 && beta_is_unit_ && fits && length <= 32) {
    std::fill_n(total.limbs - kHead, kHead, Limb(0));
    Limb moved[33];
    shift_right<Radix>(moved, QuarnAccess::limbs(old), length, int(distance % kDigits));
    Limb* const place = total.limbs + distance / kDigits;
    Limb* const first = total.limbs - 1;
    const bool negative = QuarnAccess::negative(old) != signbit(*weights_.beta[0]);
    const std::size_t before = std::size_t(place - first);
    if (negative == total.negative) {
      add_limb<Radix>(first, before, quarn::add<Radix>(place, place, moved, length + 1));
    } else if (subtract_limb<Radix>(first, before, subtract<Radix>(place, place, moved, length + 1)) != 0) {
      // Below zero: the complement.
      total.negative = !total.negative;
      Limb borrow = 0;
      for (std::size_t c = total.length + 1; c-- > 0;) {
        const Limb taken = first[c] + borrow;
        borrow = taken != 0;
        first[c] = borrow != 0 ? Radix::base - taken : 0;
      }
    }
    rounder_.store(to, total.negative, total.exponent + kDigits, first, total.length + 1);
    return;
  }
  const QuarnFloat one(1);
  ExactSum sum;
  sum.add({total.negative, total.exponent, total.limbs, total.length}, one);
  sum.add(old, *weights_.beta[0], false);
  to = sum.rounded_sum(rounder_.digits(), true);
}

/// A single row or column, where every number of the other operand is used once: what the lines have in common would
/// cost more than it saves.
void Product::by_leading_limbs() {
  aside_.resize(rows_ * columns_);
  const std::size_t lines = rows_ * columns_;
  std::vector<Prospects> prospects(threads_);
  share((lines + kSeveral - 1) / kSeveral, [&](std::size_t thread, std::size_t part) {
    const std::size_t first = part * kSeveral;
    const std::size_t count = std::min(kSeveral, lines - first);
    Row terms[kSeveral];
    QuarnFloat* results[kSeveral] = {};
    bool done[kSeveral] = {};
    for (std::size_t t = 0; t < count; ++t) {
      const std::size_t i = columns_ == 1 ? first + t : 0;
      const std::size_t j = columns_ == 1 ? 0 : first + t;
      terms[t] = terms_of(i, j);
      results[t] = &result(i, j);
    }
    if (prospects[thread].good()) {
      rounded_leading_totals(count, results, terms, done, rounder_);
      prospects[thread].take(2 * std::size_t(std::count(done, done + count, true)) > count);
    }
    for (std::size_t t = 0; t < count; ++t) {
      if (!done[t]) {
        rounded_whole_total(*results[t], terms[t], rounder_, weights_.beta[0] != nullptr);
      }
    }
  });
  move_results();
}

Row Product::terms_of(std::size_t i, std::size_t j) const {
  Row terms = row(i, j);
  if (weights_.beta[0] != nullptr) {
    terms.others[terms.more++] = {old_value(i, j), weights_.beta[0], false};
  }
  return terms;
}

void Product::entry(std::size_t i, std::size_t j) {
  const Row terms = terms_of(i, j);
  rounded_total(result(i, j), terms, rounder_, weights_.beta[0] != nullptr);
}

/// Both parts of a complex entry, or a real one.
void Product::weighted_entry(std::size_t i, std::size_t j) {
  Span spans[2];
  std::size_t size = 0;
  for (unsigned part = 0; part <= parts_; ++part) {
    spans[part] = span_of(row(i, j + part));
    const std::size_t wanted = total_size(spans[part]);
    if (wanted == 0 || spans[part].longest == 0 || !finite_weights_) {
      return term_by_term(i, j);
    }
    size = std::max(size, wanted);
  }
  Scratch<Limb> limbs(2 * size);
  Total totals[2];
  for (unsigned part = 0; part <= parts_; ++part) {
    totals[part].limbs = limbs.data() + part * size;
    total_of(row(i, j + part), spans[part], totals[part]);
  }
  store_weighted(i, j, totals);
}

/// alpha times the totals plus beta times the old value, both parts of it.
void Product::store_weighted(std::size_t i, std::size_t j, const Total* totals) {
  QuarnFloat made[2];
  for (unsigned part = 0; part <= parts_; ++part) {
    ExactSum sum;
    for (unsigned w = 0; w < 2; ++w) {
      const unsigned from = part ^ w;
      const bool flip = w == 1 && part == 0;  // i times i
      if (weights_.alpha[w] != nullptr) {
        const Total& total = totals[from];
        sum.add({total.negative != flip, total.exponent, total.limbs, total.length}, *weights_.alpha[w]);
      }
      if (weights_.beta[w] != nullptr) {
        sum.add(*old_value(i, j + from), *weights_.beta[w], flip);
      }
    }
    made[part] = sum.rounded_sum(rounder_.digits(), weights_.beta[0] != nullptr);
  }
  for (unsigned part = 0; part <= parts_; ++part) {
    result(i, j + part) = std::move(made[part]);
  }
}

/// The same where totals are of no use: alpha goes to each term.
void Product::term_by_term(std::size_t i, std::size_t j) {
  QuarnFloat made[2];
  for (unsigned part = 0; part <= parts_; ++part) {
    ExactSum sum;
    std::vector<std::vector<Limb>> scaled;
    scaled.reserve(2 * inner_);
    for (unsigned w = 0; w < 2; ++w) {
      const unsigned from = part ^ w;
      const bool flip = w == 1 && part == 0;
      if (weights_.beta[w] != nullptr) {
        sum.add(*old_value(i, j + from), *weights_.beta[w], flip);
      }
      if (weights_.alpha[w] == nullptr) {
        continue;
      }
      const QuarnFloat& alpha = *weights_.alpha[w];
      const Row terms = row(i, j + from);
      for (std::size_t l = 0; l < inner_; ++l) {
        const Term term = terms[l];
        if (kind_of(alpha) != Kind::finite || kind_of(*term.a) != Kind::finite) {
          sum.add(alpha * *term.a, *term.b, term.flip != flip);
          continue;
        }
        const View x = view_of(alpha);
        const View y = view_of(*term.a);
        scaled.emplace_back(x.length + y.length);
        std::vector<Limb>& limbs = scaled.back();
        multiply<Radix>(limbs.data(), x.limbs, x.length, y.limbs, y.length);
        sum.add(
            {(x.negative != y.negative) != (term.flip != flip), x.exponent + y.exponent, limbs.data(), limbs.size()},
            *term.b);
      }
    }
    made[part] = sum.rounded_sum(rounder_.digits(), weights_.beta[0] != nullptr);
  }
  for (unsigned part = 0; part <= parts_; ++part) {
    result(i, j + part) = std::move(made[part]);
  }
}

}  // namespace quarn::exact

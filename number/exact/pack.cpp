#include "number/exact/pack.h"

#include <algorithm>

namespace quarn::exact {
namespace {

/// Zeros at the end of a limb, not all of them: a number of few digits has many, and one of as many digits as the
/// working precision ends within a limb.
int trailing_zeros(Limb limb) noexcept {
  constexpr int kThird = Radix::digits / 3;
  int zeros = 0;
  const Limb third = limb / Radix::powers[kThird];
  if (third * Radix::powers[kThird] == limb) {
    zeros = kThird;
    limb = third;
    const Limb more = limb / Radix::powers[kThird];
    if (more * Radix::powers[kThird] == limb) {
      zeros = 2 * kThird;
      limb = more;
    }
  }
  constexpr int kPart = kThird / 2;
  return zeros + (limb % Radix::powers[kPart] == 0 ? kPart : 0);
}

/// 18 decimal digits as three digits of 10^6, the leading one first.
struct Block {
  std::uint32_t digit[3];
};

#if QUARN_LIMB_BITS == 64
Block block_of(const Limb* limbs, std::size_t i) {
  const Limb upper = limbs[i] / 1'000'000;
  const auto lead = std::uint32_t(limbs[i] / 1'000'000'000'000);
  return {{lead, std::uint32_t(upper) - lead * 1'000'000, std::uint32_t(limbs[i]) - std::uint32_t(upper) * 1'000'000}};
}
#else
Block block_of(const Limb* limbs, std::size_t i) {
  const Limb high = limbs[2 * i];
  const Limb low = limbs[2 * i + 1];
  return {{high / 1000, high % 1000 * 1000 + low / 1'000'000, low % 1'000'000}};
}
#endif
constexpr std::size_t kPackedLimbs = 18 / Radix::digits;

}  // namespace

void Line::take(const QuarnFloat& x) noexcept {
  const std::uint32_t length = QuarnAccess::length(x);
  if (length == 0) {
    finite = finite && isfinite(x);
    return;
  }
  const std::int64_t exponent = QuarnAccess::exponent(x);
  const std::int64_t bottom = exponent - std::int64_t(length) * Radix::digits;
  top = std::max(top, exponent);
  if (bottom < low) {
    low = std::min(low, bottom + trailing_zeros(QuarnAccess::limbs(x)[length - 1]));
  }
}

std::size_t Packer::digits_size(const Kernel& kernel, int count) noexcept {
  return kBatch * std::size_t(kernel.group) * std::size_t(count);
}

std::size_t Packer::limbs_size(int count) noexcept { return std::size_t(count) / 3 * kPackedLimbs + 4 * kPackedLimbs; }

double* Packer::place() const noexcept {
  return digits_ + group_ * std::size_t(kernel_.group) * std::size_t(count_) + row_;
}

void Packer::put(const Entry& entry, const Line& line) noexcept {
  const QuarnFloat& x = *entry.number;
  const std::uint32_t length = QuarnAccess::length(x);
  if (length == 0 || line.exactly) {
    return put_zero();
  }
  const std::ptrdiff_t step = kernel_.group;
  const auto distance = std::uint64_t(line.top - QuarnAccess::exponent(x));
  const std::size_t skip = std::size_t(distance / 18);  // blocks
  const int places = int(distance % 18);
  const Limb* limbs = QuarnAccess::limbs(x);
  std::size_t size = length;
  if (places != 0 || kPackedLimbs > 1) {
    std::size_t front = 0;
    for (int rest = places; rest >= Radix::digits; rest -= Radix::digits) {
      limbs_[front++] = 0;
    }
    shift_right<Radix>(limbs_ + front, limbs, length, places % Radix::digits);
    limbs = limbs_;
    size += front + 1;
    if (size % kPackedLimbs != 0) {
      limbs_[size++] = 0;
    }
  }
  const std::int32_t mask = QuarnAccess::negative(x) != entry.flip ? -1 : 0;
  double* const to = place();
  std::ptrdiff_t s = std::ptrdiff_t(count_ - 1) * step;  // from the leading digit down
  const auto put_digit = [&](std::uint32_t digit) {
    to[s] = double((std::int32_t(digit) ^ mask) - mask);
    s -= step;
  };
  for (std::size_t i = 0; i < 3 * skip && s >= 0; ++i) {
    put_digit(0);
  }
  const std::size_t blocks = size / kPackedLimbs;
  std::size_t i = 0;
  for (; i < blocks && s >= 2 * step; ++i) {
    const Block block = block_of(limbs, i);
    put_digit(block.digit[0]);
    put_digit(block.digit[1]);
    put_digit(block.digit[2]);
  }
  if (i < blocks && s >= 0) {
    const Block block = block_of(limbs, i);
    put_digit(block.digit[0]);
    if (s >= 0) {
      put_digit(block.digit[1]);
    }
  }
  while (s >= 0) {
    put_digit(0);
  }
  next();
}

void Packer::put_zero() noexcept {
  double* const to = place();
  for (int s = 0; s < count_; ++s) {
    to[s * kernel_.group] = 0;
  }
  next();
}

void Packer::next() noexcept {
  if (++row_ == kernel_.group) {
    row_ = 0;
    if (++group_ == kBatch) {
      flush(kBatch);
    }
  }
}

void Packer::flush(std::size_t groups) noexcept {
  kernel_.residues(tables_, digits_, count_, groups, out_, stride_);
  out_ += groups * std::size_t(kernel_.group);
  group_ = 0;
}

void Packer::finish() noexcept {
  while (row_ != 0) {
    put_zero();
  }
  flush(group_);
}

}  // namespace quarn::exact

#include "number/scalar/storage.h"

#include <bit>
#include <new>

namespace quarn {
namespace {

using Limb = Radix::Limb;

// Four size classes an octave, so that at most a fifth of a block is waste.
constexpr std::size_t kSmallest = 16;
constexpr std::size_t kClasses = 96;

struct SizeClass {
  std::size_t index;
  std::uint32_t capacity;
};

SizeClass size_class(std::size_t wanted) {
  const std::size_t size = wanted < kSmallest ? kSmallest : wanted;
  const int octave = std::bit_width(size - 1) - 1;  // size is in (2^octave, 2^(octave+1)]
  const std::size_t step = std::size_t(1) << (octave - 2);
  const std::size_t quarter = (size - 1 - (std::size_t(1) << octave)) / step;
  return {std::size_t(octave - 3) * 4 + quarter, std::uint32_t((std::size_t(1) << octave) + (quarter + 1) * step)};
}

struct FreeBlock {
  FreeBlock* next;
};

FreeBlock* free_blocks[kClasses];
// Blocks kept for later may take so much memory; more goes back to the system.
constexpr std::size_t kKept = std::size_t(256) << 20;
std::size_t kept = 0;

}  // namespace

Limb* acquire_limbs(std::size_t wanted, std::uint32_t& capacity) {
  const SizeClass fit = size_class(wanted);
  if (fit.index >= kClasses) {
    throw std::bad_alloc();
  }
  capacity = fit.capacity;
  if (FreeBlock* block = free_blocks[fit.index]) {
    free_blocks[fit.index] = block->next;
    kept -= fit.capacity * sizeof(Limb);
    return reinterpret_cast<Limb*>(block);
  }
  return static_cast<Limb*>(::operator new(fit.capacity * sizeof(Limb)));
}

void recycle_limbs(Limb* limbs, std::uint32_t capacity) noexcept {
  const std::size_t bytes = capacity * sizeof(Limb);
  if (kept + bytes > kKept) {
    ::operator delete(limbs);
    return;
  }
  kept += bytes;
  const std::size_t index = size_class(capacity).index;
  free_blocks[index] = new (limbs) FreeBlock{free_blocks[index]};
}

}  // namespace quarn

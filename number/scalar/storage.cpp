#include "number/scalar/storage.h"

#include <bit>
#include <new>

#include "number/scalar/thread_state.h"
#include "quarn/storage.h"

namespace quarn {
namespace {

using Limb = Radix::Limb;

// Four size classes an octave, so that at most a fifth of a block is waste.
constexpr std::size_t kSmallest = 16;

struct SizeClass {
  std::size_t index;
  std::uint32_t capacity;
};

SizeClass size_class(std::size_t wanted) {
  const std::size_t size = wanted < kSmallest ? kSmallest : wanted;
  const int octave = std::bit_width(size - 1) - 1;  // size is in (2^octave, 2^(octave+1)]
  const std::size_t quarter = ((size - 1) >> (octave - 2)) & 3;
  return {std::size_t(octave - 3) * 4 + quarter, std::uint32_t((quarter + 5) << (octave - 2))};
}

// Blocks that a thread keeps for later may take so much memory; more goes back to the system.
constexpr std::size_t kMostKept = std::size_t(256) << 20;

/// From the system. When that has no more, the thread's free blocks, which are of other sizes, go back to it first.
void* fresh_block(std::size_t bytes) {
  ThreadState& state = own_state();
  try {
    return ::operator new(bytes);
  } catch (const std::bad_alloc&) {
    if (!state.release_blocks()) {
      throw;
    }
  }
  return ::operator new(bytes);
}

}  // namespace

Limb* acquire_limbs(std::size_t wanted, std::uint32_t& capacity) {
  const SizeClass fit = size_class(wanted);
  if (fit.index >= ThreadState::kSizeClasses) {
    throw std::bad_alloc();
  }
  capacity = fit.capacity;
  if (FreeBlock* const block = thread_state().free_blocks[fit.index]) {
    ThreadState& state = const_cast<ThreadState&>(thread_state());  // its own: the shared one keeps nothing
    state.free_blocks[fit.index] = block->next;
    state.kept_bytes -= fit.capacity * sizeof(Limb);
    return reinterpret_cast<Limb*>(block);
  }
  return static_cast<Limb*>(fresh_block(fit.capacity * sizeof(Limb)));
}

void recycle_limbs(Limb* limbs, std::uint32_t capacity) noexcept {
  const std::size_t bytes = capacity * sizeof(Limb);
  ThreadState* const state = existing_state();
  if (state == nullptr || state->kept_bytes + bytes > kMostKept) {
    ::operator delete(limbs);
    return;
  }
  state->kept_bytes += bytes;
  FreeBlock*& first = state->free_blocks[size_class(capacity).index];
  first = new (limbs) FreeBlock{first};
}

}  // namespace quarn

void QuarnReleaseStorage() noexcept {
  if (quarn::ThreadState* const state = quarn::existing_state()) {
    state->release_blocks();
  }
}

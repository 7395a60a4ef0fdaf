// Temporary storage for the limb algorithms: one arena, used as a stack, so that a recursion allocates nothing.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

namespace quarn {

/// A stack of bytes. It grows by whole blocks, so that what was handed out never moves; when it is empty again the
/// blocks become one. Each thread has its own.
class ScratchArena {
 public:
  /// The calling thread's.
  static ScratchArena& instance();

  void* take(std::size_t bytes) {
    bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (!fits(bytes)) {
      add_block(bytes);
    }
    Block& block = blocks_.back();
    void* start = block.storage.get() + block.used;
    block.used += bytes;
    return start;
  }

  /// Gives back everything handed out since `start`, the latest first.
  void give_back(void* start) noexcept {
    Block& block = blocks_.back();
    block.used = std::size_t(static_cast<std::byte*>(start) - block.storage.get());
    if (block.used == 0 && blocks_.size() > 1) {
      blocks_.pop_back();
    }
  }

 private:
  static constexpr std::size_t kAlignment = 64;  // a cache line
  static constexpr std::size_t kFirstBlock = std::size_t(1) << 16;

  struct Release {
    void operator()(std::byte* p) const { ::operator delete(p, std::align_val_t(kAlignment)); }
  };
  struct Block {
    std::unique_ptr<std::byte, Release> storage;
    std::size_t capacity;
    std::size_t used;
  };

  bool fits(std::size_t bytes) const {
    if (blocks_.empty()) {
      return false;
    }
    const Block& block = blocks_.back();
    // An empty arena takes the chance to become one block of the size that was needed before.
    const bool outgrown = blocks_.size() == 1 && block.used == 0 && block.capacity < wanted_;
    return !outgrown && block.capacity - block.used >= bytes;
  }

  void add_block(std::size_t bytes) {
    if (blocks_.size() == 1 && blocks_.back().used == 0) {
      blocks_.pop_back();
    }
    std::size_t held = 0;
    for (const Block& block : blocks_) {
      held += block.capacity;
    }
    const std::size_t capacity = std::max({bytes, held, blocks_.empty() ? wanted_ : 0, kFirstBlock});
    blocks_.reserve(blocks_.size() + 1);
    auto* storage = static_cast<std::byte*>(::operator new(capacity, std::align_val_t(kAlignment)));
    blocks_.push_back({std::unique_ptr<std::byte, Release>(storage), capacity, 0});
    wanted_ = std::max(wanted_, held + capacity);
  }

  std::vector<Block> blocks_;
  std::size_t wanted_ = 0;
};

/// An array of plain values on the arena, uninitialised; arrays end in the reverse order of their beginning.
template <class T>
class Scratch {
 public:
  static_assert(std::is_trivially_copyable_v<T>);

  explicit Scratch(std::size_t size)
      : arena_(ScratchArena::instance()), data_(static_cast<T*>(arena_.take((size + 1) * sizeof(T)))) {}
  ~Scratch() { arena_.give_back(data_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  T* data() noexcept { return data_; }
  const T* data() const noexcept { return data_; }
  T& operator[](std::size_t i) noexcept { return data_[i]; }
  const T& operator[](std::size_t i) const noexcept { return data_[i]; }

 private:
  ScratchArena& arena_;
  T* data_;
};

}  // namespace quarn
